#include "core/settings/settings.h"

#include <algorithm>

#include "core/util/text.h"

namespace orv {

namespace {
// The separator of the parts of an operator entry, character 182 of the old
// code page.
constexpr std::string_view kPilcrow = "\xC2\xB6";

std::string indexed(std::string_view stem, int n) {
    return std::string(stem) + std::to_string(n);
}
} // namespace

std::optional<Colour> parseColour(std::string_view s) {
    std::string t = text::upper(text::trim(s));
    if (t.empty())
        return std::nullopt;
    unsigned long long v = 0;
    if (text::startsWith(t, "&H")) {
        t.erase(0, 2);
        if (!t.empty() && t.back() == '&')
            t.pop_back();
        if (t.empty() || t.size() > 8)
            return std::nullopt;
        for (char c : t) {
            const int d = c >= '0' && c <= '9' ? c - '0' : c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
            if (d < 0)
                return std::nullopt;
            v = v * 16 + static_cast<unsigned>(d);
        }
    } else {
        if (!text::isInteger(t) || t[0] == '-' || t.size() > 10)
            return std::nullopt;
        v = static_cast<unsigned long long>(text::leadingInt(t));
    }
    if (v > 0xFFFFFF)
        return std::nullopt;
    return Colour::fromBgr(static_cast<std::uint32_t>(v));
}

std::string formatColour(Colour c) {
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string out = "&H";
    const std::uint32_t v = c.bgr();
    for (int shift = 20; shift >= 0; shift -= 4)
        out += kHex[(v >> shift) & 0xF];
    return out;
}

namespace keys {
StrSetting ADIFQRG(int i) {
    return {"QB-OPTION", indexed("ADIFQRG", i)};
}
IntSetting C(int band) {
    return {"AConDat", indexed("C", band), 1, 1};
}
IntSetting Flag(int i) {
    return {"DDE", indexed("Flag", i)};
}
StrSetting FlagBefehl(int i) {
    return {"DDE", indexed("FlagBefehl", i)};
}
IntSetting FOn(int n) {
    return {"CWQBF", indexed("FOn", n)};
}
StrSetting FText(int n) {
    return {"CWQBF", indexed("FText", n)};
}
StrSetting Ex(int n) {
    return {"EDiExport", indexed("Ex", n)};
}
StrSetting Vo(std::string_view bandText, int n) {
    return {"EDiExport" + std::string(bandText), indexed("Vo", n)};
}
StrSetting PriD(int n) {
    return {"PrintData", indexed("PriD", n)};
}
} // namespace keys

long long Settings::get(const IntSetting& s) const {
    const long long v = ini_.getInt(s.section, s.key);
    return v == 0 || v < s.min || v > s.max ? s.fallback : v;
}

void Settings::set(const IntSetting& s, long long value) {
    ini_.write(s.section, s.key, std::to_string(value));
}

bool Settings::get(const BoolSetting& s) const {
    return ini_.getInt(s.section, s.key) != 0;
}

void Settings::set(const BoolSetting& s, bool value) {
    ini_.write(s.section, s.key, value ? "-1" : "0");
}

std::string Settings::get(const StrSetting& s) const {
    std::string v = text::trim(ini_.getStr(s.section, s.key));
    return v.empty() ? s.fallback : v;
}

void Settings::set(const StrSetting& s, std::string_view value) {
    const std::string v = text::trim(value);
    ini_.write(s.section, s.key, s.upperCase ? text::upper(v) : v);
}

Colour Settings::get(const ColourSetting& s) const {
    return parseColour(ini_.getStr(s.section, s.key)).value_or(Colour::fromBgr(s.fallbackBgr));
}

void Settings::set(const ColourSetting& s, Colour value) {
    ini_.write(s.section, s.key, formatColour(value));
}

std::vector<OpCall> Settings::opCalls() const {
    std::vector<OpCall> ops;
    for (const auto& entry : ini_.readSection(section::OPCallList)) {
        std::string parts[4];
        std::size_t start = 0;
        for (int i = 0; i < 4; ++i) {
            const auto sep = entry.find(kPilcrow, start);
            // A fifth part, should one be there, stays with the fourth.
            const bool last = i == 3 || sep == std::string::npos;
            parts[i] = text::trim(entry.substr(start, last ? std::string::npos : sep - start));
            if (last)
                break;
            start = sep + kPilcrow.size();
        }
        ops.push_back({parts[0], parts[1], parts[2], parts[3]});
    }
    return ops;
}

void Settings::setOpCalls(const std::vector<OpCall>& ops) {
    std::vector<std::string> entries;
    for (const auto& op : ops) {
        if (text::trim(op.call).empty())
            continue;
        std::string e = text::trim(op.call);
        for (const auto* part : {&op.voiceFile, &op.beaconText, &op.toneFile})
            e += std::string(kPilcrow) + text::trim(*part);
        entries.push_back(std::move(e));
    }
    setList(section::OPCallList, entries);
}

std::vector<std::string> Settings::modes() {
    auto m = ini_.readSection(section::MODE);
    if (!m.empty())
        return m;
    m = {"SSB", "CW", "FM"};
    ini_.deleteSection(section::MODE);
    setList(section::MODE, m);
    return m;
}

void Settings::setModes(const std::vector<std::string>& modes) {
    setList(section::MODE, modes);
}

std::vector<std::string> Settings::callList() const {
    return ini_.readSection(section::CallList);
}

void Settings::rememberCall(std::string_view call) {
    const std::string c = text::upper(text::trim(call));
    if (c.empty())
        return;
    auto calls = callList();
    calls.erase(std::remove_if(calls.begin(), calls.end(),
                               [&](const std::string& e) { return text::upper(e) == c; }),
                calls.end());
    calls.insert(calls.begin(), c);
    if (calls.size() > kCallListSize)
        calls.resize(kCallListSize);
    setList(section::CallList, calls);
}

std::vector<std::string> Settings::list(std::string_view section) const {
    return ini_.readSection(section);
}

void Settings::setList(std::string_view section, const std::vector<std::string>& entries) {
    // Writing a section needs the file; on a first start there may be none yet.
    ini_.create();
    ini_.writeSection(section, entries);
}

} // namespace orv
