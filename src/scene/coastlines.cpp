#include "scene/coastlines.h"

#include <cstdlib>

#ifdef ORVANTA_HAVE_GSHHG
#include "platform/coast/gshhg_reader.h"
#endif

namespace orv::scene {

std::vector<std::vector<LocPosition>> loadCoastlines(const std::filesystem::path& folder) {
    std::vector<std::vector<LocPosition>> out;
#ifdef ORVANTA_HAVE_GSHHG
    std::filesystem::path from = folder;
    if (from.empty()) {
        const char* env = std::getenv("ORVANTA_GSHHG_DIR");
        from = env && *env ? std::filesystem::path(env) : coast::defaultFolder();
    }
    for (coast::Line& l : coast::readFolder(from))
        out.push_back(std::move(l.points));
#else
    (void)folder;
#endif
    return out;
}

} // namespace orv::scene
