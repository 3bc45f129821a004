#pragma once

#include <optional>

#include "core/locator/locator.h"

// The map's azimuthal equidistant projection around the own locator: north
// up, every bearing a straight line from the centre and every distance a
// circle. The earth is the sphere of the locator arithmetic (111.136 km to a
// degree of arc), so a point lands at its QRB from the centre, to within the
// whole km that QRB rounds up to.
namespace orv::map {

// A point on the map plane in km: x east, y north of the centre.
struct MapPoint {
    double x = 0;
    double y = 0;
};

class Projection {
public:
    explicit Projection(LocPosition centre);

    const LocPosition& centre() const { return centre_; }
    MapPoint project(LocPosition p) const;
    // The position of a map point; nothing beyond the antipode (half the
    // earth's circumference from the centre).
    std::optional<LocPosition> inverse(MapPoint p) const;

    // Distance (km) and bearing (degrees 0..360, clockwise from north) of a
    // map point from the centre.
    static double distanceKm(MapPoint p);
    static double bearingDeg(MapPoint p);
    // The map point at a bearing and distance from the centre.
    static MapPoint along(double bearingDeg, double km);

    // Half the earth's circumference: the largest distance on the map.
    static double maxKm();

private:
    LocPosition centre_;
    double sinLat0_ = 0, cosLat0_ = 1;
};

} // namespace orv::map
