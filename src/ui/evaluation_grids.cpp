// The two grids of the evaluation window: the QSOs of the band with their
// colours, the countries, and the sort by a click on a header.
#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>

#include "core/i18n/texts.h"
#include "ui/evaluation_window.h"

namespace orv::ui {
namespace {

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

int twipsToPixels(const QWidget* w, int twips) {
    return twips * w->logicalDpiX() / 1440;
}

Qt::Alignment toQt(CellAlign a) {
    switch (a) {
    case CellAlign::Right:
        return Qt::AlignRight | Qt::AlignVCenter;
    case CellAlign::Centre:
        return Qt::AlignCenter;
    case CellAlign::Left:
        break;
    }
    return Qt::AlignLeft | Qt::AlignVCenter;
}

QString number(std::int64_t n) {
    return QString::number(static_cast<long long>(n));
}

// Header cells of the grids: the sorted column red when ascending, blue when
// descending, all others black.
const QColor kAscending(Qt::red);
const QColor kDescending(Qt::blue);

} // namespace

void EvaluationWindow::Grid1Set() {
    const auto& cols = evalColumns();
    grid_->setColumnCount(kEvalColumns);
    for (int c = 0; c < kEvalColumns; ++c) {
        const EvalColumn& col = cols[static_cast<std::size_t>(c)];
        auto* h = new QTableWidgetItem(col.headerText ? q(texts_(col.headerText)) : QString());
        h->setTextAlignment(col.centredHeader ? Qt::AlignCenter : Qt::AlignLeft | Qt::AlignVCenter);
        h->setForeground(Qt::black);
        grid_->setHorizontalHeaderItem(c, h);
        if (col.width == 0)
            grid_->setColumnHidden(c, true);
        else
            grid_->setColumnWidth(c, twipsToPixels(grid_, col.width));
    }
    // The grid holds the ISO date and the time with seconds cut, wider than
    // the short forms the twips were measured for.
    const QFontMetrics fm(grid_->font());
    grid_->setColumnWidth(evalcol::Datum, std::max(grid_->columnWidth(evalcol::Datum),
                                                   fm.horizontalAdvance("0000-00-00") + 14));
    grid_->setColumnWidth(evalcol::Zeit, std::max(grid_->columnWidth(evalcol::Zeit),
                                                  fm.horizontalAdvance("00:00") + 14));
    const auto& ccols = countryColumns();
    countryGrid_->setColumnCount(2);
    for (int c = 0; c < 2; ++c) {
        const EvalColumn& col = ccols[static_cast<std::size_t>(c)];
        auto* h = new QTableWidgetItem(q(texts_(col.headerText)));
        h->setTextAlignment(col.centredHeader ? Qt::AlignCenter : Qt::AlignLeft | Qt::AlignVCenter);
        h->setForeground(Qt::black);
        countryGrid_->setHorizontalHeaderItem(c, h);
        countryGrid_->setColumnWidth(c, twipsToPixels(countryGrid_, col.width));
    }
}

void EvaluationWindow::retitleGrids() {
    const auto& cols = evalColumns();
    for (int c = 0; c < kEvalColumns; ++c)
        if (QTableWidgetItem* h = grid_->horizontalHeaderItem(c))
            if (const int row = cols[static_cast<std::size_t>(c)].headerText)
                h->setText(q(texts_(row)));
    const auto& ccols = countryColumns();
    for (int c = 0; c < 2; ++c)
        if (QTableWidgetItem* h = countryGrid_->horizontalHeaderItem(c))
            h->setText(q(texts_(ccols[static_cast<std::size_t>(c)].headerText)));
}

namespace {

void fillRow(QTableWidget* grid, int r, const EvalRow& row) {
    const auto& cols = evalColumns();
    for (int c = 0; c < kEvalColumns; ++c) {
        auto* item = new QTableWidgetItem(q(row.cells[static_cast<std::size_t>(c)]));
        item->setTextAlignment(toQt(cols[static_cast<std::size_t>(c)].align));
        // A deleted row is red from the date on; its number stays black.
        if (row.red && c >= 1)
            item->setForeground(Qt::red);
        grid->setItem(r, c, item);
    }
}

void fillCountries(QTableWidget* grid, const std::vector<CountryCount>& rows) {
    grid->setRowCount(static_cast<int>(rows.size()));
    for (int r = 0; r < static_cast<int>(rows.size()); ++r) {
        const CountryCount& c = rows[static_cast<std::size_t>(r)];
        auto* n = new QTableWidgetItem(number(c.qsos));
        n->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        grid->setItem(r, 0, n);
        grid->setItem(r, 1, new QTableWidgetItem(q(c.country)));
    }
}

} // namespace

void EvaluationWindow::showEvaluation() {
    const Evaluation& ev = *ev_;
    grid_->setUpdatesEnabled(false);
    grid_->setRowCount(static_cast<int>(ev.rows.size()));
    for (int r = 0; r < static_cast<int>(ev.rows.size()); ++r)
        fillRow(grid_, r, ev.rows[static_cast<std::size_t>(r)]);
    grid_->setUpdatesEnabled(true);
    fillCountries(countryGrid_, ev.countries);

    figures_.locators->setText(number(static_cast<std::int64_t>(ev.locatorCount)));
    figures_.grossfelder->setText(number(static_cast<std::int64_t>(ev.grossfeldCount)));
    figures_.countries->setText(number(ev.countryCount()));
    figures_.multiplier->setText(number(ev.multiplier));
    figures_.dupes->setText(number(ev.dupes));
    figures_.deleted->setText(number(ev.deleted));
    figures_.qsos->setText(number(ev.qsos));
    figures_.score->setText(number(ev.points));
    figures_.kmPerQso->setText(number(ev.kmPerQso));
    figures_.odx->setText(number(ev.odx));
    paintBandButtons();
}

void EvaluationWindow::paintSortHeader(QTableWidget* grid, int column, GridSorter::Direction d) {
    for (int c = 0; c < grid->columnCount(); ++c) {
        QTableWidgetItem* h = grid->horizontalHeaderItem(c);
        if (!h)
            continue;
        QColor colour(Qt::black);
        if (c == column && d == GridSorter::Direction::Ascending)
            colour = kAscending;
        else if (c == column && d == GridSorter::Direction::Descending)
            colour = kDescending;
        h->setForeground(colour);
    }
}

void EvaluationWindow::sortGrid(int column) {
    if (!ev_ || column < 0 || column >= kEvalColumns)
        return;
    const auto d = gridSorter_.click(ev_->rows, column);
    if (d == GridSorter::Direction::None)
        return;
    for (int r = 0; r < static_cast<int>(ev_->rows.size()); ++r)
        fillRow(grid_, r, ev_->rows[static_cast<std::size_t>(r)]);
    paintSortHeader(grid_, column, d);
}

void EvaluationWindow::sortCountries(int column) {
    if (!ev_ || column < 0 || column > 1)
        return;
    const auto d = countrySorter_.click(ev_->countries, column);
    if (d == GridSorter::Direction::None)
        return;
    fillCountries(countryGrid_, ev_->countries);
    paintSortHeader(countryGrid_, column, d);
}

} // namespace orv::ui
