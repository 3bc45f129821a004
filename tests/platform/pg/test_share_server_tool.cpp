// share-server on a server the test starts: the positions log in with the
// password over TCP, a second run changes only the password, and refused
// input or user changes nothing.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "core/util/file_io.h"
#include "support/pg_cluster.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"

namespace orv::test {
namespace {

std::size_t count(const std::string& text, const std::string& what) {
    std::size_t n = 0;
    for (auto i = text.find(what); i != std::string::npos; i = text.find(what, i + 1))
        ++n;
    return n;
}

TEST(ShareServerTool, SetsUpTheServerOnceAndPositionsLogInWithThePassword) {
    PgCluster pg;
    TempDir home, position, stranger;
    const std::filesystem::path data = pg.dataDir();
    const auto conf = data / "postgresql.conf", hba = data / "pg_hba.conf";
    const auto pw = home / "pw.txt", pw2 = home / "pw2.txt", empty = home / "empty.txt";
    fileio::writeAtomic(pw, "geh'eim\\1\n");
    fileio::writeAtomic(pw2, "neu es\n");
    fileio::writeAtomic(empty, "\n");
    // Options given later win, so each case changes the one it names.
    auto setup = [&](std::vector<std::string> extra) {
        std::vector<std::string> args = {
            "share-server", "--data-dir",   data.string(),     "--superuser", "orv",
            "--network",    "127.0.0.1/32", "--password-file", pw.string()};
        args.insert(args.end(), extra.begin(), extra.end());
        return runToolAt(home.path(), args);
    };
    const std::string conf0 = fileio::readAll(conf), hba0 = fileio::readAll(hba);
    const struct {
        std::vector<std::string> extra;
        std::string err;
    } refusals[] = {
        {{"--network", "127.0.0.1/40"}, "--network 127.0.0.1/40"},
        {{"--network", "127.0.0.1"}, "--network 127.0.0.1"},
        {{"--user", "Contest"}, "--user Contest"},
        {{"--database", "all"}, "--database all"},
        {{"--password-file", (home / "none.txt").string()}, "none.txt"},
        {{"--password-file", empty.string()}, "leer"},
        {{"--data-dir", home.path().string()}, "Kein PostgreSQL-Server"},
    };
    for (const auto& r : refusals) {
        const auto run = setup(r.extra);
        EXPECT_EQ(run.status, 2) << r.err;
        EXPECT_NE(run.err.find(r.err), std::string::npos) << run.err;
    }
    if (geteuid() == 0) {
        // Neither root nor the server's owner: refused before anything runs.
        TempDir other;
        std::filesystem::permissions(other.path(), std::filesystem::perms::all,
                                     std::filesystem::perm_options::add);
        writeFile(other / "pw.txt", "x\n");
        const std::string exe = (binaryDir() / "src" / "cli" / "orvanta-tool").string();
        const int status = std::system(
            ("runuser -u nobody -- " + exe + " --home " + other.path().string() +
             " share-server --network 127.0.0.1/32 --superuser orv --data-dir " + data.string() +
             " --password-file " + (other / "pw.txt").string() + " 2>" + (other / "err").string())
                .c_str());
        EXPECT_EQ(WEXITSTATUS(status), 2);
        EXPECT_NE(readFile(other / "err").find("nur root"), std::string::npos);
    }
    EXPECT_EQ(fileio::readAll(conf), conf0);
    EXPECT_EQ(fileio::readAll(hba), hba0);
    EXPECT_EQ(pg.psql("SELECT count(*) FROM pg_roles WHERE rolname = 'contest'"), "0\n");

    const std::string started = pg.psql("SELECT pg_postmaster_start_time()");
    const auto first = setup({});
    ASSERT_EQ(first.status, 0) << first.err;
    const std::string address =
        "postgresql://contest@127.0.0.1:" + std::to_string(pg.port()) + "/contest";
    EXPECT_EQ(first.out, address + "\n");
    EXPECT_NE(first.err.find("neu gestartet"), std::string::npos) << first.err;
    EXPECT_NE(pg.psql("SELECT pg_postmaster_start_time()"), started);
    EXPECT_EQ(pg.psql("SELECT pg_get_userbyid(datdba) FROM pg_database WHERE datname = 'contest'"),
              "contest\n");
    const std::string conf1 = fileio::readAll(conf), hba1 = fileio::readAll(hba);
    EXPECT_EQ(count(conf1, "\nlisten_addresses = '*'"), 1u);
    EXPECT_EQ(count(hba1, "127.0.0.1/32            scram-sha-256"), 1u) << hba1;

    // A position shares its log over TCP with the password; the test
    // cluster trusts 127.0.0.1, so a wrong password shows the line is read.
    auto share = [&](const TempDir& at, const std::string& name, const std::filesystem::path& p) {
        EXPECT_EQ(newLogAt(at.path(), "Field"), 0);
        return runToolAt(at.path(), {"share", "Field", "--server", address, "--position", name,
                                     "--password-file", p.string()});
    };
    ASSERT_EQ(share(position, "A", pw).status, 0);
    EXPECT_EQ(runToolAt(position.path(), {"sync", "Field"}).status, 0);
    ASSERT_EQ(share(stranger, "B", pw2).status, 0);
    EXPECT_EQ(runToolAt(stranger.path(), {"sync", "Field"}).status, 1);

    // Again with another password: only the password changes.
    const std::string startedOnce = pg.psql("SELECT pg_postmaster_start_time()");
    const auto second = setup({"--password-file", pw2.string()});
    ASSERT_EQ(second.status, 0) << second.err;
    EXPECT_EQ(second.out, address + "\n");
    EXPECT_EQ(second.err.find("Geändert"), std::string::npos) << second.err;
    EXPECT_EQ(pg.psql("SELECT pg_postmaster_start_time()"), startedOnce);
    EXPECT_EQ(fileio::readAll(conf), conf1);
    EXPECT_EQ(fileio::readAll(hba), hba1);
    EXPECT_EQ(runToolAt(position.path(), {"sync", "Field"}).status, 1);
    EXPECT_EQ(runToolAt(stranger.path(), {"sync", "Field"}).status, 0);
}

} // namespace
} // namespace orv::test
