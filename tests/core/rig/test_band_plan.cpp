#include <gtest/gtest.h>

#include "core/rig/band_plan.h"
#include "core/rig/rig_settings.h"
#include "core/rig/turn_target.h"
#include "support/temp_dir.h"

using namespace orv;
using namespace orv::rig;

namespace {
constexpr int k2m = 1, k70cm = 2, k10G = 7;
}

TEST(RigBandPlan, FrequencyGivesTheBandAfterTheTransverterOffset) {
    TransverterOffsets none{};
    TransverterOffsets tenGig{};
    tenGig[k10G] = 10224; // 10 GHz transverter on a 2 m IF
    struct Case {
        std::int64_t hz;
        const TransverterOffsets* offsets;
        std::optional<int> current;
        std::optional<int> band;
    };
    const Case cases[] = {
        {432'200'000, &none, std::nullopt, k70cm},
        {144'300'000, &none, std::nullopt, k2m},
        {50'150'000, &none, std::nullopt, 0},
        {47'088'000'000, &none, std::nullopt, 9},
        {145'000'000, &none, k70cm, k2m},                // the window's band does not hold it
        {14'200'000, &none, std::nullopt, std::nullopt}, // short wave: no band
        {0, &none, std::nullopt, std::nullopt},
        {144'200'000, &tenGig, std::nullopt, k10G}, // the transverter is what the rig means
        {144'200'000, &tenGig, k70cm, k10G},
        {144'200'000, &tenGig, k2m, k2m}, // working 2 m directly stays there
        {432'100'000, &tenGig, k10G, k70cm},
        {50'150'000, &tenGig, std::nullopt, 0}, // 10274 MHz, but 50 MHz is no IF of it
        {155'000'000, &tenGig, std::nullopt, std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.hz);
        EXPECT_EQ(bandOfFrequency(c.hz, *c.offsets, c.current), c.band);
    }
    EXPECT_EQ(bandFrequency(144'200'000, tenGig, k10G), 10'368'200'000);
    EXPECT_EQ(formatMHz(10'368'200'000), "10368.200");
    EXPECT_EQ(formatMHz(432'088'500), "432.088");
}

TEST(RigBandPlan, RigModesBecomeTheProgramsModes) {
    const std::pair<const char*, const char*> cases[] = {
        {"USB", "SSB"},    {"LSB", "SSB"}, {"CW", "CW"},       {"CWR", "CW"},
        {"FM", "FM"},      {"WFM", "FM"},  {"AM", "AM"},       {"RTTY", "RTTY"},
        {"PKTUSB", "SSB"}, {"usb", "SSB"}, {"DSTAR", "DSTAR"}, {"", ""},
    };
    for (const auto& [rigMode, mode] : cases)
        EXPECT_EQ(programMode(rigMode), mode) << rigMode;
}

TEST(RigSettings, SectionsOfOurOwnRoundTripAndRefuseBadValues) {
    test::TempDir dir;
    Settings s{IniFile{dir / "OrvantaContest.INI"}};
    EXPECT_EQ(readRigSettings(s), DeviceSettings{}); // network model, off
    const DeviceSettings rot{true, 2, "127.0.0.1:4533", 0};
    const DeviceSettings rig{true, 1035, "/dev/ttyUSB0", 38400};
    writeRotatorSettings(s, rot);
    writeRigSettings(s, rig);
    TransverterOffsets o{};
    o[k10G] = 10224;
    o[k70cm] = -0.5;
    writeTransverterOffsets(s, o);

    Settings again{IniFile{dir / "OrvantaContest.INI"}};
    EXPECT_EQ(readRotatorSettings(again), rot);
    EXPECT_EQ(readRigSettings(again), rig);
    EXPECT_EQ(readTransverterOffsets(again), o);
    EXPECT_EQ(again.get(StrSetting{"Rig", "Offset10000"}), "10224");

    const std::pair<const char*, std::optional<double>> offsets[] = {
        {"10224", 10224.0},       {" 10224,5 ", 10224.5}, {"-116", -116.0},      {"", std::nullopt},
        {"10 GHz", std::nullopt}, {"1e9", std::nullopt},  {"nan", std::nullopt},
    };
    for (const auto& [textIn, value] : offsets)
        EXPECT_EQ(parseOffsetMHz(textIn), value) << textIn;

    const std::pair<const char*, bool> daemons[] = {
        {"127.0.0.1:4533", true}, {"rotor.local:4533", true}, {"127.0.0.1", false},
        {":4533", false},         {"host:0", false},          {"host:70000", false},
        {"host:45x", false},
    };
    for (const auto& [textIn, ok] : daemons)
        EXPECT_EQ(parseHostPort(textIn).has_value(), ok) << textIn;
}

TEST(RigTurnTarget, DegreesAsGivenOrTheBearingOfALocator) {
    struct Case {
        const char* own;
        const char* target;
        std::optional<double> deg;
    };
    const Case cases[] = {
        {"JN78DF", "JN88EF", 89.2},        {"JN78DF", "jn88ef", 89.2},
        {"JN78DF", "IO91VL", 294.6},       {"JN78DF", "164", 164.0},
        {"JN78DF", "164.5", 164.5},        {"JN78DF", "0", 0.0},
        {"JN78DF", "360", 360.0},          {"JN78DF", "361", std::nullopt},
        {"JN78DF", "-5", std::nullopt},    {"JN78DF", "JS88EF", std::nullopt},
        {"JN78DF", "JN88E", std::nullopt}, {"", "JN88EF", std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.own) + " " + c.target);
        const auto t = turnTarget(c.own, c.target);
        ASSERT_EQ(t.has_value(), c.deg.has_value());
        if (t) {
            EXPECT_NEAR(*t, *c.deg, 0.01);
        }
    }
}
