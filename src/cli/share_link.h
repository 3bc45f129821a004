#pragma once

// The tool's exchange with a shared contest's server: one bounded round, and
// the sending of what a command queued before the tool ends.

#include <filesystem>
#include <optional>
#include <string>

#include "cli/cli.h"
#include "core/shared/share_address.h"
#include "core/shared/shared_sync.h"

namespace orv::cli {

// Texts of the tool's share commands that the exchange says too.
inline constexpr int kShareInvalidAddress = 1320;
inline constexpr int kShareUnreachable = 1322;
inline constexpr int kShareOtherSchema = 1323;
inline constexpr int kShareNotBuiltIn = 1332;

struct ShareRound {
    bool reached = false;
    SyncReport report;
    // What stopped it, in the program's words (text row and detail).
    int textRow = 0;
    std::string detail;
};

// "Changes wait in the log" and why the round stopped, in one line; an
// unreachable server is said once.
std::string stillWaiting(Context& ctx, const ShareRound& r);

// The address of --server and the name of --position, checked; each refusal
// is printed in the program's words and sets `code`.
struct ShareTarget {
    ShareAddress address;
    std::string server;
    std::string position;
};
std::optional<ShareTarget> shareTarget(Context& ctx, const Args& args, int& code);

// Whether the tool can reach a server at all (built with libpq).
bool sharingBuiltIn();

// The password kept for the address; empty when none.
std::string sharePassword(Context& ctx, const ShareAddress& address);

// One round for the log at `path` (shared): send, fetch, note the contact.
// Gives up within a few seconds.
ShareRound shareRound(Context& ctx, const std::filesystem::path& path);

// Sends what the commands of this run queued in the shared logs they opened;
// says on stderr what stays waiting. Never changes the exit status.
void sendQueuedChanges(Context& ctx);

} // namespace orv::cli
