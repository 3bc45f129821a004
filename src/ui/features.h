#pragma once

namespace orv::ui {

class Startup;

// Windows and menu entries beyond the entry row install themselves here once
// the main window stands over its first log. Each reads the open log, the
// settings and the texts through Startup when its entry is chosen, so a log
// changed later through MnLoadLog is the one it works on.
//
// Add one call per feature file to installFeatures in features.cpp.
void installFeatures(Startup& startup);

} // namespace orv::ui
