#pragma once

#include <functional>
#include <mutex>
#include <string>

#include "core/util/result.h"

// The one serial port of the process whose modem-control lines key the
// transmitter and switch PTT. No byte is ever written to it.
namespace orv::keying {

// The line operations, numbered as the settings and the old line-control
// calls number them.
enum LineCode : int {
    SETRTS = 3,
    CLRRTS = 4,
    SETDTR = 5,
    CLRDTR = 6,
    SETBREAK = 8,
    CLRBREAK = 9,
};

// Line number of the settings (`PIN`, `PinCW`, `PinCWPtt`): 0 DTR, 1 RTS,
// 2 TXD (held in break). Other numbers read as DTR.
LineCode setCodeOf(long long line);
LineCode clearCodeOf(long long line);

// `KeyLineOn` and `KeyLineOff` of one transmission.
struct KeyLines {
    LineCode on = SETDTR;
    LineCode off = CLRDTR;
};
KeyLines keyLinesFor(long long pinCw);

// A serial device reached through its modem-control lines; the platform
// implements it, tests record the calls.
class KeyLineDevice {
public:
    virtual ~KeyLineDevice() = default;
    // Opens the device without touching the data lines; false when it cannot.
    virtual bool open(const std::string& device) = 0;
    // One line operation; false when the device no longer answers (pulled).
    virtual bool escape(LineCode code) = 0;
    virtual void close() = 0;
    // Whether the open device still answers, asked without moving a line
    // (a USB adapter pulled while a file plays with PTT up).
    virtual bool alive() { return true; }
};

// The process-wide port handle (`PortHandle`): at most one device open, shared
// by the CW window and the beacon. Safe to call from the window thread and the
// keyer thread at once, so that a stop can drop PTT while a text is going out.
class KeyPort {
public:
    // deviceFor maps a COM number of the settings to a device path.
    KeyPort(KeyLineDevice& device, std::function<std::string(int)> deviceFor);
    ~KeyPort();
    KeyPort(const KeyPort&) = delete;
    KeyPort& operator=(const KeyPort&) = delete;

    // Opens "COM port", clears DTR, RTS and break in that order and raises
    // the PTT line. Refused with text 25 and "COM n" when the device cannot
    // be opened (or another transmission holds the port); nothing changes then.
    Status OpenAndKeyPort(int port, long long pttLine);
    // The same line sequence on the port already open: DTR, RTS and break
    // cleared, the PTT line raised. False when none is open or the device
    // no longer answers; it stops at the first operation that fails.
    bool SetUpLines(long long pttLine);
    // Clears DTR, RTS and break in that order and closes; harmless when closed.
    void ReleasePort();
    // A line operation on the open port; false when none is open or the
    // device failed.
    bool escape(LineCode code);
    bool isOpen() const;
    // Open and still answering.
    bool alive() const;

private:
    KeyLineDevice& device_;
    std::function<std::string(int)> deviceFor_;
    mutable std::mutex mutex_;
    bool open_ = false;
};

} // namespace orv::keying
