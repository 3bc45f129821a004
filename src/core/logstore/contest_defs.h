#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/logstore/bands.h"

// Contest definitions: named sets of ten band weights. The known contests are
// the lines of the settings list `ConE` ("w0,...,w9,Name"); the contest in
// use is kept in `AConDat` (C0..C9, CName) and, for each log, in `MyData`
// (Zaehl<band>, ContName).
namespace orv {

class IniFile;
struct MyDataRow;

// One line of `ConE`: ten 16-bit weights in band order and the name.
struct ContestDef {
    std::array<std::int16_t, kBandCount> weights{};
    std::string name;
    bool operator==(const ContestDef&) const = default;
};

// The contest in force (AppState's `Zaehl` and `ContestName`).
struct ContestData {
    std::array<int, kBandCount> Zaehl{1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
    std::string ContestName;
    bool operator==(const ContestData&) const = default;
};

// One `ConE` line: the text before each of the first ten commas is a weight,
// the rest of the line (blanks and further commas included) is the name.
// Nothing for a line with fewer than ten commas or a weight that is not a
// whole number of 16 bits. A weight of 0 stays 0 here.
std::optional<ContestDef> parseConELine(std::string_view line);
// The line that parseConELine reads back as `def`.
std::string formatConELine(const ContestDef& def);

// ContesDateLoad: appends the definitions of `ConE` in file order to `defs`;
// an empty section leaves `defs` as it is. Lines that are no definition are
// skipped and, when `badLines` is given, handed back there.
void ContesDateLoad(const IniFile& ini, std::vector<ContestDef>& defs,
                    std::vector<std::string>* badLines = nullptr);

// ConDaLoad without its combo box: loads the definitions into `defs` and
// reads `AConDat`, where each weight below 1 (or absent) becomes 1.
ContestData ConDaLoad(const IniFile& ini, std::vector<ContestDef>& defs);

// Choosing a name in the contest box: the definition whose name equals the
// text gives its weights and name; without a match `current` is left as it
// is. Returns whether one matched.
bool chooseContest(const std::vector<ContestDef>& defs, std::string_view boxText,
                   ContestData& current);

// ConDatLoadDB: the contest of an open log; a Null weight reads as 1.
ContestData ConDatLoadDB(const MyDataRow& myData);

// Writes `AConDat`: C0 to C9 and CName.
void SaveAConDat(IniFile& ini, const ContestData& data);

} // namespace orv
