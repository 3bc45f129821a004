// The main window over a real log in a temporary data folder: duplicates
// resolved with F11, the correction line, deletion and restore from the
// grid, band changes, emptying a band, the ODX box, the rate settings, the
// square window and the change of log. Questions are answered through the
// dialog queue; nothing runs a modal loop.
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableView>
#include <QTableWidget>
#include <QTest>

#include "core/locator/square_window.h"
#include "core/logstore/contest_log.h"
#include "core/settings/ini_file.h"
#include "platform/qt_dialogs.h"
#include "running_window.h"
#include "support/fakes.h"
#include "support/temp_dir.h"
#include "ui/capture_binding.h"
#include "ui/log_dialog.h"
#include "ui/log_grid_model.h"
#include "ui/main_window.h"
#include "ui/square_window.h"
#include "ui/startup.h"
#include "ui_support.h"

using orv::Answer;
using orv::platform::QtDialogs;
using orv::test::createLog;
using orv::ui::LogDialog;
using orv::ui::MainWindow;
using orv::ui::Startup;

class TestCorrection : public QObject, protected orv::test::RunningWindow {
    Q_OBJECT

private:
    orv::ui::LogGridModel& grid() { return w->logGrid(); }
    std::string lastMessage() {
        return QtDialogs::recorded().empty() ? std::string() : QtDialogs::recorded().back();
    }
    void openCorrection(int row) {
        w->gridDoubleClicked(row);
        QVERIFY(w->editLineOpen());
    }

private slots:
    void init() {
        beeper.beeps = 0;
        ended = 0;
        QVERIFY(start("main"));
    }
    void cleanup() { stop(); }

    // A log that cannot be written (here: its MyData row is gone) shows the
    // failure with Retry and Cancel; the typed QSO stays in the entry row and
    // the program goes on.
    void aFailingWriteIsShownAndTheEntryRowStays() {
        logQso("DL1AAA", "JO31AA");
        app->log()->db().exec("DELETE FROM MyData");
        QtDialogs::recorded().clear();
        QtDialogs::queueAnswer(Answer::Retry);
        QtDialogs::queueAnswer(Answer::Cancel);
        logQso("DL2BBB", "JO52AA");
        QStringList shown;
        for (const auto& m : QtDialogs::recorded())
            shown << QString::fromStdString(m);
        QCOMPARE(shown.filter(QRegularExpression("^FEHLER\n")).size(), 2);
        QCOMPARE(edit("Text3")->text(), QString("DL2BBB"));
        QCOMPARE(stored().size(), 1u);
        QCOMPARE(grid().rowCount(), 1);
    }

    void f11MarksTheEarlierQsoAndTheRetypedOneIsStored() {
        logQso("DL1ABC", "JO31AA");
        QCOMPARE(grid().rowCount(), 1);
        logQso("DL1ABC", "JO31AB", "59002");
        QVERIFY(w->findChild<QWidget*>("Picture11")->isVisible());
        QCOMPARE(stored().size(), std::size_t{1});

        QtDialogs::queueAnswer(Answer::Yes);
        QTest::keyClick(edit("Text7"), Qt::Key_F11);
        QCOMPARE(lastMessage(),
                 std::string("Soll dieses QSO wirklich als gelöscht markiert werden?"));
        QVERIFY(!w->findChild<QWidget*>("Picture11")->isVisible());
        QVERIFY(grid().isDeleted(0));
        QCOMPARE(label("Label31"), QString("1"));
        QCOMPARE(label("Label19"), QString("0"));

        // The row was left as typed; Enter stores it now.
        QTest::keyClick(edit("Text3"), Qt::Key_Return);
        const auto rows = stored();
        QCOMPARE(rows.size(), std::size_t{2});
        QVERIFY(rows[0].errQso);
        QVERIFY(!rows[1].errQso);
        QCOMPARE(rows[1].locator, std::string("JO31AB"));
        QCOMPARE(rows[1].qsoNr, 2LL);
        QCOMPARE(label("Label19"), QString::number(rows[1].qrb));
    }

