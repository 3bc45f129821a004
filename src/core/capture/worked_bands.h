#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/capture/band_state.h"
#include "core/logstore/bands.h"
#include "core/logstore/contest_log.h"

namespace orv {

// On which bands each call has live QSOs: one look-up per typed call. Calls
// are keyed trimmed and upper case, as the duplicate check finds them.
class WorkedBands {
public:
    using Bands = std::bitset<kBandCount>;

    // The bands of a call with at least one live QSO.
    Bands of(std::string_view call) const;
    // A live QSO of `call` on `band` comes (+1) or goes (-1).
    void count(int band, std::string_view call, int delta);
    // Counts a band anew from its rows (deleted rows are left out).
    void setBand(int band, const std::vector<QsoRow>& rows);
    void setBand(int band, const std::vector<GridRow>& rows);
    void clearBand(int band);

    bool operator==(const WorkedBands&) const = default;

private:
    static std::string key(std::string_view call);
    std::unordered_map<std::string, std::array<std::uint32_t, kBandCount>> counts_;
};

} // namespace orv
