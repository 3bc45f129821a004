#include "core/capture/capture.h"

#include <cmath>

#include "core/capture/entry_rules.h"
#include "core/locator/locator.h"
#include "core/settings/settings.h"
#include "core/util/text.h"

namespace orv {
namespace {

// Field sizes of the band table: longer input is refused before anything is
// stored, since the store would refuse it anyway.
constexpr std::size_t kCallMax = 15, kRstMax = 4, kRstNrMax = 8;

bool reportChars(std::string_view s) {
    for (char c : s)
        if (!entry::filterReportKey(c) || *entry::filterReportKey(c) != c)
            return false;
    return true;
}

std::optional<DateTime> withTime(DateTime date, std::string_view time) {
    const auto t = entry::parseTime(time);
    if (!t)
        return std::nullopt;
    return DateTime{date.year, date.month, date.day, t->hour, t->minute, t->second};
}

std::optional<DateTime> parseDate(std::string_view s) {
    const std::string d = text::trim(s);
    if (d.size() != 10)
        return std::nullopt;
    return DateTime::fromStorage(d);
}

std::int64_t distance(const std::string& own, const std::string& locator) {
    std::string a = own, b = locator;
    const LocErgebnis e = LocBerechnen(a, b);
    return e.ok() ? static_cast<std::int64_t>(e.km) : 0;
}

} // namespace

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
    : log_(log), config_(std::move(config)), clock_(clock), dialogs_(dialogs), texts_(texts) {}

void Capture::selectBand(int band) {
    state_.load(band, log_.rows(band), log_.totals(band), config_.ownLocator, config_.antenneKomma);
    if (!state_.rows().empty()) {
        lastCall_ = state_.rows().back().qso.call;
        lastLocator_ = state_.rows().back().qso.locator;
    }
}

DateTime Capture::logNow() const {
    return clock_.now().addHours(config_.zeitPlusMinus);
}

std::optional<QsoRow> Capture::rowForCommit(const EntryRow& row, Failure& failure) const {
    const std::size_t minReport = entry::minimumReceivedReport(row.mode, config_.mode3St);
    const std::string call = text::trim(row.call);
    const std::string locator = text::upper(text::trim(row.locator));
    const std::string rstNr = text::upper(text::trim(row.rstNr));
    const std::string rst = text::upper(text::trim(row.rst));
    if (text::length(call) < 3 || call.size() > kCallMax) {
        failure = refuse(1, "Text3");
        return std::nullopt;
    }
    if (text::length(locator) != 6) {
        failure = refuse(2, "Text7");
        return std::nullopt;
    }
    if (text::length(rstNr) < minReport || rstNr.size() > kRstNrMax || !reportChars(rstNr)) {
        failure = refuse(3, "Text6");
        return std::nullopt;
    }
    if (text::length(rst) < 2 || rst.size() > kRstMax || !reportChars(rst)) {
        failure = refuse(4, "Text4");
        return std::nullopt;
    }
    if (!LocOK(locator)) {
        failure = refuse(2, "Text7");
        return std::nullopt;
    }
    if (!entry::parseTime(row.time)) {
        failure = refuse(14, "Text2");
        return std::nullopt;
    }
    std::optional<DateTime> panelDate;
    if (row.datePanel) {
        panelDate = parseDate(row.date);
        if (!panelDate) {
            failure = refuse(13, "Text1");
            return std::nullopt;
        }
    }
    std::int64_t serial = state_.LastQSONr + 1;
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
    q.call = text::upper(call);
    q.locator = locator;
    q.qrg = orv::band(state_.band()).qrg;
    q.datTime = *withTime(now, row.time);
    q.rstGeg = rst;
    q.qsoNr = serial;
    q.rstErh = rstNr;
    q.qrb = distance(config_.ownLocator, locator);
    q.qsl = text::trim(row.qsl) == "Yes";
    q.notice = text::left(text::trim(row.note), 100);
    q.mod = text::left(text::trim(row.mode), 5);
    q.name = text::left(row.name, 100);
    q.modRx = text::left(text::trim(row.rxMode), 5);
    q.ausBr = text::left(text::trim(row.prop), 3);
    q.opCall = text::left(text::trim(row.op), 15);
    return q;
}

CommitResult Capture::Uebernehmen(EntryRow& row) {
    CommitResult result;
    std::optional<QsoRow> q = rowForCommit(row, result.failure);
    if (!q) {
        result.kind = CommitResult::Kind::Refused;
        return result;
    }
    if (auto dup = CallExistTest(row.call)) {
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
    q->rowId = log_.addQso(state_.band(), *q, totals);

    // The file holds the QSO; the state follows.
    state_.stored = totals;
    state_.PGesamt = totals.pGesamt;
    if (odxImproved) {
        state_.ODX = q->qrb;
        state_.ODXNr = q->qsoNr;
    }
    GridRow grid{*q, bearingText(config_.ownLocator, q->locator, config_.antenneKomma)};
    state_.appendRow(grid);
    state_.LastQSONr = q->qsoNr;
    const std::int64_t divisor = q->qsoNr - state_.deletedCount();
    state_.setKmPerQso(divisor > 0 ? state_.PGesamt / divisor : 0);
    lastCall_ = q->call;
    lastLocator_ = q->locator;

    clearEntry(row);
    row.serial = state_.nextSerial();
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

DuplicatePanel Capture::panelOf(const QsoRow& q) const {
    DuplicatePanel p;
    p.dup = {q.datTime.timeHM(),
             q.call,
             q.rstGeg,
             entry::formatGridSerial(q.qsoNr),
             q.rstErh,
             q.locator,
             std::to_string(q.qrb),
             q.qsl ? "Yes" : "No",
             q.mod,
             texts_(200) + " " + q.notice};
    return p;
}

std::optional<DuplicatePanel> Capture::CallExistTest(std::string_view call) {
    const std::string trimmed = text::trim(call);
    if (trimmed.empty() || state_.band() < 0)
        return std::nullopt;
    // Rows of one call follow each other in CallIndex order; the first live
    // one decides, and the comparison with the text as given is exact.
    for (const QsoRow& q : log_.rowsByCall(state_.band(), trimmed)) {
        if (q.errQso)
            continue;
        if (q.call != call)
            return std::nullopt;
        return panelOf(q);
    }
    return std::nullopt;
}

std::vector<WorkedOnBand> Capture::WorkAlso(std::string_view call) {
    std::vector<WorkedOnBand> out;
    const std::string c = text::upper(text::trim(call));
    for (int b = 0; b < kBandCount; ++b) {
        if (b == state_.band())
            continue;
        const auto rows = log_.rowsByCall(b, c);
        // Only the first row in index order is looked at: a deleted first row
        // hides a live one behind it.
        if (rows.empty() || rows.front().call != c || rows.front().errQso)
            continue;
        const QsoRow& q = rows.front();
        out.push_back(WorkedOnBand{b,
                                   {std::string(orv::band(b).boxText), q.call, q.locator, q.rstGeg,
                                    entry::formatGridSerial(q.qsoNr), q.rstErh,
                                    std::to_string(q.qrb), q.datTime.timeHM()}});
    }
    return out;
}

std::vector<std::string>
Capture::workedBeforeLines(std::string_view typed,
                           const std::set<std::string>* locatorCalls) const {
    std::vector<std::string> lines;
    const std::string t = text::upper(text::trim(typed));
    if (text::length(t) <= 2)
        return lines;
    const std::string& mark = texts_(216);
    const auto matches = state_.workedMatches(t);
    lines.reserve(matches.size());
    for (std::size_t i : matches) {
        const QsoRow& q = state_.rows()[i].qso;
        if (locatorCalls && !locatorCalls->count(q.call))
            continue;
        std::string line = text::padRight(q.call, 13);
        line.reserve(line.size() + q.locator.size() + 1 + mark.size());
        line += q.locator;
        line += ' ';
        line += mark;
        lines.push_back(std::move(line));
    }
    return lines;
}

BandTotals Capture::walkTotals(BandTotals stored, bool alwaysWriteOdx) {
    std::int64_t odx = 0, odxNr = 0, sum = 0;
    bool improved = false;
    for (const GridRow& r : state_.rows()) {
        if (r.qso.errQso)
            continue;
        if (odx < r.qso.qrb) {
            odx = r.qso.qrb;
            odxNr = r.qso.qsoNr;
            improved = true;
        }
        sum += r.qso.qrb;
    }
    state_.ODX = odx;
    state_.ODXNr = odxNr;
    state_.PGesamt = sum;
    BandTotals t = stored;
    t.pGesamt = sum;
    if (improved || alwaysWriteOdx) {
        t.odx = odx;
        t.odxNr = odxNr;
    }
    return t;
}

void Capture::updateKmPerQsoAfterRebuild() {
    const std::int64_t live =
        static_cast<std::int64_t>(state_.rows().size()) - state_.deletedCount();
    state_.setKmPerQso(state_.PGesamt < 1 || live <= 0 ? 0 : state_.PGesamt / live);
}

bool Capture::ErrQSO(std::int64_t qsoNr) {
    const long i = state_.findRow(qsoNr);
    if (i < 0)
        return false;
    if (dialogs_.ask(texts_(17), Buttons::YesNo, Icon::Question, Answer::Yes) != Answer::Yes)
        return false;
    auto& rows = state_.mutableRows();
    const BandState before = state_;
    rows[static_cast<std::size_t>(i)].qso.errQso = true;
    const BandTotals totals = walkTotals(state_.stored, false);
    try {
        log_.setErrQso(state_.band(), rows[static_cast<std::size_t>(i)].qso.rowId, true, totals);
    } catch (...) {
        state_ = before;
        throw;
    }
    state_.stored = totals;
    state_.rebuildIndex();
    updateKmPerQsoAfterRebuild();
    changed();
    return true;
}

Status Capture::restore(std::size_t row) {
    if (row >= state_.rows().size() || !state_.rows()[row].qso.errQso)
        return refuse(225);
    const std::string call = state_.rows()[row].qso.call;
    if (CallExistTest(call))
        return refuse(229);
    const BandState before = state_;
    state_.mutableRows()[row].qso.errQso = false;
    const BandTotals totals = walkTotals(state_.stored, true);
    try {
        log_.setErrQso(state_.band(), state_.rows()[row].qso.rowId, false, totals);
    } catch (...) {
        state_ = before;
        throw;
    }
    state_.stored = totals;
    state_.rebuildIndex();
    updateKmPerQsoAfterRebuild();
    changed();
    return okStatus();
}

EditRow Capture::editView(std::size_t row) const {
    const GridCells c = gridCells(state_.rows().at(row));
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
    e.prop = c[15];
    e.op = c[17];
    e.name = c[14];
    return e;
}

Status Capture::UebernehmenEdit(std::size_t row, const EditRow& edit) {
    if (row >= state_.rows().size())
        return refuse(225);
    const QsoRow old = state_.rows()[row].qso;
    const std::size_t minReport = entry::minimumReceivedReport(edit.mode, config_.editMode3);
    const std::string call = text::upper(text::trim(edit.call));
    const std::string locator = text::upper(text::trim(edit.locator));
    const std::string rstNr = text::upper(text::trim(edit.rstNr));
    const std::string rst = text::upper(text::trim(edit.rst));
    if (text::length(call) < 3 || call.size() > kCallMax)
        return refuse(1, "Text33");
    if (text::length(locator) != 6)
        return refuse(2, "Text77");
    if (text::length(rstNr) < minReport || rstNr.size() > kRstNrMax || !reportChars(rstNr))
        return refuse(3, "Text66");
    if (text::length(rst) < 2 || rst.size() > kRstMax || !reportChars(rst))
        return refuse(4, "Text44");
    if (!LocOK(locator))
        return refuse(2, "Text77");
    const auto date = parseDate(edit.date);
    if (!entry::parseTime(edit.time))
        return refuse(14, "Text22");
    if (!date)
        return refuse(13, "Text14");
    const std::string qrbText = text::trim(edit.qrb);
    if (!text::isInteger(qrbText) || text::leadingInt(qrbText) < 0)
        return refuse(225, "Text88");
    std::int64_t newQrb = text::leadingInt(qrbText);

    // Another live QSO of the call on the band: the user may score this one 0.
    for (const QsoRow& q : log_.rowsByCall(state_.band(), call)) {
        if (q.qsoNr != old.qsoNr && q.call == call && !q.errQso) {
            if (dialogs_.ask(texts_(21), Buttons::YesNo, Icon::Question, Answer::Yes) ==
                Answer::Yes)
                newQrb = 0;
            break;
        }
    }

    QsoRow q = old;
    q.call = call;
    q.locator = locator;
    q.datTime = *withTime(*date, edit.time);
    q.rstGeg = rst;
    q.rstErh = rstNr;
    q.qrb = newQrb;
    q.qsl = text::trim(edit.qsl) == "Yes";
    q.notice = text::left(text::trim(edit.note), 100);
    q.mod = text::left(text::trim(edit.mode), 5);
    q.modRx = text::left(text::trim(edit.rxMode), 5);
    q.ausBr = text::left(text::trim(edit.prop), 3);
    q.opCall = text::left(text::trim(edit.op), 15);
    q.name = text::left(edit.name, 100);

    const BandState before = state_;
    BandTotals totals = state_.stored;
    if (newQrb != old.qrb) {
        state_.PGesamt = state_.PGesamt - old.qrb + newQrb;
        if (state_.ODX < newQrb) {
            state_.ODX = newQrb;
            state_.ODXNr = q.qsoNr;
            totals.odx = newQrb;
            totals.odxNr = q.qsoNr;
        }
        totals.pGesamt = state_.PGesamt;
    }
    GridRow& g = state_.mutableRows()[row];
    g.qso = q;
    g.bearing = bearingText(config_.ownLocator, q.locator, config_.antenneKomma);
    // A distance below the ODX lets the best QSO be found again: the only way
    // the ODX goes down.
    if (newQrb < state_.ODX)
        totals = walkTotals(totals, false);
    try {
        log_.updateQso(state_.band(), q.rowId, q, totals);
    } catch (...) {
        state_ = before;
        throw;
    }
    state_.stored = totals;
    state_.rebuildIndex();
    updateKmPerQsoAfterRebuild();
    changed();
    return okStatus();
}

bool Capture::MnLogLoeschen() {
    if (dialogs_.ask(texts_(254), Buttons::YesNo, Icon::Warning, Answer::No) != Answer::Yes)
        return false;
    if (dialogs_.ask(texts_(255), Buttons::OkCancel, Icon::Warning, Answer::Cancel) != Answer::Ok)
        return false;
    log_.emptyBand(state_.band());
    changed();
    return true;
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
