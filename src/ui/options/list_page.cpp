#include "ui/options/list_page.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/options/option_rules.h"
#include "core/util/text.h"

namespace orv::ui {

ListPage::ListPage(OptionsContext& ctx, Definition def, QWidget* parent)
    : OptionsPage(ctx, def.objectName, def.titleRow, parent), def_(std::move(def)) {
    auto* layout = new QHBoxLayout(this);
    list_ = new QListWidget(this);
    list_->setObjectName(QString(def_.objectName) + "List");
    layout->addWidget(list_);
    auto* column = new QVBoxLayout;
    const int rows[] = {72, 362, 357};
    for (int i = 0; i < 3; ++i) {
        auto* b = new QPushButton(ctx.t(rows[i]), this);
        b->setObjectName(def_.buttons[i]);
        column->addWidget(b);
        connect(b, &QPushButton::clicked, this, [this, i] {
            if (i == 0)
                add();
            else if (i == 1)
                change();
            else
                remove();
        });
    }
    column->addStretch();
    layout->addLayout(column);
}

void ListPage::load(const Settings& s) {
    list_->clear();
    std::vector<std::string> entries = s.list(def_.section);
    // The window offers these when the MODE list is empty.
    if (entries.empty() && def_.section == section::MODE)
        entries = {"SSB", "CW", "FM"};
    for (const std::string& e : entries)
        list_->addItem(QString::fromStdString(e));
}

void ListPage::save(Settings& s) {
    std::vector<std::string> entries;
    for (int i = 0; i < list_->count(); ++i)
        entries.push_back(list_->item(i)->text().toStdString());
    s.setList(def_.section, entries);
}

std::optional<QString> ListPage::ask(const QString& proposal) {
    const auto typed = ctx_.input(this, ctx_.t(def_.promptRow), proposal);
    if (!typed)
        return std::nullopt;
    const std::string entry = text::trim(typed->toStdString());
    if (const Status s = def_.check(entry); !s) {
        ctx_.dialogs.inform(ctx_.texts(s.failure().text), Icon::Warning);
        return std::nullopt;
    }
    return QString::fromStdString(entry);
}

void ListPage::add() {
    if (const auto e = ask(QString())) {
        list_->addItem(*e);
        list_->setCurrentRow(list_->count() - 1);
    }
}

void ListPage::change() {
    QListWidgetItem* item = list_->currentItem();
    if (!item)
        return;
    if (const auto e = ask(item->text()))
        item->setText(*e);
}

void ListPage::remove() {
    const int r = list_->currentRow();
    if (r < 0 || ctx_.dialogs.ask(ctx_.texts(179), Buttons::YesNo, Icon::Question, Answer::No) !=
                     Answer::Yes)
        return;
    delete list_->takeItem(r);
}

ListPage* makeModePage(OptionsContext& ctx, QWidget* parent) {
    return new ListPage(ctx,
                        {"Frame7",
                         957,
                         section::MODE,
                         178,
                         {"ModNeu", "ModAendern", "ModLoeschen"},
                         &options::checkModeName},
                        parent);
}

ListPage* makePropagationPage(OptionsContext& ctx, QWidget* parent) {
    return new ListPage(ctx,
                        {"Frame8",
                         958,
                         section::AUSBR,
                         973,
                         {"Command13", "Command14", "Command15"},
                         &options::checkPropagation},
                        parent);
}

} // namespace orv::ui
