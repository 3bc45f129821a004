#include "cli/share_link.h"

#include "core/shared/shared_store.h"
#include "core/util/sqlite.h"
#include "platform/net/password_store.h"

#ifdef ORVANTA_HAVE_PG
#include "platform/pg/pg_server.h"
#include "platform/pg/pg_share_worker.h"
#endif

namespace orv::cli {

namespace {
constexpr int kStillWaiting = 1337;
} // namespace

std::string stillWaiting(Context& ctx, const ShareRound& r) {
    std::string line = ctx.texts(kStillWaiting);
    if (r.textRow != kShareUnreachable)
        line += " " + ctx.texts(r.textRow);
    return line + " " + r.detail;
}

std::optional<ShareTarget> shareTarget(Context& ctx, const Args& args, int& code) {
    constexpr int kInvalidPosition = 1321;
    const std::string server = args.getOr("server", "");
    const auto address = parseShareAddress(server);
    if (!address) {
        code = ctx.fail(kShareInvalidAddress, kRefused, "--server " + server);
        return std::nullopt;
    }
    const std::string position = args.getOr("position", "");
    if (!validPositionName(position)) {
        code = ctx.fail(kInvalidPosition, kRefused, "--position " + position);
        return std::nullopt;
    }
    return ShareTarget{*address, server, position};
}

bool sharingBuiltIn() {
#ifdef ORVANTA_HAVE_PG
    return true;
#else
    return false;
#endif
}

std::string sharePassword(Context& ctx, const ShareAddress& a) {
    return PasswordStore(PasswordStore::fileIn(ctx.paths.appPath))
        .load(a.passwordKey(), a.user)
        .value_or("");
}

ShareRound shareRound(Context& ctx, const std::filesystem::path& path) {
    ShareRound r;
    sql::Db db(path.string(), sql::Db::Mode::ReadWrite);
    db.setDurable();
    SharedStore store(db);
    const ShareSetup setup = store.setup();
    const auto address = parseShareAddress(setup.server);
    if (!address) {
        r.textRow = kShareInvalidAddress;
        r.detail = setup.server;
        return r;
    }
#ifdef ORVANTA_HAVE_PG
    PgServer server(setup.server, sharePassword(ctx, *address), setup.contest, PgTimeouts{2, 2000});
    try {
        r.report = syncOnce(store, server);
        store.noteContact(nowAsStored());
        r.reached = true;
    } catch (const SharedSchemaError& e) {
        r.textRow = kShareOtherSchema;
        r.detail = std::to_string(e.found());
    } catch (const SharedServerError& e) {
        r.textRow = kShareUnreachable;
        r.detail = address->host + ":" + std::to_string(address->port) + ": " + e.what();
    }
#else
    (void)ctx;
    r.textRow = kShareNotBuiltIn;
#endif
    return r;
}

void sendQueuedChanges(Context& ctx) {
    for (const auto& path : ctx.openedLogs) {
        try {
            {
                sql::Db db(path.string(), sql::Db::Mode::ReadWrite);
                if (!SharedStore::isShared(db) || SharedStore(db).queuedCount() == 0)
                    continue;
            }
            const ShareRound r = shareRound(ctx, path);
            if (!r.reached) {
                sql::Db db(path.string(), sql::Db::Mode::ReadOnly);
                ctx.err << stillWaiting(ctx, r) << " (" << SharedStore(db).queuedCount() << ")\n";
            }
        } catch (const std::exception& e) {
            ctx.err << ctx.texts(kStillWaiting) << " " << e.what() << "\n";
        }
    }
    ctx.openedLogs.clear();
}

} // namespace orv::cli
