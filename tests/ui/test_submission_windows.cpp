// The evaluation window, the EDI dialog, the exports, the statistics and the
// group changes over real logs in a temporary data folder, with the answers
// of the message boxes and the file choosers given by the test.
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTest>

#include "core/app/app_paths.h"
#include "core/logstore/contest_log.h"
#include "core/reference/call_db.h"
#include "core/reference/country_list.h"
#include "core/settings/ini_file.h"
#include "core/settings/settings.h"
#include "core/submission/submission_support.h"
#include "platform/qt_dialogs.h"
#include "support/fakes.h"
#include "support/temp_dir.h"
#include "support/text_output.h"
#include "ui/edi_dialog.h"
#include "ui/evaluation_window.h"
#include "ui/group_change_dialog.h"
#include "ui/log_dialog.h"
#include "ui/log_grid_model.h"
#include "ui/lookup_binding.h"
#include "ui/main_window.h"
#include "ui/square_window.h"
#include "ui/startup.h"
#include "ui/stats_window.h"
#include "ui/submission_menus.h"
#include "ui_support.h"

using orv::Answer;
using orv::platform::QtDialogs;
using orv::test::addRows;
using orv::test::said;
using orv::ui::EdiDialog;
using orv::ui::EvaluationWindow;
using orv::ui::SubmissionHooks;

namespace {

constexpr int k144 = 1;

// A QSO whose received serial is its number.
orv::QsoRow qso(std::int64_t nr, std::string call, std::string locator, std::int64_t qrb,
                std::string when, bool errQso = false) {
    const orv::QsoRow q =
        orv::test::qso(nr, std::move(call), std::move(locator), qrb, std::move(when), "SSB", "SSB",
                       "59", "59" + std::string(nr < 10 ? "00" : "0") + std::to_string(nr));
    return errQso ? orv::test::deleted(q) : q;
}

// Four QSOs on 2 m under the band weight 2: a deleted one in third place and
// the ODX last.
const std::vector<orv::QsoRow>& smallLog() {
    static const std::vector<orv::QsoRow> rows{
        qso(1, "DL1ABC", "JN58TD", 300, "2026-05-02 12:01:00"),
        qso(2, "OK1XY", "JO70AB", 205, "2026-05-02 12:02:00"),
        qso(3, "SP9ZZ", "KN09AA", 600, "2026-05-02 12:03:00", true),
        qso(4, "OE3XYZ", "JN88EF", 950, "2026-05-02 12:04:00"),
    };
    return rows;
}

QString cell(QTableWidget* g, int r, int c) {
    return g->item(r, c) ? g->item(r, c)->text() : QString();
}

QStringList column(QTableWidget* g, int c) {
    QStringList out;
    for (int r = 0; r < g->rowCount(); ++r)
        out << cell(g, r, c);
    return out;
}

} // namespace

class TestSubmissionWindows : public QObject {
    Q_OBJECT

private:
    orv::test::FakeClock clock;
    orv::test::CountingBeeper beeper;
    QtDialogs dialogs;

    // A data folder with the settings file, the country list from cty.dat
    // and the log "Test" holding the small log.
    struct Station {
        orv::test::TempDir dir;
        orv::AppPaths paths;
        std::unique_ptr<orv::Settings> settings;
        orv::Texts texts;

        Station() {
            orv::test::writeFile(dir / "OrvantaContest.INI", "[QB]\nEinverstanden=-1\n");
            paths = orv::prepareDataFolder(dir.path());
            settings = std::make_unique<orv::Settings>(orv::IniFile(paths.iniPath()));
            const auto r =
                orv::importCountryFile(paths.countryDbPath(), "/usr/share/hamradio-files/cty.dat",
                                       orv::CountryFormat::CtyDat);
            if (!r)
                throw std::runtime_error("cty.dat refused");
            makeLog("Test", smallLog());
        }
        void makeLog(const std::string& name, const std::vector<orv::QsoRow>& rows,
                     const std::string& call = "OE1ABC") {
            orv::ContestLog log =
                orv::test::makeLog(paths.logsPath(), {1, 2, 1, 1, 1, 1, 1, 1, 1, 1}, name, call);
            addRows(log, k144, rows);
        }
        // Replaces the settings file and reads it anew.
        void useSettings(const std::string& content) {
            orv::test::writeFile(paths.iniPath(), content);
            settings = std::make_unique<orv::Settings>(orv::IniFile(paths.iniPath()));
        }
    };

