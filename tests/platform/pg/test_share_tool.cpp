// share, join and sync from the command line against a real server, a
// command that changes a shared log sending at once, changes of the other
// positions' QSOs and the conflicts they can make.

#include <gtest/gtest.h>

#include <chrono>
#include <sstream>

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

    // B's add counts the station: A's call is a duplicate on the band, and
    // the next number follows A's three.
    EXPECT_EQ(add(toolB, "DL1XYZ").status, 3);
    ASSERT_EQ(add(toolB, "DL4XYZ").status, 0);
    EXPECT_EQ(pg.psql("SELECT fields[6] FROM orv_qso WHERE fields[1] = 'DL4XYZ'"), "4\n");
}

// Call and deleted mark of each row that `list` prints.
std::vector<std::string> callsAndMarks(const std::string& listed) {
    std::vector<std::string> out;
    std::istringstream lines(listed);
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line[0] == '#')
            continue;
        std::vector<std::string> cells;
        std::istringstream row(line);
        for (std::string cell; std::getline(row, cell, '\t');)
            cells.push_back(cell);
        out.push_back(cells.at(0) + (cells.at(16) == "True" ? " deleted" : ""));
    }
    return out;
}

// The leading number of the line of `out` that holds `text`, -1 without one.
long leadingNumberOfLine(const std::string& out, const std::string& text) {
    std::istringstream lines(out);
    for (std::string line; std::getline(lines, line);)
        if (line.find(text) != std::string::npos)
            return std::stol(line);
    return -1;
}

