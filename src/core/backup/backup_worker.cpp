#include "core/backup/backup_worker.h"

#ifdef __linux__
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

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

namespace {

// The copy yields to the operator: a lower CPU priority, and the lowest
// best-effort I/O priority where the disk's scheduler knows priorities (not
// the idle class, which a busy disk could starve for good). Both only ever lower this
// thread's own priority, so failure is harmless and ignored.
void runInBackground() {
#ifdef __linux__
    const auto tid = static_cast<id_t>(::syscall(SYS_gettid));
    (void)::setpriority(PRIO_PROCESS, tid, 10);
    constexpr int kWhoProcess = 1, kClassBestEffort = 2, kClassShift = 13, kLowest = 7;
    (void)::syscall(SYS_ioprio_set, kWhoProcess, static_cast<int>(tid),
                    kClassBestEffort << kClassShift | kLowest);
#endif
}

} // namespace

void BackupWorker::run() {
    runInBackground();
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
