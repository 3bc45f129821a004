// Corrections and deletions: the walk over the band that rebuilds its
// totals, `ErrQSO`, the restore, `UebernehmenEdit` and emptying the band.
#include "core/capture/capture.h"

#include <cmath>

#include "core/capture/capture_checks.h"
#include "core/capture/entry_rules.h"
#include "core/locator/locator.h"
#include "core/settings/settings.h"
#include "core/util/text.h"

namespace orv {

using namespace capture_detail;

Capture::Walk Capture::walk(std::size_t replacedRow, const QsoRow* replacement) const {
    Walk w;
    const auto& rows = state_.rows();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const QsoRow& q = (replacement && i == replacedRow) ? *replacement : rows[i].qso;
        if (q.errQso)
            continue;
        if (w.odx < q.qrb) {
            w.odx = q.qrb;
            w.odxNr = q.qsoNr;
            w.improved = true;
        }
        w.sum += q.qrb;
    }
    return w;
}

std::vector<std::string> Capture::workedBeforeLinesByLocator(std::string_view typedLocator,
                                                             std::string_view callPart) const {
    std::vector<std::string> lines;
    const std::string loc = text::upper(text::trim(typedLocator));
    const std::string call = text::upper(text::trim(callPart));
    if (loc.empty())
        return lines;
    for (const GridRow& r : state_.rows()) {
        const QsoRow& q = r.qso;
        if (q.errQso || q.locator.find(loc) == std::string::npos ||
            (!call.empty() && q.call.find(call) == std::string::npos))
            continue;
        lines.push_back(workedLine(q));
    }
    return lines;
}

BandTotals Capture::storedAfter(const Walk& w, BandTotals stored, bool alwaysWriteOdx) {
    stored.pGesamt = w.sum;
    if (w.improved || alwaysWriteOdx) {
        stored.odx = w.odx;
        stored.odxNr = w.odxNr;
    }
    return stored;
}

void Capture::applyWalk(const Walk& w, const BandTotals& stored) {
    state_.ODX = w.odx;
    state_.ODXNr = w.odxNr;
    state_.PGesamt = w.sum;
    state_.stored = stored;
    state_.rebuildIndex();
    updateKmPerQsoAfterRebuild();
}

void Capture::updateKmPerQsoAfterRebuild() {
    const std::int64_t live =
        static_cast<std::int64_t>(state_.rows().size()) - state_.deletedCount();
    state_.setKmPerQso(state_.PGesamt < 1 || live <= 0 ? 0 : state_.PGesamt / live);
}

void Capture::markRow(std::size_t row, bool deleted) {
    QsoRow q = state_.rows()[row].qso;
    q.errQso = deleted;
    // A restore writes ODX and ODXNr always; a deletion only when the walk
    // found one, so the last deletion leaves the stored ODX as it was.
    const Walk w = walk(row, &q);
    const BandTotals totals = storedAfter(w, state_.stored, !deleted);
    ownWrite([&] { log_.setErrQso(state_.band(), q.rowId, deleted, totals); });
    state_.mutableRows()[row].qso.errQso = deleted;
    worked_.count(state_.band(), q.call, deleted ? -1 : +1);
    applyWalk(w, totals);
    changed();
}

bool Capture::ErrQSO(std::int64_t qsoNr) {
    const long i = state_.findRow(qsoNr);
    if (i < 0)
        return false;
    if (dialogs_.askTitled(texts_(20), texts_(17), Buttons::YesNo, Icon::Question, Answer::Yes) !=
        Answer::Yes)
        return false;
    markRow(static_cast<std::size_t>(i), true);
    return true;
}

Status Capture::restore(std::size_t row) {
    if (row >= state_.rows().size() || !state_.rows()[row].qso.errQso)
        return refuse(225);
    if (CallExistTest(state_.rows()[row].qso.call))
        return refuse(229);
    markRow(row, false);
    return okStatus();
}

