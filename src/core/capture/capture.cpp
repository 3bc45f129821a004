#include "core/capture/capture.h"

#include <algorithm>
#include <cmath>

#include "core/capture/capture_checks.h"
#include "core/capture/entry_rules.h"
#include "core/locator/locator.h"
#include "core/settings/settings.h"
#include "core/util/text.h"

namespace orv {

using namespace capture_detail;

CaptureConfig captureConfigFrom(Settings& settings, const MyDataRow& myData) {
    CaptureConfig c;
    c.ownLocator = myData.myLocator;
    c.zeitPlusMinus = static_cast<int>(settings.get(keys::ZeitPlusMinus));
    c.mode2St = settings.get(keys::Mode2St);
    c.mode3St = settings.get(keys::Mode3St);
    const auto modes = settings.modes();
    c.editMode3 = modes.size() > 1 ? modes[1] : c.mode3St;
    c.antenneKomma = settings.get(keys::AntenneKomma);
    return c;
}

Capture::Capture(ContestLog& log, CaptureConfig config, Clock& clock, Dialogs& dialogs,
                 const Texts& texts)
    : log_(log), config_(std::move(config)), clock_(clock), dialogs_(dialogs), texts_(texts),
      seenVersion_(log.dataVersion()), seenChanges_(log.totalChanges()) {}

Capture::~Capture() = default;

DateTime Capture::logNow() const {
    return clock_.now().addHours(config_.zeitPlusMinus);
}

std::optional<QsoRow> Capture::rowForCommit(const EntryRow& row, Failure& failure) const {
    const EntryFields f{row.call,      row.locator,
                        row.rstNr,     row.rst,
                        row.time,      row.date,
                        row.datePanel, entry::minimumReceivedReport(row.mode, config_.mode3St)};
    const CheckedEntry c = checkEntry(f, kEntryRowFields);
    if (c.failure) {
        failure = *c.failure;
        return std::nullopt;
    }
    const std::optional<DateTime> panelDate = c.date;
    std::int64_t serial = serialToGive();
    if (!text::trim(row.serial).empty()) {
        if (!text::isInteger(text::trim(row.serial)) || text::leadingInt(row.serial) < 1) {
            failure = refuse(225, "Text5");
            return std::nullopt;
        }
        serial = text::leadingInt(row.serial);
    }

    // The typed date and time count as computer time and get the offset; the
    // stored time is the typed one, unshifted. With no offset, the usual case,
    // the two agree.
    const DateTime now =
        panelDate ? withTime(*panelDate, row.time)->addHours(config_.zeitPlusMinus) : logNow();
    QsoRow q;
    q.qrg = orv::band(state_.band()).qrg;
    q.datTime = *withTime(now, row.time);
    q.qsoNr = serial;
    q.qrb = distance(config_.ownLocator, c.locator);
    q.name = text::left(row.name, 100);
    q.freqHz = row.freqHz > 0 ? row.freqHz : 0;
    fillRow(q, c, row.qsl, row.note, row.mode, row.rxMode, row.prop, row.op);
    return q;
}

CommitResult Capture::Uebernehmen(EntryRow& row) {
    CommitResult result;
    std::optional<QsoRow> q = rowForCommit(row, result.failure);
    if (!q) {
        result.kind = CommitResult::Kind::Refused;
        return result;
    }
    // The call as the commit would store it, so that no form of a logged
    // call (case, blanks) passes as a new station.
    if (auto dup = CallExistTest(q->call)) {
        result.kind = CommitResult::Kind::Duplicate;
        result.duplicate = *dup;
        return result;
    }

    BandTotals totals = state_.stored;
    totals.pGesamt = state_.PGesamt + q->qrb;
    const bool odxImproved = q->qrb > state_.ODX;
    if (odxImproved) {
        totals.odx = q->qrb;
        totals.odxNr = q->qsoNr;
    }
    q->rowId = ownWrite([&] { return log_.addQso(state_.band(), *q, totals); });

    // The file holds the QSO; the state follows.
    state_.stored = totals;
    state_.PGesamt = totals.pGesamt;
    if (odxImproved) {
        state_.ODX = q->qrb;
        state_.ODXNr = q->qsoNr;
    }
    GridRow grid{*q, bearingText(config_.ownLocator, q->locator, config_.antenneKomma)};
    state_.appendRow(grid);
    worked_.count(state_.band(), q->call, +1);
    state_.LastQSONr = q->qsoNr;
    const std::int64_t divisor = q->qsoNr - state_.deletedCount();
    state_.setKmPerQso(divisor > 0 ? state_.PGesamt / divisor : 0);
    lastCall_ = q->call;
    lastLocator_ = q->locator;

    clearEntry(row);
    row.serial = nextSerial();
    result.kind = CommitResult::Kind::Stored;
    result.stored = std::move(grid);
    changed();
    return result;
}

void Capture::clearEntry(EntryRow& row) {
    row.call.clear();
    row.rst = entry::nextReport(row.rst);
    row.rstNr.clear();
    row.locator.clear();
    row.note.clear();
    row.qsl = "No";
    row.name.clear();
}

std::string Capture::odxMessage() const {
    const long i = state_.findRow(state_.ODXNr);
    if (i < 0)
        return {};
    const GridCells c = gridCells(state_.rows()[static_cast<std::size_t>(i)]);
    struct Line {
        std::string label;
        const char* tabs;
        int cell;
    };
    const Line lines[] = {{texts_(151), "\t", 0},
                          {texts_(155), "\t\t", 1},
                          {texts_(152), "\t\t", 2},
                          {texts_(153), "\t\t", 3},
                          {texts_(152) + texts_(153), "\t\t", 4},
                          {texts_(156), "\t\t", 5},
                          {texts_(159), "\t\t", 6},
                          {texts_(150), "\t\t", 7},
                          {texts_(173), "\t\t", 8},
                          {texts_(161), "\t\t", 9},
                          {texts_(160), "\t\t", 10},
                          {texts_(157), "\t\t", 11},
                          {texts_(158), "\t\t", 12},
                          {texts_(22), "\t\t", 14},
                          {texts_(176), "\t", 15}};
    std::string out;
    for (const Line& l : lines) {
        if (!out.empty())
            out += "\r\n";
        out += l.label + ": " + l.tabs + c[static_cast<std::size_t>(l.cell)];
    }
    return out;
}

std::optional<Capture::Preview> Capture::preview(std::string_view typedLocator) const {
    const std::size_t n = text::length(text::trim(typedLocator));
    if (n < 2 || n > 6)
        return std::nullopt;
    std::string own = config_.ownLocator;
    std::string other = n == 6 ? text::trim(typedLocator) : LocErgaenzen(typedLocator);
    LocErgebnis e;
    try {
        e = LocBerechnen(own, other);
    } catch (const LocRechenfehler&) {
        return std::nullopt;
    }
    if (!e.ok())
        return std::nullopt;
    Preview p;
    p.km = static_cast<std::int64_t>(e.km);
    p.bearing = std::to_string(e.Grad) + "°";
    return p;
}

void Capture::changed() {
    if (afterChange)
        afterChange();
}

} // namespace orv
