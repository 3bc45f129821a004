// Making a log shared: the tables of the shared part and the triggers that
// give own rows their ids and queue their changes.

#include <string>

#include "core/logstore/bands.h"
#include "core/shared/shared_columns.h"
#include "core/shared/shared_store.h"

namespace orv {

using namespace shared_detail;

namespace {

// A deleted row's number may come again in its band: the id prefix changes
// with every deletion, so the new row's id does not.
const char* const kFreshPrefix = "lower(hex(randomblob(8)))";

std::string newUid(const std::string& band, const std::string& rowId) {
    return "(SELECT IdPrefix FROM ShareSetup) || '-" + band + "-' || " + rowId;
}

std::string qsoColumnDecls() {
    return "Call TEXT, Locator TEXT, QRG INTEGER, DatTime TEXT, RSTgeg TEXT, QSONr INTEGER, "
           "RSTerh TEXT, QRB INTEGER, QSL INTEGER, Notice TEXT, Mod TEXT, Dupe INTEGER, "
           "Name TEXT, ModRX TEXT, AusBr TEXT, ErrQSO INTEGER, OPCall TEXT, FreqHz INTEGER";
}

// The server's copy sits beside mine in ShareConflict with its columns
// prefixed; SQLite needs distinct names.
std::string conflictServerDecls() {
    std::string d;
    for (std::string part :
         {"Call TEXT", "Locator TEXT", "QRG INTEGER", "DatTime TEXT", "RSTgeg TEXT",
          "QSONr INTEGER", "RSTerh TEXT", "QRB INTEGER", "QSL INTEGER", "Notice TEXT", "Mod TEXT",
          "Dupe INTEGER", "Name TEXT", "ModRX TEXT", "AusBr TEXT", "ErrQSO INTEGER", "OPCall TEXT",
          "FreqHz INTEGER"})
        d += ", S" + part;
    return d;
}

void createTables(sql::Db& db) {
    db.exec("CREATE TABLE IF NOT EXISTS ShareSetup (Server TEXT NOT NULL, Position TEXT NOT "
            "NULL, Contest TEXT NOT NULL, LastChange INTEGER NOT NULL DEFAULT 0, Applying "
            "INTEGER NOT NULL DEFAULT 0, LastContact TEXT NOT NULL DEFAULT '', IdPrefix TEXT NOT "
            "NULL DEFAULT '')");
    // A log shared by an earlier version of the program gets the id prefix.
    if (!db.prepare("SELECT 1 FROM pragma_table_info('ShareSetup') WHERE name = 'IdPrefix'").step())
        db.exec("ALTER TABLE ShareSetup ADD COLUMN IdPrefix TEXT NOT NULL DEFAULT ''");
    // Every commit of a QSO writes here in its own transaction, so each
    // B-tree page these tables touch is one more page the commit syncs. A
    // QSO id names its row (see ownKeyOf), so ShareQso needs no index beside
    // its key and takes each new row at the end of its band; the outbox, a
    // few rows long, is scanned rather than indexed and numbers its entries
    // without AUTOINCREMENT's extra table.
    db.exec("CREATE TABLE IF NOT EXISTS ShareQso (Band INTEGER NOT NULL, RowRef INTEGER NOT "
            "NULL, Uid TEXT NOT NULL, Rev INTEGER NOT NULL, PRIMARY KEY (Band, RowRef)) WITHOUT "
            "ROWID");
    db.exec("CREATE TABLE IF NOT EXISTS ShareOutbox (Seq INTEGER PRIMARY KEY, Uid TEXT NOT NULL, "
            "Band INTEGER NOT NULL, BaseRev INTEGER NOT NULL, Rev INTEGER NOT NULL, Position "
            "TEXT NOT NULL, " +
            qsoColumnDecls() + ")");
    db.exec("CREATE TABLE IF NOT EXISTS ShareRemote (Uid TEXT PRIMARY KEY, Band INTEGER NOT "
            "NULL, Position TEXT NOT NULL, Rev INTEGER NOT NULL, ChangeNo INTEGER NOT NULL, " +
            qsoColumnDecls() + ")");
    db.exec("CREATE INDEX IF NOT EXISTS ShareRemote_Band ON ShareRemote (Band, QSONr)");
    // The duplicate check and the worked-bands look-up ask by band and call
    // on every typed call: the same expression as their query.
    db.exec("CREATE INDEX IF NOT EXISTS ShareRemote_Call ON ShareRemote (Band, upper(trim(Call)))");
    db.exec("CREATE TABLE IF NOT EXISTS ShareConflict (Id INTEGER PRIMARY KEY AUTOINCREMENT, "
            "Uid TEXT NOT NULL, Band INTEGER NOT NULL, MyRev INTEGER NOT NULL, MyPosition TEXT "
            "NOT NULL, " +
            qsoColumnDecls() +
            ", ServerRev INTEGER NOT NULL, ServerPosition TEXT NOT NULL, ServerChangeNo INTEGER "
            "NOT NULL" +
            conflictServerDecls() + ")");
}

void createTriggers(sql::Db& db, const std::string& position) {
    const std::string quiet = " WHEN (SELECT Applying FROM ShareSetup) = 0";
    const std::string pos = "'" + [&] {
        std::string s;
        for (char c : position)
            s += c == '\'' ? std::string("''") : std::string(1, c);
        return s;
    }() + "'";
    for (int b = 0; b < kBandCount; ++b) {
        const std::string t(kBands[static_cast<std::size_t>(b)].table);
        const std::string band = std::to_string(b);
        const std::string qt = sql::quoteIdent(t);
        const std::string own = " FROM ShareQso WHERE Band = " + band + " AND RowRef = ";
        db.exec("DROP TRIGGER IF EXISTS " + sql::quoteIdent("ShareIns_" + t));
        db.exec("DROP TRIGGER IF EXISTS " + sql::quoteIdent("ShareUpd_" + t));
        db.exec("DROP TRIGGER IF EXISTS " + sql::quoteIdent("ShareDel_" + t));
        db.exec("CREATE TRIGGER " + sql::quoteIdent("ShareIns_" + t) + " AFTER INSERT ON " + qt +
                quiet + " BEGIN INSERT INTO ShareQso (Band, RowRef, Uid, Rev) VALUES (" + band +
                ", NEW.rowid, " + newUid(band, "NEW.rowid") +
                ", 1); INSERT INTO ShareOutbox (Uid, Band, "
                "BaseRev, Rev, Position, " +
                qsoColumns() + ") SELECT Uid, " + band + ", 0, 1, " + pos + ", " +
                qsoColumns("NEW.") + own + "NEW.rowid; END");
        db.exec("CREATE TRIGGER " + sql::quoteIdent("ShareUpd_" + t) + " AFTER UPDATE ON " + qt +
                quiet + " BEGIN UPDATE ShareQso SET Rev = Rev + 1 WHERE Band = " + band +
                " AND RowRef = NEW.rowid; INSERT INTO ShareOutbox (Uid, Band, BaseRev, Rev, "
                "Position, " +
                qsoColumns() + ") SELECT Uid, " + band + ", Rev - 1, Rev, " + pos + ", " +
                qsoColumns("NEW.") + own + "NEW.rowid; END");
        // Emptying a band keeps the station's copy: the QSOs become deletion
        // marks for the others and stay in the cache here.
        std::string gone = qsoColumns("OLD.");
        gone.replace(gone.find("OLD.ErrQSO"), 10, "1");
        db.exec("CREATE TRIGGER " + sql::quoteIdent("ShareDel_" + t) + " AFTER DELETE ON " + qt +
                quiet + " BEGIN INSERT INTO ShareOutbox (Uid, Band, BaseRev, Rev, Position, " +
                qsoColumns() + ") SELECT Uid, " + band + ", Rev, Rev + 1, " + pos + ", " + gone +
                own + "OLD.rowid; INSERT INTO ShareRemote (Uid, Band, Position, Rev, ChangeNo, " +
                qsoColumns() + ") SELECT Uid, " + band + ", " + pos + ", Rev + 1, 0, " + gone +
                own + "OLD.rowid; DELETE" + own +
                "OLD.rowid; UPDATE ShareSetup SET IdPrefix = " + kFreshPrefix + "; END");
    }
}

} // namespace

bool SharedStore::isShared(sql::Db& db) {
    if (!db.tableExists("ShareSetup"))
        return false;
    auto st = db.prepare("SELECT count(*) FROM ShareSetup");
    return st.step() && st.int64(0) == 1;
}

void SharedStore::enable(sql::Db& db, const ShareSetup& setup) {
    sql::Transaction tx(db);
    createTables(db);
    db.exec("DELETE FROM ShareSetup");
    db.prepare("INSERT INTO ShareSetup (Server, Position, Contest, IdPrefix) VALUES (?1, ?2, ?3, " +
               std::string(kFreshPrefix) + ")")
        .bind(1, setup.server)
        .bind(2, setup.position)
        .bind(3, setup.contest)
        .run();
    createTriggers(db, setup.position);
    // Rows logged before the log was shared get their ids now and are queued;
    // rows that have ids keep them and are not sent again. The new ones carry
    // revision 0 until they are queued.
    for (int b = 0; b < kBandCount; ++b) {
        const std::string qt = sql::quoteIdent(kBands[static_cast<std::size_t>(b)].table);
        const std::string band = std::to_string(b);
        db.exec("INSERT INTO ShareQso (Band, RowRef, Uid, Rev) SELECT " + band + ", rowid, " +
                newUid(band, "rowid") + ", 0 FROM " + qt +
                " WHERE rowid NOT IN (SELECT RowRef FROM ShareQso WHERE Band = " + band + ")");
        db.exec("INSERT INTO ShareOutbox (Uid, Band, BaseRev, Rev, Position, " + qsoColumns() +
                ") SELECT q.Uid, " + band + ", 0, 1, s.Position, " + qsoColumns("t.") + " FROM " +
                qt + " t JOIN ShareQso q ON q.Band = " + band +
                " AND q.RowRef = t.rowid, ShareSetup s WHERE q.Rev = 0 ORDER BY t.rowid");
    }
    db.exec("UPDATE ShareQso SET Rev = 1 WHERE Rev = 0");
    tx.commit();
}

} // namespace orv
