#pragma once

#include <QFrame>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace orv {
class Texts;
}

namespace orv::ui {

// A frame asking for a range of numbers: the range delete `Frame1` (boxes
// `Text12`, `Text11`, start `Command3`) and the ADIF export `Frame2` (boxes
// `Text13`, `Text14`, `Check1` for the whole log, start `Command4`).
class RangeFrame final : public QFrame {
    Q_OBJECT
public:
    enum class Kind { Delete, Export };
    RangeFrame(Kind kind, const Texts& texts, QWidget* parent = nullptr);

    QLineEdit* fromBox() const { return from_; }
    QLineEdit* toBox() const { return to_; }
    // Export only: Check1.
    bool wholeLog() const;
    void propose(long long from, long long to);

signals:
    void started();

private:
    QLineEdit* from_;
    QLineEdit* to_;
    QCheckBox* all_ = nullptr;
};

} // namespace orv::ui
