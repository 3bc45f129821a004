// The keyboard flow of the entry row: the space bar walks between fields,
// Enter commits, and the window's keys act before a field sees them.
#include <QComboBox>
#include <QFocusEvent>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTableView>
#include <QTimer>

#include "core/capture/entry_rules.h"
#include "core/i18n/texts.h"
#include "core/logstore/bands.h"
#include "core/reference/call_image.h"
#include "core/util/ports.h"
#include "platform/qt_dialogs.h"
#include "ui/main_window.h"

namespace orv::ui {
namespace {

// A key that types a character, as opposed to navigation and shortcuts.
std::optional<QChar> typedChar(const QKeyEvent* e) {
    if (e->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return std::nullopt;
    const QString t = e->text();
    if (t.size() != 1 || t[0].unicode() < 32 || t[0].unicode() == 127)
        return std::nullopt;
    return t[0];
}

bool isEnter(const QKeyEvent* e) {
    return e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter;
}

bool ctrl(const QKeyEvent* e, int key) {
    return e->key() == key && (e->modifiers() & ~Qt::KeypadModifier) == Qt::ControlModifier;
}

bool plain(const QKeyEvent* e, int key) {
    return e->key() == key && (e->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

} // namespace

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget)
        return QMainWindow::eventFilter(watched, event);
    if (widget == grid_ && event->type() == QEvent::KeyPress) {
        auto* e = static_cast<QKeyEvent*>(event);
        if (isEnter(e)) {
            gridEnterPressed(selectedGridRow());
            return true;
        }
    }
    if (event->type() == QEvent::MouseButtonRelease && qobject_cast<QLabel*>(widget)) {
        const QString name = widget->objectName();
        if (name == "Label17" || name == "Label21")
            emit odxRequested();
        else if ((name == "Label27" || name == "Label28") && onSquareWindow)
            onSquareWindow();
        else if (widget == rate_)
            emit rateSettingsRequested();
        return QMainWindow::eventFilter(watched, event);
    }
    // The line edit inside an editable combo box speaks for its box.
    QWidget* field = widget;
    if (auto* combo = qobject_cast<QComboBox*>(widget->parentWidget()))
        field = combo;

    if (field == maxBake_ && event->type() == QEvent::KeyPress) {
        // Digits and Backspace only, four at most.
        const auto typed = typedChar(static_cast<QKeyEvent*>(event));
        if (typed) {
            QLineEdit* e = maxBake_->lineEdit();
            return !typed->isDigit() || e->text().size() - e->selectedText().size() >= 4;
        }
        return false;
    }

    switch (event->type()) {
    case QEvent::FocusIn:
        if (field->parentWidget() != correctionLine_)
            colourField(field, true);
        break;
    case QEvent::FocusOut:
        if (field->parentWidget() == correctionLine_)
            break;
        colourField(field, false);
        if (field == time_ && !clockRunning() && !time_->text().trimmed().isEmpty())
            normaliseTimeField();
        if (field == rstSent_)
            applyModeSwitch();
        if (field == call_ && call_->text().trimmed().size() > 2)
            emit callLeft(call_->text().trimmed().toUpper());
        break;
    case QEvent::MouseButtonDblClick:
        if (field == qsl_) {
            qsl_->setText(QString::fromStdString(entry::toggleQsl(qsl_->text().toStdString())));
            return true;
        }
        break;
    case QEvent::KeyPress: {
        auto* e = static_cast<QKeyEvent*>(event);
        if (windowKey(e))
            return true;
        if (field->parentWidget() == correctionLine_)
            return editFieldKey(field, e);
        if (fieldKey(field, e))
            return true;
        break;
    }
    default:
        break;
    }
    return QMainWindow::eventFilter(watched, event);
}

bool MainWindow::windowKey(QKeyEvent* e) {
    const bool editing = editLineOpen();
    if (plain(e, Qt::Key_Escape)) {
        if (comparison_->isVisible() && !editing) {
            comparison_->hide();
            focusField(call_, false);
            return true;
        }
        if (editing) {
            closeEditLine(false);
            return true;
        }
        if (workedElsewhere_->isVisible()) {
            workedElsewhere_->hide();
            focusField(call_, false);
            return true;
        }
        return false;
    }
    if (ctrl(e, Qt::Key_L)) {
        if (onSquareWindow)
            onSquareWindow();
        return true;
    }
    if (ctrl(e, Qt::Key_N)) {
        const auto name =
            platform::QtDialogs::input(this, texts_(22), texts_(22), currentName_.toStdString());
        currentName_ = name ? QString::fromStdString(*name).left(100) : QString();
        return true;
    }
    if (ctrl(e, Qt::Key_Q)) {
        QLineEdit* target = editing ? editQsl_ : qsl_;
        target->setText(QString::fromStdString(entry::toggleQsl(target->text().toStdString())));
        return true;
    }
    if (ctrl(e, Qt::Key_O) && !editing) {
        focusField(operator_, true);
        return true;
    }
    if (ctrl(e, Qt::Key_T) && editing) {
        focusField(editTime_, true);
        return true;
    }
    if (plain(e, Qt::Key_F1)) {
        showKeyHelp();
        return true;
    }
    if (plain(e, Qt::Key_F5) && !editing) {
        stepBand(-1);
        return true;
    }
    if (plain(e, Qt::Key_F6) && !editing) {
        stepBand(+1);
        return true;
    }
    if ((plain(e, Qt::Key_F10) || ctrl(e, Qt::Key_W)) && !editing) {
        clearEntryLine();
        return true;
    }
    if ((plain(e, Qt::Key_F8) || plain(e, Qt::Key_F9)) && lookupList_->count() > 0) {
        const QListWidgetItem* item = lookupList_->currentItem();
        if (!item)
            item = lookupList_->item(0);
        const std::string row = item->text().toStdString();
        const QString rowCall = QString::fromStdString(listLineCall(row));
        const QString rowLocator = QString::fromStdString(listLineLocator(row));
        QLineEdit* callField = editing ? findChild<QLineEdit*>("Text33") : call_;
        QLineEdit* locField = editing ? findChild<QLineEdit*>("Text77") : locator_;
        locField->setText(rowLocator);
        if (e->key() == Qt::Key_F8) {
            callField->setText(rowCall);
            focusField(editing ? findChild<QLineEdit*>("Text44") : rstSent_, true);
        }
        return true;
    }
    if (plain(e, Qt::Key_F2) && !editing) {
        call_->setText(lastCall_);
        call_->end(false);
        locator_->setText(lastLocator_);
        locator_->end(false);
        return true;
    }
    if (plain(e, Qt::Key_F11) && duplicatePanel_->isVisible()) {
        if (onResolveDuplicate)
            onResolveDuplicate();
        return true;
    }
    return false;
}

bool MainWindow::fieldKey(QWidget* field, QKeyEvent* e) {
    if (field->parentWidget() == correctionLine_)
        return false;
    if (field == call_ || field == rstSent_ || field == rstReceived_ || field == time_)
        if (e->key() != Qt::Key_Shift && e->key() != Qt::Key_Control)
            status_->clear();

    if (isEnter(e)) {
        if (!isCommitField(field))
            return false;
        commitFrom(field);
        return true;
    }
    if (e->key() == Qt::Key_Space && field != notice_) {
        const bool back = e->modifiers() & Qt::ShiftModifier;
        if (spaceWalk(field, back))
            return true;
    }
    if (e->key() == Qt::Key_Backtab && (field == time_ || field == call_)) {
        focusField(qsl_, true);
        return true;
    }

    const std::optional<QChar> typed = typedChar(e);
    if (field == qsl_) {
        if (e->key() == Qt::Key_Tab && e->modifiers() == Qt::NoModifier) {
            focusField(timeEditable() ? static_cast<QWidget*>(time_) : call_, true);
            return true;
        }
        // The field holds "Yes" or "No" and nothing else.
        if (typed) {
            if (auto v = entry::qslForKey(typed->toLatin1()))
                qsl_->setText(QString::fromStdString(*v));
            return true;
        }
        return e->key() == Qt::Key_Backspace || e->key() == Qt::Key_Delete;
    }
    if (field == time_) {
        if (time_->isReadOnly())
            return false;
        if (typed || e->key() == Qt::Key_Backspace)
            timer1_->stop();
        if (typed && !typed->isDigit()) {
            beeper_.beep();
            return true;
        }
        return false;
    }
    if (field == date_) {
        return typed && !typed->isDigit() && *typed != QChar(entry::kDateSep);
    }
    if (!typed)
        return false;
    if (field == call_) {
        const auto c = entry::filterCallKey(typed->toLatin1());
        if (typed->unicode() < 128 && c && *c != typed->toLatin1()) {
            call_->insert(QString(QChar(*c)));
            return true;
        }
        return !c.has_value();
    }
    if (field == rstSent_ || field == rstReceived_) {
        const auto c =
            typed->unicode() < 128 ? entry::filterReportKey(typed->toLatin1()) : std::nullopt;
        if (!c) {
            beeper_.beep();
            return true;
        }
        static_cast<QLineEdit*>(field)->insert(QString(QChar(*c)));
        return true;
    }
    if (field == locator_) {
        locator_->insert(typed->toUpper());
        return true;
    }
    if (field == propagation_) {
        QLineEdit* edit = propagation_->lineEdit();
        if (edit->text().size() - edit->selectedText().size() >= 3) {
            beeper_.beep();
            return true;
        }
        edit->insert(typed->toUpper());
        return true;
    }
    return false;
}

bool MainWindow::spaceWalk(QWidget* field, bool back) {
    struct Step {
        QWidget* target;
        bool all;
    };
    std::optional<Step> fwd, bwd;
    if (field == time_) {
        fwd = Step{datePanel_->isVisible() ? static_cast<QWidget*>(date_) : call_, true};
        bwd = Step{locator_, false};
    } else if (field == date_) {
        fwd = Step{call_, true};
        bwd = Step{time_, false};
    } else if (field == call_) {
        fwd = Step{rstSent_, false};
        bwd = Step{locator_, false};
    } else if (field == rstSent_) {
        fwd = Step{rstReceived_, true};
        bwd = Step{call_, false};
    } else if (field == serialSent_) {
        fwd = Step{rstReceived_, true};
        bwd = Step{rstSent_, true};
    } else if (field == rstReceived_) {
        fwd = Step{locator_, true};
        bwd = Step{rstSent_, true};
    } else if (field == locator_) {
        fwd = Step{call_, true};
        bwd = Step{rstReceived_, false};
    } else if (field == qrb_ || field == qsl_ || field == qtf_ || field == propagation_) {
        fwd = Step{call_, field == qrb_};
        bwd = Step{locator_, false};
    } else {
        return false;
    }
    const Step& s = back ? *bwd : *fwd;
    focusField(s.target, s.all);
    // From the call the report is entered from its start, so "59" stays.
    if (field == call_ && !back)
        rstSent_->setCursorPosition(0);
    return true;
}

bool MainWindow::isCommitField(QWidget* field) const {
    return field == time_ || field == call_ || field == rstSent_ || field == serialSent_ ||
           field == rstReceived_ || field == locator_ || field == qrb_ || field == qsl_ ||
           field == qtf_ || field == propagation_ || field == notice_;
}

void MainWindow::commitFrom(QWidget* field) {
    if (field == time_ && !time_->isReadOnly())
        normaliseTimeField();
    if (field == rstSent_)
        applyModeSwitch();
    if (onCommit)
        onCommit();
}

void MainWindow::normaliseTimeField() {
    time_->setText(QString::fromStdString(entry::normaliseTime(time_->text().toStdString())));
}

void MainWindow::applyModeSwitch() {
    if (!modeSwitch_)
        return;
    const auto mode = entry::modeForReport(rstSent_->text().toStdString(), mode2St_.toStdString(),
                                           mode3St_.toStdString());
    if (!mode)
        return;
    modeSwitching_ = true;
    setCurrentMode(QString::fromStdString(*mode));
    modeSwitching_ = false;
}

void MainWindow::stepBand(int delta) {
    const int next = currentBand() + delta;
    if (next < 0 || next >= kBandCount) {
        beeper_.beep();
        return;
    }
    selectBand(next);
    focusField(call_, false);
}

void MainWindow::clearEntryLine() {
    call_->clear();
    rstSent_->setText(QString::fromStdString(entry::nextReport(rstSent_->text().toStdString())));
    rstReceived_->clear();
    locator_->clear();
    qrb_->clear();
    notice_->clear();
    qsl_->setText("No");
    currentName_.clear();
    status_->clear();
    duplicatePanel_->hide();
    workedElsewhere_->hide();
    timer1_->start();
    // The computer's own time; the next tick adds the offset.
    time_->setText(QString::fromStdString(clock_.now().timeHM()));
    focusField(call_, false);
}

} // namespace orv::ui
