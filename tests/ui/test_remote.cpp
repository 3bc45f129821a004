// The command interface of the main window over real TCP on 127.0.0.1: every
// command against the real entry row of a real log, the pushes to the other
// clients and of the publishing keys, the limits, the wait behind a modal
// dialog, and random input that must leave the log as it was.
#include <QApplication>
#include <QComboBox>
#include <QCryptographicHash>
#include <QDialog>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>
#include <vector>

#include "core/remote/remote_settings.h"
#include "platform/qt_dialogs.h"
#include "platform/remote_server.h"
#include "remote_client.h"
#include "running_window.h"
#include "ui/main_window.h"
#include "ui/remote_binding.h"

using orv::platform::QtDialogs;
using orv::test::RemoteClient;
using orv::ui::RemoteBinding;

namespace {

// A beacon that records its presses, standing where the beacon is wired.
class RecordingBeacon final : public orv::remote::BeaconPort {
public:
    std::string state() const override { return caption; }
    void press() override { ++presses; }
    std::string caption = "OnAir";
    int presses = 0;
};

} // namespace

class TestRemote : public QObject, public orv::test::RunningWindow {
    Q_OBJECT

private:
    RemoteBinding* remote = nullptr;
    quint16 port = 0;

    QString logPath() const {
        return QString::fromStdString((*dir / "Logs" / "remote.sqlite").string());
    }
    QByteArray logHash() {
        QCryptographicHash h(QCryptographicHash::Sha256);
        for (const QString& suffix : {QString(), QString("-wal")}) {
            QFile f(logPath() + suffix);
            if (f.open(QIODevice::ReadOnly))
                h.addData(f.readAll());
        }
        return h.result();
    }
    // Starts the binding with these keys of section DDE besides the port.
    void bind(const std::vector<std::pair<std::string, std::string>>& dde = {}) {
        delete remote;
        port = orv::test::freePort();
        app->settings().set(orv::remote::Port, port);
        for (const auto& [k, v] : dde)
            app->settings().file().write("DDE", k, v);
        remote = new RemoteBinding(*w, app->settings(), app->texts());
    }
    void connectClient(RemoteClient& c) { QVERIFY(c.connectTo(port)); }

private slots:
    void init() {
        QVERIFY(start("remote"));
        remote = nullptr;
        bind();
        QVERIFY(remote->server().listening());
    }
    void cleanup() {
        delete remote;
        remote = nullptr;
        stop();
    }

    void readCommandsAnswerTheRow() {
        edit("Text3")->setText("OK1KKW");
        edit("Text6")->setText("59012");
        edit("Text7")->setText("JO70FD");
        edit("Text9")->setText("rain");
        w->findChild<QComboBox*>("Combo6")->setEditText("TR");
        const QString time = edit("Text2")->text();
        const QString bearing = edit("Text12")->text().chopped(1);
        const QString km = edit("Text8")->text();
        QVERIFY(!bearing.isEmpty() && !km.isEmpty());
        const auto combo = [&](const char* n) {
            return w->findChild<QComboBox*>(n)->currentText();
        };

        const std::vector<std::pair<QByteArray, QString>> cases = {
            {"GET__QTF:", bearing},
            {"GET_CALL:", "OK1KKW"},
            {"get_call:", "OK1KKW"},
            {"GET_CALL:xyz", "OK1KKW"},
            {"   GET_LOCA:", "JO70FD"},
            {"GETMYCAL:", "DL0XYZ"},
            {"GETMYLOC:", "JO62QM"},
            {"GETOPCAL:", combo("Combo8")},
            {"GET__QRG:", "1"},
            {"GETTXMOD:", combo("Combo3")},
            {"GETRXMOD:", combo("Combo2")},
            {"GET__QRB:", km},
            {"GETQSONR:", edit("Text5")->text()},
            {"GETBKSTA:", "BKSTA1"},
            {"GET__ALL:", QString("%1|OK1KKW|59|%2|59012|JO70FD|%3|%4|rain|TR|No")
                              .arg(time, edit("Text5")->text(), km, bearing)},
        };
        RemoteClient c;
        connectClient(c);
        for (const auto& [command, reply] : cases) {
            const auto got = c.ask(command);
            QVERIFY2(got, command.constData());
            QCOMPARE(QString::fromUtf8(*got), reply);
        }
        // GET__ALL: ends with CR LF of its own: one line, not two.
        c.send("GET__ALL:\r\nGET_CALL:\n");
        QVERIFY(c.line());
        QCOMPARE(*c.line(), QByteArray("OK1KKW"));
    }

