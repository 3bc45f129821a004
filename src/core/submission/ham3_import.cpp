#include "core/submission/ham3_import.h"

#include <algorithm>
#include <cstdio>

#include "core/capture/entry_rules.h"
#include "core/i18n/texts.h"
#include "core/util/file_io.h"
#include "core/util/text.h"

namespace orv {
namespace {

// Refusal of a line that has not the tokens of a QSO.
constexpr int kNoQsoLine = 1150;

std::vector<std::string_view> tokens(std::string_view line) {
    std::vector<std::string_view> out;
    std::size_t i = 0;
    while (i < line.size()) {
        while (i < line.size() && (line[i] == ' ' || line[i] == '\t'))
            ++i;
        const std::size_t start = i;
        while (i < line.size() && line[i] != ' ' && line[i] != '\t')
            ++i;
        if (i > start)
            out.push_back(line.substr(start, i - start));
    }
    return out;
}

bool allDigits(std::string_view s) {
    return !s.empty() &&
           std::all_of(s.begin(), s.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::optional<int> number(std::string_view s) {
    if (!allDigits(s) || s.size() > 9)
        return std::nullopt;
    return static_cast<int>(text::leadingInt(s));
}

// "1215", "12:15" or "12:15:30" as "HH:MM".
std::optional<std::string> ham3Time(std::string_view token) {
    std::string t(token);
    if (allDigits(t) && t.size() == 4)
        t = entry::normaliseTime(t);
    const auto tod = entry::parseTime(t);
    if (!tod)
        return std::nullopt;
    char buf[8];
    std::snprintf(buf, sizeof buf, "%02d:%02d", tod->hour, tod->minute);
    return std::string(buf);
}

// The received serial as the report's tail: "000" below 1000, else "0000".
std::string serialTail(int n) {
    char buf[16];
    std::snprintf(buf, sizeof buf, n >= 1000 ? "%04d" : "%03d", n);
    return buf;
}

} // namespace

std::optional<DateTime> ham3Date(std::string_view token) {
    static constexpr std::array<std::string_view, 12> kMonths{
        "JAN", "FEB", "MAR", "APR", "MAY", "JUN", "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
    std::string d = text::upper(token);
    if (d.size() >= 6) {
        const auto m = std::find(kMonths.begin(), kMonths.end(), std::string_view(d).substr(3, 3));
        if (m != kMonths.end()) {
            const int month = static_cast<int>(m - kMonths.begin()) + 1;
            const char mm[] = {static_cast<char>('0' + month / 10),
                               static_cast<char>('0' + month % 10)};
            d.replace(3, 3, mm, 2);
        }
    }
    // Day, month and year, separated by "-", "." or "/"; two-digit years
    // as the old date functions read them (00-29: 2000s).
    if (d.size() < 8 || d.size() > 10)
        return std::nullopt;
    const char sep = d[2];
    if ((sep != '-' && sep != '.' && sep != '/') || d[5] != sep)
        return std::nullopt;
    const int day = number(std::string_view(d).substr(0, 2)).value_or(-1);
    const int month = number(std::string_view(d).substr(3, 2)).value_or(-1);
    const std::string_view y = std::string_view(d).substr(6);
    int year = (y.size() == 2 || y.size() == 4) ? number(y).value_or(-1) : -1;
    if (day < 0 || month < 0 || year < 0)
        return std::nullopt;
    if (y.size() == 2)
        year += year < 30 ? 2000 : 1900;
    if (!DateTime::validDate(year, month, day))
        return std::nullopt;
    return DateTime{year, month, day, 0, 0, 0};
}

Ham3Line parseHam3Line(std::string_view line) {
    const auto t = tokens(line);
    Ham3Line l;
    l.complete = t.size() >= 9;
    auto at = [&](std::size_t i) { return i < t.size() ? t[i] : std::string_view(); };

    if (const auto d = ham3Date(at(0))) {
        l.date = d->dateIso();
        l.dateOk = true;
    } else {
        l.date = std::string(at(0));
    }
    if (const auto tm = ham3Time(at(1))) {
        l.time = *tm;
        l.timeOk = true;
    } else {
        l.time = std::string(at(1));
    }
    if (text::length(at(2)) > 2)
        l.call = text::left(at(2), 15);
    if (text::length(at(3)) > 1)
        l.rst = text::left(at(3), 3);
    // at(4), the serial sent, is not stored: the commit gives its own.
    const auto serial = number(at(6));
    l.serialOk = serial.has_value();
    l.rstNr = std::string(at(5)) + (serial ? serialTail(*serial) : std::string(at(6)));
    l.bandToken = std::string(at(7));
    const auto b = std::find(kHam3Bands.begin(), kHam3Bands.end(), at(7));
    if (b != kHam3Bands.end())
        l.band = static_cast<int>(b - kHam3Bands.begin());
    l.mode = std::string(at(8));
    if (!at(10).empty())
        l.locator = text::upper(text::left(at(10), 6));
    return l;
}

Ham3Import::Ham3Import(Capture& capture, std::vector<std::string> modes)
    : capture_(capture), modes_(std::move(modes)) {}

std::optional<Ham3Refusal> Ham3Import::fill(const Ham3Line& l, std::size_t lineNo,
                                            EntryRow& row) const {
    // A field the line does not give stays empty rather than keep what a
    // refused line before left in it; the report sent keeps the row's.
    row.call = l.call.value_or("");
    if (l.rst)
        row.rst = *l.rst;
    row.rstNr = l.rstNr;
    row.locator = l.locator.value_or("");
    row.date = l.date;
    row.time = l.time;
    row.serial.clear();
    // A date or time that is none would leave the field as the line before
    // left it and store the QSO at that moment: the line is refused with the
    // text of a typed wrong date or time instead.
    if (std::find(modes_.begin(), modes_.end(), l.mode) != modes_.end())
        row.mode = row.rxMode = l.mode;
    if (!l.dateOk)
        return Ham3Refusal{lineNo, 13, l.date};
    if (!l.timeOk)
        return Ham3Refusal{lineNo, 14, l.time};
    if (!l.serialOk)
        return Ham3Refusal{lineNo, 3, l.rstNr};
    return std::nullopt;
}

Ham3Report Ham3Import::run(const std::vector<std::string>& lines, EntryRow& row,
                           const UnknownBand& unknownBand) {
    Ham3Report report;
    row.datePanel = true;
    bool firstBand = true;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string& text = lines[i];
        const std::size_t lineNo = i + 1;
        if (text::length(text) < kHam3MinLine)
            break;
        const Ham3Line l = parseHam3Line(text);
        if (!l.complete) {
            report.refused.push_back({lineNo, kNoQsoLine, text::trim(text)});
            continue;
        }
        if (!l.band) {
            ++report.unknownBand;
            if (!unknownBand(lineNo, l.bandToken)) {
                report.end = Ham3Report::End::Cancelled;
                break;
            }
            continue;
        }
        // The first band is read from the file, since its emptiness decides
        // the import; after that the capture keeps its band current through
        // the commits, and only a change of band loads another.
        if (firstBand || capture_.band() != *l.band)
            capture_.selectBand(*l.band);
        if (firstBand && !capture_.state().rows().empty()) {
            report.end = Ham3Report::End::BandNotEmpty;
            break;
        }
        firstBand = false;
        if (auto refusal = fill(l, lineNo, row)) {
            report.refused.push_back(*refusal);
            continue;
        }
        const CommitResult r = capture_.Uebernehmen(row);
        switch (r.kind) {
        case CommitResult::Kind::Stored:
            ++report.stored;
            report.bandsStored[static_cast<std::size_t>(*l.band)] = true;
            break;
        case CommitResult::Kind::Duplicate:
            report.refused.push_back({lineNo, 200, row.call});
            break;
        case CommitResult::Kind::Refused:
            report.refused.push_back({lineNo, r.failure.text, row.call});
            break;
        }
    }
    return report;
}

std::vector<std::string> readHam3File(const std::filesystem::path& path) {
    return text::splitLines(text::decodeLegacy(fileio::readAll(path)));
}

} // namespace orv
