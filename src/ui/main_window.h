#pragma once

#include <QColor>
#include <QMainWindow>
#include <QStringList>
#include <array>
#include <functional>
#include <optional>

#include "core/capture/capture.h"
#include "core/capture/rate_meter.h"
#include "ui/entry_line.h"
#include "ui/side_panel.h"

class QAction;
class QActionGroup;
class QComboBox;
class QFrame;
class QGroupBox;
class QKeyEvent;
class QLabel;
class QLineEdit;
class QListWidget;
class QMenu;
class QPushButton;
class QTableView;
class QTableWidget;
class QTimer;
class QWidget;

namespace orv {
class Beeper;
class Clock;
class Texts;
} // namespace orv

namespace orv::ui {

class BandBar;
class CorrectionLine;
class LogGridModel;
class LogPanels;
class MainMenus;

// The main window `Form1` composes its parts: the menus, the band bar, the
// entry row, the correction line, the log grid with the panels under it and
// the side panel. It routes the window's keys and offers the program one
// face over the parts; the rules of the program stay in core.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    MainWindow(Texts& texts, Clock& clock, Beeper& beeper, QWidget* parent = nullptr);
    ~MainWindow() override;

    // `Beschriften`: captions of menus, labels and buttons from the table.
    void Beschriften();
    // `Grid1Set` and `Grid2Set`: headers and widths of the grids.
    void Grid1Set();
    void Grid2Set();

    // Lists from the settings file.
    void setLanguages(const QStringList& files, const QString& current);
    void setOperators(const QStringList& calls, const QString& current);
    void setModes(const QStringList& modes);
    void setPropagations(const QStringList& entries, const QString& current);
    void setFieldColours(const FieldColours& colours);
    void setTimeEditable(bool editable);
    bool timeEditable() const;
    void setZeitPlusMinus(int hours) { entry_->setZeitPlusMinus(hours); }
    void setModeSwitch(bool on, const QString& mode2St, const QString& mode3St);
    void setOwnStation(const QString& call, const QString& locator);
    void setLast(const QString& call, const QString& locator);
    void setCurrentMode(const QString& mode);

    // Band selection: the band box `Combo1` and its ten buttons.
    void selectBand(int index);
    int currentBand() const;
    void setBandHasQsos(int index, bool has);
    bool bandHasQsos(int index) const;

    void setBandFigures(const BandFigures& f);
    void setRate(const std::optional<RateReading>& reading);
    void setNextSerial(const QString& serial);
    // `Label13`, the one message line of the window.
    void showStatus(const QString& text);
    QString currentName() const { return entry_->currentName(); }
    void setCurrentName(const QString& name) { entry_->setCurrentName(name); }

    // The entry row as the capture core reads it, and back after a commit.
    EntryRow entryRow() const;
    void setEntryRow(const EntryRow& row);
    // Focus on a control named by a refusal ("Text7"); unknown names go to
    // the call field.
    void focusNamed(const std::string& control);
    void showDuplicate(const DuplicatePanel& panel);
    void hideDuplicate();
    void showWorkedElsewhere(const std::vector<WorkedOnBand>& rows);
    // Distance and bearing of the locator in hand (Text8, Text12); nothing
    // empties them.
    void setPreview(const QString& km, const QString& bearing);
    // After a commit: the clock runs again and the call field takes the focus.
    void readyForNext();

    // The correction line `Picture33` (`EditView`): the entry row and its
    // panels step aside, the statistics are disabled until it closes.
    void showEditRow(int gridRow, const EditRow& row);
    EditRow editRow() const;
    int editGridRow() const;
    // Leaves the correction: the entry row returns, focus on the call field,
    // which is emptied after a stored correction.
    void closeEditLine(bool clearCall);
    // Distance of the corrected locator (`Text88`).
    void setEditQrb(const QString& km);

    // The context menu of the grid prepared for a row: a deleted row offers
    // only the restore, any other row correction and deletion. Returns
    // nothing for a row outside the grid.
    QMenu* gridMenuFor(int row);
    int gridMenuRow() const { return gridMenuRow_; }
    // Double click and Enter on a grid row, as the grid does them.
    void gridDoubleClicked(int row);
    void gridEnterPressed(int row);
    int selectedGridRow() const;
    void selectGridRow(int row);

    // The "Loading..." panel `Picture10`, painted at once.
    void setLoading(bool on);
    bool loading() const;
    // Propagation remembered per band (`BandProp`).
    QString bandProp(int band) const;
    // `Combo10`: the maximum number of beacon calls.
    void setMaxBake(int n);
    int maxBake() const;

    // The lines of the lookup list `List1`, the first one selected.
    void setLookupLines(const QStringList& lines);

