#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/logstore/contest_defs.h"
#include "core/logstore/contest_log.h"
#include "core/util/datetime.h"
#include "core/util/result.h"

// Creating and opening a contest log: the rules of the log chooser without
// its widgets. Failures name the chooser's controls as the field to focus
// ("Combo4" contest, "Text1" own call, "Text2" own locator, "Combo1" start
// band, "Combo3" start mode).
namespace orv {

class Settings;

// What the chooser holds when a new log is asked for.
struct NewLogForm {
    std::string contest;   // Combo4's text
    std::string myCall;    // Text1
    std::string myLocator; // Text2
    std::string startBand; // Combo1's text ("144")
    std::string startMode; // Combo3's text
};

// Testen, in its order: contest name IText(28), own call shorter than 3
// IText(1), locator shorter than 6 or no position IText(2), no start band
// IText(15), no start mode IText(16).
Status Testen(const NewLogForm& form);

// The log name check: empty, one of / \ : < > ? | " *, a character of code 0
// to 31 or above 255, more than 250 characters, or a file name longer than
// the file system holds: IText(7).
Status checkLogName(std::string_view name);
// The proposed name of a new log: the day as "yyyymmdd".
std::string proposedLogName(const DateTime& today);
// The names of the logs in the folder (Logs/*.sqlite without the ending),
// sorted; nothing when the folder is missing.
std::vector<std::string> listLogs(const std::filesystem::path& logsFolder);

// Combo5: "-12:00h" ... "-1:00h", "00:00h", "+1:00h" ... "+12:00h".
std::vector<std::string> timeOffsetList();
// The hours of an entry: the number before the first ":" (0 when none).
int parseTimeOffset(std::string_view entry);
// The entry's position for an offset (-12..12 -> 0..24), clamped.
int timeOffsetIndex(int hours);

// Creates the log `name` in `logsFolder` for the form and the contest in
// force: Testen, the name check, then IText(8) when the file exists and
// `overwrite` is false (the chooser asks and calls again with true). The
// `MyData` row gets the trimmed call and locator, upper-cased, the contest
// name and the weights. Throws on file and database failures.
Result<ContestLog> createNewLog(const std::filesystem::path& logsFolder, std::string_view name,
                                const NewLogForm& form, const ContestData& contest, bool overwrite);

// A log opened in the chooser: the version test (IText(208)), then own call
// and locator, the contest (ConDatLoadDB) and the bands that hold QSOs.
struct OpenedLog {
    ContestLog log;
    std::string myCall;
    std::string myLocator;
    ContestData contest;
    std::array<bool, kBandCount> bandsWithQsos{};
};
Result<OpenedLog> openLog(const std::filesystem::path& logFile);

// What the chooser remembers when it closes over an open log.
struct LogChoice {
    int zeitPlusMinus = 0;
    std::string myCall;
    std::string myLocator;
    int modeIndex = 0; // position of the start mode in its list
    ContestData contest;
};
// The unload of the chooser: ZeitPlusMinus, MyCall and MyLocator
// (upper-cased) and Mode in `QB`, the call on top of CallList (at most ten),
// and AConDat.
void saveLogChoice(Settings& settings, const LogChoice& choice);

} // namespace orv
