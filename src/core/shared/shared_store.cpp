#include "core/shared/shared_store.h"

#include <algorithm>
#include <stdexcept>

#include "core/logstore/bands.h"
#include "core/shared/shared_columns.h"

namespace orv {

using namespace shared_detail;

namespace {

std::string bandTable(int band) {
    if (band < 0 || band >= kBandCount)
        throw std::out_of_range("band");
    return sql::quoteIdent(kBands[static_cast<std::size_t>(band)].table);
}

// Writes under Applying = 1, so that the triggers do not queue what came
// from the server; inside the caller's transaction.
class Quiet {
public:
    explicit Quiet(sql::Db& db) : db_(db) { db_.exec("UPDATE ShareSetup SET Applying = 1"); }
    ~Quiet() {
        try {
            db_.exec("UPDATE ShareSetup SET Applying = 0");
        } catch (...) {
            // The transaction rolls back and takes the flag with it.
        }
    }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

private:
    sql::Db& db_;
};

std::string serverColumns() {
    std::string s;
    std::string cols = qsoColumns();
    std::size_t start = 0;
    while (start < cols.size()) {
        std::size_t end = cols.find(", ", start);
        if (end == std::string::npos)
            end = cols.size();
        s += (s.empty() ? "S" : ", S") + cols.substr(start, end - start);
        start = end + 2;
    }
    return s;
}

} // namespace

ShareDigest digestOf(std::vector<std::pair<std::string, std::int64_t>> idsAndRevs) {
    std::sort(idsAndRevs.begin(), idsAndRevs.end());
    ShareDigest d;
    d.hash = 1469598103934665603ULL;
    for (const auto& [uid, rev] : idsAndRevs) {
        for (char c : uid + ":" + std::to_string(rev) + "\n") {
            d.hash ^= static_cast<unsigned char>(c);
            d.hash *= 1099511628211ULL;
        }
        ++d.count;
    }
    return d;
}

SharedStore::SharedStore(sql::Db& db) : db_(db) {
    if (!isShared(db))
        throw std::runtime_error("the log is not shared");
    position_ = setup().position;
}

ShareSetup SharedStore::setup() {
    auto st = db_.prepare("SELECT Server, Position, Contest FROM ShareSetup");
    st.step();
    return {st.text(0), st.text(1), st.text(2)};
}

std::int64_t SharedStore::lastChangeNo() {
    auto st = db_.prepare("SELECT LastChange FROM ShareSetup");
    st.step();
    return st.int64(0);
}

std::string SharedStore::lastContact() {
    auto st = db_.prepare("SELECT LastContact FROM ShareSetup");
    st.step();
    return st.text(0);
}

void SharedStore::noteContact(const std::string& when) {
    db_.prepare("UPDATE ShareSetup SET LastContact = ?1").bind(1, when).run();
}

std::int64_t SharedStore::queuedCount() {
    auto st = db_.prepare("SELECT count(*) FROM ShareOutbox");
    st.step();
    return st.int64(0);
}

std::vector<OutboxEntry> SharedStore::outbox(int limit, std::int64_t afterSeq) {
    auto st = db_.prepare("SELECT Seq, BaseRev, Uid, Band, Position, Rev, " + qsoColumns() +
                          " FROM ShareOutbox WHERE Seq > ?2 ORDER BY Seq LIMIT ?1");
    st.bind(1, limit).bind(2, afterSeq);
    std::vector<OutboxEntry> out;
    while (st.step()) {
        OutboxEntry e;
        e.seq = st.int64(0);
        e.baseRev = st.int64(1);
        e.qso.uid = st.text(2);
        e.qso.band = st.integer(3);
        e.qso.position = st.text(4);
        e.qso.rev = st.int64(5);
        e.qso.row = readQso(st, 6);
        out.push_back(std::move(e));
    }
    return out;
}

bool SharedStore::pending(const std::string& uid) {
    auto st = db_.prepare("SELECT 1 FROM ShareOutbox WHERE Uid = ?1 LIMIT 1");
    st.bind(1, uid);
    return st.step();
}

void SharedStore::markSent(const std::vector<OutboxEntry>& entries) {
    if (entries.empty())
        return;
    sql::Transaction tx(db_);
    deleteSent(entries);
    tx.commit();
}

void SharedStore::deleteSent(const std::vector<OutboxEntry>& entries) {
    // An emptied outbox numbers from 1 again, so each entry is named whole:
    // a sender in another process may have sent it, and a new change taken
    // its number, since it was read.
    auto& st = db_.cached("DELETE FROM ShareOutbox WHERE Seq = ?1 AND Uid = ?2 AND Rev = ?3");
    for (const auto& e : entries) {
        st.bind(1, e.seq).bind(2, e.qso.uid).bind(3, e.qso.rev);
        st.run();
    }
}

void SharedStore::writeOwn(const SharedQso& q, std::int64_t rowId) {
    auto st = db_.prepare("UPDATE " + bandTable(q.band) + " SET " + qsoAssignments(1) +
                          " WHERE rowid = ?19");
    bindQso(st, 1, q.row);
    st.bind(19, rowId).run();
    db_.prepare("UPDATE ShareQso SET Rev = ?1 WHERE Band = ?2 AND RowRef = ?3")
        .bind(1, q.rev)
        .bind(2, q.band)
        .bind(3, rowId)
        .run();
    // Another position changed one of our QSOs: the band's running numbers
    // in `MyData` follow its live rows, as after a correction here.
    const std::string t = bandTable(q.band);
    db_.exec("UPDATE MyData SET " + sql::quoteIdent(myDataField("PGesamt", q.band)) +
             " = (SELECT coalesce(sum(QRB), 0) FROM " + t + " WHERE ErrQSO = 0), " +
             sql::quoteIdent(myDataField("ODX", q.band)) +
             " = (SELECT coalesce(max(QRB), 0) FROM " + t + " WHERE ErrQSO = 0), " +
             sql::quoteIdent(myDataField("ODXNr", q.band)) + " = (SELECT QSONr FROM " + t +
             " WHERE ErrQSO = 0 ORDER BY QRB DESC, QSONr LIMIT 1)");
}

void SharedStore::writeRemote(const SharedQso& q) {
    auto st =
        db_.prepare("INSERT OR REPLACE INTO ShareRemote (Uid, Band, Position, Rev, "
                    "ChangeNo, " +
                    qsoColumns() + ") VALUES (?1, ?2, ?3, ?4, ?5, " + qsoPlaceholders(6) + ")");
    st.bind(1, q.uid).bind(2, q.band).bind(3, q.position).bind(4, q.rev).bind(5, q.changeNo);
    bindQso(st, 6, q.row);
    st.run();
}

std::optional<std::pair<int, std::int64_t>> ownKeyOf(const std::string& uid) {
    const auto second = uid.rfind('-');
    if (second == std::string::npos || second == 0)
        return std::nullopt;
    const auto first = uid.rfind('-', second - 1);
    if (first == std::string::npos)
        return std::nullopt;
    const std::string band = uid.substr(first + 1, second - first - 1);
    const std::string row = uid.substr(second + 1);
    auto digits = [](const std::string& t) {
        return !t.empty() && t.size() <= 18 &&
               std::all_of(t.begin(), t.end(), [](char c) { return c >= '0' && c <= '9'; });
    };
    if (!digits(band) || !digits(row) || band.size() > 2)
        return std::nullopt;
    return std::make_pair(std::stoi(band), std::stoll(row));
}

sql::Stmt SharedStore::ownRow(const std::string& uid) {
    // The id names the row; one that does not (made by an older layout, or
    // by another position) is looked for by its text.
    if (auto key = ownKeyOf(uid)) {
        auto st = db_.prepare(
            "SELECT Band, RowRef, Rev FROM ShareQso WHERE Band = ?1 AND RowRef = ?2 AND Uid = ?3");
        st.bind(1, key->first).bind(2, key->second).bind(3, uid);
        return st;
    }
    auto st = db_.prepare("SELECT Band, RowRef, Rev FROM ShareQso WHERE Uid = ?1");
    st.bind(1, uid);
    return st;
}

void SharedStore::applyOne(const SharedQso& q, bool overPending) {
    if (!overPending && pending(q.uid))
        return;
    auto own = ownRow(q.uid);
    if (own.step()) {
        if (q.rev > own.int64(2) || overPending)
            writeOwn(q, own.int64(1));
        return;
    }
    auto cached = db_.prepare("SELECT Rev FROM ShareRemote WHERE Uid = ?1");
    cached.bind(1, q.uid);
    if (cached.step() && cached.int64(0) >= q.rev && !overPending)
        return;
    writeRemote(q);
}

void SharedStore::applyIncoming(const std::vector<SharedQso>& changes,
                                const std::vector<OutboxEntry>& sent) {
    if (changes.empty()) {
        markSent(sent);
        return;
    }
    sql::Transaction tx(db_);
    deleteSent(sent);
    {
        Quiet quiet(db_);
        std::int64_t last = lastChangeNo();
        for (const auto& q : changes) {
            applyOne(q, false);
            last = std::max(last, q.changeNo);
        }
        db_.prepare("UPDATE ShareSetup SET LastChange = ?1").bind(1, last).run();
    }
    tx.commit();
}

void SharedStore::recordConflict(const OutboxEntry& entry, const SharedQso& server) {
    sql::Transaction tx(db_);
    // The last waiting change of the QSO is what this position meant.
    auto mineSt = db_.prepare("SELECT Seq, BaseRev, Uid, Band, Position, Rev, " + qsoColumns() +
                              " FROM ShareOutbox WHERE Uid = ?1 ORDER BY Seq DESC LIMIT 1");
    mineSt.bind(1, entry.qso.uid);
    SharedQso mine = entry.qso;
    if (mineSt.step())
        mine.row = readQso(mineSt, 6);
    mine.rev = entry.baseRev;
    db_.prepare("DELETE FROM ShareOutbox WHERE Uid = ?1").bind(1, entry.qso.uid).run();
    auto st = db_.prepare("INSERT INTO ShareConflict (Uid, Band, MyRev, MyPosition, " +
                          qsoColumns() + ", ServerRev, ServerPosition, ServerChangeNo, " +
                          serverColumns() + ") VALUES (?1, ?2, ?3, ?4, " + qsoPlaceholders(5) +
                          ", ?23, ?24, ?25, " + qsoPlaceholders(26) + ")");
    st.bind(1, mine.uid).bind(2, mine.band).bind(3, mine.rev).bind(4, mine.position);
    bindQso(st, 5, mine.row);
    st.bind(23, server.rev).bind(24, server.position).bind(25, server.changeNo);
    bindQso(st, 26, server.row);
    st.run();
    {
        Quiet quiet(db_);
        applyOne(server, true);
    }
    tx.commit();
}

std::vector<ShareConflict> SharedStore::conflicts() {
    auto st = db_.prepare("SELECT Id, Uid, Band, MyRev, MyPosition, " + qsoColumns() +
                          ", ServerRev, ServerPosition, ServerChangeNo, " + serverColumns() +
                          " FROM ShareConflict ORDER BY Id");
    std::vector<ShareConflict> out;
    while (st.step()) {
        ShareConflict c;
        c.id = st.int64(0);
        c.mine.uid = c.server.uid = st.text(1);
        c.mine.band = c.server.band = st.integer(2);
        c.mine.rev = st.int64(3);
        c.mine.position = st.text(4);
        c.mine.row = readQso(st, 5);
        c.server.rev = st.int64(23);
        c.server.position = st.text(24);
        c.server.changeNo = st.int64(25);
        c.server.row = readQso(st, 26);
        out.push_back(std::move(c));
    }
    return out;
}

void SharedStore::queue(const SharedQso& q, std::int64_t baseRev) {
    auto st =
        db_.prepare("INSERT INTO ShareOutbox (Uid, Band, BaseRev, Rev, Position, " + qsoColumns() +
                    ") VALUES (?1, ?2, ?3, ?4, ?5, " + qsoPlaceholders(6) + ")");
    st.bind(1, q.uid).bind(2, q.band).bind(3, baseRev).bind(4, q.rev).bind(5, q.position);
    bindQso(st, 6, q.row);
    st.run();
}

void SharedStore::keepMine(std::int64_t conflictId) {
    auto all = conflicts();
    auto it = std::find_if(all.begin(), all.end(),
                           [&](const ShareConflict& c) { return c.id == conflictId; });
    if (it == all.end())
        return;
    sql::Transaction tx(db_);
    SharedQso q = it->mine;
    q.position = it->server.position;
    q.rev = it->server.rev + 1;
    q.changeNo = 0;
    {
        Quiet quiet(db_);
        applyOne(q, true);
    }
    queue(q, it->server.rev);
    db_.prepare("DELETE FROM ShareConflict WHERE Id = ?1").bind(1, conflictId).run();
    tx.commit();
}

void SharedStore::takeServer(std::int64_t conflictId) {
    db_.prepare("DELETE FROM ShareConflict WHERE Id = ?1").bind(1, conflictId).run();
}

void SharedStore::changeRemote(const std::string& uid, const QsoRow& row) {
    sql::Transaction tx(db_);
    auto st = db_.prepare("SELECT Band, Position, Rev FROM ShareRemote WHERE Uid = ?1");
    st.bind(1, uid);
    if (!st.step())
        throw std::runtime_error("no QSO " + uid + " of another position");
    SharedQso q{uid, st.integer(0), st.text(1), st.int64(2) + 1, 0, row};
    writeRemote(q);
    queue(q, q.rev - 1);
    tx.commit();
}

std::optional<SharedQso> SharedStore::remoteQso(const std::string& uid) {
    auto st = db_.prepare("SELECT Band, Position, Rev, ChangeNo, " + qsoColumns() +
                          " FROM ShareRemote WHERE Uid = ?1");
    st.bind(1, uid);
    if (!st.step())
        return std::nullopt;
    return SharedQso{uid, st.integer(0), st.text(1), st.int64(2), st.int64(3), readQso(st, 4)};
}

std::pair<std::int64_t, std::int64_t> SharedStore::remoteStamp(int band) {
    auto st =
        db_.prepare("SELECT count(*), coalesce(sum(Rev), 0) FROM ShareRemote WHERE Band = ?1");
    st.bind(1, band);
    st.step();
    return {st.int64(0), st.int64(1)};
}

bool SharedStore::liveElsewhere(int band, const std::string& call, const std::string& exceptUid) {
    auto st =
        db_.prepare("SELECT EXISTS (SELECT 1 FROM " + bandTable(band) +
                    " WHERE Call = ?1 AND ErrQSO = 0) OR EXISTS (SELECT 1 FROM ShareRemote "
                    "WHERE Band = ?2 AND upper(trim(Call)) = ?1 AND ErrQSO = 0 AND Uid <> ?3)");
    st.bind(1, call).bind(2, band).bind(3, exceptUid);
    st.step();
    return st.int64(0) != 0;
}

std::optional<std::string> SharedStore::uidOf(int band, std::int64_t rowId) {
    auto st = db_.prepare("SELECT Uid FROM ShareQso WHERE Band = ?1 AND RowRef = ?2");
    st.bind(1, band).bind(2, rowId);
    if (!st.step())
        return std::nullopt;
    return st.text(0);
}

std::optional<std::pair<int, QsoRow>> SharedStore::lastOwnQso() {
    std::optional<std::pair<int, QsoRow>> last;
    for (int b = 0; b < kBandCount; ++b) {
        auto st = db_.prepare("SELECT " + qsoColumns() + " FROM " + bandTable(b) +
                              " ORDER BY DatTime DESC, rowid DESC LIMIT 1");
        if (!st.step())
            continue;
        QsoRow q = readQso(st, 0);
        if (!last || last->second.datTime < q.datTime)
            last = std::make_pair(b, std::move(q));
    }
    return last;
}

std::vector<SharedQso> SharedStore::stationQsos() {
    std::vector<SharedQso> out;
    for (int b = 0; b < kBandCount; ++b) {
        auto st = db_.prepare("SELECT q.Uid, q.Rev, " + qsoColumns("t.") + " FROM " + bandTable(b) +
                              " t JOIN ShareQso q ON q.Band = ?1 AND q.RowRef = "
                              "t.rowid ORDER BY t.rowid");
        st.bind(1, b);
        while (st.step())
            out.push_back({st.text(0), b, position_, st.int64(1), 0, readQso(st, 2)});
    }
    for (int b = 0; b < kBandCount; ++b)
        for (auto& q : remoteQsos(b))
            out.push_back(std::move(q));
    return out;
}

std::vector<SharedQso> SharedStore::remoteQsos(int band) {
    auto st = db_.prepare("SELECT Uid, Position, Rev, ChangeNo, " + qsoColumns() +
                          " FROM ShareRemote WHERE Band = ?1 ORDER BY QSONr, Uid");
    st.bind(1, band);
    std::vector<SharedQso> out;
    while (st.step())
        out.push_back({st.text(0), band, st.text(1), st.int64(2), st.int64(3), readQso(st, 4)});
    return out;
}

std::vector<SharedQso> SharedStore::remoteQsosNumbered(int band, std::int64_t qsoNr) {
    auto st =
        db_.prepare("SELECT Uid, Position, Rev, ChangeNo, " + qsoColumns() +
                    " FROM ShareRemote WHERE Band = ?1 AND QSONr = ?2 ORDER BY Position, Uid");
    st.bind(1, band).bind(2, qsoNr);
    std::vector<SharedQso> out;
    while (st.step())
        out.push_back({st.text(0), band, st.text(1), st.int64(2), st.int64(3), readQso(st, 4)});
    return out;
}

std::array<bool, kBandCount> SharedStore::remoteBands() {
    std::array<bool, kBandCount> out{};
    auto st = db_.prepare("SELECT DISTINCT Band FROM ShareRemote");
    while (st.step())
        if (st.integer(0) >= 0 && st.integer(0) < kBandCount)
            out[static_cast<std::size_t>(st.integer(0))] = true;
    return out;
}

std::int64_t SharedStore::highestSerial(int band) {
    auto st = db_.prepare("SELECT max(coalesce((SELECT max(QSONr) FROM " + bandTable(band) +
                          "), 0), coalesce((SELECT max(QSONr) FROM ShareRemote WHERE Band = ?1), "
                          "0))");
    st.bind(1, band);
    st.step();
    return st.int64(0);
}

StationFigures SharedStore::stationFigures(int band) {
    auto st = db_.prepare("WITH live (QRB, Square) AS (SELECT QRB, upper(substr(Locator, 1, 4)) "
                          "FROM " +
                          bandTable(band) +
                          " WHERE ErrQSO = 0 UNION ALL SELECT QRB, upper(substr(Locator, 1, 4)) "
                          "FROM ShareRemote WHERE Band = ?1 AND ErrQSO = 0) SELECT count(*), "
                          "coalesce(sum(QRB), 0), coalesce(max(QRB), 0), count(DISTINCT Square) "
                          "FROM live");
    st.bind(1, band);
    st.step();
    return {st.int64(0), st.int64(1), st.int64(2), st.int64(3)};
}

std::vector<DoubleSerial> SharedStore::doubleSerials(int band) {
    // Read by the window twice a second: one query over the band only.
    auto st = db_.prepare(
        "WITH live (Nr, Uid) AS (SELECT t.QSONr, q.Uid FROM " + bandTable(band) +
        " t JOIN ShareQso q ON q.Band = ?1 AND q.RowRef = t.rowid WHERE t.ErrQSO = 0 UNION ALL "
        "SELECT QSONr, Uid FROM ShareRemote WHERE Band = ?1 AND ErrQSO = 0) SELECT Nr, Uid FROM "
        "live WHERE Nr IN (SELECT Nr FROM live GROUP BY Nr HAVING count(*) > 1) ORDER BY Nr, Uid");
    st.bind(1, band);
    std::vector<DoubleSerial> out;
    while (st.step()) {
        if (out.empty() || out.back().qsoNr != st.int64(0))
            out.push_back({st.int64(0), {}});
        out.back().uids.push_back(st.text(1));
    }
    return out;
}

ShareDigest SharedStore::digest() {
    std::vector<std::pair<std::string, std::int64_t>> v;
    for (const auto& q : stationQsos())
        v.emplace_back(q.uid, q.rev);
    return digestOf(std::move(v));
}

} // namespace orv
