#include "ui/features.h"

#include "ui/backup_binding.h"
#include "ui/import_menus.h"
#include "ui/main_window.h"
#include "ui/map/map_binding.h"
#include "ui/options/options_menu.h"
#include "ui/reference_menus.h"
#include "ui/rig_binding.h"
#include "ui/startup.h"
#include "ui/stationlog/station_log_menu.h"
#include "ui/submission_menus.h"

namespace orv::ui {

void installFeatures(Startup& startup) {
    installSubmissionMenus(startup);
    installReferenceMenus(startup);
    installStationLogMenu(startup);
    installImportMenus(startup);
    new BackupBinding(startup, startup.window());
    installOptionsMenu(startup);
    RigBinding::install(*startup.window(), startup.settings(), startup.texts());
    MapBinding::install(startup);
}

} // namespace orv::ui
