#include "platform/qt_media_player.h"

#include <QAudioOutput>
#include <QEventLoop>
#include <QMediaPlayer>
#include <QTimer>
#include <QUrl>
#include <algorithm>

namespace orv::platform {

void chooseMediaBackend() {
    if (qEnvironmentVariableIsEmpty("QT_MEDIA_BACKEND"))
        qputenv("QT_MEDIA_BACKEND", "ffmpeg");
}

QtMediaPlayer::QtMediaPlayer(QObject* parent)
    : QObject(parent), player_(new QMediaPlayer(this)), output_(new QAudioOutput(this)) {
    player_->setAudioOutput(output_);
    connect(player_, &QMediaPlayer::mediaStatusChanged, this, [this](QMediaPlayer::MediaStatus s) {
        if (s == QMediaPlayer::EndOfMedia)
            ended_ = true;
    });
}

QtMediaPlayer::~QtMediaPlayer() {
    close();
}

void QtMediaPlayer::open(const std::filesystem::path& file) {
    ended_ = false;
    loaded_ = false;
    player_->setSource(QUrl::fromLocalFile(QString::fromStdString(file.string())));
    QEventLoop loop;
    QTimer timeout;
    timeout.setSingleShot(true);
    connect(&timeout, &QTimer::timeout, &loop, &QEventLoop::quit);
    auto settled = [this] {
        const auto s = player_->mediaStatus();
        return s == QMediaPlayer::LoadedMedia || s == QMediaPlayer::InvalidMedia ||
               s == QMediaPlayer::NoMedia || player_->error() != QMediaPlayer::NoError;
    };
    auto conn = connect(player_, &QMediaPlayer::mediaStatusChanged, &loop, [&] {
        if (settled())
            loop.quit();
    });
    auto errConn = connect(player_, &QMediaPlayer::errorOccurred, &loop, &QEventLoop::quit);
    if (!settled()) {
        timeout.start(3000);
        loop.exec();
    }
    disconnect(conn);
    disconnect(errConn);
    loaded_ = player_->mediaStatus() == QMediaPlayer::LoadedMedia &&
              player_->error() == QMediaPlayer::NoError;
}

void QtMediaPlayer::play(long fromMs) {
    if (!loaded_)
        return;
    ended_ = false;
    // A seek before the first play makes some back-ends drop the start.
    if (fromMs != player_->position())
        player_->setPosition(fromMs);
    player_->play();
}

void QtMediaPlayer::stop() {
    player_->stop();
}

void QtMediaPlayer::close() {
    player_->stop();
    player_->setSource(QUrl());
    loaded_ = false;
    ended_ = false;
}

long QtMediaPlayer::position() {
    if (!loaded_)
        return 0;
    // The pipeline's position runs ahead of what the sound card has played by
    // the sink's buffer: only the end of the stream counts as the end, and at
    // the end some back-ends rewind.
    if (ended_)
        return length();
    return std::min(static_cast<long>(player_->position()), std::max(0L, length() - 1));
}

long QtMediaPlayer::length() {
    return loaded_ ? static_cast<long>(player_->duration()) : 0;
}

} // namespace orv::platform
