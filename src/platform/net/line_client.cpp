#include "platform/net/line_client.h"

#include <cerrno>
#include <cstring>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "core/util/unique_fd.h"

namespace orv {
namespace {

bool waitFor(int fd, short events, int timeoutMs) {
    pollfd p{fd, events, 0};
    int r;
    do {
        r = ::poll(&p, 1, timeoutMs);
    } while (r < 0 && errno == EINTR);
    return r > 0;
}

} // namespace

LineExchange exchangeLine(const std::string& host, int port, const std::string& line,
                          bool expectReply, int timeoutMs) {
    LineExchange out;
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (const int rc = ::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found);
        rc != 0) {
        out.error = host + ": " + ::gai_strerror(rc);
        return out;
    }
    int err = 0;
    int fdNum = -1;
    for (addrinfo* a = found; a && fdNum < 0; a = a->ai_next) {
        int s = ::socket(a->ai_family, a->ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        if (s < 0) {
            err = errno;
            continue;
        }
        if (::connect(s, a->ai_addr, a->ai_addrlen) == 0 ||
            (errno == EINPROGRESS && waitFor(s, POLLOUT, timeoutMs))) {
            socklen_t len = sizeof err;
            if (::getsockopt(s, SOL_SOCKET, SO_ERROR, &err, &len) == 0 && err == 0) {
                fdNum = s;
                break;
            }
        } else {
            err = errno ? errno : ETIMEDOUT;
        }
        ::close(s);
    }
    ::freeaddrinfo(found);
    if (fdNum < 0) {
        out.error = host + ":" + std::to_string(port) + ": " + std::strerror(err ? err : ETIMEDOUT);
        return out;
    }
    UniqueFd fd(fdNum);
    const std::string data = line + "\r\n";
    std::size_t sent = 0;
    while (sent < data.size()) {
        if (!waitFor(fd.get(), POLLOUT, timeoutMs)) {
            out.error = std::strerror(ETIMEDOUT);
            return out;
        }
        const ssize_t n = ::send(fd.get(), data.data() + sent, data.size() - sent, MSG_NOSIGNAL);
        if (n < 0 && errno != EAGAIN && errno != EINTR) {
            out.error = std::strerror(errno);
            return out;
        }
        if (n > 0)
            sent += static_cast<std::size_t>(n);
    }
    if (!expectReply) {
        out.ok = true;
        return out;
    }
    std::string got;
    while (got.find('\n') == std::string::npos) {
        if (!waitFor(fd.get(), POLLIN, timeoutMs)) {
            out.error = std::strerror(ETIMEDOUT);
            return out;
        }
        char buf[4096];
        const ssize_t n = ::recv(fd.get(), buf, sizeof buf, 0);
        if (n == 0) {
            out.error = std::strerror(ECONNRESET);
            return out;
        }
        if (n < 0) {
            if (errno == EAGAIN || errno == EINTR)
                continue;
            out.error = std::strerror(errno);
            return out;
        }
        got.append(buf, static_cast<std::size_t>(n));
    }
    got.resize(got.find('\n'));
    if (!got.empty() && got.back() == '\r')
        got.pop_back();
    out.ok = true;
    out.reply = got;
    return out;
}

} // namespace orv
