#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <string>
#include <vector>

#include "core/locator/locator.h"
#include "core/map/projection.h"
#include "core/map/squares.h"

using namespace orv;
using namespace orv::map;

namespace {

LocPosition at(const char* locator) {
    return LocKoordinaten(locator);
}

// Even-odd test of a point against a closed outline.
bool inside(const std::vector<MapPoint>& poly, MapPoint p) {
    bool in = false;
    for (std::size_t i = 0, j = poly.size() - 1; i < poly.size(); j = i++)
        if ((poly[i].y > p.y) != (poly[j].y > p.y) &&
            p.x < (poly[j].x - poly[i].x) * (p.y - poly[i].y) / (poly[j].y - poly[i].y) + poly[i].x)
            in = !in;
    return in;
}

std::string upper(std::string s) {
    for (char& ch : s)
        ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    return s;
}

} // namespace

// Points of known QRB and QTF (the locator arithmetic's own table) land at
// that distance from the centre, in that direction, and come back whole.
TEST(MapProjection, KnownDistancesAndBearingsLandInPlace) {
    struct Case {
        const char *own, *other;
        double km, bearing;
    };
    const std::vector<Case> cases = {
        {"JN78DF", "JN88EF", 155, 89.2},   {"JN78LL", "JO62QM", 463, 346.6},
        {"JN78DF", "IO91VL", 1098, 294.6}, {"JN78DF", "IN33LO", 2163, 266.5},
        {"JN78DF", "JO74CK", 690, 359.6},  {"JN78DF", "KM72JA", 2491, 128.8},
        {"FN31PR", "JO01AA", 5441, 52.8},  {"JO62QM", "JO62QM", 0, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.own) + " -> " + c.other);
        std::string own = c.own, other = c.other;
        const LocErgebnis e = LocBerechnen(own, other);
        ASSERT_TRUE(e.ok());
        // The table is checked against the arithmetic, so that a wrong row
        // cannot pass for a wrong projection.
        if (c.km > 0) {
            EXPECT_EQ(e.km, c.km);
            EXPECT_NEAR(e.GradDez, c.bearing, 0.051);
        }
        const Projection proj(at(c.own));
        const MapPoint p = proj.project(at(c.other));
        const double d = Projection::distanceKm(p);
        // QRB is the distance rounded up to a whole km.
        EXPECT_GT(d, c.km - 1.0001);
        EXPECT_LE(d, std::max(c.km, 0.0) + 1e-6);
        if (c.km > 0) {
            EXPECT_NEAR(Projection::bearingDeg(p), c.bearing, 0.06);
        }
        const auto back = proj.inverse(p);
        ASSERT_TRUE(back.has_value());
        EXPECT_NEAR(back->lat, at(c.other).lat, 1e-6);
        EXPECT_NEAR(back->lon, at(c.other).lon, 1e-6);
    }
}

TEST(MapProjection, AlongAndTheEdgeOfTheEarth) {
    const Projection proj(at("JN78DF"));
    const MapPoint east = Projection::along(90, 500);
    EXPECT_NEAR(east.x, 500, 1e-9);
    EXPECT_NEAR(east.y, 0, 1e-9);
    EXPECT_NEAR(Projection::bearingDeg(Projection::along(225, 10)), 225, 1e-9);
    EXPECT_FALSE(proj.inverse({Projection::maxKm() + 1, 0}).has_value());
    // The antipode lies on the outer circle.
    const LocPosition c = proj.centre();
    const MapPoint anti = proj.project({-c.lat, c.lon + 180});
    EXPECT_NEAR(Projection::distanceKm(anti), Projection::maxKm(), 1e-6);
}

TEST(MapSquares, NamesCornersAndOutlines) {
    struct Case {
        const char* name;
        double swLat, swLon;
    };
    for (const Case& c : std::vector<Case>{{"JN78", 48, 14},
                                           {"jo62", 52, 12},
                                           {"AA00", -90, -180},
                                           {"RR99", 89, 178},
                                           {"IO91", 51, -2}}) {
        SCOPED_TRACE(c.name);
        const auto sw = squareSouthWest(c.name);
        ASSERT_TRUE(sw.has_value());
        EXPECT_EQ(sw->lat, c.swLat);
        EXPECT_EQ(sw->lon, c.swLon);
        EXPECT_EQ(squareOf(*squareCentre(c.name)), upper(c.name));
    }
    for (const char* bad : {"JN7", "SA00", "JNA8", "JN78DF", ""})
        EXPECT_FALSE(squareSouthWest(bad).has_value()) << bad;

    const Projection proj(at("JN78DF"));
    const auto outline = squareOutline(proj, "JN88", 8);
    ASSERT_EQ(outline.size(), 33u);
    EXPECT_TRUE(inside(outline, proj.project(at("JN88EF"))));
    EXPECT_FALSE(inside(outline, proj.project(at("JN78DF"))));
    EXPECT_FALSE(inside(outline, proj.project(at("JN98AA"))));
}

TEST(MapSquares, SquaresWithinARadius) {
    const Projection proj(at("JN78DF"));
    const auto near = squaresWithin(proj, 1200);
    const auto has = [&](const char* s) {
        return std::find(near.begin(), near.end(), s) != near.end();
    };
    EXPECT_TRUE(has("JN78"));
    EXPECT_TRUE(has("IO91"));  // 1098 km
    EXPECT_FALSE(has("IN33")); // 2163 km
    EXPECT_TRUE(std::is_sorted(near.begin(), near.end()));
    EXPECT_LT(squaresWithin(proj, 0).size(), 10u);
}
