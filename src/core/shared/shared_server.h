#pragma once

// What a shared contest exchanges with its meeting point, and the port through
// which core reaches it. The server holds every position's QSOs of one
// contest, each named by a QSO id that the position which logged it gave it;
// every change carries the revision it was made on and gets a change number
// from the server, by which the positions catch up.
//
// The port is implemented by the PostgreSQL adapter in platform; core never
// sees the database client. A call that cannot reach the server throws
// SharedServerError and changes nothing that was not committed there.

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/logstore/contest_log.h"

namespace orv {

// One QSO as the station shares it.
struct SharedQso {
    std::string uid;           // the QSO id, unique over all positions
    int band = 0;              // BandIndex
    std::string position;      // the position that logged it
    std::int64_t rev = 1;      // revision: 1 when logged, +1 for each change
    std::int64_t changeNo = 0; // the server's change number of this revision; 0 unsent
    QsoRow row;
    bool operator==(const SharedQso&) const = default;
};

// A change waiting in the outbox: the QSO as it was made, on the revision
// `baseRev` (0 for a new QSO).
struct OutboxEntry {
    std::int64_t seq = 0;
    std::int64_t baseRev = 0;
    SharedQso qso;
};

enum class PushOutcome {
    Stored,      // the server took the change
    AlreadyHeld, // the server held this revision already (an answer that got lost)
    Conflict,    // the server's QSO moved on from the base revision
};

struct PushResult {
    PushOutcome outcome = PushOutcome::Stored;
    // The server's QSO after the call: the stored change, or the newer one.
    SharedQso server;
};

// What a position shows the others about itself.
struct PositionStatus {
    std::string position;
    int band = -1; // BandIndex, -1 when none
    std::string opCall;
    std::string lastCall;
    std::string lastTime; // DatTime of the last QSO, as stored
    std::int64_t queued = 0;
    std::int64_t secondsSinceSeen = 0; // filled in by the server when read
    bool operator==(const PositionStatus&) const = default;
};

class SharedServerError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class SharedServer {
public:
    virtual ~SharedServer() = default;
    virtual PushResult push(const OutboxEntry& change) = 0;
    // Changes with a change number above `afterChangeNo`, in change order.
    virtual std::vector<SharedQso> changesSince(std::int64_t afterChangeNo, int limit) = 0;
    virtual void reportPosition(const PositionStatus& status) = 0;
    virtual std::vector<PositionStatus> positions() = 0;
    // The number the station gives `position` for its next QSO on the band,
    // held for it on the server: kept while it stays above `known` (the
    // highest number the position knows on the band), else the next number
    // of the band's series that no position holds.
    virtual std::int64_t holdSerial(int band, const std::string& position, std::int64_t known) = 0;
};

} // namespace orv