    void writeCommandsChangeTheRowOrNothing() {
        struct Case {
            QByteArray command;
            QString call, locator;
            int band;
        };
        const std::vector<Case> cases = {
            {"SET_CALL: oe 1xyz", "OE1XYZ", "", 1},
            {"SET_CALL:", "OE1XYZ", "", 1},
            {"SET_CALL:dl1abcdefghijklmnop", "DL1ABCDEFGHIJKL", "", 1},
            {" SET_CALL:DL2B", ":DL2B", "", 1},
            {"SET_LOCA: jo 70fdxx", ":DL2B", "JO70FD", 1},
            {"SET__QRG:3", ":DL2B", "JO70FD", 3},
            {"SET__QRG: 10", ":DL2B", "JO70FD", 3},
            {"SET__QRG: -1", ":DL2B", "JO70FD", 3},
            {"SET__QRG:abc", ":DL2B", "JO70FD", 3},
            {"SET__QRG:1.6", ":DL2B", "JO70FD", 2},
            {"SETBKOFF:", ":DL2B", "JO70FD", 2},
            {"SET_BKON:", ":DL2B", "JO70FD", 2},
            {"NOT_A_CMD:x", ":DL2B", "JO70FD", 2},
        };
        RemoteClient c;
        connectClient(c);
        for (const Case& k : cases) {
            c.send(k.command + "\r\n");
            // The answer of a read after it tells that it has run.
            QCOMPARE(QString::fromUtf8(*c.ask("GET_CALL:")), k.call);
            QCOMPARE(edit("Text3")->text(), k.call);
            QCOMPARE(edit("Text7")->text(), k.locator);
            QCOMPARE(w->currentBand(), k.band);
        }
        // The locator set by command gives distance and bearing at once.
        QVERIFY(!edit("Text12")->text().isEmpty());
        QCOMPARE(QString::fromUtf8(*c.ask("GET__QTF:")), edit("Text12")->text().chopped(1));
        QCOMPARE(edit("Text7")->cursorPosition(), 6);
    }

    void setCallRunsTheLookupsAsTyped() {
        QSignalSpy shown(w->findChild<QObject*>("LookupBinding"), SIGNAL(listShown()));
        RemoteClient c;
        connectClient(c);
        c.send("SET_CALL:ok1kkw\n");
        QVERIFY(shown.wait(2000));
        QCOMPARE(edit("Text3")->text(), QString("OK1KKW"));
        QCOMPARE(edit("Text3")->cursorPosition(), 6);
    }

    void emptyBearingGivesAnEmptyLine() {
        RemoteClient c;
        connectClient(c);
        QCOMPARE(*c.ask("GET_CALL:"), QByteArray());
        QVERIFY(edit("Text12")->text().isEmpty());
        QCOMPARE(*c.ask("GET__QTF:"), QByteArray());
    }

    void beaconCommandsGoThroughTheBeacon() {
        RemoteClient c;
        connectClient(c);
        QCOMPARE(*c.ask("GETBKSTA:"), QByteArray("BKSTA1"));
        RecordingBeacon beacon;
        remote->setBeacon(beacon);
        QCOMPARE(*c.ask("GETBKSTA:"), QByteArray("BKSTA2"));
        c.send("SET_BKON:\n"); // running already: nothing
        QVERIFY(c.ask("GET_CALL:"));
        QCOMPARE(beacon.presses, 0);
        c.send("SETBKOFF:\n");
        QVERIFY(c.ask("GET_CALL:"));
        QCOMPARE(beacon.presses, 1);
        beacon.caption = "Bake Ein";
        c.send("SETBKOFF:\nSET_BKON:\n");
        QVERIFY(c.ask("GET_CALL:"));
        QCOMPARE(beacon.presses, 2);
    }

    void otherClientsSeeTheItemChange() {
        RemoteClient a, b;
        connectClient(a);
        connectClient(b);
        edit("Text3")->setText("DL1ABC");
        QCOMPARE(*a.ask("GET_CALL:"), QByteArray("DL1ABC"));
        QCOMPARE(*b.line(), QByteArray("DL1ABC"));
        // The same value again answers the asker only.
        QCOMPARE(*a.ask("GET_CALL:"), QByteArray("DL1ABC"));
        QVERIFY(b.nothingWithin(150));
        // A write command answers no one.
        a.send("SET_CALL:DL2XY\n");
        QVERIFY(a.nothingWithin(150));
        QVERIFY(b.nothingWithin(0));
        QCOMPARE(edit("Text3")->text(), QString("DL2XY"));
    }

