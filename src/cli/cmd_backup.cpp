#include "cli/cli.h"
#include "cli/log_access.h"
#include "core/backup/backup.h"

// backup LOG FOLDER: the copy the window makes after each change, into
// FOLDER under the log's file name, with the former copy kept as ".ALT"
// until the new one is whole. Safe while the window writes the log.
namespace orv::cli {
namespace {

int run(Context& ctx, const Args& args) {
    int code = kOk;
    const auto name = positional(ctx, args, 0, "LOG", code);
    if (!name)
        return code;
    const auto folder = positional(ctx, args, 1, "FOLDER", code);
    if (!folder)
        return code;
    // The log is tested as the chooser tests it before anything is copied.
    if (!openNamedLog(ctx, *name, code))
        return code;
    const std::filesystem::path source = ctx.paths.logFile(*name);
    const BackupResult r = BackupCopy(source, std::filesystem::path(*folder) / source.filename());
    if (r.outcome == BackupOutcome::Copied)
        return kOk;
    return ctx.fail(r.text(), r.outcome == BackupOutcome::NoPath ? kRefused : kFailure, r.detail);
}

const bool registered =
    registerCommand({"backup",
                     "LOG FOLDER",
                     "copy the log into FOLDER, keeping the former copy as .ALT until done",
                     {},
                     &run});

} // namespace
} // namespace orv::cli
