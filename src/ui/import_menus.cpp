#include "ui/import_menus.h"

#include <QAction>

#include "core/capture/capture.h"
#include "core/i18n/texts.h"
#include "core/logstore/contest_log.h"
#include "core/submission/ham3_import.h"
#include "core/util/file_io.h"
#include "ui/capture_binding.h"
#include "ui/log_folders_window.h"
#include "ui/main_window.h"
#include "ui/startup.h"
#include "ui/submission_menus.h"

namespace orv::ui {
namespace {

// The closing message lists this many refused lines at most; the counts
// above them are always whole.
constexpr std::size_t kListedRefusals = 15;

std::string closingMessage(const Texts& texts, const Ham3Report& r) {
    std::string msg = texts(85) + "\n\n" + texts(1152) + " " + std::to_string(r.stored) + "\n" +
                      texts(1153) + " " + std::to_string(r.refused.size());
    if (r.unknownBand)
        msg += "\n" + texts(1154) + " " + std::to_string(r.unknownBand);
    for (std::size_t i = 0; i < r.refused.size() && i < kListedRefusals; ++i) {
        const Ham3Refusal& f = r.refused[i];
        msg += "\n" + texts(1151) + " " + std::to_string(f.line) + ": " + texts(f.text);
        if (!f.detail.empty())
            msg += " (" + f.detail + ")";
    }
    if (r.refused.size() > kListedRefusals)
        msg += "\n...";
    return msg;
}

void openLogFolders(Startup& s, LogFoldersWindow::Panel panel) {
    MainWindow* w = s.window();
    const std::filesystem::path open = s.log() ? s.log()->path() : std::filesystem::path();
    LogFoldersWindow d(s.paths(), open, s.texts(), s.dialogs(), panel, w);
    SubmissionHooks::runModal(d);
}

} // namespace

void importHam3(Startup& s) {
    MainWindow* w = s.window();
    Capture* capture = s.capture();
    if (!w || !capture)
        return;
    const Texts& texts = s.texts();
    Dialogs& dialogs = s.dialogs();
    if (dialogs.ask(texts(424), Buttons::OkCancel, Icon::Information, Answer::Ok) != Answer::Ok)
        return;
    const std::filesystem::path file =
        SubmissionHooks::openFile(w, "Open...", "*.ASC", s.paths().appPath);
    if (file.empty())
        return;
    std::vector<std::string> lines;
    try {
        lines = readHam3File(file);
    } catch (const fileio::FileError& e) {
        dialogs.inform(texts(1169) + "\n" + file.string() + "\n" + e.what(), Icon::Critical);
        return;
    }

    // Date and time come from the entry row while the import runs.
    w->stopClock();
    w->setDatePanelVisible(true);
    EntryRow row = w->entryRow();
    Ham3Import import(*capture, s.settings().modes());
    Ham3Report report;
    bool failed = false;
    try {
        report = import.run(lines, row, [&](std::size_t, const std::string&) {
            return dialogs.ask(texts(425), Buttons::OkCancel, Icon::Warning, Answer::Ok) ==
                   Answer::Ok;
        });
    } catch (const std::exception& e) {
        failed = true;
        dialogs.inform(texts(10) + "\n" + e.what(), Icon::Critical);
    }

    // The window shows the band the import ended on, loaded from the file.
    for (int b = 0; b < kBandCount; ++b)
        if (report.bandsStored[static_cast<std::size_t>(b)])
            w->setBandHasQsos(b, true);
    const int band = capture->band();
    if (w->currentBand() != band)
        w->selectBand(band);
    else
        emit w->bandChanged(band);
    w->setDatePanelVisible(false);
    w->clearEntryLine();
    w->restartClock();
    if (failed)
        return;
    if (report.end == Ham3Report::End::BandNotEmpty) {
        dialogs.inform(texts(423), Icon::Critical);
        return;
    }
    dialogs.inform(closingMessage(texts, report), Icon::Information);
}

void installImportMenus(Startup& s) {
    MainWindow* w = s.window();
    auto hook = [w](const char* name, auto slot) {
        if (auto* a = w->findChild<QAction*>(name)) {
            a->setEnabled(true);
            QObject::connect(a, &QAction::triggered, w, slot);
        }
    };
    hook("MnImportHAMIII", [&s] { importHam3(s); });
    hook("MnLogExport", [&s] { openLogFolders(s, LogFoldersWindow::Panel::CopyOut); });
    hook("MnLogImport", [&s] { openLogFolders(s, LogFoldersWindow::Panel::CopyIn); });
    hook("MnLogLöschen", [&s] { openLogFolders(s, LogFoldersWindow::Panel::Delete); });
}

} // namespace orv::ui
