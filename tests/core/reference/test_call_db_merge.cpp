#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "core/app/app_paths.h"
#include "core/logstore/contest_log.h"
#include "core/reference/call_db.h"
#include "core/reference/call_db_merge.h"
#include "core/reference/call_image.h"
#include "core/settings/ini_file.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

constexpr int k144 = 1;
constexpr int k432 = 2;

QsoRow qso(std::string call, std::string loc, std::int64_t nr, DateTime when,
           bool deleted = false) {
    QsoRow q;
    q.call = std::move(call);
    q.locator = std::move(loc);
    q.qsoNr = nr;
    q.datTime = when;
    q.rstGeg = "59";
    q.rstErh = "59001";
    q.errQso = deleted;
    return q;
}

CallRecord rec(std::string call, std::string loc, int band = 0, int count = 0,
               std::optional<DateTime> last = std::nullopt) {
    CallRecord r;
    r.Call = std::move(call);
    r.Locator = std::move(loc);
    r.counters[static_cast<std::size_t>(band)] = count;
    r.LastDate = last;
    return r;
}

struct Fixture {
    test::TempDir dir;
    AppPaths paths{dir.path()};
    Fixture() { std::filesystem::create_directories(paths.logsPath()); }
};

} // namespace

TEST(CallDbMerge, DBAktualCountsLiveQsosOncePerBand) {
    Fixture f;
    {
        CallDbStore store(f.paths.callDbPath());
        ASSERT_TRUE(
            store.add(rec("DL1ABC", "JO31AB", k144, 3, DateTime{2020, 1, 1, 0, 0, 0})).ok());
        ASSERT_TRUE(store.add(rec("OK1DEF", "")).ok());
    }
    auto log = ContestLog::create(f.paths.logFile("Fieldday"), NewLogData{"DK0XX", "JO40AA", "FD"});
    const DateTime t{2026, 6, 6, 14, 0, 0};
    log.addQso(k144, qso("DL1ABC", "JO31AB", 1, t), {});
    log.addQso(k144, qso("DL1ABC", "JO31AB", 2, t.addHours(1)), {});
    log.addQso(k144, qso("OE1XYZ", "JN88EE", 3, t), {});
    log.addQso(k144, qso("OK1DEF", "JO70AA", 4, t), {});
    log.addQso(k144, qso("G4ABC", "IO91", 5, t, true), {}); // deleted: not counted
    log.addQso(k432, qso("DL1ABC", "JO31AB", 1, t.addHours(2)), {});

    EXPECT_EQ(MindestZahl(f.paths, "Fieldday", k144), 1);
    const auto m = DBAktual(f.paths, log, "Fieldday");
    EXPECT_EQ(m.qsos, 5);
    EXPECT_EQ(m.added, 1);
    EXPECT_EQ(m.bandsMerged, (std::vector<int>{k144, k432}));
    EXPECT_EQ(MindestZahl(f.paths, "Fieldday", k144), 2);
    EXPECT_EQ(MindestZahl(f.paths, "Fieldday", k432), 2);
    EXPECT_EQ(MindestZahl(f.paths, "Fieldday", 0), 1);
    EXPECT_EQ(IniFile(f.paths.qbDatIniPath()).getInt("Fieldday", "144"), 4);

    auto check = [&] {
        const auto img = QBDatImage::load(f.paths.callDbPath());
        ASSERT_EQ(img.size(), 3u);
        const auto& dl = img.record(1);
        EXPECT_EQ(dl.Call(), "DL1ABC");
        EXPECT_EQ(dl.counters[k144], 5);
        EXPECT_EQ(dl.counters[k432], 1);
        EXPECT_EQ(dl.lastDate(), t.addHours(2));
        const auto& oe = img.record(2);
        EXPECT_EQ(oe.Call(), "OE1XYZ");
        EXPECT_EQ(oe.Locator(), "JN88EE");
        EXPECT_EQ(oe.counters[k144], 1);
        EXPECT_EQ(oe.counters[k432], 0);
        const auto& ok = img.record(3);
        EXPECT_EQ(ok.Locator(), "JO70AA"); // the row without a locator took it
        EXPECT_EQ(ok.counters[k144], 1);
        EXPECT_EQ(img.search({"G4ABC", "", 5}).found, 0u);
    };
    check();
    // A second merge of the same log changes nothing.
    const auto again = DBAktual(f.paths, log, "Fieldday");
    EXPECT_EQ(again.qsos, 0);
    EXPECT_EQ(again.bandsAlreadyMerged, (std::vector<int>{k144, k432}));
    check();
}

