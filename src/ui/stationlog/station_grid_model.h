#pragma once

#include <QAbstractTableModel>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "core/stationlog/schema.h"

namespace orv {
class StationLog;
class Texts;
} // namespace orv

namespace orv::ui {

// The whole station log as the grid `DBGrid1` shows it: one row a record in
// Nr order, one column a field of `QJLog`. Only the numbers are read when
// the log is loaded; records are read a page at a time when the view first
// shows them, so a log of any length opens at once.
class StationGridModel final : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit StationGridModel(const Texts& texts, QObject* parent = nullptr);

    // Reads the numbers of `log` (nothing: no log open) and resets the view.
    void load(StationLog* log);
    // A record stored after every other one: one row more, nothing re-read.
    void appended(const StationQso& stored);
    // A record whose fields changed: its row is read again when shown.
    void changed(std::int64_t nr);
    // The record shown in a row, read from the log.
    std::optional<StationQso> record(int row) const;
    std::int64_t nrAt(int row) const;
    // The row of a Nr, -1 when the log has none.
    int rowOf(std::int64_t nr) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation o, int role) const override;

private:
    static constexpr int kPage = 256;
    const std::vector<StationQso>& pageOf(int row) const;

    const Texts& texts_;
    StationLog* log_ = nullptr;
    std::vector<std::int64_t> numbers_;
    mutable std::map<int, std::vector<StationQso>> pages_;
};

} // namespace orv::ui
