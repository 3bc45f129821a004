// The edits of the server's configuration and the readings of its listings.

#include <gtest/gtest.h>

#include "platform/pg/pg_setup.h"

namespace orv {
namespace {

TEST(PgSetup, NetworksAndNames) {
    const struct {
        const char* in;
        std::optional<std::string> out;
    } networks[] = {
        {"192.168.1.0/24", "192.168.1.0/24"}, {"192.168.1.77/24", "192.168.1.0/24"},
        {"10.200.3.4/12", "10.192.0.0/12"},   {"fd00::1/64", "fd00::/64"},
        {"0.0.0.0/0", "0.0.0.0/0"},           {"192.168.1.0", std::nullopt},
        {"192.168.1.0/33", std::nullopt},     {"192.168.1.0/", std::nullopt},
        {"192.168.1.0/24 ", std::nullopt},    {"lan/24", std::nullopt},
        {"192.168.1.0/-1", std::nullopt},     {"fd00::/129", std::nullopt},
    };
    for (const auto& n : networks)
        EXPECT_EQ(parseNetwork(n.in), n.out) << n.in;

    const struct {
        std::string name;
        bool valid;
    } names[] = {
        {"contest", true}, {"_x1", true},      {std::string(63, 'a'), true},
        {"", false},       {"Contest", false}, {std::string(64, 'a'), false},
        {"1abc", false},   {"all", false},     {"replication", false},
        {"pg_x", false},   {"a-b", false},     {"a b", false},
    };
    for (const auto& n : names)
        EXPECT_EQ(validServerName(n.name), n.valid) << n.name;
}

TEST(PgSetup, ListenOnEveryAddressChangesOnlyTheLineTheServerReads) {
    const struct {
        const char* in;
        const char* out;
    } cases[] = {
        // Debian's default: the commented line becomes active, its comment kept.
        {"#listen_addresses = 'localhost'\t\t# what IP address(es)\n#port = 5432\n",
         "listen_addresses = '*'\t\t# what IP address(es)\n#port = 5432\n"},
        {"#listen_addresses = 'localhost'\n  listen_addresses = 'localhost'  # mine\n",
         "#listen_addresses = 'localhost'\n  listen_addresses = '*'  # mine\n"},
        // The last one counts.
        {"listen_addresses = '*'\nLISTEN_ADDRESSES = localhost\n",
         "listen_addresses = '*'\nlisten_addresses = '*'\n"},
        {"listen_addresses='*'\n", nullptr},
        {"listen_addresses = 'localhost, *'\n", nullptr},
        {"port = 5432", "port = 5432\nlisten_addresses = '*'\n"},
        {"#listen_addresses_x = 1\n", "#listen_addresses_x = 1\nlisten_addresses = '*'\n"},
        // A quote left open ends with its line, which keeps its end.
        {"#listen_addresses = 'localhost\nport = 5432\n", "listen_addresses = '*'\nport = 5432\n"},
    };
    for (const auto& c : cases) {
        const ConfEdit e = listenEverywhere(c.in);
        EXPECT_EQ(e.changed, c.out != nullptr) << c.in;
        EXPECT_EQ(e.text, c.out ? c.out : c.in) << c.in;
        EXPECT_FALSE(listenEverywhere(e.text).changed) << c.in;
    }
}

TEST(PgSetup, RestartPendingWhileTheServerListensNarrowerThanItsFile) {
    const struct {
        const char* row;
        bool pending;
    } cases[] = {
        {"localhost|default", true},         {"localhost|configuration file\n", true},
        {"*|configuration file\n", false},   {"localhost,*|configuration file", false},
        {"127.0.0.1|command line\n", false}, {"", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(listenRestartPending(c.row), c.pending) << c.row;
}

TEST(PgSetup, NetworkAllowedOnceBeforeTheGeneralLines) {
    const std::string ours =
        "host    contest         contest         192.168.1.0/24          scram-sha-256\n";
    const struct {
        std::string in;
        std::optional<std::string> out;
    } cases[] = {
        {"local all postgres peer\nhost all all 127.0.0.1/32 scram-sha-256\n",
         "local all postgres peer\n" + ours + "host all all 127.0.0.1/32 scram-sha-256\n"},
        {"local all all peer\nhost\tcontest\tcontest\t192.168.1.0/24\tscram-sha-256 # ours\n",
         std::nullopt},
        {"host contest contest 192.168.1.10/24 scram-sha-256\n", std::nullopt},
        // The same line with another method gets ours in its place.
        {"host contest contest 192.168.1.0/24 md5\nhost all all 0.0.0.0/0 reject\n",
         ours + "host all all 0.0.0.0/0 reject\n"},
        {"#host contest contest 192.168.1.0/24 scram-sha-256\nhostssl all all ::1/128 trust\n",
         "#host contest contest 192.168.1.0/24 scram-sha-256\n" + ours +
             "hostssl all all ::1/128 trust\n"},
        {"host contest contest 10.0.0.0/8 scram-sha-256\n",
         ours + "host contest contest 10.0.0.0/8 scram-sha-256\n"},
        {"local all all peer", "local all all peer\n" + ours},
    };
    for (const auto& c : cases) {
        const ConfEdit e = allowNetwork(c.in, "contest", "contest", "192.168.1.0/24");
        EXPECT_EQ(e.changed, c.out.has_value()) << c.in;
        EXPECT_EQ(e.text, c.out.value_or(c.in)) << c.in;
        EXPECT_FALSE(allowNetwork(e.text, "contest", "contest", "192.168.1.0/24").changed) << c.in;
    }
}

TEST(PgSetup, ClusterChosenFromTheListing) {
    const auto clusters =
        parseClusters("15  main  5432 down   postgres /var/lib/postgresql/15/main /var/log/a.log\n"
                      "16  other 5433 online,recovery pg16 /srv/pg16 /var/log/b.log\n"
                      "garbage line\n");
    ASSERT_EQ(clusters.size(), 2u);
    EXPECT_EQ(clusters[1].port, 5433);
    EXPECT_EQ(clusters[1].owner, "pg16");
    EXPECT_EQ(clusters[1].dataDir, "/srv/pg16");
    const struct {
        std::vector<PgClusterEntry> list;
        const char* wanted;
        const char* chosen; // VERSION/NAME, or nullptr for none
    } cases[] = {
        {clusters, "", "16/other"},
        {clusters, "15/main", "15/main"},
        {clusters, "14/main", nullptr},
        {{clusters[0]}, "", "15/main"},
        {{}, "", nullptr},
    };
    for (const auto& c : cases) {
        const auto got = chooseCluster(c.list, c.wanted);
        EXPECT_EQ(got.has_value(), c.chosen != nullptr) << c.wanted;
        if (got && c.chosen) {
            EXPECT_EQ(got->version + "/" + got->name, c.chosen);
        }
    }
}

TEST(PgSetup, ListeningReadFromPostmasterPid) {
    const auto l = parsePostmasterPid("4242\n/var/lib/postgresql/15/main\n1700000000\n5433\n"
                                      "/var/run/postgresql\n*\n  5432001  0\nready   \n");
    ASSERT_TRUE(l);
    EXPECT_EQ(l->port, 5433);
    EXPECT_EQ(l->socketDir, "/var/run/postgresql");
    EXPECT_FALSE(parsePostmasterPid("4242\n/data\n1700000000\n"));
    EXPECT_FALSE(parsePostmasterPid("4242\n/data\n1700000000\nport\n/tmp\n"));
}

} // namespace
} // namespace orv
