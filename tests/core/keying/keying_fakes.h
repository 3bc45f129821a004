#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "core/keying/audio.h"
#include "core/keying/key_port.h"
#include "core/keying/morse_engine.h"

namespace orv::test {

// A clock that jumps to where the keyer sleeps to; each spin pass moves it by
// a microsecond. `at` runs once when the time first reaches `atTime`.
class FakeMonotonic final : public keying::MonotonicClock {
public:
    double now() override { return t_; }
    void sleepUntil(double t) override {
        if (t > t_)
            t_ = t;
        fire();
    }
    void relax() override {
        t_ += 1e-6;
        fire();
    }
    double atTime = -1;
    std::function<void()> at;

private:
    void fire() {
        if (at && atTime >= 0 && t_ >= atTime) {
            auto f = std::move(at);
            at = nullptr;
            f();
        }
    }
    double t_ = 0;
};

// A serial device that records each line operation with the clock's time.
class RecordingLine final : public keying::KeyLineDevice {
public:
    explicit RecordingLine(keying::MonotonicClock& clock) : clock_(clock) {}
    struct Call {
        std::string op; // "open <device>", "close" or the line code
        double t;
    };
    bool open(const std::string& device) override {
        calls.push_back({"open " + device, clock_.now()});
        return !refuseOpen;
    }
    bool escape(keying::LineCode code) override {
        const int n = escapes++;
        if (failAfter >= 0 && n >= failAfter && (failCount < 0 || n < failAfter + failCount))
            return false;
        calls.push_back({std::to_string(static_cast<int>(code)), clock_.now()});
        return true;
    }
    void close() override { calls.push_back({"close", clock_.now()}); }
    bool alive() override { return !pulled; }

    std::vector<std::string> ops() const {
        std::vector<std::string> out;
        for (const auto& c : calls)
            out.push_back(c.op);
        return out;
    }

    std::vector<Call> calls;
    bool refuseOpen = false;
    int failAfter = -1; // escapes that succeed before the device is gone
    int failCount = -1; // escapes that fail then before it answers again; -1: all
    int escapes = 0;
    bool pulled = false; // the device no longer answers a look at its lines

private:
    keying::MonotonicClock& clock_;
};

// A player that plays nothing: every file ends at once.
class SilentPlayer final : public keying::MediaPlayer {
public:
    void open(const std::filesystem::path&) override {}
    void play(long) override {}
    void stop() override {}
    void close() override {}
    long position() override { return 0; }
    long length() override { return 0; }
};

// The keying chain of a window test: a recorded serial line on "/dev/ttyUSBn"
// behind the key port and the keyer, on a clock that jumps.
struct KeyingChain {
    FakeMonotonic clock;
    RecordingLine line{clock};
    keying::KeyPort port{line, [](int n) { return "/dev/ttyUSB" + std::to_string(n); }};
    keying::Keyer keyer{port, clock};

    int opens() const {
        return static_cast<int>(
            std::count_if(line.calls.begin(), line.calls.end(),
                          [](const auto& c) { return c.op.rfind("open", 0) == 0; }));
    }
};

} // namespace orv::test
