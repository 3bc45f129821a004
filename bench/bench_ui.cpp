// The real main window, offscreen, over a log whose bands hold 20,000 QSOs:
//  - a key press in the call field and in the locator field, each measured
//    as the key event plus the event processing that follows it, against a
//    key press into a plain QLineEdit in the same run, and in the locator
//    field again with the map window open and following it;
//  - key presses in the call field while QSOs are logged through the window
//    one after the other, with and without a backup after each change
//    running beside them (the copy of a 40,000-QSO log);
//  - a band change between two bands of 20,000 QSOs, both held in memory
//    (the worker has loaded the second one), against a plain window whose
//    table of the same size is swapped to other content.
// Each benchmark reports the median and the 99th percentile of its samples.
#include <benchmark/benchmark.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTableView>
#include <QTest>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "core/capture/capture.h"
#include "core/logstore/contest_log.h"
#include "core/util/sqlite.h"
#include "platform/qt_dialogs.h"
#include "ui/backup_binding.h"
#include "ui/log_dialog.h"
#include "ui/main_window.h"
#include "ui/startup.h"
#include "window_bench.h"

using namespace orv;
using Clock_ = std::chrono::steady_clock;

namespace {

using orv::bench::FixedClock;
using orv::bench::percentile;
using orv::bench::reportPercentiles;
using orv::bench::tempFolder;
using orv::bench::typeWords;

constexpr int kRows = 20000;
constexpr int k144 = 1;
constexpr int k432 = 2;

// Distinct calls and locators spread over Europe, in one transaction per band.
void fill(ContestLog& log, const char* table, int band) {
    sql::Transaction tx(log.db());
    auto st = log.db().prepare(
        std::string("INSERT INTO \"") + table +
        "\" (Call, Locator, QRG, DatTime, RSTgeg, QSONr, RSTerh, QRB, QSL, Notice, Mod, Dupe, "
        "Name, ModRX, AusBr, ErrQSO, OPCall) VALUES (?1, ?2, ?3, '2026-05-02 10:00:00', '59', "
        "?4, '59001', ?5, 0, '', 'SSB', 0, '', 'SSB', '', 0, '')");
    for (int i = 1; i <= kRows; ++i) {
        std::string loc = "JO00AA";
        loc[0] = static_cast<char>('I' + i % 3);
        loc[1] = static_cast<char>('M' + i % 4);
        loc[2] = static_cast<char>('0' + i % 10);
        loc[3] = static_cast<char>('0' + (i / 10) % 10);
        loc[4] = static_cast<char>('A' + i % 24);
        loc[5] = static_cast<char>('A' + (i / 24) % 24);
        st.bind(1, "K" + std::to_string(i) + "AB")
            .bind(2, loc)
            .bind(3, band == k144 ? "144" : "432")
            .bind(4, i)
            .bind(5, 100 + i % 900);
        st.run();
    }
    tx.commit();
    log.writeTotals(band, BandTotals{500LL * kRows, 999, 1});
}

// A data folder with one log of two full bands, opened by the real start-up.
struct Program {
    std::filesystem::path dir = tempFolder("ui");
    FixedClock clock;
    SilentBeeper beeper;
    platform::QtDialogs dialogs;
    std::unique_ptr<ui::Startup> startup;

