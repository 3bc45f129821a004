#pragma once

#include "ui/options/options_page.h"

class QComboBox;

namespace orv::ui {

// Time: the offset of the log clock from the computer's clock in whole
// hours (`ZeitPlusMinus` of section `QB`), shown as "+2:00h".
class TimePage final : public OptionsPage {
    Q_OBJECT
public:
    TimePage(OptionsContext& ctx, QWidget* parent);
    void load(const Settings& s) override;
    void save(Settings& s) override;
    int hours() const;

private:
    QComboBox* offset_ = nullptr;
};

} // namespace orv::ui
