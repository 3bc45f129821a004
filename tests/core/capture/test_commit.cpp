#include "capture_fixture.h"

#include "core/util/sqlite.h"

using namespace orv;
using orv::test::CaptureTest;

TEST_F(CaptureTest, CommitStoresRowAndTotalsAndPreparesTheNextQso) {
    EntryRow r = row("dl1xyz", "jn88ef", "599001", "599");
    r.mode = "CW";
    r.note = "  hello ";
    r.prop = "tropo";
    r.op = "OE1ABC";
    const CommitResult res = capture->Uebernehmen(r);
    ASSERT_EQ(res.kind, CommitResult::Kind::Stored);

    const auto rows = log->rows(k144);
    ASSERT_EQ(rows.size(), 1u);
    const QsoRow& q = rows[0];
    EXPECT_EQ(q.call, "DL1XYZ");
    EXPECT_EQ(q.locator, "JN88EF");
    EXPECT_EQ(q.qrg, 144);
    EXPECT_EQ(q.qsoNr, 1);
    EXPECT_EQ(q.qrb, 155);
    EXPECT_EQ(q.rstGeg, "599");
    EXPECT_EQ(q.rstErh, "599001");
    EXPECT_EQ(q.notice, "hello");
    EXPECT_EQ(q.ausBr, "tro");
    EXPECT_EQ(q.datTime.toStorage(), "2026-05-02 14:30:00");
    EXPECT_FALSE(q.errQso);
    EXPECT_EQ(log->totals(k144), (BandTotals{155, 155, 1}));

    // The row is ready for the next QSO; a three-digit report stays three digits.
    EXPECT_EQ(r.call, "");
    EXPECT_EQ(r.locator, "");
    EXPECT_EQ(r.rstNr, "");
    EXPECT_EQ(r.rst, "599");
    EXPECT_EQ(r.qsl, "No");
    EXPECT_EQ(r.serial, "002");
    EXPECT_EQ(capture->state().kmPerQso(), 155);
    EXPECT_EQ(capture->state().GrossfeldZahl(), 1);
    EXPECT_EQ(capture->lastCall(), "DL1XYZ");
    EXPECT_EQ(gridCells(res.stored)[13], "89°");
}

TEST_F(CaptureTest, ChecksRunInTheirOrderAndRefuseWithoutStoring) {
    struct Case {
        std::string call, locator, rstNr, rst, mode, time;
        int text;
        std::string field;
    } cases[] = {
        {"DL", "JN88EF", "59001", "59", "SSB", "14:30", 1, "Text3"},
        {"  DL  ", "JN8", "5", "5", "SSB", "x", 1, "Text3"},
        {"DL1AB", "JN88E", "5", "5", "SSB", "14:30", 2, "Text7"},
        {"DL1AB", "JN88EF", "5900", "59", "SSB", "14:30", 3, "Text6"},
        {"DL1AB", "JN88EF", "59001", "59", "CW", "14:30", 3, "Text6"},
        {"DL1AB", "JN88EF", "599000001", "59", "SSB", "14:30", 3, "Text6"},
        {"DL1AB", "JN88EF", "59001", "5", "SSB", "14:30", 4, "Text4"},
        {"DL1AB", "JN88EZ", "59001", "59", "SSB", "14:30", 2, "Text7"},
        {"DL1AB", "ZZ88EF", "59001", "59", "SSB", "14:30", 2, "Text7"},
        {"DL1AB", "JN88EF", "59001", "59", "SSB", "25:00", 14, "Text2"},
        {"DL1ABCDEFGHIJKLM", "JN88EF", "59001", "59", "SSB", "14:30", 1, "Text3"},
    };
    for (const auto& c : cases) {
        EntryRow r = row(c.call, c.locator, c.rstNr, c.rst);
        r.mode = c.mode;
        r.time = c.time;
        const EntryRow before = r;
        const CommitResult res = capture->Uebernehmen(r);
        EXPECT_EQ(res.kind, CommitResult::Kind::Refused) << c.call << " " << c.locator;
        EXPECT_EQ(res.failure.text, c.text) << c.call << " " << c.locator << " " << c.rstNr;
        EXPECT_EQ(res.failure.field, c.field) << c.call << " " << c.locator;
        EXPECT_EQ(r.call, before.call);
    }
    EntryRow badSerial = row("DL1AB", "JN88EF");
    badSerial.serial = "12a";
    const CommitResult serialRes = capture->Uebernehmen(badSerial);
    EXPECT_EQ(serialRes.failure.text, 225);
    EXPECT_EQ(serialRes.failure.field, "Text5");
    EXPECT_EQ(log->rowCount(k144), 0);

    // The edges that pass: three characters of call, a six-digit CW report.
    EntryRow ok = row(" DL1 ", "JN88EF", "599001");
    ok.mode = "CW";
    EXPECT_EQ(capture->Uebernehmen(ok).kind, CommitResult::Kind::Stored);
}

