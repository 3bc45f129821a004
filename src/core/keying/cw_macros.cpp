#include "core/keying/cw_macros.h"

#include "core/keying/morse_table.h"
#include "core/util/text.h"

namespace orv::keying {
namespace {

bool typedPrintable(unsigned char c) {
    switch (c) {
    case 32:
    case 39:
    case 40:
    case 41:
    case 192:
    case 196:
    case 197:
    case 200:
    case 201:
    case 209:
    case 214:
    case 220:
    case 223:
        return true;
    default:
        return c >= 43 && c <= 90;
    }
}

std::string trimmed(const std::string& s) {
    return text::trim(s);
}

// "hh:mm" (any one-character separator, with or without seconds) as "hhmm";
// text that is no time keeps only its digits.
std::string hhmm(const std::string& shown) {
    std::string digits;
    int hour = -1, minute = -1;
    std::size_t sep = shown.find_first_not_of("0123456789");
    if (sep != std::string::npos && sep > 0 && sep <= 2 && shown.size() >= sep + 3) {
        hour = std::atoi(shown.substr(0, sep).c_str());
        minute = std::atoi(shown.substr(sep + 1, 2).c_str());
    }
    if (hour >= 0 && hour < 24 && minute >= 0 && minute < 60) {
        char buf[8];
        std::snprintf(buf, sizeof buf, "%02d%02d", hour, minute);
        return buf;
    }
    for (char c : shown)
        if (c >= '0' && c <= '9')
            digits += c;
    return digits;
}

struct Value {
    std::string text;
    std::size_t minLength; // 0: no test
    std::string focus;
};

Value valueOf(int index, const QsoFields& f) {
    switch (index) {
    case 0:
        return {trimmed(f.ownCall), 1, "Text11"};
    case 1:
        return {trimmed(f.call), 3, "Text3"};
    case 2:
        return {trimmed(f.ownLocator), 1, "Text13"};
    case 3:
        return {trimmed(f.locator), 4, "Text7"};
    case 4:
        return {trimmed(f.rstSent), 2, "Text4"};
    case 5: {
        std::string cut = trimmed(f.rstSent);
        for (char& c : cut)
            if (c == '9')
                c = 'N';
        return {cut, 2, "Text4"};
    }
    case 6:
        return {trimmed(f.rstNr), 5, "Text6"};
    case 7:
        return {trimmed(f.qsoNr), 1, ""};
    case 8: {
        const std::string t = trimmed(f.time);
        return {t.empty() ? t : hhmm(t), 1, f.timeLocked ? "" : "Text2"};
    }
    default:
        return {f.contestDate.yyyymmdd(), 0, ""};
    }
}

} // namespace

const std::array<Macro, 10> kMacros = {{
    {"MYCAL", 330},
    {"YOCAL", 331},
    {"MYLOC", 332},
    {"YOLOC", 333},
    {"QSRST", 334},
    {"QKRST", 335},
    {"RSTNR", 336},
    {"QSONR", 337},
    {"QTIME", 338},
    {"QDATE", 339},
}};

std::string macroTag(int index) {
    return std::string("<") + kMacros[index].name + ">";
}

bool isTypedInput(unsigned char c, bool memoryEditor) {
    if (c == 8 || c == 13 || c == 24 || c == 3)
        return true;
    if (memoryEditor && (c == 22 || c == 26 || c == 1))
        return true;
    return typedPrintable(upperAnsi(c));
}

std::string filterTyped(std::string_view utf8) {
    std::string out;
    for (char ch : toAnsi(utf8)) {
        const unsigned char c = upperAnsi(static_cast<unsigned char>(ch));
        if (typedPrintable(c))
            out += static_cast<char>(c);
    }
    return fromAnsi(out);
}

MacroCheck checkMacros(std::string_view utf8) {
    std::string s;
    for (char ch : toAnsi(utf8))
        s += static_cast<char>(upperAnsi(static_cast<unsigned char>(ch)));
    auto refused = [&s](std::size_t start, std::size_t len) {
        MacroCheck r;
        r.selStart = static_cast<int>(start);
        r.selLength = static_cast<int>(std::min(len, s.size() - start));
        return r;
    };
    for (std::size_t i = 0; i < s.size(); ++i)
        if (s[i] == '<' && (i + 6 >= s.size() || s[i + 6] != '>'))
            return refused(i, 6);
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] != '>')
            continue;
        bool known = false;
        if (i >= 6 && s[i - 6] == '<')
            for (const Macro& m : kMacros)
                known = known || s.compare(i - 5, 5, m.name) == 0;
        if (!known)
            return refused(i, 1);
    }
    MacroCheck r;
    r.ok = true;
    r.text = filterTyped(fromAnsi(s));
    return r;
}

Result<std::string> expandMacros(std::string_view utf8, const QsoFields& f, bool tests) {
    std::string s(utf8);
    for (int m = 0; m < static_cast<int>(kMacros.size()); ++m) {
        const std::string tag = macroTag(m);
        std::size_t from = 0;
        for (std::size_t at; (at = s.find(tag, from)) != std::string::npos;) {
            const Value v = valueOf(m, f);
            if (tests && text::length(v.text) < v.minLength)
                return refuse(360, v.focus);
            s.replace(at, tag.size(), v.text);
            // A value holding its own macro must not expand forever.
            from = at + v.text.size();
        }
    }
    return s;
}

std::string sendableAnsi(std::string_view utf8) {
    const MorseTable& table = MorseTable::instance();
    std::string out;
    for (char ch : toAnsi(utf8)) {
        const unsigned char c = upperAnsi(static_cast<unsigned char>(ch));
        if (table.has(c))
            out += static_cast<char>(c);
    }
    return out;
}

bool maySend(bool sending, bool panelOpen, const BeaconView& beacon) {
    return !sending && !panelOpen && !beacon.pauseRunning && beacon.idle && beacon.enabled;
}

std::string slotCaption(int k, bool fOn, std::string_view fText) {
    if (!fOn)
        return std::string(fText);
    return "[F" + std::to_string(k + 1) + "]  " + std::string(fText);
}

} // namespace orv::keying
