#include <gtest/gtest.h>

#include "core/stationlog/entry_check.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

StationEntry valid() {
    StationEntry e;
    e.date = "2026-05-02";
    e.time = "12:34";
    e.call = "dl1abc";
    e.rstRx = "59";
    e.rstTx = "57";
    e.qrgTx = "144.300";
    e.txMode = "SSB";
    return e;
}

} // namespace

// The checks come in their order: each case breaks one field of an
// otherwise good entry, or an earlier one as well, and the first broken
// field names the text and the focus.
TEST(StationEntryCheck, RefusalsInOrderWithTextAndFocus) {
    struct Case {
        const char* what;
        void (*breakIt)(StationEntry&);
        int text;
        const char* field;
    };
    const std::vector<Case> cases{
        {"no date", [](StationEntry& e) { e.date = ""; }, 13, "Text1"},
        {"bad date", [](StationEntry& e) { e.date = "2026-02-30"; }, 13, "Text1"},
        {"date before time", [](StationEntry& e) { e.date = "x", e.time = "x"; }, 13, "Text1"},
        {"bad time", [](StationEntry& e) { e.time = "25:00"; }, 14, "Text2"},
        {"no time", [](StationEntry& e) { e.time = " "; }, 14, "Text2"},
        {"short call", [](StationEntry& e) { e.call = "DL"; }, 1, "Text3"},
        {"long call", [](StationEntry& e) { e.call = "DL1ABCDEFGHIJKLM"; }, 1, "Text3"},
        {"call before report", [](StationEntry& e) { e.call = "", e.rstRx = "x"; }, 1, "Text3"},
        {"report received", [](StationEntry& e) { e.rstRx = "5x"; }, 4, "Text4"},
        {"report too long", [](StationEntry& e) { e.rstRx = "5999"; }, 4, "Text4"},
        {"report given", [](StationEntry& e) { e.rstTx = "5"; }, 4, "Text5"},
        {"no frequency", [](StationEntry& e) { e.qrgTx = "  "; }, 381, "Combo6"},
        {"frequency before mode", [](StationEntry& e) { e.qrgTx = "", e.txMode = ""; }, 381,
         "Combo6"},
        {"no mode", [](StationEntry& e) { e.txMode = ""; }, 382, "Combo4"},
    };
    for (const auto& c : cases) {
        StationEntry e = valid();
        c.breakIt(e);
        const auto r = checkStationEntry(e);
        ASSERT_FALSE(r.ok()) << c.what;
        EXPECT_EQ(r.failure().text, c.text) << c.what;
        EXPECT_EQ(r.failure().field, c.field) << c.what;
    }
}

TEST(StationEntryCheck, AcceptedEntryIsTrimmedFoldedAndCutToTheFields) {
    StationEntry e = valid();
    e.date = "02.05.2026";
    e.time = "7:05";
    e.rstRx = "";
    e.rstTx = "599";
    e.locator = " jo62qm ";
    e.prop = "es";
    e.qsl = "Y";
    e.myCall = "dl0xyz";
    e.myLocator = "jn58td";
    e.name = std::string(40, 'n');
    e.antenne = "Yagi 9 el.";
    e.power = "1000000W";
    const auto r = checkStationEntry(e);
    ASSERT_TRUE(r.ok()) << r.failure().text;
    const StationQso& q = r.value();
    EXPECT_EQ(q.nr, 0);
    EXPECT_EQ(q.dateTime, (DateTime{2026, 5, 2, 7, 5, 0}));
    EXPECT_EQ(q.call, "DL1ABC");
    EXPECT_EQ(q.rstRx, "");
    EXPECT_EQ(q.rstTx, "599");
    EXPECT_EQ(q.locator, "JO62QM");
    EXPECT_EQ(q.prop, "ES");
    EXPECT_EQ(q.myCall, "DL0XYZ");
    EXPECT_EQ(q.myLocator, "JN58TD");
    EXPECT_EQ(q.name, std::string(30, 'n'));
    EXPECT_EQ(q.power, "100000");
    // The boxes of a stored record give the same record back.
    EXPECT_EQ(checkStationEntry(entryOf(q)).value(), q);
}

TEST(StationEntryCheck, NewLogNamesGetTheirEndingOnceAndBadNamesAreRefused) {
    const std::filesystem::path dir = "/data/QjLog";
    EXPECT_EQ(stationLogFile(dir, " Home ").value(), dir / "Home.sqlite");
    EXPECT_EQ(stationLogFile(dir, "Home.SQLite").value(), dir / "Home.SQLite");
    EXPECT_EQ(stationLogFile(dir, "Home.MDB").value(), dir / "Home.MDB.sqlite");
    for (const char* bad : {"", "a/b", "a:b", "what?", "x*"})
        EXPECT_EQ(stationLogFile(dir, bad).failure().text, 7) << bad;
    EXPECT_EQ(proposedStationLogName("OrvantaLog", DateTime{2026, 11, 22, 9, 0, 0}),
              "OrvantaLog20261122");
}
