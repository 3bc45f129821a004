#include "core/reference/call_image.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <numeric>
#include <system_error>

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
        if (n + 1 >= N)
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

struct StmtDeleter {
    void operator()(sqlite3_stmt* s) const { sqlite3_finalize(s); }
};

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

} // namespace

QBDatImage QBDatImage::load(const fs::path& dbPath) {
    QBDatImage image;
    std::error_code ec;
    if (!fs::exists(dbPath, ec))
        return image;
    sql::Db db(dbPath.string(), sql::Db::Mode::ReadOnly);
    if (!db.tableExists(kCallDbTable))
        return image;
    // Read in file order and sort here: cheaper than walking the call index
    // with a row look-up for each record.
    const std::string sqlText =
        "SELECT rowid, Call, Locator, B6, B2, Bc70, Bc23, Bc13, Bc9, Bc6, Bc3, Bm12, Bm6, "
        "LastDate FROM " +
        sql::quoteIdent(kCallDbTable);
    sqlite3_stmt* raw = nullptr;
    if (sqlite3_prepare_v2(db.handle(), sqlText.c_str(), -1, &raw, nullptr) != SQLITE_OK)
        throw sql::Error(sqlite3_errmsg(db.handle()), sqlite3_errcode(db.handle()));
    std::unique_ptr<sqlite3_stmt, StmtDeleter> st(raw);
    int rc;
    while ((rc = sqlite3_step(st.get())) == SQLITE_ROW) {
        QBDatEntry& e = image.entries_.emplace_back();
        e.rowid = sqlite3_column_int64(st.get(), 0);
        setText(e.call, columnText(st.get(), 1));
        setText(e.loc, columnText(st.get(), 2));
        for (int b = 0; b < kBandCount; ++b)
            e.counters[static_cast<std::size_t>(b)] = sqlite3_column_int(st.get(), 3 + b);
        if (auto d = DateTime::fromStorage(columnText(st.get(), 13)))
            e.lastDate = *d;
    }
    if (rc != SQLITE_DONE)
        throw sql::Error(sqlite3_errmsg(db.handle()), rc);
    image.buildIndexes();
    return image;
}

QBDatImage QBDatImage::fromRecords(const std::vector<CallRecord>& records) {
    QBDatImage image;
    image.entries_.reserve(records.size());
    for (const auto& r : records) {
        QBDatEntry& e = image.entries_.emplace_back();
        e.rowid = r.rowid;
        setText(e.call, r.Call);
        setText(e.loc, r.Locator);
        e.counters = r.counters;
        if (r.LastDate)
            e.lastDate = *r.LastDate;
    }
    image.buildIndexes();
    return image;
}

void QBDatImage::buildIndexes() {
    std::stable_sort(entries_.begin(), entries_.end(),
                     [](const QBDatEntry& a, const QBDatEntry& b) {
                         const int c = std::strcmp(a.call.data(), b.call.data());
                         return c != 0 ? c < 0 : a.rowid < b.rowid;
                     });
    calls_.build(entries_.size(), [this](std::size_t i) { return entries_[i].Call(); });
    locs_.build(entries_.size(), [this](std::size_t i) { return entries_[i].Locator(); });
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
        const QBDatEntry& e = entries_[i];
        return (callPart.empty() || contains(e.Call(), callPart)) &&
               (locPart.empty() || contains(e.Locator(), locPart));
    };
    auto take = [&](std::uint32_t i) {
        if (result.records.size() < query.maxRecords)
            result.records.push_back(i + 1);
    };

    if (single && drive.countKnown) {
        // The count is known from the index; only the first lines are needed.
        result.found = drive.knownCount;
        if (drive.kind == GramIndex::Plan::List) {
            for (std::size_t k = 0;
                 k < drive.list.size() && result.records.size() < query.maxRecords; ++k)
                result.records.push_back(drive.list[k] + 1);
            return result;
        }
        for (std::uint32_t i = 0; i < n && result.records.size() < query.maxRecords; ++i) {
            if (i % kCancelCheckEvery == 0 && cancel.cancelled()) {
                result.cancelled = true;
                return result;
            }
            if (matches(i))
                take(i);
        }
        return result;
    }

    const std::size_t steps = drive.kind == GramIndex::Plan::List ? drive.list.size() : n;
    for (std::size_t k = 0; k < steps; ++k) {
        if (k % kCancelCheckEvery == 0 && cancel.cancelled()) {
            result.cancelled = true;
            return result;
        }
        const auto i =
            drive.kind == GramIndex::Plan::List ? drive.list[k] : static_cast<std::uint32_t>(k);
        if (matches(i)) {
            ++result.found;
            take(i);
        }
    }
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
    if (e.lastDate.year >= 1900) {
        std::snprintf(buf, sizeof buf, " %02d.%02d.%04d", e.lastDate.day, e.lastDate.month,
                      e.lastDate.year);
        line += buf;
    }
    return line;
}

std::string QBDatImage::WriteInList(std::uint32_t n) const {
    return listLine(record(n));
}

} // namespace orv
