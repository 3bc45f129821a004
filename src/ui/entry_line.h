#pragma once

#include <QColor>
#include <QFrame>
#include <optional>

#include "core/capture/capture.h"

class QComboBox;
class QKeyEvent;
class QLineEdit;
class QTimer;

namespace orv {
class Beeper;
class Clock;
} // namespace orv

namespace orv::ui {

// The four colours of the entry row, as the options store them.
struct FieldColours {
    QColor aktiv{255, 192, 128};
    QColor inAktiv{224, 224, 224};
    QColor noEdit{224, 224, 224};
    QColor bereitsQso{224, 224, 224};
};

// The entry row `Picture3`: the fields of the QSO in hand, the date panel
// `Picture13` and the clock `Timer1` that writes the log time into `Text2`.
// It walks its fields with the space bar and filters what is typed; the
// window's own keys are handled before it sees them.
class EntryLine : public QFrame {
    Q_OBJECT
public:
    EntryLine(Clock& clock, Beeper& beeper, QWidget* parent);

    EntryRow entryRow() const;
    void setEntryRow(const EntryRow& row);
    // Empties the row for the next QSO (F10, Ctrl+W, Escape on a duplicate).
    void clear();

    // The fields, for the window's keys and its bindings.
    QLineEdit* time() const { return time_; }
    QLineEdit* date() const { return date_; }
    QLineEdit* call() const { return call_; }
    QLineEdit* rstSent() const { return rstSent_; }
    QLineEdit* locator() const { return locator_; }
    QLineEdit* qsl() const { return qsl_; }
    QComboBox* propagation() const { return propagation_; }
    QComboBox* operatorBox() const { return operator_; }
    // Every field that takes keys, combo boxes included.
    QList<QWidget*> fields() const;
    bool ownsField(const QWidget* field) const;

    // A field's colour follows its focus.
    void focusChanged(QWidget* field, bool in);
    // A key in one of the fields; true when it was used up.
    bool fieldKey(QWidget* field, QKeyEvent* e);

    void setFieldColours(const FieldColours& colours);
    void setTimeEditable(bool editable);
    bool timeEditable() const;
    void setZeitPlusMinus(int hours) { zeitPlusMinus_ = hours; }
    void setModeSwitch(bool on, const QString& mode2St, const QString& mode3St);
    void setCurrentMode(const QString& mode);
    void setPreview(const QString& km, const QString& bearing);
    void setNextSerial(const QString& serial);
    void setDatePanelVisible(bool on);
    bool datePanelVisible() const;

    // `Timer1`: one tick writes the log time; typing a time stops it.
    void tickClock();
    void startClock();
    void stopClock();
    bool clockRunning() const;

    QString currentName() const { return currentName_; }
    void setCurrentName(const QString& name) { currentName_ = name; }

signals:
    // Enter in a field that commits.
    void commitRequested();
    // A key that changes the QSO in hand: the status line is cleared.
    void typing();
    void callLeft(const QString& call);
    void callEdited();
    void locatorEdited(const QString& locator);

private:
    void colourField(QWidget* field, bool focused);
    bool spaceWalk(QWidget* field, bool back);
    bool isCommitField(QWidget* field) const;
    void normaliseTimeField();
    void applyModeSwitch();

    Clock& clock_;
    Beeper& beeper_;
    FieldColours colours_;
    int zeitPlusMinus_ = 0;
    bool modeSwitch_ = false;
    bool modeSwitching_ = false;
    QString mode2St_ = "SSB";
    QString mode3St_ = "CW";
    QString currentName_;

    QWidget* datePanel_ = nullptr;
    QLineEdit* time_ = nullptr;
    QLineEdit* date_ = nullptr;
    QLineEdit* call_ = nullptr;
    QLineEdit* rstSent_ = nullptr;
    QLineEdit* serialSent_ = nullptr;
    QLineEdit* rstReceived_ = nullptr;
    QLineEdit* locator_ = nullptr;
    QLineEdit* qrb_ = nullptr;
    QLineEdit* qtf_ = nullptr;
    QLineEdit* notice_ = nullptr;
    QLineEdit* qsl_ = nullptr;
    QComboBox* modeTx_ = nullptr;
    QComboBox* modeRx_ = nullptr;
    QComboBox* propagation_ = nullptr;
    QComboBox* operator_ = nullptr;
    QTimer* timer1_ = nullptr;
};

} // namespace orv::ui