    void loweringTheOdxLetsItFallBack() {
        logQso("DL1AAA", "JO31AA"); // far
        logQso("DL2BBB", "JO52AA"); // nearer
        const auto before = stored();
        QVERIFY(before[0].qrb > before[1].qrb);
        QCOMPARE(label("Label21"), QString::number(before[0].qrb));

        openCorrection(0);
        QTRY_VERIFY(edit("Text33")->hasFocus());
        QCOMPARE(edit("Text33")->text(), QString("DL1AAA"));
        QCOMPARE(edit("Text55")->text(), QString("001"));
        QCOMPARE(edit("Text88")->text(), QString::number(before[0].qrb));
        QVERIFY(!w->findChild<QWidget*>("Picture3")->isVisible());
        QVERIFY(!w->findChild<QWidget*>("Frame1")->isEnabled());
        // Ctrl+T goes to the time of the correction line.
        QTest::keyClick(edit("Text33"), Qt::Key_T, Qt::ControlModifier);
        QTRY_VERIFY(edit("Text22")->hasFocus());

        edit("Text77")->setText("JO62QN");
        QVERIFY(edit("Text88")->text().toLongLong() < before[1].qrb);
        QTest::keyClick(edit("Text77"), Qt::Key_Return);

        QVERIFY(!w->editLineOpen());
        QVERIFY(w->findChild<QWidget*>("Frame1")->isEnabled());
        QTRY_VERIFY(edit("Text3")->hasFocus());
        const auto after = stored();
        QCOMPARE(after[0].locator, std::string("JO62QN"));
        QCOMPARE(label("Label21"), QString::number(before[1].qrb));
        QCOMPARE(label("Label19"), QString::number(after[0].qrb + after[1].qrb));
        QCOMPARE(grid().row(0)[orv::ui::LogGridModel::Locator], QString("JO62QN"));
        auto log = orv::ContestLog::open(*dir / "Logs" / "main.sqlite");
        QCOMPARE(log.value().totals(1).odx, before[1].qrb);
        QCOMPARE(log.value().totals(1).odxNr, 2LL);
    }

    void correctionRefusesEscapesAndAsksAboutDupes() {
        logQso("DL1AAA", "JO31AA");
        logQso("DL2BBB", "JO52AA");
        const auto before = stored();

        // A short locator: the message, a beep, focus on the field; nothing stored.
        openCorrection(1);
        edit("Text77")->setText("JO5");
        const int beeps = beeper.beeps;
        QTest::keyClick(edit("Text77"), Qt::Key_Return);
        QCOMPARE(label("Label13"), QString("Ungültiger Locator"));
        QVERIFY(beeper.beeps > beeps);
        QTRY_VERIFY(edit("Text77")->hasFocus());
        QVERIFY(w->editLineOpen());
        // Escape drops the change.
        QTest::keyClick(edit("Text77"), Qt::Key_Escape);
        QVERIFY(!w->editLineOpen());
        QVERIFY(w->findChild<QWidget*>("Picture3")->isVisible());
        QCOMPARE(stored()[1].locator, std::string("JO52AA"));

        // A menu pulled down closes the correction first.
        openCorrection(1);
        emit w->findChild<QMenu*>("MnDatei")->aboutToShow();
        QVERIFY(!w->editLineOpen());

        // The call of another live QSO: Yes scores this one nothing.
        w->selectGridRow(1);
        QTest::keyClick(w->findChild<QTableView*>("MSFlexGrid1"), Qt::Key_Return);
        QVERIFY(w->editLineOpen());
        QTRY_VERIFY(edit("Text33")->hasFocus());
        edit("Text33")->setText("DL1AAA");
        QtDialogs::queueAnswer(Answer::Yes);
        QTest::keyClick(edit("Text33"), Qt::Key_Return);
        QCOMPARE(lastMessage(), std::string("Call bereits vorhanden, als DUPE markieren?"));
        const auto after = stored();
        QCOMPARE(after[1].call, std::string("DL1AAA"));
        QCOMPARE(after[1].qrb, 0LL);
        QCOMPARE(label("Label19"), QString::number(before[0].qrb));
        QCOMPARE(edit("Text3")->text(), QString());
    }

