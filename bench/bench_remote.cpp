// The command interface under load, in the real main window offscreen: a
// thread of 16 TCP clients on 127.0.0.1 sends GET__ALL: at a combined 2,000
// commands a second and times each round trip, while the window thread types
// into the call field, one key every 20 ms, each key press measured as the key
// event plus the event processing that follows it (as in bench_ui).
//  - BM_KeyPressNoClients: the baseline, the same typing with no client;
//  - BM_KeyPressUnderRemoteLoad: the typing under the load, with the round
//    trips of that run as counters (rtt_p50_us, rtt_p99_us, rate);
//  - BM_KeyPressUnderFlood: the typing while one client sends 10,000
//    commands a second without waiting for answers.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTcpServer>
#include <QTest>
#include <algorithm>
#include <arpa/inet.h>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "core/logstore/contest_log.h"
#include "core/remote/remote_settings.h"
#include "platform/qt_dialogs.h"
#include "platform/remote_server.h"
#include "ui/log_dialog.h"
#include "ui/main_window.h"
#include "ui/remote_binding.h"
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

constexpr int kClients = 16;
constexpr double kRate = 2000; // commands a second, all clients together
constexpr int kKeyGapMs = 20;

struct Program {
    std::filesystem::path dir = tempFolder("remote");
    FixedClock clock;
    SilentBeeper beeper;
    platform::QtDialogs dialogs;
    std::unique_ptr<ui::Startup> startup;
    ui::RemoteBinding* remote = nullptr;
    quint16 port = 0;

    Program() {
        std::filesystem::create_directories(dir / "Logs");
        {
            std::ofstream ini(dir / "OrvantaContest.INI");
            ini << "[QB]\nEinverstanden=-1\nStartQRG=1\n";
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
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost, 0);
        port = probe.serverPort();
        probe.close();
        startup->settings().set(remote::Port, port);
        remote = new ui::RemoteBinding(*window(), startup->settings(), startup->texts());
        if (!remote->server().listening())
            std::abort();
        window()->findChild<QLineEdit*>("Text7")->setText("JO62QM");
        window()->activateWindow();
        QApplication::processEvents();
    }
    ~Program() {
        delete remote;
        startup.reset();
        std::filesystem::remove_all(dir);
    }
    ui::MainWindow* window() { return startup->window(); }
};

std::unique_ptr<Program> theProgram;
// The program, with the clients of an earlier benchmark gone: the server
// counts them until its event loop has seen them leave.
Program& program() {
    if (!theProgram)
        theProgram = std::make_unique<Program>();
    while (theProgram->remote->server().clientCount() > 0)
        QApplication::processEvents(QEventLoop::AllEvents, 10);
    return *theProgram;
}

