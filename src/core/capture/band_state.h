#pragma once

#include <array>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/logstore/contest_log.h"

namespace orv {

// One row of the log grid: the stored QSO and its bearing text from the own
// locator ("89°"), which is computed, not stored.
struct GridRow {
    QsoRow qso;
    std::string bearing;
    // Every field, and the row's place in the file as well.
    bool operator==(const GridRow& o) const {
        return qso == o.qso && qso.rowId == o.qso.rowId && bearing == o.bearing;
    }
};

inline constexpr int kGridColumns = 18;
using GridCells = std::array<std::string, kGridColumns>;

// The 18 cells of a grid row in their order. Columns 9 and 10 stand crossed
// against their headers (`Mod` under "RXMod", `ModRX` under "TXMod") and every
// reader of the cells uses these positions. Column 16 is the deleted flag.
GridCells gridCells(const GridRow& row);

// Bearing text of the grid: whole degrees, or with one decimal when
// `AntenneKomma` is on; empty when the locator gives no result.
std::string bearingText(const std::string& ownLocator, const std::string& locator,
                        bool antenneKomma);

// The selected band as the main window keeps it: its rows in QSONr order, the
// running numbers, the large squares and the index of worked calls that the
// search while typing reads. It mirrors the band table and `MyData`; the
// capture (capture.h) changes both together.
class BandState {
public:
    // Loads a band: rows in QSONr order and the totals as `MyData` stores
    // them, which the screen shows as they are (a stale ODX included).
    void load(int band, std::vector<QsoRow> rows, const BandTotals& stored,
              const std::string& ownLocator, bool antenneKomma);

    int band() const { return band_; }
    const std::vector<GridRow>& rows() const { return rows_; }
    std::vector<GridRow>& mutableRows() { return rows_; }
    // Index of the first row with this QSONr, or -1.
    long findRow(std::int64_t qsoNr) const;

    std::int64_t PGesamt = 0;
    std::int64_t ODX = 0;
    std::int64_t ODXNr = 0;
    std::int64_t LastQSONr = 0;
    // What `MyData` holds for the band: ODX and ODXNr there are written only
    // when they improve, so they may differ from the screen.
    BandTotals stored;

    // The next serial in the "##########000" form.
    std::string nextSerial() const;
    const std::string& GrossfeldListe() const { return grossfeldListe_; }
    int GrossfeldZahl() const { return grossfeldZahl_; }
    int deletedCount() const { return deleted_; }
    // km per QSO as the statistics show it after the last change.
    std::int64_t kmPerQso() const { return kmPerQso_; }
    void setKmPerQso(std::int64_t v) { kmPerQso_ = v; }

    // GrossfeldADD: adds the first four characters, upper case, unless
    // already listed. Returns the square as added or found.
    std::string GrossfeldADD(std::string_view locator);
    void clearSquares();

    // Appends a committed row (grid, worked calls, squares).
    void appendRow(GridRow row);
    // Rebuilds the worked calls, the squares and the deleted count from the
    // rows, as every change of a row does.
    void rebuildIndex();

    // What a band change shows when it comes back to this band: the rows in
    // QSONr order (a QSO committed with a smaller serial moves to its place),
    // the totals as `MyData` stores them, and the last serial and km per QSO
    // computed as a fresh load computes them. Costs nothing unless a row
    // came out of order.
    void settle();

    // Equal in every field, the index of worked calls included.
    bool operator==(const BandState&) const = default;
    // Bytes held on the heap and in the object, as far as it can tell.
    std::size_t memoryBytes() const;

    // Rows whose call contains `typed` (live rows only: deleted rows hold a
    // blank slot), in grid order, each row once.
    std::vector<std::size_t> workedMatches(std::string_view typed) const;

private:
    void writeSlot(std::size_t index, const GridRow& row);

    int band_ = -1;
    std::vector<GridRow> rows_;
    // False once a row was appended out of QSONr order; settle() sorts then.
    bool ordered_ = true;
    std::string grossfeldListe_;
    int grossfeldZahl_ = 0;
    int deleted_ = 0;
    std::int64_t kmPerQso_ = 0;
    // `WorkedList`: one 16-byte slot per row, the call padded to 15 and a
    // separator, so that a hit's position divided by 16 is its row. Unlike the
    // fixed string of old it grows with the band and has no row limit.
    std::string worked_;
};

} // namespace orv
