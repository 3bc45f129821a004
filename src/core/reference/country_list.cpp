#include "core/reference/country_list.h"

#include <functional>

#include <algorithm>
#include <array>
#include <system_error>
#include <tuple>

#include "core/util/file_io.h"
#include "core/util/sqlite.h"
#include "core/util/text.h"

namespace orv {
namespace fs = std::filesystem;

namespace {

constexpr int kInvalidCountryFile = 84;
constexpr std::size_t kCountrySize = 30;
constexpr std::size_t kContinentSize = 5;
constexpr std::size_t kPrefixSize = 15;

// Columns work on one byte per character, so a UTF-8 file is taken to the
// code page first and each field back to UTF-8 when it is cut out.
std::string singleByte(std::string_view bytes) {
    if (text::startsWith(bytes, "\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    return text::isValidUtf8(bytes) ? text::utf8ToCp1252(bytes) : std::string(bytes);
}

// Characters `from` to `to`, counted from 1, as far as the text reaches.
std::string_view columns(std::string_view s, std::size_t from, std::size_t to) {
    if (s.size() < from)
        return {};
    return s.substr(from - 1, to - from + 1);
}

// A header column: trimmed, it must end in ":", which is then dropped.
std::optional<std::string> headerField(std::string_view rec, std::size_t from, std::size_t to) {
    std::string f = text::trim(columns(rec, from, to));
    if (f.empty() || f.back() != ':')
        return std::nullopt;
    f.pop_back();
    return text::trim(text::cp1252ToUtf8(f));
}

// A zone as the 16-bit field holds it; -1 for anything outside, which the
// check of the finished tables refuses.
int zoneValue(std::string_view s) {
    const long long v = text::leadingInt(s);
    return v >= 0 && v <= 32767 ? static_cast<int>(v) : -1;
}

bool zonesValid(const CountryTables& t) {
    return std::all_of(t.dx.begin(), t.dx.end(),
                       [](const DxEntry& e) { return e.CQZone >= 0 && e.ITUZone >= 0; });
}

std::string cut(std::string s, std::size_t size) {
    return text::length(s) > size ? text::left(s, size) : s;
}

std::string removeLineEnds(std::string_view s) {
    std::string out;
    out.reserve(s.size());
    for (char c : s)
        if (c != '\r' && c != '\n')
            out.push_back(c);
    return out;
}

std::vector<std::string> splitTokens(std::string_view list, std::string_view separators) {
    std::vector<std::string> out;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= list.size(); ++i) {
        if (i == list.size() || separators.find(list[i]) != std::string_view::npos) {
            std::string t =
                text::upper(text::trim(text::cp1252ToUtf8(list.substr(start, i - start))));
            if (!t.empty())
                out.push_back(std::move(t));
            start = i + 1;
        }
    }
    return out;
}

// The text between `open` and `close` in a token, if the token has `open`.
std::optional<std::string> between(std::string_view token, char open, char close) {
    const auto a = token.find(open);
    if (a == std::string_view::npos)
        return std::nullopt;
    const auto b = token.find(close, a + 1);
    return text::trim(
        token.substr(a + 1, b == std::string_view::npos ? std::string_view::npos : b - a - 1));
}

class TableBuilder {
public:
    explicit TableBuilder(CountryTables& t) : t_(t) {}

    std::int32_t addEntry(DxEntry e) {
        e.RecNr = static_cast<std::int32_t>(t_.dx.size()) + 1;
        t_.dx.push_back(std::move(e));
        return t_.dx.back().RecNr;
    }
    void addPrefix(std::string pre, std::int32_t recNr) {
        if (text::length(pre) > kPrefixSize) {
            ++t_.skippedTokens;
            return;
        }
        t_.prefixes.push_back(PrefixRow{std::move(pre), recNr});
    }

private:
    CountryTables& t_;
};

// Tokens of a record with overrides: each "(CQ)", "[ITU]" or "{continent}"
// gives the prefix a variant of the record's row; tokens with equal
// overrides share one variant row.
void addWithOverrides(TableBuilder& b, const DxEntry& base, std::int32_t baseRecNr,
                      const std::vector<std::string>& tokens) {
    using Key = std::tuple<int, int, std::string>;
    std::vector<std::pair<Key, std::int32_t>> variants;
    for (const auto& token : tokens) {
        const auto cut = token.find_first_of("([{");
        if (cut == std::string::npos) {
            b.addPrefix(token, baseRecNr);
            continue;
        }
        DxEntry v = base;
        if (auto cq = between(token, '(', ')'))
            v.CQZone = zoneValue(*cq);
        if (auto itu = between(token, '[', ']'))
            v.ITUZone = zoneValue(*itu);
        if (auto cont = between(token, '{', '}'))
            v.Continent = ::orv::cut(*cont, kContinentSize);
        const Key key{v.CQZone, v.ITUZone, v.Continent};
        std::int32_t recNr = baseRecNr;
        if (key != Key{base.CQZone, base.ITUZone, base.Continent}) {
            auto it = std::find_if(variants.begin(), variants.end(),
                                   [&](const auto& p) { return p.first == key; });
            if (it != variants.end()) {
                recNr = it->second;
            } else {
                recNr = b.addEntry(v);
                variants.emplace_back(key, recNr);
            }
        }
        b.addPrefix(token.substr(0, cut), recNr);
    }
}

Failure invalid(std::string detail = {}) {
    return refuse(kInvalidCountryFile, {}, std::move(detail));
}

} // namespace

namespace {
FieldDesc field(std::string name, FieldType type, std::int16_t size = 0) {
    return FieldDesc{std::move(name), type, size, true, false};
}
} // namespace

const std::vector<FieldDesc>& dxDatFields() {
    static const std::vector<FieldDesc> f{
        field("RecNr", FieldType::Long),
        field("Country", FieldType::Text, kCountrySize),
        field("CQZone", FieldType::Integer),
        field("ITUZone", FieldType::Integer),
        field("Continent", FieldType::Text, kContinentSize),
        field("PrimaryPrefix", FieldType::Text, kPrefixSize),
    };
    return f;
}

const std::vector<FieldDesc>& preSuchFields() {
    static const std::vector<FieldDesc> f{
        field("Pre", FieldType::Text, kPrefixSize),
        field("RecNr", FieldType::Long),
    };
    return f;
}

void NewLaenderBD(sql::Db& db) {
    MakeLogTable(db, "DxDat", dxDatFields());
    MakeLogTable(db, "PreSuch", preSuchFields());
}

// Calls `record` for every non-empty record of the text, a record ending at
// ";"; a record it refuses ends the walk with IText(84) naming its number.
std::optional<Failure> forEachRecord(const std::string& flat,
                                     const std::function<bool(std::string_view)>& record) {
    std::size_t start = 0;
    int recordNo = 0;
    while (start < flat.size()) {
        auto end = flat.find(';', start);
        if (end == std::string::npos)
            end = flat.size();
        const std::string_view rec(flat.data() + start, end - start);
        start = end + 1;
        if (text::trim(rec).empty())
            continue;
        ++recordNo;
        if (!record(rec))
            return invalid("record " + std::to_string(recordNo));
    }
    return std::nullopt;
}

Result<CountryTables> parseCtyDat(std::string_view bytes) {
    if (bytes.size() < 10)
        return invalid();
    const std::string raw = singleByte(bytes);
    // The format test looks at the first record only as far as its header
    // goes; every record is held to the same columns further down.
    for (auto [from, to] : {std::pair{1, 26}, {27, 31}, {32, 36}, {37, 41}})
        if (!headerField(raw, from, to))
            return invalid();

    CountryTables tables;
    TableBuilder b(tables);
    const std::optional<Failure> bad =
        forEachRecord(removeLineEnds(raw), [&](std::string_view rec) -> bool {
            auto country = headerField(rec, 1, 26);
            auto cq = headerField(rec, 27, 31);
            auto itu = headerField(rec, 32, 36);
            auto cont = headerField(rec, 37, 41);
            auto pre = headerField(rec, 70, 75);
            if (!country || !cq || !itu || !cont || !pre || !text::isInteger(*cq) ||
                !text::isInteger(*itu))
                return false;
            DxEntry e;
            e.Country = cut(*country, kCountrySize);
            e.CQZone = zoneValue(*cq);
            e.ITUZone = zoneValue(*itu);
            e.Continent = cut(*cont, kContinentSize);
            e.PrimaryPrefix = cut(*pre, kPrefixSize);
            const std::string_view list = rec.size() > 75 ? rec.substr(75) : std::string_view{};
            const auto tokens = splitTokens(list, ",");
            const std::int32_t recNr = b.addEntry(e);
            if (list.find_first_of("([<{") == std::string_view::npos) {
                for (const auto& t : tokens)
                    b.addPrefix(t, recNr);
            } else {
                addWithOverrides(b, e, recNr, tokens);
            }
            return true;
        });
    if (bad)
        return *bad;
    if (tables.dx.empty() || !zonesValid(tables))
        return invalid();
    return tables;
}

Result<CountryTables> parseArrlCty(std::string_view bytes) {
    if (bytes.size() < 10)
        return invalid();
    CountryTables tables;
    TableBuilder b(tables);
    const std::optional<Failure> bad =
        forEachRecord(removeLineEnds(singleByte(bytes)), [&](std::string_view rec) -> bool {
            // Eight header fields, each closed by ":", then the prefixes.
            std::array<std::string, 8> h;
            std::size_t pos = 0;
            bool ok = true;
            for (auto& f : h) {
                const auto colon = rec.find(':', pos);
                if (colon == std::string_view::npos) {
                    ok = false;
                    break;
                }
                f = text::trim(text::cp1252ToUtf8(rec.substr(pos, colon - pos)));
                pos = colon + 1;
            }
            if (!ok || h[0].empty() || !text::isInteger(h[1]) || !text::isInteger(h[2]) ||
                h[3].empty())
                return false;
            DxEntry e;
            e.Country = cut(h[0], kCountrySize);
            e.CQZone = zoneValue(h[1]);
            e.ITUZone = zoneValue(h[2]);
            e.Continent = cut(h[3], kContinentSize);
            e.PrimaryPrefix = cut(h[7], kPrefixSize);
            const std::int32_t recNr = b.addEntry(e);
            for (auto& t : splitTokens(rec.substr(pos), ",&"))
                b.addPrefix(std::move(t), recNr);
            return true;
        });
    if (bad)
        return *bad;
    if (tables.dx.empty() || !zonesValid(tables))
        return invalid();
    return tables;
}

namespace {

void writeTables(sql::Db& db, const CountryTables& t) {
    NewLaenderBD(db);
    sql::Transaction tx(db);
    auto dx = db.prepare("INSERT INTO DxDat (RecNr, Country, CQZone, ITUZone, Continent, "
                         "PrimaryPrefix) VALUES (?1, ?2, ?3, ?4, ?5, ?6)");
    for (const auto& e : t.dx) {
        dx.bind(1, e.RecNr).bind(2, e.Country).bind(3, e.CQZone).bind(4, e.ITUZone);
        dx.bind(5, e.Continent).bind(6, e.PrimaryPrefix).run();
        dx.reset();
    }
    auto pre = db.prepare("INSERT INTO PreSuch (Pre, RecNr) VALUES (?1, ?2)");
    for (const auto& p : t.prefixes) {
        pre.bind(1, p.Pre).bind(2, p.RecNr).run();
        pre.reset();
    }
    tx.commit();
}

} // namespace

Result<CountryTables> importCountryText(const fs::path& dbPath, std::string_view bytes,
                                        CountryFormat format) {
    auto parsed = format == CountryFormat::CtyDat ? parseCtyDat(bytes) : parseArrlCty(bytes);
    if (!parsed)
        return parsed;
    fs::path fresh = dbPath;
    fresh += ".new";
    std::error_code ec;
    fs::remove(fresh, ec);
    try {
        {
            sql::Db db(fresh.string());
            writeTables(db, parsed.value());
        }
        fs::rename(fresh, dbPath);
    } catch (...) {
        fs::remove(fresh, ec);
        throw;
    }
    return parsed;
}

Result<CountryTables> importCountryFile(const fs::path& dbPath, const fs::path& file,
                                        CountryFormat format) {
    return importCountryText(dbPath, fileio::readAll(file), format);
}

CountryList CountryList::load(const fs::path& dbPath) {
    CountryList list;
    std::error_code ec;
    if (!fs::exists(dbPath, ec))
        return list;
    sql::Db db(dbPath.string(), sql::Db::Mode::ReadOnly);
    if (!db.tableExists("PreSuch") || !db.tableExists("DxDat"))
        return list;
    auto dx = db.prepare("SELECT RecNr, Country, CQZone, ITUZone, Continent, PrimaryPrefix "
                         "FROM DxDat");
    while (dx.step()) {
        DxEntry e{static_cast<std::int32_t>(dx.int64(0)),
                  dx.text(1),
                  dx.integer(2),
                  dx.integer(3),
                  dx.text(4),
                  dx.text(5)};
        list.entries_.emplace(e.RecNr, std::move(e));
    }
    // Of two equal prefixes the later row wins, as the walk from the end of
    // the sorted rows found it.
    auto pre = db.prepare("SELECT Pre, RecNr FROM PreSuch ORDER BY rowid");
    while (pre.step()) {
        std::string p = text::upper(text::trim(pre.text(0)));
        if (p.empty())
            continue;
        list.longest_ = std::max(list.longest_, p.size());
        if (list.firstLetters_.find(p[0]) == std::string::npos)
            list.firstLetters_ += p[0];
        list.prefixes_[std::move(p)] = static_cast<std::int32_t>(pre.int64(1));
    }
    return list;
}

std::optional<std::int32_t> CountryList::findRecNr(std::string_view callIn) const {
    const std::string call = text::upper(text::trim(callIn));
    if (call.empty())
        return std::nullopt;
    // "=" tokens stand as they were stored and match only a call that begins
    // with "=" itself, as the country list has always been searched.
    for (std::size_t len = std::min(call.size(), longest_); len > 0; --len) {
        if (auto it = prefixes_.find(std::string_view(call).substr(0, len)); it != prefixes_.end())
            return it->second;
    }
    return std::nullopt;
}

std::optional<DxEntry> CountryList::lookup(std::string_view call) const {
    const auto recNr = findRecNr(call);
    if (!recNr)
        return std::nullopt;
    const auto it = entries_.find(*recNr);
    if (it == entries_.end())
        return std::nullopt;
    return it->second;
}

bool CountryList::hasPrefixesFor(std::string_view call) const {
    const std::string c = text::upper(text::trim(call));
    return !c.empty() && firstLetters_.find(c[0]) != std::string::npos;
}

} // namespace orv
