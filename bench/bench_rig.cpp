// Typing in the real main window (offscreen, started through the program's
// start-up) while the rig and the rotator are linked through Hamlib to the
// real rigctld and rotctld dummy devices on 127.0.0.1, polled once a second
// as the window does. A key press is `QTest::keyClick` into the call field
// `Text3` plus the event processing after it, 10 ms between presses.
//  - BM_KeyPressLinked: the baseline, both daemons answering;
//  - BM_KeyPressDaemonsKilled: both daemons gone, the workers retrying;
//  - BM_KeyPressDaemonsFrozen: both daemons stopped (SIGSTOP), so that
//    every device call hangs until Hamlib's timeout, the case that would
//    stall a window making device calls itself.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "core/logstore/contest_log.h"
#include "platform/qt_dialogs.h"
#include "support/hamlib_daemon.h"
#include "ui/log_dialog.h"
#include "ui/main_window.h"
#include "ui/startup.h"
#include "window_bench.h"

using namespace orv;
using Clock_ = std::chrono::steady_clock;

namespace {

using orv::bench::FixedClock;
using orv::bench::percentile;
using orv::bench::reportPercentiles;
using orv::bench::tempFolder;
using orv::bench::typeWords;

struct Program {
    std::filesystem::path dir = tempFolder("rig");
    test::HamlibDaemon rig{"rigctld"};
    test::HamlibDaemon rot{"rotctld"};
    FixedClock clock;
    SilentBeeper beeper;
    platform::QtDialogs dialogs;
    std::unique_ptr<ui::Startup> startup;

    Program() {
        std::filesystem::create_directories(dir / "Logs");
        {
            std::ofstream ini(dir / "OrvantaContest.INI");
            ini << "[QB]\nEinverstanden=-1\nStartQRG=1\n[Rig]\nEnabled=-1\nModel=2\nDevice="
                << rig.hostPort() << "\n[Rotator]\nEnabled=-1\nModel=2\nDevice=" << rot.hostPort()
                << "\n";
        }
        ContestLog::create(dir / "Logs" / "bench.sqlite",
                           NewLogData{"OE1ABC", "JN78DF", "Bench", {}});
        platform::QtDialogs::setRecording(true);
        startup = std::make_unique<ui::Startup>(dir, dialogs, clock, beeper);
        startup->runLogDialog = [](ui::LogDialog& d) {
            d.openExisting("bench");
            return d.result() == QDialog::Accepted;
        };
        if (startup->run() != ui::Startup::Outcome::Run)
            std::abort();
        rig.command("F 144300000");
        startup->window()->activateWindow();
        // Wait for the first readings, so that the baseline is linked.
        const auto until = Clock_::now() + std::chrono::seconds(5);
        while (label("RigFrequency").isEmpty() && Clock_::now() < until)
            QApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    ~Program() {
        startup.reset();
        std::filesystem::remove_all(dir);
    }
    QString label(const char* name) { return startup->window()->findChild<QLabel*>(name)->text(); }
};

std::unique_ptr<Program> theProgram;
Program& program() {
    if (!theProgram)
        theProgram = std::make_unique<Program>();
    return *theProgram;
}

const std::vector<std::string> kCalls = {"K19AB", "K7001AB", "DL1ABC", "K123", "OK1KHL"};

void typeCalls(benchmark::State& state) {
    Program& p = program();
    // Between keys the window's event loop runs, the link's timer with it.
    reportPercentiles(
        state, typeWords(state, p.startup->window()->findChild<QLineEdit*>("Text3"), kCalls, 10));
    state.counters["status_shown"] = p.label("RigStatus").isEmpty() ? 0 : 1;
    state.counters["dialogs"] = static_cast<double>(platform::QtDialogs::recorded().size());
}

void BM_KeyPressLinked(benchmark::State& state) {
    typeCalls(state);
}

void BM_KeyPressDaemonsKilled(benchmark::State& state) {
    Program& p = program();
    p.rig.kill();
    p.rot.kill();
    typeCalls(state);
    p.rig.start();
    p.rot.start();
}

void BM_KeyPressDaemonsFrozen(benchmark::State& state) {
    Program& p = program();
    p.rig.freeze(true);
    p.rot.freeze(true);
    typeCalls(state);
    p.rig.freeze(false);
    p.rot.freeze(false);
}

} // namespace

// 1,000 presses each: about 12 s of typing, several polls and retries.
BENCHMARK(BM_KeyPressLinked)->UseManualTime()->Iterations(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_KeyPressDaemonsKilled)
    ->UseManualTime()
    ->Iterations(1000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_KeyPressDaemonsFrozen)
    ->UseManualTime()
    ->Iterations(1000)
    ->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    return orv::bench::runWindowBenchmarks(argc, argv, [] { theProgram.reset(); });
}
