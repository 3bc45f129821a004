#include "platform/net/ftp_transfer.h"

#include <curl/curl.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace orv {
namespace {

struct CurlDeleter {
    void operator()(CURL* c) const { curl_easy_cleanup(c); }
};
struct FileCloser {
    void operator()(std::FILE* f) const { std::fclose(f); }
};
struct CurlString {
    void operator()(char* s) const { curl_free(s); }
};

// Each part of the path percent-encoded, so that ";" or "#" of an upload
// name is sent as a name and not read as a part of the URL.
std::string escapedPath(CURL* curl, const std::string& folder, const std::string& name) {
    std::string path;
    std::string part;
    auto add = [&](const std::string& p) {
        if (p.empty())
            return;
        std::unique_ptr<char, CurlString> e(
            curl_easy_escape(curl, p.c_str(), static_cast<int>(p.size())));
        path += "/";
        path += e ? e.get() : p;
    };
    for (const char c : folder) {
        if (c == '/' || c == '\\') {
            add(part);
            part.clear();
        } else {
            part += c;
        }
    }
    add(part);
    add(name);
    return path;
}

struct MultiDeleter {
    void operator()(CURLM* m) const { curl_multi_cleanup(m); }
};

// Runs the transfer through the multi interface, looking at the cancel
// between short waits: curl's own progress call does not come while a
// server keeps silent during the log-in.
CURLcode performCancellable(CURL* c, const std::atomic<bool>& cancel) {
    std::unique_ptr<CURLM, MultiDeleter> multi(curl_multi_init());
    if (!multi)
        return CURLE_OUT_OF_MEMORY;
    curl_multi_add_handle(multi.get(), c);
    CURLcode result = CURLE_OK;
    int running = 1;
    while (running) {
        if (curl_multi_perform(multi.get(), &running) != CURLM_OK) {
            result = CURLE_FAILED_INIT;
            break;
        }
        if (!running)
            break;
        if (cancel) {
            result = CURLE_ABORTED_BY_CALLBACK;
            break;
        }
        curl_multi_poll(multi.get(), nullptr, 0, 100, nullptr);
    }
    int left = 0;
    while (CURLMsg* m = curl_multi_info_read(multi.get(), &left))
        if (m->msg == CURLMSG_DONE && result == CURLE_OK)
            result = m->data.result;
    curl_multi_remove_handle(multi.get(), c);
    return result;
}

TransferOutcome outcomeOf(CURLcode rc) {
    switch (rc) {
    case CURLE_OK:
        return TransferOutcome::Sent;
    case CURLE_ABORTED_BY_CALLBACK:
        return TransferOutcome::Cancelled;
    case CURLE_LOGIN_DENIED:
        return TransferOutcome::LoginRefused;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_CONNECT:
    case CURLE_WEIRD_SERVER_REPLY:
        return TransferOutcome::NoConnection;
    default:
        return TransferOutcome::Failed;
    }
}

} // namespace

bool tcpReachable(const std::string& host, int port, int timeoutMs) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found) != 0)
        return false;
    std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> list(found, &::freeaddrinfo);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    for (addrinfo* a = found; a; a = a->ai_next) {
        const int s = ::socket(a->ai_family, a->ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        if (s < 0)
            continue;
        bool up = ::connect(s, a->ai_addr, a->ai_addrlen) == 0;
        if (!up && errno == EINPROGRESS) {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                                  deadline - std::chrono::steady_clock::now())
                                  .count();
            pollfd p{s, POLLOUT, 0};
            int r;
            do {
                r = ::poll(&p, 1, static_cast<int>(std::max<long long>(left, 0)));
            } while (r < 0 && errno == EINTR);
            int err = 0;
            socklen_t len = sizeof err;
            up = r > 0 && ::getsockopt(s, SOL_SOCKET, SO_ERROR, &err, &len) == 0 && err == 0;
        }
        ::close(s);
        if (up)
            return true;
    }
    return false;
}

bool CurlFtpTransfer::reachable(const std::string& host, int port) {
    return tcpReachable(host, port, reachTimeoutMs_);
}

TransferResult CurlFtpTransfer::put(const UploadServer& server, const std::filesystem::path& local,
                                    const std::string& remoteName,
                                    const std::atomic<bool>& cancel) {
    TransferResult out;
    std::unique_ptr<std::FILE, FileCloser> file(std::fopen(local.c_str(), "rb"));
    if (!file) {
        out.detail = local.string() + ": " + std::strerror(errno);
        return out;
    }
    std::error_code ec;
    const auto size = std::filesystem::file_size(local, ec);
    std::unique_ptr<CURL, CurlDeleter> curl(curl_easy_init());
    if (!curl || ec) {
        out.detail = ec ? ec.message() : "curl_easy_init failed";
        return out;
    }
    CURL* c = curl.get();
    // A host of IPv6 digits needs its brackets in the URL.
    const std::string host =
        server.host.find(':') != std::string::npos ? "[" + server.host + "]" : server.host;
    const std::string url = "ftp://" + host + ":" + std::to_string(server.port) +
                            escapedPath(c, server.folder, remoteName);
    char error[CURL_ERROR_SIZE] = {0};
    curl_easy_setopt(c, CURLOPT_URL, url.c_str());
    curl_easy_setopt(c, CURLOPT_USERNAME, server.user.c_str());
    curl_easy_setopt(c, CURLOPT_PASSWORD, server.password.c_str());
    curl_easy_setopt(c, CURLOPT_UPLOAD, 1L);
    curl_easy_setopt(c, CURLOPT_TRANSFERTEXT, 0L);
    curl_easy_setopt(c, CURLOPT_READDATA, file.get());
    curl_easy_setopt(c, CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(size));
    curl_easy_setopt(c, CURLOPT_USE_SSL, static_cast<long>(CURLUSESSL_TRY));
    curl_easy_setopt(c, CURLOPT_CONNECTTIMEOUT, connectTimeoutS_);
    // A server that stops taking data ends the transfer instead of holding it.
    curl_easy_setopt(c, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_easy_setopt(c, CURLOPT_LOW_SPEED_TIME, 60L);
    curl_easy_setopt(c, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(c, CURLOPT_ERRORBUFFER, error);
    const CURLcode rc = performCancellable(c, cancel);
    out.outcome = outcomeOf(rc);
    if (rc != CURLE_OK)
        out.detail = error[0] ? error : curl_easy_strerror(rc);
    return out;
}

} // namespace orv
