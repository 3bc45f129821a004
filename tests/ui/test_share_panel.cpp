// The window on a shared contest against a real server: the panel shows the
// other position, its QSO is a duplicate here and sets the next serial, a
// QSO logged in the window reaches the server, and a band another position
// holds is warned about.
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QTest>

#include "core/logstore/contest_log.h"
#include "platform/qt_dialogs.h"
#include "support/fakes.h"
#include "support/pg_cluster.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"
#include "ui/log_dialog.h"
#include "ui/log_grid_model.h"
#include "ui/main_window.h"
#include "ui/startup.h"
#include "ui_support.h"

namespace {

constexpr int k432 = 2;

bool hasRow(QTableWidget* t, const QString& position, const QString& lastCall) {
    for (int r = 0; t && r < t->rowCount(); ++r)
        if (t->item(r, 0) && t->item(r, 0)->text() == position &&
            t->item(r, 3)->text().startsWith(lastCall))
            return true;
    return false;
}

} // namespace

class TestSharePanel : public QObject {
    Q_OBJECT

private slots:
    void theWindowSharesWithAnotherPosition() {
        orv::test::PgCluster pg;
        orv::test::TempDir a, b;
        const std::string server = pg.address();
        QVERIFY(orv::test::shareFieldBetween(server, a, b));
        auto tool = [](const orv::test::TempDir& home, std::vector<std::string> args) {
            return orv::test::runToolAt(home.path(), args).status;
        };
        QCOMPARE(tool(b, {"add", "Field", "--band", "432", "--call", "OK1KHL", "--rst", "59",
                          "--rcvd", "59001", "--locator", "JN79AA"}),
                 0);

        orv::platform::QtDialogs::setRecording(true);
        orv::test::FakeClock clock;
        orv::test::CountingBeeper beeper;
        orv::platform::QtDialogs dialogs;
        orv::ui::Startup app(a.path(), dialogs, clock, beeper);
        app.runLogDialog = [](orv::ui::LogDialog& d) {
            d.openExisting("Field");
            return d.result() == QDialog::Accepted;
        };
        app.endProgram = [] {};
        QCOMPARE(app.run(), orv::ui::Startup::Outcome::Run);
        orv::ui::MainWindow* w = app.window();
        auto* positions = w->findChild<QTableWidget*>("SharePositions");
        QVERIFY(positions);
        QTRY_VERIFY_WITH_TIMEOUT(hasRow(positions, "B", "OK1KHL"), 15000);

        // B holds 432: choosing it warns; B's QSO is a duplicate there and
        // the next number follows B's.
        w->selectBand(k432);
        QVERIFY(w->findChild<QLabel*>("Label13")->text().endsWith("Position: B"));
        auto* call = w->findChild<QLineEdit*>("Text3");
        auto* nr = w->findChild<QLineEdit*>("Text6");
        auto* loc = w->findChild<QLineEdit*>("Text7");
        auto logQso = [&](const QString& c, const QString& l) {
            call->setText(c);
            nr->setText("59001");
            loc->setText(l);
            QTest::keyClick(loc, Qt::Key_Return);
        };
        logQso("OK1KHL", "JN79AA");
        QTest::keyClick(call, Qt::Key_Escape);
        QCOMPARE(orv::ContestLog::openForReading(a / "Logs" / "Field.sqlite").rowCount(k432), 0);
        auto* serial = w->findChild<QLineEdit*>("Text5");
        QVERIFY(serial);
        QCOMPARE(serial->text().toInt(), 2);
        logQso("DL1ABC", "JO31AB");
        QTRY_COMPARE_WITH_TIMEOUT(pg.psql("SELECT count(*) FROM orv_qso"), std::string("2\n"),
                                  10000);
        QCOMPARE(pg.psql("SELECT fields[6] FROM orv_qso WHERE fields[1] = 'DL1ABC'"),
                 std::string("2\n"));
        // B, not synced since, gives number 2 on 432 as well: both QSOs keep
        // it and the window marks it in the grid.
        QCOMPARE(tool(b, {"add", "Field", "--band", "432", "--call", "G4XYZ", "--rst", "59",
                          "--rcvd", "59002", "--locator", "IO91VL"}),
                 0);
        QCOMPARE(pg.psql("SELECT count(*) FROM orv_qso WHERE fields[6] = '2'"), std::string("2\n"));
        auto& grid = w->logGrid();
        QTRY_VERIFY_WITH_TIMEOUT(grid.rowCount() == 1 && grid.isFlagged(0), 10000);
        QVERIFY(
            grid.data(grid.index(0, orv::ui::LogGridModel::Number), Qt::BackgroundRole).isValid());
        QVERIFY(
            !grid.data(grid.index(0, orv::ui::LogGridModel::Call), Qt::BackgroundRole).isValid());
        // B holds A's QSO too (its add fetched it) and lists the double.
        const auto synced = orv::test::runToolAt(b.path(), {"sync", "Field"});
        QCOMPARE(synced.status, 0);
        QVERIFY(synced.out.find("Wartende QSOs:\t0\n") != std::string::npos);
        QVERIFY(synced.out.find("Doppelte Nummern:\t432\t2\t2") != std::string::npos);

        // B's window holds number 1 of 1296 MHz on the server: the window
        // here, on that band, offers 2, the number the server holds for it.
        constexpr int k1296 = 3;
        QCOMPARE(pg.psql("SELECT orv_hold_serial('Field', 3, 'B', 0)"), std::string("1\n"));
        w->selectBand(k1296);
        QTRY_COMPARE_WITH_TIMEOUT(serial->text(), QString("002"), 10000);
        QCOMPARE(pg.psql("SELECT nr FROM orv_hold WHERE position = 'A' AND band = 3"),
                 std::string("2\n"));
        orv::platform::QtDialogs::setRecording(false);
    }

