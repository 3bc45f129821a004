#pragma once

#include <array>
#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/keying/audio.h"
#include "core/keying/cw_macros.h"
#include "core/keying/key_port.h"
#include "core/keying/morse_engine.h"
#include "core/util/ports.h"
#include "core/util/result.h"

namespace orv {
class Texts;
}

// The beacon ("Bake"): calls CQ by itself in rounds, keyed on the line, as a
// tone file or as a voice file, with PTT up only while something goes out.
// The window's timers are events of this machine; the end of a keyed round
// comes from the keyer thread through the host's `post`.
namespace orv::keying {

// The caption of `BakeEinAus`, the state that the CW window and the remote
// control read: "Bake Ein" (text 24, idle), "OnAir" (a transmission runs),
// "On-Air" (repeating, in the pause between transmissions, PTT off).
enum class BeaconCaption { Idle, OnAir, Pause };
std::string captionText(BeaconCaption c, const Texts& texts);

// What the remote control needs of the beacon.
class BeaconControl {
public:
    virtual ~BeaconControl() = default;
    virtual BeaconCaption state() const = 0;
    // A press of the button as the mouse does it: mouse-down, then click.
    virtual void press() = 0;
};

enum class BeaconRoute { Keyed, Tone, Voice };

// The window's timers that remain events. `TimerCW1` and `Timer9` are the
// keyer thread's rounds; `Drain` is the 100 ms look at a closing file that
// the pumped waits of the closing sequences became.
enum class BeaconTimer { Timer3, Timer5, Timer6, Timer10, Timer11, Drain };
inline constexpr int kBeaconTimers = 6;
// `Timer3` and `Timer11` flash at this interval; `Timer6` and the drain look
// at the player at the other.
inline constexpr int kFlashMs = 500;
inline constexpr int kWatchMs = 100;

// Everything a press reads: the settings, the operator's beacon texts and the
// controls of the window, taken afresh at each event.
struct BeaconInputs {
    std::string mode;                                  // `Combo3`
    std::string mode3St = "CW";                        // the CW mode's name
    int cwInterface = 0;                               // 0 keyed line, 1 tone file
    int bakeArt = 1;                                   // `Option1`: 0 once, 1 loop with pause
    bool cwLoop = false;                               // `Check1`
    std::optional<int> maxRounds;                      // `Combo10`, nothing when empty
    std::string bakeText;                              // ANSI, Morse characters only
    std::filesystem::path bakeAudioCW, bakeAudioVoice; // empty when not set
    int com = 1, comCw = 1;
    long long pin = 0, pinCw = 0, pinCwPtt = 1;
    int wpm = 25;
    std::string cwEnd;                  // ANSI
    int loopPause = 1, cwLoopPause = 1; // seconds
    std::filesystem::path cwEndFile;    // CWAudio/CWEnd.wav
    bool cwWindowSending = false;       // `Command6` of the CW window visible

    BeaconRoute route() const;
    bool repeat() const { return bakeArt == 1; }
};

// What the window shows of the beacon.
struct BeaconShown {
    BeaconCaption caption = BeaconCaption::Idle;
    int count = 0;                 // `Label34`
    std::string label33 = "00:00"; // remaining time or pause
    bool buttonEnabled = true;
    bool buttonRed = false; // the flash of `Timer3`
    bool combo3Enabled = true;
    bool picture8Enabled = true; // the option frame
    bool picture14Visible = false;
    bool picture14Red = false; // the flash of `Timer11`
};

struct BeaconHost {
    std::function<BeaconInputs()> inputs = [] { return BeaconInputs{}; };
    // Runs a job on the window thread later (queued); called from the keyer thread.
    std::function<void(std::function<void()>)> post;
    // Focus back to the call field when `BakeFocus` says so.
    std::function<void()> focus = [] {};
    // Something shown or a timer changed.
    std::function<void()> changed = [] {};
};

class BeaconMachine final : public BeaconControl {
public:
    BeaconMachine(KeyPort& port, Keyer& keyer, MediaPlayer& player, Dialogs& dialogs,
                  const Texts& texts, BeaconHost host);
    ~BeaconMachine() override;
    BeaconMachine(const BeaconMachine&) = delete;
    BeaconMachine& operator=(const BeaconMachine&) = delete;

