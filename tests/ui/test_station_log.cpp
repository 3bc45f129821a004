// The station log window offscreen over real files in a temporary data
// folder: typing and saving QSOs, the refusals, changing a record from the
// grid, the deletes, the ADIF export and the settings the window keeps.
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include "core/app/app_paths.h"
#include "core/i18n/texts.h"
#include "core/settings/settings.h"
#include "core/stationlog/station_log.h"
#include "core/stationlog/station_settings.h"
#include "platform/qt_dialogs.h"
#include "support/fakes.h"
#include "support/temp_dir.h"
#include "ui/main_window.h"
#include "ui/startup.h"
#include "ui/stationlog/qj_config_dialog.h"
#include "ui/stationlog/station_log_menu.h"
#include "ui/stationlog/station_log_window.h"
#include "ui/submission_menus.h"
#include "ui_support.h"

using orv::Answer;
using orv::platform::QtDialogs;
using orv::ui::StationLogWindow;
using orv::ui::SubmissionHooks;

class TestStationLog : public QObject {
    Q_OBJECT

    std::unique_ptr<orv::test::TempDir> home;
    orv::AppPaths paths;
    std::unique_ptr<orv::Settings> settings;
    orv::Texts texts;
    orv::test::FakeDialogs dialogs;
    orv::test::FakeClock clock{orv::DateTime{2026, 5, 2, 14, 30, 0}};

    std::unique_ptr<StationLogWindow> window() {
        auto w = std::make_unique<StationLogWindow>(
            orv::ui::StationLogContext{paths, *settings, texts, dialogs, clock});
        w->show();
        w->activateWindow();
        return w;
    }
    // A window over a new log "Home", made through MnNewLog at the start.
    std::unique_ptr<StationLogWindow> windowWithLog() {
        auto w = window();
        dialogs.answers.push_back(Answer::Yes); // IText(377): a new log
        QtDialogs::queueInput(std::string("Home"));
        w->start();
        return w;
    }
    template <class T> T* child(QWidget* w, const char* name) {
        T* c = w->findChild<T*>(name);
        if (!c)
            qFatal("no control %s", name);
        return c;
    }
    void type(QWidget* w, const char* name, const QString& s) {
        QWidget* box = w->findChild<QWidget*>(name);
        if (auto* c = qobject_cast<QComboBox*>(box))
            box = c->lineEdit();
        auto* e = qobject_cast<QLineEdit*>(box);
        e->clear();
        QTest::keyClicks(e, s);
    }
    void typeQso(QWidget* w, const QString& call) {
        type(w, "Text3", call);
        type(w, "Text4", "57");
        type(w, "Text5", "59");
        type(w, "Combo6", "144.300");
        type(w, "Combo4", "SSB");
    }

private slots:
    void init() {
        home = std::make_unique<orv::test::TempDir>();
        paths = orv::prepareDataFolder(home->path());
        settings = std::make_unique<orv::Settings>(orv::IniFile(paths.iniPath()));
        dialogs = {};
        QtDialogs::setRecording(true);
        QtDialogs::recorded().clear();
    }
    void cleanup() {
        SubmissionHooks::reset();
        QtDialogs::setRecording(false);
    }

    void newLogAtStartProposesTheNameAndSavesWithEnter() {
        auto w = windowWithLog();
        QCOMPARE(QString::fromStdString(QtDialogs::recorded().back()),
                 QString::fromStdString(texts(5)));
        QCOMPARE(dialogs.asked.front(), texts(377) + "\n" + texts(378));
        QVERIFY(w->log());
        QCOMPARE(w->log()->path(), paths.stationLogPath() / "Home.sqlite");
        QCOMPARE(w->windowTitle(), QString("OrvantaLog - [Home.sqlite]"));
        QCOMPARE(settings->get(orv::keys::QJLogFile), std::string("Home.sqlite"));
        // The clock shows the date and time of now.
        QCOMPARE(child<QLineEdit>(w.get(), "Text1")->text(), QString("2026-05-02"));
        QCOMPARE(child<QLineEdit>(w.get(), "Text2")->text(), QString("14:30"));

        typeQso(w.get(), "dl1abc");
        type(w.get(), "Text6", "jo62qm");
        type(w.get(), "Text8", "Jan");
        type(w.get(), "Combo10", "100");
        QTest::keyClick(child<QLineEdit>(w.get(), "Text3"), Qt::Key_Return);
        QVERIFY(dialogs.informed.empty());

        auto stored = orv::StationLog::open(paths.stationLogPath() / "Home.sqlite").value();
        const auto q = stored.find(1);
        QVERIFY(q);
        QCOMPARE(q->call, std::string("DL1ABC"));
        QCOMPARE(q->rstRx, std::string("57"));
        QCOMPARE(q->rstTx, std::string("59"));
        QCOMPARE(q->locator, std::string("JO62QM"));
        QCOMPARE(q->dateTime, (orv::DateTime{2026, 5, 2, 14, 30, 0}));
        // The row empties the call, locator and name, keeps the rest, and the
        // grid shows the new record.
        QCOMPARE(child<QLineEdit>(w.get(), "Text3")->text(), QString());
        QCOMPARE(child<QLineEdit>(w.get(), "Text6")->text(), QString());
        QCOMPARE(child<QComboBox>(w.get(), "Combo6")->currentText(), QString("144.300"));
        QCOMPARE(child<QTableView>(w.get(), "DBGrid1")->model()->rowCount(), 1);
        QCOMPARE(settings->get(orv::keys::QJPower), std::string("100"));
    }

