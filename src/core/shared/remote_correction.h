#pragma once

// Corrections, deletion marks and restores that the operator makes here on
// another position's QSO. They pass the checks and questions of an own
// correction, then go to the cache and the outbox through
// SharedStore::changeRemote. The QSO keeps its number, band and frequency.

#include <string>

#include "core/capture/capture.h"
#include "core/shared/shared_store.h"
#include "core/util/ports.h"
#include "core/util/result.h"

namespace orv {

// The correction line's fields filled from another position's QSO.
EditRow remoteEditRow(const QsoRow& q);

class RemoteCorrection {
public:
    RemoteCorrection(SharedStore& store, const CaptureConfig& config, Dialogs& dialogs,
                     const Texts& texts);

    // Checks the fields as an own correction does; a failure names the
    // field of the correction line and changes nothing. The distance follows
    // the locator from the own one; another live QSO of the call on the band
    // at the station asks IText(21), and Yes scores this one 0.
    Status correct(const std::string& uid, const EditRow& edit);
    // A live QSO is marked deleted after IText(17); a deleted one is restored
    // after IText(232), refused with IText(229) while its call is live on the
    // band at the station. False when the operator said No.
    Result<bool> toggleDeleted(const std::string& uid);

private:
    SharedStore& store_;
    const CaptureConfig& config_;
    Dialogs& dialogs_;
    const Texts& texts_;
};

} // namespace orv
