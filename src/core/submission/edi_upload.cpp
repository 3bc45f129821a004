#include "core/submission/edi_upload.h"

#include "core/i18n/texts.h"
#include "core/submission/edi.h"
#include "core/util/file_io.h"
#include "core/util/text.h"

namespace orv {
namespace {

constexpr int kUnreadable = 1101;
constexpr int kNoServer = 1102;

std::string replaced(std::string s, std::string_view what, std::string_view with) {
    for (std::size_t at = s.find(what); at != std::string::npos;
         at = s.find(what, at + with.size()))
        s.replace(at, what.size(), with);
    return s;
}

} // namespace

UploadServer readUploadServer(const Settings& settings) {
    UploadServer s;
    s.host = settings.get(keys::UploadHost);
    s.port = static_cast<int>(settings.get(keys::UploadPort));
    s.user = settings.get(keys::UploadUser);
    s.folder = settings.get(keys::UploadFolder);
    return s;
}

UploadResult uploadEdi(FileTransfer& transfer, const UploadServer& server,
                       const std::filesystem::path& file, const std::atomic<bool>& cancel) {
    UploadResult r;
    try {
        const Result<std::string> name = EDIDateiname(file);
        if (!name) {
            r.outcome = UploadOutcome::NotEdi;
            return r;
        }
        r.remoteName = *name;
    } catch (const fileio::FileError& e) {
        r.outcome = UploadOutcome::Unreadable;
        r.detail = e.what();
        return r;
    }
    if (text::trim(server.host).empty()) {
        r.outcome = UploadOutcome::NoServer;
        return r;
    }
    if (!transfer.reachable(server.host, server.port)) {
        r.outcome = UploadOutcome::Unreachable;
        return r;
    }
    if (cancel) {
        r.outcome = UploadOutcome::Cancelled;
        return r;
    }
    const TransferResult t = transfer.put(server, file, r.remoteName, cancel);
    r.detail = t.detail;
    switch (t.outcome) {
    case TransferOutcome::Sent:
        r.outcome = UploadOutcome::Sent;
        break;
    case TransferOutcome::NoConnection:
        r.outcome = UploadOutcome::NoConnection;
        break;
    case TransferOutcome::LoginRefused:
        r.outcome = UploadOutcome::LoginRefused;
        break;
    case TransferOutcome::Failed:
        r.outcome = UploadOutcome::Failed;
        break;
    case TransferOutcome::Cancelled:
        r.outcome = UploadOutcome::Cancelled;
        break;
    }
    return r;
}

UploadMessage uploadMessage(const Texts& texts, const UploadServer& server,
                            const std::filesystem::path& file, const UploadResult& r) {
    switch (r.outcome) {
    case UploadOutcome::Sent:
        return {texts(322), Icon::Information};
    case UploadOutcome::NotEdi:
        return {texts(327), Icon::Critical};
    case UploadOutcome::Unreadable:
        return {texts(kUnreadable) + "\n" + file.string(), Icon::Critical};
    case UploadOutcome::NoServer:
        return {texts(kNoServer), Icon::Critical};
    case UploadOutcome::Unreachable:
        return {texts(328) + "\n" + server.host, Icon::Critical};
    case UploadOutcome::Failed:
        return {texts(323), Icon::Critical};
    case UploadOutcome::NoConnection:
    case UploadOutcome::LoginRefused:
    case UploadOutcome::Cancelled:
        break;
    }
    return {};
}

std::string uploadCaption(const Texts& texts, const std::string& host) {
    return replaced(texts(326), "%HOST%", host);
}

} // namespace orv