    void refusedSavesChangeNothingAndFocusTheBox() {
        auto w = windowWithLog();
        QVERIFY(QTest::qWaitForWindowActive(w.get()));
        struct Case {
            const char* box;
            QString value;
            int text;
            const char* focus;
        };
        const std::vector<Case> cases{
            {"Combo6", "", 381, "Combo6"},  {"Combo4", "", 382, "Combo4"},
            {"Text3", "D", 1, "Text3"},     {"Text4", "5", 4, "Text4"},
            {"Text2", "2561", 14, "Text2"},
        };
        for (const auto& c : cases) {
            typeQso(w.get(), "DL1ABC");
            type(w.get(), c.box, c.value);
            dialogs.informed.clear();
            child<QPushButton>(w.get(), "Command2")->click();
            QCOMPARE(dialogs.informed.size(), std::size_t{1});
            QCOMPARE(dialogs.informed.front(), texts(c.text));
            QWidget* box = child<QWidget>(w.get(), c.focus);
            QTRY_VERIFY(box->hasFocus() || box->isAncestorOf(QApplication::focusWidget()));
            QCOMPARE(w->log()->count(), std::int64_t{0});
        }
    }

    void boxesAreLimitedToTheirFieldsAndOfferTheLists() {
        orv::writeStationLists(*settings, {{"144.300", "432.200"}, {"100"}, {"Yagi"}, {"JO62QM"}});
        auto w = windowWithLog();
        auto* qrg = child<QComboBox>(w.get(), "Combo6");
        QCOMPARE(qrg->count(), 2);
        QCOMPARE(qrg->itemText(1), QString("432.200"));
        qrg->setEditText("1234567890123456789");
        QCOMPARE(qrg->currentText(), QString("123456789012345"));
        type(w.get(), "Combo8", "JO62QMXX");
        QCOMPARE(child<QComboBox>(w.get(), "Combo8")->currentText(), QString("JO62QM"));
        type(w.get(), "Text5", "5999");
        QCOMPARE(child<QLineEdit>(w.get(), "Text5")->text(), QString("599"));
        auto* prop = child<QComboBox>(w.get(), "Combo1");
        const int es = prop->findText("ES");
        QVERIFY(es > 0);
        QCOMPARE(prop->itemData(es, Qt::ToolTipRole).toString(), QString("ES - Sporadic-E"));
        auto* mode = child<QComboBox>(w.get(), "Combo4");
        QVERIFY(mode->findText("AMTORFEC") >= 0);
        QVERIFY(child<QComboBox>(w.get(), "Combo5")->findText("SSB") >= 0);
    }

    void aRecordTakenFromTheGridIsChangedOrStoredAnew() {
        auto w = windowWithLog();
        typeQso(w.get(), "DL1ABC");
        child<QPushButton>(w.get(), "Command2")->click();
        auto* grid = child<QTableView>(w.get(), "DBGrid1");
        QCOMPARE(grid->model()->rowCount(), 1);

        grid->clicked(grid->model()->index(0, 2));
        QCOMPARE(child<QLineEdit>(w.get(), "Text3")->text(), QString("DL1ABC"));
        type(w.get(), "Text3", "DL1ABD");
        dialogs.answers.push_back(Answer::Yes); // change the record
        child<QPushButton>(w.get(), "Command2")->click();
        QCOMPARE(dialogs.asked.back(), texts(379) + "\n" + texts(380));
        QCOMPARE(w->log()->count(), std::int64_t{1});
        QCOMPARE(w->log()->find(1)->call, std::string("DL1ABD"));

        grid->clicked(grid->model()->index(0, 0));
        type(w.get(), "Text3", "OE3XYZ");
        dialogs.answers.push_back(Answer::No); // a new record
        child<QPushButton>(w.get(), "Command2")->click();
        QCOMPARE(w->log()->count(), std::int64_t{2});
        QCOMPARE(w->log()->find(1)->call, std::string("DL1ABD"));
        QCOMPARE(w->log()->find(2)->call, std::string("OE3XYZ"));
        QCOMPARE(grid->model()->data(grid->model()->index(1, 2)).toString(), QString("OE3XYZ"));
    }

