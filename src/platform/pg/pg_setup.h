#pragma once

// Setting up a PostgreSQL server for a shared contest on the machine it runs
// on: the edits of its configuration files, the SQL that makes the role and
// the database, the choice of the cluster, and the commands that drive it.
// The edits are plain text in, text out, so that they can be checked alone.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orv {

// A network as pg_hba.conf writes it, "192.168.1.0/24" or "fd00::/64", with
// the host bits cleared; nullopt for anything else.
std::optional<std::string> parseNetwork(std::string_view text);

// A role or database name we write unquoted into pg_hba.conf and the
// address: 1 to 63 of a-z, 0-9 and '_', not starting with a digit, and none
// of the words pg_hba.conf or the server reserve.
bool validServerName(std::string_view name);

struct ConfEdit {
    std::string text;
    bool changed = false;
};

// postgresql.conf listening on every address (pg_hba.conf decides who
// may connect). The last active listen_addresses line is the one the
// server reads, so that one is changed; else the commented default line
// becomes active in place, else a line is appended. Nothing else moves.
ConfEdit listenEverywhere(std::string_view conf);

// Whether the running server still waits for a restart to listen on every
// address, from psql's row "SETTING|SOURCE" of listen_addresses: so a run
// after one whose restart failed restarts too. A value given on the
// server's command line is its owner's choice and stays.
bool listenRestartPending(std::string_view row);

// pg_hba.conf letting `user` reach `database` from `network` with
// scram-sha-256. The line goes before the first host line, as the server
// takes the first line that matches; one already there stays alone, and one
// for the same database, user and network with another method gets ours.
ConfEdit allowNetwork(std::string_view hba, const std::string& database, const std::string& user,
                      const std::string& network);

// The SQL for psql (on its standard input, so that the password is never on
// a command line): the role with LOGIN and the password, the database owned
// by it. An existing role gets the new password, an existing database stays.
std::string roleAndDatabaseSql(const std::string& database, const std::string& user,
                               const std::string& password);

// A cluster as Debian's pg_lsclusters lists it.
struct PgClusterEntry {
    std::string version;
    std::string name;
    int port = 0;
    bool online = false;
    std::string owner;
    std::filesystem::path dataDir;
};
// The lines of `pg_lsclusters -h`.
std::vector<PgClusterEntry> parseClusters(std::string_view listing);
// `wanted` "VERSION/NAME", or empty: the first one online, else the first.
std::optional<PgClusterEntry> chooseCluster(const std::vector<PgClusterEntry>& clusters,
                                            std::string_view wanted);

// Where a running server listens, from postmaster.pid of its data folder.
struct PgListening {
    int port = 0;
    std::string socketDir; // empty when it has no Unix socket
};
std::optional<PgListening> parsePostmasterPid(std::string_view text);

// This machine's address on `network` (as parseNetwork gives it), bracketed
// when IPv6; nullopt when no interface has one.
std::optional<std::string> addressOn(const std::string& network);

// What the positions give to share and join.
std::string shareServerAddress(const std::string& user, const std::string& host, int port,
                               const std::string& database);

// How one cluster is driven: argument lists, run as the server's owner
// unless said otherwise.
struct PgCommands {
    std::vector<std::string> start;
    std::vector<std::string> restart;
    bool controlAsRoot = false; // Debian's pg_ctlcluster changes user itself
    std::filesystem::path binDir;
};
PgCommands debianCommands(const PgClusterEntry& cluster);
PgCommands dataDirCommands(const std::filesystem::path& dataDir, const std::string& version);

// psql through the Unix socket (or 127.0.0.1 without one) as `superuser`,
// reading SQL from standard input and stopping at the first error.
std::vector<std::string> psqlCommand(const std::filesystem::path& binDir,
                                     const PgListening& listening, const std::string& superuser);

} // namespace orv
