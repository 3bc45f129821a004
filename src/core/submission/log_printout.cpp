#include "core/submission/log_printout.h"

#include <algorithm>

#include "core/i18n/texts.h"
#include "core/util/text.h"

namespace orv {
namespace {

using print::Document;
using print::Page;

constexpr double kMargin = 36;
constexpr double kTitleSize = 12;
constexpr double kMaxSize = 9; // the grid's face at most
constexpr double kMinSize = 5;
constexpr double kGap = 1; // characters between two columns

// Widest content a column takes before it is cut: the notes and names
// would otherwise push the others off the page.
constexpr std::size_t kMaxColumn = 20;

struct Column {
    int index;
    std::string header;
    std::size_t chars;
    CellAlign align;
};

std::vector<Column> columnsOf(const Evaluation& ev, const Texts& texts) {
    std::vector<Column> cols;
    const auto& columns = evalColumns();
    for (int c = 0; c < kEvalColumns; ++c) {
        const EvalColumn& s = columns[static_cast<std::size_t>(c)];
        if (s.width == 0)
            continue;
        Column col{c, s.headerText ? text::trim(texts(s.headerText)) : std::string(), 0, s.align};
        col.chars = text::length(col.header);
        for (const EvalRow& r : ev.rows)
            col.chars = std::max(col.chars, text::length(r.cells[static_cast<std::size_t>(c)]));
        col.chars = std::clamp<std::size_t>(col.chars, 1, kMaxColumn);
        cols.push_back(std::move(col));
    }
    return cols;
}

class Pager {
public:
    Pager(Document& doc, const Evaluation& ev, const Texts& texts)
        : doc_(doc), ev_(ev), texts_(texts) {}

    // A new page with the header lines; returns the first free base line.
    double newPage(const std::string& heading) {
        doc_.pages.emplace_back();
        double y = kMargin + kTitleSize;
        add(kMargin, y, kTitleSize, true, heading);
        y += kTitleSize * 1.4;
        const std::string info = texts_(1158) + " " + ev_.myCall + "   " + texts_(1159) + " " +
                                 ev_.myLocator + "   " + texts_(1160) + " " +
                                 std::string(orv::band(ev_.band).boxText) + " MHz";
        add(kMargin, y, 10, false, info);
        return y + 10 * 1.8;
    }

    void add(double x, double y, double size, bool bold, std::string s) {
        doc_.pages.back().texts.push_back({x, y, size, bold, std::move(s)});
    }
    void rule(double x1, double y1, double x2, double y2) {
        doc_.pages.back().rules.push_back({x1, y1, x2, y2});
    }

