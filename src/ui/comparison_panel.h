#pragma once

#include <QObject>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/app/app_paths.h"
#include "core/reference/call_db_merge.h"

class QMenu;
class QPushButton;
class QTableWidget;
class QWidget;

namespace orv {
class Capture;
class Texts;
} // namespace orv

namespace orv::ui {

class MainWindow;

// The database comparison in the panel `Frame4` with its grid `MSFlexGrid3`:
// the QSOs of the band that the call database does not put beyond doubt,
// each with the records that resemble it. Core finds the groups; this class
// lays them out and turns the grid's menu into the correction line's fields.
class ComparisonPanel final : public QObject {
    Q_OBJECT
public:
    struct Sources {
        std::function<Capture*()> capture;
        std::function<std::shared_ptr<const QBDatImage>()> image;
        std::function<std::string()> logName; // the open log's name, no extension
    };
    ComparisonPanel(MainWindow& window, const AppPaths& paths, const Texts& texts, Sources sources);

    // `MnDBCheck`: the panel over the main panels, compared by call.
    void open();
    // `Command5` and `Command6`.
    void compare(CompareBy by);
    // `Command2` and Escape: the main panels come back.
    void close();

    // What a grid row stands for.
    enum class RowKind { None, Qso, Record, Separator };
    RowKind rowKind(int row) const;

    // The grid's context menu for a row, prepared as the right click does.
    QMenu* menuFor(int row);
    void doubleClicked(int row);

private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void Grid3Set();
    void setPanelsEnabled(bool on);
    void addSeparator();
    void addQsoRow(const QsoRow& qso, int band);
    void addRecordRow(const QBDatEntry& e, std::uint32_t recordNr);
    std::optional<QBDatEntry> recordOf(int row) const;
    void editQso(int row);
    void qsoCorrected(const QString& call, const QString& locator);
    void takeRecord(int row, bool call, bool locator);
    void noteRecord(int row);

    MainWindow& window_;
    AppPaths paths_;
    const Texts& texts_;
    Sources sources_;
    std::shared_ptr<const QBDatImage> shown_; // the image the rows refer to
    QWidget* frame_ = nullptr;
    QTableWidget* grid_ = nullptr;
    QPushButton* byCall_ = nullptr;
    QPushButton* byLocator_ = nullptr;
    QPushButton* nothingFound_ = nullptr;
    QMenu* menu_ = nullptr;
    int editedRow_ = -1; // the QSO row whose correction line is open
    int menuRow_ = -1;
};

} // namespace orv::ui
