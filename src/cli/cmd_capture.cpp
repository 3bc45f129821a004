// add, list, delete, restore, correct, clear-band: the QSO capture of the
// main window, driven through the same core path from the command line.
// On a shared log, delete, restore and correct reach the other positions'
// QSOs too (share_remote.h).
#include <sstream>

#include "cli/log_access.h"
#include "cli/share_remote.h"
#include "core/capture/capture.h"
#include "core/settings/settings.h"
#include "core/shared/shared_store.h"
#include "core/shared/station_view.h"
#include "core/util/text.h"

namespace orv::cli {
namespace {

// A log, its band and a capture on it, opened for one command.
struct OpenBand {
    OpenedLog opened;
    Settings settings;
    FixedDialogs dialogs;
    // A shared log's capture counts the other positions' QSOs as the
    // window's does: duplicates, worked-before and the next number.
    std::optional<SharedStationView> station;
    std::optional<Capture> capture;
};

std::unique_ptr<OpenBand> openBand(Context& ctx, const Args& args, Answer answer, int& code) {
    auto arg = logArgument(ctx, args, true, code);
    if (!arg)
        return nullptr;
    auto s = std::unique_ptr<OpenBand>(
        new OpenBand{std::move(arg->opened), Settings(IniFile(ctx.paths.iniPath())),
                     FixedDialogs(answer), std::nullopt, std::nullopt});
    s->capture.emplace(s->opened.log, captureConfigFrom(s->settings, s->opened.log.myData()),
                       ctx.clock, s->dialogs, ctx.texts);
    if (SharedStore::isShared(s->opened.log.db())) {
        s->station.emplace(s->opened.log.db());
        s->capture->setOtherPositions(&*s->station);
    }
    s->capture->selectBand(arg->band);
    return s;
}

std::optional<std::size_t> rowOfNr(Context& ctx, const Capture& capture, const Args& args,
                                   int& code) {
    const std::string nr = args.getOr("nr", "");
    const long row = text::isInteger(nr) ? capture.state().findRow(text::leadingInt(nr)) : -1;
    if (row < 0) {
        code = ctx.fail(225, kRefused, "--nr " + nr);
        return std::nullopt;
    }
    return static_cast<std::size_t>(row);
}

int runAdd(Context& ctx, const Args& args) {
    int code = kOk;
    auto s = openBand(ctx, args, Answer::No, code);
    if (!s)
        return code;
    Capture& capture = *s->capture;
    EntryRow row;
    row.call = args.getOr("call", "");
    row.rst = args.getOr("rst", "");
    row.rstNr = args.getOr("rcvd", "");
    row.locator = args.getOr("locator", "");
    row.mode = args.getOr("mode", s->settings.modes().front());
    row.rxMode = args.getOr("rxmode", row.mode);
    row.note = args.getOr("note", "");
    row.qsl = args.getOr("qsl", "No");
    row.prop = args.getOr("prop", "");
    row.op = args.getOr("op", s->settings.get(keys::OPCall));
    row.name = args.getOr("name", "");
    row.time = args.getOr("time", capture.logNow().timeHM());
    if (auto date = args.get("date")) {
        row.datePanel = true;
        row.date = *date;
    }
    const CommitResult res = capture.Uebernehmen(row);
    switch (res.kind) {
    case CommitResult::Kind::Stored:
        printGridRow(ctx.out, res.stored);
        return kOk;
    case CommitResult::Kind::Duplicate: {
        ctx.err << ctx.texts(200) << "\n";
        for (std::size_t i = 0; i + 1 < res.duplicate.dup.size(); ++i)
            ctx.err << (i ? "\t" : "") << res.duplicate.dup[i];
        ctx.err << "\n";
        return kDuplicate;
    }
    case CommitResult::Kind::Refused:
        break;
    }
    return ctx.refuse(res.failure);
}

int runList(Context& ctx, const Args& args) {
    int code = kOk;
    auto s = openBand(ctx, args, Answer::No, code);
    if (!s)
        return code;
    const BandState& st = s->capture->state();
    for (const GridRow& r : st.rows())
        printGridRow(ctx.out, r);
    ctx.out << "# lastnr=" << st.LastQSONr << " score=" << st.PGesamt
            << " kmperqso=" << st.kmPerQso() << " odx=" << st.ODX << " odxnr=" << st.ODXNr
            << " squares=" << st.GrossfeldZahl() << " deleted=" << st.deletedCount() << "\n";
    return kOk;
}

// delete and restore: the row of --nr changes its deleted mark; a row that
// already has the wanted mark is left alone.
int changeMark(Context& ctx, const Args& args, bool deleted) {
    int code = kOk;
    auto s = openBand(ctx, args, Answer::Yes, code);
    if (!s)
        return code;
    Capture& capture = *s->capture;
    if (auto other = changeOtherPosition(ctx, args, capture, s->opened.log.db(),
                                         deleted ? OtherChange::Delete : OtherChange::Restore))
        return *other;
    const auto row = rowOfNr(ctx, capture, args, code);
    if (!row)
        return code;
    if (capture.state().rows()[*row].qso.errQso == deleted)
        return kOk;
    if (deleted) {
        capture.ErrQSO(capture.state().rows()[*row].qso.qsoNr);
    } else if (const Status st = capture.restore(*row); !st) {
        return ctx.refuse(st.failure());
    }
    printGridRow(ctx.out, capture.state().rows()[*row]);
    return kOk;
}

int runDelete(Context& ctx, const Args& args) {
    return changeMark(ctx, args, true);
}
int runRestore(Context& ctx, const Args& args) {
    return changeMark(ctx, args, false);
}

int runCorrect(Context& ctx, const Args& args) {
    const std::string dupeZero = args.getOr("dupe-zero", "no");
    if (dupeZero != "yes" && dupeZero != "no") {
        return ctx.fail(225, kRefused, "--dupe-zero yes|no");
    }
    int code = kOk;
    auto s = openBand(ctx, args, dupeZero == "yes" ? Answer::Yes : Answer::No, code);
    if (!s)
        return code;
    Capture& capture = *s->capture;
    if (auto other = changeOtherPosition(ctx, args, capture, s->opened.log.db(),
                                         OtherChange::Correct, dupeZero == "yes"))
        return *other;
    const auto row = rowOfNr(ctx, capture, args, code);
    if (!row)
        return code;
    EditRow e = capture.editView(*row);
    applyEditOptions(args, capture, e);
    const Status st = capture.UebernehmenEdit(*row, e);
    if (!st)
        return ctx.refuse(st.failure());
    printGridRow(ctx.out, capture.state().rows()[*row]);
    return kOk;
}

int runClearBand(Context& ctx, const Args& args) {
    if (!args.flags.count("yes"))
        return ctx.fail(254, kRefused, "--yes");
    int code = kOk;
    auto s = openBand(ctx, args, Answer::Yes, code);
    if (!s)
        return code;
    // Both questions are answered by --yes: Yes, then OK.
    struct YesOk final : Dialogs {
        Answer ask(const std::string&, Buttons b, Icon, Answer) override {
            return b == Buttons::OkCancel ? Answer::Ok : Answer::Yes;
        }
        void inform(const std::string&, Icon) override {}
    } yesOk;
    Capture capture(s->opened.log, s->capture->config(), ctx.clock, yesOk, ctx.texts);
    capture.selectBand(s->capture->band());
    capture.MnLogLoeschen();
    return kOk;
}

const std::string kFields =
    "[--mode M] [--rxmode M] [--date YYYY-MM-DD] [--time HH:MM] [--note TEXT] [--qsl Yes|No] "
    "[--prop P] [--op CALL] [--name NAME]";

// How the QSO N is found on a shared log.
const std::string kShared =
    "; on a shared log with no own QSO N on the band, the other positions' QSO N (--position "
    "NAME chooses the position, and must when several carry N)";

const bool registered =
    registerCommand({"add",
                     "NAME --band BAND --call CALL --rst RST --rcvd RSTNR --locator LOC " + kFields,
                     "log a QSO on a band as the entry row does; exit 3 for a duplicate",
                     {},
                     &runAdd}) &&
    registerCommand({"list",
                     "NAME --band BAND",
                     "print the band's rows (18 cells, tab-separated) and its totals",
                     {},
                     &runList}) &&
    registerCommand({"delete",
                     "NAME --band BAND --nr N [--position NAME]",
                     "mark the QSO N deleted" + kShared,
                     {},
                     &runDelete}) &&
    registerCommand({"restore",
                     "NAME --band BAND --nr N [--position NAME]",
                     "restore the deleted QSO N" + kShared,
                     {},
                     &runRestore}) &&
    registerCommand({"correct",
                     "NAME --band BAND --nr N [--position NAME] [--call C] [--rst R] [--rcvd R] "
                     "[--locator L] " +
                         kFields + " [--dupe-zero yes|no]",
                     "correct the QSO N as the correction line does" + kShared,
                     {},
                     &runCorrect}) &&
    registerCommand({"clear-band",
                     "NAME --band BAND --yes",
                     "delete every QSO of the band and its totals",
                     {"yes"},
                     &runClearBand});

} // namespace
} // namespace orv::cli
