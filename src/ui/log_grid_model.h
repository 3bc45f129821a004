#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <array>
#include <functional>
#include <optional>
#include <set>
#include <unordered_map>
#include <vector>

namespace orv {
class Texts;
}

namespace orv::ui {

// The band's log as the grid `MSFlexGrid1` shows it: one header row and 18
// columns. The model only holds cells; which rows stand here, and what they
// say, is decided by the band state of the capture core.
class LogGridModel final : public QAbstractTableModel {
    Q_OBJECT
public:
    static constexpr int kColumns = 18;
    // Columns that other code reads back by position.
    enum Column {
        Call = 0,
        Locator = 1,
        RstSent = 2,
        Number = 3,
        RstReceived = 4,
        Qrb = 5,
        Date = 6,
        Time = 7,
        Band = 8,
        ModeRx = 9,
        ModeTx = 10,
        Qsl = 11,
        Notice = 12,
        Qtf = 13,
        Name = 14,
        Propagation = 15,
        Deleted = 16,
        Operator = 17,
    };
    using Row = std::array<QString, kColumns>;

    explicit LogGridModel(QObject* parent = nullptr);

    // `Grid1Set`: the headers from the language table.
    void Grid1Set(const Texts& texts);
    // Widths in twips, as the grid was laid out; the view scales them.
    static int columnTwips(int column);

    void setRows(std::vector<Row> rows);
    // A band of `count` rows whose cells are made when the view first asks
    // for them: a band change then costs nothing per row here, however long
    // the band. `cellsOf` must answer for every row until the next reset.
    void setSource(int count, std::function<Row(int)> cellsOf);
    void appendRow(Row row);
    void updateRow(int row, Row cells);
    const Row& row(int r) const;
    bool isDeleted(int r) const;
    // QSO numbers that two positions of a shared contest gave on the band:
    // their number cells are marked, the numbers stay as they were sent.
    void setFlaggedNumbers(std::set<long long> numbers);
    bool isFlagged(int r) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation o, int role) const override;

private:
    int count_ = 0;
    // Rows made so far; the others are made from `source_` on demand. A
    // band change then allocates nothing per row of the band.
    mutable std::unordered_map<int, Row> made_;
    std::function<Row(int)> source_;
    QStringList headers_;
    std::set<long long> flagged_;
};

} // namespace orv::ui
