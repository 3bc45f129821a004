#include "core/submission/edi.h"

#include <sstream>

#include "core/settings/settings.h"
#include "core/submission/export_file.h"
#include "core/util/file_io.h"
#include "core/util/text.h"

namespace orv {
namespace {

constexpr const char* kCrLf = "\r\n";

// One header key and the boxes that make its value, joined by ";". A box
// number of -1 stands for the band list.
struct HeaderKey {
    const char* key;
    std::array<int, 3> boxes;
};
constexpr int kNone = -2;
constexpr int kBandList = -1;

constexpr std::array<HeaderKey, 34> kHeader{{
    {"PCall=", {2, kNone, kNone}},
    {"PWWLo=", {3, kNone, kNone}},
    {"PExch=", {4, kNone, kNone}},
    {"PAdr1=", {5, kNone, kNone}},
    {"PAdr2=", {6, kNone, kNone}},
    {"PSect=", {7, kNone, kNone}},
    {"PBand=", {kBandList, kNone, kNone}},
    {"PClub=", {8, kNone, kNone}},
    {"RName=", {9, kNone, kNone}},
    {"RCall=", {10, kNone, kNone}},
    {"RAdr1=", {12, kNone, kNone}},
    {"RAdr2=", {13, kNone, kNone}},
    {"RPoCo=", {14, kNone, kNone}},
    {"RCity=", {15, kNone, kNone}},
    {"RCoun=", {16, kNone, kNone}},
    {"RPhon=", {17, kNone, kNone}},
    {"RHBBS=", {18, kNone, kNone}},
    {"MOpe1=", {19, kNone, kNone}},
    {"MOpe2=", {20, kNone, kNone}},
    {"STXEq=", {40, kNone, kNone}},
    {"SPowe=", {21, kNone, kNone}},
    {"SRXEq=", {22, kNone, kNone}},
    {"SAnte=", {23, kNone, kNone}},
    {"SAntH=", {24, 36, kNone}},
    {"CQSOs=", {25, 37, kNone}},
    {"CQSOP=", {26, kNone, kNone}},
    {"CWWLs=", {27, 38, 39}},
    {"CWWLB=", {28, kNone, kNone}},
    {"CExcs=", {29, 41, 42}},
    {"CExcB=", {30, kNone, kNone}},
    {"CDXCs=", {31, 43, 44}},
    {"CDXCB=", {32, kNone, kNone}},
    {"CToSc=", {33, kNone, kNone}},
    {"CODXC=", {34, 45, 46}},
}};

// A header value stays on its line whatever a box holds.
std::string oneLine(std::string_view s) {
    std::string out(s);
    for (char& c : out)
        if (c == '\r' || c == '\n')
            c = ' ';
    return out;
}

// The remarks may hold several lines; each ends in CR LF in the file.
std::string remarksLines(std::string_view s) {
    std::string out;
    std::string line;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '\r' || s[i] == '\n') {
            out += line + kCrLf;
            line.clear();
            if (s[i] == '\r' && i + 1 < s.size() && s[i + 1] == '\n')
                ++i;
        } else {
            line += s[i];
        }
    }
    if (!line.empty() || out.empty())
        out += line + kCrLf;
    return out;
}

std::string num(std::int64_t v) {
    return std::to_string(v);
}

std::string numD(double v) {
    return std::to_string(static_cast<long long>(v));
}

} // namespace

const std::string_view& pBandText(int b) {
    band(b);
    return kPBandTexts[static_cast<std::size_t>(b)];
}

EdiBoxes ediLoadLast(const Settings& settings) {
    EdiBoxes boxes;
    for (int i = 0; i < kEdiBoxes; ++i)
        boxes[static_cast<std::size_t>(i)] = settings.get(keys::Ex(i));
    return boxes;
}

void ediSaveLast(Settings& settings, const EdiBoxes& boxes) {
    for (int i = 0; i < kEdiBoxes; ++i)
        settings.set(keys::Ex(i), boxes[static_cast<std::size_t>(i)]);
}

void ediSaveTemplate(Settings& settings, int b, const EdiBoxes& boxes) {
    const std::string_view bandText = pBandText(b);
    for (int i = 0; i < kEdiBoxes; ++i)
        settings.set(keys::Vo(bandText, i), boxes[static_cast<std::size_t>(i)]);
}

