#include <gtest/gtest.h>

#include "core/i18n/texts.h"
#include "core/submission/group_change.h"
#include "core/submission/log_statistics.h"
#include "core/util/sqlite.h"
#include "submission_support.h"

using namespace orv;
using test::deleted;
using test::qso;

namespace {

constexpr int k144 = 1;

// A band of five QSOs numbered 1, 2, 4, 5 (a gap at 3) and a second row
// numbered 5, at 23:45 on 2 May.
ContestLog bandWithGap(const std::filesystem::path& folder) {
    ContestLog log = test::makeLog(folder);
    test::addRows(log, k144,
                  {qso(1, "DL1ABC", "JN58TD", 300, "2026-05-02 23:45:00"),
                   qso(2, "OK1XY", "JO70AB", 205, "2026-05-02 23:45:00"),
                   deleted(qso(4, "SP9ZZ", "KN09AA", 600, "2026-05-02 23:45:00")),
                   qso(5, "OE3XYZ", "JN88EF", 155, "2026-05-02 23:45:00"),
                   qso(5, "I1ABC", "JN45AA", 700, "2026-05-02 23:45:00")});
    return log;
}

} // namespace

// Each option changes its field, and only its field, of the QSOs in range.
TEST(GroupChange, EveryFieldOverARangeWithGaps) {
    const struct {
        GroupField field;
        std::string value;
        std::function<std::string(const QsoRow&)> read;
        std::string expected;
    } cases[] = {
        {GroupField::Time, "08:15", [](const QsoRow& q) { return q.datTime.toStorage(); },
         "2026-05-02 08:15:00"},
        {GroupField::AddTime, "0:30", [](const QsoRow& q) { return q.datTime.toStorage(); },
         "2026-05-03 00:15:00"},
        {GroupField::SubTime, "23:50", [](const QsoRow& q) { return q.datTime.toStorage(); },
         "2026-05-01 23:55:00"},
        {GroupField::RxMod, " SSTV-X ", [](const QsoRow& q) { return q.modRx; }, "SSTV-"},
        {GroupField::TxMod, "RTTY", [](const QsoRow& q) { return q.mod; }, "RTTY"},
        {GroupField::Qsl, "Yes", [](const QsoRow& q) { return std::string(q.qsl ? "1" : "0"); },
         "1"},
        {GroupField::Note, std::string(120, 'n'), [](const QsoRow& q) { return q.notice; },
         std::string(100, 'n')},
        {GroupField::Name, "Jan", [](const QsoRow& q) { return q.name; }, "Jan"},
        {GroupField::Prop, "tropo", [](const QsoRow& q) { return q.ausBr; }, "TRO"},
        {GroupField::OpCall, "oe1op/very/long/call", [](const QsoRow& q) { return q.opCall; },
         "OE1OP/VERY/LONG"},
    };
    for (const auto& c : cases) {
        test::TempDir dir;
        ContestLog log = bandWithGap(dir / "Logs");
        const MyDataRow before = log.myData();
        const auto n = applyGroupChange(log, k144, GroupChange{"2", "5", c.field, c.value});
        ASSERT_TRUE(n.ok()) << c.value;
        EXPECT_EQ(*n, 3); // 2, 4 (deleted, changed too) and the first 5
        const auto rows = log.rows(k144);
        EXPECT_EQ(c.read(rows[0]), c.read(qso(1, "DL1ABC", "JN58TD", 300, "2026-05-02 23:45:00")))
            << "QSO 1 is outside the range";
        EXPECT_EQ(c.read(rows[1]), c.expected);
        EXPECT_EQ(c.read(rows[2]), c.expected);
        EXPECT_EQ(c.read(rows[3]), c.expected);
        EXPECT_EQ(c.read(rows[4]), c.read(qso(5, "I1ABC", "JN45AA", 700, "2026-05-02 23:45:00")))
            << "only the first row of a number is found";
        // Nothing else moves: distances and the running totals stay.
        EXPECT_EQ(rows[1].qrb, 205);
        EXPECT_EQ(rows[1].call, "OK1XY");
        EXPECT_EQ(log.myData().totals, before.totals);
    }
}

TEST(GroupChange, OneQsoAndRefusals) {
    test::TempDir dir;
    ContestLog log = bandWithGap(dir / "Logs");
    auto n = applyGroupChange(log, k144, GroupChange{"2", "2", GroupField::Name, "Eva"});
    ASSERT_TRUE(n.ok());
    EXPECT_EQ(*n, 1);
    EXPECT_EQ(log.rows(k144)[1].name, "Eva");

    const struct {
        GroupChange change;
        int text;
        const char* field;
    } bad[] = {
        {{"x", "5", GroupField::Name, "Eva"}, 225, "Text1"},
        {{"", "5", GroupField::Name, "Eva"}, 225, "Text1"},
        {{"5", "2", GroupField::Name, "Eva"}, 225, "Text2"},
        {{"1", "2.5", GroupField::Name, "Eva"}, 225, "Text2"},
        {{"1", "5", GroupField::Name, "  "}, 225, "Text3"},
        {{"1", "5", GroupField::OpCall, ""}, 225, "Combo1"},
        {{"1", "5", GroupField::Time, ""}, 14, "Text3"},
        {{"1", "5", GroupField::Time, "25:00"}, 14, "Text3"},
        {{"1", "5", GroupField::AddTime, "1"}, 14, "Text3"},
        {{"1", "5", GroupField::SubTime, "0:7"}, 14, "Text3"},
    };
    for (const auto& b : bad) {
        const auto r = applyGroupChange(log, k144, b.change);
        ASSERT_FALSE(r.ok()) << b.change.value;
        EXPECT_EQ(r.failure().text, b.text) << b.change.value;
        EXPECT_EQ(r.failure().field, b.field) << b.change.value;
    }
    // No refusal changed a row.
    for (const QsoRow& q : log.rows(k144)) {
        EXPECT_EQ(q.datTime.toStorage(), "2026-05-02 23:45:00");
        EXPECT_EQ(q.name, q.qsoNr == 2 ? "Eva" : "");
    }
    // A range without any QSO changes nothing and is no error.
    n = applyGroupChange(log, k144, GroupChange{"100", "200", GroupField::Name, "X"});
    ASSERT_TRUE(n.ok());
    EXPECT_EQ(*n, 0);
}

