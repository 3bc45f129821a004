#include "support/ftp_server.h"

#include <arpa/inet.h>
#include <csignal>
#include <cstdio>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
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

} // namespace orv::test
