#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/util/file_io.h"
#include "support/temp_dir.h"

using namespace orv;

TEST(FileIo, AtomicWriteReplacesWholeFile) {
    test::TempDir dir;
    const auto p = dir / "a.ini";
    test::writeFile(p, "old");
    fileio::writeAtomic(p, std::string("new content"));
    EXPECT_EQ(test::readFile(p), "new content");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1);
}

// A file size limit makes write() fail part-way as a full disk does. The
// write runs in a child process so that the limit does not touch the tests.
TEST(FileIo, FailedWriteLeavesOldFileAndNoTemporary) {
    test::TempDir dir;
    const auto p = dir / "a.ini";
    test::writeFile(p, "old");
    const pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit lim{1024, 1024};
        setrlimit(RLIMIT_FSIZE, &lim);
        try {
            fileio::writeAtomic(p, std::string(100000, 'x'));
        } catch (const fileio::FileError&) {
            _exit(7);
        }
        _exit(0);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 7) << "the failing write was not reported";
    EXPECT_EQ(test::readFile(p), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1);
}

TEST(FileIo, WriteIntoMissingFolderThrows) {
    test::TempDir dir;
    EXPECT_THROW(fileio::writeAtomic(dir / "no" / "x", std::string("x")), fileio::FileError);
    EXPECT_THROW(fileio::readAll(dir / "none"), fileio::FileError);
}
