#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/i18n/texts.h"
#include "core/map/map_band.h"
#include "core/map/projection.h"

class QPainter;

// The band on a map, painted with QPainter into whatever device the caller
// holds: the window's widget, a QImage or an SVG. The scene keeps the
// numbers of core (projection, squares, the band's snapshot) and the view
// (centre and scale); it paints in three layers so that a window can keep
// the background (rings, coastlines, grid) as a picture until the view moves.
namespace orv::scene {

// The station in hand: typed or taken from the lookup list.
struct TypedStation {
    LocPosition position;
    std::int64_t km = 0;
};

class MapScene {
public:
    MapScene(LocPosition own, const Texts& texts);

    const map::Projection& projection() const { return projection_; }

    // The band's snapshot; the band layer follows it.
    void setBand(map::MapBand band);
    const map::MapBand& band() const { return band_; }
    // One QSO more (a commit), with its square when it is new on the band.
    void addQso(map::MapQso q, const std::string& newSquare);
    // Coastlines and borders as lines of positions; empty: the grid alone.
    void setCoastlines(const std::vector<std::vector<LocPosition>>& lines);
    bool hasCoastlines() const { return !coast_.empty(); }
    void setTyped(std::optional<TypedStation> typed) { typed_ = typed; }
    const std::optional<TypedStation>& typed() const { return typed_; }
    // The antenna's direction in degrees, nothing without a rotator.
    void setBeam(std::optional<double> azimuth) { beam_ = azimuth; }

    // The view: the device's size in pixels, the map point at its middle and
    // the km one pixel spans.
    void setView(QSizeF size, map::MapPoint middle, double kmPerPixel);
    // Half the shorter side of the device spans `radiusKm` around the centre.
    void fitRadius(QSizeF size, double radiusKm);
    // The view that shows every QSO of the band (Home).
    void fitBand(QSizeF size);
    // Zooms by `factor` (> 1 closer) keeping the map point under `pixel` still.
    void zoomAt(QPointF pixel, double factor);
    void panBy(QPointF pixels);
    QSizeF size() const { return size_; }
    double kmPerPixel() const { return kmPerPixel_; }

    QPointF toPixel(map::MapPoint p) const;
    map::MapPoint toMap(QPointF pixel) const;

    void paintBackground(QPainter& p) const;
    void paintBand(QPainter& p) const;
    void paintOverlay(QPainter& p) const;
    void paint(QPainter& p) const;

    // The QSO (index into band().qsos) whose dot is nearest to `pixel`
    // within `tolerance` pixels.
    std::optional<std::size_t> qsoAt(QPointF pixel, double tolerance = 5) const;

    static QColor workedFill();
    static QColor background();

private:
    double visibleRadiusKm() const;
    void paintRings(QPainter& p) const;
    void paintGrid(QPainter& p) const;
    void paintCoast(QPainter& p) const;
    // A square's outline on the map, projected once per scene.
    const std::vector<map::MapPoint>& outline(const std::string& square) const;
    // The map's visible part in km.
    QRectF visibleKm() const;

    map::Projection projection_;
    const Texts& texts_;
    map::MapBand band_;
    std::vector<map::MapPoint> dots_; // projected QSOs, in band_.qsos order
    std::vector<std::vector<map::MapPoint>> coast_;
    std::vector<QRectF> coastBoxes_; // in km, one per line
    mutable std::unordered_map<std::string, std::vector<map::MapPoint>> outlines_;
    // The squares of the grid up to the radius they were asked for.
    mutable double gridRadius_ = -1;
    mutable std::vector<std::string> gridSquares_;
    std::optional<TypedStation> typed_;
    std::optional<double> beam_;
    QSizeF size_{1200, 900};
    map::MapPoint middle_;
    double kmPerPixel_ = 1;
};

} // namespace orv::scene
