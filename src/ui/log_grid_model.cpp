#include "ui/log_grid_model.h"

#include <QBrush>
#include <QColor>
#include <stdexcept>
#include <string>

#include "core/i18n/texts.h"

namespace orv::ui {
namespace {

constexpr int kTwips[LogGridModel::kColumns] = {1780, 1000, 580, 580,  900, 700, 1000, 700, 750,
                                                750,  700,  700, 1600, 900, 700, 520,  0,   1000};

Qt::Alignment alignment(int column) {
    switch (column) {
    case LogGridModel::Call:
    case LogGridModel::Qsl:
        return Qt::AlignLeft | Qt::AlignVCenter;
    case LogGridModel::Qrb:
        return Qt::AlignRight | Qt::AlignVCenter;
    case LogGridModel::Notice:
    case LogGridModel::Name:
    case LogGridModel::Propagation:
    case LogGridModel::Deleted:
    case LogGridModel::Operator:
        return Qt::AlignLeft | Qt::AlignVCenter;
    default:
        return Qt::AlignCenter;
    }
}

} // namespace

LogGridModel::LogGridModel(QObject* parent) : QAbstractTableModel(parent) {
    for (int c = 0; c < kColumns; ++c)
        headers_ << QString();
}

void LogGridModel::Grid1Set(const Texts& texts) {
    auto t = [&](int n) { return QString::fromStdString(texts(n)); };
    // Columns 9 and 10 stand crossed against their fields: `Mod` under
    // "RXMod" and `ModRX` under "TXMod", as every reader of the grid expects.
    headers_ = {t(151), t(155), t(152), t(153), t(152) + t(153), t(156), t(159), t(150),    t(173),
                t(161), t(160), t(157), t(158), t(206),          t(22),  t(176), QString(), t(209)};
    emit headerDataChanged(Qt::Horizontal, 0, kColumns - 1);
}

int LogGridModel::columnTwips(int column) {
    return column >= 0 && column < kColumns ? kTwips[column] : 0;
}

void LogGridModel::setRows(std::vector<Row> rows) {
    beginResetModel();
    source_ = nullptr;
    made_.clear();
    count_ = static_cast<int>(rows.size());
    for (int r = 0; r < count_; ++r)
        made_.emplace(r, std::move(rows[static_cast<std::size_t>(r)]));
    endResetModel();
}

void LogGridModel::setSource(int count, std::function<Row(int)> cellsOf) {
    beginResetModel();
    source_ = std::move(cellsOf);
    made_.clear();
    count_ = std::max(0, count);
    endResetModel();
}

const LogGridModel::Row& LogGridModel::row(int r) const {
    if (r < 0 || r >= count_)
        throw std::out_of_range("log grid row " + std::to_string(r));
    auto it = made_.find(r);
    if (it == made_.end())
        it = made_.emplace(r, source_ ? source_(r) : Row{}).first;
    return it->second;
}

void LogGridModel::appendRow(Row row) {
    const int at = count_;
    beginInsertRows({}, at, at);
    made_[at] = std::move(row);
    ++count_;
    endInsertRows();
}

void LogGridModel::updateRow(int r, Row cells) {
    if (r < 0 || r >= count_)
        throw std::out_of_range("log grid row " + std::to_string(r));
    made_[r] = std::move(cells);
    emit dataChanged(index(r, 0), index(r, kColumns - 1));
}

bool LogGridModel::isDeleted(int r) const {
    const QString& flag = row(r)[Deleted];
    return flag.compare("True", Qt::CaseInsensitive) == 0 || flag == "1" || flag == "-1";
}

void LogGridModel::setFlaggedNumbers(std::set<long long> numbers) {
    if (numbers == flagged_)
        return;
    flagged_ = std::move(numbers);
    if (count_ > 0)
        emit dataChanged(index(0, Number), index(count_ - 1, Number), {Qt::BackgroundRole});
}

bool LogGridModel::isFlagged(int r) const {
    return !flagged_.empty() && flagged_.count(row(r)[Number].trimmed().toLongLong()) > 0;
}

int LogGridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count_;
}

int LogGridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kColumns;
}

QVariant LogGridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return row(index.row())[static_cast<std::size_t>(index.column())];
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(alignment(index.column()));
    case Qt::BackgroundRole:
        // A deleted QSO keeps its call readable and paints the rest red.
        if (index.column() >= 1 && isDeleted(index.row()))
            return QBrush(QColor(255, 0, 0));
        if (index.column() == Number && isFlagged(index.row()))
            return QBrush(QColor(255, 165, 0));
        return {};
    default:
        return {};
    }
}

QVariant LogGridModel::headerData(int section, Qt::Orientation o, int role) const {
    if (o != Qt::Horizontal || section < 0 || section >= kColumns)
        return QAbstractTableModel::headerData(section, o, role);
    if (role == Qt::DisplayRole)
        return headers_[section];
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(section < 8 ? Qt::Alignment(Qt::AlignCenter)
                                               : alignment(section));
    return {};
}

} // namespace orv::ui
