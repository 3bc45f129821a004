#pragma once

#include <array>

#include "ui/options/options_page.h"

class QCheckBox;
class QComboBox;
class QPushButton;

namespace orv::ui {

// General: the automatic switch between the two keyed modes, the colours of
// the main window's fields, the bearing's decimals (`AntenneKomma`) and the
// key held with the F keys (`FTaste`). `FarbeInAktiv` is deliberately not
// offered.
class GeneralPage final : public OptionsPage {
    Q_OBJECT
public:
    GeneralPage(OptionsContext& ctx, QWidget* parent);
    void load(const Settings& s) override;
    Status validate() override;
    void save(Settings& s) override;

private:
    void pick(int i);
    void showColour(int i);

    QCheckBox* flip_ = nullptr;
    QComboBox* mode2_ = nullptr;
    QComboBox* mode3_ = nullptr;
    std::array<QPushButton*, 3> colourButtons_{};
    std::array<QColor, 3> colours_{};
    QCheckBox* antenneKomma_ = nullptr;
    QComboBox* fTaste_ = nullptr;
};

} // namespace orv::ui
