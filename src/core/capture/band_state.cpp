#include "core/capture/band_state.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "core/capture/entry_rules.h"
#include "core/locator/locator.h"
#include "core/util/text.h"

namespace orv {
namespace {

constexpr std::size_t kSlot = 16;
constexpr char kSlotEnd = '\x01';

} // namespace

GridCells gridCells(const GridRow& r) {
    const QsoRow& q = r.qso;
    return GridCells{q.call,
                     q.locator,
                     q.rstGeg,
                     entry::formatGridSerial(q.qsoNr),
                     q.rstErh,
                     std::to_string(q.qrb),
                     q.datTime.dateIso(),
                     q.datTime.timeHM(),
                     std::to_string(q.qrg),
                     q.mod,
                     q.modRx,
                     q.qsl ? "Yes" : "No",
                     q.notice,
                     r.bearing,
                     q.name,
                     q.ausBr,
                     q.errQso ? "True" : "False",
                     q.opCall};
}

std::string bearingText(const std::string& ownLocator, const std::string& locator,
                        bool antenneKomma) {
    std::string own = ownLocator, other = locator;
    LocErgebnis e;
    try {
        e = LocBerechnen(own, other);
    } catch (const LocRechenfehler&) {
        return {};
    }
    if (!e.ok())
        return {};
    if (!antenneKomma)
        return std::to_string(e.Grad) + "°";
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.1f°", static_cast<double>(e.GradDez));
    return buf;
}

void BandState::load(int band, std::vector<QsoRow> rows, const BandTotals& totals,
                     const std::string& ownLocator, bool antenneKomma) {
    band_ = band;
    rows_.clear();

    rows_.reserve(rows.size());
    for (auto& q : rows) {
        std::string bearing = bearingText(ownLocator, q.locator, antenneKomma);
        rows_.push_back(GridRow{std::move(q), std::move(bearing)});
    }
    // The file gives them in QSONr order; a caller's list is checked once.
    ordered_ = std::is_sorted(rows_.begin(), rows_.end(), [](const GridRow& a, const GridRow& b) {
        return a.qso.qsoNr != b.qso.qsoNr ? a.qso.qsoNr < b.qso.qsoNr : a.qso.rowId < b.qso.rowId;
    });
    stored = totals;
    PGesamt = totals.pGesamt;
    ODX = totals.odx;
    ODXNr = totals.odxNr;
    rebuildIndex();
    settle();
}

void BandState::settle() {
    const auto byNumber = [](const GridRow& a, const GridRow& b) {
        return a.qso.qsoNr != b.qso.qsoNr ? a.qso.qsoNr < b.qso.qsoNr : a.qso.rowId < b.qso.rowId;
    };
    if (!ordered_) {
        std::sort(rows_.begin(), rows_.end(), byNumber);
        rebuildIndex();
        ordered_ = true;
    }
    PGesamt = stored.pGesamt;
    ODX = stored.odx;
    ODXNr = stored.odxNr;
    LastQSONr = rows_.empty() ? 0 : rows_.back().qso.qsoNr;
    const std::int64_t live = LastQSONr - deleted_;
    kmPerQso_ = (PGesamt + LastQSONr < 1 || PGesamt < 1 || live <= 0) ? 0 : PGesamt / live;
}

std::size_t BandState::memoryBytes() const {
    auto str = [](const std::string& t) {
        // Short texts live inside the string object itself.
        return t.capacity() > 15 ? t.capacity() + 1 : 0;
    };
    std::size_t n = sizeof(*this) + rows_.capacity() * sizeof(GridRow) + worked_.capacity() +
                    str(grossfeldListe_);
    for (const GridRow& r : rows_) {
        const QsoRow& q = r.qso;
        for (const std::string* t : {&q.call, &q.locator, &q.rstGeg, &q.rstErh, &q.notice, &q.mod,
                                     &q.name, &q.modRx, &q.ausBr, &q.opCall, &r.bearing})
            n += str(*t);
    }
    return n;
}

long BandState::findRow(std::int64_t qsoNr) const {
    for (std::size_t i = 0; i < rows_.size(); ++i)
        if (rows_[i].qso.qsoNr == qsoNr)
            return static_cast<long>(i);
    return -1;
}

std::string BandState::nextSerial() const {
    return entry::formatSerial(LastQSONr + 1);
}

std::string BandState::GrossfeldADD(std::string_view locator) {
    std::string sq = text::upper(text::left(locator, 4));
    if (grossfeldListe_.find(sq) == std::string::npos) {
        grossfeldListe_ += ",";
        grossfeldListe_ += sq;
        ++grossfeldZahl_;
    }
    return sq;
}

void BandState::clearSquares() {
    grossfeldListe_.clear();
    grossfeldZahl_ = 0;
}

void BandState::writeSlot(std::size_t index, const GridRow& row) {
    char* slot = worked_.data() + index * kSlot;
    std::fill(slot, slot + kSlot - 1, ' ');
    slot[kSlot - 1] = kSlotEnd;
    if (!row.qso.errQso) {
        const std::string& call = row.qso.call;
        std::copy_n(call.begin(), std::min(call.size(), kSlot - 1), slot);
    }
}

void BandState::appendRow(GridRow row) {
    if (!rows_.empty()) {
        const QsoRow& last = rows_.back().qso;
        if (row.qso.qsoNr < last.qsoNr ||
            (row.qso.qsoNr == last.qsoNr && row.qso.rowId < last.rowId))
            ordered_ = false;
    }
    rows_.push_back(std::move(row));
    const GridRow& r = rows_.back();
    worked_.resize(rows_.size() * kSlot);
    writeSlot(rows_.size() - 1, r);
    if (r.qso.errQso)
        ++deleted_;
    else if (text::length(r.qso.locator) >= 4)
        GrossfeldADD(r.qso.locator);
}

void BandState::rebuildIndex() {
    clearSquares();
    deleted_ = 0;
    worked_.assign(rows_.size() * kSlot, ' ');
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const GridRow& r = rows_[i];
        writeSlot(i, r);
        if (r.qso.errQso)
            ++deleted_;
        else if (text::length(r.qso.locator) >= 4)
            GrossfeldADD(r.qso.locator);
    }
}

std::vector<std::size_t> BandState::workedMatches(std::string_view typed) const {
    std::vector<std::size_t> out;
    if (typed.empty() || typed.size() >= kSlot)
        return out;
    // memmem is glibc's two-way search: much faster than a first-character
    // scan when every slot starts with the same letter.
    const char* base = worked_.data();
    std::size_t pos = 0;
    while (pos < worked_.size()) {
        const void* hit = memmem(base + pos, worked_.size() - pos, typed.data(), typed.size());
        if (!hit)
            break;
        const std::size_t row =
            static_cast<std::size_t>(static_cast<const char*>(hit) - base) / kSlot;
        out.push_back(row);
        // One line per row: go on with the next slot.
        pos = (row + 1) * kSlot;
    }
    return out;
}

} // namespace orv
