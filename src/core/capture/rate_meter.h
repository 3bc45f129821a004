#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "core/util/datetime.h"

namespace orv {

// The QSO-rate meter: how many QSOs of the band fall into the last
// `Zeitbereich` minutes, and the colour that count earns on a scale of
// `ZeigerMAX` split into fifths.
struct RgbColor {
    int r = 0, g = 0, b = 0;
    bool operator==(const RgbColor&) const = default;
};

namespace rate {
inline constexpr RgbColor kWhite{255, 255, 255};
inline constexpr RgbColor kYellow{255, 255, 0};
inline constexpr RgbColor kGreen{0, 255, 0};
inline constexpr RgbColor kMagenta{255, 0, 255};
inline constexpr RgbColor kRed{255, 0, 0};
} // namespace rate

struct RateReading {
    long long count = 0;
    RgbColor color = rate::kWhite;
};

// `times` are the QSO times of the grid rows in grid order, deleted rows
// included. Returns nothing when the band is empty: the meter stays as it is.
std::optional<RateReading> readRate(const std::vector<DateTime>& times, DateTime now,
                                    int zeitbereichMinutes, int zeigerMax);
// The same over `rows` rows whose time `timeOf(i)` gives (0 is the first):
// only the first row and the rows inside the range are looked at, so a tick
// on a long band costs what the range holds.
std::optional<RateReading> readRate(std::size_t rows,
                                    const std::function<DateTime(std::size_t)>& timeOf,
                                    DateTime now, int zeitbereichMinutes, int zeigerMax);

// The colour of a count: the tests stand in this order and later ones win.
RgbColor rateColor(long long count, int zeigerMax);

} // namespace orv
