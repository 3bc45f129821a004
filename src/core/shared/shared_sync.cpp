#include "core/shared/shared_sync.h"

namespace orv {

namespace {
constexpr int kBatch = 200;
}

SyncReport syncOnce(SharedStore& store, SharedServer& server, SentMarks* marks, bool report) {
    SyncReport r;
    SentMarks now;
    SentMarks& sent = marks ? *marks : now;
    for (;;) {
        auto batch = store.outbox(kBatch, sent.lastSeq());
        if (batch.empty())
            break;
        for (const auto& e : batch) {
            PushResult res = server.push(e);
            if (res.outcome == PushOutcome::Conflict) {
                // What was acknowledged goes first: the conflict drops every
                // waiting change of the QSO and numbers may be taken again.
                flushMarks(store, sent);
                store.recordConflict(e, res.server);
                ++r.conflicts;
                break;
            }
            sent.entries.push_back(e);
            if (!marks)
                flushMarks(store, sent);
            ++r.sent;
        }
    }
    if (report)
        server.reportPosition(ownStatus(store, static_cast<std::int64_t>(sent.entries.size())));
    for (;;) {
        auto changes = server.changesSince(store.lastChangeNo(), kBatch);
        if (!changes.empty()) {
            store.applyIncoming(changes, sent.entries);
            sent.entries.clear();
        }
        r.fetched += static_cast<std::int64_t>(changes.size());
        if (changes.size() < static_cast<std::size_t>(kBatch))
            break;
    }
    return r;
}

void flushMarks(SharedStore& store, SentMarks& marks) {
    store.markSent(marks.entries);
    marks.entries.clear();
}

PositionStatus ownStatus(SharedStore& store, std::int64_t alreadySent) {
    PositionStatus s;
    s.position = store.setup().position;
    s.queued = store.queuedCount() - alreadySent;
    if (auto last = store.lastOwnQso()) {
        s.band = last->first;
        s.opCall = last->second.opCall;
        s.lastCall = last->second.call;
        s.lastTime = last->second.datTime.toStorage();
    }
    return s;
}

} // namespace orv
