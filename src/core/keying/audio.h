#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "core/i18n/texts.h"
#include "core/util/ports.h"
#include "core/util/result.h"

// Sound output and voice recording as core sees them. The platform plays and
// records through the sound server; tests may record the calls.
namespace orv::keying {

// The one player of the process. A file that cannot be played has length 0.
// Times are milliseconds.
class MediaPlayer {
public:
    virtual ~MediaPlayer() = default;
    virtual void open(const std::filesystem::path& file) = 0;
    virtual void play(long fromMs) = 0;
    virtual void stop() = 0;
    virtual void close() = 0;
    virtual long position() = 0;
    virtual long length() = 0;
};

// Every open follows stop and close, also when nothing was open. Returns the
// file's length, taken just after play starts.
long playFile(MediaPlayer& player, const std::filesystem::path& file);
// Stop and close, harmless on a closed player.
void stopPlayer(MediaPlayer& player);
// A file is at its end when its position reaches its length.
bool playerAtEnd(MediaPlayer& player, long length);

// "mm:ss" of a number of milliseconds, seconds and minutes cut, not rounded.
std::string FormatMillis(long ms);

// Recording from the sound input (alias "capture").
class AudioRecorder {
public:
    virtual ~AudioRecorder() = default;
    virtual void record() = 0;
    virtual void pause() = 0;
    virtual void resume() = 0;
    // Ends the recording and writes it as WAV; throws fileio::FileError when
    // the file cannot be written.
    virtual void stopAndSave(const std::filesystem::path& file) = 0;
};

// The name of a recording as stored: ".WAV" added unless it ends so (any
// case), blanks turned into "_". An empty name is refused with IText(47).
Result<std::string> recordingName(std::string_view name);

// Start, pause and save of a voice recording into the folder `Audio`.
class VoiceRecording {
public:
    enum class State { Idle, Recording, Paused };
    VoiceRecording(AudioRecorder& recorder, Dialogs& dialogs, const Texts& texts,
                   std::filesystem::path audioFolder);

    // Checks the name, asks IText(46) before replacing a file (deleting it on
    // yes), and starts recording. False when nothing started.
    bool start(std::string_view name);
    // Pause, and the second press goes on recording.
    void togglePause();
    // Stops and saves under the name given at start; returns the file.
    std::filesystem::path stop();
    State state() const { return state_; }

private:
    AudioRecorder& recorder_;
    Dialogs& dialogs_;
    const Texts& texts_;
    std::filesystem::path folder_;
    std::filesystem::path file_;
    State state_ = State::Idle;
};

} // namespace orv::keying
