#include <gtest/gtest.h>

#include <set>

#include "core/settings/settings.h"
#include "core/submission/edi.h"
#include "core/submission/export_file.h"
#include "core/util/file_io.h"
#include "submission_support.h"

using namespace orv;
using test::deleted;
using test::dupe;
using test::qso;

namespace {

// A reader of REG1TEST files written for these tests from the format's
// published field list, independent of the writer: CR LF line ends, the
// header keys, the remarks, and QSO records of 15 fields with a mode code
// of 0 to 9. Any breach is a failure message.
struct Reg1Test {
    std::vector<std::pair<std::string, std::string>> header;
    std::vector<std::string> remarks;
    std::size_t declaredRecords = 0;
    std::vector<std::vector<std::string>> records;
};

const std::set<std::string>& reg1TestKeys() {
    static const std::set<std::string> keys{
        "TName", "TDate", "PCall", "PWWLo", "PExch", "PAdr1", "PAdr2", "PSect", "PBand",
        "PClub", "RName", "RCall", "RAdr1", "RAdr2", "RPoCo", "RCity", "RCoun", "RPhon",
        "RHBBS", "MOpe1", "MOpe2", "STXEq", "SPowe", "SRXEq", "SAnte", "SAntH", "CQSOs",
        "CQSOP", "CWWLs", "CWWLB", "CExcs", "CExcB", "CDXCs", "CDXCB", "CToSc", "CODXC"};
    return keys;
}

bool digits(const std::string& s, std::size_t n) {
    return s.size() == n && s.find_first_not_of("0123456789") == std::string::npos;
}

std::vector<std::string> split(const std::string& s, char sep) {
    std::vector<std::string> out;
    std::size_t a = 0;
    while (true) {
        const std::size_t e = s.find(sep, a);
        out.push_back(s.substr(a, e == std::string::npos ? std::string::npos : e - a));
        if (e == std::string::npos)
            return out;
        a = e + 1;
    }
}

std::string readReg1Test(const std::string& bytes, Reg1Test& f) {
    std::vector<std::string> lines;
    std::size_t a = 0;
    while (a < bytes.size()) {
        const std::size_t e = bytes.find("\r\n", a);
        if (e == std::string::npos)
            return "last line without CR LF";
        const std::string line = bytes.substr(a, e - a);
        if (line.find_first_of("\r\n") != std::string::npos)
            return "bare CR or LF in line " + std::to_string(lines.size() + 1);
        lines.push_back(line);
        a = e + 2;
    }
    if (lines.empty() || lines[0] != "[REG1TEST;1]")
        return "missing [REG1TEST;1]";
    std::size_t i = 1;
    for (; i < lines.size() && lines[i] != "[Remarks]"; ++i) {
        const auto eq = lines[i].find('=');
        if (eq == std::string::npos || !reg1TestKeys().count(lines[i].substr(0, eq)))
            return "bad header line: " + lines[i];
        f.header.emplace_back(lines[i].substr(0, eq), lines[i].substr(eq + 1));
    }
    if (i == lines.size())
        return "missing [Remarks]";
    for (++i; i < lines.size() && lines[i].rfind("[QSORecords;", 0) != 0; ++i)
        f.remarks.push_back(lines[i]);
    if (i == lines.size() || lines[i].back() != ']')
        return "missing [QSORecords;N]";
    const std::string n = lines[i].substr(12, lines[i].size() - 13);
    if (n.empty() || n.find_first_not_of("0123456789") != std::string::npos)
        return "bad record count: " + lines[i];
    f.declaredRecords = std::stoul(n);
    for (++i; i < lines.size(); ++i) {
        auto r = split(lines[i], ';');
        if (r.size() != 15)
            return "record with " + std::to_string(r.size()) + " fields: " + lines[i];
        if (!digits(r[0], 6) || !digits(r[1], 4))
            return "bad date or time: " + lines[i];
        if (r[2] != "ERROR" && !digits(r[3], 1))
            return "bad mode code: " + lines[i];
        if (r[10].empty() || r[10].find_first_not_of("0123456789") != std::string::npos)
            return "bad points: " + lines[i];
        f.records.push_back(std::move(r));
    }
    if (f.records.size() != f.declaredRecords)
        return "record count does not match [QSORecords;N]";
    return {};
}

std::string headerValue(const Reg1Test& f, const std::string& key) {
    for (const auto& [k, v] : f.header)
        if (k == key)
            return v;
    return "<missing>";
}

EvalCells cells(std::string nr, std::string date, std::string time, std::string call,
                std::string locator, std::string rst, std::string rcvd, std::string points,
                std::string tx, std::string rx, std::string err = "False") {
    EvalCells c{};
    c[evalcol::Nr] = std::move(nr);
    c[evalcol::Datum] = std::move(date);
    c[evalcol::Zeit] = std::move(time);
    c[evalcol::Call] = std::move(call);
    c[evalcol::Locator] = std::move(locator);
    c[evalcol::RST] = std::move(rst);
    c[evalcol::RSTNr] = std::move(rcvd);
    c[evalcol::Punkte] = std::move(points);
    c[evalcol::TXMod] = std::move(tx);
    c[evalcol::RXMod] = std::move(rx);
    c[evalcol::ErrQSO] = std::move(err);
    return c;
}

constexpr int k432 = 2;

} // namespace

