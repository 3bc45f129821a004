#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/logstore/bands.h"

// Which of the program's ten bands a rig's frequency stands for. A band may
// have a transverter: the rig then works on an IF (often 144 MHz) and the
// band's frequency is the rig's plus the band's offset (the transverter's
// local oscillator), in MHz as the options dialog takes it.
namespace orv::rig {

using TransverterOffsets = std::array<double, kBandCount>; // MHz, 0: none

// The band's edges in Hz (Region 1 allocations, wide enough for every
// segment a contest uses).
struct BandEdges {
    std::int64_t lowHz;
    std::int64_t highHz;
};
const BandEdges& bandEdges(int band);

// The band of `rigHz`: a band matches when the rig's frequency plus its
// offset falls inside it; with an offset, the rig must also stand within
// 10 MHz of the IF on which the band's narrowband centre lies (10224 MHz on
// 10 GHz: 134.1 to 154.1 MHz), so that a 6 m rig is not taken for 10 GHz.
// Of several matches (a 10 GHz transverter on a 2 m
// IF makes 144.2 MHz both), the window's `currentBand` stays when it is one
// of them; else a band with a transverter wins over the plain one, so that a
// configured transverter is what the rig means. Nothing when no band matches.
std::optional<int> bandOfFrequency(std::int64_t rigHz, const TransverterOffsets& offsets,
                                   std::optional<int> currentBand = std::nullopt);

// The frequency on the band: the rig's plus the band's offset.
std::int64_t bandFrequency(std::int64_t rigHz, const TransverterOffsets& offsets, int band);

// The program's mode name of a rig's mode: both sidebands are "SSB", CW
// either way "CW", the FM and AM variants "FM" and "AM", RTTY either way
// "RTTY"; any other name stands as the rig gives it, upper-cased.
std::string programMode(std::string_view rigMode);

// "432.200.000" style is for people; the frequency in MHz with three
// decimals ("432.200") is what the window shows beside the band.
std::string formatMHz(std::int64_t hz);

} // namespace orv::rig
