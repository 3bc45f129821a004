#include <gtest/gtest.h>

#include "core/util/text.h"

using namespace orv;

TEST(Text, Cp1252RoundTripsUmlautsAndEuro) {
    const std::string cp = "Gr\xfc\xdf\x65 \x80 \xe4\xf6\xfc\xc4\xd6\xdc";
    const std::string utf = text::cp1252ToUtf8(cp);
    EXPECT_EQ(utf, "Grüße € äöüÄÖÜ");
    EXPECT_EQ(text::utf8ToCp1252(utf), cp);
}

TEST(Text, CharactersOutsideTheCodePageBecomeQuestionMarks) {
    EXPECT_EQ(text::utf8ToCp1252("SP9 Łódź ✓"), "SP9 ?\xf3" "d? ?");
}

TEST(Text, DecodeLegacyKeepsValidUtf8AndConvertsTheRest) {
    struct Case {
        std::string in, out;
    } cases[] = {
        {"Länder", "Länder"},
        {"L\xe4nder", "Länder"},
        {"\xEF\xBB\xBF" "abc", "abc"},
        {"\xC0\xAF", "\xC3\x80\xC2\xAF"}, // overlong "/" is not UTF-8
        {"\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xE2\x82\xAC"}, // a surrogate is not UTF-8 either
    };
    for (const auto& c : cases)
        EXPECT_EQ(text::decodeLegacy(c.in), c.out) << c.in;
}

TEST(Text, CaseAndTrimming) {
    EXPECT_EQ(text::upper("dl1abc/p äöü"), "DL1ABC/P ÄÖÜ");
    EXPECT_EQ(text::lower("ÄB"), "äb");
    EXPECT_TRUE(text::iequals("Mode", "MODE"));
    EXPECT_TRUE(text::iequals("länder", "LÄNDER"));
    EXPECT_FALSE(text::iequals("Mode", "Modes"));
    EXPECT_EQ(text::trim(" \t x y \r\n"), "x y");
    EXPECT_EQ(text::length("Grüße"), 5u);
    EXPECT_EQ(text::left("Grüße", 3), "Grü");
    EXPECT_EQ(text::padRight("ä", 3), "ä  ");
}

TEST(Text, LeadingIntegerReadsLikeVal) {
    struct Case {
        const char* in;
        long long v;
        bool whole;
    } cases[] = {{"59", 59, true}, {" 12 =x", 12, false}, {"-3", -3, true},
                 {"abc", 0, false}, {"", 0, false},      {"7a", 7, false}};
    for (const auto& c : cases) {
        EXPECT_EQ(text::leadingInt(c.in), c.v) << c.in;
        EXPECT_EQ(text::isInteger(c.in), c.whole) << c.in;
        EXPECT_EQ(text::wholeNumber(c.in).has_value(), c.whole) << c.in;
    }
    // Blanks around a number are dropped; a number past 64 bits is none.
    EXPECT_EQ(text::wholeNumber(" +42 "), 42);
    EXPECT_EQ(text::wholeNumber("99999999999999999999"), std::nullopt);
}
