#pragma once

#include <QDialog>

#include "core/locator/square_window.h"

class QTableWidget;

namespace orv {
class Texts;
}

namespace orv::ui {

// The window of worked large squares `Form9`: core's 25 x 25 cells drawn as
// they are, with the count of worked squares and the band above them.
class SquareWindow final : public QDialog {
    Q_OBJECT
public:
    SquareWindow(const LocFenster& fenster, long long worked, const QString& band,
                 const Texts& texts, QWidget* parent = nullptr);

    QTableWidget* grid() const { return grid_; }

protected:
    void keyPressEvent(QKeyEvent* e) override;

private:
    QTableWidget* grid_ = nullptr;
};

} // namespace orv::ui
