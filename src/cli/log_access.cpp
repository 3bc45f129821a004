#include "cli/log_access.h"

#include <filesystem>

#include "core/logstore/bands.h"

namespace orv::cli {

std::optional<OpenedLog> openNamedLog(Context& ctx, const std::string& name, int& exitCode) {
    const auto path = ctx.paths.logFile(name);
    if (name.empty() || !std::filesystem::is_regular_file(path)) {
        exitCode = ctx.fail(415, kRefused, path.string());
        return std::nullopt;
    }
    Result<OpenedLog> opened = openLog(path);
    ctx.openedLogs.push_back(path);
    if (!opened) {
        exitCode = ctx.refuse(opened.failure());
        return std::nullopt;
    }
    return std::move(opened).value();
}

std::optional<int> bandOption(Context& ctx, const Args& args, int& exitCode) {
    const auto b = BandIndex(args.getOr("band", ""));
    if (!b)
        exitCode = ctx.fail(425, kRefused, "--band " + args.getOr("band", ""));
    return b;
}

std::optional<std::string> positional(Context& ctx, const Args& args, std::size_t i,
                                      const std::string& what, int& exitCode) {
    if (i < args.positional.size())
        return args.positional[i];
    exitCode = ctx.missing(what);
    return std::nullopt;
}

std::optional<LogArgument> logArgument(Context& ctx, const Args& args, bool withBand,
                                       int& exitCode) {
    const auto name = positional(ctx, args, 0, "log name", exitCode);
    if (!name)
        return std::nullopt;
    int band = -1;
    if (withBand) {
        const auto b = bandOption(ctx, args, exitCode);
        if (!b)
            return std::nullopt;
        band = *b;
    }
    auto opened = openNamedLog(ctx, *name, exitCode);
    if (!opened)
        return std::nullopt;
    return LogArgument{*name, std::move(*opened), band};
}

} // namespace orv::cli