// The whole range is one transaction: a failure on the way leaves every row
// as it was.
TEST(GroupChange, FailureLeavesTheBandAsItWas) {
    test::TempDir dir;
    ContestLog log = bandWithGap(dir / "Logs");
    // A trigger refuses the third update of the run.
    log.db().exec(
        "CREATE TEMP TABLE n(c INTEGER); INSERT INTO n VALUES (0);"
        "CREATE TEMP TRIGGER stop BEFORE UPDATE ON main.\"144MHz\" BEGIN "
        "UPDATE n SET c = c + 1; SELECT RAISE(ABORT, 'stop') WHERE (SELECT c FROM n) = 3; "
        "END;");
    EXPECT_THROW(applyGroupChange(log, k144, GroupChange{"1", "5", GroupField::Name, "Eva"}),
                 sql::Error);
    log.db().exec("DROP TRIGGER stop");
    for (const QsoRow& q : log.rows(k144))
        EXPECT_EQ(q.name, "");
}

TEST(LogStatistics, FolderListingAndSums) {
    test::TempDir dir;
    const auto folder = dir / "Logs";
    {
        ContestLog a = test::makeLog(folder, {1, 1, 1, 1, 1, 1, 1, 1, 1, 1}, "A", "OE1ABC");
        test::addRows(a, k144,
                      {qso(1, "DL1ABC", "JN58TD", 300), qso(2, "OK1XY", "JO70AB", 205),
                       deleted(qso(3, "SP9ZZ", "KN09AA", 900))});
        ContestLog b = test::makeLog(folder, {1, 1, 1, 1, 1, 1, 1, 1, 1, 1}, "B", "OE1ABC");
        test::addRows(b, k144, {qso(1, "DL2XYZ", "JN58AA", 250), qso(2, "OE3XYZ", "JN88EF", 400)});
        QsoRow q = qso(3, "I1ABC", "JN45AA", 700);
        q.qrg = 432;
        test::addRows(b, 2, {q});
        ContestLog c = test::makeLog(folder, {1, 1, 1, 1, 1, 1, 1, 1, 1, 1}, "C", "OE9XYZ");
    }
    test::writeOldLog(folder / "Old.sqlite");
    test::writeFile(folder / "Broken.sqlite", "this is no database");
    test::writeFile(folder / "notes.txt", "x");

    EXPECT_EQ(listStatisticLogs(folder), (std::vector<std::string>{"A", "B", "C"}));
    EXPECT_TRUE(listStatisticLogs(dir / "missing").empty());

    const auto s = computeStatistics(folder, {"A", "B", "C"}, &test::realCountries());
    ASSERT_TRUE(s.ok());
    EXPECT_EQ(s->calls, (std::vector<std::string>{"OE1ABC", "OE9XYZ"})); // once each
    EXPECT_EQ(s->locators, std::vector<std::string>{"JN78DF"});
    const BandStatistic& b144 = s->bands[k144];
    EXPECT_EQ(b144.qsos, 4);
    EXPECT_EQ(b144.points, 300 + 205 + 250 + 400);
    EXPECT_EQ(b144.odx, 400);
    EXPECT_EQ(b144.grossfelder, (std::set<std::string>{"JN58", "JO70", "JN88"}));
    EXPECT_EQ(b144.locators.size(), 4u);
    EXPECT_EQ(b144.countries,
              (std::set<std::string>{"Fed. Rep. of Germany", "Czech Republic", "Austria"}));
    EXPECT_EQ(s->bands[2].qsos, 1);
    EXPECT_EQ(s->bands[2].odx, 700);
    EXPECT_EQ(s->bands[0].qsos, 0);

    const std::string report = statisticsReport(*s, Texts{});
    EXPECT_EQ(report.rfind("Statistik     Kurzübersicht\n---------------------------\n", 0), 0u);
    EXPECT_NE(report.find("OE1ABC, OE9XYZ"), std::string::npos);
    EXPECT_NE(report.find("144 MHz\nQSOs:      4\nPunkte:      1155\n"), std::string::npos);
    EXPECT_NE(report.find("km/QSO:      288\nODX:      400 km\n"), std::string::npos);
    EXPECT_EQ(report.find("50 MHz"), std::string::npos);
    EXPECT_NE(report.find("Gesamt\nQSOs:      5\nPunkte:      1855\n"), std::string::npos);

    auto refused = computeStatistics(folder, {"A", "Old"}, nullptr);
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.failure().text, 415);
    EXPECT_EQ(refused.failure().detail, "Old");
    EXPECT_FALSE(computeStatistics(folder, {}, nullptr).ok());
    EXPECT_FALSE(
        computeStatistics(folder, std::vector<std::string>(kMaxStatisticLogs + 1, "A"), nullptr)
            .ok());
}
