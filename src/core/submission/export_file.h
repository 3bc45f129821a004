#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "core/util/datetime.h"

// What the entry files share: the forced file ending, the version text of
// their first lines, the message after a file was written, and reading back
// the date and time cells of the evaluation grid.
namespace orv {

class Texts;

// Appends `ending` (".EDI", ".ADI", ".TXT") unless the trimmed name already
// ends in it in any case; a closing NUL character is dropped first.
std::filesystem::path forceExtension(const std::filesystem::path& chosen, std::string_view ending);

// "major.minor.revision" of the program, as the files' version lines carry it.
std::string programVersionText();

// IText(183), a line break and the path: what every export ends with.
std::string savedMessage(const Texts& texts, const std::filesystem::path& path);

// A date as the grid or a box holds it: "YYYY-MM-DD" (a time may follow),
// "DD.MM.YYYY" or "YYYYMMDD". Nothing for text that is no valid date.
std::optional<DateTime> parseCellDate(std::string_view cell);
// A time "H:MM" or "HH:MM:SS"; only the time fields are set.
std::optional<DateTime> parseCellTime(std::string_view cell);

// The cell in a date or time picture of the old Format function: "yymmdd",
// "yyyymmdd", "HHMM". Text that is no date or time stays as it is.
std::string formatCellDate(std::string_view cell, std::string_view picture);
std::string formatCellTime(std::string_view cell);
// Format(cell, "0000"): a whole number padded with zeros to four digits;
// empty text stays empty and any other text stays as it is.
std::string format0000(std::string_view cell);

} // namespace orv
