#pragma once

#include <optional>
#include <string_view>

// Where a turn goes: a bearing in degrees as given ("164", "164.5"), or the
// bearing from the own locator to a locator, with its decimal (`GradDez`) as
// the locator arithmetic gives it. Nothing for a bad locator or a number
// outside 0 to 360.
namespace orv::rig {

std::optional<double> turnTarget(std::string_view ownLocator, std::string_view target);

} // namespace orv::rig
