#pragma once

// The window's side of a shared contest: the worker that talks to the
// server (never on the window thread), the capture counting the other
// positions' QSOs, the status panel of the positions, the conflict list and
// the warning when the band chosen is held by another position.

#include <QObject>
#include <future>
#include <memory>
#include <string>

#include "core/shared/share_summary.h"
#include "core/shared/station_view.h"

class QDockWidget;
class QLabel;
class QPushButton;
class QTableWidget;
class QTimer;

namespace orv {
class Capture;
class ContestLog;
class PgShareWorker;
struct ShareStatus;
class Texts;
} // namespace orv

namespace orv::ui {

class MainWindow;

class ShareBinding final : public QObject {
    Q_OBJECT
public:
    ShareBinding(MainWindow& window, Capture& capture, ContestLog& log, const Texts& texts,
                 const std::string& password);
    ~ShareBinding() override;

    // A local change was committed: send it soon.
    void nudge();
    // The panel from the worker's last status (the timer does it twice a
    // second); the figures read from the file come a moment later, from a
    // thread beside the window.
    void refresh();
    // The conflict list; the operator keeps either version of each QSO.
    void showConflicts();
    // A position not heard from for this long counts as offline.
    static constexpr int kOfflineSeconds = 15;

private:
    void bandChosen(int band);
    void takeHeldSerial(const ShareStatus& status);
    void showSummary(const ShareSummary& s);

    MainWindow& window_;
    Capture& capture_;
    ContestLog& log_;
    const Texts& texts_;
    SharedStationView view_;
    std::unique_ptr<PgShareWorker> worker_;
    std::string position_;
    QDockWidget* dock_ = nullptr;
    QTableWidget* positions_ = nullptr;
    QLabel* state_ = nullptr;
    QPushButton* conflicts_ = nullptr;
    QTimer* timer_ = nullptr;
    ShareSummaryReader summaryReader_;
    std::future<ShareSummary> summary_;
    QString linkState_;
    int heldBand_ = -1;
    std::int64_t heldSerial_ = 0;
};

} // namespace orv::ui
