#pragma once

#include <QString>
#include <filesystem>
#include <functional>

class QDialog;
class QWidget;

namespace orv::ui {

class Startup;

// The file and folder choosers and the modal loop of the evaluation, export,
// statistics and group change windows. The program uses the Qt dialogs; tests
// put in functions that answer with a path or drive the dialog themselves.
struct SubmissionHooks {
    // A file to write: title, filter ("*.edi"), folder to start in. An empty
    // path means the user cancelled.
    static std::function<std::filesystem::path(QWidget*, const QString&, const QString&,
                                               const std::filesystem::path&)>
        saveFile;
    // A file to read, same arguments.
    static std::function<std::filesystem::path(QWidget*, const QString&, const QString&,
                                               const std::filesystem::path&)>
        openFile;
    // A folder: title and folder to start in.
    static std::function<std::filesystem::path(QWidget*, const QString&,
                                               const std::filesystem::path&)>
        chooseFolder;
    // Shows a dialog modally and returns its result code.
    static std::function<int(QDialog&)> runModal;
    // Puts the Qt dialogs back.
    static void reset();
};

// Enables and connects the menu entries of the evaluation (`Auswerten`), the
// statistics (`MnStatistikKurz`), the group changes (`MnGruppenAendern`) and
// the EDI editor and upload (`MnEDIEdit`, `MnEDIUpload`).
void installSubmissionMenus(Startup& startup);

} // namespace orv::ui
