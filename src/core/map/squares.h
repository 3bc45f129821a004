#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/locator/locator.h"
#include "core/map/projection.h"

// The large squares of the locator grid (the first four characters, as
// `GrossfeldADD` counts them): 2 degrees of longitude by 1 of latitude.
namespace orv::map {

// South-west corner and centre of a large square; nothing for a name that
// is not one ("JN78", upper or lower case).
std::optional<LocPosition> squareSouthWest(std::string_view square);
std::optional<LocPosition> squareCentre(std::string_view square);
// The large square holding a position ("JN78").
std::string squareOf(LocPosition p);

// The outline of a large square on the map: its four edges, each cut into
// `stepsPerEdge` pieces, since edges curve away from the centre. Closed: the
// first point comes again at the end. Empty for a bad name.
std::vector<MapPoint> squareOutline(const Projection& projection, std::string_view square,
                                    int stepsPerEdge = 8);

// Every large square that may reach within `radiusKm` of the projection's
// centre (judged by its centre and half its diagonal), in name order.
std::vector<std::string> squaresWithin(const Projection& projection, double radiusKm);

} // namespace orv::map
