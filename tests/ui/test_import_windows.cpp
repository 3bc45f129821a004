// The HAM III import of the menu, the log folders window `Form17` and the
// evaluation window's printout, on a running program with real logs, the
// answers of the message boxes and the choosers given by the test.
#include <QAction>
#include <QListWidget>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QTest>

#include "core/i18n/texts.h"
#include "core/submission/log_folders.h"
#include "running_window.h"
#include "support/text_output.h"
#include "ui/evaluation_window.h"
#include "ui/log_folders_window.h"
#include "ui/log_grid_model.h"
#include "ui/log_print.h"
#include "ui/submission_menus.h"

using orv::Answer;
using orv::platform::QtDialogs;
using orv::ui::LogFoldersWindow;
using orv::ui::SubmissionHooks;
namespace fs = std::filesystem;

namespace {

fs::path sample(const std::string& name) {
    return orv::test::sourceDir() / "tests/data/ham3" / name;
}

bool recorded(const std::string& text) {
    for (const std::string& r : QtDialogs::recorded())
        if (r.rfind(text, 0) == 0)
            return true;
    return false;
}

void selectAll(QListWidget* list) {
    for (int i = 0; i < list->count(); ++i)
        list->item(i)->setSelected(true);
}

} // namespace

class TestImportWindows : public QObject, orv::test::RunningWindow {
    Q_OBJECT

    void importFile(const fs::path& file) {
        SubmissionHooks::openFile = [file](QWidget*, const QString&, const QString&,
                                           const fs::path&) { return file; };
        w->findChild<QAction*>("MnImportHAMIII")->trigger();
    }
    const orv::Texts& texts() { return app->texts(); }

private slots:
    void init() { QVERIFY(start("Field")); }
    void cleanup() {
        stop();
        SubmissionHooks::reset();
        orv::ui::PrintHooks::reset();
    }

    void ham3ImportStoresTheLinesAndRestartsTheClock() {
        QVERIFY(w->findChild<QAction*>("MnImportHAMIII")->isEnabled());
        importFile(sample("contest.ASC"));
        QVERIFY(recorded(texts()(424)));
        QVERIFY(recorded(texts()(85) + "\n\n" + texts()(1152) + " 4\n"));
        const auto rows = stored(1);
        QCOMPARE(rows.size(), std::size_t(2));
        // The time is the file's, not the clock's (14:30).
        QCOMPARE(QString::fromStdString(rows[0].datTime.toStorage()),
                 QString("2026-05-02 14:05:00"));
        QCOMPARE(stored(2).size(), std::size_t(1));
        QCOMPARE(stored(3).size(), std::size_t(1));
        // The window shows the band of the last line with its QSO.
        QCOMPARE(w->currentBand(), 3);
        QCOMPARE(w->logGrid().rowCount(), 1);
        QVERIFY(w->bandHasQsos(1) && w->bandHasQsos(2));
        QVERIFY(w->clockRunning());
    }

    void ham3ImportAnswersCancelAtUnknownBandAndRefusesANonEmptyBand() {
        QtDialogs::queueAnswer(Answer::Ok);
        QtDialogs::queueAnswer(Answer::Cancel);
        importFile(sample("unknown_band_last.ASC"));
        QVERIFY(recorded(texts()(425)));
        QVERIFY(recorded(texts()(85)));
        QCOMPARE(stored(1).size(), std::size_t(1));

        // The band holds a QSO now: the same import stops at its first line.
        QtDialogs::recorded().clear();
        importFile(sample("contest.ASC"));
        QVERIFY(recorded(texts()(423)));
        QVERIFY(!recorded(texts()(85)));
        QCOMPARE(stored(1).size(), std::size_t(1));
        QVERIFY(stored(2).empty());
        QVERIFY(w->clockRunning());

        // Cancel on the first question leaves before the chooser.
        QtDialogs::queueAnswer(Answer::Cancel);
        bool asked = false;
        SubmissionHooks::openFile = [&](QWidget*, const QString&, const QString&, const fs::path&) {
            asked = true;
            return fs::path();
        };
        w->findChild<QAction*>("MnImportHAMIII")->trigger();
        QVERIFY(!asked);
    }

