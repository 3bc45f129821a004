#include "ui/options/backup_page.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "core/options/option_rules.h"

namespace orv::ui {

BackupPage::BackupPage(OptionsContext& ctx, QWidget* parent)
    : OptionsPage(ctx, "Frame5", 955, parent) {
    auto* layout = new QVBoxLayout(this);
    on_ = new QCheckBox(ctx.plain(36), this);
    on_->setObjectName("SichernungAN");
    layout->addWidget(on_);
    auto* form = new QFormLayout;
    auto* folderRow = new QHBoxLayout;
    folder_ = new QLineEdit(this);
    folder_->setObjectName("SichernPfad");
    auto* choose = new QPushButton(ctx.plain(38), this);
    choose->setObjectName("SichernPfadWahl");
    folderRow->addWidget(folder_);
    folderRow->addWidget(choose);
    form->addRow(ctx.plain(37), folderRow);
    interval_ = new QLineEdit(this);
    interval_->setObjectName("SichernIntervall");
    form->addRow(ctx.plain(39), interval_);
    layout->addLayout(form);
    timed_ = new QRadioButton(ctx.plain(78), this);
    timed_->setObjectName("SichernungsArt(0)");
    afterChange_ = new QRadioButton(ctx.plain(79), this);
    afterChange_->setObjectName("SichernungsArt(1)");
    layout->addWidget(timed_);
    layout->addWidget(afterChange_);
    layout->addStretch();
    connect(choose, &QPushButton::clicked, this, [this] {
        const QString f = ctx_.chooseFolder(this, ctx_.plain(38), folder_->text());
        if (!f.isEmpty())
            folder_->setText(f);
    });
}

void BackupPage::load(const Settings& s) {
    on_->setChecked(s.get(keys::SichernungAN) == 1);
    folder_->setText(QString::fromStdString(s.get(keys::SichernPfad)));
    interval_->setText(QString::number(s.get(keys::SichernIntervall)));
    (s.get(keys::SichernungsArt) ? timed_ : afterChange_)->setChecked(true);
}

Status BackupPage::validate() {
    bool ok = false;
    const long long minutes = interval_->text().trimmed().toLongLong(&ok);
    return options::checkBackup(folder_->text().toStdString(), on_->isChecked(), ok ? minutes : 0);
}

void BackupPage::save(Settings& s) {
    s.set(keys::SichernungAN, on_->isChecked() ? 1 : 0);
    s.set(keys::SichernPfad, folder_->text().trimmed().toStdString());
    s.set(keys::SichernIntervall, interval_->text().trimmed().toLongLong());
    s.set(keys::SichernungsArt, timed_->isChecked());
}

} // namespace orv::ui
