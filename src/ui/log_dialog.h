#pragma once

#include <QDialog>
#include <array>
#include <optional>
#include <vector>

#include "core/app/app_paths.h"
#include "core/logstore/contest_defs.h"
#include "core/logstore/log_setup.h"
#include "core/logstore/system_time.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace orv {
class Beeper;
class Clock;
class Dialogs;
class Settings;
class Texts;
} // namespace orv

namespace orv::ui {

// The log chooser `Form2`: own call and locator, start band and mode, time
// offset and contest, then a new log or one of the existing ones. The rules
// (Testen, the name check, the version test, what is remembered) are the log
// store's; this dialog collects, asks and shows.
class LogDialog final : public QDialog {
    Q_OBJECT
public:
    LogDialog(Settings& settings, const AppPaths& paths, const Texts& texts, Dialogs& dialogs,
              Clock& clock, Beeper& beeper, QWidget* parent = nullptr);

    // The log chosen, once the dialog was accepted.
    struct Chosen {
        ContestLog log;
        std::string logFile; // file name with its ending
        std::string myCall;
        std::string myLocator;
        int startBand = 1;
        std::string startMode;
        int zeitPlusMinus = 0;
        ContestData contest;
        std::array<bool, kBandCount> bandsWithQsos{};
    };
    std::optional<Chosen>& chosen() { return chosen_; }

    // `Command4`: validate, ask for the name, create. Public for the keyboard
    // and for tests, which answer the questions through the dialog queue.
    void newLog();
    // A click in `Combo2`: open the named log.
    void openExisting(const QString& name);

    // The computer's clock: `Command6` (time) and `Command7` (date) open the
    // field `Text5` over them; Enter there sets that part of the clock.
    void editClock(ClockPart part);
    void setClock();
    // The port that sets the system clock; timedatectl unless replaced.
    void setTimeSetter(SystemTimeSetter& setter) { timeSetter_ = &setter; }

private:
    void makeNewLog();
    void fillLogs();
    void refuse(const Failure& f);
    void showClock();
    void finish(ContestLog log, const std::string& name, std::array<bool, kBandCount> bands,
                const std::string& myCall, const std::string& myLocator);
    NewLogForm form() const;
    // The sharing fields checked; a refusal names the field.
    std::optional<Failure> shareProblem() const;
    // Shares the chosen log when a server is given; the password goes to the
    // keyring.
    void applySharing(ContestLog& log, const std::string& name);

    Settings& settings_;
    AppPaths paths_;
    const Texts& texts_;
    Dialogs& dialogs_;
    Clock& clock_;
    Beeper& beeper_;
    std::vector<ContestDef> defs_;
    ContestData contest_;
    bool filling_ = false;
    std::optional<Chosen> chosen_;

    QComboBox* call_ = nullptr;
    QLineEdit* locator_ = nullptr;
    QComboBox* band_ = nullptr;
    QComboBox* mode_ = nullptr;
    QComboBox* contestBox_ = nullptr;
    QComboBox* logs_ = nullptr;
    // Sharing the contest: empty server leaves the log as it is.
    QLineEdit* shareServer_ = nullptr;
    QLineEdit* sharePosition_ = nullptr;
    QLineEdit* sharePassword_ = nullptr;
    QComboBox* offset_ = nullptr;
    QLabel* status_ = nullptr;
    QPushButton* timeButton_ = nullptr;
    QPushButton* dateButton_ = nullptr;
    QLineEdit* clockField_ = nullptr;
    ClockPart clockPart_ = ClockPart::Time;
    TimedatectlSetter timedatectl_;
    SystemTimeSetter* timeSetter_ = &timedatectl_;
};

} // namespace orv::ui
