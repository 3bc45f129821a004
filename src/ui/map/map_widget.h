#pragma once

#include <QImage>
#include <QPoint>
#include <QWidget>
#include <optional>

#include "scene/map_scene.h"

namespace orv::ui {

// The band on the map: the scene painted in three layers. The background
// (rings, coastlines, grid) and the band (squares, dots) are kept as
// pictures until the view or the band changes, so a typed locator costs one
// copy of a picture and a line. Wheel zooms, dragging pans, Home fits the
// band; hovering a dot tells its QSO, a click picks it.
class MapWidget final : public QWidget {
    Q_OBJECT
public:
    MapWidget(LocPosition own, const Texts& texts, QWidget* parent);

    scene::MapScene& scene() { return scene_; }
    // A new snapshot of the band: both pictures are redrawn.
    void setBand(map::MapBand band, bool fit);
    // One QSO more (a commit): painted onto the band's picture.
    void addQso(const map::MapQso& q, const std::string& newSquare);
    void setCoastlines(const std::vector<std::vector<LocPosition>>& lines);
    void setTyped(std::optional<scene::TypedStation> typed);
    void setBeam(std::optional<double> azimuth);
    // Home: the whole band.
    void fitBand();
    // The text of the dot under a point (call, locator, km, time), empty
    // when none.
    QString dotText(QPoint at) const;

signals:
    // A dot was clicked: the row of its QSO in the log grid.
    void qsoClicked(int gridRow);

protected:
    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent*) override;
    void wheelEvent(QWheelEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;

private:
    void viewChanged();
    void ensurePictures();

    const Texts& texts_;
    scene::MapScene scene_;
    QImage background_;
    QImage withBand_;
    bool backgroundStale_ = true;
    bool bandStale_ = true;
    bool userMoved_ = false;
    std::optional<QPoint> dragFrom_;
    bool dragged_ = false;
};

} // namespace orv::ui