    Program() {
        std::filesystem::create_directories(dir / "Logs");
        {
            std::ofstream ini(dir / "OrvantaContest.INI");
            ini << "[QB]\nEinverstanden=-1\nStartQRG=1\n";
        }
        {
            ContestLog log = ContestLog::create(dir / "Logs" / "bench.sqlite",
                                                NewLogData{"OE1ABC", "JN78DF", "Bench", {}});
            fill(log, "144MHz", k144);
            fill(log, "432MHz", k432);
        }
        // Questions are answered with their default, never shown.
        platform::QtDialogs::setRecording(true);
        startup = std::make_unique<ui::Startup>(dir, dialogs, clock, beeper);
        startup->runLogDialog = [](ui::LogDialog& d) {
            d.openExisting("bench");
            return d.result() == QDialog::Accepted;
        };
        if (startup->run() != ui::Startup::Outcome::Run)
            std::abort();
        window()->selectBand(k144);
        window()->activateWindow();
        // The worker loads the other band while the operator starts to
        // work; the measurement starts once it is there.
        startup->capture()->waitForPreload();
        QApplication::processEvents();
    }
    ~Program() {
        startup.reset();
        std::filesystem::remove_all(dir);
    }
    ui::MainWindow* window() { return startup->window(); }
};

// Made on first use and ended in main, while the application still stands.
std::unique_ptr<Program> theProgram;
Program& program() {
    if (!theProgram)
        theProgram = std::make_unique<Program>();
    return *theProgram;
}

// Types `texts` into `field` in turn, one measured key press each.
void typeInto(benchmark::State& state, QLineEdit* field, const std::vector<std::string>& texts) {
    reportPercentiles(state, typeWords(state, field, texts));
}

const std::vector<std::string> kCalls = {"K19AB", "K7001AB", "DL1ABC", "K123", "OK1KHL"};
const std::vector<std::string> kLocators = {"JO62QM", "JN78DF", "IO91VL", "KN19AA"};

void BM_KeyPressPlainLineEdit(benchmark::State& state) {
    program();
    QWidget holder;
    auto* edit = new QLineEdit(&holder);
    holder.show();
    holder.activateWindow();
    QApplication::processEvents();
    typeInto(state, edit, kCalls);
}

void BM_KeyPressCallField(benchmark::State& state) {
    typeInto(state, program().window()->findChild<QLineEdit*>("Text3"), kCalls);
}

void BM_KeyPressLocatorField(benchmark::State& state) {
    typeInto(state, program().window()->findChild<QLineEdit*>("Text7"), kLocators);
}

// The same with the map window open beside it, following the typed locator.
void BM_KeyPressLocatorFieldMapOpen(benchmark::State& state) {
    ui::MainWindow* w = program().window();
    auto* open = w->findChild<QAction*>("MnKarte");
    if (!open) {
        state.SkipWithError("no map entry");
        return;
    }
    open->trigger();
    QApplication::processEvents();
    typeInto(state, w->findChild<QLineEdit*>("Text7"), kLocators);
    for (QWidget* top : QApplication::topLevelWidgets())
        if (top->objectName() == "MapWindow")
            top->close();
    w->activateWindow();
    QApplication::processEvents();
}

// Calls are typed key by key (measured); after each call the QSO is logged
// with its report and locator (not measured), which with the backup on asks
// for a copy that runs while the next call is typed.
void BM_KeyPressWhileLogging(benchmark::State& state) {
    Program& p = program();
    ui::MainWindow* w = p.window();
    auto* backup = w->findChild<ui::BackupBinding*>("BackupBinding");
    if (!backup) {
        state.SkipWithError("no backup binding");
        return;
    }
    std::filesystem::create_directories(p.dir / "Stick");
    Settings& st = p.startup->settings();
    st.set(keys::SichernPfad, (p.dir / "Stick").string());
    st.set(keys::SichernungsArt, false);
    st.set(keys::SichernungAN, state.range(0) ? 1 : 0);
    backup->LadeSichernOptionen();
    static int qso = 0;
    const auto rowsBefore = p.startup->log()->rowCount(k144);
    const std::vector<double> ms = bench::typeCallsAndLog(state, *w, qso);
    backup->waitIdle();
    st.set(keys::SichernungAN, 0);
    backup->LadeSichernOptionen();
    reportPercentiles(state, ms);
    // What really happened: the QSOs stored, and the copy there.
    state.counters["qsos"] = static_cast<double>(p.startup->log()->rowCount(k144) - rowsBefore);
    state.counters["copy_exists"] = std::filesystem::exists(p.dir / "Stick" / "bench.sqlite");
}

void BM_BandChange(benchmark::State& state) {
    ui::MainWindow* w = program().window();
    std::vector<double> ms;
    int band = w->currentBand() == k144 ? k432 : k144;
    for (auto _ : state) {
        const auto t0 = Clock_::now();
        w->selectBand(band);
        QApplication::processEvents();
        const double s = std::chrono::duration<double>(Clock_::now() - t0).count();
        state.SetIterationTime(s);
        ms.push_back(s * 1000);
        band = band == k144 ? k432 : k144;
    }
    reportPercentiles(state, ms);
}

// A table of 20,000 rows and 18 columns whose content changes at once, as
// the log grid's does on a band change.
class PlainTable final : public QAbstractTableModel {
public:
    int rowCount(const QModelIndex& = {}) const override { return kRows; }
    int columnCount(const QModelIndex& = {}) const override { return 18; }
    QVariant data(const QModelIndex& i, int role) const override {
        if (role != Qt::DisplayRole)
            return {};
        return QString::number(i.row() * 18 + i.column() + offset_);
    }
    void swap() {
        beginResetModel();
        offset_ = offset_ ? 0 : 1000000;
        endResetModel();
    }

private:
    int offset_ = 0;
};

void BM_BandChangePlainWindow(benchmark::State& state) {
    program();
    QWidget holder;
    auto* layout = new QVBoxLayout(&holder);
    auto* view = new QTableView(&holder);
    PlainTable model;
    view->setModel(&model);
    layout->addWidget(view);
    holder.resize(1200, 800);
    holder.show();
    QApplication::processEvents();
    std::vector<double> ms;
    for (auto _ : state) {
        const auto t0 = Clock_::now();
        model.swap();
        view->scrollToBottom();
        QApplication::processEvents();
        const double s = std::chrono::duration<double>(Clock_::now() - t0).count();
        state.SetIterationTime(s);
        ms.push_back(s * 1000);
    }
    reportPercentiles(state, ms);
}

} // namespace

BENCHMARK(BM_KeyPressPlainLineEdit)
    ->UseManualTime()
    ->Iterations(2000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_KeyPressCallField)->UseManualTime()->Iterations(2000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_KeyPressLocatorField)
    ->UseManualTime()
    ->Iterations(2000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_KeyPressLocatorFieldMapOpen)
    ->UseManualTime()
    ->Iterations(2000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_KeyPressWhileLogging)
    ->Arg(0)
    ->Arg(1)
    ->UseManualTime()
    ->Iterations(1200)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BandChangePlainWindow)
    ->UseManualTime()
    ->Iterations(200)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BandChange)->UseManualTime()->Iterations(200)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    return orv::bench::runWindowBenchmarks(argc, argv, [] { theProgram.reset(); });
}
