#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

#include "support/hamlib_daemon.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

void writeIni(const test::TempDir& home, const std::string& text) {
    test::writeFile(home / "OrvantaContest.INI", text);
}

double position(const test::TempDir& home, const test::HamlibDaemon& d) {
    const auto r = test::runToolAt(home.path(), {"rotator", "position", "--rotctld", d.hostPort()});
    EXPECT_EQ(r.status, 0) << r.err;
    return std::stod(r.out);
}

} // namespace

TEST(ToolRig, RotatorTurnsToTheBearingOfALocatorFromTheOwnLocator) {
    test::TempDir home;
    writeIni(home, "[QB]\nMyLocator=JN78DF\n");
    test::HamlibDaemon daemon("rotctld");
    const auto r =
        test::runToolAt(home.path(), {"rotator", "turn", "jo80aa", "--rotctld", daemon.hostPort()});
    ASSERT_EQ(r.status, 0) << r.err;
    const double target = std::stod(r.out);
    const auto qrb = test::runToolAt(home.path(), {"qrb", "JN78DF", "JO80AA"});
    EXPECT_EQ(qrb.out.substr(qrb.out.rfind(' ') + 1), r.out); // GradDez, one decimal
    double az = -1;
    for (int i = 0; i < 60 && std::abs(az - target) >= 0.5; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        az = position(home, daemon);
    }
    EXPECT_NEAR(az, target, 0.5);
}

TEST(ToolRig, RefusalsAndUnreachableDevices) {
    test::TempDir home;
    writeIni(home, "[QB]\nMyLocator=JN78DF\n[Rig]\nModel=2\nDevice=127.0.0.1:1\n");
    struct Case {
        std::vector<std::string> args;
        int status;
        const char* errPart;
    };
    const Case cases[] = {
        {{"rotator", "turn", "JS78DF", "--rotctld", "127.0.0.1:4533"}, 2, "Ungültige Richtung"},
        {{"rotator", "turn", "400", "--rotctld", "127.0.0.1:4533"}, 2, "Ungültige Richtung"},
        {{"rotator", "turn", "JO80AA", "--rotctld", "127.0.0.1"}, 2, "Host:Port"},
        {{"rotator", "turn"}, 2, "usage"},
        {{"rotator", "spin", "10"}, 2, "usage"},
        {{"rotator", "position", "--rotctld", "127.0.0.1:1"}, 1, "Rotor nicht erreichbar"},
        {{"rig", "status"}, 1, "Transceiver nicht erreichbar"},
        {{"rig", "status", "--rigctld", "127.0.0.1:1"}, 1, "Transceiver nicht erreichbar"},
        {{"rotator", "turn", "JO80AA", "--log", "Missing", "--rotctld", "127.0.0.1:1"}, 2, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args[0] + " " + c.args[1]);
        const auto r = test::runToolAt(home.path(), c.args);
        EXPECT_EQ(r.status, c.status) << r.err;
        EXPECT_NE(r.err.find(c.errPart), std::string::npos) << r.err;
        EXPECT_EQ(r.out, "");
    }
}

TEST(ToolRig, RigStatusPrintsFrequencyBandAndModeAfterTheTransverterOffset) {
    test::TempDir home;
    test::HamlibDaemon daemon("rigctld");
    writeIni(home, "[Rig]\nModel=2\nDevice=" + daemon.hostPort() + "\nOffset10000=10224\n");
    struct Case {
        const char* freq;
        const char* mode;
        const char* out;
    };
    const Case cases[] = {
        {"F 432200000", "M USB 2400", "432200000\t432\tSSB\n"},
        {"F 144200000", "M LSB 2400", "144200000\t10000\tSSB\n"},
        {"F 14074000", "M CW 500", "14074000\t-\tCW\n"},
    };
    for (const Case& c : cases) {
        daemon.command(c.freq);
        daemon.command(c.mode);
        // The daemon may answer from what it read half a second ago.
        test::ToolRun r;
        for (int i = 0; i < 5 && r.out != c.out; ++i) {
            if (i > 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(200));
            r = test::runToolAt(home.path(), {"rig", "status"});
        }
        EXPECT_EQ(r.status, 0) << r.err;
        EXPECT_EQ(r.out, c.out);
    }
    // The option names the daemon instead of the settings.
    const auto r = test::runToolAt(home.path(), {"rig", "status", "--rigctld", daemon.hostPort()});
    EXPECT_EQ(r.out, "14074000\t-\tCW\n");
}
