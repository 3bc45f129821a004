#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "core/keying/key_port.h"
#include "core/keying/morse_engine.h"
#include "core/keying/morse_table.h"
#include "keying_fakes.h"

using namespace orv;
using namespace orv::keying;

namespace {

struct Rig {
    test::FakeMonotonic clock;
    test::RecordingLine line{clock};
    KeyPort port{line, [](int n) { return "/dev/test" + std::to_string(n); }};
};

// The key line as signed runs in units from PTT on: +n keyed, -n silent. The
// last run ends with the last line operation.
std::vector<int> runs(const test::RecordingLine& line, LineCode on, LineCode off, double dit) {
    std::vector<int> out;
    bool keyed = false;
    double since = 0, last = 0;
    for (const auto& c : line.calls) {
        if (c.op != std::to_string(on) && c.op != std::to_string(off))
            continue;
        last = c.t;
        const bool now = c.op == std::to_string(on);
        if (now == keyed)
            continue;
        out.push_back(static_cast<int>(std::lround((c.t - since) / dit)) * (keyed ? 1 : -1));
        keyed = now;
        since = c.t;
    }
    if (last > since)
        out.push_back(static_cast<int>(std::lround((last - since) / dit)) * (keyed ? 1 : -1));
    return out;
}

std::string ansi(const char* utf8) {
    return toAnsi(utf8);
}

} // namespace

TEST(MorseTable, HoldsExactlyTheSixtyCharactersWithTheirCodes) {
    const MorseTable& t = MorseTable::instance();
    EXPECT_EQ(t.size(), 60);
    const std::vector<std::pair<unsigned char, MorseCode>> cases = {
        {'A', {1, 3}},
        {'0', {3, 3, 3, 3, 3}},
        {'9', {3, 3, 3, 3, 1}},
        {'?', {1, 1, 3, 3, 1, 1}},
        {'@', {1, 3, 3, 1, 3, 1}},
        {'/', {3, 1, 1, 3, 1}},
        {' ', {-7}},
        {'!', {-6}},
        {192, {1, 3, 3, 1, 3}},
        {197, {1, 3, 3, 1, 3}},
        {196, {1, 3, 1, 3}},
        {223, {1, 1, 1, 3, 3, 1, 1}},
        {'a', {}},
        {'"', {}},
        {'#', {}},
        {'<', {}},
        {'>', {}},
        {'*', {}},
    };
    for (const auto& [c, code] : cases) {
        SCOPED_TRACE(static_cast<int>(c));
        EXPECT_EQ(t.code(c), code);
    }
}

TEST(MorseEngine, KeysTheSpacingOfTheTable) {
    EXPECT_FLOAT_EQ(DitSeconds(12), 0.1f);
    EXPECT_FLOAT_EQ(DitSeconds(25), 0.048f);
    struct Case {
        const char* text;
        std::vector<int> runs; // from PTT: the lead unit first
    };
    const std::vector<Case> cases = {
        {"E E", {-1, 1, -7, 1}},
        {"TE", {-1, 3, -3, 1}},
        {"", {-1}},
        {"E ", {-1, 1, -7}},
        {"E  E", {-1, 1, -14, 1}},
        {"E!E", {-1, 1, -12, 1}},
        {"À", {-1, 1, -1, 3, -1, 3, -1, 1, -1, 3}},
        {"Å", {-1, 1, -1, 3, -1, 3, -1, 1, -1, 3}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        Rig rig;
        ASSERT_TRUE(rig.port.OpenAndKeyPort(1, 1).ok());
        Transmission t{ansi(c.text), 12, 1, keyLinesFor(0)};
        const auto outcome =
            sendMorse(t, rig.clock.now(), rig.port, rig.clock, [] { return false; }, {0.1, 0});
        EXPECT_EQ(outcome, SendOutcome::Completed);
        EXPECT_EQ(runs(rig.line, SETDTR, CLRDTR, 0.1), c.runs);
    }
}

TEST(MorseEngine, AnEmptyTextClearsTheLineOnceAfterTheLead) {
    Rig rig;
    ASSERT_TRUE(rig.port.OpenAndKeyPort(1, 1).ok());
    const auto before = rig.line.calls.size();
    sendMorse({"", 12, 1, keyLinesFor(1)}, 0, rig.port, rig.clock, [] { return false; });
    ASSERT_EQ(rig.line.calls.size(), before + 1);
    EXPECT_EQ(rig.line.calls.back().op, std::to_string(CLRRTS));
    EXPECT_NEAR(rig.line.calls.back().t, 0.1, 1e-4);
}

TEST(KeyPort, OpensClearsRaisesPttAndReleasesInTheOrderOfLineCodes) {
    Rig rig;
    ASSERT_TRUE(rig.port.OpenAndKeyPort(3, 2).ok());
    EXPECT_TRUE(rig.port.isOpen());
    // A second open while the port is held is refused, as the beacon and the
    // CW window exclude each other.
    const auto busy = rig.port.OpenAndKeyPort(3, 2);
    ASSERT_FALSE(busy.ok());
    EXPECT_EQ(busy.failure().text, 25);
    EXPECT_TRUE(rig.port.SetUpLines(1)); // the lines anew on the open port
    rig.port.ReleasePort();
    rig.port.ReleasePort(); // harmless when closed
    EXPECT_FALSE(rig.port.SetUpLines(1));
    EXPECT_EQ(rig.line.ops(), (std::vector<std::string>{"open /dev/test3", "6", "4", "9", "8", "6",
                                                        "4", "9", "3", "6", "4", "9", "close"}));

    rig.line.refuseOpen = true;
    const auto refused = rig.port.OpenAndKeyPort(4, 0);
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.failure().text, 25);
    EXPECT_EQ(refused.failure().detail, "COM 4");
    EXPECT_FALSE(rig.port.isOpen());
    EXPECT_FALSE(rig.port.escape(SETDTR));
}

