#include "ui/edi_upload.h"

#include <QEventLoop>
#include <QProgressDialog>
#include <atomic>
#include <thread>

#include "core/i18n/texts.h"
#include "core/submission/edi.h"
#include "core/submission/edi_upload.h"
#include "core/util/file_io.h"
#include "core/util/text.h"
#include "platform/net/ftp_transfer.h"
#include "platform/net/password_store.h"
#include "platform/qt_dialogs.h"
#include "ui/submission_menus.h"

namespace orv::ui {
namespace {

constexpr int kUploading = 1100;
constexpr int kUnreadable = 1101;
constexpr int kPasswordPrompt = 1105;
constexpr int kPasswordNotStored = 1109;
constexpr int kOpenTitle = 1112;

std::string replaced(std::string s, std::string_view what, const std::string& with) {
    if (const auto at = s.find(what); at != std::string::npos)
        s.replace(at, what.size(), with);
    return s;
}

// The stored password, or the one the user types (then stored); nothing
// when the user cancels. An anonymous account needs none.
std::optional<std::string> password(QWidget* parent, const Texts& texts, Dialogs& dialogs,
                                    const AppPaths& paths, const UploadServer& server) {
    if (server.user.empty() || text::iequals(server.user, "anonymous"))
        return std::string();
    PasswordStore store(PasswordStore::fileIn(paths.appPath), EdiUploadHooks::keyring);
    if (auto stored = store.load(server.host, server.user))
        return stored;
    const std::string prompt =
        replaced(replaced(texts(kPasswordPrompt), "%USER%", server.user), "%HOST%", server.host);
    auto typed = platform::QtDialogs::input(parent, prompt, texts(329), {}, true);
    if (!typed)
        return std::nullopt;
    try {
        store.save(server.host, server.user, *typed);
    } catch (const fileio::FileError& e) {
        dialogs.inform(texts(kPasswordNotStored) + "\n" + e.what(), Icon::Warning);
    }
    return typed;
}

// Runs the upload on a thread of its own while a nested event loop keeps
// the window painting and the cancel button answering.
UploadResult runBeside(QWidget* parent, const Texts& texts, const UploadServer& server,
                       const std::filesystem::path& file) {
    std::unique_ptr<FileTransfer> transfer = EdiUploadHooks::transfer();
    QProgressDialog progress(QString::fromStdString(texts(kUploading)),
                             QString::fromStdString(texts(11)), 0, 0, parent);
    progress.setObjectName("UploadProgress");
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(0);
    progress.setAutoReset(false);
    progress.show();

    std::atomic<bool> cancel{false};
    QObject::connect(&progress, &QProgressDialog::canceled, [&cancel] { cancel = true; });
    QEventLoop loop;
    UploadResult result;
    std::thread worker([&] {
        result = uploadEdi(*transfer, server, file, cancel);
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    worker.join();
    return result;
}

} // namespace

EdiSession& ediSession(QWidget* w) {
    QWidget* top = w;
    while (top->parentWidget())
        top = top->parentWidget();
    if (auto* s = top->findChild<EdiSession*>("EdiSession", Qt::FindDirectChildrenOnly))
        return *s;
    auto* s = new EdiSession(top);
    s->setObjectName("EdiSession");
    return *s;
}

std::function<std::unique_ptr<FileTransfer>()> EdiUploadHooks::transfer = [] {
    return std::make_unique<CurlFtpTransfer>();
};
bool EdiUploadHooks::keyring = true;

void EdiUploadHooks::reset() {
    transfer = [] { return std::make_unique<CurlFtpTransfer>(); };
    keyring = true;
}

void sendEdiFile(QWidget* parent, const Settings& settings, const Texts& texts, Dialogs& dialogs,
                 const AppPaths& paths, std::filesystem::path& path) {
    const std::filesystem::path file =
        !path.empty() ? path
                      : SubmissionHooks::openFile(parent, QString::fromStdString(texts(kOpenTitle)),
                                                  "*.EDI", paths.logsPath());
    path.clear();
    if (file.empty())
        return;
    UploadServer server = readUploadServer(settings);
    // A wrong file is told before anything else is asked or connected.
    try {
        if (!EDIDateiname(file)) {
            dialogs.inform(texts(327), Icon::Critical);
            return;
        }
    } catch (const fileio::FileError&) {
        dialogs.inform(texts(kUnreadable) + "\n" + file.string(), Icon::Critical);
        return;
    }
    if (!text::trim(server.host).empty()) {
        const auto pw = password(parent, texts, dialogs, paths, server);
        if (!pw)
            return;
        server.password = *pw;
    }
    const UploadResult r = runBeside(parent, texts, server, file);
    // A refused password is forgotten, so the next upload asks again.
    if (r.outcome == UploadOutcome::LoginRefused)
        PasswordStore(PasswordStore::fileIn(paths.appPath), EdiUploadHooks::keyring)
            .forget(server.host, server.user);
    const UploadMessage m = uploadMessage(texts, server, file, r);
    if (!m.text.empty())
        dialogs.inform(m.text, m.icon);
}

} // namespace orv::ui
