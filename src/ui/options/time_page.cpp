#include "ui/options/time_page.h"

#include <QComboBox>
#include <QFormLayout>

#include "core/options/option_rules.h"

namespace orv::ui {

TimePage::TimePage(OptionsContext& ctx, QWidget* parent) : OptionsPage(ctx, "Frame6", 956, parent) {
    auto* form = new QFormLayout(this);
    offset_ = new QComboBox(this);
    offset_->setObjectName("ZeitPlusMinus");
    for (int h = -options::kMaxZeitPlusMinus; h <= options::kMaxZeitPlusMinus; ++h)
        offset_->addItem(QString::fromStdString(options::zeitPlusMinusText(h)), h);
    form->addRow(ctx.plain(266), offset_);
}

void TimePage::load(const Settings& s) {
    const int at = offset_->findData(static_cast<int>(s.get(keys::ZeitPlusMinus)));
    offset_->setCurrentIndex(at < 0 ? offset_->findData(0) : at);
}

int TimePage::hours() const {
    return offset_->currentData().toInt();
}

void TimePage::save(Settings& s) {
    s.set(keys::ZeitPlusMinus, hours());
}

} // namespace orv::ui
