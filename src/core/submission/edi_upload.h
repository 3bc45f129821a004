#pragma once

#include <atomic>
#include <filesystem>
#include <string>

#include "core/settings/settings.h"
#include "core/util/ports.h"

// Sending an EDI file to the contest server: the upload name from the file's
// header, the reachability test and the transfer into the account's start
// folder (or a folder below it). The transfer itself is a port that the
// platform implements with libcurl.
namespace orv {

class Texts;

// Section `EDIUpload` of the settings file: the server of the organisation
// that collects the entries. The password is never kept here.
namespace keys {
inline const StrSetting UploadHost{"EDIUpload", "Host"};
inline const IntSetting UploadPort{"EDIUpload", "Port", 21, 1, 65535};
inline const StrSetting UploadUser{"EDIUpload", "User", "anonymous"};
inline const StrSetting UploadFolder{"EDIUpload", "Folder"};
} // namespace keys

struct UploadServer {
    std::string host;
    int port = 21;
    std::string user = "anonymous";
    std::string password;
    std::string folder; // below the account's start folder; empty for the start folder
};
// Host, port, account and folder from the settings; the password stays empty.
UploadServer readUploadServer(const Settings& settings);

enum class TransferOutcome { Sent, NoConnection, LoginRefused, Failed, Cancelled };
struct TransferResult {
    TransferOutcome outcome = TransferOutcome::Failed;
    std::string detail; // the transfer's own words, for the tool's messages
};

class FileTransfer {
public:
    virtual ~FileTransfer() = default;
    // Whether the server accepts a connection on its port within a short time.
    virtual bool reachable(const std::string& host, int port) = 0;
    // Sends the file in binary under `remoteName`; `cancel` stops it early.
    virtual TransferResult put(const UploadServer& server, const std::filesystem::path& local,
                               const std::string& remoteName, const std::atomic<bool>& cancel) = 0;
};

enum class UploadOutcome {
    Sent,
    NotEdi,       // no `PCall=` or `PBand=`: nothing was connected
    Unreadable,   // the file cannot be read (gone since it was chosen)
    NoServer,     // no host in the settings
    Unreachable,  // the reachability test failed: nothing was sent
    NoConnection, // reachable, but the session did not come up
    LoginRefused,
    Failed,
    Cancelled,
};

struct UploadResult {
    UploadOutcome outcome = UploadOutcome::Failed;
    std::string remoteName;
    std::string detail;
    bool ok() const { return outcome == UploadOutcome::Sent; }
};

// Names the file, tests the server, then sends. Safe to run beside the
// window thread: it touches nothing but the file and the transfer.
UploadResult uploadEdi(FileTransfer& transfer, const UploadServer& server,
                       const std::filesystem::path& file, const std::atomic<bool>& cancel);

// What the window says about an upload: the text and its icon. A failed
// connection after a positive reachability test and a cancelled transfer
// say nothing (empty text).
struct UploadMessage {
    std::string text;
    Icon icon = Icon::None;
};
UploadMessage uploadMessage(const Texts& texts, const UploadServer& server,
                            const std::filesystem::path& file, const UploadResult& r);

// IText(326) with the server's host name in place of "%HOST%".
std::string uploadCaption(const Texts& texts, const std::string& host);

} // namespace orv
