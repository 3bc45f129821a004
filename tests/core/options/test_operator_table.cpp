#include <gtest/gtest.h>

#include <algorithm>

#include "core/keying/tone_file.h"
#include "core/options/operator_table.h"
#include "core/options/option_rules.h"
#include "core/options/staged_settings.h"
#include "support/temp_dir.h"

using namespace orv;
using namespace orv::options;

namespace {

const DateTime kNow{2026, 5, 2, 13, 4, 59};

std::vector<std::string> filesIn(const std::filesystem::path& dir) {
    std::vector<std::string> out;
    std::error_code ec;
    for (const auto& e : std::filesystem::directory_iterator(dir, ec))
        out.push_back(e.path().filename().string());
    std::sort(out.begin(), out.end());
    return out;
}

using Files = std::vector<std::string>;

} // namespace

TEST(OperatorTable, RowsAddMoveAndRefuse) {
    test::TempDir dir;
    OperatorTable t({{"DL1ABC", "dl1abc.wav"}}, dir.path());
    EXPECT_EQ(t.add(" dk2xy ").value(), 1);
    EXPECT_EQ(t.add("DL1ABC").failure().text, 252);
    EXPECT_EQ(t.add("  ").failure().text, 53);
    EXPECT_TRUE(t.move(1, -1));
    EXPECT_FALSE(t.move(0, -1));
    EXPECT_FALSE(t.move(1, 1));
    EXPECT_EQ(t.rows()[0].call, "DK2XY");
    t.setVoiceFile(0, " cq.wav ");
    EXPECT_EQ(t.rows()[0].voiceFile, "cq.wav");
    EXPECT_EQ(t.setBeaconText(0, "{}", 25, kNow).failure().text, 308);
    EXPECT_EQ(t.setBeaconText(0, "cq", 0, kNow).failure().text, row::kChooseSpeed);
    EXPECT_TRUE(filesIn(dir.path()).empty());
}

// A text gets its file at once; the file it replaces stays until the table
// is saved, and a cancelled edit takes away only what it made.
TEST(OperatorTable, ToneFilesMadeReplacedAndDeleted) {
    test::TempDir dir;
    test::writeFile(dir / "010126000000.wav", "old");
    const std::vector<OpCall> start{{"DL1ABC", "", "VVV", "010126000000.wav"}, {"DK2XY"}};
    {
        OperatorTable t(start, dir.path());
        ASSERT_TRUE(t.setBeaconText(1, "cq de dk2xy", 25, kNow));
        EXPECT_EQ(t.rows()[1].beaconText, "CQ DE DK2XY");
        EXPECT_EQ(t.rows()[1].toneFile, "020526130459.wav");
        const auto bytes = keying::toneFileBytes(25, "CQ DE DK2XY", 1, 6);
        EXPECT_EQ(test::readFile(dir / "020526130459.wav"),
                  std::string(bytes.begin(), bytes.end()));
        // The same second again: the next free name.
        ASSERT_TRUE(t.setBeaconText(0, "test", 25, kNow));
        EXPECT_EQ(t.rows()[0].toneFile, "020526130500.wav");
        EXPECT_EQ(filesIn(dir.path()),
                  (Files{"010126000000.wav", "020526130459.wav", "020526130500.wav"}));
        t.rollback();
        EXPECT_EQ(filesIn(dir.path()), (Files{"010126000000.wav"}));
    }
    OperatorTable t(start, dir.path());
    ASSERT_TRUE(t.setBeaconText(0, "test", 25, kNow));
    ASSERT_TRUE(t.setBeaconText(0, "test2", 25, kNow)); // replaces a file of its own at once
    t.remove(1);
    EXPECT_EQ(filesIn(dir.path()), (Files{"010126000000.wav", "020526130500.wav"}));
    t.commit();
    EXPECT_EQ(filesIn(dir.path()), (Files{"020526130500.wav"}));
    t.clearBeaconText(0);
    t.commit();
    EXPECT_TRUE(filesIn(dir.path()).empty());
    EXPECT_EQ(t.rows(), (std::vector<OpCall>{{"DL1ABC"}}));
}

TEST(OperatorTable, NewSpeedRendersEachTextOnce) {
    test::TempDir dir;
    OperatorTable t({{"A1"}, {"B2"}, {"C3"}}, dir.path());
    ASSERT_TRUE(t.setBeaconText(0, "aaa", 20, kNow));
    ASSERT_TRUE(t.setBeaconText(2, "ccc", 20, kNow));
    t.commit();
    std::vector<std::pair<int, int>> steps;
    t.rebuildAll(30, kNow, [&](int done, int total) { steps.emplace_back(done, total); });
    EXPECT_EQ(steps, (std::vector<std::pair<int, int>>{{1, 2}, {2, 2}}));
    t.commit();
    const Files files = filesIn(dir.path());
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files, (Files{t.rows()[0].toneFile, t.rows()[2].toneFile}));
    const auto bytes = keying::toneFileBytes(30, "CCC", 1, 6);
    EXPECT_EQ(test::readFile(dir / t.rows()[2].toneFile), std::string(bytes.begin(), bytes.end()));
    EXPECT_TRUE(t.rows()[1].toneFile.empty());
}

// A failed save keeps the settings file as it was; a good one replaces it.
TEST(StagedSettings, CommitReplacesTheFileAndAnAbandonedCopyGoes) {
    test::TempDir dir;
    const auto ini = dir / "OrvantaContest.INI";
    test::writeFile(ini, "[QB]\nMyCall=DL1ABC\n");
    {
        StagedSettings staged(ini);
        staged.settings().set(keys::CWWPM, 30);
    }
    EXPECT_EQ(test::readFile(ini), "[QB]\nMyCall=DL1ABC\n");
    EXPECT_EQ(filesIn(dir.path()), (Files{"OrvantaContest.INI"}));
    StagedSettings staged(ini);
    staged.settings().set(keys::CWWPM, 30);
    staged.commit();
    EXPECT_EQ(Settings(IniFile(ini)).get(keys::CWWPM), 30);
    EXPECT_EQ(Settings(IniFile(ini)).get(keys::MyCall), "DL1ABC");
    EXPECT_EQ(filesIn(dir.path()), (Files{"OrvantaContest.INI"}));
}
