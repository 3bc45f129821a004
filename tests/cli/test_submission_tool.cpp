#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>

#include "support/run_tool.h"
#include "support/temp_dir.h"
#include "support/text_output.h"

using namespace orv;

namespace {

std::map<std::string, std::string> keyValues(const std::string& out) {
    std::map<std::string, std::string> kv;
    for (const auto& l : test::splitLines(out))
        if (auto eq = l.find('='); eq != std::string::npos)
            kv[l.substr(0, eq)] = l.substr(eq + 1);
    return kv;
}

void appendFile(const std::filesystem::path& p, const std::string& text) {
    std::ofstream f(p, std::ios::app | std::ios::binary);
    f << text;
}

class SubmissionTool : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(test::newLogAt(home.path(), "Test", "Test Contest"), 0);
        ASSERT_EQ(tool({"import-cty", "/usr/share/hamradio-files/cty.dat"}).status, 0);
        add({"--band", "144", "--call", "DL1XYZ", "--rst", "59", "--rcvd", "59001", "--locator",
             "JN88EF", "--time", "12:00"});
        add({"--band", "144", "--call", "OK1XY", "--rst", "599", "--rcvd", "599012", "--locator",
             "JO70AB", "--mode", "CW", "--time", "12:05"});
        add({"--band", "144", "--call", "OE3ABC", "--rst", "59", "--rcvd", "59003", "--locator",
             "JN88AA", "--name", "Jan", "--prop", "TR", "--time", "23:50"});
        add({"--band", "144", "--call", "SP9ZZ", "--rst", "59", "--rcvd", "59004", "--locator",
             "KN09AA", "--time", "23:55"});
        ASSERT_EQ(tool({"delete", "Test", "--band", "144", "--nr", "4"}).status, 0);
        add({"--band", "432", "--call", "DL1XYZ", "--rst", "59", "--rcvd", "59001", "--locator",
             "JN88EF", "--time", "13:00"});
    }

    test::ToolRun tool(std::vector<std::string> args) {
        args.insert(args.begin(), {"--home", home.path().string()});
        return test::runTool(args);
    }
    void add(std::vector<std::string> args) {
        args.insert(args.begin(), {"add", "Test", "--date", "2026-05-02"});
        const auto r = tool(args);
        ASSERT_EQ(r.status, 0) << r.err;
    }

    test::TempDir home;
};

} // namespace

// The evaluation agrees with the running totals the capture keeps.
TEST_F(SubmissionTool, EvaluatePrintsStatisticsAndCountries) {
    const auto list = tool({"list", "Test", "--band", "144"});
    ASSERT_EQ(list.status, 0);
    const std::string totals = test::splitLines(list.out).back();
    const auto ev = tool({"evaluate", "Test", "--band", "144"});
    ASSERT_EQ(ev.status, 0) << ev.err;
    auto kv = keyValues(ev.out);
    EXPECT_NE(totals.find(" score=" + kv["score"] + " "), std::string::npos) << totals;
    EXPECT_EQ(kv["qsos"], "3");
    EXPECT_EQ(kv["deleted"], "1");
    EXPECT_EQ(kv["dupes"], "0");
    EXPECT_EQ(kv["locators"], "3");
    EXPECT_EQ(kv["grossfelder"], "2");
    EXPECT_EQ(kv["countries"], "3");
    EXPECT_EQ(kv["multiplier"], "1");
    const auto l = test::splitLines(ev.out);
    ASSERT_EQ(l.size(), 13u);
    EXPECT_EQ(l[10], "1\tFed. Rep. of Germany");
    EXPECT_EQ(l[11], "1\tCzech Republic");
    EXPECT_EQ(l[12], "1\tAustria");

    // Sorted by points, descending: the grid rows follow the statistic lines.
    const auto sorted = test::splitLines(
        tool({"evaluate", "Test", "--band", "144", "--rows", "--sort", "8", "--descending"}).out);
    ASSERT_EQ(sorted.size(), 17u);
    std::vector<long> points;
    for (std::size_t i = 13; i < 17; ++i)
        points.push_back(std::stol(test::splitLines(sorted[i] + "\t", "\t")[8]));
    EXPECT_TRUE(std::is_sorted(points.rbegin(), points.rend())) << sorted[13];
    EXPECT_EQ(tool({"evaluate", "Test", "--band", "144", "--sort", "18"}).status, 2);

    EXPECT_EQ(tool({"evaluate", "Test", "--band", "145"}).status, 2);
    EXPECT_EQ(tool({"evaluate", "Nope", "--band", "144"}).status, 2);
}

