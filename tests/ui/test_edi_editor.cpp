// The EDI editor `Form16` and the upload from the export dialog and the
// menu, on real files, a real FTP server on 127.0.0.1 and a real PDF read
// back with pdftotext; the message boxes and file choosers answered by the
// test.
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPrinter>
#include <QProcess>
#include <QProgressDialog>
#include <QPushButton>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

#include "core/app/app_paths.h"
#include "core/logstore/contest_log.h"
#include "core/settings/ini_file.h"
#include "core/settings/settings.h"
#include "core/submission/edi_editor.h"
#include "core/submission/edi_upload.h"
#include "core/submission/evaluation.h"
#include "core/submission/submission_support.h"
#include "platform/net/password_store.h"
#include "platform/qt_dialogs.h"
#include "support/fakes.h"
#include "support/ftp_server.h"
#include "support/temp_dir.h"
#include "ui/edi_dialog.h"
#include "ui/edi_editor.h"
#include "ui/edi_upload.h"
#include "ui/log_dialog.h"
#include "ui/main_window.h"
#include "ui/startup.h"
#include "ui/submission_menus.h"
#include "ui_support.h"

using orv::Answer;
using orv::platform::QtDialogs;
using orv::test::said;
using orv::ui::EdiDialog;
using orv::ui::EdiEditor;
using orv::ui::EdiUploadHooks;
using orv::ui::SubmissionHooks;

namespace {

constexpr int k144 = 1;
const std::filesystem::path kSample = orv::test::sourceDir() / "tests/data/edi/OE1ABC-145.EDI";
constexpr const char* kSampleName = "OE1ABC_P_145MHz_20260502;20260503.EDI";

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

// A data folder with a two-QSO log on 2 m, and the upload server set.
struct Station {
    orv::test::TempDir dir;
    orv::AppPaths paths;
    std::unique_ptr<orv::Settings> settings;
    orv::Texts texts;
    std::optional<orv::ContestLog> log;
    orv::Evaluation ev;

    explicit Station(int ftpPort = 0) {
        orv::test::writeFile(dir / "OrvantaContest.INI",
                             "[QB]\nEinverstanden=-1\n[EDIUpload]\nHost=127.0.0.1\nPort=" +
                                 std::to_string(ftpPort) + "\nUser=contest\n");
        paths = orv::prepareDataFolder(dir.path());
        settings = std::make_unique<orv::Settings>(orv::IniFile(paths.iniPath()));
        log = orv::test::makeLog(paths.logsPath());
        orv::test::addRows(*log, k144,
                           {orv::test::qso(1, "DL1ABC", "JN58TD", 300, "2026-05-02 12:01:00", "SSB",
                                           "SSB", "59", "59001"),
                            orv::test::qso(2, "OK1XY", "JO70AB", 300, "2026-05-02 12:02:00", "SSB",
                                           "SSB", "59", "59002")});
        ev = orv::evaluate(*log, k144, nullptr);
    }
    std::unique_ptr<EdiDialog> dialog(orv::Dialogs& dialogs) {
        return std::make_unique<EdiDialog>(*settings, texts, dialogs, paths, k144,
                                           [this](int) { return &ev; });
    }
    orv::PasswordStore passwords() const {
        return orv::PasswordStore(orv::PasswordStore::fileIn(paths.appPath), false);
    }
};

std::size_t filesIn(const std::filesystem::path& dir) {
    std::size_t n = 0;
    for (const auto& e : std::filesystem::directory_iterator(dir))
        n += e.is_regular_file();
    return n;
}

} // namespace

class TestEdiEditor : public QObject {
    Q_OBJECT

private:
    orv::test::FakeClock clock;
    orv::test::CountingBeeper beeper;
    QtDialogs dialogs;

private slots:
    void init() {
        QtDialogs::setRecording(true);
        QtDialogs::recorded().clear();
        EdiUploadHooks::keyring = false;
    }
    void cleanup() {
        QtDialogs::setRecording(false);
        QtDialogs::recorded().clear();
        SubmissionHooks::reset();
        EdiUploadHooks::reset();
        EdiEditor::choosePrinter = [](QPrinter&, QWidget*) { return false; };
    }