    void correctionLineWalksAndFiltersLikeTheEntryRow() {
        logQso("DL1AAA", "JO31AA");
        openCorrection(0);
        QTRY_VERIFY(edit("Text33")->hasFocus());
        edit("Text33")->clear();
        QTest::keyClicks(edit("Text33"), "dl1aaa-p");
        QCOMPARE(edit("Text33")->text(), QString("DL1AAA/P"));
        QTest::keyClick(edit("Text33"), Qt::Key_Space);
        QTRY_VERIFY(edit("Text44")->hasFocus());
        QCOMPARE(edit("Text44")->cursorPosition(), 0);
        QTest::keyClick(edit("Text44"), Qt::Key_Space);
        QTRY_VERIFY(edit("Text66")->hasFocus());
        const int beeps = beeper.beeps;
        QTest::keyClick(edit("Text66"), Qt::Key_X);
        QVERIFY(beeper.beeps > beeps);
        QVERIFY(!edit("Text66")->text().contains('X'));
        QTest::keyClick(edit("Text66"), Qt::Key_Space);
        QTRY_VERIFY(edit("Text77")->hasFocus());
        QTest::keyClick(edit("Text77"), Qt::Key_Space, Qt::ShiftModifier);
        QTRY_VERIFY(edit("Text66")->hasFocus());
        QTest::keyClick(edit("Text66"), Qt::Key_Return);
        QVERIFY(!w->editLineOpen());
        QCOMPARE(stored()[0].call, std::string("DL1AAA/P"));
    }

    void contextMenuFitsTheRowAndRestoreAsks() {
        logQso("DL1AAA", "JO31AA");
        logQso("DL2BBB", "JO52AA");
        QMenu* m = w->gridMenuFor(1);
        QVERIFY(m);
        QVERIFY(w->findChild<QAction*>("MnGrid1Edit")->isVisible());
        QVERIFY(w->findChild<QAction*>("MnMarkASKill")->isVisible());
        QVERIFY(!w->findChild<QAction*>("MnGrid1KillRetur")->isVisible());
        QVERIFY(!w->gridMenuFor(2));

        // Marked deleted from the menu, answered No first: nothing changes.
        w->gridMenuFor(0);
        QtDialogs::queueAnswer(Answer::No);
        w->findChild<QAction*>("MnMarkASKill")->trigger();
        QVERIFY(!stored()[0].errQso);
        QtDialogs::queueAnswer(Answer::Yes);
        w->findChild<QAction*>("MnMarkASKill")->trigger();
        QVERIFY(stored()[0].errQso);
        QVERIFY(grid().isDeleted(0));

        w->gridMenuFor(0);
        QVERIFY(!w->findChild<QAction*>("MnGrid1Edit")->isVisible());
        QVERIFY(!w->findChild<QAction*>("MnMarkASKill")->isVisible());
        QVERIFY(w->findChild<QAction*>("MnGrid1KillRetur")->isVisible());

        // A double click on the deleted row asks before restoring.
        QtDialogs::queueAnswer(Answer::No);
        w->gridDoubleClicked(0);
        QCOMPARE(lastMessage(), std::string("Soll dieses QSO wieder hergestellt werden?"));
        QVERIFY(stored()[0].errQso);
        QVERIFY(!w->editLineOpen());

        // Worked again meanwhile: the restore is refused with its message.
        logQso("DL1AAA", "JO31AA", "59003");
        QtDialogs::queueAnswer(Answer::Yes);
        w->gridDoubleClicked(0);
        QCOMPARE(lastMessage(),
                 std::string("Rufzeichen existiert bereits und kann nicht wieder hergestellt "
                             "werden!"));
        QVERIFY(stored()[0].errQso);

        // Once that one is deleted, the menu's entry restores the first.
        QtDialogs::queueAnswer(Answer::Yes);
        w->gridMenuFor(2);
        w->findChild<QAction*>("MnMarkASKill")->trigger();
        w->gridMenuFor(0);
        w->findChild<QAction*>("MnGrid1KillRetur")->trigger();
        QVERIFY(!stored()[0].errQso);
        QVERIFY(!grid().isDeleted(0));
        QCOMPARE(label("Label31"), QString("1"));
        QCOMPARE(label("Label19"), QString::number(stored()[0].qrb + stored()[1].qrb));
    }

