// The CW window reached from the main window: F12 and the menu entry show and
// hide it, F1 to F11 press its memories only while it is shown, and its
// macros read the entry row.
#include <QAction>
#include <QLineEdit>
#include <QTest>
#include <memory>

#include "core/i18n/texts.h"
#include "core/keying/audio.h"
#include "core/keying/cw_settings.h"
#include "core/keying/keying_fakes.h"
#include "core/settings/settings.h"
#include "support/fakes.h"
#include "support/temp_dir.h"
#include "ui/cw_binding.h"
#include "ui/main_window.h"

using namespace orv;
using orv::ui::MainWindow;

namespace {} // namespace

class TestCwBinding : public QObject {
    Q_OBJECT
private:
    test::TempDir dir;
    Texts texts;
    test::FakeClock clock;
    test::CountingBeeper beeper;
    test::FakeDialogs dialogs;
    test::KeyingChain chain;
    test::SilentPlayer player;

private slots:
    void fKeysReachTheShownWindow() {
        Settings settings{IniFile{dir.path() / "OrvantaContest.INI"}};
        settings.set(keys::CWWPM, 25);
        settings.set(keying::CWTextKey(2), "<YOCAL> 5NN");
        MainWindow w(texts, clock, beeper);
        w.show();
        ui::CwBinding binding(
            w, {texts, settings, dialogs, chain.port, chain.keyer, player, AppPaths{dir.path()}},
            clock);
        auto* call = w.findChild<QLineEdit*>("Text3");
        call->setFocus();
        QTest::keyClicks(call, "ok1kkw");

        QTest::keyClick(call, Qt::Key_F3); // not loaded: F-keys stay the main window's
        QCOMPARE(chain.opens(), 0);
        QTest::keyClick(call, Qt::Key_F12);
        QVERIFY(binding.cwWindow() && binding.cwWindow()->isVisible());
        call->activateWindow();
        call->setFocus();
        QTest::keyClick(call, Qt::Key_F3, Qt::ControlModifier); // the modifier of FTaste 0 is none
        QCOMPARE(chain.opens(), 0);
        QTest::keyClick(call, Qt::Key_F3);
        QTRY_VERIFY(!binding.cwWindow()->sending());
        QCOMPARE(chain.opens(), 1);
        QCOMPARE(chain.line.calls[0].op, std::string("open /dev/ttyUSB0"));

        settings.set(keys::FTaste, 2); // Alt
        QTest::keyClick(call, Qt::Key_F3);
        QCOMPARE(chain.opens(), 1);
        QTest::keyClick(call, Qt::Key_F3, Qt::AltModifier);
        QTRY_VERIFY(!binding.cwWindow()->sending());
        QCOMPARE(chain.opens(), 2);

        auto* entry = w.findChild<QAction*>("MnCWFensterAN");
        QVERIFY(entry && entry->isEnabled());
        entry->trigger();
        QVERIFY(!binding.cwWindow());
        entry->trigger();
        QVERIFY(binding.cwWindow());
        QTest::keyClick(call, Qt::Key_F12);
        QVERIFY(!binding.cwWindow());
    }
};

QTEST_MAIN(TestCwBinding)
#include "test_cw_binding.moc"
