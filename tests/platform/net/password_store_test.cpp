#include <gtest/gtest.h>

#include <sys/stat.h>

#include "core/util/file_io.h"
#include "platform/net/password_store.h"
#include "support/temp_dir.h"

using namespace orv;

// Without a keyring the password lives in a file of its own that only the
// user can read; accounts are kept apart by user and host.
TEST(PasswordStore, FileOnlyTheUserCanRead) {
    test::TempDir dir;
    const auto file = PasswordStore::fileIn(dir.path());
    PasswordStore store(file, false);
    EXPECT_FALSE(store.load("ftp.example.org", "contest"));

    EXPECT_EQ(store.save("ftp.example.org", "contest", "s3cr et=1"), PasswordStore::Place::File);
    store.save("ftp.example.org", "other", "two");
    store.save("ftp.example.net", "contest", "three");
    struct stat st {};
    ASSERT_EQ(::stat(file.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0600u);

    const struct {
        const char* host;
        const char* user;
        const char* password; // nullptr: none stored
    } cases[] = {
        {"ftp.example.org", "contest", "s3cr et=1"},
        {"ftp.example.org", "other", "two"},
        {"ftp.example.net", "contest", "three"},
        {"ftp.example.net", "other", nullptr},
    };
    // A new store reads what an earlier one wrote.
    PasswordStore again(file, false);
    for (const auto& c : cases) {
        const auto p = again.load(c.host, c.user);
        EXPECT_EQ(p.has_value(), c.password != nullptr) << c.host << " " << c.user;
        if (p && c.password) {
            EXPECT_EQ(*p, c.password);
        }
    }

    again.save("ftp.example.org", "contest", "changed");
    EXPECT_EQ(store.load("ftp.example.org", "contest"), "changed");
    again.forget("ftp.example.org", "contest");
    EXPECT_FALSE(store.load("ftp.example.org", "contest"));
    EXPECT_EQ(store.load("ftp.example.org", "other"), "two");
    // A password that would break the file's lines is refused, and the file
    // keeps what it held.
    const std::string before = test::readFile(file);
    EXPECT_THROW(store.save("ftp.example.org", "other", "a\nb"), fileio::FileError);
    EXPECT_EQ(test::readFile(file), before);
}
