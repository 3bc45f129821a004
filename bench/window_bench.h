#pragma once

// What the benchmarks of the real window share: percentiles of measured
// times, and a main that runs them offscreen inside a QApplication and ends
// the program's objects while the application still stands.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QWidget>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "core/util/ports.h"

namespace orv::bench {

inline double percentile(std::vector<double> v, double p) {
    if (v.empty())
        return 0;
    std::sort(v.begin(), v.end());
    const auto at = static_cast<std::size_t>(p * static_cast<double>(v.size() - 1) + 0.5);
    return v[std::min(at, v.size() - 1)];
}

// The median, the 99th percentile and the maximum of samples in ms.
inline void reportPercentiles(benchmark::State& state, const std::vector<double>& ms) {
    state.counters["p50_ms"] = percentile(ms, 0.50);
    state.counters["p99_ms"] = percentile(ms, 0.99);
    state.counters["max_ms"] = percentile(ms, 1.0);
}

// The window's clock stands still, so that every run logs the same times.
class FixedClock final : public Clock {
public:
    DateTime now() const override { return DateTime{2026, 5, 2, 14, 30, 0}; }
};

// A new data folder under the system's temporary folder.
inline std::filesystem::path tempFolder(const std::string& name) {
    std::string t =
        (std::filesystem::temp_directory_path() / ("orvanta-bench-" + name + "-XXXXXX")).string();
    if (!mkdtemp(t.data()))
        std::abort();
    return t;
}

// Types `words` into `field` in turn, one measured key press each (the key
// event and the events it causes); the field is emptied after each word.
// Between keys the window's event loop runs for `gapMs`, unmeasured, so that
// the program's timers and sockets are served as while a person types.
// Returns the key presses in ms.
inline std::vector<double> typeWords(benchmark::State& state, QLineEdit* field,
                                     const std::vector<std::string>& words, int gapMs = 0) {
    using Steady = std::chrono::steady_clock;
    field->setFocus(Qt::OtherFocusReason);
    QApplication::processEvents();
    std::vector<double> ms;
    std::size_t word = 0, pos = 0;
    for (auto _ : state) {
        const std::string& w = words[word];
        const auto t0 = Steady::now();
        QTest::keyClick(field, w[pos]);
        QApplication::processEvents();
        const double s = std::chrono::duration<double>(Steady::now() - t0).count();
        state.SetIterationTime(s);
        ms.push_back(s * 1000);
        state.PauseTiming();
        if (++pos == w.size()) {
            field->clear();
            QApplication::processEvents();
            pos = 0;
            word = (word + 1) % words.size();
        }
        const auto until = Steady::now() + std::chrono::milliseconds(gapMs);
        while (Steady::now() < until)
            QApplication::processEvents(QEventLoop::AllEvents, 1);
        state.ResumeTiming();
    }
    return ms;
}

// A new call for each QSO, so that none is a duplicate.
inline std::string nthCall(int n) {
    std::string c = "OK1";
    for (int i = 0; i < 3; ++i, n /= 26)
        c += static_cast<char>('A' + n % 26);
    return c;
}

// Calls typed key by key into `Text3` of the window, each key press measured
// with the events it causes; after each call the QSO is logged with its
// report and locator (not measured). `qso` numbers the calls across runs.
// Returns the key presses in ms.
inline std::vector<double> typeCallsAndLog(benchmark::State& state, QWidget& window, int& qso) {
    using Steady = std::chrono::steady_clock;
    auto* call = window.findChild<QLineEdit*>("Text3");
    auto* rcvd = window.findChild<QLineEdit*>("Text6");
    auto* locator = window.findChild<QLineEdit*>("Text7");
    call->setFocus(Qt::OtherFocusReason);
    QApplication::processEvents();
    std::vector<double> ms;
    std::string text = nthCall(qso++);
    std::size_t pos = 0;
    for (auto _ : state) {
        const auto t0 = Steady::now();
        QTest::keyClick(call, text[pos]);
        QApplication::processEvents();
        const double sec = std::chrono::duration<double>(Steady::now() - t0).count();
        state.SetIterationTime(sec);
        ms.push_back(sec * 1000);
        if (++pos == text.size()) {
            state.PauseTiming();
            rcvd->setText("59001");
            locator->setText("JO62QM");
            QTest::keyClick(locator, Qt::Key_Return);
            QApplication::processEvents();
            call->setFocus(Qt::OtherFocusReason);
            text = nthCall(qso++);
            pos = 0;
            state.ResumeTiming();
        }
    }
    return ms;
}

inline int runWindowBenchmarks(int argc, char** argv, const std::function<void()>& endProgram) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    endProgram();
    return 0;
}

} // namespace orv::bench
