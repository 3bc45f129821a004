#pragma once

#include <QColor>
#include <QWidget>
#include <array>
#include <functional>
#include <string>

#include "core/app/app_paths.h"
#include "core/keying/cw_macros.h"
#include "core/keying/cw_settings.h"
#include "core/keying/morse_engine.h"

class QPushButton;
class QTimer;

namespace orv {
class Dialogs;
class Settings;
class Texts;
namespace keying {
class KeyPort;
class MediaPlayer;
} // namespace keying
} // namespace orv

namespace orv::ui {

class CwInput;
class CwMemoryPanel;

// What the CW window shares with the rest of the program. The port, the
// keyer and the player are the process's one each, owned by main and shared
// with the beacon.
struct CwServices {
    const Texts& texts;
    Settings& settings;
    Dialogs& dialogs;
    keying::KeyPort& port;
    keying::Keyer& keyer;
    keying::MediaPlayer& player;
    AppPaths paths;
};

// What the CW window asks of the main window.
struct CwWindowHost {
    std::function<keying::QsoFields()> qsoFields = [] { return keying::QsoFields{}; };
    // `Label13`, the main window's message line.
    std::function<void(const QString&)> showStatus = [](const QString&) {};
    // Focus to a control of the main window ("" for the window itself).
    std::function<void(const std::string&)> focusMain = [](const std::string&) {};
    // The beacon's part of the send guard; idle until there is a beacon.
    std::function<keying::BeaconView()> beaconState = [] { return keying::BeaconView{}; };
};

// `Form15`: eleven CW memories on F1 to F11, a free text sent on Enter, the
// memory settings with macros, and the stop button while a text goes out.
class CwWindow : public QWidget {
    Q_OBJECT
public:
    CwWindow(CwServices services, CwWindowHost host, QWidget* parent = nullptr);
    ~CwWindow() override;

    // F1..F11 from the main window: presses memory k's button (0-based).
    void pressMemory(int k);
    bool sending() const { return sending_; }

protected:
    void keyPressEvent(QKeyEvent* e) override;
    void closeEvent(QCloseEvent* e) override;
    void showEvent(QShowEvent* e) override;
    void changeEvent(QEvent* e) override;

private:
    void buildUi();
    void loadMemories();
    void updateCaption(int k);
    void openPanel(int k);
    void closePanel();
    bool mayStart() const;
    void sendMemory(int k);
    void sendFreeText();
    // Expands and sends; false when nothing went out.
    bool expandAndSend(const std::string& text);
    bool sendKeyed(const std::string& ansi, const keying::CwSetup& setup);
    bool sendSound(const std::string& ansi, const keying::CwSetup& setup);
    void beginSend(bool sound);
    void endSend();
    void stop();
    void tick();
    void keyerEnded(keying::SendOutcome outcome, int com);
    void preview(const QString& text);

    CwServices s_;
    CwWindowHost host_;
    std::array<std::string, 11> memories_{};
    std::array<QPushButton*, 11> memoryButtons_{};
    QWidget* keysFrame_ = nullptr; // Frame1
    QWidget* body_ = nullptr;
    QWidget* freeTextStrip_ = nullptr; // Picture1
    CwInput* freeText_ = nullptr;      // CWText
    QPushButton* stop_ = nullptr;      // Command6
    CwMemoryPanel* panel_ = nullptr;   // Frame2
    QTimer* flash_ = nullptr;          // Timer2
    QColor stopColour_;
    bool flashOn_ = false;
    bool sending_ = false;
    bool sound_ = false;
    bool stopRequested_ = true;
    bool keyerStarted_ = false;
    long length_ = 0;
};

} // namespace orv::ui
