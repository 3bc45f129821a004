#include <string>

#include "cli/cli.h"
#include "cli/log_access.h"
#include "core/capture/worked_bands.h"

// worked LOG CALL: the bands on which a call has a live QSO, one per line.
namespace orv::cli {
namespace {

int run(Context& ctx, const Args& args) {
    int code = kOk;
    auto arg = logArgument(ctx, args, false, code);
    if (!arg)
        return code;
    const auto call = positional(ctx, args, 1, "call", code);
    if (!call)
        return code;
    WorkedBands index;
    for (int b = 0; b < kBandCount; ++b)
        index.setBand(b, arg->opened.log.rows(b));
    const WorkedBands::Bands on = index.of(*call);
    for (int b = 0; b < kBandCount; ++b)
        if (on.test(static_cast<std::size_t>(b)))
            ctx.out << band(b).boxText << "\n";
    return kOk;
}

const bool registered = registerCommand(
    {"worked", "LOG CALL", "the bands on which CALL has a live QSO, one per line", {}, &run});

} // namespace
} // namespace orv::cli
