#include "core/submission/adif.h"

#include "core/logstore/contest_log.h"
#include "core/settings/settings.h"
#include "core/submission/export_file.h"
#include "core/util/file_io.h"
#include "core/util/text.h"

namespace orv {
namespace {

constexpr const char* kCrLf = "\r\n";

// "<NAME:length>value" over Windows-1252 bytes.
std::string piece(std::string_view name, const std::string& bytes) {
    return "<" + std::string(name) + ":" + std::to_string(bytes.size()) + ">" + bytes;
}

std::string cp(std::string_view utf8) {
    return text::utf8ToCp1252(utf8);
}

} // namespace

AdifFrequencies adifFrequencies(const Settings& settings) {
    AdifFrequencies f;
    for (int i = 0; i < kBandCount; ++i) {
        std::string v = settings.get(keys::ADIFQRG(i));
        f[static_cast<std::size_t>(i)] = v.empty() ? std::string(band(i).boxText) : std::move(v);
    }
    return f;
}

void setAdifFrequencies(Settings& settings, const AdifFrequencies& boxes) {
    for (int i = 0; i < kBandCount; ++i)
        settings.set(keys::ADIFQRG(i), text::trim(boxes[static_cast<std::size_t>(i)]));
}

std::vector<Evaluation> evaluateAllBands(ContestLog& log, const CountryList* countries) {
    std::vector<Evaluation> out;
    out.reserve(kBandCount);
    for (int b = 0; b < kBandCount; ++b)
        out.push_back(evaluate(log, b, countries));
    return out;
}

std::string adifRecord(const EvalCells& c, std::string_view frequency) {
    const std::size_t reportLen = c[evalcol::RXMod] == "CW" ? 3 : 2;
    std::string r;
    r.reserve(160);
    r += "<QSO_DATE:8>" + formatCellDate(c[evalcol::Datum], "yyyymmdd");
    r += "<TIME_ON:4>" + formatCellTime(c[evalcol::Zeit]);
    r += piece("CALL", cp(c[evalcol::Call]));
    r += piece("RST_SENT", cp(c[evalcol::RST]));
    // The length is the report length even when the received text is
    // shorter, as the file has always had it.
    r += "<RST_RCVD:" + std::to_string(reportLen) + ">" +
         cp(text::left(c[evalcol::RSTNr], reportLen));
    r += piece("FREQ", cp(frequency));
    r += piece("MODE", cp(c[evalcol::TXMod]));
    r += "<QSL_SENT:1>" + cp(text::left(c[evalcol::QSL], 1));
    // Fixed at 6: a shorter locator stands behind it as it is.
    r += "<GRIDSQUARE:6>" + cp(c[evalcol::Locator]);
    if (!c[evalcol::Prop].empty())
        r += piece("PROP_MODE", cp(c[evalcol::Prop]));
    if (!c[evalcol::Name].empty())
        r += piece("NAME", cp(c[evalcol::Name]));
    r += "<EOR>";
    return r;
}

std::string adifMHz(std::int64_t hz) {
    // MHz with the Hz as decimals, trailing zeros dropped: 432200000 -> 432.2.
    std::string s = std::to_string(hz / 1'000'000);
    std::string frac = std::to_string(1'000'000 + hz % 1'000'000).substr(1);
    while (!frac.empty() && frac.back() == '0')
        frac.pop_back();
    return frac.empty() ? s : s + "." + frac;
}

std::string adifText(const std::vector<Evaluation>& bands, const AdifFrequencies& frequencies) {
    std::string out = "; This file was created by OrvantaContest v" + programVersionText() + kCrLf;
    out += std::string("<EOH>") + kCrLf;
    for (const Evaluation& ev : bands) {
        const std::string& freq = frequencies.at(static_cast<std::size_t>(ev.band));
        for (const EvalRow& row : ev.rows) {
            if (row.deleted())
                continue;
            out += adifRecord(row.cells, row.freqHz > 0 ? adifMHz(row.freqHz) : freq);
            out += kCrLf;
        }
    }
    return out;
}

std::filesystem::path writeAdif(const std::filesystem::path& chosen,
                                const std::vector<Evaluation>& bands,
                                const AdifFrequencies& frequencies) {
    const std::filesystem::path path = forceExtension(chosen, ".ADI");
    fileio::writeAtomic(path, adifText(bands, frequencies));
    return path;
}

} // namespace orv
