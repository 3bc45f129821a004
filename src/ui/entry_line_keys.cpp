// The keyboard flow of the entry row: the space bar walks between fields,
// Enter commits, and each field lets through only what it may hold.
#include <QComboBox>
#include <QLineEdit>
#include <QTimer>

#include "core/capture/entry_rules.h"
#include "core/util/ports.h"
#include "ui/entry_line.h"
#include "ui/key_events.h"
#include "ui/widget_helpers.h"

namespace orv::ui {

void EntryLine::focusChanged(QWidget* field, bool in) {
    colourField(field, in);
    if (in)
        return;
    if (field == time_ && !clockRunning() && !time_->text().trimmed().isEmpty())
        normaliseTimeField();
    if (field == rstSent_)
        applyModeSwitch();
    if (field == call_ && call_->text().trimmed().size() > 2)
        emit callLeft(call_->text().trimmed().toUpper());
}

bool EntryLine::fieldKey(QWidget* field, QKeyEvent* e) {
    if (field == call_ || field == rstSent_ || field == rstReceived_ || field == time_)
        if (e->key() != Qt::Key_Shift && e->key() != Qt::Key_Control)
            emit typing();

    if (isEnter(e)) {
        if (!isCommitField(field))
            return false;
        if (field == time_ && !time_->isReadOnly())
            normaliseTimeField();
        if (field == rstSent_)
            applyModeSwitch();
        emit commitRequested();
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
                qsl_->setText(q(*v));
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
    if (field == date_)
        return typed && !typed->isDigit() && *typed != QChar(entry::kDateSep);
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

bool EntryLine::spaceWalk(QWidget* field, bool back) {
    struct Step {
        QWidget* target;
        bool all;
    };
    std::optional<Step> fwd, bwd;
    if (field == time_) {
        fwd = Step{datePanelVisible() ? static_cast<QWidget*>(date_) : call_, true};
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

bool EntryLine::isCommitField(QWidget* field) const {
    return field == time_ || field == call_ || field == rstSent_ || field == serialSent_ ||
           field == rstReceived_ || field == locator_ || field == qrb_ || field == qsl_ ||
           field == qtf_ || field == propagation_ || field == notice_;
}

void EntryLine::normaliseTimeField() {
    time_->setText(q(entry::normaliseTime(time_->text().toStdString())));
}

void EntryLine::applyModeSwitch() {
    if (!modeSwitch_)
        return;
    const auto mode = entry::modeForReport(rstSent_->text().toStdString(), mode2St_.toStdString(),
                                           mode3St_.toStdString());
    if (!mode)
        return;
    modeSwitching_ = true;
    setCurrentMode(q(*mode));
    modeSwitching_ = false;
}

} // namespace orv::ui
