#include "core/capture/rate_meter.h"

namespace orv {

RgbColor rateColor(long long count, int zeigerMax) {
    const double t1 = zeigerMax / 5.0, t2 = 2 * t1, t3 = 3 * t1, t4 = 4 * t1;
    const auto c = static_cast<double>(count);
    RgbColor color = rate::kWhite;
    if (c < t1)
        color = rate::kWhite;
    if (t1 <= c && c <= t2)
        color = rate::kYellow;
    if (t2 < c && c <= t3)
        color = rate::kGreen;
    if (t3 < c && c < t4)
        color = rate::kMagenta;
    if (c >= t4)
        color = rate::kRed;
    return color;
}

std::optional<RateReading> readRate(const std::vector<DateTime>& times, DateTime now,
                                    int zeitbereichMinutes, int zeigerMax) {
    if (times.empty())
        return std::nullopt;
    const DateTime limit = now.addSeconds(-std::int64_t{zeitbereichMinutes} * 60);
    long long count = 0;
    if (limit < times.front()) {
        count = static_cast<long long>(times.size());
    } else {
        bool stopped = false;
        for (auto it = times.rbegin(); it != times.rend(); ++it) {
            if (*it < limit) {
                stopped = true;
                break;
            }
            ++count;
        }
        if (!stopped)
            return RateReading{0, rate::kWhite};
    }
    return RateReading{count, rateColor(count, zeigerMax)};
}

} // namespace orv