TEST(Keyer, LeadsByOneUnitAndReleasesThePortAtTheEnd) {
    Rig rig;
    Keyer keyer(rig.port, rig.clock, {0.1, 0});
    ASSERT_TRUE(rig.port.OpenAndKeyPort(1, 1).ok());
    SendOutcome got{};
    ASSERT_TRUE(keyer.start({ansi("T"), 25, 1, keyLinesFor(0)}, [&](SendOutcome o) { got = o; }));
    keyer.wait();
    EXPECT_EQ(got, SendOutcome::Completed);
    EXPECT_FALSE(rig.port.isOpen());
    const auto& c = rig.line.calls;
    // PTT (RTS) at 0, key on one unit later, key off after a dah, then the release.
    ASSERT_GE(c.size(), 6u);
    EXPECT_EQ(c[4].op, "3");
    EXPECT_EQ(c[5].op, "5");
    EXPECT_NEAR(c[5].t - c[4].t, 0.048, 1e-6);
    EXPECT_EQ(c.back().op, "close");
    EXPECT_NEAR(c.back().t - c[5].t, 3 * 0.048, 1e-6);
}

TEST(Keyer, StopsWithinATenthOfADitAndEndsOnEveryPath) {
    struct Case {
        const char* name;
        double stopAt; // seconds after PTT; negative: none
        int failAfter; // line operations before the device disappears
        SendOutcome outcome;
    };
    const std::vector<Case> cases = {
        {"stop inside the first dah", 0.25, -1, SendOutcome::Stopped},
        {"stop in a gap", 0.42, -1, SendOutcome::Stopped},
        {"the adapter is pulled", -1, 7, SendOutcome::LineFailed},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Rig rig;
        Keyer keyer(rig.port, rig.clock);
        ASSERT_TRUE(rig.port.OpenAndKeyPort(1, 1).ok());
        rig.line.failAfter = c.failAfter;
        rig.clock.atTime = c.stopAt;
        rig.clock.at = [&keyer] { keyer.requestStop(); };
        SendOutcome got{};
        bool done = false;
        ASSERT_TRUE(keyer.start({ansi("00"), 12, 1, keyLinesFor(0)}, [&](SendOutcome o) {
            got = o;
            done = true;
        }));
        keyer.wait();
        EXPECT_TRUE(done);
        EXPECT_EQ(got, c.outcome);
        EXPECT_FALSE(rig.port.isOpen());
        EXPECT_EQ(rig.line.calls.back().op, "close");
        if (c.stopAt >= 0) {
            // Nothing keyed after the stop, and the line is cleared within a tenth of a dit.
            for (const auto& call : rig.line.calls) {
                if (call.op == "5") {
                    EXPECT_LT(call.t, c.stopAt);
                }
            }
            EXPECT_LE(rig.line.calls.back().t, c.stopAt + 0.01 + 1e-6);
        }
    }
}

TEST(Keyer, RefusesASecondTextWhileOneIsGoingOutAndHonoursTheAbortCheck) {
    Rig rig;
    Keyer keyer(rig.port, rig.clock);
    bool beaconBusy = false;
    keyer.setAbortCheck([&beaconBusy] { return beaconBusy; });
    bool second = true;
    rig.clock.atTime = 0.3;
    rig.clock.at = [&] {
        second = keyer.start({"E", 12, 1, keyLinesFor(0)});
        beaconBusy = true;
    };
    SendOutcome got{};
    ASSERT_TRUE(rig.port.OpenAndKeyPort(1, 1).ok());
    ASSERT_TRUE(
        keyer.start({ansi("TEST"), 12, 1, keyLinesFor(0)}, [&](SendOutcome o) { got = o; }));
    keyer.wait();
    EXPECT_FALSE(second);
    EXPECT_EQ(got, SendOutcome::Stopped);
    EXPECT_FALSE(keyer.busy());
}
