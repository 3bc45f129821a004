#include "platform/pg/pg_server.h"

#include <libpq-fe.h>

#include <poll.h>

#include <chrono>
#include <cstring>

#include "platform/pg/pg_schema.h"

namespace orv {

struct PgServer::Result {
    PGresult* r = nullptr;
    explicit Result(PGresult* res) : r(res) {}
    ~Result() { PQclear(r); }
    Result(Result&& o) noexcept : r(o.r) { o.r = nullptr; }
    Result& operator=(Result&& o) noexcept {
        std::swap(r, o.r);
        return *this;
    }
    Result(const Result&) = delete;
    Result& operator=(const Result&) = delete;
    int rows() const { return PQntuples(r); }
    std::string text(int row, int col) const { return PQgetvalue(r, row, col); }
    std::int64_t int64(int row, int col) const {
        return std::strtoll(PQgetvalue(r, row, col), nullptr, 10);
    }
};

namespace {

std::vector<std::string> fieldsOf(const QsoRow& q) {
    auto b = [](bool v) { return std::string(v ? "1" : "0"); };
    return {q.call,
            q.locator,
            std::to_string(q.qrg),
            q.datTime.toStorage(),
            q.rstGeg,
            std::to_string(q.qsoNr),
            q.rstErh,
            std::to_string(q.qrb),
            b(q.qsl),
            q.notice,
            q.mod,
            b(q.dupe),
            q.name,
            q.modRx,
            q.ausBr,
            b(q.errQso),
            q.opCall,
            std::to_string(q.freqHz)};
}

std::int64_t num(const std::string& s) {
    return std::strtoll(s.c_str(), nullptr, 10);
}

QsoRow rowOf(const std::vector<std::string>& f) {
    QsoRow q;
    q.call = f[0];
    q.locator = f[1];
    q.qrg = num(f[2]);
    q.datTime = DateTime::fromStorage(f[3]).value_or(DateTime{});
    q.rstGeg = f[4];
    q.qsoNr = num(f[5]);
    q.rstErh = f[6];
    q.qrb = num(f[7]);
    q.qsl = f[8] == "1";
    q.notice = f[9];
    q.mod = f[10];
    q.dupe = f[11] == "1";
    q.name = f[12];
    q.modRx = f[13];
    q.ausBr = f[14];
    q.errQso = f[15] == "1";
    q.opCall = f[16];
    q.freqHz = num(f[17]);
    return q;
}

constexpr int kFieldCount = 18;

std::string fieldColumns() {
    std::string s;
    for (int i = 1; i <= kFieldCount; ++i)
        s += ", fields[" + std::to_string(i) + "]";
    return s;
}

std::string fieldArray(int first) {
    std::string s = "ARRAY[";
    for (int i = 0; i < kFieldCount; ++i)
        s += (i ? ", $" : "$") + std::to_string(first + i);
    return s + "]::text[]";
}

} // namespace

PgServer::PgServer(std::string address, std::string password, std::string contest,
                   PgTimeouts timeouts)
    : address_(std::move(address)), password_(std::move(password)), contest_(std::move(contest)),
      timeouts_(timeouts) {}

PgServer::~PgServer() {
    disconnect();
}

void PgServer::disconnect() {
    if (conn_)
        PQfinish(conn_);
    conn_ = nullptr;
}

void PgServer::fail(const std::string& what) {
    std::string msg = what;
    if (conn_) {
        const char* e = PQerrorMessage(conn_);
        if (e && *e)
            msg += (msg.empty() ? "" : ": ") + std::string(e);
    }
    while (!msg.empty() && (msg.back() == '\n' || msg.back() == ' '))
        msg.pop_back();
    disconnect();
    throw SharedServerError(msg);
}

void PgServer::connect() {
    if (conn_)
        return;
    const std::string connectTimeout = std::to_string(timeouts_.connectSeconds);
    const std::string options = "-c statement_timeout=" + std::to_string(timeouts_.statementMs);
    const std::string userTimeout = std::to_string(timeouts_.statementMs);
    // A dead link (a pulled cable, a Wi-Fi gone) is noticed within seconds:
    // keepalives every 2 s after 3 s idle, 3 lost ones, and unacknowledged
    // data given up after the statement time.
    const char* keys[] = {"dbname",
                          "connect_timeout",
                          "keepalives",
                          "keepalives_idle",
                          "keepalives_interval",
                          "keepalives_count",
                          "tcp_user_timeout",
                          "options",
                          "application_name",
                          password_.empty() ? nullptr : "password",
                          nullptr};
    const char* values[] = {address_.c_str(),
                            connectTimeout.c_str(),
                            "1",
                            "3",
                            "2",
                            "3",
                            userTimeout.c_str(),
                            options.c_str(),
                            "orvanta-contest",
                            password_.c_str(),
                            nullptr};
    conn_ = PQconnectdbParams(keys, values, 1);
    if (!conn_ || PQstatus(conn_) != CONNECTION_OK)
        fail("");
    PQsetClientEncoding(conn_, "UTF8");
    // The server's notices (a shutdown warning) are not for the terminal.
    PQsetNoticeProcessor(
        conn_, [](void*, const char*) {}, nullptr);
    if (PQsetnonblocking(conn_, 1) != 0)
        fail("");
    ensureSchema();
}

PgServer::Result PgServer::exec(const std::string& sql,
                                const std::vector<std::optional<std::string>>& params) {
    connect();
    return send(sql, params, false);
}

// Sends without blocking and waits on the socket with a deadline of our own:
// a link that holds still (a peer that acknowledges but never answers) would
// otherwise keep a blocking call waiting for good.
PgServer::Result PgServer::send(const std::string& sql,
                                const std::vector<std::optional<std::string>>& params,
                                bool script) {
    std::vector<const char*> values;
    values.reserve(params.size());
    for (const auto& p : params)
        values.push_back(p ? p->c_str() : nullptr);
    const int sent = script ? PQsendQuery(conn_, sql.c_str())
                            : PQsendQueryParams(conn_, sql.c_str(), static_cast<int>(values.size()),
                                                nullptr, values.data(), nullptr, nullptr, 0);
    if (!sent)
        fail("");
    const auto deadline =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(timeouts_.statementMs + 1000);
    auto waitFor = [&](short events) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                              deadline - std::chrono::steady_clock::now())
                              .count();
        if (left <= 0)
            fail("timeout");
        pollfd fd{PQsocket(conn_), events, 0};
        if (poll(&fd, 1, static_cast<int>(left)) < 0)
            fail("poll");
    };
    for (;;) {
        const int f = PQflush(conn_);
        if (f < 0)
            fail("");
        if (f == 0)
            break;
        waitFor(POLLIN | POLLOUT);
        if (!PQconsumeInput(conn_))
            fail("");
    }
    Result last(nullptr);
    std::string error;
    for (;;) {
        while (PQisBusy(conn_)) {
            waitFor(POLLIN);
            if (!PQconsumeInput(conn_))
                fail("");
        }
        PGresult* r = PQgetResult(conn_);
        if (!r)
            break;
        const auto st = PQresultStatus(r);
        if (st != PGRES_COMMAND_OK && st != PGRES_TUPLES_OK && error.empty()) {
            const char* e = PQresultErrorMessage(r);
            error = e && *e ? e : "error";
        }
        last = Result(r);
    }
    if (!error.empty())
        fail(error);
    if (!last.r)
        fail("no result");
    return last;
}

