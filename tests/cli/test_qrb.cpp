#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/run_tool.h"
#include "support/temp_dir.h"

using namespace orv;

TEST(ToolQrb, PrintsKmBearingAndBearingWithOneDecimal) {
    test::TempDir home;
    struct Case {
        const char* own;
        const char* other;
        const char* out;
    };
    const std::vector<Case> cases = {
        {"JN78DF", "JN88EF", "155 89 89.2\n"},    {"JN78LL", "JO62QM", "463 347 346.6\n"},
        {"JN78DF", "IO91VL", "1098 295 294.6\n"}, {"jn78df", "jn88ef", "155 89 89.2\n"},
        {"JN78", "JN78LL", "1 0 0.0\n"},          {"JN78DF", "JO74CK", "690 360 359.6\n"},
        {"JN78DF", "IN33LO", "2163 266 266.5\n"},
    };
    for (const auto& c : cases) {
        const auto r = test::runTool({"--home", home.path().string(), "qrb", c.own, c.other});
        SCOPED_TRACE(std::string(c.own) + " " + c.other);
        EXPECT_EQ(r.status, 0) << r.err;
        EXPECT_EQ(r.out, c.out);
        EXPECT_EQ(r.err, "");
    }
}

TEST(ToolQrb, RefusesIllegalLocatorsWithTheProgramsText) {
    test::TempDir home;
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"JN78DZ", "JN88EF"},  {"JN78DF", "JS88EF"}, {"JN78D", "JN88EF"},
        {"JN78DF", "JN88EFA"}, {"", "JN88EF"},
    };
    for (const auto& [own, other] : cases) {
        const auto r = test::runTool({"--home", home.path().string(), "qrb", own, other});
        SCOPED_TRACE(std::string(own) + " " + other);
        EXPECT_EQ(r.status, 2);
        EXPECT_EQ(r.out, "");
        EXPECT_NE(r.err.find("Ungültiger Locator"), std::string::npos) << r.err;
    }
    const auto missing = test::runTool({"--home", home.path().string(), "qrb", "JN78DF"});
    EXPECT_EQ(missing.status, 2);
    EXPECT_EQ(missing.out, "");
}

TEST(ToolQrb, AntipodalSquaresAreAFailureNotAResult) {
    test::TempDir home;
    const auto r = test::runTool({"--home", home.path().string(), "qrb", "JN78DF", "AE71DS"});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_NE(r.err.find("Division durch Null"), std::string::npos) << r.err;
}
