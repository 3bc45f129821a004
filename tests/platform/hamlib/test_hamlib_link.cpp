#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <thread>

#include "core/rig/band_plan.h"
#include "core/rig/device_link.h"
#include "core/rig/turn_target.h"
#include "platform/hamlib/hamlib_devices.h"
#include "support/hamlib_daemon.h"

using namespace orv;
using namespace orv::rig;
using namespace std::chrono_literals;

namespace {

const LinkTiming kFast{100ms, 200ms, 3000ms};

bool waitFor(const std::function<bool()>& done, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (std::chrono::steady_clock::now() < end) {
        if (done())
            return true;
        std::this_thread::sleep_for(20ms);
    }
    return done();
}

DeviceSettings daemonAt(const test::HamlibDaemon& d) {
    return DeviceSettings{true, kNetworkModel, d.hostPort(), 0};
}

} // namespace

TEST(HamlibLink, TurnToALocatorEndsAtItsBearing) {
    test::HamlibDaemon daemon("rotctld");
    RotatorLink link(platform::makeHamlibRotator(daemonAt(daemon)), kFast);
    const auto target = turnTarget("JN78DF", "JO80AA");
    ASSERT_TRUE(target);
    link.turnTo(*target);
    // The dummy rotator turns a few degrees a second, as a real one does.
    ASSERT_TRUE(waitFor(
        [&] {
            const auto s = link.snapshot();
            return s.azimuth && std::abs(*s.azimuth - *target) < 0.5;
        },
        30s))
        << "azimuth " << link.snapshot().azimuth.value_or(-1) << " target " << *target;
    // And the daemon itself stands there.
    const std::string p = daemon.command("p");
    EXPECT_NEAR(std::stod(p), *target, 0.5) << p;
}

TEST(HamlibLink, StopHaltsTheTurnHalfway) {
    test::HamlibDaemon daemon("rotctld");
    RotatorLink link(platform::makeHamlibRotator(daemonAt(daemon)), kFast);
    link.turnTo(180);
    ASSERT_TRUE(waitFor([&] { return link.snapshot().azimuth.value_or(0) > 5; }, 10s));
    link.stop();
    std::this_thread::sleep_for(300ms);
    const double stopped = link.snapshot().azimuth.value_or(-1);
    std::this_thread::sleep_for(1s);
    EXPECT_NEAR(link.snapshot().azimuth.value_or(-1), stopped, 0.5);
    EXPECT_LT(stopped, 170);
}

TEST(HamlibLink, RigFrequencyAndModeArriveWithinASecond) {
    test::HamlibDaemon daemon("rigctld");
    RigLink link(platform::makeHamlibRig(daemonAt(daemon)), kFast);
    ASSERT_TRUE(waitFor([&] { return link.snapshot().state == LinkState::Connected; }, 5s));
    TransverterOffsets offsets{};
    offsets[7] = 10224;
    struct Case {
        const char* freq;
        const char* mode;
        std::int64_t hz;
        int band;
        const char* programMode;
    };
    const Case cases[] = {
        {"F 432200000", "M USB 2400", 432'200'000, 2, "SSB"},
        {"F 144050000", "M CW 500", 144'050'000, 7, "CW"}, // the 10 GHz transverter's IF
        {"F 50150000", "M LSB 2400", 50'150'000, 0, "SSB"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.freq);
        daemon.command(c.freq);
        daemon.command(c.mode);
        // The daemon keeps what it read for half a second, and a poll may be
        // under way while the setting arrives: within a second of polls.
        ASSERT_TRUE(waitFor(
            [&] {
                const auto s = link.snapshot();
                return s.reading && s.reading->freqHz == c.hz &&
                       programMode(s.reading->mode) == c.programMode;
            },
            1s));
        const auto s = link.snapshot();
        ASSERT_TRUE(s.reading);
        EXPECT_EQ(s.reading->freqHz, c.hz);
        EXPECT_EQ(bandOfFrequency(s.reading->freqHz, offsets), c.band);
        EXPECT_EQ(programMode(s.reading->mode), c.programMode);
    }
}

TEST(HamlibLink, LostDaemonIsReportedAndFoundAgain) {
    test::HamlibDaemon daemon("rigctld");
    RigLink link(platform::makeHamlibRig(daemonAt(daemon)), kFast);
    ASSERT_TRUE(waitFor([&] { return link.snapshot().state == LinkState::Connected; }, 5s));
    // A daemon that stops answering: the call runs into its timeout.
    daemon.freeze(true);
    ASSERT_TRUE(waitFor([&] { return link.snapshot().state == LinkState::Lost; }, 6s));
    daemon.freeze(false);
    ASSERT_TRUE(waitFor([&] { return link.snapshot().state == LinkState::Connected; }, 6s));
    // A daemon that is gone.
    daemon.kill();
    ASSERT_TRUE(waitFor([&] { return link.snapshot().state == LinkState::Lost; }, 5s));
    EXPECT_FALSE(link.snapshot().error.empty());
    daemon.start();
    daemon.command("F 1296200000");
    ASSERT_TRUE(waitFor(
        [&] {
            const auto s = link.snapshot();
            return s.state == LinkState::Connected && s.reading &&
                   s.reading->freqHz == 1'296'200'000;
        },
        5s));
}

TEST(HamlibLink, ModelListsComeFromTheInstalledHamlib) {
    const auto rots = platform::hamlibRotatorModels();
    const auto rigs = platform::hamlibRigModels();
    auto has = [](const auto& list, long long model, const std::string& name) {
        for (const auto& m : list)
            if (m.model == model)
                return m.name.find(name) != std::string::npos;
        return false;
    };
    EXPECT_GT(rots.size(), 10u);
    EXPECT_GT(rigs.size(), 100u);
    EXPECT_TRUE(has(rots, 2, "NET rotctl"));
    EXPECT_TRUE(has(rigs, 2, "NET rigctl"));
    EXPECT_TRUE(std::is_sorted(rigs.begin(), rigs.end(),
                               [](const auto& a, const auto& b) { return a.maker < b.maker; }));
}
