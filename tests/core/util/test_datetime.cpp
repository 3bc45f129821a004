#include <gtest/gtest.h>

#include "core/util/datetime.h"

using orv::DateTime;

TEST(DateTime, StorageFormRoundTripsAndRejectsImpossibleDates) {
    const auto t = DateTime::fromStorage("2024-02-29 23:59:58");
    ASSERT_TRUE(t);
    EXPECT_EQ(t->toStorage(), "2024-02-29 23:59:58");
    EXPECT_EQ(t->addSeconds(2).toStorage(), "2024-03-01 00:00:00");
    EXPECT_EQ(t->addHours(-24).toStorage(), "2024-02-28 23:59:58");
    for (const char* bad : {"2023-02-29", "2024-13-01", "2024-01-01 24:00", "2024/01/01", "x"})
        EXPECT_FALSE(DateTime::fromStorage(bad)) << bad;
    EXPECT_EQ(DateTime::fromStorage("2024-01-05 07:08")->timeHM(), "07:08");
    EXPECT_EQ(DateTime::fromStorage("2024-01-05")->yyyymmdd(), "20240105");
}

TEST(DateTime, EpochArithmeticAcrossYearsAndBeforeEpoch) {
    const DateTime a{1969, 12, 31, 23, 0, 0};
    EXPECT_EQ(a.secondsSinceEpoch(), -3600);
    EXPECT_EQ(DateTime::fromSecondsSinceEpoch(-3600), a);
    EXPECT_EQ(DateTime({2026, 12, 31, 22, 0, 0}).addHours(3).toStorage(), "2027-01-01 01:00:00");
}
