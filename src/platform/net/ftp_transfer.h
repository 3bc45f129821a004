#pragma once

#include "core/submission/edi_upload.h"

namespace orv {

// The upload by FTP with libcurl: binary, into the account's start folder
// (or the folder below it that the server settings name), with explicit TLS
// when the server offers it. The reachability test is a plain TCP connect.
class CurlFtpTransfer final : public FileTransfer {
public:
    explicit CurlFtpTransfer(int reachTimeoutMs = 3000, long connectTimeoutS = 15)
        : reachTimeoutMs_(reachTimeoutMs), connectTimeoutS_(connectTimeoutS) {}
    bool reachable(const std::string& host, int port) override;
    TransferResult put(const UploadServer& server, const std::filesystem::path& local,
                       const std::string& remoteName, const std::atomic<bool>& cancel) override;

private:
    int reachTimeoutMs_;
    long connectTimeoutS_;
};

// Whether host:port accepts a TCP connection within the time.
bool tcpReachable(const std::string& host, int port, int timeoutMs);

} // namespace orv
