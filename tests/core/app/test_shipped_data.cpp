#include <gtest/gtest.h>

#include "core/app/app_paths.h"
#include "core/app/shipped_data.h"
#include "core/i18n/bundled_languages.h"
#include "support/temp_dir.h"

using namespace orv;
namespace fs = std::filesystem;

TEST(ShippedData, InstalledCopyFirstThenSourceTreeOnlyInsideTheBuildFolder) {
    test::TempDir dir;
    const fs::path root = dir.path();
    fs::create_directories(root / "usr/share/orvanta-contest");
    fs::create_directories(root / "usr/bin");
    fs::create_directories(root / "src/data");
    fs::create_directories(root / "build/src/ui");
    fs::create_directories(root / "build/share/orvanta-contest");
    fs::create_directories(root / "build2/src/ui");
    fs::create_directories(root / "opt/bin");

    const ShippedDataPlaces places{"../share/orvanta-contest", root / "build", root / "src/data"};
    struct Case {
        const char* program;
        std::optional<fs::path> expected;
    } cases[] = {
        {"usr/bin", root / "usr/share/orvanta-contest"},
        {"build/src/ui", root / "src/data"},
        {"build/src/ui/../ui", root / "src/data"},
        // An install into a folder of the build tree is still an install.
        {"build/bin", root / "build/share/orvanta-contest"},
        // A folder that merely starts with the build folder's name.
        {"build2/src/ui", std::nullopt},
        {"opt/bin", std::nullopt},
    };
    for (const auto& c : cases)
        EXPECT_EQ(findShippedData(root / c.program, places), c.expected) << c.program;

    // Without a build folder, the source tree is never used.
    EXPECT_EQ(
        findShippedData(root / "build/src/ui", {"../share/orvanta-contest", {}, root / "src/data"}),
        std::nullopt);
    // A source tree that is gone is not offered.
    EXPECT_EQ(findShippedData(root / "build/src/ui",
                              {"../share/orvanta-contest", root / "build", root / "gone"}),
              std::nullopt);
}

TEST(ShippedData, TheBuiltProgramFindsTheSourceTreesData) {
    // The test programs run from the build folder, as the programs do there.
    const auto found = shippedDataFolder();
    ASSERT_TRUE(found);
    EXPECT_TRUE(fs::exists(*found / "Language" / kEnglishFileName)) << found->string();
}

TEST(ShippedData, LanguageFilesGoIntoTheDataFolderWhereMissing) {
    test::TempDir dir;
    const fs::path shipped = dir / "shipped";
    test::writeFile(shipped / "Language/Extra.lng", "extra shipped");
    test::writeFile(shipped / "Language/English.lng", "english shipped");
    test::writeFile(shipped / "Language/readme.txt", "not a language");
    const fs::path home = dir / "home";
    // The user's own English, under another case, stays.
    test::writeFile(home / "Language/english.LNG", "english of the user");

    const AppPaths p = prepareDataFolder(home, shipped);
    EXPECT_EQ(test::readFile(p.languagePath() / "Extra.lng"), "extra shipped");
    EXPECT_EQ(test::readFile(p.languagePath() / "english.LNG"), "english of the user");
    EXPECT_FALSE(fs::exists(p.languagePath() / "readme.txt"));

    // A changed shipped file is not copied over the one in the data folder.
    test::writeFile(shipped / "Language/Extra.lng", "extra, newer");
    prepareDataFolder(home, shipped);
    EXPECT_EQ(test::readFile(p.languagePath() / "Extra.lng"), "extra shipped");

    // Without shipped data, English still comes from the copy built in.
    const fs::path bare = dir / "bare";
    prepareDataFolder(bare, std::nullopt);
    EXPECT_EQ(test::readFile(bare / "Language" / kEnglishFileName),
              std::string(englishLanguageFile()));
}
