// The program's start in a temporary data folder: one instance, the
// liability question, the language menu, the lists, the log chooser, and a
// QSO typed into the window that ends up in the log file.
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QLockFile>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableView>
#include <QTest>
#include <sys/wait.h>
#include <unistd.h>

#include "core/logstore/contest_log.h"
#include "core/settings/ini_file.h"
#include "platform/qt_dialogs.h"
#include "support/fakes.h"
#include "support/temp_dir.h"
#include "ui/log_dialog.h"
#include "ui/main_window.h"
#include "ui/startup.h"
#include "ui_support.h"

using orv::Answer;
using orv::platform::QtDialogs;
using orv::test::createLog;
using orv::ui::LogDialog;
using orv::ui::Startup;

class TestStartup : public QObject {
    Q_OBJECT

private:
    orv::test::FakeClock clock;
    orv::test::CountingBeeper beeper;
    QtDialogs dialogs;

    void agree(const orv::test::TempDir& dir) {
        orv::test::writeFile(dir / "OrvantaContest.INI", "[QB]\nEinverstanden=-1\n");
    }

private slots:
    void init() {
        QtDialogs::setRecording(true);
        QtDialogs::recorded().clear();
    }
    void cleanup() {
        QtDialogs::setRecording(false);
        QtDialogs::recorded().clear();
    }

    void secondStartEndsSilently() {
        orv::test::TempDir dir;
        agree(dir);
        Startup first(dir.path(), dialogs, clock, beeper);
        first.runLogDialog = createLog("first");
        QCOMPARE(first.run(), Startup::Outcome::Run);
        QtDialogs::recorded().clear();

        Startup second(dir.path(), dialogs, clock, beeper);
        bool chooserShown = false;
        second.runLogDialog = [&](LogDialog&) { return chooserShown = true; };
        QCOMPARE(second.run(), Startup::Outcome::AlreadyRunning);
        QVERIFY(!chooserShown);
        QVERIFY(QtDialogs::recorded().empty());
        QCOMPARE(second.window(), nullptr);
    }

    // A program that died (a power cut on the mountain) leaves its lock
    // behind; the next start must not take that for a running program.
    void lockOfADeadProgramDoesNotStopTheNextStart() {
        orv::test::TempDir dir;
        agree(dir);
        const pid_t pid = fork();
        QVERIFY(pid >= 0);
        if (pid == 0) {
            QLockFile lock(QString::fromStdString((dir.path() / "OrvantaContest.lock").string()));
            _exit(lock.tryLock(0) ? 0 : 1); // ends without unlocking
        }
        int status = 0;
        waitpid(pid, &status, 0);
        QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 0);
        QVERIFY(std::filesystem::exists(dir.path() / "OrvantaContest.lock"));

