#include "cli/share_remote.h"

#include <algorithm>
#include <string>
#include <vector>

#include "cli/log_access.h"
#include "core/shared/remote_correction.h"
#include "core/shared/shared_store.h"
#include "core/util/text.h"

namespace orv::cli {

namespace {

constexpr int kNotShared = 1324;
constexpr int kNumberAmbiguous = 1361;

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
        if (store.liveElsewhere(target.band, row.call, target.uid))
            return ctx.refuse(refuse(229));
        row.errQso = false;
        break;
    case OtherChange::Correct: {
        EditRow e = remoteEditRow(target.row);
        applyEditOptions(args, capture, e);
        // --dupe-zero answers the question of another live QSO of the call.
        FixedDialogs answer(dupeZero ? Answer::Yes : Answer::No);
        if (const Status st =
                RemoteCorrection(store, capture.config(), answer, ctx.texts).correct(target.uid, e);
            !st)
            return ctx.refuse(st.failure());
        row = store.remoteQso(target.uid)->row;
        break;
    }
    }
    if (change != OtherChange::Correct)
        store.changeRemote(target.uid, row);
    const CaptureConfig& cfg = capture.config();
    printGridRow(ctx.out, GridRow{row, bearingText(cfg.ownLocator, row.locator, cfg.antenneKomma)});
    return kOk;
}

} // namespace orv::cli
