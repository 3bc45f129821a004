#pragma once

// The contest log store: one open contest log file.
//
// A contest log is the SQLite file Logs/<name>.sqlite (AppPaths::logFile). It
// holds ten band tables "50MHz" ... "47000MHz" (bands.h), each with the 17
// fields of a QSO (schema.h: bandTableFields), and the one-row table `MyData`
// with the station, the contest name and weights, and the running totals of
// each band. A row has no key of its own; while a log is open a row is named
// by its RowId (SQLite's rowid, the bookmark of the old world).
//
// Using it:
//   auto log = ContestLog::create(paths.logFile("Test"), NewLogData{...});
//   Result<ContestLog> r = ContestLog::open(path);  // IText(208) for old logs
//   RowId id = log.addQso(band, row, totals);        // row + totals, one commit
//   log.updateQso(band, id, row, totals);            // correction
//   log.setErrQso(band, id, true, totals);           // deletion mark / restore
//   log.emptyBand(band);                             // rows gone, totals Null
//   log.rows(band)                                   // QSONr order
//   log.findByQsoNr(band, 17), log.firstLiveByCall(band, "DL1ABC")
//   log.myData(), log.totals(band), log.bandsWithQsos()
//
// Band arguments are the BandIndex 0..9; anything else throws
// std::out_of_range. Every write is one transaction that is on disk when the
// call returns (WAL journal, synchronous FULL): a crash never loses a QSO
// that was acknowledged and never leaves `MyData` behind its band table. A
// write that fails (a text longer than its field, a number out of range, a
// missing `MyData` row) throws sql::Error and leaves the file as it was.
// Reading a Null total gives 0.

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/logstore/bands.h"
#include "core/util/datetime.h"
#include "core/util/result.h"
#include "core/util/sqlite.h"

namespace orv {

using RowId = std::int64_t;

// One QSO: the 17 fields of a band table in their order. Text lengths are
// those of the schema (Call 15, Locator 6, RSTgeg 4, RSTerh 8, Notice 100,
// Mod 5, Name 100, ModRX 5, AusBr 3, OPCall 15); a longer text is refused by
// the store, not cut.
struct QsoRow {
    std::string call;       // Call
    std::string locator;    // Locator
    std::int64_t qrg = 0;   // QRG: the band's box text as a number
    DateTime datTime;       // DatTime, in log time
    std::string rstGeg;     // RSTgeg
    std::int64_t qsoNr = 0; // QSONr
    std::string rstErh;     // RSTerh: report and serial received, one string
    std::int64_t qrb = 0;   // QRB: km, the QSO's points
    bool qsl = false;       // QSL
    std::string notice;     // Notice
    std::string mod;        // Mod
    bool dupe = false;      // Dupe
    std::string name;       // Name
    std::string modRx;      // ModRX
    std::string ausBr;      // AusBr
    bool errQso = false;    // ErrQSO: marked as deleted
    std::string opCall;     // OPCall
    // The rig's frequency on the band in Hz when the rig was connected, 0
    // when unknown: the column `FreqHz` of our own after the 17 above. A
    // correction leaves it as it was. Not compared.
    std::int64_t freqHz = 0;

    // Where the row is stored; 0 for a row not read from the file. Not a
    // field of the table and not compared.
    RowId rowId = 0;

    bool operator==(const QsoRow& o) const;
};

// The running numbers of one band as `MyData` keeps them.
struct BandTotals {
    std::int64_t pGesamt = 0; // PGesamt<band>
    std::int64_t odx = 0;     // ODX<band>
    std::int64_t odxNr = 0;   // ODXNr<band>
    bool operator==(const BandTotals&) const = default;
};

// The row of `MyData`. Null totals read as 0; a Null weight stays empty here
// (ConDatLoadDB makes it 1).
struct MyDataRow {
    std::string myCall;
    std::string myLocator;
    std::array<BandTotals, kBandCount> totals{};
    std::array<std::optional<int>, kBandCount> zaehl{};
    std::string contName;
};

// What a new log starts with in `MyData`.
struct NewLogData {
    std::string myCall;
    std::string myLocator;
    std::string contName;
    std::array<int, kBandCount> zaehl{1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
};

// The indexes that the program reads rows by.
enum class LogIndex { QSONr, Call, Locator, ErrQSO };

class ContestLog {
public:
    // Creates the file with the complete schema and its `MyData` row. The
    // file is built under a temporary name and renamed when complete, so a
    // crash never leaves a half-made log under the real name. Throws
    // std::runtime_error when the file exists (overwriting is the caller's
    // decision: removeLogFile), sql::Error on a database failure.
    static ContestLog create(const std::filesystem::path& path, const NewLogData& data);

