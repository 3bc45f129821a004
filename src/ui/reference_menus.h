#pragma once

#include <QString>
#include <filesystem>
#include <functional>
#include <memory>

class QDialog;
class QWidget;

namespace orv {
class HttpGetter;
}

namespace orv::ui {

class Startup;

// The file chooser, the modal loop and the download of the reference data
// menus. The program uses the Qt dialogs and libcurl; tests put in functions
// that answer with a path, drive the dialog themselves, or fetch from a
// server on the loopback address.
struct ReferenceHooks {
    // A file to read: title and filter ("*.DAT"); an empty path means Cancel.
    static std::function<std::filesystem::path(QWidget*, const QString&, const QString&)> openFile;
    static std::function<int(QDialog&)> runModal;
    static std::function<std::unique_ptr<HttpGetter>()> http;
    static void reset();
};

// Enables and connects the country list imports (`DXCCImp`, `MnARRLImport`,
// `MnARRLImportDownL`), the call database entries (`NewQBDat`, `QBDatEdit`,
// `MnQBDatImport`), the live lookup list `List1` and the database comparison
// (`MnDBCheck`, `Frame4`).
void installReferenceMenus(Startup& startup);

} // namespace orv::ui
