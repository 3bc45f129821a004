#include "core/stationlog/entry_check.h"

#include "core/capture/entry_rules.h"
#include "core/logstore/log_setup.h"
#include "core/submission/export_file.h"
#include "core/util/text.h"

namespace orv {
namespace {

// Field sizes of `QJLog`, by field number.
std::size_t sizeOf(int field) {
    return static_cast<std::size_t>(qjLogFields()[static_cast<std::size_t>(field)].Size);
}

std::string cut(std::string_view s, int field) {
    return text::left(text::trim(s), sizeOf(field));
}
std::string cutUpper(std::string_view s, int field) {
    return text::left(text::upper(text::trim(s)), sizeOf(field));
}

// The call test of the contest entry row: 3 to 15 characters.
bool callPasses(std::string_view call) {
    return text::length(call) >= 3 && call.size() <= sizeOf(2);
}

bool reportPasses(std::string_view rst) {
    if (rst.empty())
        return true;
    if (rst.size() < 2 || rst.size() > sizeOf(3))
        return false;
    for (char c : rst)
        if (!entry::filterReportKey(c) || *entry::filterReportKey(c) != c)
            return false;
    return true;
}

} // namespace

Result<StationQso> checkStationEntry(const StationEntry& e) {
    const auto date = parseCellDate(text::trim(e.date));
    if (!date)
        return refuse(13, "Text1");
    const auto time = entry::parseTime(text::trim(e.time));
    if (!time || time->hour > 23 || time->minute > 59 || time->second > 59)
        return refuse(14, "Text2");
    StationQso q;
    q.dateTime =
        DateTime{date->year, date->month, date->day, time->hour, time->minute, time->second};
    q.call = text::upper(text::trim(e.call));
    if (!callPasses(q.call))
        return refuse(1, "Text3");
    q.rstRx = text::upper(text::trim(e.rstRx));
    if (!reportPasses(q.rstRx))
        return refuse(4, "Text4");
    q.rstTx = text::upper(text::trim(e.rstTx));
    if (!reportPasses(q.rstTx))
        return refuse(4, "Text5");
    q.qrgTx = cut(e.qrgTx, 6);
    if (q.qrgTx.empty())
        return refuse(381, "Combo6");
    q.txMod = cut(e.txMode, 8);
    if (q.txMod.empty())
        return refuse(382, "Combo4");
    q.locator = cutUpper(e.locator, 5);
    q.qrgRx = cut(e.qrgRx, 7);
    q.rxMod = cut(e.rxMode, 9);
    q.prop = cutUpper(e.prop, 10);
    q.qsl = cut(e.qsl, 11);
    q.qslManager = cutUpper(e.qslManager, 12);
    q.name = cut(e.name, 13);
    q.myCall = cutUpper(e.myCall, 14);
    q.myLocator = cutUpper(e.myLocator, 15);
    q.power = cut(e.power, 16);
    q.antenne = cut(e.antenne, 17);
    q.note = cut(e.note, 18);
    q.qslRx = cut(e.qslRx, 19);
    return q;
}

StationEntry entryOf(const StationQso& q) {
    StationEntry e;
    e.date = q.dateTime.dateIso();
    e.time = q.dateTime.timeHM();
    e.call = q.call;
    e.rstRx = q.rstRx;
    e.rstTx = q.rstTx;
    e.locator = q.locator;
    e.qrgTx = q.qrgTx;
    e.qrgRx = q.qrgRx;
    e.txMode = q.txMod;
    e.rxMode = q.rxMod;
    e.prop = q.prop;
    e.qsl = q.qsl;
    e.qslManager = q.qslManager;
    e.name = q.name;
    e.myCall = q.myCall;
    e.myLocator = q.myLocator;
    e.power = q.power;
    e.antenne = q.antenne;
    e.note = q.note;
    e.qslRx = q.qslRx;
    return e;
}

std::string proposedStationLogName(std::string_view orvantaLog, const DateTime& today) {
    return std::string(orvantaLog) + proposedLogName(today);
}

Result<std::filesystem::path> stationLogFile(const std::filesystem::path& folder,
                                             std::string_view name) {
    std::string n = text::trim(name);
    if (Status s = checkLogName(n); !s)
        return s.failure();
    if (!text::iequals(n.size() >= 7 ? std::string_view(n).substr(n.size() - 7) : "", ".sqlite"))
        n += ".sqlite";
    return folder / n;
}

const std::vector<std::string>& adifModes() {
    static const std::vector<std::string> modes{
        "SSB",     "CW",       "FM",     "AM",       "RTTY",    "PSK31",  "PSK63",   "JT65",
        "JT9",     "JT6M",     "JT44",   "JT4",      "FSK441",  "ISCAT",  "WSPR",    "SSTV",
        "ATV",     "FAX",      "HELL",   "FMHELL",   "PSKHELL", "HFSK",   "MFSK8",   "MFSK16",
        "OLIVIA",  "CONTESTI", "DOMINO", "DOMINOF",  "MT63",    "THOR",   "THRB",    "THRBX",
        "ROS",     "OPERA",    "PKT",    "PAC",      "PAC2",    "PAC3",   "PAX",     "PAX2",
        "GTOR",    "AMTORFEC", "TOR",    "CLO",      "CHIP",    "ASCI",   "Q15",     "QPSK31",
        "QPSK63",  "QPSK125",  "PSK10",  "PSK125",   "PSK2K",   "PSK63F", "PSKAM10", "PSKAM31",
        "PSKAM50", "PSKFEC31", "FSK31",  "MINIRTTY", "RTTYM",   "PCW",    "V4",      "VOI",
        "WINMOR",  "DSTAR",
    };
    return modes;
}

const std::vector<std::string>& propagationCodes() {
    static const std::vector<std::string> codes{"AUR", "AUE", "BS",       "ECH", "EME", "ES",
                                                "FAI", "F2",  "INTERNET", "ION", "IRL", "MS",
                                                "RPT", "RS",  "SAT",      "TEP", "TR"};
    return codes;
}

} // namespace orv
