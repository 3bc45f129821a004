// The map window beside the main window: opened with Ctrl+M, it follows the
// typed locator and the log, answers the mouse, and the band bar marks the
// bands of the call in hand.
#include <QAction>
#include <QTabWidget>
#include <QTest>

#include "core/settings/settings.h"
#include "running_window.h"
#include "ui/band_bar.h"
#include "ui/map/map_widget.h"
#include "ui/map/map_window.h"
#include "ui/map/rate_graph.h"

using orv::ui::MapWidget;
using orv::ui::MapWindow;

class TestMapWindow : public QObject, orv::test::RunningWindow {
    Q_OBJECT

    MapWindow* mapWindow() {
        for (QWidget* top : QApplication::topLevelWidgets())
            if (auto* m = qobject_cast<MapWindow*>(top))
                return m;
        return nullptr;
    }
    // The colour where a locator lands on the map as it stands on screen.
    QColor colourAt(MapWidget& map, const char* locator, QPointF shift = {}) {
        const QImage img = map.grab().toImage();
        const auto& s = map.scene();
        const QPointF px = s.toPixel(s.projection().project(orv::LocKoordinaten(locator))) + shift;
        return img.pixelColor(px.toPoint());
    }

private slots:
    void cleanup() { stop(); }

    void typedLocatorCommitClickAndWorkedBands() {
        QVERIFY(start("map"));
        QTest::keyClick(w, Qt::Key_M, Qt::ControlModifier);
        MapWindow* m = mapWindow();
        QVERIFY(m);
        QTRY_VERIFY(m->isVisible());
        MapWidget& map = m->map();
        QVERIFY(map.scene().band().qsos.empty());
        QVERIFY(map.scene().hasCoastlines());
        QCOMPARE(m->status(), QString());

        // Typing a locator draws its bearing line to it, with its distance.
        edit("Text3")->setFocus();
        QTest::keyClicks(edit("Text3"), "ok1kkw");
        edit("Text7")->setFocus();
        QTest::keyClicks(edit("Text7"), "jo70fd");
        QVERIFY(map.scene().typed().has_value());
        QCOMPARE(map.scene().typed()->km, std::int64_t(275));
        const auto& s = map.scene();
        const QPointF from = s.toPixel({});
        const auto where = [&] {
            return s.toPixel(s.projection().project(orv::LocKoordinaten("JO70FD")));
        };
        QPointF to = where();
        const QImage img = map.grab().toImage();
        const QColor mid = img.pixelColor(((from + to) / 2).toPoint());
        QVERIFY2(mid.red() > 150 && mid.green() < 80, qPrintable(mid.name()));

        // A commit adds its dot and fills its square.
        const QColor before = colourAt(map, "JO70AA", {2, -2});
        logQso("OK1KKW", "JO70FD");
        QCOMPARE(stored().size(), std::size_t(1));
        QTRY_COMPARE(map.scene().band().qsos.size(), std::size_t(1));
        QCOMPARE(map.scene().band().squares, std::vector<std::string>{"JO70"});
        QTRY_VERIFY(colourAt(map, "JO70AA", {2, -2}) != before);
        // The view may have grown with the band.
        to = where();
        const QColor dot = colourAt(map, "JO70FD");
        QVERIFY2(dot.blue() > 150 && dot.red() < 80, qPrintable(dot.name()));
        QVERIFY2(map.dotText(to.toPoint()).startsWith("OK1KKW  JO70FD  275"),
                 qPrintable(map.dotText(to.toPoint())));

        // A click on the dot selects its row in the log grid.
        logQso("DL1ABC", "JO62RM");
        QTRY_COMPARE(map.scene().band().qsos.size(), std::size_t(2));
        w->selectGridRow(1);
        to = where();
        QTest::mouseClick(&map, Qt::LeftButton, {}, to.toPoint());
        QCOMPARE(w->selectedGridRow(), 0);

        // A deletion takes the dot away again.
        w->markDeletedRequested(0);
        QTRY_COMPARE(map.scene().band().qsos.size(), std::size_t(1));
        QCOMPARE(map.scene().band().qsos[0].call, std::string("DL1ABC"));

        // Wheel and Home.
        const double scale = map.scene().kmPerPixel();
        QWheelEvent wheel(QPointF(50, 50), map.mapToGlobal(QPointF(50, 50)), {}, {0, 240},
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&map, &wheel);
        QVERIFY(map.scene().kmPerPixel() < scale);
        QTest::keyClick(&map, Qt::Key_Home);
        QCOMPARE(map.scene().kmPerPixel(), scale);

        // The call in hand is marked on the bands where it is live.
        auto* bar = w->findChild<orv::ui::BandBar*>("Picture1");
        edit("Text3")->setText("DL1ABC");
        QVERIFY(bar->workedOn().test(1));
        QCOMPARE(bar->workedOn().count(), std::size_t(1));
        edit("Text3")->setText("OK1KKW");
        QVERIFY(bar->workedOn().none());

        // The rate tab counts the live QSO of the hour.
        m->tabs().setCurrentWidget(&m->rate());
        QCOMPARE(m->rate().allIntervals().size(), std::size_t(1));
        QCOMPARE(m->rate().allIntervals()[0].qsos, std::int64_t(1));
        QCOMPARE(m->rate().bandIntervals()[0].qsos, std::int64_t(1));
        QCOMPARE(m->rate().bandIntervals()[0].points, stored()[1].qrb);
        // Ten-minute steps from the list above the graph.
        m->rate().setStepMinutes(10);
        QCOMPARE(m->rate().stepMinutes(), 10);
        QCOMPARE(m->rate().allIntervals().size(), std::size_t(1));
        QCOMPARE(m->rate().zeitbereichLine().size(), std::size_t(1));

        // Its place is kept in the settings.
        m->resize(640, 480);
        m->close();
        QCOMPARE(app->settings().get(orv::IntSetting{"Karte", "Width"}), 640LL);
        QCOMPARE(app->settings().get(orv::IntSetting{"Karte", "Height"}), 480LL);
    }

    // Without the coastline files the map is the grid alone and says so.
    void withoutCoastlinesTheGridAlone() {
        orv::test::TempDir empty;
        qputenv("ORVANTA_GSHHG_DIR", empty.path().string().c_str());
        QVERIFY(start("nocoast"));
        QTest::keyClick(w, Qt::Key_M, Qt::ControlModifier);
        MapWindow* m = mapWindow();
        qunsetenv("ORVANTA_GSHHG_DIR");
        QVERIFY(m);
        QVERIFY(!m->map().scene().hasCoastlines());
        QCOMPARE(m->status(), QString::fromStdString(orv::Texts()(1279)));
        logQso("OK1KKW", "JO70FD");
        QTRY_COMPARE(m->map().scene().band().qsos.size(), std::size_t(1));
    }
};

QTEST_MAIN(TestMapWindow)
#include "test_map_window.moc"
