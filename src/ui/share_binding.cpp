#include "ui/share_binding.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <set>

#include "core/capture/capture.h"
#include "core/i18n/texts.h"
#include "core/logstore/bands.h"
#include "core/shared/shared_store.h"
#include "platform/pg/pg_share_worker.h"
#include "ui/log_grid_model.h"
#include "ui/main_window.h"
#include "ui/station_qsos_dialog.h"

namespace orv::ui {

namespace {
QString q(const std::string& s) {
    return QString::fromStdString(s);
}

constexpr int kTitle = 1338, kPosition = 1339, kBand = 1340, kOperator = 1341, kLastQso = 1342,
              kWaiting = 1343, kKeepMine = 1344, kTakeServer = 1345, kBandHeld = 1346,
              kConflictTitle = 1347, kClose = 1348, kOnline = 1349, kOffline = 1331,
              kConflicts = 1327, kDoubles = 1336, kHere = 1334, kServer = 1335, kStation = 1354,
              kSquares = 1355;
} // namespace

ShareBinding::ShareBinding(MainWindow& window, Capture& capture, ContestLog& log,
                           const Texts& texts, const std::string& password)
    : window_(window), capture_(capture), log_(log), texts_(texts), view_(log.db()),
      summaryReader_(log.path()) {
    setObjectName("ShareBinding");
    position_ = SharedStore(log.db()).setup().position;
    capture_.setOtherPositions(&view_);

    dock_ = new QDockWidget(q(texts_(kTitle)), &window_);
    dock_->setObjectName("SharePanel");
    auto* body = new QWidget(dock_);
    auto* layout = new QVBoxLayout(body);
    positions_ = new QTableWidget(0, 5, body);
    positions_->setObjectName("SharePositions");
    positions_->setHorizontalHeaderLabels({q(texts_(kPosition)), q(texts_(kBand)),
                                           q(texts_(kOperator)), q(texts_(kLastQso)),
                                           q(texts_(kWaiting))});
    positions_->verticalHeader()->hide();
    positions_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    positions_->setFocusPolicy(Qt::NoFocus);
    state_ = new QLabel(body);
    state_->setObjectName("ShareState");
    conflicts_ = new QPushButton(body);
    conflicts_->setObjectName("ShareConflicts");
    conflicts_->setFocusPolicy(Qt::NoFocus);
    layout->addWidget(positions_);
    layout->addWidget(state_);
    layout->addWidget(conflicts_);
    // The other positions' QSOs of the band, to correct and delete: the
    // button or Ctrl+Shift+S.
    auto* station = new QPushButton(q(texts_(1365)), body);
    station->setObjectName("ShareStationQsos");
    station->setFocusPolicy(Qt::NoFocus);
    layout->addWidget(station);
    connect(station, &QPushButton::clicked, this,
            [this] { openStationQsos(*dock_, log_.db(), capture_, texts_, [this] { nudge(); }); });
    new QShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S), dock_,
                  [station] { station->click(); });
    dock_->setWidget(body);
    window_.addDockWidget(Qt::BottomDockWidgetArea, dock_);
    connect(conflicts_, &QPushButton::clicked, this, &ShareBinding::showConflicts);
    connect(&window_, &MainWindow::bandChanged, this, &ShareBinding::bandChosen);

    worker_ = std::make_unique<PgShareWorker>(log.path(), password);
    worker_->watchBand(capture_.band());
    worker_->start();
    timer_ = new QTimer(this);
    timer_->setObjectName("ShareTimer");
    connect(timer_, &QTimer::timeout, this, &ShareBinding::refresh);
    timer_->start(500);
    refresh();
}

ShareBinding::~ShareBinding() {
    // The summary's thread reads over a connection of its own: let it end.
    if (summary_.valid())
        summary_.wait();
    capture_.setOtherPositions(nullptr);
    worker_.reset();
    delete dock_;
}

void ShareBinding::nudge() {
    worker_->nudge();
    // The number held for the next QSO comes with the worker's round.
    QTimer::singleShot(150, this, &ShareBinding::refresh);
}

void ShareBinding::takeHeldSerial(const ShareStatus& st) {
    if (st.heldBand == heldBand_ && st.heldSerial == heldSerial_)
        return;
    heldBand_ = st.heldBand;
    heldSerial_ = st.heldSerial;
    view_.setHeld(heldBand_, heldSerial_);
    // The number shown is the one the QSO gets and the one sent on the air:
    // it changes only while no QSO is in hand.
    if (window_.entryRow().call.empty())
        window_.setNextSerial(q(capture_.nextSerial()));
}

