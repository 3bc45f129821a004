#pragma once

#include <optional>
#include <string>
#include <string_view>

// Rules of the entry row that are logic rather than widgets: what a field
// accepts, how a typed time is completed, how the report length switches the
// mode, how serials are shown, and what the row becomes after a commit.
namespace orv::entry {

// The time separator and date separator the program shows.
inline constexpr char kTimeSep = ':';
inline constexpr char kDateSep = '-';

// Time field on Enter or on leaving it while the clock is stopped: a text of
// fewer than 5 characters is left-padded with "0" to 4, and the separator is
// put before the last two characters when there is none. "5" -> "00:05".
std::string normaliseTime(std::string_view typed);

// A typed time "HH:MM" or "HH:MM:SS" as hours, minutes and seconds.
struct TimeOfDay {
    int hour = 0, minute = 0, second = 0;
};
std::optional<TimeOfDay> parseTime(std::string_view s);

// Report fields (RST sent, RST and serial received): digits, A, F and S in
// either case, folded to upper case. Returns the character to insert, or
// nothing when the key is refused (the field beeps then).
std::optional<char> filterReportKey(char c);

// The call field: "-" becomes "/", letters are folded to upper case, and a
// space is never written (it walks to the next field).
std::optional<char> filterCallKey(char c);

// Automatic mode switch by the length of the trimmed report: 2 gives the
// two-digit mode, 3 the three-digit mode, any other length changes nothing.
std::optional<std::string> modeForReport(std::string_view report, const std::string& mode2St,
                                         const std::string& mode3St);

// Shortest received report: 6 in the three-digit mode, else 5.
int minimumReceivedReport(std::string_view mode, std::string_view mode3St);

// The next serial in the form "##########000": at least three digits with
// leading zeros ("006", "1000").
std::string formatSerial(long long n);
// The grid's "#####000" form of a stored serial: the same rule.
inline std::string formatGridSerial(long long n) {
    return formatSerial(n);
}

// RST that the row starts with after a commit or a clear: "599" when the
// trimmed report had three characters, else "59".
std::string nextReport(std::string_view report);

// QSL field keys: J, Y give "Yes", N gives "No"; others leave it as it is.
std::optional<std::string> qslForKey(char c);
inline std::string toggleQsl(std::string_view qsl) {
    return qsl == "Yes" ? "No" : "Yes";
}

// Propagation fields take three characters at most, upper case.
std::string clipPropagation(std::string_view text);

} // namespace orv::entry
