#include "core/backup/backup_worker.h"

namespace orv {

BackupWorker::BackupWorker(std::function<void(const BackupResult&)> done, FreeSpaceFn freeSpace)
    : done_(std::move(done)), freeSpace_(std::move(freeSpace)), thread_([this] { run(); }) {}

BackupWorker::~BackupWorker() {
    {
        std::lock_guard lock(m_);
        stop_ = true;
        pending_.reset();
    }
    cv_.notify_all();
    thread_.join();
}

void BackupWorker::request(const std::filesystem::path& source,
                           const std::filesystem::path& destination) {
    {
        std::lock_guard lock(m_);
        pending_ = Job{source, destination};
    }
    cv_.notify_all();
}

void BackupWorker::waitIdle() {
    std::unique_lock lock(m_);
    cv_.wait(lock, [this] { return !copying_ && !pending_; });
}

int BackupWorker::copiesMade() const {
    std::lock_guard lock(m_);
    return copies_;
}

void BackupWorker::run() {
    std::unique_lock lock(m_);
    for (;;) {
        cv_.wait(lock, [this] { return stop_ || pending_; });
        if (stop_)
            return;
        const Job job = *pending_;
        pending_.reset();
        copying_ = true;
        lock.unlock();
        const BackupResult r = BackupCopy(job.source, job.destination, freeSpace_);
        if (done_)
            done_(r);
        lock.lock();
        copying_ = false;
        ++copies_;
        cv_.notify_all();
    }
}

} // namespace orv
