#include "core/reference/call_db.h"

#include <sqlite3.h>

#include <algorithm>
#include <map>
#include <system_error>

#include "core/app/app_paths.h"
#include "core/util/file_io.h"
#include "core/util/sqlite.h"
#include "core/util/text.h"

namespace orv {
namespace fs = std::filesystem;

namespace {

constexpr int kInvalidCall = 1;
constexpr int kInvalidLocator = 2;
constexpr int kInvalidFile = 258;

constexpr std::array<std::string_view, kBandCount> kCounterFields{
    "B6", "B2", "Bc70", "Bc23", "Bc13", "Bc9", "Bc6", "Bc3", "Bm12", "Bm6"};

bool isMaidenhead(std::string_view l) {
    auto in = [](char c, char lo, char hi) { return c >= lo && c <= hi; };
    if (l.size() != 4 && l.size() != 6)
        return false;
    if (!in(l[0], 'A', 'R') || !in(l[1], 'A', 'R') || !in(l[2], '0', '9') || !in(l[3], '0', '9'))
        return false;
    return l.size() == 4 || (in(l[4], 'A', 'X') && in(l[5], 'A', 'X'));
}

bool isCall(std::string_view c) {
    if (c.empty() || c.size() > kCallSize)
        return false;
    return std::all_of(c.begin(), c.end(), [](char ch) {
        return (ch >= 'A' && ch <= 'Z') || (ch >= '0' && ch <= '9') || ch == '/';
    });
}

void normalise(CallRecord& r) {
    r.Call = text::upper(text::trim(r.Call));
    r.Locator = text::upper(text::trim(r.Locator));
}

const std::string& columnList() {
    static const std::string cols = [] {
        std::string s = "Call, Locator";
        for (auto f : kCounterFields)
            s += ", " + std::string(f);
        return s + ", LastDate";
    }();
    return cols;
}

void bindRecord(sql::Stmt& st, const CallRecord& r) {
    st.bind(1, r.Call).bind(2, r.Locator);
    for (int i = 0; i < kBandCount; ++i)
        st.bind(3 + i, static_cast<std::int64_t>(r.counters[static_cast<std::size_t>(i)]));
    if (r.LastDate)
        st.bind(13, r.LastDate->toStorage());
    else
        st.bindNull(13);
}

CallRecord readRecord(const sql::Stmt& st) {
    CallRecord r;
    r.rowid = st.int64(0);
    r.Call = st.text(1);
    r.Locator = st.text(2);
    for (int i = 0; i < kBandCount; ++i)
        r.counters[static_cast<std::size_t>(i)] = static_cast<std::int32_t>(st.int64(3 + i));
    if (!st.isNull(13))
        r.LastDate = DateTime::fromStorage(st.text(13));
    return r;
}

} // namespace

const std::vector<FieldDesc>& callDbFields() {
    static const std::vector<FieldDesc> f = [] {
        std::vector<FieldDesc> v{
            FieldDesc{"Call", FieldType::Text, static_cast<std::int16_t>(kCallSize), true, false},
            FieldDesc{"Locator", FieldType::Text, static_cast<std::int16_t>(kLocatorSize), true,
                      false},
        };
        for (auto name : kCounterFields)
            v.push_back(FieldDesc{std::string(name), FieldType::Long, 0, false, false});
        v.push_back(FieldDesc{"LastDate", FieldType::Date, 0, false, false});
        return v;
    }();
    return f;
}

std::string_view counterField(int bandIndex) {
    return kCounterFields.at(static_cast<std::size_t>(bandIndex));
}

namespace {
constexpr const char* kStampTable = "QBDatStamp";
} // namespace

void ensureCallDb(sql::Db& db) {
    MakeLogTable(db, kCallDbTable, callDbFields());
    if (db.tableExists(kStampTable))
        return;
    sql::Transaction tx(db);
    db.exec("CREATE TABLE QBDatStamp (Stamp INTEGER NOT NULL)");
    db.exec("INSERT INTO QBDatStamp (Stamp) VALUES (random())");
    for (const char* change : {"INSERT", "UPDATE", "DELETE"}) {
        db.exec(std::string("CREATE TRIGGER IF NOT EXISTS QBDatStamp") + change + " AFTER " +
                change + " ON " + sql::quoteIdent(kCallDbTable) +
                " BEGIN UPDATE QBDatStamp SET Stamp = random(); END");
    }
    tx.commit();
}

std::optional<std::int64_t> readCallDbStamp(sqlite3* db) {
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(db, "SELECT Stamp FROM QBDatStamp", -1, &st, nullptr) != SQLITE_OK)
        return std::nullopt;
    std::optional<std::int64_t> stamp;
    if (sqlite3_step(st) == SQLITE_ROW)
        stamp = sqlite3_column_int64(st, 0);
    sqlite3_finalize(st);
    return stamp;
}

std::optional<std::int64_t> callDbStamp(sql::Db& db) {
    return readCallDbStamp(db.handle());
}

