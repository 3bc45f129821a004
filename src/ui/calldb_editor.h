#pragma once

#include <QAbstractTableModel>
#include <QDialog>
#include <array>
#include <memory>
#include <string>
#include <vector>

#include "core/app/app_paths.h"
#include "core/logstore/bands.h"
#include "core/reference/call_db.h"

class QLabel;
class QLineEdit;
class QListWidget;
class QSpinBox;
class QTableView;

namespace orv {
class Dialogs;
class Texts;
} // namespace orv

namespace orv::ui {

// "QBDatEditList.ini", section `QBDatEditList`: calls noted for the database
// editor from the lookup list or the comparison, one "CALL LOCATOR" a line.
std::filesystem::path editListPath(const AppPaths& paths);
void noteForEditor(const AppPaths& paths, const std::string& call, const std::string& locator);
std::vector<CallListLine> editorNotes(const AppPaths& paths);
void dropEditorNote(const AppPaths& paths, const CallListLine& note);

// The rows of `OrvantaContestDat`, narrowed to calls holding a typed part.
class CallDbModel final : public QAbstractTableModel {
    Q_OBJECT
public:
    static constexpr int kColumns = 3 + kBandCount; // call, locator, counters, date
    explicit CallDbModel(const Texts& texts, QObject* parent = nullptr)
        : QAbstractTableModel(parent), texts_(texts) {}

    void setRecords(std::vector<CallRecord> records);
    void setFilter(const QString& callPart);
    const CallRecord* recordAt(int row) const;
    // The view row of the stored row `rowid`, or -1.
    int rowOf(std::int64_t rowid) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation o, int role) const override;

private:
    const Texts& texts_;
    void refilter();
    std::vector<CallRecord> records_;
    std::vector<std::size_t> shown_;
    std::string filter_;
};

// The call database editor behind `QBDatEdit`: the rows in a grid, and a
// row's fields to add it anew, change it or delete it. Every change goes
// through the database's own checks and is stored at once.
class CallDbEditor final : public QDialog {
    Q_OBJECT
public:
    // Throws sql::Error when the database cannot be opened.
    CallDbEditor(const AppPaths& paths, const Texts& texts, Dialogs& dialogs,
                 QWidget* parent = nullptr);
    ~CallDbEditor() override;

    // Whether the database changed while the window was open.
    bool changed() const { return changed_; }

    // The buttons' work, public for the window's tests.
    void addRow();
    void changeRow();
    void deleteRow();
    // Fills the fields from the grid's row, or from a note of the list.
    void showRow(int viewRow);
    void takeNote(int noteRow);

private:
    std::optional<CallRecord> fieldsToRecord();
    void reloadRows(std::int64_t select);
    void refuse(const Failure& f);
    void fillNotes();

    AppPaths paths_;
    const Texts& texts_;
    Dialogs& dialogs_;
    std::unique_ptr<CallDbStore> store_;
    CallDbModel* model_ = nullptr;
    QTableView* grid_ = nullptr;
    QLineEdit* filter_ = nullptr;
    QLineEdit* call_ = nullptr;
    QLineEdit* locator_ = nullptr;
    std::array<QSpinBox*, kBandCount> counters_{};
    QLineEdit* lastDate_ = nullptr;
    QLabel* status_ = nullptr;
    QListWidget* notes_ = nullptr;
    std::int64_t rowid_ = 0;
    bool changed_ = false;
};

} // namespace orv::ui
