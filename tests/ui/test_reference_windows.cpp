// The reference data in the main window: the lookup list while a call or a
// locator is typed, the call database editor, the call list import, the
// country list imports and download, and the database comparison. Each test
// runs the real start in a temporary data folder with a real QBDat.sqlite.
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include "core/reference/call_db.h"
#include "core/reference/country_download.h"
#include "core/reference/country_list.h"
#include "core/settings/ini_file.h"
#include "platform/qt_dialogs.h"
#include "running_window.h"
#include "support/ftp_server.h"
#include "support/temp_dir.h"
#include "ui/calldb_editor.h"
#include "ui/comparison_panel.h"
#include "ui/log_dialog.h"
#include "ui/lookup_binding.h"
#include "ui/main_window.h"
#include "ui/reference_menus.h"

using orv::Answer;
using orv::CallRecord;
using orv::DateTime;
using orv::platform::QtDialogs;
using orv::test::createLog;
using orv::ui::CallDbEditor;
using orv::ui::ComparisonPanel;
using orv::ui::LogDialog;
using orv::ui::LookupBinding;
using orv::ui::ReferenceHooks;

namespace {

const std::filesystem::path kCtyDat = "/usr/share/hamradio-files/cty.dat";
const std::filesystem::path kMasterScp = "/usr/share/hamradio-files/MASTER.SCP";

CallRecord rec(const std::string& call, const std::string& loc, int b2 = 0,
               std::optional<DateTime> last = std::nullopt) {
    CallRecord r;
    r.Call = call;
    r.Locator = loc;
    r.counters[1] = b2;
    r.LastDate = last;
    return r;
}

// The database every test starts from.
void fillDb(const std::filesystem::path& db) {
    orv::CallDbStore store(db);
    for (const auto& r : {rec("DL1ABC", "JO62QM", 3, DateTime{2025, 5, 3, 12, 0, 0}),
                          rec("DL1ABD", "JN58TD", 1200), rec("OE1ABC/P", "JN88AB"),
                          rec("OE1ABCD", "JN88CC"), rec("DK2XY", "JO62RA"), rec("G4AAA", "IO91VL")})
        QVERIFY(store.add(r).ok());
}

QStringList listLines(QListWidget* list) {
    QStringList out;
    for (int i = 0; i < list->count(); ++i)
        out << list->item(i)->text();
    return out;
}

bool recorded(const std::string& text) {
    for (const auto& r : QtDialogs::recorded())
        if (r.find(text) != std::string::npos)
            return true;
    return false;
}

} // namespace

class TestReferenceWindows : public QObject, public orv::test::RunningWindow {
    Q_OBJECT

private:
    QListWidget* list() { return w->findChild<QListWidget*>("List1"); }
    QLabel* found() {
        return list()->parentWidget()->findChild<QLabel*>("Label11", Qt::FindDirectChildrenOnly);
    }
    const orv::Texts& texts() { return app->texts(); }

    // Types into a field as the operator does and waits for the list.
    void typeAndWait(QLineEdit* field, const QString& keys) {
        auto* binding = w->findChild<LookupBinding*>("LookupBinding");
        int shown = 0;
        auto c = connect(binding, &LookupBinding::listShown, this, [&] { ++shown; });
        field->setFocus();
        QTest::keyClicks(field, keys);
        QTRY_VERIFY_WITH_TIMEOUT(shown > 0, 3000);
        // Nothing older may overwrite the list afterwards.
        QTest::qWait(30);
        disconnect(c);
    }

    void commitQso(const QString& call, const QString& locator) {
        edit("Text3")->setText(call);
        edit("Text6")->setText("59001");
        edit("Text7")->setText(locator);
        edit("Text7")->setFocus();
        QTest::keyClick(edit("Text7"), Qt::Key_Return);
        QVERIFY2(edit("Text3")->text().isEmpty(),
                 qPrintable(w->findChild<QLabel*>("Label13")->text()));
    }

private slots:
    void init() {
        QVERIFY(start("reference", {}, [](const auto& d) { fillDb(d / "QBDat.sqlite"); }));
        QtDialogs::recorded().clear();
    }
    void cleanup() {
        stop();
        ReferenceHooks::reset();
    }

