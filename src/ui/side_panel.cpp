#include "ui/side_panel.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

#include "ui/beacon_row.h"
#include "ui/key_events.h"
#include "ui/widget_helpers.h"

namespace orv::ui {

SidePanel::SidePanel(QWidget* parent) : QWidget(parent) {
    setObjectName("Picture5Side");
    auto* v = new QVBoxLayout(this);
    v->setContentsMargins(0, 0, 0, 0);

    statistics_ = new QGroupBox(this);
    statistics_->setObjectName("Frame1");
    auto* g = new QGridLayout(statistics_);
    QFont value = font();
    value.setBold(true);
    if (value.pointSizeF() > 0)
        value.setPointSizeF(value.pointSizeF() * 1.25);
    const std::pair<const char*, const char*> rows[] = {
        {"Label14", "Label18"}, {"Label15", "Label19"}, {"Label16", "Label20"},
        {"Label17", "Label21"}, {"Label27", "Label28"}, {"Label32", "Label31"},
    };
    int r = 0;
    for (const auto& [caption, number] : rows) {
        g->addWidget(makeLabel(caption, statistics_), r, 0);
        QLabel* n = makeLabel(number, statistics_);
        n->setFont(value);
        n->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        n->setText("0");
        g->addWidget(n, r++, 1);
    }
    v->addWidget(statistics_);
    for (const char* name : {"Label17", "Label21", "Label27", "Label28"})
        statistics_->findChild<QLabel*>(name)->installEventFilter(this);

    auto* meter = new QFrame(this);
    meter_ = meter;
    meter->setObjectName("Picture7");
    meter->setFrameShape(QFrame::StyledPanel);
    auto* mh = new QHBoxLayout(meter);
    mh->addWidget(makeLabel("LabelRate", meter));
    rate_ = makeLabel("ZeigerZahl", meter);
    rate_->setAlignment(Qt::AlignCenter);
    rate_->setFont(value);
    rate_->setMinimumWidth(rate_->fontMetrics().horizontalAdvance("00000") + 12);
    rate_->setAutoFillBackground(true);
    rate_->setText("0");
    rate_->installEventFilter(this);
    mh->addWidget(rate_);
    v->addWidget(meter);
    v->addWidget(buildBeaconRow());

    lookupList_ = new QListWidget(this);
    lookupList_->setObjectName("List1");
    QFont mono("monospace");
    mono.setStyleHint(QFont::Monospace);
    lookupList_->setFont(mono);
    lookupList_->setFocusPolicy(Qt::NoFocus);
    lookupList_->setMinimumWidth(lookupList_->fontMetrics().horizontalAdvance(QString(34, 'W')));
    v->addWidget(lookupList_, 1);
}

QWidget* SidePanel::buildBeaconRow() {
    auto* panel = new QFrame(this);
    panel->setObjectName("PictureBake");
    panel->setFrameShape(QFrame::StyledPanel);
    auto* row = new QHBoxLayout(panel);
    beaconRow_ = new BeaconRow(panel);
    row->addWidget(beaconRow_, 1);
    auto* h = new QVBoxLayout;
    row->addLayout(h);
    QLabel* caption = makeLabel("LabelMaxBake", panel);
    h->addWidget(caption);
    maxBake_ = new QComboBox(panel);
    maxBake_->setObjectName("Combo10");
    maxBake_->setEditable(true);
    maxBake_->setInsertPolicy(QComboBox::NoInsert);
    for (const char* n : {"1", "5", "10", "50", "100", "500", "1000"})
        maxBake_->addItem(n);
    maxBake_->lineEdit()->setMaxLength(4);
    maxBake_->lineEdit()->installEventFilter(this);
    // Pasted text keeps its digits only, four at most.
    connect(maxBake_->lineEdit(), &QLineEdit::textEdited, maxBake_, [this](const QString& t) {
        QString digits;
        for (QChar c : t)
            if (c.isDigit())
                digits += c;
        digits = digits.left(4);
        if (digits != t)
            maxBake_->lineEdit()->setText(digits);
    });
    h->addWidget(maxBake_);
    return panel;
}

bool SidePanel::eventFilter(QObject* watched, QEvent* event) {
    if (watched == maxBake_->lineEdit() && event->type() == QEvent::KeyPress) {
        // Digits and Backspace only, four at most.
        if (const auto typed = typedChar(static_cast<QKeyEvent*>(event))) {
            const QLineEdit* e = maxBake_->lineEdit();
            return !typed->isDigit() || e->text().size() - e->selectedText().size() >= 4;
        }
        return false;
    }
    if (event->type() == QEvent::MouseButtonRelease) {
        const QString name = watched->objectName();
        if (name == "Label17" || name == "Label21")
            emit odxClicked();
        else if (name == "Label27" || name == "Label28")
            emit squaresClicked();
        else if (watched == rate_)
            emit rateClicked();
    }
    return QWidget::eventFilter(watched, event);
}

void SidePanel::setBandFigures(const BandFigures& f) {
    auto set = [this](const char* name, const QString& text) {
        statistics_->findChild<QLabel*>(name)->setText(text);
    };
    set("Label18", QString::number(f.lastQsoNr));
    set("Label19", QString::number(f.pGesamt));
    set("Label20", f.kmPerQso);
    set("Label21", QString::number(f.odx));
    set("Label28", QString::number(f.squares));
    set("Label31", QString::number(f.deleted));
}

void SidePanel::setRate(const std::optional<RateReading>& reading) {
    if (!reading)
        return;
    rate_->setText(QString::number(reading->count));
    QPalette p = rate_->palette();
    p.setColor(QPalette::Window, QColor(reading->color.r, reading->color.g, reading->color.b));
    p.setColor(QPalette::WindowText, Qt::black);
    rate_->setPalette(p);
}

void SidePanel::setStatisticsEnabled(bool on) {
    statistics_->setEnabled(on);
    meter_->setEnabled(on);
}

void SidePanel::setMaxBake(int n) {
    maxBake_->setEditText(QString::number(n));
}

int SidePanel::maxBake() const {
    return maxBake_->currentText().toInt();
}

void SidePanel::setLookupLines(const QStringList& lines) {
    lookupList_->setUpdatesEnabled(false);
    lookupList_->clear();
    lookupList_->addItems(lines);
    if (!lines.isEmpty())
        lookupList_->setCurrentRow(0);
    lookupList_->setUpdatesEnabled(true);
}

} // namespace orv::ui