    std::unique_ptr<EvaluationWindow> window(Station& s, const std::string& log = "Test",
                                             int band = k144) {
        return std::make_unique<EvaluationWindow>(s.paths, *s.settings, s.texts, dialogs, clock,
                                                  beeper, log, band);
    }

    static QString label(QWidget* w, const char* name) {
        auto* l = w->findChild<QLabel*>(name);
        return l ? l->text() : QString("<no %1>").arg(name);
    }

    // The group change dialog as a user fills it: QSOs from..to, option 8
    // (the time) moved by half an hour, then Command1.
    static std::function<int(QDialog&)> addHalfAnHour(const char* from, const char* to) {
        return [from, to](QDialog& d) {
            d.findChild<QLineEdit*>("Text1")->setText(from);
            d.findChild<QLineEdit*>("Text2")->setText(to);
            d.findChild<QRadioButton*>("Option1(8)")->click();
            d.findChild<QLineEdit*>("Text3")->setText("0:30");
            QTest::mouseClick(d.findChild<QPushButton*>("Command1"), Qt::LeftButton);
            return 0;
        };
    }

private slots:
    void init() {
        QtDialogs::setRecording(true);
        QtDialogs::recorded().clear();
    }
    void cleanup() {
        QtDialogs::setRecording(false);
        QtDialogs::recorded().clear();
        SubmissionHooks::reset();
    }

    void evaluationShowsPointsAndTheDeletedRowInRed() {
        Station s;
        auto w = window(s);
        auto* grid = w->findChild<QTableWidget*>("MSFlexGrid1");
        QCOMPARE(grid->rowCount(), 4);
        QCOMPARE(grid->columnCount(), 18);
        QVERIFY(grid->isColumnHidden(16));
        // Points are QRB times the band weight 2; the deleted row keeps its
        // own points in the grid but counts for nothing.
        QCOMPARE(column(grid, 8), QStringList({"600", "410", "1200", "1900"}));
        QCOMPARE(column(grid, 4), QStringList({"DL1ABC", "OK1XY", "SP9ZZ", "OE3XYZ"}));
        QCOMPARE(column(grid, 14), QStringList({"", "", "", "ODX"}));
        QCOMPARE(label(w.get(), "Label19"), QString("2910"));
        QCOMPARE(label(w.get(), "Label18"), QString("3"));
        QCOMPARE(label(w.get(), "Label11"), QString("1"));
        QCOMPARE(label(w.get(), "Label20"), QString("970"));
        QCOMPARE(label(w.get(), "Label21"), QString("1900"));
        QCOMPARE(label(w.get(), "Label7"), QString("2"));
        QCOMPARE(label(w.get(), "Label3"), QString("3"));
        QCOMPARE(label(w.get(), "Label28"), QString("3"));
        QCOMPARE(label(w.get(), "Label4"), QString("3"));
        // Red from the date on, only in the deleted row.
        QCOMPARE(grid->item(2, 4)->foreground().color(), QColor(Qt::red));
        QCOMPARE(grid->item(2, 1)->foreground().color(), QColor(Qt::red));
        QVERIFY(grid->item(2, 0)->foreground().color() != QColor(Qt::red));
        QVERIFY(grid->item(1, 4)->foreground().color() != QColor(Qt::red));
        // Germany, Czech Republic, Austria; the deleted Polish QSO is out.
        auto* countries = w->findChild<QTableWidget*>("MSFlexGrid2");
        QCOMPARE(countries->rowCount(), 3);
        QVERIFY(!column(countries, 1).contains("Poland"));
        QVERIFY(column(countries, 1).contains("Austria"));
        QVERIFY(QtDialogs::recorded().empty());
        // The bands with QSOs are told apart, and the chosen band is red.
        auto* b144 = w->findChild<QPushButton*>("BandSel(1)");
        QVERIFY(b144->styleSheet().contains("255, 0, 0"));
        QCOMPARE(w->findChild<QPushButton*>("BandSel(1)")->property("hasQsos").toBool(), true);
        QCOMPARE(w->findChild<QPushButton*>("BandSel(2)")->property("hasQsos").toBool(), false);

        // The locator caption shows the list sorted; the square caption opens
        // the square window over the band's Grossfelder.
        w->findChild<QPushButton*>("LabelLocatoren")->click();
        QCOMPARE(said(), QString("JN58TD, JN88EF, JO70AB"));
        w->findChild<QPushButton*>("LabelGrossfelder")->click();
        auto* squares = w->findChild<orv::ui::SquareWindow*>();
        QVERIFY(squares);
        QVERIFY(squares->isModal());
        squares->close();

        // Another band of the same log: an empty grid and zero figures.
        w->findChild<QComboBox*>("Combo1")->setCurrentIndex(2);
        QCOMPARE(grid->rowCount(), 0);
        QCOMPARE(label(w.get(), "Label19"), QString("0"));
        QCOMPARE(label(w.get(), "Label20"), QString("0"));
        // A click on a band button only sets the band box, which evaluates.
        QTest::mouseClick(w->findChild<QPushButton*>("BandSel(1)"), Qt::LeftButton);
        QCOMPARE(w->findChild<QComboBox*>("Combo1")->currentIndex(), k144);
        QCOMPARE(grid->rowCount(), 4);
    }

