#include <gtest/gtest.h>

#include "core/logstore/schema.h"
#include "core/submission/evaluation.h"
#include "submission_support.h"

using namespace orv;
using test::deleted;
using test::dupe;
using test::qso;

namespace {

constexpr int k144 = 1;

std::vector<std::string> column(const Evaluation& ev, int col) {
    std::vector<std::string> out;
    for (const auto& r : ev.rows)
        out.push_back(r.cells[static_cast<std::size_t>(col)]);
    return out;
}

} // namespace

// One band with every kind of row, under a band weight of 3: points are
// QRB times the weight, deleted rows count for nothing but their own
// number, duplicates count everywhere, and the ODX mark wins over "DUPE".
TEST(Evaluation, StatisticValuesOfAMixedBand) {
    test::TempDir dir;
    ContestLog log = test::makeLog(dir / "Logs", {1, 3, 1, 1, 1, 1, 1, 1, 1, 1});
    test::addRows(log, k144,
                  {
                      qso(1, "dl1abc", "JN58TD", 300),         // Germany
                      qso(2, "OK1XY", "JO70AB", 205),          // Czech Republic
                      deleted(qso(3, "SP9ZZ", "KN09AA", 600)), // deleted: nothing counts
                      dupe(qso(4, "DL1ABC", "JN58TE", 0)),     // duplicate, same square
                      qso(5, "KH6ABC", "BL11BH", 900),         // Hawaii, not USA
                      deleted(dupe(qso(6, "OK1XY", "JO70AB", 0))),
                      dupe(qso(7, "OE3XYZ", "JN88EF", 950)), // the ODX, stored as a duplicate
                  });
    const Evaluation ev = evaluate(log, k144, &test::realCountries());

    ASSERT_EQ(ev.rows.size(), 7u);
    EXPECT_EQ(ev.multiplier, 3);
    EXPECT_EQ(column(ev, evalcol::Punkte),
              (std::vector<std::string>{"900", "615", "1800", "0", "2700", "0", "2850"}));
    EXPECT_EQ(column(ev, evalcol::Info),
              (std::vector<std::string>{"", "", "", "DUPE", "", "", "ODX"}));
    EXPECT_EQ(
        column(ev, evalcol::ErrQSO),
        (std::vector<std::string>{"False", "False", "True", "False", "False", "True", "False"}));
    EXPECT_EQ(ev.rows[0].cells[evalcol::Call], "DL1ABC");
    EXPECT_EQ(ev.points, 3 * (300 + 205 + 0 + 900 + 950));
    EXPECT_EQ(ev.dupes, 2); // the ODX row counted as a duplicate before its mark
    EXPECT_EQ(ev.deleted, 2);
    EXPECT_EQ(ev.qsos, 5);
    EXPECT_EQ(ev.kmPerQso, ev.points / 5);
    EXPECT_EQ(ev.odx, 950 * 3);
    // JN58TD and JN58TE: two locators, one square; the deleted KN09AA is out.
    EXPECT_EQ(ev.locatorCount, 5);
    EXPECT_EQ(ev.grossfeldCount, 4);
    EXPECT_EQ(ev.locatorList, "0JN58TD,JO70AB,JN58TE,BL11BH,JN88EF,");
    EXPECT_EQ(ev.grossfeldList, "JN58,JO70,BL11,JN88,");

    ASSERT_EQ(ev.countries.size(), 4u);
    EXPECT_EQ(ev.countries[0].country, "Fed. Rep. of Germany");
    EXPECT_EQ(ev.countries[0].qsos, 2); // the duplicate counts
    EXPECT_EQ(ev.countries[1].country, "Czech Republic");
    EXPECT_EQ(ev.countries[1].qsos, 1); // the deleted OK1XY does not
    EXPECT_EQ(ev.countries[2].country, "Hawaii");
    EXPECT_EQ(ev.countries[3].country, "Austria");
    EXPECT_TRUE(ev.callsWithoutCountry.empty());

    // Deleted rows are red, because the band has an ODX number.
    EXPECT_TRUE(ev.rows[2].red);
    EXPECT_TRUE(ev.rows[5].red);
    EXPECT_FALSE(ev.rows[0].red);
    ASSERT_NE(ev.odxRow(), nullptr);
    EXPECT_EQ(ev.odxRow()->cells[evalcol::Call], "OE3XYZ");
    EXPECT_EQ(ev.contName, "Test Contest");
    EXPECT_EQ(ev.myLocator, "JN78DF");
}

