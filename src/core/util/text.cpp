#include "core/util/text.h"

#include <charconv>

#include <array>
#include <cstdint>

namespace orv::text {
namespace {

// Code points of the bytes 0x80..0x9F in Windows-1252; 0 marks an unassigned byte.
constexpr std::array<char32_t, 32> kHigh = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

void appendUtf8(std::string& out, char32_t cp) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

// Decodes one code point at s[i]; advances i. Invalid input yields U+FFFD.
char32_t nextCodePoint(std::string_view s, std::size_t& i) {
    const auto b = static_cast<unsigned char>(s[i]);
    int len = b < 0x80 ? 1 : (b >> 5) == 6 ? 2 : (b >> 4) == 14 ? 3 : (b >> 3) == 30 ? 4 : 0;
    if (len == 0 || i + len > s.size()) {
        ++i;
        return 0xFFFD;
    }
    char32_t cp = len == 1 ? b : b & (0x7F >> len);
    for (int k = 1; k < len; ++k) {
        const auto c = static_cast<unsigned char>(s[i + k]);
        if ((c & 0xC0) != 0x80) {
            ++i;
            return 0xFFFD;
        }
        cp = (cp << 6) | (c & 0x3F);
    }
    i += len;
    return cp;
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f';
}

} // namespace

bool isValidUtf8(std::string_view s) {
    std::size_t i = 0;
    while (i < s.size()) {
        const auto b = static_cast<unsigned char>(s[i]);
        int len = b < 0x80 ? 1 : (b >> 5) == 6 ? 2 : (b >> 4) == 14 ? 3 : (b >> 3) == 30 ? 4 : 0;
        if (len == 0 || i + len > s.size())
            return false;
        char32_t cp = len == 1 ? b : b & (0x7F >> len);
        for (int k = 1; k < len; ++k) {
            const auto c = static_cast<unsigned char>(s[i + k]);
            if ((c & 0xC0) != 0x80)
                return false;
            cp = (cp << 6) | (c & 0x3F);
        }
        // Overlong forms, surrogates and values beyond Unicode are not UTF-8.
        if ((len == 2 && cp < 0x80) || (len == 3 && cp < 0x800) || (len == 4 && cp < 0x10000) ||
            (cp >= 0xD800 && cp <= 0xDFFF) || cp > 0x10FFFF)
            return false;
        i += len;
    }
    return true;
}

std::string cp1252ToUtf8(std::string_view s) {
    std::string out;
    out.reserve(s.size() + s.size() / 4);
    for (char ch : s) {
        const auto b = static_cast<unsigned char>(ch);
        if (b < 0x80)
            out += ch;
        else if (b < 0xA0)
            appendUtf8(out, kHigh[b - 0x80] ? kHigh[b - 0x80] : 0xFFFD);
        else
            appendUtf8(out, b);
    }
    return out;
}

std::string decodeLegacy(std::string_view s) {
    if (s.size() >= 3 && s.substr(0, 3) == "\xEF\xBB\xBF")
        s.remove_prefix(3);
    return isValidUtf8(s) ? std::string(s) : cp1252ToUtf8(s);
}

std::string utf8ToCp1252(std::string_view s) {
    std::string out;
    out.reserve(s.size());
    std::size_t i = 0;
    while (i < s.size()) {
        const char32_t cp = nextCodePoint(s, i);
        if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) {
            out += static_cast<char>(cp);
            continue;
        }
        char mapped = '?';
        for (std::size_t k = 0; k < kHigh.size(); ++k)
            if (kHigh[k] != 0 && kHigh[k] == cp)
                mapped = static_cast<char>(0x80 + k);
        out += mapped;
    }
    return out;
}

std::vector<std::string> splitLines(std::string_view s) {
    std::vector<std::string> out;
    std::size_t start = 0;
    while (start < s.size()) {
        std::size_t end = s.find('\n', start);
        if (end == std::string_view::npos)
            end = s.size();
        std::string_view line = s.substr(start, end - start);
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        out.emplace_back(line);
        start = end + 1;
    }
    return out;
}

std::string trimLeft(std::string_view s) {
    std::size_t a = 0;
    while (a < s.size() && isBlank(s[a]))
        ++a;
    return std::string(s.substr(a));
}