void ediApplyTemplate(const Settings& settings, int b, EdiBoxes& boxes) {
    const std::string_view bandText = pBandText(b);
    for (int i = 0; i < kEdiBoxes; ++i) {
        std::string v = settings.get(keys::Vo(bandText, i));
        if (!v.empty())
            boxes[static_cast<std::size_t>(i)] = std::move(v);
    }
}

void ediFillOnOpen(const Evaluation& ev, EdiBoxes& boxes) {
    // The contest is this log's, even when it has none: the name of a
    // contest exported earlier must not slip into TName.
    boxes[0] = ev.contName;
    if (!ev.rows.empty()) {
        boxes[1] = ev.rows.front().cells[evalcol::Datum];
        boxes[11] = ev.rows.back().cells[evalcol::Datum];
    }
    if (!ev.myCall.empty())
        boxes[2] = ev.myCall;
    if (!ev.myLocator.empty())
        boxes[3] = ev.myLocator;
    boxes[26] = num(ev.points);
    boxes[37] = num(ev.multiplier);
    boxes[27] = numD(ev.grossfeldCount);
    boxes[25] = num(ev.qsos - ev.dupes);
}

void ediFillFromEvaluation(const Evaluation& ev, EdiBoxes& boxes) {
    if (ev.rows.empty())
        return;
    boxes[1] = ev.rows.front().cells[evalcol::Datum];
    boxes[11] = ev.rows.back().cells[evalcol::Datum];
    boxes[26] = num(ev.points);
    boxes[37] = num(ev.multiplier);
    boxes[39] = num(ev.multiplier);
    boxes[27] = numD(ev.grossfeldCount);
    boxes[25] = num(ev.qsos - ev.dupes);
    boxes[38] = "0";
    boxes[33] = num(ev.points);
    boxes[29] = "0";
    boxes[41] = "0";
    boxes[42] = "1";
    boxes[31] = num(ev.countryCount());
    boxes[43] = "0";
    boxes[44] = "1";
    // Every marked row is visited; the last one wins, as the pass over the
    // grid leaves it.
    for (const EvalRow& r : ev.rows)
        if (r.cells[evalcol::Info] == "ODX") {
            boxes[34] = r.cells[evalcol::Call];
            boxes[45] = r.cells[evalcol::Locator];
            boxes[46] = r.cells[evalcol::Punkte];
        }
}

void ediChooseBand(const Settings& settings, const Evaluation& ev, EdiBoxes& boxes) {
    ediApplyTemplate(settings, ev.band, boxes);
    ediFillFromEvaluation(ev, boxes);
}

char ediModeCode(std::string_view tx, std::string_view rx) {
    if (tx == "SSB" && rx == "SSB")
        return '1';
    if (tx == "CW" && rx == "CW")
        return '2';
    if (tx == "SSB" && rx == "CW")
        return '3';
    // "SB", not "SSB": a QSO sent in CW and received in SSB falls through to
    // "0", as files written so far have it.
    if (tx == "CW" && rx == "SB")
        return '4';
    if (tx == "AM" && rx == "AM")
        return '5';
    if (tx == "FM" && rx == "FM")
        return '6';
    if (tx == "RTTY" && rx == "RTTY")
        return '7';
    if (tx == "SSTV" && rx == "SSTV")
        return '8';
    if (tx == "ATV" && rx == "ATV")
        return '9';
    return '0';
}

std::string ediQsoLine(const EvalCells& c, std::string_view cwMode) {
    const std::string date = formatCellDate(c[evalcol::Datum], "yymmdd");
    const std::string time = formatCellTime(c[evalcol::Zeit]);
    const std::string nr = format0000(c[evalcol::Nr]);
    if (c[evalcol::ErrQSO] == "True")
        return date + ";" + time + ";ERROR;;;" + nr + ";;;;;0;;;;";

    const std::size_t reportLen = c[evalcol::RXMod] == cwMode ? 3 : 2;
    const std::string& received = c[evalcol::RSTNr];
    const std::string report = text::left(received, reportLen);
    const std::string serial =
        text::length(received) > reportLen ? received.substr(report.size()) : std::string();
    const std::string dupe = c[evalcol::Punkte] == "0" ? "D" : "";

    std::string line;
    line.reserve(80);
    line += date + ";";
    line += time + ";";
    line += text::left(c[evalcol::Call], 14) + ";";
    line += ediModeCode(c[evalcol::TXMod], c[evalcol::RXMod]);
    line += ";";
    line += text::left(c[evalcol::RST], 3) + ";";
    line += nr + ";";
    line += report + ";";
    line += format0000(serial) + ";;";
    line += c[evalcol::Locator] + ";";
    line += c[evalcol::Punkte] + ";;;";
    line += dupe + ";";
    return line;
}

