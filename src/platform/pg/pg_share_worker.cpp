#include "platform/pg/pg_share_worker.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <ctime>

#include "core/logstore/bands.h"
#include "core/shared/shared_store.h"
#include "core/shared/shared_sync.h"
#include "core/util/sqlite.h"

namespace orv {

std::string nowAsStored() {
    const auto t = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm tm{};
    gmtime_r(&t, &tm);
    return DateTime{tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec}
        .toStorage();
}

PgShareWorker::PgShareWorker(std::filesystem::path logFile, std::string password,
                             ShareWorkerTiming timing)
    : logFile_(std::move(logFile)), password_(std::move(password)), timing_(timing) {
    wakeFd_ = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
}

PgShareWorker::~PgShareWorker() {
    stop();
    if (wakeFd_ >= 0)
        close(wakeFd_);
}

void PgShareWorker::start() {
    if (thread_.joinable())
        return;
    stopping_ = false;
    thread_ = std::thread([this] { run(); });
}

void PgShareWorker::stop() {
    {
        std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    nudge();
    if (thread_.joinable())
        thread_.join();
}

void PgShareWorker::nudge() {
    {
        std::lock_guard lock(mutex_);
        nudged_ = true;
    }
    const std::uint64_t one = 1;
    if (wakeFd_ >= 0) [[maybe_unused]]
        auto n = write(wakeFd_, &one, sizeof one);
}

void PgShareWorker::watchBand(int band) {
    {
        std::lock_guard lock(mutex_);
        watchedBand_ = band;
    }
    nudge();
}

ShareStatus PgShareWorker::status() const {
    std::lock_guard lock(mutex_);
    return status_;
}

namespace {
PgServer::ContestInfo contestOf(sql::Db& db) {
    std::string zaehl;
    for (int b = 0; b < kBandCount; ++b)
        zaehl += std::string(zaehl.empty() ? "" : ", ") + "coalesce(" +
                 sql::quoteIdent(myDataField("Zaehl", b)) + ", 1)";
    auto st = db.prepare("SELECT MyCall, MyLocator, ContName, " + zaehl + " FROM MyData");
    PgServer::ContestInfo info;
    if (!st.step())
        return info;
    info.myCall = st.text(0);
    info.myLocator = st.text(1);
    info.contName = st.text(2);
    for (int b = 0; b < kBandCount; ++b)
        info.weights += (b ? "," : "") + std::to_string(st.int64(3 + b));
    return info;
}
} // namespace

// Waits on the notice connection and the nudge together, until either has
// something or the time ran out.
PgShareWorker::Wake PgShareWorker::waitForWork(PgServer* listener, int timeoutMs) {
    pollfd fds[2] = {{wakeFd_, POLLIN, 0}, {listener ? listener->socket() : -1, POLLIN, 0}};
    Wake wake;
    if (poll(fds, 2, std::max(timeoutMs, 0)) <= 0)
        return wake;
    if (fds[0].revents & POLLIN) {
        std::uint64_t v = 0;
        [[maybe_unused]] auto r = read(wakeFd_, &v, sizeof v);
        wake.nudged = true;
    }
    if (listener && (fds[1].revents & (POLLIN | POLLERR | POLLHUP)))
        wake.noticed = listener->takeNotices();
    return wake;
}

void PgShareWorker::run() {
    // A log that cannot be opened here (removed, broken) ends the worker;
    // the window shows why and keeps logging locally.
    try {
        loop();
    } catch (const std::exception& e) {
        std::lock_guard lock(mutex_);
        status_.online = false;
        status_.lastError = e.what();
    }
}

void PgShareWorker::loop() {
    sql::Db db(logFile_.string(), sql::Db::Mode::ReadWrite);
    // What this connection writes (sent marks, the cache, the change number)
    // may roll back at a power cut without harm: a change sent twice is held
    // once, a lost fetch is fetched again. Without a sync at each of its
    // commits it holds the write lock for microseconds, and the position's
    // own commits, durable on their connection, do not wait for it.
    db.exec("PRAGMA synchronous = NORMAL");
    SharedStore store(db);
    const ShareSetup setup = store.setup();
    PgServer server(setup.server, password_, setup.contest, timing_.timeouts);
    PgServer listener(setup.server, password_, setup.contest, timing_.timeouts);
    int retryMs = timing_.firstRetryMs;
    auto dataVersion = [&] {
        auto st = db.prepare("PRAGMA data_version");
        st.step();
        return st.int64(0);
    };
    std::int64_t seenVersion = -1;
    auto lastRound = std::chrono::steady_clock::time_point{};
    auto lastNoted = std::chrono::steady_clock::time_point{};
    SentMarks marks;
    auto lastFlush = std::chrono::steady_clock::time_point{};
    auto lastReport = std::chrono::steady_clock::time_point{};
    std::vector<PositionStatus> positions;
    // The serial held for the band watched, and the highest number known
    // there when it was asked for.
    int heldBand = -1;
    std::int64_t heldSerial = 0;
    std::int64_t heldKnown = -1;
    bool published = false;
    bool roundDue = true;
    bool noticeDue = false;
    for (;;) {
        {
            std::lock_guard lock(mutex_);
            if (stopping_)
                break;
            roundDue = roundDue || nudged_;
            nudged_ = false;
        }
        const auto now = std::chrono::steady_clock::now();
        if (now - lastRound >= std::chrono::milliseconds(timing_.slowPollMs))
            roundDue = true;
        if (noticeDue && now - lastRound >= std::chrono::milliseconds(timing_.noticeGapMs))
            roundDue = true;
        const auto v = dataVersion();
        if (v != seenVersion) {
            seenVersion = v;
            roundDue = true;
        }
        if (roundDue) {
            try {
                if (!listener.connected())
                    listener.listen();
                if (!published) {
                    // The station's data for the positions that join; a
                    // contest shared before keeps what it has.
                    server.publishContest(contestOf(db));
                    published = true;
                }
                // The positions panel needs no more than a second's news.
                const bool report = now - lastReport >= std::chrono::seconds(1);
                syncOnce(store, server, &marks, report);
                if (report) {
                    positions = server.positions();
                    lastReport = now;
                }
                int band = -1;
                {
                    std::lock_guard lock(mutex_);
                    band = watchedBand_;
                }
                if (band >= 0 && band < kBandCount) {
                    const std::int64_t known = store.highestSerial(band);
                    if (band != heldBand || known != heldKnown) {
                        heldSerial = server.holdSerial(band, setup.position, known);
                        heldBand = band;
                        heldKnown = known;
                    }
                }
                if (!marks.entries.empty() && now - lastFlush >= std::chrono::seconds(1)) {
                    flushMarks(store, marks);
                    lastFlush = now;
                }
                if (now - lastNoted >= std::chrono::seconds(5)) {
                    store.noteContact(nowAsStored());
                    lastNoted = now;
                }
                std::lock_guard lock(mutex_);
                status_.online = true;
                status_.schemaRefused = false;
                status_.lastError.clear();
                status_.positions = positions;
                status_.heldBand = heldBand;
                status_.heldSerial = heldSerial;
                retryMs = timing_.firstRetryMs;
                roundDue = false;
                noticeDue = false;
                lastRound = now;
            } catch (const SharedSchemaError& e) {
                std::lock_guard lock(mutex_);
                status_.online = false;
                status_.schemaRefused = true;
                status_.lastError = e.what();
            } catch (const SharedServerError& e) {
                server.disconnect();
                listener.disconnect();
                std::lock_guard lock(mutex_);
                status_.online = false;
                status_.lastError = e.what();
            } catch (const sql::Error& e) {
                // The log file was busy beyond its wait or refused a write:
                // nothing was lost, the round comes again.
                std::lock_guard lock(mutex_);
                status_.lastError = e.what();
            }
            {
                std::lock_guard lock(mutex_);
                status_.queued =
                    store.queuedCount() - static_cast<std::int64_t>(marks.entries.size());
                status_.conflicts = static_cast<std::int64_t>(store.conflicts().size());
                ++status_.rounds;
            }
            seenVersion = dataVersion();
            if (roundDue) {
                // Still due: the link is down. Wait, growing, then try again.
                [[maybe_unused]] auto wake = waitForWork(nullptr, retryMs);
                retryMs = std::min(retryMs * 2, timing_.longestRetryMs);
                continue;
            }
        }
        if (!marks.entries.empty() &&
            std::chrono::steady_clock::now() - lastFlush >= std::chrono::seconds(1)) {
            try {
                flushMarks(store, marks);
                lastFlush = std::chrono::steady_clock::now();
            } catch (const sql::Error&) {
                // Busy beyond its wait: the marks stay and go with a later write.
            }
        }
        try {
            int waitMs = timing_.fileCheckMs;
            if (!marks.entries.empty())
                waitMs = std::min<int>(waitMs, 1000);
            if (noticeDue)
                waitMs = std::min<int>(
                    waitMs, static_cast<int>(timing_.noticeGapMs -
                                             std::chrono::duration_cast<std::chrono::milliseconds>(
                                                 std::chrono::steady_clock::now() - lastRound)
                                                 .count()));
            const Wake wake = waitForWork(listener.connected() ? &listener : nullptr, waitMs);
            roundDue = roundDue || wake.nudged;
            noticeDue = noticeDue || wake.noticed;
        } catch (const SharedServerError&) {
            listener.disconnect();
            roundDue = true;
        }
    }
    try {
        flushMarks(store, marks);
    } catch (const sql::Error&) {
        // Sent again at the next start and held once by the server.
    }
}

} // namespace orv
