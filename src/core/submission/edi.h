#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <string_view>

#include "core/logstore/bands.h"
#include "core/submission/evaluation.h"
#include "core/util/result.h"

// The EDI entry file (REG1TEST) of one band, built from the evaluation's
// cells and statistic values and from the 47 boxes of the export dialog.
//
// The dialog's life, in core calls:
//   EdiBoxes boxes = ediLoadLast(settings);               // opening: Ex0..Ex46
//   ediFillOnOpen(ev, boxes);                             // contest, call, figures
//   ediChooseBand(settings, ev, boxes);                   // template, then evaluation
//   Result<path> p = writeEdi(chosen, ev, boxes, "CW");   // the file
//   ediSaveLast(settings, boxes);                         // closing
namespace orv {

class Settings;

inline constexpr int kEdiBoxes = 47;
// The boxes `Text1(0)` to `Text1(46)`.
using EdiBoxes = std::array<std::string, kEdiBoxes>;

// The `PBand=` texts by band position; the comma is the file's own.
inline constexpr std::array<std::string_view, kBandCount> kPBandTexts{
    "50 MHz",  "145 MHz", "435 MHz", "1,3 GHz", "2,3 GHz",
    "3,4 GHz", "5,7 GHz", "10 GHz",  "24 GHz",  "47 GHz"};
const std::string_view& pBandText(int band);

// Last contents of the boxes (`EDiExport`, `Ex<i>`).
EdiBoxes ediLoadLast(const Settings& settings);
void ediSaveLast(Settings& settings, const EdiBoxes& boxes);
// The template of a band (`EDiExport<PBand text>`, `Vo<i>`): saving writes
// every box; applying replaces a box only with a value that is not empty.
void ediSaveTemplate(Settings& settings, int band, const EdiBoxes& boxes);
void ediApplyTemplate(const Settings& settings, int band, EdiBoxes& boxes);

// Opening: contest name, the two dates, own call and locator (each only
// when the log has one) and the figures of boxes 25, 26, 27 and 37.
void ediFillOnOpen(const Evaluation& ev, EdiBoxes& boxes);
// A band's evaluation into its boxes (nothing for a band without rows); the
// ODX boxes keep what they hold when no row is marked "ODX".
void ediFillFromEvaluation(const Evaluation& ev, EdiBoxes& boxes);
// Choosing a band: its template first, then the evaluation over it.
void ediChooseBand(const Settings& settings, const Evaluation& ev, EdiBoxes& boxes);

// The mode code of a QSO line from the transmit and receive modes.
char ediModeCode(std::string_view txMode, std::string_view rxMode);
// One QSO line without its line end. `cwMode` is the second entry of the
// mode list: a QSO received in that mode has a report of three characters.
std::string ediQsoLine(const EvalCells& cells, std::string_view cwMode);

// The whole file as UTF-8 text with CR LF line ends. Refusals, in this
// order: no rows, IText(202) with the band text; a box 1 or 11 that is no
// date, IText(13) with the box to focus ("Text1(1)", "Text1(11)").
Result<std::string> ediText(const Evaluation& ev, const EdiBoxes& boxes, std::string_view cwMode);

// Writes the file at the chosen name with ".EDI" forced, in Windows-1252,
// replacing an existing file. Every refusal comes before the file is
// touched, and a write error leaves the old file as it was (throws
// fileio::FileError). Returns the path written.
Result<std::filesystem::path> writeEdi(const std::filesystem::path& chosen, const Evaluation& ev,
                                       const EdiBoxes& boxes, std::string_view cwMode);

// The upload name of an EDI file: call, band and dates from its header as
// "CALL_145MHz_20060701;20060702.EDI". IText(327) when the call or the band
// is missing; a file that cannot be read throws fileio::FileError.
Result<std::string> EDIDateiname(const std::filesystem::path& ediFile);

} // namespace orv
