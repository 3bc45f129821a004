// The main window driven by key events offscreen: control names, the space
// bar walk, the field filters, the window keys and the clock.
#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

#include "core/i18n/texts.h"
#include "platform/qt_dialogs.h"
#include "support/fakes.h"
#include "ui/log_grid_model.h"
#include "ui/main_window.h"

using orv::ui::MainWindow;

class TestMainWindow : public QObject {
    Q_OBJECT

private:
    orv::Texts texts;
    orv::test::FakeClock clock;
    orv::test::CountingBeeper beeper;
    std::unique_ptr<MainWindow> w;

    QLineEdit* edit(const char* name) { return w->findChild<QLineEdit*>(name); }
    QComboBox* combo(const char* name) { return w->findChild<QComboBox*>(name); }
    QWidget* focused() {
        QWidget* f = QApplication::focusWidget();
        // The line edit of an editable box stands for the box.
        if (f && qobject_cast<QComboBox*>(f->parentWidget()))
            return f->parentWidget();
        return f;
    }
    void focus(QWidget* field) {
        field->setFocus(Qt::OtherFocusReason);
        QTRY_VERIFY(field->hasFocus() || field->isAncestorOf(QApplication::focusWidget()));
    }

private slots:
    void init() {
        texts.loadDefaults();
        clock.set(orv::DateTime{2026, 5, 2, 14, 30, 0});
        beeper.beeps = 0;
        w = std::make_unique<MainWindow>(texts, clock, beeper);
        w->setModes({"SSB", "CW", "FM"});
        w->show();
        w->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(w.get()));
    }
    void cleanup() {
        w.reset();
        orv::platform::QtDialogs::setRecording(false);
        orv::platform::QtDialogs::recorded().clear();
    }

    void everyNamedControlExists() {
        const char* widgets[] = {
            "Text1",     "Text2",    "Text3",      "Text4",       "Text5",       "Text6",
            "Text7",     "Text8",    "Text9",      "Text10",      "Text11",      "Text12",
            "Text13",    "Text14",   "Text22",     "Text33",      "Text44",      "Text55",
            "Text66",    "Text77",   "Text88",     "Text99",      "Text101",     "Combo1",
            "Combo2",    "Combo3",   "Combo4",     "Combo5",      "Combo6",      "Combo7",
            "Combo8",    "Combo9",   "Label13",    "MSFlexGrid1", "MSFlexGrid2", "MSFlexGrid3",
            "Frame1",    "Frame3",   "Frame4",     "Picture3",    "Picture33",   "Picture11",
            "Picture13", "Picture7", "ZeigerZahl", "List1",       "Command1",    "Command2",
            "Command3",  "Label18",  "Label19",    "Label20",     "Label21",     "Label28",
            "Label31"};
        for (const char* name : widgets)
            QVERIFY2(w->findChild<QWidget*>(name), name);
        for (int i = 0; i < 10; ++i) {
            QVERIFY(w->findChild<QPushButton*>(QString("BandSel%1").arg(i)));
            QVERIFY(w->findChild<QLabel*>(QString("Dup%1").arg(i)));
        }
        QCOMPARE(combo("Combo1")->count(), 10);
        QCOMPARE(combo("Combo1")->itemText(0), QString("50"));
        QCOMPARE(combo("Combo1")->itemText(9), QString("47000"));
        const char* menus[] = {"MnDatei",   "MnAuswert",    "MnStatistik", "MnOptionen",
                               "MnAnsicht", "MnHilfe",      "MnSprache",   "MnMSFlexGrid1",
                               "MnList1",   "MnMSFlexGrid3"};
        for (const char* name : menus)
            QVERIFY2(w->findChild<QMenu*>(name), name);
        const char* actions[] = {
            "MnLoadLog",      "MnLogCopy",     "MnLogExport",      "MnLogImport",
            "MnLogLöschen",   "MnARRLImport",  "DXCCImp",          "MnARRLImportDownL",
            "NewQBDat",       "QBDatEdit",     "MnQBDatImport",    "MnLogImportFremd",
            "MnImportHAMIII", "MnLogLoeschen", "MnGruppenAendern", "Auswerten",
            "MnDBCheck",      "MnEDIUpload",   "MnEDIEdit",        "MnStatistikKurz",
            "MnOptionenA",    "MnSichern",     "MnTimeEdit",       "MnTimeDateEdit",
            "MnDefault0",     "MnODX",         "MnGrossF",         "MnCWFensterAN",
            "MnOrvantaLog",   "MnHilfeTasten", "MnHomepage",       "MnLaenderlisteDownL",
            "MnHilfeInfo",    "MnGrid1Edit",   "MnMarkASKill",     "MnGrid1KillRetur",
            "MnCallADD",      "MnLocatorADD",  "MnCallLocADD",     "MnEditList1",
            "MnGrid3Edit",    "MnGrid3CallGO", "MnGrid3LocGO",     "MnGrid3CallLocGO",
            "MnGrid3DBEdit"};
        for (const char* name : actions)
            QVERIFY2(w->findChild<QAction*>(QString::fromUtf8(name)), name);
    }

    void captionsComeFromTheTable() {
        QCOMPARE(w->findChild<QAction*>("MnLoadLog")->text(), QString("Log Öffnen"));
        QCOMPARE(w->findChild<QAction*>("MnTimeDateEdit")->text(), QString("Datum+Zeit Änderbar"));
        QCOMPARE(w->findChild<QMenu*>("MnSprache")->title(), QString("Sprache"));
        QCOMPARE(w->findChild<QLabel*>("Label2")->text(), QString("Rufzeichen"));
        QCOMPARE(w->findChild<QLabel*>("Label4")->text(), QString("RST Nr"));
        QCOMPARE(w->findChild<QGroupBox*>("Frame4")->title(), QString("Datenbankvergleich"));
        QCOMPARE(w->findChild<QAction*>("MnDefault0")->text(), QString("<Default>"));
        texts.set(261, "Open log");
        texts.set(151, "Call");
        w->Beschriften();
        QCOMPARE(w->findChild<QAction*>("MnLoadLog")->text(), QString("Open log"));
        QCOMPARE(w->findChild<QLabel*>("Label2")->text(), QString("Call"));
    }

    void gridHeadersKeepTheirCrossedModes() {
        auto* model = w->findChild<QTableView*>("MSFlexGrid1")->model();
        QCOMPARE(model->columnCount(), 18);
        auto head = [&](int c) { return model->headerData(c, Qt::Horizontal).toString(); };
        QCOMPARE(head(0), QString("Rufzeichen"));
        QCOMPARE(head(4), QString("RSTNr"));
        QCOMPARE(head(9), QString("RXMod"));
        QCOMPARE(head(10), QString("TXMod"));
        QCOMPARE(head(17), QString("OPCall"));
        QVERIFY(w->findChild<QTableView*>("MSFlexGrid1")->isColumnHidden(16));
        texts.set(161, "RX mode");
        w->Grid1Set();
        QCOMPARE(head(9), QString("RX mode"));
    }

    void spaceWalksThroughTheFields_data() {
        QTest::addColumn<QString>("from");
        QTest::addColumn<bool>("back");
        QTest::addColumn<QString>("to");
        QTest::addColumn<bool>("allSelected");
        QTest::newRow("call fwd") << "Text3" << false << "Text4" << false;
        QTest::newRow("call back") << "Text3" << true << "Text7" << false;
        QTest::newRow("rst fwd") << "Text4" << false << "Text6" << true;
        QTest::newRow("rst back") << "Text4" << true << "Text3" << false;
        QTest::newRow("rstnr fwd") << "Text6" << false << "Text7" << true;
        QTest::newRow("rstnr back") << "Text6" << true << "Text4" << true;
        QTest::newRow("loc fwd") << "Text7" << false << "Text3" << true;
        QTest::newRow("loc back") << "Text7" << true << "Text6" << false;
        QTest::newRow("qsl fwd") << "Text10" << false << "Text3" << false;
        QTest::newRow("qsl back") << "Text10" << true << "Text7" << false;
        QTest::newRow("prop fwd") << "Combo6" << false << "Text3" << false;
        QTest::newRow("prop back") << "Combo6" << true << "Text7" << false;
    }
    void spaceWalksThroughTheFields() {
        QFETCH(QString, from);
        QFETCH(bool, back);
        QFETCH(QString, to);
        QFETCH(bool, allSelected);
        for (const char* name : {"Text3", "Text4", "Text6", "Text7"})
            edit(name)->setText("AB12");
        auto* start = w->findChild<QWidget*>(from);
        focus(start);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space,
                        back ? Qt::ShiftModifier : Qt::NoModifier);
        QCOMPARE(focused()->objectName(), to);
        if (auto* e = qobject_cast<QLineEdit*>(focused()))
            QCOMPARE(e->hasSelectedText() && e->selectedText() == e->text(), allSelected);
        // Space is never written into a field it walks from.
        if (auto* e = qobject_cast<QLineEdit*>(start))
            QVERIFY(!e->text().contains(' '));
    }

    void timeWalksToTheDateOnlyWhenShown() {
        w->setTimeEditable(true);
        focus(edit("Text2"));
        QTest::keyClick(edit("Text2"), Qt::Key_Space);
        QCOMPARE(focused()->objectName(), QString("Text3"));
        w->findChild<QAction*>("MnTimeDateEdit")->trigger();
        focus(edit("Text2"));
        QTest::keyClick(edit("Text2"), Qt::Key_Space);
        QCOMPARE(focused()->objectName(), QString("Text1"));
    }

    void spaceIsTextInTheRemark() {
        focus(edit("Text9"));
        QTest::keyClicks(edit("Text9"), "tnx qso");
        QCOMPARE(edit("Text9")->text(), QString("tnx qso"));
        QCOMPARE(focused()->objectName(), QString("Text9"));
    }

    void callFieldTurnsMinusIntoSlashAndFolds() {
        focus(edit("Text3"));
        QTest::keyClicks(edit("Text3"), "dl1abc-p");
        QCOMPARE(edit("Text3")->text(), QString("DL1ABC/P"));
    }

    void reportFieldsRefuseOtherKeysWithABeep() {
        focus(edit("Text4"));
        edit("Text4")->clear();
        QTest::keyClicks(edit("Text4"), "5x9s");
        QCOMPARE(edit("Text4")->text(), QString("59S"));
        QCOMPARE(beeper.beeps, 1);
        focus(edit("Text6"));
        QTest::keyClicks(edit("Text6"), "59a0q1");
        QCOMPARE(edit("Text6")->text(), QString("59A01"));
        QCOMPARE(beeper.beeps, 2);
    }

    void locatorIsFoldedAndPropagationStopsAtThree() {
        focus(edit("Text7"));
        QTest::keyClicks(edit("Text7"), "jo62qm");
        QCOMPARE(edit("Text7")->text(), QString("JO62QM"));
        focus(combo("Combo6"));
        QTest::keyClicks(combo("Combo6")->lineEdit(), "tropo");
        QCOMPARE(combo("Combo6")->currentText(), QString("TRO"));
        QCOMPARE(beeper.beeps, 2);
    }

    void qslTakesOnlyYesOrNo() {
        focus(edit("Text10"));
        QTest::keyClick(edit("Text10"), Qt::Key_J);
        QCOMPARE(edit("Text10")->text(), QString("Yes"));
        QTest::keyClick(edit("Text10"), Qt::Key_X);
        QCOMPARE(edit("Text10")->text(), QString("Yes"));
        QTest::keyClick(edit("Text10"), Qt::Key_N);
        QCOMPARE(edit("Text10")->text(), QString("No"));
        QTest::keyClick(edit("Text10"), Qt::Key_Q, Qt::ControlModifier);
        QCOMPARE(edit("Text10")->text(), QString("Yes"));
    }

    void enterCommitsFromTheListedFieldsOnly() {
        int commits = 0;
        w->onCommit = [&] { ++commits; };
        int expected = 0;
        for (const char* name : {"Text3", "Text4", "Text6", "Text7", "Text9", "Text10"}) {
            focus(w->findChild<QWidget*>(name));
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
            QCOMPARE(commits, ++expected);
        }
        focus(combo("Combo6"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Enter);
        QCOMPARE(commits, ++expected);
        focus(combo("Combo8"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(commits, expected);
    }

    void reportLengthSwitchesTheModeBeforeTheCommit() {
        QString modeAtCommit;
        w->onCommit = [&] { modeAtCommit = combo("Combo3")->currentText(); };
        w->setModeSwitch(true, "SSB", "CW");
        w->setCurrentMode("SSB");
        focus(edit("Text4"));
        edit("Text4")->setText("599");
        QTest::keyClick(edit("Text4"), Qt::Key_Return);
        QCOMPARE(modeAtCommit, QString("CW"));
        QCOMPARE(combo("Combo2")->currentText(), QString("CW"));
        edit("Text4")->setText("5999");
        QTest::keyClick(edit("Text4"), Qt::Key_Return);
        QCOMPARE(modeAtCommit, QString("CW"));
        edit("Text4")->setText("59");
        QTest::keyClick(edit("Text4"), Qt::Key_Space);
        QCOMPARE(combo("Combo3")->currentText(), QString("SSB"));
    }

    void focusColoursTheField() {
        orv::ui::FieldColours c;
        c.aktiv = QColor(1, 2, 3);
        c.inAktiv = QColor(4, 5, 6);
        c.noEdit = QColor(7, 8, 9);
        w->setFieldColours(c);
        focus(edit("Text3"));
        QCOMPARE(edit("Text3")->palette().color(QPalette::Base), QColor(1, 2, 3));
        focus(edit("Text4"));
        QCOMPARE(edit("Text3")->palette().color(QPalette::Base), QColor(4, 5, 6));
        QCOMPARE(edit("Text4")->palette().color(QPalette::Base), QColor(1, 2, 3));
        // The locked time field keeps its own colour even with the focus.
        QCOMPARE(edit("Text2")->palette().color(QPalette::Base), QColor(7, 8, 9));
        QCOMPARE(edit("Text5")->palette().color(QPalette::Base), QColor(7, 8, 9));
    }

    void clockWritesLogTimeAndStopsWhileTyping() {
        w->tickClock();
        QCOMPARE(edit("Text2")->text(), QString("14:30"));
        w->setZeitPlusMinus(-2);
        clock.advance(60);
        w->tickClock();
        QCOMPARE(edit("Text2")->text(), QString("12:31"));
        w->setTimeEditable(true);
        focus(edit("Text2"));
        edit("Text2")->clear();
        QTest::keyClick(edit("Text2"), Qt::Key_5);
        QVERIFY(!w->clockRunning());
        QTest::keyClick(edit("Text2"), Qt::Key_X);
        QCOMPARE(beeper.beeps, 1);
        QCOMPARE(edit("Text2")->text(), QString("5"));
        QTest::keyClick(edit("Text2"), Qt::Key_Return);
        QCOMPARE(edit("Text2")->text(), QString("00:05"));
        QVERIFY(!w->clockRunning());
        QTest::keyClick(edit("Text2"), Qt::Key_F10);
        QVERIFY(w->clockRunning());
        // Clearing writes the computer's time; the next tick adds the offset.
        QCOMPARE(edit("Text2")->text(), QString("14:31"));
    }

    void bandKeysStopAtTheEnds() {
        QSignalSpy changed(w.get(), &MainWindow::bandChanged);
        w->selectBand(0);
        QCOMPARE(changed.count(), 1);
        focus(edit("Text3"));
        QTest::keyClick(edit("Text3"), Qt::Key_F5);
        QCOMPARE(w->currentBand(), 0);
        QCOMPARE(beeper.beeps, 1);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6);
        QCOMPARE(w->currentBand(), 1);
        QCOMPARE(changed.count(), 2);
        QCOMPARE(changed.last().at(0).toInt(), 1);
        w->selectBand(9);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6);
        QCOMPARE(w->currentBand(), 9);
        QCOMPARE(beeper.beeps, 2);
        w->findChild<QPushButton*>("BandSel3")->click();
        QCOMPARE(combo("Combo1")->currentText(), QString("1200"));
        QCOMPARE(focused()->objectName(), QString("Text3"));
    }

    void clearingKeepsTheDigitCountOfTheReport() {
        focus(edit("Text3"));
        edit("Text3")->setText("OK1XYZ");
        edit("Text4")->setText("579");
        edit("Text6")->setText("599012");
        edit("Text7")->setText("JN79AA");
        edit("Text9")->setText("note");
        edit("Text10")->setText("Yes");
        QTest::keyClick(edit("Text3"), Qt::Key_W, Qt::ControlModifier);
        QCOMPARE(edit("Text3")->text(), QString());
        QCOMPARE(edit("Text4")->text(), QString("599"));
        QCOMPARE(edit("Text6")->text(), QString());
        QCOMPARE(edit("Text7")->text(), QString());
        QCOMPARE(edit("Text9")->text(), QString());
        QCOMPARE(edit("Text10")->text(), QString("No"));
        edit("Text4")->setText("57");
        QTest::keyClick(edit("Text3"), Qt::Key_F10);
        QCOMPARE(edit("Text4")->text(), QString("59"));
    }

    void f2BringsBackTheLastQso() {
        w->setLast("DL0ABC", "JO50AA");
        focus(edit("Text4"));
        QTest::keyClick(edit("Text4"), Qt::Key_F2);
        QCOMPARE(edit("Text3")->text(), QString("DL0ABC"));
        QCOMPARE(edit("Text7")->text(), QString("JO50AA"));
    }

    void ctrlNAsksForTheName() {
        focus(edit("Text3"));
        orv::platform::QtDialogs::queueInput(std::string(120, 'x'));
        QTest::keyClick(edit("Text3"), Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(w->currentName().size(), 100);
        QCOMPARE(orv::platform::QtDialogs::recorded().back(), texts(22));
        orv::platform::QtDialogs::queueInput(std::nullopt);
        QTest::keyClick(edit("Text3"), Qt::Key_N, Qt::ControlModifier);
        QVERIFY(w->currentName().isEmpty());
    }

    void ctrlOGoesToTheOperator() {
        focus(edit("Text3"));
        QTest::keyClick(edit("Text3"), Qt::Key_O, Qt::ControlModifier);
        QCOMPARE(focused()->objectName(), QString("Combo8"));
    }

    void f8TakesTheLookupRow() {
        auto* list = w->findChild<QListWidget*>("List1");
        list->addItem("dl1abc       jo62qm");
        list->setCurrentRow(0);
        focus(edit("Text3"));
        QTest::keyClick(edit("Text3"), Qt::Key_F9);
        QCOMPARE(edit("Text7")->text(), QString("JO62QM"));
        QCOMPARE(edit("Text3")->text(), QString());
        QTest::keyClick(edit("Text3"), Qt::Key_F8);
        QCOMPARE(edit("Text3")->text(), QString("DL1ABC"));
        QCOMPARE(focused()->objectName(), QString("Text4"));
    }

    void deletedRowsAreRedFromTheSecondCell() {
        orv::ui::LogGridModel::Row live, dead;
        live[0] = "DL1ABC";
        live[16] = "False";
        dead[0] = "OK1XYZ";
        dead[16] = "True";
        w->logGrid().setRows({live, dead});
        auto& m = w->logGrid();
        QVERIFY(!m.data(m.index(0, 1), Qt::BackgroundRole).isValid());
        QVERIFY(!m.data(m.index(1, 0), Qt::BackgroundRole).isValid());
        QCOMPARE(m.data(m.index(1, 1), Qt::BackgroundRole).value<QBrush>().color(),
                 QColor(255, 0, 0));
        QCOMPARE(m.data(m.index(1, 17), Qt::BackgroundRole).value<QBrush>().color(),
                 QColor(255, 0, 0));
    }
};

QTEST_MAIN(TestMainWindow)
#include "test_main_window.moc"