void ShareBinding::refresh() {
    const ShareStatus st = worker_->status();
    takeHeldSerial(st);
    positions_->setRowCount(static_cast<int>(st.positions.size()));
    int r = 0;
    for (const auto& p : st.positions) {
        const bool offline =
            p.secondsSinceSeen > kOfflineSeconds || (p.position == position_ && !st.online);
        const QStringList cells{
            q(p.position), p.band >= 0 ? q(std::string(band(p.band).boxText)) : QString(),
            q(p.opCall),
            q(p.lastCall + " " + p.lastTime.substr(std::min<std::size_t>(11, p.lastTime.size()))),
            offline ? q(texts_(kOffline)) : QString::number(p.queued)};
        for (int c = 0; c < cells.size(); ++c) {
            auto* item = positions_->item(r, c);
            if (!item)
                positions_->setItem(r, c, item = new QTableWidgetItem);
            item->setText(cells[c]);
        }
        ++r;
    }
    linkState_ = q(texts_(st.online ? kOnline : kOffline));
    if (!st.online && !st.lastError.empty())
        linkState_ += "\n" + q(st.lastError);

    // The figures run over the whole station's QSOs of the band, which can
    // take longer than a key press may wait: on a thread, one at a time.
    if (summary_.valid() &&
        summary_.wait_for(std::chrono::seconds(0)) == std::future_status::ready) {
        try {
            showSummary(summary_.get());
        } catch (const std::exception& e) {
            state_->setText(linkState_ + "\n" + q(e.what()));
        }
    }
    if (!summary_.valid())
        summary_ = std::async(std::launch::async,
                              [this, b = capture_.band()] { return summaryReader_.read(b); });
}

void ShareBinding::showSummary(const ShareSummary& s) {
    QString state = linkState_ + "  " + q(texts_(kWaiting)) + ": " + QString::number(s.queued);
    std::set<long long> flagged;
    if (s.band >= 0 && s.band == capture_.band()) {
        // The whole station on this band: QSOs, km, ODX, large squares.
        const StationFigures& f = s.figures;
        state += "\n" + q(texts_(kStation)) + " " + QString::number(f.qsos) + " QSO, " +
                 QString::number(f.km) + " km, ODX " + QString::number(f.odx) + " km, " +
                 QString::number(f.squares) + " " + q(texts_(kSquares));
        if (!s.doubles.empty()) {
            QStringList nrs;
            for (const auto& d : s.doubles) {
                nrs << QString::number(d.qsoNr);
                flagged.insert(d.qsoNr);
            }
            state += "  " + q(texts_(kDoubles)) + " " + nrs.join(", ");
        }
    }
    window_.logGrid().setFlaggedNumbers(std::move(flagged));
    state_->setText(state);
    conflicts_->setText(q(texts_(kConflicts)) + " " + QString::number(s.conflicts));
    conflicts_->setEnabled(s.conflicts > 0);
}

void ShareBinding::bandChosen(int b) {
    worker_->watchBand(b);
    QStringList holders;
    for (const auto& p : worker_->status().positions)
        if (p.position != position_ && p.band == b && p.secondsSinceSeen <= kOfflineSeconds)
            holders << q(p.position);
    if (!holders.isEmpty())
        window_.showStatus(q(texts_(kBandHeld)) + " " + holders.join(", "));
}

void ShareBinding::showConflicts() {
    QDialog dialog(&window_);
    dialog.setObjectName("ShareConflictList");
    dialog.setWindowTitle(q(texts_(kConflictTitle)));
    auto* layout = new QVBoxLayout(&dialog);
    auto* table = new QTableWidget(0, 4, &dialog);
    table->setObjectName("ShareConflictTable");
    table->setHorizontalHeaderLabels(
        {q(texts_(kBand)), q(texts_(kHere)), q(texts_(kServer)), q(texts_(kPosition))});
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    auto* buttons = new QDialogButtonBox(&dialog);
    auto* keep = buttons->addButton(q(texts_(kKeepMine)), QDialogButtonBox::ActionRole);
    keep->setObjectName("ShareKeepMine");
    auto* take = buttons->addButton(q(texts_(kTakeServer)), QDialogButtonBox::ActionRole);
    take->setObjectName("ShareTakeServer");
    auto* close = buttons->addButton(q(texts_(kClose)), QDialogButtonBox::RejectRole);
    close->setObjectName("ShareClose");
    layout->addWidget(table);
    layout->addWidget(buttons);
    auto describe = [](const SharedQso& s) {
        return q(s.row.call + " " + std::to_string(s.row.qsoNr) + " " + s.row.locator +
                 (s.row.errQso ? " ErrQSO" : ""));
    };
    std::vector<ShareConflict> list;
    auto fill = [&] {
        list = SharedStore(log_.db()).conflicts();
        table->setRowCount(static_cast<int>(list.size()));
        for (int i = 0; i < static_cast<int>(list.size()); ++i) {
            const auto& c = list[static_cast<std::size_t>(i)];
            const QStringList cells{q(std::string(band(c.mine.band).boxText)), describe(c.mine),
                                    describe(c.server), q(c.server.position)};
            for (int k = 0; k < cells.size(); ++k)
                table->setItem(i, k, new QTableWidgetItem(cells[k]));
        }
        if (!list.empty())
            table->selectRow(0);
    };
    auto resolve = [&](bool mine) {
        const int row = table->currentRow();
        if (row < 0 || row >= static_cast<int>(list.size()))
            return;
        SharedStore store(log_.db());
        if (mine)
            store.keepMine(list[static_cast<std::size_t>(row)].id);
        else
            store.takeServer(list[static_cast<std::size_t>(row)].id);
        worker_->nudge();
        fill();
        refresh();
    };
    connect(keep, &QPushButton::clicked, &dialog, [&] { resolve(true); });
    connect(take, &QPushButton::clicked, &dialog, [&] { resolve(false); });
    connect(close, &QPushButton::clicked, &dialog, &QDialog::reject);
    fill();
    dialog.exec();
}

} // namespace orv::ui
