#pragma once

#include <QWidget>
#include <array>

class QCheckBox;
class QFrame;
class QLabel;
class QPushButton;
class QRadioButton;

namespace orv::ui {

// The beacon's controls in the side panel: the button `BakeEinAus`, the
// option frame `Picture8` with `Option1(0)` (once) and `Option1(1)` (loop
// with pause), the CW loop `Check1` with its label `Label35`, the time
// `Label33`, the count `Label34` and the two lamps `Picture14(0)` and
// `Picture14(1)` of the CW loop pause. The beacon binding fills and drives them.
class BeaconRow : public QWidget {
    Q_OBJECT
public:
    explicit BeaconRow(QWidget* parent);

    QPushButton* button() const { return button_; }
    QFrame* optionFrame() const { return optionFrame_; }
    QRadioButton* option(int i) const { return options_[static_cast<std::size_t>(i)]; }
    QCheckBox* loopBox() const { return loop_; }
    QLabel* loopLabel() const { return loopLabel_; }
    QLabel* timeLabel() const { return time_; }
    QLabel* countLabel() const { return count_; }
    QFrame* lamp(int i) const { return lamps_[static_cast<std::size_t>(i)]; }

private:
    QPushButton* button_ = nullptr;
    QFrame* optionFrame_ = nullptr;
    std::array<QRadioButton*, 2> options_{};
    QCheckBox* loop_ = nullptr;
    QLabel* loopLabel_ = nullptr;
    QLabel* time_ = nullptr;
    QLabel* count_ = nullptr;
    std::array<QFrame*, 2> lamps_{};
};

} // namespace orv::ui
