#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/submission/evaluation.h"
#include "core/util/datetime.h"

// The text listing of a whole contest log, for reading and printing: a
// header with the station, optionally the statistic values of every band
// with QSOs, then one fixed-width line per QSO of every band. No program
// reads it back. UTF-8 with CR LF line ends.
namespace orv {

class Texts;

struct TextListingOptions {
    bool withStatistics = true; // the answer to IText(400)
    DateTime now;               // the date and time in the list header
};

// `bands`: the evaluations in band order (evaluateAllBands).
std::string textListing(const std::vector<Evaluation>& bands, const Texts& texts,
                        const TextListingOptions& options);

// One QSO line of the listing, without its line end.
std::string textListingLine(const Evaluation& ev, const EvalRow& row, const Texts& texts);

// Writes the listing with ".TXT" forced, replacing an existing file; a write
// error leaves the old file as it was (throws fileio::FileError).
std::filesystem::path writeTextListing(const std::filesystem::path& chosen,
                                       const std::vector<Evaluation>& bands, const Texts& texts,
                                       const TextListingOptions& options);

} // namespace orv
