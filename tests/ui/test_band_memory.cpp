// The window's bands in memory and the call database loaded beside the
// window: a QSO logged by the tool in another process shows after the next
// band change, a key typed while the database loads is answered once it is
// there, and quitting in the middle of a load ends at once.
#include <QLabel>
#include <QListWidget>
#include <QTableView>
#include <QTest>
#include <latch>

#include "core/capture/capture.h"
#include "core/reference/call_db.h"
#include "core/util/sqlite.h"
#include "running_window.h"
#include "support/run_tool.h"
#include "ui/lookup_binding.h"

using orv::ui::LookupBinding;

namespace {

constexpr int k144 = 1;
constexpr int k432 = 2;

// A call database of `n` generated calls, DL1AA upwards, in one transaction.
void fillCallDb(const std::filesystem::path& file, int n) {
    orv::CallDbStore store(file);
    orv::sql::Transaction tx(store.db());
    auto st = store.db().prepare("INSERT INTO OrvantaContestDat (Call, Locator) VALUES (?1, ?2)");
    for (int i = 0; i < n; ++i) {
        std::string call = "DL" + std::to_string(i % 10) + "A";
        for (int v = i / 10; v > 0; v /= 26)
            call += static_cast<char>('A' + v % 26);
        st.bind(1, call).bind(2, "JO62QM").run();
        st.reset();
    }
    tx.commit();
}

} // namespace

class TestBandMemory : public QObject, orv::test::RunningWindow {
    Q_OBJECT

    QListWidget* list() { return w->findChild<QListWidget*>("List1"); }
    QString found() { return list()->parentWidget()->findChild<QLabel*>("Label11")->text(); }
    LookupBinding* lookup() { return w->findChild<LookupBinding*>("LookupBinding"); }

private slots:
    void cleanup() {
        LookupBinding::beforeLoad = nullptr;
        stop();
    }

    void toolCommitShowsAfterTheNextBandChange() {
        QVERIFY(start("Tool"));
        logQso("DL1ABC", "JO31AB");
        w->selectBand(k432);
        logQso("OK1KHL", "JN79AA");
        w->selectBand(k144);
        // Both bands are held: coming back to 432 would swap, not read.
        QVERIFY(app->capture()->holds(k432));
        const auto run = orv::test::runToolAt(
            dir->path(), {"add", "Tool", "--band", "432", "--call", "G4XYZ", "--rst", "59",
                          "--rcvd", "59002", "--locator", "IO91VL"});
        QCOMPARE(run.status, 0);
        w->selectBand(k432);
        auto* grid = w->findChild<QTableView*>("MSFlexGrid1");
        QCOMPARE(grid->model()->rowCount(), 2);
        QCOMPARE(grid->model()->index(1, 0).data().toString(), QString("G4XYZ"));
        QCOMPARE(label("Label18"), QString("2"));
        // The file and the window agree in every field after the change.
        orv::ContestLog reader = orv::ContestLog::openForReading(*dir / "Logs" / "Tool.sqlite");
        auto snap = reader.bandSnapshot(k432);
        orv::BandState fresh;
        fresh.load(k432, std::move(snap.rows), snap.totals, "JO62QM", false);
        QVERIFY(app->capture()->state() == fresh);
    }

    void keyTypedWhileTheListLoadsIsAnsweredAfterIt() {
        QVERIFY(start("Loading"));
        fillCallDb(*dir / "QBDat.sqlite", 2000);
        // The load is held before it reads, until the keys are typed.
        std::latch release(1);
        LookupBinding::beforeLoad = [&release] { release.wait(); };
        lookup()->reload();
        QVERIFY(lookup()->loading());
        QCOMPARE(found(), QString::fromStdString(app->texts()(1200)));

        int shown = 0;
        connect(lookup(), &LookupBinding::listShown, this, [&] { ++shown; });
        auto* call = edit("Text3");
        call->setFocus();
        QTest::keyClicks(call, "DL1AB");
        // The search waits for the list, which still says so.
        QTest::qWait(50);
        QCOMPARE(shown, 0);
        QCOMPARE(found(), QString::fromStdString(app->texts()(1200)));
        release.count_down();
        QTRY_VERIFY_WITH_TIMEOUT(shown > 0, 5000);
        QVERIFY(!lookup()->loading());
        QVERIFY(list()->count() > 0);
        for (int i = 0; i < list()->count(); ++i)
            QVERIFY(list()->item(i)->text().startsWith("DL1AB"));
        // "%1 calls found" with the count of the search.
        QVERIFY(found().endsWith(QString::fromStdString(app->texts()(504)).section("%1", 1)));
        QVERIFY(found() != QString::fromStdString(app->texts()(1200)));
    }

    void quittingInTheMiddleOfALoadEndsAtOnce() {
        QVERIFY(start("Quit"));
        fillCallDb(*dir / "QBDat.sqlite", 200000);
        std::latch started(1);
        LookupBinding::beforeLoad = [&started] { started.count_down(); };
        lookup()->reload();
        started.wait();
        QVERIFY(lookup()->loading());
        // The window and its bindings go while the loader reads; nothing of
        // the load is delivered and no message appears.
        stop();
        QVERIFY(orv::platform::QtDialogs::recorded().empty());
    }
};

QTEST_MAIN(TestBandMemory)
#include "test_band_memory.moc"
