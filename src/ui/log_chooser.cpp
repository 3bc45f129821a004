#include "ui/log_chooser.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/i18n/texts.h"
#include "core/util/ports.h"
#include "ui/widget_helpers.h"

namespace orv::ui {

LogFileChooser::LogFileChooser(const AppPaths& paths, const Texts& texts, Dialogs& dialogs,
                               QWidget* parent)
    : QDialog(parent), paths_(paths), texts_(texts), dialogs_(dialogs) {
    setObjectName("Form12");
    QString title = q(texts_(261));
    setWindowTitle(title.remove('&'));
    auto* v = new QVBoxLayout(this);
    files_ = new QListWidget(this);
    files_->setObjectName("File1");
    for (const std::string& name : listLogs(paths_.logsPath()))
        files_->addItem(q(name));
    if (files_->count() > 0)
        files_->setCurrentRow(0);
    v->addWidget(files_, 1);

    auto* buttons = new QHBoxLayout;
    auto* ok = new QPushButton("OK", this);
    ok->setObjectName("OK");
    ok->setDefault(true);
    // The chooser serves contest logs only; its second OK stays out of sight.
    auto* ok2 = new QPushButton("OK", this);
    ok2->setObjectName("OK2");
    ok2->hide();
    auto* cancel = new QPushButton(q(texts_(11)), this);
    cancel->setObjectName("Abbrechen");
    buttons->addStretch(1);
    buttons->addWidget(ok);
    buttons->addWidget(ok2);
    buttons->addWidget(cancel);
    v->addLayout(buttons);

    connect(ok, &QPushButton::clicked, this, [this] {
        if (const QListWidgetItem* item = files_->currentItem())
            take(item->text());
    });
    connect(files_, &QListWidget::itemDoubleClicked, this,
            [this](QListWidgetItem* item) { take(item->text()); });
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    resize(360, 420);
}

bool LogFileChooser::take(const QString& name) {
    if (name.trimmed().isEmpty())
        return false;
    try {
        auto opened = openLog(paths_.logFile(name.toStdString()));
        if (!opened) {
            dialogs_.inform(texts_(opened.failure().text), Icon::Critical);
            return false;
        }
        opened_.emplace(std::move(opened).value());
    } catch (const std::exception& e) {
        // A file that is no log, or a broken one: its own description.
        dialogs_.inform(texts_(10) + "\n" + e.what(), Icon::Critical);
        return false;
    }
    name_ = name;
    accept();
    return true;
}

} // namespace orv::ui
