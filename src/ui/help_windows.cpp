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

// The keys of the window, as the key help lists them.
struct KeyRow {
    const char* key;
    const char* action;
};
constexpr KeyRow kKeys[] = {
    {"Leertaste", "Nächstes Eingabefeld"},
    {"Umschalt+Leertaste", "Vorheriges Eingabefeld"},
    {"Enter", "QSO übernehmen / Korrektur speichern"},
    {"Esc", "Korrektur oder Anzeige schließen"},
    {"F1", "Tastenbelegung"},
    {"F2", "Letztes Rufzeichen und Locator zurückholen"},
    {"F5 / F6", "Vorheriges / nächstes Band"},
    {"F7", "Stationslog"},
    {"F8", "Rufzeichen und Locator aus der Liste übernehmen"},
    {"F9", "Nur den Locator aus der Liste übernehmen"},
    {"F10, Strg+W", "Eingabezeile löschen"},
    {"F11", "Früheres QSO als gelöscht markieren (Doppelverbindung)"},
    {"F12", "CW-Fenster ein/aus"},
    {"Strg+B, Pause", "Bake ein/aus"},
    {"Strg+L", "Gearbeitete Grossfelder"},
    {"Strg+N", "Name eingeben"},
    {"Strg+O", "Operator wählen"},
    {"Strg+Q", "QSL Yes/No"},
    {"Strg+T", "Zeit in der Korrekturzeile"},
};

} // namespace

QDialog* makeKeyHelp(QWidget* parent, const Texts& texts) {
    auto* d = new QDialog(parent);
    d->setObjectName("Form3");
    d->setWindowTitle(plainCaption(texts(91)));
    // The rotator's keys, added since, take their texts from the table.
    constexpr std::pair<int, int> kRotatorKeys[] = {{1235, 1236}, {1237, 1238}};
    auto* table =
        new QTableWidget(static_cast<int>(std::size(kKeys) + std::size(kRotatorKeys)), 2, d);
    table->setObjectName("KeyTable");
    table->horizontalHeader()->setVisible(false);
    table->verticalHeader()->setVisible(false);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    int r = 0;
    for (const KeyRow& k : kKeys) {
        table->setItem(r, 0, new QTableWidgetItem(QString::fromUtf8(k.key)));
        table->setItem(r++, 1, new QTableWidgetItem(QString::fromUtf8(k.action)));
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
