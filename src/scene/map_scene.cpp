#include "scene/map_scene.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <algorithm>
#include <cmath>

#include "core/map/squares.h"

namespace orv::scene {
namespace {

const QColor kGridLine(150, 150, 170);
const QColor kSquareName(110, 110, 130);
const QColor kRing(200, 120, 120);
const QColor kCoast(60, 110, 60);
const QColor kDot(20, 60, 200);
const QColor kOdx(220, 0, 0);
const QColor kTyped(200, 0, 120);
const QColor kBeam(255, 140, 0, 70);

QPolygonF toPolygon(const MapScene& s, const std::vector<map::MapPoint>& pts) {
    QPolygonF poly;
    poly.reserve(static_cast<qsizetype>(pts.size()));
    for (const map::MapPoint& m : pts)
        poly << s.toPixel(m);
    return poly;
}

// A round ring step that gives four to eight rings over `radius` km.
double ringStep(double radius) {
    for (double step : {10.0, 25.0, 50.0, 100.0, 200.0, 250.0, 500.0, 1000.0, 2000.0, 5000.0})
        if (radius / step <= 8)
            return step;
    return 5000;
}

// Like QRectF::intersects, but a line (a box without width or height) counts.
bool overlaps(const QRectF& a, const QRectF& b) {
    return a.left() <= b.right() && b.left() <= a.right() && a.top() <= b.bottom() &&
           b.top() <= a.bottom();
}

} // namespace

MapScene::MapScene(LocPosition own, const Texts& texts) : projection_(own), texts_(texts) {}

QColor MapScene::workedFill() {
    return {255, 190, 90, 190};
}

QColor MapScene::background() {
    return {250, 250, 245};
}

void MapScene::setBand(map::MapBand band) {
    band_ = std::move(band);
    dots_.clear();
    dots_.reserve(band_.qsos.size());
    for (const map::MapQso& q : band_.qsos)
        dots_.push_back(projection_.project(q.position));
}

void MapScene::addQso(map::MapQso q, const std::string& newSquare) {
    dots_.push_back(projection_.project(q.position));
    band_.qsos.push_back(std::move(q));
    if (!newSquare.empty())
        band_.squares.push_back(newSquare);
}

void MapScene::setCoastlines(const std::vector<std::vector<LocPosition>>& lines) {
    coast_.clear();
    coastBoxes_.clear();
    coast_.reserve(lines.size());
    for (const auto& line : lines) {
        if (line.empty())
            continue;
        std::vector<map::MapPoint> pts;
        pts.reserve(line.size());
        double x0 = 1e9, y0 = 1e9, x1 = -1e9, y1 = -1e9;
        for (const LocPosition& pos : line) {
            const map::MapPoint m = projection_.project(pos);
            x0 = std::min(x0, m.x), x1 = std::max(x1, m.x);
            y0 = std::min(y0, m.y), y1 = std::max(y1, m.y);
            pts.push_back(m);
        }
        coast_.push_back(std::move(pts));
        coastBoxes_.emplace_back(QPointF(x0, y0), QPointF(x1, y1));
    }
}

const std::vector<map::MapPoint>& MapScene::outline(const std::string& square) const {
    auto it = outlines_.find(square);
    if (it == outlines_.end())
        it = outlines_.emplace(square, map::squareOutline(projection_, square, 4)).first;
    return it->second;
}

QRectF MapScene::visibleKm() const {
    const map::MapPoint a = toMap({0, size_.height()}), b = toMap({size_.width(), 0});
    return {QPointF(a.x, a.y), QPointF(b.x, b.y)};
}

void MapScene::setView(QSizeF size, map::MapPoint middle, double kmPerPixel) {
    size_ = size;
    middle_ = middle;
    kmPerPixel_ = std::clamp(kmPerPixel, 0.05, 200.0);
}

void MapScene::fitRadius(QSizeF size, double radiusKm) {
    const double half = std::max(1.0, std::min(size.width(), size.height()) / 2);
    setView(size, {}, std::max(radiusKm, 1.0) / half);
}

void MapScene::fitBand(QSizeF size) {
    fitRadius(size, map::defaultRadiusKm(band_));
}

void MapScene::zoomAt(QPointF pixel, double factor) {
    const map::MapPoint before = toMap(pixel);
    kmPerPixel_ = std::clamp(kmPerPixel_ / factor, 0.05, 200.0);
    const map::MapPoint after = toMap(pixel);
    middle_.x += before.x - after.x;
    middle_.y += before.y - after.y;
}

void MapScene::panBy(QPointF pixels) {
    middle_.x -= pixels.x() * kmPerPixel_;
    middle_.y += pixels.y() * kmPerPixel_;
}

QPointF MapScene::toPixel(map::MapPoint p) const {
    return {size_.width() / 2 + (p.x - middle_.x) / kmPerPixel_,
            size_.height() / 2 - (p.y - middle_.y) / kmPerPixel_};
}

map::MapPoint MapScene::toMap(QPointF px) const {
    return {middle_.x + (px.x() - size_.width() / 2) * kmPerPixel_,
            middle_.y - (px.y() - size_.height() / 2) * kmPerPixel_};
}

double MapScene::visibleRadiusKm() const {
    // The farthest corner of the device from the map's centre.
    double r = 0;
    for (QPointF c : {QPointF(0, 0), QPointF(size_.width(), 0), QPointF(0, size_.height()),
                      QPointF(size_.width(), size_.height())})
        r = std::max(r, map::Projection::distanceKm(toMap(c)));
    return std::min(r, map::Projection::maxKm());
}

void MapScene::paintRings(QPainter& p) const {
    const double radius = visibleRadiusKm();
    const double step = ringStep(std::min(size_.width(), size_.height()) / 2 * kmPerPixel_);
    const QPointF c = toPixel({});
    p.setPen(QPen(kRing, 1, Qt::DashLine));
    p.setBrush(Qt::NoBrush);
    const QString km = QString::fromStdString(texts_(1280));
    for (double r = step; r <= radius; r += step) {
        const double px = r / kmPerPixel_;
        p.drawEllipse(c, px, px);
        p.drawText(QPointF(c.x() + 3, c.y() - px - 3), QString::number(r) + " " + km);
    }
}

void MapScene::paintGrid(QPainter& p) const {
    const QRectF device(QPointF(0, 0), size_);
    const QFontMetricsF fm(p.font());
    p.setBrush(Qt::NoBrush);
    const double radius = visibleRadiusKm();
    if (radius > gridRadius_) {
        gridSquares_ = map::squaresWithin(projection_, radius);
        gridRadius_ = radius;
    }
    for (const std::string& sq : gridSquares_) {
        const QPolygonF poly = toPolygon(*this, outline(sq));
        const QRectF box = poly.boundingRect();
        if (!box.intersects(device))
            continue;
        p.setPen(QPen(kGridLine, 0.6));
        p.drawPolyline(poly);
        const QString name = QString::fromStdString(sq);
        if (box.width() > fm.horizontalAdvance(name) * 1.6 && box.height() > fm.height() * 1.6) {
            p.setPen(kSquareName);
            p.drawText(toPixel(projection_.project(*map::squareCentre(sq))) -
                           QPointF(fm.horizontalAdvance(name) / 2, -fm.ascent() / 2),
                       name);
        }
    }
}

void MapScene::paintCoast(QPainter& p) const {
    p.setPen(QPen(kCoast, 0.8));
    p.setBrush(Qt::NoBrush);
    const QRectF visible = visibleKm();
    for (std::size_t i = 0; i < coast_.size(); ++i)
        if (overlaps(coastBoxes_[i], visible))
            p.drawPolyline(toPolygon(*this, coast_[i]));
}

void MapScene::paintBackground(QPainter& p) const {
    p.fillRect(QRectF(QPointF(0, 0), size_), background());
    // Beyond the antipode the map is empty.
    const double edge = map::Projection::maxKm() / kmPerPixel_;
    p.setPen(QPen(kGridLine, 1));
    p.drawEllipse(toPixel({}), edge, edge);
    // Thin lines by the thousand: drawn without antialiasing, which costs
    // more than the rest of the map together.
    const bool aa = p.testRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::Antialiasing, false);
    paintCoast(p);
    paintGrid(p);
    p.setRenderHint(QPainter::Antialiasing, aa);
    paintRings(p);
}

