// The program in the operator's language: the first start takes the
// desktop's, and with the English file no window shows a German text.
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <functional>
#include <map>
#include <set>
#include <sstream>

#include "core/i18n/builtin_texts.h"
#include "core/i18n/bundled_languages.h"
#include "core/keying/audio.h"
#include "core/keying/keying_fakes.h"
#include "core/logstore/contest_log.h"
#include "core/settings/ini_file.h"
#include "platform/qt_dialogs.h"
#include "support/fakes.h"
#include "support/temp_dir.h"
#include "ui/beacon_binding.h"
#include "ui/cw_binding.h"
#include "ui/log_chooser.h"
#include "ui/main_window.h"
#include "ui/options/options_dialog.h"
#include "ui/options/options_menu.h"
#include "ui/reference_menus.h"
#include "ui/startup.h"
#include "ui/submission_menus.h"
#include "ui_support.h"

using orv::Answer;
using orv::Texts;
using orv::platform::QtDialogs;
using orv::ui::Startup;

namespace {

QString plain(QString s) {
    return s.remove('&').trimmed();
}

// The German rows whose English row differs, by their text without "&".
std::map<QString, int> germanOnlyRows() {
    const Texts german;
    Texts english;
    std::istringstream in{std::string(orv::englishLanguageFile())};
    english.loadLanguage(in);
    std::map<QString, int> rows;
    for (int n = 1; n <= Texts::kMaxRow; ++n) {
        const QString de = plain(QString::fromStdString(german(n)));
        if (!de.isEmpty() && de != plain(QString::fromStdString(english(n))))
            rows.emplace(de, n);
    }
    return rows;
}

// Every text a person can read in a window: captions, labels, buttons, menu
// entries, group box titles, item view heads and cells, list and box entries,
// place holders, window titles and tool tips.
class TextCollector {
public:
    void collect(const QString& where, QWidget* top) {
        add(where, top->windowTitle());
        QList<QWidget*> widgets = top->findChildren<QWidget*>();
        widgets.prepend(top);
        for (QWidget* w : widgets) {
            add(where, w->toolTip());
            if (w->isWindow() && w != top)
                add(where, w->windowTitle());
            if (auto* l = qobject_cast<QLabel*>(w))
                add(where, l->text());
            if (auto* b = qobject_cast<QAbstractButton*>(w))
                add(where, b->text());
            if (auto* g = qobject_cast<QGroupBox*>(w))
                add(where, g->title());
            if (auto* e = qobject_cast<QLineEdit*>(w))
                add(where, e->placeholderText());
            if (auto* m = qobject_cast<QMenu*>(w))
                add(where, m->title());
            if (auto* c = qobject_cast<QComboBox*>(w))
                for (int i = 0; i < c->count(); ++i) {
                    add(where, c->itemText(i));
                    add(where, c->itemData(i, Qt::ToolTipRole).toString());
                }
            if (auto* v = qobject_cast<QAbstractItemView*>(w); v && v->model())
                collectModel(where, *v->model());
        }
        for (QAction* a : top->findChildren<QAction*>()) {
            add(where, a->text());
            add(where, a->toolTip());
        }
    }
    void add(const QString& where, const QString& text) {
        windows.insert(where);
        for (const QString& line : text.split('\n'))
            if (!plain(line).isEmpty())
                seen.emplace_back(where, line);
    }
    std::vector<std::pair<QString, QString>> seen; // where, text
    std::set<QString> windows;

private:
    void collectModel(const QString& where, const QAbstractItemModel& m) {
        for (int c = 0; c < m.columnCount(); ++c)
            add(where, m.headerData(c, Qt::Horizontal).toString());
        for (int r = 0; r < std::min(m.rowCount(), 50); ++r)
            for (int c = 0; c < m.columnCount(); ++c)
                add(where, m.index(r, c).data().toString());
    }
};

class SilentPlayer final : public orv::keying::MediaPlayer {
public:
    void open(const std::filesystem::path&) override {}
    void play(long) override {}
    void stop() override {}
    void close() override {}
    long position() override { return 0; }
    long length() override { return 0; }
};

} // namespace

