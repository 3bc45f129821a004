// Reference data from the command line: the country list and the call
// database.
#include <limits>

#include "cli/cli.h"
#include "core/reference/call_db.h"
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
        return ctx.fail(kNoCountryList, kRefused, "usage: import-cty FILE [--arrl]");
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
        return ctx.fail(258, kRefused, "usage: calldb-import FILE");
    const std::string content = fileio::readAll(args.positional[0]);
    CallDbStore store(ctx.paths.callDbPath());
    auto r = importCallList(store, content);
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
    const auto image = QBDatImage::load(ctx.paths.callDbPath());
    const auto r = image.search(q);
    for (auto n : r.records)
        ctx.out << image.WriteInList(n) << "\n";
    ctx.out << "# found=" << r.found << "\n";
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
                     "add a list of calls (MASTER.SCP) or 'CALL LOCATOR' lines to the call "
                     "database",
                     {},
                     &runCallDbImport}) &&
    registerCommand(
        {"calldb-new", "", "replace the call database with a new empty one", {}, &runCallDbNew}) &&
    registerCommand({"lookup",
                     "[--call PART] [--locator PART] [--max N]",
                     "search the call database as the entry row does: list lines, then "
                     "'# found=N'",
                     {},
                     &runLookup});

} // namespace
} // namespace orv::cli
