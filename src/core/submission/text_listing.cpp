#include "core/submission/text_listing.h"

#include "core/i18n/texts.h"
#include "core/submission/export_file.h"
#include "core/util/file_io.h"
#include "core/util/text.h"

namespace orv {
namespace {

constexpr const char* kCrLf = "\r\n";

// Widths of the list columns; the header is laid out on the same stops.
constexpr std::size_t kLead = 14; // band code, info, number
constexpr std::size_t kDate = 11;
constexpr std::size_t kTime = 6;
constexpr std::size_t kCall = 15;
constexpr std::size_t kReport = 4;
constexpr std::size_t kReceived = 8;
constexpr std::size_t kLocator = 7;
constexpr std::size_t kMode = 6;
constexpr std::size_t kPoints = 8;

// A column of width n; a text as wide or wider keeps one blank behind it.
std::string pad(std::string_view s, std::size_t n) {
    return text::length(s) < n ? text::padRight(s, n) : std::string(s) + " ";
}

std::string withColon(const std::string& s) {
    return (!s.empty() && s.back() == ':') ? s : s + ":";
}

void statisticBlock(std::string& out, const Evaluation& ev, const Texts& t) {
    auto line = [&](const std::string& label, const std::string& value) {
        out += withColon(label) + "\t" + value + kCrLf;
    };
    out += std::string(band(ev.band).boxText) + " " + t(287) + kCrLf;
    line(t(95), std::to_string(ev.qsos));
    line(t(165), std::to_string(ev.points));
    line(t(163), std::to_string(ev.kmPerQso));
    line(t(169), std::to_string(ev.odx));
    line(t(149), std::to_string(static_cast<long long>(ev.locatorCount)));
    line(t(26), std::to_string(static_cast<long long>(ev.grossfeldCount)));
    line(t(162), std::to_string(ev.countryCount()));
    line(t(186), std::to_string(ev.multiplier));
    line(t(168), std::to_string(ev.dupes));
    line(t(220), std::to_string(ev.deleted));
}

} // namespace

std::string textListingLine(const Evaluation& ev, const EvalRow& row, const Texts& t) {
    const EvalCells& c = row.cells;
    std::string info;
    if (c[evalcol::Info] == "ODX")
        info = t(169) + " ";
    else if (c[evalcol::Info] == "DUPE")
        info = t(168) + " ";
    std::string line = std::string(band(ev.band).code) + " " + text::padRight(info, 5) +
                       pad(format0000(c[evalcol::Nr]), 5);
    line += pad(c[evalcol::Datum], kDate) + pad(c[evalcol::Zeit], kTime);
    if (row.deleted())
        return line + " ERROR    ";
    line += pad(c[evalcol::Call], kCall) + pad(c[evalcol::RST], kReport) +
            pad(c[evalcol::RSTNr], kReceived) + pad(c[evalcol::Locator], kLocator) +
            pad(c[evalcol::TXMod], kMode) + pad(c[evalcol::Punkte], kPoints);
    return text::trimRight(line);
}

std::string textListing(const std::vector<Evaluation>& bands, const Texts& t,
                        const TextListingOptions& o) {
    std::string out = "; This file was created by OrvantaContest v" + programVersionText() + kCrLf;
    out += kCrLf;
    const Evaluation* any = bands.empty() ? nullptr : &bands.front();
    if (any) {
        out += any->contName + "\t" + t(131) + kCrLf;
        out += t(171) + ":\t" + any->myCall + kCrLf;
        out += t(172) + ":\t" + any->myLocator + kCrLf;
    }
    if (o.withStatistics) {
        for (const Evaluation& ev : bands)
            if (!ev.rows.empty())
                statisticBlock(out, ev, t);
        out += kCrLf;
    }
    // Today's date and time stand above the date and time columns.
    out += pad(o.now.dateIso() + " " + o.now.timeHM(), kLead + kDate + kTime) + pad(t(151), kCall) +
           pad(t(152), kReport) + pad(t(154), kReceived) + pad(t(155), kLocator) +
           pad(t(160), kMode) + t(165) + kCrLf;
    out += std::string(86, '-') + kCrLf;
    for (const Evaluation& ev : bands)
        for (const EvalRow& row : ev.rows)
            out += textListingLine(ev, row, t) + kCrLf;
    out += kCrLf;
    return out;
}

std::filesystem::path writeTextListing(const std::filesystem::path& chosen,
                                       const std::vector<Evaluation>& bands, const Texts& texts,
                                       const TextListingOptions& options) {
    const std::filesystem::path path = forceExtension(chosen, ".TXT");
    fileio::writeAtomic(path, textListing(bands, texts, options));
    return path;
}

} // namespace orv
