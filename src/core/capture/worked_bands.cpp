#include "core/capture/worked_bands.h"

#include "core/util/text.h"

namespace orv {

std::string WorkedBands::key(std::string_view call) {
    return text::upper(text::trim(call));
}

WorkedBands::Bands WorkedBands::of(std::string_view call) const {
    Bands b;
    const auto it = counts_.find(key(call));
    if (it == counts_.end())
        return b;
    for (int i = 0; i < kBandCount; ++i)
        b[static_cast<std::size_t>(i)] = it->second[static_cast<std::size_t>(i)] > 0;
    return b;
}

void WorkedBands::count(int band, std::string_view call, int delta) {
    const std::string k = key(call);
    if (k.empty() || band < 0 || band >= kBandCount)
        return;
    auto& c = counts_[k];
    auto& n = c[static_cast<std::size_t>(band)];
    n = delta < 0 && n == 0 ? 0 : static_cast<std::uint32_t>(static_cast<std::int64_t>(n) + delta);
    for (std::uint32_t v : c)
        if (v)
            return;
    counts_.erase(k);
}

void WorkedBands::clearBand(int band) {
    if (band < 0 || band >= kBandCount)
        return;
    for (auto it = counts_.begin(); it != counts_.end();) {
        it->second[static_cast<std::size_t>(band)] = 0;
        bool any = false;
        for (std::uint32_t v : it->second)
            any = any || v;
        it = any ? std::next(it) : counts_.erase(it);
    }
}

void WorkedBands::setBand(int band, const std::vector<QsoRow>& rows) {
    clearBand(band);
    for (const QsoRow& q : rows)
        if (!q.errQso)
            count(band, q.call, +1);
}

void WorkedBands::setBand(int band, const std::vector<GridRow>& rows) {
    clearBand(band);
    for (const GridRow& r : rows)
        if (!r.qso.errQso)
            count(band, r.qso.call, +1);
}

} // namespace orv