    void aKeyPublishesItsTextToEveryClient() {
        bind({{"Flag1", "0"},
              {"Flag2", "42"},
              {"FlagBefehl2", "TURN 135"},
              {"Flag3", "65"},
              {"FlagBefehl3", "ANT A"}});
        RemoteClient a, b;
        connectClient(a);
        connectClient(b);
        QTest::qWait(50); // both accepted
        QLineEdit* call = edit("Text3");
        call->setFocus();
        QTest::keyClicks(call, "dl1*b");
        QCOMPARE(call->text(), QString("DL1B")); // the key is swallowed
        QCOMPARE(*a.line(), QByteArray("TURN 135"));
        QCOMPARE(*b.line(), QByteArray("TURN 135"));
        QTest::keyClick(call, Qt::Key_A); // lower case "a" matches code 65
        QCOMPARE(*a.line(), QByteArray("ANT A"));
        QCOMPARE(*b.line(), QByteArray("ANT A"));
        QCOMPARE(call->text(), QString("DL1B"));
        // The keys publish wherever the focus stands, the log grid included.
        auto* grid = w->findChild<QWidget*>("MSFlexGrid1");
        grid->setFocus();
        QTest::keyClick(grid, Qt::Key_Asterisk);
        QCOMPARE(*a.line(), QByteArray("TURN 135"));
        QCOMPARE(*b.line(), QByteArray("TURN 135"));
        // The item keeps the published text until the next reply.
        RemoteClient late;
        connectClient(late);
        QCOMPARE(*late.ask("GET_CALL:"), QByteArray("DL1B"));
    }

    void limitsOfLinesAndClients() {
        RemoteClient ok;
        connectClient(ok);
        ok.send("GET_CALL:" + QByteArray(1024 - 9, 'x') + "\r\n"); // 1,024 bytes: a line
        QVERIFY(ok.line());
        RemoteClient longLine;
        connectClient(longLine);
        longLine.send("GET_CALL:" + QByteArray(1024 - 8, 'x') + "\n");
        QVERIFY(longLine.closedByServer());
        QVERIFY(longLine.got.isEmpty());
        RemoteClient endless;
        connectClient(endless);
        endless.send(QByteArray(5000, 'y')); // no line end at all
        QVERIFY(endless.closedByServer());

        std::vector<std::unique_ptr<RemoteClient>> many;
        for (int i = 0; i < 15; ++i) {
            many.push_back(std::make_unique<RemoteClient>());
            connectClient(*many.back());
        }
        QTRY_COMPARE(remote->server().clientCount(), 16);
        RemoteClient seventeenth;
        connectClient(seventeenth);
        QVERIFY(seventeenth.closedByServer());
        for (auto& c : many)
            QVERIFY(c->ask("GET__QRG:"));
        many.pop_back();
        QTRY_COMPARE(remote->server().clientCount(), 15);
        RemoteClient again;
        connectClient(again);
        QCOMPARE(*again.ask("GET__QRG:"), QByteArray("1"));
    }

    void brokenClientsChangeNothing() {
        edit("Text3")->setText("DL1ABC");
        const QByteArray before = logHash();
        {
            RemoteClient half;
            connectClient(half);
            half.send("SET_CALL:OK1XX"); // no line end, then gone
            QTest::qWait(50);
        }
        {
            RemoteClient binary;
            connectClient(binary);
            QByteArray junk;
            for (int i = 0; i < 4000; ++i)
                junk += static_cast<char>(QRandomGenerator::global()->bounded(256));
            junk.replace('\n', ' ');
            binary.send(junk.left(900) + "\n" + junk.mid(900, 900) + "\r\n");
            QVERIFY(binary.nothingWithin(100));
        }
        // A client that never reads: its answers pile up until it is dropped.
        // It asks for the call, so the item stays and no one else is sent it.
        RemoteClient deaf;
        connectClient(deaf);
        deaf.s->setReadBufferSize(1);
        QByteArray flood;
        for (int i = 0; i < 2000; ++i)
            flood += "GET_CALL:" + QByteArray(40, '-') + "\r\n";
        for (int i = 0; i < 20; ++i)
            deaf.send(flood);
        RemoteClient c;
        connectClient(c);
        QCOMPARE(*c.ask("GET_CALL:"), QByteArray("DL1ABC"));
        QCOMPARE(edit("Text3")->text(), QString("DL1ABC"));
        QCOMPARE(logHash(), before);
    }

    void commandsWaitBehindAModalDialog() {
        RemoteClient c;
        connectClient(c);
        QDialog modal(w);
        modal.setModal(true);
        modal.show();
        QTRY_VERIFY(QApplication::activeModalWidget() == &modal);
        c.send("SET_CALL:DL9ZZ\nGET_CALL:\n");
        QVERIFY(c.nothingWithin(200));
        QCOMPARE(edit("Text3")->text(), QString());
        modal.close();
        QCOMPARE(*c.line(), QByteArray("DL9ZZ"));
    }

