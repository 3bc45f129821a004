#include <gtest/gtest.h>

#include "core/i18n/texts.h"
#include "core/settings/settings.h"
#include "core/submission/adif.h"
#include "core/submission/export_file.h"
#include "core/submission/text_listing.h"
#include "core/util/file_io.h"
#include "submission_support.h"

using namespace orv;
using test::deleted;
using test::dupe;
using test::qso;

namespace {

EvalCells row(std::string rcvd, std::string rx, std::string locator, std::string prop = "",
              std::string name = "") {
    EvalCells c{};
    c[evalcol::Nr] = "3";
    c[evalcol::Datum] = "2026-05-02";
    c[evalcol::Zeit] = "07:09";
    c[evalcol::Call] = "OK1XY";
    c[evalcol::Locator] = std::move(locator);
    c[evalcol::RST] = rx == "CW" ? "599" : "59";
    c[evalcol::RSTNr] = std::move(rcvd);
    c[evalcol::Punkte] = "205";
    c[evalcol::TXMod] = "SSB";
    c[evalcol::RXMod] = std::move(rx);
    c[evalcol::QSL] = "Yes";
    c[evalcol::Prop] = std::move(prop);
    c[evalcol::Name] = std::move(name);
    c[evalcol::ErrQSO] = "False";
    return c;
}

std::vector<std::string> crlfLines(const std::string& s) {
    std::vector<std::string> out;
    std::size_t a = 0, e;
    while ((e = s.find("\r\n", a)) != std::string::npos) {
        out.push_back(s.substr(a, e - a));
        a = e + 2;
    }
    EXPECT_EQ(a, s.size()) << "text after the last CR LF";
    return out;
}

} // namespace