    void choosingAnOldLogShowsTheVersionMessage() {
        Station s;
        orv::test::writeOldLog(s.paths.logFile("Alt"));
        auto w = window(s);
        auto* logs = w->findChild<QComboBox*>("Combo2");
        QCOMPARE(logs->count(), 2);
        QCOMPARE(logs->currentText(), QString("Test"));
        logs->setCurrentIndex(logs->findText("Alt"));
        QCOMPARE(QtDialogs::recorded().size(), std::size_t{1});
        QCOMPARE(QString::fromStdString(QtDialogs::recorded().front()),
                 QString::fromStdString(s.texts(208)));
        QCOMPARE(w->findChild<QTableWidget*>("MSFlexGrid1")->rowCount(), 0);
        QCOMPARE(label(w.get(), "Label19"), QString("0"));
        QVERIFY(w->evaluation() == nullptr);
    }

    void headerClicksSortAndColourTheHeader() {
        Station s;
        auto w = window(s);
        w->show();
        QVERIFY(QTest::qWaitForWindowExposed(w.get()));
        auto* grid = w->findChild<QTableWidget*>("MSFlexGrid1");
        auto clickHeader = [&](int c) {
            QHeaderView* h = grid->horizontalHeader();
            const QPoint at(h->sectionViewportPosition(c) + h->sectionSize(c) / 2, h->height() / 2);
            QTest::mouseClick(h->viewport(), Qt::LeftButton, {}, at);
        };
        clickHeader(4);
        QCOMPARE(column(grid, 4), QStringList({"DL1ABC", "OE3XYZ", "OK1XY", "SP9ZZ"}));
        QCOMPARE(grid->horizontalHeaderItem(4)->foreground().color(), QColor(Qt::red));
        clickHeader(4);
        QCOMPARE(column(grid, 4), QStringList({"SP9ZZ", "OK1XY", "OE3XYZ", "DL1ABC"}));
        QCOMPARE(grid->horizontalHeaderItem(4)->foreground().color(), QColor(Qt::blue));
        // The deleted row keeps its red wherever it goes.
        QCOMPARE(grid->item(0, 4)->foreground().color(), QColor(Qt::red));
        QVERIFY(grid->item(1, 4)->foreground().color() != QColor(Qt::red));
        // Points sort as numbers, not as text; another column starts
        // ascending and the former header turns black.
        clickHeader(8);
        QCOMPARE(column(grid, 8), QStringList({"410", "600", "1200", "1900"}));
        QCOMPARE(grid->horizontalHeaderItem(8)->foreground().color(), QColor(Qt::red));
        QCOMPARE(grid->horizontalHeaderItem(4)->foreground().color(), QColor(Qt::black));
    }

