#include "capture_fixture.h"

using namespace orv;
using orv::test::CaptureTest;

TEST_F(CaptureTest, DeletingAsksAndTheSameCallMayBeLoggedAgain) {
    commit("DL1XYZ", "JN88EF");
    dialogs.answers = {Answer::No};
    EXPECT_FALSE(capture->ErrQSO(1));
    EXPECT_FALSE(log->rows(k144)[0].errQso);

    dialogs.answers = {Answer::Yes};
    ASSERT_TRUE(capture->ErrQSO(1));
    EXPECT_EQ(dialogs.asked.back(), texts(17));
    EXPECT_EQ(dialogs.titles.back(), texts(20));
    EXPECT_TRUE(log->rows(k144)[0].errQso);
    EXPECT_EQ(capture->state().deletedCount(), 1);
    EXPECT_EQ(capture->state().PGesamt, 0);
    EXPECT_EQ(capture->state().kmPerQso(), 0);
    EXPECT_EQ(capture->state().GrossfeldZahl(), 0);
    EXPECT_TRUE(capture->workedBeforeLines("XYZ", nullptr).empty());

    // The deleted call is no duplicate any more.
    commit("DL1XYZ", "JN88EF");
    EXPECT_EQ(log->rowCount(k144), 2);
    EXPECT_EQ(log->totals(k144).pGesamt, 155);
}

TEST_F(CaptureTest, DeletingTheOdxFallsBackAndTheLastLeavesAStaleStoredOdx) {
    commit("DL1AAA", "JN88EF"); // 155
    commit("DL2BBB", "JO62QM"); // the far one
    commit("DL3CCC", "JN68CF"); // 155 again
    const auto farKm = log->rows(k144)[1].qrb;
    ASSERT_EQ(capture->state().ODXNr, 2);

    dialogs.answers = {Answer::Yes};
    ASSERT_TRUE(capture->ErrQSO(2));
    EXPECT_EQ(capture->state().ODX, 155);
    EXPECT_EQ(capture->state().ODXNr, 1) << "ties go to the lower row";
    EXPECT_EQ(log->totals(k144), (BandTotals{310, 155, 1}));

    dialogs.answers = {Answer::Yes, Answer::Yes};
    ASSERT_TRUE(capture->ErrQSO(1));
    ASSERT_TRUE(capture->ErrQSO(3));
    EXPECT_EQ(capture->state().ODX, 0);
    EXPECT_EQ(capture->state().PGesamt, 0);
    // Stored ODX changes only on an improvement: the band change brings it back.
    EXPECT_EQ(log->totals(k144), (BandTotals{0, 155, 3}));
    capture->selectBand(k144);
    EXPECT_EQ(capture->state().ODX, 155);
    EXPECT_EQ(capture->state().PGesamt, 0);
    (void)farKm;
}

TEST_F(CaptureTest, RestoreIsRefusedWhenTheCallWasWorkedAgain) {
    commit("DL1XYZ", "JN88EF");
    dialogs.answers = {Answer::Yes};
    ASSERT_TRUE(capture->ErrQSO(1));
    commit("DL1XYZ", "JO62QM");
    const Status refused = capture->restore(0);
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.failure().text, 229);
    EXPECT_TRUE(log->rows(k144)[0].errQso);

    dialogs.answers = {Answer::Yes};
    ASSERT_TRUE(capture->ErrQSO(2));
    ASSERT_TRUE(capture->restore(0));
    EXPECT_FALSE(log->rows(k144)[0].errQso);
    EXPECT_EQ(log->totals(k144), (BandTotals{155, 155, 1}));
    EXPECT_EQ(capture->state().kmPerQso(), 155);
}

TEST_F(CaptureTest, CorrectionLoweringTheOdxLetsItFallBack) {
    commit("DL1AAA", "JN88EF"); // 155
    commit("DL2BBB", "JO62QM"); // ODX
    EditRow e = capture->editView(1);
    EXPECT_EQ(e.call, "DL2BBB");
    e.locator = "JN78DG";
    e.qrb = "5";
    ASSERT_TRUE(capture->UebernehmenEdit(1, e));
    EXPECT_EQ(capture->state().ODX, 155);
    EXPECT_EQ(capture->state().ODXNr, 1);
    EXPECT_EQ(capture->state().PGesamt, 160);
    EXPECT_EQ(log->totals(k144), (BandTotals{160, 155, 1}));
    EXPECT_EQ(log->rows(k144)[1].locator, "JN78DG");
    EXPECT_EQ(log->rows(k144)[1].qrb, 5);
}