    // The key help `Form3` (modeless) and the about box `Form10`.
    void showKeyHelp();
    void showAbout();

    // The small layout for low screens: the grids and the comparison lose
    // 2141 twips of height and the window becomes 9000 twips high.
    static bool smallLayoutFor(int screenHeightPx, int dpi);
    void applySmallLayout(bool small);
    bool smallLayout() const { return smallLayout_; }
    void setDatePanelVisible(bool on);

    // After a change of log: the call field, and the locator when a log
    // was chosen, start empty.
    void clearCallField();
    void clearLocatorField();

    // Clears the entry line (F10, Ctrl+W; Return or Escape on a duplicate,
    // with the report "59").
    void clearEntryLine(bool reportFiftyNine = false);
    // `Timer1` runs again (a commit refused as a duplicate).
    void restartClock();
    // `Timer1` stops, so that the time is taken from the field (an import).
    void stopClock();
    // F8 and F9, a click on the lookup list and its menu: the list's row
    // goes into the entry row or the correction line. `byKey` is F8/F9,
    // whose duplicate test needs a QSO in the band.
    void takeLookupLine(bool withCall, bool byKey);
    // One tick of `Timer1`: the log time into `Text2`.
    void tickClock();
    bool clockRunning() const;
    bool editLineOpen() const;

    LogGridModel& logGrid() { return *gridModel_; }

    // Enter in a field of the entry row. Bound to the commit of the capture
    // core by the program; until then Enter commits nothing.
    std::function<void()> onCommit;
    // Ctrl+L, a click on the squares, and F11 on the duplicate panel.
    std::function<void()> onSquareWindow;
    std::function<void()> onResolveDuplicate;
    // F7: the station log.
    std::function<void()> onStationLog;
    // F1 to F12 for the CW window, asked before the window's own keys;
    // true when the key was taken.
    std::function<bool(QKeyEvent*)> onCwKey;
    // Pause and Ctrl+B: the beacon's button.
    std::function<void()> onBeaconKey;
    // Enter in a field of the correction line (`UebernehmenEdit`).
    std::function<void()> onEditCommit;
    // The window's key-press handler, after its own keys: true when the key
    // was taken (a key that publishes a text to the remote clients).
    std::function<bool(QKeyEvent*)> onFormKeyPress;
    // Ctrl+R turns the antenna to the bearing in hand, Ctrl+Shift+R
    // (`stop`) stops it.
    std::function<void(bool stop)> onRotatorKey;
    // The rig's frequency on the band in Hz for the QSO being stored, 0 when
    // unknown; unset without a rig.
    std::function<std::int64_t()> rigFrequency;

signals:
    void bandChanged(int index);
    void languageChosen(const QString& caption);
    void timeEditToggled(bool editable);
    void loadLogRequested();
    void closing();
    // The call field lost the focus with this text; the locator field changed.
    void callLeft(const QString& call);
    void locatorEdited(const QString& locator);
    void editLocatorEdited(const QString& locator);
    // A correction opened from the comparison panel was stored with this
    // call and locator.
    void comparisonQsoCorrected(const QString& call, const QString& locator);
    // A call was taken from the lookup list: test it as worked on this band
    // (when `testDuplicate`) and on the others.
    void lookupCallTaken(const QString& call, bool testDuplicate);
    // Grid row actions: correct, mark deleted, restore (after the question
    // of a double click, which the binding asks).
    void editRequested(int row);
    void markDeletedRequested(int row);
    void restoreRequested(int row);
    void restoreAsked(int row);
    void odxRequested();
    void rateSettingsRequested();
    void logLoeschenRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void buildCentral();
    QTableView* buildGrid(QWidget* parent);
    void connectParts();
    void bandBoxChanged(int index);
    bool windowKey(QKeyEvent* e);
    void closeEditForMenu();
    void gridContextMenu(const QPoint& pos);
    void focusEditCall();

    Texts& texts_;
    Clock& clock_;
    Beeper& beeper_;
    FieldColours colours_;
    QString lastCall_;
    QString lastLocator_;

    MainMenus* menus_ = nullptr;
    BandBar* bandBar_ = nullptr;
    EntryLine* entry_ = nullptr;
    CorrectionLine* correction_ = nullptr;
    QLabel* status_ = nullptr;
    LogGridModel* gridModel_ = nullptr;
    QTableView* grid_ = nullptr;
    LogPanels* panels_ = nullptr;
    SidePanel* side_ = nullptr;

    int gridMenuRow_ = -1;
    QWidget* loadingPanel_ = nullptr;
    std::array<QString, 10> bandProp_{};
    QWidget* keyHelp_ = nullptr;
    bool smallLayout_ = false;
};

} // namespace orv::ui
