#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace orv {
namespace sql {
class Db;
}

// Field types by the numbers the old database engine gave them; the schemas
// of the program are written in these terms and mapped to SQLite below.
enum class FieldType : std::int16_t {
    Boolean = 1,
    Byte = 2,
    Integer = 3, // 16 bit
    Long = 4,    // 32 bit
    Currency = 5,
    Single = 6,
    Double = 7,
    Date = 8,
    Text = 10,
    Memo = 12,
};

// One field of a table as given to the table maker, in this member order.
struct FieldDesc {
    std::string Name;
    FieldType Type = FieldType::Text;
    std::int16_t Size = 0; // used for Text
    bool Indexed = false;
    bool Primary = false;
};

// Declared SQLite column of a field. The declared type keeps the old type
// and size visible ("TEXT(15)", "INTEGER", "SMALLINT", "DATETIME",
// "BOOLEAN"); constraints give the old engine's refusals: text never NULL and
// not longer than its size, numbers whole and within their width, Booleans 0
// or 1. Text compares case-blind, as calls and locators always did.
std::string columnDefinition(const FieldDesc& f);

// SQLite index names are unique per file, not per table, so the index that
// the program knows as "CallIndex" on table "144MHz" is stored as
// "144MHz_CallIndex". Use this to name one in SQL.
std::string indexName(std::string_view table, std::string_view field);

// MakeLogTable: creates `tableName` with `fields` (and one index named after
// each indexed field) in the database file at `path`, creating the file when
// it is missing. A table of that name, compared case-blind, that already
// exists is never changed, extended or replaced. Table and indexes are made
// in one transaction, so a table never exists without its indexes.
// Returns true when it created the table. Throws sql::Error on failure.
bool MakeLogTable(const std::filesystem::path& path, std::string_view tableName,
                  const std::vector<FieldDesc>& fields);
bool MakeLogTable(sql::Db& db, std::string_view tableName, const std::vector<FieldDesc>& fields);

// FieldExists: whether table `table` of the file has the field (both names
// compared case-blind). Opens the file read-only: it changes nothing. False
// when the table is missing; throws sql::Error when the file cannot be opened.
bool FieldExists(const std::filesystem::path& path, std::string_view table, std::string_view field);
bool FieldExists(sql::Db& db, std::string_view table, std::string_view field);

// The 17 fields of every band table, in their binding order.
const std::vector<FieldDesc>& bandTableFields();
// The 43 fields of `MyData`: MyCall, MyLocator, for each band ODX<band>,
// PGesamt<band>, ODXNr<band>, Zaehl<band>, then ContName. No index.
const std::vector<FieldDesc>& myDataFields();

// NewQbLogBD: the complete empty schema of a contest log: the ten band
// tables in band order, then `MyData`. Missing tables of a partly built file
// are added; existing ones are left alone. The `MyData` row is not written.
void NewQbLogBD(const std::filesystem::path& path);
void NewQbLogBD(sql::Db& db);

} // namespace orv