    void opensUpTo65000BytesAndSavesWithOneQuestion() {
        Station s;
        orv::ui::EdiSession session;
        std::filesystem::path next;
        int opened = 0, saveAsked = 0;
        SubmissionHooks::openFile = [&](QWidget*, const QString& title, const QString&,
                                        const std::filesystem::path&) {
            ++opened;
            [&] { QCOMPARE(title, q(s.texts(368))); }();
            return next;
        };
        SubmissionHooks::saveFile = [&](QWidget*, const QString& title, const QString&,
                                        const std::filesystem::path&) {
            ++saveAsked;
            [&] { QCOMPARE(title, q(s.texts(369))); }();
            return s.dir / "neu";
        };
        EdiEditor e(session, s.texts, dialogs, s.paths);
        QCOMPARE(e.windowTitle(), q(s.texts(365)));
        auto* text = e.findChild<QPlainTextEdit*>("Text1");

        next = s.dir / "full.EDI";
        orv::test::writeFile(next, std::string(64999, 'x') + "\n");
        QTest::mouseClick(e.findChild<QPushButton*>("Command3"), Qt::LeftButton);
        QCOMPARE(text->toPlainText().size(), 65000);
        QCOMPARE(session.editorPath, next);
        next = s.dir / "over.EDI";
        orv::test::writeFile(next, std::string(65001, 'y'));
        QTest::mouseClick(e.findChild<QPushButton*>("Command3"), Qt::LeftButton);
        QCOMPARE(said(), q(s.texts(367)));
        QVERIFY(session.editorPath.empty());
        QVERIFY(text->toPlainText().startsWith("xxx")); // the box keeps its text

        // A text without a file: the first save asks for the name, every
        // later one writes there silently, and no line is added.
        text->clear();
        text->setFocus();
        QTest::keyClicks(text, "PCall=OE1ABC");
        QTest::keyClick(text, Qt::Key_Return);
        QTest::keyClicks(text, "PBand=145 MHz");
        QTest::mouseClick(e.findChild<QPushButton*>("Command4"), Qt::LeftButton);
        QCOMPARE(saveAsked, 1);
        QCOMPARE(q(orv::test::readFile(s.dir / "neu.EDI")),
                 QString("PCall=OE1ABC\r\nPBand=145 MHz"));
        text->insertPlainText(QString::fromUtf8(" ä"));
        QTest::mouseClick(e.findChild<QPushButton*>("Command4"), Qt::LeftButton);
        QCOMPARE(saveAsked, 1);
        QCOMPARE(orv::test::readFile(s.dir / "neu.EDI"),
                 std::string("PCall=OE1ABC\r\nPBand=145 MHz \xE4"));
        QCOMPARE(opened, 2);

        // Esc closes; the next editor shows the same text and file.
        e.show();
        QVERIFY(QTest::qWaitForWindowExposed(&e));
        QTest::keyClick(text, Qt::Key_Escape);
        QVERIFY(!e.isVisible());
        EdiEditor again(session, s.texts, dialogs, s.paths);
        QCOMPARE(again.findChild<QPlainTextEdit*>("Text1")->toPlainText(),
                 QString("PCall=OE1ABC\nPBand=145 MHz ä"));
        QCOMPARE(session.editorPath, s.dir / "neu.EDI");
        // A folder that is gone: the message, and nothing written.
        session.editorPath = s.dir / "weg" / "x.EDI";
        QTest::mouseClick(again.findChild<QPushButton*>("Command4"), Qt::LeftButton);
        QCOMPARE(said(), q(s.texts(1108) + "\n" + session.editorPath.string()));
        QVERIFY(!std::filesystem::exists(s.dir / "weg"));
    }

    void printsTheTextAsPdf() {
        Station s;
        orv::ui::EdiSession session;
        session.editorText = orv::decodeEdiEditor(orv::test::readFile(kSample));
        EdiEditor e(session, s.texts, dialogs, s.paths);
        const auto pdf = s.dir / "edi.pdf";
        int asked = 0;
        EdiEditor::choosePrinter = [&](QPrinter& p, QWidget*) {
            ++asked;
            p.setOutputFormat(QPrinter::PdfFormat);
            p.setOutputFileName(q(pdf.string()));
            return true;
        };
        QTest::mouseClick(e.findChild<QPushButton*>("Command5"), Qt::LeftButton);
        QCOMPARE(asked, 1);
        QProcess pdftotext;
        pdftotext.start("pdftotext", {"-layout", q(pdf.string()), "-"});
        QVERIFY(pdftotext.waitForFinished(30000));
        const QString printed = QString::fromUtf8(pdftotext.readAllStandardOutput());
        for (const char* line : {"[REG1TEST;1]", "TName=Österreich VHF Contest", "Gruß aus Wien",
                                 "260502;1201;DL1ABC;1;59;0001;59;0001;;JN58TD;600;;;;",
                                 "260502;1204;OE3XYZ;1;59;0004;59;0004;;JN88EF;1900;;;;"})
            QVERIFY2(printed.contains(QString::fromUtf8(line)), line);
        // Blanks alone print nothing and ask for no printer.
        e.findChild<QPlainTextEdit*>("Text1")->setPlainText(" \n ");
        QTest::mouseClick(e.findChild<QPushButton*>("Command5"), Qt::LeftButton);
        QCOMPARE(asked, 1);
    }

