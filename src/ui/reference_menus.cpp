#include "ui/reference_menus.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QPointer>
#include <memory>
#include <thread>

#include "core/i18n/texts.h"
#include "core/logstore/contest_log.h"
#include "core/reference/call_db.h"
#include "core/reference/country_download.h"
#include "core/reference/country_list.h"
#include "core/util/file_io.h"
#include "core/util/ports.h"
#include "platform/net/curl_http.h"
#include "ui/calldb_editor.h"
#include "ui/comparison_panel.h"
#include "ui/lookup_binding.h"
#include "ui/main_window.h"
#include "ui/startup.h"

namespace orv::ui {
namespace {

// The country files come from the Windows world in upper case as often as
// from Linux in lower case; the filters take both.
const QString kCtyFilter = "*.DAT (*.DAT *.dat);;*.CTY (*.CTY *.cty);;*.TXT (*.TXT *.txt);;*.* (*)";
const QString kArrlFilter =
    "*.CTY (*.CTY *.cty);;*.DAT (*.DAT *.dat);;*.TXT (*.TXT *.txt);;*.* (*)";
const QString kCallListFilter =
    "*.SCP (*.SCP *.scp);;*.DAT (*.DAT *.dat);;*.TXT (*.TXT *.txt);;*.* (*)";

QString plain(const std::string& s) {
    return QString::fromStdString(s).remove('&');
}

std::filesystem::path qtOpenFile(QWidget* parent, const QString& title, const QString& filter) {
    const QString f = QFileDialog::getOpenFileName(parent, title, QString(), filter);
    return f.isEmpty() ? std::filesystem::path() : std::filesystem::path(f.toStdString());
}

int qtRunModal(QDialog& d) {
    return d.exec();
}

std::unique_ptr<HttpGetter> curlHttp() {
    return std::make_unique<CurlHttpGetter>();
}

// The menus' state: the lookup list that owns the call database image, and
// the services of the program.
class ReferenceMenus final : public QObject {
public:
    ReferenceMenus(Startup& s, LookupBinding& lookup)
        : QObject(s.window()), s_(s), lookup_(lookup) {
        setObjectName("ReferenceMenus");
    }

    void importCountry(CountryFormat format) {
        const QString filter = format == CountryFormat::CtyDat ? kCtyFilter : kArrlFilter;
        const auto file =
            ReferenceHooks::openFile(s_.window(), QString::fromStdString(s_.texts()(505)), filter);
        if (file.empty())
            return;
        guarded([&] {
            const auto r = importCountryFile(s_.paths().countryDbPath(), file, format);
            finishCountry(r ? 0 : r.failure().text);
        });
    }

    // The download runs beside the window so that a slow server never holds
    // up the logging; the entry stays disabled until the answer is in.
    void downloadCountry() {
        QAction* entry = s_.window()->findChild<QAction*>("MnARRLImportDownL");
        if (entry)
            entry->setEnabled(false);
        std::shared_ptr<HttpGetter> http = ReferenceHooks::http();
        const std::string url = s_.settings().get(keys::CTYDownloadURL);
        const std::filesystem::path db = s_.paths().countryDbPath();
        QPointer<ReferenceMenus> self(this);
        std::thread([self, http, url, db] {
            int failure = 0;
            std::string error;
            try {
                const auto r = downloadCountryList(*http, url, db);
                failure = r ? 0 : r.failure().text;
            } catch (const std::exception& e) {
                error = e.what();
            }
            QMetaObject::invokeMethod(
                qApp,
                [self, failure, error] {
                    if (!self)
                        return;
                    if (auto* e = self->s_.window()->findChild<QAction*>("MnARRLImportDownL"))
                        e->setEnabled(true);
                    if (!error.empty())
                        self->s_.dialogs().inform(self->s_.texts()(10) + "\n" + error,
                                                  Icon::Critical);
                    else
                        self->finishCountry(failure);
                },
                Qt::QueuedConnection);
        }).detach();
    }

