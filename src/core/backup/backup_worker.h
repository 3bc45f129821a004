#pragma once

#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <optional>
#include <thread>

#include "core/backup/backup.h"

namespace orv {

// Runs `BackupCopy` on a thread of its own, so a backup after every QSO never
// delays the next key press. While a copy runs, later requests coalesce into
// one more copy of the latest request when it ends.
class BackupWorker {
public:
    // `done` is called on the worker thread after each copy.
    explicit BackupWorker(std::function<void(const BackupResult&)> done,
                          FreeSpaceFn freeSpace = systemFreeSpace);
    // Finishes the copy in hand; a request still waiting is dropped.
    ~BackupWorker();
    BackupWorker(const BackupWorker&) = delete;
    BackupWorker& operator=(const BackupWorker&) = delete;

    void request(const std::filesystem::path& source, const std::filesystem::path& destination);
    // Waits until no copy runs or waits.
    void waitIdle();
    int copiesMade() const;

private:
    struct Job {
        std::filesystem::path source, destination;
    };
    void run();

    std::function<void(const BackupResult&)> done_;
    FreeSpaceFn freeSpace_;
    mutable std::mutex m_;
    std::condition_variable cv_;
    std::optional<Job> pending_;
    bool copying_ = false;
    bool stop_ = false;
    int copies_ = 0;
    std::thread thread_;
};

} // namespace orv
