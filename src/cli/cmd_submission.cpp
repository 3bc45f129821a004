// evaluate, edi, adif, text, stats, group-change: the evaluation window and
// the entry files it writes, and the statistics and group change dialogs.
#include <filesystem>
#include <optional>

#include "cli/log_access.h"
#include "core/reference/country_list.h"
#include "core/settings/settings.h"
#include "core/submission/adif.h"
#include "core/submission/edi.h"
#include "core/submission/evaluation.h"
#include "core/submission/export_file.h"
#include "core/submission/group_change.h"
#include "core/submission/log_statistics.h"
#include "core/submission/text_listing.h"
#include "core/util/text.h"

namespace orv::cli {
namespace {

// The country list of the data folder; an empty one counts no countries
// rather than refusing every call.
std::optional<CountryList> loadCountries(Context& ctx) {
    CountryList list = CountryList::load(ctx.paths.countryDbPath());
    if (list.empty())
        return std::nullopt;
    return list;
}

const CountryList* ptr(const std::optional<CountryList>& l) {
    return l ? &*l : nullptr;
}

// The output file of an export: -o FILE.
std::optional<std::filesystem::path> outputOption(Context& ctx, const Args& args, int& code) {
    const std::string o = args.getOr("o", "");
    if (text::trim(o).empty()) {
        code = ctx.missing("-o FILE");
        return std::nullopt;
    }
    return std::filesystem::path(o);
}

// The mode whose reports have three characters: the second entry of the
// mode list. Read without rebuilding the list, so an export writes nothing
// into the settings file.
std::string cwMode(const Settings& settings) {
    const auto modes = settings.list(section::MODE);
    return modes.size() >= 2 ? text::trim(modes[1]) : std::string("CW");
}

int runEvaluate(Context& ctx, const Args& args) {
    int code = kOk;
    auto arg = logArgument(ctx, args, true, code);
    if (!arg)
        return code;
    const auto countries = loadCountries(ctx);
    Evaluation ev = evaluate(arg->opened.log, arg->band, ptr(countries));
    for (const std::string& call : ev.callsWithoutCountry)
        ctx.err << ctx.texts(291) << "\n\n" << call << "\n";
    if (auto col = args.get("sort")) {
        GridSorter sorter;
        const int c = static_cast<int>(text::leadingInt(*col));
        if (!text::isInteger(*col) || c < 0 || c >= kEvalColumns)
            return ctx.fail(225, kRefused, "--sort " + *col);
        sorter.click(ev.rows, c);
        if (args.flags.count("descending"))
            sorter.click(ev.rows, c);
    }
    ctx.out << "locators=" << static_cast<long long>(ev.locatorCount) << "\n"
            << "grossfelder=" << static_cast<long long>(ev.grossfeldCount) << "\n"
            << "countries=" << ev.countryCount() << "\n"
            << "multiplier=" << ev.multiplier << "\n"
            << "dupes=" << ev.dupes << "\n"
            << "deleted=" << ev.deleted << "\n"
            << "qsos=" << ev.qsos << "\n"
            << "score=" << ev.points << "\n"
            << "kmperqso=" << ev.kmPerQso << "\n"
            << "odx=" << ev.odx << "\n";
    for (const CountryCount& c : ev.countries)
        ctx.out << c.qsos << "\t" << c.country << "\n";
    if (args.flags.count("rows"))
        for (const EvalRow& r : ev.rows) {
            for (std::size_t i = 0; i < r.cells.size(); ++i)
                ctx.out << (i ? "\t" : "") << r.cells[i];
            ctx.out << "\n";
        }
    return kOk;
}

int runEdi(Context& ctx, const Args& args) {
    int code = kOk;
    const auto out = outputOption(ctx, args, code);
    if (!out)
        return code;
    auto arg = logArgument(ctx, args, true, code);
    if (!arg)
        return code;
    const Settings settings{IniFile{ctx.paths.iniPath()}};
    const auto countries = loadCountries(ctx);
    const Evaluation ev = evaluate(arg->opened.log, arg->band, ptr(countries));
    // The boxes as the dialog fills them: last contents, the log's figures,
    // then the band's template and its evaluation.
    EdiBoxes boxes = ediLoadLast(settings);
    ediFillOnOpen(ev, boxes);
    ediChooseBand(settings, ev, boxes);
    const Result<std::filesystem::path> written = writeEdi(*out, ev, boxes, cwMode(settings));
    if (!written) {
        Failure f = written.failure();
        if (f.text == 202) // the band text, a blank and "Log Leer!"
            return ctx.fail(0, kRefused, f.detail + " " + ctx.texts(202));
        return ctx.refuse(f);
    }
    ctx.out << savedMessage(ctx.texts, *written) << "\n";
    return kOk;
}

int runAdif(Context& ctx, const Args& args) {
    int code = kOk;
    const auto out = outputOption(ctx, args, code);
    if (!out)
        return code;
    auto arg = logArgument(ctx, args, false, code);
    if (!arg)
        return code;
    const Settings settings{IniFile{ctx.paths.iniPath()}};
    const auto bands = evaluateAllBands(arg->opened.log, nullptr);
    const auto written = writeAdif(*out, bands, adifFrequencies(settings));
    ctx.out << savedMessage(ctx.texts, written) << "\n";
    return kOk;
}

int runText(Context& ctx, const Args& args) {
    int code = kOk;
    const auto out = outputOption(ctx, args, code);
    if (!out)
        return code;
    auto arg = logArgument(ctx, args, false, code);
    if (!arg)
        return code;
    const auto countries = loadCountries(ctx);
    const auto bands = evaluateAllBands(arg->opened.log, ptr(countries));
    TextListingOptions o;
    o.withStatistics = !args.flags.count("no-stats");
    o.now = ctx.clock.now();
    const auto written = writeTextListing(*out, bands, ctx.texts, o);
    ctx.out << savedMessage(ctx.texts, written) << "\n";
    return kOk;
}

std::vector<std::string> splitNames(const std::string& s) {
    std::vector<std::string> out;
    std::size_t a = 0;
    while (a <= s.size()) {
        const std::size_t e = std::min(s.find(',', a), s.size());
        if (std::string n = text::trim(s.substr(a, e - a)); !n.empty())
            out.push_back(std::move(n));
        a = e + 1;
    }
    return out;
}

int runStats(Context& ctx, const Args& args) {
    int code = kOk;
    const auto dir = positional(ctx, args, 0, "folder", code);
    if (!dir)
        return code;
    std::vector<std::string> names =
        args.get("logs") ? splitNames(*args.get("logs")) : listStatisticLogs(*dir);
    if (names.empty())
        return kOk; // nothing chosen: the window stops without a word
    const auto countries = loadCountries(ctx);
    const Result<LogStatistics> s = computeStatistics(*dir, names, ptr(countries));
    if (!s)
        return ctx.refuse(s.failure());
    const std::string report = statisticsReport(*s, ctx.texts);
    if (auto o = args.get("o")) {
        ctx.out << savedMessage(ctx.texts, saveStatisticsReport(*o, report)) << "\n";
        return kOk;
    }
    ctx.out << report;
    return kOk;
}

std::optional<GroupField> groupField(const std::string& s) {
    static const std::pair<const char*, GroupField> names[] = {
        {"time", GroupField::Time},        {"rxmod", GroupField::RxMod},
        {"txmod", GroupField::TxMod},      {"qsl", GroupField::Qsl},
        {"note", GroupField::Note},        {"name", GroupField::Name},
        {"prop", GroupField::Prop},        {"opcall", GroupField::OpCall},
        {"add-time", GroupField::AddTime}, {"sub-time", GroupField::SubTime}};
    for (const auto& [n, f] : names)
        if (s == n)
            return f;
    return std::nullopt;
}

int runGroupChange(Context& ctx, const Args& args) {
    int code = kOk;
    const auto field = groupField(args.getOr("field", ""));
    if (!field)
        return ctx.fail(225, kRefused, "--field " + args.getOr("field", ""));
    auto arg = logArgument(ctx, args, true, code);
    if (!arg)
        return code;
    const GroupChange change{args.getOr("from", ""), args.getOr("to", ""), *field,
                             args.getOr("value", "")};
    const Result<std::int64_t> n = applyGroupChange(arg->opened.log, arg->band, change);
    if (!n)
        return ctx.refuse(n.failure());
    ctx.out << "changed=" << *n << "\n";
    return kOk;
}

const bool registered[] = {
    registerCommand({"evaluate",
                     "LOG --band BAND [--rows] [--sort COL [--descending]]",
                     "evaluate one band: statistic values as key=value, then the countries",
                     {"rows", "descending"},
                     &runEvaluate}),
    registerCommand({"edi",
                     "LOG --band BAND -o FILE",
                     "write the band's EDI entry file (boxes from the settings file)",
                     {},
                     &runEdi}),
    registerCommand(
        {"adif", "LOG -o FILE", "write all bands of the log as an ADIF file", {}, &runAdif}),
    registerCommand({"text",
                     "LOG -o FILE [--no-stats]",
                     "write the text listing of the log",
                     {"no-stats"},
                     &runText}),
    registerCommand({"stats",
                     "DIR [--logs NAME,NAME] [-o FILE]",
                     "statistics over the logs of a folder (all listed logs by default); "
                     "with -o stored in FILE",
                     {},
                     &runStats}),
    registerCommand({"group-change",
                     "LOG --band BAND --from N --to M --field "
                     "time|rxmod|txmod|qsl|note|name|prop|opcall|add-time|sub-time --value V",
                     "change one field of the QSOs numbered N to M",
                     {},
                     &runGroupChange}),
};

} // namespace
} // namespace orv::cli
