#include "ui/square_window.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QTableWidget>
#include <QVBoxLayout>

#include "core/i18n/texts.h"

namespace orv::ui {
namespace {

QColor toQColor(LocFarbe f) {
    const std::uint32_t rgb = LocFarbeRgb(f);
    return QColor((rgb >> 16) & 0xFF, (rgb >> 8) & 0xFF, rgb & 0xFF);
}

QLabel* label(const char* name, const QString& text, QWidget* parent) {
    auto* l = new QLabel(text, parent);
    l->setObjectName(name);
    return l;
}

} // namespace

SquareWindow::SquareWindow(const LocFenster& fenster, long long worked, const QString& band,
                           const Texts& texts, QWidget* parent)
    : QDialog(parent) {
    setObjectName("Form9");
    const QString title = QString::fromStdString(texts(147));
    setWindowTitle(title);

    auto* head = new QHBoxLayout;
    head->addWidget(label("Label1", title, this));
    head->addWidget(label("Label2", QString::number(worked), this));
    head->addSpacing(24);
    head->addWidget(label("Label3", QString::fromStdString(texts(173)) + ":", this));
    head->addWidget(label("Label4", band, this));
    head->addStretch(1);

    constexpr int n = LocFenster::kSeite;
    grid_ = new QTableWidget(n, n, this);
    grid_->setObjectName("MSFlexGrid1");
    grid_->horizontalHeader()->setVisible(false);
    grid_->verticalHeader()->setVisible(false);
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid_->setSelectionMode(QAbstractItemView::NoSelection);
    grid_->setFocusPolicy(Qt::NoFocus);
    QFont small = grid_->font();
    small.setPointSize(6);
    grid_->setFont(small);
    // 600 twips a column at the screen's resolution.
    const int colPx = 600 * logicalDpiX() / 1440;
    for (int c = 0; c < n; ++c)
        grid_->setColumnWidth(c, colPx);
    for (int r = 0; r < n; ++r)
        grid_->setRowHeight(r, grid_->fontMetrics().height() + 4);
    for (int r = 0; r < n; ++r) {
        for (int c = 0; c < n; ++c) {
            const LocFeld& f = fenster.at(r, c);
            auto* item = new QTableWidgetItem(QString::fromStdString(f.text));
            item->setTextAlignment(Qt::AlignCenter);
            if (f.farbe != LocFarbe::Keine)
                item->setBackground(toQColor(f.farbe));
            grid_->setItem(r, c, item);
        }
    }
    // A walk stopped at the western edge leaves the grid unpainted, as it
    // always has: the operator sees that the window cannot be drawn here.
    grid_->setUpdatesEnabled(fenster.gezeichnet);

    auto* v = new QVBoxLayout(this);
    v->addLayout(head);
    v->addWidget(grid_, 1);
    resize(15240 * logicalDpiX() / 1440, 7050 * logicalDpiY() / 1440);
}

void SquareWindow::keyPressEvent(QKeyEvent* e) {
    if (e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter || e->key() == Qt::Key_Escape) {
        accept();
        return;
    }
    QDialog::keyPressEvent(e);
}

} // namespace orv::ui
