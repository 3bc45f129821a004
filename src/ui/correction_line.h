#pragma once

#include <QFrame>

#include "core/capture/capture.h"

class QKeyEvent;
class QLineEdit;

namespace orv {
class Beeper;
}

namespace orv::ui {

struct FieldColours;

// The correction line `Picture33` (`EditView`): a second entry line filled
// from a grid row. Enter stores the correction; Space walks like the entry
// row, the remark `Text99` taking blanks as text.
class CorrectionLine : public QFrame {
    Q_OBJECT
public:
    CorrectionLine(Beeper& beeper, QWidget* parent);

    // Fills the line from a grid row; `number` is the row's serial.
    void load(int gridRow, const EditRow& row, const QString& number);
    EditRow editRow() const;
    int gridRow() const { return gridRow_; }
    void forget() { gridRow_ = -1; }
    void setQrb(const QString& km);
    void setColours(const FieldColours& colours);

    QLineEdit* field(const char* name) const;
    QLineEdit* call() const { return field("Text33"); }
    QLineEdit* time() const { return field("Text22"); }
    QLineEdit* qsl() const { return field("Text101"); }
    // Every field that takes keys, combo boxes included.
    QList<QWidget*> fields() const;
    // A key in one of the fields; true when it was used up.
    bool fieldKey(QWidget* field, QKeyEvent* e);

signals:
    void commitRequested();
    void locatorEdited(const QString& locator);

private:
    Beeper& beeper_;
    int gridRow_ = -1;
    bool loading_ = false;
    QString name_;
};

} // namespace orv::ui