    void ediDialogWritesTheLogsQsoLines() {
        Station s;
        auto w = window(s);
        const auto out = s.dir / "entry";
        SubmissionHooks::saveFile = [&](QWidget*, const QString&, const QString& filter,
                                        const std::filesystem::path&) {
            return filter == "*.edi" ? out : std::filesystem::path();
        };
        bool ran = false;
        SubmissionHooks::runModal = [&](QDialog& d) {
            ran = true;
            auto& edi = dynamic_cast<EdiDialog&>(d);
            // The figures of the evaluation are in the boxes already.
            [&] {
                QCOMPARE(edi.findChild<QLineEdit*>("Text1(0)")->text(), QString("Test Contest"));
                QCOMPARE(edi.findChild<QLineEdit*>("Text1(2)")->text(), QString("OE1ABC"));
                QCOMPARE(edi.findChild<QLineEdit*>("Text1(26)")->text(), QString("2910"));
                QCOMPARE(edi.findChild<QLineEdit*>("Text1(34)")->text(), QString("OE3XYZ"));
                QCOMPARE(edi.findChild<QComboBox*>("Combo2")->currentText(), QString("145 MHz"));
            }();
            edi.findChild<QLineEdit*>("Text1(4)")->setText("Wien");
            // Neither the editor nor the upload after the file is written.
            QtDialogs::queueAnswer(Answer::No);
            QtDialogs::queueAnswer(Answer::No);
            QTest::mouseClick(edi.findChild<QPushButton*>("Command1"), Qt::LeftButton);
            d.reject();
            return 0;
        };
        QTest::mouseClick(w->findChild<QPushButton*>("Command2"), Qt::LeftButton);
        QVERIFY(ran);

        const auto file = s.dir / "entry.EDI";
        QVERIFY(std::filesystem::exists(file));
        const auto lines = orv::test::splitLines(orv::test::readFile(file), "\r\n");
        QCOMPARE(QString::fromStdString(lines.front()), QString("[REG1TEST;1]"));
        auto has = [&](const std::string& l) {
            return std::find(lines.begin(), lines.end(), l) != lines.end();
        };
        QVERIFY(has("PBand=145 MHz"));
        QVERIFY(has("PExch=Wien"));
        QVERIFY(has("CQSOs=3;2"));
        QVERIFY(has("CQSOP=2910"));
        QVERIFY(has("[QSORecords;4]"));
        const auto at = std::find(lines.begin(), lines.end(), "[QSORecords;4]");
        const std::vector<std::string> qsos(at + 1, at + 5);
        const std::vector<std::string> expected{
            "260502;1201;DL1ABC;1;59;0001;59;0001;;JN58TD;600;;;;",
            "260502;1202;OK1XY;1;59;0002;59;0002;;JO70AB;410;;;;",
            "260502;1203;ERROR;;;0003;;;;;0;;;;",
            "260502;1204;OE3XYZ;1;59;0004;59;0004;;JN88EF;1900;;;;",
        };
        QCOMPARE(qsos, expected);
        // The saved message with the path, the questions for the editor and
        // the upload, and the boxes kept on closing.
        const auto& said = QtDialogs::recorded();
        QVERIFY(said.size() >= 3);
        QCOMPARE(QString::fromStdString(said[said.size() - 3]),
                 QString::fromStdString(s.texts(183) + "\n" + file.string()));
        QCOMPARE(QString::fromStdString(said[said.size() - 2]),
                 QString::fromStdString(s.texts(366)));
        QCOMPARE(QString::fromStdString(said.back()),
                 QString::fromStdString(s.texts(324) + "\n" + s.texts(325)));
        QCOMPARE(QString::fromStdString(orv::IniFile(s.paths.iniPath()).getStr("EDiExport", "Ex4")),
                 QString("Wien"));
    }

