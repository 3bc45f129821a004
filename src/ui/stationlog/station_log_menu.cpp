#include "ui/stationlog/station_log_menu.h"

#include <QAction>
#include <QPointer>

#include "ui/main_window.h"
#include "ui/startup.h"
#include "ui/stationlog/station_log_window.h"

namespace orv::ui {
namespace {

// Holds the station log window for the contest window. The station log is a
// top-level window of its own, not a child of the contest window, so that
// neither finds the other's controls by name; it goes when the contest
// window goes.
class StationLogHolder final : public QObject {
public:
    explicit StationLogHolder(MainWindow* w) : QObject(w) { setObjectName("StationLogHolder"); }
    ~StationLogHolder() override { delete window; }
    QPointer<StationLogWindow> window;
};

StationLogHolder* holder(Startup& startup) {
    MainWindow* w = startup.window();
    return w ? w->findChild<StationLogHolder*>("StationLogHolder", Qt::FindDirectChildrenOnly)
             : nullptr;
}

} // namespace

StationLogWindow* stationLogWindow(Startup& startup) {
    StationLogHolder* h = holder(startup);
    return h ? h->window.data() : nullptr;
}

StationLogWindow* openStationLog(Startup& startup) {
    StationLogHolder* h = holder(startup);
    if (!h)
        return nullptr;
    if (!h->window) {
        h->window = new StationLogWindow(StationLogContext{startup.paths(), startup.settings(),
                                                           startup.texts(), startup.dialogs(),
                                                           startup.clock()});
        h->window->setAttribute(Qt::WA_DeleteOnClose);
        h->window->show();
        h->window->start();
    }
    h->window->show();
    h->window->raise();
    h->window->activateWindow();
    return h->window;
}

void installStationLogMenu(Startup& startup) {
    MainWindow* w = startup.window();
    if (!w || holder(startup))
        return;
    auto* h = new StationLogHolder(w);
    if (auto* a = w->findChild<QAction*>("MnOrvantaLog")) {
        a->setEnabled(true);
        QObject::connect(a, &QAction::triggered, w, [&startup] { openStationLog(startup); });
    }
    w->onStationLog = [&startup] { openStationLog(startup); };
    // The unload of the contest window unloads the station log, which keeps
    // its place and lists in the settings file as it closes.
    QObject::connect(w, &MainWindow::closing, h, [h] {
        if (h->window)
            h->window->close();
    });
}

} // namespace orv::ui
