// new-log with a server and a position: the log is made and shared in one
// command, and a bad address or position makes nothing.

#include <gtest/gtest.h>

#include <filesystem>

#include "support/pg_cluster.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"

namespace orv::test {
namespace {

TEST(ShareTool, NewLogSharesAtOnceOrMakesNothing) {
    PgCluster pg;
    TempDir home;
    const std::string server = pg.address();
    auto newLog = [&](const std::string& name, const std::string& address,
                      const std::string& position) {
        return runToolAt(home.path(),
                         {"new-log", name, "--call", "OE1ABC", "--locator", "JN78DF", "--contest",
                          "T", "--server", address, "--position", position});
    };
    struct Refusal {
        std::string address, position, err;
    };
    const Refusal refusals[] = {
        {"http://x/y", "A", "postgresql://"},
        {server, "A B", "--position A B"},
        {server, "", "--position"},
    };
    for (const auto& r : refusals) {
        const auto run = newLog("Bad", r.address, r.position);
        EXPECT_EQ(run.status, 2) << r.address << " " << r.position;
        EXPECT_NE(run.err.find(r.err), std::string::npos) << run.err;
        EXPECT_FALSE(std::filesystem::exists(home / "Logs" / "Bad.sqlite"));
    }
    const auto made = newLog("Tent", server, "2m");
    ASSERT_EQ(made.status, 0) << made.err;
    EXPECT_EQ(pg.psql("SELECT mycall FROM orv_contest WHERE contest = 'Tent'"), "OE1ABC\n");
    EXPECT_EQ(runToolAt(home.path(), {"add", "Tent", "--band", "144", "--call", "DL1XYZ", "--rst",
                                      "59", "--rcvd", "59001", "--locator", "JN88EF"})
                  .status,
              0);
    EXPECT_EQ(pg.psql("SELECT position FROM orv_qso"), "2m\n");
}

} // namespace
} // namespace orv::test
