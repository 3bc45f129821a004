#include "ui/options/contest_page.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/options/option_rules.h"
#include "core/util/text.h"

namespace orv::ui {

ContestPage::ContestPage(OptionsContext& ctx, std::optional<ContestData> open, QWidget* parent)
    : OptionsPage(ctx, "Frame10", 960, parent), open_(std::move(open)) {
    auto* layout = new QVBoxLayout(this);
    auto* help = new QLabel(ctx.t(73), this);
    help->setWordWrap(true);
    layout->addWidget(help);
    auto* form = new QFormLayout;
    name_ = new QComboBox(this);
    name_->setObjectName("Combo4");
    name_->setEditable(true);
    name_->setInsertPolicy(QComboBox::NoInsert);
    form->addRow(ctx.plain(70), name_);
    layout->addLayout(form);
    auto* grid = new QGridLayout;
    for (int b = 0; b < kBandCount; ++b) {
        weights_[b] = new QLineEdit(this);
        weights_[b]->setObjectName(QString("C%1").arg(b));
        weights_[b]->setMaxLength(5);
        // The band buttons' captions ("2 m"), as the table of bands keeps them.
        const QString band =
            QString::fromUtf8(kBands[b].caption.data(), static_cast<int>(kBands[b].caption.size()));
        grid->addWidget(new QLabel(band, this), b % 5, (b / 5) * 2);
        grid->addWidget(weights_[b], b % 5, (b / 5) * 2 + 1);
    }
    layout->addLayout(grid);
    auto* buttons = new QHBoxLayout;
    const std::pair<const char*, int> list[] = {
        {"Command7", 72}, {"Command8", 362}, {"Command9", 357}, {"OK2", 981}, {"Abbrechen2", 364}};
    std::vector<QPushButton*> b;
    for (const auto& [objectName, row] : list) {
        b.push_back(new QPushButton(ctx.t(row), this));
        b.back()->setObjectName(objectName);
        buttons->addWidget(b.back());
        if (b.size() == 3)
            buttons->addStretch();
    }
    layout->addLayout(buttons);
    layout->addStretch();
    b[3]->setEnabled(open_.has_value());
    connect(b[0], &QPushButton::clicked, this, &ContestPage::addDef);
    connect(b[1], &QPushButton::clicked, this, &ContestPage::changeDef);
    connect(b[2], &QPushButton::clicked, this, &ContestPage::removeDef);
    connect(b[3], &QPushButton::clicked, this, &ContestPage::applyToLog);
    connect(b[4], &QPushButton::clicked, this, &ContestPage::cancelPressed);
    connect(name_, &QComboBox::activated, this, [this](int i) { chosen(name_->itemText(i)); });
}

void ContestPage::load(const Settings& s) {
    defs_.clear();
    ContesDateLoad(s.file(), defs_);
    std::vector<ContestDef> unused;
    const ContestData c = open_ ? *open_ : ConDaLoad(s.file(), unused);
    refill(QString::fromStdString(c.ContestName));
    show(c);
}

void ContestPage::refill(const QString& select) {
    name_->clear();
    for (const ContestDef& d : defs_)
        name_->addItem(QString::fromStdString(d.name));
    name_->setCurrentIndex(name_->findText(select));
    name_->setEditText(select);
}

void ContestPage::show(const ContestData& c) {
    for (int b = 0; b < kBandCount; ++b)
        weights_[b]->setText(QString::number(c.Zaehl[b]));
}

void ContestPage::chosen(const QString& name) {
    ContestData c;
    for (int b = 0; b < kBandCount; ++b)
        c.Zaehl[b] = weights_[b]->text().trimmed().toInt();
    if (chooseContest(defs_, name.toStdString(), c))
        show(c);
}

Result<ContestDef> ContestPage::typed(int self) const {
    ContestDef d;
    d.name = text::trim(name_->currentText().toStdString());
    for (int b = 0; b < kBandCount; ++b) {
        const auto w = options::parseWeight(weights_[b]->text().toStdString());
        if (!w)
            return refuse(w.failure().text, weights_[b]->objectName().toStdString());
        d.weights[b] = *w;
    }
    if (const Status s = options::checkContestDef(defs_, d, self); !s)
        return s.failure();
    return d;
}

Result<ContestData> ContestPage::current() const {
    // The open log's contest need not be in the list; only its name is needed.
    std::vector<ContestDef> none;
    ContestDef d;
    d.name = text::trim(name_->currentText().toStdString());
    if (const Status s = options::checkContestDef(none, d, -1); !s)
        return s.failure();
    ContestData c;
    c.ContestName = d.name;
    for (int b = 0; b < kBandCount; ++b) {
        const auto w = options::parseWeight(weights_[b]->text().toStdString());
        if (!w)
            return refuse(w.failure().text, weights_[b]->objectName().toStdString());
        c.Zaehl[b] = *w;
    }
    return c;
}

void ContestPage::report(const Failure& f) {
    ctx_.dialogs.inform(ctx_.texts(f.text), Icon::Warning);
    if (QWidget* w = findChild<QWidget*>(QString::fromStdString(f.field)))
        w->setFocus();
}

void ContestPage::addDef() {
    const auto d = typed(-1);
    if (!d) {
        report(d.failure());
        return;
    }
    defs_.push_back(*d);
    refill(QString::fromStdString(d->name));
}

void ContestPage::changeDef() {
    // The definition chosen last; the name in the box may be its new one.
    const int at = name_->currentIndex();
    if (at < 0 || at >= static_cast<int>(defs_.size()))
        return;
    const auto d = typed(at);
    if (!d) {
        report(d.failure());
        return;
    }
    defs_[at] = *d;
    refill(QString::fromStdString(d->name));
}

void ContestPage::removeDef() {
    const int at = name_->currentIndex();
    if (at < 0 || at >= static_cast<int>(defs_.size()) ||
        ctx_.dialogs.ask(ctx_.texts(75), Buttons::YesNo, Icon::Question, Answer::No) != Answer::Yes)
        return;
    defs_.erase(defs_.begin() + at);
    refill(QString());
}

void ContestPage::save(Settings& s) {
    std::vector<std::string> lines;
    for (const ContestDef& d : defs_)
        lines.push_back(formatConELine(d));
    s.setList(section::ConE, lines);
}

} // namespace orv::ui
