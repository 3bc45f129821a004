// The range boxes of the station log's ADIF export: any text in the two
// boxes, over a log with records 1, 2, 3 and 7. An accepted range lies
// inside the log and in order; the check reads only.

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <sstream>
#include <string>

#include "core/stationlog/adif_export.h"
#include "core/stationlog/station_log.h"
#include "fuzz_support.h"

using namespace orv;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static std::optional<StationLog> log;
    const auto dir = fuzz::workDir() / "QjLog";
    if (!log) {
        log.emplace(StationLog::create(dir / "Range.sqlite"));
        StationQso q;
        q.dateTime = DateTime{2026, 5, 2, 12, 0, 0};
        q.call = "OE1ABC";
        q.txMod = "SSB";
        q.qrgTx = "144.300";
        for (int i = 0; i < 7; ++i)
            log->add(q);
        log->removeRange(4, 6);
    }
    FuzzedDataProvider in(data, size);
    const std::string from = in.ConsumeRandomLengthString(32);
    const std::string to = in.ConsumeRemainingBytesAsString();

    const std::string before = fuzz::folderBytes(dir);
    const auto r = checkExportRange(*log, from, to);
    FUZZ_CHECK(fuzz::folderBytes(dir) == before, "the range check changed the log");
    if (!r.ok()) {
        FUZZ_CHECK(r.failure().text == 225 || r.failure().text == 391,
                   "a refusal with a text the check does not use");
        return 0;
    }
    FUZZ_CHECK(r->from <= r->to && r->from >= 1 && r->to <= 7, "a range outside the log");
    std::ostringstream out;
    const std::int64_t n = writeStationAdif(out, *log, *r);
    FUZZ_CHECK(n >= 0 && n <= 4, "more records written than the log holds");
    return 0;
}
