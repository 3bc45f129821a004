// The beacon's controls in the main window follow the machine: captions,
// counter, the disabled mode box, the flash, the keys Pause and Ctrl+B, the
// pause prompt of Label33, and the CW window kept quiet while it runs.
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include "core/i18n/texts.h"
#include "core/keying/audio.h"
#include "core/keying/keying_fakes.h"
#include "core/settings/settings.h"
#include "remote_client.h"
#include "support/fakes.h"
#include "support/temp_dir.h"
#include "ui/beacon_binding.h"
#include "ui/beacon_remote_port.h"
#include "ui/cw_binding.h"
#include "ui/main_window.h"
#include "ui/remote_binding.h"

using namespace orv;
using orv::ui::MainWindow;

namespace {
class FilePlayer final : public keying::MediaPlayer {
public:
    void open(const std::filesystem::path& p) override {
        ++opens;
        file = p.filename().string();
        pos = 0;
    }
    void play(long) override {}
    void stop() override {}
    void close() override { file.clear(); }
    long position() override { return pos; }
    long length() override { return file.empty() ? 0 : 2000; }
    std::string file;
    long pos = 0;
    int opens = 0;
};
} // namespace

class TestBeacon : public QObject {
    Q_OBJECT
private:
    test::TempDir dir;
    Texts texts;
    test::FakeClock clock;
    test::CountingBeeper beeper;
    test::FakeDialogs dialogs;
    test::KeyingChain chain;
    FilePlayer player;
    std::unique_ptr<Settings> settings;
    std::unique_ptr<MainWindow> w;
    ui::CwBinding* cw = nullptr;
    ui::BeaconBinding* beacon = nullptr;

    template <class T> T* find(const char* name) { return w->findChild<T*>(name); }
    QPushButton* button() { return find<QPushButton>("BakeEinAus"); }
    QString caption() { return button()->text(); }
private slots:
    void init() {
        settings = std::make_unique<Settings>(IniFile{dir.path() / "OrvantaContest.INI"});
        settings->setOpCalls({{"DL1ABC", "cq.wav", "cq de dl1abc", ""}});
        settings->set(keys::CWWPM, 60);
        settings->set(keys::CWEND, "sk");
        settings->set(keys::BakeArt, 1);
        std::filesystem::create_directories(dir.path() / "Audio");
        test::writeFile(dir.path() / "Audio" / "cq.wav", "RIFF");
        w = std::make_unique<MainWindow>(texts, clock, beeper);
        w->setModes({"SSB", "CW", "FM"});
        w->setOperators({"DL1ABC"}, "DL1ABC");
        w->show();
        cw = new ui::CwBinding(
            *w, {texts, *settings, dialogs, chain.port, chain.keyer, player, AppPaths{dir.path()}},
            clock);
        beacon = new ui::BeaconBinding(
            *w, {texts, *settings, dialogs, chain.port, chain.keyer, player, AppPaths{dir.path()}},
            cw);
        chain.line.calls.clear();
        dialogs.informed.clear();
        dialogs.asked.clear();
        player.pos = 0;
    }
    void cleanup() {
        w.reset();
        QVERIFY(!chain.port.isOpen());
    }

    void controlsHaveTheirNamesAndTexts() {
        for (const char* n : {"Option1(0)", "Option1(1)"})
            QVERIFY(find<QRadioButton>(n));
        QVERIFY(find<QCheckBox>("Check1"));
        for (const char* n : {"Label33", "Label34", "Label35"})
            QVERIFY(find<QLabel>(n));
        for (const char* n : {"Picture8", "Picture14(0)", "Picture14(1)"})
            QVERIFY(find<QFrame>(n));
        QCOMPARE(caption(), QString::fromStdString(texts(24)));
        QCOMPARE(find<QRadioButton>("Option1(0)")->text(), QString::fromStdString(texts(244)));
        QCOMPARE(find<QComboBox>("Combo10")->toolTip(), QString::fromStdString(texts(306)));
        QVERIFY(find<QRadioButton>("Option1(1)")->isChecked());
        find<QRadioButton>("Option1(0)")->click();
        QCOMPARE(settings->get(keys::BakeArt), 0LL);

        auto* mode = find<QComboBox>("Combo3");
        mode->setCurrentText("SSB");
        QVERIFY(find<QCheckBox>("Check1")->isHidden());
        QVERIFY(find<QLabel>("Label35")->isHidden());
        mode->setCurrentText("CW");
        QVERIFY(!find<QCheckBox>("Check1")->isHidden());
        find<QCheckBox>("Check1")->click();
        QVERIFY(settings->get(keys::CWLoopEinAus));
    }

    void keyedRepeatRunsAndEnds() {
        find<QComboBox>("Combo3")->setCurrentText("CW");
        find<QComboBox>("Combo10")->setEditText("3");
        QTest::mouseClick(button(), Qt::LeftButton);
        QCOMPARE(caption(), QString("OnAir"));
        QVERIFY(!find<QComboBox>("Combo3")->isEnabled());
        QCOMPARE(find<QLabel>("Label34")->text(), QString("1"));
        QTRY_COMPARE(caption(), QString::fromStdString(texts(24)));
        QCOMPARE(find<QLabel>("Label34")->text(), QString("0"));
        QVERIFY(find<QComboBox>("Combo3")->isEnabled());
        QCOMPARE(chain.opens(), 1);
        QVERIFY(!chain.port.isOpen());
    }

