// The options dialog over the running program: each page's checks, the
// operator table with its tone files, a new speed, the window taking the new
// values, a cancel that saves nothing, a settings file that cannot be
// written, and the recorder on a real sound server.
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QtTest>
#include <csignal>
#include <sys/resource.h>

#include "core/capture/capture.h"
#include "core/keying/cw_settings.h"
#include "core/keying/tone_file.h"
#include "core/util/file_io.h"
#include "platform/qt_media_player.h"
#include "running_window.h"
#include "sound_server.h"
#include "ui/backup_binding.h"
#include "ui/options/audio_page.h"
#include "ui/options/operator_page.h"
#include "ui/options/options_dialog.h"
#include "ui/options/options_menu.h"

using namespace orv;
using ui::OptionsDialog;

namespace {

std::string bytesOf(int wpm, const std::string& text, int lead, int trail) {
    const auto b = keying::toneFileBytes(wpm, text, lead, trail);
    return std::string(b.begin(), b.end());
}
} // namespace

class OptionsTest : public QObject, public test::RunningWindow {
    Q_OBJECT
private:
    ui::OptionsMenu* menu() { return w->findChild<ui::OptionsMenu*>("OptionsMenu"); }
    std::filesystem::path ini() { return *dir / "OrvantaContest.INI"; }
    std::filesystem::path cwAudio() { return *dir / "CWAudio"; }
    Settings settings() { return Settings(IniFile(ini())); }

    // Opens the dialog and hands it to `body` while it is up; true when it
    // ended accepted.
    bool withDialog(const std::function<void(OptionsDialog&)>& body) {
        bool accepted = false;
        menu()->run = [&](OptionsDialog& d) {
            body(d);
            accepted = d.result() == QDialog::Accepted;
            if (d.result() != QDialog::Accepted)
                d.reject();
        };
        w->findChild<QAction*>("MnOptionenA")->trigger();
        return accepted;
    }
    template <class T> static T* get(QWidget* d, const char* name) {
        T* c = d->findChild<T*>(name);
        if (!c)
            qFatal("no control %s", name);
        return c;
    }
    static void click(QWidget* d, const char* name) { get<QPushButton>(d, name)->click(); }
    static void select(QTableWidget* g, int row) { g->setCurrentCell(row, 0); }
    std::vector<std::string> messages() {
        auto& r = platform::QtDialogs::recorded();
        std::vector<std::string> out(r.begin(), r.end());
        r.clear();
        return out;
    }
    std::string text(int row) { return app->texts()(row); }

private slots:
    void initTestCase() {
        QVERIFY(start("options", "[QB-OPTION]\nCWWPM=20\nCWInterface=1\nLoopPause=5\n"
                                 "CWEND=tu\n[MODE]\nSSB\nCW\n[AUSBR]\nTR\n"));
        menu()->ports = [] {
            return std::vector<ui::PortOffer>{{"/dev/ttyUSB7", "FT232R USB UART"}};
        };
        menu()->openFile = [](QWidget*, const QString&, const QString&) { return QString(); };
        menu()->chooseColour = [](QWidget*, const QColor&) { return QColor(1, 2, 3); };
        menu()->chooseFolder = [this](QWidget*, const QString&, const QString&) {
            return QString::fromStdString(dir->path().string());
        };
    }
    void cleanupTestCase() { stop(); }
    void init() { messages(); }

