#include "core/submission/evaluation.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "core/logstore/contest_log.h"
#include "core/reference/country_list.h"
#include "core/shared/shared_store.h"
#include "core/util/sqlite.h"
#include "core/util/text.h"

namespace orv {
namespace {

// A plain substring search as the lists are kept. An empty list holds
// nothing, not even the empty piece, so the first empty locator is counted.
bool listHolds(const std::string& list, const std::string& piece) {
    return !list.empty() && list.find(piece) != std::string::npos;
}

// The same answer as listHolds without scanning the list, which grows with
// the band. Every entry is at most `width` long and followed by ",", so a
// piece of exactly `width` characters without "," lies inside one entry and
// is found only when it equals that entry, except that the locator list's
// leading "0" joins its first entry. An entry with a character beyond ASCII
// is longer in bytes than in characters but holds at most five ASCII ones.
// So pieces starting with "0", pieces beyond ASCII and all shorter pieces
// take the substring search.
class ListIndex {
public:
    explicit ListIndex(std::size_t width) : width_(width) {}

    bool holds(const std::string& list, const std::string& piece) const {
        if (piece.size() == width_ && piece[0] != '0' &&
            std::all_of(piece.begin(), piece.end(),
                        [](char c) { return c != ',' && static_cast<unsigned char>(c) < 0x80; }))
            return entries_.count(piece) > 0;
        return listHolds(list, piece);
    }
    void add(const std::string& piece) { entries_.insert(piece); }
    void reserve(std::size_t n) { entries_.reserve(n); }

private:
    std::size_t width_;
    std::unordered_set<std::string> entries_;
};

// The working state of one run besides the evaluation itself.
struct Indexes {
    ListIndex locators{6};
    ListIndex squares{4};
    std::unordered_map<std::string, std::size_t> countryRow;
};

void addPieces(Evaluation& ev, std::string_view locator, Indexes* idx) {
    const std::string loc = text::upper(text::left(locator, 6));
    if (!(idx ? idx->locators.holds(ev.locatorList, loc) : listHolds(ev.locatorList, loc))) {
        ev.locatorList += loc + ",";
        ev.locatorCount += 1;
        if (idx)
            idx->locators.add(loc);
    }
    const std::string square = text::upper(text::left(locator, 4));
    if (!(idx ? idx->squares.holds(ev.grossfeldList, square)
              : listHolds(ev.grossfeldList, square))) {
        ev.grossfeldList += square + ",";
        ev.grossfeldCount += 1;
        if (idx)
            idx->squares.add(square);
    }
}

EvalCells cellsOf(const QsoRow& q, std::int64_t multiplier) {
    return EvalCells{std::to_string(q.qsoNr),
                     q.datTime.dateIso(),
                     q.datTime.timeHM(),
                     std::to_string(q.qrg),
                     text::upper(q.call),
                     q.locator,
                     q.rstGeg,
                     q.rstErh,
                     std::to_string(q.qrb * multiplier),
                     q.mod,
                     q.modRx,
                     q.qsl ? "Yes" : "No",
                     q.name,
                     q.notice,
                     (q.dupe && !q.errQso) ? "DUPE" : "",
                     q.ausBr,
                     q.errQso ? "True" : "False",
                     q.opCall};
}

void countCountry(Evaluation& ev, Indexes& idx, const std::string& country) {
    const auto [it, added] = idx.countryRow.try_emplace(country, ev.countries.size());
    if (added)
        ev.countries.push_back(CountryCount{1, country});
    else
        ++ev.countries[it->second].qsos;
}

// ODX<band> and ODXNr<band> as stored, Null kept apart from 0: a Null
// ODXNr means no row is marked and no deleted row is coloured.
struct StoredOdx {
    std::optional<std::int64_t> odx;
    std::optional<std::int64_t> odxNr;
};

StoredOdx readStoredOdx(ContestLog& log, int b) {
    auto st = log.db().prepare("SELECT " + sql::quoteIdent(myDataField("ODX", b)) + ", " +
                               sql::quoteIdent(myDataField("ODXNr", b)) + " FROM \"MyData\"");
    StoredOdx out;
    if (st.step()) {
        if (!st.isNull(0))
            out.odx = st.int64(0);
        if (!st.isNull(1))
            out.odxNr = st.int64(1);
    }
    return out;
}

std::optional<double> asNumber(std::string_view s) {
    const std::string t = text::trim(s);
    if (t.empty())
        return std::nullopt;
    double v = 0;
    const auto r = std::from_chars(t.data(), t.data() + t.size(), v);
    if (r.ec != std::errc() || r.ptr != t.data() + t.size())
        return std::nullopt;
    return v;
}

} // namespace

const std::array<EvalColumn, kEvalColumns>& evalColumns() {
    using A = CellAlign;
    static const std::array<EvalColumn, kEvalColumns> cols{{
        {153, 550, A::Right, true},
        {159, 1050, A::Centre, true},
        {150, 580, A::Centre, true},
        {173, 580, A::Centre, true},
        {151, 2000, A::Left, true},
        {155, 1000, A::Left, true},
        {152, 700, A::Centre, true},
        {154, 800, A::Left, true},
        {165, 700, A::Right, true},
        {160, 750, A::Centre, true},
        {161, 750, A::Centre, true},
        {157, 450, A::Left, false},
        {22, 1300, A::Left, false},
        {158, 1300, A::Left, false},
        {185, 700, A::Left, false},
        {176, 550, A::Left, false},
        {0, 0, A::Left, false},
        {209, 1000, A::Left, false},
    }};
    return cols;
}

const std::array<EvalColumn, 2>& countryColumns() {
    static const std::array<EvalColumn, 2> cols{{
        {95, 600, CellAlign::Right, true},
        {96, 1900, CellAlign::Left, false},
    }};
    return cols;
}

const EvalRow* Evaluation::odxRow() const {
    for (const auto& r : rows)
        if (r.cells[evalcol::Info] == "ODX")
            return &r;
    return nullptr;
}

void GrossfeldADD(Evaluation& ev, std::string_view locator) {
    addPieces(ev, locator, nullptr);
}

Evaluation evaluate(ContestLog& log, int b, const CountryList* countries) {
    band(b);
    Evaluation ev;
    Indexes idx;
    const auto expected = static_cast<std::size_t>(log.rowCount(b));
    idx.locators.reserve(expected);
    idx.squares.reserve(expected);
    ev.rows.reserve(expected);
    ev.band = b;
    const MyDataRow my = log.myData();
    ev.contName = my.contName;
    ev.myCall = my.myCall;
    ev.myLocator = my.myLocator;
    ev.multiplier = my.zaehl[static_cast<std::size_t>(b)].value_or(1);
    ev.bandsWithQsos = log.bandsWithQsos();

    auto visit = [&](const QsoRow& q) {
        EvalRow row{cellsOf(q, ev.multiplier), false, q.freqHz};
        if (!row.cells[evalcol::Info].empty())
            ++ev.dupes;
        if (!q.errQso)
            ev.points += q.qrb * ev.multiplier;
        // A call whose first character begins no prefix is reported, deleted
        // or not; a call that only finds no country is counted for none.
        const std::string& call = row.cells[evalcol::Call];
        if (countries && !countries->hasPrefixesFor(call))
            ev.callsWithoutCountry.push_back(call);
        if (q.errQso) {
            ++ev.deleted;
        } else {
            addPieces(ev, q.locator, &idx);
            if (countries)
                if (auto dx = countries->lookup(call))
                    countCountry(ev, idx, dx->Country);
        }
        ev.rows.push_back(std::move(row));
        return true;
    };
    // A shared contest is evaluated for the whole station: the own rows and
    // the other positions' QSOs held in the log file, in QSONr order.
    const bool shared = SharedStore::isShared(log.db());
    if (shared) {
        std::vector<QsoRow> all = log.rows(b);
        for (auto& s : SharedStore(log.db()).remoteQsos(b))
            all.push_back(std::move(s.row));
        std::stable_sort(all.begin(), all.end(),
                         [](const QsoRow& x, const QsoRow& y) { return x.qsoNr < y.qsoNr; });
        for (const auto& q : all)
            visit(q);
        const auto remote = SharedStore(log.db()).remoteBands();
        for (std::size_t i = 0; i < remote.size(); ++i)
            ev.bandsWithQsos[i] = ev.bandsWithQsos[i] || remote[i];
    } else {
        log.forEachRow(b, LogIndex::QSONr, visit);
    }

    ev.qsos = static_cast<std::int64_t>(ev.rows.size()) - ev.deleted;
    // Per QSO in points, duplicates included; a band of only deleted rows
    // has no points and so no division.
    ev.kmPerQso = (ev.points > 0 && ev.qsos > 0) ? ev.points / ev.qsos : 0;

    StoredOdx stored = readStoredOdx(log, b);
    if (shared) {
        // The station's ODX: `MyData` knows only this position's.
        stored = {};
        std::int64_t best = 0;
        for (const auto& r : ev.rows)
            if (!r.deleted()) {
                const auto points = text::leadingInt(r.cells[evalcol::Punkte]);
                if (points > best && ev.multiplier != 0) {
                    best = points;
                    stored.odx = points / ev.multiplier;
                    stored.odxNr = text::leadingInt(r.cells[evalcol::Nr]);
                }
            }
    }
    ev.odx = stored.odx ? *stored.odx * ev.multiplier : 0;
    if (stored.odxNr) {
        const std::string nr = std::to_string(*stored.odxNr);
        for (auto& r : ev.rows) {
            if (r.cells[evalcol::Nr] == nr)
                r.cells[evalcol::Info] = "ODX";
            if (r.deleted())
                r.red = true;
        }
    }
    return ev;
}

Result<Evaluation> evaluateLogFile(const std::filesystem::path& logFile, int b,
                                   const CountryList* countries) {
    band(b);
    Result<ContestLog> log = ContestLog::open(logFile);
    if (!log)
        return log.failure();
    return evaluate(log.value(), b, countries);
}

std::vector<std::string> sortedLocators(const Evaluation& ev) {
    std::vector<std::string> out;
    if (ev.locatorList.size() < 5)
        return out;
    std::string_view list = ev.locatorList;
    if (!list.empty() && list.front() == '0')
        list.remove_prefix(1);
    std::size_t a = 0;
    while (a < list.size()) {
        const std::size_t e = std::min(list.find(',', a), list.size());
        out.emplace_back(list.substr(a, e - a));
        a = e + 1;
    }
    std::sort(out.begin(), out.end());
    return out;
}

bool cellLess(std::string_view a, std::string_view b) {
    const auto na = asNumber(a), nb = asNumber(b);
    if (na && nb)
        return *na < *nb;
    return a < b;
}

void sortRows(std::vector<EvalRow>& rows, int column, bool descending) {
    const auto c = static_cast<std::size_t>(column);
    std::stable_sort(rows.begin(), rows.end(), [&](const EvalRow& x, const EvalRow& y) {
        return descending ? cellLess(y.cells.at(c), x.cells.at(c))
                          : cellLess(x.cells.at(c), y.cells.at(c));
    });
}

GridSorter::Direction GridSorter::next(int column) {
    if (column == column_ && direction_ == Direction::Ascending)
        direction_ = Direction::Descending;
    else
        direction_ = Direction::Ascending;
    column_ = column;
    return direction_;
}

GridSorter::Direction GridSorter::click(std::vector<EvalRow>& rows, int column) {
    if (rows.empty() || column < 0 || column >= kEvalColumns)
        return Direction::None;
    const Direction d = next(column);
    sortRows(rows, column, d == Direction::Descending);
    return d;
}

GridSorter::Direction GridSorter::click(std::vector<CountryCount>& rows, int column) {
    if (rows.empty() || column < 0 || column > 1)
        return Direction::None;
    const Direction d = next(column);
    const bool desc = d == Direction::Descending;
    std::stable_sort(rows.begin(), rows.end(), [&](const CountryCount& x, const CountryCount& y) {
        const std::string a = column == 0 ? std::to_string(x.qsos) : x.country;
        const std::string b = column == 0 ? std::to_string(y.qsos) : y.country;
        return desc ? cellLess(b, a) : cellLess(a, b);
    });
    return d;
}

} // namespace orv
