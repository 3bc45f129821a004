#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "core/keying/key_port.h"

namespace orv::keying {

// The clock the keyer times its edges by: seconds on a monotonic scale.
class MonotonicClock {
public:
    virtual ~MonotonicClock() = default;
    virtual double now() = 0;
    // Sleeps until about t; may return early, never needs to be late.
    virtual void sleepUntil(double t) = 0;
    // One pass of the short spin before an edge.
    virtual void relax() {}
};

// The real clock: CLOCK_MONOTONIC, absolute-deadline sleeps.
class SteadyClock final : public MonotonicClock {
public:
    double now() override;
    void sleepUntil(double t) override;
    void relax() override;
};

struct KeyerTiming {
    // The longest sleep between two looks at the stop flags, in dits, so that
    // a stop is seen within a tenth of a dit.
    double sliceDits = 0.1;
    // How long before an edge sleeping ends and spinning begins: covers the
    // wake-up latency of a loaded machine.
    double spinSeconds = 0.0004;
};

// HeldBack: the text was not keyed at all, because `holdBack` was set when its
// lead had passed; the port stays as a completed text leaves it.
enum class SendOutcome { Completed, Stopped, LineFailed, HeldBack };

// One text to key: ANSI characters of the Morse table only.
struct Transmission {
    std::string ansiText;
    int wpm = 12;
    // Units between PTT and the first element.
    int leadUnits = 1;
    KeyLines lines;
    // When not negative, the lead in seconds instead of leadUnits: the beacon
    // waits with the dit length of its previous run, and 7 units between rounds.
    double leadSeconds = -1;
    // The port stays open and PTT up after a completed text, for a round that
    // follows; a stopped or failed text always releases it.
    bool keepPort = false;
    // Read once when the lead has passed, before the first element: when set,
    // nothing of the text goes out. The beacon's stop asked in the gap before
    // a round lets the round fall away, not the round in progress.
    std::shared_ptr<const std::atomic<bool>> holdBack{};
};

// Keys a text on the calling thread from t0 on (the time PTT went up): every
// edge at an absolute deadline t0 + units * dit. stop is read after every wait
// and between elements. The port is not released here.
SendOutcome sendMorse(const Transmission& t, double t0, KeyPort& port, MonotonicClock& clock,
                      const std::function<bool()>& stop, const KeyerTiming& timing = {});

// The keyer thread. One transmission at a time; the window thread starts it
// and goes on at once, and learns the end through `done`, which is called on
// the keyer thread after the port has been released.
class Keyer {
public:
    Keyer(KeyPort& port, MonotonicClock& clock, KeyerTiming timing = {});
    ~Keyer();
    Keyer(const Keyer&) = delete;
    Keyer& operator=(const Keyer&) = delete;

    // Starts keying after the port was opened and PTT raised; false when a
    // transmission is still running.
    bool start(Transmission t, std::function<void(SendOutcome)> done = {});
    // `StopRequested`: seen within a tenth of a dit.
    void requestStop();
    bool busy() const { return busy_.load(); }
    // Blocks until the running transmission has ended (shutdown and tests).
    void wait();
    // A further reason to stop, read with the stop flag (the beacon's state).
    void setAbortCheck(std::function<bool()> check);
    // Told on the starting thread, before the keyer thread runs, of each
    // transmission and the time its schedule counts from: for measuring each
    // edge against its ideal time.
    void setStartObserver(std::function<void(const Transmission&, double t0)> observer);
    // The keyer thread asks for a real-time priority unless told not to;
    // realtime() tells whether the last transmission's thread got it.
    void setRealtimeWanted(bool wanted) { wantRealtime_ = wanted; }
    bool realtime() const { return realtime_.load(); }

private:
    KeyPort& port_;
    MonotonicClock& clock_;
    KeyerTiming timing_;
    std::thread thread_;
    std::atomic<bool> stop_{false};
    std::atomic<bool> busy_{false};
    std::atomic<bool> wantRealtime_{true};
    std::atomic<bool> realtime_{false};
    std::mutex checkMutex_;
    std::function<bool()> abortCheck_;
    std::function<void(const Transmission&, double)> startObserver_;
};

} // namespace orv::keying
