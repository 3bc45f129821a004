#include "ui/map/map_binding.h"

#include <QAction>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QTabWidget>
#include <QTimer>

#include "core/capture/capture.h"
#include "core/map/map_band.h"
#include "core/settings/settings.h"
#include "core/util/text.h"
#include "scene/coastlines.h"
#include "ui/band_bar.h"
#include "ui/capture_binding.h"
#include "ui/main_window.h"
#include "ui/map/map_widget.h"
#include "ui/map/map_window.h"
#include "ui/map/rate_graph.h"
#include "ui/rig_binding.h"
#include "ui/startup.h"
#include "ui/widget_helpers.h"

namespace orv::ui {
namespace {

const IntSetting kLeft{"Karte", "Left", -1};
const IntSetting kTop{"Karte", "Top", -1};
const IntSetting kWidth{"Karte", "Width", 800, 200, 10000};
const IntSetting kHeight{"Karte", "Height", 640, 160, 10000};

// The own locator as the arithmetic takes it, or empty.
std::string ownLocator(Capture& c) {
    std::string own = LocErgaenzen(text::upper(c.config().ownLocator));
    if (text::length(own) == 4)
        own += "LL";
    return LocOK(own) ? own : std::string();
}

} // namespace

void MapBinding::install(Startup& startup) {
    if (MainWindow* w = startup.window())
        new MapBinding(startup, *w);
}

MapBinding::MapBinding(Startup& startup, MainWindow& window)
    : QObject(&window), startup_(startup), window_(window) {
    setObjectName("MapBinding");
    if (auto* ansicht = window.findChild<QMenu*>("MnAnsicht")) {
        QAction* a = ansicht->addAction(q(startup.texts()(1272)));
        a->setObjectName("MnKarte");
        a->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_M));
        a->setShortcutContext(Qt::ApplicationShortcut);
        window.addAction(a);
        connect(a, &QAction::triggered, this, &MapBinding::showWindow);
    }
    // The change is drawn after the entry row is ready for the next QSO.
    auto before = startup.afterLogChange;
    startup.afterLogChange = [this, before] {
        if (before)
            before();
        changeSeen();
    };
    connect(&window, &MainWindow::bandChanged, this, [this] { changeSeen(); });
    connect(&window, &MainWindow::locatorEdited, this, &MapBinding::typed);
    if (auto* call = window.findChild<QLineEdit*>("Text3"))
        connect(call, &QLineEdit::textChanged, this, &MapBinding::markWorked);
    if (auto* list = window.findChild<QListWidget*>("List1"))
        connect(list, &QListWidget::currentTextChanged, this, [this](const QString& line) {
            markWorked(line.section(' ', 0, 0, QString::SectionSkipEmpty));
        });
    timer_ = new QTimer(this);
    timer_->setInterval(500);
    connect(timer_, &QTimer::timeout, this, &MapBinding::tick);
    timer_->start();
}

MapBinding::~MapBinding() {
    saveGeometry();
}

MapWindow* MapBinding::mapWindow() const {
    return map_.data();
}

void MapBinding::showWindow() {
    Capture* c = startup_.capture();
    if (!c)
        return;
    const std::string own = ownLocator(*c);
    if (own.empty()) {
        window_.showStatus(q(startup_.texts()(1293)) + " " + q(c->config().ownLocator));
        return;
    }
    if (map_ && own != shownOwn_)
        delete map_;
    if (!map_) {
        shownOwn_ = own;
        map_ = new MapWindow(LocKoordinaten(own), startup_.texts(), &window_);
        Settings& s = startup_.settings();
        map_->resize(static_cast<int>(s.get(kWidth)), static_cast<int>(s.get(kHeight)));
        if (s.get(kLeft) >= 0 && s.get(kTop) >= 0)
            map_->move(static_cast<int>(s.get(kLeft)), static_cast<int>(s.get(kTop)));
        const auto coast = scene::loadCoastlines();
        map_->map().setCoastlines(coast);
        map_->setStatus(coast.empty() ? q(startup_.texts()(1279)) : QString());
        connect(map_, &MapWindow::hidden, this, &MapBinding::saveGeometry);
        connect(&map_->map(), &MapWidget::qsoClicked, &window_, &MainWindow::selectGridRow);
        connect(&map_->tabs(), &QTabWidget::currentChanged, this, [this] { refreshRate(); });
        shownBand_ = -1;
    }
    refresh();
    map_->show();
    map_->raise();
}

