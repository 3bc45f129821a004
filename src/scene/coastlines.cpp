#include "scene/coastlines.h"

#ifdef ORVANTA_HAVE_GSHHG
#include "platform/coast/gshhg_reader.h"
#endif

namespace orv::scene {

std::vector<std::vector<LocPosition>> loadCoastlines(const std::filesystem::path& folder) {
    std::vector<std::vector<LocPosition>> out;
#ifdef ORVANTA_HAVE_GSHHG
    for (coast::Line& l : coast::readFolder(folder.empty() ? coast::defaultFolder() : folder))
        out.push_back(std::move(l.points));
#else
    (void)folder;
#endif
    return out;
}

} // namespace orv::scene
