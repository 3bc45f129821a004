#pragma once

#include <QObject>
#include <functional>

class QTimer;

namespace orv {
class Beeper;
class Capture;
class ContestLog;
class Dialogs;
class Settings;
class Texts;
} // namespace orv

namespace orv::ui {

class MainWindow;

// Binds the main window to the QSO capture of the open log: Enter commits
// through `Uebernehmen`, a band change loads the band, the grid and the
// statistics show the band state, the call and locator fields ask for the
// checks and the preview, and the grid's row actions correct, delete and
// restore. The window keeps no number of its own.
class CaptureBinding final : public QObject {
    Q_OBJECT
public:
    // `settings` stores the rate meter's settings; without it they are asked
    // but kept only while the program runs.
    CaptureBinding(MainWindow& window, Capture& capture, ContestLog& log, Beeper& beeper,
                   const Texts& texts, Dialogs& dialogs, Settings* settings = nullptr);
    ~CaptureBinding() override;

    // Rows, figures and next serial of the selected band onto the window.
    void showBand();
    // One tick of the rate meter (`Timer7`).
    void tickRate();
    void setRateSettings(int zeitbereich, int zeigerMax);
    int zeitbereich() const { return zeitbereich_; }
    int zeigerMax() const { return zeigerMax_; }

    // The grid row actions, also reachable from the window's signals.
    void EditView(int row);
    void UebernehmenEdit();
    void MnMarkASKill(int row);
    void MnGrid1KillRetur(int row);
    void MnLogLoeschen();
    void showOdx();
    // The two input boxes of the rate meter (a click on `ZeigerZahl`).
    void askRateSettings();
    // `Form9` over the worked squares of the band.
    void showSquareWindow();

signals:
    // The band was emptied: the program must end now, without saving.
    void programMustEnd();

private:
    // Runs a step that writes the log; a failure is shown with Retry/Cancel.
    void guarded(const std::function<void()>& work);
    void commit();
    void preview(const QString& locator);
    void editPreview(const QString& locator);
    // `CallExistTest` (when asked) and `WorkAlso` for a call in hand.
    void checkCall(const QString& call, bool testDuplicate);
    void resolveDuplicate();
    void showFigures();
    // The log was written by another process or writer: the band anew.
    void showIfChangedElsewhere();
    void refreshRow(long row);
    QString bearingOf(const std::string& typed, const std::string& fallback) const;

    MainWindow& window_;
    Capture& capture_;
    ContestLog& log_;
    Beeper& beeper_;
    const Texts& texts_;
    Dialogs& dialogs_;
    Settings* settings_;
    QTimer* timer7_ = nullptr;
    QTimer* watch_ = nullptr;
    int zeitbereich_ = 60;
    int zeigerMax_ = 10;
    long long duplicateNr_ = 0;
};

} // namespace orv::ui