TEST_F(SubmissionTool, EdiFromTemplateAndRefusals) {
    appendFile(home / "OrvantaContest.INI",
               "[EDiExport145 MHz]\nVo8=My Club\nVo21=750\n[EDiExport]\nEx9=Last Name\n");
    std::filesystem::create_directories(home / "out");
    test::writeFile(home / "out" / "x.EDI", "an old file");
    const auto r = tool({"edi", "Test", "--band", "144", "-o", (home / "out" / "x").string()});
    ASSERT_EQ(r.status, 0) << r.err;
    const auto path = home / "out" / "x.EDI";
    EXPECT_EQ(r.out, "Datei gespeichert unter\n" + path.string() + "\n");
    const std::string bytes = test::readFile(path);
    const auto l = test::splitLines(bytes, "\r\n");
    ASSERT_GE(l.size(), 40u);
    EXPECT_EQ(l[0], "[REG1TEST;1]");
    EXPECT_EQ(l[2], "TDate=20260502;20260502");
    EXPECT_EQ(l[9], "PBand=145 MHz");
    EXPECT_EQ(l[10], "PClub=My Club");
    EXPECT_EQ(l[11], "RName=Last Name");
    EXPECT_EQ(l[23], "SPowe=750");
    EXPECT_EQ(l[27], "CQSOs=3;1");
    EXPECT_EQ(l[37], "[Remarks]");
    EXPECT_EQ(l[39], "[QSORecords;4]");
    ASSERT_EQ(l.size(), 44u);
    EXPECT_EQ(l[41].substr(0, 25), "260502;1205;OK1XY;2;599;0");
    EXPECT_EQ(l[43], "260502;2355;ERROR;;;0004;;;;;0;;;;");
    EXPECT_EQ(bytes.size(), [&] {
        std::size_t n = 0;
        for (const auto& x : l)
            n += x.size() + 2;
        return n;
    }());

    // An empty band: no file, the band text and "Log Leer!".
    const auto empty =
        tool({"edi", "Test", "--band", "1200", "-o", (home / "out" / "e.edi").string()});
    EXPECT_EQ(empty.status, 2);
    EXPECT_EQ(empty.err, "1200 Log Leer!\n");
    EXPECT_FALSE(std::filesystem::exists(home / "out" / "e.edi"));
    EXPECT_EQ(tool({"edi", "Test", "--band", "144"}).status, 2);

    // A folder that does not exist: a failure with the program's word, no file.
    const auto missing = home / "no" / "such" / "folder" / "x";
    const auto failed = tool({"edi", "Test", "--band", "144", "-o", missing.string()});
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.err.rfind("FEHLER: ", 0), 0u) << failed.err;
    EXPECT_FALSE(std::filesystem::exists(home / "no"));
}

// The ADIF file is read by an established reader: every live QSO of every
// band is a record, the deleted one is not.
TEST_F(SubmissionTool, AdifParsesWithAnEstablishedReader) {
    appendFile(home / "OrvantaContest.INI", "[QB-OPTION]\nADIFQRG1=144.300\n");
    const auto r = tool({"adif", "Test", "-o", (home / "log").string()});
    ASSERT_EQ(r.status, 0) << r.err;
    const auto path = home / "log.ADI";
    EXPECT_EQ(r.out, "Datei gespeichert unter\n" + path.string() + "\n");

    ASSERT_TRUE(std::filesystem::exists(test::sourceDir() / "tests/node/node_modules/tcadif"))
        << "run npm install in tests/node (scripts/setup.sh test does)";
    const test::CommandRun n = test::checkAdif(path);
    ASSERT_EQ(n.status, 0) << n.out;
    EXPECT_EQ(n.out.rfind("{\"count\":4,", 0), 0u) << n.out;
    EXPECT_EQ(n.out.find("SP9ZZ"), std::string::npos);
    EXPECT_NE(n.out.find("\"CALL\":\"OK1XY\",\"FREQ\":\"144.300\",\"GRIDSQUARE\":\"JO70AB\","
                         "\"MODE\":\"CW\",\"QSL_SENT\":\"N\",\"QSO_DATE\":\"20260502\","
                         "\"RST_RCVD\":\"599\",\"RST_SENT\":\"599\",\"TIME_ON\":\"1205\""),
              std::string::npos)
        << n.out;
    EXPECT_NE(n.out.find("\"NAME\":\"Jan\""), std::string::npos);
    EXPECT_NE(n.out.find("\"PROP_MODE\":\"TR\""), std::string::npos);
    EXPECT_NE(n.out.find("\"FREQ\":\"432\""), std::string::npos);
}

