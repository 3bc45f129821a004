#include "ui/capture_binding.h"

#include <QTimer>
#include <cmath>

#include "core/capture/capture.h"
#include "core/capture/entry_rules.h"
#include "core/capture/rate_meter.h"
#include "core/locator/locator.h"
#include "core/locator/square_window.h"
#include "core/logstore/bands.h"
#include "core/settings/settings.h"
#include "core/util/text.h"
#include "platform/qt_dialogs.h"
#include "ui/log_grid_model.h"
#include "ui/main_window.h"
#include "ui/square_window.h"

namespace orv::ui {
namespace {

LogGridModel::Row toRow(const GridRow& row) {
    const GridCells cells = gridCells(row);
    LogGridModel::Row out;
    for (std::size_t c = 0; c < cells.size(); ++c)
        out[c] = QString::fromStdString(cells[c]);
    return out;
}

// The integer part of what an input box returned, when it is a number at all.
std::optional<long long> integerPart(const std::string& typed) {
    bool ok = false;
    const double v = QString::fromStdString(typed).trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(v) || std::fabs(v) > 1e15)
        return std::nullopt;
    return static_cast<long long>(std::floor(v));
}

} // namespace

CaptureBinding::CaptureBinding(MainWindow& window, Capture& capture, ContestLog& log,
                               Beeper& beeper, const Texts& texts, Dialogs& dialogs,
                               Settings* settings)
    : QObject(&window), window_(window), capture_(capture), log_(log), beeper_(beeper),
      texts_(texts), dialogs_(dialogs), settings_(settings) {
    // Every path that writes the log goes through guarded(): a database
    // failure (a full disk, a lost USB stick) shows its message and may be
    // retried, and never ends the program in the middle of a contest.
    window_.onCommit = [this] { guarded([this] { commit(); }); };
    window_.onEditCommit = [this] { guarded([this] { UebernehmenEdit(); }); };
    window_.onResolveDuplicate = [this] { guarded([this] { resolveDuplicate(); }); };
    window_.onSquareWindow = [this] { showSquareWindow(); };
    connect(&window_, &MainWindow::bandChanged, this, [this](int band) {
        // A band held in memory is swapped in at once; only a read from the
        // file is worth the panel.
        const bool reading = !capture_.holds(band);
        if (reading)
            window_.setLoading(true);
        guarded([this, band] {
            capture_.selectBand(band);
            showBand();
        });
        if (reading)
            window_.setLoading(false);
    });
    connect(&window_, &MainWindow::locatorEdited, this, &CaptureBinding::preview);
    connect(&window_, &MainWindow::editLocatorEdited, this, &CaptureBinding::editPreview);
    connect(&window_, &MainWindow::callLeft, this,
            [this](const QString& call) { guarded([this, call] { checkCall(call, true); }); });
    connect(&window_, &MainWindow::lookupCallTaken, this,
            [this](const QString& call, bool testDuplicate) {
                guarded([this, call, testDuplicate] { checkCall(call, testDuplicate); });
            });
    connect(&window_, &MainWindow::editRequested, this, &CaptureBinding::EditView);
    connect(&window_, &MainWindow::markDeletedRequested, this,
            [this](int row) { guarded([this, row] { MnMarkASKill(row); }); });
    connect(&window_, &MainWindow::restoreRequested, this,
            [this](int row) { guarded([this, row] { MnGrid1KillRetur(row); }); });
    connect(&window_, &MainWindow::restoreAsked, this, [this](int row) {
        if (dialogs_.ask(texts_(232), Buttons::YesNo, Icon::Question, Answer::Yes) == Answer::Yes)
            guarded([this, row] { MnGrid1KillRetur(row); });
    });
    connect(&window_, &MainWindow::odxRequested, this, &CaptureBinding::showOdx);
    connect(&window_, &MainWindow::rateSettingsRequested, this, &CaptureBinding::askRateSettings);
    connect(&window_, &MainWindow::logLoeschenRequested, this,
            [this] { guarded([this] { MnLogLoeschen(); }); });

    timer7_ = new QTimer(this);
    timer7_->setObjectName("Timer7");
    timer7_->setInterval(1000);
    connect(timer7_, &QTimer::timeout, this, &CaptureBinding::tickRate);
    timer7_->start();

    // Another process (the tool, another position) may write the log while
    // the window stands: a cheap look at the file's version every second.
    watch_ = new QTimer(this);
    watch_->setObjectName("LogWatch");
    watch_->setInterval(1000);
    connect(watch_, &QTimer::timeout, this,
            [this] { guarded([this] { showIfChangedElsewhere(); }); });
    watch_->start();

    const auto withQsos = log_.bandsWithQsos();
    for (int b = 0; b < kBandCount; ++b)
        window_.setBandHasQsos(b, withQsos[static_cast<std::size_t>(b)]);
    if (capture_.band() != window_.currentBand())
        capture_.selectBand(window_.currentBand());
    showBand();
    // F2 brings back the station worked last: at start the last QSO of the
    // band shown, later only what a commit stores, never a band change.
    window_.setLast(QString::fromStdString(capture_.lastCall()),
                    QString::fromStdString(capture_.lastLocator()));
    // The other bands with QSOs are read while the operator works, so that
    // the first visit of each is a swap as well.
    capture_.preloadBands([this] {
        QMetaObject::invokeMethod(
            this, [this] { capture_.adoptLoaded(); }, Qt::QueuedConnection);
    });
}

