// The date and time parsers of the entry row, the grid cells and the
// stored form: any text as typed. An accepted time is a time of day written
// in digits and colons only; the completion of a typed time is stable; a
// stored date reads back from its own stored form.

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/capture/entry_rules.h"
#include "core/submission/export_file.h"
#include "core/util/datetime.h"
#include "core/util/text.h"
#include "fuzz_support.h"

using namespace orv;

namespace {

bool digitsAndColons(const std::string& s) {
    for (const char c : s)
        if (c != ':' && (c < '0' || c > '9'))
            return false;
    return !s.empty();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string typed(reinterpret_cast<const char*>(data), size);

    const std::string completed = entry::normaliseTime(typed);
    FUZZ_CHECK(entry::normaliseTime(completed) == completed, "completing a time twice changes it");
    for (const std::string& s : {typed, completed}) {
        if (const auto t = entry::parseTime(s)) {
            FUZZ_CHECK(t->hour >= 0 && t->hour <= 23 && t->minute >= 0 && t->minute <= 59 &&
                           t->second >= 0 && t->second <= 59,
                       "a time outside the day");
            FUZZ_CHECK(digitsAndColons(text::trim(s)), "a time accepted with other characters");
        }
    }

    if (const auto t = parseCellTime(typed)) {
        FUZZ_CHECK(t->hour <= 23 && t->minute <= 59 && t->second <= 59,
                   "a cell time outside the day");
        FUZZ_CHECK(digitsAndColons(text::trim(typed)), "a cell time with other characters");
    }
    if (const auto d = parseCellDate(typed))
        FUZZ_CHECK(DateTime::validDate(d->year, d->month, d->day), "a cell date that is no date");
    if (const auto d = DateTime::fromStorage(typed)) {
        FUZZ_CHECK(DateTime::validDate(d->year, d->month, d->day), "a stored date that is no date");
        FUZZ_CHECK(DateTime::fromStorage(d->toStorage()) == d, "a stored date does not read back");
    }

    // The report keys and the switch the report length makes.
    for (const char c : typed) {
        (void)entry::filterReportKey(c);
        (void)entry::filterCallKey(c);
        (void)entry::qslForKey(c);
    }
    (void)entry::modeForReport(typed, "SSB", "CW");
    (void)entry::nextReport(typed);
    (void)entry::clipPropagation(typed);
    return 0;
}
