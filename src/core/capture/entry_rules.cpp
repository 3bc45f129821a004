#include "core/capture/entry_rules.h"

#include <cstdio>

#include "core/util/text.h"

namespace orv::entry {

std::string normaliseTime(std::string_view typed) {
    std::string t = text::trim(typed);
    if (t.empty())
        return t;
    if (t.size() < 5)
        t.insert(0, 4 - std::min<std::size_t>(t.size(), 4), '0');
    if (t.find(kTimeSep) == std::string::npos && t.size() >= 2)
        t.insert(t.size() - 2, 1, kTimeSep);
    return t;
}

std::optional<TimeOfDay> parseTime(std::string_view s) {
    const std::string t = text::trim(s);
    // Digits and separators only: sscanf alone takes blanks and signs before
    // a number ("07: 7", "12:+5").
    if (t.find_first_not_of("0123456789:") != std::string::npos)
        return std::nullopt;
    TimeOfDay r;
    int consumed = 0;
    if (std::sscanf(t.c_str(), "%2d:%2d%n", &r.hour, &r.minute, &consumed) != 2)
        return std::nullopt;
    if (static_cast<std::size_t>(consumed) != t.size()) {
        int extra = 0;
        if (std::sscanf(t.c_str() + consumed, ":%2d%n", &r.second, &extra) != 1 ||
            static_cast<std::size_t>(consumed + extra) != t.size())
            return std::nullopt;
    }
    // sscanf accepts a sign; a time has none.
    if (t[0] < '0' || t[0] > '9' || r.hour < 0 || r.hour > 23 || r.minute < 0 || r.minute > 59 ||
        r.second < 0 || r.second > 59)
        return std::nullopt;
    return r;
}

std::optional<char> filterReportKey(char c) {
    if (c >= '0' && c <= '9')
        return c;
    switch (c) {
    case 'a':
    case 'A':
        return 'A';
    case 'f':
    case 'F':
        return 'F';
    case 's':
    case 'S':
        return 'S';
    default:
        return std::nullopt;
    }
}

std::optional<char> filterCallKey(char c) {
    if (c == ' ')
        return std::nullopt;
    if (c == '-')
        return '/';
    if (c >= 'a' && c <= 'z')
        return static_cast<char>(c - 32);
    return c;
}

std::optional<std::string> modeForReport(std::string_view report, const std::string& mode2St,
                                         const std::string& mode3St) {
    const std::size_t n = text::length(text::trim(report));
    if (n == 2)
        return mode2St;
    if (n == 3)
        return mode3St;
    return std::nullopt;
}

int minimumReceivedReport(std::string_view mode, std::string_view mode3St) {
    return text::trim(mode) == text::trim(mode3St) ? 6 : 5;
}

std::string formatSerial(long long n) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%03lld", n);
    return buf;
}

std::string nextReport(std::string_view report) {
    return text::length(text::trim(report)) == 3 ? "599" : "59";
}

std::optional<std::string> qslForKey(char c) {
    switch (c) {
    case 'J':
    case 'j':
    case 'Y':
    case 'y':
        return std::string("Yes");
    case 'N':
    case 'n':
        return std::string("No");
    default:
        return std::nullopt;
    }
}

std::string clipPropagation(std::string_view t) {
    return text::left(text::upper(t), 3);
}

} // namespace orv::entry