void MapScene::paintBand(QPainter& p) const {
    p.setPen(Qt::NoPen);
    p.setBrush(workedFill());
    for (const std::string& sq : band_.squares) {
        const auto& o = outline(sq);
        if (o.empty())
            continue;
        const QPolygonF poly = toPolygon(*this, o);
        const QRectF box = poly.boundingRect();
        if (box.intersects(QRectF(QPointF(0, 0), size_)))
            p.drawPolygon(poly);
    }
    p.setBrush(kDot);
    // Dots are whole-pixel squares, each pixel once: many QSOs share a spot.
    const int w = static_cast<int>(size_.width()), h = static_cast<int>(size_.height());
    std::vector<bool> seen(static_cast<std::size_t>(std::max(0, w * h)));
    std::vector<QRect> dots;
    dots.reserve(dots_.size());
    for (const map::MapPoint& m : dots_) {
        const QPoint px = toPixel(m).toPoint();
        if (px.x() < 0 || px.y() < 0 || px.x() >= w || px.y() >= h)
            continue;
        const auto at = static_cast<std::size_t>(px.y() * w + px.x());
        if (seen[at])
            continue;
        seen[at] = true;
        dots.emplace_back(px.x() - 2, px.y() - 2, 4, 4);
    }
    const bool aa = p.testRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::Antialiasing, false);
    p.drawRects(dots.data(), static_cast<int>(dots.size()));
    p.setRenderHint(QPainter::Antialiasing, aa);
    for (std::size_t i = 0; i < band_.qsos.size(); ++i)
        if (band_.odxNr > 0 && band_.qsos[i].qsoNr == band_.odxNr) {
            p.setPen(QPen(kOdx, 2));
            p.setBrush(Qt::NoBrush);
            p.drawEllipse(toPixel(dots_[i]), 6, 6);
        }
}

