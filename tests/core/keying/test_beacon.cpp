#include <gtest/gtest.h>

#include "beacon_rig.h"
#include "core/keying/beacon_inputs.h"
#include "core/settings/settings.h"

using namespace orv;
using keying::BeaconCaption;
using keying::BeaconTimer;
using test::BeaconRig;

namespace {

bool fKeysMaySend(const BeaconRig& r) {
    return keying::maySend(false, false, r.beacon->view());
}

} // namespace

// Three rounds, the closing text, the loop pause, three rounds again; a press
// in the loop pause ends the loop.
TEST(Beacon, keyedRepeatWithMaximumAndCwLoop) {
    BeaconRig r;
    r.in.maxRounds = 3;
    r.in.cwLoop = true;
    r.beacon->press();
    EXPECT_EQ(r.beacon->state(), BeaconCaption::OnAir);
    EXPECT_EQ(r.beacon->bakeState(), 1);
    EXPECT_FALSE(r.beacon->shown().combo3Enabled);
    EXPECT_FALSE(fKeysMaySend(r));
    r.settle();

    EXPECT_EQ(r.counts, (std::vector<int>{0, 1, 2, 3, 0}));
    EXPECT_EQ(r.keyDowns(), 4);  // three texts and the closing text
    EXPECT_EQ(r.ops("open"), 1); // PTT held between the rounds
    EXPECT_EQ(r.ops("close"), 1);
    EXPECT_FALSE(r.port.isOpen());
    EXPECT_EQ(r.beacon->state(), BeaconCaption::Idle);
    EXPECT_TRUE(r.beacon->shown().combo3Enabled);
    EXPECT_TRUE(r.beacon->timerOn(BeaconTimer::Timer10));
    EXPECT_TRUE(r.beacon->timerOn(BeaconTimer::Timer11));
    EXPECT_EQ(r.beacon->interval(BeaconTimer::Timer10), 5000);
    EXPECT_FALSE(fKeysMaySend(r)); // the loop pause keeps the CW window quiet

    // Seven units from the end of one round to the first element of the next.
    std::vector<double> downs, ups;
    for (const auto& c : r.line.calls) {
        if (c.op == "5")
            downs.push_back(c.t);
        if (c.op == "6" && downs.size() > ups.size())
            ups.push_back(c.t);
    }
    ASSERT_EQ(downs.size(), 4u);
    EXPECT_NEAR(downs[1] - ups[0], 0.7, 1e-3);
    EXPECT_NEAR(ups[3] - downs[3], 0.3, 1e-3); // the closing "T"

    r.advance(4900);
    EXPECT_EQ(r.ops("open"), 1);
    r.advance(100);
    EXPECT_EQ(r.ops("open"), 2);
    EXPECT_EQ(r.counts, (std::vector<int>{0, 1, 2, 3, 0, 1, 2, 3, 0}));
    EXPECT_EQ(r.keyDowns(), 8);
    EXPECT_TRUE(r.beacon->timerOn(BeaconTimer::Timer10));
    EXPECT_TRUE(r.beacon->shown().picture14Visible || r.beacon->timerOn(BeaconTimer::Timer11));

    r.advance(1000);
    EXPECT_TRUE(r.beacon->shown().picture14Visible);
    r.beacon->press(); // in the loop pause: ends the loop
    EXPECT_FALSE(r.beacon->timerOn(BeaconTimer::Timer10));
    EXPECT_FALSE(r.beacon->shown().picture14Visible);
    EXPECT_EQ(r.beacon->state(), BeaconCaption::Idle);
    EXPECT_EQ(captionText(r.beacon->state(), r.texts), r.texts(24));
    r.advance(20000);
    EXPECT_EQ(r.ops("open"), 2);
    EXPECT_TRUE(fKeysMaySend(r));
}

TEST(Beacon, emptyMaximumRepeatsUntilThePress) {
    BeaconRig r;
    r.beacon->press();
    r.settle(25);
    EXPECT_GE(r.beacon->count(), 24);
    EXPECT_TRUE(r.port.isOpen());
    EXPECT_EQ(r.ops("close"), 0);
    r.beacon->press(); // mouse-down: state 2, the round ends, then the closing text
    EXPECT_FALSE(r.beacon->shown().buttonEnabled);
    r.settle();
    const int rounds = r.keyDowns() - 1;
    EXPECT_GE(rounds, 25);
    EXPECT_EQ(r.line.calls.back().op, "close");
    EXPECT_FALSE(r.port.isOpen());
    EXPECT_EQ(r.beacon->state(), BeaconCaption::Idle);
    EXPECT_EQ(r.beacon->count(), 0);
    EXPECT_FALSE(r.beacon->timerOn(BeaconTimer::Timer10));
}

