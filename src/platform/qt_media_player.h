#pragma once

#include <QObject>
#include <memory>

#include "core/keying/audio.h"

class QMediaPlayer;
class QAudioOutput;

// The one media player of the process, on Qt Multimedia.
namespace orv::platform {

// Qt Multimedia's FFmpeg back-end, unless the user chose one: the GStreamer
// back-end of Qt 6.4 drops the first few hundred milliseconds of a file on a
// PulseAudio server, the first characters of a CW text. Call before the
// QApplication is made.
void chooseMediaBackend();

class QtMediaPlayer final : public QObject, public keying::MediaPlayer {
    Q_OBJECT
public:
    explicit QtMediaPlayer(QObject* parent = nullptr);
    ~QtMediaPlayer() override;

    // Waits (pumping events, at most a few seconds) until the file is loaded
    // or found unplayable, so that length() answers at once.
    void open(const std::filesystem::path& file) override;
    void play(long fromMs) override;
    void stop() override;
    void close() override;
    long position() override;
    long length() override;

private:
    QMediaPlayer* player_ = nullptr;
    QAudioOutput* output_ = nullptr;
    bool loaded_ = false;
    bool ended_ = false;
};

} // namespace orv::platform
