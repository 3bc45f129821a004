#include <gtest/gtest.h>

#include "support/run_tool.h"
#include "support/temp_dir.h"

using namespace orv;

TEST(ToolBasics, HelpVersionAndUnknownCommand) {
    auto help = test::runTool({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("--home DIR"), std::string::npos);
    auto version = test::runTool({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out.rfind("orvanta-tool ", 0), 0u);
    auto unknown = test::runTool({"no-such-command"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_FALSE(unknown.err.empty());
}
