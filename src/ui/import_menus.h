#pragma once

namespace orv::ui {

class Startup;

// Enables and connects the HAM III import (`MnImportHAMIII`) and the log
// folder entries (`MnLogExport`, `MnLogImport`, `MnLogLöschen`), which open
// `Form17` with the fitting panel.
void installImportMenus(Startup& startup);

// The import of the menu entry, also pressed by tests: IText(424), the file
// chooser, the lines through the commit, the closing message.
void importHam3(Startup& startup);

} // namespace orv::ui
