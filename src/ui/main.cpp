#include <QApplication>
#include <QIcon>
#include <QTimer>
#include <filesystem>
#include <optional>

#include "core/keying/cw_settings.h"
#include "core/keying/key_port.h"
#include "core/keying/morse_engine.h"
#include "core/settings/settings.h"
#include "core/util/ports.h"
#include "platform/qt_dialogs.h"
#include "platform/qt_media_player.h"
#include "platform/serial_key_line.h"
#include "ui/beacon_binding.h"
#include "ui/beacon_remote_port.h"
#include "ui/cw_binding.h"
#include "ui/main_window.h"
#include "ui/remote_binding.h"
#include "ui/startup.h"

int main(int argc, char** argv) {
    orv::platform::chooseMediaBackend();
    QApplication app(argc, argv);
    QApplication::setApplicationName("OrvantaContest");
    QApplication::setApplicationDisplayName("OrvantaContest");
    // The desktop entry and the icon of an installed copy carry the
    // program's id; the window names them so the desktop can match them.
    QGuiApplication::setDesktopFileName(ORVANTA_APP_ID);
    QApplication::setWindowIcon(QIcon::fromTheme(ORVANTA_APP_ID));
    const QStringList args = QApplication::arguments();
    auto option = [&](const char* name) -> std::optional<QString> {
        const auto at = args.indexOf(name);
        if (at >= 0 && at + 1 < args.size())
            return args[at + 1];
        return std::nullopt;
    };

    std::optional<std::string> home;
    if (const auto h = option("--home"))
        home = h->toStdString();
    orv::SystemClock clock;
    orv::platform::QtBeeper beeper;
    orv::platform::QtDialogs dialogs;
    // The one key line, keyer and player of the process, shared by the CW
    // window and the beacon; they outlive the windows that use them.
    orv::Settings* settings = nullptr;
    orv::keying::SteadyClock keyClock;
    orv::platform::SerialKeyLine keyLine;
    orv::keying::KeyPort keyPort(keyLine, [&settings](int com) {
        return settings ? orv::keying::comDevice(*settings, com)
                        : "/dev/ttyS" + std::to_string(com > 0 ? com - 1 : 0);
    });
    orv::keying::Keyer keyer(keyPort, keyClock);
    orv::platform::QtMediaPlayer player;
    // Outlives the window and the remote binding that reads through it.
    std::optional<orv::ui::BeaconRemotePort> beaconPort;
    orv::ui::Startup startup(orv::resolveDataFolder(home), dialogs, clock, beeper);
    // --log NAME: open Logs/NAME.sqlite as a choice in the log chooser would,
    // without showing it; for scripts and the screenshot.
    if (const auto log = option("--log")) {
        startup.runLogDialog = [name = *log](orv::ui::LogDialog& d) {
            d.openExisting(name);
            return d.result() == QDialog::Accepted;
        };
    }
    // A data folder that cannot be made or a settings file that cannot be
    // written ends the start with its message, not with a crash.
    try {
        if (startup.run() != orv::ui::Startup::Outcome::Run)
            return 0;
    } catch (const std::exception& e) {
        dialogs.inform(startup.texts()(10) + "\n" + e.what(), orv::Icon::Critical);
        return 1;
    }

    settings = &startup.settings();
    auto* cw = new orv::ui::CwBinding(*startup.window(),
                                      {startup.texts(), startup.settings(), startup.dialogs(),
                                       keyPort, keyer, player, startup.paths()},
                                      startup.clock());
    auto* beacon =
        new orv::ui::BeaconBinding(*startup.window(),
                                   {startup.texts(), startup.settings(), startup.dialogs(), keyPort,
                                    keyer, player, startup.paths()},
                                   cw);
    // The command interface for the station's other programs, which reads
    // and presses the beacon as the button does.
    beaconPort.emplace(beacon->control());
    auto* remote =
        new orv::ui::RemoteBinding(*startup.window(), startup.settings(), startup.texts());
    remote->setBeacon(*beaconPort);

    // Quitting by other means than the window's close saves as closing does.
    QObject::connect(&app, &QApplication::aboutToQuit, &app, [&startup] { startup.SaveConDat(); });

    // --screenshot FILE: save the window once shown, and leave.
    if (const auto file = option("--screenshot")) {
        QTimer::singleShot(500, &app, [&startup, f = *file] {
            startup.window()->grab().save(f);
            QApplication::quit();
        });
    }
    // --quit-after MS: start and leave again; used by the set-up check.
    if (const auto ms = option("--quit-after"))
        QTimer::singleShot(ms->toInt(), &app, &QApplication::quit);
    return app.exec();
}
