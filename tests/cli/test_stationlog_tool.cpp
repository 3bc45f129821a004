#include <gtest/gtest.h>

#include <cstdio>

#include "support/run_tool.h"
#include "support/temp_dir.h"
#include "support/text_output.h"

using namespace orv;

namespace {

class StationLogTool : public ::testing::Test {
protected:
    test::ToolRun tool(std::vector<std::string> args) {
        args.insert(args.begin(), {"--home", home.path().string()});
        return test::runTool(args);
    }
    test::ToolRun add(std::vector<std::string> args) {
        args.insert(args.begin(), {"stationlog-add", "Home"});
        return tool(args);
    }
    std::string listing() { return tool({"stationlog-list", "Home"}).out; }

    test::TempDir home;
};

} // namespace

TEST_F(StationLogTool, NewAddListAndTheWindowsChecks) {
    const auto made = tool({"stationlog-new", "Home"});
    ASSERT_EQ(made.status, 0) << made.err;
    EXPECT_EQ(made.out, (home / "QjLog" / "Home.sqlite").string() + "\n");
    EXPECT_EQ(tool({"stationlog-new", "Home"}).status, 2);
    EXPECT_EQ(tool({"stationlog-new", "Ho:me"}).err, "Dateiname ungültig\n");

    const auto first = add(
        {"--call",    "dl1abc",   "--date",   "2026-05-02", "--time",   "12:34",    "--qrg",
         "144.300",   "--mode",   "SSB",      "--rst-tx",   "59",       "--rst-rx", "57",
         "--locator", "jo62qm",   "--name",   "Jörg",       "--mycall", "dl0xyz",   "--mylocator",
         "jn58td",    "--power",  "100",      "--antenna",  "9el Yagi", "--note",   "first",
         "--qsl",     "Y",        "--qsl-rx", "N",          "--prop",   "tr",       "--qrg-rx",
         "144.301",   "--rxmode", "CW",       "--manager",  "DL9QSL"});
    ASSERT_EQ(first.status, 0) << first.err;
    EXPECT_EQ(first.out, "1\n");
    const auto l = test::splitLines(listing());
    ASSERT_EQ(l.size(), 2u);
    EXPECT_EQ(l[0], "Nr\tDateTime\tCall\tRST_TX\tRST_RX\tLocator\tQRG_TX\tQRG_RX\tTXMod\tRXMod\t"
                    "Prop\tQSL\tQSLManager\tName\tMyCall\tMyLocator\tPower\tAntenne\tNote\tQSL_RX");
    EXPECT_EQ(l[1], "1\t2026-05-02 12:34:00\tDL1ABC\t59\t57\tJO62QM\t144.300\t144.301\tSSB\tCW\t"
                    "TR\tY\tDL9QSL\tJörg\tDL0XYZ\tJN58TD\t100\t9el Yagi\tfirst\tN");

    // Each refusal gives its text, exit 2, and the log stays as it was.
    struct Case {
        std::vector<std::string> args;
        std::string err;
    };
    const std::vector<Case> cases{
        {{"--call", "DL2AA", "--date", "2026-05-02", "--time", "12:00", "--mode", "SSB"},
         "QRG ungültig\n--qrg \n"},
        {{"--call", "DL2AA", "--date", "2026-05-02", "--time", "12:00", "--qrg", "432.2"},
         "MODE ungültig\n--mode \n"},
        {{"--call", "D", "--date", "2026-05-02", "--time", "12:00", "--qrg", "1", "--mode", "CW"},
         "Ungültiges Rufzeichen\n--call D\n"},
        {{"--call", "DL2AA", "--date", "2026-13-02", "--time", "12:00"},
         "Ungültiges Datum\n--date 2026-13-02\n"},
        {{"--call", "DL2AA", "--date", "2026-05-02", "--time", "1260"},
         "Ungültige Zeit\n--time 1260\n"},
        {{"--call", "DL2AA", "--date", "2026-05-02", "--time", "12:00", "--rst-tx", "5x"},
         "RST ungültig\n--rst-tx 5x\n"},
    };
    const std::string before = listing();
    for (const auto& c : cases) {
        const auto r = add(c.args);
        EXPECT_EQ(r.status, 2) << c.err;
        EXPECT_EQ(r.err, c.err);
    }
    EXPECT_EQ(listing(), before);
    EXPECT_EQ(tool({"stationlog-list", "Nope"}).status, 2);
}

