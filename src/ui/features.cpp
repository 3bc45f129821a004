#include "ui/features.h"

namespace orv::ui {

void installFeatures(Startup& startup) {
    (void)startup;
}

} // namespace orv::ui
