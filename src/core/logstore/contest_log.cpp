#include "core/logstore/contest_log.h"

#include <errno.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <stdexcept>
#include <system_error>

#include "core/logstore/schema.h"
#include "core/util/text.h"

namespace orv {
namespace {

constexpr const char* kColumns =
    "rowid, \"Call\", \"Locator\", \"QRG\", \"DatTime\", \"RSTgeg\", \"QSONr\", \"RSTerh\", "
    "\"QRB\", \"QSL\", \"Notice\", \"Mod\", \"Dupe\", \"Name\", \"ModRX\", \"AusBr\", "
    "\"ErrQSO\", \"OPCall\"";

constexpr const char* kAssignments =
    "\"Call\"=?1, \"Locator\"=?2, \"QRG\"=?3, \"DatTime\"=?4, \"RSTgeg\"=?5, \"QSONr\"=?6, "
    "\"RSTerh\"=?7, \"QRB\"=?8, \"QSL\"=?9, \"Notice\"=?10, \"Mod\"=?11, \"Dupe\"=?12, "
    "\"Name\"=?13, \"ModRX\"=?14, \"AusBr\"=?15, \"ErrQSO\"=?16, \"OPCall\"=?17";

std::string table(int b) {
    return sql::quoteIdent(band(b).table);
}

// Rows with equal keys keep the order in which they were stored, as the
// index (which ends in the rowid) gives them.
std::string orderBy(LogIndex index) {
    switch (index) {
    case LogIndex::QSONr:
        return " ORDER BY \"QSONr\", rowid";
    case LogIndex::Call:
        return " ORDER BY \"Call\", rowid";
    case LogIndex::Locator:
        return " ORDER BY \"Locator\", rowid";
    case LogIndex::ErrQSO:
        return " ORDER BY \"ErrQSO\", rowid";
    }
    return {};
}

QsoRow readRow(const sql::Stmt& st) {
    QsoRow r;
    r.rowId = st.int64(0);
    r.call = st.text(1);
    r.locator = st.text(2);
    r.qrg = st.int64(3);
    r.datTime = DateTime::fromStorage(st.text(4)).value_or(DateTime{});
    r.rstGeg = st.text(5);
    r.qsoNr = st.int64(6);
    r.rstErh = st.text(7);
    r.qrb = st.int64(8);
    r.qsl = st.int64(9) != 0;
    r.notice = st.text(10);
    r.mod = st.text(11);
    r.dupe = st.int64(12) != 0;
    r.name = st.text(13);
    r.modRx = st.text(14);
    r.ausBr = st.text(15);
    r.errQso = st.int64(16) != 0;
    r.opCall = st.text(17);
    r.freqHz = st.int64(18);
    return r;
}

void bindRow(sql::Stmt& st, const QsoRow& r) {
    st.bind(1, r.call)
        .bind(2, r.locator)
        .bind(3, r.qrg)
        .bind(4, r.datTime.toStorage())
        .bind(5, r.rstGeg)
        .bind(6, r.qsoNr)
        .bind(7, r.rstErh)
        .bind(8, r.qrb)
        .bind(9, r.qsl ? 1 : 0)
        .bind(10, r.notice)
        .bind(11, r.mod)
        .bind(12, r.dupe ? 1 : 0)
        .bind(13, r.name)
        .bind(14, r.modRx)
        .bind(15, r.ausBr)
        .bind(16, r.errQso ? 1 : 0)
        .bind(17, r.opCall);
}

void requireChange(sql::Db& db, const std::string& what) {
    if (db.changes() == 0)
        throw sql::Error(what, SQLITE_NOTFOUND);
}

// Puts a file, or a rename in a folder, on disk before we go on.
void syncPath(const std::filesystem::path& p, bool directory) {
    const int fd = ::open(p.c_str(), O_RDONLY | (directory ? O_DIRECTORY : 0));
    if (fd < 0)
        throw std::system_error(errno, std::generic_category(), "open " + p.string());
    const int rc = ::fsync(fd);
    const int err = errno;
    ::close(fd);
    if (rc != 0)
        throw std::system_error(err, std::generic_category(), "fsync " + p.string());
}

void insertMyDataRow(sql::Db& db, const NewLogData& data) {
    std::string cols = "\"MyCall\", \"MyLocator\", \"ContName\"";
    std::string vals = "?1, ?2, ?3";
    for (int i = 0; i < kBandCount; ++i) {
        cols += ", " + sql::quoteIdent(myDataField("Zaehl", i));
        vals += ", ?" + std::to_string(4 + i);
    }
    auto st = db.prepare("INSERT INTO \"MyData\" (" + cols + ") VALUES (" + vals + ")");
    st.bind(1, data.myCall).bind(2, data.myLocator).bind(3, data.contName);
    for (int i = 0; i < kBandCount; ++i)
        st.bind(4 + i, data.zaehl[static_cast<std::size_t>(i)]);
    st.run();
}

} // namespace

bool QsoRow::operator==(const QsoRow& o) const {
    return call == o.call && locator == o.locator && qrg == o.qrg && datTime == o.datTime &&
           rstGeg == o.rstGeg && qsoNr == o.qsoNr && rstErh == o.rstErh && qrb == o.qrb &&
           qsl == o.qsl && notice == o.notice && mod == o.mod && dupe == o.dupe && name == o.name &&
           modRx == o.modRx && ausBr == o.ausBr && errQso == o.errQso && opCall == o.opCall &&
           freqHz == o.freqHz;
}

ContestLog::ContestLog(std::filesystem::path path, sql::Db db)
    : path_(std::move(path)), db_(std::move(db)) {
    try {
        addOwnColumns(db_);
    } catch (const sql::Error&) {
        // A log on a read-only medium is read as it stands; its QSOs have no
        // known frequency.
    }
    for (int i = 0; i < kBandCount; ++i)
        freqColumn_[static_cast<std::size_t>(i)] = FieldExists(db_, band(i).table, "FreqHz");
}

std::string ContestLog::columns(int b) const {
    return std::string(kColumns) +
           (freqColumn_.at(static_cast<std::size_t>(b)) ? ", \"FreqHz\"" : ", 0");
}

void addOwnColumns(sql::Db& db) {
    // Logs of older versions and of other programs lack the column; it is
    // added on opening, and their rows read as "frequency unknown".
    for (const Band& b : kBands) {
        if (!FieldExists(db, b.table, "FreqHz"))
            db.exec("ALTER TABLE " + sql::quoteIdent(b.table) +
                    " ADD COLUMN \"FreqHz\" INTEGER NOT NULL DEFAULT 0");
    }
}

ContestLog ContestLog::create(const std::filesystem::path& path, const NewLogData& data) {
    if (std::filesystem::exists(path))
        throw std::runtime_error("log file exists: " + path.string());
    // A short name of its own, so that a log name as long as the file
    // system allows still has room for it.
    const std::filesystem::path building =
        path.parent_path() / (".new-log-" + std::to_string(::getpid()) + ".tmp");
    removeLogFile(building);
    try {
        {
            // Nobody else sees this file until it is complete, so it is built
            // without a sync per table and synced once at the end.
            sql::Db db(building.string());
            db.exec("PRAGMA journal_mode=MEMORY");
            db.exec("PRAGMA synchronous=OFF");
            NewQbLogBD(db);
            sql::Transaction tx(db);
            insertMyDataRow(db, data);
            tx.commit();
        }
        syncPath(building, false);
        // Journal files without their log belong to no database; beside the
        // new file they would be taken for its own.
        removeLogFile(path);
        std::filesystem::rename(building, path);
    } catch (...) {
        std::error_code ignored;
        std::filesystem::remove(building, ignored);
        throw;
    }
    syncPath(path.parent_path().empty() ? "." : path.parent_path(), true);
    sql::Db db(path.string(), sql::Db::Mode::ReadWrite);
    db.setDurable();
    return ContestLog(path, std::move(db));
}

Result<ContestLog> ContestLog::open(const std::filesystem::path& path) {
    if (!std::filesystem::is_regular_file(path))
        throw sql::Error("cannot open " + path.string() + ": no such file", SQLITE_CANTOPEN);
    const std::string_view versionTable = band(1).table; // 144MHz
    if (!FieldExists(path, versionTable, "ErrQSO") || !FieldExists(path, versionTable, "OPCall"))
        return refuse(208);
    sql::Db db(path.string(), sql::Db::Mode::ReadWrite);
    db.setDurable();
    return ContestLog(path, std::move(db));
}

ContestLog ContestLog::openForReading(const std::filesystem::path& path) {
    if (!std::filesystem::is_regular_file(path))
        throw sql::Error("cannot open " + path.string() + ": no such file", SQLITE_CANTOPEN);
    return ContestLog(path, sql::Db(path.string(), sql::Db::Mode::ReadOnly));
}

void removeLogFile(const std::filesystem::path& path) {
    for (const char* suffix : {"", "-wal", "-shm", "-journal"}) {
        std::filesystem::path p = path;
        p += suffix;
        std::filesystem::remove(p);
    }
}

// --- reading ---------------------------------------------------------------

MyDataRow ContestLog::myData() {
    auto st = db_.prepare("SELECT * FROM \"MyData\" LIMIT 1");
    MyDataRow d;
    if (!st.step())
        return d;
    for (int c = 0; c < st.columnCount(); ++c) {
        const std::string name = st.columnName(c);
        if (text::iequals(name, "MyCall"))
            d.myCall = st.text(c);
        else if (text::iequals(name, "MyLocator"))
            d.myLocator = st.text(c);
        else if (text::iequals(name, "ContName"))
            d.contName = st.text(c);
    }
    for (int i = 0; i < kBandCount; ++i) {
        const auto bi = static_cast<std::size_t>(i);
        for (int c = 0; c < st.columnCount(); ++c) {
            const std::string name = st.columnName(c);
            if (text::iequals(name, myDataField("ODX", i)))
                d.totals[bi].odx = st.int64(c);
            else if (text::iequals(name, myDataField("PGesamt", i)))
                d.totals[bi].pGesamt = st.int64(c);
            else if (text::iequals(name, myDataField("ODXNr", i)))
                d.totals[bi].odxNr = st.int64(c);
            else if (text::iequals(name, myDataField("Zaehl", i)) && !st.isNull(c))
                d.zaehl[bi] = st.integer(c);
        }
    }
    return d;
}

BandTotals ContestLog::totals(int b) {
    auto st = db_.prepare("SELECT " + sql::quoteIdent(myDataField("PGesamt", b)) + ", " +
                          sql::quoteIdent(myDataField("ODX", b)) + ", " +
                          sql::quoteIdent(myDataField("ODXNr", b)) + " FROM \"MyData\" LIMIT 1");
    BandTotals t;
    if (st.step())
        t = BandTotals{st.int64(0), st.int64(1), st.int64(2)};
    return t;
}

std::int64_t ContestLog::rowCount(int b) {
    auto st = db_.prepare("SELECT count(*) FROM " + table(b));
    st.step();
    return st.int64(0);
}

std::array<bool, kBandCount> ContestLog::bandsWithQsos() {
    std::array<bool, kBandCount> has{};
    for (int i = 0; i < kBandCount; ++i) {
        auto st = db_.prepare("SELECT EXISTS (SELECT 1 FROM " + table(i) + ")");
        st.step();
        has[static_cast<std::size_t>(i)] = st.int64(0) != 0;
    }
    return has;
}

std::vector<QsoRow> ContestLog::select(int b, const std::string& whereOrder,
                                       const std::function<void(sql::Stmt&)>& bind) {
    auto st = db_.prepare("SELECT " + columns(b) + " FROM " + table(b) + whereOrder);
    if (bind)
        bind(st);
    std::vector<QsoRow> out;
    while (st.step())
        out.push_back(readRow(st));
    return out;
}

std::optional<QsoRow> ContestLog::row(int b, RowId id) {
    auto r = select(b, " WHERE rowid = ?1", [&](sql::Stmt& st) { st.bind(1, id); });
    if (r.empty())
        return std::nullopt;
    return r.front();
}

std::vector<QsoRow> ContestLog::rows(int b, LogIndex order) {
    std::vector<QsoRow> out;
    out.reserve(static_cast<std::size_t>(rowCount(b)));
    auto st = db_.prepare("SELECT " + columns(b) + " FROM " + table(b) + orderBy(order));
    while (st.step())
        out.push_back(readRow(st));
    return out;
}

void ContestLog::forEachRow(int b, LogIndex order,
                            const std::function<bool(const QsoRow&)>& visit) {
    auto st = db_.prepare("SELECT " + columns(b) + " FROM " + table(b) + orderBy(order));
    while (st.step())
        if (!visit(readRow(st)))
            break;
}

ContestLog::BandSnapshot ContestLog::bandSnapshot(int b) {
    // A deferred transaction: the first read fixes the snapshot that the
    // second one sees as well.
    db_.exec("BEGIN");
    try {
        BandSnapshot s;
        s.rows = rows(b);
        s.totals = totals(b);
        db_.exec("COMMIT");
        return s;
    } catch (...) {
        try {
            db_.exec("ROLLBACK");
        } catch (...) {
            // The connection ends the transaction on its own when it cannot here.
        }
        throw;
    }
}

std::int64_t ContestLog::dataVersion() {
    auto st = db_.prepare("PRAGMA data_version");
    st.step();
    return st.int64(0);
}

std::int64_t ContestLog::totalChanges() {
    return sqlite3_total_changes64(db_.handle());
}

std::optional<QsoRow> ContestLog::findByQsoNr(int b, std::int64_t qsoNr) {
    auto r = select(b, " WHERE \"QSONr\" = ?1" + orderBy(LogIndex::QSONr) + " LIMIT 1",
                    [&](sql::Stmt& st) { st.bind(1, qsoNr); });
    if (r.empty())
        return std::nullopt;
    return r.front();
}

std::optional<QsoRow> ContestLog::lastByQsoNr(int b) {
    auto r = select(b, " ORDER BY \"QSONr\" DESC, rowid DESC LIMIT 1", nullptr);
    if (r.empty())
        return std::nullopt;
    return r.front();
}

std::vector<QsoRow> ContestLog::rowsByCall(int b, std::string_view call) {
    const std::string key = text::trim(call);
    return select(b, " WHERE \"Call\" = ?1" + orderBy(LogIndex::Call),
                  [&](sql::Stmt& st) { st.bind(1, key); });
}

std::optional<QsoRow> ContestLog::firstLiveByCall(int b, std::string_view call) {
    const std::string key = text::trim(call);
    // "+" keeps the planner on CallIndex: ErrQSO = 0 holds for nearly every
    // row, and its index would walk the whole band.
    auto r =
        select(b, " WHERE \"Call\" = ?1 AND +\"ErrQSO\" = 0" + orderBy(LogIndex::Call) + " LIMIT 1",
               [&](sql::Stmt& st) { st.bind(1, key); });
    if (r.empty())
        return std::nullopt;
    return r.front();
}

std::vector<QsoRow> ContestLog::rowsByLocator(int b, std::string_view locator) {
    const std::string key = text::trim(locator);
    return select(b, " WHERE \"Locator\" = ?1" + orderBy(LogIndex::Locator),
                  [&](sql::Stmt& st) { st.bind(1, key); });
}

std::vector<QsoRow> ContestLog::deletedRows(int b) {
    return select(b, " WHERE \"ErrQSO\" = 1" + orderBy(LogIndex::ErrQSO), nullptr);
}

// --- writing ---------------------------------------------------------------

void ContestLog::updateTotalsIn(int b, const BandTotals& t) {
    auto& st = db_.cached("UPDATE \"MyData\" SET " + sql::quoteIdent(myDataField("PGesamt", b)) +
                          " = ?1, " + sql::quoteIdent(myDataField("ODX", b)) + " = ?2, " +
                          sql::quoteIdent(myDataField("ODXNr", b)) + " = ?3");
    st.bind(1, t.pGesamt).bind(2, t.odx).bind(3, t.odxNr).run();
    requireChange(db_, "MyData has no row in " + path_.string());
}

RowId ContestLog::addQso(int b, const QsoRow& row, const BandTotals& t) {
    const bool freq = freqColumn_.at(static_cast<std::size_t>(b));
    const std::string insert = "INSERT INTO " + table(b) +
                               " (\"Call\", \"Locator\", \"QRG\", \"DatTime\", \"RSTgeg\", "
                               "\"QSONr\", \"RSTerh\", \"QRB\", \"QSL\", \"Notice\", \"Mod\", "
                               "\"Dupe\", \"Name\", \"ModRX\", \"AusBr\", \"ErrQSO\", \"OPCall\"" +
                               (freq ? ", \"FreqHz\"" : "") +
                               ") VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, "
                               "?14, ?15, ?16, ?17" +
                               (freq ? ", ?18)" : ")");
    sql::Transaction tx(db_);
    auto& st = db_.cached(insert);
    bindRow(st, row);
    if (freq)
        st.bind(18, row.freqHz);
    st.run();
    const RowId id = db_.lastInsertRowid();
    updateTotalsIn(b, t);
    tx.commit();
    return id;
}

void ContestLog::updateQso(int b, RowId id, const QsoRow& row, const BandTotals& t) {
    sql::Transaction tx(db_);
    auto& st = db_.cached("UPDATE " + table(b) + " SET " + kAssignments + " WHERE rowid = ?18");
    bindRow(st, row);
    st.bind(18, id);
    st.run();
    requireChange(db_, "no row " + std::to_string(id) + " in " + std::string(band(b).table));
    updateTotalsIn(b, t);
    tx.commit();
}

void ContestLog::setErrQso(int b, RowId id, bool deleted, const BandTotals& t) {
    sql::Transaction tx(db_);
    auto st = db_.prepare("UPDATE " + table(b) + " SET \"ErrQSO\" = ?1 WHERE rowid = ?2");
    st.bind(1, deleted ? 1 : 0).bind(2, id).run();
    requireChange(db_, "no row " + std::to_string(id) + " in " + std::string(band(b).table));
    updateTotalsIn(b, t);
    tx.commit();
}

void ContestLog::writeTotals(int b, const BandTotals& t) {
    sql::Transaction tx(db_);
    updateTotalsIn(b, t);
    tx.commit();
}

void ContestLog::emptyBand(int b) {
    sql::Transaction tx(db_);
    db_.exec("DELETE FROM " + table(b));
    db_.exec("UPDATE \"MyData\" SET " + sql::quoteIdent(myDataField("ODX", b)) + " = NULL, " +
             sql::quoteIdent(myDataField("PGesamt", b)) + " = NULL, " +
             sql::quoteIdent(myDataField("ODXNr", b)) + " = NULL, " +
             sql::quoteIdent(myDataField("Zaehl", b)) + " = 1");
    requireChange(db_, "MyData has no row in " + path_.string());
    tx.commit();
}

void ContestLog::writeContestData(std::string_view contName,
                                  const std::array<int, kBandCount>& zaehl) {
    std::string sets = "\"ContName\" = ?1";
    for (int i = 0; i < kBandCount; ++i)
        sets += ", " + sql::quoteIdent(myDataField("Zaehl", i)) + " = ?" + std::to_string(2 + i);
    sql::Transaction tx(db_);
    auto st = db_.prepare("UPDATE \"MyData\" SET " + sets);
    st.bind(1, contName);
    for (int i = 0; i < kBandCount; ++i)
        st.bind(2 + i, zaehl[static_cast<std::size_t>(i)]);
    st.run();
    requireChange(db_, "MyData has no row in " + path_.string());
    tx.commit();
}

void ContestLog::writeStation(std::string_view myCall, std::string_view myLocator) {
    sql::Transaction tx(db_);
    db_.prepare("UPDATE \"MyData\" SET \"MyCall\" = ?1, \"MyLocator\" = ?2")
        .bind(1, myCall)
        .bind(2, myLocator)
        .run();
    requireChange(db_, "MyData has no row in " + path_.string());
    tx.commit();
}

} // namespace orv