    void newQBDat() {
        if (s_.dialogs().ask(s_.texts()(30), Buttons::YesNo, Icon::Warning, Answer::No) !=
            Answer::Yes)
            return;
        guarded([&] {
            NewQBDat(s_.paths());
            lookup_.offerReload();
        });
    }

    void editQBDat() {
        guarded([&] {
            CallDbEditor editor(s_.paths(), s_.texts(), s_.dialogs(), s_.window());
            ReferenceHooks::runModal(editor);
            if (editor.changed())
                lookup_.offerReload();
        });
    }

    void importCallList() {
        const auto file =
            ReferenceHooks::openFile(s_.window(), plain(s_.texts()(257)), kCallListFilter);
        if (file.empty())
            return;
        guarded([&] {
            const std::string bytes = fileio::readAll(file);
            CallDbStore store(s_.paths().callDbPath());
            const auto r = orv::importCallList(store, bytes);
            if (!r) {
                std::string msg = s_.texts()(r.failure().text);
                if (!r.failure().detail.empty())
                    msg += "\n" + r.failure().detail;
                s_.dialogs().inform(msg, Icon::Critical);
                return;
            }
            s_.dialogs().inform(s_.texts()(85), Icon::Information);
            if (r->added + r->completed > 0)
                lookup_.offerReload();
        });
    }

private:
    void finishCountry(int failureText) {
        if (failureText != 0)
            s_.dialogs().inform(s_.texts()(failureText), Icon::Critical);
        else
            s_.dialogs().inform(s_.texts()(85), Icon::Information);
    }

    // File and database failures end the entry's work with their message.
    template <class F> void guarded(F&& f) {
        try {
            f();
        } catch (const std::exception& e) {
            while (QApplication::overrideCursor())
                QApplication::restoreOverrideCursor();
            s_.dialogs().inform(s_.texts()(10) + "\n" + e.what(), Icon::Critical);
        }
    }

    Startup& s_;
    LookupBinding& lookup_;
};

} // namespace

std::function<std::filesystem::path(QWidget*, const QString&, const QString&)>
    ReferenceHooks::openFile = qtOpenFile;
std::function<int(QDialog&)> ReferenceHooks::runModal = qtRunModal;
std::function<std::unique_ptr<HttpGetter>()> ReferenceHooks::http = curlHttp;

void ReferenceHooks::reset() {
    openFile = qtOpenFile;
    runModal = qtRunModal;
    http = curlHttp;
}

void installReferenceMenus(Startup& s) {
    MainWindow* w = s.window();
    if (!w)
        return;
    auto* lookup =
        new LookupBinding(*w, s.paths(), s.texts(), s.dialogs(), [&s] { return s.capture(); });
    ComparisonPanel::Sources sources;
    sources.capture = [&s] { return s.capture(); };
    sources.image = [lookup] { return lookup->readyImage(); };
    sources.logName = [&s] { return s.log() ? s.log()->path().stem().string() : std::string(); };
    new ComparisonPanel(*w, s.paths(), s.texts(), std::move(sources));

    auto* menus = new ReferenceMenus(s, *lookup);
    auto bind = [&](const char* name, auto fn) {
        if (auto* a = w->findChild<QAction*>(name)) {
            a->setEnabled(true);
            QObject::connect(a, &QAction::triggered, menus, fn);
        }
    };
    bind("DXCCImp", [menus] { menus->importCountry(CountryFormat::CtyDat); });
    bind("MnARRLImport", [menus] { menus->importCountry(CountryFormat::ArrlCty); });
    bind("MnARRLImportDownL", [menus] { menus->downloadCountry(); });
    bind("NewQBDat", [menus] { menus->newQBDat(); });
    bind("QBDatEdit", [menus] { menus->editQBDat(); });
    bind("MnQBDatImport", [menus] { menus->importCallList(); });
}

} // namespace orv::ui
