// Rotator and rig in the main window against the real rotctld and rigctld
// dummy devices on 127.0.0.1, configured in the settings file as the options
// pages write it; and the two options pages driven directly.
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QSpinBox>
#include <QTableWidget>
#include <QTest>

#include "core/i18n/texts.h"
#include "core/rig/rig_settings.h"
#include "running_window.h"
#include "support/hamlib_daemon.h"
#include "ui/options/hamlib_pages.h"
#include "ui/rig_binding.h"

using orv::platform::QtDialogs;
using orv::test::HamlibDaemon;

class TestRig : public QObject, orv::test::RunningWindow {
    Q_OBJECT

    QString combo(const char* name) { return w->findChild<QComboBox*>(name)->currentText(); }
    orv::Texts texts;

private slots:
    void bandAndModeFollowTheRigAndAnOutageStaysQuiet() {
        HamlibDaemon rig("rigctld");
        rig.command("F 144300000");
        QVERIFY(start("rig", "[Rig]\nEnabled=-1\nModel=2\nDevice=" + rig.hostPort() +
                                 "\nOffset10000=10224\n"));
        QtDialogs::recorded().clear(); // the log's creation asked for its name
        w->setModes({"SSB", "CW", "FM"});
        QTRY_COMPARE_WITH_TIMEOUT(label("RigFrequency"), QString("144.300 MHz"), 4000);

        // Set at the rig: the band box and both modes follow within two polls.
        rig.command("F 432200000");
        rig.command("M CW 500");
        QTRY_COMPARE_WITH_TIMEOUT(combo("Combo1"), QString("432"), 2500);
        QTRY_COMPARE_WITH_TIMEOUT(combo("Combo3"), QString("CW"), 1000);
        QCOMPARE(combo("Combo2"), QString("CW"));
        QCOMPARE(label("RigFrequency"), QString("432.200 MHz"));

        // The QSO keeps the rig's frequency.
        logQso("OK1KKW", "JO70FD", "599001");
        QCOMPARE(stored(2).size(), std::size_t(1));
        QCOMPARE(stored(2)[0].freqHz, std::int64_t(432'200'000));

        // A 10 GHz transverter on a 2 m IF: the band is 10 GHz.
        rig.command("F 144200000");
        rig.command("M USB 2400");
        QTRY_COMPARE_WITH_TIMEOUT(combo("Combo1"), QString("10000"), 2500);
        QTRY_COMPARE_WITH_TIMEOUT(combo("Combo3"), QString("SSB"), 1000);
        QCOMPARE(label("RigFrequency"), QString("10368.200 MHz"));

        // The daemon goes away: a quiet line, no message box, the entry row
        // takes keys as before.
        rig.kill();
        QTRY_COMPARE_WITH_TIMEOUT(label("RigStatus"), QString::fromStdString(texts(1234)), 5000);
        QVERIFY(QtDialogs::recorded().empty());
        edit("Text3")->setFocus();
        edit("Text3")->clear();
        QTest::keyClicks(edit("Text3"), "dl1abc");
        QCOMPARE(edit("Text3")->text(), QString("DL1ABC"));
        QCOMPARE(label("RigFrequency"), QString());

        // And found again when it is back.
        rig.start();
        rig.command("F 1296200000");
        QTRY_COMPARE_WITH_TIMEOUT(combo("Combo1"), QString("1200"), 6000);
        QCOMPARE(label("RigStatus"), QString());
        QVERIFY(QtDialogs::recorded().empty());

        // Installed again, as after the options dialog: one binding, one
        // set of labels, linked again.
        orv::ui::RigBinding::install(*w, app->settings(), app->texts());
        QCOMPARE(w->findChildren<orv::ui::RigBinding*>().size(), qsizetype(1));
        QCOMPARE(w->findChildren<QLabel*>("RigFrequency").size(), qsizetype(1));
        QTRY_COMPARE_WITH_TIMEOUT(label("RigFrequency"), QString("1296.200 MHz"), 4000);
        stop();
    }

