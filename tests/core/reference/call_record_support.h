#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "core/reference/call_db.h"

namespace orv::test {

// A row of the call database as the tests write it: call, locator, the
// band counters and the date of the last QSO.
inline CallRecord rec(std::string call, std::string loc,
                      std::array<std::int32_t, kBandCount> counters = {},
                      std::optional<DateTime> last = std::nullopt) {
    CallRecord r;
    r.Call = std::move(call);
    r.Locator = std::move(loc);
    r.counters = counters;
    r.LastDate = last;
    return r;
}

} // namespace orv::test
