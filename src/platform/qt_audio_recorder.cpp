#include "platform/qt_audio_recorder.h"

#include <QAudioFormat>
#include <QAudioSource>
#include <QMediaDevices>

#include "core/keying/tone_file.h"
#include "core/util/file_io.h"

namespace orv::platform {

QtAudioRecorder::QtAudioRecorder(QObject* parent) : QObject(parent) {}

QtAudioRecorder::~QtAudioRecorder() {
    if (source_)
        source_->stop();
}

void QtAudioRecorder::record() {
    QAudioFormat format;
    format.setSampleRate(kRate);
    format.setChannelCount(1);
    format.setSampleFormat(QAudioFormat::Int16);
    delete source_;
    data_.clear();
    source_ = new QAudioSource(QMediaDevices::defaultAudioInput(), format, this);
    input_ = source_->start();
    if (input_)
        connect(input_, &QIODevice::readyRead, this, &QtAudioRecorder::collect);
}

void QtAudioRecorder::collect() {
    if (input_)
        data_ += input_->readAll();
}

void QtAudioRecorder::pause() {
    if (!source_)
        return;
    collect();
    source_->suspend();
}

void QtAudioRecorder::resume() {
    if (!source_)
        return;
    // What arrived while paused is not part of the recording.
    if (input_)
        input_->readAll();
    source_->resume();
}

void QtAudioRecorder::stopAndSave(const std::filesystem::path& file) {
    if (source_) {
        collect();
        source_->stop();
        source_->deleteLater();
        source_ = nullptr;
        input_ = nullptr;
    }
    const auto header = keying::wavHeader(static_cast<std::uint32_t>(data_.size()), kRate, 1, 16);
    std::string bytes(header.begin(), header.end());
    bytes.append(data_.constData(), static_cast<std::size_t>(data_.size()));
    data_.clear();
    fileio::writeAtomic(file, bytes);
}

} // namespace orv::platform