    void bandChangeRestoresTotals() {
        logQso("DL1AAA", "JO31AA");
        logQso("DL2BBB", "JO52AA");
        const QString sum = label("Label19");
        const QString odx = label("Label21");
        w->findChild<QComboBox*>("Combo6")->setEditText("TR");

        w->findChild<QPushButton*>("BandSel2")->click();
        QCOMPARE(grid().rowCount(), 0);
        QCOMPARE(label("Label19"), QString("0"));
        QCOMPARE(label("Label21"), QString("0"));
        QCOMPARE(label("Label28"), QString("0"));
        QCOMPARE(edit("Text5")->text(), QString("001"));
        QVERIFY(!w->loading());
        w->findChild<QComboBox*>("Combo6")->setEditText("ES");
        logQso("OK1XYZ", "JN79AA");
        QCOMPARE(stored(2).size(), std::size_t{1});

        w->findChild<QPushButton*>("BandSel1")->click();
        QCOMPARE(grid().rowCount(), 2);
        QCOMPARE(label("Label19"), sum);
        QCOMPARE(label("Label21"), odx);
        QCOMPARE(label("Label18"), QString("2"));
        QCOMPARE(label("Label28"), QString("2"));
        QCOMPARE(edit("Text5")->text(), QString("003"));
        // Each band brings back its propagation.
        QCOMPARE(w->findChild<QComboBox*>("Combo6")->currentText(), QString("TR"));
        w->findChild<QPushButton*>("BandSel2")->click();
        QCOMPARE(w->findChild<QComboBox*>("Combo6")->currentText(), QString("ES"));
    }

    void emptyingTheBandAsksTwiceThenEnds() {
        logQso("DL1AAA", "JO31AA");
        QAction* empty = w->findChild<QAction*>("MnLogLoeschen");
        QtDialogs::queueAnswer(Answer::No);
        empty->trigger();
        QCOMPARE(lastMessage(),
                 std::string("Möchtest du wirklich das aktuelle Band aus dem Log löschen?"));
        QCOMPARE(stored().size(), std::size_t{1});
        QtDialogs::queueAnswer(Answer::Yes);
        QtDialogs::queueAnswer(Answer::Cancel);
        empty->trigger();
        QCOMPARE(stored().size(), std::size_t{1});
        QCOMPARE(ended, 0);
        QVERIFY(w->isVisible());

        QtDialogs::queueAnswer(Answer::Yes);
        QtDialogs::queueAnswer(Answer::Ok);
        empty->trigger();
        QCOMPARE(stored().size(), std::size_t{0});
        QCOMPARE(lastMessage(), std::string("OrvantaContest MUSS jetzt neu gestartet werden!"));
        QCOMPARE(ended, 1);
        QVERIFY(app->endedWithoutSaving());
    }

    void odxBoxShowsTheBestQso() {
        logQso("DL1AAA", "JO31AA");
        logQso("DL2BBB", "JO52AA");
        QTest::mouseClick(w->findChild<QLabel*>("Label21"), Qt::LeftButton);
        const QString msg = QString::fromStdString(lastMessage());
        QVERIFY2(msg.startsWith("Rufzeichen: \tDL1AAA\r\nLocator: \t\tJO31AA"), qPrintable(msg));
        QCOMPARE(QtDialogs::recordedTitles().back(), std::string("ODX"));
        QtDialogs::recorded().clear();
        w->findChild<QAction*>("MnODX")->trigger();
        QVERIFY(QString::fromStdString(lastMessage()).startsWith("Rufzeichen: \tDL1AAA"));
    }

    void rateSettingsAreAskedUntilGood() {
        auto* meter = w->findChild<QLabel*>("ZeigerZahl");
        QtDialogs::recorded().clear();
        QtDialogs::queueInput(std::string("abc"));
        QtDialogs::queueAnswer(Answer::Retry);
        QtDialogs::queueInput(std::string("30.7"));
        QtDialogs::queueInput(std::string("70000"));
        QtDialogs::queueAnswer(Answer::Cancel);
        QTest::mouseClick(meter, Qt::LeftButton);
        const auto& rec = QtDialogs::recorded();
        QCOMPARE(rec.size(), std::size_t{5});
        QCOMPARE(rec[1], std::string("Ungültiger Wert"));
        QCOMPARE(rec[3], std::string("Stufen in der QSO-Skala. Gültiger Bereich 1-60000"));
        orv::IniFile ini(*dir / "OrvantaContest.INI");
        QCOMPARE(ini.getInt("QB-OPTION", "Zeitbereich"), 30LL);
        QCOMPARE(ini.getInt("QB-OPTION", "ZeigerMAX"), 0LL);
        QCOMPARE(app->binding()->zeitbereich(), 30);
        QCOMPARE(app->binding()->zeigerMax(), 10);

        // Cancel in the first box changes nothing.
        QtDialogs::queueInput(std::nullopt);
        QTest::mouseClick(meter, Qt::LeftButton);
        QCOMPARE(orv::IniFile(*dir / "OrvantaContest.INI").getInt("QB-OPTION", "Zeitbereich"),
                 30LL);
    }

