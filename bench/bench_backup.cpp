// The backup after each change against none, measured side by side in one
// run on a band of 20,000 QSOs:
//  - the commit of one QSO alone;
//  - the same commit while every commit asks the backup worker for a copy,
//    which runs on its own thread and coalesces what comes during a copy;
//  - one whole copy of the log, the work the worker does each time.
#include <benchmark/benchmark.h>

#include "core/backup/backup_worker.h"
#include "core/capture/capture.h"
#include "log_fixture.h"

using namespace orv;
using namespace orv::bench;

namespace {

const FreeSpaceFn plenty = [](const std::filesystem::path&) {
    return std::optional<std::uintmax_t>(1ull << 40);
};

void BM_CommitWithoutBackup(benchmark::State& state) {
    Fixture f;
    CaptureConfig cfg;
    cfg.ownLocator = "JN78DF";
    Capture capture(*f.log, cfg, f.clock, f.dialogs, f.texts);
    capture.selectBand(k144);
    commitQsos(state, capture);
}

void BM_CommitWithBackupAfterEach(benchmark::State& state) {
    Fixture f;
    std::filesystem::create_directories(f.dir / "Stick");
    CaptureConfig cfg;
    cfg.ownLocator = "JN78DF";
    Capture capture(*f.log, cfg, f.clock, f.dialogs, f.texts);
    capture.selectBand(k144);
    BackupWorker worker(nullptr, plenty);
    capture.afterChange = [&] { worker.request(f.path, f.dir / "Stick" / "Bench.sqlite"); };
    commitQsos(state, capture);
    worker.waitIdle();
    state.counters["copies"] = worker.copiesMade();
}

void BM_BackupCopy(benchmark::State& state) {
    Fixture f;
    std::filesystem::create_directories(f.dir / "Stick");
    for (auto _ : state)
        if (BackupCopy(f.path, f.dir / "Stick" / "Bench.sqlite", plenty).outcome !=
            BackupOutcome::Copied)
            state.SkipWithError("copy failed");
}

} // namespace

BENCHMARK(BM_CommitWithoutBackup)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(300);
BENCHMARK(BM_CommitWithBackupAfterEach)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(300);
BENCHMARK(BM_BackupCopy)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_MAIN();
