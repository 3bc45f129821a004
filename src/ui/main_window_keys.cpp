// The window's own keys: they act in every field of the entry row and the
// correction line before the field's rules see the key.
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QTableView>

#include "core/capture/entry_rules.h"
#include "core/i18n/texts.h"
#include "core/logstore/bands.h"
#include "core/reference/call_image.h"
#include "platform/qt_dialogs.h"
#include "ui/correction_line.h"
#include "ui/key_events.h"
#include "ui/log_grid_model.h"
#include "ui/log_panels.h"
#include "ui/main_window.h"
#include "ui/widget_helpers.h"

namespace orv::ui {

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget)
        return QMainWindow::eventFilter(watched, event);
    if (widget == grid_) {
        if (event->type() == QEvent::KeyPress) {
            auto* e = static_cast<QKeyEvent*>(event);
            if (isEnter(e)) {
                gridEnterPressed(selectedGridRow());
                return true;
            }
            // The grid would take letters for its search: the window's keys
            // and the publishing keys come first, as in the fields.
            return windowKey(e) || (onFormKeyPress && onFormKeyPress(e));
        }
        return QMainWindow::eventFilter(watched, event);
    }
    // The line edit inside an editable combo box speaks for its box.
    QWidget* field = widget;
    if (auto* combo = qobject_cast<QComboBox*>(widget->parentWidget()))
        field = combo;
    const bool inCorrection = correction_->isAncestorOf(field);

    switch (event->type()) {
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        if (!inCorrection)
            entry_->focusChanged(field, event->type() == QEvent::FocusIn);
        break;
    case QEvent::MouseButtonDblClick:
        if (field == entry_->qsl()) {
            QLineEdit* qsl = entry_->qsl();
            qsl->setText(q(entry::toggleQsl(qsl->text().toStdString())));
            return true;
        }
        break;
    case QEvent::KeyPress: {
        auto* e = static_cast<QKeyEvent*>(event);
        if (windowKey(e))
            return true;
        if (onFormKeyPress && onFormKeyPress(e))
            return true;
        if (inCorrection)
            return correction_->fieldKey(field, e);
        if (entry_->fieldKey(field, e))
            return true;
        break;
    }
    default:
        break;
    }
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::keyPressEvent(QKeyEvent* e) {
    // A key that the widget with the focus left alone (a button, a list, the
    // beacon row) still reaches the window's keys, wherever the focus is.
    if (windowKey(e) || (onFormKeyPress && onFormKeyPress(e))) {
        e->accept();
        return;
    }
    QMainWindow::keyPressEvent(e);
}

bool MainWindow::windowKey(QKeyEvent* e) {
    if (onCwKey && e->key() >= Qt::Key_F1 && e->key() <= Qt::Key_F12 && onCwKey(e))
        return true;
    if (onBeaconKey && (plain(e, Qt::Key_Pause) || ctrl(e, Qt::Key_B))) {
        onBeaconKey();
        return true;
    }
    const bool editing = editLineOpen();
    QLineEdit* call = entry_->call();
    // With the duplicate panel up, Return does not commit again: it and
    // Escape empty the entry line for the next station.
    if (isEnter(e) && panels_->duplicateShown() && !editing) {
        clearEntryLine(true);
        return true;
    }
    if (plain(e, Qt::Key_Escape)) {
        if (panels_->comparisonShown() && !editing) {
            panels_->hideComparison();
            focusField(call, false);
            return true;
        }
        if (editing) {
            closeEditLine(false);
            return true;
        }
        if (panels_->duplicateShown()) {
            clearEntryLine(true);
            return true;
        }
        if (panels_->workedElsewhereShown()) {
            panels_->hideWorkedElsewhere();
            focusField(call, false);
            return true;
        }
        return false;
    }
    if (ctrl(e, Qt::Key_L)) {
        if (onSquareWindow)
            onSquareWindow();
        return true;
    }
    if (onRotatorKey && e->key() == Qt::Key_R) {
        const auto mods = e->modifiers() & ~Qt::KeypadModifier;
        if (mods == Qt::ControlModifier || mods == (Qt::ControlModifier | Qt::ShiftModifier)) {
            onRotatorKey(mods != Qt::ControlModifier);
            return true;
        }
    }
    if (ctrl(e, Qt::Key_N)) {
        const auto name = platform::QtDialogs::input(this, texts_(22), texts_(22),
                                                     entry_->currentName().toStdString());
        entry_->setCurrentName(name ? q(*name).left(100) : QString());
        return true;
    }
    if (ctrl(e, Qt::Key_Q)) {
        QLineEdit* target = editing ? correction_->qsl() : entry_->qsl();
        target->setText(q(entry::toggleQsl(target->text().toStdString())));
        return true;
    }
    if (ctrl(e, Qt::Key_O) && !editing) {
        focusField(entry_->operatorBox(), true);
        return true;
    }
    if (ctrl(e, Qt::Key_T) && editing) {
        focusField(correction_->time(), true);
        return true;
    }
    if (plain(e, Qt::Key_F1)) {
        showKeyHelp();
        return true;
    }
    if ((plain(e, Qt::Key_F5) || plain(e, Qt::Key_F6)) && !editing) {
        const int next = currentBand() + (e->key() == Qt::Key_F5 ? -1 : 1);
        if (next < 0 || next >= kBandCount) {
            beeper_.beep();
        } else {
            selectBand(next);
            focusField(call, false);
        }
        return true;
    }
    if ((plain(e, Qt::Key_F10) || ctrl(e, Qt::Key_W)) && !editing) {
        clearEntryLine();
        return true;
    }
    if ((plain(e, Qt::Key_F8) || plain(e, Qt::Key_F9)) && side_->lookupList()->count() > 0) {
        takeLookupLine(e->key() == Qt::Key_F8, true);
        return true;
    }
    if (plain(e, Qt::Key_F2) && !editing) {
        call->setText(lastCall_);
        call->end(false);
        entry_->locator()->setText(lastLocator_);
        entry_->locator()->end(false);
        return true;
    }
    if (plain(e, Qt::Key_F7)) {
        if (onStationLog)
            onStationLog();
        return true;
    }
    if (plain(e, Qt::Key_F11) && panels_->duplicateShown()) {
        if (onResolveDuplicate)
            onResolveDuplicate();
        return true;
    }
    return false;
}

void MainWindow::takeLookupLine(bool withCall, bool byKey) {
    const QListWidget* list = side_->lookupList();
    if (list->count() == 0)
        return;
    const QListWidgetItem* item = list->currentItem() ? list->currentItem() : list->item(0);
    const std::string row = item->text().toStdString();
    const bool editing = editLineOpen();
    QLineEdit* callField = editing ? correction_->call() : entry_->call();
    QLineEdit* locField = editing ? correction_->field("Text77") : entry_->locator();
    locField->setText(q(listLineLocator(row)));
    if (!withCall)
        return;
    const QString taken = q(listLineCall(row)).trimmed().toUpper();
    callField->setText(taken);
    // The tests run whichever field has the focus, not only when the call
    // field is left; F8 tests for a duplicate only in a band with QSOs.
    if (taken.size() > 2)
        emit lookupCallTaken(taken, !byKey || gridModel_->rowCount() > 0);
    focusField(editing ? correction_->field("Text44") : entry_->rstSent(), true);
}

} // namespace orv::ui
