// The print button of the evaluation window: the printout of core's
// layout on a printer, in the preview, or as a PDF file.
#include "core/i18n/texts.h"
#include "core/submission/export_file.h"
#include "core/submission/log_printout.h"
#include "core/util/file_io.h"
#include "core/util/pdf_writer.h"
#include "core/util/ports.h"
#include "ui/evaluation_window.h"
#include "ui/log_print.h"
#include "ui/submission_menus.h"

namespace orv::ui {

namespace {

bool haveEvaluation(const Evaluation* ev, Dialogs& dialogs, const Texts& texts) {
    if (ev)
        return true;
    dialogs.inform(texts(1170), Icon::Information);
    return false;
}

} // namespace

void EvaluationWindow::printLog() {
    if (haveEvaluation(evaluation(), dialogs_, texts_))
        printDocument(layoutLogPrintout(*evaluation(), texts_), this);
}

void EvaluationWindow::previewLog() {
    if (haveEvaluation(evaluation(), dialogs_, texts_))
        previewDocument(layoutLogPrintout(*evaluation(), texts_), this);
}

void EvaluationWindow::savePdf() {
    if (!haveEvaluation(evaluation(), dialogs_, texts_))
        return;
    const std::filesystem::path chosen = SubmissionHooks::saveFile(
        this, QString::fromStdString(texts_(1167)).remove('&'), "*.pdf", paths_.appPath);
    if (chosen.empty())
        return;
    const std::filesystem::path file = forceExtension(chosen, ".pdf");
    try {
        fileio::writeAtomic(file, print::writePdf(layoutLogPrintout(*evaluation(), texts_)));
    } catch (const fileio::FileError& e) {
        dialogs_.inform(texts_(1168) + "\n" + file.string() + "\n" + e.what(), Icon::Critical);
        return;
    }
    dialogs_.inform(savedMessage(texts_, file), Icon::Information);
}

} // namespace orv::ui
