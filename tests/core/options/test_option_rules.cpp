#include <gtest/gtest.h>

#include "core/keying/cw_settings.h"
#include "core/options/option_rules.h"
#include "core/options/port_choice.h"
#include "support/temp_dir.h"

using namespace orv;
using namespace orv::options;

namespace {
int refusal(const Status& s) {
    return s ? 0 : s.failure().text;
}
} // namespace

// Each page's check with its text: 0 means accepted.
TEST(OptionRules, ChecksRefuseWithTheirTexts) {
    test::TempDir dir;
    const std::string folder = dir.path().string();
    struct Case {
        const char* what;
        Status status;
        int text;
    };
    const Case cases[] = {
        {"mode of five", checkModeName("JT65A"), 0},
        {"mode of six", checkModeName("OLIVIA"), 178},
        {"mode of five umlauts", checkModeName("ÄÖÜÄÖ"), 0},
        {"blank mode", checkModeName("   "), 178},
        {"keyed modes", checkKeyedModes("SSB", "CW"), 0},
        {"no two-digit mode", checkKeyedModes(" ", "CW"), 61},
        {"no three-digit mode", checkKeyedModes("SSB", ""), 62},
        {"speed 5", checkWpm(5), 0},
        {"speed 60", checkWpm(60), 0},
        {"no speed", checkWpm(0), row::kChooseSpeed},
        {"speed 480", checkWpm(480), row::kChooseSpeed},
        {"pause 1", checkLoopPause(1), 0},
        {"pause 61", checkLoopPause(61), 245},
        {"pause 0", checkLoopPause(0), 245},
        {"backup on", checkBackup(folder, true, 30), 0},
        {"backup off without folder", checkBackup("", false, 30), 0},
        {"backup on without folder", checkBackup("", true, 30), row::kBadBackupFolder},
        {"backup into a gone folder", checkBackup(folder + "/gone", true, 5),
         row::kBadBackupFolder},
        {"interval 0", checkBackup(folder, true, 0), row::kBadBackupInterval},
        {"interval 1441", checkBackup(folder, false, 1441), row::kBadBackupInterval},
        {"propagation", checkPropagation("TR"), 0},
        {"empty propagation", checkPropagation(" "), row::kBadPropagation},
    };
    for (const Case& c : cases)
        EXPECT_EQ(refusal(c.status), c.text) << c.what;
}

TEST(OptionRules, ContestDefinitionNeedsAFreeName) {
    const std::vector<ContestDef> defs{{{}, "IARU VHF"}, {{}, "Aktivität"}};
    EXPECT_EQ(refusal(checkContestDef(defs, {{}, "Nacht"}, -1)), 0);
    EXPECT_EQ(refusal(checkContestDef(defs, {{}, "iaru vhf "}, -1)), 74);
    EXPECT_EQ(refusal(checkContestDef(defs, {{}, "IARU VHF"}, 0)), 0); // itself
    EXPECT_EQ(refusal(checkContestDef(defs, {{}, "Aktivität"}, 0)), 74);
    EXPECT_EQ(refusal(checkContestDef(defs, {{}, " "}, -1)), 28);
    for (const auto& [typed, value] : std::vector<std::pair<const char*, int>>{
             {"0", 0}, {" 32767", 32767}, {"32768", -1}, {"-1", -1}, {"1.5", -1}, {"", -1}}) {
        const auto w = parseWeight(typed);
        EXPECT_EQ(w ? *w : -1, value) << typed;
    }
}

TEST(OptionRules, CwEndAndTimeOffsetForms) {
    EXPECT_EQ(cwEndText("tu 73 {}\t"), "TU 73");
    EXPECT_EQ(cwEndText("~~"), "");
    const std::pair<int, const char*> shown[] = {{0, "+0:00h"}, {2, "+2:00h"}, {-11, "-11:00h"}};
    for (const auto& [h, text] : shown) {
        EXPECT_EQ(zeitPlusMinusText(h), text);
        EXPECT_EQ(parseZeitPlusMinus(text), h);
    }
    for (const char* bad : {"", "+", "24:00h", "1:30h", "x"})
        EXPECT_FALSE(parseZeitPlusMinus(bad)) << bad;
    EXPECT_EQ(parseZeitPlusMinus("-3"), -3);
}

TEST(PortChoice, NumbersOfDevices) {
    test::TempDir dir;
    Settings s{IniFile(dir / "OrvantaContest.INI")};
    keying::setComDevice(s, 3, "/dev/serial/by-id/usb-FTDI-if00");
    const auto there = [](const std::string& d) { return d == "/dev/ttyS0" || d == "/dev/ttyS1"; };
    EXPECT_EQ(comNumberFor(s, "/dev/serial/by-id/usb-FTDI-if00", there), 3);
    EXPECT_EQ(comNumberFor(s, "/dev/ttyS1", there), 2);
    // A new device takes the first number that stands for nothing there.
    EXPECT_EQ(comNumberFor(s, "/dev/ttyUSB0", there), 4);
    EXPECT_EQ(keying::comDevice(s, 4), "/dev/ttyUSB0");
    EXPECT_EQ(comNumberFor(s, "/dev/ttyUSB0", there), 4);
    EXPECT_EQ(comNumberFor(s, "/dev/ttyACM0", there), 5);
}