    // Each refusal shows its text and keeps the dialog on the page of the
    // first bad value, in page order; nothing is written.
    void everyPageRefusesItsBadValue() {
        const std::string before = test::readFile(ini());
        struct Case {
            const char* what;
            std::function<void(QWidget*)> spoil;
            int page;
            int text;
        };
        const Case cases[] = {
            {"two-digit mode", [](QWidget* d) { get<QComboBox>(d, "Combo2")->setCurrentIndex(-1); },
             0, 61},
            {"three-digit mode",
             [](QWidget* d) { get<QComboBox>(d, "Combo3")->setCurrentIndex(-1); }, 0, 62},
            {"pause", [](QWidget* d) { get<QLineEdit>(d, "LoopPause")->setText("61"); }, 1, 245},
            {"speed", [](QWidget* d) { get<QComboBox>(d, "ComboCW1")->setCurrentIndex(-1); }, 1,
             969},
            {"interface", [](QWidget* d) { get<QComboBox>(d, "Combo9")->setCurrentIndex(-1); }, 1,
             303},
            {"backup folder",
             [](QWidget* d) {
                 get<QCheckBox>(d, "SichernungAN")->setChecked(true);
                 get<QLineEdit>(d, "SichernPfad")->setText("/no/such/folder");
             },
             4, 979},
            {"backup interval",
             [](QWidget* d) { get<QLineEdit>(d, "SichernIntervall")->setText("0"); }, 4, 980},
            {"first in page order",
             [](QWidget* d) {
                 get<QLineEdit>(d, "SichernIntervall")->setText("x");
                 get<QLineEdit>(d, "LoopPause")->setText("0");
             },
             1, 245},
        };
        for (const Case& c : cases) {
            const bool accepted = withDialog([&](OptionsDialog& d) {
                c.spoil(&d);
                QVERIFY(!d.confirm());
                QCOMPARE(d.currentPage(), c.page);
            });
            QVERIFY2(!accepted, c.what);
            QCOMPARE(messages(), std::vector<std::string>{text(c.text)});
        }
        // Entries of the lists are checked as they are typed.
        struct Entry {
            const char* button;
            const char* typed;
            const char* list;
            int text;
        };
        const Entry entries[] = {{"ModNeu", "OLIVIA", "Frame7List", 178},
                                 {"ModNeu", " ", "Frame7List", 178},
                                 {"Command13", "", "Frame8List", 974}};
        for (const Entry& e : entries) {
            withDialog([&](OptionsDialog& d) {
                const int count = get<QListWidget>(&d, e.list)->count();
                platform::QtDialogs::queueInput(std::string(e.typed));
                click(&d, e.button);
                QCOMPARE(get<QListWidget>(&d, e.list)->count(), count);
            });
            const auto m = messages();
            QCOMPARE(m.back(), text(e.text));
        }
        // OK2 checks the contest's name and weights.
        for (const auto& [field, value, row] : std::vector<std::tuple<const char*, QString, int>>{
                 {"C3", "x", 982}, {"C0", "40000", 982}}) {
            withDialog([&](OptionsDialog& d) {
                get<QComboBox>(&d, "Combo4")->setEditText("Nacht");
                get<QLineEdit>(&d, field)->setText(value);
                QVERIFY(!d.confirmContest());
                QCOMPARE(d.currentPage(), static_cast<int>(d.pages().size()) - 1);
            });
            QCOMPARE(messages(), std::vector<std::string>{text(row)});
        }
        QCOMPARE(test::readFile(ini()), before);
    }

    // A cancel keeps the file byte for byte and takes away a tone file made
    // while the dialog was up.
    void cancelSavesNothing() {
        const std::string before = test::readFile(ini());
        withDialog([&](OptionsDialog& d) {
            get<QCheckBox>(&d, "SSBCWFlip")->setChecked(true);
            click(&d, "FarbeAktiv");
            get<QComboBox>(&d, "ComboCW1")->setCurrentText("35");
            get<QLineEdit>(&d, "FlagBefehl1")->setText("GET__ALL:");
            platform::QtDialogs::queueInput(std::string("jt65"));
            click(&d, "ModNeu");
            platform::QtDialogs::queueInput(std::string("DL1ABC"));
            click(&d, "Command29");
            select(get<QTableWidget>(&d, "MSFlexGrid2"), 0);
            platform::QtDialogs::queueInput(std::string("vvv de dl1abc"));
            click(&d, "Command32");
            QCOMPARE(std::distance(std::filesystem::directory_iterator(cwAudio()), {}), 1);
            click(&d, "Abbrechen");
        });
        QCOMPARE(test::readFile(ini()), before);
        QVERIFY(std::filesystem::is_empty(cwAudio()));
    }

