// A shared contest of five positions on a real PostgreSQL server, each
// through a proxy of its own: what a commit costs at a position (against the
// same commit on a log alone, in the same run), how soon a QSO shows at the
// others, and how long a position with 200 queued QSOs needs to be in sync
// once its link is back.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include "core/logstore/contest_log.h"
#include "core/shared/shared_store.h"
#include "platform/pg/pg_share_worker.h"
#include "support/fault_proxy.h"
#include "support/pg_cluster.h"
#include "support/temp_dir.h"

namespace orv {
namespace {

using Clock = std::chrono::steady_clock;
constexpr int k144 = 1;
constexpr int kPositions = 5;

QsoRow qso(std::int64_t nr) {
    QsoRow q;
    q.call =
        "DL" + std::to_string(nr % 10) + "B" + std::string(1, static_cast<char>('A' + nr % 26));
    q.locator = "JO62QM";
    q.qrg = 144;
    q.datTime = DateTime{2026, 6, 6, 14, 0, 0};
    q.rstGeg = "59";
    q.qsoNr = nr;
    q.rstErh = "59001";
    return q;
}

ShareWorkerTiming timing() {
    ShareWorkerTiming t;
    t.fileCheckMs = 50;
    t.firstRetryMs = 100;
    t.longestRetryMs = 1000;
    return t;
}

struct Position {
    std::filesystem::path file;
    std::unique_ptr<test::FaultProxy> proxy;
    std::unique_ptr<ContestLog> log;
    std::unique_ptr<PgShareWorker> worker;
};

// The station: server, five positions with their workers running.
struct Station {
    test::PgCluster pg;
    test::TempDir dir;
    std::vector<Position> positions;
    explicit Station(ShareWorkerTiming workerTiming = timing()) {
        for (int i = 0; i < kPositions; ++i) {
            Position p;
            p.file = dir / ("P" + std::to_string(i) + ".sqlite");
            p.proxy = std::make_unique<test::FaultProxy>(pg.port());
            p.log = std::make_unique<ContestLog>(
                ContestLog::create(p.file, NewLogData{"DL0ABC", "JO62QM", "Bench"}));
            SharedStore::enable(p.log->db(),
                                {pg.address(p.proxy->port()), "P" + std::to_string(i), "Bench"});
            p.worker = std::make_unique<PgShareWorker>(p.file, "", workerTiming);
            p.worker->start();
            positions.push_back(std::move(p));
        }
    }
    std::int64_t cached(int i) {
        auto st = positions[static_cast<std::size_t>(i)].log->db().prepare(
            "SELECT count(*) FROM ShareRemote");
        st.step();
        return st.int64(0);
    }
};

double at(std::vector<double>& ms, double p) {
    std::sort(ms.begin(), ms.end());
    return ms[std::min(ms.size() - 1,
                       static_cast<std::size_t>(p * static_cast<double>(ms.size())))];
}

void percentiles(benchmark::State& state, std::vector<double> ms) {
    if (ms.empty())
        return;
    state.counters["p50_ms"] = at(ms, 0.5);
    state.counters["p99_ms"] = at(ms, 0.99);
    state.counters["max_ms"] = at(ms, 1.0);
}

double commitMs(ContestLog& log, std::int64_t nr) {
    const auto t0 = Clock::now();
    log.addQso(k144, qso(nr), {});
    return std::chrono::duration<double, std::milli>(Clock::now() - t0).count();
}

// Commits to a log alone and to a shared log by turns, in one loop, so that
// both meet the same moment of this shared machine (its load and clock vary
// more between runs than the two commits differ); range(0) ms of pause
// after each pair, 0 for back to back.
void commitInPairs(benchmark::State& state, ContestLog& alone, ContestLog& shared,
                   PgShareWorker* worker) {
    std::vector<double> aloneMs, sharedMs;
    std::int64_t nr = 0;
    for (auto _ : state) {
        ++nr;
        // Each goes first every other time.
        if (nr % 2) {
            aloneMs.push_back(commitMs(alone, nr));
            sharedMs.push_back(commitMs(shared, nr));
        } else {
            sharedMs.push_back(commitMs(shared, nr));
            aloneMs.push_back(commitMs(alone, nr));
        }
        if (worker)
            worker->nudge();
        if (state.range(0) > 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(state.range(0)));
    }
    const double a50 = at(aloneMs, 0.5), s50 = at(sharedMs, 0.5);
    const double a99 = at(aloneMs, 0.99), s99 = at(sharedMs, 0.99);
    state.counters["alone_p50_ms"] = a50;
    state.counters["shared_p50_ms"] = s50;
    state.counters["ratio_p50"] = s50 / a50;
    state.counters["alone_p99_ms"] = a99;
    state.counters["shared_p99_ms"] = s99;
    state.counters["ratio_p99"] = s99 / a99;
}

// A log alone against a shared log with no link: the triggers' part.
void BM_CommitSharedOffline(benchmark::State& state) {
    test::TempDir dir;
    ContestLog alone =
        ContestLog::create(dir / "Alone.sqlite", NewLogData{"DL0ABC", "JO62QM", "B"});
    ContestLog shared =
        ContestLog::create(dir / "Shared.sqlite", NewLogData{"DL0ABC", "JO62QM", "B"});
    SharedStore::enable(shared.db(), {"postgresql://u@127.0.0.1:1/db", "P", "B"});
    commitInPairs(state, alone, shared, nullptr);
}
BENCHMARK(BM_CommitSharedOffline)
    ->Arg(0)
    ->Arg(20)
    ->Iterations(500)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

// Position 0's shared log, its worker sending and fetching, against a log
// alone at the same position, while the four others log every 50 ms and
// every worker exchanges. The four others stand in for the other PCs of the
// station, so they load these two cores as well.
void BM_CommitWhileFourOthersLog(benchmark::State& state) {
    Station st;
    ContestLog alone =
        ContestLog::create(st.dir / "Alone.sqlite", NewLogData{"DL0ABC", "JO62QM", "B"});
    std::atomic<bool> stop{false};
    std::vector<std::thread> others;
    for (int i = 1; i < kPositions; ++i)
        others.emplace_back([&, i] {
            ContestLog log =
                ContestLog::open(st.positions[static_cast<std::size_t>(i)].file).value();
            std::int64_t nr = 1000 * i;
            while (!stop) {
                log.addQso(k144, qso(++nr), {});
                st.positions[static_cast<std::size_t>(i)].worker->nudge();
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
            }
        });
    auto& p = st.positions[0];
    commitInPairs(state, alone, *p.log, p.worker.get());
    stop = true;
    for (auto& t : others)
        t.join();
}
BENCHMARK(BM_CommitWhileFourOthersLog)
    ->Arg(0)
    ->Arg(20)
    ->Iterations(500)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

// From the commit at position 0 until all four others hold the QSO in their
// cache; back to back (range(0) = 0: the others' workers then wait out the
// gap between rounds that notices start), or range(0) ms after the last.
void BM_QsoShowsAtTheOthers(benchmark::State& state) {
    Station st;
    std::int64_t nr = 0;
    std::vector<double> ms;
    for (auto _ : state) {
        std::this_thread::sleep_for(std::chrono::milliseconds(state.range(0)));
        std::vector<std::int64_t> before;
        for (int i = 1; i < kPositions; ++i)
            before.push_back(st.cached(i));
        const auto t0 = Clock::now();
        st.positions[0].log->addQso(k144, qso(++nr), {});
        st.positions[0].worker->nudge();
        for (int i = 1; i < kPositions; ++i)
            while (st.cached(i) == before[static_cast<std::size_t>(i - 1)] &&
                   Clock::now() - t0 < std::chrono::seconds(10))
                std::this_thread::sleep_for(std::chrono::microseconds(500));
        ms.push_back(std::chrono::duration<double, std::milli>(Clock::now() - t0).count());
    }
    percentiles(state, ms);
}
BENCHMARK(BM_QsoShowsAtTheOthers)
    ->Arg(0)
    ->Arg(300)
    ->Iterations(100)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

// Position 0 cut off (connections reset) while it logs 200 QSOs and for
// `range(0)` seconds in all; then the link comes back by itself, with no
// commit to wake the worker: time until its outbox is empty and the others
// hold all. The workers keep the program's own pauses between attempts, so
// that the long outage lets them grow to their longest, as in a real one.
void BM_CatchUpAfterOutage(benchmark::State& state) {
    for (auto _ : state) {
        Station st{ShareWorkerTiming{}};
        auto& p = st.positions[0];
        p.proxy->reset();
        const auto cut = Clock::now();
        for (int n = 1; n <= 200; ++n)
            p.log->addQso(k144, qso(n), {});
        std::this_thread::sleep_until(cut + std::chrono::seconds(state.range(0)));
        p.proxy->pass();
        const auto t0 = Clock::now();
        bool done = false;
        while (!done && Clock::now() - t0 < std::chrono::seconds(60)) {
            done = SharedStore(p.log->db()).queuedCount() == 0;
            for (int i = 1; i < kPositions && done; ++i)
                done = st.cached(i) == 200;
            if (!done)
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - t0).count());
        state.counters["synced"] = done ? 1 : 0;
    }
}
BENCHMARK(BM_CatchUpAfterOutage)
    ->Arg(1)
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
// Ten minutes: run on its own with --benchmark_filter=CatchUpAfterOutage/600.
BENCHMARK(BM_CatchUpAfterOutage)
    ->Arg(600)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace orv

BENCHMARK_MAIN();