    void ediDialogTemplatesFollowTheBand() {
        Station s;
        s.makeLog("Zwei", {});
        orv::ContestLog log = orv::ContestLog::open(s.paths.logFile("Test")).value();
        addRows(log, 2, {qso(1, "OK2AB", "JN89AA", 100, "2026-05-02 13:00:00")});
        s.useSettings("[QB]\nEinverstanden=-1\n[EDiExport435 MHz]\nVo4=Graz\nVo8=\n");
        auto w = window(s);
        EdiDialog d(*s.settings, s.texts, dialogs, s.paths, k144,
                    [&](int b) { return w->evaluateBand(b); });
        d.findChild<QLineEdit*>("Text1(8)")->setText("Club");
        d.findChild<QComboBox*>("Combo2")->setCurrentIndex(2);
        // The evaluation window follows the band, the template fills box 4
        // and leaves box 8 as it was, and the figures are those of 70 cm.
        QCOMPARE(w->band(), 2);
        QCOMPARE(d.findChild<QLineEdit*>("Text1(4)")->text(), QString("Graz"));
        QCOMPARE(d.findChild<QLineEdit*>("Text1(8)")->text(), QString("Club"));
        QCOMPARE(d.findChild<QLineEdit*>("Text1(26)")->text(), QString("100"));
        QVERIFY(d.findChild<QPushButton*>("Command3")->text().endsWith("\n435 MHz"));
        d.findChild<QLineEdit*>("Text1(9)")->setText("Otto");
        QTest::mouseClick(d.findChild<QPushButton*>("Command3"), Qt::LeftButton);
        QCOMPARE(QString::fromStdString(
                     orv::IniFile(s.paths.iniPath()).getStr("EDiExport435 MHz", "Vo9")),
                 QString("Otto"));
        // Enter walks the boxes in the order of the file: the end date
        // follows the start date, the band list follows box 7.
        d.show();
        QVERIFY(QTest::qWaitForWindowExposed(&d));
        auto enterFrom = [&](const char* from) {
            QWidget* f = d.findChild<QWidget*>(from);
            f->setFocus();
            QTest::keyClick(f, Qt::Key_Return);
            return QApplication::focusWidget() ? QApplication::focusWidget()->objectName()
                                               : QString();
        };
        QCOMPARE(enterFrom("Text1(1)"), QString("Text1(11)"));
        QCOMPARE(enterFrom("Text1(11)"), QString("Text1(2)"));
        QCOMPARE(enterFrom("Text1(7)"), QString("Combo2"));
        QCOMPARE(enterFrom("Combo2"), QString("Text1(8)"));
        QCOMPARE(enterFrom("Text1(20)"), QString("Text1(40)"));
        QCOMPARE(enterFrom("Text1(46)"), QString("Text1(35)"));
        QCOMPARE(d.findChild<QComboBox*>("Combo2")->currentIndex(), 2);

        // A date that is none stops before the question for the file.
        bool asked = false;
        SubmissionHooks::saveFile = [&](QWidget*, const QString&, const QString&,
                                        const std::filesystem::path&) {
            asked = true;
            return std::filesystem::path();
        };
        d.findChild<QLineEdit*>("Text1(11)")->setText("32.13.2026");
        d.writeFile();
        QVERIFY(!asked);
        QCOMPARE(said(), QString::fromStdString(s.texts(13)));
        // An empty band gives the band and "Log Leer!" instead of the dialog.
        w->evaluateBand(0);
        bool opened = false;
        SubmissionHooks::runModal = [&](QDialog&) { return opened = true; };
        QTest::mouseClick(w->findChild<QPushButton*>("Command2"), Qt::LeftButton);
        QVERIFY(!opened);
        QCOMPARE(said(), QString::fromStdString("50 " + s.texts(202)));
    }