    void deletesOneAndARange() {
        auto w = windowWithLog();
        for (int i = 1; i <= 6; ++i) {
            typeQso(w.get(), QString("DL%1AA").arg(i));
            child<QPushButton>(w.get(), "Command2")->click();
        }
        auto* grid = child<QTableView>(w.get(), "DBGrid1");
        grid->setCurrentIndex(grid->model()->index(1, 0));
        dialogs.answers.push_back(Answer::Yes);
        child<QAction>(w.get(), "MnDbLoesch")->trigger();
        QCOMPARE(dialogs.asked.back(), texts(385));
        QCOMPARE(w->log()->numbers(), (std::vector<std::int64_t>{1, 3, 4, 5, 6}));

        child<QAction>(w.get(), "MnDbGLoesch")->trigger();
        QVERIFY(child<QWidget>(w.get(), "Frame1")->isVisible());
        type(w.get(), "Text12", "5");
        type(w.get(), "Text11", "3");
        dialogs.answers.push_back(Answer::Yes);
        child<QPushButton>(w.get(), "Command3")->click();
        QCOMPARE(dialogs.informed.back(), texts(391));
        QCOMPARE(w->log()->count(), std::int64_t{5});

        type(w.get(), "Text12", "3");
        type(w.get(), "Text11", "5");
        dialogs.answers.push_back(Answer::Yes);
        child<QPushButton>(w.get(), "Command3")->click();
        QCOMPARE(w->log()->numbers(), (std::vector<std::int64_t>{1, 6}));
        QCOMPARE(grid->model()->rowCount(), 2);
        QVERIFY(!child<QWidget>(w.get(), "Frame1")->isVisible());
    }

    void adifExportOfARangeOrAll() {
        auto w = windowWithLog();
        for (int i = 1; i <= 4; ++i) {
            typeQso(w.get(), QString("DL%1AA").arg(i));
            child<QPushButton>(w.get(), "Command2")->click();
        }
        std::filesystem::path asked;
        SubmissionHooks::saveFile = [&](QWidget*, const QString&, const QString& filter,
                                        const std::filesystem::path&) {
            asked = home->path() / "export.adi";
            return filter == "*.adi" ? asked : std::filesystem::path{};
        };
        child<QAction>(w.get(), "MnAdifExport")->trigger();
        QCOMPARE(child<QLineEdit>(w.get(), "Text13")->text(), QString("1"));
        QCOMPARE(child<QLineEdit>(w.get(), "Text14")->text(), QString("4"));
        type(w.get(), "Text13", "3");
        type(w.get(), "Text14", "x");
        child<QPushButton>(w.get(), "Command4")->click();
        QCOMPARE(dialogs.informed.back(), texts(225));
        QVERIFY(asked.empty());

        type(w.get(), "Text14", "3");
        child<QPushButton>(w.get(), "Command4")->click();
        QCOMPARE(dialogs.informed.back(), texts(183) + "\n" + asked.string());
        const std::string one = orv::test::readFile(asked);
        QCOMPARE(std::count(one.begin(), one.end(), '\n'), 4L);
        QVERIFY(one.find("<CALL:5>DL3AA") != std::string::npos);

        child<QAction>(w.get(), "MnAdifExport")->trigger();
        child<QCheckBox>(w.get(), "Check1")->setChecked(true);
        child<QPushButton>(w.get(), "Command4")->click();
        const std::string all = orv::test::readFile(asked);
        QCOMPARE(std::count(all.begin(), all.end(), '\n'), 7L);
    }

