#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/logstore/contest_defs.h"
#include "core/util/result.h"

// The checks of the options dialog's values, page by page, and the forms in
// which some of them are shown. Text is UTF-8.
namespace orv::options {

// Rows of the language table that the checks refuse with.
namespace row {
inline constexpr int kChooseSpeed = 969;
inline constexpr int kBadBackupFolder = 979;
inline constexpr int kBadBackupInterval = 980;
inline constexpr int kBadWeight = 982;
inline constexpr int kBadPropagation = 974;
} // namespace row

// A name of the MODE list: one to five characters (IText(178)).
Status checkModeName(std::string_view name);
// The two keyed modes of the automatic switch (IText(61), IText(62)).
Status checkKeyedModes(std::string_view mode2St, std::string_view mode3St);
// A speed of the speed list; none chosen is refused as well.
Status checkWpm(long long wpm);
// Seconds between beacon rounds, 1 to 60 (IText(245)).
Status checkLoopPause(long long seconds);
// The backup: a folder that exists when the backup is on, and an interval of
// 1 to 1440 minutes.
Status checkBackup(std::string_view folder, bool on, long long minutes);
// An entry of the propagation list: not empty, no line break.
Status checkPropagation(std::string_view text);
// A contest definition among `defs`: a name (IText(28)) that no other
// definition has (IText(74)); `self` is its own index, or -1 for a new one.
Status checkContestDef(const std::vector<ContestDef>& defs, const ContestDef& def, int self);
// A weight as typed: a whole number from 0 to 32767.
Result<std::int16_t> parseWeight(std::string_view text);

// `CWEND` as stored: upper-cased, with only the characters that the CW text
// may hold.
std::string cwEndText(std::string_view typed);

// `ZeitPlusMinus` shown as "+2:00h", "-1:00h", "+0:00h".
std::string zeitPlusMinusText(int hours);
std::optional<int> parseZeitPlusMinus(std::string_view text);
inline constexpr int kMaxZeitPlusMinus = 23;

// The characters a DDE flag key may be (ANSI codes 33 to 96).
inline constexpr int kFirstFlagCode = 33;
inline constexpr int kLastFlagCode = 96;

} // namespace orv::options
