#include "platform/remote_server.h"

#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <algorithm>

#include "core/util/text.h"

namespace orv::platform {
namespace {

// What a client may have sent ahead before we stop reading from it; the
// rest waits in the kernel, so a fast sender is slowed by TCP itself.
constexpr qint64 kReadAhead = 16 * 1024;

QHostAddress plainAddress(const QHostAddress& a) {
    bool v4 = false;
    const quint32 ip = a.toIPv4Address(&v4);
    return v4 ? QHostAddress(ip) : a;
}

} // namespace

RemoteServer::RemoteServer(remote::Link& link, QObject* parent)
    : RemoteServer(link, Limits{}, parent) {}

RemoteServer::RemoteServer(remote::Link& link, Limits limits, QObject* parent)
    : QObject(parent), link_(link), limits_(limits) {
    server_ = new QTcpServer(this);
    server_->setMaxPendingConnections(limits_.maxClients + 4);
    connect(server_, &QTcpServer::newConnection, this, &RemoteServer::accept);
    pumpTimer_ = new QTimer(this);
    pumpTimer_->setSingleShot(true);
    connect(pumpTimer_, &QTimer::timeout, this, &RemoteServer::pump);
}

RemoteServer::~RemoteServer() {
    close();
}

QString RemoteServer::listen(const remote::ServerSettings& settings) {
    close();
    QHostAddress address;
    const QString wanted = QString::fromStdString(settings.address).trimmed();
    if (wanted.compare("localhost", Qt::CaseInsensitive) == 0)
        address = QHostAddress::LocalHost;
    else if (!address.setAddress(wanted))
        return "Address=" + wanted;
    restricted_ = !address.isLoopback();
    allowedNets_.clear();
    for (const std::string& entry : settings.clients) {
        const QString e = QString::fromStdString(entry);
        if (e.contains('/')) {
            const auto net = QHostAddress::parseSubnet(e);
            if (net.first.isNull())
                return "Clients=" + e;
            allowedNets_.emplace_back(net.first, net.second);
        } else {
            QHostAddress a;
            if (!a.setAddress(e))
                return "Clients=" + e;
            const QHostAddress p = plainAddress(a);
            allowedNets_.emplace_back(p, p.protocol() == QAbstractSocket::IPv4Protocol ? 32 : 128);
        }
    }
    if (!server_->listen(address, static_cast<quint16>(settings.port)))
        return QString("%1:%2 %3").arg(wanted).arg(settings.port).arg(server_->errorString());
    return {};
}

void RemoteServer::close() {
    server_->close();
    std::deque<Client> gone;
    gone.swap(clients_);
    for (Client& c : gone)
        if (QTcpSocket* s = c.socket) {
            s->disconnect(this);
            s->abort();
            s->deleteLater();
        }
}

bool RemoteServer::listening() const {
    return server_->isListening();
}

quint16 RemoteServer::port() const {
    return server_->serverPort();
}

bool RemoteServer::allowed(const QHostAddress& peer) const {
    if (!restricted_)
        return true;
    const QHostAddress p = plainAddress(peer);
    return std::any_of(allowedNets_.begin(), allowedNets_.end(),
                       [&](const auto& net) { return p.isInSubnet(net.first, net.second); });
}

void RemoteServer::accept() {
    while (QTcpSocket* s = server_->nextPendingConnection()) {
        if (!allowed(s->peerAddress()) || clientCount() >= limits_.maxClients) {
            s->abort();
            s->deleteLater();
            continue;
        }
        s->setReadBufferSize(kReadAhead);
        connect(s, &QTcpSocket::readyRead, this, [this] { schedule(); });
        // A client that sends and closes at once still has its lines run:
        // the pump drops it once nothing whole is left to read.
        connect(s, &QTcpSocket::disconnected, this, [this] { schedule(); });
        connect(s, &QTcpSocket::errorOccurred, this, [this] { schedule(); });
        clients_.push_back({s, {}});
    }
}

RemoteServer::Client* RemoteServer::find(QTcpSocket* socket) {
    for (Client& c : clients_)
        if (c.socket == socket)
            return &c;
    return nullptr;
}

void RemoteServer::drop(QTcpSocket* socket) {
    if (!socket)
        return;
    if (Client* c = find(socket)) {
        c->socket = nullptr;
        c->pending.clear();
    }
    socket->disconnect(this);
    socket->abort();
    socket->deleteLater();
    // Inside a pump the list is tidied when it ends.
    if (!pumping_)
        std::erase_if(clients_, [](const Client& c) { return !c.socket; });
}

void RemoteServer::schedule(int delayMs) {
    if (!pumpTimer_->isActive() || delayMs == 0)
        pumpTimer_->start(delayMs);
}

void RemoteServer::send(QTcpSocket* socket, const std::string& line) {
    if (!socket || socket->state() != QAbstractSocket::ConnectedState)
        return;
    socket->write(line.data(), static_cast<qint64>(line.size()));
    if (socket->bytesToWrite() > limits_.maxUnsent)
        drop(socket);
}

void RemoteServer::publish(const std::string& text) {
    link_.publish(text);
    const std::string line = remote::itemLine(link_.item());
    const bool wasPumping = pumping_;
    pumping_ = true;
    for (std::size_t i = 0; i < clients_.size(); ++i)
        send(clients_[i].socket, line);
    pumping_ = wasPumping;
    if (!pumping_)
        std::erase_if(clients_, [](const Client& c) { return !c.socket; });
}

void RemoteServer::pump() {
    if (pumping_)
        return; // a command opened a loop of its own; the outer pump goes on
    if (!mayRun()) {
        schedule(50);
        return;
    }
    pumping_ = true;
    QElapsedTimer clock;
    clock.start();
    const qint64 deadline = static_cast<qint64>(limits_.sliceMicroseconds) * 1000;
    bool outOfTime = false;
    bool more = false;
    // Each slice starts with the next client, so that one fast sender that
    // uses up a slice does not starve the others.
    const std::size_t n = clients_.size();
    const std::size_t first = n ? nextFirst_++ % n : 0;
    for (std::size_t k = 0; k < n && !outOfTime; ++k)
        runLines(clients_[(first + k) % n], deadline - clock.nsecsElapsed(), outOfTime);
    for (const Client& c : clients_)
        if (c.socket && (c.pending.contains('\n') || c.socket->bytesAvailable() > 0 ||
                         c.socket->state() != QAbstractSocket::ConnectedState))
            more = true;
    pumping_ = false;
    std::erase_if(clients_, [](const Client& c) { return !c.socket; });
    if (more || outOfTime)
        schedule();
}

bool RemoteServer::runLines(Client& client, qint64 timeLeftNs, bool& outOfTime) {
    QElapsedTimer clock;
    clock.start();
    while (client.socket) {
        QTcpSocket* s = client.socket;
        if (!client.pending.contains('\n') && s->bytesAvailable() > 0)
            client.pending += s->read(kReadAhead);
        const qsizetype end = client.pending.indexOf('\n');
        if (end < 0) {
            // A line end that has not come within the limit never will; a
            // half line left by a client that went is dropped with it.
            if (client.pending.size() > limits_.maxLine + 1 ||
                (s->state() != QAbstractSocket::ConnectedState && s->bytesAvailable() == 0))
                drop(s);
            return client.socket != nullptr;
        }
        QByteArray line = client.pending.left(end);
        client.pending.remove(0, end + 1);
        if (line.endsWith('\r'))
            line.chop(1);
        if (line.size() > limits_.maxLine) {
            drop(s);
            return false;
        }
        const auto outcome =
            link_.execute(text::decodeLegacy(std::string_view(line.constData(), line.size())));
        if (outcome.answered) {
            const std::string reply = remote::itemLine(link_.item());
            send(s, reply);
            if (outcome.changed)
                for (std::size_t i = 0; i < clients_.size(); ++i)
                    if (clients_[i].socket && clients_[i].socket != s)
                        send(clients_[i].socket, reply);
        }
        if (clock.nsecsElapsed() >= timeLeftNs) {
            outOfTime = true;
            break;
        }
    }
    return client.socket != nullptr;
}

} // namespace orv::platform