TEST(CallDbMerge, CompareByCallAndLocator) {
    const auto img = QBDatImage::fromRecords({
        rec("OE1ABC/P", "JN88EE", k144, 4),
        rec("OE1ABCD", "JN88EE", k144, 4),
        rec("DL/OE1ABC", "JN88EE", k144, 4),
        rec("DL1ABC", "JO31AB", k144, 1),
        rec("DL1ABC", "JO31AC", k144, 9),
        rec("S51A", "JN76", k144, 9),
    });
    const DateTime t{2026, 6, 6, 14, 0, 0};
    const std::vector<QsoRow> rows{
        qso("DL1ABC", "JO31AB", 1, t), qso("OE1ABC", "JN88EE", 2, t),  qso("S51A", "JN76", 3, t),
        qso("ZZ9ZZ", "JO00", 4, t),    qso("Q1Q", "JO00", 5, t, true),
    };
    auto callsOf = [&](const CompareGroup& g) {
        std::vector<std::string> out;
        for (auto n : g.records)
            out.emplace_back(std::string(img.record(n).Call()) + " " +
                             std::string(img.record(n).Locator()));
        return out;
    };
    // MindestZahl 1: DL1ABC JO31AB is known once on 144 and beyond doubt; S51A
    // too. OE1ABC finds its portable form only; ZZ9ZZ stands alone.
    auto byCall = compareWithCallDb(img, rows, k144, 1, CompareBy::Call);
    ASSERT_EQ(byCall.size(), 2u);
    EXPECT_EQ(byCall[0].qso.call, "OE1ABC");
    EXPECT_EQ(callsOf(byCall[0]), (std::vector<std::string>{"OE1ABC/P JN88EE"}));
    EXPECT_EQ(byCall[1].qso.call, "ZZ9ZZ");
    EXPECT_TRUE(byCall[1].records.empty());

    // After a merge one more QSO is needed: DL1ABC now shows both records.
    auto merged = compareWithCallDb(img, rows, k144, 2, CompareBy::Call);
    ASSERT_EQ(merged.size(), 3u);
    EXPECT_EQ(merged[0].qso.call, "DL1ABC");
    EXPECT_EQ(callsOf(merged[0]), (std::vector<std::string>{"DL1ABC JO31AB", "DL1ABC JO31AC"}));

    // On another band no record has QSOs: everything is in doubt.
    EXPECT_EQ(compareWithCallDb(img, rows, k432, 1, CompareBy::Call).size(), 4u);

    auto byLoc = compareWithCallDb(img, rows, k144, 1, CompareBy::Locator);
    ASSERT_EQ(byLoc.size(), 2u);
    EXPECT_EQ(byLoc[0].qso.call, "OE1ABC");
    EXPECT_EQ(callsOf(byLoc[0]),
              (std::vector<std::string>{"DL/OE1ABC JN88EE", "OE1ABC/P JN88EE", "OE1ABCD JN88EE"}));
    EXPECT_EQ(byLoc[1].qso.call, "ZZ9ZZ");

    // A log without doubts gives no group.
    EXPECT_TRUE(compareWithCallDb(img, {rows[0], rows[2]}, k144, 1, CompareBy::Call).empty());
}
