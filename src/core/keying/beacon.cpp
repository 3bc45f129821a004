#include "core/keying/beacon.h"

#include <exception>
#include <stdexcept>

#include "core/i18n/texts.h"
#include "core/keying/morse_table.h"
#include "core/util/text.h"

namespace orv::keying {
namespace {

bool fileThere(const std::filesystem::path& p) {
    std::error_code ec;
    return !p.empty() && std::filesystem::is_regular_file(p, ec);
}

// A step given up with cancel.
struct Cancelled {};

// The clean-up of a fault and of the shutdown must not fail in its turn.
void stopQuietly(MediaPlayer& player) noexcept {
    try {
        stopPlayer(player);
    } catch (...) { // NOLINT(bugprone-empty-catch): the player is gone anyway
    }
}

// The line sequence set up anew failed: the device went away after it opened.
class LineFault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace

std::string captionText(BeaconCaption c, const Texts& texts) {
    switch (c) {
    case BeaconCaption::OnAir:
        return "OnAir";
    case BeaconCaption::Pause:
        return "On-Air";
    default:
        return texts(24);
    }
}

BeaconRoute BeaconInputs::route() const {
    if (text::trim(mode) != text::trim(mode3St))
        return BeaconRoute::Voice;
    return cwInterface == 1 ? BeaconRoute::Tone : BeaconRoute::Keyed;
}

BeaconMachine::BeaconMachine(KeyPort& port, Keyer& keyer, MediaPlayer& player, Dialogs& dialogs,
                             const Texts& texts, BeaconHost host)
    : port_(port), keyer_(keyer), player_(player), dialogs_(dialogs), texts_(texts),
      host_(std::move(host)), alive_(std::make_shared<std::atomic<bool>>(true)),
      stopAsked_(std::make_shared<std::atomic<bool>>(false)) {}

BeaconMachine::~BeaconMachine() {
    shutdown();
}

void BeaconMachine::start(BeaconTimer t, int ms) {
    Slot& s = timers_[static_cast<std::size_t>(t)];
    s.on = true;
    s.ms = ms;
    ++s.gen;
}

void BeaconMachine::stop(BeaconTimer t) {
    timers_[static_cast<std::size_t>(t)].on = false;
}

BeaconView BeaconMachine::view() const {
    BeaconView v;
    v.pauseRunning = timerOn(BeaconTimer::Timer10);
    v.idle = shown_.caption == BeaconCaption::Idle;
    v.enabled = shown_.buttonEnabled;
    return v;
}

void BeaconMachine::press() {
    mouseDown();
    click();
}

void BeaconMachine::mouseDown() {
    const BeaconInputs in = host_.inputs();
    if (!in.repeat())
        return;
    if (state_ == 1) {
        state_ = 2;
        stopAsked_->store(true);
    } else if (state_ == 5) {
        state_ = 6;
        stop(BeaconTimer::Timer10);
        stop(BeaconTimer::Timer11);
        loopArmed_ = true;
    }
    notify();
}

void BeaconMachine::click() {
    // A closing file is being waited for: the button is disabled then.
    if (drain_ != Drain::None)
        return;
    handle([this] { pressSteps(); });
}

void BeaconMachine::handle(const std::function<void()>& handler) {
    try {
        handler();
    } catch (const Cancelled&) {
        faultReset();
    } catch (const std::exception& e) { // a fault outside the steps: no step to retry
        dialogs_.inform(texts_(10) + "\n" + e.what(), Icon::Critical);
        faultReset();
    }
    notify();
}

void BeaconMachine::step(const std::function<void()>& statement) {
    for (;;) {
        try {
            statement();
            return;
        } catch (const std::exception& e) {
            // Only this step runs again: the port, the count and the
            // captions stay as the steps before left them.
            if (dialogs_.ask(texts_(10) + "\n" + e.what(), Buttons::RetryCancel, Icon::Critical,
                             Answer::Cancel) != Answer::Retry)
                throw Cancelled{};
        }
    }
}

void BeaconMachine::pressSteps() {
    const BeaconInputs in = host_.inputs();
    stop(BeaconTimer::Timer11);
    shown_.picture14Visible = false;
    shown_.picture14Red = false;
    if (in.cwWindowSending)
        return;
    const bool repeat = in.repeat();
    if (repeat && timerOn(BeaconTimer::Timer10) && state_ == 0) {
        stop(BeaconTimer::Timer10); // the operator ends the loop pause
        return;
    }
    if (repeat && state_ == 2) {
        stop(BeaconTimer::Timer10);
        shown_.buttonEnabled = false; // the round ends, then the closing text
        return;
    }
    const BeaconRoute route = in.route();
    if (state_ == 6 && route == BeaconRoute::Tone) {
        stop(BeaconTimer::Timer10);
        loopArmed_ = true;
        run_ = in;
        stopSequence();
        return;
    }
    shown_.combo3Enabled = false;
    if (shown_.caption == BeaconCaption::OnAir) {
        stopSequence();
        return;
    }
    run_ = in;
    switch (route) {
    case BeaconRoute::Tone:
        toneRoute(in);
        return;
    case BeaconRoute::Voice:
        if (!fileThere(in.bakeAudioVoice))
            return missingFile();
        if (!openPort(in.com, in.pin))
            return;
        play(in);
        return;
    case BeaconRoute::Keyed:
        keyedRoute(in);
        return;
    }
}

void BeaconMachine::toneRoute(const BeaconInputs& in) {
    if (in.maxRounds) {
        if (*in.maxRounds <= count_) {
            stopSequence();
            return;
        }
        state_ = 5;
    }
    ++count_;
    if (!fileThere(in.bakeAudioCW))
        return missingFile();
    if (shown_.caption == BeaconCaption::Idle && !openPort(in.comCw, in.pinCwPtt))
        return;
    // A run that starts (not the next round of a repeat, whose PTT stands)
    // puts its lines through the sequence once more.
    if (shown_.caption != BeaconCaption::Pause)
        step([&] {
            if (!port_.SetUpLines(in.pinCwPtt))
                throw LineFault(texts_(25) + "\nCOM " + std::to_string(in.comCw));
        });
    play(in);
}

void BeaconMachine::keyedRoute(const BeaconInputs& in) {
    if (text::trim(in.bakeText).empty()) {
        shown_.combo3Enabled = true;
        dialogs_.inform(texts_(308), Icon::Information);
        host_.focus();
        return;
    }
    if (!isValidWpm(in.wpm)) {
        shown_.combo3Enabled = true;
        dialogs_.inform(texts_(297) + std::to_string(in.wpm), Icon::Critical);
        return;
    }
    if (shown_.caption == BeaconCaption::Idle && !openPort(in.comCw, in.pinCwPtt))
        return;
    // The lead is one unit of the previous run's speed; the first run after
    // the start has none.
    const double lead = previousDit_;
    const double dit = DitSeconds(in.wpm);
    previousDit_ = dit;
    stopAsked_->store(false);
    shown_.caption = BeaconCaption::OnAir;
    start(BeaconTimer::Timer3, kFlashMs);
    if (in.repeat()) {
        state_ = 1;
        startRound(in.bakeText, lead + 7 * dit, true);
    } else {
        shown_.buttonEnabled = false;
        single_ = Single::Text;
        startRound(in.bakeText, lead, true);
    }
}

bool BeaconMachine::openPort(int com, long long ptt) {
    const Status opened = port_.OpenAndKeyPort(com, ptt);
    if (opened) {
        runPort_ = com;
        return true;
    }
    dialogs_.inform(texts_(25) + "\n" + opened.failure().detail, Icon::Critical);
    shown_.combo3Enabled = true;
    count_ = 0;
    state_ = 0;
    host_.focus();
    return false;
}

void BeaconMachine::missingFile() {
    dialogs_.inform(texts_(57), Icon::Information);
    shown_.combo3Enabled = true;
    count_ = 0;
    state_ = 0;
    host_.focus();
}

void BeaconMachine::stopSequence() {
    shown_.buttonEnabled = false;
    shown_.label33 = "00:00";
    stop(BeaconTimer::Timer6);
    loopArmed_ = false;
    pausedSeconds_ = 0;
    for (BeaconTimer t : {BeaconTimer::Timer11, BeaconTimer::Timer5, BeaconTimer::Timer3})
        stop(t);
    shown_.picture8Enabled = true;
    shown_.combo3Enabled = true;
    if (roundRunning_) {
        // Pause key or remote press without mouse-down: the round stops now.
        stopping_ = true;
        keyer_.requestStop();
    }
    host_.focus();
    if (run_.route() == BeaconRoute::Tone && fileThere(run_.cwEndFile)) {
        drain_ = Drain::RunningFile;
        afterDrain_ = AfterDrain::Stop;
        start(BeaconTimer::Drain, kWatchMs);
        return;
    }
    stopRest();
}

void BeaconMachine::stopRest() {
    stopStep();
    port_.ReleasePort();
    shown_.buttonRed = false;
    shown_.caption = BeaconCaption::Idle;
    shown_.buttonEnabled = true;
    const BeaconInputs& in = run_;
    if (in.repeat() && in.route() == BeaconRoute::Tone && in.cwLoop && in.maxRounds &&
        *in.maxRounds <= count_ && state_ != 6) {
        start(BeaconTimer::Timer10, in.cwLoopPause * 1000);
        start(BeaconTimer::Timer11, kFlashMs);
    }
    count_ = 0;
    state_ = 0;
    host_.focus();
}

void BeaconMachine::startRound(const std::string& text, double lead, bool keepPort) {
    ++count_;
    Transmission t{text, run_.wpm, 0, keyLinesFor(run_.pinCw), lead, keepPort};
    // The rounds of a repeat fall away when the stop comes in their lead;
    // the closing text always goes out.
    if (state_ == 1)
        t.holdBack = stopAsked_;
    auto alive = alive_;
    auto post = host_.post;
    bool started = false;
    step([&] {
        started = keyer_.start(t, [this, alive, post](SendOutcome o) {
            if (alive->load())
                post([this, alive, o] {
                    if (alive->load())
                        handle([this, o] { roundEnded(o); });
                });
        });
    });
    roundRunning_ = started;
    if (!started) { // the CW window holds the keyer
        single_ = Single::None;
        finishKeyed(false);
    }
}

void BeaconMachine::roundEnded(SendOutcome o) {
    roundRunning_ = false;
    const bool byStop = stopping_;
    stopping_ = false;
    if (byStop) { // Stop has already released the port and reset the button
        single_ = Single::None;
        port_.ReleasePort();
        return;
    }
    if (o == SendOutcome::HeldBack) { // the stop came in the lead: the closing text follows
        state_ = 3;
        endBelow();
        return;
    }
    if (o != SendOutcome::Completed) { // the line failed; the keyer has released the port
        single_ = Single::None;
        dialogs_.inform(texts_(25) + "\nCOM " + std::to_string(run_.comCw), Icon::Critical);
        finishKeyed(false);
        return;
    }
    if (single_ != Single::None) {
        if (single_ == Single::Text && !text::trim(run_.cwEnd).empty()) {
            single_ = Single::Closing;
            count_ = 0;
            startRound(run_.cwEnd, 7 * DitSeconds(run_.wpm), false);
        } else {
            single_ = Single::None;
            stopSequence();
        }
        return;
    }
    if (state_ == 3) {
        state_ = 0;
    } else if ((run_.maxRounds && *run_.maxRounds <= count_) || state_ == 2) {
        maxReached_ = run_.maxRounds && *run_.maxRounds <= count_;
        state_ = 3;
    } else if (state_ == 1) {
        startRound(run_.bakeText, 7 * DitSeconds(run_.wpm), true);
        return;
    }
    endBelow();
}

void BeaconMachine::endBelow() {
    if (state_ == 3) {
        shown_.buttonEnabled = false;
        --count_; // the closing text does not count
        if (text::trim(run_.cwEnd).empty()) {
            state_ = 0;
            finishKeyed(true);
            return;
        }
        startRound(run_.cwEnd, 7 * DitSeconds(run_.wpm), false);
        return;
    }
    finishKeyed(true);
}

void BeaconMachine::finishKeyed(bool mayLoop) {
    port_.ReleasePort();
    stop(BeaconTimer::Timer3);
    shown_.buttonRed = false;
    shown_.caption = BeaconCaption::Idle;
    state_ = 0;
    count_ = 0;
    shown_.combo3Enabled = true;
    shown_.buttonEnabled = true;
    if (mayLoop && run_.cwLoop && run_.repeat() && maxReached_) {
        start(BeaconTimer::Timer10, run_.cwLoopPause * 1000);
        start(BeaconTimer::Timer11, kFlashMs);
    }
    maxReached_ = false;
}

void BeaconMachine::fire(BeaconTimer t) {
    if (timerOn(t))
        handle([this, t] { timerEvent(t); });
}

void BeaconMachine::timerEvent(BeaconTimer t) {
    switch (t) {
    case BeaconTimer::Timer3:
        shown_.buttonRed = !shown_.buttonRed;
        if (!roundRunning_ && shown_.caption == BeaconCaption::Pause) {
            ++pausedSeconds_;
            shown_.label33 = FormatMillis(static_cast<long>(interval(BeaconTimer::Timer5)) -
                                          static_cast<long>(kFlashMs) * pausedSeconds_);
        }
        break;
    case BeaconTimer::Timer11:
        shown_.picture14Visible = true;
        shown_.picture14Red = !shown_.picture14Red;
        break;
    case BeaconTimer::Timer5:
        stop(t);
        if (host_.inputs().repeat()) {
            loopArmed_ = false;
            click();
        }
        break;
    case BeaconTimer::Timer10:
        stop(t);
        if (state_ != 6 && host_.inputs().repeat()) {
            loopArmed_ = false;
            click();
        }
        break;
    case BeaconTimer::Timer6:
        watch();
        break;
    case BeaconTimer::Drain:
        drain();
        break;
    }
}

void BeaconMachine::stopStep() {
    step([this] { stopPlayer(player_); });
}

void BeaconMachine::faultReset() {
    // The rest of the state stays as it is, so that the operator sees where it broke.
    if (roundRunning_) {
        stopping_ = true;
        keyer_.requestStop();
    }
    port_.ReleasePort();
    host_.focus();
    shown_.picture8Enabled = true;
    stopQuietly(player_);
    // The player is closed: nothing is left to watch, and a player that
    // fails would otherwise bring the error box back every 100 ms.
    stop(BeaconTimer::Timer6);
    drain_ = Drain::None;
    stop(BeaconTimer::Drain);
    shown_.buttonEnabled = true;
    shown_.combo3Enabled = true;
}

void BeaconMachine::shutdown() {
    alive_->store(false);
    for (auto& s : timers_)
        s.on = false;
    if (roundRunning_) {
        keyer_.requestStop();
        keyer_.wait();
        roundRunning_ = false;
    }
    stopQuietly(player_);
    port_.ReleasePort();
    shown_ = BeaconShown{};
    state_ = 0;
    count_ = 0;
    loopArmed_ = false;
    drain_ = Drain::None;
    single_ = Single::None;
}

} // namespace orv::keying