    void squareWindowShowsTheWorkedSquares() {
        logQso("DL1AAA", "JO31AA");
        logQso("DL2BBB", "JO52AA");
        logQso("DL3CCC", "JO52BB");
        QTest::keyClick(edit("Text3"), Qt::Key_L, Qt::ControlModifier);
        auto* sq = w->findChild<orv::ui::SquareWindow*>("Form9");
        QVERIFY(sq);
        QVERIFY(sq->isVisible());
        QCOMPARE(sq->findChild<QLabel*>("Label2")->text(), QString("2"));
        QCOMPARE(sq->findChild<QLabel*>("Label4")->text(), QString("144"));
        QTableWidget* g = sq->grid();
        QCOMPARE(g->rowCount(), 25);
        QCOMPARE(g->columnCount(), 25);
        // The own square in the middle, magenta while not worked.
        QCOMPARE(g->item(12, 12)->text(), QString("JO62"));
        QCOMPARE(g->item(12, 12)->background().color(), QColor(255, 0, 255));
        QStringList cyan;
        for (int r = 0; r < 25; ++r)
            for (int c = 0; c < 25; ++c)
                if (g->item(r, c)->background().color() == QColor(0, 255, 255))
                    cyan << g->item(r, c)->text();
        cyan.sort();
        QCOMPARE(cyan, QStringList({"JO31", "JO52"}));
        // West is a lower third character, south a lower fourth.
        QCOMPARE(g->item(12, 11)->text(), QString("JO52"));
        QCOMPARE(g->item(13, 9)->text(), QString("JO31"));
        QVERIFY(g->updatesEnabled());
        QTest::keyClick(sq, Qt::Key_Escape);
        QTRY_VERIFY(!w->findChild<orv::ui::SquareWindow*>("Form9"));

        // Working the own square turns it green; the label opens it too.
        logQso("DL4DDD", "JO62QN");
        QTest::mouseClick(w->findChild<QLabel*>("Label28"), Qt::LeftButton);
        sq = w->findChild<orv::ui::SquareWindow*>("Form9");
        QVERIFY(sq);
        QCOMPARE(sq->grid()->item(12, 12)->background().color(), QColor(0, 255, 0));
        sq->close();
    }

    void squareWindowStoppedInTheWestStaysUnpainted() {
        // "AA" has no square to its west: the walk stops with a beep.
        const int beeps = beeper.beeps;
        const orv::LocFenster f = orv::LocUnt("AB12CD", "", beeper);
        QCOMPARE(beeper.beeps, beeps + 1);
        orv::ui::SquareWindow sq(f, 0, "144", app->texts());
        QVERIFY(!sq.grid()->updatesEnabled());
        QCOMPARE(sq.grid()->item(12, 12)->text(), QString("AB12"));
        QCOMPARE(sq.grid()->item(0, 0)->text(), QString());
    }

    void bearingCarriesItsDecimalWithAntenneKomma() {
        edit("Text7")->setText("JO31AA");
        QVERIFY(!edit("Text12")->text().contains('.'));
        orv::test::TempDir other;
        orv::test::writeFile(other / "OrvantaContest.INI",
                             "[QB]\nEinverstanden=-1\n[QB-OPTION]\nAntenneKomma=-1\n");
        Startup s(other.path(), dialogs, clock, beeper);
        s.runLogDialog = createLog("komma");
        QCOMPARE(s.run(), Startup::Outcome::Run);
        auto* bearing = s.window()->findChild<QLineEdit*>("Text12");
        s.window()->findChild<QLineEdit*>("Text7")->setText("JO31AA");
        QVERIFY2(QRegularExpression("^\\d+\\.\\d°$").match(bearing->text()).hasMatch(),
                 qPrintable(bearing->text()));
        // Partial locators are previewed with the decimal as well.
        s.window()->findChild<QLineEdit*>("Text7")->setText("JO3");
        QVERIFY(bearing->text().contains('.'));
    }

