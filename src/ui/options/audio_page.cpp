#include "ui/options/audio_page.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "core/util/file_io.h"

namespace orv::ui {

AudioPage::AudioPage(OptionsContext& ctx, QWidget* parent)
    : OptionsPage(ctx, "Frame4", 954, parent) {
    recording_ = std::make_unique<keying::VoiceRecording>(ctx.recorder, ctx.dialogs, ctx.texts,
                                                          ctx.paths.audioPath());
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    name_ = new QLineEdit(this);
    name_->setObjectName("Text1");
    form->addRow(ctx.plain(45), name_);
    layout->addLayout(form);
    auto* row = new QHBoxLayout;
    record_ = new QPushButton(this);
    record_->setObjectName("Command21");
    pause_ = new QPushButton(ctx.plain(972), this);
    pause_->setObjectName("Command22");
    clock_ = new QLabel(this);
    clock_->setObjectName("Label2");
    row->addWidget(record_);
    row->addWidget(pause_);
    row->addWidget(clock_);
    row->addStretch();
    layout->addLayout(row);
    layout->addStretch();
    flash_ = new QTimer(this);
    flash_->setObjectName("Timer1");
    flash_->setInterval(500);
    seconds_ = new QTimer(this);
    seconds_->setObjectName("Timer2");
    seconds_->setInterval(1000);
    connect(record_, &QPushButton::clicked, this, &AudioPage::recordOrStop);
    connect(pause_, &QPushButton::clicked, this, &AudioPage::pause);
    connect(flash_, &QTimer::timeout, this, &AudioPage::flash);
    connect(seconds_, &QTimer::timeout, this, &AudioPage::tick);
    clock_->setText("00:00:00");
    showIdle();
}

AudioPage::~AudioPage() {
    finish();
}

void AudioPage::showIdle() {
    record_->setText(ctx_.plain(43));
    record_->setToolTip(ctx_.t(43));
    record_->setStyleSheet(QString());
    pause_->setEnabled(false);
    flash_->stop();
    seconds_->stop();
}

void AudioPage::recordOrStop() {
    if (recording_->state() == keying::VoiceRecording::State::Idle) {
        std::filesystem::create_directories(ctx_.paths.audioPath());
        if (!recording_->start(name_->text().toStdString())) {
            name_->setFocus();
            return;
        }
        record_->setText(ctx_.plain(52));
        record_->setToolTip(ctx_.t(52));
        pause_->setEnabled(true);
        elapsed_ = 0;
        clock_->setText("00:00:00");
        flash_->start();
        seconds_->start();
        return;
    }
    finish();
}

void AudioPage::finish() {
    if (!recording_ || recording_->state() == keying::VoiceRecording::State::Idle)
        return;
    showIdle();
    try {
        recording_->stop();
    } catch (const fileio::FileError& e) {
        ctx_.dialogs.inform(ctx_.texts(10) + "\n" + e.what(), Icon::Critical);
    }
}

void AudioPage::pause() {
    recording_->togglePause();
    if (recording_->state() == keying::VoiceRecording::State::Paused) {
        flash_->stop();
        seconds_->stop();
        record_->setStyleSheet("background-color: rgb(255, 0, 0)");
    } else {
        flash_->start();
        seconds_->start();
    }
}

void AudioPage::tick() {
    ++elapsed_;
    clock_->setText(QString("%1:%2:%3")
                        .arg(elapsed_ / 3600, 2, 10, QChar('0'))
                        .arg(elapsed_ / 60 % 60, 2, 10, QChar('0'))
                        .arg(elapsed_ % 60, 2, 10, QChar('0')));
}

void AudioPage::flash() {
    lit_ = !lit_;
    record_->setStyleSheet(lit_ ? "background-color: rgb(255, 0, 0)" : QString());
}

} // namespace orv::ui
