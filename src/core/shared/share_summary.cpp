#include "core/shared/share_summary.h"

#include "core/util/sqlite.h"

namespace orv {

ShareSummaryReader::ShareSummaryReader(std::filesystem::path logFile) : file_(std::move(logFile)) {}

ShareSummaryReader::~ShareSummaryReader() = default;

ShareSummary ShareSummaryReader::read(int band) {
    if (!db_)
        db_ = std::make_unique<sql::Db>(file_.string(), sql::Db::Mode::ReadWrite);
    auto v = db_->prepare("PRAGMA data_version");
    v.step();
    const std::int64_t version = v.int64(0);
    if (version == version_ && band == last_.band)
        return last_;
    SharedStore store(*db_);
    ShareSummary s;
    s.band = band;
    if (band >= 0) {
        s.figures = store.stationFigures(band);
        s.doubles = store.doubleSerials(band);
    }
    s.queued = store.queuedCount();
    s.conflicts = store.conflicts().size();
    version_ = version;
    last_ = s;
    ++reads_;
    return s;
}

} // namespace orv