    // The log chooser shares a new log: a bad address is refused in the
    // dialog, a good one makes the log shared and the station known to the
    // server, the password kept for the position.
    void theLogChooserSharesANewLog() {
        orv::test::PgCluster pg;
        orv::test::TempDir a;
        orv::test::writeFile(a / "OrvantaContest.INI", "[QB]\nEinverstanden=-1\n");
        orv::platform::QtDialogs::setRecording(true);
        orv::test::FakeClock clock;
        orv::test::CountingBeeper beeper;
        orv::platform::QtDialogs dialogs;
        orv::ui::Startup app(a.path(), dialogs, clock, beeper);
        const std::string server = pg.address();
        QString refusal;
        app.runLogDialog = [&](orv::ui::LogDialog& d) {
            d.findChild<QLineEdit*>("ShareServer")->setText("postgresql://nobody");
            d.findChild<QLineEdit*>("SharePosition")->setText("2m");
            if (orv::test::createLog("Tent")(d))
                return true;
            refusal = d.findChild<QLabel*>("Label1")->text();
            d.findChild<QLineEdit*>("ShareServer")->setText(QString::fromStdString(server));
            return orv::test::createLog("Tent")(d);
        };
        app.endProgram = [] {};
        QCOMPARE(app.run(), orv::ui::Startup::Outcome::Run);
        QVERIFY(refusal.contains("postgresql://"));
        auto* positions = app.window()->findChild<QTableWidget*>("SharePositions");
        QVERIFY(positions);
        QTRY_VERIFY_WITH_TIMEOUT(positions->rowCount() == 1, 10000);
        QCOMPARE(positions->item(0, 0)->text(), QString("2m"));
        QCOMPARE(pg.psql("SELECT mycall FROM orv_contest WHERE contest = 'Tent'"),
                 std::string("DL0XYZ\n"));
        orv::platform::QtDialogs::setRecording(false);
    }
};

QTEST_MAIN(TestSharePanel)
#include "test_share_panel.moc"