TEST_F(CaptureTest, DuplicateIsShownAndNothingIsStored) {
    commit("DL1XYZ", "JN88EF");
    EntryRow again = row("DL1XYZ", "JO50AA");
    const CommitResult res = capture->Uebernehmen(again);
    ASSERT_EQ(res.kind, CommitResult::Kind::Duplicate);
    EXPECT_EQ(res.duplicate.dup[1], "DL1XYZ");
    EXPECT_EQ(res.duplicate.dup[3], "001");
    EXPECT_EQ(res.duplicate.dup[5], "JN88EF");
    EXPECT_EQ(res.duplicate.dup[6], "155");
    EXPECT_EQ(res.duplicate.dup[9], "!!DOPPELVERBINDUNG!! ");
    EXPECT_EQ(again.call, "DL1XYZ") << "the entry row stays as typed";
    EXPECT_EQ(log->rowCount(k144), 1);
    // Another band is no duplicate.
    capture->selectBand(k432);
    EntryRow other = row("DL1XYZ", "JN88EF");
    EXPECT_EQ(capture->Uebernehmen(other).kind, CommitResult::Kind::Stored);
}

TEST_F(CaptureTest, EveryFormOfALoggedCallIsADuplicateAndScoresOnce) {
    const GridRow first = commit("DL1XYZ", "JN88EF");
    for (const char* form : {"dl1xyz", "DL1XYZ ", " DL1XYZ", "Dl1xYz", "  dl1xyz  "}) {
        EntryRow again = row(form, "JN88EF");
        EXPECT_EQ(capture->Uebernehmen(again).kind, CommitResult::Kind::Duplicate) << form;
        EXPECT_TRUE(capture->CallExistTest(form).has_value()) << form;
    }
    EXPECT_EQ(log->rowCount(k144), 1);
    EXPECT_EQ(capture->state().PGesamt, first.qso.qrb);
    EXPECT_EQ(log->totals(k144).pGesamt, first.qso.qrb);
}

TEST_F(CaptureTest, OdxIsStrictlyGreaterAndSerialsCount) {
    commit("DL1AAA", "JN88EF"); // 155 km
    commit("DL2BBB", "JN68CF"); // the same distance to the west: a tie keeps the first
    EXPECT_EQ(capture->state().ODXNr, 1);
    commit("DL3CCC", "JO62QM");
    EXPECT_GT(capture->state().ODX, 155);
    EXPECT_EQ(capture->state().ODXNr, 3);
    EXPECT_EQ(capture->state().nextSerial(), "004");
    EXPECT_EQ(log->totals(k144).pGesamt, liveSum(k144));
    EXPECT_EQ(log->totals(k144).odxNr, 3);
}