class TestLanguage : public QObject {
    Q_OBJECT

private:
    orv::test::FakeClock clock;
    orv::test::CountingBeeper beeper;
    orv::test::FakeDialogs dialogs;
    orv::test::FakeMonotonic keyClock;
    orv::test::RecordingLine line{keyClock};
    orv::keying::KeyPort port{line, [](int n) { return "/dev/ttyUSB" + std::to_string(n); }};
    orv::keying::Keyer keyer{port, keyClock};
    SilentPlayer player;

    static std::function<std::optional<std::string>(const char*)>
    environment(std::map<std::string, std::string> vars) {
        return [vars](const char* name) -> std::optional<std::string> {
            const auto it = vars.find(name);
            if (it == vars.end())
                return std::nullopt;
            return it->second;
        };
    }

private slots:
    void init() {
        QtDialogs::setRecording(true);
        QtDialogs::recorded().clear();
        dialogs.answers.clear();
        dialogs.asked.clear();
        dialogs.informed.clear();
    }
    void cleanup() {
        QtDialogs::setRecording(false);
        QtDialogs::recorded().clear();
        orv::ui::SubmissionHooks::reset();
        orv::ui::ReferenceHooks::reset();
    }

    void firstStartSpeaksTheDesktopsLanguage_data() {
        QTest::addColumn<QString>("lang");
        QTest::addColumn<QString>("stored");     // Language of QB-OPTION afterwards
        QTest::addColumn<QString>("loadLog");    // caption of MnLoadLog
        QTest::addColumn<QString>("evaluation"); // title of the menu MnAuswert
        const QString english[] = {"English.lng", "Open log", "E&valuation"};
        const QString german[] = {"<Default>", "Log Öffnen", "Aus&wertung"};
        const QString none[] = {"", "Log Öffnen", "Aus&wertung"};
        const std::pair<const char*, const QString*> rows[] = {
            {"en_US.UTF-8", english},
            {"de_DE.UTF-8", german},
            {"fr_FR.UTF-8", english},
            {"C.UTF-8", none},
            {"", none},
        };
        for (const auto& [lang, r] : rows)
            QTest::newRow(*lang ? lang : "empty") << QString(lang) << r[0] << r[1] << r[2];
    }
    void firstStartSpeaksTheDesktopsLanguage() {
        QFETCH(QString, lang);
        QFETCH(QString, stored);
        QFETCH(QString, loadLog);
        QFETCH(QString, evaluation);
        orv::test::TempDir dir;
        Startup s(dir.path(), dialogs, clock, beeper);
        s.environment = environment({{"LANG", lang.toStdString()}});
        s.runLogDialog = orv::test::createLog("first");
        dialogs.answers = {Answer::Yes};
        QCOMPARE(s.run(), Startup::Outcome::Run);
        QCOMPARE(QString::fromStdString(
                     orv::IniFile(dir / "OrvantaContest.INI").getStr("QB-OPTION", "Language")),
                 stored);
        auto* w = s.window();
        QCOMPARE(w->findChild<QAction*>("MnLoadLog")->text(), loadLog);
        QCOMPARE(w->findChild<QMenu*>("MnAuswert")->title(), evaluation);
        // The liability question of a first start is asked in that language.
        QCOMPARE(dialogs.asked.size(), std::size_t{1});
        const bool english = stored == "English.lng";
        QCOMPARE(QString::fromStdString(dialogs.asked[0]).startsWith("Der Autor"), !english);
        QCOMPARE(w->findChild<QAction*>("MnDefault1")->isChecked(), english);
    }

