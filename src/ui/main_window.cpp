#include "ui/main_window.h"

namespace orv::ui {

MainWindow::MainWindow(QWidget* parent) : QMainWindow(parent) {
    setObjectName("Form1");
    setWindowTitle("OrvantaContest");
    resize(1280, 860);
}

} // namespace orv::ui
