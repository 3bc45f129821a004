#pragma once

#include <memory>

#include "core/keying/audio.h"
#include "ui/options/options_page.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QTimer;

namespace orv::ui {

// Audio: the voice recorder. `Command21` starts and stops, `Command22`
// pauses, `Text1` holds the name, `Label2` counts "hh:mm:ss" by `Timer2`, and
// `Timer1` flashes the record button while it records. A recording belongs
// to no setting: it is saved into `Audio` when stopped, also when the
// dialog is cancelled.
class AudioPage final : public OptionsPage {
    Q_OBJECT
public:
    AudioPage(OptionsContext& ctx, QWidget* parent);
    ~AudioPage() override;
    void load(const Settings&) override {}
    void save(Settings&) override {}
    void saved() override { finish(); }
    void cancelled() override { finish(); }

    keying::VoiceRecording::State state() const { return recording_->state(); }

private:
    void recordOrStop();
    void pause();
    void tick();
    void flash();
    void showIdle();
    void finish();

    std::unique_ptr<keying::VoiceRecording> recording_;
    QLineEdit* name_ = nullptr;
    QPushButton* record_ = nullptr;
    QPushButton* pause_ = nullptr;
    QLabel* clock_ = nullptr;
    QTimer* flash_ = nullptr;
    QTimer* seconds_ = nullptr;
    int elapsed_ = 0;
    bool lit_ = false;
};

} // namespace orv::ui