    BeaconCaption state() const override { return shown_.caption; }
    void press() override;
    // Mouse-down on the button, before its click.
    void mouseDown();
    // The click, as `Timer5`, `Timer10` and the keys do it. A fault shows
    // the error box; retry runs the failed step again, cancel resets the lines.
    void click();
    void fire(BeaconTimer t);
    // The window closes: the round stops, the player stops, the port is released.
    void shutdown();

    const BeaconShown& shown() const { return shown_; }
    int bakeState() const { return state_; }
    int count() const { return count_; }
    bool loopArmed() const { return loopArmed_; }
    bool timerOn(BeaconTimer t) const { return slot(t).on; }
    int interval(BeaconTimer t) const { return slot(t).ms; }
    // Changes each time the timer is started, so a driver can restart it.
    unsigned generation(BeaconTimer t) const { return slot(t).gen; }
    // `TimerCW1`: a keyed round is going out.
    bool keying() const { return roundRunning_; }
    // The beacon's side of the CW window's send guard.
    BeaconView view() const;

private:
    struct Slot {
        bool on = false;
        int ms = 0;
        unsigned gen = 0;
    };
    enum class Single { None, Text, Closing };
    enum class Drain { None, RunningFile, EndFile };
    enum class AfterDrain { Stop, Watch };

    const Slot& slot(BeaconTimer t) const { return timers_[static_cast<std::size_t>(t)]; }
    void start(BeaconTimer t, int ms);
    void stop(BeaconTimer t);
    void notify() {
        shown_.count = count_;
        host_.changed();
    }

    // Runs one handler; a step given up with cancel ends it with the reset
    // of a fault.
    void handle(const std::function<void()>& handler);
    // One step of a handler that may fail: the error box with text 10 and
    // the fault, retry runs the step again, cancel gives the handler up.
    void step(const std::function<void()>& statement);
    void pressSteps();
    void toneRoute(const BeaconInputs& in);
    void keyedRoute(const BeaconInputs& in);
    bool openPort(int com, long long ptt);
    void missingFile();
    void play(const BeaconInputs& in);
    void stopSequence();
    void stopRest();
    void startRound(const std::string& text, double lead, bool keepPort);
    void roundEnded(SendOutcome o);
    void endBelow();
    void finishKeyed(bool mayLoop);
    void timerEvent(BeaconTimer t);
    void playStep(const std::filesystem::path& file);
    void stopStep();
    void watch();
    void watchRest();
    void drain();
    void faultReset();

    KeyPort& port_;
    Keyer& keyer_;
    MediaPlayer& player_;
    Dialogs& dialogs_;
    const Texts& texts_;
    BeaconHost host_;

    BeaconShown shown_;
    std::array<Slot, kBeaconTimers> timers_{};
    BeaconInputs run_; // the inputs of the running transmission
    int state_ = 0;    // `BakeState`
    int count_ = 0;    // `BakeCount`
    int runPort_ = 0;  // the COM number of the port opened for this run
    bool loopArmed_ = false;
    bool maxReached_ = false;
    int pausedSeconds_ = 0;
    long length_ = 0;
    double previousDit_ = 0; // the dit of the previous run: the lead of the next
    bool roundRunning_ = false;
    bool stopping_ = false; // a keyed round was stopped by Stop
    Single single_ = Single::None;
    Drain drain_ = Drain::None;
    AfterDrain afterDrain_ = AfterDrain::Stop;
    std::shared_ptr<std::atomic<bool>> alive_;
    // Mouse-down in a keyed repeat, read by the keyer when the lead of the
    // next round has passed: that round then does not go out.
    std::shared_ptr<std::atomic<bool>> stopAsked_;
};

// `Label33`'s prompt: an empty answer leaves all as it is (nothing), a value
// that is no number or outside 1 to 60 after cutting the fraction is refused
// with text 225.
Result<std::optional<int>> parsePauseSeconds(std::string_view answer);

} // namespace orv::keying