Result<std::string> ediText(const Evaluation& ev, const EdiBoxes& b, std::string_view cwMode) {
    if (ev.rows.empty())
        return refuse(202, {}, std::string(band(ev.band).boxText));
    if (!parseCellDate(b[1]))
        return refuse(13, "Text1(1)", b[1]);
    if (!parseCellDate(b[11]))
        return refuse(13, "Text1(11)", b[11]);

    std::ostringstream f;
    f << "[REG1TEST;1]" << kCrLf;
    f << "TName=" << oneLine(b[0]) << kCrLf;
    f << "TDate=" << parseCellDate(b[1])->yyyymmdd() << ";" << parseCellDate(b[11])->yyyymmdd()
      << kCrLf;
    for (const HeaderKey& k : kHeader) {
        f << k.key;
        for (std::size_t i = 0; i < k.boxes.size() && k.boxes[i] != kNone; ++i) {
            if (i)
                f << ";";
            f << (k.boxes[i] == kBandList ? std::string(pBandText(ev.band))
                                          : oneLine(b[static_cast<std::size_t>(k.boxes[i])]));
        }
        f << kCrLf;
    }
    f << "[Remarks]" << kCrLf;
    if (!text::trim(b[35]).empty())
        f << remarksLines(b[35]);
    f << ">>> This file was created by OrvantaContest v" << programVersionText() << kCrLf;
    f << "[QSORecords;" << ev.rows.size() << "]" << kCrLf;
    for (const EvalRow& r : ev.rows)
        f << ediQsoLine(r.cells, cwMode) << kCrLf;
    return f.str();
}

Result<std::filesystem::path> writeEdi(const std::filesystem::path& chosen, const Evaluation& ev,
                                       const EdiBoxes& boxes, std::string_view cwMode) {
    Result<std::string> content = ediText(ev, boxes, cwMode);
    if (!content)
        return content.failure();
    const std::filesystem::path path = forceExtension(chosen, ".EDI");
    fileio::writeAtomic(path, text::utf8ToCp1252(*content));
    return path;
}

namespace {

// The band and the dates go into the upload name as the file has them, but
// for what cannot stand in one file name on the server: folders, control
// characters and the characters Windows refuses become "_".
std::string nameSafe(std::string_view field) {
    std::string out;
    for (const char ch : field) {
        const auto c = static_cast<unsigned char>(ch);
        const bool refused = c < 0x20 || c == 0x7F ||
                             std::string_view("/\\:*?\"<>|").find(ch) != std::string_view::npos;
        out += refused ? '_' : ch;
    }
    return out;
}

} // namespace

Result<std::string> EDIDateiname(const std::filesystem::path& ediFile) {
    const std::string content = text::decodeLegacy(fileio::readAll(ediFile));
    std::string date, call, pband;
    int hits = 0;
    std::size_t pos = 0;
    while (pos < content.size() && hits < 3) {
        std::size_t end = content.find('\n', pos);
        if (end == std::string::npos)
            end = content.size();
        std::string line = content.substr(pos, end - pos);
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        pos = end + 1;
        const std::string key = text::upper(line.substr(0, 6));
        const std::string rest = line.size() > 6 ? line.substr(6) : std::string();
        if (key == "TDATE=") {
            date = text::upper(text::trim(rest));
            ++hits;
        } else if (key == "PCALL=") {
            call = text::upper(text::trim(rest));
            ++hits;
        } else if (key == "PBAND=") {
            pband = text::trim(rest);
            ++hits;
        }
    }
    if (call.empty() || pband.empty())
        return refuse(327, {}, ediFile.string());
    std::string safeCall;
    for (std::size_t i = 0; i < call.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(call[i]);
        if ((c & 0xC0) == 0x80)
            continue; // the rest of a character already replaced
        safeCall += ((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z')) ? static_cast<char>(c) : '_';
    }
    if (const auto blank = pband.find(' '); blank != std::string::npos)
        pband.erase(blank, 1);
    return safeCall + "_" + nameSafe(pband) + "_" + nameSafe(date) + ".EDI";
}

} // namespace orv
