#pragma once

// The commands that name a QSO by band and number (correct, delete,
// restore) reach the other positions' QSOs of a shared log too: through the
// log's cache of them, with the rules of the own correction, and the change
// goes to the server with the command as the position's own changes do.

#include <optional>
#include <ostream>

#include "cli/cli.h"
#include "core/capture/capture.h"
#include "core/util/sqlite.h"

namespace orv::cli {

// A grid row as the tool prints it: the 18 cells, tab-separated.
void printGridRow(std::ostream& out, const GridRow& row);

// The correction options given onto the correction line's fields; a new
// locator gives a new distance, as the line's locator field computes it.
void applyEditOptions(const Args& args, const Capture& capture, EditRow& e);

enum class OtherChange { Delete, Restore, Correct };

// When the command is for another position's QSO, makes the change and
// returns the exit status; nullopt when it is for this position's row.
// It is for another position's QSO when --position names one, or when the
// band holds no own QSO numbered --nr and the other positions do. A number
// that several of their QSOs carry needs --position.
std::optional<int> changeOtherPosition(Context& ctx, const Args& args, Capture& capture,
                                       sql::Db& db, OtherChange change, bool dupeZero = false);

} // namespace orv::cli
