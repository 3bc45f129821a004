#pragma once

#include <array>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/i18n/texts.h"
#include "core/keying/audio.h"
#include "core/keying/beacon.h"
#include "core/keying/keying_fakes.h"
#include "support/fakes.h"
#include "support/temp_dir.h"

namespace orv::test {

// A player whose files end when the test says so.
class FakePlayer final : public keying::MediaPlayer {
public:
    void open(const std::filesystem::path& p) override {
        if (failOpens > 0) {
            --failOpens;
            throw std::runtime_error("sound device gone");
        }
        file = p.filename().string();
        log.push_back("open " + file);
        pos = 0;
    }
    void play(long from) override { pos = from; }
    void stop() override {}
    void close() override {
        file.clear();
        pos = 0;
    }
    long position() override {
        if (failPosition)
            throw std::runtime_error("sound device gone");
        return pos;
    }
    long length() override { return file.empty() ? 0 : 3000; }
    void finish() { pos = length(); }

    std::string file;
    long pos = 0;
    int failOpens = 0; // opens that throw before one succeeds
    bool failPosition = false;
    std::vector<std::string> log;
};

// The beacon with a keyer on a fake clock, a recording line, a fake player
// and fake window timers in whole milliseconds.
struct BeaconRig {
    FakeMonotonic clock;
    RecordingLine line{clock};
    keying::KeyPort port{line, [](int n) { return "COM" + std::to_string(n); }};
    keying::Keyer keyer{port, clock};
    FakePlayer player;
    FakeDialogs dialogs;
    Texts texts;
    TempDir dir;
    keying::BeaconInputs in;
    std::mutex m;
    std::deque<std::function<void()>> posted;
    std::vector<int> counts{0}; // Label34 as it changed
    std::unique_ptr<keying::BeaconMachine> beacon;
    long nowMs = 0;
    std::array<long, keying::kBeaconTimers> due{};
    std::array<unsigned, keying::kBeaconTimers> seen{};

    BeaconRig() {
        in.mode = "CW";
        in.mode3St = "CW";
        in.bakeText = "E";
        in.cwEnd = "T";
        in.comCw = 2;
        in.pinCw = 0;    // key on DTR
        in.pinCwPtt = 1; // PTT on RTS
        in.com = 1;
        in.pin = 2;  // voice PTT on TXD (break)
        in.wpm = 12; // a dit of 0.1 s
        in.cwLoopPause = 5;
        in.loopPause = 2;
        in.cwEndFile = dir / "CWEnd.wav";
        keying::BeaconHost host;
        host.inputs = [this] { return in; };
        host.post = [this](std::function<void()> f) {
            std::lock_guard lock(m);
            posted.push_back(std::move(f));
        };
        host.changed = [this] {
            const int c = beacon->shown().count;
            if (counts.back() != c)
                counts.push_back(c);
        };
        beacon = std::make_unique<keying::BeaconMachine>(port, keyer, player, dialogs, texts,
                                                         std::move(host));
    }
    ~BeaconRig() { beacon.reset(); }

    std::filesystem::path file(const std::string& name) {
        writeFile(dir / name, "RIFF");
        return dir / name;
    }

    // Lets the keyer finish and runs what it posted, at most `limit` jobs.
    void settle(int limit = 1000) {
        for (int i = 0; i < limit; ++i) {
            keyer.wait();
            std::function<void()> f;
            {
                std::lock_guard lock(m);
                if (posted.empty())
                    break;
                f = std::move(posted.front());
                posted.pop_front();
            }
            f();
        }
        sync();
    }
    void sync() {
        for (int i = 0; i < keying::kBeaconTimers; ++i) {
            const auto t = static_cast<keying::BeaconTimer>(i);
            if (beacon->timerOn(t) && beacon->generation(t) != seen[i]) {
                seen[i] = beacon->generation(t);
                due[i] = nowMs + beacon->interval(t);
            }
        }
    }
    // Runs the window timers for ms milliseconds.
    void advance(long ms) {
        const long end = nowMs + ms;
        for (;;) {
            settle();
            int next = -1;
            for (int i = 0; i < keying::kBeaconTimers; ++i) {
                const auto t = static_cast<keying::BeaconTimer>(i);
                if (beacon->timerOn(t) && due[i] <= end && (next < 0 || due[i] < due[next]))
                    next = i;
            }
            if (next < 0)
                break;
            nowMs = due[next];
            due[next] += beacon->interval(static_cast<keying::BeaconTimer>(next));
            beacon->fire(static_cast<keying::BeaconTimer>(next));
        }
        nowMs = end;
    }

    int ops(const std::string& op) const {
        int n = 0;
        for (const auto& c : line.calls)
            n += c.op.rfind(op, 0) == 0;
        return n;
    }
    int keyDowns() const { return ops("5"); } // SETDTR: the key line
};

} // namespace orv::test
