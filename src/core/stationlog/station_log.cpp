#include "core/stationlog/station_log.h"

#include <stdexcept>
#include <string>

namespace orv {
namespace {

namespace fs = std::filesystem;

constexpr int kInvalidLog = 415;
constexpr int kInvalidRange = 391;

const std::string& selectColumns() {
    static const std::string cols = [] {
        std::string s;
        for (const auto& f : qjLogFields())
            s += (s.empty() ? "" : ", ") + sql::quoteIdent(f.Name);
        return s;
    }();
    return cols;
}

std::string selectFrom() {
    return "SELECT " + selectColumns() + " FROM " + sql::quoteIdent(kQjLogTable);
}

StationQso readRow(const sql::Stmt& st) {
    StationQso q;
    q.nr = st.int64(0);
    q.dateTime = DateTime::fromStorage(st.text(1)).value_or(DateTime{});
    for (int f = 2; f < kQjFieldCount; ++f)
        *textField(q, f) = st.text(f);
    return q;
}

// Binds the fields 1..19 to the parameters 1..19.
void bindFields(sql::Stmt& st, const StationQso& q) {
    st.bind(1, q.dateTime.toStorage());
    for (int f = 2; f < kQjFieldCount; ++f)
        st.bind(f, *textField(q, f));
}

std::string fieldList(int from) {
    std::string s;
    const auto& fields = qjLogFields();
    for (int i = from; i < kQjFieldCount; ++i)
        s += (i > from ? ", " : "") + sql::quoteIdent(fields[static_cast<std::size_t>(i)].Name);
    return s;
}

std::string params(int from, int to) {
    std::string s;
    for (int i = from; i <= to; ++i)
        s += (i > from ? ", ?" : "?") + std::to_string(i);
    return s;
}

void insertRow(sql::Db& db, std::int64_t nr, const StationQso& q) {
    auto st = db.prepare("INSERT INTO " + sql::quoteIdent(kQjLogTable) + " (" + fieldList(0) +
                         ") VALUES (?20, " + params(1, 19) + ")");
    bindFields(st, q);
    st.bind(20, nr);
    st.run();
}

std::optional<std::int64_t> scalar(sql::Db& db, const std::string& query) {
    auto st = db.prepare(query);
    if (!st.step() || st.isNull(0))
        return std::nullopt;
    return st.int64(0);
}

} // namespace

StationLog::StationLog(fs::path path, sql::Db db) : path_(std::move(path)), db_(std::move(db)) {
    db_.setDurable();
}

StationLog StationLog::create(const fs::path& path) {
    if (fs::exists(path))
        throw std::runtime_error("file exists: " + path.string());
    // Built under a temporary name and renamed when complete, so that a
    // crash never leaves a log without its indexes under the real name.
    if (path.has_parent_path())
        fs::create_directories(path.parent_path());
    fs::path fresh = path;
    fresh += ".new";
    std::error_code ec;
    fs::remove(fresh, ec);
    try {
        {
            sql::Db db(fresh.string());
            NewQjLogBD(db);
        }
        fs::rename(fresh, path);
    } catch (...) {
        fs::remove(fresh, ec);
        throw;
    }
    auto opened = open(path);
    if (!opened)
        throw std::runtime_error("new station log cannot be opened: " + path.string());
    return std::move(opened).value();
}

Result<StationLog> StationLog::open(const fs::path& path) {
    std::error_code ec;
    if (!fs::is_regular_file(path, ec))
        return refuse(kInvalidLog, {}, path.string());
    try {
        // Read-only first: a file that is no station log is not touched,
        // not even by switching its journal.
        {
            sql::Db probe(path.string(), sql::Db::Mode::ReadOnly);
            if (!isStationLogSchema(probe))
                return refuse(kInvalidLog, {}, path.string());
        }
        return StationLog(path, sql::Db(path.string(), sql::Db::Mode::ReadWrite));
    } catch (const sql::Error&) {
        return refuse(kInvalidLog, {}, path.string());
    }
}

std::int64_t StationLog::count() {
    return scalar(db_, "SELECT count(*) FROM " + sql::quoteIdent(kQjLogTable)).value_or(0);
}

std::vector<std::int64_t> StationLog::numbers() {
    std::vector<std::int64_t> out;
    out.reserve(static_cast<std::size_t>(count()));
    auto st = db_.prepare("SELECT Nr FROM " + sql::quoteIdent(kQjLogTable) + " ORDER BY Nr");
    while (st.step())
        out.push_back(st.int64(0));
    return out;
}

std::optional<std::int64_t> StationLog::firstNr() {
    return scalar(db_, "SELECT min(Nr) FROM " + sql::quoteIdent(kQjLogTable));
}

std::optional<std::int64_t> StationLog::lastNr() {
    return scalar(db_, "SELECT max(Nr) FROM " + sql::quoteIdent(kQjLogTable));
}

std::optional<StationQso> StationLog::find(std::int64_t nr) {
    auto st = db_.prepare(selectFrom() + " WHERE Nr = ?1");
    st.bind(1, nr);
    if (!st.step())
        return std::nullopt;
    return readRow(st);
}

std::vector<StationQso> StationLog::page(std::int64_t fromNr, int limit) {
    std::vector<StationQso> out;
    auto st = db_.prepare(selectFrom() + " WHERE Nr >= ?1 ORDER BY Nr LIMIT ?2");
    st.bind(1, fromNr).bind(2, limit);
    while (st.step())
        out.push_back(readRow(st));
    return out;
}

void StationLog::forEach(std::int64_t from, std::int64_t to,
                         const std::function<bool(const StationQso&)>& visit) {
    auto st = db_.prepare(selectFrom() + " WHERE Nr BETWEEN ?1 AND ?2 ORDER BY Nr");
    st.bind(1, from).bind(2, to);
    while (st.step())
        if (!visit(readRow(st)))
            return;
}

std::int64_t StationLog::add(const StationQso& qso) {
    sql::Transaction tx(db_);
    const std::int64_t nr = lastNr().value_or(0) + 1;
    insertRow(db_, nr, qso);
    tx.commit();
    return nr;
}

void StationLog::insert(const StationQso& qso) {
    sql::Transaction tx(db_);
    insertRow(db_, qso.nr, qso);
    tx.commit();
}

bool StationLog::update(std::int64_t nr, const StationQso& qso) {
    std::string set;
    const auto& fields = qjLogFields();
    for (int i = 1; i < kQjFieldCount; ++i)
        set += (i > 1 ? ", " : "") + sql::quoteIdent(fields[static_cast<std::size_t>(i)].Name) +
               " = ?" + std::to_string(i);
    sql::Transaction tx(db_);
    auto st =
        db_.prepare("UPDATE " + sql::quoteIdent(kQjLogTable) + " SET " + set + " WHERE Nr = ?20");
    bindFields(st, qso);
    st.bind(20, nr);
    st.run();
    const bool changed = db_.changes() > 0;
    tx.commit();
    return changed;
}

bool StationLog::remove(std::int64_t nr) {
    sql::Transaction tx(db_);
    auto st = db_.prepare("DELETE FROM " + sql::quoteIdent(kQjLogTable) + " WHERE Nr = ?1");
    st.bind(1, nr);
    st.run();
    const bool changed = db_.changes() > 0;
    tx.commit();
    return changed;
}

Result<std::int64_t> StationLog::removeRange(std::int64_t from, std::int64_t to) {
    sql::Transaction tx(db_);
    if (!rangeInLog(*this, from, to))
        return refuse(kInvalidRange);
    auto st =
        db_.prepare("DELETE FROM " + sql::quoteIdent(kQjLogTable) + " WHERE Nr BETWEEN ?1 AND ?2");
    st.bind(1, from).bind(2, to);
    st.run();
    const std::int64_t n = db_.changes();
    tx.commit();
    return n;
}

bool rangeInLog(StationLog& log, std::int64_t from, std::int64_t to) {
    const auto first = log.firstNr(), last = log.lastNr();
    return first && last && from <= to && from >= *first && to <= *last;
}

} // namespace orv
