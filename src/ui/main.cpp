#include <QApplication>
#include <QTimer>

#include "ui/main_window.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName("OrvantaContest");
    QApplication::setApplicationDisplayName("OrvantaContest");
    orv::ui::MainWindow window;
    window.show();
    // --quit-after MS: start, show and leave again; used by the set-up check.
    const auto args = QApplication::arguments();
    const auto at = args.indexOf("--quit-after");
    if (at >= 0 && at + 1 < args.size())
        QTimer::singleShot(args[at + 1].toInt(), &app, &QApplication::quit);
    return app.exec();
}
