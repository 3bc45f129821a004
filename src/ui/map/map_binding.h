#pragma once

#include <QObject>
#include <QPointer>
#include <cstdint>

class QTimer;

namespace orv::ui {

class MainWindow;
class MapWindow;
class Startup;

// Binds the map window to the open log: Ctrl+M and the entry of `MnAnsicht`
// open it, the band's snapshot follows every change of the log a moment
// later (a commit adds one dot, anything else redraws the band), the typed
// locator draws its bearing line, the rotator its wedge, and a clicked dot
// selects its row in the log grid. It also marks on the band bar the bands
// on which the call in hand is already in the log.
class MapBinding final : public QObject {
    Q_OBJECT
public:
    static void install(Startup& startup);
    MapBinding(Startup& startup, MainWindow& window);
    ~MapBinding() override;

    void showWindow();
    MapWindow* mapWindow() const;
    // The snapshot of the band anew (after a change, a moment later).
    void refresh();
    // The worked marks of the band bar for a call in hand.
    void markWorked(const QString& call);

private:
    void changeSeen();
    void typed(const QString& locator);
    void tick();
    void refreshRate();
    void saveGeometry();
    std::uint64_t fingerprint() const;

    Startup& startup_;
    MainWindow& window_;
    QPointer<MapWindow> map_;
    QTimer* timer_ = nullptr;
    bool pending_ = false;
    bool rateStale_ = true;
    int shownBand_ = -1;
    std::size_t shownRows_ = 0;
    std::uint64_t shownPrint_ = 0;
    std::string shownOwn_;
};

} // namespace orv::ui
