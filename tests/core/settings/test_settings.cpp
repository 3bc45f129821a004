#include <gtest/gtest.h>

#include "core/settings/settings.h"
#include "support/fakes.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

struct Fixture {
    test::TempDir dir;
    test::CountingBeeper beeper;
    Settings settings{IniFile{dir / "OrvantaContest.INI", &beeper}};

    void put(const std::string& content) { test::writeFile(settings.file().path(), content); }
    std::string content() const { return test::readFile(settings.file().path()); }
};

} // namespace

TEST(Settings, NumbersFollowTheirDefaultAndRangeRules) {
    struct Case {
        const IntSetting& setting;
        const char* stored; // nullptr: key absent
        long long expected;
    } cases[] = {
        {keys::Zeitbereich, nullptr, 60},
        {keys::Zeitbereich, "0", 60},
        {keys::Zeitbereich, "1", 1},
        {keys::Zeitbereich, "60000", 60000},
        {keys::Zeitbereich, "60001", 60},
        {keys::Zeitbereich, "70000", 60},
        {keys::Zeitbereich, "-5", 60},
        {keys::ZeigerMAX, nullptr, 10},
        {keys::ZeigerMAX, "0", 10},
        {keys::ZeigerMAX, "60000", 60000},
        {keys::ZeigerMAX, "60001", 10},
        {keys::ZeigerMAX, "25", 25},
        {keys::LoopPause, "0", 1},
        {keys::LoopPause, "61", 1},
        {keys::LoopPause, "60", 60},
        {keys::LoopPause, "7", 7},
        {keys::CWLoopPause, nullptr, 1},
        {keys::CWLoopPause, "61", 1},
        {keys::CWLoopPause, "30", 30},
        {keys::MaxBake, nullptr, 100},
        {keys::MaxBake, "0", 100},
        {keys::MaxBake, "5", 5},
        {keys::SichernIntervall, "0", 30},
        {keys::SichernIntervall, "15", 15},
        {keys::ZeitPlusMinus, "-3", -3},
        {keys::ZeitPlusMinus, "zwei", 0},
        {keys::COM, "4", 4},
        {keys::COM, "COM4", 0},
        {keys::Einverstanden, "-1", -1},
        {keys::StartQRG, "3x", 3},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.setting.key + "=" + (c.stored ? c.stored : "(absent)"));
        Fixture f;
        f.put("[" + c.setting.section + "]\n" +
              (c.stored ? c.setting.key + "=" + c.stored + "\n" : std::string()));
        EXPECT_EQ(f.settings.get(c.setting), c.expected);
    }
}

TEST(Settings, ContestWeightsAreAtLeastOne) {
    Fixture f;
    f.put("[AConDat]\nC0=0\nC1=3\nC2=-2\nCName=IARU\n");
    EXPECT_EQ(f.settings.get(keys::C(0)), 1);
    EXPECT_EQ(f.settings.get(keys::C(1)), 3);
    EXPECT_EQ(f.settings.get(keys::C(2)), 1);
    EXPECT_EQ(f.settings.get(keys::C(9)), 1);
    EXPECT_EQ(f.settings.get(keys::CName), "IARU");
}

TEST(Settings, TextsTakeTheirFallbackWhenEmptyAndSomeAreUpperCased) {
    Fixture f;
    f.put("[QB-OPTION]\nMode2St=\nMode3St= RTTY \n");
    EXPECT_EQ(f.settings.get(keys::Mode2St), "SSB");
    EXPECT_EQ(f.settings.get(keys::Mode3St), "RTTY");
    EXPECT_EQ(f.settings.get(keys::Language), "");

    f.settings.set(keys::MyCall, " dl1abc/p ");
    f.settings.set(keys::MyLocator, "jo62qm");
    f.settings.set(keys::Prop, "tropo");
    f.settings.set(keys::OPCall, "dk2xy");
    f.settings.set(keys::CWEND, "tu sk");
    EXPECT_EQ(f.settings.get(keys::MyCall), "DL1ABC/P");
    EXPECT_EQ(f.settings.get(keys::MyLocator), "JO62QM");
    EXPECT_EQ(f.settings.get(keys::Prop), "TROPO");
    EXPECT_EQ(f.settings.get(keys::OPCall), "DK2XY");
    EXPECT_EQ(f.settings.get(keys::CWEND), "tu sk");
    EXPECT_NE(f.content().find("[QB]\nMyCall=DL1ABC/P\n"), std::string::npos);
}

TEST(Settings, FlagsAreNonZeroAndWrittenAsMinusOne) {
    Fixture f;
    f.put("[QB-OPTION]\nSSBCWFlip=1\nZeitEdit=0\nAntenneKomma=-1\n");
    EXPECT_TRUE(f.settings.get(keys::SSBCWFlip));
    EXPECT_FALSE(f.settings.get(keys::ZeitEdit));
    EXPECT_TRUE(f.settings.get(keys::AntenneKomma));
    EXPECT_FALSE(f.settings.get(keys::SichernungsArt));
    f.settings.set(keys::ZeitEdit, true);
    f.settings.set(keys::SSBCWFlip, false);
    EXPECT_NE(f.content().find("SSBCWFlip=0\nZeitEdit=-1\n"), std::string::npos);
}

