#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/logstore/bands.h"
#include "core/util/result.h"

// The evaluation of one band of any contest log: every QSO as a row of the
// evaluation grid, the band's statistic values and the country table. It is
// recomputed from the band table each time; of the running totals in
// `MyData` only the ODX (and the QSO that holds it) and the band's weight are
// read. The EDI, ADIF and text exports are built from these cells, so the
// column numbers below are binding.
//
//   CountryList countries = CountryList::load(paths.countryDbPath());
//   Result<Evaluation> ev = evaluateLogFile(paths.logFile("Test"), 1, &countries);
//   ev->rows[i].cells[evalcol::Punkte], ev->points, ev->countries ...
namespace orv {

class ContestLog;
class CountryList;

// The columns of the evaluation grid (`MSFlexGrid1`).
namespace evalcol {
enum : int {
    Nr = 0,      // QSONr
    Datum = 1,   // DatTime, date "YYYY-MM-DD"
    Zeit = 2,    // DatTime, time "HH:MM"
    QRG = 3,     // QRG
    Call = 4,    // Call, upper case
    Locator = 5, // Locator
    RST = 6,     // RSTgeg
    RSTNr = 7,   // RSTerh
    Punkte = 8,  // QRB times the band multiplier
    TXMod = 9,   // Mod
    RXMod = 10,  // ModRX
    QSL = 11,    // "Yes" / "No"
    Name = 12,   // Name
    Notiz = 13,  // Notice
    Info = 14,   // "DUPE", "ODX" or empty
    Prop = 15,   // AusBr
    ErrQSO = 16, // "True" / "False" (hidden)
    OPCall = 17, // OPCall
};
} // namespace evalcol

inline constexpr int kEvalColumns = 18;
using EvalCells = std::array<std::string, kEvalColumns>;

enum class CellAlign { Left, Centre, Right };

// How the window lays a column out: the header's text number (0: no header),
// the width in twips (0: hidden), the data alignment, and whether the header
// is centred.
struct EvalColumn {
    int headerText;
    int width;
    CellAlign align;
    bool centredHeader;
};
const std::array<EvalColumn, kEvalColumns>& evalColumns();
// The country grid (`MSFlexGrid2`): "QSOs" and "Länder".
const std::array<EvalColumn, 2>& countryColumns();

struct EvalRow {
    EvalCells cells;
    // Deleted rows are drawn in red, but only when the band has an ODX QSO
    // number: the colouring happens in the pass that marks the ODX.
    bool red = false;
    // The QSO's frequency in Hz when the rig gave it, else 0.
    std::int64_t freqHz = 0;

    bool deleted() const { return cells[evalcol::ErrQSO] == "True"; }
};

// One row of the country grid.
struct CountryCount {
    std::int64_t qsos = 0;
    std::string country;
};

struct Evaluation {
    int band = 0;
    std::string contName;        // ContName of `MyData`
    std::string myCall;          // MyCall
    std::string myLocator;       // MyLocator
    std::int64_t multiplier = 1; // Label7: the band's weight, 1 when Null

    std::vector<EvalRow> rows;           // grid rows without the header
    std::vector<CountryCount> countries; // country rows without the header

    // Six-character locators, each followed by ","; it starts as "0".
    std::string locatorList = "0";
    double locatorCount = 0; // Label3
    // Four-character squares, each followed by ",".
    std::string grossfeldList;
    double grossfeldCount = 0; // Label28

    std::int64_t dupes = 0;    // Label8
    std::int64_t deleted = 0;  // Label11
    std::int64_t qsos = 0;     // Label18: rows minus deleted rows
    std::int64_t points = 0;   // Label19: score of the band
    std::int64_t kmPerQso = 0; // Label20
    std::int64_t odx = 0;      // Label21: ODX<band> times the multiplier

    // The bands whose table has rows (the band buttons' marks).
    std::array<bool, kBandCount> bandsWithQsos{};
    // Counted calls for which the country list has no prefix; the window
    // shows IText(291) and the call for each.
    std::vector<std::string> callsWithoutCountry;

    std::int64_t countryCount() const {
        return static_cast<std::int64_t>(countries.size());
    } // Label4
    // The row marked "ODX", if any.
    const EvalRow* odxRow() const;
};

// Evaluates one band of an open log. `countries` may be null: then no
// country is counted (the exports do not need them).
Evaluation evaluate(ContestLog& log, int band, const CountryList* countries);

// Opens the log read for evaluation; a log without `ErrQSO` or `OPCall` in
// `144MHz` gives IText(208). Throws sql::Error for a file that is no database.
Result<Evaluation> evaluateLogFile(const std::filesystem::path& logFile, int band,
                                   const CountryList* countries);

// GrossfeldADD of the evaluation: the first six characters, upper-cased,
// join the locator list unless already a piece of it; the first four join
// the Grossfeld list the same way.
void GrossfeldADD(Evaluation& ev, std::string_view locator);

// What a click on "Locatoren:" shows: the listed locators sorted, without
// the list's leading "0"; nothing while the list is shorter than five
// characters.
std::vector<std::string> sortedLocators(const Evaluation& ev);

// Click-to-sort on a grid header: the first click on a column sorts it
// ascending, the next descending, and so on; a click on another column
// starts again ascending. With no data rows nothing happens.
class GridSorter {
public:
    enum class Direction { None, Ascending, Descending };
    // Sorts the rows; returns the direction taken (None without rows).
    Direction click(std::vector<EvalRow>& rows, int column);
    Direction click(std::vector<CountryCount>& rows, int column);
    int column() const { return column_; }
    Direction direction() const { return direction_; }

private:
    Direction next(int column);
    int column_ = -1;
    Direction direction_ = Direction::None;
};

// The grid's sort order: two numbers compare as numbers, anything else as
// text. Stable, so equal keys keep their order.
void sortRows(std::vector<EvalRow>& rows, int column, bool descending);
bool cellLess(std::string_view a, std::string_view b);

} // namespace orv
