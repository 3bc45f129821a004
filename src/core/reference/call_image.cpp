#include "core/reference/call_image.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <numeric>
#include <system_error>
#include <thread>

#include "core/util/sqlite.h"
#include "core/util/text.h"

namespace orv {
namespace fs = std::filesystem;

namespace {

// The seventh field of a list line shows `Bc3` (band 7) instead of `Bc6`
// (band 6); the operators know the list that way, so it stays.
constexpr std::array<std::size_t, kBandCount> kListColumnBand{0, 1, 2, 3, 4, 5, 7, 7, 8, 9};
constexpr std::size_t kListCallColumns = 13;
constexpr std::int32_t kListCounterMax = 999;
constexpr std::size_t kCancelCheckEvery = 4096;

template <std::size_t N> void setText(std::array<char, N>& dst, std::string_view s) {
    dst.fill(0);
    std::size_t n = 0;
    for (char c : s) {
        if (n >= N)
            break;
        if (c == ' ' && n == 0)
            continue;
        dst[n++] = (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
    }
    while (n > 0 && dst[n - 1] == ' ')
        dst[--n] = 0;
}

std::string_view columnText(sqlite3_stmt* st, int col) {
    const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(st, col));
    return p ? std::string_view(p, static_cast<std::size_t>(sqlite3_column_bytes(st, col)))
             : std::string_view{};
}

struct DbCloser {
    void operator()(sqlite3* d) const { sqlite3_close(d); }
};

struct StmtDeleter {
    void operator()(sqlite3_stmt* s) const { sqlite3_finalize(s); }
};

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

void checkStop(const std::atomic<bool>* stop) {
    if (stop && stop->load(std::memory_order_relaxed))
        throw QBDatImage::Cancelled{};
}

} // namespace

namespace {
const std::int64_t kWhenBase = DateTime{1, 1, 1, 0, 0, 0}.secondsSinceEpoch();
} // namespace

void QBDatImage::pack(Packed& p, const std::array<std::int32_t, kBandCount>& counters,
                      const DateTime& last) {
    const bool small = std::all_of(counters.begin(), counters.end(),
                                   [](std::int32_t v) { return v >= 0 && v < 0xFFFF; });
    if (small) {
        for (std::size_t b = 0; b < kBandCount; ++b)
            p.counters[b] = static_cast<std::uint16_t>(counters[b]);
    } else {
        const auto at = static_cast<std::uint32_t>(ownOverflow_.size());
        ownOverflow_.push_back(counters);
        p.flags |= Packed::kOverflow;
        p.counters[0] = static_cast<std::uint16_t>(at & 0xFFFF);
        p.counters[1] = static_cast<std::uint16_t>(at >> 16);
    }
    const auto when = static_cast<std::uint64_t>(
        std::clamp<std::int64_t>(last.secondsSinceEpoch() - kWhenBase, 0, (1LL << 48) - 1));
    p.when = {static_cast<std::uint16_t>(when), static_cast<std::uint16_t>(when >> 16),
              static_cast<std::uint16_t>(when >> 32)};
}

void QBDatImage::viewOwn() {
    entries_ = ownEntries_;
    overflow_ = ownOverflow_;
}

QBDatEntry QBDatImage::record(std::uint32_t n) const {
    if (n == 0 || n > entries_.size())
        throw std::out_of_range("no record " + std::to_string(n));
    const Packed& p = entries_[n - 1];
    QBDatEntry e;
    e.call = p.call;
    e.loc = p.loc;
    if (p.flags & Packed::kOverflow) {
        // A mapped file's place out of range reads as zero counters.
        const std::uint32_t at = p.counters[0] | std::uint32_t{p.counters[1]} << 16;
        if (at < overflow_.size())
            e.counters = overflow_[at];
    } else {
        for (std::size_t b = 0; b < kBandCount; ++b)
            e.counters[b] = p.counters[b];
    }
    const std::uint64_t when =
        p.when[0] | std::uint64_t{p.when[1]} << 16 | std::uint64_t{p.when[2]} << 32;
    e.last = DateTime::fromSecondsSinceEpoch(static_cast<std::int64_t>(when) + kWhenBase);
    return e;
}

QBDatImage QBDatImage::load(const fs::path& dbPath, const std::atomic<bool>* stop) {
    QBDatImage image;
    std::error_code ec;
    if (!fs::exists(dbPath, ec))
        return image;
    {
        sql::Db check(dbPath.string(), sql::Db::Mode::ReadOnly);
        if (!check.tableExists(kCallDbTable))
            return image;
    }
    // A connection of its own without SQLite's locks: it lives in this
    // function only, and each column read would take the lock again.
    sqlite3* rawDb = nullptr;
    if (sqlite3_open_v2(dbPath.c_str(), &rawDb, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX,
                        nullptr) != SQLITE_OK) {
        const std::string msg = rawDb ? sqlite3_errmsg(rawDb) : "cannot open";
        sqlite3_close(rawDb);
        throw sql::Error("cannot open " + dbPath.string() + ": " + msg, SQLITE_CANTOPEN);
    }
    std::unique_ptr<sqlite3, DbCloser> dbHandle(rawDb);
    // The stamp and the records in one read transaction, so that the stamp
    // names exactly the content read.
    sqlite3_exec(rawDb, "BEGIN", nullptr, nullptr, nullptr);
    image.stamp_ = readCallDbStamp(rawDb);
    // Read in file order and sort here: cheaper than walking the call index
    // with a row look-up for each record.
    const std::string sqlText =
        "SELECT rowid, Call, Locator, B6, B2, Bc70, Bc23, Bc13, Bc9, Bc6, Bc3, Bm12, Bm6, "
        "LastDate FROM " +
        sql::quoteIdent(kCallDbTable);
    sqlite3_stmt* raw = nullptr;
    if (sqlite3_prepare_v2(rawDb, sqlText.c_str(), -1, &raw, nullptr) != SQLITE_OK)
        throw sql::Error(sqlite3_errmsg(rawDb), sqlite3_errcode(rawDb));
    std::unique_ptr<sqlite3_stmt, StmtDeleter> st(raw);
    {
        sqlite3_stmt* countRaw = nullptr;
        const std::string countSql = "SELECT COUNT(*) FROM " + sql::quoteIdent(kCallDbTable);
        if (sqlite3_prepare_v2(rawDb, countSql.c_str(), -1, &countRaw, nullptr) == SQLITE_OK) {
            std::unique_ptr<sqlite3_stmt, StmtDeleter> count(countRaw);
            if (sqlite3_step(countRaw) == SQLITE_ROW)
                image.ownEntries_.reserve(
                    static_cast<std::size_t>(sqlite3_column_int64(countRaw, 0)));
        }
    }
    int rc;
    while ((rc = sqlite3_step(st.get())) == SQLITE_ROW) {
        if (image.ownEntries_.size() % kCancelCheckEvery == 0)
            checkStop(stop);
        Packed& e = image.ownEntries_.emplace_back();
        setText(e.call, columnText(st.get(), 1));
        setText(e.loc, columnText(st.get(), 2));
        std::array<std::int32_t, kBandCount> counters;
        for (int b = 0; b < kBandCount; ++b)
            counters[static_cast<std::size_t>(b)] = sqlite3_column_int(st.get(), 3 + b);
        image.pack(e, counters,
                   DateTime::fromStorage(columnText(st.get(), 13)).value_or(DateTime{}));
    }
    if (rc != SQLITE_DONE)
        throw sql::Error(sqlite3_errmsg(rawDb), rc);
    st.reset();
    dbHandle.reset();
    image.ownEntries_.shrink_to_fit();
    image.buildIndexes(stop);
    return image;
}

QBDatImage QBDatImage::fromRecords(const std::vector<CallRecord>& records) {
    QBDatImage image;
    image.ownEntries_.reserve(records.size());
    for (const auto& r : records) {
        Packed& e = image.ownEntries_.emplace_back();
        setText(e.call, r.Call);
        setText(e.loc, r.Locator);
        image.pack(e, r.counters, r.LastDate.value_or(DateTime{}));
    }
    image.buildIndexes(nullptr);
    return image;
}

void QBDatImage::buildIndexes(const std::atomic<bool>* stop) {
    // Call order, equal calls in the order of the file: the records are
    // dealt into buckets by their first two characters (stable, in one
    // pass), then each bucket is sorted on its own, which also gives the
    // cancel check a place between buckets.
    const std::size_t n = ownEntries_.size();
    auto bucketOf = [](const Packed& e) {
        return static_cast<std::size_t>(static_cast<unsigned char>(e.call[0])) << 8 |
               static_cast<unsigned char>(e.call[1]);
    };
    constexpr std::size_t kBuckets = 1 << 16;
    std::vector<std::uint32_t> start(kBuckets + 1, 0);
    for (const Packed& e : ownEntries_)
        ++start[bucketOf(e) + 1];
    for (std::size_t b = 1; b <= kBuckets; ++b)
        start[b] += start[b - 1];
    std::vector<std::uint32_t> order(n);
    {
        std::vector<std::uint32_t> fill(start.begin(), start.end() - 1);
        for (std::size_t i = 0; i < n; ++i)
            order[fill[bucketOf(ownEntries_[i])]++] = static_cast<std::uint32_t>(i);
    }
    checkStop(stop);
    for (std::size_t b = 0; b < kBuckets; ++b) {
        const auto first = order.begin() + start[b], last = order.begin() + start[b + 1];
        if (last - first < 2)
            continue;
        std::sort(first, last, [this](std::uint32_t x, std::uint32_t y) {
            const int c =
                std::memcmp(ownEntries_[x].call.data(), ownEntries_[y].call.data(), kCallSize);
            return c != 0 ? c < 0 : x < y;
        });
        if (b % 256 == 0)
            checkStop(stop);
    }
    start = {};
    // Put the records in place by following the cycles of the permutation,
    // so that a million of them need no second copy in memory.
    std::vector<std::uint32_t>& from = order;
    for (std::size_t s = 0; s < from.size(); ++s) {
        if (from[s] == s)
            continue;
        Packed moving = ownEntries_[s];
        std::size_t at = s;
        while (from[at] != s) {
            const std::size_t next = from[at];
            ownEntries_[at] = ownEntries_[next];
            from[at] = static_cast<std::uint32_t>(at);
            at = next;
        }
        ownEntries_[at] = moving;
        from[at] = static_cast<std::uint32_t>(at);
    }
    order = {};
    checkStop(stop);
    // The two indexes share nothing: build them side by side.
    bool callsDone = false;
    {
        std::jthread callsThread([this, stop, &callsDone] {
            callsDone = calls_.build(
                ownEntries_.size(), [this](std::size_t i) { return ownEntries_[i].Call(); }, stop);
        });
        locs_.build(
            ownEntries_.size(), [this](std::size_t i) { return ownEntries_[i].Locator(); }, stop);
    }
    if (!callsDone)
        throw Cancelled{};
    checkStop(stop);
    viewOwn();
}

CallSearchResult QBDatImage::search(const CallSearch& query, const CancelToken& cancel) const {
    CallSearchResult result;
    const std::string callPart = text::upper(text::trim(query.callPart));
    const std::string locPart = text::upper(text::trim(query.locatorPart));
    if (callPart.empty() && locPart.empty())
        return result;
    const std::size_t n = entries_.size();
    const auto callPlan = calls_.plan(callPart, n);
    const auto locPlan = locs_.plan(locPart, n);

    // The part with fewer candidates drives the walk; the other one is
    // checked on each candidate.
    const bool byCall = !callPart.empty() && (locPart.empty() || callPlan.cost <= locPlan.cost);
    const GramIndex::Plan& drive = byCall ? callPlan : locPlan;
    const bool single = callPart.empty() || locPart.empty();

    auto matches = [&](std::uint32_t i) {
        const Packed& e = entries_[i];
        return (callPart.empty() || contains(e.Call(), callPart)) &&
               (locPart.empty() || contains(e.Locator(), locPart));
    };
    auto take = [&](std::uint32_t i) {
        if (result.records.size() < query.maxRecords)
            result.records.push_back(i + 1);
    };

    // Walks the candidates in record order, the list's or every record,
    // until `visit` returns false; a newer key stroke stops it.
    auto walkCandidates = [&](auto visit) {
        std::size_t k = 0;
        auto step = [&](std::uint32_t i) {
            if (k++ % kCancelCheckEvery == 0 && cancel.cancelled()) {
                result.cancelled = true;
                return false;
            }
            // A list of a damaged file may name records that are not there.
            if (i >= n)
                return false;
            return visit(i);
        };
        if (drive.kind == GramIndex::Plan::List) {
            drive.list.forEach(step);
            return;
        }
        for (std::uint32_t i = 0; i < n; ++i)
            if (!step(i))
                return;
    };

    if (single && drive.countKnown) {
        // The count is known from the index; only the first lines are needed.
        result.found = drive.knownCount;
        const bool exact = drive.kind == GramIndex::Plan::List && drive.exact;
        walkCandidates([&](std::uint32_t i) {
            if (result.records.size() >= query.maxRecords)
                return false;
            if (exact || matches(i))
                take(i);
            return true;
        });
        return result;
    }

    walkCandidates([&](std::uint32_t i) {
        if (matches(i)) {
            ++result.found;
            take(i);
        }
        return true;
    });
    return result;
}

std::string listLine(const QBDatEntry& e) {
    std::string line = text::padRight(text::left(e.Call(), kListCallColumns), kListCallColumns);
    line += text::padRight(e.Locator(), kLocatorSize);
    char buf[48];
    for (std::size_t c = 0; c < kBandCount; ++c) {
        const std::int32_t v = std::min(e.counters[kListColumnBand[c]], kListCounterMax);
        std::snprintf(buf, sizeof buf, " %3d", static_cast<int>(v));
        line += buf;
    }
    if (const DateTime last = e.lastDate(); last.year >= 1900) {
        std::snprintf(buf, sizeof buf, " %02d.%02d.%04d", last.day, last.month, last.year);
        line += buf;
    }
    return line;
}

std::string listLineCall(std::string_view line) {
    return text::upper(text::trim(text::left(line, kListCallColumns)));
}

std::string listLineLocator(std::string_view line) {
    const std::string rest =
        line.size() > kListCallColumns
            ? std::string(line.substr(text::left(line, kListCallColumns).size()))
            : std::string();
    return text::upper(text::trim(text::left(rest, kLocatorSize)));
}

std::string QBDatImage::WriteInList(std::uint32_t n) const {
    return listLine(record(n));
}

} // namespace orv