    // `MnLoadLog` lists the logs in `Form12`; a chosen log takes the band
    // and modes in use and leaves the settings file alone, and a file that
    // is no log says why and keeps the log in use.
    void changingTheLogBindsTheNewOne() {
        orv::ContestLog::create(*dir / "Logs" / "second.sqlite",
                                orv::NewLogData{"OE1ABC", "JN78DF", "Other", {}});
        orv::test::writeFile(*dir / "Logs" / "broken.sqlite", "no database\n");
        logQso("DL1AAA", "JO31AA");
        edit("Text3")->setText("PARTIAL");
        QStringList listed;
        app->runLogChooser = [&](orv::ui::LogFileChooser& c) {
            auto* files = c.findChild<QListWidget*>("File1");
            for (int i = 0; i < files->count(); ++i)
                listed << files->item(i)->text();
            return false;
        };
        w->findChild<QAction*>("MnLoadLog")->trigger();
        QCOMPARE(listed, QStringList({"broken", "main", "second"}));
        QCOMPARE(edit("Text3")->text(), QString());
        QCOMPARE(w->windowTitle(), QString("OrvantaContest - [main.sqlite]"));

        QtDialogs::recorded().clear();
        app->runLogChooser = [](orv::ui::LogFileChooser& c) { return c.take("broken"); };
        w->findChild<QAction*>("MnLoadLog")->trigger();
        QVERIFY(lastMessage().rfind("FEHLER\n", 0) == 0);
        QCOMPARE(w->windowTitle(), QString("OrvantaContest - [main.sqlite]"));
        logQso("DL2BBB", "JO52AA");
        QCOMPARE(stored().size(), std::size_t{2});

        w->findChild<QPushButton*>("BandSel2")->click();
        w->setCurrentMode("CW");
        const std::string ini = orv::test::readFile(*dir / "OrvantaContest.INI");
        app->runLogChooser = [](orv::ui::LogFileChooser& c) { return c.take("second"); };
        edit("Text7")->setText("JO31");
        w->findChild<QAction*>("MnLoadLog")->trigger();
        QCOMPARE(w->windowTitle(), QString("OrvantaContest - [second.sqlite]"));
        QCOMPARE(w->currentBand(), 2);
        QCOMPARE(w->entryRow().mode, std::string("CW"));
        QCOMPARE(orv::test::readFile(*dir / "OrvantaContest.INI"), ini);
        QCOMPARE(w->findChild<QLineEdit*>("Text11")->text(), QString("OE1ABC"));
        QCOMPARE(grid().rowCount(), 0);
        QCOMPARE(edit("Text7")->text(), QString());
        QCOMPARE(label("Label19"), QString("0"));
        QCOMPARE(edit("Text5")->text(), QString("001"));
        logQso("OK2ZZZ", "JN89AA", "599001");
        QCOMPARE(orv::ContestLog::open(*dir / "Logs" / "second.sqlite").value().rows(2).size(),
                 std::size_t{1});
        QCOMPARE(stored().size(), std::size_t{2});
    }

    void smallLayoutIsForLowScreens_data() {
        QTest::addColumn<int>("heightPx");
        QTest::addColumn<int>("dpi");
        QTest::addColumn<bool>("small");
        // 8000 and 10000 twips are 533.3 and 666.7 pixels at 96 dpi.
        QTest::newRow("533 px") << 533 << 96 << false;
        QTest::newRow("534 px") << 534 << 96 << true;
        QTest::newRow("666 px") << 666 << 96 << true;
        QTest::newRow("667 px") << 667 << 96 << false;
        QTest::newRow("1080 px") << 1080 << 96 << false;
        QTest::newRow("900 px at 144 dpi") << 900 << 144 << true;
        QTest::newRow("no dpi") << 600 << 0 << false;
    }
    void smallLayoutIsForLowScreens() {
        QFETCH(int, heightPx);
        QFETCH(int, dpi);
        QFETCH(bool, small);
        QCOMPARE(MainWindow::smallLayoutFor(heightPx, dpi), small);
    }

    void smallLayoutMakesTheWindowLow() {
        w->applySmallLayout(true);
        QVERIFY(w->smallLayout());
        QCOMPARE(w->height(), 9000 * w->logicalDpiY() / 1440);
        QVERIFY(w->findChild<QTableView*>("MSFlexGrid1")->maximumHeight() < QWIDGETSIZE_MAX);
        w->applySmallLayout(false);
        QCOMPARE(w->findChild<QTableView*>("MSFlexGrid1")->maximumHeight(), QWIDGETSIZE_MAX);
    }

