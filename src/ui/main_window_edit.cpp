// The correction line and the grid's row actions: `EditView` fills the
// second entry line from a grid row, Enter in it stores the correction, and
// the grid's double click, Enter and context menu lead there.
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTableView>

#include "core/capture/entry_rules.h"
#include "core/util/ports.h"
#include "ui/log_grid_model.h"
#include "ui/main_window.h"

namespace orv::ui {
namespace {

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

// The mode boxes of the correction line are lists; a mode that the list
// lacks (a log from another station) is added so the row keeps it.
void chooseItem(QComboBox* box, const QString& text) {
    if (box->isEditable()) {
        box->setEditText(text);
        return;
    }
    int at = box->findText(text);
    if (at < 0 && !text.isEmpty()) {
        box->addItem(text);
        at = box->count() - 1;
    }
    box->setCurrentIndex(at);
}

} // namespace

void MainWindow::showEditRow(int gridRow, const EditRow& r) {
    auto* line = correctionLine_;
    auto edit = [line](const char* name) { return line->findChild<QLineEdit*>(name); };
    auto box = [line](const char* name) { return line->findChild<QComboBox*>(name); };
    // The change handlers of the fields must not answer the filling itself.
    editLoading_ = true;
    edit("Text33")->setText(q(r.call));
    edit("Text44")->setText(q(r.rst));
    edit("Text55")->setText(gridModel_->row(gridRow)[LogGridModel::Number]);
    edit("Text66")->setText(q(r.rstNr));
    edit("Text77")->setText(q(r.locator));
    edit("Text88")->setText(q(r.qrb));
    edit("Text22")->setText(q(r.time));
    edit("Text14")->setText(q(r.date));
    edit("Text101")->setText(q(r.qsl));
    edit("Text99")->setText(q(r.note));
    chooseItem(box("Combo4"), q(r.mode));
    chooseItem(box("Combo5"), q(r.rxMode));
    chooseItem(box("Combo7"), q(r.prop));
    chooseItem(box("Combo9"), q(r.op));
    editName_ = q(r.name);
    editGridRow_ = gridRow;
    editLoading_ = false;

    entryRow_->hide();
    workedElsewhere_->hide();
    duplicatePanel_->hide();
    correctionLine_->show();
    // The numbers would tell of the row before the correction is stored.
    statistics_->setEnabled(false);
    findChild<QWidget*>("Picture7")->setEnabled(false);
    selectGridRow(gridRow);
}

EditRow MainWindow::editRow() const {
    auto edit = [this](const char* name) {
        return correctionLine_->findChild<QLineEdit*>(name)->text().toStdString();
    };
    auto box = [this](const char* name) {
        return correctionLine_->findChild<QComboBox*>(name)->currentText().toStdString();
    };
    EditRow r;
    r.call = edit("Text33");
    r.rst = edit("Text44");
    r.rstNr = edit("Text66");
    r.locator = edit("Text77");
    r.qrb = edit("Text88");
    r.time = edit("Text22");
    r.date = edit("Text14");
    r.qsl = edit("Text101");
    r.note = edit("Text99");
    r.mode = box("Combo4");
    r.rxMode = box("Combo5");
    r.prop = box("Combo7");
    r.op = box("Combo9");
    r.name = editName_.toStdString();
    return r;
}

void MainWindow::closeEditLine(bool clearCall) {
    correctionLine_->hide();
    entryRow_->show();
    statistics_->setEnabled(true);
    findChild<QWidget*>("Picture7")->setEnabled(true);
    editGridRow_ = -1;
    focusField(call_, false);
    if (clearCall)
        call_->clear();
}

void MainWindow::setEditQrb(const QString& km) {
    correctionLine_->findChild<QLineEdit*>("Text88")->setText(km);
}

void MainWindow::closeEditForMenu() {
    if (comparison_ && comparison_->isVisible())
        comparison_->hide();
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
    const bool deleted = gridModel_->isDeleted(row);
    gridMenu_->findChild<QAction*>("MnGrid1Edit")->setVisible(!deleted);
    gridMenu_->findChild<QAction*>("MnMarkASKill")->setVisible(!deleted);
    gridMenu_->findChild<QAction*>("MnGrid1KillRetur")->setVisible(deleted);
    return gridMenu_;
}

void MainWindow::gridContextMenu(const QPoint& pos) {
    const int row = grid_->rowAt(pos.y());
    if (QMenu* m = gridMenuFor(row)) {
        selectGridRow(row);
        m->popup(grid_->viewport()->mapToGlobal(pos));
    }
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
        focusField(correctionLine_->findChild<QLineEdit*>("Text33"), true);
    else
        focusField(call_, false);
}

void MainWindow::gridEnterPressed(int row) {
    if (row < 0 || row >= gridModel_->rowCount())
        return;
    emit editRequested(row);
    if (editLineOpen())
        focusField(correctionLine_->findChild<QLineEdit*>("Text33"), true);
}

// The correction line walks like the entry row: Space forward, Shift+Space
// back, the remark `Text99` taking blanks as text.
static const char* editWalkTarget(const QString& from, bool back) {
    struct Step {
        const char* from;
        const char* forward;
        const char* backward;
    };
    static const Step steps[] = {
        {"Text22", "Text33", "Text77"},  {"Text14", "Text33", "Text22"},
        {"Text33", "Text44", "Text77"},  {"Text44", "Text66", "Text33"},
        {"Text55", "Text66", "Text44"},  {"Text66", "Text77", "Text44"},
        {"Text77", "Text33", "Text66"},  {"Text88", "Text33", "Text77"},
        {"Text101", "Text33", "Text77"},
    };
    for (const Step& s : steps)
        if (from == QLatin1String(s.from))
            return back ? s.backward : s.forward;
    return nullptr;
}

bool MainWindow::editFieldKey(QWidget* field, QKeyEvent* e) {
    if (e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter) {
        if (onEditCommit)
            onEditCommit();
        return true;
    }
    const QString name = field->objectName();
    if (e->key() == Qt::Key_Space) {
        if (const char* to = editWalkTarget(name, e->modifiers() & Qt::ShiftModifier)) {
            auto* target = correctionLine_->findChild<QLineEdit*>(to);
            focusField(target, QLatin1String(to) != QLatin1String("Text44"));
            if (QLatin1String(to) == QLatin1String("Text44"))
                target->setCursorPosition(0);
            return true;
        }
        return false;
    }
    const QString text = e->text();
    if (e->modifiers() & (Qt::ControlModifier | Qt::AltModifier) || text.size() != 1 ||
        !text[0].isPrint() || text[0].unicode() >= 128)
        return false;
    const char c = text[0].toLatin1();
    auto* edit = qobject_cast<QLineEdit*>(field);
    if (!edit)
        return false;
    if (name == QLatin1String("Text33")) {
        // "-" becomes "/", as in the call field of the entry row.
        if (const auto f = entry::filterCallKey(c); f && *f != c) {
            edit->insert(QString(QChar(*f)));
            return true;
        }
        return false;
    }
    if (name == QLatin1String("Text44") || name == QLatin1String("Text66")) {
        const auto f = entry::filterReportKey(c);
        if (!f) {
            beeper_.beep();
            return true;
        }
        edit->insert(QString(QChar(*f)));
        return true;
    }
    if (name == QLatin1String("Text101")) {
        if (const auto v = entry::qslForKey(c))
            edit->setText(QString::fromStdString(*v));
        return true;
    }
    return false;
}

} // namespace orv::ui
