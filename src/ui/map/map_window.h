#pragma once

#include <QWidget>

#include "core/i18n/texts.h"
#include "core/locator/locator.h"

class QLabel;
class QTabWidget;

namespace orv::ui {

class MapWidget;
class RateGraph;

// The window beside the main window with the band's map and the rate graph,
// each on a tab. It shows what its binding hands it and keeps no state of
// the log.
class MapWindow final : public QWidget {
    Q_OBJECT
public:
    MapWindow(LocPosition own, const Texts& texts, QWidget* parent);

    MapWidget& map() { return *map_; }
    RateGraph& rate() { return *rate_; }
    QTabWidget& tabs() { return *tabs_; }
    // The status line under the map.
    void setStatus(const QString& text);
    QString status() const;

signals:
    // Hidden or closed: the binding keeps its place in the settings.
    void hidden();

protected:
    void hideEvent(QHideEvent* e) override;

private:
    QTabWidget* tabs_ = nullptr;
    MapWidget* map_ = nullptr;
    RateGraph* rate_ = nullptr;
    QLabel* status_ = nullptr;
};

} // namespace orv::ui
