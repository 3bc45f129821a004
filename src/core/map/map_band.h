#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/capture/band_state.h"
#include "core/map/projection.h"
#include "core/map/rate_intervals.h"

// What the map and the rate graph show of one band: a snapshot of the
// band's state, so that drawing never reads the capture while it changes.
namespace orv::map {

struct MapQso {
    std::string call;
    std::string locator;
    DateTime time;
    std::int64_t qrb = 0;
    std::int64_t qsoNr = 0;
    std::size_t row = 0; // the row of the log grid
    LocPosition position;
};

struct MapBand {
    int band = -1;
    // Live QSOs with a locator the arithmetic takes, in grid order.
    std::vector<MapQso> qsos;
    // The worked large squares, as `GrossfeldADD` listed them.
    std::vector<std::string> squares;
    std::int64_t odx = 0;
    std::int64_t odxNr = 0;
};

// One live grid row as the map shows it; nothing for a deleted row or one
// without a usable locator.
std::optional<MapQso> mapQso(const GridRow& row, std::size_t index);
MapBand mapBand(const BandState& state);

// The live QSOs of a band as the rate counts them.
std::vector<RateSample> rateSamples(const BandState& state);

// The default radius of a map: the band's farthest QSO plus 10 %, rounded
// up to 100 km (at least 100 km).
double defaultRadiusKm(const MapBand& band);

} // namespace orv::map