TEST_F(SubmissionTool, TextListingWithAndWithoutStatistics) {
    auto r = tool({"text", "Test", "-o", (home / "a").string()});
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string with = test::readFile(home / "a.TXT");
    r = tool({"text", "Test", "-o", (home / "b.txt").string(), "--no-stats"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "Datei gespeichert unter\n" + (home / "b.txt").string() + "\n");
    const std::string without = test::readFile(home / "b.txt");
    EXPECT_NE(with.find("\r\n144 MHz\r\nQSOs:\t3\r\n"), std::string::npos);
    EXPECT_NE(with.find("\r\n432 MHz\r\nQSOs:\t1\r\n"), std::string::npos);
    EXPECT_EQ(without.find("QSOs:\t"), std::string::npos);
    EXPECT_NE(without.find("\r\n144      0004 2026-05-02 23:55  ERROR    \r\n"), std::string::npos);
    EXPECT_NE(without.find("\r\n432 ODX  0001 2026-05-02 13:00 DL1XYZ"), std::string::npos);
}

TEST_F(SubmissionTool, StatisticsOverAFolder) {
    ASSERT_EQ(test::newLogAt(home.path(), "Second", "X"), 0);
    const auto logs = (home / "Logs").string();
    auto r = tool({"stats", logs});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("Rufzeichen:      OE1ABC\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("144 MHz\nQSOs:      3\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("Gesamt\nQSOs:      4\n"), std::string::npos) << r.out;
    r = tool({"stats", logs, "--logs", "Test", "-o", (home / "report").string()});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "Datei gespeichert unter\n" + (home / "report.TXT").string() + "\n");
    EXPECT_NE(test::readFile(home / "report.TXT").find("144 MHz\nQSOs:      3\n"),
              std::string::npos);
    r = tool({"stats", logs, "--logs", "Second"});
    ASSERT_EQ(r.status, 0);
    EXPECT_EQ(r.out.find("144 MHz"), std::string::npos);
    r = tool({"stats", logs, "--logs", "Test,Missing"});
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.err, "Kein gültiges Log!\nMissing\n");
}

TEST_F(SubmissionTool, GroupChangeMovesTimesAcrossMidnight) {
    auto r = tool({"group-change", "Test", "--band", "144", "--from", "3", "--to", "4", "--field",
                   "add-time", "--value", "0:30"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "changed=2\n");
    const auto rows = test::splitLines(tool({"evaluate", "Test", "--band", "144", "--rows"}).out);
    ASSERT_GE(rows.size(), 4u);
    const auto& last = rows[rows.size() - 2];
    EXPECT_EQ(last.rfind("3\t2026-05-03\t00:20\t", 0), 0u) << last;
    EXPECT_EQ(rows.back().rfind("4\t2026-05-03\t00:25\t", 0), 0u) << rows.back();
    EXPECT_EQ(rows[rows.size() - 4].rfind("1\t2026-05-02\t12:00\t", 0), 0u);

    r = tool({"group-change", "Test", "--band", "144", "--from", "4", "--to", "3", "--field",
              "name", "--value", "X"});
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.err, "Ungültiger Wert\n3\n");
    r = tool({"group-change", "Test", "--band", "144", "--from", "1", "--to", "3", "--field",
              "time", "--value", "24:00"});
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.err.rfind("Ungültige Zeit", 0), 0u);
    EXPECT_EQ(tool({"group-change", "Test", "--band", "144", "--from", "1", "--to", "3", "--field",
                    "colour", "--value", "x"})
                  .status,
              2);
}
