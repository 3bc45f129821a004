#include <string>
#include <vector>

#include "cli/cli.h"
#include "cli/log_access.h"
#include "core/map/rate_intervals.h"
#include "core/util/text.h"

// rate LOG [--band BAND] [--step MINUTES]: live QSOs and their points per
// interval, one tab-separated line each, empty intervals included.
namespace orv::cli {
namespace {

int run(Context& ctx, const Args& args) {
    int code = kOk;
    auto arg = logArgument(ctx, args, args.has("band"), code);
    if (!arg)
        return code;
    const std::string stepText = text::trim(args.getOr("step", "60"));
    const auto step = text::wholeNumber(stepText);
    if (!step || *step < 1 || *step > 1440)
        return ctx.fail(1274, kRefused, stepText);
    std::vector<map::RateSample> samples;
    for (int b = 0; b < kBandCount; ++b) {
        if (arg->band >= 0 && b != arg->band)
            continue;
        for (const QsoRow& q : arg->opened.log.rows(b))
            if (!q.errQso)
                samples.push_back({q.datTime, q.qrb});
    }
    for (const map::RateInterval& i : map::rateIntervals(samples, static_cast<int>(*step)))
        ctx.out << i.start.dateIso() << " " << i.start.timeHM() << "\t" << i.qsos << "\t"
                << i.points << "\n";
    return kOk;
}

const bool registered =
    registerCommand({"rate",
                     "LOG [--band BAND] [--step MINUTES]",
                     "live QSOs and points per interval of MINUTES (default 60), one line each",
                     {},
                     &run});

} // namespace
} // namespace orv::cli
