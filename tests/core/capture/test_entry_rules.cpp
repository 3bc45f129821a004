#include <gtest/gtest.h>

#include "core/capture/entry_rules.h"
#include "core/capture/rate_meter.h"
#include "support/temp_dir.h"

using namespace orv;

TEST(EntryRules, TimeNormalisation) {
    struct Case {
        const char* typed;
        const char* out;
    } cases[] = {{"5", "00:05"}, {"1234", "12:34"}, {"934", "09:34"},   {"12:34", "12:34"},
                 {"", ""},       {" 7 ", "00:07"},  {"12345", "123:45"}};
    for (const auto& c : cases)
        EXPECT_EQ(entry::normaliseTime(c.typed), c.out) << c.typed;
    EXPECT_TRUE(entry::parseTime("23:59"));
    EXPECT_TRUE(entry::parseTime("00:00:30"));
    for (const char* bad : {"24:00", "12:60", "1234", "ab:cd", "-1:30", "12:3x", ""})
        EXPECT_FALSE(entry::parseTime(bad)) << bad;
}

// A blank or a sign inside a typed time is no time, also after the
// completion made "07: 7" of it (an input the fuzzer found).
TEST(EntryRules, TimeWithBlankOrSignInsideIsRefused) {
    const std::string typed =
        test::readFile(test::sourceDir() / "tests/data/fuzz/entry_time/blank-in-minutes.txt");
    EXPECT_EQ(entry::normaliseTime(typed), "07: 7");
    EXPECT_FALSE(entry::parseTime(entry::normaliseTime(typed)));
    for (const char* bad : {"12: 30", "12:+5", "1 2:30", "12:30: 5", "12:30:+5", "+1:30"})
        EXPECT_FALSE(entry::parseTime(bad)) << bad;
    EXPECT_TRUE(entry::parseTime(" 7:05 ")) << "blanks around the time are trimmed";
}

TEST(EntryRules, SerialsReportsAndModes) {
    EXPECT_EQ(entry::formatSerial(5), "005");
    EXPECT_EQ(entry::formatSerial(1), "001");
    EXPECT_EQ(entry::formatSerial(1000), "1000");
    EXPECT_EQ(entry::nextReport("599"), "599");
    EXPECT_EQ(entry::nextReport(" 59 "), "59");
    EXPECT_EQ(entry::nextReport("5999"), "59");
    EXPECT_EQ(entry::modeForReport("59", "SSB", "CW"), "SSB");
    EXPECT_EQ(entry::modeForReport("599", "SSB", "CW"), "CW");
    EXPECT_FALSE(entry::modeForReport("5999", "SSB", "CW"));
    EXPECT_EQ(entry::minimumReceivedReport("CW", "CW"), 6);
    EXPECT_EQ(entry::minimumReceivedReport("SSB", "CW"), 5);
    EXPECT_EQ(entry::filterReportKey('s'), 'S');
    EXPECT_FALSE(entry::filterReportKey('x'));
    EXPECT_EQ(entry::filterCallKey('-'), '/');
    EXPECT_EQ(entry::filterCallKey('d'), 'D');
    EXPECT_FALSE(entry::filterCallKey(' '));
    EXPECT_EQ(entry::qslForKey('j'), "Yes");
    EXPECT_EQ(entry::qslForKey('N'), "No");
    EXPECT_FALSE(entry::qslForKey('x'));
    EXPECT_EQ(entry::clipPropagation("tropo"), "TRO");
}

TEST(RateMeter, ColourByFifthsLaterTestsWin) {
    struct Case {
        long long count;
        int max;
        RgbColor color;
    } cases[] = {
        {1, 10, rate::kWhite},
        {2, 10, rate::kYellow},
        {4, 10, rate::kYellow},
        {5, 10, rate::kGreen},
        {6, 10, rate::kGreen},
        {7, 10, rate::kMagenta},
        {8, 10, rate::kRed},
        {1, 1, rate::kRed},
        {0, 1, rate::kWhite},
        {24000, 60000, rate::kYellow},
        {47999, 60000, rate::kMagenta},
    };
    for (const auto& c : cases)
        EXPECT_EQ(rateColor(c.count, c.max), c.color) << c.count << "/" << c.max;
}

TEST(RateMeter, CountsRowsInsideTheTimeRange) {
    const DateTime now{2026, 5, 2, 12, 0, 0};
    auto at = [&](int minutesAgo) { return now.addSeconds(-60LL * minutesAgo); };
    EXPECT_FALSE(readRate({}, now, 60, 10));
    // All rows inside the range.
    auto r = readRate({at(50), at(10), at(1)}, now, 60, 10);
    ASSERT_TRUE(r);
    EXPECT_EQ(r->count, 3);
    // The walk from the end stops at the first older row.
    r = readRate({at(120), at(90), at(30), at(5)}, now, 60, 10);
    EXPECT_EQ(r->count, 2);
    EXPECT_EQ(r->color, rate::kYellow);
    // The first row exactly at the limit: the walk runs past row 1 and shows 0.
    r = readRate({at(60), at(30)}, now, 60, 10);
    EXPECT_EQ(r->count, 0);
    EXPECT_EQ(r->color, rate::kWhite);
}
