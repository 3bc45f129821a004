#include "core/logstore/contest_defs.h"

#include <charconv>

#include "core/logstore/contest_log.h"
#include "core/settings/ini_file.h"
#include "core/settings/settings.h"
#include "core/util/text.h"

namespace orv {
namespace {

std::optional<std::int16_t> weight(std::string_view s) {
    const std::string t = text::trim(s);
    if (!text::isInteger(t))
        return std::nullopt;
    int v = 0;
    const char* b = t.data() + (t[0] == '+' ? 1 : 0);
    const auto [p, ec] = std::from_chars(b, t.data() + t.size(), v);
    if (ec != std::errc{} || p != t.data() + t.size() || v < -32768 || v > 32767)
        return std::nullopt;
    return static_cast<std::int16_t>(v);
}

} // namespace

std::optional<ContestDef> parseConELine(std::string_view line) {
    ContestDef def;
    std::size_t from = 0;
    for (int i = 0; i < kBandCount; ++i) {
        const std::size_t comma = line.find(',', from);
        if (comma == std::string_view::npos)
            return std::nullopt;
        const auto w = weight(line.substr(from, comma - from));
        if (!w)
            return std::nullopt;
        def.weights[static_cast<std::size_t>(i)] = *w;
        from = comma + 1;
    }
    def.name = std::string(line.substr(from));
    return def;
}

std::string formatConELine(const ContestDef& def) {
    std::string line;
    for (const auto w : def.weights)
        line += std::to_string(w) + ",";
    return line + def.name;
}

void ContesDateLoad(const IniFile& ini, std::vector<ContestDef>& defs,
                    std::vector<std::string>* badLines) {
    for (const auto& line : ini.readSection(section::ConE)) {
        if (auto def = parseConELine(line))
            defs.push_back(std::move(*def));
        else if (badLines)
            badLines->push_back(line);
    }
}

ContestData ConDaLoad(const IniFile& ini, std::vector<ContestDef>& defs) {
    ContesDateLoad(ini, defs);
    ContestData data;
    for (int i = 0; i < kBandCount; ++i) {
        const long long v = ini.getInt(section::AConDat, keys::C(i).key);
        data.Zaehl[static_cast<std::size_t>(i)] = v < 1 || v > 32767 ? 1 : static_cast<int>(v);
    }
    data.ContestName = text::trim(ini.getStr(section::AConDat, keys::CName.key));
    return data;
}

bool chooseContest(const std::vector<ContestDef>& defs, std::string_view boxText,
                   ContestData& current) {
    for (const auto& def : defs) {
        if (def.name != boxText)
            continue;
        for (int i = 0; i < kBandCount; ++i)
            current.Zaehl[static_cast<std::size_t>(i)] = def.weights[static_cast<std::size_t>(i)];
        current.ContestName = def.name;
        return true;
    }
    return false;
}

ContestData ConDatLoadDB(const MyDataRow& myData) {
    ContestData data;
    data.ContestName = myData.contName;
    for (std::size_t i = 0; i < kBandCount; ++i)
        data.Zaehl[i] = myData.zaehl[i].value_or(1);
    return data;
}

void SaveAConDat(IniFile& ini, const ContestData& data) {
    for (int i = 0; i < kBandCount; ++i)
        ini.write(section::AConDat, keys::C(i).key,
                  std::to_string(data.Zaehl[static_cast<std::size_t>(i)]));
    ini.write(section::AConDat, keys::CName.key, data.ContestName);
}

} // namespace orv
