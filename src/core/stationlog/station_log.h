#pragma once

// One open station log file.
//
//   StationLog::create(path);                       // NewQjLogBD, then opened
//   Result<StationLog> r = StationLog::open(path);  // IText(415) for no station log
//   std::int64_t nr = log.add(qso);                 // next Nr after the highest
//   log.update(nr, qso); log.remove(nr); log.removeRange(3, 7);
//   log.numbers(), log.find(nr), log.page(fromNr, n), log.forEach(from, to, f)
//
// Every change is one transaction that is on disk when the call returns (WAL
// journal, synchronous FULL), as for the contest logs. A write the database
// refuses (a text longer than its field, a second record with the same Nr)
// throws sql::Error and leaves the file as it was.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "core/stationlog/schema.h"
#include "core/util/result.h"
#include "core/util/sqlite.h"

namespace orv {

class StationLog {
public:
    // Makes the file (and its folder) with an empty `QJLog` and opens it. Throws
    // std::runtime_error when the file exists (replacing it is the caller's
    // decision), sql::Error on a database failure.
    static StationLog create(const std::filesystem::path& path);
    // Opens a station log. A missing file, a file that is no database or one
    // without the table `QJLog` and its fields is refused with IText(415)
    // and not changed.
    static Result<StationLog> open(const std::filesystem::path& path);

    StationLog(StationLog&&) noexcept = default;
    StationLog& operator=(StationLog&&) noexcept = default;

    const std::filesystem::path& path() const { return path_; }
    sql::Db& db() { return db_; }

    // --- reading, in Nr order ------------------------------------------------
    std::int64_t count();
    // Every Nr of the log, ascending: what the grid needs to know its rows.
    std::vector<std::int64_t> numbers();
    std::optional<std::int64_t> firstNr();
    std::optional<std::int64_t> lastNr();
    std::optional<StationQso> find(std::int64_t nr);
    // Up to `limit` records from the first Nr >= `fromNr`.
    std::vector<StationQso> page(std::int64_t fromNr, int limit);
    // The records with from <= Nr <= to; `visit` returns false to stop.
    void forEach(std::int64_t from, std::int64_t to,
                 const std::function<bool(const StationQso&)>& visit);

    // --- writing: one durable transaction each ---------------------------------
    // Stores a new record under the next Nr after the highest (1 in an empty
    // log), whatever `qso.nr` holds. Returns that Nr.
    std::int64_t add(const StationQso& qso);
    // Stores the record exactly as given, Nr included (imports, tests).
    void insert(const StationQso& qso);
    // Replaces every field but Nr of the record `nr`; false when it is gone.
    bool update(std::int64_t nr, const StationQso& qso);
    // Deletes the record `nr`; false when there is none.
    bool remove(std::int64_t nr);
    // Deletes every record with from <= Nr <= to, all or nothing. The range
    // must lie inside the log (first Nr .. last Nr) with from <= to, else
    // IText(391) and nothing changes. Returns the number deleted.
    Result<std::int64_t> removeRange(std::int64_t from, std::int64_t to);

private:
    StationLog(std::filesystem::path path, sql::Db db);
    std::filesystem::path path_;
    sql::Db db_;
};

// Whether from..to is a range of this log: from <= to, both inside
// first Nr .. last Nr. An empty log has no range.
bool rangeInLog(StationLog& log, std::int64_t from, std::int64_t to);

} // namespace orv