void PgServer::ensureSchema() {
    auto run = [&](const char* sql) { return send(sql, {}, true); };
    run("BEGIN");
    run("SELECT pg_advisory_xact_lock(hashtext('orv_share_schema'))");
    {
        Result exists = run("SELECT to_regclass('orv_share_version') IS NOT NULL");
        if (exists.text(0, 0) == "t") {
            Result v = run("SELECT coalesce(max(version), 0) FROM orv_share_version");
            const int found = static_cast<int>(v.int64(0, 0));
            if (found != kSchemaVersion) {
                disconnect();
                throw SharedSchemaError("schema version " + std::to_string(found), found);
            }
            run("COMMIT");
            return;
        }
    }
    run(pg_detail::kCreateSchema);
    run("CREATE TABLE orv_share_version (version integer NOT NULL)");
    const std::string insert =
        "INSERT INTO orv_share_version VALUES (" + std::to_string(kSchemaVersion) + ")";
    run(insert.c_str());
    run("COMMIT");
}

void PgServer::listen() {
    connect();
    exec("LISTEN orv_share", {});
}

int PgServer::socket() const {
    return conn_ ? PQsocket(conn_) : -1;
}

bool PgServer::takeNotices() {
    if (!conn_)
        fail("not connected");
    if (!PQconsumeInput(conn_))
        fail("");
    bool ours = false;
    while (PGnotify* n = PQnotifies(conn_)) {
        if (contest_ == n->extra)
            ours = true;
        PQfreemem(n);
    }
    return ours;
}

