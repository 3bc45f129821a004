// share LOG --server URL --position NAME: makes a log a shared contest.
// join NAME --server URL --position NAME: a new position of a shared contest.
// sync LOG: send what waits, fetch what arrived, and print the state; with
// --keep-mine ID or --take-server ID it resolves a conflict first.
#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "cli/cli.h"
#include "cli/log_access.h"
#include "cli/share_link.h"
#include "core/logstore/bands.h"
#include "core/shared/shared_store.h"
#include "core/util/file_io.h"
#include "core/util/text.h"
#include "platform/net/password_store.h"

#ifdef ORVANTA_HAVE_PG
#include "platform/pg/pg_server.h"
#endif

namespace orv::cli {
namespace {

constexpr int kNotShared = 1324;
constexpr int kQueued = 1325;
constexpr int kLastContact = 1326;
constexpr int kConflicts = 1327;
constexpr int kUnknownContest = 1328;
constexpr int kSent = 1329;
constexpr int kReceived = 1330;
constexpr int kNever = 1333;
constexpr int kHere = 1334;
constexpr int kServer = 1335;
constexpr int kDoubles = 1336;
constexpr int kLogExists = 1356;
constexpr int kUnknownConflict = 1362;

// --server and --position, checked; the password of --password-file goes to
// the keyring (or the password file) for the window and later runs.
std::optional<ShareTarget> serverArgs(Context& ctx, const Args& args, int& code) {
    auto target = shareTarget(ctx, args, code);
    if (!target)
        return std::nullopt;
    if (const auto pf = args.get("password-file")) {
        std::string pw;
        try {
            pw = fileio::readAll(*pf);
        } catch (const fileio::FileError& e) {
            code = ctx.fail(1101, kRefused, e.what());
            return std::nullopt;
        }
        PasswordStore(PasswordStore::fileIn(ctx.paths.appPath))
            .save(target->address.passwordKey(), target->address.user,
                  pw.substr(0, pw.find_first_of("\r\n")));
    }
    return target;
}

void printRound(Context& ctx, const ShareRound& r) {
    ctx.out << ctx.texts(kSent) << "\t" << r.report.sent << "\n"
            << ctx.texts(kReceived) << "\t" << r.report.fetched << "\n";
}

int printState(Context& ctx, const std::filesystem::path& path, const ShareRound& r) {
    sql::Db db(path.string(), sql::Db::Mode::ReadOnly);
    SharedStore store(db);
    const std::string last = store.lastContact();
    ctx.out << ctx.texts(kQueued) << "\t" << store.queuedCount() << "\n"
            << ctx.texts(kLastContact) << "\t" << (last.empty() ? ctx.texts(kNever) : last) << "\n";
    const auto conflicts = store.conflicts();
    ctx.out << ctx.texts(kConflicts) << "\t" << conflicts.size() << "\n";
    for (const auto& c : conflicts)
        ctx.out << c.id << "\t" << band(c.mine.band).boxText << "\t" << c.mine.uid << "\t"
                << ctx.texts(kHere) << " " << c.mine.row.call << " " << c.mine.row.qsoNr
                << (c.mine.row.errQso ? " ErrQSO" : "") << "\t" << ctx.texts(kServer) << " "
                << c.server.row.call << " " << c.server.row.qsoNr
                << (c.server.row.errQso ? " ErrQSO" : "") << " (" << c.server.position << ")\n";
    for (int b = 0; b < kBandCount; ++b)
        for (const auto& d : store.doubleSerials(b))
            ctx.out << ctx.texts(kDoubles) << "\t" << band(b).boxText << "\t" << d.qsoNr << "\t"
                    << d.uids.size() << "\n";
    if (r.reached)
        return kOk;
    ctx.err << ctx.texts(r.textRow) << " " << r.detail << "\n";
    return kFailure;
}

int runShare(Context& ctx, const Args& args) {
    int code = kOk;
    const auto name = positional(ctx, args, 0, "LOG", code);
    if (!name)
        return code;
    const auto sa = serverArgs(ctx, args, code);
    if (!sa)
        return code;
    auto opened = openNamedLog(ctx, *name, code);
    if (!opened)
        return code;
    ctx.openedLogs.clear();
    if (!sharingBuiltIn())
        return ctx.fail(kShareNotBuiltIn, kFailure);
    const std::string contest = SharedStore::isShared(opened->log.db())
                                    ? SharedStore(opened->log.db()).setup().contest
                                    : *name;
    SharedStore::enable(opened->log.db(), {sa->server, sa->position, contest});
#ifdef ORVANTA_HAVE_PG
    // The station's data goes to the server for the positions that join.
    try {
        PgServer server(sa->server, sharePassword(ctx, sa->address), contest, PgTimeouts{2, 2000});
        const MyDataRow d = opened->log.myData();
        std::string weights;
        for (std::size_t i = 0; i < opened->contest.Zaehl.size(); ++i)
            weights += (i ? "," : "") + std::to_string(opened->contest.Zaehl[i]);
        server.publishContest({d.myCall, d.myLocator, d.contName, weights});
    } catch (const SharedServerError&) {
        // The round below says why.
    }
#endif
    const ShareRound r = shareRound(ctx, opened->log.path());
    printRound(ctx, r);
    if (!r.reached)
        ctx.err << stillWaiting(ctx, r) << "\n";
    return kOk;
}

int runJoin(Context& ctx, const Args& args) {
    int code = kOk;
    const auto name = positional(ctx, args, 0, "NAME", code);
    if (!name)
        return code;
    const auto sa = serverArgs(ctx, args, code);
    if (!sa)
        return code;
    if (!sharingBuiltIn())
        return ctx.fail(kShareNotBuiltIn, kFailure);
    const auto path = ctx.paths.logFile(*name);
    if (std::filesystem::exists(path))
        return ctx.fail(kLogExists, kRefused, path.string());
#ifdef ORVANTA_HAVE_PG
    std::optional<PgServer::ContestInfo> info;
    try {
        PgServer server(sa->server, sharePassword(ctx, sa->address), *name, PgTimeouts{2, 2000});
        info = server.contestInfo();
    } catch (const SharedSchemaError& e) {
        return ctx.fail(kShareOtherSchema, kFailure, std::to_string(e.found()));
    } catch (const SharedServerError& e) {
        return ctx.fail(kShareUnreachable, kFailure, sa->address.host + ": " + e.what());
    }
    if (!info)
        return ctx.fail(kUnknownContest, kRefused, *name);
    NewLogData data{info->myCall, info->myLocator, info->contName};
    std::size_t start = 0;
    for (auto& w : data.zaehl) {
        if (start > info->weights.size())
            break;
        w = static_cast<int>(text::leadingInt(info->weights.substr(start)));
        const auto comma = info->weights.find(',', start);
        start = comma == std::string::npos ? info->weights.size() + 1 : comma + 1;
    }
    {
        auto log = ContestLog::create(path, data);
        SharedStore::enable(log.db(), {sa->server, sa->position, *name});
    }
    ctx.out << path.string() << "\n";
    const ShareRound r = shareRound(ctx, path);
    printRound(ctx, r);
    return printState(ctx, path, r);
#else
    return kFailure;
#endif
}

// --keep-mine ID and --take-server ID: each names a conflict of the list;
// all are checked before any is resolved.
int resolveConflicts(Context& ctx, const Args& args, sql::Db& db) {
    SharedStore store(db);
    const auto open = store.conflicts();
    struct Choice {
        const char* option;
        void (SharedStore::*resolve)(std::int64_t);
        std::int64_t id = 0;
    };
    std::vector<Choice> chosen;
    for (Choice c : {Choice{"keep-mine", &SharedStore::keepMine},
                     Choice{"take-server", &SharedStore::takeServer}}) {
        const auto v = args.get(c.option);
        if (!v)
            continue;
        c.id = text::isInteger(*v) ? text::leadingInt(*v) : 0;
        const bool known = std::any_of(open.begin(), open.end(),
                                       [&](const ShareConflict& k) { return k.id == c.id; });
        const bool twice = std::any_of(chosen.begin(), chosen.end(),
                                       [&](const Choice& o) { return o.id == c.id; });
        if (!text::isInteger(*v) || !known || twice)
            return ctx.fail(kUnknownConflict, kRefused, std::string("--") + c.option + " " + *v);
        chosen.push_back(c);
    }
    for (const auto& c : chosen)
        (store.*c.resolve)(c.id);
    return kOk;
}

int runSync(Context& ctx, const Args& args) {
    int code = kOk;
    const auto name = positional(ctx, args, 0, "LOG", code);
    if (!name)
        return code;
    auto opened = openNamedLog(ctx, *name, code);
    if (!opened)
        return code;
    ctx.openedLogs.clear();
    if (!SharedStore::isShared(opened->log.db()))
        return ctx.fail(kNotShared, kRefused, *name);
    if (const int refused = resolveConflicts(ctx, args, opened->log.db()); refused != kOk)
        return refused;
    const ShareRound r = shareRound(ctx, opened->log.path());
    printRound(ctx, r);
    return printState(ctx, opened->log.path(), r);
}

const bool registered =
    registerCommand({"share",
                     "LOG --server postgresql://USER@HOST:PORT/DB --position NAME "
                     "[--password-file FILE]",
                     "share the log with other positions through a PostgreSQL server; the QSOs "
                     "it holds are sent, the password of the file is kept in the keyring",
                     {},
                     &runShare}) &&
    registerCommand({"join",
                     "NAME --server postgresql://USER@HOST:PORT/DB --position NAME "
                     "[--password-file FILE]",
                     "join the shared contest NAME as a new position: creates Logs/NAME.sqlite "
                     "with the station's QSOs",
                     {},
                     &runJoin}) &&
    registerCommand({"sync",
                     "LOG [--keep-mine ID] [--take-server ID]",
                     "send what waits, fetch what arrived, then print the QSOs waiting, the last "
                     "contact and the conflicts (each with its ID first); exit 1 when the server "
                     "cannot be reached. --keep-mine sends this position's version of the "
                     "conflict ID again over the server's, --take-server leaves the server's; "
                     "an ID not in the list is refused",
                     {},
                     &runSync});

} // namespace
} // namespace orv::cli
