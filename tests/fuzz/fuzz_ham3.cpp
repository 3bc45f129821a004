// HAM III import: any bytes as an ".ASC" file, each line read by the line
// parser and the whole file replayed into a real log with a QSO on 432 MHz.
// A line's fields keep their sizes; only lines the report counts as stored
// reach the log, each with a valid call and locator; an import stopped by
// the non-empty band stores nothing.

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/capture/capture.h"
#include "core/i18n/texts.h"
#include "core/locator/locator.h"
#include "core/logstore/contest_log.h"
#include "core/submission/ham3_import.h"
#include "core/util/text.h"
#include "fuzz_support.h"

using namespace orv;

namespace {

constexpr int k432 = 2;

struct NoDialogs final : Dialogs {
    Answer ask(const std::string&, Buttons, Icon, Answer d) override { return d; }
    void inform(const std::string&, Icon) override {}
};
struct FixedClock final : Clock {
    DateTime now() const override { return DateTime{2026, 5, 2, 14, 30, 0}; }
};

// The bytes of the log, made once. Each run writes them anew: a file
// system copy can fail with EINTR under libFuzzer's timer signal.
const std::string& logTemplate() {
    static const std::string bytes = [] {
        const auto d = fuzz::workDir() / "log-template";
        std::filesystem::create_directories(d);
        {
            ContestLog log =
                ContestLog::create(d / "Test.sqlite", NewLogData{"OE1ABC", "JN78DF", "Fuzz", {}});
            QsoRow q;
            q.call = "DL1ABC";
            q.locator = "JN58TD";
            q.qrg = 432;
            q.datTime = DateTime{2026, 5, 2, 12, 0, 0};
            q.rstGeg = "59";
            q.rstErh = "59001";
            q.qsoNr = 1;
            q.qrb = 300;
            BandTotals t = log.totals(k432);
            t.pGesamt = 300;
            log.addQso(k432, q, t);
        } // closed: one file without a journal
        return fuzz::bytesOf(d / "Test.sqlite");
    }();
    return bytes;
}

std::size_t rowCount(ContestLog& log) {
    std::size_t n = 0;
    for (int b = 0; b < kBandCount; ++b)
        n += log.rows(b).size();
    return n;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::vector<std::string> lines = text::splitLines(text::decodeLegacy(bytes));
    for (const std::string& line : lines) {
        const Ham3Line l = parseHam3Line(line);
        FUZZ_CHECK(!l.call || (text::length(*l.call) > 2 && text::length(*l.call) <= 15),
                   "a call outside 3 to 15 characters");
        FUZZ_CHECK(!l.locator || text::length(*l.locator) <= 6, "a locator over 6 characters");
        FUZZ_CHECK(!l.band || (*l.band >= 0 && *l.band < kBandCount), "a band outside the ten");
        FUZZ_CHECK(!l.dateOk || DateTime::fromStorage(l.date), "an accepted date that is none");
        FUZZ_CHECK(!l.timeOk || l.time.size() == 5, "an accepted time not HH:MM");
    }

    const auto dir = fuzz::workDir() / "log";
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    fuzz::writeBytes(dir / "Test.sqlite", logTemplate());
    auto opened = ContestLog::open(dir / "Test.sqlite");
    FUZZ_CHECK(opened.ok(), "the log copy does not open");
    ContestLog& log = opened.value();
    const std::size_t before = rowCount(log);
    NoDialogs dialogs;
    FixedClock clock;
    Texts texts;
    CaptureConfig cfg;
    cfg.ownLocator = "JN78DF";
    Capture capture(log, cfg, clock, dialogs, texts);
    capture.selectBand(1);
    EntryRow row;
    row.mode = row.rxMode = "SSB";
    Ham3Import import(capture, {"SSB", "CW", "FM"});
    const Ham3Report r =
        import.run(lines, row, [](std::size_t, const std::string&) { return true; });
    const std::size_t after = rowCount(log);
    FUZZ_CHECK(after == before + r.stored, "rows in the log that the report does not count");
    if (r.end == Ham3Report::End::BandNotEmpty)
        FUZZ_CHECK(r.stored == 0, "a refused import stored QSOs");
    for (int b = 0; b < kBandCount; ++b)
        for (const QsoRow& q : log.rows(b)) {
            FUZZ_CHECK(LocOK(q.locator), "a stored QSO without a valid locator");
            FUZZ_CHECK(text::length(q.call) >= 3 && text::length(q.call) <= 15,
                       "a stored call outside 3 to 15 characters");
        }
    return 0;
}
