#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/rig/band_plan.h"
#include "core/settings/settings.h"

// Sections `Rotator` and `Rig` of the settings file, our own:
//
//   [Rotator]                 [Rig]
//   Enabled=-1                Enabled=-1
//   Model=2                   Model=2
//   Device=127.0.0.1:4533     Device=/dev/ttyUSB0
//   Speed=0                   Speed=38400
//                             Offset10000=10224
//
// `Model` is a Hamlib model number (2 is the network model: `Device` is then
// a `rotctld`/`rigctld` at host:port), `Device` the serial device otherwise,
// `Speed` its baud rate (0: the model's own). `Offset<band>` is the
// transverter offset of a band in MHz, the band named as in the band box.
namespace orv::rig {

inline constexpr long long kNetworkModel = 2;

struct DeviceSettings {
    bool enabled = false;
    long long model = kNetworkModel;
    std::string device;
    long long speed = 0;
    bool operator==(const DeviceSettings&) const = default;
};

DeviceSettings readRotatorSettings(const Settings& s);
void writeRotatorSettings(Settings& s, const DeviceSettings& d);
DeviceSettings readRigSettings(const Settings& s);
void writeRigSettings(Settings& s, const DeviceSettings& d);

// Offsets of the ten bands; an empty or unreadable value is no transverter.
TransverterOffsets readTransverterOffsets(const Settings& s);
void writeTransverterOffsets(Settings& s, const TransverterOffsets& offsets);

// An offset as typed ("10224", "10224,0", "-116"): nothing for anything else
// or a value beyond 100 GHz.
std::optional<double> parseOffsetMHz(std::string_view text);

// "HOST:PORT" as the command-line options give a daemon; nothing when the
// port is not a number from 1 to 65535 or the host is empty.
std::optional<std::string> parseHostPort(std::string_view text);

} // namespace orv::rig