EditRow editRowFromCells(const GridCells& c) {
    EditRow e;
    e.call = c[0];
    e.locator = c[1];
    e.rst = c[2];
    e.rstNr = c[4];
    e.qrb = c[5];
    e.date = c[6];
    e.time = c[7];
    e.mode = c[9];
    e.rxMode = c[10];
    e.qsl = c[11];
    e.note = c[12];
    e.name = c[14];
    e.prop = c[15];
    e.op = c[17];
    return e;
}

EditRow Capture::editView(std::size_t row) const {
    return editRowFromCells(gridCells(state_.rows().at(row)));
}

Status Capture::UebernehmenEdit(std::size_t row, const EditRow& edit) {
    if (row >= state_.rows().size())
        return refuse(225);
    const QsoRow old = state_.rows()[row].qso;
    const EntryFields f{edit.call,  edit.locator,
                        edit.rstNr, edit.rst,
                        edit.time,  edit.date,
                        true,       entry::minimumReceivedReport(edit.mode, config_.editMode3)};
    const CheckedEntry c = checkEntry(f, kEditLineFields);
    if (c.failure)
        return *c.failure;
    const std::string qrbText = text::trim(edit.qrb);
    if (!text::isInteger(qrbText) || text::leadingInt(qrbText) < 0)
        return refuse(225, "Text88");
    std::int64_t newQrb = text::leadingInt(qrbText);

    // Another live QSO of the call on the band: the user may score this one 0.
    for (const QsoRow& q : log_.rowsByCall(state_.band(), c.call)) {
        if (q.qsoNr != old.qsoNr && q.call == c.call && !q.errQso) {
            if (dialogs_.ask(texts_(21), Buttons::YesNo, Icon::Question, Answer::Yes) ==
                Answer::Yes)
                newQrb = 0;
            break;
        }
    }

    QsoRow q = old;
    q.datTime = *withTime(*c.date, edit.time);
    q.qrb = newQrb;
    q.name = text::left(edit.name, 100);
    fillRow(q, c, edit.qsl, edit.note, edit.mode, edit.rxMode, edit.prop, edit.op);

    // The distance changed: the sum follows, and a better one is the new ODX.
    std::int64_t pGesamt = state_.PGesamt, odx = state_.ODX, odxNr = state_.ODXNr;
    BandTotals totals = state_.stored;
    if (newQrb != old.qrb) {
        pGesamt = pGesamt - old.qrb + newQrb;
        if (odx < newQrb) {
            odx = newQrb;
            odxNr = q.qsoNr;
            totals.odx = newQrb;
            totals.odxNr = q.qsoNr;
        }
        totals.pGesamt = pGesamt;
    }
    // A distance below the ODX lets the best QSO be found again: the only way
    // the ODX goes down.
    std::optional<Walk> w;
    if (newQrb < odx) {
        w = walk(row, &q);
        totals = storedAfter(*w, totals, false);
    }
    ownWrite([&] { log_.updateQso(state_.band(), q.rowId, q, totals); });

    GridRow& g = state_.mutableRows()[row];
    g.qso = q;
    if (!q.errQso) {
        worked_.count(state_.band(), old.call, -1);
        worked_.count(state_.band(), q.call, +1);
    }
    g.bearing = bearingText(config_.ownLocator, q.locator, config_.antenneKomma);
    if (!w)
        w = Walk{odx, odxNr, pGesamt, false};
    applyWalk(*w, totals);
    changed();
    return okStatus();
}

bool Capture::MnLogLoeschen() {
    if (dialogs_.ask(texts_(254), Buttons::YesNo, Icon::Warning, Answer::No) != Answer::Yes)
        return false;
    if (dialogs_.ask(texts_(255), Buttons::OkCancel, Icon::Warning, Answer::Cancel) != Answer::Ok)
        return false;
    const int band = state_.band();
    ownWrite([&] { log_.emptyBand(band); });
    // What is in memory follows the file: an empty band with Null totals.
    state_.load(band, {}, log_.totals(band), config_.ownLocator, config_.antenneKomma);
    worked_.clearBand(band);
    changed();
    return true;
}

} // namespace orv
