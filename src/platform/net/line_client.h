#pragma once

#include <optional>
#include <string>

namespace orv {

// One request over TCP for scripts: connects, sends one line, and reads one
// line back when a reply is expected. Plain sockets, so the command-line
// tool needs no Qt.
struct LineExchange {
    bool ok = false;
    std::string error;                // why not, for the message
    std::optional<std::string> reply; // without its line end
};
LineExchange exchangeLine(const std::string& host, int port, const std::string& line,
                          bool expectReply, int timeoutMs);

} // namespace orv