void addCallDbStamp(const fs::path& dbPath) {
    try {
        std::error_code ec;
        if (!fs::exists(dbPath, ec))
            return;
        sql::Db db(dbPath.string(), sql::Db::Mode::ReadWrite);
        if (db.tableExists(kCallDbTable) && !callDbStamp(db))
            ensureCallDb(db);
    } catch (const sql::Error&) {
        // Read-only: the image is built from the database at each start.
    }
}

void NewQBDat(const AppPaths& paths) {
    fs::path fresh = paths.callDbPath();
    fresh += ".new";
    std::error_code ec;
    fs::remove(fresh, ec);
    try {
        {
            sql::Db db(fresh.string());
            ensureCallDb(db);
        }
        fs::rename(fresh, paths.callDbPath());
    } catch (...) {
        fs::remove(fresh, ec);
        throw;
    }
    for (const char* side : {"-wal", "-shm", "-journal"}) {
        fs::path p = paths.callDbPath();
        p += side;
        fs::remove(p, ec);
    }
    fileio::writeAtomic(paths.qbDatIniPath(), std::string{});
}

Status validateCallRecord(const CallRecord& r) {
    if (!isCall(r.Call))
        return refuse(kInvalidCall, "Call", r.Call);
    if (!r.Locator.empty() && !isMaidenhead(r.Locator))
        return refuse(kInvalidLocator, "Locator", r.Locator);
    return okStatus();
}

struct CallDbStore::Impl {
    sql::Db db;
};

CallDbStore::CallDbStore(const fs::path& dbPath) : impl_(new Impl{sql::Db(dbPath.string())}) {
    try {
        impl_->db.setDurable();
        ensureCallDb(impl_->db);
    } catch (...) {
        delete impl_;
        throw;
    }
}

CallDbStore::~CallDbStore() {
    delete impl_;
}

sql::Db& CallDbStore::db() {
    return impl_->db;
}

std::vector<CallRecord> CallDbStore::all() {
    auto st = impl_->db.prepare("SELECT rowid, " + columnList() + " FROM " +
                                sql::quoteIdent(kCallDbTable) + " ORDER BY Call, rowid");
    std::vector<CallRecord> out;
    while (st.step())
        out.push_back(readRecord(st));
    return out;
}

std::optional<CallRecord> CallDbStore::find(std::int64_t rowid) {
    auto st = impl_->db.prepare("SELECT rowid, " + columnList() + " FROM " +
                                sql::quoteIdent(kCallDbTable) + " WHERE rowid = ?1");
    st.bind(1, rowid);
    if (!st.step())
        return std::nullopt;
    return readRecord(st);
}

std::int64_t CallDbStore::count() {
    auto st = impl_->db.prepare("SELECT COUNT(*) FROM " + sql::quoteIdent(kCallDbTable));
    st.step();
    return st.int64(0);
}

Result<std::int64_t> CallDbStore::add(CallRecord r) {
    normalise(r);
    if (auto v = validateCallRecord(r); !v)
        return v.failure();
    auto st =
        impl_->db.prepare("INSERT INTO " + sql::quoteIdent(kCallDbTable) + " (" + columnList() +
                          ") VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13)");
    bindRecord(st, r);
    st.run();
    return impl_->db.lastInsertRowid();
}

Status CallDbStore::change(CallRecord r) {
    normalise(r);
    if (auto v = validateCallRecord(r); !v)
        return v;
    std::string set;
    int i = 0;
    for (const auto& f : callDbFields()) {
        ++i;
        set += (i > 1 ? ", " : "") + f.Name + " = ?" + std::to_string(i);
    }
    auto st = impl_->db.prepare("UPDATE " + sql::quoteIdent(kCallDbTable) + " SET " + set +
                                " WHERE rowid = ?14");
    bindRecord(st, r);
    st.bind(14, r.rowid);
    st.run();
    if (impl_->db.changes() == 0)
        return refuse(kInvalidFile, {}, "row " + std::to_string(r.rowid));
    return okStatus();
}

Status CallDbStore::remove(std::int64_t rowid) {
    auto st =
        impl_->db.prepare("DELETE FROM " + sql::quoteIdent(kCallDbTable) + " WHERE rowid = ?1");
    st.bind(1, rowid);
    st.run();
    if (impl_->db.changes() == 0)
        return refuse(kInvalidFile, {}, "row " + std::to_string(rowid));
    return okStatus();
}

