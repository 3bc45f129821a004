// The capture of a shared log counts the other positions' QSOs from the
// cache for duplicates, worked-before and the next serial.

#include <gtest/gtest.h>

#include "core/capture/capture.h"
#include "core/i18n/texts.h"
#include "core/shared/shared_store.h"
#include "core/shared/station_view.h"
#include "support/fakes.h"
#include "support/temp_dir.h"

namespace orv {
namespace {

constexpr int k144 = 1;
constexpr int k432 = 2;

TEST(SharedStationView, OtherPositionsCountForDuplicatesWorkedBeforeAndSerials) {
    test::TempDir dir;
    auto log = ContestLog::create(dir / "A.sqlite", NewLogData{"OE1ABC", "JN78DF", "Test", {}});
    SharedStore::enable(log.db(), {"postgresql://u@h/db", "A", "Test"});
    SharedStore store(log.db());
    auto remote = [&](const std::string& uid, int band, const std::string& call, std::int64_t nr,
                      bool deleted) {
        QsoRow q;
        q.call = call;
        q.locator = "JN88EF";
        q.qsoNr = nr;
        q.errQso = deleted;
        q.datTime = DateTime{2026, 5, 2, 14, 0, 0};
        store.applyIncoming({{uid, band, "B", 1, nr, q}});
    };
    remote("u1", k144, "DL1XYZ", 7, false);
    remote("u2", k144, "DL2XYZ", 8, true);
    remote("u3", k432, "OK1AB", 3, false);

    test::FakeClock clock{DateTime{2026, 5, 2, 14, 30, 0}};
    test::FakeDialogs dialogs;
    Texts texts;
    CaptureConfig cfg;
    cfg.ownLocator = "JN78DF";
    Capture capture(log, cfg, clock, dialogs, texts);
    SharedStationView view(log.db());
    capture.setOtherPositions(&view);
    capture.selectBand(k144);
    EXPECT_EQ(capture.nextSerial(), "009");

    auto entry = [](const std::string& call) {
        EntryRow r;
        r.call = call;
        r.locator = "JN88EF";
        r.rstNr = "59001";
        r.rst = "59";
        r.time = "14:30";
        r.mode = r.rxMode = "SSB";
        return r;
    };
    struct Case {
        std::string call;
        CommitResult::Kind kind;
    };
    const Case cases[] = {
        {"dl1xyz", CommitResult::Kind::Duplicate}, // logged by B on the band
        {"DL2XYZ", CommitResult::Kind::Stored},    // B's QSO is deleted
        {"OK1AB", CommitResult::Kind::Stored},     // B worked it on another band
    };
    for (const auto& c : cases) {
        EntryRow r = entry(c.call);
        EXPECT_EQ(capture.Uebernehmen(r).kind, c.kind) << c.call;
    }
    const auto rows = log.rows(k144);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].qsoNr, 9);
    EXPECT_EQ(rows[1].qsoNr, 10);
    const auto worked = capture.WorkAlso("OK1AB");
    ASSERT_EQ(worked.size(), 1u);
    EXPECT_EQ(worked[0].band, k432);
    EXPECT_EQ(worked[0].cells[4], "003");
    // The band bar's marks: this position's QSO and B's on another band; B's
    // deleted one on 144 MHz is not counted (this position logged it anew).
    EXPECT_EQ(capture.workedBands(" ok1ab").to_string(),
              WorkedBands::Bands().set(k144).set(k432).to_string());
    EXPECT_EQ(capture.workedBands("DL2XYZ").to_string(),
              WorkedBands::Bands().set(k144).to_string());
    EXPECT_TRUE(capture.workedBands("DL9ZZZ").none());

    // The number the server holds for this position counts only on its band
    // and only above what the station has given there (10 on 144 MHz).
    struct Held {
        int band;
        std::int64_t nr;
        std::string next;
    };
    const Held holds[] = {{k144, 14, "014"}, {k144, 11, "011"}, {k144, 10, "011"},
                          {k144, 3, "011"},  {k432, 20, "011"}, {-1, 0, "011"}};
    for (const auto& h : holds) {
        view.setHeld(h.band, h.nr);
        EXPECT_EQ(capture.nextSerial(), h.next) << h.band << " " << h.nr;
    }
    // The QSO gets the held number.
    view.setHeld(k144, 14);
    EntryRow next = entry("DL3XYZ");
    EXPECT_EQ(capture.Uebernehmen(next).kind, CommitResult::Kind::Stored);
    EXPECT_EQ(log.rows(k144).back().qsoNr, 14);
}

} // namespace
} // namespace orv