    void allowListAndBadAddresses() {
        // Away from loopback only the listed clients are served.
        bind({{"Address", "0.0.0.0"}, {"Clients", "192.0.2.7"}});
        QVERIFY(remote->server().listening());
        RemoteClient refused;
        connectClient(refused);
        QVERIFY(refused.closedByServer());
        bind({{"Address", "0.0.0.0"}, {"Clients", "192.0.2.7 127.0.0.0/8"}});
        RemoteClient served;
        connectClient(served);
        QVERIFY(served.ask("GET__QRG:"));
        // A setting that names no address: nothing listens, the status says why.
        bind({{"Address", "my.rig"}, {"Clients", ""}});
        QVERIFY(!remote->server().listening());
        QVERIFY(w->findChild<QLabel*>("Label13")->text().contains("my.rig"));
        bind({{"Address", "0.0.0.0"}, {"Clients", "300.1.1.1"}});
        QVERIFY(!remote->server().listening());
        QVERIFY(w->findChild<QLabel*>("Label13")->text().contains("300.1.1.1"));
    }

    // The command-line tool against the running window: a read prints the
    // reply, a write is sent and done, a closed port is a failure.
    void toolSendsOneCommand() {
        edit("Text3")->setText("OK1KKW");
        const QString exe = QString::fromStdString(
            (orv::test::binaryDir() / "src" / "cli" / "orvanta-tool").string());
        auto tool = [&](QStringList args) {
            QProcess p;
            p.start(exe, args);
            // The window must go on serving while the tool waits.
            (void)QTest::qWaitFor([&] { return p.state() == QProcess::NotRunning; }, 10000);
            return std::make_pair(p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()));
        };
        const QString portText = QString::number(port);
        QCOMPARE(tool({"remote", "get_call:", "--port", portText}),
                 std::make_pair(0, QString("OK1KKW\n")));
        QCOMPARE(tool({"remote", "SET_CALL:dl5ab", "--port", portText}).first, 0);
        QTRY_COMPARE(edit("Text3")->text(), QString("DL5AB"));
        // Without --port, the port of the data folder's settings.
        QCOMPARE(
            tool({"remote", "GET_CALL:", "--home", QString::fromStdString(dir->path().string())}),
            std::make_pair(0, QString("DL5AB\n")));
        delete remote;
        remote = nullptr;
        QCOMPARE(tool({"remote", "GET_CALL:", "--port", portText}).first, 1);
        QCOMPARE(tool({"remote", "GET_CALL:", "--port", "0"}).first, 2);
    }

    // Random and malformed lines from several clients for a bounded time;
    // then the program still answers and the log is as it was.
    void fuzzLeavesTheLogAlone() {
        edit("Text3")->setText("DL1ABC");
        const QByteArray before = logHash();
        const QByteArray names[] = {
            "GET__QTF:", "GET_CALL:", "SET_CALL:", "SET__QRG:", "SET_LOCA:", "GET__ALL:",
            "SETBKOFF:", "SET_BKON:", "get__qrg:", "GETBKSTA:", "SET_CALL",  ""};
        auto* rng = QRandomGenerator::global();
        auto randomBytes = [&](int n) {
            QByteArray b;
            for (int i = 0; i < n; ++i)
                b += static_cast<char>(rng->bounded(256));
            return b;
        };
        QElapsedTimer t;
        t.start();
        int lines = 0;
        while (t.elapsed() < 3000) {
            std::vector<std::unique_ptr<RemoteClient>> cs;
            for (int i = 0; i < 4; ++i) {
                cs.push_back(std::make_unique<RemoteClient>());
                if (!cs.back()->connectTo(port))
                    QFAIL("connect");
            }
            for (auto& c : cs) {
                QByteArray batch;
                for (int i = 0; i < 50; ++i, ++lines) {
                    QByteArray l = names[rng->bounded(12)];
                    const int kind = rng->bounded(5);
                    if (kind == 0)
                        l += randomBytes(rng->bounded(40));
                    else if (kind == 1)
                        l = randomBytes(rng->bounded(200));
                    else if (kind == 2)
                        l = " " + l + QByteArray::number(rng->bounded(-20, 20));
                    else if (kind == 3)
                        l += QByteArray(rng->bounded(1200), 'Q');
                    else
                        l += randomBytes(8).toHex();
                    batch += l + (rng->bounded(2) ? "\r\n" : "\n");
                }
                c->send(batch);
                if (rng->bounded(3) == 0)
                    c->send(randomBytes(30)); // a half line, then gone
            }
            QTest::qWait(20);
        }
        QVERIFY(lines > 1000);
        RemoteClient c;
        QTRY_VERIFY(remote->server().clientCount() == 0);
        connectClient(c);
        c.send("SET_CALL:DL7QQ\n");
        QCOMPARE(*c.ask("GET_CALL:"), QByteArray("DL7QQ"));
        QCOMPARE(logHash(), before);
    }
};

QTEST_MAIN(TestRemote)
#include "test_remote.moc"
