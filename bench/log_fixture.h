#pragma once

// A contest log whose 144 MHz band holds kRows QSOs, in a folder of its own,
// for the benchmarks that work on a full band.
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "core/capture/capture.h"
#include "core/i18n/texts.h"
#include "core/logstore/contest_log.h"
#include "core/util/ports.h"
#include "core/util/sqlite.h"

namespace orv::bench {

constexpr int kRows = 20000;
constexpr int k144 = 1;

class FixedClock final : public Clock {
public:
    DateTime now() const override { return DateTime{2026, 5, 2, 14, 30, 0}; }
};
class YesDialogs final : public Dialogs {
public:
    Answer ask(const std::string&, Buttons, Icon, Answer) override { return Answer::Yes; }
    void inform(const std::string&, Icon) override {}
};

inline std::filesystem::path tempFolder() {
    std::string t = (std::filesystem::temp_directory_path() / "orvanta-bench-XXXXXX").string();
    if (!mkdtemp(t.data()))
        std::abort();
    return t;
}

// A log whose 144 MHz band holds kRows QSOs.
struct Fixture {
    std::filesystem::path dir = tempFolder();
    std::filesystem::path path = dir / "Bench.sqlite";
    std::unique_ptr<ContestLog> log;
    FixedClock clock;
    YesDialogs dialogs;
    Texts texts;

    Fixture() {
        log = std::make_unique<ContestLog>(
            ContestLog::create(path, NewLogData{"OE1ABC", "JN78DF", "Bench", {}}));
        sql::Transaction tx(log->db());
        auto st = log->db().prepare(
            "INSERT INTO \"144MHz\" (Call, Locator, QRG, DatTime, RSTgeg, QSONr, RSTerh, QRB, "
            "QSL, Notice, Mod, Dupe, Name, ModRX, AusBr, ErrQSO, OPCall) VALUES (?1, 'JN88EF', "
            "144, '2026-05-02 10:00:00', '59', ?2, '59001', 155, 0, '', 'SSB', 0, '', 'SSB', '', "
            "0, '')");
        for (int i = 1; i <= kRows; ++i) {
            st.bind(1, "K" + std::to_string(i) + "AB").bind(2, i);
            st.run();
        }
        tx.commit();
        log->writeTotals(k144, BandTotals{155LL * kRows, 155, 1});
    }
    ~Fixture() {
        log.reset();
        std::filesystem::remove_all(dir);
    }
};

// Each iteration commits one new QSO through the capture, as Enter does.
inline void commitQsos(benchmark::State& state, Capture& capture) {
    int n = 0;
    for (auto _ : state) {
        EntryRow r;
        r.call = "DL" + std::to_string(++n) + "X";
        r.locator = "JN88EF";
        r.rstNr = "59001";
        r.time = "14:30";
        r.mode = "SSB";
        if (capture.Uebernehmen(r).kind != CommitResult::Kind::Stored)
            state.SkipWithError("commit refused");
    }
}

} // namespace orv::bench