void MapScene::paintOverlay(QPainter& p) const {
    const QPointF c = toPixel({});
    if (beam_) {
        const double r = std::max(size_.width(), size_.height()) * 2;
        const QRectF box(c.x() - r, c.y() - r, 2 * r, 2 * r);
        QPainterPath wedge(c);
        // Qt counts angles from three o'clock counterclockwise; a bearing
        // from north clockwise.
        wedge.arcTo(box, 90 - (*beam_ - 15), -30);
        wedge.closeSubpath();
        p.setPen(Qt::NoPen);
        p.setBrush(kBeam);
        p.drawPath(wedge);
    }
    // The own station, where every bearing starts.
    p.setPen(QPen(Qt::black, 2));
    p.setBrush(Qt::NoBrush);
    p.drawLine(c - QPointF(7, 0), c + QPointF(7, 0));
    p.drawLine(c - QPointF(0, 7), c + QPointF(0, 7));
    if (typed_) {
        const QPointF to = toPixel(projection_.project(typed_->position));
        p.setPen(QPen(kTyped, 2));
        p.drawLine(c, to);
        p.setBrush(kTyped);
        p.drawEllipse(to, 4, 4);
        p.drawText(to + QPointF(6, -6),
                   QString::number(typed_->km) + " " + QString::fromStdString(texts_(1280)));
    }
}

void MapScene::paint(QPainter& p) const {
    paintBackground(p);
    paintBand(p);
    paintOverlay(p);
}

std::optional<std::size_t> MapScene::qsoAt(QPointF pixel, double tolerance) const {
    std::optional<std::size_t> best;
    double bestD = tolerance * tolerance;
    for (std::size_t i = 0; i < dots_.size(); ++i) {
        const QPointF d = toPixel(dots_[i]) - pixel;
        const double dd = d.x() * d.x() + d.y() * d.y();
        if (dd <= bestD) {
            bestD = dd;
            best = i;
        }
    }
    return best;
}

} // namespace orv::scene
