#pragma once

// Several headless positions of one shared contest, each with its own log
// file, its own worker and its own proxy to the test's server, and the
// checks that must hold once a fault has healed.

#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "core/logstore/contest_log.h"
#include "core/shared/shared_store.h"
#include "platform/pg/pg_share_worker.h"
#include "support/fault_proxy.h"
#include "support/pg_cluster.h"
#include "support/temp_dir.h"

namespace orv::test {

ShareWorkerTiming quickTiming();

struct TestPosition {
    std::string name;
    std::filesystem::path file;
    std::unique_ptr<FaultProxy> proxy;
    std::optional<ContestLog> log;
    std::unique_ptr<PgShareWorker> worker;
    // Ids of the QSOs whose commit returned here.
    std::vector<std::string> acked;

    SharedStore store() { return SharedStore(log->db()); }
    // Logs a QSO on the band with the next number this position knows.
    std::string logQso(int band, const std::string& call);
    // Logs a QSO with the number the server holds for this position on the
    // band, as the window gives it; waits (bounded) for the worker to have
    // one above what the position knows, and falls back to the next known.
    std::string logHeldQso(int band, const std::string& call);
    void startWorker();
    void stopWorker();

private:
    std::string logNumbered(int band, const std::string& call, std::int64_t nr);
};

class TestStation {
public:
    explicit TestStation(int positions);
    PgCluster& server() { return pg_; }
    TestPosition& operator[](std::size_t i) { return *positions_.at(i); }
    std::size_t size() const { return positions_.size(); }
    // The server's ids and revisions, read directly.
    std::vector<std::pair<std::string, std::int64_t>> serverSet();
    // Waits (bounded) until every position sent all and holds the server's
    // set; false when the time ran out.
    bool healed(int seconds = 30);
    // The invariants, as gtest failures.
    void checkInvariants();

private:
    TempDir dir_;
    PgCluster pg_;
    std::vector<std::unique_ptr<TestPosition>> positions_;
};

} // namespace orv::test
