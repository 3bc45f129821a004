#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "call_record_support.h"
#include "core/reference/call_image.h"
#include "core/util/text.h"

using namespace orv;
using test::rec;

namespace {

std::vector<std::string> calls(const QBDatImage& img, const CallSearchResult& r) {
    std::vector<std::string> out;
    for (auto n : r.records)
        out.emplace_back(img.record(n).Call());
    return out;
}

} // namespace

TEST(CallImage, ListLineColumns) {
    struct Case {
        CallRecord r;
        std::string line;
    };
    const Case cases[] = {
        {rec("DL1ABC", "JO31AB", {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, DateTime{2024, 5, 4, 12, 0, 0}),
         "DL1ABC       JO31AB   1   2   3   4   5   6   8   8   9  10 04.05.2024"},
        // Counters above 999 show 999; the seventh place repeats Bc3, so Bc6's
        // 1000 is never seen.
        {rec("OE1XYZ/P", "JN88", {1000, 999, 0, 0, 0, 0, 1000, 12, 0, 5000}),
         "OE1XYZ/P     "
         "JN88  "
         " 999 999   0   0   0   0  12  12   0 999"},
        // A call of 13 characters fills the call columns; the locator still
        // starts in column 14.
        {rec("DL/OE1ABC/QRP", "", {}, DateTime{1900, 1, 1, 0, 0, 0}),
         "DL/OE1ABC/QRP"
         "      "
         "   0   0   0   0   0   0   0   0   0   0 01.01.1900"},
        // Counters beyond what the packed record holds keep their value.
        {rec("DL9XX", "JO31", {70000, -1, 65535, 0, 0, 0, 0, 0, 0, 2}),
         "DL9XX        "
         "JO31  "
         " 999  -1 999   0   0   0   0   0   0   2"},
        {rec("DL/OE1ABCD/QRP", "JO31", {}, DateTime{1899, 12, 31, 0, 0, 0}),
         "DL/OE1ABCD/QR"
         "JO31  "
         "   0   0   0   0   0   0   0   0   0   0"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.r.Call);
        const auto img = QBDatImage::fromRecords({c.r});
        const std::string line = img.WriteInList(1);
        EXPECT_EQ(line, c.line);
        EXPECT_EQ(img.record(1).counters, c.r.counters);
        EXPECT_EQ(img.record(1).lastDate(), c.r.LastDate.value_or(DateTime{}));
        // What F8 and F9 take from a row.
        EXPECT_EQ(text::trim(line.substr(13, 6)), c.r.Locator);
    }
}

TEST(CallImage, SearchByCallLocatorAndBoth) {
    const auto img = QBDatImage::fromRecords({
        rec("DL1ABC", "JO31AB"),
        rec("DL1ABC/P", "JO41CD"),
        rec("OE1ABC", "JN88EE"),
        rec("ABC123", "JO31XX"),
        rec("G4ABC", ""),
        rec("OK1DEF", "JO70AA"),
        rec("S51ABC", "JN76"),
        rec("DL7QQ", "JO62QM"),
    });
    struct Case {
        std::string call, loc;
        std::vector<std::string> expect; // in call order
    };
    const Case cases[] = {
        {"ABC", "", {"ABC123", "DL1ABC", "DL1ABC/P", "G4ABC", "OE1ABC", "S51ABC"}},
        {"abc ", "", {"ABC123", "DL1ABC", "DL1ABC/P", "G4ABC", "OE1ABC", "S51ABC"}},
        {"DL1", "", {"DL1ABC", "DL1ABC/P"}},
        {"1ABC", "", {"DL1ABC", "DL1ABC/P", "OE1ABC", "S51ABC"}},
        {"/P", "", {"DL1ABC/P"}},
        {"", "JO31", {"ABC123", "DL1ABC"}},
        {"", "J", {"ABC123", "DL1ABC", "DL1ABC/P", "DL7QQ", "OE1ABC", "OK1DEF", "S51ABC"}},
        {"ABC", "JO", {"ABC123", "DL1ABC", "DL1ABC/P"}},
        {"ABC", "JN", {"OE1ABC", "S51ABC"}},
        {"A", "31", {"ABC123", "DL1ABC"}},
        {"DL", "JO31", {"DL1ABC"}},
        {"ZZZ", "", {}},
        {"ABC", "IO", {}},
        {"", "", {}},
        // The record numbers are no part of the text: "7" finds only calls
        // with a 7, although there are seven records and more.
        {"7", "", {"DL7QQ"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.call + "|" + c.loc);
        const auto r = img.search({c.call, c.loc, 100});
        EXPECT_FALSE(r.cancelled);
        EXPECT_EQ(r.found, c.expect.size());
        EXPECT_EQ(calls(img, r), c.expect);
    }
    // The list stops at maxRecords; the count does not.
    const auto few = img.search({"ABC", "", 2});
    EXPECT_EQ(few.found, 6u);
    EXPECT_EQ(calls(img, few), (std::vector<std::string>{"ABC123", "DL1ABC"}));
    const auto few2 = img.search({"ABC", "J", 2});
    EXPECT_EQ(few2.found, 5u);
    EXPECT_EQ(few2.records.size(), 2u);
}

TEST(CallImage, SearchAgreesWithAPlainScan) {
    // Random calls and locators over a small alphabet, so that every path of
    // the index (one, two, three and more characters, both parts) has hits.
    std::mt19937 rng(7);
    const std::string callChars = "ABDKL0127/-";
    const std::string locChars = "ABJO0123";
    std::vector<CallRecord> records;
    for (int i = 0; i < 3000; ++i) {
        std::string c, l;
        const int cl = 1 + static_cast<int>(rng() % 9), ll = static_cast<int>(rng() % 7);
        for (int k = 0; k < cl; ++k)
            c += callChars[rng() % callChars.size()];
        for (int k = 0; k < ll; ++k)
            l += locChars[rng() % locChars.size()];
        records.push_back(rec(c, l));
    }
    const auto img = QBDatImage::fromRecords(records);
    for (int q = 0; q < 400; ++q) {
        std::string cp, lp;
        const int cl = static_cast<int>(rng() % 5), ll = static_cast<int>(q % 3 ? 0 : rng() % 4);
        for (int k = 0; k < cl; ++k)
            cp += callChars[rng() % callChars.size()];
        for (int k = 0; k < ll; ++k)
            lp += locChars[rng() % locChars.size()];
        SCOPED_TRACE(cp + "|" + lp);
        std::vector<std::uint32_t> expect;
        if (!cp.empty() || !lp.empty())
            for (std::uint32_t n = 1; n <= img.size(); ++n) {
                const auto& e = img.record(n);
                if (e.Call().find(cp) != std::string_view::npos &&
                    e.Locator().find(lp) != std::string_view::npos)
                    expect.push_back(n);
            }
        const auto r = img.search({cp, lp, 50});
        ASSERT_EQ(r.found, expect.size());
        expect.resize(std::min<std::size_t>(expect.size(), 50));
        ASSERT_EQ(r.records, expect);
    }
}

TEST(CallImage, RecordsStandInCallOrder) {
    const auto img = QBDatImage::fromRecords(
        {rec("OE1ABC", ""), rec("dl1abc", "jo31ab"), rec("9A1A", ""), rec("DL1ABC", "JO41")});
    ASSERT_EQ(img.size(), 4u);
    EXPECT_EQ(img.record(1).Call(), "9A1A");
    EXPECT_EQ(img.record(2).Call(), "DL1ABC");
    EXPECT_EQ(img.record(2).Locator(), "JO31AB"); // upper-cased, first of the equal calls
    EXPECT_EQ(img.record(3).Locator(), "JO41");
    EXPECT_EQ(img.record(4).Call(), "OE1ABC");
}

TEST(CallImage, ANewerKeyStrokeCancelsTheSearch) {
    std::vector<CallRecord> records;
    for (int i = 0; i < 50000; ++i)
        records.push_back(rec("DL" + std::to_string(i), "JO31"));
    const auto img = QBDatImage::fromRecords(records);
    SearchGeneration gen;
    const CancelToken token(gen, gen.next());
    // Still current: the search runs to the end.
    auto full = img.search({"D", "J", 10}, token);
    EXPECT_FALSE(full.cancelled);
    EXPECT_EQ(full.found, 50000u);
    // The next key stroke: the same search stops at its next check and says so.
    gen.next();
    auto stopped = img.search({"D", "J", 10}, token);
    EXPECT_TRUE(stopped.cancelled);
    EXPECT_LT(stopped.found, 50000u);
    auto stoppedScan = img.search({"9", "", 10}, token);
    EXPECT_TRUE(stoppedScan.cancelled || stoppedScan.records.size() == 10u);
    // A token of the new generation runs again.
    auto again = img.search({"L1", "J", 10}, CancelToken(gen, gen.current()));
    EXPECT_FALSE(again.cancelled);
    EXPECT_EQ(again.found, 11111u); // DL1, DL10.., DL100.., DL1000.., DL10000..
}

TEST(CallImage, EmptyImageFindsNothing) {
    const QBDatImage img;
    const auto r = img.search({"DL", "JO", 10});
    EXPECT_EQ(r.found, 0u);
    EXPECT_TRUE(r.records.empty());
    EXPECT_EQ(img.search({"D", "", 10}).found, 0u);
}
