#include "platform/pg/pg_setup.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstring>

namespace orv {

namespace {

// An IPv4 or IPv6 address as bytes, with its family.
struct RawAddress {
    int family = AF_INET;
    std::array<unsigned char, 16> bytes{};
    int size() const { return family == AF_INET ? 4 : 16; }
};

std::optional<RawAddress> parseAddress(const std::string& text) {
    RawAddress a;
    if (inet_pton(AF_INET, text.c_str(), a.bytes.data()) == 1)
        return a;
    a.family = AF_INET6;
    if (inet_pton(AF_INET6, text.c_str(), a.bytes.data()) == 1)
        return a;
    return std::nullopt;
}

std::string formatAddress(const RawAddress& a) {
    char buf[INET6_ADDRSTRLEN] = {};
    inet_ntop(a.family, a.bytes.data(), buf, sizeof buf);
    return buf;
}

void clearHostBits(RawAddress& a, int bits) {
    for (int i = 0; i < a.size(); ++i) {
        const int keep = std::clamp(bits - 8 * i, 0, 8);
        a.bytes[i] &= static_cast<unsigned char>(0xFF00 >> keep);
    }
}

std::string lower(std::string_view s) {
    std::string out(s);
    for (char& c : out)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

std::string_view trimLeft(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t'))
        s.remove_prefix(1);
    return s;
}

// The file's lines, each with its line end, so that they join back unchanged.
std::vector<std::string> splitLines(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const auto end = text.find('\n');
        const auto n = end == std::string_view::npos ? text.size() : end + 1;
        lines.emplace_back(text.substr(0, n));
        text.remove_prefix(n);
    }
    return lines;
}

std::string joinLines(const std::vector<std::string>& lines) {
    std::string out;
    for (const auto& l : lines)
        out += l;
    return out;
}

void appendLine(std::vector<std::string>& lines, const std::string& line) {
    if (!lines.empty() && lines.back().back() != '\n')
        lines.back() += '\n';
    lines.push_back(line + "\n");
}

// A listen_addresses line: where the setting starts, its value and what
// follows the value (a comment, the line end).
struct ListenLine {
    bool commented = false;
    std::string indent;
    std::string value;
    std::string rest;
};

std::optional<ListenLine> parseListenLine(std::string_view line) {
    constexpr std::string_view kKey = "listen_addresses";
    ListenLine l;
    // The line end stays out of the value: a quote left open must not take
    // it, or the edited line would run into the next one.
    std::size_t body = line.size();
    while (body > 0 && (line[body - 1] == '\n' || line[body - 1] == '\r'))
        --body;
    const std::string_view ending = line.substr(body);
    line = line.substr(0, body);
    std::string_view s = trimLeft(line);
    l.indent = std::string(line.substr(0, line.size() - s.size()));
    if (!s.empty() && s.front() == '#') {
        l.commented = true;
        s = trimLeft(s.substr(1));
    }
    if (s.size() < kKey.size() || lower(s.substr(0, kKey.size())) != kKey)
        return std::nullopt;
    s.remove_prefix(kKey.size());
    if (!s.empty() && s.front() != ' ' && s.front() != '\t' && s.front() != '=')
        return std::nullopt; // another setting that starts alike
    s = trimLeft(s);
    if (!s.empty() && s.front() == '=')
        s = trimLeft(s.substr(1));
    if (!s.empty() && s.front() == '\'') {
        std::size_t i = 1;
        for (; i < s.size(); ++i) {
            if (s[i] == '\'' && i + 1 < s.size() && s[i + 1] == '\'')
                l.value += s[++i];
            else if (s[i] == '\'')
                break;
            else
                l.value += s[i];
        }
        s.remove_prefix(std::min(i + 1, s.size()));
    } else {
        const auto end = s.find_first_of(" \t#\r\n");
        l.value = std::string(s.substr(0, end));
        s.remove_prefix(end == std::string_view::npos ? s.size() : end);
    }
    l.rest = std::string(s) + std::string(ending);
    return l;
}

bool listensEverywhere(const std::string& value) {
    std::size_t start = 0;
    while (start <= value.size()) {
        const auto end = std::min(value.find(',', start), value.size());
        std::string_view item(value.data() + start, end - start);
        while (!item.empty() && item.back() == ' ')
            item.remove_suffix(1);
        if (trimLeft(item) == "*")
            return true;
        start = end + 1;
    }
    return false;
}

// The fields of a pg_hba.conf record, its comment left out.
std::vector<std::string> hbaFields(std::string_view line) {
    line = line.substr(0, line.find('#'));
    std::vector<std::string> fields;
    std::size_t i = 0;
    while (i < line.size()) {
        while (i < line.size() && std::isspace(static_cast<unsigned char>(line[i])))
            ++i;
        const std::size_t start = i;
        while (i < line.size() && !std::isspace(static_cast<unsigned char>(line[i])))
            ++i;
        if (i > start)
            fields.emplace_back(line.substr(start, i - start));
    }
    return fields;
}

std::string padded(const std::string& s, std::size_t width) {
    return s + std::string(s.size() < width ? width - s.size() : 1, ' ');
}

std::string sqlLiteral(const std::string& s) {
    std::string out = "'";
    for (char c : s)
        out += c == '\'' ? std::string("''") : std::string(1, c);
    return out + "'";
}

} // namespace

std::optional<std::string> parseNetwork(std::string_view text) {
    const auto slash = text.find('/');
    if (slash == std::string_view::npos)
        return std::nullopt;
    auto address = parseAddress(std::string(text.substr(0, slash)));
    const std::string_view bitsText = text.substr(slash + 1);
    int bits = -1;
    const auto r = std::from_chars(bitsText.data(), bitsText.data() + bitsText.size(), bits);
    if (!address || bitsText.empty() || r.ec != std::errc{} ||
        r.ptr != bitsText.data() + bitsText.size() || bits < 0 || bits > 8 * address->size())
        return std::nullopt;
    clearHostBits(*address, bits);
    return formatAddress(*address) + "/" + std::to_string(bits);
}

bool validServerName(std::string_view name) {
    static const std::array<std::string_view, 9> reserved = {
        "all",    "sameuser", "samerole",     "samegroup",   "replication",
        "public", "none",     "current_user", "session_user"};
    if (name.empty() || name.size() > 63 || std::isdigit(static_cast<unsigned char>(name[0])) ||
        name.substr(0, 3) == "pg_" ||
        std::find(reserved.begin(), reserved.end(), name) != reserved.end())
        return false;
    return std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
    });
}