    // Opens an existing log. The version test comes first and reads only: a
    // log whose `144MHz` table lacks `ErrQSO` or `OPCall` is refused with
    // IText(208) and the file is not touched. Throws sql::Error when the file
    // is missing or not a database.
    static Result<ContestLog> open(const std::filesystem::path& path);
    // A second connection that only reads, for a worker thread beside the
    // window's connection. Throws sql::Error when the file cannot be opened.
    static ContestLog openForReading(const std::filesystem::path& path);

    ContestLog(ContestLog&&) noexcept = default;
    ContestLog& operator=(ContestLog&&) noexcept = default;

    const std::filesystem::path& path() const { return path_; }
    // The connection, for the other tables of the file and for backups.
    sql::Db& db() { return db_; }

    // --- reading -----------------------------------------------------------
    MyDataRow myData();
    BandTotals totals(int band);
    std::int64_t rowCount(int band);
    // One flag per band: the band table has at least one row (deleted rows
    // count), as the band buttons show.
    std::array<bool, kBandCount> bandsWithQsos();

    std::optional<QsoRow> row(int band, RowId id);
    // All rows of a band in the order of an index (QSONr by default); rows
    // with equal keys come in the order they were stored.
    std::vector<QsoRow> rows(int band, LogIndex order = LogIndex::QSONr);
    // The same without building a vector; `visit` returns false to stop.
    void forEachRow(int band, LogIndex order, const std::function<bool(const QsoRow&)>& visit);
    // The first row with this QSONr in QSONrIndex order.
    std::optional<QsoRow> findByQsoNr(int band, std::int64_t qsoNr);
    // The row with the greatest QSONr (the last of QSONrIndex), deleted or not.
    std::optional<QsoRow> lastByQsoNr(int band);
    // All rows of a call (case-blind, blanks around ignored), in CallIndex order.
    std::vector<QsoRow> rowsByCall(int band, std::string_view call);
    // The first row of the call in CallIndex order that is not marked deleted.
    std::optional<QsoRow> firstLiveByCall(int band, std::string_view call);
    // All rows of a locator (case-blind), in LocatorIndex order.
    std::vector<QsoRow> rowsByLocator(int band, std::string_view locator);
    // All rows marked deleted, in storage order.
    std::vector<QsoRow> deletedRows(int band);

    // A band as one consistent snapshot: its rows in QSONr order and its
    // totals, read in one transaction, so that no commit of another
    // connection falls between them.
    struct BandSnapshot {
        std::vector<QsoRow> rows;
        BandTotals totals;
    };
    BandSnapshot bandSnapshot(int band);

    // Moves on whenever another connection (another process included)
    // commits to the file; SQLite's `PRAGMA data_version`, cheap enough to
    // poll on a timer.
    std::int64_t dataVersion();
    // Rows changed through this connection since it was opened.
    std::int64_t totalChanges();

    // --- writing: each call is one durable transaction ------------------------
    // Adds the QSO row to the band table and writes the band's
    // PGesamt/ODX/ODXNr in `MyData`. Returns the new row's RowId.
    RowId addQso(int band, const QsoRow& row, const BandTotals& totals);
    // Replaces every field of a stored row (correction) and writes the totals.
    void updateQso(int band, RowId id, const QsoRow& row, const BandTotals& totals);
    // Sets or clears ErrQSO of a stored row and writes the totals.
    void setErrQso(int band, RowId id, bool deleted, const BandTotals& totals);
    // Writes only the totals of a band.
    void writeTotals(int band, const BandTotals& totals);
    // Deletes every row of the band; its ODX, PGesamt and ODXNr become Null
    // and its weight 1. The table itself stays.
    void emptyBand(int band);
    // SaveConDat's part in the file: ContName and the ten weights.
    void writeContestData(std::string_view contName, const std::array<int, kBandCount>& zaehl);
    // MyCall and MyLocator.
    void writeStation(std::string_view myCall, std::string_view myLocator);

private:
    ContestLog(std::filesystem::path path, sql::Db db);
    void updateTotalsIn(int band, const BandTotals& totals);
    // The columns read into a QsoRow; a band table without `FreqHz` (a
    // read-only older log) reads 0 in its place.
    std::string columns(int band) const;
    std::vector<QsoRow> select(int band, const std::string& whereOrder,
                               const std::function<void(sql::Stmt&)>& bind);

    std::filesystem::path path_;
    sql::Db db_;
    std::array<bool, kBandCount> freqColumn_{};
};

// Removes a log file together with the journal files SQLite may keep beside
// it, so that a new log of the same name never meets a stale journal.
void removeLogFile(const std::filesystem::path& path);

// Adds the columns of our own that a log of an older version lacks (the
// frequency `FreqHz` of every band table); the open log does it itself.
void addOwnColumns(sql::Db& db);

} // namespace orv
