#include <gtest/gtest.h>

#include "support/run_tool.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

struct MapLog {
    test::TempDir home;
    test::ToolRun tool(std::vector<std::string> args) { return test::runToolAt(home.path(), args); }
    void add(const char* band, const char* call, const char* loc, const char* date,
             const char* time) {
        const auto r = tool({"add", "Test", "--band", band, "--call", call, "--rst", "59", "--rcvd",
                             "59001", "--locator", loc, "--date", date, "--time", time});
        ASSERT_EQ(r.status, 0) << r.err;
    }
    MapLog() {
        EXPECT_EQ(tool({"new-log", "Test", "--call", "OE1ABC", "--locator", "JN78DF", "--contest",
                        "Test"})
                      .status,
                  0);
        add("144", "DL1XYZ", "JN88EF", "2026-05-02", "14:05"); // 155 km from JN78DF
        add("144", "OK1KKW", "JO70FD", "2026-05-02", "14:50"); // 214 km
        add("144", "S51ZO", "JN76PO", "2026-05-02", "16:59");
        add("432", "OK1KKW", "JO70FD", "2026-05-02", "15:10");
        add("1200", "ok1kkw", "JO70FD", "2026-05-02", "15:20");
        add("1200", "HG7F", "JN97KM", "2026-05-02", "15:30");
        // Deleted QSOs are counted nowhere.
        EXPECT_EQ(tool({"delete", "Test", "--band", "1200", "--nr", "2"}).status, 0);
    }
};

} // namespace

TEST(MapTool, RateAndWorked) {
    MapLog log;
    struct Case {
        std::vector<std::string> args;
        int status;
        std::string out;
    };
    const std::vector<Case> cases = {
        {{"rate", "Test", "--band", "144"},
         0,
         "2026-05-02 14:00\t2\t369\n2026-05-02 15:00\t0\t0\n2026-05-02 16:00\t1\t%S51\n"},
        {{"rate", "Test", "--step", "30"},
         0,
         "2026-05-02 14:00\t1\t155\n2026-05-02 14:30\t1\t214\n2026-05-02 15:00\t2\t428\n"
         "2026-05-02 15:30\t0\t0\n2026-05-02 16:00\t0\t0\n2026-05-02 16:30\t1\t%S51\n"},
        {{"rate", "Test", "--step", "0"}, 2, ""},
        {{"rate", "Test", "--step", "x"}, 2, ""},
        {{"rate", "Test", "--band", "145"}, 2, ""},
        {{"worked", "Test", "ok1kkw"}, 0, "144\n432\n1200\n"},
        {{"worked", "Test", "HG7F"}, 0, ""},
        {{"worked", "Test", "S51ZO"}, 0, "144\n"},
        {{"worked", "Test"}, 2, ""},
        {{"worked", "Nope", "S51ZO"}, 2, ""},
    };
    // The distance of S51ZO as the log stored it.
    const auto listed = log.tool({"list", "Test", "--band", "144"}).out;
    const std::string row = "S51ZO\tJN76PO\t59\t003\t59001\t";
    const auto at = listed.find(row);
    ASSERT_NE(at, std::string::npos);
    const auto from = at + row.size();
    const std::string km = listed.substr(from, listed.find('\t', from) - from);
    ASSERT_FALSE(km.empty());
    for (const Case& c : cases) {
        std::string want = c.out;
        if (const auto p = want.find("%S51"); p != std::string::npos)
            want.replace(p, 4, km);
        const auto r = log.tool(c.args);
        EXPECT_EQ(r.status, c.status) << c.args[0] << " " << r.err;
        EXPECT_EQ(r.out, want) << c.args[0];
        if (c.status != 0) {
            EXPECT_FALSE(r.err.empty());
        }
    }
}
