// The entry row's keys around duplicates, band changes and the lookup list,
// on the real window over a real log: a panel belongs to the band it was
// raised on, F2 brings back the station worked last, Return and Escape on a
// duplicate empty the row, and a call taken from the list is tested at once.
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>

#include "core/logstore/contest_log.h"
#include "platform/qt_dialogs.h"
#include "running_window.h"
#include "support/fakes.h"
#include "support/temp_dir.h"
#include "ui/log_grid_model.h"
#include "ui/main_window.h"
#include "ui/startup.h"

using orv::Answer;
using orv::platform::QtDialogs;
using orv::ui::MainWindow;
using orv::ui::Startup;

class TestEntryKeys : public QObject, protected orv::test::RunningWindow {
    Q_OBJECT

private:
    bool shown(const char* name) { return w->findChild<QWidget*>(name)->isVisible(); }
    void key(int k) { QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(k)); }
    // A line of the lookup list: the call in 13 columns, then the locator.
    static QString listLine(const QString& call, const QString& locator) {
        return call.leftJustified(13) + locator;
    }

private slots:
    void init() { QVERIFY(start("keys")); }
    void cleanup() { stop(); }

    // A duplicate raised on 144 MHz, then F6: the panel is gone with its
    // band, and F11 on 432 MHz marks nothing there.
    void aDuplicatePanelStaysWithItsBand() {
        w->selectBand(2);
        logQso("OK1AAA", "JN79AA");
        w->selectBand(1);
        logQso("DL1ABC", "JO31AA");
        logQso("DL1ABC", "JO31AA", "59002");
        QVERIFY(shown("Picture11"));

        key(Qt::Key_F6);
        QCOMPARE(w->currentBand(), 2);
        QVERIFY(!shown("Picture11"));
        QtDialogs::queueAnswer(Answer::Yes);
        key(Qt::Key_F11);
        QVERIFY(!stored(2)[0].errQso);
        QVERIFY(!stored(1)[0].errQso);
        QVERIFY(!w->logGrid().isDeleted(0));
    }

    // F2 brings back the station logged last, whatever band is shown since.
    void f2AfterABandChangeBringsBackTheStationJustWorked() {
        w->selectBand(2);
        logQso("OK1AAA", "JN79AA");
        w->selectBand(1);
        logQso("DL1ABC", "JO31AA");
        key(Qt::Key_F6);
        key(Qt::Key_F2);
        QCOMPARE(edit("Text3")->text(), QString("DL1ABC"));
        QCOMPARE(edit("Text7")->text(), QString("JO31AA"));
    }

    // With the duplicate panel up, Return and Escape empty the entry line,
    // the report always back to "59", and nothing is stored.
    void returnAndEscapeOnADuplicateClearTheLine_data() {
        QTest::addColumn<int>("pressed");
        QTest::newRow("Return") << int(Qt::Key_Return);
        QTest::newRow("Escape") << int(Qt::Key_Escape);
    }
    void returnAndEscapeOnADuplicateClearTheLine() {
        QFETCH(int, pressed);
        logQso("DL1ABC", "JO31AA");
        edit("Text4")->setText("599");
        logQso("DL1ABC", "JO31AB", "599002");
        QVERIFY(shown("Picture11"));
        edit("Text9")->setText("remark");
        key(pressed);
        QVERIFY(!shown("Picture11"));
        for (const char* field : {"Text3", "Text6", "Text7", "Text9"})
            QCOMPARE(edit(field)->text(), QString());
        QCOMPARE(edit("Text4")->text(), QString("59"));
        QCOMPARE(edit("Text10")->text(), QString("No"));
        QVERIFY(edit("Text3")->hasFocus());
        QCOMPARE(stored(1).size(), std::size_t{1});
    }

    // A duplicate refusal lets the clock run again, as every commit does.
    void theClockRunsAgainAfterADuplicate() {
        logQso("DL1ABC", "JO31AA");
        w->setTimeEditable(true);
        edit("Text2")->setFocus();
        edit("Text2")->selectAll();
        QTest::keyClicks(edit("Text2"), "1205");
        edit("Text3")->setFocus();
        QCOMPARE(edit("Text2")->text(), QString("12:05"));
        QVERIFY(!w->clockRunning());
        logQso("DL1ABC", "JO31AA", "59002");
        QVERIFY(shown("Picture11"));
        QVERIFY(w->clockRunning());
    }

    // F8 tests the taken call at once, from any field: a duplicate on this
    // band, and the bands it was worked on; in a band without QSOs F8 looks
    // only at the other bands.
    void f8TestsTheTakenCallFromAnyField() {
        w->selectBand(2);
        logQso("DL1ABC", "JO31AA");
        w->selectBand(1);
        logQso("OK1AAA", "JN79AA");
        w->setLookupLines({listLine("DL1ABC", "JO31AA")});
        edit("Text9")->setFocus();
        key(Qt::Key_F8);
        QCOMPARE(edit("Text3")->text(), QString("DL1ABC"));
        QVERIFY(edit("Text4")->hasFocus());
        QVERIFY(!shown("Picture11"));
        QVERIFY(shown("Frame3"));

        w->setLookupLines({listLine("OK1AAA", "JN79AA")});
        edit("Text9")->setFocus();
        key(Qt::Key_F8);
        QVERIFY(shown("Picture11"));
        QCOMPARE(w->findChild<QLabel*>("Dup1")->text(), QString("OK1AAA"));

        key(Qt::Key_Escape);
        w->selectBand(3);
        w->setLookupLines({listLine("OK1AAA", "JN79AA")});
        key(Qt::Key_F8);
        QVERIFY(!shown("Picture11"));
        QVERIFY(shown("Frame3"));
    }
};

QTEST_MAIN(TestEntryKeys)
#include "test_entry_keys.moc"
