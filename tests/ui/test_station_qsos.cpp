// The other positions' QSOs in the window against a real server: A opens the
// list with keys, corrects, deletes and restores B's QSOs, and B's log holds
// each change after a sync; a bad locator is refused and changes nothing.
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QTest>

#include "core/logstore/contest_log.h"
#include "core/shared/shared_store.h"
#include "platform/qt_dialogs.h"
#include "support/fakes.h"
#include "support/pg_cluster.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"
#include "ui/log_dialog.h"
#include "ui/main_window.h"
#include "ui/startup.h"
#include "ui_support.h"

namespace {

constexpr int k432 = 2;

struct Expected {
    std::int64_t nr;
    std::string call, locator;
    std::int64_t qrb;
    bool deleted;
};

// B's QSO of this number on 432 as B's own file holds it.
std::optional<Expected> atB(const orv::test::TempDir& b, std::int64_t nr) {
    for (const auto& r : orv::ContestLog::openForReading(b / "Logs" / "Field.sqlite").rows(k432))
        if (r.qsoNr == nr)
            return Expected{nr, r.call, r.locator, r.qrb, r.errQso};
    return std::nullopt;
}

std::int64_t queuedAt(const orv::test::TempDir& a) {
    auto log = orv::ContestLog::openForReading(a / "Logs" / "Field.sqlite");
    return orv::SharedStore(log.db()).queuedCount();
}

} // namespace