// The cells of one row, column by column, in the grid's binding order.
TEST(Evaluation, CellsStandInTheirColumns) {
    test::TempDir dir;
    ContestLog log = test::makeLog(dir / "Logs", {1, 2, 1, 1, 1, 1, 1, 1, 1, 1});
    QsoRow q = qso(17, "ok1xy", "JO70AB", 205, "2026-05-02 23:07:00", "CW", "SSB", "599", "59012");
    q.qsl = true;
    q.name = "Jan";
    q.notice = "note";
    q.ausBr = "TR";
    q.opCall = "OE1OP";
    test::addRows(log, k144, {q});
    const Evaluation ev = evaluate(log, k144, nullptr);
    ASSERT_EQ(ev.rows.size(), 1u);
    const EvalCells expected{"17",  "2026-05-02", "23:07", "144", "OK1XY", "JO70AB",
                             "599", "59012",      "410",   "CW",  "SSB",   "Yes",
                             "Jan", "note",       "ODX",   "TR",  "False", "OE1OP"};
    EXPECT_EQ(ev.rows[0].cells, expected);
    EXPECT_TRUE(ev.countries.empty()); // no country list given
}

TEST(Evaluation, ZeroCasesWithoutDivision) {
    test::TempDir dir;
    ContestLog log = test::makeLog(dir / "Logs");
    // Only deleted QSOs.
    test::addRows(
        log, k144,
        {deleted(qso(1, "DL1ABC", "JN58TD", 300)), deleted(qso(2, "OK1XY", "JO70AB", 205))});
    Evaluation ev = evaluate(log, k144, &test::realCountries());
    EXPECT_EQ(ev.qsos, 0);
    EXPECT_EQ(ev.points, 0);
    EXPECT_EQ(ev.kmPerQso, 0);
    EXPECT_EQ(ev.deleted, 2);
    EXPECT_EQ(ev.locatorCount, 0);
    EXPECT_EQ(ev.countryCount(), 0);

    // An empty band: no rows, all zero, the other band still marked.
    ev = evaluate(log, 2, &test::realCountries());
    EXPECT_TRUE(ev.rows.empty());
    EXPECT_EQ(ev.points, 0);
    EXPECT_EQ(ev.odx, 0);
    EXPECT_TRUE(ev.bandsWithQsos[k144]);
    EXPECT_FALSE(ev.bandsWithQsos[2]);
}

// A Null ODXNr marks no row and leaves deleted rows uncoloured; a Null ODX
// reads as 0.
TEST(Evaluation, NullOdxNumberMarksNothing) {
    test::TempDir dir;
    ContestLog log = test::makeLog(dir / "Logs");
    test::addRows(log, k144,
                  {dupe(qso(1, "DL1ABC", "JN58TD", 300)), deleted(qso(2, "OK1XY", "JO70AB", 205))});
    log.db().exec("UPDATE \"MyData\" SET \"ODXNr144\" = NULL, \"ODX144\" = NULL");
    const Evaluation ev = evaluate(log, k144, nullptr);
    EXPECT_EQ(ev.rows[0].cells[evalcol::Info], "DUPE");
    EXPECT_FALSE(ev.rows[1].red);
    EXPECT_EQ(ev.odx, 0);
    EXPECT_EQ(ev.odxRow(), nullptr);
}

// Only a call whose first character begins no prefix of the list is
// reported, deleted rows included; "1ZZZ" begins like "1A" and so only finds
// no country.
TEST(Evaluation, CallWithoutCountryIsReported) {
    test::TempDir dir;
    ContestLog log = test::makeLog(dir / "Logs");
    test::addRows(log, k144,
                  {qso(1, "Q1ABC", "JN58TD", 300), qso(2, "DL1ABC", "JN58TE", 301),
                   qso(3, "1ZZZ", "JN58TF", 302), deleted(qso(4, "Q2XYZ", "JN58TG", 303))});
    const Evaluation ev = evaluate(log, k144, &test::realCountries());
    EXPECT_EQ(ev.callsWithoutCountry, (std::vector<std::string>{"Q1ABC", "Q2XYZ"}));
    EXPECT_EQ(ev.countryCount(), 1);
    EXPECT_EQ(ev.locatorCount, 3); // calls without a country still count their locators
}

TEST(Evaluation, OldLogVersionIsRefused) {
    test::TempDir dir;
    const auto path = dir / "Old.sqlite";
    test::writeOldLog(path);
    const Result<Evaluation> r = evaluateLogFile(path, k144, nullptr);
    ASSERT_FALSE(r.ok());
    EXPECT_EQ(r.failure().text, 208);
}