        Startup s(dir.path(), dialogs, clock, beeper);
        s.runLogDialog = createLog("after");
        QCOMPARE(s.run(), Startup::Outcome::Run);
    }

    void liabilityIsAskedOncePerSettingsFile() {
        orv::test::TempDir dir;
        {
            Startup s(dir.path(), dialogs, clock, beeper);
            QtDialogs::queueAnswer(Answer::No);
            QCOMPARE(s.run(), Startup::Outcome::Declined);
            QCOMPARE(QtDialogs::recorded().size(), std::size_t{1});
            QVERIFY(QString::fromStdString(QtDialogs::recorded().front())
                        .startsWith("Der Autor übernimmt keinerlei Haftung"));
        }
        QCOMPARE(orv::IniFile(dir / "OrvantaContest.INI").getInt("QB", "Einverstanden"), 0LL);
        {
            Startup s(dir.path(), dialogs, clock, beeper);
            QtDialogs::queueAnswer(Answer::Yes);
            s.runLogDialog = [](LogDialog&) { return false; };
            QCOMPARE(s.run(), Startup::Outcome::NoLog);
        }
        QCOMPARE(orv::IniFile(dir / "OrvantaContest.INI").getInt("QB", "Einverstanden"), -1LL);
        QtDialogs::recorded().clear();
        {
            Startup s(dir.path(), dialogs, clock, beeper);
            s.runLogDialog = [](LogDialog&) { return false; };
            QCOMPARE(s.run(), Startup::Outcome::NoLog);
            QVERIFY(QtDialogs::recorded().empty());
        }
    }

    void listsComeFromTheSettingsFile() {
        orv::test::TempDir dir;
        orv::test::writeFile(dir / "OrvantaContest.INI",
                             "[QB]\nEinverstanden=-1\nOPCall=DL2OPB\nProp=TR\n"
                             "[OPCallList]\nDL1OPA\nDL2OPB¶voice.wav¶text¶tone.wav\n"
                             "[AUSBR]\nTR\nES\n");
        Startup s(dir.path(), dialogs, clock, beeper);
        s.runLogDialog = createLog("lists");
        QCOMPARE(s.run(), Startup::Outcome::Run);
        auto* w = s.window();
        QCOMPARE(w->windowTitle(), QString("OrvantaContest - [lists.sqlite]"));
        auto* ops = w->findChild<QComboBox*>("Combo8");
        QCOMPARE(ops->count(), 2);
        QCOMPARE(ops->itemText(1), QString("DL2OPB"));
        QCOMPARE(ops->currentText(), QString("DL2OPB"));
        // An empty MODE section is rebuilt with the three modes.
        auto* modes = w->findChild<QComboBox*>("Combo3");
        QCOMPARE(modes->count(), 3);
        QCOMPARE(modes->itemText(0), QString("SSB"));
        QCOMPARE(modes->itemText(2), QString("FM"));
        QCOMPARE(orv::IniFile(dir / "OrvantaContest.INI").readSection("MODE").size(),
                 std::size_t{3});
        auto* prop = w->findChild<QComboBox*>("Combo6");
        QCOMPARE(prop->count(), 3); // two entries and the empty one
        QCOMPARE(prop->currentText(), QString("TR"));
        QCOMPARE(w->findChild<QLineEdit*>("Text11")->text(), QString("DL0XYZ"));
        QCOMPARE(w->findChild<QComboBox*>("Combo1")->currentText(), QString("144"));
    }

    void languageMenuSwitchesCaptions() {
        orv::test::TempDir dir;
        agree(dir);
        std::filesystem::create_directories(dir / "Language");
        orv::test::writeFile(dir / "Language" / "English.lng",
                             "# OrvantaContest Language File V1.0\n261 = Open log\n151=Call\n");
        orv::test::writeFile(dir / "Language" / "Broken.lng", "no marker here\n261=Kaputt\n");
        orv::test::writeFile(dir / "Language" / "Long.lng",
                             "# OrvantaContest Language File V1.0\n151=Rufz.\n2001=Zu weit\n");
        Startup s(dir.path(), dialogs, clock, beeper);
        s.runLogDialog = createLog("lang");
        QCOMPARE(s.run(), Startup::Outcome::Run);
        auto* w = s.window();
        auto* open = w->findChild<QAction*>("MnLoadLog");
        QCOMPARE(open->text(), QString("Log Öffnen"));
        QVERIFY(w->findChild<QAction*>("MnDefault0")->isChecked());
        // Directory entries in name order after "<Default>".
        QCOMPARE(w->findChild<QAction*>("MnDefault1")->text(), QString("Broken.lng"));
        QAction* english = w->findChild<QAction*>("MnDefault2");
        QCOMPARE(english->text(), QString("English.lng"));

        // The about box has controls named like the main window's; a change
        // of language leaves them alone.
        w->showAbout();
        english->trigger();
        auto* about = w->findChild<QDialog*>("Form10");
        QVERIFY(about->findChild<QLabel*>("Label1")->text().contains("OrvantaContest"));
        QCOMPARE(about->findChild<QPushButton*>("Command1")->text(), QString("OK"));
        about->close();
        QCOMPARE(open->text(), QString("Open log"));
        QCOMPARE(w->findChild<QLabel*>("Label2")->text(), QString("Call"));
        QVERIFY(english->isChecked());
        QCOMPARE(orv::IniFile(dir / "OrvantaContest.INI").getStr("QB-OPTION", "Language"),
                 std::string("English.lng"));
        auto* grid = w->findChild<QTableView*>("MSFlexGrid1");
        QCOMPARE(grid->model()->headerData(0, Qt::Horizontal).toString(), QString("Call"));

        // A file without the marker changes nothing and says so.
        w->findChild<QAction*>("MnDefault1")->trigger();
        QCOMPARE(open->text(), QString("Open log"));
        QCOMPARE(QtDialogs::recorded().back(), std::string("Die Sprachdatei ist ungültig!"));

        // A row past 500 stops the reading with a message; rows before stay.
        QAction* longFile = w->findChild<QAction*>("MnDefault3");
        QCOMPARE(longFile->text(), QString("Long.lng"));
        longFile->trigger();
        QCOMPARE(QtDialogs::recorded().back(), std::string("FEHLER\nUngültiger Wert: 2001"));
        QCOMPARE(w->findChild<QLabel*>("Label2")->text(), QString("Rufz."));

        w->findChild<QAction*>("MnDefault0")->trigger();
        QCOMPARE(open->text(), QString("Log Öffnen"));
        QCOMPARE(w->findChild<QLabel*>("Label2")->text(), QString("Rufzeichen"));
    }

    void storedLanguageIsLoadedAtStart() {
        orv::test::TempDir dir;
        orv::test::writeFile(dir / "OrvantaContest.INI",
                             "[QB]\nEinverstanden=-1\n[QB-OPTION]\nLanguage=English.lng\n");
        std::filesystem::create_directories(dir / "Language");
        orv::test::writeFile(dir / "Language" / "English.lng",
                             "# OrvantaContest Language File V1.0\n261=Open log\n");
        Startup s(dir.path(), dialogs, clock, beeper);
        s.runLogDialog = createLog("stored");
        QCOMPARE(s.run(), Startup::Outcome::Run);
        QCOMPARE(s.window()->findChild<QAction*>("MnLoadLog")->text(), QString("Open log"));
        QVERIFY(s.window()->findChild<QAction*>("MnDefault1")->isChecked());
    }

    void chooserRefusesAndAsksBeforeOverwriting() {
        orv::test::TempDir dir;
        agree(dir);
        Startup s(dir.path(), dialogs, clock, beeper);
        s.runLogDialog = [&](LogDialog& d) {
            // No contest name: IText(28) in the status line, nothing made.
            d.findChild<QComboBox*>("Text1")->setEditText("DL0XYZ");
            d.findChild<QLineEdit*>("Text2")->setText("JO62QM");
            d.findChild<QComboBox*>("Combo4")->setEditText("");
            d.newLog();
            if (d.findChild<QLabel*>("Label1")->text() != "Ungültige Contest Bezeichnung")
                return false;
            d.findChild<QComboBox*>("Combo4")->setEditText("Test contest");
            // The proposed name is the day; taking it twice asks first.
            QtDialogs::queueInput(std::nullopt);
            d.newLog();
            if (QtDialogs::recorded().back() != "Namen für neues Log eingeben")
                return false;
            QtDialogs::queueInput("20260502");
            d.newLog();
            return d.result() == QDialog::Accepted;
        };
        QCOMPARE(s.run(), Startup::Outcome::Run);
        QVERIFY(std::filesystem::exists(dir / "Logs" / "20260502.sqlite"));

        // A second chooser over the same folder: No on overwrite asks for a
        // name again, and a cancel there leaves the file as it was.
        LogDialog d(s.settings(), s.paths(), s.texts(), dialogs, clock, beeper);
        d.findChild<QComboBox*>("Combo4")->setEditText("Test contest");
        QtDialogs::recorded().clear();
        QtDialogs::queueInput("20260502");
        QtDialogs::queueAnswer(Answer::No);
        QtDialogs::queueInput(std::nullopt);
        d.newLog();
        QCOMPARE(QtDialogs::recorded().size(), std::size_t{3});
        QCOMPARE(QtDialogs::recorded()[1], std::string("Datei existiert bereits! Überschreiben?"));
        QVERIFY(!d.chosen());
        // The own call was remembered at the top of the history.
        QCOMPARE(d.findChild<QComboBox*>("Text1")->itemText(0), QString("DL0XYZ"));
        // An existing log is opened by choosing it.
        d.openExisting("20260502");
        QVERIFY(d.chosen());
        QCOMPARE(d.chosen()->myLocator, std::string("JO62QM"));
    }

    // A file in Logs/ that is no log, and a new log that cannot be written,
    // show their description; the chooser stays and the program goes on.
    void chooserSurvivesBadFiles() {
        orv::test::TempDir dir;
        agree(dir);
        std::filesystem::create_directories(dir / "Logs" / "blocked.sqlite" / "inside");
        orv::test::writeFile(dir / "Logs" / "broken.sqlite", "this is no database at all\n");
        Startup s(dir.path(), dialogs, clock, beeper);
        bool stayed = false;
        s.runLogDialog = [&](LogDialog& d) {
            d.openExisting("broken");
            if (d.result() == QDialog::Accepted || d.chosen())
                return false;
            d.findChild<QComboBox*>("Text1")->setEditText("DL0XYZ");
            d.findChild<QLineEdit*>("Text2")->setText("JO62QM");
            d.findChild<QComboBox*>("Combo4")->setEditText("Test contest");
            QtDialogs::queueInput("blocked");
            QtDialogs::queueAnswer(Answer::Yes);
            d.newLog();
            stayed = d.result() != QDialog::Accepted && !d.chosen();
            QtDialogs::queueInput("good");
            d.newLog();
            return d.result() == QDialog::Accepted;
        };
        QCOMPARE(s.run(), Startup::Outcome::Run);
        QVERIFY(stayed);
        QStringList shown;
        for (const auto& m : QtDialogs::recorded())
            shown << QString::fromStdString(m);
        QCOMPARE(shown.filter(QRegularExpression("^FEHLER\n.+")).size(), 2);
        QCOMPARE(s.window()->windowTitle(), QString("OrvantaContest - [good.sqlite]"));
        QVERIFY(std::filesystem::is_directory(dir / "CWAudio"));
        QCOMPARE(orv::test::readFile(dir / "Logs" / "broken.sqlite"),
                 std::string("this is no database at all\n"));
    }

    void typedQsoLandsInTheLogFile() {
        orv::test::TempDir dir;
        agree(dir);
        Startup s(dir.path(), dialogs, clock, beeper);
        s.runLogDialog = createLog("contest");
        QCOMPARE(s.run(), Startup::Outcome::Run);
        auto* w = s.window();
        w->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(w));
        auto* call = w->findChild<QLineEdit*>("Text3");
        QTRY_VERIFY(call->hasFocus());

        // Call, space, report kept, space, received report, space, locator.
        QTest::keyClicks(call, "dl1abc-p");
        QTest::keyClick(call, Qt::Key_Space);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QTest::keyClicks(QApplication::focusWidget(), "59001");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QTest::keyClicks(QApplication::focusWidget(), "jo31aa");
        QVERIFY(!w->findChild<QLineEdit*>("Text8")->text().isEmpty());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);

        QCOMPARE(w->findChild<QLabel*>("Label13")->text(), QString());
        QCOMPARE(call->text(), QString());
        QVERIFY(call->hasFocus());
        QCOMPARE(w->findChild<QLineEdit*>("Text5")->text(), QString("002"));
        auto* grid = w->findChild<QTableView*>("MSFlexGrid1");
        QCOMPARE(grid->model()->rowCount(), 1);
        QCOMPARE(grid->model()->index(0, 0).data().toString(), QString("DL1ABC/P"));
        QCOMPARE(w->findChild<QLabel*>("Label18")->text(), QString("1"));

        auto log = orv::ContestLog::open(dir / "Logs" / "contest.sqlite");
        QVERIFY(log.ok());
        const auto rows = log.value().rows(1);
        QCOMPARE(rows.size(), std::size_t{1});
        QCOMPARE(rows[0].call, std::string("DL1ABC/P"));
        QCOMPARE(rows[0].locator, std::string("JO31AA"));
        QCOMPARE(rows[0].rstGeg, std::string("59"));
        QCOMPARE(rows[0].rstErh, std::string("59001"));
        QCOMPARE(rows[0].qsoNr, 1LL);
        QVERIFY(rows[0].qrb > 0);
        QCOMPARE(rows[0].datTime.toStorage(), std::string("2026-05-02 14:30:00"));
        QCOMPARE(w->findChild<QLabel*>("Label19")->text(), QString::number(rows[0].qrb));

        // The same call again is a duplicate: leaving the call field shows the
        // panel, and Return then empties the entry line instead of a commit.
        const int beepsBefore = beeper.beeps;
        QTest::keyClicks(call, "DL1ABC/P");
        QTest::keyClick(call, Qt::Key_Space);
        QVERIFY(w->findChild<QWidget*>("Picture11")->isVisible());
        QVERIFY(beeper.beeps > beepsBefore);
        QCOMPARE(w->findChild<QLabel*>("Dup1")->text(), QString("DL1ABC/P"));
        w->findChild<QLineEdit*>("Text4")->setText("599");
        w->findChild<QLineEdit*>("Text6")->setText("59002");
        w->findChild<QLineEdit*>("Text7")->setText("JO31AA");
        QTest::keyClick(w->findChild<QLineEdit*>("Text7"), Qt::Key_Return);
        QVERIFY(!w->findChild<QWidget*>("Picture11")->isVisible());
        QCOMPARE(call->text(), QString());
        QCOMPARE(w->findChild<QLineEdit*>("Text4")->text(), QString("59"));
        QCOMPARE(w->findChild<QLineEdit*>("Text7")->text(), QString());
        QCOMPARE(orv::ContestLog::open(dir / "Logs" / "contest.sqlite").value().rows(1).size(),
                 std::size_t{1});

        // A bad locator is refused with its text and the focus on the field.
        w->findChild<QLineEdit*>("Text3")->setText("OK1XYZ");
        w->findChild<QLineEdit*>("Text7")->setText("JO31");
        QTest::keyClick(w->findChild<QLineEdit*>("Text3"), Qt::Key_Return);
        QCOMPARE(w->findChild<QLabel*>("Label13")->text(), QString("Ungültiger Locator"));
        QTRY_VERIFY(w->findChild<QLineEdit*>("Text7")->hasFocus());
    }
};

QTEST_MAIN(TestStartup)
#include "test_startup.moc"
