#include "ui/group_change_dialog.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "core/i18n/texts.h"
#include "core/logstore/contest_log.h"
#include "core/settings/settings.h"
#include "core/util/ports.h"

namespace orv::ui {
namespace {

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

// The option buttons in the order of GroupField, with their captions.
constexpr std::array<int, 10> kOptionTexts{150, 161, 160, 157, 158, 22, 176, 209, 226, 227};

GroupField fieldOf(int option) {
    return static_cast<GroupField>(option);
}

} // namespace

GroupChangeDialog::GroupChangeDialog(ContestLog& log, int band, Settings& settings,
                                     const Texts& texts, Dialogs& dialogs, Beeper& beeper,
                                     QWidget* parent)
    : QDialog(parent), log_(log), band_(band), settings_(settings), texts_(texts),
      dialogs_(dialogs), beeper_(beeper) {
    setObjectName("Form11");
    setWindowTitle(q(texts_(221)));
    auto* top = new QVBoxLayout(this);
    auto* form = new QGridLayout;
    auto field = [&](const char* name, int text, int row) {
        form->addWidget(new QLabel(q(texts_(text)), this), row, 0);
        auto* e = new QLineEdit(this);
        e->setObjectName(name);
        form->addWidget(e, row, 1);
        return e;
    };
    from_ = field("Text1", 222, 0);
    to_ = field("Text2", 223, 1);
    form->addWidget(new QLabel(q(texts_(224)), this), 2, 0);
    auto* valueRow = new QHBoxLayout;
    value_ = new QLineEdit(this);
    value_->setObjectName("Text3");
    list_ = new QComboBox(this);
    list_->setObjectName("Combo1");
    list_->setEditable(true);
    valueRow->addWidget(value_);
    valueRow->addWidget(list_);
    form->addLayout(valueRow, 2, 1);
    top->addLayout(form);

    auto* optionGrid = new QGridLayout;
    for (int i = 0; i < 10; ++i) {
        auto* o = new QRadioButton(q(texts_(kOptionTexts[static_cast<std::size_t>(i)])), this);
        o->setObjectName(QString("Option1(%1)").arg(i));
        connect(o, &QRadioButton::toggled, this, [this, i](bool on) {
            if (on)
                chooseOption(i);
        });
        options_[static_cast<std::size_t>(i)] = o;
        optionGrid->addWidget(o, i % 5, i / 5);
    }
    top->addLayout(optionGrid);

    auto* buttons = new QHBoxLayout;
    auto* apply = new QPushButton(q(texts_(23)), this);
    apply->setObjectName("Command1");
    apply->setAutoDefault(false);
    connect(apply, &QPushButton::clicked, this, [this] { GroupChangeDialog::apply(); });
    auto* close = new QPushButton(q(texts_(11)), this);
    close->setObjectName("Command2");
    close->setAutoDefault(false);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    buttons->addStretch(1);
    buttons->addWidget(apply);
    buttons->addWidget(close);
    top->addLayout(buttons);

    options_[0]->setChecked(true);
    chooseOption(0);
}

bool GroupChangeDialog::usesList() const {
    switch (fieldOf(option_)) {
    case GroupField::RxMod:
    case GroupField::TxMod:
    case GroupField::Qsl:
    case GroupField::Prop:
    case GroupField::OpCall:
        return true;
    default:
        return false;
    }
}

void GroupChangeDialog::chooseOption(int option) {
    if (option < 0 || option >= 10)
        return;
    option_ = option;
    if (!options_[static_cast<std::size_t>(option)]->isChecked())
        options_[static_cast<std::size_t>(option)]->setChecked(true);
    list_->clear();
    QString current;
    switch (fieldOf(option)) {
    case GroupField::RxMod:
    case GroupField::TxMod:
        for (const std::string& m : settings_.modes())
            list_->addItem(q(m));
        break;
    case GroupField::Qsl:
        list_->addItems({"Yes", "No"});
        break;
    case GroupField::Prop:
        for (const std::string& p : settings_.list(section::AUSBR))
            list_->addItem(q(p));
        current = q(settings_.get(keys::Prop));
        break;
    case GroupField::OpCall:
        for (const OpCall& o : settings_.opCalls())
            list_->addItem(q(o.call));
        current = q(settings_.get(keys::OPCall));
        break;
    default:
        break;
    }
    if (!current.isEmpty())
        list_->setCurrentText(current);
    const bool list = usesList();
    list_->setVisible(list);
    value_->setVisible(!list);
    const GroupField f = fieldOf(option);
    if (f == GroupField::Time || f == GroupField::AddTime || f == GroupField::SubTime)
        value_->setText("1");
    else if (!list)
        value_->clear();
}

GroupChange GroupChangeDialog::change() const {
    GroupChange c;
    c.from = from_->text().toStdString();
    c.to = to_->text().toStdString();
    c.field = fieldOf(option_);
    c.value = (usesList() ? list_->currentText() : value_->text()).toStdString();
    return c;
}

bool GroupChangeDialog::apply() {
    Result<std::int64_t> n = Failure{};
    try {
        n = applyGroupChange(log_, band_, change());
    } catch (const std::exception& e) {
        dialogs_.inform(texts_(10) + "\n" + e.what(), Icon::Critical);
        return false;
    }
    if (!n) {
        const Failure& f = n.failure();
        if (f.text == 14)
            beeper_.beep();
        dialogs_.inform(texts_(f.text), Icon::Critical);
        QWidget* focus = f.field == "Text1" ? from_ : f.field == "Text2" ? to_ : nullptr;
        if (f.field == "Text3")
            focus = usesList() ? static_cast<QWidget*>(list_) : value_;
        if (focus)
            focus->setFocus(Qt::OtherFocusReason);
        return false;
    }
    if (onChanged)
        onChanged(band_);
    return true;
}

} // namespace orv::ui
