#include "core/keying/audio.h"

#include "core/util/text.h"

namespace orv::keying {

long playFile(MediaPlayer& player, const std::filesystem::path& file) {
    stopPlayer(player);
    player.open(file);
    player.play(0);
    return player.length();
}

void stopPlayer(MediaPlayer& player) {
    player.stop();
    player.close();
}

bool playerAtEnd(MediaPlayer& player, long length) {
    return player.position() >= length;
}

std::string FormatMillis(long ms) {
    long seconds = ms / 1000;
    const long minutes = seconds / 60;
    seconds -= minutes * 60;
    auto two = [](long v) { return (v < 10 && v >= 0 ? "0" : "") + std::to_string(v); };
    return two(minutes) + ":" + two(seconds);
}

Result<std::string> recordingName(std::string_view name) {
    std::string n = text::trim(name);
    if (n.empty())
        return refuse(47, "Text1");
    if (!text::endsWith(text::upper(n), ".WAV"))
        n += ".WAV";
    for (char& c : n)
        if (c == ' ')
            c = '_';
    return n;
}

VoiceRecording::VoiceRecording(AudioRecorder& recorder, Dialogs& dialogs, const Texts& texts,
                               std::filesystem::path audioFolder)
    : recorder_(recorder), dialogs_(dialogs), texts_(texts), folder_(std::move(audioFolder)) {}

bool VoiceRecording::start(std::string_view name) {
    if (state_ != State::Idle)
        return false;
    const auto n = recordingName(name);
    if (!n) {
        dialogs_.inform(texts_(n.failure().text), Icon::Information);
        return false;
    }
    const auto file = folder_ / *n;
    std::error_code ec;
    if (std::filesystem::exists(file, ec)) {
        if (dialogs_.ask(texts_(46), Buttons::YesNo, Icon::Question, Answer::No) != Answer::Yes)
            return false;
        std::filesystem::remove(file, ec);
    }
    file_ = file;
    recorder_.record();
    state_ = State::Recording;
    return true;
}

void VoiceRecording::togglePause() {
    if (state_ == State::Recording) {
        recorder_.pause();
        state_ = State::Paused;
    } else if (state_ == State::Paused) {
        recorder_.resume();
        state_ = State::Recording;
    }
}

std::filesystem::path VoiceRecording::stop() {
    if (state_ == State::Idle)
        return {};
    state_ = State::Idle;
    std::filesystem::create_directories(folder_);
    recorder_.stopAndSave(file_);
    return file_;
}

} // namespace orv::keying
