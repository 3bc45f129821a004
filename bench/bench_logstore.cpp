// How fast a band loads from a log and how long one durable QSO commit takes.
// The baseline steps through the same rows with bare SQLite and converts
// nothing, so the difference is the price of the QsoRow structs.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

#include <unistd.h>

#include "core/logstore/contest_log.h"
#include "core/util/sqlite.h"

using namespace orv;

namespace {

constexpr int k144 = 1;

std::filesystem::path benchFolder() {
    auto p = std::filesystem::temp_directory_path() /
             ("orv-bench-logstore-" + std::to_string(::getpid()));
    std::filesystem::create_directories(p);
    return p;
}

// A log whose 144 MHz band holds `rows` QSOs with realistic field contents.
std::filesystem::path logWith(int rows) {
    const auto path = benchFolder() / ("rows" + std::to_string(rows) + ".sqlite");
    if (std::filesystem::exists(path))
        return path;
    auto log = ContestLog::create(path, NewLogData{"DL1ABC", "JO62QM", "Bench", {}});
    sql::Transaction tx(log.db());
    auto st = log.db().prepare(
        "INSERT INTO \"144MHz\" (Call, Locator, QRG, DatTime, RSTgeg, QSONr, RSTerh, QRB, QSL, "
        "Notice, Mod, Dupe, Name, ModRX, AusBr, ErrQSO, OPCall) VALUES (?1, 'JN58TD', 144, "
        "'2026-05-02 14:30:00', '59', ?2, ?3, ?4, 0, 'remark', 'SSB', 0, 'Name', 'SSB', 'TRO', 0, "
        "'DL1ABC')");
    for (int i = 1; i <= rows; ++i) {
        st.bind(1, "DL" + std::to_string(i) + "XYZ")
            .bind(2, i)
            .bind(3, "59" + std::to_string(i % 1000))
            .bind(4, i % 1500);
        st.run();
    }
    tx.commit();
    return path;
}

void BM_LoadBand(benchmark::State& state) {
    const int rows = static_cast<int>(state.range(0));
    auto log = ContestLog::open(logWith(rows)).value();
    for (auto _ : state) {
        auto r = log.rows(k144);
        benchmark::DoNotOptimize(r.data());
    }
    state.SetItemsProcessed(state.iterations() * rows);
}
BENCHMARK(BM_LoadBand)->Arg(20000)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_BaselineStepBand(benchmark::State& state) {
    const int rows = static_cast<int>(state.range(0));
    sql::Db db(logWith(rows).string(), sql::Db::Mode::ReadOnly);
    for (auto _ : state) {
        auto st = db.prepare("SELECT rowid, * FROM \"144MHz\" ORDER BY QSONr, rowid");
        std::int64_t n = 0;
        while (st.step())
            n += st.int64(6);
        benchmark::DoNotOptimize(n);
    }
    state.SetItemsProcessed(state.iterations() * rows);
}
BENCHMARK(BM_BaselineStepBand)->Arg(20000)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_FirstLiveByCall(benchmark::State& state) {
    auto log = ContestLog::open(logWith(100000)).value();
    int i = 0;
    for (auto _ : state) {
        auto r = log.firstLiveByCall(k144, "DL" + std::to_string(++i % 100000 + 1) + "XYZ");
        benchmark::DoNotOptimize(r);
    }
}
BENCHMARK(BM_FirstLiveByCall)->Unit(benchmark::kMicrosecond);

// One acknowledged QSO: row and totals in one transaction with a full sync.
void BM_AddQso(benchmark::State& state) {
    const auto path = benchFolder() / "commit.sqlite";
    removeLogFile(path);
    auto log = ContestLog::create(path, NewLogData{"DL1ABC", "JO62QM", "Bench", {}});
    QsoRow row;
    row.call = "OK1KHL";
    row.locator = "JN69QR";
    row.qrg = 144;
    std::int64_t nr = 0;
    for (auto _ : state) {
        row.qsoNr = ++nr;
        log.addQso(k144, row, BandTotals{nr * 10, 300, 1});
    }
}
BENCHMARK(BM_AddQso)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::filesystem::remove_all(benchFolder());
    return 0;
}