void CaptureBinding::showIfChangedElsewhere() {
    if (!capture_.refreshIfChangedElsewhere())
        return;
    // Rows may have come or gone under a correction in hand.
    if (window_.editLineOpen())
        window_.closeEditLine(false);
    const auto withQsos = log_.bandsWithQsos();
    for (int b = 0; b < kBandCount; ++b)
        window_.setBandHasQsos(b, withQsos[static_cast<std::size_t>(b)]);
    showBand();
}

void CaptureBinding::guarded(const std::function<void()>& work) {
    for (;;) {
        try {
            work();
            return;
        } catch (const std::exception& e) {
            // IText(10) "FEHLER" with the failure's own message; Retry runs
            // the same step again, since nothing of it was stored.
            if (dialogs_.ask(texts_(10) + "\n" + e.what(), Buttons::RetryCancel, Icon::Critical,
                             Answer::Retry) != Answer::Retry)
                return;
        }
    }
}

CaptureBinding::~CaptureBinding() {
    // The worker hands its bands to this object: it stops first.
    capture_.stopPreload();
    // The grid must not ask a capture that is going away for its cells.
    window_.logGrid().setRows({});
    window_.onCommit = nullptr;
    window_.onEditCommit = nullptr;
    window_.onResolveDuplicate = nullptr;
    window_.onSquareWindow = nullptr;
}

