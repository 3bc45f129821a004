#pragma once

// AdifExport of the station log: a range of records as an ADIF 2.2.3 file
// for other logging programs and QSL services.
//
// The file is written in Windows-1252, as the contest log's ADIF file, so
// that each field's length counts characters and bytes alike; lines end in
// CR LF. Empty fields are left out, but for the date and the time. The
// report tags are crossed on purpose (RST_TX goes out as RST_RCVD, RST_RX
// as RST_SENT), both own-locator tags go out for old and new readers, and
// RXMod and QSL_RX are not exported.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "core/stationlog/schema.h"
#include "core/util/result.h"

namespace orv {

class StationLog;

// The three header lines: the program and its version, "<adif_ver:5>2.2.3",
// "<EOH>", each with its line end.
std::string stationAdifHeader();
// One record without its line end, ending in "<EOR>".
std::string stationAdifRecord(const StationQso& qso);

struct NrRange {
    std::int64_t from = 0;
    std::int64_t to = 0;
};

// The frame's range test on the two boxes: text that is no whole number is
// IText(225), from > to or a number outside the log IText(391), with the box
// to focus ("Text13", "Text14").
Result<NrRange> checkExportRange(StationLog& log, std::string_view from, std::string_view to);

// Writes the header and the records of the range (the whole log when none)
// to `out`. Returns the number of records written.
std::int64_t writeStationAdif(std::ostream& out, StationLog& log,
                              const std::optional<NrRange>& range);

// The file at the chosen name with ".ADI" added unless it ends so (any
// case), replacing an existing file through an atomic write: a failure
// leaves the old file as it was and throws fileio::FileError. Returns the
// path written.
std::filesystem::path exportStationAdif(StationLog& log, const std::filesystem::path& chosen,
                                        const std::optional<NrRange>& range);

} // namespace orv
