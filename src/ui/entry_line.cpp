#include "ui/entry_line.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QVBoxLayout>

#include "core/capture/entry_rules.h"
#include "core/util/ports.h"
#include "ui/widget_helpers.h"

namespace orv::ui {

EntryLine::EntryLine(Clock& clock, Beeper& beeper, QWidget* parent)
    : QFrame(parent), clock_(clock), beeper_(beeper) {
    setObjectName("Picture3");
    setFrameShape(QFrame::StyledPanel);
    auto* g = new QGridLayout(this);
    g->setContentsMargins(8, 4, 8, 6);
    g->setHorizontalSpacing(6);
    g->setVerticalSpacing(2);

    // The fields that log a QSO get a larger face: they are read all day.
    QFont big = font();
    if (big.pointSizeF() > 0)
        big.setPointSizeF(big.pointSizeF() * 1.35);
    else
        big.setPixelSize(big.pixelSize() * 135 / 100);
    big.setBold(true);

    int col = 0;
    auto add = [&](const char* label, QWidget* field, bool large = false) {
        g->addWidget(makeLabel(label, this), 0, col);
        if (large)
            field->setFont(big);
        g->addWidget(field, 1, col);
        return col++;
    };
    time_ = makeField("Text2", 5, this);
    add("Label6", time_, true);

    datePanel_ = new QWidget(this);
    datePanel_->setObjectName("Picture13");
    auto* dp = new QVBoxLayout(datePanel_);
    dp->setContentsMargins(0, 0, 0, 0);
    dp->setSpacing(2);
    dp->addWidget(makeLabel("LabelDate", datePanel_));
    date_ = makeField("Text1", 10, datePanel_);
    date_->setFont(big);
    dp->addWidget(date_);
    g->addWidget(datePanel_, 0, col++, 2, 1);
    datePanel_->hide();

    call_ = makeField("Text3", 10, this);
    add("Label2", call_, true);
    rstSent_ = makeField("Text4", 3, this);
    add("Label3", rstSent_, true);
    rstSent_->setText("59");
    serialSent_ = makeField("Text5", 4, this);
    serialSent_->setReadOnly(true);
    serialSent_->setFocusPolicy(Qt::ClickFocus);
    add("Label5", serialSent_, true);
    serialSent_->setText("001");
    rstReceived_ = makeField("Text6", 6, this);
    add("Label4", rstReceived_, true);
    locator_ = makeField("Text7", 6, this);
    add("Label7", locator_, true);
    qrb_ = makeField("Text8", 5, this);
    qrb_->setReadOnly(true);
    qrb_->setFocusPolicy(Qt::ClickFocus);
    add("Label8", qrb_, true);
    qtf_ = makeField("Text12", 4, this);
    qtf_->setReadOnly(true);
    qtf_->setFocusPolicy(Qt::ClickFocus);
    add("Label30", qtf_);
    notice_ = makeField("Text9", 14, this);
    const int noticeCol = add("Label10", notice_);
    g->setColumnStretch(noticeCol, 1);
    qsl_ = makeField("Text10", 3, this);
    qsl_->setText("No");
    add("Label9", qsl_);
    modeTx_ = makeCombo("Combo3", 4, false, this);
    add("LabelTxMode", modeTx_);
    modeRx_ = makeCombo("Combo2", 4, false, this);
    add("LabelRxMode", modeRx_);
    propagation_ = makeCombo("Combo6", 3, true, this);
    propagation_->lineEdit()->setMaxLength(3);
    add("LabelProp", propagation_);
    operator_ = makeCombo("Combo8", 8, true, this);
    add("LabelOperator", operator_);

    timer1_ = new QTimer(this);
    timer1_->setObjectName("Timer1");
    timer1_->setInterval(1000);
    connect(timer1_, &QTimer::timeout, this, &EntryLine::tickClock);
    timer1_->start();

    for (QLineEdit* e : {call_, locator_, rstSent_, rstReceived_, propagation_->lineEdit()})
        foldToUpper(e);
    connect(locator_, &QLineEdit::textChanged, this, [this](const QString& t) {
        emit typing();
        emit locatorEdited(t);
    });
    connect(call_, &QLineEdit::textChanged, this, &EntryLine::callEdited);
    for (QComboBox* box : {modeTx_, modeRx_})
        connect(box, &QComboBox::activated, this, [this] {
            if (!modeSwitching_)
                call_->setFocus(Qt::OtherFocusReason);
        });
}

QList<QWidget*> EntryLine::fields() const {
    return {time_, date_,   call_, rstSent_, serialSent_, rstReceived_, locator_, qrb_,
            qtf_,  notice_, qsl_,  modeTx_,  modeRx_,     propagation_, operator_};
}

bool EntryLine::ownsField(const QWidget* field) const {
    return field && isAncestorOf(field);
}

EntryRow EntryLine::entryRow() const {
    EntryRow r;
    r.call = call_->text().toStdString();
    r.rst = rstSent_->text().toStdString();
    r.serial = serialSent_->text().toStdString();
    r.rstNr = rstReceived_->text().toStdString();
    r.locator = locator_->text().toStdString();
    r.note = notice_->text().toStdString();
    r.qsl = qsl_->text().toStdString();
    r.time = time_->text().toStdString();
    r.date = date_->text().toStdString();
    r.datePanel = !datePanel_->isHidden();
    r.mode = modeTx_->currentText().toStdString();
    r.rxMode = modeRx_->currentText().toStdString();
    r.prop = propagation_->currentText().toStdString();
    r.op = operator_->currentText().toStdString();
    r.name = currentName_.toStdString();
    return r;
}

void EntryLine::setEntryRow(const EntryRow& r) {
    call_->setText(q(r.call));
    rstSent_->setText(q(r.rst));
    serialSent_->setText(q(r.serial));
    rstReceived_->setText(q(r.rstNr));
    locator_->setText(q(r.locator));
    notice_->setText(q(r.note));
    qsl_->setText(q(r.qsl));
    currentName_ = q(r.name);
    if (r.locator.empty())
        setPreview({}, {});
}

void EntryLine::clear() {
    call_->clear();
    rstSent_->setText(q(entry::nextReport(rstSent_->text().toStdString())));
    rstReceived_->clear();
    locator_->clear();
    qrb_->clear();
    notice_->clear();
    qsl_->setText("No");
    currentName_.clear();
    timer1_->start();
    // The computer's own time; the next tick adds the offset.
    time_->setText(q(clock_.now().timeHM()));
    focusField(call_, false);
}

void EntryLine::setFieldColours(const FieldColours& colours) {
    colours_ = colours;
    for (QWidget* w : fields())
        colourField(w, w->hasFocus());
}

void EntryLine::colourField(QWidget* field, bool focused) {
    if ((field == time_ && time_->isReadOnly()) || field == serialSent_ || field == qrb_ ||
        field == qtf_) {
        setBackground(field, colours_.noEdit);
        return;
    }
    const QColor c = focused ? colours_.aktiv : colours_.inAktiv;
    setBackground(field, c);
    if (auto* combo = qobject_cast<QComboBox*>(field); combo && combo->lineEdit())
        setBackground(combo->lineEdit(), c);
}

void EntryLine::setTimeEditable(bool editable) {
    time_->setReadOnly(!editable);
    time_->setFocusPolicy(editable ? Qt::StrongFocus : Qt::ClickFocus);
    if (!editable)
        startClock();
    colourField(time_, time_->hasFocus());
}

bool EntryLine::timeEditable() const {
    return !time_->isReadOnly();
}

void EntryLine::setModeSwitch(bool on, const QString& mode2St, const QString& mode3St) {
    modeSwitch_ = on;
    mode2St_ = mode2St;
    mode3St_ = mode3St;
}

void EntryLine::setCurrentMode(const QString& mode) {
    modeTx_->setCurrentText(mode);
    modeRx_->setCurrentText(mode);
}

void EntryLine::setPreview(const QString& km, const QString& bearing) {
    qrb_->setText(km);
    qtf_->setText(bearing);
}

void EntryLine::setNextSerial(const QString& serial) {
    serialSent_->setText(serial);
}

void EntryLine::setDatePanelVisible(bool on) {
    datePanel_->setVisible(on);
    if (on)
        date_->setText(q(clock_.now().addHours(zeitPlusMinus_).dateIso()));
}

bool EntryLine::datePanelVisible() const {
    return !datePanel_->isHidden();
}

void EntryLine::tickClock() {
    const QString now = q(clock_.now().addHours(zeitPlusMinus_).timeHM());
    if (time_->text() != now)
        time_->setText(now);
}

void EntryLine::startClock() {
    timer1_->start();
    tickClock();
}

void EntryLine::stopClock() {
    timer1_->stop();
}

bool EntryLine::clockRunning() const {
    return timer1_->isActive();
}

} // namespace orv::ui
