#pragma once

#include <cstdint>
#include <vector>

#include "core/util/datetime.h"

// QSOs and points per interval of the contest, for the rate graph and the
// tool's `rate`.
namespace orv::map {

// One live QSO as the rate counts it.
struct RateSample {
    DateTime time;
    std::int64_t points = 0;
};

struct RateInterval {
    DateTime start;
    std::int64_t qsos = 0;
    std::int64_t points = 0;
    bool operator==(const RateInterval&) const = default;
};

// Every interval of `stepMinutes` from the one of the earliest sample to the
// one of the latest, empty ones included. An interval starts at a whole
// multiple of the step after midnight (a step that does not divide the day
// starts again at midnight). Nothing for no samples or a step below 1.
std::vector<RateInterval> rateIntervals(const std::vector<RateSample>& samples, int stepMinutes);

// The rate display's count along the graph: for each interval, the samples
// of the `zeitbereichMinutes` before its end (the end excluded, as the
// display counts at that moment).
std::vector<std::int64_t> zeitbereichCounts(const std::vector<RateSample>& samples,
                                            const std::vector<RateInterval>& intervals,
                                            int stepMinutes, int zeitbereichMinutes);

// The start of the interval holding `t`.
DateTime intervalStart(DateTime t, int stepMinutes);

} // namespace orv::map