    // Every page writes its keys; the window shows the colours, lists and
    // backup state at once.
    void okWritesThePagesAndTheWindowTakesThem() {
        const bool accepted = withDialog([&](OptionsDialog& d) {
            get<QCheckBox>(&d, "SSBCWFlip")->setChecked(true);
            click(&d, "FarbeAktiv");
            click(&d, "FarbeNoEdit");
            get<QCheckBox>(&d, "Option3")->setChecked(true);
            get<QComboBox>(&d, "FTaste")->setCurrentIndex(2);
            get<QComboBox>(&d, "ComboCOMCW")->setCurrentIndex(1);
            get<QRadioButton>(&d, "Option5(2)")->setChecked(true);
            get<QRadioButton>(&d, "Option6(1)")->setChecked(true);
            get<QLineEdit>(&d, "Text8")->setText("tu ee {x}");
            get<QLineEdit>(&d, "LoopPause")->setText("7");
            get<QCheckBox>(&d, "SichernungAN")->setChecked(true);
            click(&d, "SichernPfadWahl");
            get<QLineEdit>(&d, "SichernIntervall")->setText("15");
            get<QRadioButton>(&d, "SichernungsArt(0)")->setChecked(true);
            get<QComboBox>(&d, "ZeitPlusMinus")->setCurrentText("-2:00h");
            platform::QtDialogs::queueInput(std::string("ft8"));
            click(&d, "ModNeu");
            platform::QtDialogs::queueInput(std::string("ES"));
            click(&d, "Command13");
            get<QComboBox>(&d, "Combo7(2)")->setCurrentText("#");
            get<QLineEdit>(&d, "FlagBefehl2")->setText("GET__QTF:");
            get<QComboBox>(&d, "Combo4")->setEditText("Nacht");
            get<QLineEdit>(&d, "C1")->setText("2");
            click(&d, "Command7");
            QVERIFY(d.confirm());
        });
        QVERIFY(accepted);
        // Only the two input prompts: no refusal.
        QCOMPARE(messages(), (std::vector<std::string>{text(178), text(973)}));
        Settings s = settings();
        QVERIFY(s.get(keys::SSBCWFlip));
        QCOMPARE(s.get(keys::FarbeAktiv), (Colour{1, 2, 3}));
        QCOMPARE(s.get(keys::FarbeInAktiv), Colour::fromBgr(0xE0E0E0));
        QVERIFY(s.get(keys::AntenneKomma));
        QCOMPARE(s.get(keys::FTaste), 2);
        QCOMPARE(keying::comDevice(s, static_cast<int>(s.get(keys::COMCW))),
                 std::string("/dev/ttyUSB7"));
        QCOMPARE(s.get(keys::PinCW), 2);
        QCOMPARE(s.get(keys::PinCWPtt), 1);
        QCOMPARE(s.get(keys::CWEND), std::string("TU EE X"));
        QCOMPARE(test::readFile(cwAudio() / "CWEnd.wav"), bytesOf(20, "TU EE X", 1, 0));
        QCOMPARE(s.get(keys::LoopPause), 7);
        QCOMPARE(s.get(keys::SichernungAN), 1);
        QCOMPARE(s.get(keys::SichernPfad), dir->path().string());
        QCOMPARE(s.get(keys::SichernIntervall), 15);
        QVERIFY(s.get(keys::SichernungsArt));
        QCOMPARE(s.get(keys::ZeitPlusMinus), -2);
        QCOMPARE(s.list(section::MODE), (std::vector<std::string>{"SSB", "CW", "ft8"}));
        QCOMPARE(s.list(section::AUSBR), (std::vector<std::string>{"TR", "ES"}));
        QCOMPARE(s.get(keys::Flag(2)), int('#'));
        QCOMPARE(s.get(keys::FlagBefehl(2)), std::string("GET__QTF:"));
        QCOMPARE(s.list(section::ConE), std::vector<std::string>{"1,2,1,1,1,1,1,1,1,1,Nacht"});

        // The window: colours at once, the lists, the backup's check mark.
        QCOMPARE(edit("Text5")->palette().color(QPalette::Base), QColor(1, 2, 3));
        QCOMPARE(w->findChild<QComboBox*>("Combo3")->findText("ft8"), 2);
        QVERIFY(w->findChild<QComboBox*>("Combo6")->findText("ES") >= 0);
        QVERIFY(w->findChild<QAction*>("MnSichern")->isChecked());
        QCOMPARE(app->capture()->config().zeitPlusMinus, -2);
        QVERIFY(app->capture()->config().antenneKomma);

        // A stored port that is not there now stays stored, and is not offered.
        menu()->ports = [] { return std::vector<ui::PortOffer>{}; };
        const long long com = s.get(keys::COMCW);
        withDialog([&](OptionsDialog& d) {
            QCOMPARE(get<QComboBox>(&d, "ComboCOMCW")->count(), 1);
            get<QLineEdit>(&d, "Text8")->setText(" ");
            QVERIFY(d.confirm());
        });
        QCOMPARE(settings().get(keys::COMCW), com);
        QVERIFY(!std::filesystem::exists(cwAudio() / "CWEnd.wav"));
        w->findChild<ui::BackupBinding*>("BackupBinding")->toggle(false);
    }

