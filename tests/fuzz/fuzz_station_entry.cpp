// The save of the station log window: any text in every box. An entry the
// checks accept is one the station log can store; a refusal names a text
// of the checks.

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "core/stationlog/entry_check.h"
#include "core/stationlog/station_log.h"
#include "fuzz_support.h"

using namespace orv;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static std::optional<StationLog> log;
    if (!log)
        log.emplace(StationLog::create(fuzz::workDir() / "QjLog" / "Fuzz.sqlite"));

    FuzzedDataProvider in(data, size);
    StationEntry e;
    for (std::string* box :
         {&e.date,   &e.time,      &e.call,   &e.rstRx,   &e.rstTx, &e.locator,    &e.qrgTx,
          &e.qrgRx,  &e.txMode,    &e.rxMode, &e.prop,    &e.qsl,   &e.qslManager, &e.name,
          &e.myCall, &e.myLocator, &e.power,  &e.antenne, &e.note,  &e.qslRx})
        *box = in.ConsumeRandomLengthString(48);

    const auto r = checkStationEntry(e);
    if (!r.ok()) {
        const int t = r.failure().text;
        FUZZ_CHECK(t == 13 || t == 14 || t == 1 || t == 4 || t == 381 || t == 382,
                   "a refusal with a text the checks do not use");
        return 0;
    }
    FUZZ_CHECK(r->nr == 0, "a checked record with a number");
    // The database refuses a text longer than its field by throwing: the
    // checks must have cut every box to size.
    const std::int64_t nr = log->add(*r);
    const auto stored = log->find(nr);
    FUZZ_CHECK(stored.has_value(), "a stored record is not found");
    StationQso expected = *r;
    expected.nr = nr;
    FUZZ_CHECK(*stored == expected, "a stored record reads back otherwise");
    // The boxes of the stored record pass the checks to the same record.
    const auto again = checkStationEntry(entryOf(*stored));
    FUZZ_CHECK(again.ok(), "a stored record fails the checks when shown again");
    log->remove(nr);
    return 0;
}
