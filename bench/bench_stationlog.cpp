// The station log with 100,000 QSOs, offscreen:
//  - opening the window on it until the grid is shown (BM_OpenStationLog);
//  - one save into it: the store's durable transaction and the whole save
//    of the window with its checks and the grid's new row, against a bare
//    SQLite INSERT and COMMIT of the same record into a copy of the same
//    file with the same journal and sync settings, taking turns in one loop
//    (BM_SaveAgainstBareInsert).
// Each benchmark reports the median and the 99th percentile of its samples.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <sqlite3.h>
#include <string>
#include <vector>

#include "core/app/app_paths.h"
#include "core/i18n/texts.h"
#include "core/settings/settings.h"
#include "core/stationlog/station_log.h"
#include "core/util/sqlite.h"
#include "ui/stationlog/station_log_window.h"
#include "window_bench.h"

using namespace orv;
using Clock_ = std::chrono::steady_clock;

namespace {

using orv::bench::percentile;

constexpr int kRows = 100000;

class FixedClock final : public Clock {
public:
    DateTime now() const override { return DateTime{2026, 5, 2, 14, 30, 0}; }
};

class NoDialogs final : public Dialogs {
public:
    Answer ask(const std::string&, Buttons, Icon, Answer a) override { return a; }
    void inform(const std::string& text, Icon) override { last = text; }
    std::string last;
};

std::filesystem::path tempFolder() {
    std::string t = (std::filesystem::temp_directory_path() / "orvanta-bench-qj-XXXXXX").string();
    if (!mkdtemp(t.data()))
        std::abort();
    return t;
}

StationQso sample(int i) {
    StationQso q;
    q.dateTime = DateTime{2020, 1, 1, 0, 0, 0}.addSeconds(std::int64_t{i} * 600);
    q.call = "K" + std::to_string(i) + "AB";
    q.rstTx = "59";
    q.rstRx = "57";
    q.locator = "JO62QM";
    q.qrgTx = "144.300";
    q.txMod = "SSB";
    q.qsl = "N";
    q.myCall = "DL0XYZ";
    q.myLocator = "JN58TD";
    q.power = "100";
    q.antenne = "9 el. Yagi";
    q.note = "QSO number " + std::to_string(i);
    return q;
}

struct Data {
    std::filesystem::path dir = tempFolder();
    AppPaths paths;
    std::filesystem::path baseline;
    int next = kRows; // the last Nr the saves used

