#pragma once

#include <QByteArray>
#include <QObject>

#include "core/keying/audio.h"

class QAudioSource;
class QIODevice;

// Voice recording from the default sound input into a WAV file, on Qt
// Multimedia's audio source (16-bit mono, 16 kHz).
namespace orv::platform {

class QtAudioRecorder final : public QObject, public keying::AudioRecorder {
    Q_OBJECT
public:
    explicit QtAudioRecorder(QObject* parent = nullptr);
    ~QtAudioRecorder() override;

    void record() override;
    void pause() override;
    void resume() override;
    void stopAndSave(const std::filesystem::path& file) override;

    static constexpr int kRate = 16000;

private:
    void collect();

    QAudioSource* source_ = nullptr;
    QIODevice* input_ = nullptr;
    QByteArray data_;
};

} // namespace orv::platform