class TestStationQsos : public QObject {
    Q_OBJECT

private slots:
    void theWindowChangesAnotherPositionsQsos() {
        orv::test::PgCluster pg;
        orv::test::TempDir a, b;
        const std::string server = pg.address();
        QVERIFY(orv::test::shareFieldBetween(server, a, b));
        auto tool = [](const orv::test::TempDir& home, std::vector<std::string> args) {
            return orv::test::runToolAt(home.path(), args).status;
        };
        auto addAtB = [&](const char* call, const char* rcvd, const char* loc) {
            return tool(b, {"add", "Field", "--band", "432", "--call", call, "--rst", "59",
                            "--rcvd", rcvd, "--locator", loc});
        };
        QCOMPARE(addAtB("OK1KHL", "59001", "JN79AA"), 0);
        QCOMPARE(addAtB("DL1ABC", "59002", "JO31AB"), 0);
        QCOMPARE(addAtB("G4XYZ", "59003", "IO91VL"), 0);

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
        w->selectBand(k432);
        QVERIFY(QTest::qWaitForWindowActive(w));
        auto* call = w->findChild<QLineEdit*>("Text3");
        QTest::keyClick(call, Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
        auto* dialog = w->findChild<QDialog*>("StationQsos");
        QVERIFY(dialog);
        QVERIFY(QTest::qWaitForWindowActive(dialog));
        auto* table = dialog->findChild<QTableWidget*>("StationQsoTable");
        auto* filter = dialog->findChild<QLineEdit*>("StationQsoFilter");
        auto* state = dialog->findChild<QLabel*>("StationQsoState");
        // The worker fetches B's QSOs in the background; the list follows.
        QTRY_COMPARE_WITH_TIMEOUT(table->rowCount(), 3, 15000);

        struct Case {
            const char* filter;
            Qt::Key key;
            const char* call;              // typed over the call, nullptr: left
            const char* locator;           // typed over the locator
            Expected want;                 // B's QSO after the sync
            const char* refusal = nullptr; // the state line when refused
            const char* ownCall = nullptr; // logged here first
            bool asked = false;            // a question answered Yes
        };
        const Case cases[] = {
            {"OK1", Qt::Key_Return, "OK1KHM", "JN79AB", {1, "OK1KHM", "JN79AB", 388, false}},
            {"G4",
             Qt::Key_Return,
             nullptr,
             "JN7",
             {3, "G4XYZ", "IO91VL", 936, false},
             "Ungültiger Locator"},
            {"DL1", Qt::Key_Delete, nullptr, nullptr, {2, "DL1ABC", "JO31AB", 530, true}},
            {"DL1", Qt::Key_Delete, nullptr, nullptr, {2, "DL1ABC", "JO31AB", 530, false}},
            {"G4", Qt::Key_Delete, nullptr, nullptr, {3, "G4XYZ", "IO91VL", 936, true}},
            // Logged live here since: the deleted one cannot come back.
            {"G4",
             Qt::Key_Delete,
             nullptr,
             nullptr,
             {3, "G4XYZ", "IO91VL", 936, true},
             "Rufzeichen existiert bereits und kann nicht wieder hergestellt werden!",
             "G4XYZ"},
            // A call live elsewhere on the band: Yes to the dupe question scores 0.
            {"OK1",
             Qt::Key_Return,
             "DL1ABC",
             "JO31AB",
             {1, "DL1ABC", "JO31AB", 0, false},
             nullptr,
             nullptr,
             true},
        };
        for (const Case& c : cases) {
            if (c.ownCall)
                QCOMPARE(tool(a, {"add", "Field", "--band", "432", "--call", c.ownCall, "--rst",
                                  "59", "--rcvd", "59009", "--locator", "IO91WM"}),
                         0);
            while (!filter->text().isEmpty())
                QTest::keyClick(table, Qt::Key_Backspace);
            QTest::keyClicks(table, c.filter);
            QCOMPARE(table->rowCount(), 1);
            const auto before =
                orv::SharedStore(orv::ContestLog::openForReading(a / "Logs" / "Field.sqlite").db())
                    .remoteStamp(k432);
            if (c.key == Qt::Key_Delete || c.asked)
                orv::platform::QtDialogs::queueAnswer(orv::Answer::Yes);
            QTest::keyClick(table, c.key);
            if (c.key == Qt::Key_Return) {
                auto* field = qobject_cast<QLineEdit*>(dialog->focusWidget());
                QVERIFY(field);
                QCOMPARE(field->objectName(), QString("Text33"));
                if (c.call)
                    QTest::keyClicks(field, c.call);
                QTest::keyClick(field, Qt::Key_Space, Qt::ShiftModifier);
                field = qobject_cast<QLineEdit*>(dialog->focusWidget());
                QCOMPARE(field->objectName(), QString("Text77"));
                QTest::keyClicks(field, c.locator);
                QTest::keyClick(field, Qt::Key_Return);
            }
            auto log = orv::ContestLog::openForReading(a / "Logs" / "Field.sqlite");
            orv::SharedStore store(log.db());
            if (c.refusal) {
                QCOMPARE(state->text(), QString::fromUtf8(c.refusal));
                QCOMPARE(store.remoteStamp(k432), before);
                if (c.key == Qt::Key_Return) {
                    QCOMPARE(dialog->focusWidget()->objectName(), QString("Text77"));
                    QTest::keyClick(dialog->focusWidget(), Qt::Key_Escape);
                    QVERIFY(dialog->isVisible());
                }
                QCOMPARE(dialog->focusWidget(), table);
            } else {
                QVERIFY(store.remoteStamp(k432) != before);
            }
            QTRY_COMPARE_WITH_TIMEOUT(queuedAt(a), 0, 10000);
            QCOMPARE(tool(b, {"sync", "Field"}), 0);
            const auto got = atB(b, c.want.nr);
            QVERIFY(got);
            QCOMPARE(got->call, c.want.call);
            QCOMPARE(got->locator, c.want.locator);
            QCOMPARE(got->qrb, c.want.qrb);
            QCOMPARE(got->deleted, c.want.deleted);
        }

        // A QSO that B logs now shows up in the open list; Esc closes it.
        while (!filter->text().isEmpty())
            QTest::keyClick(table, Qt::Key_Backspace);
        QCOMPARE(addAtB("SP1AAA", "59004", "JO73AA"), 0);
        QTRY_COMPARE_WITH_TIMEOUT(table->rowCount(), 4, 15000);
        QTest::keyClick(table, Qt::Key_Escape);
        QTRY_VERIFY(!w->findChild<QDialog*>("StationQsos"));
        orv::platform::QtDialogs::setRecording(false);
    }
};

QTEST_MAIN(TestStationQsos)
#include "test_station_qsos.moc"
