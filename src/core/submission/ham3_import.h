#pragma once

#include <array>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/capture/capture.h"

// The import of a log of the HAM III program (".ASC"): each line is one QSO,
// replayed through the normal commit so that every rule of a typed QSO
// applies to it.
//
//   Ham3Import imp(capture, modes);
//   Ham3Report r = imp.run(text::splitLines(bytes), row, askUnknownBand);
namespace orv {

// A line shorter than this (in characters) ends the import.
inline constexpr std::size_t kHam3MinLine = 10;

// The HAM III band tokens by BandIndex.
inline constexpr std::array<std::string_view, kBandCount> kHam3Bands{
    "50", "144", "432", "1296", "2320", "3456", "5760", "10", "24", "47"};

// What one line gives to the entry row, token by token.
struct Ham3Line {
    // Fewer tokens than date to mode: no QSO line at all.
    bool complete = false;
    // The date token upper-cased with the month's number put in, as
    // "YYYY-MM-DD" when that is a date, else the token as it stands.
    std::string date;
    bool dateOk = false;
    std::string time; // "HH:MM" when it is a time, else the token
    bool timeOk = false;
    std::optional<std::string> call; // when longer than 2 characters: the first 15
    std::optional<std::string> rst;  // when longer than 1 character: the first 3
    std::string rstNr;               // report received and the serial as "000"/"0000"
    bool serialOk = false;           // the received serial is a number
    std::string bandToken;
    std::optional<int> band; // BandIndex of the band token
    std::string mode;
    std::optional<std::string> locator; // the last token: first 6, upper case
};

// Splits one line at runs of blanks and reads its tokens.
Ham3Line parseHam3Line(std::string_view line);

// The date token: upper-cased, characters 4 to 6 ("JAN" .. "DEC") replaced by
// the month's number, then read as day-month-year. Nothing when the result
// is no date (an unknown month leaves the token as it stands).
std::optional<DateTime> ham3Date(std::string_view token);

// One line that was not stored: its number (from 1), the text row and the
// call or detail shown with it.
struct Ham3Refusal {
    std::size_t line = 0;
    int text = 0;
    std::string detail;
};

struct Ham3Report {
    enum class End {
        Finished,     // end of the file or a short line
        BandNotEmpty, // IText(423): the first band holds QSOs, nothing stored
        Cancelled,    // Cancel on IText(425)
    };
    End end = End::Finished;
    std::size_t stored = 0;
    std::size_t unknownBand = 0; // lines of a band the program has not
    std::vector<Ham3Refusal> refused;
    std::array<bool, kBandCount> bandsStored{};
};

class Ham3Import {
public:
    // `modes`: the items of the mode boxes; a mode token that is one of them
    // is selected, any other leaves the row's modes as they are.
    Ham3Import(Capture& capture, std::vector<std::string> modes);

    // Asked for each line with a band the program has not (IText(425)): true
    // goes on with the next line, false ends the import.
    using UnknownBand = std::function<bool(std::size_t line, const std::string& token)>;

    // Replays the lines through `Uebernehmen`. `row` is the entry row the
    // lines are written into (its modes, operator and propagation stay as
    // the window holds them); date and time are taken from the row, as with
    // the date panel shown. Throws what the store throws.
    Ham3Report run(const std::vector<std::string>& lines, EntryRow& row,
                   const UnknownBand& unknownBand);

private:
    // The fields of the line written into the row; a refusal before the
    // commit when the line cannot be a QSO.
    std::optional<Ham3Refusal> fill(const Ham3Line& l, std::size_t lineNo, EntryRow& row) const;

    Capture& capture_;
    std::vector<std::string> modes_;
};

// The lines of a HAM III file: UTF-8, or Windows-1252 when it is not valid
// UTF-8. Throws fileio::FileError when it cannot be read.
std::vector<std::string> readHam3File(const std::filesystem::path& path);

} // namespace orv
