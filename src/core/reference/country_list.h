#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/logstore/schema.h"
#include "core/util/result.h"

// The country list `QBCountry.sqlite`: countries with their zones (`DxDat`)
// and the call prefixes that lead to them (`PreSuch`), filled from CTY.DAT or
// ARRL.CTY, and the prefix lookup that answers "which country is this call".
namespace orv {

namespace sql {
class Db;
}

// One row of `DxDat`: a country, or a zone variant of one.
struct DxEntry {
    std::int32_t RecNr = 0;
    std::string Country;
    int CQZone = 0;
    int ITUZone = 0;
    std::string Continent;
    std::string PrimaryPrefix;
};

// One row of `PreSuch`.
struct PrefixRow {
    std::string Pre;
    std::int32_t RecNr = 0;
};

// The content of a country file, ready to be written as a new list.
struct CountryTables {
    std::vector<DxEntry> dx;
    std::vector<PrefixRow> prefixes;
    // Tokens longer than the `Pre` field can hold; they cannot be stored.
    int skippedTokens = 0;
};

const std::vector<FieldDesc>& dxDatFields();
const std::vector<FieldDesc>& preSuchFields();

// NewLaenderBD: the two tables of the country list, every field indexed.
void NewLaenderBD(sql::Db& db);

// Parses a file of the CTY.DAT layout (fixed header columns, prefix lists
// ending in ";", zone overrides "(CQ)", "[ITU]", "{continent}"). A file that
// fails the format test gives IText(84) and no tables.
Result<CountryTables> parseCtyDat(std::string_view bytes);
// Parses ARRL.CTY: the same header fields separated by ":", prefixes
// separated by "," or "&", records ending in ";", and no zone overrides.
Result<CountryTables> parseArrlCty(std::string_view bytes);

enum class CountryFormat { CtyDat, ArrlCty };

// Imports a country file into the list at `dbPath`. The new list is built in
// a file beside the old one and renamed over it only when complete, so a
// refused file or a failure on the way leaves the old list as it was.
// Refusals are IText(84); file and database failures throw.
Result<CountryTables> importCountryText(const std::filesystem::path& dbPath, std::string_view bytes,
                                        CountryFormat format);
Result<CountryTables> importCountryFile(const std::filesystem::path& dbPath,
                                        const std::filesystem::path& file, CountryFormat format);

// The prefix lookup over a loaded list.
class CountryList {
public:
    // Reads the list; a missing file gives an empty list. Throws sql::Error.
    static CountryList load(const std::filesystem::path& dbPath);

    bool empty() const { return prefixes_.empty(); }
    std::size_t prefixCount() const { return prefixes_.size(); }

    // The `RecNr` of the call's country: the longest stored prefix that
    // begins the call. Exact-call entries keep their "=" and so match only a
    // call that is typed with it.
    std::optional<std::int32_t> findRecNr(std::string_view call) const;
    std::optional<DxEntry> lookup(std::string_view call) const;
    // Whether any prefix begins with the call's first character; a call
    // without is one the list cannot place at all (IText(291)).
    bool hasPrefixesFor(std::string_view call) const;

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view s) const {
            return std::hash<std::string_view>{}(s);
        }
    };
    std::unordered_map<std::string, std::int32_t, Hash, std::equal_to<>> prefixes_;
    std::unordered_map<std::int32_t, DxEntry> entries_;
    std::size_t longest_ = 0;
    std::string firstLetters_;
};

} // namespace orv
