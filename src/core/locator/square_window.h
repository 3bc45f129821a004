#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/util/ports.h"

// The window of worked large squares around the own station, as plain data:
// 25 x 25 cells of texts and background colours that the ui draws as they are.
namespace orv {

enum class LocFarbe {
    Keine,   // the grid's own background
    Magenta, // the own square, not worked
    Cyan,    // a worked square
    Gruen,   // the own square, worked
};

// 0xRRGGBB of a cell background; Keine has none and gives 0xFFFFFF.
constexpr std::uint32_t LocFarbeRgb(LocFarbe f) {
    switch (f) {
    case LocFarbe::Magenta:
        return 0xFF00FF;
    case LocFarbe::Cyan:
        return 0x00FFFF;
    case LocFarbe::Gruen:
        return 0x00FF00;
    case LocFarbe::Keine:
        break;
    }
    return 0xFFFFFF;
}

struct LocFeld {
    std::string text;
    LocFarbe farbe = LocFarbe::Keine;
};

struct LocFenster {
    static constexpr int kSeite = 25;
    static constexpr int kMitte = 12;

    // zelle[row][col]; row 0 is north, column 0 is west.
    std::array<std::array<LocFeld, kSeite>, kSeite> zelle;
    // False when the walk stopped at the western edge of the grid: the ui
    // then leaves the grid's painting off, as the window has always done.
    bool gezeichnet = false;

    const LocFeld& at(int row, int col) const { return zelle[row][col]; }
};

// LocUnt: fills the window from the first four characters of the own locator
// (folded to upper case). `gearbeitet` is the comma-separated list of worked
// squares; a cell counts as worked when its text occurs in it. Latitude and
// the eastern edge wrap around; when the walk west passes "A" in the first
// character, `beeper` sounds once and the filling stops where it is. An own
// locator shorter than four characters gives an empty window.
LocFenster LocUnt(std::string_view eigenerLocator, std::string_view gearbeitet, Beeper& beeper);

} // namespace orv