void MapBinding::saveGeometry() {
    if (!map_)
        return;
    Settings& s = startup_.settings();
    s.set(kLeft, map_->x());
    s.set(kTop, map_->y());
    s.set(kWidth, map_->width());
    s.set(kHeight, map_->height());
}

std::uint64_t MapBinding::fingerprint() const {
    const Capture* c = startup_.capture();
    if (!c)
        return 0;
    const BandState& s = c->state();
    return static_cast<std::uint64_t>(s.PGesamt) * 1000003u ^
           static_cast<std::uint64_t>(s.deletedCount()) * 7919u ^
           static_cast<std::uint64_t>(s.LastQSONr) * 31u ^ s.rows().size();
}

void MapBinding::changeSeen() {
    rateStale_ = true;
    if (pending_ || !map_ || !map_->isVisible())
        return;
    pending_ = true;
    QTimer::singleShot(0, this, [this] {
        pending_ = false;
        refresh();
    });
}

void MapBinding::refresh() {
    Capture* c = startup_.capture();
    if (!c || !map_)
        return;
    const BandState& s = c->state();
    const auto& rows = s.rows();
    // A commit is the one change that adds a row at the end: one dot more,
    // unless it is the new ODX, whose mark moves.
    if (s.band() == shownBand_ && rows.size() == shownRows_ + 1 &&
        s.ODXNr == map_->map().scene().band().odxNr) {
        const std::size_t i = rows.size() - 1;
        if (auto qso = map::mapQso(rows[i], i)) {
            const std::string sq = text::upper(text::left(qso->locator, 4));
            const auto& known = map_->map().scene().band().squares;
            const bool fresh = std::find(known.begin(), known.end(), sq) == known.end();
            map_->map().addQso(*qso, fresh ? sq : std::string());
        }
        shownRows_ = rows.size();
        shownPrint_ = fingerprint();
    } else {
        const bool newBand = s.band() != shownBand_;
        map_->map().setBand(map::mapBand(s), newBand);
        shownBand_ = s.band();
        shownRows_ = rows.size();
        shownPrint_ = fingerprint();
    }
    refreshRate();
}

void MapBinding::refreshRate() {
    Capture* c = startup_.capture();
    ContestLog* log = startup_.log();
    if (!c || !log || !map_ || map_->tabs().currentWidget() != &map_->rate() || !rateStale_)
        return;
    std::vector<map::RateSample> all;
    for (int b = 0; b < kBandCount; ++b) {
        if (b == c->band())
            continue;
        for (const QsoRow& r : log->rows(b))
            if (!r.errQso)
                all.push_back({r.datTime, r.qrb});
    }
    auto band = map::rateSamples(c->state());
    all.insert(all.end(), band.begin(), band.end());
    const int zeitbereich = startup_.binding() ? startup_.binding()->zeitbereich() : 60;
    map_->rate().setSamples(std::move(band), std::move(all), zeitbereich);
    rateStale_ = false;
}

void MapBinding::typed(const QString& locator) {
    if (!map_ || !map_->isVisible())
        return;
    Capture* c = startup_.capture();
    std::optional<scene::TypedStation> t;
    if (c) {
        const std::string own = ownLocator(*c);
        std::string other = LocErgaenzen(text::upper(locator.toStdString()));
        if (text::length(other) == 4)
            other += "LL";
        if (!own.empty() && LocOK(other)) {
            const auto p = c->preview(locator.toStdString());
            t = scene::TypedStation{LocKoordinaten(other), p ? p->km : 0};
        }
    }
    map_->map().setTyped(t);
}

void MapBinding::markWorked(const QString& call) {
    auto* bar = window_.findChild<BandBar*>("Picture1");
    Capture* c = startup_.capture();
    if (!bar || !c)
        return;
    const QString t = call.trimmed();
    bar->setWorkedOn(t.isEmpty() ? WorkedBands::Bands{} : c->workedBands(t.toStdString()));
}

void MapBinding::tick() {
    if (!map_ || !map_->isVisible())
        return;
    // A change made elsewhere reaches the band state without a notice.
    const Capture* c = startup_.capture();
    if (c && (c->band() != shownBand_ || fingerprint() != shownPrint_ ||
              c->state().rows().size() != shownRows_)) {
        shownRows_ = static_cast<std::size_t>(-2); // no incremental step
        rateStale_ = true;
        refresh();
    }
    if (auto* rig = window_.findChild<RigBinding*>(QString(), Qt::FindDirectChildrenOnly))
        map_->map().setBeam(rig->antennaAzimuth());
    else
        map_->map().setBeam(std::nullopt);
}

} // namespace orv::ui