    void keyHelpAndAboutAreModeless() {
        QTest::keyClick(edit("Text3"), Qt::Key_F1);
        auto* help = w->findChild<QWidget*>("Form3");
        QVERIFY(help && help->isVisible());
        QVERIFY(!help->isModal());
        QVERIFY(w->findChild<QTableWidget*>("KeyTable")->rowCount() > 10);
        w->findChild<QAction*>("MnHilfeInfo")->trigger();
        QVERIFY(w->findChild<QWidget*>("Form10")->isVisible());
    }

    void dateAndTimeFieldsFollowTheMenu() {
        QAction* dateEdit = w->findChild<QAction*>("MnTimeDateEdit");
        dateEdit->trigger();
        QVERIFY(w->findChild<QWidget*>("Picture13")->isVisible());
        QCOMPARE(edit("Text1")->text(), QString("2026-05-02"));
        QVERIFY(!edit("Text2")->isReadOnly());
        QCOMPARE(orv::IniFile(*dir / "OrvantaContest.INI").getInt("QB-OPTION", "ZeitEdit"), -1LL);
        // A QSO of another day, typed on site.
        edit("Text1")->setText("2026-05-01");
        edit("Text2")->setText("23:58");
        logQso("DL1AAA", "JO31AA");
        QCOMPARE(stored()[0].datTime.toStorage(), std::string("2026-05-01 23:58:00"));
        dateEdit->trigger();
        QVERIFY(!w->findChild<QWidget*>("Picture13")->isVisible());
        QVERIFY(edit("Text2")->isReadOnly());
        QCOMPARE(orv::IniFile(*dir / "OrvantaContest.INI").getInt("QB-OPTION", "ZeitEdit"), 0LL);
    }

    void logDialogSetsTheComputerClock() {
        // A stand-in for timedatectl that notes its arguments, or refuses.
        const auto args = *dir / "args";
        const auto good = *dir / "set-ok";
        const auto bad = *dir / "set-refused";
        orv::test::writeFile(good, "#!/bin/sh\necho \"$@\" > '" + args.string() + "'\n");
        orv::test::writeFile(bad, "#!/bin/sh\necho 'Failed to set time: Access denied' >&2\n"
                                  "exit 1\n");
        for (const auto& f : {good, bad})
            std::filesystem::permissions(f, std::filesystem::perms::owner_all);
        orv::TimedatectlSetter goodSetter(good.string()), badSetter(bad.string());

        LogDialog d(app->settings(), app->paths(), app->texts(), dialogs, clock, beeper);
        d.setTimeSetter(goodSetter);
        auto* timeButton = d.findChild<QPushButton*>("Command6");
        auto* dateButton = d.findChild<QPushButton*>("Command7");
        auto* field = d.findChild<QLineEdit*>("Text5");
        QCOMPARE(timeButton->text(), QString("14:30:00"));
        QCOMPARE(dateButton->text(), QString("2026-05-02"));
        QVERIFY(!field->isVisibleTo(&d));

        timeButton->click();
        QVERIFY(field->isVisibleTo(&d));
        QCOMPARE(field->text(), QString("14:30:00"));
        QtDialogs::recorded().clear();
        field->setText("25:00");
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(lastMessage(), std::string("Ungültige Zeit"));
        QVERIFY(!std::filesystem::exists(args));
        field->setText("10:15");
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(orv::test::readFile(args), std::string("set-time 2026-05-02 10:15:00\n"));
        QVERIFY(!field->isVisibleTo(&d));

        // The system's refusal is shown in its own words; the field stays.
        d.setTimeSetter(badSetter);
        dateButton->click();
        field->setText("2026-06-01");
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(lastMessage(), std::string("Failed to set time: Access denied"));
        QVERIFY(field->isVisibleTo(&d));
    }

    void maxBakeTakesDigitsAndIsSaved() {
        auto* box = w->findChild<QComboBox*>("Combo10");
        QCOMPARE(box->currentText(), QString("100"));
        box->lineEdit()->setFocus();
        box->lineEdit()->selectAll();
        QTest::keyClicks(box->lineEdit(), "2x5678");
        QCOMPARE(box->currentText(), QString("2567"));
        app->SaveConDat();
        QCOMPARE(orv::IniFile(*dir / "OrvantaContest.INI").getInt("QB", "MaxBake"), 2567LL);
    }
};

QTEST_MAIN(TestCorrection)
#include "test_correction.moc"
