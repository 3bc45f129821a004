#pragma once

#include <QObject>
#include <memory>

#include "core/backup/backup.h"

class QAction;
class QTimer;

namespace orv {
class BackupWorker;
}

namespace orv::ui {

class Startup;

// Automatic backup in the window: `LadeSichernOptionen`, `Timer4` once a
// minute for the timed kind, a copy after each change for the other, and
// `MnSichern` with its check mark. Copies run on the backup worker; their
// messages come back to the window thread.
class BackupBinding final : public QObject {
    Q_OBJECT
public:
    BackupBinding(Startup& startup, QObject* parent);
    ~BackupBinding() override;

    void LadeSichernOptionen();
    // One tick of `Timer4`.
    void tick();
    // After a commit, correction, deletion or restore.
    void afterChange();
    // `MnSichern` clicked.
    void toggle(bool on);
    bool on() const { return an_ == 1; }
    // Waits for the copies in hand (tests, shutdown).
    void waitIdle();

private:
    void copy();
    void finished(const BackupResult& r);
    bool pathOk() const;
    void switchOff(bool inSettings);

    Startup& s_;
    QAction* menu_ = nullptr;
    QTimer* timer4_ = nullptr;
    std::unique_ptr<BackupWorker> worker_;
    std::string pfad_;
    int intervall_ = 30;
    bool zeitgesteuert_ = false;
    int an_ = 0;
    int minutes_ = 0;
};

} // namespace orv::ui
