#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "core/capture/capture.h"
#include "core/i18n/texts.h"
#include "core/logstore/contest_log.h"
#include "support/fakes.h"
#include "support/temp_dir.h"

namespace orv::test {

// A fresh contest log in a temporary folder, own locator JN78DF, with the
// capture on the 144 MHz band.
class CaptureTest : public ::testing::Test {
protected:
    static constexpr int k144 = 1;
    static constexpr int k432 = 2;

    void SetUp() override {
        path = dir / "Test.sqlite";
        log = std::make_unique<ContestLog>(
            ContestLog::create(path, NewLogData{"OE1ABC", "JN78DF", "Test", {}}));
        CaptureConfig cfg;
        cfg.ownLocator = "JN78DF";
        capture = std::make_unique<Capture>(*log, cfg, clock, dialogs, texts);
        capture->selectBand(k144);
    }

    EntryRow row(const std::string& call, const std::string& locator,
                 const std::string& rstNr = "59001", const std::string& rst = "59") {
        EntryRow r;
        r.call = call;
        r.locator = locator;
        r.rstNr = rstNr;
        r.rst = rst;
        r.time = clock.now().timeHM();
        r.mode = "SSB";
        r.rxMode = "SSB";
        return r;
    }

    // Commits and expects the QSO to be stored.
    GridRow commit(const std::string& call, const std::string& locator) {
        EntryRow r = row(call, locator);
        CommitResult res = capture->Uebernehmen(r);
        EXPECT_EQ(res.kind, CommitResult::Kind::Stored)
            << call << " refused with IText(" << res.failure.text << ")";
        return res.stored;
    }

    std::int64_t liveSum(int band) {
        std::int64_t s = 0;
        for (const auto& q : log->rows(band))
            if (!q.errQso)
                s += q.qrb;
        return s;
    }

    TempDir dir;
    std::filesystem::path path;
    FakeClock clock{DateTime{2026, 5, 2, 14, 30, 0}};
    FakeDialogs dialogs;
    Texts texts;
    std::unique_ptr<ContestLog> log;
    std::unique_ptr<Capture> capture;
};

} // namespace orv::test
