#include <gtest/gtest.h>

#include <vector>

#include "core/map/rate_intervals.h"

using namespace orv;
using namespace orv::map;

namespace {

DateTime t(const char* s) {
    return *DateTime::fromStorage(s);
}

} // namespace

// A hand-made log over midnight: empty intervals stay in the list, each
// interval starts at a multiple of the step after midnight, and the order
// of the samples does not matter.
TEST(RateIntervals, HandMadeLog) {
    const std::vector<RateSample> log = {
        {t("2026-05-02 23:59:59"), 300}, {t("2026-05-02 22:05:00"), 100},
        {t("2026-05-02 22:59:00"), 50},  {t("2026-05-03 00:00:00"), 7},
        {t("2026-05-03 01:10:00"), 1},
    };
    struct Case {
        int step;
        std::vector<RateInterval> want;
    };
    const std::vector<Case> cases = {
        {60,
         {{t("2026-05-02 22:00"), 2, 150},
          {t("2026-05-02 23:00"), 1, 300},
          {t("2026-05-03 00:00"), 1, 7},
          {t("2026-05-03 01:00"), 1, 1}}},
        {10, {{t("2026-05-02 22:00"), 1, 100}, {t("2026-05-02 22:10"), 0, 0},
              {t("2026-05-02 22:20"), 0, 0},   {t("2026-05-02 22:30"), 0, 0},
              {t("2026-05-02 22:40"), 0, 0},   {t("2026-05-02 22:50"), 1, 50},
              {t("2026-05-02 23:00"), 0, 0},   {t("2026-05-02 23:10"), 0, 0},
              {t("2026-05-02 23:20"), 0, 0},   {t("2026-05-02 23:30"), 0, 0},
              {t("2026-05-02 23:40"), 0, 0},   {t("2026-05-02 23:50"), 1, 300},
              {t("2026-05-03 00:00"), 1, 7},   {t("2026-05-03 00:10"), 0, 0},
              {t("2026-05-03 00:20"), 0, 0},   {t("2026-05-03 00:30"), 0, 0},
              {t("2026-05-03 00:40"), 0, 0},   {t("2026-05-03 00:50"), 0, 0},
              {t("2026-05-03 01:00"), 0, 0},   {t("2026-05-03 01:10"), 1, 1}}},
        // 7 does not divide the day: the last interval before midnight is short.
        {420, {{t("2026-05-02 21:00"), 3, 450}, {t("2026-05-03 00:00"), 2, 8}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.step);
        EXPECT_EQ(rateIntervals(log, c.step), c.want);
    }
    // The display's count at each hour's end over the 90 minutes before it.
    EXPECT_EQ(zeitbereichCounts(log, rateIntervals(log, 60), 60, 90),
              (std::vector<std::int64_t>{2, 2, 2, 1}));
    EXPECT_TRUE(rateIntervals({}, 60).empty());
    EXPECT_TRUE(rateIntervals(log, 0).empty());
}