    void typedCallFillsListCountAndWorkedBefore() {
        commitQso("DL1ABC", "JO62QM");
        QCOMPARE(app->capture()->band(), 1);

        // Two characters wait for the standing interval, more go at once.
        auto* timer2 = w->findChild<QTimer*>("Timer2");
        edit("Text3")->setFocus();
        QTest::keyClicks(edit("Text3"), "dl");
        QVERIFY(timer2->isActive());
        QCOMPARE(timer2->interval(), 500);
        QTest::keyClicks(edit("Text3"), "1");
        QCOMPARE(timer2->interval(), 1);
        edit("Text3")->clear();

        typeAndWait(edit("Text3"), "dl1");
        const QStringList expected = {
            "DL1ABC       JO62QM   0   3   0   0   0   0   0   0   0   0 03.05.2025",
            "DL1ABD       JN58TD   0 999   0   0   0   0   0   0   0   0",
            "DL1ABC       JO62QM ***** BEREITS GEARBEITET *****",
        };
        QCOMPARE(listLines(list()), expected);
        QCOMPARE(found()->text(), QString("2 Rufzeichen gefunden"));
        QCOMPARE(list()->currentRow(), 0);

        // A four-character locator narrows the call search.
        edit("Text3")->clear();
        edit("Text7")->setText("JO62");
        typeAndWait(edit("Text3"), "DL1");
        QCOMPARE(listLines(list()), QStringList({expected[0], expected[2]}));
        QCOMPARE(found()->text(), QString("1 Rufzeichen gefunden"));

        // The locator search alone, with the grid's locator column behind.
        edit("Text3")->clear();
        edit("Text7")->clear();
        typeAndWait(edit("Text7"), "JO62");
        QCOMPARE(list()->count(), 3);
        QVERIFY(list()->item(0)->text().startsWith("DK2XY        JO62RA"));
        QVERIFY(list()->item(1)->text().startsWith("DL1ABC       JO62QM"));
        QCOMPARE(list()->item(2)->text(), expected[2]);
        QCOMPARE(found()->text(), QString("2 Rufzeichen gefunden"));

        // Three letters that match nothing: no lines and a count of 0.
        edit("Text7")->clear();
        edit("Text3")->clear();
        typeAndWait(edit("Text3"), "QQQ");
        QCOMPARE(list()->count(), 0);
        QCOMPARE(found()->text(), QString("0 Rufzeichen gefunden"));
    }

    void laterKeyStrokeWins() {
        // Each key starts a search; only the last text's result stays.
        typeAndWait(edit("Text3"), "OE1ABC");
        QCOMPARE(found()->text(), QString("2 Rufzeichen gefunden"));
        typeAndWait(edit("Text3"), "D");
        QCOMPARE(listLines(list()).size(), 1);
        QVERIFY(list()->item(0)->text().startsWith("OE1ABCD"));
        QCOMPARE(found()->text(), QString("1 Rufzeichen gefunden"));
    }

