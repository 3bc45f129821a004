#include "ui/features.h"

#include "ui/reference_menus.h"
#include "ui/submission_menus.h"

namespace orv::ui {

void installFeatures(Startup& startup) {
    installSubmissionMenus(startup);
    installReferenceMenus(startup);
}

} // namespace orv::ui
