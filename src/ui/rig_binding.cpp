#include "ui/rig_binding.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPointer>
#include <QStatusBar>
#include <QTimer>

#include "core/i18n/texts.h"
#include "core/logstore/bands.h"
#include "core/reference/call_image.h"
#include "core/rig/rig_settings.h"
#include "core/rig/turn_target.h"
#include "core/settings/settings.h"
#include "platform/hamlib/hamlib_devices.h"
#include "ui/band_bar.h"
#include "ui/log_grid_model.h"
#include "ui/main_window.h"
#include "ui/widget_helpers.h"

namespace orv::ui {
namespace {

QLabel* quietLabel(const char* name, QWidget* parent) {
    auto* l = new QLabel(parent);
    l->setObjectName(name);
    l->setTextInteractionFlags(Qt::NoTextInteraction);
    return l;
}

QString degrees(double az) {
    return QString::number(az, 'f', 0) + QChar(0x00B0);
}

} // namespace

RigBinding::RigBinding(MainWindow& window, const Texts& texts, Devices devices,
                       rig::TransverterOffsets offsets, rig::LinkTiming timing)
    : QObject(&window), window_(window), texts_(texts), offsets_(offsets) {
    if (devices.rotator)
        rotator_ = std::make_unique<rig::RotatorLink>(std::move(devices.rotator), timing);
    if (devices.rig)
        rig_ = std::make_unique<rig::RigLink>(std::move(devices.rig), timing);

    status_ = quietLabel("RigStatus", &window);
    azimuth_ = quietLabel("RotatorAzimuth", &window);
    window.statusBar()->addWidget(status_, 1);
    window.statusBar()->addPermanentWidget(azimuth_);
    azimuth_->setVisible(rotator_ != nullptr);

    // The rig's frequency stands beside the band box.
    frequency_ = quietLabel("RigFrequency", &window);
    frequency_->setVisible(rig_ != nullptr);
    if (auto* bar = window.findChild<BandBar*>()) {
        auto* box = bar->findChild<QComboBox*>("Combo1");
        if (auto* layout = qobject_cast<QBoxLayout*>(bar->layout()); layout && box)
            layout->insertWidget(layout->indexOf(box) + 1, frequency_);
    }

    // The window outlives nothing of this binding but may call its hooks
    // while its children are being torn down: they go through a guard.
    QPointer<RigBinding> self(this);
    window.onRotatorKey = [self](bool stop) {
        if (!self)
            return;
        if (stop)
            self->stopRotator();
        else if (auto* qtf = self->window_.findChild<QLineEdit*>("Text12"))
            self->turnToBearingText(qtf->text());
    };
    if (rig_)
        window.rigFrequency = [self]() -> std::int64_t {
            return self ? self->frequencyForCommit() : 0;
        };
    if (rotator_)
        addMenuEntries();

    timer_ = new QTimer(this);
    timer_->setObjectName("RigTimer");
    connect(timer_, &QTimer::timeout, this, &RigBinding::tick);
    timer_->start(static_cast<int>(timing.poll.count()));
}

// The links end their workers; a device call in flight is waited for, at
// most Hamlib's timeout.
RigBinding::~RigBinding() {
    delete azimuth_;
    delete frequency_;
    delete status_;
    delete gridTurn_;
    delete listTurn_;
}

void RigBinding::install(MainWindow& window, const Settings& settings, const Texts& texts) {
    // Installed again after the options changed: the old links go first.
    delete window.findChild<RigBinding*>(QString(), Qt::FindDirectChildrenOnly);
    const rig::DeviceSettings rot = rig::readRotatorSettings(settings);
    const rig::DeviceSettings rig = rig::readRigSettings(settings);
    if (!rot.enabled && !rig.enabled)
        return;
    Devices d;
    if (rot.enabled)
        d.rotator = platform::makeHamlibRotator(rot);
    if (rig.enabled)
        d.rig = platform::makeHamlibRig(rig);
    new RigBinding(window, texts, std::move(d), rig::readTransverterOffsets(settings));
}

void RigBinding::addMenuEntries() {
    // The grid's row and the lookup list's line each carry a locator; the
    // menus are the window's, so the entries are added to them.
    if (auto* grid = window_.findChild<QMenu*>("MnMSFlexGrid1")) {
        auto* a = grid->addAction(q(texts_(1231)));
        a->setObjectName("MnGridTurnAntenna");
        gridTurn_ = a;
        connect(a, &QAction::triggered, this, [this] {
            const int row = window_.gridMenuRow();
            const LogGridModel& grid = window_.logGrid();
            if (row >= 0 && row < grid.rowCount())
                turnToLocator(
                    grid.data(grid.index(row, LogGridModel::Locator), Qt::DisplayRole).toString());
        });
    }
    if (auto* list = window_.findChild<QMenu*>("MnList1")) {
        auto* a = list->addAction(q(texts_(1231)));
        a->setObjectName("MnListTurnAntenna");
        listTurn_ = a;
        connect(a, &QAction::triggered, this, [this] {
            const auto* lookup = window_.findChild<QListWidget*>("List1");
            if (lookup && lookup->currentItem())
                turnToLocator(q(listLineLocator(lookup->currentItem()->text().toStdString())));
        });
    }
}

bool RigBinding::turnToBearingText(const QString& bearing) {
    QString t = bearing.trimmed();
    t.remove(QChar(0x00B0));
    t.replace(',', '.');
    const auto target = rig::turnTarget("", t.toStdString());
    if (!rotator_ || !target)
        return false;
    rotator_->turnTo(*target);
    return true;
}

bool RigBinding::turnToLocator(const QString& locator) {
    const auto* own = window_.findChild<QLineEdit*>("Text13");
    const auto target =
        rig::turnTarget(own ? own->text().toStdString() : "", locator.trimmed().toStdString());
    if (!rotator_ || !target)
        return false;
    rotator_->turnTo(*target);
    return true;
}

void RigBinding::stopRotator() {
    if (rotator_)
        rotator_->stop();
}

void RigBinding::tick() {
    tickRotator();
    tickRig();
    updateStatus();
}

void RigBinding::tickRotator() {
    if (!rotator_)
        return;
    const rig::RotatorSnapshot s = rotator_->snapshot();
    rotatorLost_ = s.state == rig::LinkState::Lost;
    antenna_ = rotatorLost_ ? std::nullopt : s.azimuth;
    azimuth_->setText(s.azimuth && !rotatorLost_ ? q(texts_(1232)) + " " + degrees(*s.azimuth)
                                                 : QString());
}

void RigBinding::tickRig() {
    if (!rig_)
        return;
    const rig::RigSnapshot s = rig_->snapshot();
    rigLost_ = s.state == rig::LinkState::Lost;
    if (rigLost_ || !s.reading) {
        last_.reset();
        frequency_->clear();
        return;
    }
    last_ = s.reading;
    const int current = window_.currentBand();
    const auto b = rig::bandOfFrequency(s.reading->freqHz, offsets_, current);
    // Only a change at the rig moves the band box and the modes: the
    // operator's own choice stands until the rig is tuned again.
    // A correction in hand is not closed under the operator: the band
    // follows once it is stored or left.
    if (s.reading != applied_ && !window_.editLineOpen()) {
        applied_ = s.reading;
        if (b && *b != current)
            window_.selectBand(*b);
        window_.setCurrentMode(q(rig::programMode(s.reading->mode)));
    }
    const int shown = b.value_or(window_.currentBand());
    frequency_->setText(q(rig::formatMHz(rig::bandFrequency(s.reading->freqHz, offsets_, shown))) +
                        " MHz");
}

void RigBinding::updateStatus() {
    QStringList lines;
    if (rotatorLost_)
        lines << q(texts_(1233));
    if (rigLost_)
        lines << q(texts_(1234));
    status_->setText(lines.join("  "));
}

std::int64_t RigBinding::frequencyForCommit() const {
    if (!last_)
        return 0;
    const int current = window_.currentBand();
    const auto b = rig::bandOfFrequency(last_->freqHz, offsets_, current);
    // A QSO logged on another band than the rig's has no known frequency.
    if (!b || *b != current)
        return 0;
    return rig::bandFrequency(last_->freqHz, offsets_, current);
}

} // namespace orv::ui