TEST(Adif, RecordPieces) {
    const struct {
        EvalCells cells;
        std::string freq;
        std::string record;
    } cases[] = {
        {row("599012", "CW", "JO70AB"), "144.300",
         "<QSO_DATE:8>20260502<TIME_ON:4>0709<CALL:5>OK1XY<RST_SENT:3>599<RST_RCVD:3>599"
         "<FREQ:7>144.300<MODE:3>SSB<QSL_SENT:1>Y<GRIDSQUARE:6>JO70AB<EOR>"},
        {row("59012", "SSB", "JO70AB", "TR", "Jan"), "144",
         "<QSO_DATE:8>20260502<TIME_ON:4>0709<CALL:5>OK1XY<RST_SENT:2>59<RST_RCVD:2>59"
         "<FREQ:3>144<MODE:3>SSB<QSL_SENT:1>Y<GRIDSQUARE:6>JO70AB<PROP_MODE:2>TR<NAME:3>Jan<EOR>"},
        // Only exactly "CW" gives three characters.
        {row("599012", "cw", "JO70AB"), "144",
         "<QSO_DATE:8>20260502<TIME_ON:4>0709<CALL:5>OK1XY<RST_SENT:2>59<RST_RCVD:2>59"
         "<FREQ:3>144<MODE:3>SSB<QSL_SENT:1>Y<GRIDSQUARE:6>JO70AB<EOR>"},
        // A short locator still stands behind the fixed length 6.
        {row("59012", "SSB", "JO70"), "432",
         "<QSO_DATE:8>20260502<TIME_ON:4>0709<CALL:5>OK1XY<RST_SENT:2>59<RST_RCVD:2>59"
         "<FREQ:3>432<MODE:3>SSB<QSL_SENT:1>Y<GRIDSQUARE:6>JO70<EOR>"},
        // Lengths count the bytes of Windows-1252.
        {row("59012", "SSB", "JO70AB", "", "J\xC3\xB6rg"), "144",
         "<QSO_DATE:8>20260502<TIME_ON:4>0709<CALL:5>OK1XY<RST_SENT:2>59<RST_RCVD:2>59"
         "<FREQ:3>144<MODE:3>SSB<QSL_SENT:1>Y<GRIDSQUARE:6>JO70AB<NAME:4>J\xF6rg<EOR>"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(adifRecord(c.cells, c.freq), c.record);
}

// All bands of a real log: deleted QSOs left out, duplicates written, each
// band with its frequency or its box text.
TEST(Adif, WholeLogAcrossBands) {
    test::TempDir dir;
    ContestLog log = test::makeLog(dir / "Logs");
    test::addRows(log, 1,
                  {qso(1, "DL1ABC", "JN58TD", 300), deleted(qso(2, "SP9ZZ", "KN09AA", 600)),
                   dupe(qso(3, "DL1ABC", "JN58TD", 0))});
    QsoRow q = qso(1, "OK1XY", "JO70AB", 205, "2026-05-03 01:02:00", "CW", "CW", "599", "599001");
    q.qrg = 432;
    test::addRows(log, 2, {q});

    Settings settings{IniFile(dir / "OrvantaContest.INI")};
    settings.set(keys::ADIFQRG(1), "144.300");
    const AdifFrequencies freqs = adifFrequencies(settings);
    EXPECT_EQ(freqs[1], "144.300");
    EXPECT_EQ(freqs[2], "432");
    EXPECT_EQ(freqs[9], "47000");

    const auto bands = evaluateAllBands(log, nullptr);
    ASSERT_EQ(bands.size(), 10u);
    test::writeFile(dir / "out.ADI", "an older file");
    const auto path = writeAdif(dir / "out.adi", bands, freqs);
    EXPECT_EQ(path, dir / "out.adi");
    const auto lines = crlfLines(fileio::readAll(path));
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(lines[0], "; This file was created by OrvantaContest v" + programVersionText());
    EXPECT_EQ(lines[1], "<EOH>");
    EXPECT_NE(lines[2].find("<CALL:6>DL1ABC"), std::string::npos);
    EXPECT_NE(lines[2].find("<FREQ:7>144.300"), std::string::npos);
    EXPECT_NE(lines[3].find("<CALL:6>DL1ABC"), std::string::npos); // the duplicate
    EXPECT_EQ(lines[4],
              "<QSO_DATE:8>20260503<TIME_ON:4>0102<CALL:5>OK1XY<RST_SENT:3>599<RST_RCVD:3>599"
              "<FREQ:3>432<MODE:2>CW<QSL_SENT:1>N<GRIDSQUARE:6>JO70AB<EOR>");
    for (const auto& l : lines)
        EXPECT_EQ(l.find("SP9ZZ"), std::string::npos);

    // Empty bands only: the two header lines.
    test::TempDir other;
    ContestLog empty = test::makeLog(other / "Logs");
    EXPECT_EQ(crlfLines(adifText(evaluateAllBands(empty, nullptr), freqs)).size(), 2u);
}

TEST(Adif, StoredFrequenciesAreTrimmed) {
    test::TempDir dir;
    Settings settings{IniFile(dir / "OrvantaContest.INI")};
    AdifFrequencies boxes{};
    boxes[0] = "  50.200 ";
    boxes[3] = "1296.2";
    setAdifFrequencies(settings, boxes);
    const AdifFrequencies f = adifFrequencies(settings);
    EXPECT_EQ(f[0], "50.200");
    EXPECT_EQ(f[3], "1296.2");
    EXPECT_EQ(f[1], "144");
}

TEST(TextListing, LinesStatisticsAndErrorRows) {
    test::TempDir dir;
    ContestLog log = test::makeLog(dir / "Logs");
    test::addRows(log, 1,
                  {qso(1, "DL1ABC", "JN58TD", 300), deleted(qso(2, "SP9ZZ", "KN09AA", 600)),
                   dupe(qso(3, "OK1XY", "JO70AB", 0))});
    const auto bands = evaluateAllBands(log, &test::realCountries());
    Texts texts;
    TextListingOptions o;
    o.now = DateTime{2026, 5, 4, 10, 30, 0};
    const auto withStats = crlfLines(textListing(bands, texts, o));
    o.withStatistics = false;
    const auto without = crlfLines(textListing(bands, texts, o));

    EXPECT_EQ(withStats[0], "; This file was created by OrvantaContest v" + programVersionText());
    EXPECT_EQ(withStats[1], "");
    EXPECT_EQ(withStats[2], "Test Contest\tRufzeichen:");
    EXPECT_EQ(withStats[3], "MyCall:\tOE1ABC");
    EXPECT_EQ(withStats[4], "MyLocator:\tJN78DF");
    EXPECT_EQ(withStats[5], "144 MHz");
    EXPECT_EQ(withStats[6], "QSOs:\t2");
    EXPECT_EQ(withStats[7], "Punkte:\t300");
    // The statistic block is all that the answer changes: ten values, the
    // band line and the closing empty line.
    EXPECT_EQ(withStats.size(), without.size() + 12);

    const std::size_t dash = without.size() - 5;
    EXPECT_EQ(without[dash], std::string(86, '-'));
    EXPECT_EQ(without[dash - 1].rfind("2026-05-04 10:30", 0), 0u);
    EXPECT_EQ(without[dash + 1],
              "144 ODX  0001 2026-05-02 12:00 DL1ABC         59  59001   JN58TD SSB   300");
    EXPECT_EQ(without[dash + 2], "144      0002 2026-05-02 12:00  ERROR    ");
    EXPECT_EQ(without[dash + 3].rfind("144 DUPE 0003 2026-05-02 12:00 OK1XY", 0), 0u);
    EXPECT_EQ(without.back(), "");

    const auto p = writeTextListing(dir / "list", bands, texts, o);
    EXPECT_EQ(p, dir / "list.TXT");
    EXPECT_EQ(crlfLines(fileio::readAll(p)), without);
}

TEST(Adif, AQsosOwnFrequencyStandsBeforeTheBandsFrequency) {
    test::TempDir dir;
    ContestLog log = test::makeLog(dir / "Logs");
    QsoRow withRig = qso(1, "OK1XY", "JO70AB", 205);
    withRig.qrg = 10000;
    withRig.freqHz = 10'368'100'500;
    QsoRow without = qso(2, "DL1ABC", "JN58TD", 300);
    without.qrg = 10000;
    test::addRows(log, 7, {withRig, without});
    AdifFrequencies freqs{};
    freqs[7] = "10368";
    const auto lines = crlfLines(adifText(evaluateAllBands(log, nullptr), freqs));
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_NE(lines[2].find("<FREQ:10>10368.1005<MODE"), std::string::npos) << lines[2];
    EXPECT_NE(lines[3].find("<FREQ:5>10368<MODE"), std::string::npos) << lines[3];
    EXPECT_EQ(adifMHz(432'200'000), "432.2");
    EXPECT_EQ(adifMHz(50'000'000), "50");
}