// The clients: one thread, requests paced at kRate, round-robin over the
// sockets; each waits for its answer. Lines pushed to a socket because the
// item changed for another are read away before it asks.
class Load {
public:
    explicit Load(quint16 port) {
        for (int i = 0; i < kClients; ++i) {
            const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
            sockaddr_in a{};
            a.sin_family = AF_INET;
            a.sin_port = htons(port);
            a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
            if (::connect(fd, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0)
                std::abort();
            int one = 1;
            ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
            fds_.push_back(fd);
        }
        thread_ = std::thread([this] { run(); });
    }
    ~Load() {
        finish();
        for (int fd : fds_)
            ::close(fd);
    }
    // Stops the clients; the figures below are complete afterwards.
    void finish() {
        stop_ = true;
        if (thread_.joinable())
            thread_.join();
    }
    std::vector<double> rttUs;
    double seconds = 0;
    int lost = 0;

private:
    static void drain(int fd) {
        char buf[4096];
        while (::recv(fd, buf, sizeof buf, MSG_DONTWAIT) > 0) {
        }
    }
    bool answer(int fd) {
        char c = 0;
        for (;;) {
            pollfd p{fd, POLLIN, 0};
            if (::poll(&p, 1, 1000) <= 0)
                return false;
            if (::recv(fd, &c, 1, 0) != 1)
                return false;
            if (c == '\n')
                return true;
        }
    }
    void run() {
        const auto start = Clock_::now();
        auto next = start;
        const auto gap = std::chrono::duration_cast<Clock_::duration>(
            std::chrono::duration<double>(1.0 / kRate));
        for (std::size_t i = 0; !stop_; ++i) {
            next += gap;
            std::this_thread::sleep_until(next);
            const int fd = fds_[i % fds_.size()];
            drain(fd);
            const auto t0 = Clock_::now();
            static const char kCommand[] = "GET__ALL:\r\n";
            ::send(fd, kCommand, sizeof kCommand - 1, MSG_NOSIGNAL);
            if (!answer(fd)) {
                ++lost;
                continue;
            }
            rttUs.push_back(std::chrono::duration<double, std::micro>(Clock_::now() - t0).count());
            // A late answer does not make the next ones crowd in.
            if (Clock_::now() > next + 10 * gap)
                next = Clock_::now();
        }
        seconds = std::chrono::duration<double>(Clock_::now() - start).count();
    }

    std::vector<int> fds_;
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

// One client that sends 10,000 commands a second without waiting for the
// answers (ten every millisecond), reading them away as they come.
class Flood {
public:
    explicit Flood(quint16 port) {
        fd_ = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in a{};
        a.sin_family = AF_INET;
        a.sin_port = htons(port);
        a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (::connect(fd_, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0)
            std::abort();
        thread_ = std::thread([this] { run(); });
    }
    ~Flood() {
        finish();
        ::close(fd_);
    }
    void finish() {
        stop_ = true;
        if (thread_.joinable())
            thread_.join();
    }
    long sent = 0;
    long answered = 0;
    double seconds = 0;

private:
    void run() {
        std::string batch;
        for (int i = 0; i < 10; ++i)
            batch += i % 2        ? "GET__ALL:\r\n"
                     : i % 4 == 0 ? "SET__QRB:no such\r\n"
                                  : "GET_LOCA:\r\n";
        const auto start = Clock_::now();
        auto next = start;
        char buf[65536];
        while (!stop_) {
            next += std::chrono::milliseconds(1);
            std::this_thread::sleep_until(next);
            if (::send(fd_, batch.data(), batch.size(), MSG_NOSIGNAL | MSG_DONTWAIT) > 0)
                sent += 10; // seven read commands, three unknown names
            ssize_t n;
            while ((n = ::recv(fd_, buf, sizeof buf, MSG_DONTWAIT)) > 0)
                for (ssize_t i = 0; i < n; ++i)
                    answered += buf[i] == '\n';
        }
        seconds = std::chrono::duration<double>(Clock_::now() - start).count();
    }

    int fd_ = -1;
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

const std::vector<std::string> kCalls = {"K19AB", "K7001AB", "DL1ABC", "K123", "OK1KHL"};

// One key every kKeyGapMs; the window's event loop runs in between, serving
// the clients.
void typeCalls(benchmark::State& state, std::vector<double>& ms) {
    ms = typeWords(state, theProgram->window()->findChild<QLineEdit*>("Text3"), kCalls, kKeyGapMs);
    state.counters["key_p50_ms"] = percentile(ms, 0.50);
    state.counters["key_p99_ms"] = percentile(ms, 0.99);
    state.counters["key_max_ms"] = percentile(ms, 1.0);
}

void BM_KeyPressNoClients(benchmark::State& state) {
    std::vector<double> ms;
    program();
    typeCalls(state, ms);
}

void BM_KeyPressUnderRemoteLoad(benchmark::State& state) {
    std::vector<double> ms;
    Load load(program().port);
    typeCalls(state, ms);
    load.finish();
    state.counters["rtt_p50_us"] = percentile(load.rttUs, 0.50);
    state.counters["rtt_p99_us"] = percentile(load.rttUs, 0.99);
    state.counters["rtt_max_us"] = percentile(load.rttUs, 1.0);
    state.counters["rate"] = static_cast<double>(load.rttUs.size()) / load.seconds;
    state.counters["lost"] = load.lost;
}

void BM_KeyPressUnderFlood(benchmark::State& state) {
    std::vector<double> ms;
    Flood flood(program().port);
    typeCalls(state, ms);
    flood.finish();
    if (flood.answered == 0)
        state.SkipWithError("the flooding client was not served");
    state.counters["sent_per_s"] = static_cast<double>(flood.sent) / flood.seconds;
    state.counters["answered_per_s"] = static_cast<double>(flood.answered) / flood.seconds;
}

} // namespace

BENCHMARK(BM_KeyPressNoClients)->UseManualTime()->Iterations(500)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_KeyPressUnderRemoteLoad)
    ->UseManualTime()
    ->Iterations(500)
    ->Unit(benchmark::kMicrosecond);

BENCHMARK(BM_KeyPressUnderFlood)->UseManualTime()->Iterations(500)->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv) {
    return orv::bench::runWindowBenchmarks(argc, argv, [] { theProgram.reset(); });
}
