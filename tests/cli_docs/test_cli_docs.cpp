#include <gtest/gtest.h>

#include <sstream>

#include "cli/docs/man_page.h"
#include "cli/docs/roff.h"
#include "cli/help.h"

using namespace orv::cli;

TEST(ToolDocs, RoffEscapesWhatRoffWouldReadOtherwise) {
    const struct {
        const char* in;
        const char* out;
    } cases[] = {
        {"a-b", "a\\-b"},
        {"C:\\logs", "C:\\elogs"},
        {".hidden line", "\\&.hidden line"},
        {"'quoted' line", "\\&'quoted' line"},
        {"mid. 'x'", "mid. 'x'"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(roff::escape(c.in), c.out) << c.in;
}

TEST(ToolDocs, UsageShowsOptionsBoldAndPlaceholdersItalic) {
    const struct {
        const char* in;
        const char* out;
    } cases[] = {
        {"NAME --band BAND", "\\fINAME\\fR \\fB\\-\\-band\\fR \\fIBAND\\fR"},
        {"[--rows]", "[\\fB\\-\\-rows\\fR]"},
        {"[--by call|locator]", "[\\fB\\-\\-by\\fR call|locator]"},
        {"[--qsl Yes|No]", "[\\fB\\-\\-qsl\\fR Yes|No]"},
        {"LOG -o FILE", "\\fILOG\\fR \\fB\\-o\\fR \\fIFILE\\fR"},
        {"[--weights w0,...,w9]", "[\\fB\\-\\-weights\\fR w0,...,w9]"},
        {"[--date YYYY-MM-DD]", "[\\fB\\-\\-date\\fR \\fIYYYY\\-MM\\-DD\\fR]"},
        {"", ""},
        {"... FILE", "\\&... \\fIFILE\\fR"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(roff::usage(c.in), c.out) << c.in;
}

TEST(ToolDocs, OptionsOfAUsageInOrderAndOnce) {
    Command c;
    c.usage = "LOG --band BAND -o FILE [--sort COL [--descending]] [--qsl Yes|No] --band 2 -5";
    EXPECT_EQ(usageOptions(c),
              (std::vector<std::string>{"--band", "-o", "--sort", "--descending", "--qsl", "-5"}));
    c.usage = "OWN OTHER";
    EXPECT_TRUE(usageOptions(c).empty());
}

TEST(ToolDocs, ManualPageHasEveryCommandWithItsUsage) {
    std::ostringstream page;
    writeManPage(page);
    ASSERT_FALSE(commands().empty());
    for (const auto& [name, c] : commands()) {
        std::string entry = ".TP\n\\fB" + roff::escape(name) + "\\fR";
        if (!c.usage.empty())
            entry += " " + roff::usage(c.usage);
        EXPECT_NE(page.str().find(entry + "\n" + roff::escape(c.summary) + "\n"), std::string::npos)
            << name;
    }
}
