#pragma once

// The address of a shared contest's server as the user writes it, and the
// name of a position.

#include <optional>
#include <string>
#include <string_view>

namespace orv {

struct ShareAddress {
    std::string user;
    std::string host;
    int port = 5432;
    std::string database;
    // The key under which the password is kept: "postgresql://HOST:PORT/DB".
    std::string passwordKey() const;
};

// postgresql://USER@HOST[:PORT]/DB (also postgres://). Host is a name, an
// IPv4 address or a bracketed IPv6 address; no password in the address, it
// belongs in the keyring. nullopt for anything else.
std::optional<ShareAddress> parseShareAddress(std::string_view text);

// 1 to 15 letters, digits, '-' or '_': it stands in the status panel and in
// every QSO's record on the server.
bool validPositionName(std::string_view name);

} // namespace orv
