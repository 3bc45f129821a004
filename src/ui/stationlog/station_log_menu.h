#pragma once

namespace orv::ui {

class Startup;
class StationLogWindow;

// Opens the station log beside the contest window from `MnOrvantaLog` and
// F7, and unloads it when the contest window closes. A second call while it
// is open brings it to the front.
void installStationLogMenu(Startup& startup);
// The station log window, made and started on first use; nothing before
// the menu is installed.
StationLogWindow* openStationLog(Startup& startup);
// The station log window if it is open.
StationLogWindow* stationLogWindow(Startup& startup);

} // namespace orv::ui
