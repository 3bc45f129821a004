// The log grid's row actions: the double click, Enter and the context menu
// lead to the correction line, which takes the place of the entry row.
#include <QLineEdit>
#include <QMenu>
#include <QTableView>

#include "ui/correction_line.h"
#include "ui/log_grid_model.h"
#include "ui/log_panels.h"
#include "ui/main_menus.h"
#include "ui/main_window.h"
#include "ui/widget_helpers.h"

namespace orv::ui {

void MainWindow::showEditRow(int gridRow, const EditRow& row) {
    correction_->load(gridRow, row, gridModel_->row(gridRow)[LogGridModel::Number]);
    entry_->hide();
    panels_->hideWorkedElsewhere();
    panels_->hideDuplicate();
    correction_->show();
    side_->setStatisticsEnabled(false);
    selectGridRow(gridRow);
}

EditRow MainWindow::editRow() const {
    return correction_->editRow();
}

int MainWindow::editGridRow() const {
    return correction_->gridRow();
}

void MainWindow::closeEditLine(bool clearCall) {
    correction_->hide();
    entry_->show();
    side_->setStatisticsEnabled(true);
    correction_->forget();
    focusField(entry_->call(), false);
    if (clearCall)
        entry_->call()->clear();
}

void MainWindow::setEditQrb(const QString& km) {
    correction_->setQrb(km);
}

void MainWindow::closeEditForMenu() {
    // The comparison frame closes as its button does, and a correction in
    // hand is dropped: the menu's work may change the row under it.
    if (panels_->comparisonShown())
        panels_->hideComparison();
    if (editLineOpen())
        closeEditLine(false);
}

int MainWindow::selectedGridRow() const {
    const QModelIndex i = grid_->currentIndex();
    return i.isValid() ? i.row() : -1;
}

void MainWindow::selectGridRow(int row) {
    if (row < 0 || row >= gridModel_->rowCount())
        return;
    grid_->setCurrentIndex(gridModel_->index(row, 0));
    grid_->selectRow(row);
}

QMenu* MainWindow::gridMenuFor(int row) {
    if (row < 0 || row >= gridModel_->rowCount())
        return nullptr;
    gridMenuRow_ = row;
    return menus_->gridMenu(gridModel_->isDeleted(row));
}

void MainWindow::gridContextMenu(const QPoint& pos) {
    const int row = grid_->rowAt(pos.y());
    if (QMenu* m = gridMenuFor(row)) {
        selectGridRow(row);
        m->popup(grid_->viewport()->mapToGlobal(pos));
    }
}

void MainWindow::focusEditCall() {
    if (editLineOpen())
        focusField(correction_->call(), true);
}

void MainWindow::gridDoubleClicked(int row) {
    if (row < 0 || row >= gridModel_->rowCount())
        return;
    selectGridRow(row);
    // A deleted row is offered back; any other is corrected.
    if (gridModel_->isDeleted(row)) {
        emit restoreAsked(row);
        return;
    }
    emit editRequested(row);
    if (editLineOpen())
        focusEditCall();
    else
        focusField(entry_->call(), false);
}

void MainWindow::gridEnterPressed(int row) {
    if (row < 0 || row >= gridModel_->rowCount())
        return;
    emit editRequested(row);
    focusEditCall();
}

} // namespace orv::ui
