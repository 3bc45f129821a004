#include "core/map/projection.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orv::map {
namespace {

constexpr double kRad = std::numbers::pi / 180.0;
// km to one radian of arc on the locator arithmetic's sphere.
constexpr double kEarthKm = 111.136 * 180.0 / std::numbers::pi;

} // namespace

Projection::Projection(LocPosition centre)
    : centre_(centre), sinLat0_(std::sin(centre.lat * kRad)),
      cosLat0_(std::cos(centre.lat * kRad)) {}

MapPoint Projection::project(LocPosition p) const {
    const double lat = p.lat * kRad;
    const double dlon = (p.lon - centre_.lon) * kRad;
    const double sinLat = std::sin(lat), cosLat = std::cos(lat);
    const double cosC =
        std::clamp(sinLat0_ * sinLat + cosLat0_ * cosLat * std::cos(dlon), -1.0, 1.0);
    const double c = std::acos(cosC);
    const double east = cosLat * std::sin(dlon);
    const double north = cosLat0_ * sinLat - sinLat0_ * cosLat * std::cos(dlon);
    const double dir = std::hypot(east, north);
    // At the centre (and exactly at its antipode) there is no direction.
    if (dir < 1e-15)
        return c < 1.0 ? MapPoint{} : MapPoint{0, -c * kEarthKm};
    return {east / dir * c * kEarthKm, north / dir * c * kEarthKm};
}

std::optional<LocPosition> Projection::inverse(MapPoint p) const {
    const double rho = distanceKm(p);
    const double c = rho / kEarthKm;
    if (c > std::numbers::pi)
        return std::nullopt;
    if (rho < 1e-9)
        return centre_;
    const double sinC = std::sin(c), cosC = std::cos(c);
    const double lat =
        std::asin(std::clamp(cosC * sinLat0_ + p.y * sinC * cosLat0_ / rho, -1.0, 1.0));
    const double lon =
        centre_.lon * kRad + std::atan2(p.x * sinC, rho * cosLat0_ * cosC - p.y * sinLat0_ * sinC);
    double lonDeg = lon / kRad;
    lonDeg = std::remainder(lonDeg, 360.0);
    return LocPosition{lat / kRad, lonDeg};
}

double Projection::distanceKm(MapPoint p) {
    return std::hypot(p.x, p.y);
}

double Projection::bearingDeg(MapPoint p) {
    double b = std::atan2(p.x, p.y) / kRad;
    return b < 0 ? b + 360.0 : b;
}

MapPoint Projection::along(double bearing, double km) {
    return {km * std::sin(bearing * kRad), km * std::cos(bearing * kRad)};
}

double Projection::maxKm() {
    return std::numbers::pi * kEarthKm;
}

} // namespace orv::map
