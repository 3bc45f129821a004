#pragma once

#include <filesystem>
#include <vector>

#include "core/locator/locator.h"

namespace orv::scene {

// Coastlines and borders for the map, from the GSHHG files of `folder`
// (when empty: $ORVANTA_GSHHG_DIR, else the package's folder); nothing when
// they are not installed or the program was built without libnetcdf.
std::vector<std::vector<LocPosition>> loadCoastlines(const std::filesystem::path& folder = {});

} // namespace orv::scene
