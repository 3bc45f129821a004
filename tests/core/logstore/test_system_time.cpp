#include <gtest/gtest.h>

#include <sys/stat.h>

#include <string>
#include <vector>

#include "core/logstore/system_time.h"
#include "support/fakes.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

class RecordingSetter final : public SystemTimeSetter {
public:
    Status setSystemTime(const DateTime& t) override {
        set.push_back(t);
        if (refuseWith.empty())
            return okStatus();
        return refuse(0, {}, refuseWith);
    }
    std::vector<DateTime> set;
    std::string refuseWith;
};

std::filesystem::path script(const test::TempDir& dir, const std::string& body) {
    const auto p = dir / "fake-timedatectl";
    test::writeFile(p, "#!/bin/sh\n" + body);
    ::chmod(p.c_str(), 0755);
    return p;
}

} // namespace

TEST(SystemTime, TypedTimesAndDates) {
    struct Case {
        const char* typed;
        bool time, date;
    };
    const std::vector<Case> cases{
        {"14:30", true, false},       {"7:05:09", true, false},     {"23:59:59", true, false},
        {"24:00", false, false},      {"12:60", false, false},      {"1230", false, false},
        {"02.05.2026", false, true},  {"2.5.26", false, true},      {"2026-05-02", false, true},
        {"29.02.2025", false, false}, {"31.04.2026", false, false}, {"2.5.2026x", false, false},
        {"", false, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(parseTypedTime(c.typed).has_value(), c.time) << c.typed;
        EXPECT_EQ(parseTypedDate(c.typed).has_value(), c.date) << c.typed;
    }
    EXPECT_EQ(*parseTypedDate("2.5.26"), (DateTime{2026, 5, 2, 0, 0, 0}));
}

TEST(SystemTime, ClockFieldSetsOnePartAndRefusesBadInput) {
    test::FakeClock clock(DateTime{2026, 5, 2, 14, 30, 15});
    RecordingSetter setter;
    ASSERT_TRUE(setComputerClock(setter, clock, ClockPart::Time, "08:01"));
    ASSERT_TRUE(setComputerClock(setter, clock, ClockPart::Date, "03.06.2026"));
    ASSERT_EQ(setter.set.size(), 2u);
    EXPECT_EQ(setter.set[0], (DateTime{2026, 5, 2, 8, 1, 0}));
    EXPECT_EQ(setter.set[1], (DateTime{2026, 6, 3, 14, 30, 15}));

    const Status badTime = setComputerClock(setter, clock, ClockPart::Time, "25:00");
    EXPECT_EQ(badTime.failure().text, 14);
    EXPECT_EQ(badTime.failure().field, "Text5");
    EXPECT_EQ(setComputerClock(setter, clock, ClockPart::Date, "32.1.2026").failure().text, 13);
    EXPECT_EQ(setter.set.size(), 2u) << "bad input never reaches the clock";

    setter.refuseWith = "Access denied";
    const Status refused = setComputerClock(setter, clock, ClockPart::Time, "09:00");
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.failure().detail, "Access denied");
}

TEST(SystemTime, TimedatectlGetsOneArgumentAndItsMessageComesBack) {
    test::TempDir dir;
    const auto args = dir / "args";
    TimedatectlSetter ok(
        script(dir, "for a in \"$@\"; do echo \"[$a]\"; done > '" + args.string() + "'\n")
            .string());
    ASSERT_TRUE(ok.setSystemTime(DateTime{2026, 5, 2, 8, 1, 0}));
    EXPECT_EQ(test::readFile(args), "[set-time]\n[2026-05-02 08:01:00]\n");

    TimedatectlSetter no(
        script(dir, "echo 'Failed to set time: Access denied' >&2\nexit 1\n").string());
    const Status refused = no.setSystemTime(DateTime{2026, 5, 2, 8, 1, 0});
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.failure().detail, "Failed to set time: Access denied");

    TimedatectlSetter missing((dir / "no-such-program").string());
    const Status gone = missing.setSystemTime(DateTime{2026, 5, 2, 8, 1, 0});
    ASSERT_FALSE(gone);
    EXPECT_NE(gone.failure().detail.find("no-such-program"), std::string::npos);
}
