#pragma once

// One round of a position's exchange with the server: send what waits, in
// order, then fetch what the others changed since the last change number.
// The worker thread of the adapter runs it after every local commit, every
// notice from the server and on a slow timer; the tool runs it once.

#include <cstdint>
#include <vector>

#include "core/shared/shared_server.h"
#include "core/shared/shared_store.h"

namespace orv {

struct SyncReport {
    std::int64_t sent = 0;
    std::int64_t conflicts = 0;
    std::int64_t fetched = 0;
};

// Changes the server acknowledged whose outbox entries are still in the log
// file. The worker keeps them for up to a second, so that it does not write
// the file after every commit of the window (each write of another
// connection makes the window's next commit read its pages anew); a change
// sent again after a crash is held once by the server. They are written
// before anything fetched, which could otherwise be taken for a change still
// waiting here.
struct SentMarks {
    std::vector<OutboxEntry> entries;
    std::int64_t lastSeq() const { return entries.empty() ? 0 : entries.back().seq; }
};

// Throws SharedServerError when the link fails; whatever was acknowledged
// before stays done, the rest waits for the next round. Without `marks`
// every acknowledged change leaves the outbox at once; with them it is added
// there and the caller writes them with flushMarks. `report` sends this
// position's status as well.
SyncReport syncOnce(SharedStore& store, SharedServer& server, SentMarks* marks = nullptr,
                    bool report = true);
void flushMarks(SharedStore& store, SentMarks& marks);

// The status this position reports: the band and operator of its last QSO,
// that QSO's call and time, and the number of changes still waiting.
PositionStatus ownStatus(SharedStore& store, std::int64_t alreadySent = 0);

} // namespace orv
