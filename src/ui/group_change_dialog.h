#pragma once

#include <QDialog>
#include <array>
#include <functional>

#include "core/submission/group_change.h"

class QComboBox;
class QLineEdit;
class QRadioButton;

namespace orv {
class Beeper;
class ContestLog;
class Dialogs;
class Settings;
class Texts;
} // namespace orv

namespace orv::ui {

// The group change dialog `Form11`: a range of QSO numbers of the current
// band (`Text1`, `Text2`), the field to change (`Option1(0)` ..
// `Option1(9)`) and the new value (`Text3` or the list `Combo1`). The change
// itself is core's; the dialog prepares the value control for the option.
class GroupChangeDialog : public QDialog {
    Q_OBJECT
public:
    GroupChangeDialog(ContestLog& log, int band, Settings& settings, const Texts& texts,
                      Dialogs& dialogs, Beeper& beeper, QWidget* parent = nullptr);

    // Choosing an option fills the value list or prepares `Text3`.
    void chooseOption(int option);
    GroupChange change() const;
    // `Command1`: checks and changes the rows. False after a refusal.
    bool apply();

    // After rows changed: the band whose rows the main window must show anew.
    std::function<void(int band)> onChanged;

private:
    bool usesList() const;

    ContestLog& log_;
    int band_;
    Settings& settings_;
    const Texts& texts_;
    Dialogs& dialogs_;
    Beeper& beeper_;
    int option_ = 0;
    QLineEdit* from_ = nullptr;  // Text1
    QLineEdit* to_ = nullptr;    // Text2
    QLineEdit* value_ = nullptr; // Text3
    QComboBox* list_ = nullptr;  // Combo1
    std::array<QRadioButton*, 10> options_{};
};

} // namespace orv::ui
