#include "core/map/rate_intervals.h"

#include <algorithm>

namespace orv::map {

DateTime intervalStart(DateTime t, int stepMinutes) {
    const int minuteOfDay = t.hour * 60 + t.minute;
    const int start = minuteOfDay / stepMinutes * stepMinutes;
    DateTime d = t.dateOnly();
    d.hour = start / 60;
    d.minute = start % 60;
    return d;
}

std::vector<RateInterval> rateIntervals(const std::vector<RateSample>& samples, int stepMinutes) {
    std::vector<RateInterval> out;
    if (samples.empty() || stepMinutes < 1)
        return out;
    const auto [lo, hi] = std::minmax_element(
        samples.begin(), samples.end(),
        [](const RateSample& a, const RateSample& b) { return a.time < b.time; });
    const DateTime first = intervalStart(lo->time, stepMinutes);
    const DateTime last = intervalStart(hi->time, stepMinutes);
    // Walk from interval to interval; at midnight the next one starts anew.
    for (DateTime t = first; t <= last;) {
        out.push_back({t, 0, 0});
        DateTime next = t.addSeconds(std::int64_t{stepMinutes} * 60);
        if (next.dateOnly() != t.dateOnly())
            next = next.dateOnly();
        t = next;
    }
    for (const RateSample& s : samples) {
        const DateTime start = intervalStart(s.time, stepMinutes);
        auto it =
            std::lower_bound(out.begin(), out.end(), start,
                             [](const RateInterval& i, const DateTime& d) { return i.start < d; });
        ++it->qsos;
        it->points += s.points;
    }
    return out;
}

std::vector<std::int64_t> zeitbereichCounts(const std::vector<RateSample>& samples,
                                            const std::vector<RateInterval>& intervals,
                                            int stepMinutes, int zeitbereichMinutes) {
    std::vector<std::int64_t> times;
    times.reserve(samples.size());
    for (const RateSample& s : samples)
        times.push_back(s.time.secondsSinceEpoch());
    std::sort(times.begin(), times.end());
    std::vector<std::int64_t> out;
    out.reserve(intervals.size());
    for (const RateInterval& i : intervals) {
        const std::int64_t end = i.start.secondsSinceEpoch() + std::int64_t{stepMinutes} * 60;
        const std::int64_t from = end - std::int64_t{zeitbereichMinutes} * 60;
        out.push_back(std::lower_bound(times.begin(), times.end(), end) -
                      std::lower_bound(times.begin(), times.end(), from));
    }
    return out;
}

} // namespace orv::map