TEST_F(StationLogTool, DeleteOneOrARangeAndRefuseBadRanges) {
    ASSERT_EQ(tool({"stationlog-new", "Home"}).status, 0);
    for (int i = 1; i <= 6; ++i)
        ASSERT_EQ(add({"--call", "DL" + std::to_string(i) + "AA", "--date", "2026-05-02", "--time",
                       "12:0" + std::to_string(i), "--qrg", "144.3", "--mode", "CW"})
                      .status,
                  0);
    EXPECT_EQ(tool({"stationlog-delete", "Home", "--nr", "2"}).out, "1\n");
    EXPECT_EQ(tool({"stationlog-delete", "Home", "--nr", "2"}).status, 2);
    const std::string before = listing();
    for (const auto& r : std::vector<std::vector<std::string>>{
             {"--nr", "5", "--to", "3"}, {"--nr", "0", "--to", "3"}, {"--nr", "4", "--to", "9"}}) {
        std::vector<std::string> a{"stationlog-delete", "Home"};
        a.insert(a.end(), r.begin(), r.end());
        const auto run = tool(a);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.err, "Nummernbereich ungültig.\n");
    }
    EXPECT_EQ(tool({"stationlog-delete", "Home", "--nr", "x"}).status, 2);
    EXPECT_EQ(listing(), before);
    EXPECT_EQ(tool({"stationlog-delete", "Home", "--nr", "3", "--to", "5"}).out, "3\n");
    const auto l = test::splitLines(listing());
    ASSERT_EQ(l.size(), 3u);
    EXPECT_EQ(l[1].substr(0, 2), "1\t");
    EXPECT_EQ(l[2].substr(0, 2), "6\t");
}

