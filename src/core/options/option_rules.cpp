#include "core/options/option_rules.h"

#include <algorithm>
#include <filesystem>

#include "core/keying/cw_macros.h"
#include "core/keying/morse_table.h"
#include "core/util/text.h"

namespace orv::options {

Status checkModeName(std::string_view name) {
    const std::string n = text::trim(name);
    if (n.empty() || text::length(n) > 5)
        return refuse(178);
    return okStatus();
}

Status checkKeyedModes(std::string_view mode2St, std::string_view mode3St) {
    if (text::trim(mode2St).empty())
        return refuse(61, "Combo2");
    if (text::trim(mode3St).empty())
        return refuse(62, "Combo3");
    return okStatus();
}

Status checkWpm(long long wpm) {
    if (!keying::isValidWpm(wpm))
        return refuse(row::kChooseSpeed, "ComboCW1");
    return okStatus();
}

Status checkLoopPause(long long seconds) {
    if (seconds < 1 || seconds > 60)
        return refuse(245, "LoopPause");
    return okStatus();
}

Status checkBackup(std::string_view folder, bool on, long long minutes) {
    std::error_code ec;
    const std::string f = text::trim(folder);
    if (on && (f.empty() || !std::filesystem::is_directory(f, ec)))
        return refuse(row::kBadBackupFolder, "SichernPfad");
    if (minutes < 1 || minutes > 1440)
        return refuse(row::kBadBackupInterval, "SichernIntervall");
    return okStatus();
}

Status checkPropagation(std::string_view text) {
    const std::string t = text::trim(text);
    if (t.empty() || t.find_first_of("\r\n") != std::string::npos)
        return refuse(row::kBadPropagation);
    return okStatus();
}

Status checkContestDef(const std::vector<ContestDef>& defs, const ContestDef& def, int self) {
    const std::string name = text::trim(def.name);
    if (name.empty() || name.find_first_of("\r\n") != std::string::npos)
        return refuse(28, "CName");
    for (std::size_t i = 0; i < defs.size(); ++i)
        if (static_cast<int>(i) != self && text::iequals(text::trim(defs[i].name), name))
            return refuse(74, "CName");
    return okStatus();
}

Result<std::int16_t> parseWeight(std::string_view typed) {
    const std::string t = text::trim(typed);
    if (t.empty() || t.size() > 5 ||
        !std::all_of(t.begin(), t.end(), [](unsigned char c) { return c >= '0' && c <= '9'; }))
        return refuse(row::kBadWeight);
    const long v = std::stol(t);
    if (v > 32767)
        return refuse(row::kBadWeight);
    return static_cast<std::int16_t>(v);
}

std::string cwEndText(std::string_view typed) {
    return text::trim(keying::filterTyped(typed));
}

std::string zeitPlusMinusText(int hours) {
    return (hours < 0 ? "-" : "+") + std::to_string(hours < 0 ? -hours : hours) + ":00h";
}

std::optional<int> parseZeitPlusMinus(std::string_view shown) {
    std::string t = text::trim(shown);
    if (text::endsWith(t, ":00h"))
        t.resize(t.size() - 4);
    if (t.empty())
        return std::nullopt;
    int sign = 1;
    if (t[0] == '+' || t[0] == '-') {
        sign = t[0] == '-' ? -1 : 1;
        t.erase(0, 1);
    }
    if (t.empty() || t.size() > 2 ||
        !std::all_of(t.begin(), t.end(), [](unsigned char c) { return c >= '0' && c <= '9'; }))
        return std::nullopt;
    const int h = std::stoi(t);
    if (h > kMaxZeitPlusMinus)
        return std::nullopt;
    return sign * h;
}

} // namespace orv::options
