#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <memory>
#include <optional>

#include "core/rig/band_plan.h"
#include "core/rig/device_link.h"

class QAction;
class QLabel;
class QTimer;

namespace orv {
class Settings;
class Texts;
} // namespace orv

namespace orv::ui {

class MainWindow;

// The rotator and the rig beside the entry row. Both are read by their own
// worker (DeviceLink) and looked at here once a tick: the antenna's azimuth
// stands in the status bar, the rig's frequency beside the band box, and
// with the rig connected the band box and the modes follow the rig. A lost
// link is a quiet line in the status bar and is retried by the worker;
// nothing here ever waits for a device or opens a message box.
//
// Ctrl+R turns the antenna to the bearing in hand (`Text12`), Ctrl+Shift+R
// stops it; the context menus of the log grid and the lookup list offer the
// turn to their row's locator.
class RigBinding final : public QObject {
    Q_OBJECT
public:
    struct Devices {
        std::unique_ptr<rig::Rotator> rotator; // none: no rotator configured
        std::unique_ptr<rig::Rig> rig;
    };
    RigBinding(MainWindow& window, const Texts& texts, Devices devices,
               rig::TransverterOffsets offsets, rig::LinkTiming timing = {});
    ~RigBinding() override;

    // The devices of the sections `Rotator` and `Rig`, through Hamlib; does
    // nothing more when neither is enabled. A binding installed before is
    // replaced, so the options dialog calls this again after OK.
    static void install(MainWindow& window, const Settings& settings, const Texts& texts);

    // One look at both links (the window's timer calls it every poll).
    void tick();
    // Turns to a bearing in degrees, or to the bearing of `locator` from the
    // own locator shown in the window; false when there is none.
    bool turnToBearingText(const QString& bearing);
    bool turnToLocator(const QString& locator);
    void stopRotator();
    // The antenna's direction as last read; nothing without a rotator or
    // while its link is lost.
    std::optional<double> antennaAzimuth() const { return antenna_; }

private:
    void tickRotator();
    void tickRig();
    void updateStatus();
    void addMenuEntries();
    std::int64_t frequencyForCommit() const;

    MainWindow& window_;
    const Texts& texts_;
    rig::TransverterOffsets offsets_;
    std::unique_ptr<rig::RotatorLink> rotator_;
    std::unique_ptr<rig::RigLink> rig_;
    QTimer* timer_ = nullptr;
    // The window owns these; the binding takes them away when it goes.
    QPointer<QLabel> azimuth_;
    QPointer<QLabel> frequency_;
    QPointer<QLabel> status_;
    QPointer<QAction> gridTurn_;
    QPointer<QAction> listTurn_;
    bool rotatorLost_ = false;
    std::optional<double> antenna_;
    bool rigLost_ = false;
    std::optional<rig::RigReading> applied_;
    std::optional<rig::RigReading> last_;
};

} // namespace orv::ui
