#include "ui/features.h"

#include "ui/reference_menus.h"
#include "ui/stationlog/station_log_menu.h"
#include "ui/submission_menus.h"

namespace orv::ui {

void installFeatures(Startup& startup) {
    installSubmissionMenus(startup);
    installReferenceMenus(startup);
    installStationLogMenu(startup);
}

} // namespace orv::ui
