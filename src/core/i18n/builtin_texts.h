#pragma once

#include <span>
#include <utility>
#include <vector>

namespace orv {

using TextRow = std::pair<int, const char*>;

// Row number and UTF-8 text of every row of the built-in language table: the
// classic rows, then the added ones of each area.
const std::vector<TextRow>& builtinTexts();

// The added rows, one file and one range each, so that every window is born
// with its texts in the table (German here, English in Language/English.lng):
//   501-899    main window, chooser, panels, key help, evaluation windows,
//              station log, CW window, tool messages       rows_general.cpp
//   900-949    beacon and CW keying                        rows_keying.cpp
//   950-1099   options dialog                              rows_options.cpp
//   1100-1149  EDI editor and upload                       rows_files.cpp
//   1150-1199  log import, log folders, printing           rows_import.cpp
//   1200-1219  band state and call database loading        rows_loading.cpp
//   1220-1269  rig and rotator                             rows_rig.cpp
//   1270-1319  map and rate graph                          rows_map.cpp
//   1320-1369  shared log                                  rows_shared.cpp
std::span<const TextRow> generalRows();
std::span<const TextRow> keyingRows();
std::span<const TextRow> optionsRows();
std::span<const TextRow> filesRows();
std::span<const TextRow> importRows();
std::span<const TextRow> loadingRows();
std::span<const TextRow> rigRows();
std::span<const TextRow> mapRows();
std::span<const TextRow> sharedRows();

} // namespace orv
