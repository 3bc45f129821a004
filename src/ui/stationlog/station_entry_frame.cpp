#include "ui/stationlog/station_entry_frame.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "core/i18n/texts.h"
#include "core/stationlog/station_settings.h"
#include "ui/captions.h"

namespace orv::ui {
namespace {

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

// The boxes in the order of the table: control, field size, label row.
struct BoxRow {
    const char* control;
    int size;
    int textRow;
};
constexpr BoxRow kBoxRows[] = {
    {"Text1", 10, 159},  {"Text2", 8, 150},   {"Text3", 15, 151},   {"Text5", 3, 372},
    {"Text4", 3, 371},   {"Text6", 6, 155},   {"Combo6", 15, 373},  {"Combo7", 15, 374},
    {"Combo4", 10, 160}, {"Combo5", 10, 161}, {"Combo1", 10, 176},  {"Combo2", 2, 157},
    {"Text7", 15, 375},  {"Text8", 30, 22},   {"Combo3", 15, 171},  {"Combo8", 6, 172},
    {"Combo10", 6, 376}, {"Combo9", 30, 139}, {"Text10", 255, 158},
};

// The propagation codes with the row of their tool tip.
constexpr std::pair<const char*, int> kPropagationTips[] = {
    {"AUR", 550}, {"AUE", 551}, {"BS", 552},       {"ECH", 553}, {"EME", 554}, {"ES", 555},
    {"FAI", 556}, {"F2", 557},  {"INTERNET", 558}, {"ION", 559}, {"IRL", 560}, {"MS", 561},
    {"RPT", 562}, {"RS", 563},  {"SAT", 564},      {"TEP", 565}, {"TR", 566},
};

// The QSL states offered: no, yes, requested, queued, ignore.
constexpr const char* kQslStates[] = {"N", "Y", "R", "Q", "I"};

std::string text(const QLineEdit* e) {
    return e->text().toStdString();
}
std::string text(const QComboBox* c) {
    return c->currentText().toStdString();
}

void setItems(QComboBox* c, const std::vector<std::string>& items) {
    const QString keep = c->currentText();
    c->clear();
    for (const auto& i : items)
        c->addItem(q(i));
    c->setEditText(keep);
}

} // namespace

StationEntryFrame::StationEntryFrame(const Texts& texts, QWidget* parent)
    : QFrame(parent), texts_(texts) {
    setObjectName("Frame3");
    setFrameShape(QFrame::StyledPanel);
    auto* grid = new QGridLayout(this);
    int column = 0, row = 0;
    for (const auto& b : kBoxRows) {
        const std::string control = b.control;
        QWidget* w = control.rfind("Text", 0) == 0 ? static_cast<QWidget*>(line(b.control, b.size))
                                                   : combo(b.control, b.size);
        auto* label = captioned<QLabel>(b.textRow, texts, this);
        label->setObjectName(QString(b.control) + "Label");
        label->setBuddy(w);
        grid->addWidget(label, row, column);
        grid->addWidget(w, row + 1, column);
        if (++column == 10) {
            column = 0;
            row += 2;
        }
    }
    date_ = static_cast<QLineEdit*>(boxes_["Text1"]);
    time_ = static_cast<QLineEdit*>(boxes_["Text2"]);
    call_ = static_cast<QLineEdit*>(boxes_["Text3"]);
    rstRx_ = static_cast<QLineEdit*>(boxes_["Text4"]);
    rstTx_ = static_cast<QLineEdit*>(boxes_["Text5"]);
    locator_ = static_cast<QLineEdit*>(boxes_["Text6"]);
    manager_ = static_cast<QLineEdit*>(boxes_["Text7"]);
    name_ = static_cast<QLineEdit*>(boxes_["Text8"]);
    note_ = static_cast<QLineEdit*>(boxes_["Text10"]);
    qrgTx_ = static_cast<QComboBox*>(boxes_["Combo6"]);
    qrgRx_ = static_cast<QComboBox*>(boxes_["Combo7"]);
    txMode_ = static_cast<QComboBox*>(boxes_["Combo4"]);
    rxMode_ = static_cast<QComboBox*>(boxes_["Combo5"]);
    prop_ = static_cast<QComboBox*>(boxes_["Combo1"]);
    qsl_ = static_cast<QComboBox*>(boxes_["Combo2"]);
    myCall_ = static_cast<QComboBox*>(boxes_["Combo3"]);
    myLocator_ = static_cast<QComboBox*>(boxes_["Combo8"]);
    power_ = static_cast<QComboBox*>(boxes_["Combo10"]);
    antenna_ = static_cast<QComboBox*>(boxes_["Combo9"]);

    for (const auto& m : adifModes()) {
        txMode_->addItem(q(m));
        rxMode_->addItem(q(m));
    }
    txMode_->setEditText({});
    rxMode_->setEditText({});
    prop_->addItem(QString());
    for (const auto& [code, tip] : kPropagationTips)
        prop_->addItem(code);
    setPropagationTips();
    prop_->setEditText({});
    for (const char* s : kQslStates)
        qsl_->addItem(s);

    save_ = captioned<QPushButton>(363, texts, this);
    save_->setObjectName("Command2");
    grid->addWidget(save_, row + 1, 9);
    connect(save_, &QPushButton::clicked, this, &StationEntryFrame::saveRequested);
    connect(date_, &QLineEdit::textEdited, this, &StationEntryFrame::clockEdited);
    connect(time_, &QLineEdit::textEdited, this, &StationEntryFrame::clockEdited);
}

QLineEdit* StationEntryFrame::line(const char* control, int size) {
    auto* e = new QLineEdit(this);
    e->setObjectName(control);
    e->setMaxLength(size);
    connect(e, &QLineEdit::returnPressed, this, &StationEntryFrame::saveRequested);
    boxes_[control] = e;
    return e;
}

QComboBox* StationEntryFrame::combo(const char* control, int size) {
    auto* c = new QComboBox(this);
    c->setObjectName(control);
    c->setEditable(true);
    c->setInsertPolicy(QComboBox::NoInsert);
    // The box takes no more than the field holds; longer text is cut.
    c->lineEdit()->setMaxLength(size);
    connect(c->lineEdit(), &QLineEdit::returnPressed, this, &StationEntryFrame::saveRequested);
    boxes_[control] = c;
    return c;
}

void StationEntryFrame::setPropagationTips() {
    // Item 0 is the empty entry.
    for (int i = 0; i < static_cast<int>(std::size(kPropagationTips)); ++i)
        prop_->setItemData(i + 1, q(texts_(kPropagationTips[static_cast<std::size_t>(i)].second)),
                           Qt::ToolTipRole);
}

void StationEntryFrame::changeEvent(QEvent* e) {
    if (e->type() == QEvent::LanguageChange)
        setPropagationTips();
    QFrame::changeEvent(e);
}

StationEntry StationEntryFrame::entry() const {
    StationEntry e;
    e.date = text(date_);
    e.time = text(time_);
    e.call = text(call_);
    e.rstRx = text(rstRx_);
    e.rstTx = text(rstTx_);
    e.locator = text(locator_);
    e.qrgTx = text(qrgTx_);
    e.qrgRx = text(qrgRx_);
    e.txMode = text(txMode_);
    e.rxMode = text(rxMode_);
    e.prop = text(prop_);
    e.qsl = text(qsl_);
    e.qslManager = text(manager_);
    e.name = text(name_);
    e.myCall = text(myCall_);
    e.myLocator = text(myLocator_);
    e.power = text(power_);
    e.antenne = text(antenna_);
    e.note = text(note_);
    e.qslRx = qslRx_;
    return e;
}

void StationEntryFrame::showEntry(const StationEntry& e) {
    date_->setText(q(e.date));
    time_->setText(q(e.time));
    call_->setText(q(e.call));
    rstRx_->setText(q(e.rstRx));
    rstTx_->setText(q(e.rstTx));
    locator_->setText(q(e.locator));
    qrgTx_->setEditText(q(e.qrgTx));
    qrgRx_->setEditText(q(e.qrgRx));
    txMode_->setEditText(q(e.txMode));
    rxMode_->setEditText(q(e.rxMode));
    prop_->setEditText(q(e.prop));
    qsl_->setEditText(q(e.qsl));
    manager_->setText(q(e.qslManager));
    name_->setText(q(e.name));
    myCall_->setEditText(q(e.myCall));
    myLocator_->setEditText(q(e.myLocator));
    power_->setEditText(q(e.power));
    antenna_->setEditText(q(e.antenne));
    note_->setText(q(e.note));
    qslRx_ = e.qslRx;
}

void StationEntryFrame::showClock(const DateTime& now) {
    date_->setText(q(now.dateIso()));
    time_->setText(q(now.timeHM()));
}

void StationEntryFrame::clearAfterSave() {
    for (QLineEdit* e : {call_, locator_, manager_, name_, note_})
        e->clear();
    qslRx_.clear();
}

void StationEntryFrame::setLists(const StationLists& lists,
                                 const std::vector<std::string>& myCalls) {
    setItems(qrgTx_, lists.qrg);
    setItems(qrgRx_, lists.qrg);
    setItems(power_, lists.power);
    setItems(antenna_, lists.antenna);
    setItems(myLocator_, lists.myLocator);
    setItems(myCall_, myCalls);
}

void StationEntryFrame::setQslAndPower(const std::string& qsl, const std::string& power) {
    qsl_->setEditText(q(qsl));
    power_->setEditText(q(power));
}

QString StationEntryFrame::qsl() const {
    return qsl_->currentText().trimmed();
}

QString StationEntryFrame::power() const {
    return power_->currentText().trimmed();
}

std::vector<std::string> StationEntryFrame::myLocators() const {
    std::vector<std::string> out;
    for (int i = 0; i < myLocator_->count(); ++i)
        out.push_back(myLocator_->itemText(i).toStdString());
    const QString typed = myLocator_->currentText().trimmed().toUpper();
    if (!typed.isEmpty() && myLocator_->findText(typed, Qt::MatchFixedString) < 0)
        out.push_back(typed.toStdString());
    return out;
}

QWidget* StationEntryFrame::box(const std::string& control) const {
    const auto it = boxes_.find(control);
    return it == boxes_.end() ? nullptr : it->second;
}

} // namespace orv::ui
