#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orv {

// A calendar date and time of day without a time zone: the log time of the
// program is the computer's clock plus a whole number of hours.
struct DateTime {
    int year = 1899, month = 12, day = 30;
    int hour = 0, minute = 0, second = 0;

    auto operator<=>(const DateTime&) const = default;

    // Days since 1970-01-01 of the date part.
    std::int64_t dayNumber() const;
    std::int64_t secondsSinceEpoch() const;
    static DateTime fromSecondsSinceEpoch(std::int64_t s);
    DateTime addSeconds(std::int64_t s) const;
    DateTime addHours(int h) const { return addSeconds(std::int64_t{h} * 3600); }
    DateTime addDays(int d) const { return addSeconds(std::int64_t{d} * 86400); }
    DateTime dateOnly() const { return DateTime{year, month, day, 0, 0, 0}; }

    // "YYYY-MM-DD HH:MM:SS", the stored form.
    std::string toStorage() const;
    // Accepts "YYYY-MM-DD", "YYYY-MM-DD HH:MM" and "YYYY-MM-DD HH:MM:SS".
    static std::optional<DateTime> fromStorage(std::string_view s);
    std::string dateIso() const; // YYYY-MM-DD
    std::string timeHM() const;  // HH:MM
    std::string yyyymmdd() const;
    static bool validDate(int y, int m, int d);
};

} // namespace orv
