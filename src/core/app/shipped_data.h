#pragma once

#include <filesystem>
#include <optional>

namespace orv {

// Where the files shipped with the program (language files and the like)
// can be: beside an installed program, or in the source tree of the build
// folder the program runs from.
struct ShippedDataPlaces {
    // From the program's folder to the shipped data of an installed copy,
    // "../share/orvanta-contest" for the usual layout.
    std::filesystem::path installedRelative;
    // The build folder the program was built in, and the source tree's data
    // folder that a program running inside it uses.
    std::filesystem::path buildFolder;
    std::filesystem::path sourceData;
};

// The places this program was built for.
ShippedDataPlaces builtInPlaces();

// The shipped data folder for a program in `programFolder`: the installed
// one when it exists, else the source tree's when the program runs from its
// build folder, else nothing. An installed copy never reads a source tree.
std::optional<std::filesystem::path> findShippedData(const std::filesystem::path& programFolder,
                                                     const ShippedDataPlaces& places);

// The shipped data folder of the running program, found from its own path.
std::optional<std::filesystem::path> shippedDataFolder();

} // namespace orv
