#pragma once

#include "ui/options/options_page.h"

namespace orv::ui {

// The rotator's and the rig's settings as pages of the options dialog; the
// pages themselves stand alone so that they can be driven without it.
OptionsPage* makeRotatorOptionsPage(OptionsContext& ctx, QWidget* parent);
OptionsPage* makeRigOptionsPage(OptionsContext& ctx, QWidget* parent);

} // namespace orv::ui
