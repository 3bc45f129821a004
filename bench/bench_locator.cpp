#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "core/locator/locator.h"
#include "core/locator/square_window.h"

// LocBerechnen is called for every keystroke in a locator field and for every
// row when a log grid is filled, so its cost per pair is what matters. The
// baselines work on the same pairs, already converted to coordinates.
namespace {

struct Pairs {
    std::vector<std::string> own, other;
    std::vector<orv::LocPosition> p1, p2;
};

const Pairs& pairs() {
    static const Pairs ps = [] {
        Pairs r;
        std::mt19937 rng(4711);
        auto pick = [&](char lo, char hi) {
            return static_cast<char>(lo + std::uniform_int_distribution<int>(0, hi - lo)(rng));
        };
        auto locator = [&] {
            return std::string{pick('A', 'R'), pick('A', 'R'), pick('0', '9'),
                               pick('0', '9'), pick('A', 'X'), pick('A', 'X')};
        };
        for (int i = 0; i < 1024; ++i) {
            r.own.push_back(locator());
            r.other.push_back(locator());
            r.p1.push_back(orv::LocKoordinaten(r.own.back()));
            r.p2.push_back(orv::LocKoordinaten(r.other.back()));
        }
        return r;
    }();
    return ps;
}

void BM_LocBerechnen(benchmark::State& state) {
    const Pairs& ps = pairs();
    std::size_t i = 0;
    for (auto _ : state) {
        std::string a = ps.own[i], b = ps.other[i]; // rewritten in place by the call
        benchmark::DoNotOptimize(orv::LocBerechnen(a, b));
        i = (i + 1) % ps.own.size();
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_LocBerechnen);

// Only the copy of the two strings that LocBerechnen's callers make.
void BM_CopyTwoLocators(benchmark::State& state) {
    const Pairs& ps = pairs();
    std::size_t i = 0;
    for (auto _ : state) {
        std::string a = ps.own[i], b = ps.other[i];
        benchmark::DoNotOptimize(a.data());
        benchmark::DoNotOptimize(b.data());
        i = (i + 1) % ps.own.size();
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_CopyTwoLocators);

void BM_LocQRBAndQTF(benchmark::State& state) {
    const Pairs& ps = pairs();
    std::size_t i = 0;
    for (auto _ : state) {
        const auto& a = ps.p1[i];
        const auto& b = ps.p2[i];
        benchmark::DoNotOptimize(orv::LocQRB(a.lat, a.lon, b.lat, b.lon));
        benchmark::DoNotOptimize(orv::LocQTF(a.lat, a.lon, b.lat, b.lon));
        i = (i + 1) % ps.p1.size();
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_LocQRBAndQTF);

// Baseline: a plain haversine distance and atan2 bearing on the same points.
void BM_HaversineBaseline(benchmark::State& state) {
    const Pairs& ps = pairs();
    constexpr double rad = 3.14159265358979323846 / 180;
    std::size_t i = 0;
    for (auto _ : state) {
        const double la1 = ps.p1[i].lat * rad, la2 = ps.p2[i].lat * rad;
        const double dla = la2 - la1, dlo = (ps.p2[i].lon - ps.p1[i].lon) * rad;
        const double h = std::sin(dla / 2) * std::sin(dla / 2) +
                         std::cos(la1) * std::cos(la2) * std::sin(dlo / 2) * std::sin(dlo / 2);
        benchmark::DoNotOptimize(6371.0 * 2 * std::asin(std::sqrt(h)));
        benchmark::DoNotOptimize(std::atan2(std::sin(dlo) * std::cos(la2),
                                            std::cos(la1) * std::sin(la2) -
                                                std::sin(la1) * std::cos(la2) * std::cos(dlo)));
        i = (i + 1) % ps.p1.size();
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_HaversineBaseline);

void BM_LocUnt(benchmark::State& state) {
    orv::SilentBeeper beeper;
    const std::string worked = "JN78,JN88,JN79,JO62,JO50,JN69,JN67,JN97,KN08,JN58,JN59,JO70";
    for (auto _ : state)
        benchmark::DoNotOptimize(orv::LocUnt("JN78DF", worked, beeper));
}
BENCHMARK(BM_LocUnt);

} // namespace

BENCHMARK_MAIN();
