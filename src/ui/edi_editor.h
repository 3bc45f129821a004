#pragma once

#include <QDialog>
#include <functional>

#include "core/app/app_paths.h"

class QPlainTextEdit;
class QPrinter;

namespace orv {
class Dialogs;
class Texts;
} // namespace orv

namespace orv::ui {

class EdiSession;

// The EDI editor `Form16`: one text box `Text1` with the file's text, and
// open (`Command3`), save (`Command4`), print (`Command5`) and a print
// preview. The file and its text stay in the session when the editor
// closes (Esc), so the menu entry shows it again.
class EdiEditor : public QDialog {
    Q_OBJECT
public:
    EdiEditor(EdiSession& session, const Texts& texts, Dialogs& dialogs, const AppPaths& paths,
              QWidget* parent = nullptr);

    void openFile();
    void saveFile();
    // Prints through the system's print dialog; nothing for an empty text.
    void printText();
    void preview();
    // The text on a printer already set up, in the box's font.
    void print(QPrinter& printer) const;
    QString text() const;

    void done(int r) override;

    // The print dialog: sets up the printer and says whether to print.
    // Tests put in a function that points the printer to a PDF file.
    static std::function<bool(QPrinter&, QWidget*)> choosePrinter;

private:
    void keepText();

    EdiSession& session_;
    const Texts& texts_;
    Dialogs& dialogs_;
    AppPaths paths_;
    QPlainTextEdit* text_ = nullptr;
};

} // namespace orv::ui