std::string trimRight(std::string_view s) {
    std::size_t b = s.size();
    while (b > 0 && isBlank(s[b - 1]))
        --b;
    return std::string(s.substr(0, b));
}

std::string trim(std::string_view s) {
    return trimLeft(trimRight(s));
}

namespace {
template <bool Up> std::string changeCase(std::string_view s) {
    std::string out;
    out.reserve(s.size());
    std::size_t i = 0;
    while (i < s.size()) {
        const auto b = static_cast<unsigned char>(s[i]);
        if (b < 0x80) {
            char c = s[i++];
            if (Up && c >= 'a' && c <= 'z')
                c = static_cast<char>(c - 32);
            if (!Up && c >= 'A' && c <= 'Z')
                c = static_cast<char>(c + 32);
            out += c;
            continue;
        }
        const std::size_t start = i;
        char32_t cp = nextCodePoint(s, i);
        // Latin-1 letters: lower 0xE0..0xFE, upper 0xC0..0xDE, without ÷/×.
        if (Up && cp >= 0xE0 && cp <= 0xFE && cp != 0xF7)
            cp -= 0x20;
        else if (!Up && cp >= 0xC0 && cp <= 0xDE && cp != 0xD7)
            cp += 0x20;
        else {
            out.append(s.substr(start, i - start));
            continue;
        }
        appendUtf8(out, cp);
    }
    return out;
}
} // namespace

std::string upper(std::string_view s) {
    return changeCase<true>(s);
}
std::string lower(std::string_view s) {
    return changeCase<false>(s);
}

bool iequals(std::string_view a, std::string_view b) {
    if (a.size() == b.size()) {
        bool same = true;
        for (std::size_t i = 0; i < a.size() && same; ++i) {
            char x = a[i], y = b[i];
            if (x >= 'a' && x <= 'z')
                x = static_cast<char>(x - 32);
            if (y >= 'a' && y <= 'z')
                y = static_cast<char>(y - 32);
            same = x == y;
        }
        if (same)
            return true;
    }
    return upper(a) == upper(b);
}

bool startsWith(std::string_view s, std::string_view p) {
    return s.substr(0, p.size()) == p;
}
bool endsWith(std::string_view s, std::string_view p) {
    return s.size() >= p.size() && s.substr(s.size() - p.size()) == p;
}

std::size_t length(std::string_view s) {
    std::size_t n = 0;
    for (char c : s)
        if ((static_cast<unsigned char>(c) & 0xC0) != 0x80)
            ++n;
    return n;
}

std::string left(std::string_view s, std::size_t n) {
    std::size_t i = 0, count = 0;
    while (i < s.size() && count < n) {
        nextCodePoint(s, i);
        ++count;
    }
    return std::string(s.substr(0, i));
}

std::string padRight(std::string_view s, std::size_t n) {
    std::string out(s);
    for (std::size_t len = length(s); len < n; ++len)
        out += ' ';
    return out;
}

long long leadingInt(std::string_view s) {
    std::size_t i = 0;
    while (i < s.size() && isBlank(s[i]))
        ++i;
    bool neg = false;
    if (i < s.size() && (s[i] == '-' || s[i] == '+'))
        neg = s[i++] == '-';
    long long v = 0;
    while (i < s.size() && s[i] >= '0' && s[i] <= '9') {
        if (v < 100000000000000000LL)
            v = v * 10 + (s[i] - '0');
        ++i;
    }
    return neg ? -v : v;
}

bool isInteger(std::string_view s) {
    std::size_t i = 0;
    if (i < s.size() && (s[i] == '-' || s[i] == '+'))
        ++i;
    if (i == s.size())
        return false;
    for (; i < s.size(); ++i)
        if (s[i] < '0' || s[i] > '9')
            return false;
    return true;
}

std::optional<long long> wholeNumber(std::string_view s) {
    const std::string t = trim(s);
    if (!isInteger(t))
        return std::nullopt;
    long long v = 0;
    const char* first = t.data() + (t[0] == '+' ? 1 : 0);
    const auto r = std::from_chars(first, t.data() + t.size(), v);
    if (r.ec != std::errc() || r.ptr != t.data() + t.size())
        return std::nullopt;
    return v;
}

} // namespace orv::text
