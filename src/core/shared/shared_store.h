#pragma once

// The shared part of a contest log, kept in the log file itself: the QSO id
// and revision of each own row, the outbox of changes not yet on the server,
// the cache of the other positions' QSOs, and the conflicts the operator
// still has to resolve.
//
// The band tables and `MyData` keep their columns. Triggers on the band
// tables give every new row its id and put every insert, change and deletion
// into the outbox inside the writer's own transaction, so whatever writes the
// log (the window, the tool, an import) queues its changes atomically with
// them and a QSO is never durable without its outbox entry.
//
// Tables: `ShareSetup` (one row: server, position, contest, the last change
// number fetched, the time of the last round the server answered, and the flag that keeps the
// triggers quiet while a change from the server is written), `ShareQso` (band, rowid, id, revision
// of own rows), `ShareOutbox`, `ShareRemote`, `ShareConflict`.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/logstore/bands.h"
#include "core/shared/shared_server.h"
#include "core/util/sqlite.h"

namespace orv {

struct ShareSetup {
    std::string server;   // postgresql://USER@HOST:PORT/DB
    std::string position; // the name of this position
    std::string contest;  // the name the positions share the contest under
};

// A change of this position that the server refused because another
// position changed the QSO first. The server's version is in the log; the
// operator keeps either.
struct ShareConflict {
    std::int64_t id = 0;
    SharedQso mine;   // with the revision it was made on as rev
    SharedQso server; // the server's version when it was refused
};

// One QSO number given twice on a band by different positions.
struct DoubleSerial {
    std::int64_t qsoNr = 0;
    std::vector<std::string> uids;
};

// The whole station's figures of a band: its own live QSOs and the other
// positions' together.
struct StationFigures {
    std::int64_t qsos = 0;
    std::int64_t km = 0;      // the sum of the QRB of the live QSOs
    std::int64_t odx = 0;     // the longest QRB
    std::int64_t squares = 0; // distinct large squares (first four of the locator)
    bool operator==(const StationFigures&) const = default;
};

// The count of the QSOs and a hash over ids and revisions: two sides with
// equal digests hold the same revisions of the same QSOs.
struct ShareDigest {
    std::int64_t count = 0;
    std::uint64_t hash = 0;
    bool operator==(const ShareDigest&) const = default;
};
ShareDigest digestOf(std::vector<std::pair<std::string, std::int64_t>> idsAndRevs);

// The band and row that a QSO id of the form PREFIX-BAND-ROWID names, as this
// program makes them; nullopt for another form. Whether the row is still the
// QSO of that id, its stored id tells.
std::optional<std::pair<int, std::int64_t>> ownKeyOf(const std::string& uid);

class SharedStore {
public:
    static bool isShared(sql::Db& db);
    // Makes the log shared: the tables and triggers, an id for each row it
    // already holds, all of them queued. One transaction. A log shared
    // already keeps its ids and only takes the new setup.
    static void enable(sql::Db& db, const ShareSetup& setup);

    // Throws std::runtime_error when the log is not shared.
    explicit SharedStore(sql::Db& db);

    ShareSetup setup();
    std::int64_t lastChangeNo();
    // When the server last answered a whole round (DatTime as stored), empty
    // when never.
    std::string lastContact();
    void noteContact(const std::string& when);
    std::int64_t queuedCount();
    // The oldest waiting changes after entry `afterSeq`, in the order they
    // were made.
    std::vector<OutboxEntry> outbox(int limit, std::int64_t afterSeq = 0);

    // The server took these changes (or held them already): out of the
    // outbox, in one transaction.
    void markSent(const std::vector<OutboxEntry>& entries);
    // The server refused it: every waiting change of that QSO becomes one
    // conflict, and the server's version is written to the log.
    void recordConflict(const OutboxEntry& entry, const SharedQso& server);
    // Writes what the server sent: other positions' QSOs into the cache,
    // changes of own QSOs into the band tables. A QSO with a change still
    // waiting here is left for the push to settle. Moves the change number on.
    // `sent` are marked sent in the same transaction, before.
    void applyIncoming(const std::vector<SharedQso>& changes,
                       const std::vector<OutboxEntry>& sent = {});

    std::vector<ShareConflict> conflicts();
    // Sends the own version again, on the server's revision.
    void keepMine(std::int64_t conflictId);
    // Leaves the server's version (already in the log) and drops the conflict.
    void takeServer(std::int64_t conflictId);

    // A change of another position's QSO made here (correction, deletion mark).
    void changeRemote(const std::string& uid, const QsoRow& row);
    // Another position's QSO as the cache holds it.
    std::optional<SharedQso> remoteQso(const std::string& uid);
    // The count of the cached QSOs of a band and the sum of their revisions:
    // every change of the band's cache, here or fetched, moves it.
    std::pair<std::int64_t, std::int64_t> remoteStamp(int band);
    // Whether the station holds a live QSO with this call on the band other
    // than the QSO `exceptUid`: this position's rows and the cache.
    bool liveElsewhere(int band, const std::string& call, const std::string& exceptUid);

    std::optional<std::string> uidOf(int band, std::int64_t rowId);
    // This position's QSO with the latest time, and its band: read from the
    // time index of each band, since the worker asks on every round.
    std::optional<std::pair<int, QsoRow>> lastOwnQso();
    // Own and cached QSOs of the whole station, own first.
    std::vector<SharedQso> stationQsos();
    std::vector<SharedQso> remoteQsos(int band);
    // The other positions' QSOs of a band that carry the number `qsoNr`,
    // live and deleted, by position.
    std::vector<SharedQso> remoteQsosNumbered(int band, std::int64_t qsoNr);
    // The bands on which the other positions hold QSOs.
    std::array<bool, kBandCount> remoteBands();
    // The highest QSO number the position knows on a band, over all positions.
    std::int64_t highestSerial(int band);
    StationFigures stationFigures(int band);
    // Numbers that live QSOs of the band carry more than once.
    std::vector<DoubleSerial> doubleSerials(int band);
    ShareDigest digest();

private:
    sql::Stmt ownRow(const std::string& uid);
    void deleteSent(const std::vector<OutboxEntry>& entries);
    void writeOwn(const SharedQso& q, std::int64_t rowId);
    void writeRemote(const SharedQso& q);
    void applyOne(const SharedQso& q, bool overPending);
    void queue(const SharedQso& q, std::int64_t baseRev);
    bool pending(const std::string& uid);

    sql::Db& db_;
    std::string position_;
};

} // namespace orv
