// new-log NAME: creates a contest log after the checks of the log chooser,
// shared at once when a server and a position are given.
// info NAME: the station, the contest and the stored totals of each band.
#include <filesystem>
#include <string>
#include <vector>

#include "cli/cli.h"
#include "cli/share_link.h"
#include "core/logstore/contest_defs.h"
#include "core/logstore/log_setup.h"
#include "core/settings/ini_file.h"
#include "core/util/text.h"

namespace orv::cli {
namespace {

// Ten whole numbers of 16 bits, separated by commas.
std::optional<std::array<int, kBandCount>> parseWeights(const std::string& s) {
    // A ConE line with an empty name reads exactly these ten numbers.
    const auto def = parseConELine(s + ",");
    if (!def || !def->name.empty())
        return std::nullopt;
    std::array<int, kBandCount> w{};
    for (std::size_t i = 0; i < w.size(); ++i)
        w[i] = def->weights[i];
    return w;
}

const std::string kNewLogUsage =
    "NAME --call CALL --locator LOC [--contest NAME] [--weights w0,...,w9] [--overwrite] "
    "[--server postgresql://USER@HOST:PORT/DB --position NAME [--password-file FILE]]";

int runNewLog(Context& ctx, const Args& args) {
    if (args.positional.size() != 1)
        return ctx.usage("new-log " + kNewLogUsage);
    const std::string name = args.positional[0];
    // A log to be shared: the server's address and the position are checked
    // before anything is made, as `share` checks them.
    const bool share = args.has("server") || args.has("position");
    if (int code = kOk; share && !shareTarget(ctx, args, code))
        return code;

    // The contest in force as the chooser has it: AConDat, then the ConE
    // entry of the chosen name, then weights given outright.
    IniFile ini(ctx.paths.iniPath());
    std::vector<ContestDef> defs;
    ContestData contest = ConDaLoad(ini, defs);
    if (auto c = args.get("contest")) {
        if (!chooseContest(defs, *c, contest))
            contest.ContestName = *c;
    }
    if (auto w = args.get("weights")) {
        const auto weights = parseWeights(*w);
        if (!weights)
            return ctx.refuse(refuse(0, "weights", "--weights: " + ctx.texts(606)));
        contest.Zaehl = *weights;
    }

    NewLogForm form;
    form.contest = contest.ContestName;
    form.myCall = args.getOr("call", "");
    form.myLocator = args.getOr("locator", "");
    // The log keeps no start band or mode; the tool has none to choose.
    form.startBand = "144";
    form.startMode = "SSB";

    auto made = createNewLog(ctx.paths.logsPath(), name, form, contest, args.has("overwrite"));
    if (!made) {
        Failure f = made.failure();
        // The chooser's fields are options here: name the one to give.
        if (f.field == "Combo4")
            f.detail = "--contest NAME (" + ctx.texts(607) + ")";
        else if (f.field == "Text1")
            f.detail = "--call " + form.myCall;
        else if (f.field == "Text2")
            f.detail = "--locator " + form.myLocator;
        return ctx.refuse(f);
    }
    ctx.out << made.value().path().string() << "\n";
    if (!share)
        return kOk;
    Args shareArgs;
    shareArgs.positional = {name};
    for (const char* o : {"server", "position", "password-file"})
        if (const auto v = args.get(o))
            shareArgs.options[o] = *v;
    return commands().at("share").run(ctx, shareArgs);
}

int runInfo(Context& ctx, const Args& args) {
    if (args.positional.size() != 1)
        return ctx.usage("info NAME");
    const std::string name = args.positional[0];
    const auto path = ctx.paths.logFile(name);
    if (name.empty() || !std::filesystem::is_regular_file(path))
        return ctx.fail(415, kRefused, path.string());
    auto opened = openLog(path);
    if (!opened)
        return ctx.refuse(opened.failure());
    OpenedLog& o = opened.value();
    const MyDataRow d = o.log.myData();
    ctx.out << "MyCall\t" << o.myCall << "\n"
            << "MyLocator\t" << o.myLocator << "\n"
            << "ContName\t" << o.contest.ContestName << "\n"
            << "Band\tZaehl\tQSOs\tDeleted\tPGesamt\tODX\tODXNr\n";
    for (int i = 0; i < kBandCount; ++i) {
        const auto bi = static_cast<std::size_t>(i);
        const BandTotals& t = d.totals[bi];
        ctx.out << band(i).boxText << "\t" << o.contest.Zaehl[bi] << "\t" << o.log.rowCount(i)
                << "\t" << o.log.deletedRows(i).size() << "\t" << t.pGesamt << "\t" << t.odx << "\t"
                << t.odxNr << "\n";
    }
    return kOk;
}

const bool registeredNewLog = registerCommand(
    {"new-log",
     kNewLogUsage,
     "create the contest log Logs/NAME.sqlite; the weights come from --weights, else from the "
     "ConE entry named by --contest, else from AConDat; with --server and --position it is "
     "shared at once, as `share` does",
     {"overwrite"},
     &runNewLog});

const bool registeredInfo =
    registerCommand({"info",
                     "NAME",
                     "own call, locator, contest and each band's weight and totals of a log",
                     {},
                     &runInfo});

} // namespace
} // namespace orv::cli
