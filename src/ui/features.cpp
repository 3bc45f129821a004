#include "ui/features.h"

#include "ui/reference_menus.h"

namespace orv::ui {

void installFeatures(Startup& startup) {
    installReferenceMenus(startup);
}

} // namespace orv::ui
