#pragma once

// What the window tests share: the log chooser filled as a user fills it,
// and what the message boxes said.
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <functional>
#include <string>

#include "platform/qt_dialogs.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"
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

// What a message box said, the last one or `fromEnd` before it; a marker
// text when nothing was said.
inline QString said(std::size_t fromEnd = 0) {
    const auto& r = platform::QtDialogs::recorded();
    return r.size() > fromEnd ? QString::fromStdString(r[r.size() - 1 - fromEnd])
                              : QString("<nothing said>");
}

// The log "Field" of DL0XYZ made in the data folder `a` and shared on
// `server` as position A, and joined from `b` as position B, with the tool;
// `a` is set up for the window to open it. False when a step failed.
inline bool shareFieldBetween(const std::string& server, const TempDir& a, const TempDir& b) {
    writeFile(a / "OrvantaContest.INI", "[QB]\nEinverstanden=-1\n");
    return runToolAt(a.path(), {"new-log", "Field", "--call", "DL0XYZ", "--locator", "JO62QM",
                                "--contest", "T", "--server", server, "--position", "A"})
                   .status == 0 &&
           runToolAt(b.path(), {"join", "Field", "--server", server, "--position", "B"}).status ==
               0;
}

} // namespace orv::test
