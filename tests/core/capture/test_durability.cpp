#include "capture_fixture.h"

#include <csignal>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

using namespace orv;

// A process that commits QSOs is killed at random moments. Every QSO whose
// commit returned (reported through a pipe right after the call) must be in
// the file afterwards, and `MyData` must equal the sum over the live rows.
TEST(CaptureDurability, KilledWhileCommittingLosesNothingAcknowledged) {
    test::TempDir dir;
    const auto path = dir / "Kill.sqlite";
    ContestLog::create(path, NewLogData{"OE1ABC", "JN78DF", "Kill", {}});
    std::mt19937 rng(42);
    std::int64_t acknowledged = 0;
    for (int round = 0; round < 6; ++round) {
        int fds[2];
        ASSERT_EQ(pipe(fds), 0);
        const pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            close(fds[0]);
            auto opened = ContestLog::open(path);
            if (!opened)
                _exit(3);
            ContestLog log = std::move(opened).value();
            test::FakeClock clock;
            test::FakeDialogs dialogs;
            Texts texts;
            CaptureConfig cfg;
            cfg.ownLocator = "JN78DF";
            Capture capture(log, cfg, clock, dialogs, texts);
            capture.selectBand(1);
            for (int i = 0;; ++i) {
                EntryRow r;
                r.call = "R" + std::to_string(round) + "X" + std::to_string(i);
                r.locator = (i % 2) ? "JN88EF" : "JO62QM";
                r.rstNr = "59001";
                r.time = "12:00";
                r.mode = "SSB";
                if (capture.Uebernehmen(r).kind != CommitResult::Kind::Stored)
                    _exit(4);
                const std::int64_t nr = capture.state().LastQSONr;
                if (write(fds[1], &nr, sizeof nr) != sizeof nr)
                    _exit(5);
            }
        }
        close(fds[1]);
        usleep(20000 + static_cast<useconds_t>(rng() % 150000));
        kill(pid, SIGKILL);
        std::int64_t nr = 0;
        while (read(fds[0], &nr, sizeof nr) == sizeof nr)
            acknowledged = std::max(acknowledged, nr);
        close(fds[0]);
        int status = 0;
        waitpid(pid, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the child stopped on its own: " << status;

        auto reopened = ContestLog::open(path);
        ASSERT_TRUE(reopened);
        ContestLog& log = reopened.value();
        const auto rows = log.rows(1);
        ASSERT_GE(static_cast<std::int64_t>(rows.size()), acknowledged) << "round " << round;
        std::int64_t sum = 0, odx = 0;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            EXPECT_EQ(rows[i].qsoNr, static_cast<std::int64_t>(i) + 1);
            sum += rows[i].qrb;
            odx = std::max(odx, rows[i].qrb);
        }
        EXPECT_EQ(log.totals(1).pGesamt, sum) << "round " << round;
        if (!rows.empty()) {
            EXPECT_EQ(log.totals(1).odx, odx);
        }
    }
    EXPECT_GT(acknowledged, 0);
}
