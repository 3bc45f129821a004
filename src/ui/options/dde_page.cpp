#include "ui/options/dde_page.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include "core/options/option_rules.h"

namespace orv::ui {

DdePage::DdePage(OptionsContext& ctx, QWidget* parent) : OptionsPage(ctx, "Frame9", 959, parent) {
    auto* grid = new QGridLayout(this);
    grid->addWidget(new QLabel(ctx.plain(277), this), 0, 0);
    grid->addWidget(new QLabel(ctx.plain(283), this), 0, 1);
    for (int i = 0; i < 3; ++i) {
        keys_[i] = new QComboBox(this);
        keys_[i]->setObjectName(QString("Combo7(%1)").arg(i + 1));
        for (int c = options::kFirstFlagCode; c <= options::kLastFlagCode; ++c)
            keys_[i]->addItem(QString(QChar(c)), c);
        commands_[i] = new QLineEdit(this);
        commands_[i]->setObjectName(QString("FlagBefehl%1").arg(i + 1));
        grid->addWidget(keys_[i], i + 1, 0);
        grid->addWidget(commands_[i], i + 1, 1);
    }
    grid->setRowStretch(4, 1);
    grid->setColumnStretch(1, 1);
}

void DdePage::load(const Settings& s) {
    for (int i = 0; i < 3; ++i) {
        // A key never set selects nothing and stays unset.
        keys_[i]->setCurrentIndex(keys_[i]->findData(static_cast<int>(s.get(keys::Flag(i + 1)))));
        commands_[i]->setText(QString::fromStdString(s.get(keys::FlagBefehl(i + 1))));
    }
}

void DdePage::save(Settings& s) {
    for (int i = 0; i < 3; ++i) {
        s.set(keys::Flag(i + 1),
              keys_[i]->currentIndex() < 0 ? 0 : keys_[i]->currentData().toInt());
        s.set(keys::FlagBefehl(i + 1), commands_[i]->text().trimmed().toStdString());
    }
}

} // namespace orv::ui
