#pragma once

// One round of a position's exchange with the server: send what waits, in
// order, then fetch what the others changed since the last change number.
// The worker thread of the adapter runs it after every local commit, every
// notice from the server and on a slow timer; the tool runs it once.

#include <cstdint>

#include "core/shared/shared_server.h"
#include "core/shared/shared_store.h"

namespace orv {

struct SyncReport {
    std::int64_t sent = 0;
    std::int64_t conflicts = 0;
    std::int64_t fetched = 0;
};

// Throws SharedServerError when the link fails; whatever was acknowledged
// before stays done, the rest waits for the next round.
SyncReport syncOnce(SharedStore& store, SharedServer& server);

// The status this position reports: the band and operator of its last QSO,
// that QSO's call and time, and the number of changes still waiting.
PositionStatus ownStatus(SharedStore& store);

} // namespace orv
