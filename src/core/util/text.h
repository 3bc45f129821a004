#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Small text helpers shared by every reader and writer of the program.
namespace orv::text {

bool isValidUtf8(std::string_view s);
// Windows-1252 bytes to UTF-8; the five unassigned bytes map to U+FFFD.
std::string cp1252ToUtf8(std::string_view s);
// UTF-8 as read from a file of the Windows world: kept when it is valid UTF-8,
// otherwise taken as Windows-1252.
std::string decodeLegacy(std::string_view s);
// UTF-8 to Windows-1252; characters that the code page cannot hold become "?".
std::string utf8ToCp1252(std::string_view s);

// The lines of a text: LF and CR LF both end a line, and a last line
// without its end counts as well.
std::vector<std::string> splitLines(std::string_view s);

std::string trim(std::string_view s);
std::string trimLeft(std::string_view s);
std::string trimRight(std::string_view s);
// Upper and lower case for ASCII and the Latin-1 letters (ä -> Ä); other
// characters are kept as they are.
std::string upper(std::string_view s);
std::string lower(std::string_view s);
bool iequals(std::string_view a, std::string_view b);
bool startsWith(std::string_view s, std::string_view prefix);
bool endsWith(std::string_view s, std::string_view suffix);
// Number of Unicode code points.
std::size_t length(std::string_view utf8);
// The first n code points.
std::string left(std::string_view utf8, std::size_t n);
// Pads with blanks on the right to n code points (never cuts).
std::string padRight(std::string_view utf8, std::size_t n);
// Value of the leading decimal integer (optional sign, leading blanks), 0 when
// there is none; stops at the first non-digit, as Val() of the old world did.
long long leadingInt(std::string_view s);
// True when s is a whole decimal integer, optionally signed, nothing else.
bool isInteger(std::string_view s);
// The trimmed text as a whole number; nothing when it is none or too large.
std::optional<long long> wholeNumber(std::string_view s);

} // namespace orv::text
