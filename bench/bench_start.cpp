// The program's start in-process, offscreen, up to the first typed call
// answered by the lookup list: with an empty call database (the baseline)
// and with 1,000,000 calls, without the image file (the first start, which
// builds the image) and with it (every later start). Each iteration is a whole start on its own
// data folder: the start-up, the window shown, "DL1A" typed into `Text3`, and the event loop run
// until the list shows its answer. Reported: the time to the shown window and to the answered key.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "core/logstore/contest_log.h"
#include "core/reference/call_db.h"
#include "core/reference/call_image_file.h"
#include "core/util/ports.h"
#include "core/util/sqlite.h"
#include "platform/qt_dialogs.h"
#include "ui/log_dialog.h"
#include "ui/lookup_binding.h"
#include "ui/main_window.h"
#include "ui/startup.h"
#include "window_bench.h"

using namespace orv;
namespace fs = std::filesystem;
using Clock_ = std::chrono::steady_clock;

namespace {

using orv::bench::FixedClock;
using orv::bench::tempFolder;

// The folder of the big database, removed when the run ends.
fs::path bigFolder;

// 1,000,000 distinct calls of the shape of a national list, each with a
// locator, in file order unsorted; made once per run.
const fs::path& bigCallDb() {
    static const fs::path file = [] {
        const fs::path dir = bigFolder = tempFolder("start");
        const fs::path p = dir / "QBDat.sqlite";
        CallDbStore store(p);
        store.db().exec("PRAGMA synchronous = OFF");
        sql::Transaction tx(store.db());
        auto st = store.db().prepare("INSERT INTO OrvantaContestDat (Call, Locator, B2, LastDate) "
                                     "VALUES (?1, ?2, ?3, '2025-09-06 14:03:00')");
        const char* prefixes[] = {"DL", "DK", "OK", "OE", "SP", "HA", "PA", "G", "F", "I"};
        for (int i = 0; i < 1000000; ++i) {
            // Number i written in letters after prefix and digit, scrambled
            // so that the file is not in call order.
            const int k = static_cast<int>((static_cast<long long>(i) * 7919) % 1000000);
            std::string call = prefixes[k % 10];
            call += static_cast<char>('0' + (k / 10) % 10);
            for (int v = k / 100; v > 0 || call.size() < 4; v /= 26)
                call += static_cast<char>('A' + v % 26);
            std::string loc = "JO00AA";
            loc[2] = static_cast<char>('0' + k % 10);
            loc[3] = static_cast<char>('0' + (k / 7) % 10);
            loc[4] = static_cast<char>('A' + k % 24);
            loc[5] = static_cast<char>('A' + (k / 24) % 24);
            st.bind(1, call).bind(2, loc).bind(3, k % 5).run();
            st.reset();
        }
        tx.commit();
        return p;
    }();
    return file;
}

// The image file of the big database, as the first start leaves it.
const fs::path& bigCallImage() {
    static const fs::path file = [] {
        const fs::path p = callImagePath(bigCallDb());
        CallImageFile::write(QBDatImage::load(bigCallDb()), p);
        return p;
    }();
    return file;
}

enum class CallDb { Empty, Big, BigWithImageFile };

void startToFirstKey(benchmark::State& state, CallDb kind) {
    const bool big = kind != CallDb::Empty;
    FixedClock clock;
    SilentBeeper beeper;
    platform::QtDialogs dialogs;
    platform::QtDialogs::setRecording(true);
    if (big)
        bigCallDb();
    if (kind == CallDb::BigWithImageFile)
        bigCallImage();
    double shownMs = 0, answeredMs = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const fs::path dir = tempFolder("start");
        {
            std::ofstream ini(dir / "OrvantaContest.INI");
            ini << "[QB]\nEinverstanden=-1\n";
        }
        fs::create_directories(dir / "Logs");
        ContestLog::create(dir / "Logs" / "bench.sqlite", NewLogData{"OE1ABC", "JN78DF", "B", {}});
        if (big)
            fs::copy_file(bigCallDb(), dir / "QBDat.sqlite");
        if (kind == CallDb::BigWithImageFile)
            fs::copy_file(bigCallImage(), callImagePath(dir / "QBDat.sqlite"));
        // The copies on disk before the clock runs: the start's first sync
        // would otherwise wait for their writeback.
        ::sync();
        state.ResumeTiming();

        const auto t0 = Clock_::now();
        auto startup = std::make_unique<ui::Startup>(dir, dialogs, clock, beeper);
        startup->runLogDialog = [](ui::LogDialog& d) {
            d.openExisting("bench");
            return d.result() == QDialog::Accepted;
        };
        if (startup->run() != ui::Startup::Outcome::Run)
            state.SkipWithError("start failed");
        QApplication::processEvents();
        const auto t1 = Clock_::now();
        auto* lookup = startup->window()->findChild<ui::LookupBinding*>("LookupBinding");
        bool answered = false;
        QObject::connect(lookup, &ui::LookupBinding::listShown, [&] { answered = true; });
        auto* call = startup->window()->findChild<QLineEdit*>("Text3");
        call->setFocus();
        QTest::keyClicks(call, "DL1A");
        while (!answered)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
        const auto t2 = Clock_::now();
        shownMs = std::chrono::duration<double, std::milli>(t1 - t0).count();
        answeredMs = std::chrono::duration<double, std::milli>(t2 - t0).count();
        state.SetIterationTime(std::chrono::duration<double>(t2 - t0).count());

        state.PauseTiming();
        startup.reset();
        fs::remove_all(dir);
        state.ResumeTiming();
    }
    state.counters["window_ms"] = shownMs;
    state.counters["first_key_answered_ms"] = answeredMs;
}

void BM_StartToFirstKey_EmptyCallDb(benchmark::State& state) {
    startToFirstKey(state, CallDb::Empty);
}
void BM_StartToFirstKey_1M(benchmark::State& state) {
    startToFirstKey(state, CallDb::BigWithImageFile);
}
void BM_StartToFirstKey_1M_NoImageFile(benchmark::State& state) {
    startToFirstKey(state, CallDb::Big);
}

} // namespace

BENCHMARK(BM_StartToFirstKey_EmptyCallDb)
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(3)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StartToFirstKey_1M)
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(3)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StartToFirstKey_1M_NoImageFile)
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(3)
    ->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    return orv::bench::runWindowBenchmarks(argc, argv, [] {
        std::error_code ec;
        if (!bigFolder.empty())
            fs::remove_all(bigFolder, ec);
    });
}