    void adifAndTextExports() {
        Station s;
        auto w = window(s);
        std::filesystem::path out;
        SubmissionHooks::saveFile = [&](QWidget*, const QString&, const QString&,
                                        const std::filesystem::path&) { return out; };
        // The frequency panel stores its boxes. (The panel is laid out only
        // once shown, so its buttons are clicked without a mouse position.)
        w->findChild<QPushButton*>("Command7")->click();
        w->findChild<QLineEdit*>("Text1(1)")->setText(" 144.300 ");
        w->findChild<QPushButton*>("Command8")->click();
        QCOMPARE(
            QString::fromStdString(orv::IniFile(s.paths.iniPath()).getStr("QB-OPTION", "ADIFQRG1")),
            QString("144.300"));

        out = s.dir / "all";
        QTest::mouseClick(w->findChild<QPushButton*>("Command5"), Qt::LeftButton);
        const std::string adif = orv::test::readFile(s.dir / "all.ADI");
        QVERIFY(adif.find("<CALL:6>DL1ABC") != std::string::npos);
        QVERIFY(adif.find("<FREQ:7>144.300") != std::string::npos);
        QVERIFY(adif.find("SP9ZZ") == std::string::npos); // deleted: left out
        QCOMPARE(said(),
                 QString::fromStdString(s.texts(183) + "\n" + (s.dir / "all.ADI").string()));

        // Cancel on the statistics question writes nothing.
        out = s.dir / "list";
        QtDialogs::queueAnswer(Answer::Cancel);
        QTest::mouseClick(w->findChild<QPushButton*>("Command4"), Qt::LeftButton);
        QVERIFY(!std::filesystem::exists(s.dir / "list.TXT"));
        QCOMPARE(said(), QString::fromStdString(s.texts(400)));
        QtDialogs::queueAnswer(Answer::No);
        QTest::mouseClick(w->findChild<QPushButton*>("Command4"), Qt::LeftButton);
        const std::string listing = orv::test::readFile(s.dir / "list.TXT");
        QVERIFY(listing.find("OE3XYZ") != std::string::npos);
        QVERIFY(listing.find(" ERROR ") != std::string::npos);
    }

    void closingAsksToReloadAChangedCallDatabase() {
        Station s;
        orv::NewQBDat(s.paths);
        auto w = window(s);
        // The evaluation merged the log into the call database.
        QVERIFY(orv::CallDbStore(s.paths.callDbPath()).count() > 0);
        int reloads = 0;
        w->reloadCallDb = [&] { ++reloads; };
        QtDialogs::queueAnswer(Answer::Yes);
        w->close();
        QCOMPARE(reloads, 1);
        QCOMPARE(said(), QString::fromStdString(s.texts(260)));
        // Opened again, nothing changes any more, and nothing is asked.
        QtDialogs::recorded().clear();
        auto again = window(s);
        again->reloadCallDb = [&] { ++reloads; };
        again->close();
        QCOMPARE(reloads, 1);
        QVERIFY(QtDialogs::recorded().empty());
    }

    void statisticsOverTheMarkedLogs() {
        Station s;
        s.makeLog("Zwei", {qso(1, "DL1ABC", "JN58TD", 300, "2026-06-01 10:00:00")}, "OE1ABC");
        orv::ui::StatsWindow st(s.paths, s.texts, dialogs);
        auto* grid = st.findChild<QTableWidget*>("MSFlexGrid1");
        QCOMPARE(grid->rowCount(), 2);
        QCOMPARE(cell(grid, 0, 1), QString("Test"));
        st.toggle(0);
        st.toggle(1);
        QVERIFY(st.marked(0) && st.marked(1));
        QTest::mouseClick(st.findChild<QPushButton*>("Command2"), Qt::LeftButton);
        const QString report = st.report();
        QVERIFY(report.startsWith(QString::fromStdString(s.texts(284))));
        // The same own call from both logs stands once.
        QCOMPARE(report.count("OE1ABC"), 1);
        // Saved and read back.
        SubmissionHooks::saveFile = [&](QWidget*, const QString&, const QString&,
                                        const std::filesystem::path&) { return s.dir / "st"; };
        QTest::mouseClick(st.findChild<QPushButton*>("Command4"), Qt::LeftButton);
        QCOMPARE(QString::fromStdString(orv::test::readFile(s.dir / "st.TXT")), report);
        SubmissionHooks::openFile = [&](QWidget*, const QString&, const QString&,
                                        const std::filesystem::path&) { return s.dir / "st.TXT"; };
        st.findChild<QPlainTextEdit*>("Text2")->clear();
        QTest::mouseClick(st.findChild<QPushButton*>("Command3"), Qt::LeftButton);
        QCOMPARE(st.report(), report);
        // A folder of old logs only lists nothing.
        const auto old = s.dir / "old";
        std::filesystem::create_directories(old);
        orv::test::writeOldLog(old / "Alt.sqlite");
        SubmissionHooks::chooseFolder = [&](QWidget*, const QString&,
                                            const std::filesystem::path&) { return old; };
        QTest::mouseClick(st.findChild<QPushButton*>("Command1"), Qt::LeftButton);
        QCOMPARE(grid->rowCount(), 0);
    }

