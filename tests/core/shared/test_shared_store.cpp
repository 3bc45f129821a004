// The shared part of a log on real SQLite files, two positions exchanging
// through a server held in memory (the network is the edge of the machine;
// the PostgreSQL adapter has its own suite against a real server).

#include <gtest/gtest.h>

#include <map>

#include "core/logstore/contest_log.h"
#include "core/shared/shared_store.h"
#include "core/shared/shared_sync.h"
#include "support/temp_dir.h"

namespace orv {
namespace {

// The server's rules in their simplest form: an id it holds is not inserted
// again; a change applies only on the revision the server holds.
class MemoryServer : public SharedServer {
public:
    PushResult push(const OutboxEntry& e) override {
        if (down)
            throw SharedServerError("down");
        auto it = qsos.find(e.qso.uid);
        if (it == qsos.end() && e.baseRev == 0)
            return {PushOutcome::Stored, store(e.qso)};
        if (it != qsos.end() && it->second.rev == e.qso.rev && it->second.row == e.qso.row)
            return {PushOutcome::AlreadyHeld, it->second};
        if (it != qsos.end() && it->second.rev == e.baseRev)
            return {PushOutcome::Stored, store(e.qso)};
        return {PushOutcome::Conflict, it->second};
    }
    std::vector<SharedQso> changesSince(std::int64_t after, int limit) override {
        if (down)
            throw SharedServerError("down");
        std::map<std::int64_t, SharedQso> byNo;
        for (const auto& [uid, q] : qsos)
            if (q.changeNo > after)
                byNo[q.changeNo] = q;
        std::vector<SharedQso> out;
        for (auto& [no, q] : byNo)
            if (static_cast<int>(out.size()) < limit)
                out.push_back(q);
        return out;
    }
    void reportPosition(const PositionStatus& s) override { status[s.position] = s; }
    std::vector<PositionStatus> positions() override { return {}; }
    std::int64_t holdSerial(int band, const std::string& position, std::int64_t known) override {
        auto& held = holds[{band, position}];
        if (held > known)
            return held;
        held = std::max(next[band], known + 1);
        next[band] = held + 1;
        return held;
    }

    ShareDigest digest() const {
        std::vector<std::pair<std::string, std::int64_t>> v;
        for (const auto& [uid, q] : qsos)
            v.emplace_back(uid, q.rev);
        return digestOf(v);
    }

