#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <future>

#include "core/backup/backup_worker.h"
#include "core/logstore/contest_log.h"
#include "core/util/sqlite.h"
#include "support/temp_dir.h"

using namespace orv;
namespace fs = std::filesystem;

namespace {

QsoRow qso(std::int64_t nr) {
    QsoRow r;
    r.call = "DL" + std::to_string(nr) + "AB";
    r.locator = "JN58TD";
    r.qrg = 144;
    r.datTime = DateTime{2026, 5, 2, 14, 30, 0};
    r.rstGeg = "59";
    r.qsoNr = nr;
    r.rstErh = "59001";
    r.qrb = 300;
    r.mod = "SSB";
    r.modRx = "SSB";
    return r;
}

fs::path makeLog(const fs::path& folder, int qsos) {
    const fs::path p = folder / "Contest.sqlite";
    ContestLog log = ContestLog::create(p, NewLogData{"OE1ABC", "JN78DF", "Test", {}});
    for (int i = 1; i <= qsos; ++i)
        log.addQso(1, qso(i), BandTotals{300LL * i, 300, 1});
    return p;
}

// The QSOs on 144 MHz of a copy, after the database's own check.
std::int64_t checkedRows(const fs::path& p) {
    {
        sql::Db db(p.string(), sql::Db::Mode::ReadOnly);
        auto st = db.prepare("PRAGMA integrity_check");
        EXPECT_TRUE(st.step());
        EXPECT_EQ(st.text(0), "ok") << p;
    }
    return ContestLog::open(p).value().rowCount(1);
}

const FreeSpaceFn plenty = [](const fs::path&) {
    return std::optional<std::uintmax_t>(1ull << 40);
};

} // namespace

// Each way a copy ends: what it says, and what stays at the destination.
TEST(Backup, OutcomesAndWhatStaysBehind) {
    struct Case {
        const char* name;
        bool folderExists;
        bool oldCopy;
        bool brokenSource;
        std::function<std::optional<std::uintmax_t>(std::uintmax_t size)> free;
        BackupOutcome outcome;
        int text;
        bool newCopy;  // the destination holds the log now
        bool oldAsAlt; // the former copy waits as ".ALT"
        bool oldInPlace;
    };
    const std::vector<Case> cases = {
        {"first copy", true, false, false, [](auto) { return std::uintmax_t{1} << 40; },
         BackupOutcome::Copied, 0, true, false, false},
        {"replaces the former", true, true, false, [](auto) { return std::uintmax_t{1} << 40; },
         BackupOutcome::Copied, 0, true, false, false},
        {"exactly twice is too little", true, true, false, [](auto s) { return 2 * s; },
         BackupOutcome::TooLittleSpace, 32, false, false, true},
        {"one byte more is enough", true, false, false, [](auto s) { return 2 * s + 1; },
         BackupOutcome::Copied, 0, true, false, false},
        {"not ready", true, true, false, [](auto) { return std::nullopt; }, BackupOutcome::NotReady,
         33, false, false, true},
        {"folder gone", false, false, false, [](auto) { return std::uintmax_t{1} << 40; },
         BackupOutcome::NoPath, 35, false, false, false},
        {"copy fails", true, true, true, [](auto) { return std::uintmax_t{1} << 40; },
         BackupOutcome::CopyFailed, 35, false, true, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        test::TempDir dir;
        fs::path source = makeLog(dir.path(), 3);
        if (c.brokenSource) {
            source = dir / "Broken.sqlite";
            test::writeFile(source, std::string(4096, 'x'));
        }
        const fs::path folder = dir / "Stick";
        if (c.folderExists)
            fs::create_directories(folder);
        const fs::path dest = folder / "Contest.sqlite";
        if (c.oldCopy)
            test::writeFile(dest, "former copy");
        const std::uintmax_t size = fs::file_size(source);
        const auto r = BackupCopy(source, dest, [&](const fs::path&) { return c.free(size); });
        EXPECT_EQ(r.outcome, c.outcome);
        EXPECT_EQ(r.text(), c.text);
        EXPECT_FALSE(fs::exists(dest.string() + ".part"));
        if (c.newCopy) {
            EXPECT_EQ(checkedRows(dest), 3);
        }
        EXPECT_EQ(fs::exists(dest.string() + ".ALT"), c.oldAsAlt);
        if (c.oldAsAlt) {
            EXPECT_EQ(test::readFile(dest.string() + ".ALT"), "former copy");
        }
        if (c.oldInPlace) {
            EXPECT_EQ(test::readFile(dest), "former copy");
        }
        if (!c.brokenSource) {
            EXPECT_EQ(ContestLog::open(source).value().rowCount(1), 3) << "the log itself";
        }
    }
}

// Another process commits QSOs the whole time; every copy taken meanwhile is
// a whole log that passes the database's check.
TEST(Backup, CopiesWhileAnotherProcessWritesAreWhole) {
    test::TempDir dir;
    const fs::path source = makeLog(dir.path(), 100);
    fs::create_directories(dir / "Stick");
    const pid_t writer = fork();
    ASSERT_GE(writer, 0);
    if (writer == 0) {
        ContestLog log = ContestLog::open(source).value();
        for (int i = 101; i <= 600; ++i)
            log.addQso(1, qso(i), BandTotals{300LL * i, 300, 1});
        _exit(0);
    }
    std::int64_t last = 0;
    for (int i = 0; i < 10; ++i) {
        const auto r = BackupCopy(source, dir / "Stick" / "Contest.sqlite", plenty);
        ASSERT_EQ(r.outcome, BackupOutcome::Copied) << r.detail;
        const std::int64_t rows = checkedRows(dir / "Stick" / "Contest.sqlite");
        EXPECT_GE(rows, last);
        EXPECT_LE(rows, 600);
        last = rows;
    }
    int status = 0;
    waitpid(writer, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(BackupCopy(source, dir / "Stick" / "Contest.sqlite", plenty).outcome,
              BackupOutcome::Copied);
    EXPECT_EQ(checkedRows(dir / "Stick" / "Contest.sqlite"), 600);
}

// Requests that come while a copy runs make one more copy, not one each.
TEST(BackupWorker, RequestsDuringACopyCoalesce) {
    test::TempDir dir;
    const fs::path source = makeLog(dir.path(), 5);
    fs::create_directories(dir / "Stick");
    std::promise<void> release;
    std::shared_future<void> released = release.get_future().share();
    std::promise<void> started;
    std::atomic<int> calls{0};
    std::atomic<int> copied{0};
    {
        BackupWorker worker(
            [&](const BackupResult& r) {
                if (r.outcome == BackupOutcome::Copied)
                    ++copied;
            },
            [&](const fs::path&) {
                if (calls++ == 0) {
                    started.set_value();
                    released.wait();
                }
                return std::optional<std::uintmax_t>(1ull << 40);
            });
        worker.request(source, dir / "Stick" / "Contest.sqlite");
        started.get_future().wait();
        for (int i = 0; i < 5; ++i)
            worker.request(source, dir / "Stick" / "Contest.sqlite");
        release.set_value();
        worker.waitIdle();
        EXPECT_EQ(worker.copiesMade(), 2);
    }
    EXPECT_EQ(copied, 2);
    EXPECT_EQ(checkedRows(dir / "Stick" / "Contest.sqlite"), 5);
}
