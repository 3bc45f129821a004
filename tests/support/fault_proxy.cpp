#include "support/fault_proxy.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <stdexcept>

namespace orv::test {

namespace {

void hardClose(int fd) {
    linger l{1, 0}; // an RST, as a link that broke
    setsockopt(fd, SOL_SOCKET, SO_LINGER, &l, sizeof l);
    close(fd);
}

int connectTo(int port) {
    const int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(static_cast<std::uint16_t>(port));
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(fd, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0) {
        close(fd);
        return -1;
    }
    return fd;
}

bool sendAll(int fd, const char* p, std::size_t n) {
    while (n > 0) {
        const auto w = send(fd, p, n, MSG_NOSIGNAL);
        if (w <= 0)
            return false;
        p += w;
        n -= static_cast<std::size_t>(w);
    }
    return true;
}

} // namespace

FaultProxy::FaultProxy(int targetPort) : targetPort_(targetPort) {
    listenFd_ = socket(AF_INET, SOCK_STREAM, 0);
    const int one = 1;
    setsockopt(listenFd_, SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t len = sizeof a;
    if (bind(listenFd_, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0 ||
        listen(listenFd_, 64) != 0 ||
        getsockname(listenFd_, reinterpret_cast<sockaddr*>(&a), &len) != 0)
        throw std::runtime_error("proxy cannot listen");
    port_ = ntohs(a.sin_port);
    thread_ = std::thread([this] { run(); });
}

FaultProxy::~FaultProxy() {
    stopping_ = true;
    thread_.join();
    closeAll(false);
    close(listenFd_);
}

void FaultProxy::pass() {
    std::lock_guard lock(mutex_);
    mode_ = Mode::Pass;
}

void FaultProxy::reset() {
    std::lock_guard lock(mutex_);
    mode_ = Mode::Reset;
}

void FaultProxy::hold() {
    std::lock_guard lock(mutex_);
    mode_ = Mode::Hold;
}

void FaultProxy::delay(int ms) {
    std::lock_guard lock(mutex_);
    mode_ = Mode::Delay;
    delayMs_ = ms;
}

void FaultProxy::cutAfter(std::int64_t bytes) {
    std::lock_guard lock(mutex_);
    mode_ = Mode::Cut;
    budget_ = bytes;
}

void FaultProxy::closeAll(bool hard) {
    for (auto& l : links_) {
        for (int fd : {l.client, l.server})
            if (fd >= 0)
                hard ? hardClose(fd) : static_cast<void>(close(fd));
    }
    links_.clear();
}

void FaultProxy::run() {
    std::vector<char> buf(64 * 1024);
    while (!stopping_) {
        Mode mode;
        {
            std::lock_guard lock(mutex_);
            mode = mode_;
        }
        if (mode == Mode::Reset)
            closeAll(true);
        std::vector<pollfd> fds{{listenFd_, POLLIN, 0}};
        if (mode != Mode::Hold)
            for (const auto& l : links_) {
                fds.push_back({l.client, POLLIN, 0});
                fds.push_back({l.server, POLLIN, 0});
            }
        if (poll(fds.data(), fds.size(), 20) <= 0)
            continue;
        if (fds[0].revents & POLLIN) {
            const int c = accept(listenFd_, nullptr, nullptr);
            if (c >= 0) {
                if (mode == Mode::Reset) {
                    hardClose(c);
                } else {
                    const int s = connectTo(targetPort_);
                    if (s < 0)
                        hardClose(c);
                    else
                        links_.push_back({c, s});
                }
            }
        }
        bool cut = false;
        for (std::size_t i = 1; i < fds.size(); ++i) {
            if (!(fds[i].revents & (POLLIN | POLLHUP | POLLERR)))
                continue;
            auto& link = links_[(i - 1) / 2];
            const int from = fds[i].fd;
            const int to = from == link.client ? link.server : link.client;
            if (link.client < 0)
                continue;
            const auto n = recv(from, buf.data(), buf.size(), 0);
            if (n <= 0) {
                close(link.client);
                close(link.server);
                link = {-1, -1};
                continue;
            }
            if (mode == Mode::Delay)
                std::this_thread::sleep_for(std::chrono::milliseconds(delayMs_));
            std::size_t forward = static_cast<std::size_t>(n);
            if (mode == Mode::Cut) {
                std::lock_guard lock(mutex_);
                if (budget_ < n) {
                    forward = static_cast<std::size_t>(std::max<std::int64_t>(budget_, 0));
                    cut = true;
                }
                budget_ -= n;
            }
            if (!sendAll(to, buf.data(), forward)) {
                close(link.client);
                close(link.server);
                link = {-1, -1};
            }
            if (cut)
                break;
        }
        std::erase_if(links_, [](const Link& l) { return l.client < 0; });
        if (cut) {
            closeAll(true);
            std::lock_guard lock(mutex_);
            mode_ = Mode::Pass;
        }
    }
}

} // namespace orv::test
