#pragma once

#include "ui/options/options_page.h"

class QCheckBox;
class QLineEdit;
class QRadioButton;

namespace orv::ui {

// Backup: the folder, the interval in minutes, timed or after each change,
// and whether it is on. The running backup takes them when the dialog
// closes (`LadeSichernOptionen`).
class BackupPage final : public OptionsPage {
    Q_OBJECT
public:
    BackupPage(OptionsContext& ctx, QWidget* parent);
    void load(const Settings& s) override;
    Status validate() override;
    void save(Settings& s) override;

private:
    QCheckBox* on_ = nullptr;
    QLineEdit* folder_ = nullptr;
    QLineEdit* interval_ = nullptr;
    QRadioButton* timed_ = nullptr;
    QRadioButton* afterChange_ = nullptr;
};

} // namespace orv::ui
