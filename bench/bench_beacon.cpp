// The beacon keying a CQ at 25 WPM on its keyer thread while the operator
// works in the real main window (offscreen, started through the program's
// start-up over a log of 5,000 QSOs):
//  - BM_KeyPressIdle / BM_KeyPressWhileBeacon: a key press in the call field
//    (the key event plus the event processing after it), 10 ms apart,
//    without and with the beacon running, in the same run;
//  - the error of every keyed edge, measured as the CW keying benchmark
//    measures it: a line that stamps each operation with the monotonic clock
//    takes the place of the serial port, and the error of an edge is its
//    distance from its ideal time, the transmission's start (PTT up, as the
//    keyer reports it) plus its units times the dit.
//    BM_KeyerEdgesIdle: the plain keyer sending the text again and again as
//    the CW window does, the window idle (the baseline);
//    BM_BeaconEdgesIdle: the beacon's rounds, the window idle;
//    BM_BeaconEdgesWhileLogging: the beacon's rounds while the window logs
//    10 QSOs per second through the capture core (the target).
//    The second argument is 1 for the keyer as the program runs it (asking
//    for a real-time priority) and 0 for a keyer at normal priority.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "core/keying/audio.h"
#include "core/keying/key_port.h"
#include "core/keying/morse_engine.h"
#include "core/logstore/contest_log.h"
#include "core/settings/settings.h"
#include "core/util/sqlite.h"
#include "platform/qt_dialogs.h"
#include "ui/beacon_binding.h"
#include "ui/log_dialog.h"
#include "ui/log_grid_model.h"
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

constexpr int kRows = 5000;
constexpr int k144 = 1;
const std::string kCq = "CQ TEST DE OE1ABC";

class StampingLine final : public keying::KeyLineDevice {
public:
    explicit StampingLine(keying::MonotonicClock& clock) : clock_(clock) {}
    bool open(const std::string&) override { return true; }
    bool escape(keying::LineCode) override {
        std::lock_guard lock(m);
        stamps.push_back(clock_.now());
        return true;
    }
    void close() override {}
    std::mutex m;
    std::vector<double> stamps;

private:
    keying::MonotonicClock& clock_;
};

class SilentPlayer final : public keying::MediaPlayer {
public:
    void open(const std::filesystem::path&) override {}
    void play(long) override {}
    void stop() override {}
    void close() override {}
    long position() override { return 0; }
    long length() override { return 0; }
};

// Jumps to each deadline: the ideal times of a text's line operations.
class IdealClock final : public keying::MonotonicClock {
public:
    double now() override { return t_; }
    void sleepUntil(double t) override { t_ = std::max(t_, t); }
    void relax() override { t_ += 1e-9; }

private:
    double t_ = 0;
};

// The ideal times of a transmission's line operations, from its start on.
std::vector<double> idealSchedule(keying::Transmission t) {
    IdealClock clock;
    StampingLine line(clock);
    keying::KeyPort port(line, [](int) { return std::string(); });
    (void)port.OpenAndKeyPort(1, 1);
    line.stamps.clear();
    t.holdBack = nullptr;
    keying::sendMorse(t, 0, port, clock, [] { return false; }, {0.1, 0});
    return line.stamps;
}

// One transmission as the keyer reported its start, and the first of its
// line operations among the stamps.
struct Round {
    keying::Transmission t;
    double t0;
    std::size_t first;
};

// The error of every edge of the rounds that went out whole (a round held
// back or stopped by the end of a run has fewer operations than its schedule).
void collectErrors(const std::vector<double>& stamps, const std::vector<Round>& rounds,
                   std::vector<double>& errors, int& whole) {
    for (std::size_t r = 0; r < rounds.size(); ++r) {
        const auto ideal = idealSchedule(rounds[r].t);
        const std::size_t first = rounds[r].first;
        const std::size_t end = r + 1 < rounds.size() ? rounds[r + 1].first : stamps.size();
        if (end < first + ideal.size())
            continue;
        ++whole;
        for (std::size_t i = 0; i < ideal.size(); ++i)
            errors.push_back(std::abs(stamps[first + i] - rounds[r].t0 - ideal[i]) * 1e6);
    }
}

