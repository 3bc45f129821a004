#include "core/shared/share_address.h"

#include <cctype>

namespace orv {

namespace {
bool nameChar(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '_' || c == '.';
}
} // namespace

std::string ShareAddress::passwordKey() const {
    return "postgresql://" + host + ":" + std::to_string(port) + "/" + database;
}

std::optional<ShareAddress> parseShareAddress(std::string_view s) {
    for (std::string_view scheme : {"postgresql://", "postgres://"}) {
        if (s.substr(0, scheme.size()) != scheme)
            continue;
        s.remove_prefix(scheme.size());
        ShareAddress a;
        const auto at = s.find('@');
        if (at == std::string_view::npos || at == 0)
            return std::nullopt;
        a.user = std::string(s.substr(0, at));
        for (char c : a.user)
            if (!nameChar(c))
                return std::nullopt;
        s.remove_prefix(at + 1);
        const auto slash = s.find('/');
        if (slash == std::string_view::npos)
            return std::nullopt;
        std::string_view hostPort = s.substr(0, slash);
        std::string_view db = s.substr(slash + 1);
        if (db.empty())
            return std::nullopt;
        for (char c : db)
            if (!nameChar(c))
                return std::nullopt;
        a.database = std::string(db);
        std::string_view portText;
        if (!hostPort.empty() && hostPort.front() == '[') {
            const auto close = hostPort.find(']');
            if (close == std::string_view::npos)
                return std::nullopt;
            a.host = std::string(hostPort.substr(0, close + 1));
            hostPort.remove_prefix(close + 1);
            if (!hostPort.empty()) {
                if (hostPort.front() != ':')
                    return std::nullopt;
                portText = hostPort.substr(1);
            }
        } else {
            const auto colon = hostPort.find(':');
            a.host = std::string(hostPort.substr(0, colon));
            if (colon != std::string_view::npos)
                portText = hostPort.substr(colon + 1);
            for (char c : a.host)
                if (!nameChar(c))
                    return std::nullopt;
        }
        if (a.host.empty())
            return std::nullopt;
        if (hostPort.find(':') != std::string_view::npos || !portText.empty()) {
            if (portText.empty() || portText.size() > 5)
                return std::nullopt;
            int port = 0;
            for (char c : portText) {
                if (!std::isdigit(static_cast<unsigned char>(c)))
                    return std::nullopt;
                port = port * 10 + (c - '0');
            }
            if (port < 1 || port > 65535)
                return std::nullopt;
            a.port = port;
        }
        return a;
    }
    return std::nullopt;
}

bool validPositionName(std::string_view name) {
    if (name.empty() || name.size() > 15)
        return false;
    for (char c : name)
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '-' && c != '_')
            return false;
    return true;
}

} // namespace orv
