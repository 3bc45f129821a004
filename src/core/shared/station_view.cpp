#include "core/shared/station_view.h"

#include "core/shared/shared_columns.h"

namespace orv {

using namespace shared_detail;

std::optional<QsoRow> SharedStationView::liveQso(int band, std::string_view call) {
    auto st = db_.prepare("SELECT " + qsoColumns() +
                          " FROM ShareRemote WHERE Band = ?1 AND upper(trim(Call)) = ?2 AND "
                          "ErrQSO = 0 ORDER BY ChangeNo LIMIT 1");
    st.bind(1, band).bind(2, call);
    if (!st.step())
        return std::nullopt;
    return readQso(st, 0);
}

std::int64_t SharedStationView::highestSerial(int band) {
    auto st = db_.prepare("SELECT coalesce(max(QSONr), 0) FROM ShareRemote WHERE Band = ?1");
    st.bind(1, band);
    st.step();
    return st.int64(0);
}

std::optional<std::int64_t> SharedStationView::heldSerial(int band) {
    if (band != heldBand_ || band < 0)
        return std::nullopt;
    return held_;
}

} // namespace orv