    Data() {
        paths = prepareDataFolder(dir);
        const auto file = paths.stationLogPath() / "bench.sqlite";
        {
            StationLog log = StationLog::create(file);
            sql::Transaction tx(log.db());
            for (int i = 1; i <= kRows; ++i) {
                StationQso q = sample(i);
                q.nr = i;
                // One transaction for the fill; the measured saves commit each.
                auto st = log.db().prepare(
                    "INSERT INTO QJLog (Nr, DateTime, Call, RST_TX, RST_RX, Locator, QRG_TX, "
                    "TXMod, QSL, MyCall, MyLocator, Power, Antenne, Note) VALUES (?1, ?2, ?3, ?4, "
                    "?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14)");
                st.bind(1, i).bind(2, q.dateTime.toStorage()).bind(3, q.call).bind(4, q.rstTx);
                st.bind(5, q.rstRx).bind(6, q.locator).bind(7, q.qrgTx).bind(8, q.txMod);
                st.bind(9, q.qsl).bind(10, q.myCall).bind(11, q.myLocator).bind(12, q.power);
                st.bind(13, q.antenne).bind(14, q.note);
                st.run();
            }
            tx.commit();
            log.db().exec("PRAGMA wal_checkpoint(TRUNCATE)");
            // Each save below writes a file of its own: a connection whose
            // file another one changed reads its pages again.
            baseline = dir / "baseline.sqlite";
            sql::backupTo(log.db(), baseline.string());
            sql::backupTo(log.db(), (paths.stationLogPath() / "store.sqlite").string());
        }
        Settings settings{IniFile(paths.iniPath())};
        settings.set(keys::QJLogFile, "bench.sqlite");
    }
    ~Data() { std::filesystem::remove_all(dir); }
};

std::unique_ptr<Data> theData;
Data& data() {
    if (!theData)
        theData = std::make_unique<Data>();
    return *theData;
}

void report(benchmark::State& state, const std::vector<double>& ms) {
    state.counters["p50_ms"] = percentile(ms, 0.50);
    state.counters["p99_ms"] = percentile(ms, 0.99);
}

template <class F> void measure(benchmark::State& state, F&& once) {
    std::vector<double> ms;
    for (auto _ : state) {
        const auto t0 = Clock_::now();
        once();
        const double s = std::chrono::duration<double>(Clock_::now() - t0).count();
        state.SetIterationTime(s);
        ms.push_back(s * 1000);
    }
    report(state, ms);
}

struct WindowParts {
    Settings settings{IniFile(data().paths.iniPath())};
    Texts texts;
    NoDialogs dialogs;
    FixedClock clock;
    ui::StationLogContext context() { return {data().paths, settings, texts, dialogs, clock}; }
};

void BM_OpenStationLog(benchmark::State& state) {
    WindowParts parts;
    measure(state, [&] {
        ui::StationLogWindow w(parts.context());
        w.resize(1200, 800);
        w.start();
        w.show();
        QApplication::processEvents();
        if (!w.log() || w.findChild<QTableView*>("DBGrid1")->model()->rowCount() < kRows)
            std::abort();
    });
}

// A bare INSERT and COMMIT with the sqlite3 API: one prepared statement of
// the same record between BEGIN IMMEDIATE and COMMIT, WAL, synchronous FULL.
class BareInsert {
public:
    explicit BareInsert(const std::filesystem::path& file) {
        if (sqlite3_open(file.string().c_str(), &db_) != SQLITE_OK)
            std::abort();
        sqlite3_exec(db_, "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL", nullptr, nullptr,
                     nullptr);
        sqlite3_prepare_v2(db_,
                           "INSERT INTO QJLog (Nr, DateTime, Call, RST_TX, RST_RX, Locator, "
                           "QRG_TX, TXMod, QSL, MyCall, MyLocator, Power, Antenne, Note) VALUES "
                           "(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14)",
                           -1, &st_, nullptr);
    }
    ~BareInsert() {
        sqlite3_finalize(st_);
        sqlite3_close(db_);
    }
    void insert(int i) {
        const StationQso q = sample(i);
        const std::string when = q.dateTime.toStorage();
        sqlite3_exec(db_, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
        sqlite3_bind_int(st_, 1, i);
        const std::string* texts[] = {&when,    &q.call,    &q.rstTx, &q.rstRx,  &q.locator,
                                      &q.qrgTx, &q.txMod,   &q.qsl,   &q.myCall, &q.myLocator,
                                      &q.power, &q.antenne, &q.note};
        for (int k = 0; k < 13; ++k)
            sqlite3_bind_text(st_, k + 2, texts[k]->c_str(), -1, SQLITE_TRANSIENT);
        if (sqlite3_step(st_) != SQLITE_DONE)
            std::abort();
        sqlite3_reset(st_);
        sqlite3_exec(db_, "COMMIT", nullptr, nullptr, nullptr);
    }

private:
    sqlite3* db_ = nullptr;
    sqlite3_stmt* st_ = nullptr;
};

double since(Clock_::time_point t0) {
    return std::chrono::duration<double, std::milli>(Clock_::now() - t0).count();
}

double mean(const std::vector<double>& v) {
    double s = 0;
    for (double x : v)
        s += x;
    return v.empty() ? 0 : s / static_cast<double>(v.size());
}

// The three saves take turns in each iteration, in a turning order, so that
// each meets the disk in the same state: the bare insert into a copy of the log, the store's
// add, and the window's whole save (checks, add, the grid's new row). The
// iteration's time is the store's add; the counters give all three.
void BM_SaveAgainstBareInsert(benchmark::State& state) {
    BareInsert bare(data().baseline);
    StationLog log = StationLog::open(data().paths.stationLogPath() / "store.sqlite").value();
    WindowParts parts;
    ui::StationLogWindow w(parts.context());
    w.start();
    w.show();
    QApplication::processEvents();
    auto* call = w.findChild<QLineEdit*>("Text3");
    auto* qrg = w.findChild<QComboBox*>("Combo6");
    auto* mode = w.findChild<QComboBox*>("Combo4");
    std::vector<double> bareMs, addMs, saveMs, saveOnlyMs;
    // Numbers go on across repetitions, which write into the same files.
    int& i = data().next;
    const std::function<void()> saves[] = {
        [&] {
            const auto t0 = Clock_::now();
            bare.insert(i);
            bareMs.push_back(since(t0));
        },
        [&] {
            const auto t0 = Clock_::now();
            log.add(sample(i));
            addMs.push_back(since(t0));
        },
        [&] {
            call->setText(QString("K%1XY").arg(i));
            qrg->setEditText("144.300");
            mode->setEditText("SSB");
            const auto t0 = Clock_::now();
            w.save();
            saveOnlyMs.push_back(since(t0));
            QApplication::processEvents();
            saveMs.push_back(since(t0));
        },
    };
    for (auto _ : state) {
        ++i;
        // Each sync may pay for what the one before it left to the disk, so
        // the order turns with every iteration.
        for (int k = 0; k < 3; ++k)
            saves[(i + k) % 3]();
        state.SetIterationTime(addMs.back() / 1000);
    }
    if (!parts.dialogs.last.empty())
        std::abort();
    state.counters["bare_mean_ms"] = mean(bareMs);
    state.counters["add_mean_ms"] = mean(addMs);
    state.counters["save_mean_ms"] = mean(saveMs);
    state.counters["save_unpainted_mean_ms"] = mean(saveOnlyMs);
    state.counters["bare_p50_ms"] = percentile(bareMs, 0.5);
    state.counters["add_p50_ms"] = percentile(addMs, 0.5);
    state.counters["save_p50_ms"] = percentile(saveMs, 0.5);
    state.counters["add_per_bare"] = mean(addMs) / mean(bareMs);
    state.counters["save_per_bare"] = mean(saveMs) / mean(bareMs);
}

} // namespace

BENCHMARK(BM_OpenStationLog)->UseManualTime()->Iterations(20)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveAgainstBareInsert)
    ->UseManualTime()
    ->Iterations(500)
    ->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    return orv::bench::runWindowBenchmarks(argc, argv, [] { theData.reset(); });
}
