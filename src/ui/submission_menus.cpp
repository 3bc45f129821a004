#include "ui/submission_menus.h"

#include <QAction>
#include <QDialog>
#include <QFileDialog>

#include "core/i18n/texts.h"
#include "core/logstore/contest_log.h"
#include "ui/edi_editor.h"
#include "ui/edi_upload.h"
#include "ui/evaluation_window.h"
#include "ui/group_change_dialog.h"
#include "ui/lookup_binding.h"
#include "ui/main_window.h"
#include "ui/startup.h"
#include "ui/stats_window.h"

namespace orv::ui {
namespace {

QString q(const std::filesystem::path& p) {
    return QString::fromStdString(p.string());
}

std::filesystem::path fromQ(const QString& s) {
    return s.isEmpty() ? std::filesystem::path() : std::filesystem::path(s.toStdString());
}

// "*.edi" as the Qt dialogs want it: "*.edi (*.edi)".
QString qtFilter(const QString& pattern) {
    return pattern + " (" + pattern + ")";
}

std::filesystem::path qtSaveFile(QWidget* parent, const QString& title, const QString& filter,
                                 const std::filesystem::path& start) {
    // The exports replace an existing file without a question of their own.
    return fromQ(QFileDialog::getSaveFileName(parent, title, q(start), qtFilter(filter), nullptr,
                                              QFileDialog::DontConfirmOverwrite));
}

std::filesystem::path qtOpenFile(QWidget* parent, const QString& title, const QString& filter,
                                 const std::filesystem::path& start) {
    return fromQ(QFileDialog::getOpenFileName(parent, title, q(start), qtFilter(filter)));
}

std::filesystem::path qtChooseFolder(QWidget* parent, const QString& title,
                                     const std::filesystem::path& start) {
    return fromQ(QFileDialog::getExistingDirectory(parent, title, q(start)));
}

int qtRunModal(QDialog& d) {
    return d.exec();
}

void openEvaluation(Startup& s) {
    MainWindow* w = s.window();
    // One evaluation window at a time; choosing the entry again raises it.
    if (auto* open = w->findChild<EvaluationWindow*>("Form5")) {
        open->raise();
        open->activateWindow();
        return;
    }
    const std::string logName = s.log() ? s.log()->path().stem().string() : std::string();
    auto* e = new EvaluationWindow(s.paths(), s.settings(), s.texts(), s.dialogs(), s.clock(),
                                   s.beeper(), logName, w->currentBand(), w);
    // The main window's image of the call database is the lookup list's;
    // the evaluation merges the log into the database and offers the reload.
    if (auto* lookup = w->findChild<LookupBinding*>("LookupBinding"))
        e->reloadCallDb = [lookup] { lookup->reload(); };
    e->setAttribute(Qt::WA_DeleteOnClose);
    e->show();
}

// The statistics folder lives as long as the program: the window opens on
// the folder it was last pointed to.
constexpr const char* kStatisticsFolder = "StatistikOrdner";

void openStatistics(Startup& s) {
    MainWindow* w = s.window();
    StatsWindow d(s.paths(), s.texts(), s.dialogs(), w);
    const QString last = w->property(kStatisticsFolder).toString();
    std::error_code ec;
    if (!last.isEmpty() && std::filesystem::is_directory(fromQ(last), ec))
        d.listFolder(fromQ(last));
    SubmissionHooks::runModal(d);
    w->setProperty(kStatisticsFolder, q(d.folder()));
}

void openGroupChange(Startup& s) {
    MainWindow* w = s.window();
    if (!s.log())
        return;
    GroupChangeDialog d(*s.log(), w->currentBand(), s.settings(), s.texts(), s.dialogs(),
                        s.beeper(), w);
    // The window's band change reloads the capture's band from the log and
    // redraws the grid and the figures; that is the refresh a group change
    // needs, and it is the same band.
    d.onChanged = [w](int band) {
        if (band == w->currentBand())
            emit w->bandChanged(band);
    };
    SubmissionHooks::runModal(d);
}

// The editor with the text it had when it was last closed.
void openEdiEditor(Startup& s) {
    MainWindow* w = s.window();
    EdiEditor d(ediSession(w), s.texts(), s.dialogs(), s.paths(), w);
    SubmissionHooks::runModal(d);
}

// The menu has no file of its own: every upload asks for one.
void openEdiUpload(Startup& s) {
    std::filesystem::path none;
    sendEdiFile(s.window(), s.settings(), s.texts(), s.dialogs(), s.paths(), none);
}

} // namespace

std::function<std::filesystem::path(QWidget*, const QString&, const QString&,
                                    const std::filesystem::path&)>
    SubmissionHooks::saveFile = qtSaveFile;
std::function<std::filesystem::path(QWidget*, const QString&, const QString&,
                                    const std::filesystem::path&)>
    SubmissionHooks::openFile = qtOpenFile;
std::function<std::filesystem::path(QWidget*, const QString&, const std::filesystem::path&)>
    SubmissionHooks::chooseFolder = qtChooseFolder;
std::function<int(QDialog&)> SubmissionHooks::runModal = qtRunModal;

void SubmissionHooks::reset() {
    saveFile = qtSaveFile;
    openFile = qtOpenFile;
    chooseFolder = qtChooseFolder;
    runModal = qtRunModal;
}

void installSubmissionMenus(Startup& startup) {
    MainWindow* w = startup.window();
    if (!w)
        return;
    auto bind = [&](const char* name, void (*open)(Startup&)) {
        if (auto* a = w->findChild<QAction*>(name)) {
            a->setEnabled(true);
            QObject::connect(a, &QAction::triggered, w, [&startup, open] { open(startup); });
        }
    };
    bind("Auswerten", &openEvaluation);
    bind("MnStatistikKurz", &openStatistics);
    bind("MnGruppenAendern", &openGroupChange);
    bind("MnEDIEdit", &openEdiEditor);
    bind("MnEDIUpload", &openEdiUpload);
}

} // namespace orv::ui