TEST_F(CaptureTest, DatePanelShiftsTheClockButStoresTheTypedTime) {
    CaptureConfig cfg = capture->config();
    cfg.zeitPlusMinus = -2;
    capture->setConfig(cfg);
    EntryRow r = row("DL1XYZ", "JN88EF");
    r.datePanel = true;
    r.date = "2026-05-03";
    r.time = "01:15";
    ASSERT_EQ(capture->Uebernehmen(r).kind, CommitResult::Kind::Stored);
    // 01:15 less two hours is the day before; the stored time stays 01:15.
    EXPECT_EQ(log->rows(k144)[0].datTime.toStorage(), "2026-05-02 01:15:00");

    EntryRow bad = row("DL2XYZ", "JN88EF");
    bad.datePanel = true;
    bad.date = "2026-02-30";
    EXPECT_EQ(capture->Uebernehmen(bad).failure.text, 13);
}

TEST_F(CaptureTest, WorkedBeforeAndOtherBands) {
    commit("DL1XYZ", "JN88EF");
    commit("OE3ABC", "JN88AA");
    capture->selectBand(k432);
    commit("DL1XYZ", "JN88EF");
    capture->selectBand(k144);

    const auto lines = capture->workedBeforeLines("1XY", nullptr);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0], "DL1XYZ       JN88EF ***** BEREITS GEARBEITET *****");
    EXPECT_TRUE(capture->workedBeforeLines("1X", nullptr).empty())
        << "two characters search nothing";
    const std::set<std::string> onlyOe{"OE3ABC"};
    EXPECT_TRUE(capture->workedBeforeLines("1XY", &onlyOe).empty());

    const auto byLocator = capture->workedBeforeLinesByLocator("jn88", "");
    ASSERT_EQ(byLocator.size(), 2u);
    EXPECT_EQ(byLocator[1], "OE3ABC       JN88AA ***** BEREITS GEARBEITET *****");
    EXPECT_EQ(capture->workedBeforeLinesByLocator("JN88", "OE3").size(), 1u);
    dialogs.answers = {Answer::Yes};
    ASSERT_TRUE(capture->ErrQSO(2));
    EXPECT_EQ(capture->workedBeforeLinesByLocator("JN88AA", "").size(), 0u) << "deleted rows never";

    const auto also = capture->WorkAlso("dl1xyz");
    ASSERT_EQ(also.size(), 1u);
    EXPECT_EQ(also[0].band, k432);
    EXPECT_EQ(also[0].cells[0], "432");
    EXPECT_EQ(also[0].cells[4], "001");
}

TEST_F(CaptureTest, ABandOfAHundredThousandQsosLoadsAndTakesTheNext) {
    {
        sql::Transaction tx(log->db());
        auto st = log->db().prepare(
            "INSERT INTO \"144MHz\" (Call, Locator, QRG, DatTime, RSTgeg, QSONr, RSTerh, QRB, QSL,"
            " Notice, Mod, Dupe, Name, ModRX, AusBr, ErrQSO, OPCall) VALUES (?1, 'JN88EF', 144,"
            " '2026-05-02 10:00:00', '59', ?2, '59001', 155, 0, '', 'SSB', 0, '', 'SSB', '', 0, "
            "'')");
        for (int i = 1; i <= 100000; ++i) {
            st.bind(1, "K" + std::to_string(i)).bind(2, i);
            st.run();
        }
        tx.commit();
    }
    log->writeTotals(k144, BandTotals{155LL * 100000, 155, 1});
    capture->selectBand(k144);
    EXPECT_EQ(capture->state().rows().size(), 100000u);
    EXPECT_EQ(capture->state().nextSerial(), "100001");
    EXPECT_EQ(capture->workedBeforeLines("K99999", nullptr).size(), 1u);
    commit("DL1XYZ", "JN88EF");
    EXPECT_EQ(log->rowCount(k144), 100001);
    EXPECT_EQ(capture->state().rows().back().qso.qsoNr, 100001);
    EXPECT_EQ(log->totals(k144).pGesamt, liveSum(k144));
}
