#include "core/logstore/bands.h"

#include <stdexcept>

#include "core/util/text.h"

namespace orv {

std::optional<int> BandIndex(std::string_view boxText) {
    const std::string t = text::trim(boxText);
    for (int i = 0; i < kBandCount; ++i)
        if (kBands[i].boxText == t)
            return i;
    return std::nullopt;
}

std::optional<int> bandIndexOfTable(std::string_view table) {
    for (int i = 0; i < kBandCount; ++i)
        if (text::iequals(kBands[i].table, table))
            return i;
    return std::nullopt;
}

const Band& band(int bandIndex) {
    if (bandIndex < 0 || bandIndex >= kBandCount)
        throw std::out_of_range("band index " + std::to_string(bandIndex) + " out of range");
    return kBands[static_cast<std::size_t>(bandIndex)];
}

std::string myDataField(std::string_view prefix, int bandIndex) {
    return std::string(prefix) + std::string(band(bandIndex).boxText);
}

} // namespace orv
