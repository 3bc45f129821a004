// share, join and sync from the command line against a real server, and a
// command that changes a shared log sending at once.

#include <gtest/gtest.h>

#include <chrono>

#include "support/fault_proxy.h"
#include "support/pg_cluster.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"

namespace orv::test {
namespace {

TEST(ShareTool, SharesJoinsSyncsAndSendsChangesAtOnce) {
    PgCluster pg;
    FaultProxy proxy(pg.port());
    TempDir a, b;
    const std::string server = pg.address(proxy.port());
    auto at = [](const TempDir& home) {
        return [&home](std::vector<std::string> args) { return runToolAt(home.path(), args); };
    };
    auto toolA = at(a), toolB = at(b);
    auto add = [](auto& tool, const std::string& call) {
        return tool({"add", "Field", "--band", "144", "--call", call, "--rst", "59", "--rcvd",
                     "59001", "--locator", "JN88EF"});
    };
    ASSERT_EQ(
        toolA({"new-log", "Field", "--call", "OE1ABC", "--locator", "JN78DF", "--contest", "T"})
            .status,
        0);
    ASSERT_EQ(add(toolA, "DL1XYZ").status, 0);

    // Refusals in the program's words, nothing changed.
    struct Refusal {
        std::vector<std::string> args;
        int status;
        std::string err;
    };
    const Refusal refusals[] = {
        {{"share", "Field", "--server", "http://x/y", "--position", "A"}, 2, "postgresql://"},
        {{"share", "Field", "--server", server, "--position", "A B"}, 2, "--position A B"},
        {{"sync", "Field"}, 2, "Field"},
        {{"join", "Other", "--server", server, "--position", "B"}, 2, "Other"},
    };
    for (const auto& r : refusals) {
        const auto run = r.args[0] == "join" ? toolB(r.args) : toolA(r.args);
        EXPECT_EQ(run.status, r.status) << r.args[0];
        EXPECT_NE(run.err.find(r.err), std::string::npos) << run.err;
    }

    const auto shared = toolA({"share", "Field", "--server", server, "--position", "A"});
    ASSERT_EQ(shared.status, 0) << shared.err;
    EXPECT_NE(shared.out.find("\t1\n"), std::string::npos) << shared.out;
    const auto joined = toolB({"join", "Field", "--server", server, "--position", "B"});
    ASSERT_EQ(joined.status, 0) << joined.err;
    EXPECT_NE(joined.out.find("\t1\n"), std::string::npos) << joined.out;
    const auto again = toolB({"join", "Field", "--server", server, "--position", "B"});
    EXPECT_EQ(again.status, 2);
    EXPECT_NE(again.err.find("gibt es hier schon"), std::string::npos) << again.err;

    // Each change goes out with the command that made it.
    ASSERT_EQ(add(toolA, "DL2XYZ").status, 0);
    EXPECT_EQ(pg.psql("SELECT count(*) FROM orv_qso"), "2\n");

    // Cut off, the command still logs; the change waits and sync says so.
    proxy.reset();
    const auto start = std::chrono::steady_clock::now();
    const auto offline = add(toolA, "DL3XYZ");
    EXPECT_EQ(offline.status, 0);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(8));
    EXPECT_NE(offline.err.find("Log-Server"), std::string::npos) << offline.err;
    const auto failed = toolA({"sync", "Field"});
    EXPECT_EQ(failed.status, 1);
    EXPECT_NE(failed.out.find("\t1\n"), std::string::npos) << failed.out;
    proxy.pass();
    EXPECT_EQ(toolA({"sync", "Field"}).status, 0);
    const auto synced = toolB({"sync", "Field"});
    EXPECT_EQ(synced.status, 0);
    EXPECT_NE(synced.out.find("Empfangen:\t2\n"), std::string::npos) << synced.out;
    EXPECT_EQ(pg.psql("SELECT count(*) FROM orv_qso"), "3\n");
}

} // namespace
} // namespace orv::test
