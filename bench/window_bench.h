#pragma once

// What the benchmarks of the real window share: percentiles of measured
// times, and a main that runs them offscreen inside a QApplication and ends
// the program's objects while the application still stands.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <algorithm>
#include <functional>
#include <vector>

namespace orv::bench {

inline double percentile(std::vector<double> v, double p) {
    if (v.empty())
        return 0;
    std::sort(v.begin(), v.end());
    const auto at = static_cast<std::size_t>(p * static_cast<double>(v.size() - 1) + 0.5);
    return v[std::min(at, v.size() - 1)];
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
