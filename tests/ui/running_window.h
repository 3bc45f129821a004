#pragma once

// The program started on a fresh data folder with a new log and its window
// shown: what the window tests that type QSOs share. A test class derives
// from QObject and from this.
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <filesystem>
#include <functional>
#include <memory>

#include "core/logstore/contest_log.h"
#include "platform/qt_dialogs.h"
#include "support/fakes.h"
#include "support/temp_dir.h"
#include "ui/main_window.h"
#include "ui/startup.h"
#include "ui_support.h"

namespace orv::test {

class RunningWindow {
protected:
    // Starts the program with the new log `name` and these further lines of
    // the settings file, after `prepare` has filled the data folder; false
    // when it did not run.
    bool start(const std::string& name, const std::string& moreSettings = {},
               const std::function<void(const std::filesystem::path&)>& prepare = {}) {
        platform::QtDialogs::setRecording(true);
        platform::QtDialogs::recorded().clear();
        logName = name;
        dir = std::make_unique<TempDir>();
        writeFile(*dir / "OrvantaContest.INI", "[QB]\nEinverstanden=-1\n" + moreSettings);
        if (prepare)
            prepare(dir->path());
        app = std::make_unique<ui::Startup>(dir->path(), dialogs, clock, beeper);
        app->runLogDialog = createLog(name);
        app->endProgram = [this] { ++ended; };
        if (app->run() != ui::Startup::Outcome::Run)
            return false;
        w = app->window();
        w->activateWindow();
        return QTest::qWaitForWindowActive(w);
    }
    void stop() {
        app.reset();
        dir.reset();
        platform::QtDialogs::setRecording(false);
        platform::QtDialogs::recorded().clear();
    }

    QLineEdit* edit(const char* name) { return w->findChild<QLineEdit*>(name); }
    QString label(const char* name) { return w->findChild<QLabel*>(name)->text(); }
    std::vector<QsoRow> stored(int band = 1) {
        return ContestLog::open(*dir / "Logs" / (logName + ".sqlite")).value().rows(band);
    }
    // Types a QSO into the entry row and presses Enter in the locator field.
    void logQso(const QString& call, const QString& locator, const QString& rstNr = "59001") {
        edit("Text3")->setText(call);
        edit("Text6")->setText(rstNr);
        edit("Text7")->setText(locator);
        QTest::keyClick(edit("Text7"), Qt::Key_Return);
    }

    FakeClock clock;
    CountingBeeper beeper;
    platform::QtDialogs dialogs;
    std::unique_ptr<TempDir> dir;
    std::unique_ptr<ui::Startup> app;
    ui::MainWindow* w = nullptr;
    std::string logName;
    int ended = 0;
};

} // namespace orv::test