    // OK2 stores the contest of the open log alone.
    void ok2StoresTheContestOfTheOpenLog() {
        const long long wpm = settings().get(keys::CWWPM);
        withDialog([&](OptionsDialog& d) {
            get<QComboBox>(&d, "ComboCW1")->setCurrentText("40");
            get<QComboBox>(&d, "Combo4")->setEditText("Sommer");
            get<QLineEdit>(&d, "C2")->setText("3");
            QVERIFY(d.confirmContest());
        });
        Settings s = settings();
        QCOMPARE(s.get(keys::CWWPM), wpm);
        QCOMPARE(s.get(keys::CName), std::string("Sommer"));
        QCOMPARE(s.get(keys::C(2)), 3);
        QCOMPARE(app->contest()->ContestName, std::string("Sommer"));
        QCOMPARE(app->log()->myData().zaehl[2], std::optional<int>(3));
        QCOMPARE(app->log()->myData().contName, std::string("Sommer"));
    }

    // Texts make their files at once; a replaced or deleted one goes when
    // the table is saved.
    void operatorTableWritesAndDeletesToneFiles() {
        clock.set(DateTime{2026, 5, 2, 14, 30, 0});
        const std::string voice = (*dir / "Audio" / "dl1abc.wav").string();
        menu()->openFile = [&](QWidget*, const QString&, const QString&) {
            return QString::fromStdString(voice);
        };
        withDialog([&](OptionsDialog& d) {
            auto* grid = get<QTableWidget>(&d, "MSFlexGrid2");
            for (const char* call : {"dl1abc", "DL1ABC"}) {
                platform::QtDialogs::queueInput(std::string(call));
                click(&d, "Command29");
            }
            QCOMPARE(messages().back(), text(252));
            QCOMPARE(get<QTableWidget>(&d, "MSFlexGrid1")->item(0, 1)->text(), "dl1abc.wav");
            select(grid, 0);
            platform::QtDialogs::queueInput(std::string("vvv"));
            click(&d, "Command32");
            QCOMPARE(grid->item(0, 2)->text(), "020526143000.wav");
            platform::QtDialogs::queueInput(std::string("test"));
            click(&d, "Command31");
            QCOMPARE(grid->item(0, 1)->text(), "TEST");
            QCOMPARE(grid->item(0, 2)->text(), "020526143001.wav");
            QVERIFY(d.confirm());
        });
        QCOMPARE(settings().opCalls(),
                 (std::vector<OpCall>{{"DL1ABC", "dl1abc.wav", "TEST", "020526143001.wav"}}));
        QCOMPARE(test::readFile(cwAudio() / "020526143001.wav"), bytesOf(20, "TEST", 1, 6));
        QVERIFY(!std::filesystem::exists(cwAudio() / "020526143000.wav"));
        QCOMPARE(w->findChild<QComboBox*>("Combo8")->findText("DL1ABC"), 0);

        // The text goes after the question, and the row after its own.
        messages();
        withDialog([&](OptionsDialog& d) {
            select(get<QTableWidget>(&d, "MSFlexGrid2"), 0);
            platform::QtDialogs::queueAnswer(Answer::Yes);
            click(&d, "Command30");
            QVERIFY(d.confirm());
        });
        QCOMPARE(messages(), std::vector<std::string>{text(179)});
        QVERIFY(!std::filesystem::exists(cwAudio() / "020526143001.wav"));
        withDialog([&](OptionsDialog& d) {
            select(get<QTableWidget>(&d, "MSFlexGrid1"), 0);
            platform::QtDialogs::queueAnswer(Answer::Yes);
            click(&d, "Command25");
            QVERIFY(d.confirm());
        });
        QCOMPARE(settings().opCalls(), std::vector<OpCall>{});
    }

