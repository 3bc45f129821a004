#include "core/capture/band_loader.h"

#include <optional>

#include "core/logstore/contest_log.h"

namespace orv {

BandLoader::BandLoader(std::filesystem::path logPath, std::function<void()> ready)
    : path_(std::move(logPath)), ready_(std::move(ready)),
      thread_([this](std::stop_token stop) { run(stop); }) {}

BandLoader::~BandLoader() {
    thread_.request_stop();
    wake_.notify_all();
}

void BandLoader::request(Request r) {
    {
        std::lock_guard lock(mutex_);
        queue_.push_back(std::move(r));
    }
    wake_.notify_all();
}

std::vector<BandLoader::Loaded> BandLoader::take() {
    std::lock_guard lock(mutex_);
    return std::exchange(done_, {});
}

void BandLoader::waitIdle() {
    std::unique_lock lock(mutex_);
    idle_.wait(lock, [this] { return queue_.empty() && !busy_; });
}

void BandLoader::run(std::stop_token stop) {
    std::optional<ContestLog> log;
    for (;;) {
        Request r;
        {
            std::unique_lock lock(mutex_);
            busy_ = false;
            idle_.notify_all();
            if (!wake_.wait(lock, stop, [this] { return !queue_.empty(); }))
                return;
            r = std::move(queue_.front());
            queue_.pop_front();
            busy_ = true;
        }
        Loaded out{r.band, r.generation, {}};
        try {
            if (!log)
                log.emplace(ContestLog::openForReading(path_));
            ContestLog::BandSnapshot s = log->bandSnapshot(r.band);
            out.state.load(r.band, std::move(s.rows), s.totals, r.ownLocator, r.antenneKomma);
        } catch (const std::exception&) {
            // A band the worker cannot read is simply not held: the window
            // loads it itself when the operator selects it, and shows why
            // it fails there.
            log.reset();
            continue;
        }
        {
            std::lock_guard lock(mutex_);
            done_.push_back(std::move(out));
        }
        if (ready_ && !stop.stop_requested())
            ready_();
    }
}

} // namespace orv
