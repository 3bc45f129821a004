#pragma once

#include <string>
#include <vector>

#include "core/keying/key_port.h"

// Serial lines on Linux: the modem-control ioctls on a tty device.
namespace orv::platform {

class SerialKeyLine final : public keying::KeyLineDevice {
public:
    ~SerialKeyLine() override;
    bool open(const std::string& device) override;
    bool escape(keying::LineCode code) override;
    bool alive() override { return modemLines() >= 0; }
    void close() override;
    // DTR and RTS as TIOCM_ bits, -1 when closed or the device fails.
    int modemLines() const;

private:
    int fd_ = -1;
};

struct SerialDevice {
    std::string path;        // what goes into the settings
    std::string description; // how the user recognises it
};

// Whether the device opens and no other program holds it (exclusive use or
// a lock on the device).
bool serialPortFree(const std::string& path);

// The serial devices that are free now, with their descriptions: the ports Qt
// knows and the stable names under /dev/serial/by-id.
std::vector<SerialDevice> availableSerialDevices();

} // namespace orv::platform
