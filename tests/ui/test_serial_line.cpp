// The serial key line on a real UART when the machine has one (/dev/ttyS0),
// read back through the port's modem-control status.
#include <QtTest>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "core/keying/key_port.h"
#include "platform/serial_key_line.h"

using namespace orv;
using keying::LineCode;

class SerialLineTest : public QObject {
    Q_OBJECT
private:
    static constexpr const char* kDevice = "/dev/ttyS0";

private slots:
    void refusesWhatIsNoSerialPort() {
        platform::SerialKeyLine line;
        QVERIFY(!line.open("/dev/null"));
        QVERIFY(!line.open("/dev/ttyUSB-none"));
        QVERIFY(!line.escape(keying::SETDTR));
        keying::KeyPort port(line, [](int) { return std::string("/dev/null"); });
        const auto r = port.OpenAndKeyPort(7, 0);
        QVERIFY(!r.ok());
        QCOMPARE(r.failure().text, 25);
        QCOMPARE(QString::fromStdString(r.failure().detail), QString("COM 7"));
    }

    // A port that another program holds is not offered: one it uses
    // exclusively, or one it has locked. A pseudo-terminal stands in for it.
    void aPortInUseIsNotFree() {
        const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
        QVERIFY(master >= 0);
        QVERIFY(::grantpt(master) == 0 && ::unlockpt(master) == 0);
        const std::string slave = ::ptsname(master);
        const int held = ::open(slave.c_str(), O_RDWR | O_NOCTTY);
        QVERIFY(held >= 0);
        QVERIFY(platform::serialPortFree(slave));
        QVERIFY(::ioctl(held, TIOCEXCL) == 0);
        QVERIFY(!platform::serialPortFree(slave));
        QVERIFY(::ioctl(held, TIOCNXCL) == 0);
        QVERIFY(::flock(held, LOCK_EX) == 0);
        QVERIFY(!platform::serialPortFree(slave));
        QVERIFY(::flock(held, LOCK_UN) == 0);
        QVERIFY(platform::serialPortFree(slave));
        ::close(held);
        ::close(master);
        QVERIFY(!platform::serialPortFree("/dev/ttyUSB-none"));
    }

    void keysDtrAndRtsOnARealPort() {
        if (::access(kDevice, R_OK | W_OK) != 0)
            QSKIP("this machine has no /dev/ttyS0");
        platform::SerialKeyLine line;
        keying::KeyPort port(line, [](int) { return std::string(kDevice); });
        QVERIFY(port.OpenAndKeyPort(1, 1).ok()); // PTT on RTS
        QCOMPARE(line.modemLines(), TIOCM_RTS);
        struct Step {
            LineCode code;
            int expected;
        };
        const Step steps[] = {{keying::SETDTR, TIOCM_DTR | TIOCM_RTS},
                              {keying::CLRRTS, TIOCM_DTR},
                              {keying::CLRDTR, 0},
                              {keying::SETBREAK, 0},
                              {keying::CLRBREAK, 0}};
        for (const auto& s : steps) {
            QVERIFY(port.escape(s.code));
            QCOMPARE(line.modemLines(), s.expected);
        }
        QVERIFY(port.escape(keying::SETDTR));
        port.ReleasePort();
        QVERIFY(!port.isOpen());
        QVERIFY(!port.escape(keying::SETDTR));
        const auto devices = platform::availableSerialDevices();
        QVERIFY(std::any_of(devices.begin(), devices.end(),
                            [](const auto& d) { return d.path == kDevice; }));
    }
};

QTEST_GUILESS_MAIN(SerialLineTest)
#include "test_serial_line.moc"
