#pragma once

// The worker thread of a shared contest: it sends the outbox and fetches the
// other positions' changes, never on the caller's thread.
//
// It runs a round (syncOnce) when started, after every nudge (a local
// commit), when the server notifies a change (LISTEN on a connection of its
// own), when another process committed to the log file (its data_version),
// and every few seconds as a safety net. After a lost link it connects again
// with a growing pause and catches up by change number. The state for the
// window is read with status(), which never waits on the server.

#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "core/shared/shared_server.h"
#include "platform/pg/pg_server.h"

namespace orv {

struct ShareStatus {
    bool online = false;
    bool schemaRefused = false;
    std::string lastError;
    std::int64_t queued = 0;
    std::int64_t conflicts = 0;
    std::int64_t rounds = 0; // completed rounds, for waiting on one
    std::vector<PositionStatus> positions;
    // The number the server holds for this position's next QSO on the band
    // watched; heldBand -1 while none has been given.
    int heldBand = -1;
    std::int64_t heldSerial = 0;
};

struct ShareWorkerTiming {
    int slowPollMs = 3000;
    int fileCheckMs = 200;
    int firstRetryMs = 250;
    int longestRetryMs = 4000;
    // The others' notices start a round at most this often: a station's
    // burst then lands in one write of the log file instead of one each,
    // and a commit here meets the worker's write lock less often.
    int noticeGapMs = 100;
    PgTimeouts timeouts;
};

// The present moment in UTC as a DatTime is stored, for the last contact.
std::string nowAsStored();

class PgShareWorker {
public:
    // `logFile` is opened by a connection of the worker's own.
    PgShareWorker(std::filesystem::path logFile, std::string password,
                  ShareWorkerTiming timing = {});
    ~PgShareWorker();
    PgShareWorker(const PgShareWorker&) = delete;
    PgShareWorker& operator=(const PgShareWorker&) = delete;

    void start();
    void stop();
    // Asks for a round soon, e.g. after a local commit.
    void nudge();
    // The band this position logs on: the worker has the server hold a
    // number of the station's series for its next QSO there (-1: none).
    void watchBand(int band);
    ShareStatus status() const;

private:
    void run();
    void loop();
    struct Wake {
        bool nudged = false;
        bool noticed = false;
    };
    Wake waitForWork(PgServer* listener, int timeoutMs);

    std::filesystem::path logFile_;
    std::string password_;
    ShareWorkerTiming timing_;
    mutable std::mutex mutex_;
    std::condition_variable wake_;
    bool stopping_ = false;
    bool nudged_ = false;
    int watchedBand_ = -1;
    ShareStatus status_;
    int wakeFd_ = -1;
    std::thread thread_;
};

} // namespace orv
