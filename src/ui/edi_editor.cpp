#include "ui/edi_editor.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPushButton>
#include <QTextDocument>
#include <QVBoxLayout>

#include "core/i18n/texts.h"
#include "core/submission/edi_editor.h"
#include "core/util/file_io.h"
#include "core/util/ports.h"
#include "ui/edi_upload.h"
#include "ui/submission_menus.h"

namespace orv::ui {
namespace {

constexpr int kOpen = 1106;
constexpr int kPreview = 1107;
constexpr int kUnreadable = 1101;
constexpr int kUnwritable = 1108;

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

bool qtChoosePrinter(QPrinter& printer, QWidget* parent) {
    QPrintDialog d(&printer, parent);
    return d.exec() == QDialog::Accepted;
}

} // namespace

std::function<bool(QPrinter&, QWidget*)> EdiEditor::choosePrinter = qtChoosePrinter;

EdiEditor::EdiEditor(EdiSession& session, const Texts& texts, Dialogs& dialogs,
                     const AppPaths& paths, QWidget* parent)
    : QDialog(parent), session_(session), texts_(texts), dialogs_(dialogs), paths_(paths) {
    setObjectName("Form16");
    setWindowTitle(q(texts_(365)));
    auto* layout = new QVBoxLayout(this);
    text_ = new QPlainTextEdit(this);
    text_->setObjectName("Text1");
    // The QSO lines are columns of fixed width; a fixed font keeps them so.
    text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text_->setLineWrapMode(QPlainTextEdit::NoWrap);
    text_->setPlainText(q(session_.editorText.text));
    layout->addWidget(text_, 1);

    auto* buttons = new QHBoxLayout;
    auto button = [&](const char* name, int row, void (EdiEditor::*slot)()) {
        auto* b = new QPushButton(q(texts_(row)), this);
        b->setObjectName(name);
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, slot);
        buttons->addWidget(b);
    };
    button("Command3", kOpen, &EdiEditor::openFile);
    button("Command4", 316, &EdiEditor::saveFile);
    button("Command5", 98, &EdiEditor::printText);
    button("PrintPreview", kPreview, &EdiEditor::preview);
    layout->addLayout(buttons);
    resize(760, 600);
}

QString EdiEditor::text() const {
    // The raw text keeps non-breaking spaces that toPlainText would turn
    // into blanks; only the block separators become line breaks.
    QString t = text_->document()->toRawText();
    t.replace(QChar::ParagraphSeparator, '\n');
    return t;
}

void EdiEditor::keepText() {
    session_.editorText.text = text().toStdString();
}

void EdiEditor::openFile() {
    const auto file = SubmissionHooks::openFile(this, q(texts_(368)), "*.edi", paths_.logsPath());
    if (file.empty())
        return;
    try {
        const Result<EdiEditorText> loaded = loadEdiEditor(file);
        if (!loaded) {
            session_.editorPath.clear();
            dialogs_.inform(texts_(367), Icon::Information);
            return;
        }
        session_.editorPath = file;
        session_.editorText = *loaded;
        text_->setPlainText(q(loaded->text));
    } catch (const fileio::FileError&) {
        dialogs_.inform(texts_(kUnreadable) + "\n" + file.string(), Icon::Critical);
    }
}

void EdiEditor::saveFile() {
    if (session_.editorPath.empty()) {
        const auto chosen =
            SubmissionHooks::saveFile(this, q(texts_(369)), "*.EDI", paths_.logsPath());
        if (chosen.empty())
            return;
        session_.editorPath = ediEditorName(chosen);
        // A new file is written as the export writes one.
        session_.editorText.crlf = true;
        session_.editorText.utf8 = false;
    }
    keepText();
    try {
        saveEdiEditor(session_.editorPath, session_.editorText);
    } catch (const fileio::FileError&) {
        dialogs_.inform(texts_(kUnwritable) + "\n" + session_.editorPath.string(), Icon::Critical);
    }
}

void EdiEditor::print(QPrinter& printer) const {
    // The printer takes the box's font, name and size, as the box shows it.
    QTextDocument doc;
    doc.setDefaultFont(text_->font());
    doc.setPlainText(text());
    doc.print(&printer);
}

void EdiEditor::printText() {
    if (text().trimmed().isEmpty())
        return;
    QPrinter printer(QPrinter::HighResolution);
    if (choosePrinter(printer, this))
        print(printer);
}

void EdiEditor::preview() {
    if (text().trimmed().isEmpty())
        return;
    QPrinter printer(QPrinter::HighResolution);
    QPrintPreviewDialog d(&printer, this);
    connect(&d, &QPrintPreviewDialog::paintRequested, this, [this](QPrinter* p) { print(*p); });
    SubmissionHooks::runModal(d);
}

void EdiEditor::done(int r) {
    keepText();
    QDialog::done(r);
}

} // namespace orv::ui
