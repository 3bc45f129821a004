#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/logstore/bands.h"
#include "core/submission/evaluation.h"
#include "core/util/result.h"

// The ADIF file of a whole contest log: every band's evaluation in band
// order, one record a QSO, deleted QSOs left out. A QSO logged with the rig
// connected carries its own frequency (`FreqHz`); every other QSO of a band
// the band's frequency from the table `ADIFQRG0` .. `ADIFQRG9` (section
// QB-OPTION).
//
// The file is written in Windows-1252, like the EDI file, so that each
// field length counts bytes and characters alike.
namespace orv {

class ContestLog;
class CountryList;
class Settings;

using AdifFrequencies = std::array<std::string, kBandCount>;

// The stored frequencies; a band without one uses its box text ("144").
AdifFrequencies adifFrequencies(const Settings& settings);
// What the panel's store button writes: the trimmed boxes.
void setAdifFrequencies(Settings& settings, const AdifFrequencies& boxes);

// Every band of a log evaluated in band order, as the exports step the
// band box through all positions.
std::vector<Evaluation> evaluateAllBands(ContestLog& log, const CountryList* countries);

// A frequency in Hz as ADIF's MHz: "432.2", "10368.1005".
std::string adifMHz(std::int64_t hz);

// One record in Windows-1252 bytes, without the line end: the pieces
// QSO_DATE, TIME_ON, CALL, RST_SENT, RST_RCVD, FREQ, MODE, QSL_SENT,
// GRIDSQUARE (length 6 whatever the locator), PROP_MODE and NAME (both only
// when not empty), EOR. RST_RCVD takes three characters when the receive
// mode is exactly "CW", else two.
std::string adifRecord(const EvalCells& cells, std::string_view frequency);

// The whole file in Windows-1252 bytes with CR LF line ends: the version
// line, "<EOH>", then the records of the bands in `bands` (each knows its
// band).
std::string adifText(const std::vector<Evaluation>& bands, const AdifFrequencies& frequencies);

// Writes the file with ".ADI" forced, replacing an existing one; a write
// error leaves the old file as it was (throws fileio::FileError). Returns
// the path written.
std::filesystem::path writeAdif(const std::filesystem::path& chosen,
                                const std::vector<Evaluation>& bands,
                                const AdifFrequencies& frequencies);

} // namespace orv
