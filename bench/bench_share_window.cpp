// Key presses in the real window, offscreen, while QSOs are logged through
// it one after the other: on a log alone (the baseline, in the same run) and
// on a shared log whose worker exchanges with a PostgreSQL server while four
// other positions log every 100 ms, first with the link up, then with this
// position's link reset (an outage: the queue grows, the others go on).
// Each benchmark reports the median, the 99th percentile and the maximum.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <atomic>
#include <chrono>
#include <fstream>
#include <memory>
#include <thread>

#include "core/logstore/contest_log.h"
#include "core/shared/shared_store.h"
#include "platform/pg/pg_share_worker.h"
#include "platform/qt_dialogs.h"
#include "support/fault_proxy.h"
#include "support/pg_cluster.h"
#include "ui/log_dialog.h"
#include "ui/main_window.h"
#include "ui/startup.h"
#include "window_bench.h"

using namespace orv;
using Clock_ = std::chrono::steady_clock;

namespace {

constexpr int k144 = 1;

struct Other {
    std::filesystem::path file;
    std::unique_ptr<PgShareWorker> worker;
};

// The server, four other positions that log on their own, and the window on
// a log of its own, shared or not.
struct Program {
    std::filesystem::path dir = bench::tempFolder("share");
    test::PgCluster pg;
    test::FaultProxy proxy{pg.port()};
    bench::FixedClock clock;
    SilentBeeper beeper;
    platform::QtDialogs dialogs;
    std::unique_ptr<ui::Startup> startup;
    std::vector<Other> others;
    std::vector<std::thread> loggers;
    std::atomic<bool> stop{false};

    explicit Program(bool shared) {
        std::filesystem::create_directories(dir / "Logs");
        std::ofstream(dir / "OrvantaContest.INI") << "[QB]\nEinverstanden=-1\nStartQRG=1\n";
        {
            ContestLog log = ContestLog::create(dir / "Logs" / "bench.sqlite",
                                                NewLogData{"OE1ABC", "JN78DF", "Bench", {}});
            if (shared)
                SharedStore::enable(log.db(), {pg.address(proxy.port()), "W", "Bench"});
        }
        for (int i = 0; shared && i < 4; ++i) {
            Other o;
            o.file = dir / ("O" + std::to_string(i) + ".sqlite");
            ContestLog log = ContestLog::create(o.file, NewLogData{"OE1ABC", "JN78DF", "Bench"});
            SharedStore::enable(log.db(), {pg.address(), "O" + std::to_string(i), "Bench"});
            o.worker = std::make_unique<PgShareWorker>(o.file, "");
            o.worker->start();
            others.push_back(std::move(o));
        }
        for (std::size_t i = 0; i < others.size(); ++i)
            loggers.emplace_back([this, i] {
                ContestLog log = ContestLog::open(others[i].file).value();
                for (std::int64_t n = 1; !stop; ++n) {
                    QsoRow q;
                    q.call = "G" + std::to_string(i) + "X" + std::string(1, 'A' + n % 26) +
                             std::string(1, 'A' + (n / 26) % 26);
                    q.locator = "IO91VL";
                    q.qsoNr = 1000 * static_cast<std::int64_t>(i + 1) + n;
                    q.rstGeg = "59";
                    q.rstErh = "59001";
                    log.addQso(k144, q, {});
                    others[i].worker->nudge();
                    std::this_thread::sleep_for(std::chrono::milliseconds(100));
                }
            });
        platform::QtDialogs::setRecording(true);
        startup = std::make_unique<ui::Startup>(dir, dialogs, clock, beeper);
        startup->runLogDialog = [](ui::LogDialog& d) {
            d.openExisting("bench");
            return d.result() == QDialog::Accepted;
        };
        if (startup->run() != ui::Startup::Outcome::Run)
            std::abort();
        startup->window()->selectBand(k144);
        startup->window()->activateWindow();
        QApplication::processEvents();
    }
    ~Program() {
        stop = true;
        for (auto& t : loggers)
            t.join();
        startup.reset();
        others.clear();
        std::filesystem::remove_all(dir);
    }
};

// Types calls key by key (measured) and logs each (not measured).
void typeAndLog(benchmark::State& state, Program& p) {
    ui::MainWindow* w = p.startup->window();
    int qso = 0;
    const std::vector<double> ms = bench::typeCallsAndLog(state, *w, qso);
    bench::reportPercentiles(state, ms);
    state.counters["qsos"] = static_cast<double>(p.startup->log()->rowCount(k144));
}

void BM_KeyPressAlone(benchmark::State& state) {
    Program p(false);
    typeAndLog(state, p);
}

void BM_KeyPressShared(benchmark::State& state) {
    Program p(true);
    if (state.range(0))
        p.proxy.reset();
    typeAndLog(state, p);
    SharedStore store(p.startup->log()->db());
    state.counters["queued"] = static_cast<double>(store.queuedCount());
    state.counters["others_cached"] = static_cast<double>(store.remoteQsos(k144).size());
}

} // namespace

BENCHMARK(BM_KeyPressAlone)->UseManualTime()->Iterations(1200)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_KeyPressShared)
    ->Arg(0)
    ->Arg(1)
    ->UseManualTime()
    ->Iterations(1200)
    ->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv) {
    return orv::bench::runWindowBenchmarks(argc, argv, [] {});
}