    // "Seite 1 von 3" under every page, once their number is known.
    void numberPages() {
        const std::size_t n = doc_.pages.size();
        for (std::size_t i = 0; i < n; ++i) {
            const std::string s = texts_(1155) + " " + std::to_string(i + 1) + " " + texts_(1156) +
                                  " " + std::to_string(n);
            const double w = static_cast<double>(text::length(s)) * print::kCharWidth * 9;
            doc_.pages[i].texts.push_back(
                {(doc_.width - w) / 2, doc_.height - kMargin / 2, 9, false, s});
        }
    }

private:
    Document& doc_;
    const Evaluation& ev_;
    const Texts& texts_;
};

std::string heading(const Evaluation& ev, const Texts& texts) {
    return texts(1157) + " " + ev.contName;
}

void layoutRows(Document& doc, Pager& pager, const Evaluation& ev, const Texts& texts) {
    const std::vector<Column> cols = columnsOf(ev, texts);
    double chars = 0;
    for (const Column& c : cols)
        chars += static_cast<double>(c.chars) + kGap;
    const double usable = doc.width - 2 * kMargin;
    const double size = std::clamp(usable / (chars * print::kCharWidth), kMinSize, kMaxSize);
    const double cw = size * print::kCharWidth;
    const double line = size * 1.35;
    const double bottom = doc.height - kMargin - 12;

    auto cellX = [&](const Column& c, double left, const std::string& s) {
        const double free = static_cast<double>(c.chars - text::length(s)) * cw;
        switch (c.align) {
        case CellAlign::Right:
            return left + free;
        case CellAlign::Centre:
            return left + free / 2;
        case CellAlign::Left:
            break;
        }
        return left;
    };
    auto header = [&](double y) {
        double x = kMargin;
        for (const Column& c : cols) {
            pager.add(cellX(c, x, text::left(c.header, c.chars)), y, size, true,
                      text::left(c.header, c.chars));
            x += (static_cast<double>(c.chars) + kGap) * cw;
        }
        pager.rule(kMargin, y + line * 0.35, x, y + line * 0.35);
        return y + line * 1.2;
    };

    double y = header(pager.newPage(heading(ev, texts)));
    if (ev.rows.empty())
        return;
    for (const EvalRow& r : ev.rows) {
        if (y > bottom)
            y = header(pager.newPage(heading(ev, texts)));
        double x = kMargin;
        for (const Column& c : cols) {
            const std::string s = text::left(r.cells[static_cast<std::size_t>(c.index)], c.chars);
            if (!s.empty())
                pager.add(cellX(c, x, s), y, size, false, s);
            x += (static_cast<double>(c.chars) + kGap) * cw;
        }
        // A deleted QSO is struck through, as the grid shows it in red.
        if (r.deleted())
            pager.rule(kMargin, y - size * 0.3, x, y - size * 0.3);
        y += line;
    }
}

void layoutSummary(Document& doc, Pager& pager, const Evaluation& ev, const Texts& texts) {
    double y = pager.newPage(texts(1161) + ": " + heading(ev, texts));
    const double size = 10, line = size * 1.5;
    auto colon = [](std::string s) { return text::endsWith(s, ":") ? s : s + ":"; };
    const std::pair<std::string, std::int64_t> values[] = {
        {colon(texts(95)), ev.qsos},
        {texts(1162), ev.points},
        {colon(texts(163)), ev.kmPerQso},
        {colon(texts(169)), ev.odx},
        {colon(texts(186)), ev.multiplier},
        {texts(1163), ev.dupes},
        {texts(1164), ev.deleted},
        {colon(texts(149)), static_cast<std::int64_t>(ev.locatorCount)},
        {colon(texts(26)), static_cast<std::int64_t>(ev.grossfeldCount)},
        {colon(texts(162)), ev.countryCount()},
    };
    const double valueX = kMargin + 24 * size * print::kCharWidth;
    for (const auto& [label, value] : values) {
        pager.add(kMargin, y, size, false, label);
        pager.add(valueX, y, size, true, std::to_string(value));
        y += line;
    }
    if (ev.countries.empty())
        return;
    y += line;
    const double bottom = doc.height - kMargin - 12;
    const double qsoX = kMargin, countryX = kMargin + 8 * size * print::kCharWidth;
    auto countryHeader = [&](double at) {
        pager.add(qsoX, at, size, true, texts(95));
        pager.add(countryX, at, size, true, colon(texts(96)));
        return at + line;
    };
    y = countryHeader(y);
    for (const CountryCount& c : ev.countries) {
        if (y > bottom)
            y = countryHeader(pager.newPage(texts(1161) + ": " + heading(ev, texts)));
        pager.add(qsoX, y, size, false, std::to_string(c.qsos));
        pager.add(countryX, y, size, false, c.country);
        y += line;
    }
}

} // namespace

print::Document layoutLogPrintout(const Evaluation& ev, const Texts& texts) {
    Document doc;
    doc.title = heading(ev, texts) + " " + ev.myCall + " " + std::string(band(ev.band).boxText);
    Pager pager(doc, ev, texts);
    layoutRows(doc, pager, ev, texts);
    layoutSummary(doc, pager, ev, texts);
    pager.numberPages();
    return doc;
}

} // namespace orv