ConfEdit listenEverywhere(std::string_view conf) {
    auto lines = splitLines(conf);
    std::optional<std::size_t> active, commented;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const auto l = parseListenLine(lines[i]);
        if (l && !l->commented)
            active = i;
        else if (l && !commented)
            commented = i;
    }
    const auto at = active ? active : commented;
    if (!at) {
        appendLine(lines, "listen_addresses = '*'");
        return {joinLines(lines), true};
    }
    const auto l = *parseListenLine(lines[*at]);
    if (active && listensEverywhere(l.value))
        return {std::string(conf), false};
    lines[*at] = l.indent + "listen_addresses = '*'" + l.rest;
    return {joinLines(lines), true};
}

bool listenRestartPending(std::string_view row) {
    const auto bar = row.find('|');
    if (bar == std::string_view::npos)
        return false;
    std::string_view source = row.substr(bar + 1);
    while (!source.empty() && (source.back() == '\n' || source.back() == '\r'))
        source.remove_suffix(1);
    return source != "command line" && !listensEverywhere(std::string(row.substr(0, bar)));
}

ConfEdit allowNetwork(std::string_view hba, const std::string& database, const std::string& user,
                      const std::string& network) {
    const std::string ours = padded("host", 8) + padded(database, 16) + padded(user, 16) +
                             padded(network, 24) + "scram-sha-256";
    auto lines = splitLines(hba);
    std::optional<std::size_t> firstHost;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const auto f = hbaFields(lines[i]);
        if (f.empty() || f[0].rfind("host", 0) != 0)
            continue;
        if (!firstHost)
            firstHost = i;
        if (f.size() < 5 || f[0] != "host" || f[1] != database || f[2] != user ||
            parseNetwork(f[3]) != network)
            continue;
        if (f[4] == "scram-sha-256")
            return {std::string(hba), false};
        const bool ends = lines[i].back() == '\n';
        lines[i] = ours + (ends ? "\n" : "");
        return {joinLines(lines), true};
    }
    if (firstHost)
        lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(*firstHost), ours + "\n");
    else
        appendLine(lines, ours);
    return {joinLines(lines), true};
}

std::string roleAndDatabaseSql(const std::string& database, const std::string& user,
                               const std::string& password) {
    // The names are checked plain words; quoting them keeps words the
    // server reserves (user, table) usable.
    const std::string role = "\"" + user + "\"", db = "\"" + database + "\"";
    return "SET standard_conforming_strings = on;\n"
           "SET password_encryption = 'scram-sha-256';\n"
           "SELECT 'CREATE ROLE " +
           role +
           " LOGIN' WHERE NOT EXISTS (SELECT FROM pg_roles WHERE rolname = " + sqlLiteral(user) +
           ")\\gexec\nALTER ROLE " + role + " LOGIN PASSWORD " + sqlLiteral(password) +
           ";\nSELECT 'CREATE DATABASE " + db + " OWNER " + role +
           "' WHERE NOT EXISTS (SELECT FROM pg_database WHERE datname = " + sqlLiteral(database) +
           ")\\gexec\n";
}