    // After the export: the editor with the file, then the upload to a real
    // server; the next press of Command4 asks for a file.
    void exportLeadsToTheEditorAndTheUpload() {
        orv::test::TempDir home;
        orv::test::FtpServer server(home.path(), "contest", "geheim");
        QVERIFY(server.port() > 0);
        Station s(server.port());
        auto d = s.dialog(dialogs);
        QVERIFY(d->findChild<QPushButton*>("Command4")->text().contains("(127.0.0.1)"));
        SubmissionHooks::saveFile = [&](QWidget*, const QString&, const QString&,
                                        const std::filesystem::path&) { return s.dir / "out"; };
        QString editorText;
        SubmissionHooks::runModal = [&](QDialog& dlg) {
            if (auto* ed = qobject_cast<EdiEditor*>(&dlg))
                editorText = ed->findChild<QPlainTextEdit*>("Text1")->toPlainText();
            return 0;
        };
        QtDialogs::queueAnswer(Answer::Yes); // IText(366): edit
        QtDialogs::queueAnswer(Answer::Yes); // IText(324): upload
        QtDialogs::queueInput(std::string("geheim"));
        QTest::mouseClick(d->findChild<QPushButton*>("Command1"), Qt::LeftButton);

        const std::string written = orv::test::readFile(s.dir / "out.EDI");
        QVERIFY(editorText.startsWith("[REG1TEST;1]\nTName=Test Contest\n"));
        QCOMPARE(orv::ui::ediSession(d.get()).editorPath, s.dir / "out.EDI");
        const std::string remote = "OE1ABC_145MHz_20260502;20260502.EDI";
        QVERIFY(std::filesystem::exists(home / remote));
        QCOMPARE(orv::test::readFile(home / remote), written);
        QCOMPARE(said(), q(s.texts(322)));
        QCOMPARE(said(1),
                 q(s.texts(1105)).replace("%USER%", "contest").replace("%HOST%", "127.0.0.1"));
        // The password went to the file, never into the settings.
        QCOMPARE(s.passwords().load("127.0.0.1", "contest").value_or(""), std::string("geheim"));
        QVERIFY(orv::test::readFile(s.paths.iniPath()).find("geheim") == std::string::npos);

        int asked = 0;
        SubmissionHooks::openFile = [&](QWidget*, const QString& title, const QString& filter,
                                        const std::filesystem::path&) {
            ++asked;
            [&] {
                QCOMPARE(title, QString("Open..."));
                QCOMPARE(filter, QString("*.EDI"));
            }();
            return std::filesystem::path();
        };
        QTest::mouseClick(d->findChild<QPushButton*>("Command4"), Qt::LeftButton);
        QCOMPARE(asked, 1);
        QCOMPARE(filesIn(home.path()), std::size_t{1});
    }

    // A written file over 65,000 bytes: IText(367) instead of the editor,
    // the editor's file forgotten, and the upload question still asked.
    void exportTooLargeForTheEditor() {
        Station s;
        auto d = s.dialog(dialogs);
        auto& session = orv::ui::ediSession(d.get());
        session.editorPath = s.dir / "earlier.EDI";
        d->findChild<QPlainTextEdit*>("Text1(35)")->setPlainText(QString(65000, 'r'));
        SubmissionHooks::saveFile = [&](QWidget*, const QString&, const QString&,
                                        const std::filesystem::path&) { return s.dir / "big"; };
        bool editorShown = false;
        SubmissionHooks::runModal = [&](QDialog&) { return editorShown = true; };
        QtDialogs::queueAnswer(Answer::Yes); // IText(366): edit
        QtDialogs::queueAnswer(Answer::No);  // IText(324): no upload
        QTest::mouseClick(d->findChild<QPushButton*>("Command1"), Qt::LeftButton);
        QVERIFY(std::filesystem::file_size(s.dir / "big.EDI") > 65000);
        QVERIFY(!editorShown);
        QVERIFY(session.editorPath.empty());
        QCOMPARE(said(1), q(s.texts(367)));
        QCOMPARE(said(), q(s.texts(324) + "\n" + s.texts(325)));
    }