TEST(ShareTool, ChangesOtherPositionsQsosAndResolvesConflicts) {
    PgCluster pg;
    const std::string server = pg.address();
    TempDir a, b, c;
    auto at = [](const TempDir& home) {
        return [&home](std::vector<std::string> args) { return runToolAt(home.path(), args); };
    };
    auto toolA = at(a), toolB = at(b), toolC = at(c);
    auto add = [](auto& tool, const std::string& call) {
        return tool({"add", "Field", "--band", "144", "--call", call, "--rst", "59", "--rcvd",
                     "59001", "--locator", "JN88EF"})
            .status;
    };
    auto onBand = [](std::vector<std::string> args) {
        args.insert(args.begin() + 1, {"Field", "--band", "144"});
        return args;
    };
    auto listB = [&] {
        EXPECT_EQ(toolB({"sync", "Field"}).status, 0);
        return callsAndMarks(toolB({"list", "Field", "--band", "144"}).out);
    };
    ASSERT_EQ(newLogAt(a.path(), "Field"), 0);
    ASSERT_EQ(toolA({"share", "Field", "--server", server, "--position", "A"}).status, 0);
    ASSERT_EQ(toolB({"join", "Field", "--server", server, "--position", "B"}).status, 0);
    ASSERT_EQ(toolC({"join", "Field", "--server", server, "--position", "C"}).status, 0);
    // Each add numbers after what its position fetched before (its round
    // comes after the commit), so the positions, apart in time, give
    // numbers twice: 1 is carried by A, B and C, 2 by B and C, 3 by B.
    const std::pair<decltype(toolA)*, const char*> adds[] = {
        {&toolB, "DL2BBB"}, {&toolC, "DL5CCC"}, {&toolA, "DL1AAA"},
        {&toolB, "DL3BBB"}, {&toolB, "DL4BBB"}, {&toolC, "DL6CCC"}};
    for (const auto& [tool, call] : adds)
        ASSERT_EQ(add(*tool, call), 0) << call;
    ASSERT_EQ(toolA({"sync", "Field"}).status, 0);
    EXPECT_EQ(pg.psql("SELECT string_agg(fields[6], ',' ORDER BY fields[1]) FROM orv_qso"),
              "1,1,2,3,1,2\n");

    const auto changeNo = [&] { return pg.psql("SELECT max(change_no) FROM orv_qso"); };
    struct Step {
        std::vector<std::string> args; // at A, on 144
        int status;
        std::string err;              // part of the refusal
        std::vector<std::string> atB; // B's rows after B's sync; empty: nothing sent
    };
    const Step steps[] = {
        {{"delete", "--nr", "3"}, 0, "", {"DL2BBB", "DL3BBB", "DL4BBB deleted"}},
        {{"correct", "--nr", "2", "--call", "DL7XYZ"}, 2, "--nr 2: B C", {}},
        {{"correct", "--nr", "2", "--position", "B", "--call", "DL7XYZ"},
         0,
         "",
         {"DL2BBB", "DL7XYZ", "DL4BBB deleted"}},
        {{"restore", "--nr", "3"}, 0, "", {"DL2BBB", "DL7XYZ", "DL4BBB"}},
        {{"delete", "--nr", "1", "--position", "B"}, 0, "", {"DL2BBB deleted", "DL7XYZ", "DL4BBB"}},
        {{"delete", "--nr", "1", "--position", "Z"}, 2, "--position Z --nr 1", {}},
        {{"correct", "--nr", "2", "--position", "B", "--locator", "ZZ99"},
         2,
         "Ungültiger Locator",
         {}},
        // A logs B's deleted call itself: B's QSO cannot come back.
        {{"add", "--call", "DL2BBB", "--rst", "59", "--rcvd", "59001", "--locator", "JN88EF"},
         0,
         "",
         {"DL2BBB deleted", "DL7XYZ", "DL4BBB"}},
        {{"restore", "--nr", "1", "--position", "B"}, 2, "kann nicht wieder hergestellt", {}},
        {{"restore", "--nr", "9"}, 2, "--nr 9", {}},
    };
    for (const auto& s : steps) {
        const std::string before = changeNo();
        const auto run = toolA(onBand(s.args));
        EXPECT_EQ(run.status, s.status) << s.args[0] << " " << run.err;
        EXPECT_NE(run.err.find(s.err), std::string::npos) << run.err;
        if (s.atB.empty())
            EXPECT_EQ(changeNo(), before) << s.args[0];
        else
            EXPECT_EQ(listB(), s.atB) << s.args[0];
    }
    // A's own QSO 1 stays A's: a deletion without --position takes it.
    EXPECT_EQ(callsAndMarks(toolA(onBand({"delete", "--nr", "1"})).out),
              std::vector<std::string>{"DL1AAA deleted"});

    // Each time B changes a QSO first (its own 3, then C's 2) and A changes
    // it after on the revision it knew: the server refuses A's change, and A
    // lists it as a conflict.
    const std::vector<std::string> races[][2] = {
        {{"correct", "--nr", "3", "--call", "DL8BBB"},
         {"correct", "--nr", "3", "--position", "B", "--call", "DL8AAA"}},
        {{"correct", "--nr", "2", "--position", "C", "--call", "DL9BBB"},
         {"correct", "--nr", "2", "--position", "C", "--call", "DL9AAA"}},
    };
    for (const auto& race : races) {
        ASSERT_EQ(toolB(onBand(race[0])).status, 0);
        ASSERT_EQ(toolA(onBand(race[1])).status, 0);
    }
    const auto listed = toolA({"sync", "Field"});
    EXPECT_NE(listed.out.find("Konflikte:\t2\n"), std::string::npos) << listed.out;
    const long keep = leadingNumberOfLine(listed.out, "DL8AAA");
    const long take = leadingNumberOfLine(listed.out, "DL9AAA");
    ASSERT_GT(keep, 0) << listed.out;
    ASSERT_GT(take, 0) << listed.out;

    const auto onServer = [&](const std::string& call) {
        return pg.psql("SELECT count(*) FROM orv_qso WHERE '" + call + "' = ANY (fields)");
    };
    for (const auto& bad : std::vector<std::vector<std::string>>{
             {"--keep-mine", "99"},
             {"--take-server", "x"},
             {"--keep-mine", std::to_string(keep), "--take-server", std::to_string(keep)}}) {
        std::vector<std::string> args{"sync", "Field"};
        args.insert(args.end(), bad.begin(), bad.end());
        const auto run = toolA(args);
        EXPECT_EQ(run.status, 2) << bad[1];
        EXPECT_NE(run.err.find("Konflikt"), std::string::npos) << run.err;
    }
    EXPECT_NE(toolA({"sync", "Field"}).out.find("Konflikte:\t2\n"), std::string::npos);

    const auto resolved = toolA({"sync", "Field", "--keep-mine", std::to_string(keep),
                                 "--take-server", std::to_string(take)});
    EXPECT_EQ(resolved.status, 0) << resolved.err;
    EXPECT_NE(resolved.out.find("Konflikte:\t0\n"), std::string::npos) << resolved.out;
    EXPECT_EQ(onServer("DL8AAA"), "1\n");
    EXPECT_EQ(onServer("DL8BBB"), "0\n");
    EXPECT_EQ(onServer("DL9BBB"), "1\n");
    EXPECT_EQ(onServer("DL9AAA"), "0\n");
    EXPECT_EQ(listB(), (std::vector<std::string>{"DL2BBB deleted", "DL7XYZ", "DL8AAA"}));
}

} // namespace
} // namespace orv::test
