#include "core/util/datetime.h"

#include <cstdio>

namespace orv {
namespace {

// Howard Hinnant's civil calendar algorithms.
std::int64_t daysFromCivil(int y, int m, int d) {
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

void civilFromDays(std::int64_t z, int& y, int& m, int& d) {
    z += 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    y = static_cast<int>(yoe + era * 400 + (m <= 2));
}

bool digits(std::string_view s, std::size_t pos, std::size_t n, int& out) {
    if (pos + n > s.size())
        return false;
    int v = 0;
    for (std::size_t i = pos; i < pos + n; ++i) {
        if (s[i] < '0' || s[i] > '9')
            return false;
        v = v * 10 + (s[i] - '0');
    }
    out = v;
    return true;
}

} // namespace

std::int64_t DateTime::dayNumber() const { return daysFromCivil(year, month, day); }

std::int64_t DateTime::secondsSinceEpoch() const {
    return dayNumber() * 86400 + hour * 3600 + minute * 60 + second;
}

DateTime DateTime::fromSecondsSinceEpoch(std::int64_t s) {
    std::int64_t days = s / 86400;
    std::int64_t rest = s % 86400;
    if (rest < 0) {
        rest += 86400;
        --days;
    }
    DateTime t;
    civilFromDays(days, t.year, t.month, t.day);
    t.hour = static_cast<int>(rest / 3600);
    t.minute = static_cast<int>(rest / 60 % 60);
    t.second = static_cast<int>(rest % 60);
    return t;
}

DateTime DateTime::addSeconds(std::int64_t s) const {
    return fromSecondsSinceEpoch(secondsSinceEpoch() + s);
}

std::string DateTime::toStorage() const {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%04d-%02d-%02d %02d:%02d:%02d", year, month, day, hour, minute,
                  second);
    return buf;
}

std::string DateTime::dateIso() const { return toStorage().substr(0, 10); }
std::string DateTime::timeHM() const { return toStorage().substr(11, 5); }

std::string DateTime::yyyymmdd() const {
    char buf[16];
    std::snprintf(buf, sizeof buf, "%04d%02d%02d", year, month, day);
    return buf;
}

bool DateTime::validDate(int y, int m, int d) {
    if (y < 1 || y > 9999 || m < 1 || m > 12 || d < 1)
        return false;
    static const int dim[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
    return d <= dim[m - 1] + (m == 2 && leap ? 1 : 0);
}

std::optional<DateTime> DateTime::fromStorage(std::string_view s) {
    DateTime t;
    if (s.size() < 10 || s[4] != '-' || s[7] != '-' || !digits(s, 0, 4, t.year) ||
        !digits(s, 5, 2, t.month) || !digits(s, 8, 2, t.day) || !validDate(t.year, t.month, t.day))
        return std::nullopt;
    t.hour = t.minute = t.second = 0;
    if (s.size() == 10)
        return t;
    if (s.size() < 16 || (s[10] != ' ' && s[10] != 'T') || s[13] != ':' ||
        !digits(s, 11, 2, t.hour) || !digits(s, 14, 2, t.minute))
        return std::nullopt;
    if (s.size() >= 19 && s[16] == ':' && !digits(s, 17, 2, t.second))
        return std::nullopt;
    if (t.hour > 23 || t.minute > 59 || t.second > 59)
        return std::nullopt;
    return t;
}

} // namespace orv
