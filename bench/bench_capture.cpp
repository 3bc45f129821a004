// The capture against bare SQLite, measured side by side in one run:
//  - commit of one QSO into a band of 20,000 vs. a bare INSERT + COMMIT with
//    the same durability settings;
//  - loading a band of 20,000 vs. a bare SELECT of the rows in QSONr order;
//  - the worked-before search per key stroke over 20,000 calls;
//  - what ten bands of 20,000 QSOs cost held in memory, against the same
//    rows as bare structs.
#include <benchmark/benchmark.h>

#include <malloc.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "core/capture/capture.h"
#include "core/logstore/contest_log.h"
#include "core/util/sqlite.h"
#include "log_fixture.h"

using namespace orv;

namespace {

using namespace orv::bench;

void BM_BareInsertCommit(benchmark::State& state) {
    Fixture f;
    sql::Db& db = f.log->db();
    auto st = db.prepare(
        "INSERT INTO \"144MHz\" (Call, Locator, QRG, DatTime, RSTgeg, QSONr, RSTerh, QRB, QSL, "
        "Notice, Mod, Dupe, Name, ModRX, AusBr, ErrQSO, OPCall) VALUES (?1, 'JN88EF', 144, "
        "'2026-05-02 10:00:00', '59', ?2, '59001', 155, 0, '', 'SSB', 0, '', 'SSB', '', 0, '')");
    int n = kRows;
    for (auto _ : state) {
        ++n;
        sql::Transaction tx(db);
        st.bind(1, "B" + std::to_string(n)).bind(2, n);
        st.run();
        tx.commit();
    }
}

void BM_CaptureCommit(benchmark::State& state) {
    Fixture f;
    CaptureConfig cfg;
    cfg.ownLocator = "JN78DF";
    Capture capture(*f.log, cfg, f.clock, f.dialogs, f.texts);
    capture.selectBand(k144);
    commitQsos(state, capture);
}

struct PlainRow {
    std::string call, locator, datTime, rstGeg, rstErh, notice, mod, name, modRx, ausBr, opCall;
    std::int64_t qrg, qsoNr, qrb;
    bool qsl, dupe, errQso;
};

void BM_BareSelect(benchmark::State& state) {
    Fixture f;
    for (auto _ : state) {
        std::vector<PlainRow> rows;
        auto st = f.log->db().prepare("SELECT * FROM \"144MHz\" ORDER BY QSONr");
        while (st.step())
            rows.push_back(PlainRow{st.text(0), st.text(1), st.text(3), st.text(4), st.text(6),
                                    st.text(9), st.text(10), st.text(12), st.text(13), st.text(14),
                                    st.text(16), st.int64(2), st.int64(5), st.int64(7),
                                    st.int64(8) != 0, st.int64(11) != 0, st.int64(15) != 0});
        benchmark::DoNotOptimize(rows.data());
    }
}

void BM_LoadBand(benchmark::State& state) {
    Fixture f;
    CaptureConfig cfg;
    cfg.ownLocator = "JN78DF";
    Capture capture(*f.log, cfg, f.clock, f.dialogs, f.texts);
    // A held band would be swapped in: each round reads the file.
    std::array<bool, kBandCount> all;
    all.fill(true);
    for (auto _ : state) {
        capture.bandsChangedElsewhere(all);
        capture.selectBand(k144);
        benchmark::DoNotOptimize(capture.state().rows().data());
    }
}

void BM_WorkedBeforeKeyStroke(benchmark::State& state) {
    Fixture f;
    CaptureConfig cfg;
    cfg.ownLocator = "JN78DF";
    Capture capture(*f.log, cfg, f.clock, f.dialogs, f.texts);
    capture.selectBand(k144);
    const char* typed[] = {"K19", "K199", "K1999", "K19999", "9AB", "XYZ"};
    std::size_t i = 0;
    for (auto _ : state) {
        auto lines = capture.workedBeforeLines(typed[i++ % 6], nullptr);
        benchmark::DoNotOptimize(lines.data());
    }
}

// Bytes in use on the heap, large blocks (mapped on their own) included;
// freed blocks leave it at once, where resident memory would keep them.
double heapMiB() {
    const struct mallinfo2 m = mallinfo2();
    return static_cast<double>(m.uordblks + m.hblkhd) / 1048576.0;
}

// Ten bands of 20,000 QSOs loaded by the worker, then held.
void BM_TenBandsHeld(benchmark::State& state) {
    Fixture f;
    for (int b = 0; b < kBandCount; ++b)
        if (b != k144)
            f.log->db().exec("INSERT INTO " + sql::quoteIdent(band(b).table) +
                             " SELECT * FROM \"144MHz\"");
    CaptureConfig cfg;
    cfg.ownLocator = "JN78DF";
    double heldMiB = 0, heapGrowthMiB = 0, bareMiB = 0;
    for (auto _ : state) {
        const double before = heapMiB();
        {
            // The baseline: the same rows as plain structs, nothing else.
            std::vector<std::vector<QsoRow>> bare;
            for (int b = 0; b < kBandCount; ++b)
                bare.push_back(f.log->rows(b));
            bareMiB = heapMiB() - before;
        }
        const double start = heapMiB();
        Capture capture(*f.log, cfg, f.clock, f.dialogs, f.texts);
        capture.selectBand(k144);
        capture.preloadBands(nullptr);
        capture.waitForPreload();
        heldMiB = static_cast<double>(capture.heldBytes()) / 1048576.0;
        heapGrowthMiB = heapMiB() - start;
        for (int b = 0; b < kBandCount; ++b)
            if (!capture.holds(b))
                state.SkipWithError("a band is not held");
    }
    state.counters["held_MiB"] = heldMiB;
    state.counters["heap_growth_MiB"] = heapGrowthMiB;
    state.counters["bare_rows_heap_MiB"] = bareMiB;
}

} // namespace

BENCHMARK(BM_TenBandsHeld)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_BareInsertCommit)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly();
BENCHMARK(BM_CaptureCommit)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly();
BENCHMARK(BM_BareSelect)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly();
BENCHMARK(BM_LoadBand)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly();
BENCHMARK(BM_WorkedBeforeKeyStroke)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly();
BENCHMARK_MAIN();
