#pragma once

#include <QObject>
#include <QPointer>

#include "ui/cw_window.h"

class QKeyEvent;

namespace orv {
class Clock;
}

namespace orv::ui {

class MainWindow;

// The CW window's place in the main window: `MnCWFensterAN` and F12 show and
// hide it, F1 to F11 (with the modifier of `FTaste`) press its memories
// while it is shown, and its macros read the entry row.
class CwBinding : public QObject {
    Q_OBJECT
public:
    CwBinding(MainWindow& window, CwServices services, Clock& clock);
    ~CwBinding() override;

    void toggle();
    // The window, when it is loaded.
    CwWindow* cwWindow() const;
    // The beacon's state for the send guard; idle until there is a beacon.
    std::function<keying::BeaconView()> beaconState = [] { return keying::BeaconView{}; };

private:
    bool key(QKeyEvent* e);
    keying::QsoFields fields() const;

    MainWindow& main_;
    CwServices services_;
    Clock& clock_;
    QPointer<CwWindow> cw_; // a child of the main window, made when first shown
};

} // namespace orv::ui
