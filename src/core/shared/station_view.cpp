#include "core/shared/station_view.h"

#include "core/shared/shared_columns.h"

namespace orv {

using namespace shared_detail;

namespace {
// A kept statement is reset as soon as it is read: left stepping, it would
// hold the window's connection on an old snapshot of the file.
struct ResetAfter {
    sql::Stmt& st;
    ~ResetAfter() { st.reset(); }
};
} // namespace

// Asked on every key press, for each band: the statements are kept.
std::optional<QsoRow> SharedStationView::liveQso(int band, std::string_view call) {
    static const std::string sql = "SELECT " + qsoColumns() +
                                   " FROM ShareRemote WHERE Band = ?1 AND upper(trim(Call)) = ?2 "
                                   "AND ErrQSO = 0 ORDER BY ChangeNo LIMIT 1";
    auto& st = db_.cached(sql);
    ResetAfter done{st};
    st.bind(1, band).bind(2, call);
    if (!st.step())
        return std::nullopt;
    return readQso(st, 0);
}

std::int64_t SharedStationView::highestSerial(int band) {
    auto& st = db_.cached("SELECT coalesce(max(QSONr), 0) FROM ShareRemote WHERE Band = ?1");
    ResetAfter done{st};
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
