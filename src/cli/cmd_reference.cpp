// Reference data from the command line: the country list and the call
// database.
#include <cstdio>
#include <limits>
#include <set>

#include "cli/cli.h"
#include "cli/log_access.h"
#include "core/capture/capture.h"
#include "core/reference/call_db.h"
#include "core/reference/call_db_merge.h"
#include "core/reference/call_image.h"
#include "core/reference/country_download.h"
#include "core/reference/country_list.h"
#include "core/settings/settings.h"
#include "core/util/file_io.h"
#include "core/util/text.h"
#include "platform/net/curl_http.h"

namespace orv::cli {
namespace {

constexpr int kImportDone = 85;
constexpr int kNoCountry = 291;
constexpr int kNoCountryList = 247;
constexpr int kEntriesAdded = 259;

void reportImport(Context& ctx, const CountryTables& t) {
    ctx.out << ctx.texts(kImportDone) << "\n"
            << "countries=" << t.dx.size() << " prefixes=" << t.prefixes.size();
    if (t.skippedTokens)
        ctx.out << " skipped=" << t.skippedTokens;
    ctx.out << "\n";
}

int runImportCty(Context& ctx, const Args& args) {
    if (args.positional.size() != 1)
        return ctx.usage("import-cty FILE [--arrl]");
    const auto format = args.flags.count("arrl") ? CountryFormat::ArrlCty : CountryFormat::CtyDat;
    auto r = importCountryFile(ctx.paths.countryDbPath(), args.positional[0], format);
    if (!r)
        return ctx.refuse(r.failure());
    reportImport(ctx, r.value());
    return kOk;
}

int runDownloadCty(Context& ctx, const Args& args) {
    const Settings settings{IniFile(ctx.paths.iniPath())};
    const std::string url = args.getOr("url", settings.get(keys::CTYDownloadURL));
    CurlHttpGetter http;
    auto r = downloadCountryList(http, url, ctx.paths.countryDbPath());
    if (!r)
        return ctx.refuse(r.failure());
    reportImport(ctx, r.value());
    return kOk;
}

int runCountry(Context& ctx, const Args& args) {
    if (args.positional.size() != 1)
        return ctx.fail(kNoCountry, kRefused);
    const auto list = CountryList::load(ctx.paths.countryDbPath());
    if (list.empty())
        return ctx.fail(kNoCountryList, kRefused);
    const auto e = list.lookup(args.positional[0]);
    if (!e)
        return ctx.fail(kNoCountry, kRefused, args.positional[0]);
    ctx.out << e->Country << "\t" << e->CQZone << "\t" << e->ITUZone << "\t" << e->Continent << "\t"
            << e->PrimaryPrefix << "\n";
    return kOk;
}

int runCallDbImport(Context& ctx, const Args& args) {
    if (args.positional.size() != 1)
        return ctx.usage("calldb-import FILE");
    const std::string content = fileio::readAll(args.positional[0]);
    CallDbStore store(ctx.paths.callDbPath());
    // Another call database file is imported row by row, a text file line by line.
    auto r = isSqliteFile(content) ? importForeignCallDb(store, args.positional[0])
                                   : importCallList(store, content);
    if (!r)
        return ctx.refuse(r.failure());
    ctx.out << r->added << " " << ctx.texts(kEntriesAdded) << "\n"
            << "added=" << r->added << " completed=" << r->completed << " known=" << r->known
            << "\n";
    return kOk;
}

int runCallDbNew(Context& ctx, const Args&) {
    NewQBDat(ctx.paths);
    return kOk;
}

int runLookup(Context& ctx, const Args& args) {
    CallSearch q;
    q.callPart = args.getOr("call", "");
    q.locatorPart = args.getOr("locator", "");
    q.maxRecords = std::numeric_limits<std::size_t>::max();
    if (auto max = args.get("max")) {
        if (!text::isInteger(*max) || text::leadingInt(*max) < 0)
            return ctx.fail(225, kRefused, "--max " + *max);
        q.maxRecords = static_cast<std::size_t>(text::leadingInt(*max));
    }
    // The worked-before lines of a log's band follow the database's lines.
    int code = kOk;
    std::optional<OpenedLog> opened;
    std::optional<int> band;
    if (auto logName = args.get("log")) {
        if (!(band = bandOption(ctx, args, code)) || !(opened = openNamedLog(ctx, *logName, code)))
            return code;
    }
    const auto image = QBDatImage::load(ctx.paths.callDbPath());
    const auto r = image.search(q);
    for (auto n : r.records)
        ctx.out << image.WriteInList(n) << "\n";
    if (opened) {
        Settings settings{IniFile(ctx.paths.iniPath())};
        FixedDialogs dialogs(Answer::No);
        Capture capture(opened->log, captureConfigFrom(settings, opened->log.myData()), ctx.clock,
                        dialogs, ctx.texts);
        capture.selectBand(*band);
        // With a locator part, only calls that the locator search found.
        std::optional<std::set<std::string>> locatorCalls;
        if (!text::trim(q.locatorPart).empty()) {
            CallSearch all = q;
            all.maxRecords = std::numeric_limits<std::size_t>::max();
            locatorCalls.emplace();
            for (auto n : image.search(all).records)
                locatorCalls->emplace(image.record(n).Call());
        }
        for (const auto& line :
             capture.workedBeforeLines(q.callPart, locatorCalls ? &*locatorCalls : nullptr))
            ctx.out << line << "\n";
    }
    ctx.out << "# found=" << r.found << "\n";
    return kOk;
}

int runMerge(Context& ctx, const Args& args) {
    int code = kOk;
    auto arg = logArgument(ctx, args, false, code);
    if (!arg)
        return code;
    const auto m = DBAktual(ctx.paths, arg->opened.log, arg->name);
    ctx.out << "qsos=" << m.qsos << " added=" << m.added << " skipped=" << m.skipped << " bands=";
    for (std::size_t i = 0; i < m.bandsMerged.size(); ++i)
        ctx.out << (i ? "," : "") << band(m.bandsMerged[i]).boxText;
    ctx.out << " already=";
    for (std::size_t i = 0; i < m.bandsAlreadyMerged.size(); ++i)
        ctx.out << (i ? "," : "") << band(m.bandsAlreadyMerged[i]).boxText;
    ctx.out << "\n";
    return kOk;
}

// The comparison grid as text: per group a separator line "--" (from the
// second group on), the QSO row, then its records; 14 tab-separated cells as
// the grid's columns.
int runCompare(Context& ctx, const Args& args) {
    int code = kOk;
    const std::string by = text::lower(args.getOr("by", "call"));
    if (by != "call" && by != "locator")
        return ctx.fail(225, kRefused, "--by " + by);
    auto arg = logArgument(ctx, args, true, code);
    if (!arg)
        return code;
    const auto image = QBDatImage::load(ctx.paths.callDbPath());
    const auto groups = compareWithCallDb(image, arg->opened.log.rows(arg->band), arg->band,
                                          MindestZahl(ctx.paths, arg->name, arg->band),
                                          by == "call" ? CompareBy::Call : CompareBy::Locator);
    if (groups.empty()) {
        ctx.out << ctx.texts(281) << "\n";
        return kOk;
    }
    auto date = [](const DateTime& d) {
        char buf[32];
        std::snprintf(buf, sizeof buf, "%02d.%02d.%04d", d.day, d.month, d.year);
        return std::string(buf);
    };
    bool first = true;
    for (const auto& g : groups) {
        if (!first)
            ctx.out << "--\n";
        first = false;
        ctx.out << g.qso.qsoNr << "\t" << g.qso.call << "\t" << g.qso.locator;
        for (int c = 0; c < kBandCount; ++c)
            ctx.out << "\t" << (c == arg->band ? "***" : "");
        ctx.out << "\t" << date(g.qso.datTime) << " " << g.qso.datTime.timeHM() << "\n";
        for (auto n : g.records) {
            const QBDatEntry& e = image.record(n);
            ctx.out << "\t" << e.Call() << "\t" << e.Locator();
            for (auto v : e.counters)
                ctx.out << "\t" << v;
            ctx.out << "\t" << (e.lastDate().year >= 1900 ? date(e.lastDate()) : "") << "\n";
        }
    }
    return kOk;
}

const bool registered =
    registerCommand({"import-cty",
                     "FILE [--arrl]",
                     "replace the country list with a CTY.DAT (or ARRL.CTY) file",
                     {"arrl"},
                     &runImportCty}) &&
    registerCommand({"download-cty",
                     "[--url URL]",
                     "fetch the country list (QB-OPTION CTYDownloadURL) and import it",
                     {},
                     &runDownloadCty}) &&
    registerCommand({"country",
                     "CALL",
                     "country, CQ zone, ITU zone, continent and primary prefix of a call",
                     {},
                     &runCountry}) &&
    registerCommand({"calldb-import",
                     "FILE",
                     "add a list of calls (MASTER.SCP), 'CALL LOCATOR' lines or the rows of "
                     "another call database file to the call database",
                     {},
                     &runCallDbImport}) &&
    registerCommand(
        {"calldb-new", "", "replace the call database with a new empty one", {}, &runCallDbNew}) &&
    registerCommand({"lookup",
                     "[--call PART] [--locator PART] [--max N] [--log LOG --band BAND]",
                     "search the call database as the entry row does: list lines, the "
                     "worked-before lines of the log's band, then '# found=N'",
                     {},
                     &runLookup}) &&
    registerCommand({"calldb-merge",
                     "LOG",
                     "count the live QSOs of each band of the log not yet merged into the call "
                     "database",
                     {},
                     &runMerge}) &&
    registerCommand({"compare",
                     "LOG --band BAND [--by call|locator]",
                     "compare the band's QSOs with the call database and list the doubtful ones",
                     {},
                     &runCompare});

} // namespace
} // namespace orv::cli
