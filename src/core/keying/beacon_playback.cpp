#include "core/keying/beacon.h"

#include <system_error>

// The file routes of the beacon: a voice or tone file played and watched by
// `Timer6`, and the closing file `CWEnd.wav` awaited by the drain timer.
namespace orv::keying {
namespace {

bool fileThere(const std::filesystem::path& p) {
    std::error_code ec;
    return !p.empty() && std::filesystem::is_regular_file(p, ec);
}

} // namespace

void BeaconMachine::play(const BeaconInputs& in) {
    const auto& file = in.route() == BeaconRoute::Tone ? in.bakeAudioCW : in.bakeAudioVoice;
    shown_.picture8Enabled = false;
    shown_.caption = BeaconCaption::OnAir;
    if (!timerOn(BeaconTimer::Timer3))
        start(BeaconTimer::Timer3, kFlashMs);
    if (!in.repeat()) {
        pausedSeconds_ = 0;
        playStep(file);
        start(BeaconTimer::Timer6, kWatchMs);
    } else {
        if (loopArmed_) // a press in the voice pause means stop
            return stopSequence();
        stopStep();
        if (in.route() == BeaconRoute::Tone && !port_.isOpen()) {
            shown_.combo3Enabled = true;
            count_ = 0;
            return;
        }
        playStep(file);
        start(BeaconTimer::Timer6, kWatchMs);
        loopArmed_ = true;
    }
    host_.focus();
}

void BeaconMachine::playStep(const std::filesystem::path& file) {
    step([&] { length_ = playFile(player_, file); });
}

void BeaconMachine::watch() {
    // PTT stands on a serial line while a file plays: a device that goes
    // away drops the beacon at once, with its message.
    if (port_.isOpen() && !port_.alive()) {
        stop(BeaconTimer::Timer6);
        dialogs_.inform(texts_(25) + "\nCOM " + std::to_string(runPort_), Icon::Critical);
        faultReset();
        stop(BeaconTimer::Timer3);
        stop(BeaconTimer::Timer5);
        shown_.buttonRed = false;
        shown_.caption = BeaconCaption::Idle;
        loopArmed_ = false;
        count_ = 0;
        state_ = 0;
        return;
    }
    long pos = 0;
    step([&] { pos = player_.position(); });
    shown_.label33 = FormatMillis(length_ - pos);
    if (pos < length_)
        return;
    const BeaconInputs in = host_.inputs();
    if (!in.repeat()) {
        count_ = 0;
        shown_.combo3Enabled = true;
    } else if (in.route() == BeaconRoute::Tone) {
        // The port stays open: the next round follows at once.
        stopStep();
        loopArmed_ = false;
        shown_.caption = BeaconCaption::Pause;
        click();
        return;
    } else {
        start(BeaconTimer::Timer5, in.loopPause * 1000);
        ++count_;
        if (in.maxRounds && *in.maxRounds <= count_) {
            stop(BeaconTimer::Timer5);
            count_ = 0;
            shown_.combo3Enabled = true;
        } else {
            shown_.caption = BeaconCaption::Pause;
        }
    }
    shown_.buttonEnabled = false;
    stop(BeaconTimer::Timer6);
    host_.focus();
    stopStep();
    if (in.route() != BeaconRoute::Voice && fileThere(in.cwEndFile)) {
        playStep(in.cwEndFile);
        drain_ = Drain::EndFile;
        afterDrain_ = AfterDrain::Watch;
        start(BeaconTimer::Drain, kWatchMs);
        return;
    }
    watchRest();
}

void BeaconMachine::watchRest() {
    port_.ReleasePort();
    stopStep();
    pausedSeconds_ = 0;
    if (!timerOn(BeaconTimer::Timer5)) { // no pause follows
        shown_.picture8Enabled = true;
        loopArmed_ = false;
        stop(BeaconTimer::Timer3);
        shown_.buttonRed = false;
        shown_.caption = BeaconCaption::Idle;
    }
    shown_.buttonEnabled = true;
}

void BeaconMachine::drain() {
    long pos = 0;
    step([&] { pos = player_.position(); });
    if (drain_ == Drain::RunningFile) {
        if (pos != 0 && pos < length_)
            return;
        playStep(run_.cwEndFile);
        drain_ = Drain::EndFile;
        return;
    }
    if (pos < length_)
        return;
    stop(BeaconTimer::Drain);
    drain_ = Drain::None;
    if (afterDrain_ == AfterDrain::Stop)
        stopRest();
    else
        watchRest();
}

} // namespace orv::keying
