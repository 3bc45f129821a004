#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "core/logstore/bands.h"
#include "core/util/result.h"

// Statistics over several contest logs of one folder: per band the QSOs,
// points and ODX of every chosen log, and over all of them the calls,
// locators, Grossfelder and countries. The logs are only read.
namespace orv {

class CountryList;
class Texts;

// The logs of a folder that pass the version test (`144MHz` has `ErrQSO`
// and `OPCall`): their names without the ending, sorted. Files that are no
// database are left out too.
std::vector<std::string> listStatisticLogs(const std::filesystem::path& folder);

// Of the program's table: at most this many logs are summed.
inline constexpr std::size_t kMaxStatisticLogs = 99;

struct BandStatistic {
    std::int64_t qsos = 0;   // counted QSOs (not deleted)
    std::int64_t points = 0; // sum of PGesamt<band>
    std::int64_t odx = 0;    // greatest ODX<band>
    std::set<std::string> locators;
    std::set<std::string> grossfelder;
    std::set<std::string> countries;
};

struct LogStatistics {
    std::vector<std::string> calls;    // own calls, each once, in order met
    std::vector<std::string> locators; // own locators, each once
    std::array<BandStatistic, kBandCount> bands;
    std::int64_t logs = 0;
};

// Sums the named logs of the folder. Refusals: IText(415) with the name for
// a log that is missing or fails the version test, IText(225) for no log or
// more than kMaxStatisticLogs. Throws sql::Error for a damaged file.
Result<LogStatistics> computeStatistics(const std::filesystem::path& folder,
                                        const std::vector<std::string>& names,
                                        const CountryList* countries);

// The report as the window shows it, lines ending in "\n".
std::string statisticsReport(const LogStatistics& stats, const Texts& texts);

// Stores a report as it stands, ".TXT" appended unless the name ends so in
// any case; an existing file is replaced. A write error leaves the old file
// as it was (throws fileio::FileError). Returns the path written.
std::filesystem::path saveStatisticsReport(const std::filesystem::path& chosen,
                                           const std::string& report);

} // namespace orv
