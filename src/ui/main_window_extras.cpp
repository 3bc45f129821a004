// Parts of the main window around the entry row: the loading panel, the
// beacon count, the key help, the about box, the small
// layout for low screens and the date panel.
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QFrame>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTableView>
#include <QTableWidget>
#include <QVBoxLayout>

#include "core/i18n/texts.h"
#include "core/logstore/bands.h"
#include "core/util/ports.h"
#include "ui/main_window.h"

namespace orv::ui {
namespace {

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

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

// The twips of the original layout at this screen's resolution.
int twips(const QWidget* w, int t) {
    return t * w->logicalDpiY() / 1440;
}

} // namespace

QWidget* MainWindow::buildBeaconPanel(QWidget* parent) {
    auto* panel = new QFrame(parent);
    panel->setObjectName("PictureBake");
    panel->setFrameShape(QFrame::StyledPanel);
    auto* h = new QHBoxLayout(panel);
    auto* caption = new QLabel(panel);
    caption->setObjectName("LabelMaxBake");
    caption->setText("Max.");
    h->addWidget(caption);
    maxBake_ = new QComboBox(panel);
    maxBake_->setObjectName("Combo10");
    maxBake_->setEditable(true);
    maxBake_->setInsertPolicy(QComboBox::NoInsert);
    for (const char* n : {"1", "5", "10", "50", "100", "500", "1000"})
        maxBake_->addItem(n);
    maxBake_->lineEdit()->setMaxLength(4);
    h->addWidget(maxBake_, 1);
    return panel;
}

void MainWindow::setLoading(bool on) {
    if (on) {
        QWidget* c = centralWidget();
        loadingPanel_->move((c->width() - loadingPanel_->width()) / 2,
                            (c->height() - loadingPanel_->height()) / 2);
        loadingPanel_->raise();
        loadingPanel_->show();
        // The load runs on this thread; paint now or the panel never shows.
        loadingPanel_->repaint();
    } else {
        loadingPanel_->hide();
    }
}

bool MainWindow::loading() const {
    return loadingPanel_->isVisible();
}

QString MainWindow::bandProp(int band) const {
    return band >= 0 && band < kBandCount ? bandProp_[static_cast<std::size_t>(band)] : QString();
}

void MainWindow::setMaxBake(int n) {
    maxBake_->setEditText(QString::number(n));
}

int MainWindow::maxBake() const {
    return maxBake_->currentText().toInt();
}

void MainWindow::setLookupLines(const QStringList& lines) {
    lookupList_->setUpdatesEnabled(false);
    lookupList_->clear();
    lookupList_->addItems(lines);
    if (!lines.isEmpty())
        lookupList_->setCurrentRow(0);
    lookupList_->setUpdatesEnabled(true);
}

void MainWindow::showKeyHelp() {
    if (!keyHelp_) {
        auto* d = new QDialog(this);
        d->setObjectName("Form3");
        d->setWindowTitle(plainCaption(texts_(91)));
        auto* table = new QTableWidget(static_cast<int>(std::size(kKeys)), 2, d);
        table->setObjectName("KeyTable");
        table->horizontalHeader()->setVisible(false);
        table->verticalHeader()->setVisible(false);
        table->setEditTriggers(QAbstractItemView::NoEditTriggers);
        int r = 0;
        for (const KeyRow& k : kKeys) {
            table->setItem(r, 0, new QTableWidgetItem(QString::fromUtf8(k.key)));
            table->setItem(r++, 1, new QTableWidgetItem(QString::fromUtf8(k.action)));
        }
        table->resizeColumnsToContents();
        table->horizontalHeader()->setStretchLastSection(true);
        auto* close = new QPushButton(q(texts_(279)), d);
        connect(close, &QPushButton::clicked, d, &QDialog::close);
        auto* v = new QVBoxLayout(d);
        v->addWidget(table);
        v->addWidget(close, 0, Qt::AlignRight);
        d->resize(520, 480);
        keyHelp_ = d;
    }
    // Modeless: the operator keeps typing with the help open.
    keyHelp_->show();
    keyHelp_->raise();
}

void MainWindow::showAbout() {
    auto* d = findChild<QDialog*>("Form10");
    if (!d) {
        d = new QDialog(this);
        d->setObjectName("Form10");
        d->setWindowTitle(plainCaption(texts_(92)));
        auto* v = new QVBoxLayout(d);
        auto* name = new QLabel(
            QString("<h2>OrvantaContest</h2><p>%1</p>").arg(QApplication::applicationVersion()), d);
        name->setObjectName("Label1");
        v->addWidget(name);
        auto* text = new QLabel(q(texts_(241)) + "\n" + q(texts_(253)), d);
        text->setObjectName("Label2");
        text->setWordWrap(true);
        v->addWidget(text);
        auto* ok = new QPushButton("OK", d);
        ok->setObjectName("Command1");
        connect(ok, &QPushButton::clicked, d, &QDialog::accept);
        v->addWidget(ok, 0, Qt::AlignRight);
    }
    d->open();
}

bool MainWindow::smallLayoutFor(int screenHeightPx, int dpi) {
    if (dpi <= 0)
        return false;
    const long long heightTwips = static_cast<long long>(screenHeightPx) * 1440 / dpi;
    return heightTwips > 8000 && heightTwips < 10000;
}

void MainWindow::applySmallLayout(bool small) {
    smallLayout_ = small;
    // Room that the grids give up; the panels below them move up with the
    // layout by themselves.
    const int cut = small ? twips(this, 2141) : 0;
    for (QWidget* w : {static_cast<QWidget*>(grid_), static_cast<QWidget*>(comparisonGrid_)}) {
        w->setMinimumHeight(0);
        w->setMaximumHeight(
            small ? std::max(w->fontMetrics().height() * 8, w->sizeHint().height() - cut)
                  : QWIDGETSIZE_MAX);
    }
    if (small)
        resize(width(), twips(this, 9000));
}

void MainWindow::clearCallField() {
    call_->clear();
}

void MainWindow::clearLocatorField() {
    locator_->clear();
    setPreview({}, {});
}

void MainWindow::setDatePanelVisible(bool on) {
    datePanel_->setVisible(on);
    timeDateEditAction_->setChecked(on);
    if (on)
        date_->setText(q(clock_.now().addHours(zeitPlusMinus_).dateIso()));
}

} // namespace orv::ui