    void ctrlRTurnsTheAntennaAndTheMenusOfferIt() {
        HamlibDaemon rot("rotctld");
        QVERIFY(start("rot", "[Rotator]\nEnabled=-1\nModel=2\nDevice=" + rot.hostPort() + "\n"));
        QtDialogs::recorded().clear();
        QTRY_VERIFY_WITH_TIMEOUT(label("RotatorAzimuth").endsWith(QString("0") + QChar(0x00B0)),
                                 4000);
        // JO62QM to JO73AA: a bearing the dummy rotator reaches in seconds.
        edit("Text7")->setText("JO73AA");
        const QString bearing = edit("Text12")->text();
        QVERIFY(!bearing.isEmpty());
        const double target = bearing.chopped(1).toDouble();
        QVERIFY(target > 5 && target < 60);
        QTest::keyClick(edit("Text3"), Qt::Key_R, Qt::ControlModifier);
        QTRY_VERIFY_WITH_TIMEOUT(std::abs(rot.number("p") - target) < 1.0, 20000);
        QTRY_COMPARE_WITH_TIMEOUT(label("RotatorAzimuth"),
                                  QString::fromStdString(texts(1232)) + " " + bearing, 3000);

        // Ctrl+Shift+R stops a turn on its way.
        rot.command("P 180 0");
        QTRY_VERIFY_WITH_TIMEOUT(rot.number("p") > target + 5, 5000);
        QTest::keyClick(edit("Text3"), Qt::Key_R, Qt::ControlModifier | Qt::ShiftModifier);
        QTest::qWait(600);
        const double halted = rot.number("p");
        QTest::qWait(800);
        QVERIFY(std::abs(rot.number("p") - halted) < 0.5);
        QVERIFY(halted < 170);

        // The grid row's menu turns to the row's locator.
        logQso("OK1KKW", "JO62QM", "59001"); // own square: bearing 0
        QMenu* menu = w->gridMenuFor(0);
        QVERIFY(menu);
        auto* turn = menu->findChild<QAction*>("MnGridTurnAntenna");
        QVERIFY(turn);
        QCOMPARE(turn->text(), QString::fromStdString(texts(1231)));
        turn->trigger();
        QTRY_VERIFY_WITH_TIMEOUT(rot.number("p") < 1.0, 30000);
        QVERIFY(w->findChild<QMenu*>("MnList1")->findChild<QAction*>("MnListTurnAntenna"));

        // The key help lists both keys.
        w->showKeyHelp();
        auto* keys = w->findChild<QTableWidget*>("KeyTable");
        QVERIFY(keys);
        QVERIFY(!keys->findItems(QString::fromStdString(texts(1236)), Qt::MatchExactly).empty());
        QVERIFY(!keys->findItems(QString::fromStdString(texts(1238)), Qt::MatchExactly).empty());
        QVERIFY(QtDialogs::recorded().empty());
        stop();
    }

    void optionsPagesLoadValidateAndSave() {
        orv::test::TempDir d;
        orv::Settings s{orv::IniFile{d / "OrvantaContest.INI"}};
        orv::ui::HamlibPage rigPage(texts, orv::ui::HamlibPage::Device::Rig);
        orv::ui::HamlibPage rotPage(texts, orv::ui::HamlibPage::Device::Rotator);
        rigPage.load(s);
        rotPage.load(s);

        // The search narrows the installed models by maker and model.
        auto* search = rigPage.findChild<QLineEdit*>("ModelSearch");
        auto* list = rigPage.findChild<QListWidget*>("ModelList");
        QVERIFY(list->count() > 100);
        QTest::keyClicks(search, "hamlib net rigctl");
        int shown = 0;
        for (int i = 0; i < list->count(); ++i)
            if (!list->item(i)->isHidden()) {
                ++shown;
                list->setCurrentRow(i);
            }
        QCOMPARE(shown, 1);
        rigPage.findChild<QCheckBox*>("DeviceEnabled")->setChecked(true);

        struct Case {
            const char* device;
            const char* offset;
            int text;
            const char* field;
        };
        const Case cases[] = {
            {"", "", 1229, "DevicePath"},
            {"localhost", "", 1243, "DevicePath"},
            {"localhost:4532", "10 GHz", 1230, "Offset10000"},
            {"localhost:4532", "10224,5", 0, ""},
        };
        for (const Case& c : cases) {
            rigPage.findChild<QLineEdit*>("DevicePath")->setText(c.device);
            rigPage.findChild<QLineEdit*>("Offset10000")->setText(c.offset);
            const auto f = rigPage.validate();
            QCOMPARE(f ? f->text : 0, c.text);
            QCOMPARE(f ? f->field : std::string(), std::string(c.field));
        }
        rigPage.save(s);
        const auto saved = orv::rig::readRigSettings(s);
        QCOMPARE(saved, (orv::rig::DeviceSettings{true, 2, "localhost:4532", 0}));
        QCOMPARE(orv::rig::readTransverterOffsets(s)[7], 10224.5);

        // A rotator switched on without a model is refused; the page read
        // back shows what was saved.
        rotPage.findChild<QCheckBox*>("DeviceEnabled")->setChecked(true);
        rotPage.findChild<QListWidget*>("ModelList")->clearSelection();
        QCOMPARE(rotPage.validate()->text, 1228);
        const orv::rig::DeviceSettings serial{true, 1, "/dev/ttyUSB1", 4800};
        orv::rig::writeRotatorSettings(s, serial);
        rotPage.load(s);
        QCOMPARE(rotPage.findChild<QSpinBox*>("DeviceSpeed")->value(), 4800);
        QVERIFY(!rotPage.validate());
        orv::rig::writeRotatorSettings(s, {});
        rotPage.save(s);
        QCOMPARE(orv::rig::readRotatorSettings(s), serial);
    }
};

QTEST_MAIN(TestRig)
#include "test_rig.moc"
