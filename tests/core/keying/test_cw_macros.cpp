#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/keying/cw_macros.h"
#include "core/keying/morse_table.h"

using namespace orv;
using namespace orv::keying;

namespace {

QsoFields qso() {
    QsoFields f;
    f.ownCall = "DL0XYZ";
    f.call = "OK1KKW";
    f.ownLocator = "JO62QM";
    f.locator = "JO70FD";
    f.rstSent = "599";
    f.rstNr = "599001";
    f.qsoNr = "007";
    f.time = "14:05";
    f.contestDate = DateTime{2026, 5, 2, 0, 0, 0};
    return f;
}

} // namespace

TEST(CwMacros, TypedInputTakesTheTableWithBracketsAndWithoutBang) {
    EXPECT_EQ(filterTyped("cq de dl0xyz <mycal> pse k!"), "CQ DE DL0XYZ <MYCAL> PSE K");
    EXPECT_EQ(filterTyped("àäöüß é\"#$%&*\t"), "ÀÄÖÜß É");
    struct Case {
        unsigned char c;
        bool cwText, memory;
    };
    const std::vector<Case> cases = {
        {'a', true, true}, {'<', true, true},   {'!', false, false}, {'"', false, false},
        {8, true, true},   {13, true, true},    {22, false, true},   {26, false, true},
        {1, false, true},  {223, true, true},   {199, false, false}, {'*', false, false},
        {'@', true, true}, {'[', false, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.c));
        EXPECT_EQ(isTypedInput(c.c, false), c.cwText);
        EXPECT_EQ(isTypedInput(c.c, true), c.memory);
    }
}

TEST(CwMacros, CheckRefusesMalformedMacrosWithTheirSelection) {
    struct Case {
        const char* text;
        bool ok;
        const char* cleaned;
        int selStart, selLength;
    };
    const std::vector<Case> cases = {
        {"cq <mycal> test", true, "CQ <MYCAL> TEST", 0, 0},
        {"<qkrst> <qdate>", true, "<QKRST> <QDATE>", 0, 0},
        {"TU <ABCDE>", false, "", 9, 1},
        {"<ABC", false, "", 0, 4},
        {"73 <MYCAL", false, "", 3, 6},
        {"X >", false, "", 2, 1},
        {"59 # 9", true, "59  9", 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const auto r = checkMacros(c.text);
        EXPECT_EQ(r.ok, c.ok);
        EXPECT_EQ(r.text, c.cleaned);
        if (!c.ok) {
            EXPECT_EQ(r.selStart, c.selStart);
            EXPECT_EQ(r.selLength, c.selLength);
        }
    }
}

TEST(CwMacros, ExpandsInTableOrderAndRefusesShortValues) {
    struct Case {
        const char* name;
        const char* text;
        void (*change)(QsoFields&);
        const char* result; // nullptr: refused
        const char* focus;
    };
    const std::vector<Case> cases = {
        {"all", "<YOCAL> DE <MYCAL> <QSRST><QSONR> <MYLOC> <YOLOC> <RSTNR> <QTIME> <QDATE>",
         [](QsoFields&) {}, "OK1KKW DE DL0XYZ 599007 JO62QM JO70FD 599001 1405 20260502", ""},
        {"cut 599", "<QKRST>", [](QsoFields&) {}, "5NN", ""},
        {"cut 59", "<QKRST>", [](QsoFields& f) { f.rstSent = "59"; }, "5N", ""},
        {"twice", "<YOCAL> <YOCAL>", [](QsoFields&) {}, "OK1KKW OK1KKW", ""},
        {"empty call", "<YOCAL>", [](QsoFields& f) { f.call = ""; }, nullptr, "Text3"},
        {"two-letter call", "<YOCAL>", [](QsoFields& f) { f.call = "OK"; }, nullptr, "Text3"},
        {"short locator", "<YOLOC>", [](QsoFields& f) { f.locator = "JO7"; }, nullptr, "Text7"},
        {"short report", "<RSTNR>", [](QsoFields& f) { f.rstNr = "5900"; }, nullptr, "Text6"},
        {"no number", "<QSONR>", [](QsoFields& f) { f.qsoNr = " "; }, nullptr, ""},
        {"locked time", "<QTIME>",
         [](QsoFields& f) {
             f.time = "";
             f.timeLocked = true;
         },
         nullptr, ""},
        {"open time", "<QTIME>", [](QsoFields& f) { f.time = ""; }, nullptr, "Text2"},
        {"date always", "<QDATE>",
         [](QsoFields& f) {
             f = QsoFields{};
             f.contestDate = DateTime{2026, 12, 24, 0, 0, 0};
         },
         "20261224", ""},
        // A value holding a later macro is expanded at that macro's turn; its
        // own macro is not expanded again.
        {"value with macros", "<YOCAL>", [](QsoFields& f) { f.call = "<YOCAL><MYLOC>"; },
         "<YOCAL>JO62QM", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        QsoFields f = qso();
        c.change(f);
        const auto r = expandMacros(c.text, f);
        if (c.result) {
            ASSERT_TRUE(r.ok());
            EXPECT_EQ(*r, c.result);
        } else {
            ASSERT_FALSE(r.ok());
            EXPECT_EQ(r.failure().text, 360);
            EXPECT_EQ(r.failure().field, c.focus);
        }
    }
    // The preview takes every value as it is.
    QsoFields empty;
    EXPECT_EQ(*expandMacros("<YOCAL>.", empty, false), ".");
}

TEST(CwMacros, OnlyMorseCharactersReachTheEngine) {
    EXPECT_EQ(sendableAnsi("cq <de> \"dl0xyz\" # ä!"), toAnsi("CQ DE DL0XYZ  Ä!"));
    for (char c : sendableAnsi("ab\x01<>*#$%&\"\t0à"))
        EXPECT_TRUE(MorseTable::instance().has(static_cast<unsigned char>(c)));
}

TEST(CwMacros, SendGuardAndCaptions) {
    struct Case {
        bool sending, panel;
        BeaconView beacon;
        bool may;
    };
    const std::vector<Case> cases = {
        {false, false, {}, true},
        {true, false, {}, false},
        {false, true, {}, false},
        {false, false, {true, true, true}, false},
        {false, false, {false, false, true}, false},
        {false, false, {false, true, false}, false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(maySend(c.sending, c.panel, c.beacon), c.may);
    EXPECT_EQ(slotCaption(0, true, "CQ"), "[F1]  CQ");
    EXPECT_EQ(slotCaption(10, true, "TU"), "[F11]  TU");
    EXPECT_EQ(slotCaption(3, false, "TU"), "TU");
}
