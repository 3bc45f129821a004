#pragma once

// A plain TCP client of the command interface for the window tests: it waits
// for replies while the window's event loop runs, as the server needs it to.
#include <QByteArray>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <memory>
#include <optional>

namespace orv::test {

// A port that was free a moment ago.
inline quint16 freePort() {
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    const quint16 p = probe.serverPort();
    probe.close();
    return p;
}

class RemoteClient {
public:
    bool connectTo(quint16 port) {
        s->connectToHost(QHostAddress::LocalHost, port);
        return s->waitForConnected(2000);
    }
    void send(const QByteArray& bytes) {
        s->write(bytes);
        s->flush();
    }
    // The next line without its end; nothing when none came in time.
    std::optional<QByteArray> line(int ms = 2000) {
        (void)QTest::qWaitFor(
            [&] {
                got += s->readAll();
                return got.contains('\n');
            },
            ms);
        const qsizetype end = got.indexOf('\n');
        if (end < 0)
            return std::nullopt;
        QByteArray l = got.left(end);
        got.remove(0, end + 1);
        if (l.endsWith('\r'))
            l.chop(1);
        return l;
    }
    // Sends a command and takes its answer.
    std::optional<QByteArray> ask(const QByteArray& command) {
        send(command + "\r\n");
        return line();
    }
    // True when the server closed the connection within the time.
    bool closedByServer(int ms = 2000) {
        return QTest::qWaitFor(
            [&] {
                got += s->readAll();
                return s->state() == QAbstractSocket::UnconnectedState;
            },
            ms);
    }
    bool nothingWithin(int ms) {
        QTest::qWait(ms);
        got += s->readAll();
        return got.isEmpty();
    }

    std::unique_ptr<QTcpSocket> s = std::make_unique<QTcpSocket>();
    QByteArray got;
};

} // namespace orv::test