    std::map<std::string, SharedQso> qsos;
    std::map<std::string, PositionStatus> status;
    std::map<std::pair<int, std::string>, std::int64_t> holds;
    std::map<int, std::int64_t> next;
    bool down = false;

private:
    SharedQso store(SharedQso q) {
        q.changeNo = ++changeNo_;
        qsos[q.uid] = q;
        return q;
    }
    std::int64_t changeNo_ = 0;
};

QsoRow qso(const std::string& call, std::int64_t nr) {
    QsoRow q;
    q.call = call;
    q.locator = "JO62QM";
    q.qrg = 144;
    q.datTime = DateTime{2026, 6, 6, 14, static_cast<int>(nr % 60), 0};
    q.rstGeg = "59";
    q.qsoNr = nr;
    q.qrb = 300 + nr * 21;
    q.rstErh = "59001";
    q.opCall = "DL1OP";
    return q;
}

struct Position {
    Position(const test::TempDir& dir, const std::string& name)
        : log(ContestLog::create(dir / (name + ".sqlite"),
                                 NewLogData{"DL0ABC", "JO62QM", "Test"})) {
        SharedStore::enable(log.db(), {"postgresql://u@h:5432/db", name, "Test"});
        store.emplace(log.db());
    }
    ContestLog log;
    std::optional<SharedStore> store;
};

constexpr int k144 = 1;

TEST(SharedStore, LogsQueueTheirChangesAndTheOthersCacheThem) {
    test::TempDir dir;
    MemoryServer server;
    Position a(dir, "A"), b(dir, "B");
    RowId first = a.log.addQso(k144, qso("DL1AAA", 1), {});
    a.log.addQso(k144, qso("DL2BBB", 2), {});
    QsoRow fixed = qso("DL1AAB", 1);
    a.log.updateQso(k144, first, fixed, {});
    a.log.setErrQso(k144, first, true, {});
    // Each write queued one change in its own transaction.
    EXPECT_EQ(a.store->queuedCount(), 4);
    server.down = true;
    EXPECT_THROW(syncOnce(*a.store, server), SharedServerError);
    EXPECT_EQ(a.store->queuedCount(), 4);
    server.down = false;
    EXPECT_EQ(syncOnce(*a.store, server).sent, 4);
    EXPECT_EQ(a.store->queuedCount(), 0);
    EXPECT_EQ(syncOnce(*b.store, server).fetched, 2);
    auto cached = b.store->remoteQsos(k144);
    ASSERT_EQ(cached.size(), 2u);
    EXPECT_EQ(cached[0].row.call, "DL1AAB");
    EXPECT_TRUE(cached[0].row.errQso);
    EXPECT_EQ(cached[0].rev, 3);
    EXPECT_EQ(cached[0].position, "A");
    EXPECT_EQ(b.store->highestSerial(k144), 2);
    // By number, deleted ones too, on their band only.
    EXPECT_EQ(b.store->remoteQsosNumbered(k144, 1), std::vector<SharedQso>{cached[0]});
    EXPECT_EQ(b.store->remoteQsosNumbered(k144, 2), std::vector<SharedQso>{cached[1]});
    EXPECT_TRUE(b.store->remoteQsosNumbered(k144, 3).empty());
    EXPECT_TRUE(b.store->remoteQsosNumbered(k144 + 1, 1).empty());
    EXPECT_EQ(b.store->digest(), server.digest());
    EXPECT_EQ(a.store->digest(), server.digest());
    EXPECT_EQ(server.status["A"].lastCall, "DL2BBB");
}

TEST(SharedStore, AResentChangeIsHeldOnceAndALostAnswerIsNoDuplicate) {
    test::TempDir dir;
    MemoryServer server;
    Position a(dir, "A");
    a.log.addQso(k144, qso("DL1AAA", 1), {});
    auto entry = a.store->outbox(10).at(0);
    // The server committed, the answer was lost: the entry is still queued.
    server.push(entry);
    syncOnce(*a.store, server);
    EXPECT_EQ(server.qsos.size(), 1u);
    EXPECT_EQ(a.store->queuedCount(), 0);
}

TEST(SharedStore, ChangesMadeOnAnOldRevisionBecomeConflictsTheOperatorResolves) {
    test::TempDir dir;
    MemoryServer server;
    Position a(dir, "A"), b(dir, "B");
    RowId id = a.log.addQso(k144, qso("DL1AAA", 1), {});
    syncOnce(*a.store, server);
    syncOnce(*b.store, server);
    const std::string uid = *a.store->uidOf(k144, id);
    // Split: A corrects its QSO, B marks it deleted.
    a.log.updateQso(k144, id, qso("DL1AAX", 1), {});
    QsoRow gone = b.store->remoteQsos(k144).at(0).row;
    gone.errQso = true;
    b.store->changeRemote(uid, gone);
    EXPECT_EQ(syncOnce(*b.store, server).conflicts, 0);
    EXPECT_EQ(syncOnce(*a.store, server).conflicts, 1);
    // A holds the server's version (the deletion) and lists its own; the
    // band's totals no longer count the QSO.
    EXPECT_TRUE(a.log.row(k144, id)->errQso);
    EXPECT_EQ(a.log.totals(k144), (BandTotals{0, 0, 0}));
    auto c = a.store->conflicts();
    ASSERT_EQ(c.size(), 1u);
    EXPECT_EQ(c[0].mine.row.call, "DL1AAX");
    EXPECT_EQ(c[0].mine.rev, 1);
    EXPECT_EQ(c[0].server.rev, 2);
    a.store->keepMine(c[0].id);
    EXPECT_TRUE(a.store->conflicts().empty());
    EXPECT_EQ(a.log.row(k144, id)->call, "DL1AAX");
    EXPECT_FALSE(a.log.row(k144, id)->errQso);
    EXPECT_EQ(a.log.totals(k144), (BandTotals{321, 321, 1}));
    EXPECT_EQ(a.store->queuedCount(), 1);
    syncOnce(*a.store, server);
    syncOnce(*b.store, server);
    EXPECT_EQ(b.store->remoteQsos(k144).at(0).row.call, "DL1AAX");
    EXPECT_EQ(b.store->remoteQsos(k144).at(0).rev, 3);
    EXPECT_EQ(a.store->digest(), server.digest());
    EXPECT_EQ(b.store->digest(), server.digest());
}

TEST(SharedStore, OfflineSerialsContinueFromTheHighestKnownAndDoublesAreFlagged) {
    test::TempDir dir;
    MemoryServer server;
    Position a(dir, "A"), b(dir, "B");
    a.log.addQso(k144, qso("DL1AAA", 1), {});
    syncOnce(*a.store, server);
    syncOnce(*b.store, server);
    EXPECT_EQ(b.store->highestSerial(k144), 1);
    // Both log number 2 while apart; neither is renumbered.
    a.log.addQso(k144, qso("DL2AAA", 2), {});
    b.log.addQso(k144, qso("DL3BBB", b.store->highestSerial(k144) + 1), {});
    RowId deleted = b.log.addQso(k144, qso("DL4BBB", 1), {});
    b.log.setErrQso(k144, deleted, true, {});
    for (auto* p : {&a, &b, &a})
        syncOnce(*p->store, server);
    // Both see the station's figures of the band: three live QSOs, one
    // deleted; every locator is in the same square.
    EXPECT_EQ(a.store->stationFigures(k144), (StationFigures{3, 321 + 342 + 342, 342, 1}));
    EXPECT_EQ(b.store->stationFigures(k144), a.store->stationFigures(k144));
    for (auto* p : {&a, &b}) {
        auto doubles = p->store->doubleSerials(k144);
        ASSERT_EQ(doubles.size(), 1u);
        EXPECT_EQ(doubles[0].qsoNr, 2);
        EXPECT_EQ(doubles[0].uids.size(), 2u);
        EXPECT_EQ(p->store->digest(), server.digest());
    }
}

TEST(SharedStore, EnablingALogQueuesItsRowsOnceAndEmptyingABandSendsMarks) {
    test::TempDir dir;
    MemoryServer server;
    auto log = ContestLog::create(dir / "old.sqlite", NewLogData{"DL0ABC", "JO62QM", "Test"});
    log.addQso(k144, qso("DL1AAA", 1), {});
    log.addQso(k144, qso("DL1AAB", 2), {});
    EXPECT_FALSE(SharedStore::isShared(log.db()));
    SharedStore::enable(log.db(), {"postgresql://u@h/db", "A", "Test"});
    SharedStore::enable(log.db(), {"postgresql://u@h/db", "A", "Test"});
    SharedStore store(log.db());
    EXPECT_EQ(store.queuedCount(), 2);
    syncOnce(store, server);
    log.emptyBand(k144);
    syncOnce(store, server);
    EXPECT_EQ(server.qsos.size(), 2u);
    for (const auto& [uid, q] : server.qsos)
        EXPECT_TRUE(q.row.errQso);
    EXPECT_EQ(store.digest(), server.digest());
    // The emptied band numbers its rows from 1 again; their ids are new, so
    // the server takes them beside the marks instead of holding them already.
    const RowId again = log.addQso(k144, qso("DL1AAC", 1), {});
    EXPECT_EQ(ownKeyOf(store.uidOf(k144, again).value()), std::make_pair(k144, again));
    EXPECT_EQ(syncOnce(store, server).sent, 1);
    EXPECT_EQ(server.qsos.size(), 3u);
    EXPECT_EQ(store.digest(), server.digest());
}

TEST(SharedStore, OnlyIdsOfThisProgramsFormNameARow) {
    using Key = std::optional<std::pair<int, std::int64_t>>;
    const std::pair<std::string, Key> cases[] = {
        {"3fa9c1d2e4b5a6f7-1-123", std::make_pair(1, std::int64_t{123})},
        {"00-14-9", std::make_pair(14, std::int64_t{9})},
        {"0123456789abcdef0123456789abcdef", std::nullopt}, // an older random id
        {"p-1-", std::nullopt},
        {"p--5", std::nullopt},
        {"p-x-5", std::nullopt},
        {"p-123-5", std::nullopt},
        {"-1-5", std::make_pair(1, std::int64_t{5})},
        {"1-5", std::nullopt},
        {"p-1-99999999999999999999", std::nullopt},
    };
    for (const auto& [uid, key] : cases)
        EXPECT_EQ(ownKeyOf(uid), key) << uid;
}

} // namespace
} // namespace orv
