#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "support/ftp_server.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

const std::string kCty = "/usr/share/hamradio-files/cty.dat";
const std::string kScp = "/usr/share/hamradio-files/MASTER.SCP";

bool haveHamradioFiles() {
    return std::filesystem::exists(kCty) && std::filesystem::exists(kScp);
}

} // namespace

TEST(ReferenceTool, ImportCtyAndCountry) {
    if (!haveHamradioFiles())
        GTEST_SKIP() << "hamradio-files not installed";
    test::TempDir home;
    const std::string h = home.path().string();
    auto none = test::runTool({"--home", h, "country", "DL1ABC"});
    EXPECT_EQ(none.status, 2); // no list yet
    auto imp = test::runTool({"--home", h, "import-cty", kCty});
    ASSERT_EQ(imp.status, 0) << imp.err;
    EXPECT_NE(imp.out.find("Importieren fertig"), std::string::npos);
    struct Case {
        const char* call;
        const char* line;
    };
    const Case cases[] = {
        {"KH6XX", "Hawaii\t31\t61\tOC\tKH6\n"},
        {"K1XX", "United States of America\t5\t8\tNA\tK\n"},
        {"9M4SDX", "West Malaysia\t28\t54\tAS\t9M2\n"},
        {"=9M4SDX", "Spratly Islands\t26\t50\tAS\t1S\n"},
        {"ve8abc", "Canada\t1\t3\tNA\tVE\n"},
    };
    for (const auto& c : cases) {
        auto r = test::runTool({"--home", h, "country", c.call});
        EXPECT_EQ(r.status, 0) << c.call;
        EXPECT_EQ(r.out, c.line);
    }
    auto unknown = test::runTool({"--home", h, "country", "QQ1ABC"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_NE(unknown.err.find("kann keinem Land zugewiesen werden"), std::string::npos);
    EXPECT_TRUE(unknown.out.empty());

    // A file that is no country list is refused and the list keeps working.
    test::writeFile(home / "bad.dat", "hello world, this is not CTY.DAT;\n");
    auto bad = test::runTool({"--home", h, "import-cty", (home / "bad.dat").string()});
    EXPECT_EQ(bad.status, 2);
    EXPECT_NE(bad.err.find("Ungültige Länderdatei!"), std::string::npos);
    EXPECT_EQ(test::runTool({"--home", h, "country", "KH6XX"}).out, "Hawaii\t31\t61\tOC\tKH6\n");
    auto missing = test::runTool({"--home", h, "import-cty", (home / "nope.dat").string()});
    EXPECT_EQ(missing.status, 1);
}

TEST(ReferenceTool, DownloadCountryList) {
    if (!haveHamradioFiles())
        GTEST_SKIP() << "hamradio-files not installed";
    test::TempDir home, served;
    const std::string h = home.path().string();
    std::filesystem::copy_file(kCty, served / "cty.dat");
    test::writeFile(served / "junk.dat", "<html><body>Not here</body></html>\n");
    test::HttpServer server(served.path());
    ASSERT_TRUE(server.running());

    // The address comes from the settings file.
    test::writeFile(home / "OrvantaContest.INI",
                    "[QB-OPTION]\nCTYDownloadURL=" + server.url("cty.dat") + "\n");
    auto ok = test::runTool({"--home", h, "download-cty"});
    ASSERT_EQ(ok.status, 0) << ok.err;
    EXPECT_EQ(test::runTool({"--home", h, "country", "KH6XX"}).out, "Hawaii\t31\t61\tOC\tKH6\n");

    // A missing file on the server, a page that is no list and a closed port:
    // each refused, and the list stays.
    auto notFound = test::runTool({"--home", h, "download-cty", "--url", server.url("none.dat")});
    EXPECT_EQ(notFound.status, 2);
    EXPECT_NE(notFound.err.find("Beim Download der Länderliste ist ein Fehler aufgetreten!"),
              std::string::npos);
    auto junk = test::runTool({"--home", h, "download-cty", "--url", server.url("junk.dat")});
    EXPECT_EQ(junk.status, 2);
    EXPECT_NE(junk.err.find("Ungültige Länderdatei!"), std::string::npos);
    auto closed = test::runTool({"--home", h, "download-cty", "--url",
                                 "http://127.0.0.1:" + std::to_string(test::closedPort())});
    EXPECT_EQ(closed.status, 2);
    EXPECT_NE(closed.err.find("Beim Download der Länderliste"), std::string::npos);
    EXPECT_EQ(test::runTool({"--home", h, "country", "K1XX"}).out,
              "United States of America\t5\t8\tNA\tK\n");
}

TEST(ReferenceTool, CallDbImportAndLookup) {
    if (!haveHamradioFiles())
        GTEST_SKIP() << "hamradio-files not installed";
    test::TempDir home;
    const std::string h = home.path().string();
    auto empty = test::runTool({"--home", h, "lookup", "--call", "DL1"});
    EXPECT_EQ(empty.status, 0);
    EXPECT_EQ(empty.out, "# found=0\n");

    auto imp = test::runTool({"--home", h, "calldb-import", kScp});
    ASSERT_EQ(imp.status, 0) << imp.err;
    EXPECT_NE(imp.out.find("added=85456 "), std::string::npos);
    test::writeFile(home / "locs.txt", "DL1ABC JO31AB\nDL1ABD JO31CD\nDL2ABC JN58\n");
    auto locs = test::runTool({"--home", h, "calldb-import", (home / "locs.txt").string()});
    ASSERT_EQ(locs.status, 0) << locs.err;

    auto both = test::runTool({"--home", h, "lookup", "--call", "1AB", "--locator", "JO31"});
    ASSERT_EQ(both.status, 0);
    std::istringstream lines(both.out);
    std::vector<std::string> got;
    for (std::string l; std::getline(lines, l);)
        got.push_back(l);
    ASSERT_EQ(got.size(), 3u);
    EXPECT_EQ(got[0].substr(0, 19), "DL1ABC       JO31AB");
    EXPECT_EQ(got[1].substr(0, 19), "DL1ABD       JO31CD");
    EXPECT_EQ(got[2], "# found=2");

    auto capped = test::runTool({"--home", h, "lookup", "--call", "DL", "--max", "3"});
    std::istringstream cl(capped.out);
    int n = 0;
    std::string last;
    for (std::string l; std::getline(cl, l); ++n)
        last = l;
    EXPECT_EQ(n, 4);
    EXPECT_GT(std::stoi(last.substr(last.find('=') + 1)), 1000);

    // Another home's call database, imported as a file of its own.
    test::TempDir other;
    test::writeFile(other / "l.txt", "DL1ABC JO31AB\nDL9NEW JO50AA\n");
    ASSERT_EQ(test::runTool(
                  {"--home", other.path().string(), "calldb-import", (other / "l.txt").string()})
                  .status,
              0);
    auto foreign = test::runTool({"--home", h, "calldb-import", (other / "QBDat.sqlite").string()});
    ASSERT_EQ(foreign.status, 0) << foreign.err;
    EXPECT_NE(foreign.out.find("added=1 completed=0 known=1"), std::string::npos);

    test::writeFile(home / "bad.txt", "DL1ABC JO31AB\nthis is bad\n");
    auto bad = test::runTool({"--home", h, "calldb-import", (home / "bad.txt").string()});
    EXPECT_EQ(bad.status, 2);
    EXPECT_NE(bad.err.find("Ungültige Datei"), std::string::npos);
    EXPECT_NE(bad.err.find("line 2"), std::string::npos);
}

namespace {
std::vector<std::string> linesOf(const std::string& s) {
    std::vector<std::string> out;
    std::istringstream in(s);
    for (std::string l; std::getline(in, l);)
        out.push_back(l);
    return out;
}
} // namespace

TEST(ReferenceTool, MergeCompareAndWorkedBefore) {
    test::TempDir home;
    const std::string h = home.path().string();
    ASSERT_EQ(test::runTool({"--home", h, "new-log", "FD", "--call", "DK0XX", "--locator", "JO40AA",
                             "--weights", "1,1,1,1,1,1,1,1,1,1", "--contest", "FD"})
                  .status,
              0);
    test::writeFile(home / "l.txt", "DL1ABC JO31AB\nOE1ABC/P JN88EE\nOE1ABCD JN88EE\n");
    ASSERT_EQ(test::runTool({"--home", h, "calldb-import", (home / "l.txt").string()}).status, 0);
    const char* qsos[][3] = {
        {"DL1ABC", "JO31AB", "59001"}, {"OE1ABC", "JN88EE", "59002"}, {"ZZ9ZZ", "JO00AA", "59003"}};
    for (auto& q : qsos)
        ASSERT_EQ(test::runTool({"--home", h, "add", "FD", "--band", "144", "--call", q[0], "--rst",
                                 "59", "--rcvd", q[2], "--locator", q[1], "--date", "2026-06-06",
                                 "--time", "14:00"})
                      .status,
                  0);

    // Before the merge no record has a QSO on 2 m: every QSO is in doubt;
    // OE1ABC finds its portable form and not OE1ABCD.
    auto before = test::runTool({"--home", h, "compare", "FD", "--band", "144"});
    ASSERT_EQ(before.status, 0) << before.err;
    auto b = linesOf(before.out);
    ASSERT_EQ(b.size(), 7u);
    EXPECT_EQ(b[0], "1\tDL1ABC\tJO31AB\t\t***\t\t\t\t\t\t\t\t\t06.06.2026 14:00");
    EXPECT_EQ(b[1], "\tDL1ABC\tJO31AB\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t");
    EXPECT_EQ(b[2], "--");
    EXPECT_EQ(b[4], "\tOE1ABC/P\tJN88EE\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t");
    EXPECT_EQ(b[6].substr(0, 9), "3\tZZ9ZZ\tJ");

    auto merge = test::runTool({"--home", h, "calldb-merge", "FD"});
    EXPECT_EQ(merge.out, "qsos=3 added=2 skipped=0 bands=144 already=\n");
    auto again = test::runTool({"--home", h, "calldb-merge", "FD"});
    EXPECT_EQ(again.out, "qsos=0 added=0 skipped=0 bands= already=144\n");

    // Merged: each call is known once from this very log, and 2 are needed.
    auto after = test::runTool({"--home", h, "compare", "FD", "--band", "144"});
    auto a = linesOf(after.out);
    ASSERT_EQ(a.size(), 9u);
    EXPECT_EQ(a[1], "\tDL1ABC\tJO31AB\t0\t1\t0\t0\t0\t0\t0\t0\t0\t0\t06.06.2026");
    // Another band without QSOs has nothing in doubt.
    auto other = test::runTool({"--home", h, "compare", "FD", "--band", "432", "--by", "locator"});
    EXPECT_EQ(other.out, "Keine Unklarheiten gefunden\n");
    EXPECT_EQ(test::runTool({"--home", h, "compare", "FD", "--band", "145"}).status, 2);
    EXPECT_EQ(test::runTool({"--home", h, "compare", "NOLOG", "--band", "144"}).status, 2);

    // The lookup with the band's worked-before lines behind the database's.
    auto look = test::runTool({"--home", h, "lookup", "--call", "ABC", "--locator", "JN", "--log",
                               "FD", "--band", "144"});
    auto l = linesOf(look.out);
    ASSERT_EQ(l.size(), 5u);
    EXPECT_EQ(l[0], "OE1ABC       JN88EE   0   1   0   0   0   0   0   0   0   0 06.06.2026");
    EXPECT_EQ(l[3], "OE1ABC       JN88EE ***** BEREITS GEARBEITET *****");
    EXPECT_EQ(l[4], "# found=3");
}
