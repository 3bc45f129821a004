#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/logstore/contest_defs.h"
#include "core/logstore/contest_log.h"
#include "core/settings/ini_file.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

using W = std::array<std::int16_t, kBandCount>;

} // namespace

TEST(ContestDefs, ConELinesParseTenWeightsAndTheRestAsName) {
    struct Case {
        std::string line;
        std::optional<ContestDef> want;
    };
    const std::vector<Case> cases{
        {"1,1,3,5,7,9,11,13,15,17,IARU Region 1 VHF",
         ContestDef{W{1, 1, 3, 5, 7, 9, 11, 13, 15, 17}, "IARU Region 1 VHF"}},
        {"0,2,0,0,0,0,0,0,0,0,Nur 2 m", ContestDef{W{0, 2}, "Nur 2 m"}},
        {"1,1,1,1,1,1,1,1,1,1,Fieldday, Teil 2, Abend",
         ContestDef{W{1, 1, 1, 1, 1, 1, 1, 1, 1, 1}, "Fieldday, Teil 2, Abend"}},
        {" 2 ,3,4,5,6,7,8,9,10,-1, Blank vorn",
         ContestDef{W{2, 3, 4, 5, 6, 7, 8, 9, 10, -1}, " Blank vorn"}},
        {"1,1,1,1,1,1,1,1,1,1,", ContestDef{W{1, 1, 1, 1, 1, 1, 1, 1, 1, 1}, ""}},
        {"32767,1,1,1,1,1,1,1,1,1,Max", ContestDef{W{32767, 1, 1, 1, 1, 1, 1, 1, 1, 1}, "Max"}},
        {"1,1,1,1,1,1,1,1,1,Nine weights only", std::nullopt},
        {"1,1,1,1,x,1,1,1,1,1,Letter", std::nullopt},
        {"32768,1,1,1,1,1,1,1,1,1,Too big", std::nullopt},
        {"1,,1,1,1,1,1,1,1,1,Empty weight", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(parseConELine(c.line), c.want) << c.line;
        if (c.want) {
            EXPECT_EQ(parseConELine(formatConELine(*c.want)), c.want) << c.line;
        }
    }
}

TEST(ContestDefs, ContesDateLoadAppendsInOrderAndSkipsBadLines) {
    test::TempDir dir;
    IniFile ini(dir / "OrvantaContest.INI");
    std::vector<ContestDef> defs{ContestDef{W{4}, "earlier"}};
    ContesDateLoad(ini, defs); // no file, no section
    ASSERT_EQ(defs.size(), 1u);

    ini.create();
    ini.writeSection("ConE", {"1,1,1,1,1,1,1,1,1,1,A", "broken", "2,2,2,2,2,2,2,2,2,2,B, C"});
    std::vector<std::string> bad;
    ContesDateLoad(ini, defs, &bad);
    ASSERT_EQ(defs.size(), 3u);
    EXPECT_EQ(defs[0].name, "earlier");
    EXPECT_EQ(defs[1].name, "A");
    EXPECT_EQ(defs[2].name, "B, C");
    EXPECT_EQ(defs[2].weights[9], 2);
    EXPECT_EQ(bad, std::vector<std::string>{"broken"});
}

TEST(ContestDefs, AConDatWeightsAreAtLeastOneOnlyThere) {
    test::TempDir dir;
    IniFile ini(dir / "OrvantaContest.INI");
    std::vector<ContestDef> defs;
    // Without AConDat every weight is 1 and the name empty.
    EXPECT_EQ(ConDaLoad(ini, defs), ContestData{});

    ini.create();
    ini.writeSection("ConE", {"0,0,3,3,3,3,3,3,3,3,Zero 50"});
    for (int i = 0; i < kBandCount; ++i)
        ini.write("AConDat", "C" + std::to_string(i), std::to_string(i - 1));
    ini.write("AConDat", "CName", "Zero 50");
    const ContestData d = ConDaLoad(ini, defs);
    // -1 and 0 become 1; every other weight is kept.
    EXPECT_EQ(d.Zaehl, (std::array<int, kBandCount>{1, 1, 1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(d.ContestName, "Zero 50");
    ASSERT_EQ(defs.size(), 1u);
    // The 0 of the ConE line stays 0 until it has passed through AConDat.
    EXPECT_EQ(defs[0].weights[0], 0);
    ContestData chosen = d;
    ASSERT_TRUE(chooseContest(defs, "Zero 50", chosen));
    EXPECT_EQ(chosen.Zaehl[0], 0);

    SaveAConDat(ini, chosen);
    std::vector<ContestDef> again;
    EXPECT_EQ(ConDaLoad(ini, again).Zaehl[0], 1);
    EXPECT_EQ(ini.getStr("AConDat", "C5"), "3");
}

TEST(ContestDefs, ChoosingANameWithoutMatchKeepsTheWeights) {
    const std::vector<ContestDef> defs{ContestDef{W{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, "Alpha"},
                                       ContestDef{W{5, 5, 5, 5, 5, 5, 5, 5, 5, 5}, "Beta"}};
    ContestData cur;
    cur.Zaehl = {9, 9, 9, 9, 9, 9, 9, 9, 9, 9};
    cur.ContestName = "old";
    EXPECT_FALSE(chooseContest(defs, "Gamma", cur));
    EXPECT_FALSE(chooseContest(defs, "alpha", cur)) << "the name must match exactly";
    EXPECT_EQ(cur.Zaehl[0], 9);
    EXPECT_EQ(cur.ContestName, "old");
    EXPECT_TRUE(chooseContest(defs, "Beta", cur));
    EXPECT_EQ(cur.Zaehl, (std::array<int, kBandCount>{5, 5, 5, 5, 5, 5, 5, 5, 5, 5}));
    EXPECT_EQ(cur.ContestName, "Beta");
}

TEST(ContestDefs, ConDatLoadDBReadsNullWeightsAsOne) {
    MyDataRow row;
    row.contName = "Logged";
    row.zaehl[0] = 4;
    row.zaehl[9] = 0;
    const ContestData d = ConDatLoadDB(row);
    EXPECT_EQ(d.ContestName, "Logged");
    EXPECT_EQ(d.Zaehl, (std::array<int, kBandCount>{4, 1, 1, 1, 1, 1, 1, 1, 1, 0}));
}
