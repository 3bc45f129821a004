#pragma once

// The other positions' QSOs of the band, from the cache in the log file: the
// operator filters them by typing a call, corrects one in a correction line
// (Enter), marks it deleted or restores it (Del). Each change goes to the
// cache and the outbox at once and reaches the other positions through the
// worker. Keys only; Esc closes.

#include <QDialog>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "core/shared/shared_server.h"
#include "core/util/result.h"
#include "platform/qt_dialogs.h"

class QLabel;
class QLineEdit;
class QTableWidget;

namespace orv {
class Capture;
class Texts;
namespace sql {
class Db;
}
} // namespace orv

namespace orv::ui {

class CorrectionLine;

class StationQsosDialog final : public QDialog {
    Q_OBJECT
public:
    // `changed` runs after each stored change (the worker is nudged).
    StationQsosDialog(sql::Db& db, Capture& capture, const Texts& texts,
                      std::function<void()> changed, QWidget* parent);

    // Reads the band's cache again when it changed since the last look.
    void refresh();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Shows the QSOs the filter lets through, `keep` selected when shown.
    void fill(const std::string& keep);
    const SharedQso* selected() const;
    std::string selectedUid() const;
    void edit();
    void storeEdit();
    void leaveEdit();
    void toggleDeleted();
    void report(const Failure& f);
    void stored();

    sql::Db& db_;
    Capture& capture_;
    const Texts& texts_;
    std::function<void()> changed_;
    platform::QtDialogs dialogs_;
    platform::QtBeeper beeper_;
    int band_ = -1;
    std::pair<std::int64_t, std::int64_t> stamp_{-1, -1};
    std::vector<SharedQso> qsos_;
    std::vector<std::size_t> shown_; // rows of the table: indexes into qsos_
    std::string editing_;            // the QSO id in the correction line
    QLineEdit* filter_ = nullptr;
    QTableWidget* table_ = nullptr;
    CorrectionLine* line_ = nullptr;
    QLabel* state_ = nullptr;
};

// Opens the dialog over `parent`, or raises the one open already.
void openStationQsos(QWidget& parent, sql::Db& db, Capture& capture, const Texts& texts,
                     std::function<void()> changed);

} // namespace orv::ui
