#pragma once

#include <QWidget>
#include <array>

#include "core/capture/capture.h"

class QGroupBox;
class QLabel;
class QTableWidget;

namespace orv {
class Texts;
}

namespace orv::ui {

// The panels under the log grid: the earlier QSO of a duplicate
// (`Picture11`), the bands a station was worked on (`Frame3` with
// `MSFlexGrid2`) and the frame of the database comparison (`Frame4`).
// They belong to the band they were raised on.
class LogPanels : public QWidget {
    Q_OBJECT
public:
    explicit LogPanels(QWidget* parent);

    void showDuplicate(const DuplicatePanel& panel);
    void hideDuplicate();
    bool duplicateShown() const;
    void showWorkedElsewhere(const std::vector<WorkedOnBand>& rows);
    void hideWorkedElsewhere();
    bool workedElsewhereShown() const;
    bool comparisonShown() const;
    void hideComparison();
    // Headers and widths of `MSFlexGrid2` (`Grid2Set`).
    void Grid2Set(const Texts& texts);
    QTableWidget* comparisonGrid() const { return comparisonGrid_; }

signals:
    // `Command1` of the duplicate panel (F11).
    void resolveDuplicate();

private:
    QWidget* duplicate_ = nullptr;
    std::array<QLabel*, 10> dupLabels_{};
    QGroupBox* workedElsewhere_ = nullptr;
    QTableWidget* workedGrid_ = nullptr;
    QGroupBox* comparison_ = nullptr;
    QTableWidget* comparisonGrid_ = nullptr;
};

} // namespace orv::ui
