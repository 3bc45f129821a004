#include "core/keying/morse_engine.h"

#include <algorithm>
#include <ctime>
#include <pthread.h>
#include <sched.h>

#include "core/keying/morse_table.h"

namespace orv::keying {
namespace {

timespec toTimespec(double t) {
    timespec ts{};
    ts.tv_sec = static_cast<time_t>(t);
    ts.tv_nsec = static_cast<long>((t - static_cast<double>(ts.tv_sec)) * 1e9);
    if (ts.tv_nsec >= 1000000000L) {
        ts.tv_sec += 1;
        ts.tv_nsec -= 1000000000L;
    }
    return ts;
}

// Waits for the absolute deadline: sleeps in slices, spins the last stretch.
// False when a stop was seen.
class Waiter {
public:
    Waiter(MonotonicClock& clock, const std::function<bool()>& stop, double slice, double spin)
        : clock_(clock), stop_(stop), slice_(slice), spin_(spin) {}

    bool until(double deadline) {
        for (;;) {
            if (stop_())
                return false;
            const double now = clock_.now();
            if (now >= deadline)
                return true;
            const double wake = deadline - spin_;
            if (now < wake) {
                clock_.sleepUntil(std::min(wake, now + slice_));
                continue;
            }
            while (clock_.now() < deadline)
                clock_.relax();
            return !stop_();
        }
    }

private:
    MonotonicClock& clock_;
    const std::function<bool()>& stop_;
    double slice_, spin_;
};

// The keyer's edges must not wait behind the window thread or other programs
// on a busy machine: a thread of normal priority wakes from its sleep up to
// several milliseconds late there. A real-time priority is asked for where the
// user may have one (root, RLIMIT_RTPRIO, e.g. the audio group's limits);
// elsewhere the thread keys at normal priority. The thread only ever spins for
// the short stretch before an edge, so it cannot hold a core.
bool raiseToRealtime() {
    sched_param p{};
    p.sched_priority = std::max(sched_get_priority_min(SCHED_FIFO), 10);
    return pthread_setschedparam(pthread_self(), SCHED_FIFO, &p) == 0;
}

} // namespace

double SteadyClock::now() {
    timespec ts{};
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<double>(ts.tv_sec) + static_cast<double>(ts.tv_nsec) * 1e-9;
}

void SteadyClock::sleepUntil(double t) {
    const timespec ts = toTimespec(t);
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &ts, nullptr) != 0) {
    }
}

void SteadyClock::relax() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#endif
}

SendOutcome sendMorse(const Transmission& t, double t0, KeyPort& port, MonotonicClock& clock,
                      const std::function<bool()>& stop, const KeyerTiming& timing) {
    const MorseTable& table = MorseTable::instance();
    const double dit = DitSeconds(t.wpm);
    Waiter wait(clock, stop, dit * timing.sliceDits, timing.spinSeconds);
    // Deadlines come from a whole count of units, so no error adds up.
    long long units = t.leadUnits;
    if (t.leadSeconds >= 0) {
        t0 += t.leadSeconds;
        units = 0;
    }
    auto waitUnits = [&](int n) {
        units += n;
        return wait.until(t0 + static_cast<double>(units) * dit);
    };
    auto line = [&](LineCode c) { return port.escape(c); };
    const auto failed = [&] { return stop() ? SendOutcome::Stopped : SendOutcome::LineFailed; };

    if (!wait.until(t0 + static_cast<double>(units) * dit))
        return SendOutcome::Stopped;
    if (t.holdBack && t.holdBack->load())
        return SendOutcome::HeldBack;
    const std::string& s = t.ansiText;
    for (std::size_t i = 0; i < s.size(); ++i) {
        const auto c = static_cast<unsigned char>(s[i]);
        const MorseCode& e = table.code(c);
        for (std::size_t j = 0; j < e.size(); ++j) {
            if (e[j] > 0) {
                if (!line(t.lines.on))
                    return failed();
                if (!waitUnits(e[j]))
                    return SendOutcome::Stopped;
                if (!line(t.lines.off))
                    return failed();
                if (j + 1 < e.size() && !waitUnits(1))
                    return SendOutcome::Stopped;
            } else {
                if (!line(t.lines.off))
                    return failed();
                if (!waitUnits(-e[j]))
                    return SendOutcome::Stopped;
            }
        }
        if (!line(t.lines.off))
            return failed();
        if (c != ' ' && i + 1 < s.size() && s[i + 1] != ' ' && !waitUnits(3))
            return SendOutcome::Stopped;
        if (stop())
            return SendOutcome::Stopped;
    }
    return line(t.lines.off) ? SendOutcome::Completed : failed();
}

Keyer::Keyer(KeyPort& port, MonotonicClock& clock, KeyerTiming timing)
    : port_(port), clock_(clock), timing_(timing) {}

Keyer::~Keyer() {
    requestStop();
    wait();
}

void Keyer::setAbortCheck(std::function<bool()> check) {
    std::lock_guard lock(checkMutex_);
    abortCheck_ = std::move(check);
}

void Keyer::setStartObserver(std::function<void(const Transmission&, double)> observer) {
    std::lock_guard lock(checkMutex_);
    startObserver_ = std::move(observer);
}

bool Keyer::start(Transmission t, std::function<void(SendOutcome)> done) {
    if (busy_.exchange(true))
        return false;
    if (thread_.joinable())
        thread_.join();
    stop_ = false;
    std::function<bool()> extra;
    std::function<void(const Transmission&, double)> observer;
    {
        std::lock_guard lock(checkMutex_);
        extra = abortCheck_;
        observer = startObserver_;
    }
    const double t0 = clock_.now();
    if (observer)
        observer(t, t0);
    thread_ = std::thread([this, t = std::move(t), done = std::move(done), extra, t0] {
        realtime_ = wantRealtime_ && raiseToRealtime();
        const std::function<bool()> stop = [this, &extra] {
            return stop_.load(std::memory_order_relaxed) || (extra && extra());
        };
        const SendOutcome outcome = sendMorse(t, t0, port_, clock_, stop, timing_);
        const bool clean = outcome == SendOutcome::Completed || outcome == SendOutcome::HeldBack;
        if (!t.keepPort || !clean)
            port_.ReleasePort();
        busy_ = false;
        if (done)
            done(outcome);
    });
    return true;
}

void Keyer::requestStop() {
    stop_ = true;
}

void Keyer::wait() {
    if (thread_.joinable() && thread_.get_id() != std::this_thread::get_id())
        thread_.join();
}

} // namespace orv::keying
