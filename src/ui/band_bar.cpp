#include "ui/band_bar.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "core/logstore/bands.h"
#include "ui/widget_helpers.h"

namespace orv::ui {

BandBar::BandBar(QWidget* parent) : QFrame(parent) {
    setObjectName("Picture1");
    auto* h = new QHBoxLayout(this);
    h->setContentsMargins(0, 0, 0, 0);
    h->setSpacing(4);
    for (int i = 0; i < kBandCount; ++i) {
        auto* b =
            new QPushButton(q(std::string(kBands[static_cast<std::size_t>(i)].caption)), this);
        b->setObjectName(QString("BandSel%1").arg(i));
        b->setFocusPolicy(Qt::NoFocus);
        b->setAutoFillBackground(true);
        b->setMinimumWidth(b->fontMetrics().horizontalAdvance("70 cmW") + 12);
        connect(b, &QPushButton::clicked, this, [this, i] {
            selectBand(i);
            emit buttonPressed(i);
        });
        buttons_[static_cast<std::size_t>(i)] = b;
        h->addWidget(b);
    }
    bandBox_ = new QComboBox(this);
    bandBox_->setObjectName("Combo1");
    for (const Band& b : kBands)
        bandBox_->addItem(q(std::string(b.boxText)));
    bandBox_->setFocusPolicy(Qt::NoFocus);
    connect(bandBox_, &QComboBox::currentIndexChanged, this, [this](int i) {
        paint();
        if (i >= 0)
            emit bandChanged(i);
    });
    h->addWidget(bandBox_);
    h->addSpacing(12);
    h->addStretch(1);
    h->addWidget(makeLabel("LabelOwnCall", this));
    ownCall_ = makeField("Text11", 8, this);
    ownCall_->setReadOnly(true);
    ownCall_->setFocusPolicy(Qt::NoFocus);
    h->addWidget(ownCall_);
    h->addWidget(makeLabel("LabelOwnLocator", this));
    ownLocator_ = makeField("Text13", 6, this);
    ownLocator_->setReadOnly(true);
    ownLocator_->setFocusPolicy(Qt::NoFocus);
    h->addWidget(ownLocator_);
}

void BandBar::selectBand(int index) {
    if (index < 0 || index >= kBandCount)
        return;
    if (bandBox_->currentIndex() == index)
        paint();
    else
        bandBox_->setCurrentIndex(index);
}

int BandBar::currentBand() const {
    return bandBox_->currentIndex();
}

void BandBar::setBandHasQsos(int index, bool has) {
    if (index < 0 || index >= kBandCount)
        return;
    hasQsos_[static_cast<std::size_t>(index)] = has;
    paint();
}

bool BandBar::bandHasQsos(int index) const {
    return index >= 0 && index < kBandCount && hasQsos_[static_cast<std::size_t>(index)];
}

void BandBar::setQsoColour(const QColor& c) {
    qsoColour_ = c;
    paint();
}

void BandBar::setOwnStation(const QString& call, const QString& locator) {
    ownCall_->setText(call);
    ownLocator_->setText(locator);
}

void BandBar::setWorkedOn(const std::bitset<10>& bands) {
    if (bands == workedOn_)
        return;
    workedOn_ = bands;
    paint();
}

void BandBar::paint() {
    const int current = bandBox_ ? bandBox_->currentIndex() : -1;
    for (int i = 0; i < kBandCount; ++i) {
        QPushButton* b = buttons_[static_cast<std::size_t>(i)];
        if (!b)
            continue;
        const QString frame = workedOn_.test(static_cast<std::size_t>(i))
                                  ? QStringLiteral(" border: 3px solid rgb(0,150,0);")
                                  : QString();
        if (i == current)
            b->setStyleSheet("QPushButton { background: rgb(255,0,0); color: white; "
                             "font-weight: bold;" +
                             frame + " }");
        else if (hasQsos_[static_cast<std::size_t>(i)])
            b->setStyleSheet(
                QString("QPushButton { background: %1;%2 }").arg(qsoColour_.name(), frame));
        else
            b->setStyleSheet(frame.isEmpty() ? QString() : "QPushButton {" + frame + " }");
    }
}

} // namespace orv::ui
