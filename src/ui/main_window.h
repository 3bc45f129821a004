#pragma once

#include <QMainWindow>

namespace orv::ui {

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(QWidget* parent = nullptr);
};

} // namespace orv::ui
