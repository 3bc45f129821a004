#include "support/ftp_server.h"

#include <arpa/inet.h>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace orv::test {
namespace {

// The server binds port 0 and prints the port it got, so no other test can
// take the port between a choice and the bind.
constexpr const char* kScript = R"(
import logging, sys
from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import FTPHandler
from pyftpdlib.servers import FTPServer
logging.basicConfig(level=logging.CRITICAL)
home, user, password = sys.argv[1:4]
authorizer = DummyAuthorizer()
authorizer.add_user(user, password, home, perm="elradfmw")
FTPHandler.authorizer = authorizer
FTPHandler.auth_failed_timeout = 0
server = FTPServer(("127.0.0.1", 0), FTPHandler)
print(server.address[1], flush=True)
server.serve_forever()
)";

} // namespace

FtpServer::FtpServer(const std::filesystem::path& home, const std::string& user,
                     const std::string& password) {
    int out[2];
    if (::pipe(out) != 0)
        return;
    pid_ = ::fork();
    if (pid_ == 0) {
        ::dup2(out[1], STDOUT_FILENO);
        ::close(out[0]);
        ::close(out[1]);
        const std::string h = home.string();
        ::execl("/usr/bin/python3", "python3", "-c", kScript, h.c_str(), user.c_str(),
                password.c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    ::close(out[1]);
    std::string line;
    pollfd p{out[0], POLLIN, 0};
    char c = 0;
    while (::poll(&p, 1, 10000) > 0 && ::read(out[0], &c, 1) == 1 && c != '\n')
        line += c;
    ::close(out[0]);
    if (!line.empty() && line.find_first_not_of("0123456789") == std::string::npos)
        port_ = std::stoi(line);
}

FtpServer::~FtpServer() {
    if (pid_ > 0) {
        ::kill(pid_, SIGTERM);
        ::waitpid(pid_, nullptr, 0);
    }
}

int closedPort() {
    const int s = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ::bind(s, reinterpret_cast<sockaddr*>(&a), sizeof a);
    socklen_t len = sizeof a;
    ::getsockname(s, reinterpret_cast<sockaddr*>(&a), &len);
    ::close(s);
    return ntohs(a.sin_port);
}

bool acceptsOn(int port) {
    const int s = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(static_cast<std::uint16_t>(port));
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const bool ok = ::connect(s, reinterpret_cast<sockaddr*>(&a), sizeof a) == 0;
    ::close(s);
    return ok;
}

HttpServer::HttpServer(const std::filesystem::path& folder) : port_(closedPort()) {
    // Built before the fork: the child of a threaded program only execs.
    const std::string port = std::to_string(port_);
    const std::string dir = folder.string();
    pid_ = ::fork();
    if (pid_ == 0) {
        const int devNull = ::open("/dev/null", O_WRONLY);
        ::dup2(devNull, STDERR_FILENO);
        ::execlp("python3", "python3", "-m", "http.server", "--bind", "127.0.0.1", "--directory",
                 dir.c_str(), port.c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    for (int i = 0; i < 100 && !acceptsOn(port_); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
}

HttpServer::~HttpServer() {
    if (pid_ > 0) {
        ::kill(pid_, SIGTERM);
        ::waitpid(pid_, nullptr, 0);
    }
}

bool HttpServer::running() const {
    return acceptsOn(port_);
}

std::string HttpServer::url(const std::string& file) const {
    return "http://127.0.0.1:" + std::to_string(port_) + "/" + file;
}

} // namespace orv::test
