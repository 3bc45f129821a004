#pragma once

#include <QObject>
#include <memory>

#include "core/remote/remote_link.h"
#include "core/remote/remote_settings.h"

class QKeyEvent;

namespace orv {
class Settings;
class Texts;
} // namespace orv

namespace orv::platform {
class RemoteServer;
}

namespace orv::ui {

class MainWindow;

// The command interface's place in the main window: the entry row as the
// commands read and set it, the beacon button, the keys `Flag1` to `Flag3`
// that publish their texts, and the server on the window's event loop.
class RemoteBinding final : public QObject {
    Q_OBJECT
public:
    // Reads `Port`, `Address`, `Clients` and the publishing keys of section
    // `DDE` once, and starts listening; a failure shows in the status line.
    RemoteBinding(MainWindow& window, const Settings& settings, const Texts& texts);
    ~RemoteBinding() override;

    // The beacon button `BakeEinAus`. Until the beacon is wired here the
    // commands see an idle beacon ("Bake Ein") whose press does nothing.
    void setBeacon(remote::BeaconPort& beacon);
    // The publishing keys anew, after the options were saved.
    void reloadPublishKeys(const Settings& settings) {
        publishKeys_ = remote::readPublishKeys(settings);
    }

    platform::RemoteServer& server() { return *server_; }
    const remote::Link& link() const { return *link_; }

private:
    class WindowRow;
    class IdleBeacon;

    bool formKeyPress(QKeyEvent* e);

    MainWindow& window_;
    std::unique_ptr<WindowRow> row_;
    std::unique_ptr<IdleBeacon> idleBeacon_;
    std::unique_ptr<remote::Link> link_;
    remote::PublishKeys publishKeys_;
    platform::RemoteServer* server_ = nullptr;
};

} // namespace orv::ui
