#include "cli/cli.h"
#include "cli/log_access.h"
#include "core/capture/capture.h"
#include "core/settings/settings.h"
#include "core/submission/ham3_import.h"
#include "core/util/file_io.h"

// import-ham3 LOG FILE.ASC: the HAM III import of the menu without its
// questions. Lines of a band the program has not are skipped and counted;
// a first band that already holds QSOs refuses the whole import.
namespace orv::cli {
namespace {

int run(Context& ctx, const Args& args) {
    int code = kOk;
    const auto name = positional(ctx, args, 0, "LOG", code);
    if (!name)
        return code;
    const auto file = positional(ctx, args, 1, "FILE.ASC", code);
    if (!file)
        return code;
    auto opened = openNamedLog(ctx, *name, code);
    if (!opened)
        return code;
    std::vector<std::string> lines;
    try {
        lines = readHam3File(*file);
    } catch (const fileio::FileError& e) {
        return ctx.fail(1169, kFailure, *file + "\n" + e.what());
    }

    Settings settings(IniFile(ctx.paths.iniPath()));
    FixedDialogs dialogs(Answer::No);
    Capture capture(opened->log, captureConfigFrom(settings, opened->log.myData()), ctx.clock,
                    dialogs, ctx.texts);
    EntryRow row;
    const std::vector<std::string> modes = settings.modes();
    row.mode = row.rxMode = modes.empty() ? std::string() : modes.front();
    row.op = settings.get(keys::OPCall);
    Ham3Import import(capture, modes);
    const Ham3Report r =
        import.run(lines, row, [](std::size_t, const std::string&) { return true; });
    if (r.end == Ham3Report::End::BandNotEmpty)
        return ctx.fail(423, kRefused);
    for (const Ham3Refusal& f : r.refused)
        ctx.err << ctx.texts(1151) << ' ' << f.line << ": " << ctx.texts(f.text)
                << (f.detail.empty() ? "" : " (" + f.detail + ")") << "\n";
    ctx.out << ctx.texts(1152) << ' ' << r.stored << "\n"
            << ctx.texts(1153) << ' ' << r.refused.size() << "\n"
            << ctx.texts(1154) << ' ' << r.unknownBand << "\n";
    return kOk;
}

const bool registered = registerCommand(
    {"import-ham3",
     "LOG FILE.ASC",
     "replay a HAM III log into LOG through the normal commit; unknown bands are skipped",
     {},
     &run});

} // namespace
} // namespace orv::cli
