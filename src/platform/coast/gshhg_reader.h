#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/locator/locator.h"

// Coastlines and borders of the GSHHG data set in the binned netCDF files
// that Debian's `gmt-gshhg-low` installs, read with libnetcdf. The files cut
// every line at the edges of square bins; the pieces are handed on as they
// are, which is all a map that strokes lines needs.
namespace orv::coast {

struct Line {
    std::vector<LocPosition> points;
    int level = 1; // 1 land, 2 lake, 3 island in a lake ...; borders: 1
};

// Where the package puts the files.
std::filesystem::path defaultFolder();
// The shorelines of a file `binned_GSHHS_<r>.nc` or borders of
// `binned_border_<r>.nc` (r: c crude, l low). Nothing when the file is
// missing or not one of these.
std::vector<Line> readBinned(const std::filesystem::path& file);
// Shorelines and borders at the coarsest resolution found in `folder`:
// nothing when the package is not installed.
std::vector<Line> readFolder(const std::filesystem::path& folder, char resolution = 'l');

} // namespace orv::coast
