#include <QApplication>
#include <QTimer>

#include "core/i18n/texts.h"
#include "core/util/ports.h"
#include "platform/qt_dialogs.h"
#include "ui/main_window.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName("OrvantaContest");
    QApplication::setApplicationDisplayName("OrvantaContest");
    orv::Texts texts;
    orv::SystemClock clock;
    orv::platform::QtBeeper beeper;
    orv::ui::MainWindow window(texts, clock, beeper);
    window.show();
    // --quit-after MS: start, show and leave again; used by the set-up check.
    const auto args = QApplication::arguments();
    // --screenshot FILE: save the window as it stands once shown, and leave.
    if (const auto shot = args.indexOf("--screenshot"); shot >= 0 && shot + 1 < args.size()) {
        const QString file = args[shot + 1];
        QTimer::singleShot(300, &app, [&window, file] {
            window.grab().save(file);
            QApplication::quit();
        });
    }
    const auto at = args.indexOf("--quit-after");
    if (at >= 0 && at + 1 < args.size())
        QTimer::singleShot(args[at + 1].toInt(), &app, &QApplication::quit);
    return app.exec();
}
