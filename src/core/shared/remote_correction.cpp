#include "core/shared/remote_correction.h"

#include "core/capture/band_state.h"
#include "core/capture/capture_checks.h"
#include "core/capture/entry_rules.h"
#include "core/util/text.h"

namespace orv {

using namespace capture_detail;

EditRow remoteEditRow(const QsoRow& q) {
    // As the correction line of an own QSO reads its grid row.
    return editRowFromCells(gridCells(GridRow{q, {}}));
}

RemoteCorrection::RemoteCorrection(SharedStore& store, const CaptureConfig& config,
                                   Dialogs& dialogs, const Texts& texts)
    : store_(store), config_(config), dialogs_(dialogs), texts_(texts) {}

Status RemoteCorrection::correct(const std::string& uid, const EditRow& edit) {
    const auto old = store_.remoteQso(uid);
    if (!old)
        return refuse(225);
    const EntryFields f{edit.call,  edit.locator,
                        edit.rstNr, edit.rst,
                        edit.time,  edit.date,
                        true,       entry::minimumReceivedReport(edit.mode, config_.editMode3)};
    const CheckedEntry c = checkEntry(f, kEditLineFields);
    if (c.failure)
        return *c.failure;

    QsoRow q = old->row;
    q.datTime = *withTime(*c.date, edit.time);
    q.qrb = distance(config_.ownLocator, c.locator);
    q.name = text::left(edit.name, 100);
    fillRow(q, c, edit.qsl, edit.note, edit.mode, edit.rxMode, edit.prop, edit.op);
    if (!q.errQso && store_.liveElsewhere(old->band, q.call, uid) &&
        dialogs_.ask(texts_(21), Buttons::YesNo, Icon::Question, Answer::Yes) == Answer::Yes)
        q.qrb = 0;
    store_.changeRemote(uid, q);
    return okStatus();
}

Result<bool> RemoteCorrection::toggleDeleted(const std::string& uid) {
    const auto old = store_.remoteQso(uid);
    if (!old)
        return refuse(225);
    QsoRow q = old->row;
    if (!q.errQso) {
        if (dialogs_.askTitled(texts_(20), texts_(17), Buttons::YesNo, Icon::Question,
                               Answer::Yes) != Answer::Yes)
            return false;
    } else {
        if (dialogs_.ask(texts_(232), Buttons::YesNo, Icon::Question, Answer::Yes) != Answer::Yes)
            return false;
        if (store_.liveElsewhere(old->band, q.call, uid))
            return refuse(229);
    }
    q.errQso = !q.errQso;
    store_.changeRemote(uid, q);
    return true;
}

} // namespace orv