void fill(ContestLog& log) {
    sql::Transaction tx(log.db());
    auto st = log.db().prepare(
        "INSERT INTO \"144MHz\" (Call, Locator, QRG, DatTime, RSTgeg, QSONr, RSTerh, QRB, QSL, "
        "Notice, Mod, Dupe, Name, ModRX, AusBr, ErrQSO, OPCall) VALUES (?1, 'JO62QM', '144', "
        "'2026-05-02 10:00:00', '59', ?2, '59001', 500, 0, '', 'CW', 0, '', 'CW', '', 0, '')");
    for (int i = 1; i <= kRows; ++i) {
        st.bind(1, "K" + std::to_string(i) + "AB").bind(2, i);
        st.run();
    }
    tx.commit();
    log.writeTotals(k144, BandTotals{500LL * kRows, 500, 1});
}

struct Program {
    std::filesystem::path dir = tempFolder("beacon");
    FixedClock clock;
    SilentBeeper beeper;
    platform::QtDialogs dialogs;
    keying::SteadyClock steady;
    StampingLine line{steady};
    keying::KeyPort port{line, [](int) { return std::string("bench"); }};
    keying::Keyer keyer{port, steady};
    SilentPlayer player;
    std::unique_ptr<ui::Startup> startup;
    ui::BeaconBinding* beacon = nullptr;
    int logged = 0;
    std::vector<Round> rounds; // guarded by line.m

    Program() {
        std::filesystem::create_directories(dir / "Logs");
        {
            std::ofstream ini(dir / "OrvantaContest.INI");
            ini << "[QB]\nEinverstanden=-1\nStartQRG=1\n";
        }
        {
            ContestLog log = ContestLog::create(dir / "Logs" / "bench.sqlite",
                                                NewLogData{"OE1ABC", "JN78DF", "Bench", {}});
            fill(log);
        }
        platform::QtDialogs::setRecording(true);
        startup = std::make_unique<ui::Startup>(dir, dialogs, clock, beeper);
        startup->runLogDialog = [](ui::LogDialog& d) {
            d.openExisting("bench");
            return d.result() == QDialog::Accepted;
        };
        if (startup->run() != ui::Startup::Outcome::Run)
            std::abort();
        Settings& s = startup->settings();
        s.setOpCalls({{"OE1ABC", "", kCq, ""}});
        s.set(keys::CWWPM, 25);
        s.set(keys::CWEND, "");
        s.set(keys::BakeArt, 1);
        s.set(keys::CWInterface, 0);
        ui::MainWindow* w = window();
        w->setOperators({"OE1ABC"}, "OE1ABC");
        w->selectBand(k144);
        w->findChild<QComboBox*>("Combo3")->setCurrentText("CW");
        w->findChild<QComboBox*>("Combo10")->setEditText("");
        beacon = new ui::BeaconBinding(
            *w, {startup->texts(), s, startup->dialogs(), port, keyer, player, startup->paths()},
            nullptr);
        w->activateWindow();
        QApplication::processEvents();
        keyer.setStartObserver([this](const keying::Transmission& t, double t0) {
            std::lock_guard lock(line.m);
            rounds.push_back({t, t0, line.stamps.size()});
        });
    }
    ~Program() {
        startup.reset();
        std::filesystem::remove_all(dir);
    }
    ui::MainWindow* window() { return startup->window(); }

