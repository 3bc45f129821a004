#pragma once

#include <QObject>
#include <filesystem>
#include <functional>
#include <memory>

#include "core/app/app_paths.h"
#include "core/submission/edi_editor.h"

class QWidget;

namespace orv {
class Dialogs;
class FileTransfer;
class Settings;
class Texts;
} // namespace orv

namespace orv::ui {

// What the EDI editor keeps between its openings while the program runs:
// the file in the editor (empty: the text has no file yet) and its text.
// One lives under the top window; every export dialog and menu entry under
// it shares it.
class EdiSession : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    std::filesystem::path editorPath;
    EdiEditorText editorText;
};
EdiSession& ediSession(QWidget* anyWidget);

// The transfer the upload uses, and whether the password may go to the
// desktop's keyring; tests keep to the password file of the data folder.
struct EdiUploadHooks {
    static std::function<std::unique_ptr<FileTransfer>()> transfer;
    static bool keyring;
    static void reset();
};

// Sends an EDI file as `Command4` of the export dialog and `MnEDIUpload` do:
// asks for a file when `path` is empty, names it, asks for the account's
// password when none is stored, and runs the transfer beside the window
// thread under "UPLoading..." with a cancel, the window answering all the
// while. `path` is empty afterwards, whatever happened.
void sendEdiFile(QWidget* parent, const Settings& settings, const Texts& texts, Dialogs& dialogs,
                 const AppPaths& paths, std::filesystem::path& path);

} // namespace orv::ui
