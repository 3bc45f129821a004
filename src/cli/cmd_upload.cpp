#include <atomic>
#include <filesystem>
#include <string>

#include "cli/cli.h"
#include "core/settings/settings.h"
#include "core/submission/edi_upload.h"
#include "core/util/file_io.h"
#include "core/util/text.h"
#include "platform/net/ftp_transfer.h"
#include "platform/net/password_store.h"

// upload FILE.EDI [--host H] [--port P] [--user U] [--folder F]
// [--password-file FILE]: sends an EDI file to the contest server as the
// window's upload does, the options standing in for the settings.
namespace orv::cli {
namespace {

constexpr int kNoConnection = 1103;
constexpr int kLoginRefused = 1104;
constexpr int kCancelled = 1110;
constexpr int kUploadedAs = 1111;

// The first line of the file, without its line end.
std::string passwordFrom(const std::filesystem::path& file) {
    const std::string content = fileio::readAll(file);
    return content.substr(0, content.find_first_of("\r\n"));
}

int run(Context& ctx, const Args& args) {
    if (args.positional.size() != 1) {
        ctx.err << "usage: orvanta-tool upload FILE.EDI [--host H] [--port P] [--user U] "
                   "[--folder F] [--password-file FILE]\n";
        return kRefused;
    }
    const std::filesystem::path file = args.positional[0];
    // The settings file is only read: a missing one is not created.
    UploadServer server;
    if (std::filesystem::exists(ctx.paths.iniPath()))
        server = readUploadServer(Settings{IniFile{ctx.paths.iniPath()}});
    if (const auto p = args.get("port")) {
        const long long v = text::leadingInt(*p);
        if (!text::isInteger(*p) || v < 1 || v > 65535)
            return ctx.fail(225, kRefused, "--port " + *p);
        server.port = static_cast<int>(v);
    }
    server.host = text::trim(args.getOr("host", server.host));
    server.user = text::trim(args.getOr("user", server.user));
    server.folder = text::trim(args.getOr("folder", server.folder));
    if (const auto pf = args.get("password-file")) {
        try {
            server.password = passwordFrom(*pf);
        } catch (const fileio::FileError& e) {
            return ctx.fail(1101, kRefused, e.what());
        }
    } else if (const auto stored = PasswordStore(PasswordStore::fileIn(ctx.paths.appPath))
                                       .load(server.host, server.user)) {
        server.password = *stored;
    }

    CurlFtpTransfer transfer;
    const std::atomic<bool> cancel{false};
    const UploadResult r = uploadEdi(transfer, server, file, cancel);
    switch (r.outcome) {
    case UploadOutcome::Sent:
        ctx.out << r.remoteName << "\n";
        ctx.err << ctx.texts(322) << "\n" << ctx.texts(kUploadedAs) << " " << r.remoteName << "\n";
        return kOk;
    case UploadOutcome::NotEdi:
        return ctx.fail(327, kRefused, file.string());
    case UploadOutcome::NoServer:
        return ctx.fail(1102, kRefused);
    case UploadOutcome::Unreadable:
        return ctx.fail(1101, kFailure, file.string());
    case UploadOutcome::Unreachable:
        return ctx.fail(328, kFailure, server.host + ":" + std::to_string(server.port));
    case UploadOutcome::NoConnection:
        return ctx.fail(kNoConnection, kFailure, r.detail);
    case UploadOutcome::LoginRefused:
        return ctx.fail(kLoginRefused, kFailure, server.user + ": " + r.detail);
    case UploadOutcome::Cancelled:
        return ctx.fail(kCancelled, kFailure);
    case UploadOutcome::Failed:
        break;
    }
    return ctx.fail(323, kFailure, r.detail);
}

const bool registered = registerCommand(
    {"upload",
     "FILE.EDI [--host H] [--port P] [--user U] [--folder F] [--password-file FILE]",
     "send an EDI file to the contest server by FTP, as the export dialog does; the options "
     "stand in for section [EDIUpload] of the settings",
     {},
     &run});

} // namespace
} // namespace orv::cli
