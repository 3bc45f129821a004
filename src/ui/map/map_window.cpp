#include "ui/map/map_window.h"

#include <QLabel>
#include <QTabWidget>
#include <QVBoxLayout>

#include "ui/map/map_widget.h"
#include "ui/map/rate_graph.h"
#include "ui/widget_helpers.h"

namespace orv::ui {

MapWindow::MapWindow(LocPosition own, const Texts& texts, QWidget* parent)
    : QWidget(parent, Qt::Window) {
    setObjectName("MapWindow");
    setWindowTitle(q(texts(1272)));
    tabs_ = new QTabWidget(this);
    tabs_->setObjectName("MapTabs");
    auto* mapPage = new QWidget(tabs_);
    auto* mv = new QVBoxLayout(mapPage);
    mv->setContentsMargins(0, 0, 0, 0);
    map_ = new MapWidget(own, texts, mapPage);
    map_->setToolTip(QString());
    mv->addWidget(map_, 1);
    status_ = new QLabel(mapPage);
    status_->setObjectName("MapStatus");
    status_->setToolTip(q(texts(1290)));
    mv->addWidget(status_);
    tabs_->addTab(mapPage, q(texts(1270)));
    rate_ = new RateGraph(texts, tabs_);
    tabs_->addTab(rate_, q(texts(1271)));
    auto* v = new QVBoxLayout(this);
    v->setContentsMargins(2, 2, 2, 2);
    v->addWidget(tabs_);
    resize(800, 640);
}

void MapWindow::setStatus(const QString& text) {
    status_->setText(text);
}

void MapWindow::hideEvent(QHideEvent* e) {
    QWidget::hideEvent(e);
    emit hidden();
}

QString MapWindow::status() const {
    return status_->text();
}

} // namespace orv::ui
