#include "ui/backup_binding.h"

#include <QAction>
#include <QMetaObject>
#include <QTimer>

#include "core/backup/backup_worker.h"
#include "core/i18n/texts.h"
#include "core/settings/settings.h"
#include "core/util/ports.h"
#include "ui/main_window.h"
#include "ui/startup.h"

namespace orv::ui {

BackupBinding::BackupBinding(Startup& startup, QObject* parent) : QObject(parent), s_(startup) {
    setObjectName("BackupBinding");
    MainWindow* w = s_.window();
    menu_ = w->findChild<QAction*>("MnSichern");
    menu_->setEnabled(true);
    connect(menu_, &QAction::triggered, this, &BackupBinding::toggle);
    timer4_ = new QTimer(this);
    timer4_->setObjectName("Timer4");
    timer4_->setInterval(60000);
    connect(timer4_, &QTimer::timeout, this, &BackupBinding::tick);
    // The worker reports on its own thread; the message waits for the window.
    worker_ = std::make_unique<BackupWorker>([this](const BackupResult& r) {
        QMetaObject::invokeMethod(
            this, [this, r] { finished(r); }, Qt::QueuedConnection);
    });
    s_.afterLogChange = [this] { afterChange(); };
    LadeSichernOptionen();
}

BackupBinding::~BackupBinding() {
    s_.afterLogChange = nullptr;
    worker_.reset();
}

bool BackupBinding::pathOk() const {
    std::error_code ec;
    return !pfad_.empty() && std::filesystem::is_directory(pfad_, ec);
}

void BackupBinding::LadeSichernOptionen() {
    Settings& st = s_.settings();
    pfad_ = st.get(keys::SichernPfad);
    intervall_ = static_cast<int>(st.get(keys::SichernIntervall));
    if (intervall_ == 0)
        intervall_ = 30;
    zeitgesteuert_ = st.get(keys::SichernungsArt);
    an_ = static_cast<int>(st.get(keys::SichernungAN));
    // A folder that is gone turns the backup off in memory, without a word.
    if (!pathOk())
        an_ = 0;
    menu_->setChecked(an_ == 1);
    if (zeitgesteuert_ && an_ == 1)
        timer4_->start();
    else
        timer4_->stop();
}

void BackupBinding::tick() {
    if (++minutes_ < intervall_)
        return;
    minutes_ = 0;
    if (!pfad_.empty())
        copy();
}

void BackupBinding::afterChange() {
    if (!zeitgesteuert_ && an_ == 1 && !pfad_.empty())
        copy();
}

void BackupBinding::copy() {
    if (s_.log())
        worker_->request(s_.log()->path(), std::filesystem::path(pfad_) / s_.logFile());
}

void BackupBinding::switchOff(bool inSettings) {
    an_ = 0;
    menu_->setChecked(false);
    timer4_->stop();
    if (inSettings)
        s_.settings().set(keys::SichernungAN, 0);
}

void BackupBinding::toggle(bool on) {
    s_.settings().set(keys::SichernungAN, on ? 1 : 0);
    if (on && !pathOk()) {
        switchOff(true);
        s_.dialogs().inform(s_.texts()(35), Icon::Critical);
        return;
    }
    an_ = on ? 1 : 0;
    if (zeitgesteuert_ && an_ == 1)
        timer4_->start();
    else
        timer4_->stop();
}

void BackupBinding::finished(const BackupResult& r) {
    switch (r.outcome) {
    case BackupOutcome::Copied:
        return;
    case BackupOutcome::NotReady:
    case BackupOutcome::CopyFailed:
        // The backup stays on: the next trigger tries again.
        break;
    case BackupOutcome::TooLittleSpace:
        switchOff(false);
        break;
    case BackupOutcome::NoPath:
        switchOff(true);
        break;
    }
    s_.dialogs().inform(s_.texts()(r.text()), Icon::Critical);
}

void BackupBinding::waitIdle() {
    worker_->waitIdle();
}

} // namespace orv::ui
