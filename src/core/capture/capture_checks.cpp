#include "core/capture/capture_checks.h"

#include "core/capture/entry_rules.h"
#include "core/locator/locator.h"
#include "core/util/text.h"

namespace orv::capture_detail {

namespace {

bool reportChars(std::string_view s) {
    for (char c : s)
        if (!entry::filterReportKey(c) || *entry::filterReportKey(c) != c)
            return false;
    return true;
}

std::optional<DateTime> parseDate(std::string_view s) {
    const std::string d = text::trim(s);
    if (d.size() != 10)
        return std::nullopt;
    return DateTime::fromStorage(d);
}

} // namespace

std::optional<DateTime> withTime(DateTime date, std::string_view time) {
    const auto t = entry::parseTime(time);
    if (!t)
        return std::nullopt;
    return DateTime{date.year, date.month, date.day, t->hour, t->minute, t->second};
}

std::int64_t distance(const std::string& own, const std::string& locator) {
    std::string a = own, b = locator;
    const LocErgebnis e = LocBerechnen(a, b);
    return e.ok() ? static_cast<std::int64_t>(e.km) : 0;
}

CheckedEntry checkEntry(const EntryFields& f, const FieldNames& n) {
    CheckedEntry c;
    c.call = text::upper(text::trim(f.call));
    c.locator = text::upper(text::trim(f.locator));
    c.rstNr = text::upper(text::trim(f.rstNr));
    c.rst = text::upper(text::trim(f.rst));
    if (text::length(c.call) < 3 || c.call.size() > kCallMax)
        c.failure = refuse(1, n.call);
    else if (text::length(c.locator) != 6)
        c.failure = refuse(2, n.locator);
    else if (text::length(c.rstNr) < static_cast<std::size_t>(f.minReport) ||
             c.rstNr.size() > kRstNrMax || !reportChars(c.rstNr))
        c.failure = refuse(3, n.rstNr);
    else if (text::length(c.rst) < 2 || c.rst.size() > kRstMax || !reportChars(c.rst))
        c.failure = refuse(4, n.rst);
    else if (!LocOK(c.locator))
        c.failure = refuse(2, n.locator);
    else if (!entry::parseTime(f.time))
        c.failure = refuse(14, n.time);
    else if (f.checkDate && !(c.date = parseDate(f.date)))
        c.failure = refuse(13, n.date);
    return c;
}

void fillRow(QsoRow& q, const CheckedEntry& c, std::string_view qsl, std::string_view note,
             std::string_view mode, std::string_view rxMode, std::string_view prop,
             std::string_view op) {
    q.call = c.call;
    q.locator = c.locator;
    q.rstGeg = c.rst;
    q.rstErh = c.rstNr;
    q.qsl = text::trim(qsl) == "Yes";
    q.notice = text::left(text::trim(note), 100);
    q.mod = text::left(text::trim(mode), 5);
    q.modRx = text::left(text::trim(rxMode), 5);
    q.ausBr = text::left(text::trim(prop), 3);
    q.opCall = text::left(text::trim(op), 15);
}

} // namespace orv::capture_detail
