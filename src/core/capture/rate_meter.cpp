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
    return readRate(
        times.size(), [&times](std::size_t i) { return times[i]; }, now, zeitbereichMinutes,
        zeigerMax);
}

std::optional<RateReading> readRate(std::size_t rows,
                                    const std::function<DateTime(std::size_t)>& timeOf,
                                    DateTime now, int zeitbereichMinutes, int zeigerMax) {
    if (rows == 0)
        return std::nullopt;
    const DateTime limit = now.addSeconds(-std::int64_t{zeitbereichMinutes} * 60);
    long long count = 0;
    if (limit < timeOf(0)) {
        count = static_cast<long long>(rows);
    } else {
        bool stopped = false;
        for (std::size_t i = rows; i-- > 0;) {
            if (timeOf(i) < limit) {
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
