#pragma once

#include <QObject>

class QTimer;

namespace orv {
class Beeper;
class Capture;
class ContestLog;
class Texts;
} // namespace orv

namespace orv::ui {

class MainWindow;

// Binds the main window to the QSO capture of the open log: Enter commits
// through `Uebernehmen`, a band change loads the band, the grid and the
// statistics show the band state, the call and locator fields ask for the
// checks and the preview. The window keeps no number of its own.
class CaptureBinding final : public QObject {
    Q_OBJECT
public:
    CaptureBinding(MainWindow& window, Capture& capture, ContestLog& log, Beeper& beeper,
                   const Texts& texts);
    ~CaptureBinding() override;

    // Rows, figures and next serial of the selected band onto the window.
    void showBand();
    // One tick of the rate meter (`Timer7`).
    void tickRate();
    void setRateSettings(int zeitbereich, int zeigerMax);

private:
    void commit();
    void preview(const QString& locator);
    void checkCall(const QString& call);
    void resolveDuplicate();
    void showFigures();

    MainWindow& window_;
    Capture& capture_;
    ContestLog& log_;
    Beeper& beeper_;
    const Texts& texts_;
    QTimer* timer7_ = nullptr;
    int zeitbereich_ = 60;
    int zeigerMax_ = 10;
    long long duplicateNr_ = 0;
};

} // namespace orv::ui