// The file that leaves is read back by tcadif: every record, fields as the log.
TEST_F(StationLogTool, AdifReadBackByAnEstablishedReader) {
    ASSERT_EQ(tool({"stationlog-new", "Home"}).status, 0);
    ASSERT_EQ(add({"--call",   "OE3XYZ",  "--date",    "2026-05-02", "--time",      "08:07",
                   "--qrg",    "144.300", "--mode",    "SSB",        "--rst-tx",    "59",
                   "--rst-rx", "57",      "--locator", "JN88AA",     "--qsl",       "Y",
                   "--name",   "Jan",     "--mycall",  "DL0XYZ",     "--mylocator", "JO62QM",
                   "--power",  "100",     "--antenna", "Yagi",       "--note",      "via ES",
                   "--prop",   "ES",      "--qrg-rx",  "144.301",    "--rxmode",    "FM",
                   "--qsl-rx", "Y"})
                  .status,
              0);
    for (int i = 2; i <= 5; ++i)
        ASSERT_EQ(add({"--call", "DL" + std::to_string(i) + "AA", "--date", "2026-05-03", "--time",
                       "10:0" + std::to_string(i), "--qrg", "432.200", "--mode", "CW"})
                      .status,
                  0);
    std::filesystem::create_directories(home / "out");

    const auto all = tool({"stationlog-adif", "Home", "-o", (home / "out" / "all.adi").string()});
    ASSERT_EQ(all.status, 0) << all.err;
    EXPECT_EQ(all.out, "Datei gespeichert unter\n" + (home / "out" / "all.adi").string() + "\n");
    const test::CommandRun n = test::checkAdif(home / "out" / "all.adi");
    ASSERT_EQ(n.status, 0) << n.out;
    EXPECT_EQ(n.out.rfind("{\"count\":5,", 0), 0u) << n.out;
    for (const char* field : {"\"CALL\":\"OE3XYZ\"",
                              "\"QSO_DATE\":\"20260502\"",
                              "\"TIME_ON\":\"0807\"",
                              "\"RST_RCVD\":\"59\"",
                              "\"RST_SENT\":\"57\"",
                              "\"GRIDSQUARE\":\"JN88AA\"",
                              "\"FREQ\":\"144.300\"",
                              "\"FREQ_RX\":\"144.301\"",
                              "\"MODE\":\"SSB\"",
                              "\"PROP_MODE\":\"ES\"",
                              "\"QSL_SENT\":\"Y\"",
                              "\"NAME\":\"Jan\"",
                              "\"STATION_CALLSIGN\":\"DL0XYZ\"",
                              "\"OPERATOR\":\"DL0XYZ\"",
                              "\"MY_GRIDSQUARE\":\"JO62QM\"",
                              "\"TX_PWR\":\"100\"",
                              "\"MY_RIG\":\"Yagi\"",
                              "\"NOTES\":\"via ES\"",
                              "\"CALL\":\"DL5AA\"",
                              "\"FREQ\":\"432.200\""})
        EXPECT_NE(n.out.find(field), std::string::npos) << field << "\n" << n.out;
    EXPECT_EQ(n.out.find("QSL_RCVD"), std::string::npos);
    EXPECT_EQ(n.out.find("\"FM\""), std::string::npos) << "RXMod is not exported";

    // The range 3 to 3 is one record; ".ADI" is added once.
    const auto one = tool({"stationlog-adif", "Home", "-o", (home / "out" / "one").string(),
                           "--from", "3", "--to", "3"});
    ASSERT_EQ(one.status, 0) << one.err;
    const test::CommandRun o = test::checkAdif(home / "out" / "one.ADI");
    ASSERT_EQ(o.status, 0) << o.out;
    EXPECT_EQ(o.out.rfind("{\"count\":1,", 0), 0u) << o.out;
    EXPECT_NE(o.out.find("\"CALL\":\"DL3AA\""), std::string::npos) << o.out;

    const auto bad = tool({"stationlog-adif", "Home", "-o", (home / "out" / "bad").string(),
                           "--from", "4", "--to", "2"});
    EXPECT_EQ(bad.status, 2);
    EXPECT_EQ(bad.err, "Nummernbereich ungültig.\n--from 4\n");
    EXPECT_FALSE(std::filesystem::exists(home / "out" / "bad.ADI"));
    EXPECT_EQ(tool({"stationlog-adif", "Home", "-o", (home / "out" / "x").string(), "--from", "a",
                    "--to", "2"})
                  .status,
              2);

    // An unwritable path: the tool's failure status and message, no file.
    const auto nowhere =
        tool({"stationlog-adif", "Home", "-o", (home / "no-folder" / "x.adi").string()});
    EXPECT_EQ(nowhere.status, 1);
    EXPECT_NE(nowhere.err.find("FEHLER"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(home / "no-folder"));
}

TEST_F(StationLogTool, AFileInQjLogThatIsNoStationLogIsRefusedAndKept) {
    ASSERT_EQ(tool({"stationlog-list", "Home"}).status, 2); // prepares the data folder
    test::writeFile(home / "QjLog" / "Junk.sqlite", "not a database");
    const auto r = tool({"stationlog-add", "Junk", "--call", "DL1AA", "--date", "2026-05-02",
                         "--time", "12:00", "--qrg", "1", "--mode", "CW"});
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(test::splitLines(r.err).front(), "Kein gültiges Log!");
    EXPECT_EQ(test::readFile(home / "QjLog" / "Junk.sqlite"), "not a database");
}
