#include <gtest/gtest.h>

#include "core/capture/capture.h"
#include "core/i18n/texts.h"
#include "core/submission/ham3_import.h"
#include "core/util/file_io.h"
#include "submission_support.h"
#include "support/fakes.h"

namespace orv::test {
namespace {

constexpr int k144 = 1, k432 = 2, k1200 = 3;

TEST(Ham3Line, TokensGoToTheirFields) {
    struct Case {
        const char* line;
        const char* date;
        bool dateOk;
        const char* time;
        const char* call; // "" when the line gives none
        const char* rstNr;
        bool serialOk;
        int band; // -1: unknown
        const char* locator;
    };
    const Case cases[] = {
        {"02-MAY-2026 14:05 OK1KKW 59 001 59 012 144 SSB 275 jo70fd", "2026-05-02", true, "14:05",
         "OK1KKW", "59012", true, k144, "JO70FD"},
        // Blanks of any number, HHMM times, serials from 1000 in four digits.
        {"  31-dec-1999   2359  DL0GTH  599  2 599   1203 1296  CW  1 JO50VS", "1999-12-31", true,
         "23:59", "DL0GTH", "5991203", true, k1200, "JO50VS"},
        {"01-JAN-06 00:00 AB 59 1 59 7 10 FM x JN78DK99", "2006-01-01", true, "00:00", "", "59007",
         true, 7, "JN78DK"},
        // An unknown month leaves the token; a calendar date that is none.
        {"02-MAI-2026 14:05 OK1KKW 59 1 59 12 47 SSB 1 JO70FD", "02-MAI-2026", false, "14:05",
         "OK1KKW", "59012", true, 9, "JO70FD"},
        {"31-APR-2026 24:00 OK1KKW 59 1 59 x12 70 SSB", "31-APR-2026", false, "24:00", "OK1KKW",
         "59x12", false, -1, ""},
        {"02-MAY-2026 14:05 ABCDEFGHIJKLMNOPQ 59 1 59 12 432 SSB 1", "2026-05-02", true, "14:05",
         "ABCDEFGHIJKLMNO", "59012", true, k432, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.line);
        const Ham3Line l = parseHam3Line(c.line);
        EXPECT_TRUE(l.complete);
        EXPECT_EQ(l.date, c.date);
        EXPECT_EQ(l.dateOk, c.dateOk);
        EXPECT_EQ(l.time, c.time);
        EXPECT_EQ(l.call.value_or(""), c.call);
        EXPECT_EQ(l.rstNr, c.rstNr);
        EXPECT_EQ(l.serialOk, c.serialOk);
        EXPECT_EQ(l.band.value_or(-1), c.band);
        EXPECT_EQ(l.locator.value_or(""), c.locator);
    }
    EXPECT_FALSE(parseHam3Line("02-MAY-2026 14:05 OK1KKW 59 1 59 12 144").complete);
}

class Ham3ImportTest : public ::testing::Test {
protected:
    void SetUp() override {
        log = std::make_unique<ContestLog>(makeLog(dir.path()));
        CaptureConfig cfg;
        cfg.ownLocator = "JN78DF";
        capture = std::make_unique<Capture>(*log, cfg, clock, dialogs, texts);
        capture->selectBand(k144);
    }

    Ham3Report import(const std::string& sample, bool goOnAtUnknownBand = true) {
        EntryRow row;
        row.mode = row.rxMode = "SSB";
        Ham3Import imp(*capture, {"SSB", "CW", "FM"});
        return imp.run(readHam3File(sourceDir() / "tests/data/ham3" / sample), row,
                       [&](std::size_t line, const std::string& token) {
                           asked.push_back(std::to_string(line) + ":" + token);
                           return goOnAtUnknownBand;
                       });
    }

    static std::vector<std::pair<std::size_t, int>> refusals(const Ham3Report& r) {
        std::vector<std::pair<std::size_t, int>> out;
        for (const auto& f : r.refused)
            out.emplace_back(f.line, f.text);
        return out;
    }

