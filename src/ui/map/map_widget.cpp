#include "ui/map/map_widget.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "ui/widget_helpers.h"

namespace orv::ui {

MapWidget::MapWidget(LocPosition own, const Texts& texts, QWidget* parent)
    : QWidget(parent), texts_(texts), scene_(own, texts) {
    setObjectName("MapView");
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(300, 240);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void MapWidget::setBand(map::MapBand band, bool fit) {
    scene_.setBand(std::move(band));
    if (fit || !userMoved_)
        fitBand();
    bandStale_ = true;
    update();
}

void MapWidget::addQso(const map::MapQso& q, const std::string& newSquare) {
    scene_.addQso(q, newSquare);
    // Until the user moves the view, it grows with the band.
    const QPointF at = scene_.toPixel(scene_.projection().project(q.position));
    if (!userMoved_ && !QRectF(QPointF(0, 0), scene_.size()).contains(at))
        fitBand();
    if (bandStale_ || withBand_.isNull()) {
        update();
        return;
    }
    // Only the new square and dot are painted onto the band's picture.
    map::MapBand one;
    one.odxNr = scene_.band().odxNr;
    one.qsos.push_back(q);
    if (!newSquare.empty())
        one.squares.push_back(newSquare);
    scene::MapScene single(scene_.projection().centre(), texts_);
    single.setBand(std::move(one));
    single.setView(scene_.size(),
                   scene_.toMap(QPointF(scene_.size().width() / 2, scene_.size().height() / 2)),
                   scene_.kmPerPixel());
    QPainter p(&withBand_);
    p.setRenderHint(QPainter::Antialiasing);
    single.paintBand(p);
    update();
}

void MapWidget::setCoastlines(const std::vector<std::vector<LocPosition>>& lines) {
    scene_.setCoastlines(lines);
    viewChanged();
}

void MapWidget::setTyped(std::optional<scene::TypedStation> typed) {
    scene_.setTyped(typed);
    if (typed && !userMoved_) {
        const map::MapPoint m = scene_.projection().project(typed->position);
        if (!QRectF(QPointF(0, 0), scene_.size()).contains(scene_.toPixel(m))) {
            // The station in hand is shown: the view widens to take it in.
            const double km = std::ceil(map::Projection::distanceKm(m) * 1.1 / 100) * 100;
            scene_.fitRadius(QSizeF(size()), std::max(km, map::defaultRadiusKm(scene_.band())));
            viewChanged();
            return;
        }
    }
    update();
}

void MapWidget::setBeam(std::optional<double> azimuth) {
    scene_.setBeam(azimuth);
    update();
}

void MapWidget::fitBand() {
    scene_.fitBand(QSizeF(size()));
    userMoved_ = false;
    viewChanged();
}

void MapWidget::viewChanged() {
    backgroundStale_ = true;
    bandStale_ = true;
    update();
}

void MapWidget::ensurePictures() {
    const qreal dpr = devicePixelRatioF();
    if (backgroundStale_ || background_.size() != size() * dpr) {
        background_ = QImage(size() * dpr, QImage::Format_ARGB32_Premultiplied);
        background_.setDevicePixelRatio(dpr);
        QPainter p(&background_);
        p.setRenderHint(QPainter::Antialiasing);
        scene_.paintBackground(p);
        backgroundStale_ = false;
        bandStale_ = true;
    }
    if (bandStale_) {
        withBand_ = background_.copy();
        QPainter p(&withBand_);
        p.setRenderHint(QPainter::Antialiasing);
        scene_.paintBand(p);
        bandStale_ = false;
    }
}

void MapWidget::paintEvent(QPaintEvent*) {
    ensurePictures();
    QPainter p(this);
    p.drawImage(0, 0, withBand_);
    p.setRenderHint(QPainter::Antialiasing);
    scene_.paintOverlay(p);
}

void MapWidget::resizeEvent(QResizeEvent*) {
    // The map point in the middle stays; the scale too.
    const map::MapPoint middle =
        scene_.toMap(QPointF(scene_.size().width() / 2, scene_.size().height() / 2));
    scene_.setView(QSizeF(size()), middle, scene_.kmPerPixel());
    if (!userMoved_)
        scene_.fitBand(QSizeF(size()));
    viewChanged();
}

void MapWidget::wheelEvent(QWheelEvent* e) {
    const double steps = e->angleDelta().y() / 120.0;
    if (steps == 0)
        return;
    scene_.zoomAt(e->position(), std::pow(1.25, steps));
    userMoved_ = true;
    viewChanged();
    e->accept();
}

void MapWidget::mousePressEvent(QMouseEvent* e) {
    if (e->button() == Qt::LeftButton) {
        dragFrom_ = e->position().toPoint();
        dragged_ = false;
    }
}

void MapWidget::mouseMoveEvent(QMouseEvent* e) {
    const QPoint at = e->position().toPoint();
    if (dragFrom_ && (e->buttons() & Qt::LeftButton)) {
        const QPoint d = at - *dragFrom_;
        if (dragged_ || d.manhattanLength() > 3) {
            scene_.panBy(d);
            dragFrom_ = at;
            dragged_ = true;
            userMoved_ = true;
            viewChanged();
        }
        return;
    }
    const QString tip = dotText(at);
    if (tip.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(e->globalPosition().toPoint(), tip, this);
}

void MapWidget::mouseReleaseEvent(QMouseEvent* e) {
    if (e->button() == Qt::LeftButton && !dragged_) {
        if (const auto i = scene_.qsoAt(e->position()))
            emit qsoClicked(static_cast<int>(scene_.band().qsos[*i].row));
    }
    dragFrom_.reset();
    dragged_ = false;
}

void MapWidget::keyPressEvent(QKeyEvent* e) {
    if (e->key() == Qt::Key_Home) {
        fitBand();
        return;
    }
    QWidget::keyPressEvent(e);
}

QString MapWidget::dotText(QPoint at) const {
    const auto i = scene_.qsoAt(QPointF(at));
    if (!i)
        return {};
    const map::MapQso& qso = scene_.band().qsos[*i];
    return q(qso.call) + "  " + q(qso.locator) + "  " + QString::number(qso.qrb) + " " +
           q(texts_(1280)) + "  " + q(qso.time.timeHM());
}

} // namespace orv::ui
