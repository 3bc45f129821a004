#include "core/keying/key_port.h"

namespace orv::keying {

LineCode setCodeOf(long long line) {
    switch (line) {
    case 1:
        return SETRTS;
    case 2:
        return SETBREAK;
    default:
        return SETDTR;
    }
}

LineCode clearCodeOf(long long line) {
    switch (line) {
    case 1:
        return CLRRTS;
    case 2:
        return CLRBREAK;
    default:
        return CLRDTR;
    }
}

KeyLines keyLinesFor(long long pinCw) {
    return {setCodeOf(pinCw), clearCodeOf(pinCw)};
}

KeyPort::KeyPort(KeyLineDevice& device, std::function<std::string(int)> deviceFor)
    : device_(device), deviceFor_(std::move(deviceFor)) {}

KeyPort::~KeyPort() {
    ReleasePort();
}

Status KeyPort::OpenAndKeyPort(int port, long long pttLine) {
    std::lock_guard lock(mutex_);
    if (open_ || !device_.open(deviceFor_(port)))
        return refuse(25, "", "COM " + std::to_string(port));
    open_ = true;
    for (LineCode c : {CLRDTR, CLRRTS, CLRBREAK})
        device_.escape(c);
    device_.escape(setCodeOf(pttLine));
    return okStatus();
}

bool KeyPort::SetUpLines(long long pttLine) {
    std::lock_guard lock(mutex_);
    if (!open_)
        return false;
    for (LineCode c : {CLRDTR, CLRRTS, CLRBREAK, setCodeOf(pttLine)})
        if (!device_.escape(c))
            return false;
    return true;
}

void KeyPort::ReleasePort() {
    std::lock_guard lock(mutex_);
    if (!open_)
        return;
    for (LineCode c : {CLRDTR, CLRRTS, CLRBREAK})
        device_.escape(c);
    device_.close();
    open_ = false;
}

bool KeyPort::escape(LineCode code) {
    std::lock_guard lock(mutex_);
    return open_ && device_.escape(code);
}

bool KeyPort::isOpen() const {
    std::lock_guard lock(mutex_);
    return open_;
}

bool KeyPort::alive() const {
    std::lock_guard lock(mutex_);
    return open_ && device_.alive();
}

} // namespace orv::keying
