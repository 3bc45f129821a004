#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

// What the program needs of a rotator and a rig. The platform layer drives
// real devices through Hamlib; core never sees a device library. Every call
// blocks until the device answered or its own timeout ran out, so the program
// makes them only from a worker thread (DeviceLink), never from the window.
namespace orv::rig {

// A device that cannot be opened or stopped answering.
class DeviceError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class Rotator {
public:
    virtual ~Rotator() = default;
    virtual void open() = 0;
    virtual void close() = 0;
    // Azimuth in degrees as the rotator reports it.
    virtual double position() = 0;
    virtual void turnTo(double azimuth) = 0;
    virtual void stop() = 0;
};

// One reading of a rig: the dial frequency and the mode as the rig names it
// ("USB", "CW").
struct RigReading {
    std::int64_t freqHz = 0;
    std::string mode;
    bool operator==(const RigReading&) const = default;
};

class Rig {
public:
    virtual ~Rig() = default;
    virtual void open() = 0;
    virtual void close() = 0;
    virtual RigReading read() = 0;
};

} // namespace orv::rig