    void uploadRefusalsAndTheirMessages() {
        orv::test::TempDir home;
        orv::test::FtpServer server(home.path(), "contest", "geheim");
        QVERIFY(server.port() > 0);
        Station s(server.port());
        orv::test::writeFile(s.dir / "noedi.EDI", "[REG1TEST;1]\r\nPCall=OE1ABC\r\n");
        std::filesystem::path choice;
        SubmissionHooks::openFile = [&](QWidget*, const QString&, const QString&,
                                        const std::filesystem::path&) { return choice; };
        auto d = s.dialog(dialogs);
        auto press = [&](const std::filesystem::path& file) {
            choice = file;
            QtDialogs::recorded().clear();
            QTest::mouseClick(d->findChild<QPushButton*>("Command4"), Qt::LeftButton);
        };

        // No PCall or PBand: the message, and no password asked.
        press(s.dir / "noedi.EDI");
        QCOMPARE(QtDialogs::recorded().size(), std::size_t{1});
        QCOMPARE(said(), q(s.texts(327)));
        // A file gone since it was chosen.
        press(s.dir / "gone.EDI");
        QCOMPARE(said(), q(s.texts(1101) + "\n" + (s.dir / "gone.EDI").string()));
        // A refused login says nothing, as a failed connection, and the
        // password is forgotten so the next upload asks again.
        s.passwords().save("127.0.0.1", "contest", "falsch");
        press(kSample);
        QCOMPARE(QtDialogs::recorded().size(), std::size_t{0});
        QVERIFY(!s.passwords().load("127.0.0.1", "contest"));
        QCOMPARE(filesIn(home.path()), std::size_t{0});
        // Nothing listening: the message with the host name.
        s.settings->set(orv::keys::UploadPort, orv::test::closedPort());
        QtDialogs::queueInput(std::string("geheim"));
        press(kSample);
        QCOMPARE(said(), q(s.texts(328) + "\n127.0.0.1"));
        QCOMPARE(filesIn(home.path()), std::size_t{0});
        // No server set at all.
        s.settings->set(orv::keys::UploadHost, "");
        press(kSample);
        QCOMPARE(said(), q(s.texts(1102)));
    }

    // A server that accepts the connection and never answers: the window
    // goes on answering under "UPLoading...", and the cancel ends the
    // transfer without a message.
    void uploadRunsBesideTheWindowAndCancels() {
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        QList<QTcpSocket*> held;
        connect(&silent, &QTcpServer::newConnection, [&] {
            while (QTcpSocket* c = silent.nextPendingConnection())
                held << c;
        });
        Station s(silent.serverPort());
        s.passwords().save("127.0.0.1", "contest", "geheim");
        auto d = s.dialog(dialogs);
        d->show();
        SubmissionHooks::openFile = [&](QWidget*, const QString&, const QString&,
                                        const std::filesystem::path&) { return kSample; };
        QString label;
        bool visible = false;
        QTimer::singleShot(300, [&] {
            auto* p = d->findChild<QProgressDialog*>("UploadProgress");
            if (!p)
                return;
            visible = p->isVisible();
            label = p->labelText();
            if (auto* b = p->findChild<QPushButton*>())
                QTest::mouseClick(b, Qt::LeftButton);
        });
        QElapsedTimer took;
        took.start();
        QTest::mouseClick(d->findChild<QPushButton*>("Command4"), Qt::LeftButton);
        QVERIFY(visible);
        QCOMPARE(label, QString("UPLoading..."));
        QVERIFY(!held.isEmpty());
        QCOMPARE(QtDialogs::recorded().size(), std::size_t{0});
        QVERIFY2(took.elapsed() < 10000, "the cancel did not end the transfer");
    }

    // Through the program's start: both menu entries are enabled; the
    // editor opens with its text, the upload asks for a file.
    void menuEntries() {
        orv::test::TempDir dir;
        orv::test::writeFile(dir / "OrvantaContest.INI", "[QB]\nEinverstanden=-1\n");
        orv::ui::Startup st(dir.path(), dialogs, clock, beeper);
        st.runLogDialog = orv::test::createLog("Menu");
        QCOMPARE(st.run(), orv::ui::Startup::Outcome::Run);
        orv::ui::MainWindow* w = st.window();
        orv::ui::ediSession(w).editorText.text = "PCall=DL0XYZ";
        QStringList shown;
        SubmissionHooks::runModal = [&](QDialog& d) {
            shown << d.objectName() + ":" + d.findChild<QPlainTextEdit*>("Text1")->toPlainText();
            return 0;
        };
        int asked = 0;
        SubmissionHooks::openFile = [&](QWidget*, const QString&, const QString&,
                                        const std::filesystem::path&) {
            ++asked;
            return std::filesystem::path();
        };
        for (const char* name : {"MnEDIEdit", "MnEDIUpload"})
            QVERIFY2(w->findChild<QAction*>(name)->isEnabled(), name);
        w->findChild<QAction*>("MnEDIEdit")->trigger();
        QCOMPARE(shown, QStringList({"Form16:PCall=DL0XYZ"}));
        w->findChild<QAction*>("MnEDIUpload")->trigger();
        w->findChild<QAction*>("MnEDIUpload")->trigger();
        QCOMPARE(asked, 2);
    }
};

QTEST_MAIN(TestEdiEditor)
#include "test_edi_editor.moc"
