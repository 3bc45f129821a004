#include "core/stationlog/adif_export.h"

#include <limits>

#include "core/stationlog/station_log.h"
#include "core/submission/export_file.h"
#include "core/util/file_io.h"
#include "core/util/text.h"

namespace orv {
namespace {

constexpr const char* kEol = "\r\n";

// "<TAG:n>value" with the value in Windows-1252; nothing for an empty value.
void tag(std::string& line, std::string_view name, std::string_view value) {
    const std::string v = text::utf8ToCp1252(text::trim(value));
    if (v.empty())
        return;
    line += "<";
    line += name;
    line += ":" + std::to_string(v.size()) + ">" + v;
}

} // namespace

std::string stationAdifHeader() {
    return std::string("; This file was created by OrvantaLog v") + programVersionText() + kEol +
           "<adif_ver:5>2.2.3" + kEol + "<EOH>" + kEol;
}

std::string stationAdifRecord(const StationQso& q) {
    std::string line = "<QSO_DATE:8>" + q.dateTime.yyyymmdd();
    const std::string hm = q.dateTime.timeHM();
    line += "<TIME_ON:4>" + hm.substr(0, 2) + hm.substr(3, 2);
    tag(line, "CALL", q.call);
    tag(line, "RST_RCVD", q.rstTx);
    tag(line, "RST_SENT", q.rstRx);
    tag(line, "GRIDSQUARE", q.locator);
    tag(line, "FREQ", q.qrgTx);
    tag(line, "FREQ_RX", q.qrgRx);
    tag(line, "MODE", q.txMod);
    tag(line, "PROP_MODE", q.prop);
    const std::string qsl = text::trim(q.qsl);
    if (!qsl.empty())
        tag(line, "QSL_SENT", qsl.substr(0, 1));
    tag(line, "QSL_VIA", q.qslManager);
    tag(line, "NAME", q.name);
    tag(line, "STATION_CALLSIGN", q.myCall);
    tag(line, "OPERATOR", q.myCall);
    tag(line, "MY_GRIDSQUARE", q.myLocator);
    tag(line, "OWN_GRIDSQ", q.myLocator);
    tag(line, "TX_PWR", q.power);
    tag(line, "MY_RIG", q.antenne);
    tag(line, "NOTES", q.note);
    return line + "<EOR>";
}

Result<NrRange> checkExportRange(StationLog& log, std::string_view from, std::string_view to) {
    const auto f = text::wholeNumber(from);
    if (!f)
        return refuse(225, "Text13");
    const auto t = text::wholeNumber(to);
    if (!t)
        return refuse(225, "Text14");
    if (!rangeInLog(log, *f, *t))
        return refuse(391, "Text13");
    return NrRange{*f, *t};
}

std::int64_t writeStationAdif(std::ostream& out, StationLog& log,
                              const std::optional<NrRange>& range) {
    out << stationAdifHeader();
    std::int64_t n = 0;
    const NrRange r = range.value_or(NrRange{std::numeric_limits<std::int64_t>::min(),
                                             std::numeric_limits<std::int64_t>::max()});
    log.forEach(r.from, r.to, [&](const StationQso& q) {
        out << stationAdifRecord(q) << kEol;
        ++n;
        return static_cast<bool>(out);
    });
    return n;
}

std::filesystem::path exportStationAdif(StationLog& log, const std::filesystem::path& chosen,
                                        const std::optional<NrRange>& range) {
    const auto path = forceExtension(chosen, ".ADI");
    fileio::writeAtomic(path, [&](std::ostream& out) { writeStationAdif(out, log, range); });
    return path;
}

} // namespace orv