    void groupChangeOptionsPrepareTheValue() {
        Station s;
        s.useSettings("[QB]\nEinverstanden=-1\nOPCall=DL2OPB\n[OPCallList]\nDL1OPA\nDL2OPB\n");
        orv::ContestLog log = orv::ContestLog::open(s.paths.logFile("Test")).value();
        orv::ui::GroupChangeDialog d(log, k144, *s.settings, s.texts, dialogs, beeper);
        auto* list = d.findChild<QComboBox*>("Combo1");
        auto* value = d.findChild<QLineEdit*>("Text3");
        // Time options type into Text3, which starts as "1".
        QVERIFY(value->isVisibleTo(&d) && !list->isVisibleTo(&d));
        QCOMPARE(value->text(), QString("1"));
        d.findChild<QRadioButton*>("Option1(3)")->click();
        QVERIFY(list->isVisibleTo(&d) && !value->isVisibleTo(&d));
        QCOMPARE(list->count(), 2);
        QCOMPARE(list->itemText(0), QString("Yes"));
        d.findChild<QRadioButton*>("Option1(7)")->click();
        QCOMPARE(list->count(), 2);
        QCOMPARE(list->itemText(0), QString("DL1OPA"));
        QCOMPARE(list->currentText(), QString("DL2OPB"));

        // The operator of QSOs 2 to 4, deleted QSO 3 included.
        d.findChild<QLineEdit*>("Text1")->setText("2");
        d.findChild<QLineEdit*>("Text2")->setText("4");
        list->setCurrentText("dl1opa");
        int changedBand = -1;
        d.onChanged = [&](int b) { changedBand = b; };
        QVERIFY(d.apply());
        QCOMPARE(changedBand, k144);
        QCOMPARE(QString::fromStdString(log.findByQsoNr(k144, 1)->opCall), QString());
        for (int nr : {2, 3, 4})
            QCOMPARE(QString::fromStdString(log.findByQsoNr(k144, nr)->opCall), QString("DL1OPA"));

        // A time that is none beeps, says IText(14) and changes nothing.
        d.findChild<QRadioButton*>("Option1(0)")->click();
        value->setText("25:99");
        const int beeps = beeper.beeps;
        changedBand = -1;
        QVERIFY(!d.apply());
        QCOMPARE(beeper.beeps, beeps + 1);
        QCOMPARE(changedBand, -1);
        QCOMPARE(said(), QString::fromStdString(s.texts(14)));
        QCOMPARE(log.findByQsoNr(k144, 2)->datTime.toStorage(), std::string("2026-05-02 12:02:00"));
    }

