#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/logstore/log_setup.h"
#include "core/logstore/schema.h"
#include "core/settings/settings.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

NewLogForm goodForm() {
    return {"IARU VHF", " dl1abc ", "jo62qm", "144", "SSB"};
}

ContestData contest() {
    ContestData c;
    c.ContestName = "IARU VHF";
    c.Zaehl = {1, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    return c;
}

} // namespace

TEST(LogSetup, TestenChecksInItsOrder) {
    struct Case {
        const char* what;
        NewLogForm form;
        int text;
        const char* field;
    };
    const std::vector<Case> cases{
        {"all good", goodForm(), 0, ""},
        {"no contest before a bad call", {"", "D", "x", "", ""}, 28, "Combo4"},
        {"a blank contest name counts", {" ", "DL1ABC", "JO62QM", "144", "SSB"}, 0, ""},
        {"call of two after trimming", {"C", "  DL ", "JO62QM", "144", "SSB"}, 1, "Text1"},
        {"call of three", {"C", "DL1", "JO62QM", "144", "SSB"}, 0, ""},
        {"short locator before band", {"C", "DL1ABC", "JO62Q", "", ""}, 2, "Text2"},
        {"locator with a bad letter", {"C", "DL1ABC", "JO62QZ", "144", "SSB"}, 2, "Text2"},
        {"locator with a digit out of place", {"C", "DL1ABC", "J062QM", "144", "SSB"}, 2, "Text2"},
        {"locator of seven", {"C", "DL1ABC", "JO62QMA", "144", "SSB"}, 2, "Text2"},
        {"no band", {"C", "DL1ABC", "JO62QM", "", ""}, 15, "Combo1"},
        {"no mode", {"C", "DL1ABC", "JO62QM", "144", ""}, 16, "Combo3"},
    };
    for (const auto& c : cases) {
        const Status s = Testen(c.form);
        EXPECT_EQ(s.ok(), c.text == 0) << c.what;
        if (!s.ok()) {
            EXPECT_EQ(s.failure().text, c.text) << c.what;
            EXPECT_EQ(s.failure().field, c.field) << c.what;
        }
    }
}

TEST(LogSetup, LogNameRules) {
    struct Case {
        std::string name;
        bool ok;
    };
    std::vector<Case> cases{
        {"20260502", true},
        {"IARU 2026 Mai", true},
        {"Ölfeld-Contest (Abend) #2", true}, // Latin-1 letters are below 256
        {"", false},
        {"a/b", false},
        {"a\\b", false},
        {"a:b", false},
        {"a<b", false},
        {"a>b", false},
        {"a?b", false},
        {"a|b", false},
        {"a\"b", false},
        {"a*b", false},
        {"tab\there", false},
        {std::string("x\x01y"), false},
        {"x\x1fy", false},
        {"euro €", false},   // U+20AC is above 255
        {"\xff\xfe", false}, // not UTF-8 at all
        {std::string(248, 'a'), true},
        {std::string(249, 'a'), false}, // with ".sqlite" too long for the file system
        {std::string(251, 'a'), false},
    };
    // Code points, not bytes, count for the 250: 124 umlauts are 248 bytes.
    std::string umlauts;
    for (int i = 0; i < 124; ++i)
        umlauts += "ä";
    cases.push_back({umlauts, true});
    for (const auto& c : cases) {
        const Status s = checkLogName(c.name);
        EXPECT_EQ(s.ok(), c.ok) << c.name;
        if (!s.ok()) {
            EXPECT_EQ(s.failure().text, 7) << c.name;
        }
    }
    EXPECT_EQ(proposedLogName(DateTime{2026, 5, 2, 23, 59, 0}), "20260502");
}

TEST(LogSetup, TimeOffsets) {
    const auto list = timeOffsetList();
    ASSERT_EQ(list.size(), 25u);
    EXPECT_EQ(list.front(), "-12:00h");
    EXPECT_EQ(list[11], "-1:00h");
    EXPECT_EQ(list[12], "00:00h");
    EXPECT_EQ(list[13], "+1:00h");
    EXPECT_EQ(list.back(), "+12:00h");
    for (int i = 0; i < 25; ++i) {
        EXPECT_EQ(parseTimeOffset(list[static_cast<std::size_t>(i)]), i - 12);
        EXPECT_EQ(timeOffsetIndex(i - 12), i);
    }
    EXPECT_EQ(timeOffsetIndex(30), 24);
}

