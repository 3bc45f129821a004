#include "station.h"

#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <set>
#include <thread>

#include "platform/pg/pg_server.h"

namespace orv::test {

ShareWorkerTiming quickTiming() {
    ShareWorkerTiming t;
    t.slowPollMs = 1000;
    t.fileCheckMs = 50;
    t.firstRetryMs = 100;
    t.longestRetryMs = 500;
    t.timeouts.connectSeconds = 2;
    t.timeouts.statementMs = 1500;
    return t;
}

std::string TestPosition::logQso(int band, const std::string& call) {
    return logNumbered(band, call, store().highestSerial(band) + 1);
}

std::string TestPosition::logHeldQso(int band, const std::string& call) {
    worker->watchBand(band);
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    std::int64_t nr = store().highestSerial(band) + 1;
    while (std::chrono::steady_clock::now() < until) {
        const ShareStatus st = worker->status();
        if (st.heldBand == band && st.heldSerial >= nr) {
            nr = st.heldSerial;
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        nr = std::max(nr, store().highestSerial(band) + 1);
    }
    return logNumbered(band, call, nr);
}

std::string TestPosition::logNumbered(int band, const std::string& call, std::int64_t nr) {
    QsoRow q;
    q.call = call;
    q.locator = "JO62QM";
    q.qrg = 144;
    q.datTime = DateTime{2026, 6, 6, 14, 0, 0};
    q.rstGeg = "59";
    q.qsoNr = nr;
    q.rstErh = "59001";
    q.opCall = name;
    const RowId id = log->addQso(band, q, {});
    acked.push_back(*store().uidOf(band, id));
    if (worker)
        worker->nudge();
    return acked.back();
}

void TestPosition::startWorker() {
    worker = std::make_unique<PgShareWorker>(file, "", quickTiming());
    worker->start();
}

void TestPosition::stopWorker() {
    worker.reset();
}

TestStation::TestStation(int positions) {
    for (int i = 0; i < positions; ++i) {
        auto p = std::make_unique<TestPosition>();
        p->name = std::string(1, static_cast<char>('A' + i));
        p->file = dir_ / (p->name + ".sqlite");
        p->proxy = std::make_unique<FaultProxy>(pg_.port());
        p->log.emplace(ContestLog::create(p->file, NewLogData{"DL0ABC", "JO62QM", "Test"}));
        SharedStore::enable(p->log->db(), {pg_.address(p->proxy->port()), p->name, "Test"});
        p->startWorker();
        positions_.push_back(std::move(p));
    }
}

std::vector<std::pair<std::string, std::int64_t>> TestStation::serverSet() {
    PgServer direct(pg_.address(), "", "Test");
    return direct.idsAndRevisions();
}

bool TestStation::healed(int seconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (std::chrono::steady_clock::now() < end) {
        try {
            const ShareDigest server = digestOf(serverSet());
            bool all = true;
            for (auto& p : positions_) {
                auto s = p->store();
                all = all && s.queuedCount() == 0 && s.digest() == server;
            }
            if (all)
                return true;
        } catch (const SharedServerError&) {
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return false;
}

void TestStation::checkInvariants() {
    const auto server = serverSet();
    std::set<std::string> serverIds;
    for (const auto& [uid, rev] : server)
        EXPECT_TRUE(serverIds.insert(uid).second) << "twice on the server: " << uid;
    // The union of the own rows of all positions is the server's set, and
    // no id is own at two positions.
    std::set<std::string> own;
    std::map<int, std::vector<DoubleSerial>> flagged;
    for (std::size_t i = 0; i < positions_.size(); ++i) {
        auto& p = *positions_[i];
        auto s = p.store();
        for (int b = 0; b < kBandCount; ++b) {
            for (const auto& r : p.log->rows(b)) {
                auto uid = s.uidOf(b, r.rowId);
                ASSERT_TRUE(uid.has_value()) << "own row without id at " << p.name;
                EXPECT_TRUE(own.insert(*uid).second) << "own at two positions: " << *uid;
            }
            // Every position flags the same double numbers.
            auto d = s.doubleSerials(b);
            if (i == 0)
                flagged[b] = d;
            else {
                EXPECT_EQ(d.size(), flagged[b].size()) << p.name << " band " << b;
                for (std::size_t k = 0; k < std::min(d.size(), flagged[b].size()); ++k)
                    EXPECT_EQ(d[k].uids, flagged[b][k].uids);
            }
        }
        EXPECT_EQ(s.digest(), digestOf(server)) << "cache of " << p.name;
        for (const auto& uid : p.acked)
            EXPECT_TRUE(serverIds.count(uid)) << "acknowledged QSO missing: " << uid;
    }
    EXPECT_EQ(own, serverIds);
}

} // namespace orv::test
