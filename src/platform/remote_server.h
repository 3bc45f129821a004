#pragma once

#include <QHostAddress>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "core/remote/remote_link.h"
#include "core/remote/remote_settings.h"

class QTcpServer;
class QTcpSocket;
class QTimer;

namespace orv::platform {

// The command interface on a TCP port, one command a line (LF or CR LF),
// served on the window's event loop so that commands run between key presses.
// The client of a read command gets the item as its answer; every other
// client gets it whenever it changes, and every client gets a published text.
class RemoteServer final : public QObject {
    Q_OBJECT
public:
    struct Limits {
        qsizetype maxLine = 1024;      // bytes without the line end
        int maxClients = 16;           // more connections are closed at once
        qint64 maxUnsent = 256 * 1024; // a client that stops reading goes
        int sliceMicroseconds = 4000;  // then the window's events run again
    };

    explicit RemoteServer(remote::Link& link, QObject* parent = nullptr);
    RemoteServer(remote::Link& link, Limits limits, QObject* parent = nullptr);
    ~RemoteServer() override;

    // Starts listening. An empty text when it does; otherwise why not, and
    // nothing listens: an address or client entry that is none is refused.
    QString listen(const remote::ServerSettings& settings);
    void close();
    bool listening() const;
    quint16 port() const;
    int clientCount() const { return static_cast<int>(clients_.size()); }

    // A key of the window publishes a text: every client gets it.
    void publish(const std::string& text);

    // False while commands must wait (a modal dialog of the window is up, a
    // commit may be under it); they stay queued until it is true again.
    std::function<bool()> mayRun = [] { return true; };

private:
    struct Client {
        QPointer<QTcpSocket> socket;
        QByteArray pending; // received, not yet a whole line or not yet run
    };

    void accept();
    bool allowed(const QHostAddress& peer) const;
    void drop(QTcpSocket* socket);
    void schedule(int delayMs = 0);
    void pump();
    // Runs the whole lines of one client within the time left; false when
    // the client was dropped.
    bool runLines(Client& client, qint64 deadlineNs, bool& outOfTime);
    void send(QTcpSocket* socket, const std::string& line);
    Client* find(QTcpSocket* socket);

    remote::Link& link_;
    Limits limits_;
    QTcpServer* server_ = nullptr;
    QTimer* pumpTimer_ = nullptr;
    bool restricted_ = false; // only the listed clients are served
    std::vector<std::pair<QHostAddress, int>> allowedNets_;
    // A deque: a client accepted while commands run must not move the others.
    std::deque<Client> clients_;
    bool pumping_ = false;
    std::size_t nextFirst_ = 0;
};

} // namespace orv::platform