TEST(LogSetup, NewLogIsCheckedCreatedAndNeverOverwrittenUnasked) {
    test::TempDir dir;
    const auto logs = dir / "Logs";
    NewLogForm bad = goodForm();
    bad.myCall = "DL";
    auto refused = createNewLog(logs, "Test", bad, contest(), false);
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.failure().text, 1);
    EXPECT_EQ(createNewLog(logs, "a/b", goodForm(), contest(), false).failure().text, 7);
    EXPECT_FALSE(std::filesystem::exists(logs / "Test.sqlite"));

    {
        auto made = createNewLog(logs, "Test", goodForm(), contest(), false);
        ASSERT_TRUE(made.ok());
        made.value().addQso(1, QsoRow{}, BandTotals{5, 5, 1});
        const MyDataRow d = made.value().myData();
        EXPECT_EQ(d.myCall, "DL1ABC");
        EXPECT_EQ(d.myLocator, "JO62QM");
        EXPECT_EQ(d.contName, "IARU VHF");
        EXPECT_EQ(d.zaehl[3], 3);
    }
    auto again = createNewLog(logs, "Test", goodForm(), contest(), false);
    ASSERT_FALSE(again.ok());
    EXPECT_EQ(again.failure().text, 8);
    EXPECT_EQ(openLog(logs / "Test.sqlite").value().log.rowCount(1), 1) << "left as it was";

    auto replaced = createNewLog(logs, "Test", goodForm(), contest(), true);
    ASSERT_TRUE(replaced.ok());
    EXPECT_EQ(replaced.value().rowCount(1), 0);
    EXPECT_EQ(listLogs(logs), std::vector<std::string>{"Test"});
    EXPECT_TRUE(listLogs(dir / "missing").empty());
}

TEST(LogSetup, OpeningReadsStationContestAndBands) {
    test::TempDir dir;
    const auto path = dir / "Old.sqlite";
    {
        sql::Db db(path.string());
        NewQbLogBD(db);
        // An older log: MyData with weights left Null.
        db.exec("INSERT INTO MyData (MyCall, MyLocator, ContName, Zaehl432) "
                "VALUES ('OE1XYZ', 'JN88EF', 'Alt', 4)");
        db.exec("INSERT INTO \"1200MHz\" (Call, ErrQSO) VALUES ('DL1ABC', 1)");
    }
    auto opened = openLog(path);
    ASSERT_TRUE(opened.ok());
    const OpenedLog& o = opened.value();
    EXPECT_EQ(o.myCall, "OE1XYZ");
    EXPECT_EQ(o.myLocator, "JN88EF");
    EXPECT_EQ(o.contest.ContestName, "Alt");
    EXPECT_EQ(o.contest.Zaehl, (std::array<int, kBandCount>{1, 1, 4, 1, 1, 1, 1, 1, 1, 1}));
    // A band whose only QSO is deleted still counts as a band with QSOs.
    EXPECT_EQ(o.bandsWithQsos, (std::array<bool, kBandCount>{false, false, false, true, false,
                                                             false, false, false, false, false}));
}

TEST(LogSetup, ClosingTheChooserRemembersCallsNewestFirstAtMostTen) {
    test::TempDir dir;
    Settings settings{IniFile(dir / "OrvantaContest.INI")};
    LogChoice choice;
    choice.zeitPlusMinus = -2;
    choice.myLocator = "jo62qm";
    choice.modeIndex = 1;
    choice.contest = contest();
    for (int i = 0; i < 12; ++i) {
        choice.myCall = "dl" + std::to_string(i) + "abc";
        saveLogChoice(settings, choice);
    }
    choice.myCall = "DL5ABC";
    saveLogChoice(settings, choice);
    EXPECT_EQ(settings.callList(),
              (std::vector<std::string>{"DL5ABC", "DL11ABC", "DL10ABC", "DL9ABC", "DL8ABC",
                                        "DL7ABC", "DL6ABC", "DL4ABC", "DL3ABC", "DL2ABC"}));
    const IniFile& ini = settings.file();
    EXPECT_EQ(ini.getStr("QB", "MyCall"), "DL5ABC");
    EXPECT_EQ(ini.getStr("QB", "MyLocator"), "JO62QM");
    EXPECT_EQ(ini.getInt("QB", "ZeitPlusMinus"), -2);
    EXPECT_EQ(ini.getInt("QB", "Mode"), 1);
    EXPECT_EQ(ini.getStr("AConDat", "CName"), "IARU VHF");
    EXPECT_EQ(ini.getInt("AConDat", "C9"), 9);
}
