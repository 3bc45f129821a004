#include "core/app/shipped_data.h"

#include "core/app/install_places.h"

namespace orv {
namespace fs = std::filesystem;

ShippedDataPlaces builtInPlaces() {
    return {kInstalledDataRelative, kBuildFolder, kSourceDataFolder};
}

namespace {

bool isInside(const fs::path& inner, const fs::path& outer) {
    if (outer.empty())
        return false;
    std::error_code ec;
    const fs::path a = fs::weakly_canonical(inner, ec);
    if (ec)
        return false;
    const fs::path b = fs::weakly_canonical(outer, ec);
    if (ec)
        return false;
    const fs::path rel = a.lexically_relative(b);
    return !rel.empty() && *rel.begin() != "..";
}

} // namespace

std::optional<fs::path> findShippedData(const fs::path& programFolder,
                                        const ShippedDataPlaces& places) {
    std::error_code ec;
    if (!places.installedRelative.empty()) {
        const fs::path installed = (programFolder / places.installedRelative).lexically_normal();
        if (fs::is_directory(installed, ec))
            return installed;
    }
    if (isInside(programFolder, places.buildFolder) && fs::is_directory(places.sourceData, ec))
        return places.sourceData;
    return std::nullopt;
}

std::optional<fs::path> shippedDataFolder() {
    std::error_code ec;
    const fs::path self = fs::read_symlink("/proc/self/exe", ec);
    if (ec)
        return std::nullopt;
    return findShippedData(self.parent_path(), builtInPlaces());
}

} // namespace orv
