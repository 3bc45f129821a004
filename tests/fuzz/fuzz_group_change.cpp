// Group changes: any QSO numbers, option and value as typed into the
// dialog, applied to a band of a real log. A refusal leaves the log's files
// as they were; an accepted change keeps the rows and `MyData`, and moves
// no row out of its number.

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/logstore/contest_log.h"
#include "core/submission/group_change.h"
#include "fuzz_support.h"

using namespace orv;

namespace {

constexpr int k144 = 1;

QsoRow qso(std::int64_t nr, std::string call, std::string locator, std::int64_t qrb,
           bool deleted = false) {
    QsoRow q;
    q.call = std::move(call);
    q.locator = std::move(locator);
    q.qrg = 144;
    q.datTime = DateTime{2026, 5, 2, 23, 45, 0};
    q.rstGeg = "59";
    q.qsoNr = nr;
    q.rstErh = "59001";
    q.qrb = qrb;
    q.mod = "SSB";
    q.modRx = "SSB";
    q.errQso = deleted;
    return q;
}

// A log with QSOs 1, 2, 4 (deleted) and two numbered 5, made once.
const std::filesystem::path& logTemplate() {
    static const std::filesystem::path dir = [] {
        const auto d = fuzz::workDir() / "log-template";
        std::filesystem::create_directories(d);
        NewLogData nd;
        nd.myCall = "OE1ABC";
        nd.myLocator = "JN78DF";
        nd.contName = "Fuzz";
        ContestLog log = ContestLog::create(d / "Test.sqlite", nd);
        BandTotals t = log.totals(k144);
        for (const QsoRow& q : {qso(1, "DL1ABC", "JN58TD", 300), qso(2, "OK1XY", "JO70AB", 205),
                                qso(4, "SP9ZZ", "KN09AA", 600, true),
                                qso(5, "OE3XYZ", "JN88EF", 155), qso(5, "I1ABC", "JN45AA", 700)}) {
            if (!q.errQso)
                t.pGesamt += q.qrb;
            log.addQso(k144, q, t);
        }
        return d;
    }();
    return dir;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    GroupChange change;
    change.field = static_cast<GroupField>(in.ConsumeIntegralInRange(0, 9));
    change.from = in.ConsumeRandomLengthString(24);
    change.to = in.ConsumeRandomLengthString(24);
    change.value = in.ConsumeRemainingBytesAsString();

    const auto dir = fuzz::workDir() / "log";
    std::filesystem::remove_all(dir);
    std::filesystem::copy(logTemplate(), dir, std::filesystem::copy_options::recursive);
    const std::string before = fuzz::folderBytes(dir);
    bool refused = false;
    {
        auto opened = ContestLog::open(dir / "Test.sqlite");
        FUZZ_CHECK(opened.ok(), "the log copy does not open");
        ContestLog& log = opened.value();
        const auto rowsBefore = log.rows(k144);
        const auto myDataBefore = log.myData();
        const auto r = applyGroupChange(log, k144, change);
        refused = !r.ok();
        if (r.ok()) {
            const auto rows = log.rows(k144);
            FUZZ_CHECK(rows.size() == rowsBefore.size(), "a change added or dropped rows");
            FUZZ_CHECK(*r >= 0 && *r <= 4, "more rows changed than numbers exist");
            for (std::size_t i = 0; i < rows.size(); ++i)
                FUZZ_CHECK(rows[i].qsoNr == rowsBefore[i].qsoNr &&
                               rows[i].call == rowsBefore[i].call &&
                               rows[i].qrb == rowsBefore[i].qrb,
                           "a change touched a field it does not own");
            const auto myData = log.myData();
            FUZZ_CHECK(myData.totals[k144].pGesamt == myDataBefore.totals[k144].pGesamt,
                       "a group change moved the band's points");
        } else {
            FUZZ_CHECK(r.failure().text == 225 || r.failure().text == 14,
                       "a refusal without IText(225) or IText(14)");
        }
    }
    if (refused)
        FUZZ_CHECK(fuzz::folderBytes(dir) == before, "a refused group change changed the log");
    return 0;
}
