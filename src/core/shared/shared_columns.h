#pragma once

// The QSO columns the shared tables copy from a band table, and reading and
// binding them; used only inside the shared store.

#include <string>

#include "core/logstore/contest_log.h"
#include "core/util/sqlite.h"

namespace orv::shared_detail {

// "Call, Locator, ..., OPCall, FreqHz": the 17 fields of a band table and
// the frequency, in that order.
const std::string& qsoColumns();
// The same, each prefixed ("NEW.Call, NEW.Locator, ...").
std::string qsoColumns(const std::string& prefix);
// "Call = ?N, ..." starting at parameter `first`.
std::string qsoAssignments(int first);
// "?N, ?N+1, ..." for the 18 columns.
std::string qsoPlaceholders(int first);
constexpr int kQsoColumnCount = 18;

QsoRow readQso(const sql::Stmt& st, int firstCol);
void bindQso(sql::Stmt& st, int first, const QsoRow& r);

} // namespace orv::shared_detail
