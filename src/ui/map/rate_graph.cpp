#include "ui/map/rate_graph.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/widget_helpers.h"

namespace orv::ui {

class RateGraph::Plot final : public QWidget {
public:
    explicit Plot(RateGraph& g) : QWidget(&g), g_(g) {
        setObjectName("RatePlot");
        setMinimumSize(300, 200);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.fillRect(rect(), QColor(250, 250, 245));
        const auto& all = g_.all_;
        const QRectF area = QRectF(rect()).adjusted(40, 24, -50, -28);
        if (all.empty()) {
            p.drawText(rect(), Qt::AlignCenter, q(g_.texts_(1288)));
            return;
        }
        std::int64_t top = 1, topPoints = 1;
        for (std::size_t i = 0; i < all.size(); ++i) {
            top = std::max({top, all[i].qsos, g_.zeitbereich_[i]});
            topPoints = std::max(topPoints, all[i].points);
        }
        const double w = area.width() / static_cast<double>(all.size());
        const auto y = [&](double v, double max) {
            return area.bottom() - v / max * area.height();
        };
        p.setPen(Qt::NoPen);
        for (std::size_t i = 0; i < all.size(); ++i) {
            const double x = area.left() + w * static_cast<double>(i);
            p.setBrush(QColor(190, 200, 230));
            p.drawRect(QRectF(
                x, y(static_cast<double>(all[i].qsos), static_cast<double>(top)), w * 0.9,
                area.bottom() - y(static_cast<double>(all[i].qsos), static_cast<double>(top))));
            p.setBrush(QColor(40, 80, 200));
            const double h = static_cast<double>(g_.band_[i].qsos);
            p.drawRect(QRectF(x + w * 0.2, y(h, static_cast<double>(top)), w * 0.5,
                              area.bottom() - y(h, static_cast<double>(top))));
        }
        const auto line = [&](auto value, double max, const QPen& pen) {
            QPainterPath path;
            for (std::size_t i = 0; i < all.size(); ++i) {
                const QPointF pt(area.left() + w * (static_cast<double>(i) + 0.5),
                                 y(static_cast<double>(value(i)), max));
                if (i == 0)
                    path.moveTo(pt);
                else
                    path.lineTo(pt);
            }
            p.setPen(pen);
            p.setBrush(Qt::NoBrush);
            p.drawPath(path);
        };
        line([&](std::size_t i) { return all[i].points; }, static_cast<double>(topPoints),
             QPen(QColor(120, 200, 120), 2, Qt::DotLine));
        line([&](std::size_t i) { return g_.band_[i].points; }, static_cast<double>(topPoints),
             QPen(QColor(0, 150, 0), 2));
        line([&](std::size_t i) { return g_.zeitbereich_[i]; }, static_cast<double>(top),
             QPen(QColor(220, 0, 0), 2, Qt::DashLine));
        // Axes: QSOs on the left, points on the right, time below.
        p.setPen(Qt::black);
        p.drawLine(area.bottomLeft(), area.bottomRight());
        p.drawText(QRectF(0, area.top() - 6, 38, 14), Qt::AlignRight, QString::number(top));
        p.drawText(QRectF(area.right() + 4, area.top() - 6, 48, 14), Qt::AlignLeft,
                   QString::number(topPoints));
        // The first interval, then every whole hour with room beside the one
        // before, each with its tick.
        double lastLabel = -1e9;
        for (std::size_t i = 0; i < all.size(); ++i) {
            const double x = area.left() + w * static_cast<double>(i);
            if (i > 0 && (all[i].start.minute != 0 || x - lastLabel < 48))
                continue;
            p.drawLine(QPointF(x, area.bottom()), QPointF(x, area.bottom() + 3));
            p.drawText(QRectF(x - 2, area.bottom() + 4, 44, 14), Qt::AlignLeft,
                       q(all[i].start.timeHM()));
            lastLabel = x;
        }
        // The legend.
        const QString legend = q(g_.texts_(1281)) + ": " + q(g_.texts_(1284)) + " / " +
                               q(g_.texts_(1283)) + "    " + q(g_.texts_(1282)) + "    " +
                               q(g_.texts_(1287)) + " (" + QString::number(g_.zeitbereichMinutes_) +
                               ")";
        p.drawText(QRectF(area.left(), 4, area.width(), 16), Qt::AlignLeft, legend);
    }

private:
    RateGraph& g_;
};

RateGraph::RateGraph(const Texts& texts, QWidget* parent) : QWidget(parent), texts_(texts) {
    setObjectName("RateGraph");
    auto* v = new QVBoxLayout(this);
    auto* h = new QHBoxLayout;
    step_ = new QComboBox(this);
    step_->setObjectName("RateStep");
    step_->addItem(q(texts_(1286)), 60);
    step_->addItem(q(texts_(1285)), 10);
    h->addWidget(step_);
    h->addStretch(1);
    v->addLayout(h);
    plot_ = new Plot(*this);
    v->addWidget(plot_, 1);
    connect(step_, &QComboBox::currentIndexChanged, this, [this] { recompute(); });
}

int RateGraph::stepMinutes() const {
    return step_->currentData().toInt();
}

void RateGraph::setStepMinutes(int minutes) {
    const int i = step_->findData(minutes);
    if (i >= 0)
        step_->setCurrentIndex(i);
}

void RateGraph::setSamples(std::vector<map::RateSample> band, std::vector<map::RateSample> all,
                           int zeitbereichMinutes) {
    bandSamples_ = std::move(band);
    allSamples_ = std::move(all);
    zeitbereichMinutes_ = std::max(1, zeitbereichMinutes);
    recompute();
}

void RateGraph::recompute() {
    const int step = stepMinutes();
    all_ = map::rateIntervals(allSamples_, step);
    band_.assign(all_.size(), {});
    for (std::size_t i = 0; i < all_.size(); ++i)
        band_[i].start = all_[i].start;
    for (const map::RateInterval& b : map::rateIntervals(bandSamples_, step)) {
        const auto it = std::lower_bound(
            band_.begin(), band_.end(), b.start,
            [](const map::RateInterval& r, const DateTime& d) { return r.start < d; });
        if (it != band_.end() && it->start == b.start) {
            it->qsos = b.qsos;
            it->points = b.points;
        }
    }
    zeitbereich_ = map::zeitbereichCounts(bandSamples_, all_, step, zeitbereichMinutes_);
    plot_->update();
}

} // namespace orv::ui
