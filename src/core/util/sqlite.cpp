#include "core/util/sqlite.h"

#include <sqlite3.h>

#include <utility>

namespace orv::sql {
namespace {

[[noreturn]] void fail(sqlite3* db, int code, std::string_view context) {
    std::string msg(context);
    msg += ": ";
    msg += db ? sqlite3_errmsg(db) : sqlite3_errstr(code);
    throw Error(msg, code);
}

} // namespace

Db::Db(const std::string& path, Mode mode) : path_(path) {
    int flags = SQLITE_OPEN_FULLMUTEX;
    switch (mode) {
    case Mode::ReadWriteCreate:
        flags |= SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
        break;
    case Mode::ReadWrite:
        flags |= SQLITE_OPEN_READWRITE;
        break;
    case Mode::ReadOnly:
        flags |= SQLITE_OPEN_READONLY;
        break;
    }
    const int rc = sqlite3_open_v2(path.c_str(), &db_, flags, nullptr);
    if (rc != SQLITE_OK) {
        std::string msg =
            "cannot open " + path + ": " + (db_ ? sqlite3_errmsg(db_) : sqlite3_errstr(rc));
        sqlite3_close(db_);
        db_ = nullptr;
        throw Error(msg, rc);
    }
    sqlite3_busy_timeout(db_, 5000);
    sqlite3_extended_result_codes(db_, 1);
}

Db::~Db() {
    close();
}

Db::Db(Db&& other) noexcept
    : db_(std::exchange(other.db_, nullptr)), path_(std::move(other.path_)),
      cache_(std::move(other.cache_)) {}

Db& Db::operator=(Db&& other) noexcept {
    if (this != &other) {
        close();
        db_ = std::exchange(other.db_, nullptr);
        path_ = std::move(other.path_);
        cache_ = std::move(other.cache_);
    }
    return *this;
}

void Db::close() {
    cache_.clear();
    if (db_) {
        sqlite3_close_v2(db_);
        db_ = nullptr;
    }
}

void Db::exec(std::string_view sql) {
    std::string s(sql);
    char* err = nullptr;
    const int rc = sqlite3_exec(db_, s.c_str(), nullptr, nullptr, &err);
    if (rc != SQLITE_OK) {
        std::string msg = err ? err : sqlite3_errstr(rc);
        sqlite3_free(err);
        throw Error(msg + " [" + s.substr(0, 200) + "]", rc);
    }
}

Stmt Db::prepare(std::string_view sql) {
    return Stmt(db_, sql);
}

Stmt& Db::cached(const std::string& sql) {
    auto it = cache_.find(sql);
    if (it == cache_.end())
        it = cache_.emplace(sql, std::make_unique<Stmt>(db_, sql)).first;
    it->second->reset();
    return *it->second;
}

std::int64_t Db::lastInsertRowid() const {
    return sqlite3_last_insert_rowid(db_);
}

int Db::changes() const {
    return sqlite3_changes(db_);
}

bool Db::tableExists(std::string_view name) {
    Stmt st = prepare("SELECT 1 FROM sqlite_master WHERE type='table' AND name=?1 COLLATE NOCASE");
    st.bind(1, name);
    return st.step();
}

void Db::setDurable() {
    exec("PRAGMA journal_mode=WAL");
    exec("PRAGMA synchronous=FULL");
    exec("PRAGMA temp_store=MEMORY");
}

Stmt::Stmt(sqlite3* db, std::string_view sql) : db_(db) {
    const int rc =
        sqlite3_prepare_v2(db, sql.data(), static_cast<int>(sql.size()), &stmt_, nullptr);
    if (rc != SQLITE_OK)
        fail(db, rc, std::string("prepare [") + std::string(sql.substr(0, 200)) + "]");
}

Stmt::~Stmt() {
    sqlite3_finalize(stmt_);
}

Stmt::Stmt(Stmt&& other) noexcept
    : db_(std::exchange(other.db_, nullptr)), stmt_(std::exchange(other.stmt_, nullptr)) {}

Stmt& Stmt::operator=(Stmt&& other) noexcept {
    if (this != &other) {
        sqlite3_finalize(stmt_);
        db_ = std::exchange(other.db_, nullptr);
        stmt_ = std::exchange(other.stmt_, nullptr);
    }
    return *this;
}

Stmt& Stmt::bind(int index, std::string_view value) {
    const int rc = sqlite3_bind_text(stmt_, index, value.data(), static_cast<int>(value.size()),
                                     SQLITE_TRANSIENT);
    if (rc != SQLITE_OK)
        fail(db_, rc, "bind");
    return *this;
}

Stmt& Stmt::bind(int index, std::int64_t value) {
    const int rc = sqlite3_bind_int64(stmt_, index, value);
    if (rc != SQLITE_OK)
        fail(db_, rc, "bind");
    return *this;
}

Stmt& Stmt::bind(int index, double value) {
    const int rc = sqlite3_bind_double(stmt_, index, value);
    if (rc != SQLITE_OK)
        fail(db_, rc, "bind");
    return *this;
}

Stmt& Stmt::bindNull(int index) {
    const int rc = sqlite3_bind_null(stmt_, index);
    if (rc != SQLITE_OK)
        fail(db_, rc, "bind");
    return *this;
}

bool Stmt::step() {
    const int rc = sqlite3_step(stmt_);
    if (rc == SQLITE_ROW)
        return true;
    if (rc == SQLITE_DONE)
        return false;
    fail(db_, rc, "step");
}

void Stmt::run() {
    while (step()) {
    }
    reset();
}

void Stmt::reset() {
    sqlite3_reset(stmt_);
    sqlite3_clear_bindings(stmt_);
}

std::string Stmt::text(int col) const {
    const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(stmt_, col));
    if (!p)
        return {};
    return std::string(p, static_cast<std::size_t>(sqlite3_column_bytes(stmt_, col)));
}

std::int64_t Stmt::int64(int col) const {
    return sqlite3_column_int64(stmt_, col);
}
double Stmt::real(int col) const {
    return sqlite3_column_double(stmt_, col);
}
bool Stmt::isNull(int col) const {
    return sqlite3_column_type(stmt_, col) == SQLITE_NULL;
}
int Stmt::columnCount() const {
    return sqlite3_column_count(stmt_);
}
std::string Stmt::columnName(int col) const {
    return sqlite3_column_name(stmt_, col);
}

Transaction::Transaction(Db& db) : db_(db) {
    db_.exec("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
    if (!done_) {
        try {
            db_.exec("ROLLBACK");
        } catch (...) {
            // The connection rolls back on its own when it cannot here.
        }
    }
}

void Transaction::commit() {
    db_.exec("COMMIT");
    done_ = true;
}

std::string quoteIdent(std::string_view name) {
    std::string out = "\"";
    for (char c : name) {
        if (c == '"')
            out += '"';
        out += c;
    }
    out += '"';
    return out;
}

void backupTo(Db& source, const std::string& destinationPath) {
    Db dest(destinationPath);
    sqlite3_backup* b = sqlite3_backup_init(dest.handle(), "main", source.handle(), "main");
    if (!b)
        fail(dest.handle(), sqlite3_errcode(dest.handle()), "backup");
    int rc = sqlite3_backup_step(b, -1);
    sqlite3_backup_finish(b);
    if (rc != SQLITE_DONE)
        fail(dest.handle(), rc, "backup");
}

} // namespace orv::sql