PushResult PgServer::push(const OutboxEntry& e) {
    std::vector<std::optional<std::string>> p{contest_,
                                              e.qso.uid,
                                              std::to_string(e.qso.band),
                                              e.qso.position,
                                              std::to_string(e.baseRev),
                                              std::to_string(e.qso.rev)};
    for (auto& f : fieldsOf(e.qso.row))
        p.emplace_back(std::move(f));
    Result r = exec("SELECT orv_push($1, $2, $3::integer, $4, $5::bigint, $6::bigint, " +
                        fieldArray(7) + ")",
                    p);
    PushResult out;
    const auto outcome = r.int64(0, 0);
    out.outcome = outcome == 0   ? PushOutcome::Stored
                  : outcome == 1 ? PushOutcome::AlreadyHeld
                                 : PushOutcome::Conflict;
    Result held = exec("SELECT uid, band, position, rev, change_no" + fieldColumns() +
                           " FROM orv_qso WHERE uid = $1",
                       {e.qso.uid});
    if (held.rows() == 1) {
        std::vector<std::string> f;
        for (int i = 0; i < kFieldCount; ++i)
            f.push_back(held.text(0, 5 + i));
        out.server = {held.text(0, 0),  static_cast<int>(held.int64(0, 1)),
                      held.text(0, 2),  held.int64(0, 3),
                      held.int64(0, 4), rowOf(f)};
    }
    return out;
}

std::vector<SharedQso> PgServer::changesSince(std::int64_t after, int limit) {
    Result r = exec("SELECT uid, band, position, rev, change_no" + fieldColumns() +
                        " FROM orv_qso WHERE contest = $1 AND change_no > $2::bigint ORDER BY "
                        "change_no LIMIT $3::integer",
                    {contest_, std::to_string(after), std::to_string(limit)});
    std::vector<SharedQso> out;
    for (int i = 0; i < r.rows(); ++i) {
        std::vector<std::string> f;
        for (int c = 0; c < kFieldCount; ++c)
            f.push_back(r.text(i, 5 + c));
        out.push_back({r.text(i, 0), static_cast<int>(r.int64(i, 1)), r.text(i, 2), r.int64(i, 3),
                       r.int64(i, 4), rowOf(f)});
    }
    return out;
}

void PgServer::reportPosition(const PositionStatus& s) {
    exec("INSERT INTO orv_position VALUES ($1, $2, $3::integer, $4, $5, $6, $7::bigint, now()) "
         "ON CONFLICT (contest, position) DO UPDATE SET band = EXCLUDED.band, opcall = "
         "EXCLUDED.opcall, last_call = EXCLUDED.last_call, last_time = EXCLUDED.last_time, "
         "queued = EXCLUDED.queued, seen = EXCLUDED.seen",
         {contest_, s.position, std::to_string(s.band), s.opCall, s.lastCall, s.lastTime,
          std::to_string(s.queued)});
}

std::vector<PositionStatus> PgServer::positions() {
    Result r = exec("SELECT position, band, opcall, last_call, last_time, queued, "
                    "floor(extract(epoch FROM now() - seen))::bigint FROM orv_position WHERE "
                    "contest = $1 ORDER BY position",
                    {contest_});
    std::vector<PositionStatus> out;
    for (int i = 0; i < r.rows(); ++i)
        out.push_back({r.text(i, 0), static_cast<int>(r.int64(i, 1)), r.text(i, 2), r.text(i, 3),
                       r.text(i, 4), r.int64(i, 5), r.int64(i, 6)});
    return out;
}

std::int64_t PgServer::holdSerial(int band, const std::string& position, std::int64_t known) {
    Result r = exec("SELECT orv_hold_serial($1, $2::integer, $3, $4::bigint)",
                    {contest_, std::to_string(band), position, std::to_string(known)});
    return r.int64(0, 0);
}

void PgServer::publishContest(const ContestInfo& c) {
    exec("INSERT INTO orv_contest VALUES ($1, $2, $3, $4, $5) ON CONFLICT (contest) DO NOTHING",
         {contest_, c.myCall, c.myLocator, c.contName, c.weights});
}

std::optional<PgServer::ContestInfo> PgServer::contestInfo() {
    Result r =
        exec("SELECT mycall, mylocator, contname, weights FROM orv_contest WHERE contest = $1",
             {contest_});
    if (r.rows() != 1)
        return std::nullopt;
    return ContestInfo{r.text(0, 0), r.text(0, 1), r.text(0, 2), r.text(0, 3)};
}

std::vector<std::pair<std::string, std::int64_t>> PgServer::idsAndRevisions() {
    Result r = exec("SELECT uid, rev FROM orv_qso WHERE contest = $1", {contest_});
    std::vector<std::pair<std::string, std::int64_t>> out;
    for (int i = 0; i < r.rows(); ++i)
        out.emplace_back(r.text(i, 0), r.int64(i, 1));
    return out;
}

} // namespace orv
