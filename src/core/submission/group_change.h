#pragma once

#include <cstdint>
#include <string>

#include "core/util/result.h"

// Group changes: one field of a run of QSOs of a band, addressed by QSO
// number, changed in one step (the wrong operator or a wrong clock for a
// while). Neither the distance nor the running totals in `MyData` depend on
// the fields that can be changed, so `MyData` stays as it is and consistent.
namespace orv {

class ContestLog;

// The option buttons of the dialog, in their order.
enum class GroupField {
    Time,    // DatTime: the row's date with the entered time
    RxMod,   // ModRX: first 5 characters
    TxMod,   // Mod: first 5 characters
    Qsl,     // QSL: true for "Yes"
    Note,    // Notice: first 100 characters
    Name,    // Name: first 100 characters
    Prop,    // AusBr: first 3 characters, upper case
    OpCall,  // OPCall: first 15 characters, upper case
    AddTime, // DatTime plus the entered span ("0:30")
    SubTime, // DatTime minus the entered span
};

// What the dialog holds: the two QSO numbers and the new value as typed.
struct GroupChange {
    std::string from; // Text1
    std::string to;   // Text2
    GroupField field = GroupField::Time;
    std::string value; // Text3 or Combo1
};

// Checks the entry and changes every QSO numbered from..to, deleted ones
// included; a number without a QSO is skipped, and of several rows with one
// number only the first (in QSONrIndex order) is changed. All rows change
// in one transaction: a failure leaves the band as it was. Refusals:
// IText(225) for numbers that are not whole or out of order (field "Text1"
// or "Text2") and for an empty value; IText(14) for a time that is not one
// (field "Text3"). Returns the number of rows changed.
Result<std::int64_t> applyGroupChange(ContestLog& log, int band, const GroupChange& change);

} // namespace orv
