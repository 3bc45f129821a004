#include <gtest/gtest.h>

#include <map>

#include "core/app/app_paths.h"
#include "support/temp_dir.h"

using namespace orv;

TEST(AppPaths, DataFolderFollowsHomeThenEnvironment) {
    struct Case {
        std::optional<std::string> home;
        std::map<std::string, std::string> env;
        std::string expected;
    } cases[] = {
        {"/h", {{"ORVANTA_HOME", "/o"}, {"XDG_DATA_HOME", "/x"}}, "/h"},
        {std::nullopt, {{"ORVANTA_HOME", "/o"}, {"XDG_DATA_HOME", "/x"}}, "/o"},
        {std::nullopt, {{"XDG_DATA_HOME", "/x"}, {"HOME", "/u"}}, "/x/OrvantaContest"},
        {std::nullopt, {{"HOME", "/u"}}, "/u/.local/share/OrvantaContest"},
    };
    for (const auto& c : cases) {
        auto env = [&](const char* n) -> std::optional<std::string> {
            auto it = c.env.find(n);
            return it == c.env.end() ? std::nullopt : std::optional<std::string>(it->second);
        };
        EXPECT_EQ(resolveDataFolder(c.home, env).string(), c.expected);
    }
}

TEST(AppPaths, PrepareCreatesFoldersAndRestoresOrgCopiesCaseBlind) {
    test::TempDir dir;
    const auto home = dir / "home";
    test::writeFile(home / "orvantacontest.ini_ORG", "[QB]\nOPCall=DL1ABC\n");
    test::writeFile(home / "QBDAT.SQLITE_org", "db");
    const AppPaths p = prepareDataFolder(home);
    EXPECT_EQ(test::readFile(p.iniPath()), "[QB]\nOPCall=DL1ABC\n");
    EXPECT_EQ(test::readFile(p.callDbPath()), "db");
    EXPECT_TRUE(std::filesystem::is_directory(p.logsPath()));
    EXPECT_TRUE(std::filesystem::is_directory(p.languagePath()));

    // An existing file is never overwritten by its copy.
    test::writeFile(p.iniPath(), "[QB]\n");
    prepareDataFolder(home);
    EXPECT_EQ(test::readFile(p.iniPath()), "[QB]\n");
}
