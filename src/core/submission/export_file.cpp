#include "core/submission/export_file.h"

#include <algorithm>
#include <cstdio>

#include "core/i18n/texts.h"
#include "core/util/text.h"
#include "core/version.h"

namespace orv {
namespace {

bool allDigits(std::string_view s) {
    if (s.empty())
        return false;
    for (char c : s)
        if (c < '0' || c > '9')
            return false;
    return true;
}

int num(std::string_view s) {
    return static_cast<int>(text::leadingInt(s));
}

std::string twoDigits(int v) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "%02d", v % 100);
    return buf;
}

} // namespace

std::filesystem::path forceExtension(const std::filesystem::path& chosen, std::string_view ending) {
    std::string name = chosen.string();
    if (const auto nul = name.find('\0'); nul != std::string::npos)
        name.erase(nul);
    if (!text::endsWith(text::upper(text::trim(name)), text::upper(ending)))
        name += ending;
    return name;
}

std::string programVersionText() {
    return kVersion;
}

std::string savedMessage(const Texts& texts, const std::filesystem::path& path) {
    return texts(183) + "\n" + path.string();
}

std::optional<DateTime> parseCellDate(std::string_view cellIn) {
    const std::string cell = text::trim(cellIn);
    int y = 0, m = 0, d = 0;
    const std::string_view c = cell;
    if (c.size() >= 10 && c[4] == '-' && c[7] == '-' && allDigits(c.substr(0, 4)) &&
        allDigits(c.substr(5, 2)) && allDigits(c.substr(8, 2)) &&
        (c.size() == 10 || c[10] == ' ')) {
        y = num(c.substr(0, 4)), m = num(c.substr(5, 2)), d = num(c.substr(8, 2));
    } else if (c.size() == 10 && c[2] == '.' && c[5] == '.' && allDigits(c.substr(0, 2)) &&
               allDigits(c.substr(3, 2)) && allDigits(c.substr(6, 4))) {
        d = num(c.substr(0, 2)), m = num(c.substr(3, 2)), y = num(c.substr(6, 4));
    } else if (c.size() == 8 && allDigits(c)) {
        y = num(c.substr(0, 4)), m = num(c.substr(4, 2)), d = num(c.substr(6, 2));
    } else {
        return std::nullopt;
    }
    if (!DateTime::validDate(y, m, d))
        return std::nullopt;
    return DateTime{y, m, d, 0, 0, 0};
}

std::optional<DateTime> parseCellTime(std::string_view cellIn) {
    const std::string cell = text::trim(cellIn);
    const std::string_view c = cell;
    const auto colon = c.find(':');
    if (colon == std::string_view::npos || colon == 0 || colon > 2)
        return std::nullopt;
    const std::string_view hh = c.substr(0, colon);
    std::string_view rest = c.substr(colon + 1);
    std::string_view mm = rest, ss;
    if (const auto c2 = rest.find(':'); c2 != std::string_view::npos) {
        mm = rest.substr(0, c2);
        ss = rest.substr(c2 + 1);
        if (ss.size() != 2 || !allDigits(ss))
            return std::nullopt;
    }
    if (mm.size() != 2 || !allDigits(hh) || !allDigits(mm))
        return std::nullopt;
    DateTime t;
    t.hour = num(hh), t.minute = num(mm), t.second = ss.empty() ? 0 : num(ss);
    if (t.hour > 23 || t.minute > 59 || t.second > 59)
        return std::nullopt;
    return t;
}

std::string formatCellDate(std::string_view cell, std::string_view picture) {
    const auto d = parseCellDate(cell);
    if (!d)
        return std::string(cell);
    if (picture == "yymmdd")
        return twoDigits(d->year) + twoDigits(d->month) + twoDigits(d->day);
    return d->yyyymmdd();
}

std::string formatCellTime(std::string_view cell) {
    const auto t = parseCellTime(cell);
    if (!t)
        return std::string(cell);
    return twoDigits(t->hour) + twoDigits(t->minute);
}

std::string format0000(std::string_view cellIn) {
    const std::string cell = text::trim(cellIn);
    if (!text::isInteger(cell))
        return std::string(cellIn);
    // Worked on the digits, so that no number is too long for it.
    const bool negative = cell[0] == '-';
    std::string digits = cell.substr((cell[0] == '-' || cell[0] == '+') ? 1 : 0);
    digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
    const bool zero = digits.empty();
    if (digits.size() < 4)
        digits.insert(0, 4 - digits.size(), '0');
    return (negative && !zero ? "-" : "") + digits;
}

} // namespace orv
