#include <random>
#include <string>
#include <vector>

#include "capture_fixture.h"

namespace orv::test {
namespace {

// The bands of a call as the file holds them, compared as the duplicate
// check compares calls.
WorkedBands::Bands fromFile(ContestLog& log, const std::string& call) {
    WorkedBands::Bands b;
    for (int band = 0; band < kBandCount; ++band)
        for (const QsoRow& q : log.rows(band))
            if (!q.errQso && q.call == call)
                b.set(static_cast<std::size_t>(band));
    return b;
}

} // namespace

// Random commits, deletions, restores and corrections on three bands, a band
// emptied and a QSO written by another connection: after every step the
// index answers for each call what the file holds.
TEST_F(CaptureTest, WorkedBandsFollowTheLogThroughEveryChange) {
    const std::vector<std::string> calls = {"OK1KKW", "DL1ABC", "S51ZO", "9A2AA", "HG7F", "OE3XYZ"};
    const std::vector<std::string> locators = {"JO70FD", "JO62QM", "JN76PO", "JN85AA", "JN97KM"};
    const std::vector<int> bands = {k144, k432, 3};
    std::mt19937 rng(23);
    const auto pick = [&](std::size_t n) {
        return std::uniform_int_distribution<std::size_t>(0, n - 1)(rng);
    };
    const auto checkAll = [&](int step) {
        for (const std::string& c : calls)
            ASSERT_EQ(capture->workedBands(c), fromFile(*log, c)) << "step " << step << " " << c;
        // Typed in lower case with blanks, the call is found all the same.
        ASSERT_EQ(capture->workedBands(" ok1kkw "), fromFile(*log, "OK1KKW"));
    };
    for (int step = 0; step < 160; ++step) {
        const int band = bands[pick(bands.size())];
        if (band != capture->band())
            capture->selectBand(band);
        const auto& rows = capture->state().rows();
        const std::size_t what = pick(10);
        if (what < 5 || rows.empty()) {
            EntryRow r = row(calls[pick(calls.size())], locators[pick(locators.size())]);
            capture->Uebernehmen(r); // a duplicate is refused and changes nothing
        } else if (what < 7) {
            const std::size_t i = pick(rows.size());
            if (rows[i].qso.errQso)
                capture->restore(i); // refused while the call is live again
            else
                ASSERT_TRUE(capture->ErrQSO(rows[i].qso.qsoNr));
        } else if (what < 9) {
            const std::size_t i = pick(rows.size());
            EditRow e = capture->editView(i);
            e.call = calls[pick(calls.size())];
            dialogs.answers.push_back(Answer::No);
            capture->UebernehmenEdit(i, e);
            dialogs.answers.clear();
        } else if (step % 40 == 39) {
            dialogs.answers = {Answer::Yes, Answer::Ok};
            ASSERT_TRUE(capture->MnLogLoeschen());
        }
        checkAll(step);
    }

    // Another writer: noticed, and the index follows at the next look.
    {
        ContestLog other = ContestLog::open(path).value();
        QsoRow q;
        q.call = "OZ9NEW";
        q.locator = "JO65AA";
        q.datTime = clock.now();
        q.qsoNr = 1;
        other.addQso(7, q, other.totals(7));
    }
    capture->refreshIfChangedElsewhere();
    EXPECT_TRUE(capture->workedBands("OZ9NEW").test(7));
    checkAll(-1);
}

} // namespace orv::test
