#include "ui/beacon_row.h"

#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include "ui/widget_helpers.h"

namespace orv::ui {

BeaconRow::BeaconRow(QWidget* parent) : QWidget(parent) {
    auto* g = new QGridLayout(this);
    g->setContentsMargins(0, 0, 0, 0);

    lamps_[0] = new QFrame(this);
    lamps_[1] = new QFrame(this);
    for (int i = 0; i < 2; ++i) {
        QFrame* lamp = lamps_[static_cast<std::size_t>(i)];
        lamp->setObjectName(QString("Picture14(%1)").arg(i));
        lamp->setFrameShape(QFrame::Box);
        lamp->setFixedSize(12, 12);
        lamp->setAutoFillBackground(true);
        lamp->hide();
    }
    button_ = new QPushButton(this);
    button_->setObjectName("BakeEinAus");
    button_->setAutoFillBackground(true);
    g->addWidget(lamps_[0], 0, 0);
    g->addWidget(button_, 0, 1);
    g->addWidget(lamps_[1], 0, 2);

    time_ = makeLabel("Label33", this);
    time_->setText("00:00");
    time_->setAlignment(Qt::AlignCenter);
    count_ = makeLabel("Label34", this);
    count_->setText("0");
    count_->setAlignment(Qt::AlignCenter);
    g->addWidget(time_, 0, 3);
    g->addWidget(count_, 0, 4);

    // The options and the CW loop share the second line.
    optionFrame_ = new QFrame(this);
    optionFrame_->setObjectName("Picture8");
    auto* oh = new QHBoxLayout(optionFrame_);
    oh->setContentsMargins(0, 0, 0, 0);
    for (int i = 0; i < 2; ++i) {
        auto* o = new QRadioButton(optionFrame_);
        o->setObjectName(QString("Option1(%1)").arg(i));
        o->setFocusPolicy(Qt::NoFocus);
        options_[static_cast<std::size_t>(i)] = o;
        oh->addWidget(o);
    }
    g->addWidget(optionFrame_, 1, 0, 1, 3);
    loop_ = new QCheckBox(this);
    loop_->setObjectName("Check1");
    loop_->setFocusPolicy(Qt::NoFocus);
    loopLabel_ = makeLabel("Label35", this);
    loopLabel_->setBuddy(loop_);
    g->addWidget(loop_, 1, 3);
    g->addWidget(loopLabel_, 1, 4);
}

} // namespace orv::ui
