#include "platform/serial_key_line.h"

#include <QSerialPortInfo>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace orv::platform {

bool serialPortFree(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return false;
    // Root opens a port that another program holds exclusively (TIOCEXCL, as
    // Qt's serial port and other radio programs take it), so ask for it; a
    // lock that another program holds on the device counts as busy too.
    int exclusive = 0;
    bool free = !(::ioctl(fd, TIOCGEXCL, &exclusive) == 0 && exclusive != 0);
    if (free && ::flock(fd, LOCK_EX | LOCK_NB) != 0)
        free = false;
    ::close(fd);
    return free;
}

SerialKeyLine::~SerialKeyLine() {
    close();
}

bool SerialKeyLine::open(const std::string& device) {
    close();
    // Non-blocking so that a port without carrier does not hang the open;
    // nothing is ever written, only the modem-control lines move.
    fd_ = ::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd_ < 0)
        return false;
    int lines = 0;
    if (::ioctl(fd_, TIOCMGET, &lines) != 0) { // not a serial device
        close();
        return false;
    }
    return true;
}

bool SerialKeyLine::escape(keying::LineCode code) {
    if (fd_ < 0)
        return false;
    int bits = 0;
    switch (code) {
    case keying::SETDTR:
        bits = TIOCM_DTR;
        return ::ioctl(fd_, TIOCMBIS, &bits) == 0;
    case keying::CLRDTR:
        bits = TIOCM_DTR;
        return ::ioctl(fd_, TIOCMBIC, &bits) == 0;
    case keying::SETRTS:
        bits = TIOCM_RTS;
        return ::ioctl(fd_, TIOCMBIS, &bits) == 0;
    case keying::CLRRTS:
        bits = TIOCM_RTS;
        return ::ioctl(fd_, TIOCMBIC, &bits) == 0;
    case keying::SETBREAK:
        return ::ioctl(fd_, TIOCSBRK) == 0;
    case keying::CLRBREAK:
        return ::ioctl(fd_, TIOCCBRK) == 0;
    }
    return false;
}

void SerialKeyLine::close() {
    if (fd_ >= 0)
        ::close(fd_);
    fd_ = -1;
}

int SerialKeyLine::modemLines() const {
    int bits = 0;
    if (fd_ < 0 || ::ioctl(fd_, TIOCMGET, &bits) != 0)
        return -1;
    return bits & (TIOCM_DTR | TIOCM_RTS);
}

std::vector<SerialDevice> availableSerialDevices() {
    std::vector<SerialDevice> out;
    std::set<std::string> seen;
    auto add = [&](const std::string& path, const std::string& description) {
        if (seen.insert(path).second && serialPortFree(path))
            out.push_back({path, description});
    };
    std::error_code ec;
    const std::filesystem::path byId = "/dev/serial/by-id";
    for (const auto& e : std::filesystem::directory_iterator(byId, ec)) {
        const std::string target = std::filesystem::canonical(e.path(), ec).string();
        add(e.path().string(), e.path().filename().string() + " (" + target + ")");
    }
    for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts()) {
        QString d = info.description();
        if (!info.manufacturer().isEmpty())
            d += (d.isEmpty() ? "" : ", ") + info.manufacturer();
        if (!info.serialNumber().isEmpty())
            d += " " + info.serialNumber();
        add(info.systemLocation().toStdString(),
            d.isEmpty() ? info.portName().toStdString() : d.toStdString());
    }
    return out;
}

} // namespace orv::platform
