#pragma once

#include <QColor>
#include <QMainWindow>
#include <QStringList>
#include <array>
#include <functional>
#include <optional>

#include "core/capture/capture.h"
#include "core/capture/rate_meter.h"

class QAction;
class QActionGroup;
class QComboBox;
class QFrame;
class QGroupBox;
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

class LogGridModel;

// The four colours of the entry row, as the options store them.
struct FieldColours {
    QColor aktiv{255, 192, 128};
    QColor inAktiv{224, 224, 224};
    QColor noEdit{224, 224, 224};
    QColor bereitsQso{224, 224, 224};
};

// The band's running numbers as the statistics frame shows them. Core
// computes them; the window only writes them into its labels.
struct BandFigures {
    long long lastQsoNr = 0;
    long long pGesamt = 0;
    QString kmPerQso = "0";
    long long odx = 0;
    long long squares = 0;
    long long deleted = 0;
};

// The main window `Form1`: the entry row, the band buttons, the log grid and
// the panels around them. It turns keys into calls of the hooks below and
// shows what it is given; the rules of the program stay in core.
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
    void setZeitPlusMinus(int hours) { zeitPlusMinus_ = hours; }
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
    QString currentName() const { return currentName_; }
    void setCurrentName(const QString& name) { currentName_ = name; }

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
    int editGridRow() const { return editGridRow_; }
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

    // Clears the entry line (F10, Ctrl+W).
    void clearEntryLine();
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
    // Enter in a field of the correction line (`UebernehmenEdit`).
    std::function<void()> onEditCommit;

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
    void closeEvent(QCloseEvent* event) override;

private:
    void buildMenus();
    void buildCentral();
    QWidget* buildBandBar();
    QWidget* buildEntryRow();
    QWidget* buildCorrectionLine();
    QWidget* buildSidePanel();
    QWidget* buildPanels();
    QWidget* buildBeaconPanel(QWidget* parent);
    void wireFields();
    void paintBandButtons();
    void colourField(QWidget* field, bool focused);
    void focusField(QWidget* field, bool selectAll);

    // Keyboard flow (main_window_keys.cpp).
    bool windowKey(QKeyEvent* e);
    bool fieldKey(QWidget* field, QKeyEvent* e);
    bool spaceWalk(QWidget* field, bool back);
    bool isCommitField(QWidget* field) const;
    void commitFrom(QWidget* field);
    void normaliseTimeField();
    void applyModeSwitch();
    void stepBand(int delta);
    bool editFieldKey(QWidget* field, QKeyEvent* e);
    void closeEditForMenu();
    void gridContextMenu(const QPoint& pos);

    Texts& texts_;
    Clock& clock_;
    Beeper& beeper_;
    FieldColours colours_;
    int zeitPlusMinus_ = 0;
    bool modeSwitch_ = false;
    bool modeSwitching_ = false;
    QString mode2St_ = "SSB";
    QString mode3St_ = "CW";
    QString currentName_;
    QString lastCall_;
    QString lastLocator_;
    std::array<bool, 10> bandHasQsos_{};

    // Menus.
    QMenu* languageMenu_ = nullptr;
    QActionGroup* languageGroup_ = nullptr;
    QAction* timeEditAction_ = nullptr;
    QAction* timeDateEditAction_ = nullptr;

    // Band selection.
    QComboBox* bandBox_ = nullptr;
    std::array<QPushButton*, 10> bandButtons_{};

    // Own station.
    QLineEdit* ownCall_ = nullptr;
    QLineEdit* ownLocator_ = nullptr;

    // Entry row `Picture3`.
    QWidget* entryRow_ = nullptr;
    QWidget* datePanel_ = nullptr;
    QLineEdit* time_ = nullptr;
    QLineEdit* date_ = nullptr;
    QLineEdit* call_ = nullptr;
    QLineEdit* rstSent_ = nullptr;
    QLineEdit* serialSent_ = nullptr;
    QLineEdit* rstReceived_ = nullptr;
    QLineEdit* locator_ = nullptr;
    QLineEdit* qrb_ = nullptr;
    QLineEdit* qtf_ = nullptr;
    QLineEdit* notice_ = nullptr;
    QLineEdit* qsl_ = nullptr;
    QComboBox* modeTx_ = nullptr;
    QComboBox* modeRx_ = nullptr;
    QComboBox* propagation_ = nullptr;
    QComboBox* operator_ = nullptr;
    QLabel* status_ = nullptr;

    // Correction line `Picture33`.
    QWidget* correctionLine_ = nullptr;
    QLineEdit* editTime_ = nullptr;
    QLineEdit* editQsl_ = nullptr;

    // Log grid and side panels.
    LogGridModel* gridModel_ = nullptr;
    QTableView* grid_ = nullptr;
    QGroupBox* statistics_ = nullptr;
    QLabel* rate_ = nullptr;
    QListWidget* lookupList_ = nullptr;
    QWidget* duplicatePanel_ = nullptr;
    std::array<QLabel*, 10> dupLabels_{};
    QGroupBox* workedElsewhere_ = nullptr;
    QTableWidget* workedGrid_ = nullptr;
    QGroupBox* comparison_ = nullptr;
    QTableWidget* comparisonGrid_ = nullptr;

    QTimer* timer1_ = nullptr;

    // Correction state.
    int editGridRow_ = -1;
    bool editLoading_ = false;
    QString editName_;
    int gridMenuRow_ = -1;
    QMenu* gridMenu_ = nullptr;

    QWidget* loadingPanel_ = nullptr;
    std::array<QString, 10> bandProp_{};
    QComboBox* maxBake_ = nullptr;
    QWidget* keyHelp_ = nullptr;
    bool smallLayout_ = false;
};

} // namespace orv::ui