std::vector<PgClusterEntry> parseClusters(std::string_view listing) {
    std::vector<PgClusterEntry> out;
    for (const auto& line : splitLines(listing)) {
        const auto f = hbaFields(line);
        if (f.size() < 6)
            continue;
        PgClusterEntry c;
        c.version = f[0];
        c.name = f[1];
        if (std::from_chars(f[2].data(), f[2].data() + f[2].size(), c.port).ec != std::errc{})
            continue;
        c.online = f[3].rfind("online", 0) == 0;
        c.owner = f[4];
        c.dataDir = f[5];
        out.push_back(c);
    }
    return out;
}

std::optional<PgClusterEntry> chooseCluster(const std::vector<PgClusterEntry>& clusters,
                                            std::string_view wanted) {
    for (const auto& c : clusters)
        if (wanted.empty() ? c.online : c.version + "/" + c.name == wanted)
            return c;
    if (wanted.empty() && !clusters.empty())
        return clusters.front();
    return std::nullopt;
}

std::optional<PgListening> parsePostmasterPid(std::string_view text) {
    const auto lines = splitLines(text);
    if (lines.size() < 5)
        return std::nullopt;
    auto field = [&](std::size_t i) {
        std::string s = lines[i];
        while (!s.empty() && (s.back() == '\n' || s.back() == '\r'))
            s.pop_back();
        return s;
    };
    PgListening l;
    const std::string port = field(3);
    const auto r = std::from_chars(port.data(), port.data() + port.size(), l.port);
    if (r.ec != std::errc{} || r.ptr != port.data() + port.size() || l.port <= 0)
        return std::nullopt;
    l.socketDir = field(4);
    return l;
}

std::optional<std::string> addressOn(const std::string& network) {
    const auto slash = network.find('/');
    const auto net = parseAddress(network.substr(0, slash));
    if (!net || slash == std::string::npos)
        return std::nullopt;
    const int bits = std::stoi(network.substr(slash + 1));
    ifaddrs* list = nullptr;
    if (getifaddrs(&list) != 0)
        return std::nullopt;
    std::optional<std::string> found;
    for (const ifaddrs* i = list; i && !found; i = i->ifa_next) {
        if (!i->ifa_addr || i->ifa_addr->sa_family != net->family)
            continue;
        RawAddress a;
        a.family = net->family;
        if (a.family == AF_INET)
            std::memcpy(a.bytes.data(),
                        &reinterpret_cast<const sockaddr_in*>(i->ifa_addr)->sin_addr, 4);
        else
            std::memcpy(a.bytes.data(),
                        &reinterpret_cast<const sockaddr_in6*>(i->ifa_addr)->sin6_addr, 16);
        RawAddress masked = a;
        clearHostBits(masked, bits);
        if (masked.bytes == net->bytes)
            found = a.family == AF_INET ? formatAddress(a) : "[" + formatAddress(a) + "]";
    }
    freeifaddrs(list);
    return found;
}

std::string shareServerAddress(const std::string& user, const std::string& host, int port,
                               const std::string& database) {
    return "postgresql://" + user + "@" + host + ":" + std::to_string(port) + "/" + database;
}

PgCommands debianCommands(const PgClusterEntry& cluster) {
    PgCommands c;
    c.start = {"pg_ctlcluster", cluster.version, cluster.name, "start"};
    c.restart = {"pg_ctlcluster", cluster.version, cluster.name, "restart"};
    c.controlAsRoot = true;
    c.binDir = std::filesystem::path("/usr/lib/postgresql") / cluster.version / "bin";
    return c;
}

PgCommands dataDirCommands(const std::filesystem::path& dataDir, const std::string& version) {
    PgCommands c;
    const auto debianBin = std::filesystem::path("/usr/lib/postgresql") / version / "bin";
    if (!version.empty() && std::filesystem::exists(debianBin / "pg_ctl"))
        c.binDir = debianBin;
    const std::string pgCtl = c.binDir.empty() ? "pg_ctl" : (c.binDir / "pg_ctl").string();
    // The server's output goes to a file of its folder: it must not hold the
    // pipe through which we read pg_ctl.
    const std::vector<std::string> common = {
        pgCtl, "-w", "-t", "60", "-D", dataDir.string(), "-l", (dataDir / "log").string()};
    c.start = common;
    c.start.push_back("start");
    c.restart = common;
    c.restart.insert(c.restart.end(), {"-m", "fast", "restart"});
    return c;
}

std::vector<std::string> psqlCommand(const std::filesystem::path& binDir,
                                     const PgListening& listening, const std::string& superuser) {
    return {binDir.empty() ? "psql" : (binDir / "psql").string(),
            "-X",
            "-q",
            "-A",
            "-t",
            "-v",
            "ON_ERROR_STOP=1",
            "-h",
            listening.socketDir.empty() ? "127.0.0.1" : listening.socketDir,
            "-p",
            std::to_string(listening.port),
            "-U",
            superuser,
            "-d",
            "dbname=postgres connect_timeout=10"};
}

} // namespace orv
