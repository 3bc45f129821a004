#pragma once

#include <QLockFile>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/app/app_paths.h"
#include "core/i18n/texts.h"
#include "core/settings/settings.h"
#include "ui/log_chooser.h"
#include "ui/log_dialog.h"

namespace orv {
class Beeper;
class Capture;
class ContestLog;
class Clock;
class Dialogs;
} // namespace orv

namespace orv::ui {

class CaptureBinding;
class ShareBinding;
class MainWindow;

// The start of the program in its fixed order: one instance only, the data
// folder, the liability question, the language, the lists of the settings
// file, the log chooser, then the main window bound to the open log.
class Startup {
public:
    Startup(std::filesystem::path dataFolder, Dialogs& dialogs, Clock& clock, Beeper& beeper);
    ~Startup();

    enum class Outcome {
        Run,            // the main window stands over an open log
        AlreadyRunning, // another instance holds the data folder: end silently
        Declined,       // the liability question was answered No
        NoLog,          // the chooser was closed without a log
    };
    Outcome run();

    // Shows the chooser and tells whether it ended with a log; replaced by
    // tests, which drive the dialog without a modal loop.
    std::function<bool(LogDialog&)> runLogDialog;
    // The desktop's locale variables, read on a first start; replaced by tests.
    EnvLookup environment = systemEnv;
    // Shows the small chooser of `MnLoadLog`; replaced by tests in the same way.
    std::function<bool(LogFileChooser&)> runLogChooser;

    MainWindow* window() { return window_.get(); }
    Texts& texts() { return texts_; }
    Settings& settings() { return *settings_; }
    const AppPaths& paths() const { return paths_; }
    Dialogs& dialogs() { return dialogs_; }
    Clock& clock() { return clock_; }
    Beeper& beeper() { return beeper_; }
    // The open log and its capture; null before a log is open.
    ContestLog* log() { return log_ ? &log_->log : nullptr; }
    Capture* capture() { return capture_.get(); }
    // The contest of the open log, saved into it on closing; null before.
    ContestData* contest() { return log_ ? &log_->contest : nullptr; }

    CaptureBinding* binding() { return binding_; }
    ShareBinding* share() { return share_.get(); }
    // The file name of the open log, with its ending.
    std::string logFile() const { return log_ ? log_->logFile : std::string(); }
    // Called after every stored change of the open log, whichever log it is.
    std::function<void()> afterLogChange;

    // `MnLoadLog`: the small chooser over the running window; a chosen log
    // replaces the open one on the band and modes in use, the band is loaded
    // anew and the call emptied. The settings file is left as it is.
    void changeLog();
    // Ends the program after the band was emptied, without saving: what is
    // in memory is stale. Replaced by tests.
    std::function<void()> endProgram;
    bool endedWithoutSaving() const { return endedWithoutSaving_; }

    // Choosing a language (`MnDefault(n)`).
    void chooseLanguage(const QString& caption);
    // `SaveConDat`: the contest into the log, operator and propagation into
    // the settings file. Runs when the window closes.
    void SaveConDat();

private:
    bool askLiability();
    void loadLanguage();
    void reportLanguageLoad(const Texts::LoadResult& r);
    void fillLists();
    void applyOptions();
    void openLog(LogDialog::Chosen chosen);
    void bindLog();
    void connectWindow();

    std::filesystem::path folder_;
    Dialogs& dialogs_;
    Clock& clock_;
    Beeper& beeper_;
    AppPaths paths_;
    Texts texts_;
    std::unique_ptr<QLockFile> lock_;
    std::unique_ptr<Settings> settings_;
    std::unique_ptr<MainWindow> window_;
    std::optional<LogDialog::Chosen> log_;
    std::unique_ptr<Capture> capture_;
    CaptureBinding* binding_ = nullptr;
    // Only for a shared log; it lets go of the capture before the capture goes.
    std::unique_ptr<ShareBinding> share_;
    bool endedWithoutSaving_ = false;
};

} // namespace orv::ui
