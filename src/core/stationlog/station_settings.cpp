#include "core/stationlog/station_settings.h"

#include <algorithm>
#include <cstdio>

#include "core/settings/settings.h"
#include "core/util/text.h"

namespace orv {

std::vector<std::string> readStationList(const Settings& settings, std::string_view section) {
    std::vector<std::pair<std::string, std::string>> keyed;
    for (const auto& line : settings.list(section)) {
        const auto eq = line.find('=');
        if (eq == std::string::npos)
            keyed.emplace_back(std::string{}, text::trim(line));
        else
            keyed.emplace_back(text::trim(line.substr(0, eq)), text::trim(line.substr(eq + 1)));
    }
    // The dialog writes the keys in order; a file edited by hand may not
    // have them so, and "10" must still follow "09".
    std::stable_sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) {
        if (a.first.size() != b.first.size())
            return a.first.size() < b.first.size();
        return a.first < b.first;
    });
    std::vector<std::string> values;
    for (auto& [key, value] : keyed)
        if (!value.empty())
            values.push_back(std::move(value));
    return values;
}

void writeStationList(Settings& settings, std::string_view section,
                      const std::vector<std::string>& values) {
    std::vector<std::string> lines;
    for (const auto& v : values) {
        const std::string t = text::trim(v);
        if (t.empty())
            continue;
        char key[16];
        std::snprintf(key, sizeof key, "%02zu", lines.size());
        lines.push_back(std::string(key) + "=" + t);
    }
    settings.file().create();
    settings.file().deleteSection(section);
    settings.setList(section, lines);
}

StationLists readStationLists(const Settings& settings) {
    return StationLists{readStationList(settings, section::QJDatenQRG),
                        readStationList(settings, section::QJDatenPWR),
                        readStationList(settings, section::QJDatenANT),
                        readStationList(settings, section::QJDatMyLocList)};
}

void writeStationLists(Settings& settings, const StationLists& lists) {
    writeStationList(settings, section::QJDatenQRG, lists.qrg);
    writeStationList(settings, section::QJDatenPWR, lists.power);
    writeStationList(settings, section::QJDatenANT, lists.antenna);
    writeStationList(settings, section::QJDatMyLocList, lists.myLocator);
}

StationWindowState readStationWindowState(const Settings& settings) {
    StationWindowState s;
    s.left = static_cast<int>(settings.get(keys::QJLeft));
    s.top = static_cast<int>(settings.get(keys::QJTop));
    s.width = static_cast<int>(settings.get(keys::QJWidth));
    s.height = static_cast<int>(settings.get(keys::QJHeight));
    s.entryBelow = settings.get(keys::QJEingabePos) != 0;
    s.qsl = settings.get(keys::QJQSL);
    s.power = settings.get(keys::QJPower);
    s.logFile = settings.get(keys::QJLogFile);
    return s;
}

void writeStationWindowClose(Settings& settings, const StationWindowState& s) {
    settings.file().create();
    settings.set(keys::QJLeft, s.left);
    settings.set(keys::QJTop, s.top);
    settings.set(keys::QJWidth, s.width);
    settings.set(keys::QJHeight, s.height);
    settings.set(keys::QJQSL, s.qsl);
    settings.set(keys::QJPower, s.power);
}

} // namespace orv