Result<std::vector<CallListLine>> parseCallList(std::string_view bytes) {
    if (text::startsWith(bytes, "\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    const std::string content = text::decodeLegacy(bytes);
    std::vector<CallListLine> out;
    std::size_t start = 0;
    int lineNo = 0;
    while (start <= content.size()) {
        auto end = content.find('\n', start);
        if (end == std::string::npos)
            end = content.size();
        std::string_view line(content.data() + start, end - start);
        start = end + 1;
        ++lineNo;
        std::vector<std::string> words;
        std::size_t w = 0;
        for (std::size_t i = 0; i <= line.size(); ++i) {
            if (i == line.size() ||
                std::string_view(" \t\r,;").find(line[i]) != std::string_view::npos) {
                if (i > w)
                    words.push_back(text::upper(line.substr(w, i - w)));
                w = i + 1;
            }
        }
        if (words.empty() || words.front().front() == '#')
            continue;
        if (words.size() > 2 || !isCall(words[0]) || (words.size() == 2 && !isMaidenhead(words[1])))
            return refuse(kInvalidFile, {}, "line " + std::to_string(lineNo));
        out.push_back(CallListLine{words[0], words.size() == 2 ? words[1] : std::string{}});
        if (end == content.size())
            break;
    }
    return out;
}

namespace {

// Adds rows as the list imports do: a call not yet known becomes a new row
// (with the counters and date it brings), a known call without a locator
// takes the new locator, a known call with another locator gets its own row.
CallImportCount addRecords(CallDbStore& store, const std::vector<CallRecord>& records) {
    sql::Db& db = store.db();
    std::map<std::string, std::vector<std::pair<std::int64_t, std::string>>> known;
    {
        auto st = db.prepare("SELECT rowid, upper(Call), upper(Locator) FROM " +
                             sql::quoteIdent(kCallDbTable));
        while (st.step())
            known[st.text(1)].emplace_back(st.int64(0), st.text(2));
    }
    CallImportCount count;
    sql::Transaction tx(db);
    auto insert = db.prepare("INSERT INTO " + sql::quoteIdent(kCallDbTable) + " (" + columnList() +
                             ") VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13)");
    auto complete = db.prepare("UPDATE " + sql::quoteIdent(kCallDbTable) +
                               " SET Locator = ?1 WHERE rowid = ?2");
    for (const auto& r : records) {
        auto& rows = known[r.Call];
        const bool same = std::any_of(rows.begin(), rows.end(), [&](const auto& k) {
            return r.Locator.empty() || k.second == r.Locator;
        });
        if (same) {
            ++count.known;
            continue;
        }
        auto blank =
            std::find_if(rows.begin(), rows.end(), [](const auto& k) { return k.second.empty(); });
        if (blank != rows.end()) {
            complete.bind(1, r.Locator).bind(2, blank->first).run();
            complete.reset();
            blank->second = r.Locator;
            ++count.completed;
            continue;
        }
        bindRecord(insert, r);
        insert.run();
        insert.reset();
        rows.emplace_back(db.lastInsertRowid(), r.Locator);
        ++count.added;
    }
    tx.commit();
    return count;
}

} // namespace

Result<CallImportCount> importCallList(CallDbStore& store, std::string_view bytes) {
    auto parsed = parseCallList(bytes);
    if (!parsed)
        return parsed.failure();
    std::vector<CallRecord> records;
    records.reserve(parsed->size());
    for (const auto& line : parsed.value()) {
        CallRecord r;
        r.Call = line.call;
        r.Locator = line.locator;
        records.push_back(std::move(r));
    }
    return addRecords(store, records);
}

bool isSqliteFile(std::string_view bytes) {
    return text::startsWith(bytes, std::string_view("SQLite format 3\0", 16));
}

Result<CallImportCount> importForeignCallDb(CallDbStore& store, const fs::path& foreign) {
    std::vector<CallRecord> records;
    try {
        sql::Db db(foreign.string(), sql::Db::Mode::ReadOnly);
        if (!db.tableExists(kCallDbTable))
            return refuse(kInvalidFile, {}, foreign.string());
        auto st = db.prepare("SELECT rowid, " + columnList() + " FROM " +
                             sql::quoteIdent(kCallDbTable) + " ORDER BY rowid");
        while (st.step()) {
            CallRecord r = readRecord(st);
            normalise(r);
            if (!validateCallRecord(r))
                return refuse(kInvalidFile, {}, foreign.string() + ": " + r.Call + " " + r.Locator);
            records.push_back(std::move(r));
        }
    } catch (const sql::Error& e) {
        // Not a database, or not one of ours: the user picked the wrong file.
        return refuse(kInvalidFile, {}, foreign.string() + ": " + e.what());
    }
    return addRecords(store, records);
}

Status resetCounters(CallDbStore& store, const std::array<bool, kBandCount>& bands, bool lastDate) {
    std::string set;
    for (int b = 0; b < kBandCount; ++b)
        if (bands[static_cast<std::size_t>(b)])
            set += (set.empty() ? "" : ", ") + std::string(counterField(b)) + " = NULL";
    if (lastDate)
        set += std::string(set.empty() ? "" : ", ") + "LastDate = NULL";
    if (set.empty())
        return okStatus();
    store.db().exec("UPDATE " + sql::quoteIdent(kCallDbTable) + " SET " + set);
    return okStatus();
}

} // namespace orv
