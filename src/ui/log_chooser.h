#pragma once

#include <QDialog>
#include <optional>

#include "core/app/app_paths.h"
#include "core/logstore/log_setup.h"

class QListWidget;

namespace orv {
class Dialogs;
class Texts;
} // namespace orv

namespace orv::ui {

// `Form12`, the small chooser of `MnLoadLog`: the logs of the folder in a
// list, `OK` to take one, `Abbrechen` to keep the log in use. Nothing of the
// settings file changes here; a log that cannot be opened says why and the
// chooser stays, so the open log stays too.
class LogFileChooser final : public QDialog {
    Q_OBJECT
public:
    LogFileChooser(const AppPaths& paths, const Texts& texts, Dialogs& dialogs,
                   QWidget* parent = nullptr);

    // `OK` on the selected log (or the one named); true when it was opened.
    bool take(const QString& name);
    // The log taken, once the chooser was accepted.
    std::optional<OpenedLog>& opened() { return opened_; }
    const QString& name() const { return name_; }

private:
    AppPaths paths_;
    const Texts& texts_;
    Dialogs& dialogs_;
    QListWidget* files_ = nullptr;
    std::optional<OpenedLog> opened_;
    QString name_;
};

} // namespace orv::ui
