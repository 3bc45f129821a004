#pragma once

#include <string>

#include "core/settings/settings.h"

// The keying setup as the settings file holds it, and the map from the
// program's COM numbers to Linux serial devices.
namespace orv::keying {

// The section of our own that maps "COM<n>" to a device path.
inline constexpr const char* kSerialSection = "SerialDevices";

// The device of COM n: the mapped path, else /dev/ttyS(n-1).
std::string comDevice(const Settings& s, int com);
void setComDevice(Settings& s, int com, const std::string& device);

// CWText0 .. CWText10 of section CWQBF.
StrSetting CWTextKey(int k);

struct CwSetup {
    int comCw = 0;
    long long pinCw = 0;
    long long pinCwPtt = 0;
    int cwInterface = 0; // 0 keyed line, 1 tone file
    long long wpm = 0;
};
CwSetup readCwSetup(const Settings& s);

} // namespace orv::keying