    // A new speed renders each text once, under a progress display.
    void newSpeedRebuildsEachToneFileOnce() {
        Settings s = settings();
        s.setOpCalls({{"A1", "", "AAA", "a.wav"}, {"B2"}, {"C3", "", "CCC", "c.wav"}});
        s.set(keys::CWWPM, 20);
        test::writeFile(cwAudio() / "a.wav", "old");
        test::writeFile(cwAudio() / "c.wav", "old");
        clock.set(DateTime{2026, 5, 3, 8, 0, 0});
        std::vector<std::pair<int, int>> steps;
        for (const char* speed : {"30", "30"}) {
            withDialog([&](OptionsDialog& d) {
                d.operatorPage()->onRebuildStep = [&](int done, int total) {
                    steps.emplace_back(done, total);
                };
                get<QComboBox>(&d, "ComboCW1")->setCurrentText(speed);
                QVERIFY(d.confirm());
            });
        }
        QCOMPARE(steps, (std::vector<std::pair<int, int>>{{1, 2}, {2, 2}}));
        const auto ops = settings().opCalls();
        QCOMPARE(ops[0].toneFile, std::string("030526080000.wav"));
        QCOMPARE(ops[2].toneFile, std::string("030526080001.wav"));
        QCOMPARE(test::readFile(cwAudio() / ops[2].toneFile), bytesOf(30, "CCC", 1, 6));
        QVERIFY(!std::filesystem::exists(cwAudio() / "a.wav"));
        QVERIFY(!std::filesystem::exists(cwAudio() / "c.wav"));
        settings().setOpCalls({});
    }

    // A settings file that cannot be written: the message, the dialog stays,
    // and the file is as it was.
    void unwritableSettingsKeepTheDialogOpen() {
        const std::string before = test::readFile(ini());
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit old{};
        getrlimit(RLIMIT_FSIZE, &old);
        withDialog([&](OptionsDialog& d) {
            get<QLineEdit>(&d, "FlagBefehl3")->setText(QString(4000, 'x'));
            rlimit lim{static_cast<rlim_t>(before.size() + 100), old.rlim_max};
            setrlimit(RLIMIT_FSIZE, &lim);
            QVERIFY(!d.confirm());
            setrlimit(RLIMIT_FSIZE, &old);
            QVERIFY(d.result() != QDialog::Accepted);
        });
        const auto m = messages();
        QCOMPARE(m.size(), std::size_t(1));
        QVERIFY(m[0].rfind(text(970), 0) == 0);
        QCOMPARE(test::readFile(ini()), before);
        QVERIFY(!std::filesystem::exists(ini().string() + ".options"));
    }

    // The recorder page records what the sound card hears into `Audio`.
    void recorderRecordsFromTheSoundServer() {
        if (!test::soundServerError.isEmpty())
            QSKIP(qPrintable("no sound server: " + test::soundServerError));
        const auto tone = *dir / "tone.wav";
        keying::BuildToneFile(12, tone, "TTTTT", 1, 0);
        test::writeFile(*dir / "Audio" / "old_one.WAV", "x");
        withDialog([&](OptionsDialog& d) {
            auto* name = get<QLineEdit>(&d, "Text1");
            auto* record = get<QPushButton>(&d, "Command21");
            auto* page = d.findChild<ui::AudioPage*>("Frame4");
            record->click();
            QCOMPARE(messages(), std::vector<std::string>{text(47)});
            name->setText("old one");
            platform::QtDialogs::queueAnswer(Answer::No);
            record->click();
            QCOMPARE(messages(), std::vector<std::string>{text(46)});
            QVERIFY(page->state() == keying::VoiceRecording::State::Idle);
            name->setText("cq tone");
            record->click();
            QVERIFY(page->state() == keying::VoiceRecording::State::Recording);
            QCOMPARE(record->text(), QString::fromStdString(text(52)));
            QTest::qWait(300);
            QProcess paplay;
            paplay.start("paplay", {QString::fromStdString(tone.string())});
            QVERIFY(paplay.waitForStarted());
            // The clock ticks on the event loop while the tone plays.
            QTRY_COMPARE_WITH_TIMEOUT(paplay.state(), QProcess::NotRunning, 15000);
            QTest::qWait(300);
            const QString shown = get<QLabel>(&d, "Label2")->text();
            QVERIFY2(shown >= "00:00:03" && shown < "00:00:10", qPrintable(shown));
            record->click();
            QVERIFY(page->state() == keying::VoiceRecording::State::Idle);
            click(&d, "Abbrechen"); // the recording stays
        });
        const QString saved = QString::fromStdString((*dir / "Audio" / "cq_tone.WAV").string());
        const auto m = test::measureTone(saved, saved + ".trim.wav");
        QVERIFY2(m.has_value(), "sox could not measure the recording");
        QVERIFY2(std::abs(m->seconds - 2.7) < 0.1, qPrintable(QString::number(m->seconds)));
        QVERIFY2(std::abs(m->frequency - 1000) < 30, qPrintable(QString::number(m->frequency)));
    }
};

int main(int argc, char** argv) {
    return test::runWithSoundServer<OptionsTest>(argc, argv);
}

#include "test_options.moc"
