// Keying accuracy and cost, measured in one run on a key line that stamps
// each line operation with the monotonic clock, while another thread keeps a
// core busy:
//  - BM_KeyDeadline: the keyer as the program runs it (absolute deadlines,
//    sleep in slices to just before an edge, then a short spin);
//  - BM_KeyRelativeSleep: the baseline, the same schedule with plain
//    relative sleeps of n units after each operation;
//  - BM_KeySpin: waiting by spinning on the clock for the whole wait, the
//    way the program's ancestor kept its timing.
// Counters: the error of each edge against its ideal time (p50, p99, max, in
// microseconds) and the CPU time of the keying thread as a share of the
// transmission's wall time.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <ctime>
#include <string>
#include <thread>
#include <vector>

#include "core/keying/key_port.h"
#include "core/keying/morse_engine.h"
#include "core/keying/morse_table.h"

using namespace orv;
using namespace orv::keying;

namespace {

double cpuSeconds() {
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return static_cast<double>(ts.tv_sec) + static_cast<double>(ts.tv_nsec) * 1e-9;
}

class StampingLine final : public KeyLineDevice {
public:
    explicit StampingLine(MonotonicClock& clock) : clock_(clock) {}
    bool open(const std::string&) override { return true; }
    bool escape(LineCode) override {
        stamps.push_back(clock_.now());
        return true;
    }
    void close() override {}
    std::vector<double> stamps;

private:
    MonotonicClock& clock_;
};

// Jumps straight to each deadline: gives the ideal time of every operation.
class IdealClock final : public MonotonicClock {
public:
    double now() override { return t_; }
    void sleepUntil(double t) override { t_ = std::max(t_, t); }
    void relax() override { t_ += 1e-9; }

private:
    double t_ = 0;
};

// The real clock that never sleeps: the whole wait is a spin.
class SpinClock final : public MonotonicClock {
public:
    double now() override { return real_.now(); }
    void sleepUntil(double) override {}

private:
    SteadyClock real_;
};

const std::string kCq = "CQ CQ TEST";
const std::string& longText() {
    static const std::string t = [] {
        const std::string words = "CQ TEST DE DL0XYZ JO62QM 599001 TU 73 QRZ? ";
        std::string s;
        while (s.size() < 200)
            s += words;
        return s.substr(0, 200);
    }();
    return t;
}

// Offsets of the operations from PTT on, as the keyer schedules them.
std::vector<double> idealSchedule(const std::string& text, int wpm) {
    IdealClock clock;
    StampingLine line(clock);
    KeyPort port(line, [](int) { return std::string(); });
    (void)port.OpenAndKeyPort(1, 1);
    line.stamps.clear();
    sendMorse({text, wpm, 1, keyLinesFor(0)}, 0, port, clock, [] { return false; }, {0.1, 0});
    return line.stamps;
}

enum Method { Deadline, RelativeSleep, Spin };

void keyText(benchmark::State& state, Method method) {
    const std::string& text = state.range(0) == 0 ? kCq : longText();
    const int wpm = static_cast<int>(state.range(1));
    const auto ideal = idealSchedule(text, wpm);

    std::atomic<bool> busy{true};
    std::thread load([&busy] {
        volatile unsigned long x = 0;
        while (busy.load(std::memory_order_relaxed))
            x = x + 1;
    });
    SteadyClock steady;
    SpinClock spin;
    MonotonicClock& clock = method == Spin ? static_cast<MonotonicClock&>(spin) : steady;
    StampingLine line(steady);
    KeyPort port(line, [](int) { return std::string(); });
    std::vector<double> errors;
    double cpu = 0, wall = 0;
    for (auto _ : state) {
        (void)port.OpenAndKeyPort(1, 1);
        line.stamps.clear();
        const double t0 = steady.now();
        const double c0 = cpuSeconds();
        if (method == RelativeSleep) {
            // The same operations, each after a relative sleep of its gap.
            double previous = 0;
            for (double at : ideal) {
                const double gap = at - previous;
                if (gap > 0)
                    std::this_thread::sleep_for(std::chrono::duration<double>(gap));
                port.escape(CLRDTR);
                previous = at;
            }
        } else {
            sendMorse({text, wpm, 1, keyLinesFor(0)}, t0, port, clock, [] { return false; });
        }
        cpu += cpuSeconds() - c0;
        const double elapsed = steady.now() - t0;
        wall += elapsed;
        state.SetIterationTime(elapsed);
        port.ReleasePort();
        const std::size_t n = std::min(ideal.size(), line.stamps.size());
        for (std::size_t i = 0; i < n; ++i)
            errors.push_back(std::abs(line.stamps[i] - t0 - ideal[i]) * 1e6);
    }
    busy = false;
    load.join();
    std::sort(errors.begin(), errors.end());
    auto pct = [&errors](double p) {
        return errors.empty() ? 0.0
                              : errors[std::min(errors.size() - 1,
                                                static_cast<std::size_t>(p * errors.size()))];
    };
    state.counters["edges"] = static_cast<double>(errors.size());
    state.counters["p50_us"] = pct(0.50);
    state.counters["p99_us"] = pct(0.99);
    state.counters["max_us"] = errors.empty() ? 0 : errors.back();
    state.counters["cpu_pct"] = wall > 0 ? 100.0 * cpu / wall : 0;
}

void BM_KeyDeadline(benchmark::State& s) {
    keyText(s, Deadline);
}
void BM_KeyRelativeSleep(benchmark::State& s) {
    keyText(s, RelativeSleep);
}
void BM_KeySpin(benchmark::State& s) {
    keyText(s, Spin);
}

// Arguments: text (0 "CQ CQ TEST", 1 the 200-character text), WPM.
void args(benchmark::internal::Benchmark* b) {
    for (int text : {0, 1})
        for (int wpm : {12, 25, 40})
            b->Args({text, wpm});
    b->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK(BM_KeyDeadline)->Apply(args);
BENCHMARK(BM_KeyRelativeSleep)->Apply(args);
BENCHMARK(BM_KeySpin)->Apply(args);

BENCHMARK_MAIN();
