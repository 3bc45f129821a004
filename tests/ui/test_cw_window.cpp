// The CW window offscreen: memories, macros, the send guards, the keyed and
// the sound path, and the stop button, against a recorded key line, a
// recorded player and a real settings file.
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <memory>

#include "core/i18n/texts.h"
#include "core/keying/audio.h"
#include "core/keying/cw_settings.h"
#include "core/keying/key_port.h"
#include "core/keying/keying_fakes.h"
#include "core/keying/morse_table.h"
#include "core/keying/tone_file.h"
#include "core/settings/settings.h"
#include "support/fakes.h"
#include "support/temp_dir.h"
#include "ui/cw_window.h"

using namespace orv;

namespace {

class RecordingPlayer final : public keying::MediaPlayer {
public:
    void open(const std::filesystem::path& f) override {
        calls.push_back("open " + f.filename().string());
    }
    void play(long from) override { calls.push_back("play " + std::to_string(from)); }
    void stop() override { calls.push_back("stop"); }
    void close() override { calls.push_back("close"); }
    long position() override { return pos; }
    long length() override { return 2000; }
    std::vector<std::string> calls;
    long pos = 0;
};

int count(const std::vector<test::RecordingLine::Call>& calls, const std::string& op) {
    return static_cast<int>(
        std::count_if(calls.begin(), calls.end(), [&](const auto& c) { return c.op == op; }));
}

} // namespace

class TestCwWindow : public QObject {
    Q_OBJECT
private:
    std::unique_ptr<test::TempDir> dir;
    std::unique_ptr<Settings> settings;
    Texts texts;
    test::FakeDialogs dialogs;
    std::unique_ptr<keying::MonotonicClock> clock;
    std::unique_ptr<test::RecordingLine> line;
    std::unique_ptr<keying::KeyPort> port;
    std::unique_ptr<keying::Keyer> keyer;
    RecordingPlayer player;
    keying::QsoFields qso;
    keying::BeaconView beacon;
    QString status;
    std::vector<std::string> focus;
    std::unique_ptr<ui::CwWindow> w;

    template <class T = QPushButton> T* get(const QString& name) { return w->findChild<T*>(name); }
    void open(bool realClock = false) {
        if (realClock)
            clock = std::make_unique<keying::SteadyClock>();
        line = std::make_unique<test::RecordingLine>(*clock);
        port = std::make_unique<keying::KeyPort>(
            *line, [this](int n) { return keying::comDevice(*settings, n); });
        keyer = std::make_unique<keying::Keyer>(*port, *clock);
        ui::CwWindowHost host;
        host.qsoFields = [this] { return qso; };
        host.showStatus = [this](const QString& s) { status = s; };
        host.focusMain = [this](const std::string& f) { focus.push_back(f); };
        host.beaconState = [this] { return beacon; };
        ui::CwServices s{texts, *settings, dialogs, *port, *keyer, player, AppPaths{dir->path()}};
        w = std::make_unique<ui::CwWindow>(s, host);
        w->show();
    }
    int opens() const {
        return static_cast<int>(
            std::count_if(line->calls.begin(), line->calls.end(),
                          [](const auto& c) { return c.op.rfind("open", 0) == 0; }));
    }
    void waitSent() { QTRY_VERIFY_WITH_TIMEOUT(!w->sending(), 5000); }

private slots:
    void init() {
        dir = std::make_unique<test::TempDir>();
        settings = std::make_unique<Settings>(IniFile{dir->path() / "OrvantaContest.INI"});
        settings->set(keys::COMCW, 3);
        settings->set(keys::PinCW, 0);
        settings->set(keys::PinCWPtt, 1);
        settings->set(keys::CWWPM, 25);
        keying::setComDevice(*settings, 3, "/dev/serial/by-id/usb-FTDI_Keyer-if00");
        settings->set(keying::CWTextKey(0), "CQ <MYCAL>");
        settings->set(keys::FOn(0), 1);
        settings->set(keys::FText(0), "CQ");
        clock = std::make_unique<test::FakeMonotonic>();
        dialogs = {};
        beacon = {};
        status.clear();
        focus.clear();
        player.calls.clear();
        qso = {};
        qso.ownCall = "DL0XYZ";
        qso.call = "OK1KKW";
        qso.rstSent = "599";
    }
    void cleanup() {
        w.reset();
        keyer.reset();
        port.reset();
    }

    void captionsComeFromTheSettings() {
        open();
        QCOMPARE(get("Command1(0)")->text(), QString("[F1]  CQ"));
        QCOMPARE(get("Command1(1)")->text(), QString("CW-Text 2"));
        QCOMPARE(w->windowTitle(), QString::fromStdString(texts(351)));
    }

