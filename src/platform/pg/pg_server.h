#pragma once

// The shared log's meeting point on a PostgreSQL server, through libpq.
//
// One object is one connection; it is used by one thread at a time (the
// worker of PgShareWorker, or the tool). Every call is bounded: connecting
// gives up after a few seconds, each statement after a few more, and TCP
// keepalives with a user timeout notice a link that died without a word. A
// failure throws SharedServerError and leaves the object disconnected; the
// next call connects again.
//
// The server's tables carry a schema version; a server of another version is
// refused (SharedSchemaError) before anything is written to it.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/shared/shared_server.h"

struct pg_conn;

namespace orv {

class SharedSchemaError : public SharedServerError {
public:
    SharedSchemaError(const std::string& what, int found)
        : SharedServerError(what), found_(found) {}
    int found() const { return found_; }

private:
    int found_;
};

struct PgTimeouts {
    int connectSeconds = 3;
    int statementMs = 5000;
};

class PgServer : public SharedServer {
public:
    static constexpr int kSchemaVersion = 2;

    // `address` is postgresql://USER@HOST:PORT/DB; `password` empty when the
    // server needs none.
    PgServer(std::string address, std::string password, std::string contest,
             PgTimeouts timeouts = {});
    ~PgServer() override;
    PgServer(const PgServer&) = delete;
    PgServer& operator=(const PgServer&) = delete;

    // Connects when not connected and checks (or creates) the schema.
    void connect();
    void disconnect();
    bool connected() const { return conn_ != nullptr; }
    // Waits on the server's change notices: LISTEN on this connection. Used
    // on a connection of its own.
    void listen();
    // The socket to wait on for notices; -1 when not connected.
    int socket() const;
    // Reads what arrived on the socket; true when a change notice of this
    // contest was among it. Throws when the connection broke.
    bool takeNotices();

    PushResult push(const OutboxEntry& change) override;
    std::vector<SharedQso> changesSince(std::int64_t afterChangeNo, int limit) override;
    void reportPosition(const PositionStatus& status) override;
    std::vector<PositionStatus> positions() override;
    std::int64_t holdSerial(int band, const std::string& position, std::int64_t known) override;

    // The station of the contest, as the position that shared it first gave
    // it: the log's `MyData` for the positions that join.
    struct ContestInfo {
        std::string myCall;
        std::string myLocator;
        std::string contName;
        std::string weights; // ten numbers, comma-separated
    };
    // Writes the station unless the contest has one already.
    void publishContest(const ContestInfo& info);
    std::optional<ContestInfo> contestInfo();

    // Every QSO id and revision the server holds for the contest.
    std::vector<std::pair<std::string, std::int64_t>> idsAndRevisions();

private:
    struct Result;
    Result exec(const std::string& sql, const std::vector<std::optional<std::string>>& params);
    Result send(const std::string& sql, const std::vector<std::optional<std::string>>& params,
                bool script);
    void ensureSchema();
    [[noreturn]] void fail(const std::string& what);

    std::string address_;
    std::string password_;
    std::string contest_;
    PgTimeouts timeouts_;
    pg_conn* conn_ = nullptr;
};

} // namespace orv