    void singleKeyedRunIgnoresThePauseKey() {
        find<QComboBox>("Combo3")->setCurrentText("CW");
        find<QRadioButton>("Option1(0)")->click();
        QTest::mouseClick(button(), Qt::LeftButton);
        QCOMPARE(caption(), QString("OnAir"));
        QVERIFY(!button()->isEnabled());
        auto* call = find<QLineEdit>("Text3");
        QTest::keyClick(call, Qt::Key_Pause); // the button is disabled: no stop
        QCOMPARE(caption(), QString("OnAir"));
        QTRY_COMPARE(caption(), QString::fromStdString(texts(24)));
        QVERIFY(button()->isEnabled());
        QCOMPARE(chain.opens(), 1);
        QVERIFY(!chain.port.isOpen());
    }

    void voiceRepeatFlashesPausesAndStopsByKey() {
        settings->set(keys::LoopPause, 1);
        find<QComboBox>("Combo3")->setCurrentText("SSB");
        find<QComboBox>("Combo10")->setEditText("");
        auto* call = find<QLineEdit>("Text3");
        call->setFocus();
        QTest::keyClick(call, Qt::Key_Pause);
        QCOMPARE(caption(), QString("OnAir"));
        QVERIFY(chain.port.isOpen());
        QVERIFY(!find<QFrame>("Picture8")->isEnabled());
        const QColor normal = button()->palette().color(QPalette::Button);
        QTRY_COMPARE(button()->palette().color(QPalette::Button), QColor(255, 0, 0));
        QTRY_COMPARE(button()->palette().color(QPalette::Button), normal);

        // The CW window's F-keys are dead while the beacon runs.
        QTest::keyClick(call, Qt::Key_F12);
        QVERIFY(cw->cwWindow());
        call->activateWindow();
        call->setFocus();
        settings->set(keying::CWTextKey(2), "TEST");
        QTest::keyClick(call, Qt::Key_F3);
        QCOMPARE(chain.opens(), 1);
        QVERIFY(dialogs.informed.empty());

        player.pos = 2000; // the file ends
        QTRY_COMPARE(caption(), QString("On-Air"));
        QVERIFY(!chain.port.isOpen());
        QCOMPARE(find<QLabel>("Label34")->text(), QString("1"));
        QTRY_COMPARE(caption(), QString("OnAir")); // after LoopPause, the next round
        QCOMPARE(chain.opens(), 2);
        QTest::keyClick(call, Qt::Key_B, Qt::ControlModifier);
        QCOMPARE(caption(), QString::fromStdString(texts(24)));
        QVERIFY(!chain.port.isOpen());
        QVERIFY(find<QComboBox>("Combo3")->isEnabled());
        QVERIFY(find<QFrame>("Picture8")->isEnabled());
    }

    // The station's other programs read and press the beacon over the
    // command interface as the button does.
    void remoteControlPressesTheBeacon() {
        const quint16 tcp = test::freePort();
        settings->file().write("DDE", "Port", std::to_string(tcp));
        ui::BeaconRemotePort beaconPort(beacon->control());
        auto* remote = new ui::RemoteBinding(*w, *settings, texts);
        remote->setBeacon(beaconPort);
        test::RemoteClient client;
        QVERIFY(client.connectTo(tcp));
        QCOMPARE(client.ask("GETBKSTA:"), std::optional<QByteArray>("BKSTA1"));
        find<QComboBox>("Combo3")->setCurrentText("CW");
        find<QComboBox>("Combo10")->setEditText("");
        client.send("SET_BKON:\r\n");
        QTRY_COMPARE(caption(), QString("OnAir"));
        QCOMPARE(client.ask("GETBKSTA:"), std::optional<QByteArray>("BKSTA2"));
        // A second start while it runs changes nothing.
        client.send("SET_BKON:\r\n");
        QCOMPARE(client.ask("GETBKSTA:"), std::optional<QByteArray>("BKSTA2"));
        client.send("SETBKOFF:\r\n");
        QTRY_COMPARE(caption(), QString::fromStdString(texts(24)));
        QCOMPARE(client.ask("GETBKSTA:"), std::optional<QByteArray>("BKSTA1"));
        delete remote;
    }

    void closingTheWindowReleasesThePort() {
        find<QComboBox>("Combo3")->setCurrentText("SSB");
        QTest::mouseClick(button(), Qt::LeftButton);
        QVERIFY(chain.port.isOpen());
        w->close();
        QVERIFY(!chain.port.isOpen());
        QCOMPARE(player.file, std::string());
    }

    void pausePromptWritesTheRoutesSetting() {
        std::deque<std::optional<std::string>> answers{"abc", "7", "12", std::nullopt};
        std::vector<std::string> prompts;
        beacon->askPause = [&](const std::string& p) {
            prompts.push_back(p);
            auto a = answers.front();
            answers.pop_front();
            return a;
        };
        find<QComboBox>("Combo3")->setCurrentText("SSB");
        dialogs.answers = {Answer::Retry};
        QTest::mouseDClick(find<QLabel>("Label33"), Qt::LeftButton);
        QCOMPARE(settings->get(keys::LoopPause), 7LL);
        QCOMPARE(dialogs.asked, std::vector<std::string>{texts(225)});
        find<QComboBox>("Combo3")->setCurrentText("CW");
        QTest::mouseDClick(find<QLabel>("Label33"), Qt::LeftButton);
        QCOMPARE(settings->get(keys::CWLoopPause), 12LL);
        QTest::mouseDClick(find<QLabel>("Label33"), Qt::LeftButton); // cancel: nothing changes
        QCOMPARE(settings->get(keys::CWLoopPause), 12LL);
        QCOMPARE(prompts,
                 (std::vector<std::string>{texts(245), texts(245), texts(311), texts(311)}));
    }
};

QTEST_MAIN(TestBeacon)
#include "test_beacon.moc"