    void anFKeySendsTheExpandedMemoryOnTheMappedDevice() {
        open();
        QTest::keyClick(w.get(), Qt::Key_F1);
        QVERIFY(w->sending());
        QTest::keyClick(w.get(), Qt::Key_F1); // a second press during the send does nothing
        waitSent();
        QCOMPARE(opens(), 1);
        QCOMPARE(QString::fromStdString(line->calls[0].op),
                 QString("open /dev/serial/by-id/usb-FTDI_Keyer-if00"));
        QCOMPARE(line->calls[4].op, std::string("3")); // PTT on RTS
        // "CQ DL0XYZ": one key-down per dit or dah of the text.
        int elements = 0;
        for (char c : std::string("CQDL0XYZ"))
            elements += static_cast<int>(
                keying::MorseTable::instance().code(static_cast<unsigned char>(c)).size());
        QCOMPARE(count(line->calls, "5"), elements);
        QVERIFY(!port->isOpen());
        QCOMPARE(line->calls.back().op, std::string("close"));
    }

    void guardsRefuseSilently() {
        struct Case {
            const char* name;
            void (*arrange)(TestCwWindow&);
        };
        const Case cases[] = {
            {"settings open", [](TestCwWindow& t) { t.get("Command2(4)")->click(); }},
            {"beacon pause", [](TestCwWindow& t) { t.beacon.pauseRunning = true; }},
            {"beacon on air", [](TestCwWindow& t) { t.beacon.idle = false; }},
            {"beacon button disabled", [](TestCwWindow& t) { t.beacon.enabled = false; }},
        };
        for (const auto& c : cases) {
            init();
            open();
            c.arrange(*this);
            w->pressMemory(0);
            QVERIFY2(!w->sending() && opens() == 0, c.name);
            QVERIFY2(dialogs.informed.empty(), c.name);
            cleanup();
        }
    }

    void macroFailuresAndEmptyTexts() {
        struct Case {
            const char* memory;
            const char* call;
            const char* status;   // IText(360) or nothing
            const char* informed; // a box, or nothing
            const char* focus;
        };
        const std::string t360 = texts(360), t308 = texts(308);
        const Case cases[] = {
            {"<YOCAL>", "OK", t360.c_str(), "", "Text3"},
            {"<YOCAL>", "", t360.c_str(), "", "Text3"},
            {"", "OK1KKW", "", t308.c_str(), ""},
        };
        for (const auto& c : cases) {
            init();
            settings->set(keying::CWTextKey(1), c.memory);
            qso.call = c.call;
            open();
            w->pressMemory(1);
            QCOMPARE(status, QString::fromStdString(c.status));
            QCOMPARE(dialogs.informed.empty() ? std::string() : dialogs.informed[0],
                     std::string(c.informed));
            QVERIFY(!focus.empty());
            QCOMPARE(focus.back(), std::string(c.focus));
            QCOMPARE(opens(), 0);
            cleanup();
        }
    }

    void freeTextIsFilteredCheckedAndSentOnEnter() {
        open();
        auto* text = get<QLineEdit>("CWText");
        text->setFocus();
        QTest::keyClicks(text, "tu 5nn!# <qkrst>");
        QCOMPARE(text->text(), QString("TU 5NN <QKRST>"));
        QTest::keyClick(text, Qt::Key_Return);
        QVERIFY(w->sending());
        QCOMPARE(text->text(), QString());
        waitSent();

        text->setText("<ABCDE>"); // pasted: the check refuses it
        QTest::keyClick(text, Qt::Key_Return);
        QCOMPARE(dialogs.informed.back(), texts(350));
        QCOMPARE(text->selectionStart(), 6);
        QCOMPARE(text->selectedText(), QString(">"));
        QCOMPARE(opens(), 1);
    }

    void theMemoryPanelKeepsMacrosWholeAndSavesChecked() {
        open();
        get("Command2(2)")->click();
        QVERIFY(get<QWidget>("Frame2")->isVisible());
        QVERIFY(!get<QWidget>("Frame1")->isVisible());
        QCOMPARE(get<QWidget>("Frame2")->property("title").toString(),
                 QString::fromStdString(texts(317)) + "3");
        auto* editor = get<QLineEdit>("Combo1");
        editor->setFocus();
        QTest::keyClicks(editor, "tu ");
        auto* list = get<QListWidget>("List1");
        list->itemClicked(list->item(5)); // "<QKRST>"
        QCOMPARE(editor->text(), QString("TU <QKRST>"));
        QTest::keyClick(editor, Qt::Key_Backspace);
        QCOMPARE(editor->text(), QString("TU "));
        editor->setText("<MYCAL> 73");
        editor->setCursorPosition(0);
        QTest::keyClick(editor, Qt::Key_Delete);
        QCOMPARE(editor->text(), QString(" 73"));

        editor->setText("TU <ABC");
        get("Command4")->click();
        QCOMPARE(dialogs.informed.back(), texts(350));
        QCOMPARE(editor->selectedText(), QString("<ABC"));
        QVERIFY(get<QWidget>("Frame2")->isVisible());

        editor->setText("tu <qsrst>");
        get<QLineEdit>("Text1")->setText("  Report ");
        get<QWidget>("Check1")->setProperty("checked", true);
        get("Command4")->click();
        QVERIFY(!get<QWidget>("Frame2")->isVisible());
        QCOMPARE(settings->get(keying::CWTextKey(2)), std::string("TU <QSRST>"));
        QCOMPARE(settings->get(keys::FText(2)), std::string("Report"));
        QCOMPARE(get("Command1(2)")->text(), QString("[F3]  Report"));
    }

