#include <filesystem>
#include <string>

#include "cli/cli.h"
#include "core/remote/remote_link.h"
#include "core/remote/remote_settings.h"
#include "core/settings/settings.h"
#include "core/util/text.h"
#include "platform/net/line_client.h"

// remote COMMAND [--port N] [--host ADDR]: sends one command line to the
// running program and prints its reply, for scripts.
namespace orv::cli {
namespace {

constexpr int kTimeoutMs = 3000;

int run(Context& ctx, const Args& args) {
    if (args.positional.size() != 1)
        return ctx.usage("remote COMMAND [--port N] [--host ADDR]");
    // The port the program listens on: the option, else the data folder's
    // settings, else the default.
    int port = static_cast<int>(remote::Port.fallback);
    if (const auto p = args.get("port")) {
        const long long v = text::leadingInt(*p);
        if (!text::isInteger(*p) || v < 1 || v > 65535)
            return ctx.fail(225, kRefused, "--port " + *p);
        port = static_cast<int>(v);
    } else if (std::filesystem::exists(ctx.paths.iniPath())) {
        port = static_cast<int>(Settings{IniFile{ctx.paths.iniPath()}}.get(remote::Port));
    }
    const std::string& line = args.positional[0];
    if (line.find_first_of("\r\n") != std::string::npos)
        return ctx.fail(225, kRefused, line);
    // Only a read command is answered; a write command is sent and done.
    const auto command = remote::parseCommand(line);
    const bool answered = command && remote::isReadCommand(command->name);
    const auto result =
        exchangeLine(args.getOr("host", "127.0.0.1"), port, line, answered, kTimeoutMs);
    if (!result.ok)
        return ctx.fail(10, kFailure, result.error);
    if (result.reply)
        ctx.out << *result.reply << "\n";
    return kOk;
}

const bool registered =
    registerCommand({"remote",
                     "COMMAND [--port N] [--host ADDR]",
                     "send one command (GET__QTF:, SET_CALL:DL1ABC, ...) to the running program "
                     "and print its reply",
                     {},
                     &run});

} // namespace
} // namespace orv::cli
