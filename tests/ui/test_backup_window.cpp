// Automatic backup in the running window: a copy after each QSO, the timed
// kind on Timer4, and MnSichern with a folder that is gone.
#include <QAction>
#include <QTimer>

#include "core/settings/ini_file.h"
#include "running_window.h"
#include "ui/backup_binding.h"

using orv::platform::QtDialogs;

class TestBackupWindow : public QObject, protected orv::test::RunningWindow {
    Q_OBJECT

private:
    orv::ui::BackupBinding* backup() { return w->findChild<orv::ui::BackupBinding*>(); }
    QAction* menu() { return w->findChild<QAction*>("MnSichern"); }
    std::filesystem::path copyFile() { return *dir / "Stick" / "bk.sqlite"; }
    std::int64_t copiedRows() { return orv::ContestLog::open(copyFile()).value().rowCount(1); }
    // The settings of a backup into <data folder>/Stick.
    static std::string settings(bool timed, const char* interval = "0") {
        return std::string("[QB-OPTION]\nSichernPfad=") + "@STICK@" +
               "\nSichernungAN=1\nSichernungsArt=" + (timed ? "1" : "0") +
               "\nSichernIntervall=" + interval + "\n";
    }
    // Starts the program anew on a fresh data folder whose @STICK@ is its
    // folder Stick.
    bool restart(const std::string& ini, bool makeStick) {
        return start("bk", ini, [makeStick](const std::filesystem::path& d) {
            const std::string stick = (d / "Stick").string();
            if (makeStick)
                std::filesystem::create_directories(stick);
            std::string text = orv::test::readFile(d / "OrvantaContest.INI");
            text.replace(text.find("@STICK@"), 7, stick);
            orv::test::writeFile(d / "OrvantaContest.INI", text);
        });
    }

private slots:
    void cleanup() { stop(); }

    void eachQsoIsCopiedWhenSetSo() {
        QVERIFY(restart(settings(false), true));
        QVERIFY(menu()->isChecked());
        QVERIFY(!w->findChild<QTimer*>("Timer4")->isActive());
        logQso("DL1ABC", "JO31AA");
        logQso("DL2ABC", "JO31AB", "59002");
        backup()->waitIdle();
        QCOMPARE(copiedRows(), 2);
        QVERIFY(!std::filesystem::exists(copyFile().string() + ".ALT"));
    }

    void timedCopiesComeEveryIntervalOnly() {
        QVERIFY(restart(settings(true, "2"), true));
        QVERIFY(w->findChild<QTimer*>("Timer4")->isActive());
        logQso("DL1ABC", "JO31AA");
        backup()->waitIdle();
        QVERIFY(!std::filesystem::exists(copyFile()));
        backup()->tick();
        backup()->waitIdle();
        QVERIFY(!std::filesystem::exists(copyFile()));
        backup()->tick();
        backup()->waitIdle();
        QCOMPARE(copiedRows(), 1);
    }

    // A folder that is gone switches the backup off at start without a
    // word; switching it on again says IText(35) and stores it off.
    void aMissingFolderTurnsItOff() {
        QVERIFY(restart(settings(true), false));
        QVERIFY(!menu()->isChecked());
        QVERIFY(!w->findChild<QTimer*>("Timer4")->isActive());
        const std::string noPath = "Kein gültiger Pfad zum Sichern! Sichern wird Deaktiviert!";
        for (const std::string& m : QtDialogs::recorded())
            QVERIFY(m != noPath);
        menu()->trigger();
        QVERIFY(!menu()->isChecked());
        QCOMPARE(QtDialogs::recorded().back(), noPath);
        QCOMPARE(orv::IniFile(*dir / "OrvantaContest.INI").getStr("QB-OPTION", "SichernungAN"),
                 std::string("0"));
    }
};

QTEST_MAIN(TestBackupWindow)
#include "test_backup_window.moc"