// Click-to-sort: numbers as numbers, a second click turns the order, another
// column starts ascending again, and an empty grid is left alone.
TEST(Evaluation, SortByColumn) {
    test::TempDir dir;
    ContestLog log = test::makeLog(dir / "Logs");
    test::addRows(log, k144,
                  {qso(1, "DL1ABC", "JN58TD", 1200), qso(2, "OK1XY", "JO70AB", 155),
                   qso(3, "AA1A", "FN42AA", 90)});
    Evaluation ev = evaluate(log, k144, nullptr);
    GridSorter sorter;
    EXPECT_EQ(sorter.click(ev.rows, evalcol::Punkte), GridSorter::Direction::Ascending);
    EXPECT_EQ(column(ev, evalcol::Punkte), (std::vector<std::string>{"90", "155", "1200"}));
    EXPECT_EQ(sorter.click(ev.rows, evalcol::Punkte), GridSorter::Direction::Descending);
    EXPECT_EQ(column(ev, evalcol::Punkte), (std::vector<std::string>{"1200", "155", "90"}));
    EXPECT_EQ(sorter.click(ev.rows, evalcol::Call), GridSorter::Direction::Ascending);
    EXPECT_EQ(column(ev, evalcol::Call), (std::vector<std::string>{"AA1A", "DL1ABC", "OK1XY"}));
    EXPECT_EQ(sorter.click(ev.rows, evalcol::Punkte), GridSorter::Direction::Ascending);

    std::vector<EvalRow> none;
    GridSorter fresh;
    EXPECT_EQ(fresh.click(none, evalcol::Punkte), GridSorter::Direction::None);

    std::vector<CountryCount> countries{{2, "Austria"}, {10, "Czech Republic"}, {1, "Italy"}};
    GridSorter countrySorter;
    countrySorter.click(countries, 0);
    EXPECT_EQ(countries[0].qsos, 1);
    EXPECT_EQ(countries[2].qsos, 10);
}

// The substring search of the lists: a locator that is a piece of one
// already listed is not counted again; a short one is taken as it stands.
TEST(Evaluation, GrossfeldAddIsASubstringSearch) {
    Evaluation ev;
    GrossfeldADD(ev, "jn78df");
    GrossfeldADD(ev, "JN78DG");
    GrossfeldADD(ev, "JN78");
    GrossfeldADD(ev, "JO70AB");
    EXPECT_EQ(ev.locatorList, "0JN78DF,JN78DG,JO70AB,");
    EXPECT_EQ(ev.locatorCount, 3);
    EXPECT_EQ(ev.grossfeldList, "JN78,JO70,");
    EXPECT_EQ(ev.grossfeldCount, 2);
    EXPECT_EQ(sortedLocators(ev), (std::vector<std::string>{"JN78DF", "JN78DG", "JO70AB"}));

    Evaluation empty;
    EXPECT_TRUE(sortedLocators(empty).empty());
    GrossfeldADD(empty, "JN");
    EXPECT_TRUE(sortedLocators(empty).empty()); // "0JN," is shorter than five
    GrossfeldADD(empty, "AA");
    EXPECT_EQ(sortedLocators(empty), (std::vector<std::string>{"AA", "JN"}));
}

// The run keeps a hash beside the lists; it must give exactly what the
// substring search gives, odd locators from imported logs included.
TEST(Evaluation, ListsMatchTheSubstringSearch) {
    const std::vector<std::string> locators{
        "JN78DF", "N78DF", "JN78",   "jn78dg", "0JN78D", "",  "JN7",    "F,JN78", "DF,JN7",
        "JN78DF", "JO70",  "JO70AB", "78DF",   "KN09AA", "0", "ÄB12CD", "ÄB12C"};
    test::TempDir dir;
    ContestLog log = test::makeLog(dir / "Logs");
    std::vector<QsoRow> rows;
    for (std::size_t i = 0; i < locators.size(); ++i)
        rows.push_back(qso(static_cast<std::int64_t>(i + 1), "DL1ABC", locators[i], 100));
    test::addRows(log, k144, rows);
    const Evaluation ev = evaluate(log, k144, nullptr);

    Evaluation plain;
    for (const auto& l : locators)
        GrossfeldADD(plain, l);
    EXPECT_EQ(ev.locatorList, plain.locatorList);
    EXPECT_EQ(ev.locatorCount, plain.locatorCount);
    EXPECT_EQ(ev.grossfeldList, plain.grossfeldList);
    EXPECT_EQ(ev.grossfeldCount, plain.grossfeldCount);
    // Pieces of listed entries are not new: "0JN78D" lies in "0JN78DF,",
    // "F,JN78" across "DF,JN78DG".
    EXPECT_EQ(plain.locatorList, "0JN78DF,JN78DG,JO70,JO70AB,KN09AA,ÄB12CD,");
    EXPECT_EQ(plain.grossfeldList, "JN78,N78D,0JN7,F,JN,DF,J,JO70,78DF,KN09,ÄB12,");
}