    // Only a new data folder asks the desktop: a stored choice, and a
    // settings file without one, stay as they are.
    void storedChoiceBeatsTheDesktop() {
        for (const char* ini : {"[QB]\nEinverstanden=-1\n[QB-OPTION]\nLanguage=<Default>\n",
                                "[QB]\nEinverstanden=-1\n"}) {
            orv::test::TempDir dir;
            orv::test::writeFile(dir / "OrvantaContest.INI", ini);
            Startup s(dir.path(), dialogs, clock, beeper);
            s.environment = environment({{"LANG", "en_US.UTF-8"}});
            s.runLogDialog = orv::test::createLog("stored");
            QCOMPARE(s.run(), Startup::Outcome::Run);
            QCOMPARE(s.window()->findChild<QAction*>("MnLoadLog")->text(), QString("Log Öffnen"));
            QVERIFY(s.window()->findChild<QAction*>("MnDefault0")->isChecked());
            QCOMPARE(orv::test::readFile(dir / "OrvantaContest.INI").find("Language=English"),
                     std::string::npos);
        }
    }

    // With the English file chosen, every window and dialog is opened in
    // turn and none shows a text that is a German row of the table, unless
    // the English row is the same word ("QRB", "Locator").
    void englishWindowsShowNoGermanText() {
        orv::test::TempDir dir;
        orv::test::writeFile(dir / "OrvantaContest.INI",
                             "[QB]\nEinverstanden=-1\n[QB-OPTION]\nLanguage=English.lng\n");
        TextCollector texts;
        Startup s(dir.path(), dialogs, clock, beeper);
        s.runLogDialog = [&](orv::ui::LogDialog& d) {
            texts.collect("log chooser", &d);
            return orv::test::createLog("walk")(d);
        };
        s.runLogChooser = [&](orv::ui::LogFileChooser& c) {
            texts.collect("log file chooser: log file chooser", &c);
            return false;
        };
        QString current;
        auto modal = [&](QDialog& d) {
            texts.collect(current + ": " + d.objectName(), &d);
            return int(QDialog::Rejected);
        };
        orv::ui::SubmissionHooks::runModal = modal;
        orv::ui::ReferenceHooks::runModal = modal;
        orv::ui::SubmissionHooks::openFile = [](QWidget*, const QString&, const QString&,
                                                const std::filesystem::path&) {
            return std::filesystem::path();
        };
        orv::ui::SubmissionHooks::saveFile = orv::ui::SubmissionHooks::openFile;
        QCOMPARE(s.run(), Startup::Outcome::Run);
        orv::ui::MainWindow* w = s.window();
        auto* options = w->findChild<orv::ui::OptionsMenu*>("OptionsMenu");
        QVERIFY(options);
        options->ports = [] {
            return std::vector<orv::ui::PortOffer>{{"/dev/ttyUSB0", "USB serial"}};
        };
        options->run = [&](orv::ui::OptionsDialog& d) {
            texts.collect(current + ": " + d.objectName(), &d);
        };
        // The keying windows as the program binds them.
        auto* cw = new orv::ui::CwBinding(
            *w, {s.texts(), s.settings(), dialogs, port, keyer, player, s.paths()}, clock);
        new orv::ui::BeaconBinding(
            *w, {s.texts(), s.settings(), dialogs, port, keyer, player, s.paths()}, cw);
        // A QSO on the band, so that the grids, the evaluation and the EDI
        // editor have something to show.
        w->findChild<QLineEdit*>("Text3")->setText("DL1ABC");
        w->findChild<QLineEdit*>("Text6")->setText("59001");
        w->findChild<QLineEdit*>("Text7")->setText("JO31AA");
        QTest::keyClick(w->findChild<QLineEdit*>("Text7"), Qt::Key_Return);

        auto trigger = [&](const char* action) {
            return [w, action] {
                QAction* a = w->findChild<QAction*>(action);
                QVERIFY2(a, action);
                a->trigger();
            };
        };
        auto inWindow = [](const char* window, const char* button) {
            return [window, button] {
                for (QWidget* top : QApplication::topLevelWidgets())
                    if (top->objectName() == window && top->isVisible())
                        if (auto* b = top->findChild<QAbstractButton*>(button))
                            b->click();
            };
        };
        // One line a window: how it opens and the object name of the window
        // it shows; a window added later is one more line here.
        struct Step {
            const char* name;
            std::function<void()> open;
            const char* window;
        };
        const Step walk[] = {
            {"main window", [] {}, "Form1"},
            {"log file chooser", trigger("MnLoadLog"), "log file chooser"},
            {"key help", trigger("MnHilfeTasten"), "Form3"},
            {"about", trigger("MnHilfeInfo"), "Form10"},
            {"squares", trigger("MnGrossF"), "Form9"},
            {"comparison", trigger("MnDBCheck"), "Form1"},
            {"call database editor", trigger("QBDatEdit"), "FormQBDatEdit"},
            {"statistics", trigger("MnStatistikKurz"), "Form14"},
            {"group changes", trigger("MnGruppenAendern"), "Form11"},
            {"evaluation", trigger("Auswerten"), "Form5"},
            {"EDI export", inWindow("Form5", "Command2"), "Form6"},
            {"evaluation squares", inWindow("Form5", "LabelGrossfelder"), "Form9"},
            {"CW window", trigger("MnCWFensterAN"), "Form15"},
            {"CW memory settings", inWindow("Form15", "Command2(0)"), "Form15"},
            {"station log", trigger("MnOrvantaLog"), "QJForm1"},
            {"station log options",
             [] {
                 for (QWidget* top : QApplication::topLevelWidgets())
                     if (top->objectName() == "QJForm1")
                         if (auto* a = top->findChild<QAction*>("MnOptionen"))
                             a->trigger();
             },
             "QjConfig"},
            {"options", trigger("MnOptionenA"), "Form4"},
            {"EDI editor", trigger("MnEDIEdit"), "Form16"},
            {"log folders", trigger("MnLogExport"), "Form17"},
            {"map", trigger("MnKarte"), "MapWindow"},
        };
        for (const Step& step : walk) {
            current = step.name;
            step.open();
            QTest::qWait(10);
            for (QWidget* top : QApplication::topLevelWidgets())
                if (top->isVisible())
                    texts.collect(current + ": " + top->objectName(), top);
            const QString expected = current + ": " + step.window;
            QVERIFY2(texts.windows.count(expected), qPrintable(expected));
            // What a later step opens from stays; the rest is closed, so that
            // each step shows its own window.
            for (QWidget* top : QApplication::topLevelWidgets())
                if (top->isVisible() &&
                    !QStringList{"Form1", "Form5", "Form15", "QJForm1"}.contains(top->objectName()))
                    top->close();
        }
        for (const std::string& m : dialogs.informed)
            texts.add("message", QString::fromStdString(m));

        const auto german = germanOnlyRows();
        QStringList found;
        std::set<QString> reported;
        for (const auto& [where, text] : texts.seen) {
            for (const QString& t : {plain(text), plain(text).chopped(text.endsWith(':') ? 1 : 0)})
                if (const auto it = german.find(t); it != german.end())
                    if (reported.insert(t).second)
                        found << QString("%1: \"%2\" (row %3)").arg(where, text).arg(it->second);
        }
        QVERIFY2(found.isEmpty(), qPrintable(found.join('\n')));
        QVERIFY(texts.seen.size() > 300);
    }

