#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include "core/i18n/texts.h"
#include "core/locator/locator.h"
#include "scene/map_scene.h"

using namespace orv;

namespace {

QImage overlay(scene::MapScene& s) {
    QImage img(400, 300, QImage::Format_ARGB32_Premultiplied);
    img.fill(Qt::white);
    QPainter p(&img);
    s.paintOverlay(p);
    return img;
}

} // namespace

// The rotator's beam is a wedge around its direction from the middle; the
// view keeps the map point under the cursor still while zooming, and a pan
// moves the map with the mouse.
TEST(MapScene, BeamWedgeZoomAndPan) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    int argc = 1;
    char name[] = "test";
    char* argv[] = {name, nullptr};
    QGuiApplication app(argc, argv);
    Texts texts;
    scene::MapScene s(LocKoordinaten("JN78DF"), texts);
    s.fitRadius(QSizeF(400, 300), 300);
    const QPoint east(300, 150), west(100, 150), north(200, 50);
    EXPECT_EQ(overlay(s).pixelColor(east), QColor(Qt::white));
    s.setBeam(90);
    const QImage beam = overlay(s);
    EXPECT_NE(beam.pixelColor(east), QColor(Qt::white));
    EXPECT_EQ(beam.pixelColor(west), QColor(Qt::white));
    EXPECT_EQ(beam.pixelColor(north), QColor(Qt::white));
    s.setBeam(0);
    EXPECT_NE(overlay(s).pixelColor(north), QColor(Qt::white));

    const map::MapPoint under = s.toMap(QPointF(320, 80));
    s.zoomAt(QPointF(320, 80), 2.0);
    EXPECT_NEAR(s.kmPerPixel(), 1.0, 1e-9); // 300 km over 150 pixels, then twice as close
    EXPECT_NEAR(s.toMap(QPointF(320, 80)).x, under.x, 1e-6);
    EXPECT_NEAR(s.toMap(QPointF(320, 80)).y, under.y, 1e-6);
    const QPointF centre = s.toPixel({});
    s.panBy(QPointF(10, -20));
    EXPECT_NEAR(s.toPixel({}).x(), centre.x() + 10, 1e-9);
    EXPECT_NEAR(s.toPixel({}).y(), centre.y() - 20, 1e-9);
}
