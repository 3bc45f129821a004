#pragma once

#include <QObject>
#include <QPalette>
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/app/app_paths.h"
#include "core/keying/beacon.h"

class QComboBox;
class QLineEdit;
class QTimer;

namespace orv {
class Dialogs;
class Settings;
class Texts;
} // namespace orv

namespace orv::ui {

class BeaconRow;
class CwBinding;
class MainWindow;

struct BeaconServices {
    const Texts& texts;
    Settings& settings;
    Dialogs& dialogs;
    keying::KeyPort& port;
    keying::Keyer& keyer;
    keying::MediaPlayer& player;
    AppPaths paths;
};

// The beacon in the main window: its controls in the side panel, the keys
// Pause and Ctrl+B, real timers for the machine's timer events, and the end
// of a keyed round handed from the keyer thread to the window thread.
class BeaconBinding : public QObject {
    Q_OBJECT
public:
    // cw may be null; with it the CW window's sends and the beacon exclude
    // each other.
    BeaconBinding(MainWindow& window, BeaconServices services, CwBinding* cw);
    ~BeaconBinding() override;

    // What the remote control reads and presses.
    keying::BeaconControl& control() { return *machine_; }
    keying::BeaconMachine& machine() { return *machine_; }

    // `Label33`'s input box; replaceable so that tests answer it.
    std::function<std::optional<std::string>(const std::string& prompt)> askPause;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    keying::BeaconInputs inputs() const;
    void render();
    void syncTimers();
    void modeChanged();
    void promptPause();
    void focusCall();

    MainWindow& main_;
    BeaconServices s_;
    CwBinding* cw_;
    BeaconRow* row_ = nullptr;
    QComboBox* mode_ = nullptr;     // Combo3
    QComboBox* operator_ = nullptr; // Combo8
    QComboBox* maxBake_ = nullptr;  // Combo10
    std::unique_ptr<keying::BeaconMachine> machine_;
    std::array<QTimer*, keying::kBeaconTimers> timers_{};
    std::array<unsigned, keying::kBeaconTimers> seen_{};
    bool bakeFocus_ = false; // `BakeFocus`
    QPalette normal_;
};

} // namespace orv::ui
