#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

// The ten bands of a contest log in their fixed order. The position in this
// list (BandIndex) is also the index of the band's button and of every
// per-band array of the program; nothing computes these strings.
namespace orv {

inline constexpr int kBandCount = 10;

struct Band {
    std::string_view boxText; // item of the band box and value of `QRG`: "144"
    std::string_view table;   // band table of the log: "144MHz"
    std::string_view caption; // caption of the band button: "2 m"
    std::string_view code;    // band code of the exports: "144"
    int qrg;                  // `QRG` as stored: 144
};

// The odd capital in "3K4" is the exports' own spelling and is kept.
inline constexpr std::array<Band, kBandCount> kBands{{
    {"50", "50MHz", "6 m", "050", 50},
    {"144", "144MHz", "2 m", "144", 144},
    {"432", "432MHz", "70 cm", "432", 432},
    {"1200", "1200MHz", "23 cm", "1k2", 1200},
    {"2300", "2300MHz", "13 cm", "2k4", 2300},
    {"3400", "3400MHz", "9 cm", "3K4", 3400},
    {"5700", "5700MHz", "6 cm", "5k6", 5700},
    {"10000", "10000MHz", "3 cm", "10G", 10000},
    {"24000", "24000MHz", "12 mm", "24G", 24000},
    {"47000", "47000MHz", "6 mm", "47G", 47000},
}};

// `BandCodes`, in band order.
inline constexpr std::array<std::string_view, kBandCount> BandCodes{
    "050", "144", "432", "1k2", "2k4", "3K4", "5k6", "10G", "24G", "47G"};

// BandIndex of a band box text ("144", blanks around it allowed).
std::optional<int> BandIndex(std::string_view boxText);
// BandIndex of a band table name, compared case-blind ("144mhz").
std::optional<int> bandIndexOfTable(std::string_view table);
// Throws std::out_of_range unless 0 <= band < kBandCount.
const Band& band(int bandIndex);
// "PGesamt" + "144": the per-band field names of `MyData`.
std::string myDataField(std::string_view prefix, int bandIndex);

} // namespace orv
