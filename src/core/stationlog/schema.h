#pragma once

// The station log file: QjLog/<name>.sqlite with the one table `QJLog`.
//
// Unlike a contest log it keeps every QSO in a single table, frequencies as
// the user typed them. The twenty fields keep their order and sizes; every
// field has an index named after it ("CallIndex", stored as
// "QJLog_CallIndex" since SQLite names indexes per file), and `Nr` is unique,
// so that the `Nr` index is the order of the log.

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/logstore/schema.h"
#include "core/util/datetime.h"

namespace orv {
namespace sql {
class Db;
}

inline constexpr std::string_view kQjLogTable = "QJLog";

// One QSO of the station log: the fields of `QJLog` in their order.
struct StationQso {
    std::int64_t nr = 0;    // Nr
    DateTime dateTime;      // DateTime
    std::string call;       // Call
    std::string rstTx;      // RST_TX, the report given
    std::string rstRx;      // RST_RX, the report received
    std::string locator;    // Locator
    std::string qrgTx;      // QRG_TX, as typed
    std::string qrgRx;      // QRG_RX, as typed
    std::string txMod;      // TXMod
    std::string rxMod;      // RXMod
    std::string prop;       // Prop
    std::string qsl;        // QSL, sent state
    std::string qslManager; // QSLManager
    std::string name;       // Name
    std::string myCall;     // MyCall
    std::string myLocator;  // MyLocator
    std::string power;      // Power
    std::string antenne;    // Antenne
    std::string note;       // Note
    std::string qslRx;      // QSL_RX, received state

    bool operator==(const StationQso&) const = default;
};

inline constexpr int kQjFieldCount = 20;

// The text fields of a QSO by their field number 2..19 (Call .. QSL_RX);
// numbers 0 and 1 (Nr, DateTime) are not text and yield nothing.
std::string* textField(StationQso& q, int field);
const std::string* textField(const StationQso& q, int field);

// The field descriptions of `QJLog` in order, as the table maker takes them.
const std::vector<FieldDesc>& qjLogFields();

// NewQjLogBD: makes `QJLog` with its indexes in the file, creating the file.
// A table of that name already there is left as it is. Throws sql::Error.
void NewQjLogBD(const std::filesystem::path& path);
void NewQjLogBD(sql::Db& db);

// Whether the file's `QJLog` has all twenty fields: what opening a station
// log relies on. False when the table is missing.
bool isStationLogSchema(sql::Db& db);

} // namespace orv
