#include "cli/share_remote.h"

#include <algorithm>
#include <string>
#include <vector>

#include "core/capture/capture_checks.h"
#include "core/capture/entry_rules.h"
#include "core/shared/shared_store.h"
#include "core/util/text.h"

namespace orv::cli {

namespace {

constexpr int kNotShared = 1324;
constexpr int kNumberAmbiguous = 1361;

// The correction line filled from a QSO, as the window fills it from a grid
// row: the same cells.
EditRow editRowOf(const QsoRow& q) {
    const GridCells c = gridCells(GridRow{q, {}});
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

bool sameCall(const std::string& a, const std::string& b) {
    return text::upper(text::trim(a)) == text::upper(text::trim(b));
}

// Whether the call is live on the band apart from the QSO `uid`: among this
// position's rows or the other positions'.
bool liveElsewhere(Capture& capture, SharedStore& store, const SharedQso& target,
                   const std::string& call) {
    if (capture.CallExistTest(call))
        return true;
    const auto others = store.remoteQsos(target.band);
    return std::any_of(others.begin(), others.end(), [&](const SharedQso& q) {
        return q.uid != target.uid && !q.row.errQso && sameCall(q.row.call, call);
    });
}

// The correction of the line `e` on another position's QSO, checked as the
// own correction is; the QSO as it is to be stored, or why not.
Result<QsoRow> corrected(Capture& capture, SharedStore& store, const SharedQso& target,
                         const EditRow& e, bool dupeZero) {
    using namespace capture_detail;
    const EntryFields f{e.call,  e.locator,
                        e.rstNr, e.rst,
                        e.time,  e.date,
                        true,    entry::minimumReceivedReport(e.mode, capture.config().editMode3)};
    const CheckedEntry c = checkEntry(f, kEditLineFields);
    if (c.failure)
        return *c.failure;
    const std::string qrbText = text::trim(e.qrb);
    if (!text::isInteger(qrbText) || text::leadingInt(qrbText) < 0)
        return refuse(225, "Text88");
    QsoRow q = target.row;
    q.qrb = text::leadingInt(qrbText);
    // Another live QSO of the call on the band: --dupe-zero scores this one 0.
    if (dupeZero && liveElsewhere(capture, store, target, c.call))
        q.qrb = 0;
    q.datTime = *withTime(*c.date, e.time);
    q.name = text::left(e.name, 100);
    fillRow(q, c, e.qsl, e.note, e.mode, e.rxMode, e.prop, e.op);
    return q;
}

// The other positions' QSOs the command may mean, narrowed to those it
// changes: a deletion the live ones, a restore the deleted ones, a
// correction the live ones when there are any.
std::vector<SharedQso> candidates(std::vector<SharedQso> found, OtherChange change) {
    const auto keep = [&](bool deleted) {
        std::erase_if(found, [&](const SharedQso& q) { return q.row.errQso != deleted; });
    };
    if (change == OtherChange::Delete)
        keep(false);
    else if (change == OtherChange::Restore)
        keep(true);
    else if (std::any_of(found.begin(), found.end(),
                         [](const SharedQso& q) { return !q.row.errQso; }))
        keep(false);
    return found;
}

} // namespace

void printGridRow(std::ostream& out, const GridRow& row) {
    const GridCells c = gridCells(row);
    for (std::size_t i = 0; i < c.size(); ++i)
        out << (i ? "\t" : "") << c[i];
    out << "\n";
}

void applyEditOptions(const Args& args, const Capture& capture, EditRow& e) {
    const struct {
        const char* option;
        std::string EditRow::*field;
    } fields[] = {
        {"call", &EditRow::call},       {"rst", &EditRow::rst},   {"rcvd", &EditRow::rstNr},
        {"locator", &EditRow::locator}, {"time", &EditRow::time}, {"date", &EditRow::date},
        {"mode", &EditRow::mode},       {"qsl", &EditRow::qsl},   {"note", &EditRow::note},
        {"rxmode", &EditRow::rxMode},   {"prop", &EditRow::prop}, {"op", &EditRow::op},
        {"name", &EditRow::name}};
    for (const auto& f : fields)
        if (auto v = args.get(f.option))
            e.*(f.field) = *v;
    if (args.get("locator")) {
        if (auto p = capture.preview(text::trim(e.locator));
            p && text::length(text::trim(e.locator)) == 6)
            e.qrb = std::to_string(p->km);
    }
}

std::optional<int> changeOtherPosition(Context& ctx, const Args& args, Capture& capture,
                                       sql::Db& db, OtherChange change, bool dupeZero) {
    const auto position = args.get("position");
    if (!SharedStore::isShared(db)) {
        if (position)
            return ctx.fail(kNotShared, kRefused, "--position " + *position);
        return std::nullopt;
    }
    SharedStore store(db);
    const std::string nr = args.getOr("nr", "");
    // The number itself is checked where the own rows are looked up.
    if (!text::isInteger(nr))
        return std::nullopt;
    if (position ? *position == store.setup().position
                 : capture.state().findRow(text::leadingInt(nr)) >= 0)
        return std::nullopt;
    auto found = store.remoteQsosNumbered(capture.band(), text::leadingInt(nr));
    if (position)
        std::erase_if(found, [&](const SharedQso& q) { return q.position != *position; });
    if (found.empty()) {
        if (!position)
            return std::nullopt;
        return ctx.fail(225, kRefused, "--position " + *position + " --nr " + nr);
    }
    const auto meant = candidates(found, change);
    // A deletion of a deleted QSO, a restore of a live one: nothing to do,
    // as for an own row.
    if (meant.empty())
        return kOk;
    if (meant.size() > 1) {
        std::string names;
        for (const auto& q : meant)
            names += " " + q.position;
        return ctx.fail(kNumberAmbiguous, kRefused, "--nr " + nr + ":" + names);
    }
    const SharedQso& target = meant.front();
    QsoRow row = target.row;
    switch (change) {
    case OtherChange::Delete:
        row.errQso = true;
        break;
    case OtherChange::Restore:
        if (liveElsewhere(capture, store, target, row.call))
            return ctx.refuse(refuse(229));
        row.errQso = false;
        break;
    case OtherChange::Correct: {
        EditRow e = editRowOf(target.row);
        applyEditOptions(args, capture, e);
        auto c = corrected(capture, store, target, e, dupeZero);
        if (!c)
            return ctx.refuse(c.failure());
        row = *c;
        break;
    }
    }
    store.changeRemote(target.uid, row);
    const CaptureConfig& cfg = capture.config();
    printGridRow(ctx.out, GridRow{row, bearingText(cfg.ownLocator, row.locator, cfg.antenneKomma)});
    return kOk;
}

} // namespace orv::cli
