// The bands held in memory against a fresh load from the file, after every
// step of random (seeded, reproducible) sequences of the changes an
// operator makes, and of changes made by another writer of the file.
#include <random>
#include <sstream>

#include "capture_fixture.h"

namespace orv::test {
namespace {

constexpr int kBands[] = {0, 1, 2, 3};
const char* const kCalls[] = {"DL1ABC", "OK1KHL", "G4XYZ", "F6ABC", "OE3XUA", "S51ZO",
                              "HA5KDQ", "SP6ABC", "9A2AA", "I4XCC", "DK0ABC", "ON4KST"};
const char* const kLocators[] = {"JO31AB", "JN79AA", "IO91VL", "JN18EU", "JN88EF",
                                 "JN76JB", "JN97LN", "JO81HP", "JN75DS", "JN54QN"};

class BandMemoryTest : public CaptureTest {
protected:
    // What a band change to `band` shows when it reads the file, through a
    // connection of its own.
    BandState fresh(int band) {
        ContestLog reader = ContestLog::openForReading(path);
        ContestLog::BandSnapshot s = reader.bandSnapshot(band);
        BandState st;
        st.load(band, std::move(s.rows), s.totals, "JN78DF", false);
        return st;
    }

    // One random step; returns what it did, for the message of a failure.
    std::string step(std::mt19937& rng, ContestLog& other) {
        auto pick = [&](auto& list) { return list[rng() % std::size(list)]; };
        const auto& rows = capture->state().rows();
        const int what = static_cast<int>(rng() % 100);
        if (what < 35) {
            EntryRow r = row(pick(kCalls), pick(kLocators));
            // Now and then a serial typed below the last one.
            if (rng() % 5 == 0)
                r.serial = std::to_string(1 + rng() % (capture->state().LastQSONr + 1));
            const std::string did = "commit " + r.call + " nr " + r.serial;
            capture->Uebernehmen(r);
            return did;
        }
        if (what < 50 && !rows.empty()) {
            const std::size_t i = rng() % rows.size();
            if (rows[i].qso.errQso)
                return "nothing";
            EditRow e = capture->editView(i);
            switch (rng() % 3) {
            case 0:
                e.locator = pick(kLocators);
                break;
            case 1:
                e.qrb = std::to_string(rng() % 1500);
                break;
            default:
                e.call = pick(kCalls);
            }
            capture->UebernehmenEdit(i, e);
            return "correct row " + std::to_string(i);
        }
        if (what < 62 && !rows.empty()) {
            const auto nr = rows[rng() % rows.size()].qso.qsoNr;
            capture->ErrQSO(nr);
            return "delete nr " + std::to_string(nr);
        }
        if (what < 72 && !rows.empty()) {
            const std::size_t i = rng() % rows.size();
            capture->restore(i);
            return "restore row " + std::to_string(i);
        }
        if (what < 90) {
            const int b = pick(kBands);
            capture->selectBand(b);
            return "band " + std::to_string(b);
        }
        if (what < 92) {
            dialogs.answers = {Answer::Yes, Answer::Ok};
            capture->MnLogLoeschen();
            return "empty band";
        }
        // Another writer: a QSO straight into the file, on any band, which
        // the window notices by the file's version.
        const int b = pick(kBands);
        QsoRow q;
        q.call = "OTHER" + std::to_string(rng() % 1000);
        q.locator = pick(kLocators);
        q.qrg = 144;
        q.qsoNr = 1 + static_cast<std::int64_t>(rng() % 50);
        q.qrb = static_cast<std::int64_t>(rng() % 900);
        q.datTime = clock.now();
        other.addQso(b, q, other.totals(b));
        capture->refreshIfChangedElsewhere();
        return "other writer on band " + std::to_string(b);
    }
};

TEST_F(BandMemoryTest, HeldBandsEqualAFreshLoadAfterEveryStep) {
    ContestLog other = ContestLog::open(path).value();
    int compared = 0;
    for (const unsigned seed : {1u, 2u, 3u, 4u}) {
        std::mt19937 rng(seed);
        // Every seed starts with the worker loading what the file holds.
        capture->preloadBands(nullptr);
        for (int i = 0; i < 150; ++i) {
            const std::string did = step(rng, other);
            capture->waitForPreload();
            for (const int b : kBands) {
                const auto held = capture->bandAsShown(b);
                if (!held)
                    continue;
                ++compared;
                ASSERT_TRUE(*held == fresh(b))
                    << "seed " << seed << ", step " << i << " (" << did << "), band " << b;
            }
        }
        capture->stopPreload();
    }
    // The bands are really held: most steps compare several of them.
    EXPECT_GT(compared, 4 * 150 * 2);
}

TEST_F(BandMemoryTest, BandChangeSwapsAndAWriterOnTheSameConnectionIsNoticed) {
    commit("DL1ABC", "JO31AB");
    capture->selectBand(k432);
    commit("OK1KHL", "JN79AA");
    // Back on 144 MHz the band comes from memory, as stored.
    capture->selectBand(k144);
    ASSERT_EQ(capture->state().rows().size(), 1u);
    EXPECT_TRUE(capture->holds(k432));
    // A group change writes through the window's own connection, not
    // through the capture: the next band change reads the file again.
    log->db().exec("UPDATE \"432MHz\" SET \"Notice\" = 'changed'");
    capture->selectBand(k432);
    EXPECT_EQ(capture->state().rows().at(0).qso.notice, "changed");
    EXPECT_TRUE(capture->state() == fresh(k432));
}

} // namespace
} // namespace orv::test