    // Through the program's start: the menu entries are enabled, the group
    // change moves times across midnight in the log file and the main
    // window's grid shows the new times at once.
    void menuEntriesAndGroupChangeAcrossMidnight() {
        orv::test::TempDir dir;
        orv::test::writeFile(dir / "OrvantaContest.INI", "[QB]\nEinverstanden=-1\n");
        orv::ui::Startup s(dir.path(), dialogs, clock, beeper);
        s.runLogDialog = orv::test::createLog("Nacht");
        QCOMPARE(s.run(), orv::ui::Startup::Outcome::Run);
        orv::ui::MainWindow* w = s.window();
        QCOMPARE(w->currentBand(), k144);
        addRows(*s.log(), k144,
                {qso(1, "DL1ABC", "JN58TD", 300, "2026-05-02 23:40:00"),
                 qso(2, "OK1XY", "JO70AB", 205, "2026-05-02 23:45:00"),
                 qso(3, "OE3XYZ", "JN88EF", 950, "2026-05-02 23:50:00")});
        for (const char* name : {"Auswerten", "MnStatistikKurz", "MnGruppenAendern"})
            QVERIFY2(w->findChild<QAction*>(name)->isEnabled(), name);

        // A range in the wrong order is refused and changes nothing.
        QtDialogs::recorded().clear();
        SubmissionHooks::runModal = addHalfAnHour("3", "2");
        w->findChild<QAction*>("MnGruppenAendern")->trigger();
        QCOMPARE(said(), QString::fromStdString(s.texts()(225)));
        QCOMPARE(s.log()->findByQsoNr(k144, 2)->datTime.toStorage(),
                 std::string("2026-05-02 23:45:00"));

        SubmissionHooks::runModal = addHalfAnHour("2", "3");
        w->findChild<QAction*>("MnGruppenAendern")->trigger();
        // The log file read on its own connection.
        orv::ContestLog file = orv::ContestLog::open(dir / "Logs" / "Nacht.sqlite").value();
        QCOMPARE(file.findByQsoNr(k144, 1)->datTime.toStorage(),
                 std::string("2026-05-02 23:40:00"));
        QCOMPARE(file.findByQsoNr(k144, 2)->datTime.toStorage(),
                 std::string("2026-05-03 00:15:00"));
        QCOMPARE(file.findByQsoNr(k144, 3)->datTime.toStorage(),
                 std::string("2026-05-03 00:20:00"));
        // The main window shows the band anew.
        orv::ui::LogGridModel& grid = w->logGrid();
        QCOMPARE(grid.rowCount(), 3);
        QStringList times;
        for (int r = 0; r < grid.rowCount(); ++r)
            times << grid.row(r)[orv::ui::LogGridModel::Time];
        QVERIFY2(times.contains("00:15") && times.contains("00:20") && times.contains("23:40"),
                 qPrintable(times.join(",")));

        // The statistics list the logs folder, and open again on the folder
        // chosen last time.
        const auto other = dir / "Archiv";
        std::filesystem::create_directories(other);
        SubmissionHooks::chooseFolder = [&](QWidget*, const QString&,
                                            const std::filesystem::path&) { return other; };
        QStringList listed;
        SubmissionHooks::runModal = [&](QDialog& d) {
            auto& st = dynamic_cast<orv::ui::StatsWindow&>(d);
            listed << QString::fromStdString(st.folder().filename().string());
            QTest::mouseClick(d.findChild<QPushButton*>("Command1"), Qt::LeftButton);
            return 0;
        };
        w->findChild<QAction*>("MnStatistikKurz")->trigger();
        w->findChild<QAction*>("MnStatistikKurz")->trigger();
        QCOMPARE(listed, QStringList({"Logs", "Archiv"}));

        // The evaluation opens over the open log and band.
        w->findChild<QAction*>("Auswerten")->trigger();
        auto* ev = w->findChild<EvaluationWindow*>("Form5");
        QVERIFY(ev);
        QCOMPARE(QString::fromStdString(ev->logName()), QString("Nacht"));
        QCOMPARE(ev->band(), k144);
        QCOMPARE(label(ev, "Label18"), QString("3"));
        // The evaluation merged the log into the call database; closing
        // offers the reload, and Yes loads the main window's image anew.
        auto* lookup = w->findChild<orv::ui::LookupBinding*>("LookupBinding");
        QVERIFY(lookup);
        QCOMPARE(lookup->readyImage()->size(), std::size_t{0});
        QtDialogs::queueAnswer(Answer::Yes);
        ev->close();
        QCOMPARE(said(), QString::fromStdString(s.texts()(260)));
        QCOMPARE(lookup->readyImage()->size(), std::size_t{3});
    }
};

QTEST_MAIN(TestSubmissionWindows)
#include "test_submission_windows.moc"
