#pragma once

// The checks and field rules that the commit and the correction share.
// Internal to the capture core.
#include <optional>
#include <string>
#include <string_view>

#include "core/capture/capture.h"

namespace orv::capture_detail {

// Field sizes of the band table: longer input is refused before anything is
// stored, since the store would refuse it anyway.
constexpr std::size_t kCallMax = 15, kRstMax = 4, kRstNrMax = 8;

std::optional<DateTime> withTime(DateTime date, std::string_view time);
std::int64_t distance(const std::string& own, const std::string& locator);

// The fields both entry lines check, in the order of the checks.
struct EntryFields {
    std::string_view call, locator, rstNr, rst, time, date;
    bool checkDate;
    int minReport;
};
// The controls to focus for each check, in the entry row or the correction line.
struct FieldNames {
    const char *call, *locator, *rstNr, *rst, *time, *date;
};
constexpr FieldNames kEntryRowFields{"Text3", "Text7", "Text6", "Text4", "Text2", "Text1"};
constexpr FieldNames kEditLineFields{"Text33", "Text77", "Text66", "Text44", "Text22", "Text14"};

struct CheckedEntry {
    std::optional<Failure> failure;
    std::string call, locator, rstNr, rst;
    std::optional<DateTime> date;
};

CheckedEntry checkEntry(const EntryFields& f, const FieldNames& n);

// The fields that both entry lines store the same way.
void fillRow(QsoRow& q, const CheckedEntry& c, std::string_view qsl, std::string_view note,
             std::string_view mode, std::string_view rxMode, std::string_view prop,
             std::string_view op);

} // namespace orv::capture_detail
