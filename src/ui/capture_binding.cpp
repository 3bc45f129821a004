#include "ui/capture_binding.h"

#include <QTimer>

#include "core/capture/capture.h"
#include "core/capture/entry_rules.h"
#include "core/capture/rate_meter.h"
#include "core/util/text.h"
#include "ui/log_grid_model.h"
#include "ui/main_window.h"

namespace orv::ui {
namespace {

LogGridModel::Row toRow(const GridRow& row) {
    const GridCells cells = gridCells(row);
    LogGridModel::Row out;
    for (std::size_t c = 0; c < cells.size(); ++c)
        out[c] = QString::fromStdString(cells[c]);
    return out;
}

} // namespace

CaptureBinding::CaptureBinding(MainWindow& window, Capture& capture, ContestLog& log,
                               Beeper& beeper, const Texts& texts)
    : QObject(&window), window_(window), capture_(capture), log_(log), beeper_(beeper),
      texts_(texts) {
    window_.onCommit = [this] { commit(); };
    window_.onResolveDuplicate = [this] { resolveDuplicate(); };
    connect(&window_, &MainWindow::bandChanged, this, [this](int band) {
        capture_.selectBand(band);
        showBand();
    });
    connect(&window_, &MainWindow::locatorEdited, this, &CaptureBinding::preview);
    connect(&window_, &MainWindow::callLeft, this, &CaptureBinding::checkCall);

    timer7_ = new QTimer(this);
    timer7_->setObjectName("Timer7");
    timer7_->setInterval(1000);
    connect(timer7_, &QTimer::timeout, this, &CaptureBinding::tickRate);
    timer7_->start();

    const auto withQsos = log_.bandsWithQsos();
    for (int b = 0; b < kBandCount; ++b)
        window_.setBandHasQsos(b, withQsos[static_cast<std::size_t>(b)]);
    if (capture_.band() != window_.currentBand())
        capture_.selectBand(window_.currentBand());
    showBand();
}

CaptureBinding::~CaptureBinding() {
    window_.onCommit = nullptr;
    window_.onResolveDuplicate = nullptr;
}

void CaptureBinding::showBand() {
    std::vector<LogGridModel::Row> rows;
    rows.reserve(capture_.state().rows().size());
    for (const GridRow& r : capture_.state().rows())
        rows.push_back(toRow(r));
    window_.logGrid().setRows(std::move(rows));
    window_.setNextSerial(QString::fromStdString(capture_.state().nextSerial()));
    window_.setLast(QString::fromStdString(capture_.lastCall()),
                    QString::fromStdString(capture_.lastLocator()));
    showFigures();
    // The distance of a locator in hand is computed anew for the new band.
    preview(QString::fromStdString(window_.entryRow().locator));
    tickRate();
}

void CaptureBinding::showFigures() {
    const BandState& s = capture_.state();
    BandFigures f;
    f.lastQsoNr = s.LastQSONr;
    f.pGesamt = s.PGesamt;
    f.kmPerQso = QString::number(s.kmPerQso());
    f.odx = s.ODX;
    f.squares = s.GrossfeldZahl();
    f.deleted = s.deletedCount();
    window_.setBandFigures(f);
}

void CaptureBinding::commit() {
    EntryRow row = window_.entryRow();
    CommitResult r = capture_.Uebernehmen(row);
    switch (r.kind) {
    case CommitResult::Kind::Refused:
        beeper_.beep();
        window_.showStatus(QString::fromStdString(texts_(r.failure.text)));
        window_.focusNamed(r.failure.field);
        return;
    case CommitResult::Kind::Duplicate:
        beeper_.beep();
        duplicateNr_ = text::leadingInt(r.duplicate.dup[3]);
        window_.showDuplicate(r.duplicate);
        window_.focusNamed("Text3");
        return;
    case CommitResult::Kind::Stored:
        break;
    }
    window_.logGrid().appendRow(toRow(r.stored));
    window_.setBandHasQsos(capture_.band(), true);
    window_.setEntryRow(row);
    window_.setLast(QString::fromStdString(capture_.lastCall()),
                    QString::fromStdString(capture_.lastLocator()));
    showFigures();
    window_.readyForNext();
}

void CaptureBinding::preview(const QString& locator) {
    const std::string typed = text::trim(locator.toStdString());
    const std::size_t n = typed.size();
    if (n <= 1 || n > 6)
        return;
    if (const auto p = capture_.preview(typed)) {
        window_.setPreview(QString::number(p->km), QString::fromStdString(p->bearing));
        return;
    }
    // A complete locator that gives no position is wrong; a part of one may
    // still become right, and the old preview stays meanwhile.
    if (n == 6) {
        beeper_.beep();
        window_.showStatus(QString::fromStdString(texts_(2)));
        window_.setPreview({}, {});
    }
}

void CaptureBinding::checkCall(const QString& call) {
    if (const auto dup = capture_.CallExistTest(call.toStdString())) {
        beeper_.beep();
        duplicateNr_ = text::leadingInt(dup->dup[3]);
        window_.showDuplicate(*dup);
    }
    window_.showWorkedElsewhere(capture_.WorkAlso(call.toStdString()));
}

void CaptureBinding::resolveDuplicate() {
    if (duplicateNr_ < 1 || !capture_.ErrQSO(duplicateNr_))
        return;
    duplicateNr_ = 0;
    showBand();
    window_.hideDuplicate();
    window_.focusNamed("Text3");
}

void CaptureBinding::setRateSettings(int zeitbereich, int zeigerMax) {
    zeitbereich_ = zeitbereich;
    zeigerMax_ = zeigerMax;
}

void CaptureBinding::tickRate() {
    std::vector<DateTime> times;
    times.reserve(capture_.state().rows().size());
    for (const GridRow& r : capture_.state().rows())
        times.push_back(r.qso.datTime);
    window_.setRate(readRate(times, capture_.logNow(), zeitbereich_, zeigerMax_));
}

} // namespace orv::ui
