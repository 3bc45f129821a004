// The window's layout around its parts: the "Loading..." panel over a band
// that loads, and the small layout for low screens.
#include <QTableView>
#include <QTableWidget>

#include "ui/log_panels.h"
#include "ui/main_window.h"
#include "ui/widget_helpers.h"

namespace orv::ui {

void MainWindow::setLoading(bool on) {
    if (on) {
        QWidget* c = centralWidget();
        loadingPanel_->move((c->width() - loadingPanel_->width()) / 2,
                            (c->height() - loadingPanel_->height()) / 2);
        loadingPanel_->raise();
        loadingPanel_->show();
        // The load runs on this thread; paint now or the panel never shows.
        loadingPanel_->repaint();
    } else {
        loadingPanel_->hide();
    }
}

bool MainWindow::loading() const {
    return loadingPanel_->isVisible();
}

bool MainWindow::smallLayoutFor(int screenHeightPx, int dpi) {
    if (dpi <= 0)
        return false;
    const long long heightTwips = static_cast<long long>(screenHeightPx) * 1440 / dpi;
    return heightTwips > 8000 && heightTwips < 10000;
}

void MainWindow::applySmallLayout(bool small) {
    smallLayout_ = small;
    // Room that the grids give up; the panels below them move up with the
    // layout by themselves.
    const int cut = small ? twipsToPixels(this, 2141) : 0;
    for (QWidget* w :
         {static_cast<QWidget*>(grid_), static_cast<QWidget*>(panels_->comparisonGrid())}) {
        w->setMinimumHeight(0);
        w->setMaximumHeight(
            small ? std::max(w->fontMetrics().height() * 8, w->sizeHint().height() - cut)
                  : QWIDGETSIZE_MAX);
    }
    if (small)
        resize(width(), twipsToPixels(this, 9000));
}

} // namespace orv::ui
