#include "ui/stationlog/station_grid_model.h"

#include <algorithm>

#include "core/i18n/texts.h"
#include "core/stationlog/station_log.h"

namespace orv::ui {
namespace {

// The column heads, one row of the language table for each field of `QJLog`.
constexpr int kHeads[kQjFieldCount] = {153, 514, 151, 372, 371, 155, 373, 374, 160, 161,
                                       176, 157, 375, 22,  171, 172, 376, 139, 158, 515};

} // namespace

StationGridModel::StationGridModel(const Texts& texts, QObject* parent)
    : QAbstractTableModel(parent), texts_(texts) {}

void StationGridModel::load(StationLog* log) {
    beginResetModel();
    log_ = log;
    numbers_ = log ? log->numbers() : std::vector<std::int64_t>{};
    pages_.clear();
    endResetModel();
}

void StationGridModel::appended(const StationQso& stored) {
    if (!numbers_.empty() && stored.nr <= numbers_.back()) {
        load(log_);
        return;
    }
    const int row = rowCount();
    beginInsertRows({}, row, row);
    numbers_.push_back(stored.nr);
    // The new row belongs to the last page: extend it when it is held (and
    // holds every row before this one), else it is read when shown.
    const auto page = pages_.find(row / kPage);
    if (page != pages_.end()) {
        if (page->second.size() == static_cast<std::size_t>(row % kPage))
            page->second.push_back(stored);
        else
            pages_.erase(page);
    }
    endInsertRows();
}

void StationGridModel::changed(std::int64_t nr) {
    const int row = rowOf(nr);
    if (row < 0)
        return;
    pages_.erase(row / kPage);
    emit dataChanged(index(row, 0), index(row, kQjFieldCount - 1));
}

const std::vector<StationQso>& StationGridModel::pageOf(int row) const {
    const int page = row / kPage;
    auto it = pages_.find(page);
    if (it == pages_.end()) {
        // Keep a handful of pages: scrolling through a long log must not
        // end up holding all of it.
        if (pages_.size() > 64)
            pages_.clear();
        const auto from = numbers_[static_cast<std::size_t>(page * kPage)];
        it = pages_.emplace(page, log_->page(from, kPage)).first;
    }
    return it->second;
}

std::optional<StationQso> StationGridModel::record(int row) const {
    if (!log_ || row < 0 || row >= rowCount())
        return std::nullopt;
    return log_->find(nrAt(row));
}

std::int64_t StationGridModel::nrAt(int row) const {
    return numbers_.at(static_cast<std::size_t>(row));
}

int StationGridModel::rowOf(std::int64_t nr) const {
    const auto it = std::lower_bound(numbers_.begin(), numbers_.end(), nr);
    if (it == numbers_.end() || *it != nr)
        return -1;
    return static_cast<int>(it - numbers_.begin());
}

int StationGridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(numbers_.size());
}

int StationGridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kQjFieldCount;
}

QVariant StationGridModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole || !index.isValid() || !log_)
        return {};
    const auto& page = pageOf(index.row());
    const auto at = static_cast<std::size_t>(index.row() % kPage);
    if (at >= page.size() || page[at].nr != nrAt(index.row()))
        return {};
    const StationQso& q = page[at];
    switch (index.column()) {
    case 0:
        return QString::number(q.nr);
    case 1:
        return QString::fromStdString(q.dateTime.dateIso() + " " + q.dateTime.timeHM());
    default:
        return QString::fromStdString(*textField(q, index.column()));
    }
}

QVariant StationGridModel::headerData(int section, Qt::Orientation o, int role) const {
    if (role != Qt::DisplayRole)
        return {};
    if (o == Qt::Vertical)
        return section + 1;
    if (section < 0 || section >= kQjFieldCount)
        return {};
    return QString::fromStdString(texts_(kHeads[section]));
}

} // namespace orv::ui
