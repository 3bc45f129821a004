#include "support/pg_cluster.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

namespace orv::test {

namespace fs = std::filesystem;

int freePort() {
    const int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t len = sizeof a;
    if (bind(fd, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0 ||
        getsockname(fd, reinterpret_cast<sockaddr*>(&a), &len) != 0) {
        close(fd);
        throw std::runtime_error("no free port");
    }
    close(fd);
    return ntohs(a.sin_port);
}

namespace {
std::string binDir() {
    for (const char* d :
         {"/usr/lib/postgresql/17/bin", "/usr/lib/postgresql/16/bin", "/usr/lib/postgresql/15/bin"})
        if (fs::exists(fs::path(d) / "initdb"))
            return d;
    return "/usr/lib/postgresql/15/bin";
}
} // namespace

std::string PgCluster::run(const std::string& command) const {
    const std::string full =
        (geteuid() == 0 ? "runuser -u postgres -- " : "") + binDir() + "/" + command + " 2>&1";
    std::string out;
    FILE* p = popen(full.c_str(), "r");
    if (!p)
        throw std::runtime_error("cannot run " + command);
    std::array<char, 4096> buf{};
    while (std::size_t n = fread(buf.data(), 1, buf.size(), p))
        out.append(buf.data(), n);
    if (pclose(p) != 0)
        throw std::runtime_error(command + ": " + out);
    return out;
}

PgCluster::PgCluster() {
    // The server's user must reach the folder.
    fs::permissions(dir_.path(), fs::perms::all, fs::perm_options::add);
    data_ = (dir_ / "data").string();
    fs::create_directory(data_);
    if (geteuid() == 0 && std::system(("chown postgres " + data_).c_str()) != 0)
        throw std::runtime_error("chown");
    run("initdb --no-sync -A trust -U orv -E UTF8 --locale=C -D " + data_);
    port_ = freePort();
    start();
}

PgCluster::~PgCluster() {
    if (running_) {
        try {
            stopImmediately();
        } catch (...) {
        }
    }
}

std::string PgCluster::address(int port) const {
    return "postgresql://orv@127.0.0.1:" + std::to_string(port ? port : port_) + "/postgres";
}

void PgCluster::start() {
    run("pg_ctl -w -t 30 -D " + data_ + " -l " + data_ + "/log -o \"-p " + std::to_string(port_) +
        " -k " + data_ +
        " -c listen_addresses=127.0.0.1 -c fsync=off -c max_connections=60\" start");
    running_ = true;
}

void PgCluster::stopImmediately() {
    run("pg_ctl -w -D " + data_ + " -m immediate stop");
    running_ = false;
}

std::string PgCluster::psql(const std::string& sql) const {
    return run("psql -h 127.0.0.1 -p " + std::to_string(port_) + " -U orv -d postgres -At -c \"" +
               sql + "\"");
}

} // namespace orv::test
