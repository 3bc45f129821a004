#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>

struct sqlite3;
struct sqlite3_stmt;

// A thin RAII layer over the SQLite C API: a connection, a prepared statement
// and a transaction guard. Failures throw sql::Error with SQLite's message.
namespace orv::sql {

class Error : public std::runtime_error {
public:
    Error(const std::string& what, int code) : std::runtime_error(what), code_(code) {}
    int code() const { return code_; }

private:
    int code_;
};

class Stmt;

class Db {
public:
    enum class Mode { ReadWriteCreate, ReadWrite, ReadOnly };
    Db() = default;
    explicit Db(const std::string& path, Mode mode = Mode::ReadWriteCreate);
    ~Db();
    Db(Db&& other) noexcept;
    Db& operator=(Db&& other) noexcept;
    Db(const Db&) = delete;
    Db& operator=(const Db&) = delete;

    bool isOpen() const { return db_ != nullptr; }
    const std::string& path() const { return path_; }
    void close();
    void exec(std::string_view sql);
    Stmt prepare(std::string_view sql);
    // A statement prepared once per connection and kept: for the writes of
    // every commit, whose triggers SQLite would otherwise compile anew each
    // time. It comes reset with its bindings cleared; it must not be used
    // again while a caller still steps through it.
    Stmt& cached(const std::string& sql);
    std::int64_t lastInsertRowid() const;
    int changes() const;
    bool tableExists(std::string_view name);
    // Durable writes: WAL journal and a full sync at each commit, so a
    // transaction that returned survives a crash or a power cut. The
    // statement journal that a write with triggers needs stays in memory
    // instead of a file created and removed at every commit.
    void setDurable();
    sqlite3* handle() const { return db_; }

private:
    sqlite3* db_ = nullptr;
    std::string path_;
    std::unordered_map<std::string, std::unique_ptr<Stmt>> cache_;
};

class Stmt {
public:
    Stmt() = default;
    Stmt(sqlite3* db, std::string_view sql);
    ~Stmt();
    Stmt(Stmt&& other) noexcept;
    Stmt& operator=(Stmt&& other) noexcept;
    Stmt(const Stmt&) = delete;
    Stmt& operator=(const Stmt&) = delete;

    // Parameters count from 1, as in SQLite.
    Stmt& bind(int index, std::string_view value);
    Stmt& bind(int index, const char* value) { return bind(index, std::string_view(value)); }
    Stmt& bind(int index, const std::string& value) { return bind(index, std::string_view(value)); }
    Stmt& bind(int index, std::int64_t value);
    Stmt& bind(int index, int value) { return bind(index, static_cast<std::int64_t>(value)); }
    Stmt& bind(int index, double value);
    Stmt& bindNull(int index);
    // Returns true while a row is available.
    bool step();
    // Runs a statement that yields no row.
    void run();
    void reset();

    // Columns count from 0. Null reads as empty text and as 0.
    std::string text(int col) const;
    std::int64_t int64(int col) const;
    int integer(int col) const { return static_cast<int>(int64(col)); }
    double real(int col) const;
    bool isNull(int col) const;
    int columnCount() const;
    std::string columnName(int col) const;

private:
    sqlite3* db_ = nullptr;
    sqlite3_stmt* stmt_ = nullptr;
};

// BEGIN IMMEDIATE on construction, ROLLBACK on destruction unless committed.
class Transaction {
public:
    explicit Transaction(Db& db);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void commit();

private:
    Db& db_;
    bool done_ = false;
};

// Quotes an identifier for SQL: table names such as 144MHz need it.
std::string quoteIdent(std::string_view name);

// Copies a live database to a file with SQLite's online backup API.
void backupTo(Db& source, const std::string& destinationPath);

} // namespace orv::sql
