#pragma once

#include <array>

#include "ui/options/options_page.h"

class QComboBox;
class QLineEdit;

namespace orv::ui {

// DDE: three keys of the main window (`Combo7(i)`, the characters of ANSI
// codes 33 to 96) that publish their command text (`FlagBefehl`i) to the
// remote clients.
class DdePage final : public OptionsPage {
    Q_OBJECT
public:
    DdePage(OptionsContext& ctx, QWidget* parent);
    void load(const Settings& s) override;
    void save(Settings& s) override;

private:
    std::array<QComboBox*, 3> keys_{};
    std::array<QLineEdit*, 3> commands_{};
};

} // namespace orv::ui
