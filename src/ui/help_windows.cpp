#include "ui/help_windows.h"

#include <QApplication>
#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "core/i18n/texts.h"
#include "ui/widget_helpers.h"

namespace orv::ui {
namespace {

// A menu caption without its accelerator mark, as a window title.
QString plainCaption(const std::string& s) {
    QString t = q(s);
    t.remove('&');
    return t;
}

// The keys of the window, as the key help lists them: the key as it stands
// where its name has no words in it, else its row; the action's row.
struct KeyRow {
    const char* key;
    int keyText;
    int action;
};
constexpr KeyRow kKeys[] = {
    {"", 540, 520}, {"", 541, 521},      {"Enter", 0, 522}, {"Esc", 0, 523}, {"F1", 0, 524},
    {"F2", 0, 525}, {"F5 / F6", 0, 526}, {"F7", 0, 527},    {"F8", 0, 528},  {"F9", 0, 529},
    {"", 542, 530}, {"F11", 0, 531},     {"F12", 0, 532},   {"", 543, 533},  {"", 544, 534},
    {"", 545, 535}, {"", 546, 536},      {"", 547, 537},    {"", 548, 538},
};

} // namespace

QDialog* makeKeyHelp(QWidget* parent, const Texts& texts) {
    auto* d = new QDialog(parent);
    d->setObjectName("Form3");
    d->setWindowTitle(plainCaption(texts(91)));
    // The keys added since (rotator, map) take their texts from the table.
    constexpr std::pair<int, int> kRotatorKeys[] = {{1235, 1236}, {1237, 1238}, {1273, 1272}};
    auto* table =
        new QTableWidget(static_cast<int>(std::size(kKeys) + std::size(kRotatorKeys)), 2, d);
    table->setObjectName("KeyTable");
    table->horizontalHeader()->setVisible(false);
    table->verticalHeader()->setVisible(false);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    int r = 0;
    for (const KeyRow& k : kKeys) {
        const QString key = k.keyText ? q(texts(k.keyText)) : QString::fromLatin1(k.key);
        table->setItem(r, 0, new QTableWidgetItem(key));
        table->setItem(r++, 1, new QTableWidgetItem(q(texts(k.action))));
    }
    for (const auto& [key, action] : kRotatorKeys) {
        table->setItem(r, 0, new QTableWidgetItem(q(texts(key))));
        table->setItem(r++, 1, new QTableWidgetItem(q(texts(action))));
    }
    table->resizeColumnsToContents();
    table->horizontalHeader()->setStretchLastSection(true);
    auto* close = new QPushButton(q(texts(279)), d);
    QObject::connect(close, &QPushButton::clicked, d, &QDialog::close);
    auto* v = new QVBoxLayout(d);
    v->addWidget(table);
    v->addWidget(close, 0, Qt::AlignRight);
    d->resize(520, 480);
    return d;
}

QDialog* makeAbout(QWidget* parent, const Texts& texts) {
    auto* d = new QDialog(parent);
    d->setObjectName("Form10");
    d->setWindowTitle(plainCaption(texts(92)));
    auto* v = new QVBoxLayout(d);
    auto* name = new QLabel(
        QString("<h2>OrvantaContest</h2><p>%1</p>").arg(QApplication::applicationVersion()), d);
    name->setObjectName("Label1");
    v->addWidget(name);
    auto* text = new QLabel(q(texts(241)) + "\n" + q(texts(253)), d);
    text->setObjectName("Label2");
    text->setWordWrap(true);
    v->addWidget(text);
    auto* ok = new QPushButton("OK", d);
    ok->setObjectName("Command1");
    QObject::connect(ok, &QPushButton::clicked, d, &QDialog::accept);
    v->addWidget(ok, 0, Qt::AlignRight);
    return d;
}

} // namespace orv::ui