    void keysWalkTheListAndStopTheTimers() {
        {
            orv::CallDbStore store(*dir / "QBDat.sqlite");
            for (int i = 0; i < 20; ++i)
                QVERIFY(store.add(rec(QString("PA%1XX").arg(i + 10).toStdString(), "JO22AA")).ok());
        }
        w->findChild<LookupBinding*>("LookupBinding")->reload();
        typeAndWait(edit("Text3"), "PA");
        QCOMPARE(list()->count(), 20);
        QCOMPARE(found()->text(), QString("20 Rufzeichen gefunden"));
        const std::pair<Qt::Key, int> walk[] = {
            {Qt::Key_PageDown, 14}, {Qt::Key_PageDown, 19}, {Qt::Key_Down, 19}, {Qt::Key_Up, 18},
            {Qt::Key_PageUp, 4},    {Qt::Key_PageUp, 0},    {Qt::Key_Up, 0},
        };
        for (const auto& [key, row] : walk) {
            QTest::keyClick(edit("Text3"), key);
            QCOMPARE(list()->currentRow(), row);
        }
        QCOMPARE(edit("Text3")->text(), QString("PA")); // the keys type nothing

        // A key going down stops a waiting search before it starts; the
        // key coming up starts it anew.
        auto* timer2 = w->findChild<QTimer*>("Timer2");
        QTest::keyClick(edit("Text3"), Qt::Key_Backspace);
        QTest::keyClicks(edit("Text3"), "A");
        QVERIFY(timer2->isActive());
        QTest::keyPress(edit("Text3"), Qt::Key_1);
        QVERIFY(!timer2->isActive());
        QTest::keyRelease(edit("Text3"), Qt::Key_1);
        QVERIFY(timer2->isActive());
        QCOMPARE(timer2->interval(), 1);

        // The locator search is narrowed by the call in hand.
        auto* timer8 = w->findChild<QTimer*>("Timer8");
        edit("Text3")->setText("PA1");
        typeAndWait(edit("Text7"), "JO22");
        QCOMPARE(list()->count(), 10); // PA10XX to PA19XX
        QCOMPARE(found()->text(), QString("10 Rufzeichen gefunden"));
        QTest::keyPress(edit("Text7"), Qt::Key_A);
        QVERIFY(!timer8->isActive());
    }

    void f8AndClickTakeRowIntoEntryRow() {
        typeAndWait(edit("Text3"), "DL1");
        QCOMPARE(list()->count(), 2);
        // Down walks the list from the call field; F8 takes the row.
        QTest::keyClick(edit("Text3"), Qt::Key_Down);
        QCOMPARE(list()->currentRow(), 1);
        QTest::keyClick(edit("Text3"), Qt::Key_Down);
        QCOMPARE(list()->currentRow(), 1); // no wrap
        QTest::keyClick(edit("Text3"), Qt::Key_F8);
        QCOMPARE(edit("Text3")->text(), QString("DL1ABD"));
        QCOMPARE(edit("Text7")->text(), QString("JN58TD"));
        QCOMPARE(QApplication::focusWidget(), edit("Text4"));

        // A click on a row does the same.
        edit("Text3")->clear();
        edit("Text7")->clear();
        typeAndWait(edit("Text3"), "OE1");
        QCOMPARE(list()->count(), 2);
        const QRect r = list()->visualItemRect(list()->item(0));
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, r.center());
        QCOMPARE(edit("Text3")->text(), QString("OE1ABC/P"));
        QCOMPARE(edit("Text7")->text(), QString("JN88AB"));

