#pragma once

// What the window tests share: the log chooser filled as a user fills it.
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <functional>
#include <string>

#include "platform/qt_dialogs.h"
#include "ui/log_dialog.h"

namespace orv::test {

// Creates the log `name` for DL0XYZ in JO62QM, contest "Test contest",
// starting on 144 MHz, as the chooser's "new log" would.
inline std::function<bool(ui::LogDialog&)> createLog(const std::string& name) {
    return [name](ui::LogDialog& d) {
        d.findChild<QComboBox*>("Text1")->setEditText("dl0xyz");
        d.findChild<QLineEdit*>("Text2")->setText("JO62QM");
        d.findChild<QComboBox*>("Combo4")->setEditText("Test contest");
        d.findChild<QComboBox*>("Combo1")->setCurrentIndex(1);
        platform::QtDialogs::queueInput(name);
        d.newLog();
        return d.result() == QDialog::Accepted;
    };
}

} // namespace orv::test
