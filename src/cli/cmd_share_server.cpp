// share-server --network NET --password-file FILE ...: sets up the
// PostgreSQL server of this machine for a shared contest in one step (role,
// database, listening on the network, pg_hba.conf, restart) and prints the
// address the positions give to share and join. Safe to run again.
#include <algorithm>
#include <functional>
#include <string>

#include "cli/cli.h"
#include "cli/share_link.h"
#include "core/util/file_io.h"

#ifdef ORVANTA_HAVE_PG
#include "platform/pg/pg_setup.h"
#include "platform/pg/pg_setup_run.h"
#endif

namespace orv::cli {
namespace {

#ifdef ORVANTA_HAVE_PG
constexpr int kBadNetwork = 609;
constexpr int kBadName = 610;
constexpr int kEmptyPassword = 611;
constexpr int kChangedFile = 612;
constexpr int kRestarted = 613;
constexpr int kNoAddress = 614;
constexpr int kCannotRead = 1101;
constexpr int kReady = 1357;
constexpr int kNoServer = 1358;
constexpr int kStepFailed = 1359;
constexpr int kNotRoot = 1360;

std::string firstLine(const std::string& s) {
    return s.substr(0, s.find_first_of("\r\n"));
}

// The cluster to set up: its data folder, its owner and how to drive it.
struct Server {
    std::filesystem::path dataDir;
    std::string owner;
    PgCommands commands;
    // As pg_lsclusters tells; a data folder by its postmaster.pid.
    bool running = false;
};

std::optional<Server> findServer(Context& ctx, const Args& args, int& code) {
    if (const auto dir = args.get("data-dir")) {
        // The folder is its owner's alone: who may not drive it learns so first.
        const std::string owner = ownerName(*dir);
        if (!owner.empty() && !mayDriveServerOf(owner)) {
            code = ctx.fail(kNotRoot, kRefused, owner);
            return std::nullopt;
        }
        std::string version;
        try {
            version = firstLine(fileio::readAll(std::filesystem::path(*dir) / "PG_VERSION"));
        } catch (const fileio::FileError&) {
            code = ctx.fail(kNoServer, kRefused, "--data-dir " + *dir);
            return std::nullopt;
        }
        const bool running =
            std::filesystem::exists(std::filesystem::path(*dir) / "postmaster.pid");
        return Server{*dir, owner, dataDirCommands(*dir, version), running};
    }
    const std::string wanted = args.getOr("cluster", "");
    const CommandRun listing = runCommand({"pg_lsclusters", "-h"});
    const auto cluster = chooseCluster(parseClusters(listing.output), wanted);
    if (listing.status != 0 || !cluster) {
        code = ctx.fail(kNoServer, wanted.empty() ? kFailure : kRefused, wanted);
        return std::nullopt;
    }
    return Server{cluster->dataDir, cluster->owner, debianCommands(*cluster), cluster->online};
}

std::optional<PgListening> listening(const Server& s) {
    try {
        return parsePostmasterPid(fileio::readAll(s.dataDir / "postmaster.pid"));
    } catch (const fileio::FileError&) {
        return std::nullopt;
    }
}

std::string commandLine(const std::vector<std::string>& argv) {
    std::string out;
    for (const auto& a : argv)
        out += (out.empty() ? "" : " ") + a;
    return out;
}

// Runs a step; on failure says which and what it printed.
bool step(Context& ctx, const Server& s, const std::vector<std::string>& argv, int& code,
          const std::string& input = {}, std::string* output = nullptr, bool asRoot = false) {
    const CommandRun r = runCommand(argv, asRoot ? std::string() : s.owner, input);
    if (output)
        *output = r.output;
    if (r.status == 0)
        return true;
    code = ctx.fail(kStepFailed, kFailure, commandLine(argv) + "\n" + r.output);
    return false;
}

// Applies an edit to one configuration file; whether it changed.
bool edit(Context& ctx, const std::string& path, const std::function<ConfEdit(std::string_view)>& f,
          bool& changed, int& code) {
    try {
        const ConfEdit e = f(fileio::readAll(path));
        if (e.changed) {
            rewriteConfigFile(path, e.text);
            ctx.err << ctx.texts(kChangedFile) << " " << path << "\n";
        }
        changed = e.changed;
        return true;
    } catch (const fileio::FileError& e) {
        code = ctx.fail(kStepFailed, kFailure, e.what());
        return false;
    }
}

int run(Context& ctx, const Args& args) {
    const std::string networkText = args.getOr("network", "");
    const auto network = parseNetwork(networkText);
    if (!network)
        return ctx.fail(kBadNetwork, kRefused, "--network " + networkText);
    const std::string database = args.getOr("database", "contest");
    const std::string user = args.getOr("user", "contest");
    const std::string superuser = args.getOr("superuser", "postgres");
    const std::pair<std::string, std::string> names[] = {
        {"--database", database}, {"--user", user}, {"--superuser", superuser}};
    for (const auto& [option, name] : names)
        if (!validServerName(name))
            return ctx.fail(kBadName, kRefused, option + " " + name);
    const auto passwordFile = args.get("password-file");
    if (!passwordFile)
        return ctx.missing("--password-file");
    std::string password;
    try {
        password = firstLine(fileio::readAll(*passwordFile));
    } catch (const fileio::FileError& e) {
        return ctx.fail(kCannotRead, kRefused, e.what());
    }
    if (password.empty())
        return ctx.fail(kEmptyPassword, kRefused, *passwordFile);

    int code = kOk;
    const auto server = findServer(ctx, args, code);
    if (!server)
        return code;
    if (!mayDriveServerOf(server->owner))
        return ctx.fail(kNotRoot, kRefused, server->owner);
    const bool asRoot = server->commands.controlAsRoot;
    if (!server->running && !step(ctx, *server, server->commands.start, code, {}, nullptr, asRoot))
        return code;
    auto where = listening(*server);
    if (!where)
        return ctx.fail(kStepFailed, kFailure, (server->dataDir / "postmaster.pid").string());
    const auto psql = psqlCommand(server->commands.binDir, *where, superuser);

    // The password goes to psql on its standard input, never on a command line.
    if (!step(ctx, *server, psql, code, roleAndDatabaseSql(database, user, password)))
        return code;
    std::string shown;
    if (!step(ctx, *server, psql, code,
              "SHOW config_file;\nSHOW hba_file;\nSELECT setting, source FROM pg_settings WHERE "
              "name = 'listen_addresses';\n",
              &shown))
        return code;
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < shown.size();) {
        const auto end = std::min(shown.find('\n', at), shown.size());
        lines.push_back(shown.substr(at, end - at));
        at = end + 1;
    }
    if (lines.size() < 3)
        return ctx.fail(kStepFailed, kFailure, shown);
    const std::string& conf = lines[0];
    const std::string& hba = lines[1];
    const bool restartPending = listenRestartPending(lines[2]);
    bool listenChanged = false, hbaChanged = false;
    if (!edit(ctx, conf, listenEverywhere, listenChanged, code) ||
        !edit(
            ctx, hba,
            [&](std::string_view text) { return allowNetwork(text, database, user, *network); },
            hbaChanged, code))
        return code;
    if (listenChanged || restartPending) {
        // The server reads listen_addresses only when it starts.
        if (!step(ctx, *server, server->commands.restart, code, {}, nullptr, asRoot))
            return code;
        ctx.err << ctx.texts(kRestarted) << "\n";
        where = listening(*server);
        if (!where)
            return ctx.fail(kStepFailed, kFailure, (server->dataDir / "postmaster.pid").string());
    } else if (hbaChanged && !step(ctx, *server, psql, code, "SELECT pg_reload_conf();\n")) {
        return code;
    }

    const auto host = addressOn(*network);
    if (!host)
        ctx.err << ctx.texts(kNoAddress) << " " << *network << "\n";
    ctx.err << ctx.texts(kReady) << "\n";
    ctx.out << shareServerAddress(user, host.value_or("HOST"), where->port, database) << "\n";
    return kOk;
}
#else
int run(Context& ctx, const Args&) {
    return ctx.fail(kShareNotBuiltIn, kFailure);
}
#endif

const bool registered = registerCommand(
    {"share-server",
     "--network NET --password-file FILE [--database DB] [--user USER] [--cluster VERSION/NAME] "
     "[--data-dir DIR [--superuser NAME]]",
     "as root on the server machine: set up its PostgreSQL for a shared contest (role, database, "
     "listening on NET, pg_hba.conf, restart) and print the address the positions use",
     {},
     &run});

} // namespace
} // namespace orv::cli
