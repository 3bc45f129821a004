#include "core/submission/log_statistics.h"

#include <algorithm>

#include "core/i18n/texts.h"
#include "core/logstore/schema.h"
#include "core/reference/country_list.h"
#include "core/submission/export_file.h"
#include "core/util/file_io.h"
#include "core/util/sqlite.h"
#include "core/util/text.h"

namespace fs = std::filesystem;

namespace orv {
namespace {

constexpr const char* kEnding = ".sqlite";

bool passesVersionTest(const fs::path& file) {
    try {
        const std::string_view t = band(1).table;
        return FieldExists(file, t, "ErrQSO") && FieldExists(file, t, "OPCall");
    } catch (const sql::Error&) {
        return false;
    }
}

void addOnce(std::vector<std::string>& list, const std::string& value) {
    if (std::find(list.begin(), list.end(), value) == list.end())
        list.push_back(value);
}

void readLog(const fs::path& file, LogStatistics& s, const CountryList* countries) {
    sql::Db db(file.string(), sql::Db::Mode::ReadOnly);
    {
        auto my = db.prepare("SELECT * FROM \"MyData\" LIMIT 1");
        if (my.step()) {
            const std::string call = text::upper(text::trim(my.text(0)));
            const std::string loc = text::upper(text::trim(my.text(1)));
            if (!call.empty())
                addOnce(s.calls, call);
            if (!loc.empty())
                addOnce(s.locators, loc);
            for (int b = 0; b < kBandCount; ++b) {
                BandStatistic& bs = s.bands[static_cast<std::size_t>(b)];
                // Columns 2+4i: ODX, PGesamt, ODXNr, Zaehl. A Null adds nothing.
                const int base = 2 + 4 * b;
                if (!my.isNull(base + 1))
                    bs.points += my.int64(base + 1);
                if (!my.isNull(base))
                    bs.odx = std::max(bs.odx, my.int64(base));
            }
        }
    }
    for (int b = 0; b < kBandCount; ++b) {
        BandStatistic& bs = s.bands[static_cast<std::size_t>(b)];
        auto st = db.prepare("SELECT \"Call\", \"Locator\" FROM " + sql::quoteIdent(band(b).table) +
                             " WHERE \"ErrQSO\" = 0");
        while (st.step()) {
            ++bs.qsos;
            const std::string loc = text::upper(text::trim(st.text(1)));
            bs.locators.insert(text::left(loc, 6));
            bs.grossfelder.insert(text::left(loc, 4));
            if (countries)
                if (auto dx = countries->lookup(st.text(0)))
                    bs.countries.insert(dx->Country);
        }
    }
}

std::string line(const std::string& label, const std::string& value) {
    const std::string sep = (!label.empty() && label.back() == ':') ? " " : ": ";
    return label + sep + "     " + value + "\n";
}

} // namespace

std::vector<std::string> listStatisticLogs(const fs::path& folder) {
    std::vector<std::string> out;
    std::error_code ec;
    if (!fs::is_directory(folder, ec))
        return out;
    for (const auto& e : fs::directory_iterator(folder, ec)) {
        if (!e.is_regular_file() || !text::iequals(e.path().extension().string(), kEnding))
            continue;
        if (passesVersionTest(e.path()))
            out.push_back(e.path().stem().string());
    }
    std::sort(out.begin(), out.end());
    return out;
}

Result<LogStatistics> computeStatistics(const fs::path& folder,
                                        const std::vector<std::string>& names,
                                        const CountryList* countries) {
    if (names.empty() || names.size() > kMaxStatisticLogs)
        return refuse(225, "MSFlexGrid1", std::to_string(names.size()));
    for (const std::string& n : names) {
        const fs::path file = folder / (n + kEnding);
        if (!fs::is_regular_file(file) || !passesVersionTest(file))
            return refuse(415, "MSFlexGrid1", n);
    }
    LogStatistics s;
    for (const std::string& n : names) {
        readLog(folder / (n + kEnding), s, countries);
        ++s.logs;
    }
    return s;
}

std::string statisticsReport(const LogStatistics& s, const Texts& t) {
    const std::string title = t(284) + "     " + t(285);
    std::string out = title + "\n" + std::string(text::length(title), '-') + "\n\n";
    auto joined = [](const std::vector<std::string>& v) {
        std::string r;
        for (const auto& x : v)
            r += (r.empty() ? "" : ", ") + x;
        return r;
    };
    out += line(t(131), joined(s.calls));
    out += line(t(172), joined(s.locators));
    out += "\n";
    std::int64_t totalQsos = 0, totalPoints = 0;
    for (int b = 0; b < kBandCount; ++b) {
        const BandStatistic& bs = s.bands[static_cast<std::size_t>(b)];
        if (bs.points == 0 && bs.qsos == 0)
            continue;
        totalQsos += bs.qsos;
        totalPoints += bs.points;
        out += std::string(band(b).boxText) + " " + t(287) + "\n";
        out += line(t(95), std::to_string(bs.qsos));
        out += line(t(165), std::to_string(bs.points));
        out += line(t(155), std::to_string(bs.locators.size()));
        out += line(t(26), std::to_string(bs.grossfelder.size()));
        out += line(t(162), std::to_string(bs.countries.size()));
        out += line(t(163), std::to_string(bs.qsos > 0 ? bs.points / bs.qsos : 0));
        out += line(t(169), std::to_string(bs.odx) + " " + t(288));
        out += "\n";
    }
    out += t(166) + "\n";
    out += line(t(95), std::to_string(totalQsos));
    out += line(t(165), std::to_string(totalPoints));
    return out;
}

fs::path saveStatisticsReport(const fs::path& chosen, const std::string& report) {
    const fs::path path = forceExtension(chosen, ".TXT");
    fileio::writeAtomic(path, report);
    return path;
}

} // namespace orv
