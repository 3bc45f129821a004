#include "core/shared/shared_sync.h"

namespace orv {

namespace {
constexpr int kBatch = 200;
}

SyncReport syncOnce(SharedStore& store, SharedServer& server) {
    SyncReport r;
    for (;;) {
        auto batch = store.outbox(kBatch);
        if (batch.empty())
            break;
        for (const auto& e : batch) {
            PushResult res = server.push(e);
            if (res.outcome == PushOutcome::Conflict) {
                store.recordConflict(e, res.server);
                ++r.conflicts;
                // Later entries of the same QSO went into the conflict.
                break;
            }
            store.markSent(e);
            ++r.sent;
        }
    }
    server.reportPosition(ownStatus(store));
    for (;;) {
        auto changes = server.changesSince(store.lastChangeNo(), kBatch);
        store.applyIncoming(changes);
        r.fetched += static_cast<std::int64_t>(changes.size());
        if (changes.size() < static_cast<std::size_t>(kBatch))
            break;
    }
    return r;
}

PositionStatus ownStatus(SharedStore& store) {
    PositionStatus s;
    s.position = store.setup().position;
    s.queued = store.queuedCount();
    const SharedQso* last = nullptr;
    auto all = store.stationQsos();
    for (const auto& q : all)
        if (q.position == s.position && (!last || last->row.datTime < q.row.datTime))
            last = &q;
    if (last) {
        s.band = last->band;
        s.opCall = last->row.opCall;
        s.lastCall = last->row.call;
        s.lastTime = last->row.datTime.toStorage();
    }
    return s;
}

} // namespace orv
