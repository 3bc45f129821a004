#include <gtest/gtest.h>

#include <sstream>

#include "core/stationlog/adif_export.h"
#include "core/stationlog/station_log.h"
#include "core/submission/export_file.h"
#include "core/util/file_io.h"
#include "support/temp_dir.h"
#include "support/text_output.h"

using namespace orv;

namespace {

StationQso only(const char* call, int day) {
    StationQso q;
    q.dateTime = DateTime{2026, 5, day, 8, 7, 0};
    q.call = call;
    return q;
}

} // namespace

TEST(StationAdif, RecordTagOrderCrossedReportsAndSkippedFields) {
    EXPECT_EQ(stationAdifRecord(only("DL1ABC", 2)),
              "<QSO_DATE:8>20260502<TIME_ON:4>0807<CALL:6>DL1ABC<EOR>");

    StationQso q = only("OE3XYZ", 9);
    q.rstTx = "57";
    q.rstRx = "599";
    q.locator = "JN88AA";
    q.qrgTx = "144.300";
    q.qrgRx = "144.310";
    q.txMod = "SSB";
    q.rxMod = "CW";
    q.prop = "ES";
    q.qsl = "Yes";
    q.qslManager = "DL9QSL";
    q.name = "Jörg";
    q.myCall = "DL0XYZ";
    q.myLocator = "JO62QM";
    q.power = "100";
    q.antenne = "Yagi";
    q.note = "Notiz";
    q.qslRx = "N";
    EXPECT_EQ(stationAdifRecord(q),
              "<QSO_DATE:8>20260509<TIME_ON:4>0807<CALL:6>OE3XYZ<RST_RCVD:2>57<RST_SENT:3>599"
              "<GRIDSQUARE:6>JN88AA<FREQ:7>144.300<FREQ_RX:7>144.310<MODE:3>SSB"
              "<PROP_MODE:2>ES<QSL_SENT:1>Y<QSL_VIA:6>DL9QSL<NAME:4>J\xF6rg"
              "<STATION_CALLSIGN:6>DL0XYZ<OPERATOR:6>DL0XYZ<MY_GRIDSQUARE:6>JO62QM"
              "<OWN_GRIDSQ:6>JO62QM<TX_PWR:3>100<MY_RIG:4>Yagi<NOTES:5>Notiz<EOR>");
}

TEST(StationAdif, RangesAndTheirRefusals) {
    test::TempDir dir;
    auto log = StationLog::create(dir / "L.sqlite");
    for (int d = 1; d <= 5; ++d)
        log.add(only(("DL" + std::to_string(d) + "AA").c_str(), d));

    struct Case {
        const char *from, *to;
        int text;
        const char* field;
        std::size_t records;
    };
    const std::vector<Case> cases{
        {"3", "3", 0, "", 1},         {" 1", "5 ", 0, "", 5},       {"2", "4", 0, "", 3},
        {"4", "2", 391, "Text13", 0}, {"0", "2", 391, "Text13", 0}, {"2", "6", 391, "Text13", 0},
        {"x", "2", 225, "Text13", 0}, {"1", "", 225, "Text14", 0},  {"1.5", "2", 225, "Text13", 0},
    };
    for (const auto& c : cases) {
        const auto r = checkExportRange(log, c.from, c.to);
        if (c.text) {
            ASSERT_FALSE(r.ok()) << c.from << ".." << c.to;
            EXPECT_EQ(r.failure().text, c.text);
            EXPECT_EQ(r.failure().field, c.field);
            continue;
        }
        ASSERT_TRUE(r.ok()) << c.from << ".." << c.to;
        std::ostringstream out;
        EXPECT_EQ(writeStationAdif(out, log, r.value()), static_cast<std::int64_t>(c.records));
        const auto l = test::splitLines(out.str(), "\r\n");
        EXPECT_TRUE(out.str().ends_with("\r\n"));
        ASSERT_EQ(l.size(), 3 + c.records);
        EXPECT_EQ(l[0], "; This file was created by OrvantaLog v" + programVersionText());
        EXPECT_EQ(l[1], "<adif_ver:5>2.2.3");
        EXPECT_EQ(l[2], "<EOH>");
        EXPECT_NE(l[3].find("<CALL:5>DL" + std::string(c.from).substr(c.from[0] == ' ') + "AA"),
                  std::string::npos);
    }
}

// ".adi" in any case is kept, anything else gets ".ADI"; an existing file is
// replaced, and a folder that cannot be written leaves the old file alone.
TEST(StationAdif, FileNameEndingAndAtomicReplace) {
    test::TempDir dir;
    auto log = StationLog::create(dir / "L.sqlite");
    log.add(only("DL1AA", 1));
    EXPECT_EQ(exportStationAdif(log, dir / "a.adi", std::nullopt), dir / "a.adi");
    EXPECT_EQ(exportStationAdif(log, dir / "b", std::nullopt), dir / "b.ADI");
    EXPECT_EQ(exportStationAdif(log, dir / "c.txt", std::nullopt), dir / "c.txt.ADI");
    EXPECT_FALSE(std::filesystem::exists(dir / "a.adi.ADI"));

    test::writeFile(dir / "old.ADI", "old");
    log.add(only("DL2AA", 2));
    exportStationAdif(log, dir / "old.ADI", std::nullopt);
    EXPECT_EQ(test::splitLines(test::readFile(dir / "old.ADI"), "\r\n").size(), 5u);

    EXPECT_THROW(exportStationAdif(log, dir / "no-such-folder" / "x.adi", std::nullopt),
                 fileio::FileError);
    EXPECT_FALSE(std::filesystem::exists(dir / "no-such-folder"));
}
