#include "support/hamlib_daemon.h"

#include "support/ftp_server.h"

#include <arpa/inet.h>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace orv::test {
namespace {

int connectTo(int port) {
    const int s = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    a.sin_port = htons(static_cast<uint16_t>(port));
    if (::connect(s, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0) {
        ::close(s);
        return -1;
    }
    return s;
}

} // namespace

HamlibDaemon::HamlibDaemon(std::string program)
    : program_(std::move(program)), port_(closedPort()) {
    start();
}

HamlibDaemon::~HamlibDaemon() {
    kill();
}

void HamlibDaemon::start() {
    if (pid_ > 0)
        return;
    const std::string port = std::to_string(port_);
    pid_ = ::fork();
    if (pid_ < 0)
        throw std::runtime_error("fork failed");
    if (pid_ == 0) {
        std::freopen("/dev/null", "w", stdout);
        std::freopen("/dev/null", "w", stderr);
        ::execlp(program_.c_str(), program_.c_str(), "-m", "1", "-T", "127.0.0.1", "-t",
                 port.c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    for (int i = 0; i < 200; ++i) {
        if (const int s = connectTo(port_); s >= 0) {
            ::close(s);
            // One read by Hamlib's own client: its first open settles the
            // dummy device's VFO, which would otherwise swallow a setting
            // made before any client came.
            openOnce();
            return;
        }
        int status = 0;
        if (::waitpid(pid_, &status, WNOHANG) == pid_) {
            pid_ = -1;
            throw std::runtime_error(program_ + " did not start");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(25));
    }
    throw std::runtime_error(program_ + " does not listen on port " + port);
}

void HamlibDaemon::openOnce() const {
    const bool rot = program_ == "rotctld";
    const std::string address = hostPort();
    const pid_t client = ::fork();
    if (client == 0) {
        std::freopen("/dev/null", "w", stdout);
        std::freopen("/dev/null", "w", stderr);
        const char* tool = rot ? "rotctl" : "rigctl";
        ::execlp(tool, tool, "-m", "2", "-r", address.c_str(), rot ? "p" : "f",
                 static_cast<char*>(nullptr));
        ::_exit(127);
    }
    if (client > 0)
        ::waitpid(client, nullptr, 0);
}

void HamlibDaemon::kill() {
    if (pid_ <= 0)
        return;
    ::kill(pid_, SIGKILL);
    ::kill(pid_, SIGCONT);
    ::waitpid(pid_, nullptr, 0);
    pid_ = -1;
}

void HamlibDaemon::freeze(bool on) {
    if (pid_ > 0)
        ::kill(pid_, on ? SIGSTOP : SIGCONT);
}

std::string HamlibDaemon::command(const std::string& line) const {
    const int s = connectTo(port_);
    if (s < 0)
        throw std::runtime_error(program_ + " not reachable");
    const std::string out = line + "\nq\n";
    if (::send(s, out.data(), out.size(), MSG_NOSIGNAL) < 0) {
        ::close(s);
        throw std::runtime_error("send failed");
    }
    std::string answer;
    char buf[512];
    for (ssize_t n; (n = ::recv(s, buf, sizeof buf, 0)) > 0;)
        answer.append(buf, static_cast<std::size_t>(n));
    ::close(s);
    return answer;
}

double HamlibDaemon::number(const std::string& line) const {
    for (int attempt = 0; attempt < 20; ++attempt) {
        try {
            const std::string answer = command(line);
            std::size_t used = 0;
            const double value = std::stod(answer, &used);
            if (used > 0 && (used == answer.size() || answer[used] == '\n'))
                return value;
        } catch (const std::exception&) {
        }
        ::usleep(50'000);
    }
    return std::nan("");
}

} // namespace orv::test
