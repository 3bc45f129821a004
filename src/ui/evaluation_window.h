#pragma once

#include <QWidget>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/app/app_paths.h"
#include "core/logstore/bands.h"
#include "core/submission/evaluation.h"

class QComboBox;
class QLabel;
class QPushButton;
class QTableWidget;

namespace orv {
class Beeper;
class Clock;
class CountryList;
class Dialogs;
class Settings;
class Texts;
} // namespace orv

namespace orv::ui {

// The evaluation window `Form5`: one band of any contest log in the grid
// `MSFlexGrid1`, the band's statistic values, the countries in
// `MSFlexGrid2`, and the buttons of the EDI, text and ADIF exports. The
// figures come from core's evaluation; the window shows them and sorts the
// rows it was given.
class AdifQrgPanel;
struct ExportContext;

class EvaluationWindow : public QWidget {
    Q_OBJECT
public:
    // `logName`: the log to select first (the one open in the main window),
    // `band` the band to start on.
    EvaluationWindow(const AppPaths& paths, Settings& settings, const Texts& texts,
                     Dialogs& dialogs, Clock& clock, Beeper& beeper, const std::string& logName,
                     int band, QWidget* parent = nullptr);
    ~EvaluationWindow() override;

    // The run of `Command1` over the chosen log and band. False when there is
    // no log or the log was refused (the message has been shown).
    bool evaluate();
    // Sets the band box (`Combo1`), which runs the evaluation when a log is
    // chosen; returns the evaluation of that band, or null.
    const Evaluation* evaluateBand(int band);

    const Evaluation* evaluation() const { return ev_ ? &*ev_ : nullptr; }
    int band() const;
    std::string logName() const;

    // Called on close when the call database changed while the window was
    // open and the user wants it loaded again.
    std::function<void()> reloadCallDb;

    // Buttons of the window (public so that the menu and tests can press them).
    void sortGrid(int column);
    void sortCountries(int column);
    void showLocators();
    // The square window `Form9` over the evaluated band's Grossfelder.
    void showSquares();
    void openEdi();
    void exportAdif();
    void exportText();
    // `Command3`: the evaluated band's printout, printed, previewed or saved
    // as a PDF (the same file as `orvanta-tool print`). Without an
    // evaluation IText(1170) is shown.
    void printLog();
    void previewLog();
    void savePdf();

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void buildUi();
    void Grid1Set();
    // The heads of both grids in the language in use, widths and sort kept.
    void retitleGrids();
    void fillLogs(const std::string& select);
    void clearShown();
    void showEvaluation();
    void paintBandButtons();
    void paintSortHeader(QTableWidget* grid, int column, GridSorter::Direction d);
    std::int64_t callDbCount() const;
    // The chosen log opened for reading, or nothing after a message.
    std::optional<std::filesystem::path> chosenLogFile();
    ExportContext exportContext();

    const AppPaths paths_;
    Settings& settings_;
    const Texts& texts_;
    Dialogs& dialogs_;
    Clock& clock_;
    Beeper& beeper_;
    std::unique_ptr<CountryList> countries_;
    std::int64_t callDbCountAtOpen_ = 0;
    std::optional<Evaluation> ev_;
    GridSorter gridSorter_;
    GridSorter countrySorter_;
    // Captions that are a row with ":" after it, captioned anew with the language.
    std::vector<std::pair<QWidget*, int>> colonCaptions_;

    QComboBox* logBox_ = nullptr;  // Combo2
    QComboBox* bandBox_ = nullptr; // Combo1
    std::array<QPushButton*, kBandCount> bandButtons_{};
    QTableWidget* grid_ = nullptr;        // MSFlexGrid1
    QTableWidget* countryGrid_ = nullptr; // MSFlexGrid2
    AdifQrgPanel* qrgPanel_ = nullptr;
    struct Figures {
        QLabel* locators = nullptr;    // Label3
        QLabel* grossfelder = nullptr; // Label28
        QLabel* countries = nullptr;   // Label4
        QLabel* multiplier = nullptr;  // Label7
        QLabel* dupes = nullptr;       // Label8
        QLabel* deleted = nullptr;     // Label11
        QLabel* qsos = nullptr;        // Label18
        QLabel* score = nullptr;       // Label19
        QLabel* kmPerQso = nullptr;    // Label20
        QLabel* odx = nullptr;         // Label21
    } figures_;
    bool running_ = false;
};

} // namespace orv::ui
