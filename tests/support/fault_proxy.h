#pragma once

// A TCP proxy of the test on 127.0.0.1 between a position and the server,
// which can pass, reset, hold connections half-open, delay, and cut a
// connection after a number of bytes.

#include <atomic>
#include <cstdint>
#include <mutex>
#include <thread>
#include <vector>

namespace orv::test {

class FaultProxy {
public:
    explicit FaultProxy(int targetPort);
    ~FaultProxy();
    FaultProxy(const FaultProxy&) = delete;
    FaultProxy& operator=(const FaultProxy&) = delete;

    int port() const { return port_; }
    // Forwards everything.
    void pass();
    // Resets every connection and each new one until pass().
    void reset();
    // Keeps connections and accepts new ones, but forwards nothing: the
    // peers see a link that went silent.
    void hold();
    // Forwards each piece after a pause.
    void delay(int ms);
    // Resets the connections once `bytes` more bytes went through in either
    // direction, then passes again.
    void cutAfter(std::int64_t bytes);

private:
    enum class Mode { Pass, Reset, Hold, Delay, Cut };
    struct Link {
        int client = -1;
        int server = -1;
    };
    void run();
    void closeAll(bool hard);

    int targetPort_;
    int listenFd_ = -1;
    int port_ = 0;
    std::mutex mutex_;
    Mode mode_ = Mode::Pass;
    int delayMs_ = 0;
    std::int64_t budget_ = 0;
    std::vector<Link> links_;
    std::atomic<bool> stopping_{false};
    std::thread thread_;
};

} // namespace orv::test