        // The list's menu: the call alone, and the note for the editor.
        edit("Text3")->clear();
        list()->setCurrentRow(1);
        auto* menu = w->findChild<QMenu*>("MnList1");
        menu->findChild<QAction*>("MnCallADD")->trigger();
        QCOMPARE(edit("Text3")->text(), QString("OE1ABCD"));
        menu->findChild<QAction*>("MnEditList1")->trigger();
        QCOMPARE(orv::IniFile(*dir / "QBDatEditList.ini").readSection("QBDatEditList"),
                 std::vector<std::string>{"OE1ABCD JN88CC"});
    }

    void editorAddsChangesAndDeletesRows() {
        QtDialogs::queueAnswer(Answer::Yes); // reload after the change
        ReferenceHooks::runModal = [this](QDialog& d) {
            auto& e = static_cast<CallDbEditor&>(d);
            auto* call = e.findChild<QLineEdit*>("EditCall");
            auto* loc = e.findChild<QLineEdit*>("EditLocator");
            auto* status = e.findChild<QLabel*>("QBDatStatus");
            // Refused by the database's checks: nothing is stored.
            call->setText("zz9zz");
            loc->setText("JO6");
            e.addRow();
            [&] { QCOMPARE(status->text(), QString::fromStdString(texts()(2))); }();
            loc->setText("jo70aa");
            e.findChild<QSpinBox*>("EditB2")->setValue(4);
            e.findChild<QLineEdit*>("EditLastDate")->setText("2025-13-01");
            e.addRow();
            [&] { QCOMPARE(status->text(), QString::fromStdString(texts()(13))); }();
            e.findChild<QLineEdit*>("EditLastDate")->setText("2025-06-01 10:00");
            e.addRow();
            [&] { QVERIFY(status->text().isEmpty()); }();
            return int(QDialog::Accepted);
        };
        w->findChild<QAction*>("QBDatEdit")->trigger();
        QVERIFY(recorded(texts()(260)));
        orv::CallDbStore store(*dir / "QBDat.sqlite");
        QCOMPARE(store.count(), 7);

        typeAndWait(edit("Text3"), "ZZ9");
        QCOMPARE(listLines(list()),
                 QStringList({"ZZ9ZZ        JO70AA   0   4   0   0   0   0   0   0   0   0 "
                              "01.06.2025"}));

        // Change the row's locator and delete another, in one sitting.
        QtDialogs::recorded().clear();
        QtDialogs::queueAnswer(Answer::Yes); // delete
        QtDialogs::queueAnswer(Answer::Yes); // reload
        ReferenceHooks::runModal = [](QDialog& d) {
            auto& e = static_cast<CallDbEditor&>(d);
            e.findChild<QLineEdit*>("QBDatFilter")->setText("ZZ9");
            e.showRow(0);
            e.findChild<QLineEdit*>("EditLocator")->setText("JO71BB");
            e.changeRow();
            e.findChild<QLineEdit*>("QBDatFilter")->setText("G4AAA");
            e.showRow(0);
            e.deleteRow();
            return int(QDialog::Accepted);
        };
        w->findChild<QAction*>("QBDatEdit")->trigger();
        QCOMPARE(store.count(), 6);
        edit("Text3")->clear();
        typeAndWait(edit("Text3"), "ZZ9");
        QVERIFY(list()->item(0)->text().startsWith("ZZ9ZZ        JO71BB"));
        edit("Text3")->clear();
        typeAndWait(edit("Text3"), "G4A");
        QCOMPARE(list()->count(), 0);
    }

    void editorTakesNotesFromTheList() {
        orv::ui::noteForEditor(app->paths(), "oe1abcd", "jn88cc");
        orv::ui::noteForEditor(app->paths(), "NEW1XX", "JO50AA");
        QtDialogs::queueAnswer(Answer::No); // no reload
        ReferenceHooks::runModal = [](QDialog& d) {
            auto& e = static_cast<CallDbEditor&>(d);
            auto* notes = e.findChild<QListWidget*>("QBDatEditList");
            [&] { QCOMPARE(notes->count(), 2); }();
            e.takeNote(0);
            [&] {
                QCOMPARE(e.findChild<QLineEdit*>("EditCall")->text(), QString("OE1ABCD"));
                QCOMPARE(e.findChild<QLineEdit*>("EditLocator")->text(), QString("JN88CC"));
            }();
            e.takeNote(1);
            e.addRow();
            [&] { QCOMPARE(notes->count(), 1); }();
            return int(QDialog::Accepted);
        };
        w->findChild<QAction*>("QBDatEdit")->trigger();
        const auto left = orv::ui::editorNotes(app->paths());
        QCOMPARE(left.size(), std::size_t{1});
        QCOMPARE(left[0].call, std::string("OE1ABCD"));
        // Not reloaded: the list does not know the new call yet.
        typeAndWait(edit("Text3"), "NEW1");
        QCOMPARE(list()->count(), 0);
    }

    void newQBDatAsksFirst() {
        w->findChild<QAction*>("NewQBDat")->trigger(); // default answer No
        QVERIFY(recorded(texts()(30)));
        QCOMPARE(orv::CallDbStore(*dir / "QBDat.sqlite").count(), 6);

        QtDialogs::queueAnswer(Answer::Yes);
        QtDialogs::queueAnswer(Answer::Yes);
        w->findChild<QAction*>("NewQBDat")->trigger();
        QCOMPARE(orv::CallDbStore(*dir / "QBDat.sqlite").count(), 0);
        QVERIFY(recorded(texts()(260)));
        typeAndWait(edit("Text3"), "DL1");
        QCOMPARE(list()->count(), 0);
        QCOMPARE(found()->text(), QString("0 Rufzeichen gefunden"));
    }

    void callListImport() {
        // A list with a bad line changes nothing.
        orv::test::writeFile(*dir / "bad.txt", "PA3ZZZ JO22AA\nthis is no call line at all\n");
        ReferenceHooks::openFile = [this](QWidget*, const QString&, const QString&) {
            return *dir / "bad.txt";
        };
        w->findChild<QAction*>("MnQBDatImport")->trigger();
        QVERIFY(recorded(texts()(258)));
        QCOMPARE(orv::CallDbStore(*dir / "QBDat.sqlite").count(), 6);

        if (!std::filesystem::exists(kMasterScp))
            QSKIP("MASTER.SCP of hamradio-files is not installed");
        QtDialogs::recorded().clear();
        QtDialogs::queueAnswer(Answer::Yes); // reload
        ReferenceHooks::openFile = [](QWidget*, const QString&, const QString&) {
            return kMasterScp;
        };
        w->findChild<QAction*>("MnQBDatImport")->trigger();
        QVERIFY(recorded(texts()(85)));
        QVERIFY(recorded(texts()(260)));
        QVERIFY(orv::CallDbStore(*dir / "QBDat.sqlite").count() > 1000);
        typeAndWait(edit("Text3"), "DL1ABC");
        // The known row keeps its locator; the list's calls come in beside.
        QVERIFY(list()->item(0)->text().startsWith("DL1ABC       JO62QM"));
    }

    void badCountryFileKeepsOldList() {
        ReferenceHooks::openFile = [](QWidget*, const QString&, const QString& filter) {
            return filter.startsWith("*.DAT") ? kCtyDat : std::filesystem::path();
        };
        w->findChild<QAction*>("DXCCImp")->trigger();
        QVERIFY(recorded(texts()(85)));
        const auto db = app->paths().countryDbPath();
        auto germany = orv::CountryList::load(db).lookup("DL1ABC");
        QVERIFY(germany);
        QCOMPARE(germany->Country, std::string("Fed. Rep. of Germany"));

        QtDialogs::recorded().clear();
        orv::test::writeFile(*dir / "bad.dat", "This is not a country file, only some text;\n");
        ReferenceHooks::openFile = [this](QWidget*, const QString&, const QString&) {
            return *dir / "bad.dat";
        };
        w->findChild<QAction*>("DXCCImp")->trigger();
        QCOMPARE(QtDialogs::recorded().size(), std::size_t{1});
        QCOMPARE(QtDialogs::recorded().front(), texts()(84));
        QVERIFY(orv::CountryList::load(db).lookup("DL1ABC"));

        QtDialogs::recorded().clear();
        w->findChild<QAction*>("MnARRLImport")->trigger();
        QCOMPARE(QtDialogs::recorded().front(), texts()(84));
        QCOMPARE(orv::CountryList::load(db).lookup("DL1ABC")->Country, germany->Country);

        // Cancel in the chooser does nothing at all.
        QtDialogs::recorded().clear();
        ReferenceHooks::openFile = [](QWidget*, const QString&, const QString&) {
            return std::filesystem::path();
        };
        w->findChild<QAction*>("DXCCImp")->trigger();
        QVERIFY(QtDialogs::recorded().empty());
    }

    void downloadFromLoopbackServer() {
        // A real HTTP server on the loopback address serves the file.
        std::filesystem::create_directories(*dir / "www");
        std::filesystem::copy_file(kCtyDat, *dir / "www" / "cty.dat");
        orv::test::HttpServer server(*dir / "www");
        QVERIFY(server.running());

        app->settings().set(orv::keys::CTYDownloadURL, server.url("cty.dat"));
        auto* download = w->findChild<QAction*>("MnARRLImportDownL");
        download->trigger();
        QVERIFY(!download->isEnabled()); // the window goes on while the file comes
        QTRY_VERIFY_WITH_TIMEOUT(download->isEnabled(), 20000);
        QCOMPARE(QtDialogs::recorded().back(), texts()(85));
        const auto db = app->paths().countryDbPath();
        QVERIFY(orv::CountryList::load(db).lookup("G4AAA"));

        // A missing file on the server: IText(275), and the list stays.
        QtDialogs::recorded().clear();
        app->settings().set(orv::keys::CTYDownloadURL, server.url("missing.dat"));
        download->trigger();
        QTRY_VERIFY_WITH_TIMEOUT(download->isEnabled(), 20000);
        QCOMPARE(QtDialogs::recorded().back(), texts()(275));
        QVERIFY(orv::CountryList::load(db).lookup("G4AAA"));
    }

    void comparisonGroupsAndActions() {
        commitQso("DL1ABC", "JO62QM"); // known with 3 QSOs on the band: beyond doubt
        commitQso("OE1ABC", "JN88AA"); // finds OE1ABC/P, not OE1ABCD
        commitQso("XX9XX", "JO50AA");  // unknown: stands alone
        auto* frame = w->findChild<QWidget*>("Frame4");
        auto* grid = frame->findChild<QTableWidget*>("MSFlexGrid3");
        auto* panel = w->findChild<ComparisonPanel*>("ComparisonPanel");
        w->findChild<QAction*>("MnDBCheck")->trigger();
        QVERIFY(frame->isVisible());
        QVERIFY(!w->findChild<QWidget*>("Frame1")->isEnabled());
        QCOMPARE(grid->columnCount(), 14);
        QCOMPARE(grid->rowCount(), 4);
        using K = ComparisonPanel::RowKind;
        QCOMPARE(panel->rowKind(0), K::Qso);
        QCOMPARE(grid->item(0, 1)->text(), QString("OE1ABC"));
        QCOMPARE(grid->item(0, 4)->text(), QString("***")); // 144 MHz column
        QCOMPARE(grid->item(0, 0)->background().color(), grid->palette().color(QPalette::Text));
        QCOMPARE(panel->rowKind(1), K::Record);
        QCOMPARE(grid->item(1, 1)->text(), QString("OE1ABC/P"));
        QCOMPARE(panel->rowKind(2), K::Separator);
        QCOMPARE(grid->item(2, 5)->background().color(), QColor(128, 128, 0));
        QCOMPARE(panel->rowKind(3), K::Qso);
        QCOMPARE(grid->item(3, 1)->text(), QString("XX9XX"));
        QVERIFY(!frame->findChild<QPushButton*>("Command4")->isVisible());

        // By locator: JN88AA and JO50AA have no record holding them.
        frame->findChild<QPushButton*>("Command6")->click();
        QCOMPARE(grid->rowCount(), 3);
        QCOMPARE(panel->rowKind(1), K::Separator);

        // A QSO row opens the correction line; a record row fills it.
        frame->findChild<QPushButton*>("Command5")->click();
        QMenu* m = panel->menuFor(1);
        QVERIFY(!m->findChild<QAction*>("MnGrid3CallLocGO")->isEnabled());
        m = panel->menuFor(0);
        QVERIFY(m->findChild<QAction*>("MnGrid3Edit")->isVisible());
        m->findChild<QAction*>("MnGrid3Edit")->trigger();
        QVERIFY(w->editLineOpen());
        QCOMPARE(edit("Text33")->text(), QString("OE1ABC"));
        m = panel->menuFor(1);
        QVERIFY(!m->findChild<QAction*>("MnGrid3Edit")->isVisible());
        QVERIFY(m->findChild<QAction*>("MnGrid3CallLocGO")->isEnabled());
        m->findChild<QAction*>("MnGrid3CallLocGO")->trigger();
        QCOMPARE(edit("Text33")->text(), QString("OE1ABC/P"));
        QCOMPARE(edit("Text77")->text(), QString("JN88AB"));
        m->findChild<QAction*>("MnGrid3DBEdit")->trigger();
        QCOMPARE(orv::ui::editorNotes(app->paths()).at(0).call, std::string("OE1ABC/P"));

        // Storing the correction asks first; Yes stores it and marks the QSO row.
        QtDialogs::queueAnswer(Answer::No);
        QTest::keyClick(edit("Text33"), Qt::Key_Return);
        QCOMPARE(QtDialogs::recorded().back(), texts()(282));
        QVERIFY(w->editLineOpen());
        QtDialogs::queueAnswer(Answer::Yes);
        QTest::keyClick(edit("Text33"), Qt::Key_Return);
        QVERIFY(!w->editLineOpen());
        QCOMPARE(grid->item(0, 1)->text(), QString("OE1ABC/P"));
        QCOMPARE(grid->item(0, 2)->text(), QString("JN88AB"));
        QCOMPARE(grid->item(0, 3)->background().color(), QColor(192, 0, 192));
        QCOMPARE(app->log()->rows(1)[1].call, std::string("OE1ABC/P"));

        frame->findChild<QPushButton*>("Command2")->click();
        QVERIFY(!frame->isVisible());
        QVERIFY(!w->editLineOpen());
        QVERIFY(w->findChild<QWidget*>("Frame1")->isEnabled());
    }

    void comparisonWithoutDoubtsAndAfterMerge() {
        {
            orv::CallDbStore store(*dir / "QBDat.sqlite");
            QVERIFY(store.add(rec("PA0AA", "JO22AA", 1)).ok());
        }
        w->findChild<LookupBinding*>("LookupBinding")->reload();
        commitQso("DL1ABC", "JO62QM");
        commitQso("PA0AA", "JO22AA");
        w->findChild<QAction*>("MnDBCheck")->trigger();
        auto* frame = w->findChild<QWidget*>("Frame4");
        auto* grid = frame->findChild<QTableWidget*>("MSFlexGrid3");
        QCOMPARE(grid->rowCount(), 0);
        auto* none = frame->findChild<QPushButton*>("Command4");
        QVERIFY(none->isVisible());
        QCOMPARE(none->text(), QString("Keine Unklarheiten gefunden"));
        // The frame's buttons are the two comparisons, the report and one close.
        QStringList buttons;
        for (const QPushButton* b : frame->findChildren<QPushButton*>())
            buttons << b->objectName();
        buttons.sort();
        QCOMPARE(buttons, QStringList({"Command2", "Command4", "Command5", "Command6"}));
        none->click();
        QVERIFY(!frame->isVisible());

        // Once this log's band is merged into the database, a call known
        // from one QSO only is no longer beyond doubt.
        orv::IniFile(*dir / "QBDat.ini").write("reference", "144", "2");
        w->findChild<QAction*>("MnDBCheck")->trigger();
        QCOMPARE(grid->rowCount(), 2);
        QCOMPARE(grid->item(0, 1)->text(), QString("PA0AA"));
        QCOMPARE(grid->item(1, 1)->text(), QString("PA0AA"));
        QVERIFY(!none->isVisible());
        QTest::keyClick(edit("Text3"), Qt::Key_Escape);
        QVERIFY(!frame->isVisible());
        QVERIFY(w->findChild<QWidget*>("Frame1")->isEnabled());
    }
};

QTEST_MAIN(TestReferenceWindows)
#include "test_reference_windows.moc"