    void theSoundPathPlaysTheToneFileWithPttOnTheLine() {
        settings->set(keys::CWInterface, 1);
        open();
        w->pressMemory(0);
        QVERIFY(w->sending());
        const auto file = dir->path() / "CWAudio" / "FKey.wav";
        const auto expected = keying::toneFileBytes(25, "CQ DL0XYZ", 1, 0);
        QCOMPARE(test::readFile(file), std::string(expected.begin(), expected.end()));
        QCOMPARE(player.calls,
                 (std::vector<std::string>{"stop", "close", "open FKey.wav", "play 0"}));
        QVERIFY(port->isOpen());
        player.pos = 500;
        QTRY_COMPARE_WITH_TIMEOUT(get("Command6")->text(),
                                  QString("00:01\n") + QString::fromStdString(texts(353)), 2000);
        player.pos = 2000;
        waitSent();
        QVERIFY(!port->isOpen());
        QCOMPARE(player.calls.back(), std::string("close"));
    }

    void failuresGiveAMessageAndLeaveTheWindowUsable() {
        struct Case {
            const char* name;
            void (*arrange)(TestCwWindow&);
            std::string message;
        };
        const Case cases[] = {
            {"port refused", [](TestCwWindow& t) { t.line->refuseOpen = true; },
             texts(25) + "\nCOM 3"},
            {"adapter pulled", [](TestCwWindow& t) { t.line->failAfter = 6; },
             texts(25) + "\nCOM 3"},
            {"speed outside the list", [](TestCwWindow& t) { t.settings->set(keys::CWWPM, 0); },
             texts(297) + "0"},
            {"unwritable CWAudio",
             [](TestCwWindow& t) {
                 t.settings->set(keys::CWInterface, 1);
                 test::writeFile(t.dir->path() / "CWAudio", "a file, not a folder");
             },
             ""},
        };
        for (const auto& c : cases) {
            init();
            open();
            c.arrange(*this);
            w->pressMemory(0);
            waitSent();
            QVERIFY2(!dialogs.informed.empty(), c.name);
            if (!c.message.empty())
                QCOMPARE(dialogs.informed.back(), c.message);
            QVERIFY2(!port->isOpen(), c.name);
            QVERIFY2(get<QWidget>("Frame1")->isEnabled(), c.name);
            QVERIFY2(!get<QWidget>("Command6")->isVisible(), c.name);
            cleanup();
        }
    }

    void theStopButtonEndsAKeyedTextAtOnce() {
        settings->set(keying::CWTextKey(3), "TEST TEST TEST");
        open(true); // the real clock: the text runs for seconds at 25 WPM
        w->pressMemory(3);
        QTest::qWait(300);
        QVERIFY(keyer->busy());
        get("Command6")->click();
        QVERIFY(!port->isOpen()); // PTT dropped by the click itself
        QVERIFY(!w->sending());
        QTRY_VERIFY_WITH_TIMEOUT(!keyer->busy(), 200);
        QVERIFY(count(line->calls, "5") >= 1); // it had begun keying
        QVERIFY(get<QWidget>("Frame1")->isEnabled());
    }

    void escapeF12AndThePosition() {
        open();
        get("Command2(0)")->click();
        QTest::keyClick(w.get(), Qt::Key_Escape);
        QVERIFY(!get<QWidget>("Frame2")->isVisible());
        QVERIFY(w->isVisible());
        w->move(120, 80);
        QTest::keyClick(w.get(), Qt::Key_F12);
        QVERIFY(!w->isVisible());
        QCOMPARE(settings->get(keys::Links), w->pos().x());
        QCOMPARE(settings->get(keys::Oben), w->pos().y());
        w->show();
        QTest::keyClick(w.get(), Qt::Key_Escape);
        QVERIFY(!w->isVisible());
    }
};

QTEST_MAIN(TestCwWindow)
#include "test_cw_window.moc"