    void logFoldersCopyOutDeleteAndCopyIn() {
        const fs::path logs = *dir / "Logs";
        const fs::path stick = *dir / "Stick";
        fs::create_directories(stick);
        orv::ContestLog::create(logs / "Old.sqlite", orv::NewLogData{"DL1X", "JO62QM", "T", {}});

        // Copy out both logs, the open one included.
        SubmissionHooks::runModal = [&](QDialog& d) {
            auto& f = dynamic_cast<LogFoldersWindow&>(d);
            [&] { QVERIFY(f.findChild<QWidget*>("Picture1")->isVisibleTo(&f)); }();
            f.setTargetFolder(stick);
            selectAll(f.findChild<QListWidget*>("File1"));
            f.copyOut();
            // A new folder named with "?" is refused.
            QtDialogs::queueInput("a?b");
            f.newFolder();
            return 0;
        };
        w->findChild<QAction*>("MnLogExport")->trigger();
        QVERIFY(orv::logfolders::isValidLog(stick / "Field.sqlite"));
        QVERIFY(orv::logfolders::isValidLog(stick / "Old.sqlite"));
        QVERIFY(recorded(texts()(410)));
        QVERIFY(!fs::exists(stick / "a?b"));

        // The open log is not offered for deletion.
        QtDialogs::queueAnswer(Answer::Yes);
        SubmissionHooks::runModal = [&](QDialog& d) {
            auto* list = d.findChild<QListWidget*>("File2");
            [&] {
                QCOMPARE(list->count(), 1);
                QCOMPARE(list->item(0)->text(), QString("Old.sqlite"));
            }();
            selectAll(list);
            dynamic_cast<LogFoldersWindow&>(d).deleteLogs();
            return 0;
        };
        w->findChild<QAction*>("MnLogLöschen")->trigger();
        QVERIFY(!fs::exists(logs / "Old.sqlite"));
        QVERIFY(fs::exists(logs / "Field.sqlite"));

        // Copy in: the log comes back, a file that is no log is refused.
        orv::test::writeFile(stick / "Broken.sqlite", "not a database");
        SubmissionHooks::runModal = [&](QDialog& d) {
            auto& f = dynamic_cast<LogFoldersWindow&>(d);
            f.setSourceFolder(stick);
            auto* list = f.findChild<QListWidget*>("File3");
            [&] { QCOMPARE(list->count(), 3); }();
            for (int i = 0; i < list->count(); ++i)
                list->item(i)->setSelected(list->item(i)->text() != "Field.sqlite");
            f.copyIn();
            return 0;
        };
        w->findChild<QAction*>("MnLogImport")->trigger();
        QVERIFY(recorded(texts()(415) + "\nBroken.sqlite"));
        QVERIFY(orv::logfolders::isValidLog(logs / "Old.sqlite"));
        QVERIFY(!fs::exists(logs / "Broken.sqlite"));
    }

    void evaluationPrintsAndSavesThePdf() {
        importFile(sample("contest.ASC"));
        orv::ui::EvaluationWindow e(app->paths(), app->settings(), app->texts(), dialogs, clock,
                                    beeper, "Field", 1);
        QVERIFY(e.evaluation());
        const fs::path saved = *dir / "saved";
        SubmissionHooks::saveFile = [&](QWidget*, const QString&, const QString&, const fs::path&) {
            return saved;
        };
        e.savePdf();
        QVERIFY(recorded(texts()(183)));
        const std::string fromFile = orv::test::pdfText(*dir / "saved.pdf");
        // The printer path paints the same pages through Qt.
        const fs::path printed = *dir / "printed.pdf";
        orv::ui::PrintHooks::printDialog = [&](QPrinter& p, QWidget*) {
            p.setOutputFormat(QPrinter::PdfFormat);
            p.setOutputFileName(QString::fromStdString(printed.string()));
            return true;
        };
        e.printLog();
        const std::string fromPrinter = orv::test::pdfText(printed);
        for (const std::string& t : {fromFile, fromPrinter}) {
            QVERIFY(t.find("OK1KKW") != std::string::npos);
            QVERIFY(t.find("DL0GTH") != std::string::npos);
            QVERIFY(t.find("Seite 2 von 2") != std::string::npos);
            QVERIFY(t.find("Score:") != std::string::npos);
        }
        // The preview lays out the same two pages.
        int previewPages = -1;
        orv::ui::PrintHooks::preview = [&](QPrintPreviewDialog& d) {
            auto* pw = d.findChild<QPrintPreviewWidget*>();
            pw->updatePreview();
            previewPages = pw->pageCount();
        };
        e.previewLog();
        QCOMPARE(previewPages, 2);
    }
};

QTEST_MAIN(TestImportWindows)
#include "test_import_windows.moc"
