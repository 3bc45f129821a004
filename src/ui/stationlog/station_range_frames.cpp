#include "ui/stationlog/station_range_frames.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "core/i18n/texts.h"
#include "ui/captions.h"

namespace orv::ui {
namespace {

// Object names and text rows of the two frames.
struct FrameRows {
    const char *frame, *fromBox, *toBox, *start, *cancel;
    int title, fromLabel, toLabel, startText;
};
constexpr FrameRows kDelete{"Frame1", "Text12", "Text11", "Command3", "Command6",
                            386,      388,      389,      386};
constexpr FrameRows kExport{"Frame2", "Text13", "Text14", "Command4", "Command5",
                            419,      420,      421,      402};

} // namespace

RangeFrame::RangeFrame(Kind kind, const Texts& texts, QWidget* parent) : QFrame(parent) {
    const FrameRows& r = kind == Kind::Delete ? kDelete : kExport;
    setObjectName(r.frame);
    setFrameShape(QFrame::StyledPanel);
    auto* g = new QGridLayout(this);
    auto* title = captioned<QLabel>(r.title, texts, this);
    title->setObjectName(QString(r.frame) + "Caption");
    g->addWidget(title, 0, 0, 1, 2);
    int row = 1;
    if (kind == Kind::Delete) {
        g->addWidget(captioned<QLabel>(387, texts, this), row++, 0, 1, 2);
    } else {
        all_ = captioned<QCheckBox>(418, texts, this);
        all_->setObjectName("Check1");
        g->addWidget(all_, row++, 0, 1, 2);
    }
    from_ = new QLineEdit(this);
    from_->setObjectName(r.fromBox);
    to_ = new QLineEdit(this);
    to_->setObjectName(r.toBox);
    g->addWidget(captioned<QLabel>(r.fromLabel, texts, this), row, 0);
    g->addWidget(from_, row++, 1);
    g->addWidget(captioned<QLabel>(r.toLabel, texts, this), row, 0);
    g->addWidget(to_, row++, 1);
    auto* start = captioned<QPushButton>(r.startText, texts, this);
    start->setObjectName(r.start);
    auto* cancel = captioned<QPushButton>(364, texts, this);
    cancel->setObjectName(r.cancel);
    g->addWidget(start, row, 0);
    g->addWidget(cancel, row, 1);
    connect(start, &QPushButton::clicked, this, &RangeFrame::started);
    connect(cancel, &QPushButton::clicked, this, &QWidget::hide);
    if (all_) {
        connect(all_, &QCheckBox::toggled, this, [this](bool on) {
            from_->setEnabled(!on);
            to_->setEnabled(!on);
        });
    }
    QFrame::hide();
}

bool RangeFrame::wholeLog() const {
    return all_ && all_->isChecked();
}

void RangeFrame::propose(long long from, long long to) {
    from_->setText(QString::number(from));
    to_->setText(QString::number(to));
}

} // namespace orv::ui
