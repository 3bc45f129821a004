#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

#include "core/shared/shared_store.h"

namespace orv {

namespace sql {
class Db;
}

// What the positions panel shows of the log file of a shared contest: the
// station's figures of a band, the numbers given twice on it, the waiting
// changes and the conflicts.
struct ShareSummary {
    int band = -1;
    StationFigures figures;
    std::vector<DoubleSerial> doubles;
    std::int64_t queued = 0;
    std::size_t conflicts = 0;
};

// Reads the summary over a connection of its own, so that it can run beside
// the window: over the whole station's QSOs it takes tens of milliseconds.
// It reads again only when the file changed (any writer: the capture, the
// worker, the tool) or the band is another; one thread at a time.
class ShareSummaryReader {
public:
    explicit ShareSummaryReader(std::filesystem::path logFile);
    ~ShareSummaryReader();

    ShareSummary read(int band);
    // How many times the figures were read from the file (tests).
    int reads() const { return reads_; }

private:
    std::filesystem::path file_;
    std::unique_ptr<sql::Db> db_;
    std::int64_t version_ = -1;
    ShareSummary last_;
    int reads_ = 0;
};

} // namespace orv