    TempDir dir;
    FakeClock clock;
    FakeDialogs dialogs;
    Texts texts;
    std::unique_ptr<ContestLog> log;
    std::unique_ptr<Capture> capture;
    std::vector<std::string> asked;
};

TEST_F(Ham3ImportTest, StoresEachLineThroughTheCommitOnItsBand) {
    const Ham3Report r = import("contest.ASC");
    EXPECT_EQ(r.end, Ham3Report::End::Finished);
    EXPECT_EQ(r.stored, 4u);
    EXPECT_TRUE(r.refused.empty());
    const auto rows = log->rows(k144);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].call, "OK1KKW");
    EXPECT_EQ(rows[0].datTime.toStorage(), "2026-05-02 14:05:00");
    EXPECT_EQ(rows[0].rstGeg, "59");
    EXPECT_EQ(rows[0].rstErh, "59012");
    EXPECT_EQ(rows[0].locator, "JO70FD");
    EXPECT_EQ(rows[0].qsoNr, 1);
    EXPECT_EQ(rows[0].mod, "SSB");
    EXPECT_GT(rows[0].qrb, 0);
    EXPECT_EQ(rows[1].rstErh, "5991203");
    EXPECT_EQ(rows[1].mod, "CW");
    EXPECT_EQ(rows[1].qsoNr, 2);
    // The band's totals are the commit's.
    EXPECT_EQ(log->totals(k144).pGesamt, rows[0].qrb + rows[1].qrb);
    ASSERT_EQ(log->rows(k432).size(), 1u);
    EXPECT_EQ(log->rows(k432)[0].call, "SP6ZDA/P");
    ASSERT_EQ(log->rows(k1200).size(), 1u);
    EXPECT_EQ(log->rows(k1200)[0].mod, "FM");
    EXPECT_TRUE(r.bandsStored[k144] && r.bandsStored[k432] && r.bandsStored[k1200]);
}

TEST_F(Ham3ImportTest, BadLinesAreRefusedWithTheirTextAndStoreNothing) {
    struct Case {
        const char* sample;
        std::size_t stored;
        std::vector<std::pair<std::size_t, int>> refused;
    };
    const Case cases[] = {
        // No QSO line, a call of one letter, a serial that is no number, a
        // bad locator, the first QSO again.
        {"garbage.ASC", 1, {{2, 1150}, {3, 1}, {4, 3}, {5, 2}, {6, 200}}},
        // An unknown month, 31 April, 25:70.
        {"bad_dates.ASC", 1, {{1, 13}, {2, 13}, {3, 14}}},
        // The line of 9 characters ends the import without a word.
        {"short_line.ASC", 1, {}},
        // Windows-1252 bytes in a line do not spoil it.
        {"cp1252.ASC", 2, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.sample);
        TempDir d;
        log = std::make_unique<ContestLog>(makeLog(d.path()));
        CaptureConfig cfg;
        cfg.ownLocator = "JN78DF";
        capture = std::make_unique<Capture>(*log, cfg, clock, dialogs, texts);
        const Ham3Report r = import(c.sample);
        EXPECT_EQ(r.end, Ham3Report::End::Finished);
        EXPECT_EQ(r.stored, c.stored);
        EXPECT_EQ(refusals(r), c.refused);
        EXPECT_EQ(log->rows(k144).size(), c.stored);
    }
}

TEST_F(Ham3ImportTest, UnknownBandAsksAndGoesOnOrEnds) {
    Ham3Report r = import("unknown_band_last.ASC");
    EXPECT_EQ(asked, std::vector<std::string>{"2:70"});
    EXPECT_EQ(r.end, Ham3Report::End::Finished);
    EXPECT_EQ(r.stored, 1u);
    EXPECT_EQ(r.unknownBand, 1u);

    asked.clear();
    TempDir d;
    log = std::make_unique<ContestLog>(makeLog(d.path()));
    capture = std::make_unique<Capture>(*log, capture->config(), clock, dialogs, texts);
    r = import("unknown_band_last.ASC", false);
    EXPECT_EQ(r.end, Ham3Report::End::Cancelled);
    EXPECT_EQ(log->rows(k144).size(), 1u);
}

TEST_F(Ham3ImportTest, BandWithQsosAtTheFirstLineStopsBeforeAnythingIsStored) {
    addRows(*log, k144, {qso(1, "DL9XX", "JO62QM", 500)});
    const auto before = log->rows(k144);
    const Ham3Report r = import("contest.ASC");
    EXPECT_EQ(r.end, Ham3Report::End::BandNotEmpty);
    EXPECT_EQ(r.stored, 0u);
    EXPECT_EQ(log->rows(k144).size(), before.size());
    EXPECT_TRUE(log->rows(k432).empty());
    EXPECT_TRUE(log->rows(k1200).empty());
}

TEST_F(Ham3ImportTest, UnreadableFileThrowsFileError) {
    EXPECT_THROW(readHam3File(dir / "missing.ASC"), fileio::FileError);
}

} // namespace
} // namespace orv::test
