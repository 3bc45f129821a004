// Several positions of one contest against a real PostgreSQL server, through
// proxies that break their links. After every fault heals, the invariants of
// TestStation::checkInvariants hold. Fault schedules are seeded.

#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <random>
#include <set>
#include <thread>

#include "core/shared/shared_sync.h"
#include "platform/pg/pg_server.h"
#include "station.h"

namespace orv::test {
namespace {

constexpr int k144 = 1;
constexpr int k432 = 2;

void pause(int ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

TEST(SharedScenarios, PositionsOnTwoBandsAndTwoOnOneBandLogAtOnce) {
    TestStation st(3);
    std::vector<std::thread> loggers;
    const int bands[] = {k144, k432, k144};
    for (std::size_t i = 0; i < st.size(); ++i)
        loggers.emplace_back([&, i] {
            // Each logger thread writes through a connection of its own.
            auto& p = st[i];
            for (int n = 0; n < 15; ++n) {
                p.logHeldQso(bands[i], p.name + "CALL" + std::to_string(n));
                pause(20);
            }
        });
    for (auto& t : loggers)
        t.join();
    ASSERT_TRUE(st.healed());
    st.checkInvariants();
    EXPECT_EQ(st.serverSet().size(), 45u);
    // The position on its own band numbered without a gap or a double; the
    // two on one band took their numbers from the station's series held on
    // the server: no number twice, and none skipped but the two each holds
    // for its next QSO.
    EXPECT_TRUE(st[0].store().doubleSerials(k432).empty());
    EXPECT_EQ(st[1].store().highestSerial(k432), 15);
    EXPECT_TRUE(st[0].store().doubleSerials(k144).empty());
    std::set<std::int64_t> numbers;
    for (const auto& q : st[0].store().stationQsos())
        if (q.band == k144)
            numbers.insert(q.row.qsoNr);
    EXPECT_EQ(numbers.size(), 30u);
    EXPECT_LE(*numbers.rbegin(), 32);
}

TEST(SharedScenarios, ALinkCutForAWhileCatchesUpAndFlagsDoubleNumbers) {
    std::mt19937 rng(20);
    TestStation st(2);
    st[0].logQso(k144, "DL1AA");
    ASSERT_TRUE(st.healed());
    for (int round = 0; round < 2; ++round) {
        if (round == 0)
            st[1].proxy->reset();
        else
            st[1].proxy->hold();
        pause(100);
        // Both log on 144 while apart: B continues from the number it knows.
        for (int n = 0; n < 3; ++n) {
            st[0].logQso(k144, "DL2A" + std::to_string(n));
            st[1].logQso(k144, "DL3B" + std::to_string(n));
            pause(static_cast<int>(rng() % 50));
        }
        EXPECT_GT(st[1].store().queuedCount(), 0);
        st[1].proxy->pass();
        ASSERT_TRUE(st.healed()) << "round " << round;
        st.checkInvariants();
    }
    // Numbers given on both sides of the split are flagged, never renumbered.
    EXPECT_FALSE(st[0].store().doubleSerials(k144).empty());
}

TEST(SharedScenarios, CutsInTheMiddleOfTheExchangeLeaveNoDuplicate) {
    std::mt19937 rng(7);
    TestStation st(2);
    for (int n = 0; n < 8; ++n) {
        // Cut after a seeded number of bytes: sometimes before the server
        // committed, sometimes after and before the answer arrived.
        st[0].proxy->cutAfter(100 + static_cast<std::int64_t>(rng() % 900));
        st[0].logQso(k144, "DL" + std::to_string(n) + "CUT");
        pause(static_cast<int>(30 + rng() % 100));
    }
    st[0].proxy->pass();
    ASSERT_TRUE(st.healed());
    st.checkInvariants();
    EXPECT_EQ(st.serverSet().size(), 8u);
}

TEST(SharedScenarios, TheServerStoppedImmediatelyAndStartedAgain) {
    TestStation st(2);
    st[0].logQso(k144, "DL1AA");
    ASSERT_TRUE(st.healed());
    st.server().stopImmediately();
    st[0].logQso(k144, "DL2AA");
    st[1].logQso(k432, "DL3BB");
    pause(300);
    EXPECT_FALSE(st[0].worker->status().online);
    st.server().start();
    ASSERT_TRUE(st.healed());
    st.checkInvariants();
    EXPECT_EQ(st.serverSet().size(), 3u);
    EXPECT_TRUE(st[1].worker->status().online);
}

TEST(SharedScenarios, AClientKilledWhileSendingLosesNothing) {
    TestStation st(2);
    st[0].stopWorker();
    for (int n = 0; n < 40; ++n)
        st[0].logQso(k144, "DL" + std::to_string(n) + "KIL");
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // The child sends the outbox as a position's worker would.
        sql::Db db(st[0].file.string(), sql::Db::Mode::ReadWrite);
        SharedStore store(db);
        PgServer server(store.setup().server, "", "Test");
        try {
            syncOnce(store, server);
        } catch (...) {
        }
        _exit(0);
    }
    pause(60);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    st[0].startWorker();
    ASSERT_TRUE(st.healed());
    st.checkInvariants();
    EXPECT_EQ(st.serverSet().size(), 40u);
}

TEST(SharedScenarios, ACorrectionAndADeletionOfOneQsoWhileSplitBecomeAConflict) {
    TestStation st(2);
    const std::string uid = st[0].logQso(k144, "DL1AAA");
    ASSERT_TRUE(st.healed());
    st[0].proxy->reset();
    st[1].proxy->reset();
    pause(100);
    auto row = st[0].log->rows(k144).at(0);
    row.call = "DL1AAB";
    st[0].log->updateQso(k144, row.rowId, row, {});
    QsoRow gone = st[1].store().remoteQsos(k144).at(0).row;
    gone.errQso = true;
    st[1].store().changeRemote(uid, gone);
    st[1].proxy->pass();
    // B's deletion reaches the server first.
    for (int i = 0; i < 200 && st[1].store().queuedCount() > 0; ++i)
        pause(50);
    ASSERT_EQ(st[1].store().queuedCount(), 0);
    st[0].proxy->pass();
    ASSERT_TRUE(st.healed());
    st.checkInvariants();
    // B's deletion came first; A holds it and lists its correction.
    auto conflicts = st[0].store().conflicts();
    ASSERT_EQ(conflicts.size(), 1u);
    EXPECT_EQ(conflicts[0].mine.row.call, "DL1AAB");
    EXPECT_TRUE(st[0].log->rows(k144).at(0).errQso);
    // A keeps its correction: it reaches B over the deletion.
    st[0].store().keepMine(conflicts[0].id);
    st[0].worker->nudge();
    ASSERT_TRUE(st.healed());
    st.checkInvariants();
    EXPECT_EQ(st[1].store().remoteQsos(k144).at(0).row.call, "DL1AAB");
    EXPECT_FALSE(st[1].store().remoteQsos(k144).at(0).row.errQso);
}

TEST(SharedScenarios, AServerOfAnotherSchemaVersionIsRefusedUntouched) {
    PgCluster pg;
    pg.psql("CREATE TABLE orv_share_version (version integer); INSERT INTO orv_share_version "
            "VALUES (99)");
    PgServer server(pg.address(), "", "Test");
    try {
        server.connect();
        FAIL() << "connected to a server of another version";
    } catch (const SharedSchemaError& e) {
        EXPECT_EQ(e.found(), 99);
    }
    EXPECT_EQ(pg.psql("SELECT to_regclass('orv_qso') IS NULL"), "t\n");
}

} // namespace
} // namespace orv::test
