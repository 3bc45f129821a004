#pragma once

// The other positions' QSOs of a shared log as the capture asks for them,
// read from the cache in the log file: it keeps answering while the server
// is out of reach.

#include "core/capture/capture.h"
#include "core/util/sqlite.h"

namespace orv {

class SharedStationView final : public OtherPositions {
public:
    // `db` is the capture's connection to a shared log.
    explicit SharedStationView(sql::Db& db) : db_(db) {}
    std::optional<QsoRow> liveQso(int band, std::string_view call) override;
    std::int64_t highestSerial(int band) override;
    std::optional<std::int64_t> heldSerial(int band) override;
    // What the worker last got from the server; band -1 when nothing.
    void setHeld(int band, std::int64_t serial) {
        heldBand_ = band;
        held_ = serial;
    }

private:
    sql::Db& db_;
    int heldBand_ = -1;
    std::int64_t held_ = 0;
};

} // namespace orv