TEST(Beacon, emptyClosingTextReleasesThePortAtOnce) {
    BeaconRig r;
    r.in.maxRounds = 2;
    r.in.cwEnd = "";
    r.beacon->press();
    r.settle();
    EXPECT_EQ(r.keyDowns(), 2);
    ASSERT_EQ(r.line.calls.back().op, "close");
    double lastKey = 0;
    for (const auto& c : r.line.calls)
        if (c.op == "5")
            lastKey = c.t;
    // The dit's key-up and the release come at the same instant: no closing round.
    EXPECT_NEAR(r.line.calls.back().t - lastKey, 0.1, 1e-3);
    EXPECT_FALSE(r.port.isOpen());
}

// BakeArt 0 on each route: one text or file goes out and the beacon stops by itself.
TEST(Beacon, singleRunStopsByItself) {
    struct Case {
        const char* name;
        std::string mode;
        int cwInterface;
        std::vector<std::string> played;
        int keyDowns;
    };
    const Case cases[] = {
        {"keyed", "CW", 0, {}, 2},
        {"tone", "CW", 1, {"open tone.wav", "open CWEnd.wav"}, 0},
        {"voice", "SSB", 0, {"open voice.wav"}, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        BeaconRig r;
        r.in.bakeArt = 0;
        r.in.mode = c.mode;
        r.in.cwInterface = c.cwInterface;
        r.in.bakeAudioCW = r.file("tone.wav");
        r.in.bakeAudioVoice = r.file("voice.wav");
        r.file("CWEnd.wav");
        r.beacon->press();
        EXPECT_EQ(r.beacon->state(), BeaconCaption::OnAir);
        EXPECT_FALSE(r.beacon->shown().combo3Enabled);
        for (int i = 0; i < 3 && r.beacon->state() != BeaconCaption::Idle; ++i) {
            r.player.finish();
            r.advance(200);
        }
        EXPECT_EQ(r.beacon->state(), BeaconCaption::Idle);
        EXPECT_EQ(r.player.log, c.played);
        EXPECT_EQ(r.keyDowns(), c.keyDowns);
        EXPECT_EQ(r.ops("open"), 1);
        EXPECT_FALSE(r.port.isOpen());
        EXPECT_EQ(r.beacon->count(), 0);
        EXPECT_TRUE(r.beacon->shown().combo3Enabled);
        EXPECT_TRUE(r.beacon->shown().buttonEnabled);
        EXPECT_FALSE(r.beacon->timerOn(BeaconTimer::Timer5));
        EXPECT_FALSE(r.beacon->timerOn(BeaconTimer::Timer10));
    }
}

TEST(Beacon, voiceRepeatDropsPttInThePause) {
    BeaconRig r;
    r.in.mode = "SSB";
    r.in.maxRounds = 2;
    r.in.bakeAudioVoice = r.file("voice.wav");
    r.beacon->press();
    EXPECT_TRUE(r.port.isOpen());
    EXPECT_EQ(r.line.calls.front().op, "open COM1");
    r.advance(1000);
    EXPECT_TRUE(r.port.isOpen()); // the file has not ended yet
    EXPECT_EQ(r.beacon->shown().label33, "00:03");
    r.player.finish();
    r.advance(100);
    EXPECT_FALSE(r.port.isOpen());
    EXPECT_EQ(r.beacon->state(), BeaconCaption::Pause);
    EXPECT_EQ(r.beacon->count(), 1);
    EXPECT_TRUE(r.beacon->timerOn(BeaconTimer::Timer5));
    r.advance(600);
    EXPECT_EQ(r.beacon->shown().label33, "00:01"); // the pause counts down
    r.advance(1400);
    EXPECT_TRUE(r.port.isOpen());
    EXPECT_EQ(r.ops("open"), 2);
    EXPECT_EQ(r.beacon->state(), BeaconCaption::OnAir);
    r.player.finish();
    r.advance(100);
    EXPECT_EQ(r.beacon->state(), BeaconCaption::Idle);
    EXPECT_EQ(r.beacon->count(), 0);
    EXPECT_FALSE(r.port.isOpen());
    r.advance(5000);
    EXPECT_EQ(r.ops("open"), 2);
}

TEST(Beacon, aPressInTheVoicePauseStops) {
    BeaconRig r;
    r.in.mode = "SSB";
    r.in.bakeAudioVoice = r.file("voice.wav");
    r.beacon->press();
    r.player.finish();
    r.advance(100);
    ASSERT_EQ(r.beacon->state(), BeaconCaption::Pause);
    r.beacon->press();
    EXPECT_EQ(r.beacon->state(), BeaconCaption::Idle);
    EXPECT_FALSE(r.port.isOpen());
    EXPECT_FALSE(r.beacon->timerOn(BeaconTimer::Timer5));
    r.advance(5000);
    EXPECT_EQ(r.player.log.size(), 1u);
}

TEST(Beacon, toneRepeatHoldsPttAndEndsWithTheClosingFile) {
    BeaconRig r;
    r.in.cwInterface = 1;
    r.in.maxRounds = 2;
    r.in.cwLoop = true;
    r.in.bakeAudioCW = r.file("tone.wav");
    r.file("CWEnd.wav");
    r.beacon->press();
    EXPECT_EQ(r.beacon->bakeState(), 5);
    // A run's start puts the lines through their sequence twice; the next
    // round, with PTT standing, leaves them alone.
    const std::vector<std::string> start{"open COM2", "6", "4", "9", "3", "6", "4", "9", "3"};
    EXPECT_EQ(r.line.ops(), start);
    r.player.finish();
    r.advance(100);
    EXPECT_EQ(r.beacon->count(), 2);
    EXPECT_EQ(r.line.ops(), start);
    EXPECT_TRUE(r.port.isOpen());
    EXPECT_EQ(r.ops("close"), 0); // PTT stays up between tone rounds
    r.player.finish();
    r.advance(100); // the maximum: Stop waits for the closing file
    EXPECT_TRUE(r.port.isOpen());
    r.advance(100);
    EXPECT_EQ(r.player.log.back(), "open CWEnd.wav");
    EXPECT_TRUE(r.port.isOpen());
    r.player.finish();
    r.advance(100);
    EXPECT_FALSE(r.port.isOpen());
    EXPECT_EQ(r.beacon->state(), BeaconCaption::Idle);
    EXPECT_EQ(r.ops("open"), 1);
    EXPECT_TRUE(r.beacon->timerOn(BeaconTimer::Timer10)); // CW loop
    EXPECT_EQ(r.player.log,
              (std::vector<std::string>{"open tone.wav", "open tone.wav", "open CWEnd.wav"}));

    // Mouse-down in the next run (state 6) stops it without a new loop pause.
    r.advance(5000);
    EXPECT_EQ(r.beacon->bakeState(), 5);
    r.beacon->press();
    r.advance(100);
    r.player.finish();
    r.advance(100);
    EXPECT_EQ(r.beacon->state(), BeaconCaption::Idle);
    EXPECT_FALSE(r.beacon->timerOn(BeaconTimer::Timer10));
    EXPECT_FALSE(r.port.isOpen());
}

// Every refusal leaves the beacon idle with the port closed.
TEST(Beacon, refusalsShowTheirTextAndChangeNothing) {
    struct Case {
        const char* name;
        std::function<void(BeaconRig&)> setUp;
        std::function<std::string(BeaconRig&)> message;
    };
    const Case cases[] = {
        {"voice file missing",
         [](BeaconRig& r) {
             r.in.mode = "SSB";
             r.in.bakeAudioVoice = r.dir / "none.wav";
         },
         [](BeaconRig& r) { return r.texts(57); }},
        {"no tone file", [](BeaconRig& r) { r.in.cwInterface = 1; },
         [](BeaconRig& r) { return r.texts(57); }},
        {"empty beacon text", [](BeaconRig& r) { r.in.bakeText = " "; },
         [](BeaconRig& r) { return r.texts(308); }},
        {"port refused", [](BeaconRig& r) { r.line.refuseOpen = true; },
         [](BeaconRig& r) { return r.texts(25) + "\nCOM 2"; }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        BeaconRig r;
        c.setUp(r);
        r.beacon->press();
        r.settle();
        ASSERT_EQ(r.dialogs.informed.size(), 1u);
        EXPECT_EQ(r.dialogs.informed[0], c.message(r));
        EXPECT_EQ(r.beacon->state(), BeaconCaption::Idle);
        EXPECT_EQ(r.beacon->count(), 0);
        EXPECT_FALSE(r.port.isOpen());
        EXPECT_TRUE(r.beacon->shown().combo3Enabled);
        EXPECT_TRUE(r.beacon->shown().buttonEnabled);
    }
}

// PTT never stays up: each way out of a round ends with the port released.
TEST(Beacon, everyWayOutReleasesThePort) {
    struct Case {
        const char* name;
        std::function<void(BeaconRig&)> run;
    };
    const Case cases[] = {
        {"line pulled in a round",
         [](BeaconRig& r) {
             r.line.failAfter = 6; // the port opens, then the key line dies
             r.beacon->press();
             r.settle();
             EXPECT_EQ(r.dialogs.informed.size(), 1u);
         }},
        {"adapter pulled while a tone file plays",
         [](BeaconRig& r) {
             r.in.cwInterface = 1;
             r.in.bakeAudioCW = r.file("tone.wav");
             r.beacon->press();
             EXPECT_TRUE(r.port.isOpen());
             r.line.pulled = true;
             r.advance(100);
             ASSERT_EQ(r.dialogs.informed.size(), 1u);
             EXPECT_EQ(r.dialogs.informed[0], r.texts(25) + "\nCOM 2");
             EXPECT_EQ(r.beacon->state(), BeaconCaption::Idle);
             EXPECT_FALSE(r.beacon->timerOn(BeaconTimer::Timer6));
         }},
        {"window closed between rounds",
         [](BeaconRig& r) {
             r.beacon->press();
             r.keyer.wait(); // a round ended with PTT held for the next
             EXPECT_TRUE(r.port.isOpen());
             r.beacon->shutdown();
         }},
        {"pause key in a run",
         [](BeaconRig& r) {
             r.beacon->press();
             r.keyer.wait();
             r.beacon->click(); // a click without mouse-down stops at once
             r.settle();
         }},
        {"fault in the press, cancelled",
         [](BeaconRig& r) {
             r.in.mode = "SSB";
             r.in.bakeAudioVoice = r.file("voice.wav");
             r.player.failOpens = 1;
             r.beacon->press();
             ASSERT_EQ(r.dialogs.asked.size(), 1u);
             EXPECT_EQ(r.dialogs.asked[0], r.texts(10) + "\nsound device gone");
         }},
        {"fault while the tone file plays, cancelled",
         [](BeaconRig& r) {
             r.in.cwInterface = 1;
             r.in.bakeAudioCW = r.file("tone.wav");
             r.beacon->press();
             r.player.failPosition = true;
             r.advance(1000);
             ASSERT_EQ(r.dialogs.asked.size(), 1u); // asked once, not at each look
             EXPECT_EQ(r.dialogs.asked[0], r.texts(10) + "\nsound device gone");
             EXPECT_TRUE(r.player.file.empty());
         }},
        {"tone lines fail when set up anew, cancelled",
         [](BeaconRig& r) {
             r.in.cwInterface = 1;
             r.in.bakeAudioCW = r.file("tone.wav");
             r.line.failAfter = 4; // the port opens, its lines then fail
             r.beacon->press();
             EXPECT_EQ(r.dialogs.asked.size(), 1u);
             EXPECT_TRUE(r.player.log.empty());
         }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        BeaconRig r;
        c.run(r);
        EXPECT_FALSE(r.port.isOpen());
        EXPECT_EQ(r.line.calls.back().op, "close");
        EXPECT_TRUE(r.beacon->shown().buttonEnabled);
        EXPECT_TRUE(r.beacon->shown().combo3Enabled);
    }
}

// Retry after a fault runs the failed step again, not the whole press: the
// port is opened once and the round is counted once.
TEST(Beacon, retryRunsTheFailedStepOnly) {
    struct Case {
        const char* name;
        std::function<void(BeaconRig&)> setUp;
        std::function<std::string(BeaconRig&)> fault;
        std::vector<std::string> lines;
        std::vector<std::string> played;
    };
    const Case cases[] = {
        {"voice file fails to open",
         [](BeaconRig& r) {
             r.in.mode = "SSB";
             r.in.bakeAudioVoice = r.file("voice.wav");
             r.player.failOpens = 1;
         },
         [](BeaconRig&) { return std::string("sound device gone"); },
         {"open COM1", "6", "4", "9", "8"},
         {"open voice.wav"}},
        {"tone lines fail when set up anew",
         [](BeaconRig& r) {
             r.in.cwInterface = 1;
             r.in.maxRounds = 3;
             r.in.bakeAudioCW = r.file("tone.wav");
             r.line.failAfter = 4;
             r.line.failCount = 1;
         },
         [](BeaconRig& r) { return r.texts(25) + "\nCOM 2"; },
         {"open COM2", "6", "4", "9", "3", "6", "4", "9", "3"},
         {"open tone.wav"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        BeaconRig r;
        c.setUp(r);
        r.dialogs.answers = {Answer::Retry};
        r.beacon->press();
        ASSERT_EQ(r.dialogs.asked.size(), 1u);
        EXPECT_EQ(r.dialogs.asked[0], r.texts(10) + "\n" + c.fault(r));
        EXPECT_EQ(r.line.ops(), c.lines);
        EXPECT_EQ(r.player.log, c.played);
        EXPECT_EQ(r.beacon->state(), BeaconCaption::OnAir);
        EXPECT_EQ(r.beacon->count(), r.in.cwInterface == 1 ? 1 : 0);
        EXPECT_TRUE(r.port.isOpen());
        r.beacon->press();
        r.advance(100);
        EXPECT_EQ(r.beacon->state(), BeaconCaption::Idle);
        EXPECT_FALSE(r.port.isOpen());
    }
}

// A stop asked in the 7 units before a round lets that round fall away; asked
// in a round, the round goes out. The closing text follows 7 units after the
// point where the next round would have begun, and a stop is no maximum: no
// loop pause follows.
TEST(Beacon, stopBetweenRoundsSendsNoFurtherRound) {
    struct Case {
        const char* name;
        double at;        // seconds after the press; "E" at 12 WPM goes out 0.7-0.8
        int textRounds;   // rounds of the beacon text that went out
        double closingAt; // key-down of the closing "T"
    };
    const Case cases[] = {
        {"in the lead of the first round", 0.3, 0, 1.4},
        {"in a round", 0.75, 1, 1.5},
        {"in the gap before the second round", 1.2, 1, 2.2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        BeaconRig r;
        r.in.maxRounds = 2;
        r.in.cwLoop = true;
        r.clock.atTime = c.at;
        r.clock.at = [&r] { r.beacon->mouseDown(); };
        r.beacon->press();
        r.settle();
        std::vector<double> downs;
        for (const auto& call : r.line.calls)
            if (call.op == "5")
                downs.push_back(call.t);
        ASSERT_EQ(downs.size(), static_cast<std::size_t>(c.textRounds + 1));
        EXPECT_NEAR(downs.back(), c.closingAt, 1e-3);
        EXPECT_EQ(r.ops("open"), 1);
        EXPECT_FALSE(r.port.isOpen());
        EXPECT_EQ(r.beacon->state(), BeaconCaption::Idle);
        EXPECT_EQ(r.beacon->count(), 0);
        EXPECT_FALSE(r.beacon->timerOn(BeaconTimer::Timer10));
    }
}

TEST(Beacon, pausePrompt) {
    const std::pair<const char*, std::optional<int>> good[] = {
        {"", std::nullopt}, {"  ", std::nullopt}, {"1", 1}, {"60", 60}, {" 7.9 ", 7}, {"60.5", 60}};
    for (const auto& [answer, want] : good) {
        const auto got = keying::parsePauseSeconds(answer);
        ASSERT_TRUE(got.ok()) << answer;
        EXPECT_EQ(*got, want) << answer;
    }
    for (const char* bad : {"0", "0.9", "61", "-3", "abc", "5s", "nan"}) {
        const auto got = keying::parsePauseSeconds(bad);
        ASSERT_FALSE(got.ok()) << bad;
        EXPECT_EQ(got.failure().text, 225) << bad;
    }
}

TEST(Beacon, inputsFromTheOperatorTable) {
    test::TempDir dir;
    Settings s{IniFile{dir / "OrvantaContest.INI"}};
    s.setOpCalls(
        {{"DL1ABC", "cq.wav", "cq test dl1abc", "1.wav"}, {"OK1KKW", "/abs/v.wav", "", ""}});
    s.set(keys::CWEND, "tu <x>");
    s.set(keys::BakeArt, 0);
    s.set(keys::CWLoopPause, 99); // out of range: 1
    const auto in = keying::beaconSettings(s, "dl1abc", dir / "Audio", dir / "CWAudio");
    EXPECT_EQ(in.bakeText, "CQ TEST DL1ABC");
    EXPECT_EQ(in.bakeAudioVoice, dir / "Audio" / "cq.wav");
    EXPECT_EQ(in.bakeAudioCW, dir / "CWAudio" / "1.wav");
    EXPECT_EQ(in.cwEnd, "TU X");
    EXPECT_EQ(in.bakeArt, 0);
    EXPECT_EQ(in.cwLoopPause, 1);
    EXPECT_EQ(in.cwEndFile, dir / "CWAudio" / "CWEnd.wav");
    const auto other = keying::beaconSettings(s, "OK1KKW", dir / "Audio", dir / "CWAudio");
    EXPECT_EQ(other.bakeAudioVoice, std::filesystem::path("/abs/v.wav"));
    EXPECT_TRUE(other.bakeText.empty());
    EXPECT_TRUE(other.bakeAudioCW.empty());
}
