#pragma once

// The save of the station log window without its widgets: the checks in
// their order, and the record the entry becomes.

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/stationlog/schema.h"
#include "core/util/result.h"

namespace orv {

// The entry frame's boxes as typed; the comments name the controls.
struct StationEntry {
    std::string date;       // Text1
    std::string time;       // Text2
    std::string call;       // Text3
    std::string rstRx;      // Text4, RST_RX
    std::string rstTx;      // Text5, RST_TX
    std::string locator;    // Text6
    std::string qrgTx;      // Combo6
    std::string qrgRx;      // Combo7
    std::string txMode;     // Combo4
    std::string rxMode;     // Combo5
    std::string prop;       // Combo1
    std::string qsl;        // Combo2
    std::string qslManager; // Text7
    std::string name;       // Text8
    std::string myCall;     // Combo3
    std::string myLocator;  // Combo8
    std::string power;      // Combo10
    std::string antenne;    // Combo9
    std::string note;       // Text10
    std::string qslRx;      // not in the frame; kept when a record is changed
};

// The checks of the save, in order: date IText(13) (Text1), time IText(14)
// (Text2), the call test of the contest entry row IText(1) (Text3), the
// reports IText(4) (Text4, then Text5), the transmit frequency IText(381)
// (Combo6), the transmit mode IText(382) (Combo4). A report may be left
// empty; given, it is 2 or 3 of the characters the report fields take.
// The record carries every box trimmed and cut to its field's size; calls,
// locators and the propagation code upper-cased. Its Nr is 0.
Result<StationQso> checkStationEntry(const StationEntry& entry);

// The boxes showing a stored record (a click in the grid).
StationEntry entryOf(const StationQso& qso);

// The proposal of a new log's name: IText(370) and the day as "yyyymmdd".
std::string proposedStationLogName(std::string_view orvantaLog, const DateTime& today);
// The file of a log name in `folder`: the trimmed name, IText(7) when it
// cannot be a file name, with ".sqlite" added unless it ends so (any case).
Result<std::filesystem::path> stationLogFile(const std::filesystem::path& folder,
                                             std::string_view name);

// ADIF 2.2.3 mode names for the two mode boxes, and its propagation codes
// for the propagation box.
const std::vector<std::string>& adifModes();
const std::vector<std::string>& propagationCodes();

} // namespace orv
