#include <gtest/gtest.h>

#include <filesystem>

#include "support/run_tool.h"
#include "support/temp_dir.h"

using namespace orv;

// `backup LOG FOLDER` from the command line: a whole copy under the log's
// file name, and its refusals with the program's texts.
TEST(BackupTool, CopiesAndRefuses) {
    test::TempDir home;
    auto tool = [&](std::vector<std::string> args) { return test::runToolAt(home.path(), args); };
    ASSERT_EQ(test::newLogAt(home.path(), "Field"), 0);
    ASSERT_EQ(tool({"add", "Field", "--band", "144", "--call", "DL1XYZ", "--rst", "59", "--rcvd",
                    "59001", "--locator", "JN88EF"})
                  .status,
              0);
    const auto stick = home / "Stick";
    std::filesystem::create_directories(stick);

    struct Case {
        std::vector<std::string> args;
        int status;
        std::string err;
    };
    const std::vector<Case> cases = {
        {{"backup", "Field", stick.string()}, 0, ""},
        {{"backup", "Field", stick.string()}, 0, ""},
        {{"backup", "Field", (home / "Gone").string()},
         2,
         "Kein gültiger Pfad zum Sichern! Sichern wird Deaktiviert!\n" + (home / "Gone").string() +
             "\n"},
        {{"backup", "Nothing", stick.string()},
         2,
         "Kein gültiges Log!\n" + (home / "Logs" / "Nothing.sqlite").string() + "\n"},
        {{"backup", "Field"}, 2, "Angabe fehlt: FOLDER (siehe --help)\n"},
    };
    for (const Case& c : cases) {
        const auto r = tool(c.args);
        EXPECT_EQ(r.status, c.status) << c.args.back() << r.err;
        EXPECT_EQ(r.err, c.err);
    }
    EXPECT_TRUE(std::filesystem::exists(stick / "Field.sqlite"));
    EXPECT_FALSE(std::filesystem::exists(stick / "Field.sqlite.ALT"));
    // The copy is a log the tool opens and lists as the original.
    test::TempDir other;
    std::filesystem::create_directories(other / "Logs");
    std::filesystem::copy_file(stick / "Field.sqlite", other / "Logs" / "Field.sqlite");
    const auto original = tool({"list", "Field", "--band", "144"});
    const auto copied =
        test::runTool({"--home", other.path().string(), "list", "Field", "--band", "144"});
    EXPECT_EQ(copied.status, 0) << copied.err;
    EXPECT_EQ(copied.out, original.out);
    EXPECT_NE(original.out.find("DL1XYZ"), std::string::npos);
}
