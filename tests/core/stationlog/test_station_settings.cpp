#include <gtest/gtest.h>

#include "core/settings/settings.h"
#include "core/stationlog/station_settings.h"
#include "support/temp_dir.h"

using namespace orv;

TEST(StationSettings, ListsAreNumberedKeysReadBackInOrder) {
    test::TempDir dir;
    const auto ini = dir / "OrvantaContest.INI";
    test::writeFile(ini, "[QB]\nMyCall=DL0XYZ\n[QJDatenQRG]\n01=old one\n00=old zero\n");
    Settings s{IniFile(ini)};
    EXPECT_EQ(readStationList(s, section::QJDatenQRG),
              (std::vector<std::string>{"old zero", "old one"}));

    std::vector<std::string> many;
    for (int i = 0; i < 12; ++i)
        many.push_back("144." + std::to_string(300 + i));
    many.insert(many.begin() + 3, "  ");
    StationLists lists{many, {"100", " 750 "}, {"Yagi"}, {"jo62qm"}};
    writeStationLists(s, lists);

    const std::string text = test::readFile(ini);
    EXPECT_NE(text.find("[QJDATENQRG]\n00=144.300\n01=144.301\n02=144.302\n03=144.303\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("11=144.311\n"), std::string::npos);
    EXPECT_EQ(text.find("old"), std::string::npos);
    EXPECT_NE(text.find("[QB]\nMyCall=DL0XYZ"), std::string::npos);

    const StationLists back = readStationLists(s);
    many.erase(many.begin() + 3);
    EXPECT_EQ(back.qrg, many);
    EXPECT_EQ(back.power, (std::vector<std::string>{"100", "750"}));
    EXPECT_EQ(back.antenna, (std::vector<std::string>{"Yagi"}));
    EXPECT_EQ(back.myLocator, (std::vector<std::string>{"jo62qm"}));
}

TEST(StationSettings, WindowStateInQJDaten) {
    test::TempDir dir;
    Settings s{IniFile(dir / "OrvantaContest.INI")};
    EXPECT_EQ(readStationWindowState(s).width, 0);
    StationWindowState w;
    w.left = 10;
    w.top = 20;
    w.width = 800;
    w.height = 600;
    w.qsl = "Y";
    w.power = "50";
    writeStationWindowClose(s, w);
    s.set(keys::QJEingabePos, 1);
    s.set(keys::QJLogFile, "Home.sqlite");
    const auto r = readStationWindowState(s);
    EXPECT_EQ(r.left, 10);
    EXPECT_EQ(r.top, 20);
    EXPECT_EQ(r.width, 800);
    EXPECT_EQ(r.height, 600);
    EXPECT_EQ(r.qsl, "Y");
    EXPECT_EQ(r.power, "50");
    EXPECT_TRUE(r.entryBelow);
    EXPECT_EQ(r.logFile, "Home.sqlite");
}
