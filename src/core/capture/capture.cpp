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

// The fields both entry lines check, in the order of the checks.
struct EntryFields {
    std::string_view call, locator, rstNr, rst, time, date;
    bool checkDate;
    int minReport;
};
// The controls to focus for each check, in the entry row or the correction line.
struct FieldNames {
    const char *call, *locator, *rstNr, *rst, *time, *date;
};
constexpr FieldNames kEntryRowFields{"Text3", "Text7", "Text6", "Text4", "Text2", "Text1"};
constexpr FieldNames kEditLineFields{"Text33", "Text77", "Text66", "Text44", "Text22", "Text14"};

struct CheckedEntry {
    std::optional<Failure> failure;
    std::string call, locator, rstNr, rst;
    std::optional<DateTime> date;
};

CheckedEntry checkEntry(const EntryFields& f, const FieldNames& n) {
    CheckedEntry c;
    c.call = text::upper(text::trim(f.call));
    c.locator = text::upper(text::trim(f.locator));
    c.rstNr = text::upper(text::trim(f.rstNr));
    c.rst = text::upper(text::trim(f.rst));
    if (text::length(c.call) < 3 || c.call.size() > kCallMax)
        c.failure = refuse(1, n.call);
    else if (text::length(c.locator) != 6)
        c.failure = refuse(2, n.locator);
    else if (text::length(c.rstNr) < static_cast<std::size_t>(f.minReport) ||
             c.rstNr.size() > kRstNrMax || !reportChars(c.rstNr))
        c.failure = refuse(3, n.rstNr);
    else if (text::length(c.rst) < 2 || c.rst.size() > kRstMax || !reportChars(c.rst))
        c.failure = refuse(4, n.rst);
    else if (!LocOK(c.locator))
        c.failure = refuse(2, n.locator);
    else if (!entry::parseTime(f.time))
        c.failure = refuse(14, n.time);
    else if (f.checkDate && !(c.date = parseDate(f.date)))
        c.failure = refuse(13, n.date);
    return c;
}

// The fields that both entry lines store the same way.
void fillRow(QsoRow& q, const CheckedEntry& c, std::string_view qsl, std::string_view note,
             std::string_view mode, std::string_view rxMode, std::string_view prop,
             std::string_view op) {
    q.call = c.call;
    q.locator = c.locator;
    q.rstGeg = c.rst;
    q.rstErh = c.rstNr;
    q.qsl = text::trim(qsl) == "Yes";
    q.notice = text::left(text::trim(note), 100);
    q.mod = text::left(text::trim(mode), 5);
    q.modRx = text::left(text::trim(rxMode), 5);
    q.ausBr = text::left(text::trim(prop), 3);
    q.opCall = text::left(text::trim(op), 15);
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
    q.qrg = orv::band(state_.band()).qrg;
    q.datTime = *withTime(now, row.time);
    q.qsoNr = serial;
    q.qrb = distance(config_.ownLocator, c.locator);
    q.name = text::left(row.name, 100);
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
    // The search is case-blind on the trimmed call; calls are stored upper
    // case, so the upper-cased key finds them through CallIndex.
    const std::string key = text::upper(text::trim(call));
    if (key.empty() || state_.band() < 0)
        return std::nullopt;
    // Rows of one call follow each other in CallIndex order. The row found
    // first decides when it is live; a row reached by skipping deleted ones
    // is compared with the call as given.
    bool skipped = false;
    for (const QsoRow& q : log_.rowsByCall(state_.band(), key)) {
        if (q.errQso) {
            skipped = true;
            continue;
        }
        if (skipped && q.call != call)
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
    const auto matches = state_.workedMatches(t);
    lines.reserve(matches.size());
    for (std::size_t i : matches) {
        const QsoRow& q = state_.rows()[i].qso;
        if (locatorCalls && !locatorCalls->count(q.call))
            continue;
        lines.push_back(workedLine(q));
    }
    return lines;
}

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

std::string Capture::workedLine(const QsoRow& q) const {
    const std::string& mark = texts_(216);
    std::string line = text::padRight(q.call, 13);
    line.reserve(line.size() + q.locator.size() + 1 + mark.size());
    line += q.locator;
    line += ' ';
    line += mark;
    return line;
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
    log_.setErrQso(state_.band(), q.rowId, deleted, totals);
    state_.mutableRows()[row].qso.errQso = deleted;
    applyWalk(w, totals);
    changed();
}

bool Capture::ErrQSO(std::int64_t qsoNr) {
    const long i = state_.findRow(qsoNr);
    if (i < 0)
        return false;
    if (dialogs_.ask(texts_(17), Buttons::YesNo, Icon::Question, Answer::Yes) != Answer::Yes)
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
    log_.updateQso(state_.band(), q.rowId, q, totals);

    GridRow& g = state_.mutableRows()[row];
    g.qso = q;
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