TEST(Edi, ModeCodes) {
    const struct {
        const char* tx;
        const char* rx;
        char code;
    } cases[] = {
        {"SSB", "SSB", '1'}, {"CW", "CW", '2'},  {"SSB", "CW", '3'},    {"CW", "SB", '4'},
        {"AM", "AM", '5'},   {"FM", "FM", '6'},  {"RTTY", "RTTY", '7'}, {"SSTV", "SSTV", '8'},
        {"ATV", "ATV", '9'}, {"CW", "SSB", '0'}, {"FM", "SSB", '0'},    {"ssb", "ssb", '0'},
        {"", "", '0'},       {"SSB", "FM", '0'}, {"ATV", "SSTV", '0'},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ediModeCode(c.tx, c.rx), c.code) << c.tx << "/" << c.rx;
}

TEST(Edi, QsoLines) {
    const struct {
        EvalCells cells;
        std::string cwMode;
        std::string line;
    } cases[] = {
        // The published example.
        {cells("17", "2006-07-01", "14:23", "OK1XY", "JN79AB", "59", "59123", "412", "SSB", "SSB"),
         "CW", "060701;1423;OK1XY;1;59;0017;59;0123;;JN79AB;412;;;;"},
        // CW: a report of three characters, the rest a four-digit serial.
        {cells("5", "2026-05-02", "09:05", "DL1ABC", "JN58TD", "599", "5990123", "300", "CW", "CW"),
         "CW", "260502;0905;DL1ABC;2;599;0005;599;0123;;JN58TD;300;;;;"},
        // SSB with 590123: report 59, serial 0123.
        {cells("5", "2026-05-02", "09:05", "DL1ABC", "JN58TD", "59", "590123", "300", "SSB", "SSB"),
         "CW", "260502;0905;DL1ABC;1;59;0005;59;0123;;JN58TD;300;;;;"},
        // The report length follows the second mode of the list, whatever it is.
        {cells("5", "2026-05-02", "09:05", "DL1ABC", "JN58TD", "59", "5990123", "300", "CW", "CW"),
         "TLG", "260502;0905;DL1ABC;2;59;0005;59;90123;;JN58TD;300;;;;"},
        // Received text no longer than the report: an empty serial.
        {cells("5", "2026-05-02", "09:05", "DL1ABC", "JN58TD", "59", "59", "300", "SSB", "SSB"),
         "CW", "260502;0905;DL1ABC;1;59;0005;59;;;JN58TD;300;;;;"},
        // Zero points give "D" in the fourteenth field.
        {cells("1234", "2026-12-31", "23:59", "DL1ABC", "JN58TD", "59", "59007", "0", "FM", "FM"),
         "CW", "261231;2359;DL1ABC;6;59;1234;59;0007;;JN58TD;0;;;D;"},
        // A call is cut at 14, a sent report at 3.
        {cells("2", "2026-05-02", "09:05", "DL1ABC/P/MM/XYZ", "JN58TD", "5999", "59001", "300",
               "CW", "SSB"),
         "CW", "260502;0905;DL1ABC/P/MM/XY;0;599;0002;59;0001;;JN58TD;300;;;;"},
        // A deleted QSO.
        {cells("17", "2006-07-01", "14:23", "OK1XY", "JN79AB", "59", "59123", "412", "SSB", "SSB",
               "True"),
         "CW", "060701;1423;ERROR;;;0017;;;;;0;;;;"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ediQsoLine(c.cells, c.cwMode), c.line);
}

// The dialog's sequence on a real log, the file read back by the
// independent reader: every box from its source, every count right.
TEST(Edi, WholeFileFromLogAndTemplates) {
    test::TempDir dir;
    ContestLog log = test::makeLog(dir / "Logs", {1, 1, 2, 1, 1, 1, 1, 1, 1, 1});
    test::addRows(
        log, k432,
        {
            qso(1, "DL1ABC", "JN58TD", 300, "2026-05-02 14:00:00"),
            qso(2, "OK1XY", "JO70AB", 205, "2026-05-02 14:05:00", "CW", "CW", "599", "5990123"),
            deleted(qso(3, "SP9ZZ", "KN09AA", 600, "2026-05-02 14:10:00")),
            dupe(qso(4, "DL1ABC", "JN58TE", 0, "2026-05-02 14:20:00")),
            qso(5, "OE3XYZ", "JN88EF", 950, "2026-05-02 15:00:00", "SSB", "CW", "59", "599012"),
            qso(6, "I1ABC", "JN45AA", 700, "2026-05-03 01:10:00", "FM", "FM"),
            qso(7, "OK2AB", "JN69AA", 310, "2026-05-03 02:00:00"),
        });
    const Evaluation ev = evaluate(log, k432, &test::realCountries());
    ASSERT_EQ(ev.countryCount(), 4);
    ASSERT_EQ(ev.grossfeldCount, 5);

    Settings settings{IniFile(dir / "OrvantaContest.INI")};
    settings.set(keys::Ex(4), "Last exchange");
    settings.set(keys::Ex(5), "Old street");
    settings.set(keys::Ex(21), "100");
    settings.set(keys::Ex(35), "last remark");
    settings.set(keys::Vo("435 MHz", 5), "Template street 1");
    settings.set(keys::Vo("435 MHz", 26), "999999"); // the evaluation wins over it
    settings.set(keys::Vo("435 MHz", 24), "12");
    settings.set(keys::Vo("435 MHz", 36), "450");
    settings.set(keys::Vo("145 MHz", 7), "MULTI"); // another band's template
    settings.set(keys::Vo("435 MHz", 35), "");

    EdiBoxes boxes = ediLoadLast(settings);
    ediFillOnOpen(ev, boxes);
    ediChooseBand(settings, ev, boxes);
    boxes[35] = "Line one\nLine two";
    const auto written = writeEdi(dir / "band432", ev, boxes, "CW");
    ASSERT_TRUE(written.ok());
    EXPECT_EQ(*written, dir / "band432.EDI");

    const std::string bytes = fileio::readAll(*written);
    Reg1Test f;
    ASSERT_EQ(readReg1Test(bytes, f), "");

    std::vector<std::string> order;
    for (const auto& [k, v] : f.header)
        order.push_back(k);
    EXPECT_EQ(order, (std::vector<std::string>{
                         "TName", "TDate", "PCall", "PWWLo", "PExch", "PAdr1", "PAdr2", "PSect",
                         "PBand", "PClub", "RName", "RCall", "RAdr1", "RAdr2", "RPoCo", "RCity",
                         "RCoun", "RPhon", "RHBBS", "MOpe1", "MOpe2", "STXEq", "SPowe", "SRXEq",
                         "SAnte", "SAntH", "CQSOs", "CQSOP", "CWWLs", "CWWLB", "CExcs", "CExcB",
                         "CDXCs", "CDXCB", "CToSc", "CODXC"}));
    const std::int64_t score = 2 * (300 + 205 + 0 + 950 + 700 + 310);
    EXPECT_EQ(headerValue(f, "TName"), "Test Contest");
    EXPECT_EQ(headerValue(f, "TDate"), "20260502;20260503");
    EXPECT_EQ(headerValue(f, "PCall"), "OE1ABC");
    EXPECT_EQ(headerValue(f, "PWWLo"), "JN78DF");
    EXPECT_EQ(headerValue(f, "PExch"), "Last exchange"); // an empty template does not clear
    EXPECT_EQ(headerValue(f, "PAdr1"), "Template street 1");
    EXPECT_EQ(headerValue(f, "PSect"), "");
    EXPECT_EQ(headerValue(f, "PBand"), "435 MHz");
    EXPECT_EQ(headerValue(f, "SPowe"), "100");
    EXPECT_EQ(headerValue(f, "SAntH"), "12;450");
    EXPECT_EQ(headerValue(f, "CQSOs"), "5;2"); // 6 counted minus 1 duplicate; the weight
    EXPECT_EQ(headerValue(f, "CQSOP"), std::to_string(score));
    EXPECT_EQ(headerValue(f, "CWWLs"), "5;0;2");
    EXPECT_EQ(headerValue(f, "CExcs"), "0;0;1");
    EXPECT_EQ(headerValue(f, "CDXCs"), "4;0;1");
    EXPECT_EQ(headerValue(f, "CToSc"), std::to_string(score));
    EXPECT_EQ(headerValue(f, "CODXC"), "OE3XYZ;JN88EF;1900");
    EXPECT_EQ(f.remarks, (std::vector<std::string>{"Line one", "Line two",
                                                   ">>> This file was created by OrvantaContest v" +
                                                       programVersionText()}));

    ASSERT_EQ(f.declaredRecords, 7u); // deleted and duplicate rows included
    EXPECT_EQ(f.records[0], split("260502;1400;DL1ABC;1;59;0001;59;0001;;JN58TD;600;;;;", ';'));
    EXPECT_EQ(f.records[1], split("260502;1405;OK1XY;2;599;0002;599;0123;;JO70AB;410;;;;", ';'));
    EXPECT_EQ(f.records[2], split("260502;1410;ERROR;;;0003;;;;;0;;;;", ';'));
    EXPECT_EQ(f.records[3], split("260502;1420;DL1ABC;1;59;0004;59;0001;;JN58TE;0;;;D;", ';'));
    EXPECT_EQ(f.records[4], split("260502;1500;OE3XYZ;3;59;0005;599;0012;;JN88EF;1900;;;;", ';'));
    EXPECT_EQ(f.records[5][0], "260503");
    EXPECT_EQ(f.records[5][3], "6");
}

// Two runs that must differ in exactly one place catch a box read from the
// wrong statistic: the weight moves CQSOs, CWWLs and the points, nothing else.
TEST(Edi, WeightEntersOnlyItsBoxes) {
    test::TempDir dir;
    auto figures = [&](int weight, const std::string& name) {
        ContestLog log = test::makeLog(dir / name, {1, 1, weight, 1, 1, 1, 1, 1, 1, 1});
        test::addRows(log, k432, {qso(1, "DL1ABC", "JN58TD", 300), qso(2, "OK1XY", "JO70AB", 205)});
        const Evaluation ev = evaluate(log, k432, &test::realCountries());
        EdiBoxes boxes{};
        ediFillOnOpen(ev, boxes);
        ediFillFromEvaluation(ev, boxes);
        return boxes;
    };
    const EdiBoxes one = figures(1, "a"), three = figures(3, "b");
    std::set<int> differing;
    for (int i = 0; i < kEdiBoxes; ++i)
        if (one[static_cast<std::size_t>(i)] != three[static_cast<std::size_t>(i)])
            differing.insert(i);
    EXPECT_EQ(differing, (std::set<int>{26, 33, 37, 39, 46}));
    EXPECT_EQ(three[25], "2");
    EXPECT_EQ(three[37], "3");
    EXPECT_EQ(three[26], "1515");
}

// TName is the log's contest name, empty when the log has none, never the
// last contents of the box from another contest.
TEST(Edi, ContestNameComesFromTheLogAlone) {
    for (const char* name : {"", "Fieldday"}) {
        Evaluation ev;
        ev.contName = name;
        EdiBoxes boxes{};
        boxes[0] = "Old contest";
        ediFillOnOpen(ev, boxes);
        EXPECT_EQ(boxes[0], name);
    }
}

TEST(Edi, RefusalsComeBeforeTheFile) {
    test::TempDir dir;
    ContestLog log = test::makeLog(dir / "Logs");
    const auto target = dir / "x.EDI";
    test::writeFile(target, "old file");

    // An empty band.
    Evaluation ev = evaluate(log, k432, nullptr);
    EdiBoxes boxes{};
    boxes[1] = boxes[11] = "2026-05-02";
    auto r = writeEdi(target, ev, boxes, "CW");
    ASSERT_FALSE(r.ok());
    EXPECT_EQ(r.failure().text, 202);
    EXPECT_EQ(r.failure().detail, "432");

    test::addRows(log, k432, {qso(1, "DL1ABC", "JN58TD", 300)});
    ev = evaluate(log, k432, nullptr);
    ediFillFromEvaluation(ev, boxes);
    const struct {
        int box;
        const char* text;
        const char* field;
    } bad[] = {{1, "2026-02-30", "Text1(1)"}, {11, "tomorrow", "Text1(11)"}, {1, "", "Text1(1)"}};
    for (const auto& b : bad) {
        EdiBoxes e = boxes;
        e[static_cast<std::size_t>(b.box)] = b.text;
        r = writeEdi(target, ev, e, "CW");
        ASSERT_FALSE(r.ok()) << b.text;
        EXPECT_EQ(r.failure().text, 13);
        EXPECT_EQ(r.failure().field, b.field);
    }
    EXPECT_EQ(test::readFile(target), "old file");

    // A German short date is a date too; the existing file is replaced.
    boxes[11] = "03.05.2026";
    r = writeEdi(target, ev, boxes, "CW");
    ASSERT_TRUE(r.ok());
    EXPECT_NE(test::readFile(target).find("TDate=20260502;20260503\r\n"), std::string::npos);
}

// One deleted QSO: one ERROR line, one record, no counted QSO.
TEST(Edi, LogOfOneErrorQso) {
    test::TempDir dir;
    ContestLog log = test::makeLog(dir / "Logs", {1, 1, 4, 1, 1, 1, 1, 1, 1, 1});
    test::addRows(log, k432, {deleted(qso(17, "OK1XY", "JN79AB", 412, "2006-07-01 14:23:00"))});
    const Evaluation ev = evaluate(log, k432, nullptr);
    EdiBoxes boxes{};
    ediFillOnOpen(ev, boxes);
    ediFillFromEvaluation(ev, boxes);
    const auto text = ediText(ev, boxes, "CW");
    ASSERT_TRUE(text.ok());
    Reg1Test f;
    ASSERT_EQ(readReg1Test(*text, f), "");
    EXPECT_EQ(headerValue(f, "CQSOs"), "0;4");
    EXPECT_EQ(f.declaredRecords, 1u);
    EXPECT_EQ(f.records[0], split("060701;1423;ERROR;;;0017;;;;;0;;;;", ';'));
}

TEST(Edi, WrittenInWindows1252) {
    test::TempDir dir;
    ContestLog log = test::makeLog(dir / "Logs");
    test::addRows(log, k432, {qso(1, "DL1ABC", "JN58TD", 300)});
    const Evaluation ev = evaluate(log, k432, nullptr);
    EdiBoxes boxes{};
    ediFillOnOpen(ev, boxes);
    ediFillFromEvaluation(ev, boxes);
    boxes[9] = "Jörg Müller";
    boxes[12] = "5 € Straße Ω";
    const auto p = writeEdi(dir / "enc", ev, boxes, "CW");
    ASSERT_TRUE(p.ok());
    const std::string bytes = fileio::readAll(*p);
    EXPECT_NE(bytes.find("RName=J\xF6rg M\xFCller\r\n"), std::string::npos);
    EXPECT_NE(bytes.find("RAdr1=5 \x80 Stra\xDF"
                         "e ?\r\n"),
              std::string::npos);
}

TEST(Edi, ForcedEnding) {
    const struct {
        const char* chosen;
        const char* written;
    } cases[] = {
        {"/tmp/x", "/tmp/x.EDI"},         {"/tmp/x.edi", "/tmp/x.edi"},
        {"/tmp/x.EDI", "/tmp/x.EDI"},     {"/tmp/x.Edi", "/tmp/x.Edi"},
        {"/tmp/x.txt", "/tmp/x.txt.EDI"}, {"/tmp/edi", "/tmp/edi.EDI"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(forceExtension(c.chosen, ".EDI").string(), c.written);
    std::string withNul = "/tmp/y";
    withNul.push_back('\0');
    EXPECT_EQ(forceExtension(withNul, ".EDI").string(), "/tmp/y.EDI");
}

TEST(Edi, TemplateRoundTripFillsButNeverClears) {
    test::TempDir dir;
    Settings settings{IniFile(dir / "OrvantaContest.INI")};
    EdiBoxes saved{};
    saved[8] = "Club";
    saved[23] = "4 x 17 el";
    ediSaveTemplate(settings, 3, saved);
    EXPECT_EQ(settings.get(keys::Vo("1,3 GHz", 23)), "4 x 17 el");

    EdiBoxes boxes{};
    boxes[8] = "Other club";
    boxes[9] = "Name stays";
    ediApplyTemplate(settings, 3, boxes);
    EXPECT_EQ(boxes[8], "Club");
    EXPECT_EQ(boxes[9], "Name stays");
    EXPECT_EQ(boxes[23], "4 x 17 el");

    ediSaveLast(settings, boxes);
    EXPECT_EQ(ediLoadLast(settings), boxes);
}

TEST(Edi, FourDigitNumbers) {
    const struct {
        const char* cell;
        const char* text;
    } cases[] = {{"7", "0007"},
                 {"0123", "0123"},
                 {"00123", "0123"},
                 {"12345", "12345"},
                 {"", ""},
                 {"12A", "12A"},
                 {"-12", "-0012"},
                 {" 42 ", "0042"},
                 {"-0", "0000"},
                 {"+7", "0007"},
                 {"-9223372036854775808", "-9223372036854775808"}};
    for (const auto& c : cases)
        EXPECT_EQ(format0000(c.cell), c.text) << c.cell;
}

// A write that fails throws and leaves the file that was there.
TEST(Edi, WriteErrorKeepsTheOldFile) {
    test::TempDir dir;
    ContestLog log = test::makeLog(dir / "Logs");
    test::addRows(log, k432, {qso(1, "DL1ABC", "JN58TD", 300)});
    const Evaluation ev = evaluate(log, k432, nullptr);
    EdiBoxes boxes{};
    ediFillOnOpen(ev, boxes);
    // A folder in the way of the file: the rename over it fails.
    std::filesystem::create_directories(dir / "x.EDI" / "inside");
    EXPECT_THROW(writeEdi(dir / "x", ev, boxes, "CW"), fileio::FileError);
    EXPECT_TRUE(std::filesystem::is_directory(dir / "x.EDI" / "inside"));
    EXPECT_THROW(writeEdi(dir / "missing" / "x", ev, boxes, "CW"), fileio::FileError);
    EXPECT_FALSE(std::filesystem::exists(dir / "missing"));
}

TEST(Edi, UploadName) {
    test::TempDir dir;
    const struct {
        std::string content;
        std::string name; // empty: refused
    } cases[] = {
        {"[REG1TEST;1]\r\nTDate=20060701;20060702\r\nPCall=oe/x1\r\nPBand=145 MHz\r\n",
         "OE_X1_145MHz_20060701;20060702.EDI"},
        {"pcall=  dl1abc \r\npband= 1,3 GHz\r\ntdate=20260502;20260502\r\n",
         "DL1ABC_1,3GHz_20260502;20260502.EDI"},
        {"TDate=20260502;20260502\nPBand=145 MHz\n", ""},
        {"PCall=DL1ABC\r\nPBand=\r\n", ""},
        // Three hits end the reading, repeated keys included.
        {"PCall=A1\r\nPCall=B2\r\nPBand=145 MHz\r\nPBand=435 MHz\r\n", "B2_145MHz_.EDI"},
    };
    int i = 0;
    for (const auto& c : cases) {
        const auto p = dir / ("f" + std::to_string(i++) + ".edi");
        test::writeFile(p, c.content);
        const auto r = EDIDateiname(p);
        if (c.name.empty()) {
            ASSERT_FALSE(r.ok()) << c.content;
            EXPECT_EQ(r.failure().text, 327);
        } else {
            ASSERT_TRUE(r.ok()) << c.content;
            EXPECT_EQ(*r, c.name);
        }
    }
}

// The band and the dates cannot carry a folder or a control character into
// the upload name (an input the fuzzer found).
TEST(Edi, UploadNameIsOneFileName) {
    const auto r = EDIDateiname(test::sourceDir() / "tests/data/fuzz/edi_name/control-in-band.edi");
    ASSERT_TRUE(r.ok());
    EXPECT_EQ(*r, "OE1ABC_1,3GHz__20260502_.._X_;20260503.EDI");
}
