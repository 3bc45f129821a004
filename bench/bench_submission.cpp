// How fast one band of 10,000 QSOs is evaluated (with the country of every
// call from the real country list) and written as an EDI file. Baselines in
// the same run: reading the same rows as QsoRow structs, the country
// look-ups alone, and writing a file of the same size.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <random>
#include <string>

#include <unistd.h>

#include "core/logstore/contest_log.h"
#include "core/reference/country_list.h"
#include "core/submission/edi.h"
#include "core/submission/evaluation.h"
#include "core/util/file_io.h"
#include "core/util/sqlite.h"
#include "core/util/text.h"

using namespace orv;

namespace {

constexpr int k144 = 1;
constexpr int kRows = 10000;

std::filesystem::path benchFolder() {
    static const auto p = [] {
        auto f = std::filesystem::temp_directory_path() /
                 ("orv-bench-submission-" + std::to_string(::getpid()));
        std::filesystem::create_directories(f);
        return f;
    }();
    return p;
}

// Calls of many countries of the region, so that the country table and
// the prefix look-up do real work.
const char* const kPrefixes[] = {"DL", "OK", "OE", "SP", "I",  "F",  "G",  "PA", "ON",
                                 "HA", "S5", "9A", "YU", "LZ", "YO", "UR", "OM", "HB9",
                                 "OZ", "SM", "LA", "OH", "EA", "CT", "EI", "GM", "LY"};

std::string randomLocator(std::mt19937& rng) {
    std::uniform_int_distribution<int> f(0, 17), d(0, 9), s(0, 23);
    std::string l;
    l += static_cast<char>('A' + f(rng));
    l += static_cast<char>('A' + f(rng));
    l += static_cast<char>('0' + d(rng));
    l += static_cast<char>('0' + d(rng));
    l += static_cast<char>('A' + s(rng));
    l += static_cast<char>('A' + s(rng));
    return l;
}

// A log whose 144 MHz band holds 10,000 QSOs: every 50th deleted, every
// 40th a duplicate, SSB and CW mixed, the ODX on a row of its own.
std::filesystem::path benchLog() {
    const auto path = benchFolder() / "Bench.sqlite";
    if (std::filesystem::exists(path))
        return path;
    auto log = ContestLog::create(path, NewLogData{"OE1ABC", "JN78DF", "Bench", {}});
    std::mt19937 rng(4711);
    sql::Transaction tx(log.db());
    auto st = log.db().prepare(
        "INSERT INTO \"144MHz\" (Call, Locator, QRG, DatTime, RSTgeg, QSONr, RSTerh, QRB, QSL, "
        "Notice, Mod, Dupe, Name, ModRX, AusBr, ErrQSO, OPCall) VALUES (?1, ?2, 144, "
        "'2026-05-02 14:30:00', ?3, ?4, ?5, ?6, 0, '', ?7, ?8, 'Name', ?7, 'TR', ?9, 'OE1ABC')");
    for (int i = 1; i <= kRows; ++i) {
        const bool cw = i % 3 == 0;
        const std::string call = std::string(kPrefixes[i % std::size(kPrefixes)]) +
                                 std::to_string(i % 10) + "A" + static_cast<char>('A' + i % 26) +
                                 static_cast<char>('A' + i / 26 % 26);
        char serial[8];
        std::snprintf(serial, sizeof serial, "%03d", i % 1000);
        st.bind(1, call)
            .bind(2, randomLocator(rng))
            .bind(3, cw ? "599" : "59")
            .bind(4, i)
            .bind(5, std::string(cw ? "599" : "59") + serial)
            .bind(6, 1 + i % 1200)
            .bind(7, cw ? "CW" : "SSB")
            .bind(8, i % 40 == 0 ? 1 : 0)
            .bind(9, i % 50 == 0 ? 1 : 0);
        st.run();
    }
    log.db().exec("UPDATE \"MyData\" SET \"ODX144\" = 1199, \"ODXNr144\" = 1199");
    tx.commit();
    return path;
}

const CountryList& countries() {
    static const CountryList list = [] {
        const auto db = benchFolder() / "QBCountry.sqlite";
        if (!importCountryFile(db, "/usr/share/hamradio-files/cty.dat", CountryFormat::CtyDat))
            throw std::runtime_error("cty.dat refused");
        return CountryList::load(db);
    }();
    return list;
}

void BM_EvaluateBand(benchmark::State& state) {
    auto log = ContestLog::open(benchLog()).value();
    const CountryList& c = countries();
    for (auto _ : state) {
        Evaluation ev = evaluate(log, k144, &c);
        benchmark::DoNotOptimize(ev.points);
    }
    state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(BM_EvaluateBand)->Unit(benchmark::kMillisecond);

void BM_BaselineReadRows(benchmark::State& state) {
    auto log = ContestLog::open(benchLog()).value();
    for (auto _ : state) {
        auto rows = log.rows(k144);
        benchmark::DoNotOptimize(rows.data());
    }
    state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(BM_BaselineReadRows)->Unit(benchmark::kMillisecond);

void BM_BaselineCountryLookups(benchmark::State& state) {
    auto log = ContestLog::open(benchLog()).value();
    const auto rows = log.rows(k144);
    const CountryList& c = countries();
    for (auto _ : state) {
        std::size_t found = 0;
        for (const auto& q : rows)
            found += c.lookup(q.call).has_value();
        benchmark::DoNotOptimize(found);
    }
    state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(BM_BaselineCountryLookups)->Unit(benchmark::kMillisecond);

const Evaluation& benchEvaluation() {
    static const Evaluation ev = [] {
        auto log = ContestLog::open(benchLog()).value();
        return evaluate(log, k144, &countries());
    }();
    return ev;
}

EdiBoxes benchBoxes() {
    EdiBoxes boxes{};
    ediFillOnOpen(benchEvaluation(), boxes);
    ediFillFromEvaluation(benchEvaluation(), boxes);
    return boxes;
}

void BM_EdiText(benchmark::State& state) {
    const Evaluation& ev = benchEvaluation();
    const EdiBoxes boxes = benchBoxes();
    for (auto _ : state) {
        auto t = ediText(ev, boxes, "CW");
        benchmark::DoNotOptimize(t.value().data());
    }
    state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(BM_EdiText)->Unit(benchmark::kMillisecond);

// The whole export: text, Windows-1252, atomic write with its flush to disk.
void BM_EdiExport(benchmark::State& state) {
    const Evaluation& ev = benchEvaluation();
    const EdiBoxes boxes = benchBoxes();
    const auto target = benchFolder() / "bench.EDI";
    for (auto _ : state) {
        auto p = writeEdi(target, ev, boxes, "CW");
        benchmark::DoNotOptimize(p.ok());
    }
    state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(BM_EdiExport)->Unit(benchmark::kMillisecond);

// Writing a file of the same size atomically: the floor of any export.
void BM_BaselineWriteSameSize(benchmark::State& state) {
    const std::string bytes(ediText(benchEvaluation(), benchBoxes(), "CW").value().size(), 'x');
    const auto target = benchFolder() / "baseline.EDI";
    for (auto _ : state)
        fileio::writeAtomic(target, bytes);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}
BENCHMARK(BM_BaselineWriteSameSize)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::filesystem::remove_all(benchFolder());
    return 0;
}
