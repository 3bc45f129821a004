#pragma once

// What the station log keeps in the settings file: the window's state in
// `QJDaten` and the four pick lists, each a section of numbered keys
// "00=...", "01=...".

#include <string>
#include <string_view>
#include <vector>

namespace orv {

class Settings;

// The values of a list section in key order; a line without "=" counts
// whole, empty values are passed over.
std::vector<std::string> readStationList(const Settings& settings, std::string_view section);
// Deletes the section and writes the non-empty trimmed values as "00", "01", ...
void writeStationList(Settings& settings, std::string_view section,
                      const std::vector<std::string>& values);

// The four lists of the options dialog `QjConfig`.
struct StationLists {
    std::vector<std::string> qrg;       // QJDatenQRG
    std::vector<std::string> power;     // QJDatenPWR
    std::vector<std::string> antenna;   // QJDatenANT
    std::vector<std::string> myLocator; // QJDatMyLocList
    bool operator==(const StationLists&) const = default;
};
StationLists readStationLists(const Settings& settings);
void writeStationLists(Settings& settings, const StationLists& lists);

// `QJDaten`: the window's place and size, the entry frame's place, the last
// QSL and power, and the log that was open last (its file name alone).
struct StationWindowState {
    int left = 0, top = 0, width = 0, height = 0; // 0: not stored yet
    bool entryBelow = false;                      // EingabePos 1
    std::string qsl;
    std::string power;
    std::string logFile;
};
StationWindowState readStationWindowState(const Settings& settings);
// Writes the geometry, QSL and Power (the window's unload).
void writeStationWindowClose(Settings& settings, const StationWindowState& state);

} // namespace orv