    void startBeacon() {
        beacon->machine().press();
        QApplication::processEvents();
    }
    // Mouse-down asks for the end of the round; the rest follows by itself.
    void stopBeacon() {
        beacon->machine().press();
        while (beacon->machine().state() != keying::BeaconCaption::Idle)
            QApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    // One QSO typed and committed with Enter, as the operator does.
    void logQso() {
        ++logged;
        auto* call = window()->findChild<QLineEdit*>("Text3");
        auto* loc = window()->findChild<QLineEdit*>("Text7");
        call->setText(QString("DL%1XYZ").arg(logged));
        window()->findChild<QLineEdit*>("Text6")->setText("599001");
        loc->setText(logged % 2 ? "JO62QM" : "JN58TD");
        QTest::keyClick(loc, Qt::Key_Return);
    }
};

std::unique_ptr<Program> theProgram;
Program& program() {
    if (!theProgram)
        theProgram = std::make_unique<Program>();
    return *theProgram;
}

const std::vector<std::string> kCalls = {"K19AB", "K7001AB", "DL1ABC", "K123", "OK1KHL"};

void typeCalls(benchmark::State& state, bool withBeacon) {
    Program& p = program();
    if (withBeacon)
        p.startBeacon();
    // A fast typist's pace: 10 ms between keys, so that the presses spread
    // over several rounds of the beacon and meet their ends.
    const std::vector<double> ms =
        typeWords(state, p.window()->findChild<QLineEdit*>("Text3"), kCalls, 10);
    if (withBeacon) {
        state.counters["rounds"] = p.beacon->machine().count();
        p.stopBeacon();
    }
    reportPercentiles(state, ms);
}

void BM_KeyPressIdle(benchmark::State& state) {
    typeCalls(state, false);
}
void BM_KeyPressWhileBeacon(benchmark::State& state) {
    typeCalls(state, true);
}

void clearStamps(Program& p) {
    std::lock_guard lock(p.line.m);
    p.line.stamps.clear();
    p.rounds.clear();
}

// The plain keyer, as the CW window uses it: port opened, the text keyed,
// port released, the next text started when the window hears of the end.
void keyerRounds(Program& p, double seconds) {
    const auto until = Clock_::now() + std::chrono::duration<double>(seconds);
    QEventLoop loop;
    std::function<void()> next = [&] {
        if (Clock_::now() >= until) {
            loop.quit();
            return;
        }
        (void)p.port.OpenAndKeyPort(1, 1);
        p.keyer.start({kCq, 25, 1, keying::keyLinesFor(0)}, [&](keying::SendOutcome) {
            QMetaObject::invokeMethod(&loop, next, Qt::QueuedConnection);
        });
    };
    QTimer::singleShot(0, &loop, next);
    loop.exec();
    p.keyer.wait();
}

// The beacon for `seconds` in the window's own event loop, idle but for the
// QSOs when logging.
void beaconRounds(Program& p, double seconds, bool logging) {
    p.startBeacon();
    QEventLoop loop;
    QTimer qsos;
    QObject::connect(&qsos, &QTimer::timeout, &loop, [&p] { p.logQso(); });
    if (logging)
        qsos.start(100);
    QTimer::singleShot(static_cast<int>(seconds * 1000), &loop, &QEventLoop::quit);
    loop.exec();
    qsos.stop();
    p.stopBeacon();
}

enum class Keying { Plain, Beacon, BeaconLogging };

void keyedEdges(benchmark::State& state, Keying how) {
    Program& p = program();
    const double seconds = static_cast<double>(state.range(0));
    p.keyer.setRealtimeWanted(state.range(1) != 0);
    std::vector<double> errors;
    int whole = 0;
    bool realtime = true;
    const int before = p.window()->logGrid().rowCount();
    for (auto _ : state) {
        clearStamps(p);
        const auto t0 = Clock_::now();
        if (how == Keying::Plain)
            keyerRounds(p, seconds);
        else
            beaconRounds(p, seconds, how == Keying::BeaconLogging);
        realtime = realtime && p.keyer.realtime();
        state.SetIterationTime(std::chrono::duration<double>(Clock_::now() - t0).count());
        std::lock_guard lock(p.line.m);
        collectErrors(p.line.stamps, p.rounds, errors, whole);
    }
    p.keyer.setRealtimeWanted(true);
    state.counters["rounds"] = whole;
    state.counters["edges"] = static_cast<double>(errors.size());
    state.counters["qsos"] = p.window()->logGrid().rowCount() - before;
    state.counters["realtime"] = realtime ? 1 : 0;
    state.counters["p50_us"] = percentile(errors, 0.50);
    state.counters["p99_us"] = percentile(errors, 0.99);
    state.counters["max_us"] = percentile(errors, 1.0);
}

void BM_KeyerEdgesIdle(benchmark::State& s) {
    keyedEdges(s, Keying::Plain);
}
void BM_BeaconEdgesIdle(benchmark::State& s) {
    keyedEdges(s, Keying::Beacon);
}
void BM_BeaconEdgesWhileLogging(benchmark::State& s) {
    keyedEdges(s, Keying::BeaconLogging);
}

} // namespace

BENCHMARK(BM_KeyPressIdle)->UseManualTime()->Iterations(2000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_KeyPressWhileBeacon)->UseManualTime()->Iterations(2000)->Unit(benchmark::kMicrosecond);
// Arguments: seconds of keying, real-time priority asked for (1) or not (0).
BENCHMARK(BM_KeyerEdgesIdle)
    ->Args({60, 1})
    ->Args({60, 0})
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kSecond);
BENCHMARK(BM_BeaconEdgesIdle)
    ->Args({60, 1})
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kSecond);
BENCHMARK(BM_BeaconEdgesWhileLogging)
    ->Args({60, 1})
    ->Args({60, 0})
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kSecond);

int main(int argc, char** argv) {
    return orv::bench::runWindowBenchmarks(argc, argv, [] { theProgram.reset(); });
}
