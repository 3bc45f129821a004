#include "core/map/map_band.h"

#include <algorithm>
#include <cmath>

#include "core/util/text.h"

namespace orv::map {

std::optional<MapQso> mapQso(const GridRow& row, std::size_t index) {
    const QsoRow& q = row.qso;
    if (q.errQso)
        return std::nullopt;
    std::string loc = LocErgaenzen(text::upper(q.locator));
    if (text::length(loc) == 4)
        loc += "LL";
    if (!LocOK(loc))
        return std::nullopt;
    return MapQso{q.call, q.locator, q.datTime, q.qrb, q.qsoNr, index, LocKoordinaten(loc)};
}

MapBand mapBand(const BandState& state) {
    MapBand m;
    m.band = state.band();
    m.odx = state.ODX;
    m.odxNr = state.ODXNr;
    const auto& rows = state.rows();
    m.qsos.reserve(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (auto q = mapQso(rows[i], i))
            m.qsos.push_back(std::move(*q));
    // The list reads ",JN78,JO60": a comma before every square.
    const std::string& list = state.GrossfeldListe();
    for (std::size_t pos = 0; pos < list.size();) {
        const std::size_t end = std::min(list.find(',', pos + 1), list.size());
        if (end > pos + 1)
            m.squares.push_back(list.substr(pos + 1, end - pos - 1));
        pos = end;
    }
    return m;
}

std::vector<RateSample> rateSamples(const BandState& state) {
    std::vector<RateSample> out;
    out.reserve(state.rows().size());
    for (const GridRow& r : state.rows())
        if (!r.qso.errQso)
            out.push_back({r.qso.datTime, r.qso.qrb});
    return out;
}

double defaultRadiusKm(const MapBand& band) {
    double far = static_cast<double>(band.odx);
    for (const MapQso& q : band.qsos)
        far = std::max(far, static_cast<double>(q.qrb));
    return std::max(100.0, std::ceil(far * 1.1 / 100.0) * 100.0);
}

} // namespace orv::map
