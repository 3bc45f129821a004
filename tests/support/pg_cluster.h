#pragma once

// A PostgreSQL server of the test's own: initdb and pg_ctl in a temporary
// folder, on a free port of 127.0.0.1 only. initdb refuses to run as root, so
// under root the server runs as the `postgres` user through runuser.

#include <string>

#include "support/temp_dir.h"

namespace orv::test {

class PgCluster {
public:
    PgCluster();
    ~PgCluster();
    PgCluster(const PgCluster&) = delete;
    PgCluster& operator=(const PgCluster&) = delete;

    int port() const { return port_; }
    // The data folder, with postgresql.conf and pg_hba.conf inside.
    const std::string& dataDir() const { return data_; }
    // postgresql://orv@127.0.0.1:PORT/postgres, or through another port.
    std::string address(int port = 0) const;
    void start();
    // pg_ctl stop -m immediate: as a server whose power went.
    void stopImmediately();
    // Runs SQL through psql as the server's user; returns its output.
    std::string psql(const std::string& sql) const;

private:
    std::string run(const std::string& command) const;

    TempDir dir_;
    std::string data_;
    int port_ = 0;
    bool running_ = false;
};

// A free TCP port of 127.0.0.1 at the moment of asking.
int freePort();

} // namespace orv::test