    void optionsAndTheWindowStateGoToTheSettings() {
        {
            auto w = windowWithLog();
            SubmissionHooks::runModal = [](QDialog& d) {
                d.findChild<QPlainTextEdit*>("ListQRG")->setPlainText("50.150\n\n144.300");
                d.findChild<QPlainTextEdit*>("ListANT")->setPlainText("Yagi");
                d.accept();
                return d.result();
            };
            child<QAction>(w.get(), "MnOptionen")->trigger();
            QCOMPARE(child<QComboBox>(w.get(), "Combo6")->count(), 2);
            const std::string ini = orv::test::readFile(paths.iniPath());
            QVERIFY(ini.find("[QJDATENQRG]\n00=50.150\n01=144.300\n") != std::string::npos);

            auto* frame = child<QWidget>(w.get(), "Frame3");
            auto* grid = child<QWidget>(w.get(), "DBGrid1");
            QTRY_VERIFY(frame->y() < grid->y());
            child<QPushButton>(w.get(), "Command1")->click();
            QCOMPARE(settings->get(orv::keys::QJEingabePos), 1LL);
            QTRY_VERIFY(frame->y() > grid->y());
            type(w.get(), "Combo8", "jn58td");
            type(w.get(), "Combo2", "Y");
            w->close();
        }
        QCOMPARE(orv::readStationList(*settings, orv::section::QJDatMyLocList),
                 std::vector<std::string>{"JN58TD"});
        QCOMPARE(settings->get(orv::keys::QJQSL), std::string("Y"));
        QVERIFY(settings->get(orv::keys::QJWidth) > 0);

        // The next start opens the last log without a question.
        auto again = window();
        again->start();
        QVERIFY(again->log());
        QVERIFY(dialogs.asked.size() == 1);
    }

    // Through the program's start: the menu entry and F7 open the station log
    // beside the contest window, a second F7 brings the same one forward, and
    // closing the contest window unloads it with its settings.
    void opensFromTheMainWindowAndClosesWithIt() {
        orv::test::writeFile(paths.iniPath(), "[QB]\nEinverstanden=-1\n");
        orv::test::CountingBeeper beeper;
        orv::ui::Startup s(home->path(), dialogs, clock, beeper);
        s.runLogDialog = orv::test::createLog("Contest");
        QCOMPARE(s.run(), orv::ui::Startup::Outcome::Run);
        orv::ui::MainWindow* w = s.window();
        auto* menu = w->findChild<QAction*>("MnOrvantaLog");
        QVERIFY(menu && menu->isEnabled());
        QVERIFY(!orv::ui::stationLogWindow(s));

        dialogs.answers.push_back(Answer::Yes); // IText(377): a new log
        QtDialogs::queueInput(std::string("Home"));
        QTest::keyClick(w->findChild<QLineEdit*>("Text3"), Qt::Key_F7);
        StationLogWindow* log = orv::ui::stationLogWindow(s);
        QVERIFY(log);
        QCOMPARE(log->objectName(), QString("QJForm1"));
        QVERIFY(log->isWindow());
        QVERIFY(log->isVisible());
        QVERIFY(log->log());
        QVERIFY(w->isVisible());
        QCOMPARE(std::filesystem::exists(paths.stationLogPath() / "Home.sqlite"), true);

        menu->trigger();
        QCOMPARE(orv::ui::stationLogWindow(s), log);
        QCOMPARE(dialogs.asked.size(), std::size_t{1});

        type(log, "Combo8", "JN58TD");
        QPointer<StationLogWindow> watch(log);
        w->close();
        QTRY_VERIFY(!watch);
        QCOMPARE(orv::readStationList(*settings, orv::section::QJDatMyLocList),
                 std::vector<std::string>{"JN58TD"});
    }

    void aFileThatIsNoStationLogIsRefused() {
        orv::test::writeFile(paths.stationLogPath() / "Junk.sqlite", "no database");
        settings->set(orv::keys::QJLogFile, "Junk.sqlite");
        auto w = window();
        dialogs.answers.push_back(Answer::No); // choose an existing log
        SubmissionHooks::openFile = [&](QWidget*, const QString&, const QString&,
                                        const std::filesystem::path& folder) {
            return folder / "Junk.sqlite";
        };
        w->start();
        QVERIFY(!w->log());
        QCOMPARE(dialogs.informed.back(),
                 texts(415) + "\n" + (paths.stationLogPath() / "Junk.sqlite").string());
        QCOMPARE(orv::test::readFile(paths.stationLogPath() / "Junk.sqlite"),
                 std::string("no database"));
    }
};

QTEST_MAIN(TestStationLog)
#include "test_station_log.moc"
