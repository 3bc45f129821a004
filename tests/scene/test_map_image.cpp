#include <gtest/gtest.h>

#include <QColor>
#include <QImage>
#include <map>

#include "core/locator/locator.h"
#include "core/map/projection.h"
#include "core/map/squares.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

// The most frequent colour of a 7 x 7 block: a ring or grid line through
// the block does not change it.
QRgb blockColour(const QImage& img, QPointF at) {
    std::map<QRgb, int> n;
    for (int dx = -3; dx <= 3; ++dx)
        for (int dy = -3; dy <= 3; ++dy)
            ++n[img.pixel(static_cast<int>(at.x()) + dx, static_cast<int>(at.y()) + dy)];
    return std::max_element(n.begin(), n.end(),
                            [](auto& a, auto& b) { return a.second < b.second; })
        ->first;
}

} // namespace

// The tool's map of a known log, read back: every worked square is filled
// unlike its unworked neighbours, each live QSO is a dot where its locator
// projects, a deleted one is not.
TEST(MapImage, WorkedSquaresAndDotsWhereTheyBelong) {
    test::TempDir home;
    auto tool = [&](std::vector<std::string> a) { return test::runToolAt(home.path(), a); };
    ASSERT_EQ(
        tool({"new-log", "Test", "--call", "OE1ABC", "--locator", "JN78DF", "--contest", "Test"})
            .status,
        0);
    const std::vector<std::pair<const char*, const char*>> qsos = {
        {"DL1XYZ", "JN88EF"}, {"OK1KKW", "JO70FD"}, {"S51ZO", "JN76PO"}, {"YU1AA", "KN04FQ"}};
    for (const auto& [call, loc] : qsos)
        ASSERT_EQ(tool({"add", "Test", "--band", "144", "--call", call, "--rst", "59", "--rcvd",
                        "59001", "--locator", loc})
                      .status,
                  0);
    ASSERT_EQ(tool({"delete", "Test", "--band", "144", "--nr", "4"}).status, 0);

    const std::string png = (home.path() / "m.png").string();
    const auto r =
        tool({"map", "Test", "--band", "144", "-o", png, "--size", "800x700", "--radius", "600"});
    ASSERT_EQ(r.status, 0) << r.err;
    QImage img(QString::fromStdString(png));
    ASSERT_FALSE(img.isNull());
    ASSERT_EQ(img.size(), QSize(800, 700));

    // Half the shorter side spans the radius, the own locator in the middle.
    const map::Projection proj(LocKoordinaten("JN78DF"));
    const double kmPerPixel = 600.0 / 350.0;
    const auto pixel = [&](LocPosition p) {
        const map::MapPoint m = proj.project(p);
        return QPointF(400 + m.x / kmPerPixel, 350 - m.y / kmPerPixel);
    };
    // A spot inside a square away from its name and from the QSO dots.
    const auto spot = [&](const std::string& sq) {
        const LocPosition sw = *map::squareSouthWest(sq);
        return pixel({sw.lat + 0.2, sw.lon + 1.6});
    };
    for (const char* sq : {"JN88", "JO70", "JN76"}) {
        SCOPED_TRACE(sq);
        const QRgb worked = blockColour(img, spot(sq));
        const LocPosition sw = *map::squareSouthWest(sq);
        for (LocPosition n : {LocPosition{sw.lat, sw.lon + 2}, LocPosition{sw.lat, sw.lon - 2},
                              LocPosition{sw.lat - 1, sw.lon}})
            EXPECT_NE(blockColour(img, spot(map::squareOf({n.lat + 0.5, n.lon + 1}))), worked)
                << map::squareOf({n.lat + 0.5, n.lon + 1});
    }
    // The deleted QSO's square stays unfilled.
    EXPECT_EQ(blockColour(img, spot("KN04")), blockColour(img, spot("KN05")));

    const auto isDot = [&](const char* loc) {
        const QColor c = img.pixelColor(pixel(LocKoordinaten(loc)).toPoint());
        return c.blue() > 150 && c.red() < 80;
    };
    for (const char* loc : {"JN88EF", "JO70FD", "JN76PO"})
        EXPECT_TRUE(isDot(loc)) << loc;
    EXPECT_FALSE(isDot("KN04FQ"));

    // SVG works as well; a bad ending, size or radius is refused.
    EXPECT_EQ(tool({"map", "Test", "--band", "144", "-o", (home.path() / "m.svg").string()}).status,
              0);
    for (std::vector<std::string> bad :
         {std::vector<std::string>{"-o", (home.path() / "m.gif").string()},
          {"-o", png, "--size", "800"},
          {"-o", png, "--size", "5x5"},
          {"-o", png, "--radius", "-3"},
          {}}) {
        std::vector<std::string> a = {"map", "Test", "--band", "144"};
        a.insert(a.end(), bad.begin(), bad.end());
        const auto b = tool(a);
        EXPECT_EQ(b.status, 2);
        EXPECT_FALSE(b.err.empty());
    }
}
