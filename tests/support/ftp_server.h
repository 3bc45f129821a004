#pragma once

#include <filesystem>
#include <string>
#include <sys/types.h>

namespace orv::test {

// A real FTP server (pyftpdlib under the Debian interpreter) on 127.0.0.1
// for the test's lifetime, with one account whose start folder is `home`.
class FtpServer {
public:
    FtpServer(const std::filesystem::path& home, const std::string& user,
              const std::string& password);
    ~FtpServer();
    FtpServer(const FtpServer&) = delete;
    FtpServer& operator=(const FtpServer&) = delete;

    // 0 when the server did not come up (pyftpdlib missing).
    int port() const { return port_; }

private:
    pid_t pid_ = -1;
    int port_ = 0;
};

// python3 -m http.server on 127.0.0.1 serving one folder, for the test's
// lifetime.
class HttpServer {
public:
    explicit HttpServer(const std::filesystem::path& folder);
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    bool running() const;
    std::string url(const std::string& file) const;

private:
    int port_;
    pid_t pid_ = -1;
};

// A port on 127.0.0.1 where nothing listens (just bound and closed again).
int closedPort();

// Whether something accepts connections on 127.0.0.1:port.
bool acceptsOn(int port);

} // namespace orv::test
