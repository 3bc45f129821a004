#include "core/map/squares.h"

#include <algorithm>
#include <cmath>

#include "core/util/text.h"

namespace orv::map {
namespace {

constexpr double kSquareLon = 2.0;
constexpr double kSquareLat = 1.0;
// Half the diagonal of the largest square (at the equator), in km: a
// square whose centre is farther than radius plus this lies wholly outside.
constexpr double kHalfDiagonalKm = 125.0;

} // namespace

std::optional<LocPosition> squareSouthWest(std::string_view square) {
    const std::string s = text::upper(text::trim(square));
    if (s.size() != 4 || s[0] < 'A' || s[0] > 'R' || s[1] < 'A' || s[1] > 'R' || s[2] < '0' ||
        s[2] > '9' || s[3] < '0' || s[3] > '9')
        return std::nullopt;
    return LocPosition{(s[1] - 'A') * 10.0 + (s[3] - '0') - 90.0,
                       (s[0] - 'A') * 20.0 + (s[2] - '0') * 2.0 - 180.0};
}

std::optional<LocPosition> squareCentre(std::string_view square) {
    auto sw = squareSouthWest(square);
    if (!sw)
        return std::nullopt;
    return LocPosition{sw->lat + kSquareLat / 2, sw->lon + kSquareLon / 2};
}

std::string squareOf(LocPosition p) {
    const double lon = std::clamp(p.lon + 180.0, 0.0, 359.999999);
    const double lat = std::clamp(p.lat + 90.0, 0.0, 179.999999);
    const int lonField = static_cast<int>(lon / 20), latField = static_cast<int>(lat / 10);
    const int lonSq = static_cast<int>((lon - lonField * 20) / 2);
    const int latSq = static_cast<int>(lat - latField * 10);
    return {static_cast<char>('A' + lonField), static_cast<char>('A' + latField),
            static_cast<char>('0' + lonSq), static_cast<char>('0' + latSq)};
}

std::vector<MapPoint> squareOutline(const Projection& projection, std::string_view square,
                                    int stepsPerEdge) {
    std::vector<MapPoint> out;
    const auto sw = squareSouthWest(square);
    if (!sw || stepsPerEdge < 1)
        return out;
    const double n = stepsPerEdge;
    const LocPosition corners[4] = {*sw,
                                    {sw->lat, sw->lon + kSquareLon},
                                    {sw->lat + kSquareLat, sw->lon + kSquareLon},
                                    {sw->lat + kSquareLat, sw->lon}};
    out.reserve(static_cast<std::size_t>(4 * stepsPerEdge + 1));
    for (int e = 0; e < 4; ++e) {
        const LocPosition a = corners[e], b = corners[(e + 1) % 4];
        for (int i = 0; i < stepsPerEdge; ++i)
            out.push_back(projection.project(
                {a.lat + (b.lat - a.lat) * i / n, a.lon + (b.lon - a.lon) * i / n}));
    }
    out.push_back(out.front());
    return out;
}

std::vector<std::string> squaresWithin(const Projection& projection, double radiusKm) {
    std::vector<std::string> out;
    for (char f1 = 'A'; f1 <= 'R'; ++f1)
        for (char f2 = 'A'; f2 <= 'R'; ++f2)
            for (char s1 = '0'; s1 <= '9'; ++s1)
                for (char s2 = '0'; s2 <= '9'; ++s2) {
                    const std::string name{f1, f2, s1, s2};
                    const LocPosition c = *squareCentre(name);
                    if (Projection::distanceKm(projection.project(c)) <= radiusKm + kHalfDiagonalKm)
                        out.push_back(name);
                }
    return out;
}

} // namespace orv::map