TEST_F(CaptureTest, CorrectionToACallAlreadyOnTheBandMayScoreZero) {
    commit("DL1AAA", "JN88EF");
    commit("DL2BBB", "JN88EF");
    EditRow e = capture->editView(1);
    e.call = "dl1aaa";
    dialogs.answers = {Answer::Yes};
    ASSERT_TRUE(capture->UebernehmenEdit(1, e));
    EXPECT_EQ(dialogs.asked.back(), texts(21));
    EXPECT_EQ(log->rows(k144)[1].qrb, 0);
    EXPECT_EQ(log->rows(k144)[1].call, "DL1AAA");
    EXPECT_EQ(log->totals(k144).pGesamt, 155);

    EditRow bad = capture->editView(0);
    bad.time = "99:99";
    const Status s = capture->UebernehmenEdit(0, bad);
    ASSERT_FALSE(s);
    EXPECT_EQ(s.failure().text, 14);
    EXPECT_EQ(s.failure().field, "Text22");
}

TEST_F(CaptureTest, EmptyingABandNeedsBothAnswers) {
    commit("DL1AAA", "JN88EF");
    dialogs.answers = {Answer::Yes, Answer::Cancel};
    EXPECT_FALSE(capture->MnLogLoeschen());
    EXPECT_EQ(log->rowCount(k144), 1);
    dialogs.answers = {Answer::Yes, Answer::Ok};
    EXPECT_TRUE(capture->MnLogLoeschen());
    EXPECT_EQ(log->rowCount(k144), 0);
    EXPECT_EQ(log->totals(k144), (BandTotals{}));
}

TEST_F(CaptureTest, OdxMessageListsTheOdxRow) {
    commit("DL1AAA", "JN88EF");
    const std::string m = capture->odxMessage();
    EXPECT_EQ(m.rfind("Rufzeichen: \tDL1AAA\r\nLocator: \t\tJN88EF\r\n", 0), 0u) << m;
    EXPECT_NE(m.find("QRB: \t\t155"), std::string::npos);
    EXPECT_EQ(m.find("89°"), std::string::npos) << "the bearing is left out";
    EXPECT_EQ(m.substr(m.size() - 8), "Prop.: \t");
}

TEST_F(CaptureTest, LocatorPreviewCompletesPartialEntries) {
    auto p = capture->preview("JN88EF");
    ASSERT_TRUE(p);
    EXPECT_EQ(p->km, 155);
    EXPECT_EQ(p->bearing, "89°");
    EXPECT_TRUE(capture->preview("JN"));
    EXPECT_FALSE(capture->preview("J"));
    EXPECT_FALSE(capture->preview("JN88EZ"));
}

// A write that fails leaves the file and the screen as they were: nothing of
// the change is half done. A log without its MyData row makes every write
// of totals fail.
TEST_F(CaptureTest, FailedWritesChangeNeitherFileNorState) {
    commit("DL1AAA", "JN88EF");
    commit("DL2BBB", "JO62QM");
    log->db().exec("DELETE FROM MyData");
    const auto rowsBefore = log->rows(k144);
    const BandState stateBefore = capture->state();

    EntryRow r = row("DL3CCC", "JN88EF");
    EXPECT_ANY_THROW(capture->Uebernehmen(r));
    EXPECT_EQ(r.call, "DL3CCC");

    dialogs.answers = {Answer::Yes};
    EXPECT_ANY_THROW(capture->ErrQSO(2));

    EditRow e = capture->editView(1);
    e.qrb = "5";
    EXPECT_ANY_THROW(capture->UebernehmenEdit(1, e));

    EXPECT_EQ(log->rows(k144), rowsBefore);
    EXPECT_EQ(capture->state().rows().size(), stateBefore.rows().size());
    EXPECT_FALSE(capture->state().rows()[1].qso.errQso);
    EXPECT_EQ(capture->state().rows()[1].qso.qrb, stateBefore.rows()[1].qso.qrb);
    EXPECT_EQ(capture->state().PGesamt, stateBefore.PGesamt);
    EXPECT_EQ(capture->state().ODXNr, stateBefore.ODXNr);
    EXPECT_EQ(capture->state().deletedCount(), 0);
}