void CaptureBinding::showBand() {
    // The grid makes its cells from the band state as it shows them.
    window_.logGrid().setSource(static_cast<int>(capture_.state().rows().size()), [this](int r) {
        return toRow(capture_.state().rows().at(static_cast<std::size_t>(r)));
    });
    window_.setNextSerial(QString::fromStdString(capture_.nextSerial()));
    // A duplicate panel of the band before has nothing to resolve here.
    duplicateNr_ = 0;
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

void CaptureBinding::refreshRow(long row) {
    if (row < 0 || static_cast<std::size_t>(row) >= capture_.state().rows().size())
        return;
    window_.logGrid().updateRow(static_cast<int>(row),
                                toRow(capture_.state().rows()[static_cast<std::size_t>(row)]));
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
        window_.restartClock();
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

QString CaptureBinding::bearingOf(const std::string& typed, const std::string& fallback) const {
    // With `AntenneKomma` the bearing carries its decimal, as in the grid.
    if (!capture_.config().antenneKomma)
        return QString::fromStdString(fallback);
    const std::string other = text::length(typed) == 6 ? typed : LocErgaenzen(typed);
    return QString::fromStdString(bearingText(capture_.config().ownLocator, other, true));
}

void CaptureBinding::preview(const QString& locator) {
    const std::string typed = text::trim(locator.toStdString());
    const std::size_t n = text::length(typed);
    if (n <= 1 || n > 6)
        return;
    if (const auto p = capture_.preview(typed)) {
        window_.setPreview(QString::number(p->km), bearingOf(typed, p->bearing));
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

void CaptureBinding::editPreview(const QString& locator) {
    const std::string typed = text::trim(locator.toStdString());
    const std::size_t n = text::length(typed);
    if (n <= 1 || n > 6)
        return;
    window_.showStatus({});
    if (const auto p = capture_.preview(typed)) {
        window_.setEditQrb(QString::number(p->km));
        return;
    }
    if (n == 6) {
        beeper_.beep();
        window_.showStatus(QString::fromStdString(texts_(2)));
        window_.setEditQrb({});
    }
}

void CaptureBinding::checkCall(const QString& call, bool testDuplicate) {
    if (const auto dup = testDuplicate ? capture_.CallExistTest(call.toStdString())
                                       : std::optional<DuplicatePanel>{}) {
        beeper_.beep();
        duplicateNr_ = text::leadingInt(dup->dup[3]);
        window_.showDuplicate(*dup);
    }
    window_.showWorkedElsewhere(capture_.WorkAlso(call.toStdString()));
}

void CaptureBinding::resolveDuplicate() {
    if (duplicateNr_ < 1 || !capture_.ErrQSO(duplicateNr_))
        return;
    refreshRow(capture_.state().findRow(duplicateNr_));
    duplicateNr_ = 0;
    showFigures();
    window_.hideDuplicate();
    window_.focusNamed("Text3");
}

void CaptureBinding::EditView(int row) {
    if (row < 0 || static_cast<std::size_t>(row) >= capture_.state().rows().size())
        return;
    window_.showEditRow(row, capture_.editView(static_cast<std::size_t>(row)));
}

void CaptureBinding::UebernehmenEdit() {
    const int row = window_.editGridRow();
    if (row < 0)
        return;
    // A correction out of the database comparison is confirmed first.
    const QWidget* comparison = window_.findChild<QWidget*>("Frame4");
    const bool comparing = comparison && comparison->isVisible();
    if (comparing &&
        dialogs_.ask(texts_(282), Buttons::YesNo, Icon::Question, Answer::Yes) != Answer::Yes)
        return;
    const EditRow edit = window_.editRow();
    const Status s = capture_.UebernehmenEdit(static_cast<std::size_t>(row), edit);
    if (!s) {
        beeper_.beep();
        window_.showStatus(QString::fromStdString(texts_(s.failure().text)));
        window_.focusNamed(s.failure().field);
        return;
    }
    refreshRow(row);
    showFigures();
    window_.showStatus({});
    window_.closeEditLine(true);
    if (comparing)
        emit window_.comparisonQsoCorrected(
            QString::fromStdString(edit.call).trimmed().toUpper(),
            QString::fromStdString(edit.locator).trimmed().toUpper());
}

void CaptureBinding::MnMarkASKill(int row) {
    if (row < 0 || static_cast<std::size_t>(row) >= capture_.state().rows().size())
        return;
    const auto nr = capture_.state().rows()[static_cast<std::size_t>(row)].qso.qsoNr;
    if (!capture_.ErrQSO(nr))
        return;
    refreshRow(capture_.state().findRow(nr));
    showFigures();
    window_.hideDuplicate();
}

void CaptureBinding::MnGrid1KillRetur(int row) {
    if (row < 0)
        return;
    const Status s = capture_.restore(static_cast<std::size_t>(row));
    if (!s) {
        window_.hideDuplicate();
        dialogs_.inform(texts_(s.failure().text), Icon::Information);
        return;
    }
    refreshRow(row);
    showFigures();
}

void CaptureBinding::MnLogLoeschen() {
    if (!capture_.MnLogLoeschen())
        return;
    dialogs_.inform(texts_(31), Icon::Information);
    emit programMustEnd();
}

void CaptureBinding::showOdx() {
    const std::string msg = capture_.odxMessage();
    if (!msg.empty())
        dialogs_.informTitled(texts_(169), msg, Icon::None);
}

void CaptureBinding::askRateSettings() {
    // Each value is asked until it is good or the user cancels; a value
    // already given stays stored when the second box is cancelled.
    auto ask = [this](int prompt, int current) -> std::optional<int> {
        for (;;) {
            const auto typed = platform::QtDialogs::input(&window_, texts_(prompt), texts_(274),
                                                          std::to_string(current));
            if (!typed || text::trim(*typed).empty())
                return std::nullopt;
            if (const auto v = integerPart(*typed); v && *v >= 1 && *v <= 60000)
                return static_cast<int>(*v);
            if (dialogs_.ask(texts_(225), Buttons::RetryCancel, Icon::Warning, Answer::Retry) !=
                Answer::Retry)
                return std::nullopt;
        }
    };
    const auto minutes = ask(268, zeitbereich_);
    if (!minutes)
        return;
    zeitbereich_ = *minutes;
    if (settings_)
        settings_->set(keys::Zeitbereich, *minutes);
    const auto steps = ask(269, zeigerMax_);
    if (!steps)
        return;
    zeigerMax_ = *steps;
    if (settings_)
        settings_->set(keys::ZeigerMAX, *steps);
}

void CaptureBinding::showSquareWindow() {
    const BandState& s = capture_.state();
    const LocFenster f = LocUnt(capture_.config().ownLocator, s.GrossfeldListe(), beeper_);
    const int band = capture_.band();
    const QString bandText =
        band >= 0 && band < kBandCount
            ? QString::fromStdString(std::string(kBands[static_cast<std::size_t>(band)].boxText))
            : QString();
    auto* w = new SquareWindow(f, s.GrossfeldZahl(), bandText, texts_, &window_);
    w->setAttribute(Qt::WA_DeleteOnClose);
    // Modal over the main window, without a nested loop of its own.
    w->open();
}

void CaptureBinding::setRateSettings(int zeitbereich, int zeigerMax) {
    zeitbereich_ = zeitbereich;
    zeigerMax_ = zeigerMax;
}

void CaptureBinding::tickRate() {
    const auto& rows = capture_.state().rows();
    window_.setRate(readRate(
        rows.size(), [&rows](std::size_t i) { return rows[i].qso.datTime; }, capture_.logNow(),
        zeitbereich_, zeigerMax_));
}

} // namespace orv::ui
