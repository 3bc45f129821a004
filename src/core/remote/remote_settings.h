#pragma once

#include <string>
#include <vector>

#include "core/remote/remote_link.h"
#include "core/settings/settings.h"

namespace orv::remote {

// Section `DDE`: the port of the command interface, the address it listens
// on (127.0.0.1 when empty) and, for any other address, the clients served.
inline const IntSetting Port{"DDE", "Port", 7300, 1, 65535};
inline const StrSetting Address{"DDE", "Address"};
inline const StrSetting Clients{"DDE", "Clients"};

struct ServerSettings {
    int port = 7300;
    std::string address = "127.0.0.1";
    // Addresses or subnets ("192.168.1.0/24"); only used away from loopback.
    std::vector<std::string> clients;
};
ServerSettings readServerSettings(const Settings& settings);

// `Flag1` to `Flag3` with `FlagBefehl1` to `FlagBefehl3`, read at start.
struct PublishKeys {
    PublishKey keys[3];
};
PublishKeys readPublishKeys(const Settings& settings);

} // namespace orv::remote
