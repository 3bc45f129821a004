#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "core/capture/band_state.h"

namespace orv {

// Loads bands of a contest log on a worker thread of its own, through a
// connection of its own that only reads, so that a band is in memory before
// the operator first selects it. Results wait here until the window's thread
// takes them; whoever takes them decides whether they are still current.
class BandLoader {
public:
    struct Request {
        int band = 0;
        std::uint64_t generation = 0; // the taker's count of changes of the band
        std::string ownLocator;       // bearings of the grid
        bool antenneKomma = false;
    };
    struct Loaded {
        int band = 0;
        std::uint64_t generation = 0;
        BandState state;
    };

    // `ready` runs on the worker thread each time a band has been loaded;
    // it must only hand the news over to the taker's thread.
    BandLoader(std::filesystem::path logPath, std::function<void()> ready);
    // Stops after the band in hand and waits for it: the longest wait is one
    // band's load.
    ~BandLoader();
    BandLoader(const BandLoader&) = delete;
    BandLoader& operator=(const BandLoader&) = delete;

    void request(Request r);
    // The bands loaded since the last call.
    std::vector<Loaded> take();
    // Blocks until every request so far has been handled (for tests and
    // benchmarks).
    void waitIdle();

private:
    void run(std::stop_token stop);

    std::filesystem::path path_;
    std::function<void()> ready_;
    std::mutex mutex_;
    std::condition_variable_any wake_;
    std::condition_variable idle_;
    std::deque<Request> queue_;
    std::vector<Loaded> done_;
    bool busy_ = false;
    std::jthread thread_;
};

} // namespace orv
