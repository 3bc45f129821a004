#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/logstore/bands.h"
#include "core/logstore/schema.h"
#include "core/util/datetime.h"
#include "core/util/result.h"

// The call database `QBDat.sqlite`: known stations with their locator, the
// QSOs made with them per band and the date of the last one. This file holds
// the table and its maintenance; call_image.h holds the memory image that
// the live search runs on.
struct sqlite3;

namespace orv {

namespace sql {
class Db;
}
struct AppPaths;

inline constexpr const char* kCallDbTable = "OrvantaContestDat";
inline constexpr std::size_t kCallSize = 15;
inline constexpr std::size_t kLocatorSize = 6;

// One row of `OrvantaContestDat`; the counters stand in band order
// (`B6`, `B2`, `Bc70`, `Bc23`, `Bc13`, `Bc9`, `Bc6`, `Bc3`, `Bm12`, `Bm6`).
struct CallRecord {
    std::int64_t rowid = 0; // the row in the file; 0 for a row not yet stored
    std::string Call;
    std::string Locator;
    std::array<std::int32_t, kBandCount> counters{};
    std::optional<DateTime> LastDate;
};

const std::vector<FieldDesc>& callDbFields();
// The counter field of a band, "B6" ... "Bm6".
std::string_view counterField(int bandIndex);

// NewQBDat: a new empty call database, replacing any old one, and an empty
// `QBDat.ini` beside it, since no log has been merged into the new file yet.
void NewQBDat(const AppPaths& paths);
// Creates the table in an existing or new file when it is missing, and the
// change stamp with it.
void ensureCallDb(sql::Db& db);

// The change stamp of the call database: a number that triggers in the file
// set to a new random value on every insert, update and delete of a row, by
// whatever program writes (this one, the tool, another instance). It names
// the content, not the file: it survives a copy of the file and a WAL
// checkpoint, and is unlikely to repeat. The image file beside the database
// is valid only for the stamp it was built from. Empty for a file without
// the stamp table (written by an older version).
std::optional<std::int64_t> callDbStamp(sql::Db& db);
std::optional<std::int64_t> readCallDbStamp(sqlite3* db);
// Adds the stamp to a file that has none; a file that cannot be written
// stays without one (its image is then never kept in a file).
void addCallDbStamp(const std::filesystem::path& dbPath);

// Checks a call and a locator as the database holds them: a call of 1 to 15
// characters of letters, digits and "/", and an empty locator or a
// Maidenhead locator of 4 or 6 characters. Refusals are IText(1) or IText(2)
// with the field "Call" or "Locator".
Status validateCallRecord(const CallRecord& r);

// The rows of the database for the editor, and the changes it makes. Calls
// and locators are trimmed and upper-cased before they are checked.
class CallDbStore {
public:
    // Opens (and where needed creates) the database. Throws sql::Error.
    explicit CallDbStore(const std::filesystem::path& dbPath);
    ~CallDbStore();
    CallDbStore(const CallDbStore&) = delete;
    CallDbStore& operator=(const CallDbStore&) = delete;

    std::vector<CallRecord> all();
    std::optional<CallRecord> find(std::int64_t rowid);
    std::int64_t count();

    // Returns the new row's id.
    Result<std::int64_t> add(CallRecord r);
    // Changes the row `r.rowid`; a row that is no longer there is IText(258).
    Status change(CallRecord r);
    Status remove(std::int64_t rowid);

    sql::Db& db();

private:
    struct Impl;
    Impl* impl_;
};

// What an import of a call list did.
struct CallImportCount {
    int added = 0;     // new rows
    int completed = 0; // rows of a known call that got their missing locator
    int known = 0;     // lines whose call (and locator) the database held already
};

// Reads a call list: each line "CALL" (MASTER.SCP) or "CALL LOCATOR",
// separated by blanks, tabs, "," or ";"; empty lines and lines beginning
// with "#" are skipped. A line that is neither refuses the whole list with
// IText(258), the line number in the detail. Both forms may be mixed.
struct CallListLine {
    std::string call;
    std::string locator;
};
Result<std::vector<CallListLine>> parseCallList(std::string_view bytes);

// Adds a list to the database in one transaction: a call not yet known
// becomes a new row with zero counters; a known call without a locator
// takes the line's locator; a known call with another locator gets a row of
// its own. Nothing changes when the list is refused.
Result<CallImportCount> importCallList(CallDbStore& store, std::string_view bytes);

// Whether a file's first bytes are those of an SQLite database.
bool isSqliteFile(std::string_view bytes);
// "Fremde QBDat importieren": the rows of another call database file, taken
// as the list import takes its lines; new rows keep their counters and date.
// A file that is no call database, or holds a row the database cannot hold,
// is IText(258) and changes nothing.
Result<CallImportCount> importForeignCallDb(CallDbStore& store,
                                            const std::filesystem::path& foreign);

// "Alle Zähler und Datum auf NULL setzen": empties the chosen band counters
// (and `LastDate`) of every row, in one statement.
Status resetCounters(CallDbStore& store, const std::array<bool, kBandCount>& bands, bool lastDate);

} // namespace orv
