#include "core/reference/call_db_merge.h"

#include <algorithm>
#include <limits>
#include <map>
#include <string>

#include "core/app/app_paths.h"
#include "core/settings/ini_file.h"
#include "core/util/sqlite.h"
#include "core/util/text.h"

namespace orv {

bool bandMerged(const AppPaths& paths, std::string_view logName, int band) {
    const IniFile ini(paths.qbDatIniPath());
    if (!ini.exists())
        return false;
    return ini.getInt(logName, orv::band(band).boxText) != 0;
}

int MindestZahl(const AppPaths& paths, std::string_view logName, int band) {
    return bandMerged(paths, logName, band) ? 2 : 1;
}

MergeCount DBAktual(const AppPaths& paths, ContestLog& log, std::string_view logName) {
    MergeCount count;
    CallDbStore store(paths.callDbPath());
    sql::Db& db = store.db();
    // The rows of each call with their locators, as the merge goes along.
    std::map<std::string, std::vector<std::pair<std::int64_t, std::string>>> known;
    {
        auto st = db.prepare("SELECT rowid, upper(Call), upper(Locator) FROM " +
                             sql::quoteIdent(kCallDbTable));
        while (st.step())
            known[st.text(1)].emplace_back(st.int64(0), st.text(2));
    }
    std::vector<std::pair<int, int>> perBand; // band, QSOs merged
    {
        sql::Transaction tx(db);
        for (int b = 0; b < kBandCount; ++b) {
            if (bandMerged(paths, logName, b)) {
                count.bandsAlreadyMerged.push_back(b);
                continue;
            }
            const std::string counter(counterField(b));
            auto bump = db.prepare("UPDATE " + sql::quoteIdent(kCallDbTable) + " SET " + counter +
                                   " = COALESCE(" + counter +
                                   ", 0) + 1, Locator = ?2, LastDate = CASE WHEN LastDate IS "
                                   "NULL OR LastDate < ?3 THEN ?3 ELSE LastDate END WHERE rowid "
                                   "= ?1");
            auto insert = db.prepare(
                "INSERT INTO " + sql::quoteIdent(kCallDbTable) +
                " (Call, Locator, B6, B2, Bc70, Bc23, Bc13, Bc9, Bc6, Bc3, Bm12, Bm6, LastDate) "
                "VALUES (?1, ?2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, ?3)");
            auto setOne = db.prepare("UPDATE " + sql::quoteIdent(kCallDbTable) + " SET " + counter +
                                     " = 1 WHERE rowid = ?1");
            int merged = 0;
            for (const QsoRow& q : log.rows(b)) {
                if (q.errQso)
                    continue;
                CallRecord r;
                r.Call = text::upper(text::trim(q.call));
                r.Locator = text::upper(text::trim(q.locator));
                if (!validateCallRecord(r)) {
                    ++count.skipped;
                    continue;
                }
                const std::string when = q.datTime.toStorage();
                auto& rows = known[r.Call];
                auto it = std::find_if(rows.begin(), rows.end(),
                                       [&](const auto& k) { return k.second == r.Locator; });
                if (it == rows.end())
                    it = std::find_if(rows.begin(), rows.end(),
                                      [](const auto& k) { return k.second.empty(); });
                if (it != rows.end()) {
                    bump.bind(1, it->first).bind(2, r.Locator).bind(3, when).run();
                    bump.reset();
                    it->second = r.Locator;
                } else {
                    insert.bind(1, r.Call).bind(2, r.Locator).bind(3, when).run();
                    insert.reset();
                    const auto id = db.lastInsertRowid();
                    setOne.bind(1, id).run();
                    setOne.reset();
                    rows.emplace_back(id, r.Locator);
                    ++count.added;
                }
                ++merged;
            }
            count.qsos += merged;
            if (merged > 0) {
                perBand.emplace_back(b, merged);
                count.bandsMerged.push_back(b);
            }
        }
        tx.commit();
    }
    IniFile ini(paths.qbDatIniPath());
    for (auto [b, n] : perBand)
        ini.write(logName, band(b).boxText, std::to_string(n));
    return count;
}

namespace {

// The call search of the comparison: a hit counts when the record's call is
// the QSO's call, or goes on with "/" right behind the hit (portable forms).
bool callCandidate(std::string_view record, std::string_view call) {
    for (auto pos = record.find(call); pos != std::string_view::npos;
         pos = record.find(call, pos + 1)) {
        if (record.size() <= call.size())
            return true;
        const auto behind = pos + call.size();
        if (behind < record.size() && record[behind] == '/')
            return true;
    }
    return false;
}

} // namespace

std::vector<CompareGroup> compareWithCallDb(const QBDatImage& image,
                                            const std::vector<QsoRow>& rows, int band,
                                            int mindestZahl, CompareBy by) {
    std::vector<CompareGroup> groups;
    const auto counterIndex = static_cast<std::size_t>(band);
    for (const QsoRow& q : rows) {
        if (q.errQso)
            continue;
        const std::string call = text::upper(text::trim(q.call));
        const std::string loc = text::upper(text::trim(q.locator));
        const std::string& key = by == CompareBy::Call ? call : loc;
        CompareGroup g{q, {}};
        bool beyondDoubt = false;
        if (!key.empty()) {
            CallSearch s;
            (by == CompareBy::Call ? s.callPart : s.locatorPart) = key;
            s.maxRecords = std::numeric_limits<std::size_t>::max();
            for (std::uint32_t n : image.search(s).records) {
                const QBDatEntry& e = image.record(n);
                if (by == CompareBy::Call && !callCandidate(e.Call(), call))
                    continue;
                if (e.Call() == call && e.Locator() == loc &&
                    e.counters.at(counterIndex) >= mindestZahl) {
                    beyondDoubt = true;
                    break;
                }
                g.records.push_back(n);
            }
        }
        if (!beyondDoubt)
            groups.push_back(std::move(g));
    }
    return groups;
}

} // namespace orv
