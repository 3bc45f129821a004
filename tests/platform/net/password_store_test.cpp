#include <gtest/gtest.h>

#include <cstdlib>
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

namespace {

// The checks run inside a session of their own with a Secret Service.
void keyringChecks() {
    test::TempDir dir;
    const auto file = PasswordStore::fileIn(dir.path());
    // A password kept in the file from a time without keyring.
    PasswordStore(file, false).save("ftp.example.org", "contest", "old");
    PasswordStore store(file, true);
    EXPECT_EQ(store.save("ftp.example.org", "contest", "im Schlüsselbund"),
              PasswordStore::Place::Keyring);
    EXPECT_EQ(test::readFile(file).find("old"), std::string::npos) << "the file copy stays";
    EXPECT_EQ(PasswordStore(dir / "other.pwd", true).load("ftp.example.org", "contest"),
              "im Schlüsselbund");
    EXPECT_FALSE(store.load("ftp.example.org", "nobody"));
    store.forget("ftp.example.org", "contest");
    EXPECT_FALSE(store.load("ftp.example.org", "contest"));
}

} // namespace

// With a Secret Service (GNOME Keyring in a D-Bus session of its own, its
// files in a temporary home) the password goes to the keyring, not the file.
TEST(PasswordStore, KeyringWhenASecretServiceRuns) {
    if (std::getenv("ORVANTA_KEYRING_SESSION")) {
        keyringChecks();
        return;
    }
    if (!std::filesystem::exists("/usr/bin/gnome-keyring-daemon") ||
        !std::filesystem::exists("/usr/bin/dbus-run-session"))
        GTEST_SKIP() << "no gnome-keyring-daemon or dbus-run-session";
    test::TempDir home;
    const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
    const std::string h = home.path().string();
    const std::string command =
        "HOME='" + h + "' XDG_DATA_HOME='" + h + "/share' XDG_RUNTIME_DIR='" + h +
        "' ORVANTA_KEYRING_SESSION=1 /usr/bin/dbus-run-session -- /bin/sh -c "
        "'printf x | gnome-keyring-daemon --unlock --components=secrets >/dev/null 2>&1; "
        "exec \"$0\" --gtest_filter=PasswordStore.KeyringWhenASecretServiceRuns' '" +
        self + "' > '" + h + "/out.txt' 2>&1";
    const int status = std::system(command.c_str());
    const std::string out = test::readFile(home / "out.txt");
    EXPECT_EQ(status, 0) << out;
    EXPECT_NE(out.find("[  PASSED  ] 1 test."), std::string::npos) << out;
}