    // A language chosen in the menu re-captions the open windows.
    void languageChangeRecaptionsOpenWindows() {
        orv::test::TempDir dir;
        orv::test::writeFile(dir / "OrvantaContest.INI", "[QB]\nEinverstanden=-1\n");
        Startup s(dir.path(), dialogs, clock, beeper);
        s.runLogDialog = orv::test::createLog("switch");
        QCOMPARE(s.run(), Startup::Outcome::Run);
        auto* w = s.window();
        new orv::ui::CwBinding(
            *w, {s.texts(), s.settings(), dialogs, port, keyer, player, s.paths()}, clock);
        w->findChild<QAction*>("MnCWFensterAN")->trigger();
        w->findChild<QAction*>("MnOrvantaLog")->trigger();
        w->findChild<QAction*>("MnHilfeTasten")->trigger();
        w->findChild<QAction*>("Auswerten")->trigger();
        auto top = [](const char* name) {
            for (QWidget* t : QApplication::topLevelWidgets())
                if (t->objectName() == name && t->isVisible())
                    return t;
            return static_cast<QWidget*>(nullptr);
        };
        QWidget* cwWindow = top("Form15");
        QWidget* stationLog = top("QJForm1");
        QVERIFY(cwWindow && stationLog && top("Form3"));
        QCOMPARE(cwWindow->windowTitle(), QString("CW Fenster"));
        QCOMPARE(w->findChild<QMenu*>("MnAuswert")->title(), QString("Aus&wertung"));

        w->findChild<QAction*>("MnDefault1")->trigger();
        QCOMPARE(w->findChild<QMenu*>("MnAuswert")->title(), QString("E&valuation"));
        QCOMPARE(cwWindow->windowTitle(), QString("CW window"));
        QCOMPARE(cwWindow->findChild<QLabel*>("Label1")->text(), QString("CW texts"));
        QCOMPARE(cwWindow->findChild<QPushButton*>("Command3")->text(), QString("Cancel"));
        QVERIFY(stationLog->windowTitle().startsWith("OrvantaLog"));
        QCOMPARE(stationLog->findChild<QAction*>("MnOpenLog")->text(), QString("Open log"));
        QCOMPARE(stationLog->findChild<QLabel*>("Text1Label")->text(), QString("Date"));
        QCOMPARE(stationLog->findChild<QComboBox*>("Combo1")->itemData(3, Qt::ToolTipRole),
                 QVariant("BS - Back scatter"));
        auto* grid = stationLog->findChild<QAbstractItemView*>("DBGrid1");
        QCOMPARE(grid->model()->headerData(1, Qt::Horizontal).toString(), QString("Date/time"));
        QWidget* keyHelp = top("Form3");
        QVERIFY(keyHelp);
        QCOMPARE(keyHelp->findChild<QTableWidget*>("KeyTable")->item(0, 1)->text(),
                 QString("Next entry field"));
        QWidget* evaluation = top("Form5");
        QVERIFY(evaluation);
        QCOMPARE(evaluation->findChild<QPushButton*>("LabelGrossfelder")->text(),
                 QString("Large squares:"));
        QCOMPARE(evaluation->findChild<QPushButton*>("Command4")->text(), QString("File o&utput"));
        QStringList heads;
        for (auto* t : evaluation->findChildren<QTableWidget*>())
            for (int c = 0; c < t->columnCount(); ++c)
                if (t->horizontalHeaderItem(c))
                    heads << t->horizontalHeaderItem(c)->text();
        QVERIFY2(heads.contains("Call sign") && !heads.contains("Rufzeichen"),
                 qPrintable(heads.join('|')));
        QCOMPARE(w->findChild<QMenu*>("MnLog")->title(), QString("Log"));
        QCOMPARE(w->findChild<QAction*>("MnLogLöschen")->text(), QString("&Delete"));
        QCOMPARE(w->findChild<QLabel*>("Picture10")->text(), QString("Loading..."));
        w->findChild<QAction*>("MnDefault0")->trigger();
        QCOMPARE(w->findChild<QMenu*>("MnAuswert")->title(), QString("Aus&wertung"));
        QCOMPARE(w->findChild<QLabel*>("Picture10")->text(), QString("Wird geladen..."));
        QCOMPARE(cwWindow->windowTitle(), QString("CW Fenster"));
        QCOMPARE(stationLog->findChild<QLabel*>("Text1Label")->text(), QString("Datum"));
    }
};

QTEST_MAIN(TestLanguage)
#include "test_language.moc"