TEST(Settings, ColoursParseTheOldFormsAndOnlyEmptyMeansDefault) {
    struct Case {
        const char* stored;
        std::optional<std::uint32_t> bgr;
    } cases[] = {
        {"&H80C0FF", 0x80C0FF},
        {"&h80c0ff&", 0x80C0FF},
        {"&HFF", 0xFF},
        {"14737632", 0xE0E0E0},
        {"0", 0},
        {"&H0", 0},
        {"", std::nullopt},
        {"rot", std::nullopt},
        {"&H1000000", std::nullopt},
        {"-1", std::nullopt},
        {"&HXY", std::nullopt},
        {"&H", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.stored);
        const auto parsed = parseColour(c.stored);
        ASSERT_EQ(parsed.has_value(), c.bgr.has_value());
        if (c.bgr) {
            EXPECT_EQ(parsed->bgr(), *c.bgr);
        }
    }
    // BGR order: the low byte is red.
    const Colour orange = *parseColour("&H80C0FF");
    EXPECT_EQ(orange, (Colour{0xFF, 0xC0, 0x80}));
    EXPECT_EQ(formatColour(orange), "&H80C0FF");
    EXPECT_EQ(formatColour(Colour{1, 2, 3}), "&H030201");

    Fixture f;
    f.put("[QB-OPTION]\nFarbeAktiv=\nFarbeNoEdit=0\n");
    EXPECT_EQ(f.settings.get(keys::FarbeAktiv).bgr(), 0x80C0FFu);
    EXPECT_EQ(f.settings.get(keys::FarbeNoEdit).bgr(), 0u) << "black is a colour, not a default";
    EXPECT_EQ(f.settings.get(keys::FarbeInAktiv).bgr(), 0xE0E0E0u);
    EXPECT_EQ(f.settings.get(keys::FarbeBereitsQSO).bgr(), 0xE0E0E0u);
    f.settings.set(keys::FarbeBereitsQSO, Colour{0x10, 0x20, 0x30});
    EXPECT_EQ(f.settings.file().getStr("QB-OPTION", "FarbeBereitsQSO"), "&H302010");
    EXPECT_EQ(f.settings.get(keys::FarbeBereitsQSO), (Colour{0x10, 0x20, 0x30}));
}

TEST(Settings, OperatorListSplitsAtThePilcrow) {
    Fixture f;
    f.put("[OPCallList]\nDL1ABC\xC2\xB6"
          "cq.wav\xC2\xB6"
          "CQ TEST\xC2\xB6"
          "cq1.wav\nDK2XY\n"
          "DF3ZZ\xC2\xB6\xC2\xB6"
          "text\n");
    const auto ops = f.settings.opCalls();
    ASSERT_EQ(ops.size(), 3u);
    EXPECT_EQ(ops[0], (OpCall{"DL1ABC", "cq.wav", "CQ TEST", "cq1.wav"}));
    EXPECT_EQ(ops[1], (OpCall{"DK2XY", "", "", ""}));
    EXPECT_EQ(ops[2], (OpCall{"DF3ZZ", "", "text", ""}));

    f.settings.setOpCalls({{"DL1ABC", "a.wav", "", ""}, {"", "lost.wav", "", ""}, {"DK2XY"}});
    EXPECT_EQ(f.settings.list(section::OPCallList),
              (std::vector<std::string>{"DL1ABC\xC2\xB6"
                                        "a.wav\xC2\xB6\xC2\xB6",
                                        "DK2XY\xC2\xB6\xC2\xB6\xC2\xB6"}));
    EXPECT_EQ(f.settings.opCalls()[0], (OpCall{"DL1ABC", "a.wav", "", ""}));
}

TEST(Settings, EmptyModeListIsRebuiltEvenWithoutAFile) {
    Fixture f;
    EXPECT_EQ(f.settings.modes(), (std::vector<std::string>{"SSB", "CW", "FM"}));
    EXPECT_EQ(f.settings.file().readSection("Mode"), (std::vector<std::string>{"SSB", "CW", "FM"}));
    f.settings.setModes({"SSB", "CW"});
    EXPECT_EQ(f.settings.modes(), (std::vector<std::string>{"SSB", "CW"}));
    EXPECT_EQ(f.content(), "[MODE]\nSSB\nCW\n");
}

TEST(Settings, CallListKeepsTheLatestTenUpperCasedWithoutRepeats) {
    Fixture f;
    for (int i = 0; i < 12; ++i)
        f.settings.rememberCall("dl" + std::to_string(i) + "abc");
    f.settings.rememberCall("DL5ABC");
    const auto calls = f.settings.callList();
    ASSERT_EQ(calls.size(), Settings::kCallListSize);
    EXPECT_EQ(calls[0], "DL5ABC");
    EXPECT_EQ(calls[1], "DL11ABC");
    EXPECT_EQ(calls[9], "DL2ABC"); // DL5ABC moved up: nothing fell out
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "DL5ABC"), 1);
}

TEST(Settings, IndexedKeysLandInTheirSections) {
    Fixture f;
    f.settings.set(keys::Flag(2), 35);
    f.settings.set(keys::FlagBefehl(2), "GET__QTF:");
    f.settings.set(keys::Vo("145 MHz", 3), "JO62QM");
    f.settings.set(keys::ADIFQRG(1), "432.2");
    f.settings.set(keys::C(4), 2);
    EXPECT_EQ(f.settings.file().getInt("DDE", "Flag2"), 35);
    EXPECT_EQ(f.settings.file().getStr("dde", "FLAGBEFEHL2"), "GET__QTF:");
    EXPECT_EQ(f.settings.file().getStr("EDiExport145 MHz", "Vo3"), "JO62QM");
    EXPECT_EQ(f.settings.get(keys::ADIFQRG(1)), "432.2");
    EXPECT_EQ(f.settings.get(keys::C(4)), 2);
    EXPECT_NE(f.content().find("[EDIEXPORT145 MHZ]\nVo3=JO62QM\n"), std::string::npos);
}
