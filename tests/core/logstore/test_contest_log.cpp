#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "core/logstore/contest_log.h"
#include "core/logstore/schema.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

constexpr int k144 = 1;
constexpr int k432 = 2;

NewLogData station() {
    NewLogData d;
    d.myCall = "DL1ABC";
    d.myLocator = "JO62QM";
    d.contName = "IARU VHF, Region 1";
    d.zaehl = {1, 1, 3, 5, 7, 9, 11, 13, 15, 17};
    return d;
}

QsoRow qso(const std::string& call, std::int64_t nr, std::int64_t qrb) {
    QsoRow r;
    r.call = call;
    r.locator = "JN58TD";
    r.qrg = 144;
    r.datTime = DateTime{2026, 5, 2, 14, 30, 0};
    r.rstGeg = "59";
    r.qsoNr = nr;
    r.rstErh = "59001";
    r.qrb = qrb;
    r.mod = "SSB";
    r.modRx = "SSB";
    r.opCall = "DL1ABC";
    return r;
}

std::string fileBytes(const std::filesystem::path& p) {
    return test::readFile(p);
}

std::vector<std::string> calls(const std::vector<QsoRow>& rows) {
    std::vector<std::string> out;
    for (const auto& r : rows)
        out.push_back(r.call + "#" + std::to_string(r.qsoNr));
    return out;
}

} // namespace

TEST(ContestLog, CreateWritesTheMyDataRowWithNullTotals) {
    test::TempDir dir;
    const auto path = dir / "Test.sqlite";
    auto log = ContestLog::create(path, station());
    EXPECT_TRUE(std::filesystem::exists(path));
    for (const auto& e : std::filesystem::directory_iterator(dir.path()))
        EXPECT_TRUE(e.path().filename().string().starts_with("Test.sqlite")) << e.path();

    const MyDataRow d = log.myData();
    EXPECT_EQ(d.myCall, "DL1ABC");
    EXPECT_EQ(d.myLocator, "JO62QM");
    EXPECT_EQ(d.contName, "IARU VHF, Region 1");
    for (int i = 0; i < kBandCount; ++i) {
        EXPECT_EQ(d.zaehl[static_cast<std::size_t>(i)],
                  station().zaehl[static_cast<std::size_t>(i)]);
        EXPECT_EQ(d.totals[static_cast<std::size_t>(i)], BandTotals{});
    }
    // A band without QSOs has Null totals in the file; they read as 0.
    auto st = log.db().prepare("SELECT PGesamt144, ODX144, ODXNr144, count(*) FROM MyData");
    ASSERT_TRUE(st.step());
    EXPECT_TRUE(st.isNull(0) && st.isNull(1) && st.isNull(2));
    EXPECT_EQ(st.int64(3), 1);
    EXPECT_EQ(log.totals(k144), BandTotals{});
    EXPECT_EQ(log.bandsWithQsos(), (std::array<bool, kBandCount>{}));

    EXPECT_THROW(ContestLog::create(path, station()), std::runtime_error);
}

TEST(ContestLog, AFailedCreationLeavesNoFileBehind) {
    test::TempDir dir;
    NewLogData bad = station();
    bad.zaehl[4] = 40000; // a weight is 16 bit
    EXPECT_THROW(ContestLog::create(dir / "Bad.sqlite", bad), sql::Error);
    EXPECT_TRUE(std::filesystem::is_empty(dir.path()));
    // A stale journal of a log that is gone does not find its way into a new one.
    test::writeFile(dir / "Bad.sqlite-wal", "stale");
    auto log = ContestLog::create(dir / "Bad.sqlite", station());
    EXPECT_EQ(log.myData().myCall, "DL1ABC");
}

TEST(ContestLog, StorageIsDurable) {
    test::TempDir dir;
    auto log = ContestLog::create(dir / "Test.sqlite", station());
    auto mode = log.db().prepare("PRAGMA journal_mode");
    ASSERT_TRUE(mode.step());
    EXPECT_EQ(mode.text(0), "wal");
    auto sync = log.db().prepare("PRAGMA synchronous");
    ASSERT_TRUE(sync.step());
    EXPECT_EQ(sync.int64(0), 2); // FULL
}

TEST(ContestLog, AQsoAcknowledgedSurvivesAProcessThatDiesWithoutClosing) {
    test::TempDir dir;
    const auto path = dir / "Test.sqlite";
    ContestLog::create(path, station());
    const pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        auto child = ContestLog::open(path);
        child.value().addQso(k144, qso("OK1KHL", 1, 321), BandTotals{321, 321, 1});
        _exit(0); // no destructors: the connection is never closed
    }
    int status = 0;
    waitpid(pid, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    auto log = ContestLog::open(path);
    ASSERT_TRUE(log.ok());
    EXPECT_EQ(log.value().rowCount(k144), 1);
    EXPECT_EQ(log.value().totals(k144), (BandTotals{321, 321, 1}));
}

TEST(ContestLog, OpenRefusesAnOldLogBeforeAnythingChanges) {
    test::TempDir dir;
    struct Case {
        const char* what;
        const char* dropped; // field left out of 144MHz
    };
    for (const Case c : {Case{"no ErrQSO", "ErrQSO"}, Case{"no OPCall", "OPCall"}}) {
        const auto path = dir / (std::string(c.dropped) + ".sqlite");
        {
            sql::Db db(path.string());
            std::vector<FieldDesc> old;
            for (const auto& f : bandTableFields())
                if (f.Name != c.dropped)
                    old.push_back(f);
            MakeLogTable(db, "144MHz", old);
            NewQbLogBD(db);
            db.exec("INSERT INTO MyData (MyCall) VALUES ('DL1ABC')");
        }
        const std::string before = fileBytes(path);
        auto r = ContestLog::open(path);
        ASSERT_FALSE(r.ok()) << c.what;
        EXPECT_EQ(r.failure().text, 208) << c.what;
        EXPECT_EQ(fileBytes(path), before) << c.what;
        EXPECT_FALSE(std::filesystem::exists(path.string() + "-wal")) << c.what;
    }
    EXPECT_THROW(ContestLog::open(dir / "missing.sqlite"), sql::Error);
    EXPECT_FALSE(std::filesystem::exists(dir / "missing.sqlite"));
    test::writeFile(dir / "junk.sqlite", "this is not a database at all, just some text");
    EXPECT_THROW(ContestLog::open(dir / "junk.sqlite"), sql::Error);
}

TEST(ContestLog, AQsoRoundTripsThroughAllSeventeenFields) {
    test::TempDir dir;
    auto log = ContestLog::create(dir / "Test.sqlite", station());
    QsoRow r;
    r.call = "OE3XYZ/P";
    r.locator = "JN88EF";
    r.qrg = 432;
    r.datTime = DateTime{2026, 5, 3, 0, 1, 2};
    r.rstGeg = "599";
    r.qsoNr = 17;
    r.rstErh = "579123";
    r.qrb = 456;
    r.qsl = true;
    r.notice = "Rückfrage wegen Öl";
    r.mod = "CW";
    r.dupe = true;
    r.name = "Jörg";
    r.modRx = "FM";
    r.ausBr = "TRO";
    r.errQso = true;
    r.opCall = "DL2OP";
    r.freqHz = 432'200'500;
    const RowId id = log.addQso(k432, r, BandTotals{456, 456, 17});
    const auto back = log.row(k432, id);
    ASSERT_TRUE(back);
    EXPECT_EQ(*back, r);
    EXPECT_EQ(back->rowId, id);
    EXPECT_EQ(back->freqHz, 432'200'500);

    // Each value lands in its own field with its stored form.
    auto st = log.db().prepare(
        "SELECT Call, Locator, QRG, DatTime, RSTgeg, QSONr, RSTerh, QRB, QSL, Notice, Mod, Dupe, "
        "Name, ModRX, AusBr, ErrQSO, OPCall FROM \"432MHz\"");
    ASSERT_TRUE(st.step());
    const std::vector<std::string> stored{"OE3XYZ/P", "JN88EF",
                                          "432",      "2026-05-03 00:01:02",
                                          "599",      "17",
                                          "579123",   "456",
                                          "1",        "Rückfrage wegen Öl",
                                          "CW",       "1",
                                          "Jörg",     "FM",
                                          "TRO",      "1",
                                          "DL2OP"};
    for (int c = 0; c < 17; ++c)
        EXPECT_EQ(st.text(c), stored[static_cast<std::size_t>(c)]) << "field " << c;
    EXPECT_EQ(log.totals(k432), (BandTotals{456, 456, 17}));
    EXPECT_EQ(log.totals(k144), BandTotals{});
    EXPECT_EQ(log.bandsWithQsos()[k432], true);
    EXPECT_EQ(log.bandsWithQsos()[k144], false);

    // Empty texts are stored as empty strings, not Null.
    log.addQso(k144, qso("DL9XX", 1, 10), BandTotals{10, 10, 1});
    auto e = log.db().prepare("SELECT typeof(Notice), typeof(Name), QSL, Dupe, ErrQSO "
                              "FROM \"144MHz\"");
    ASSERT_TRUE(e.step());
    EXPECT_EQ(e.text(0), "text");
    EXPECT_EQ(e.text(1), "text");
    EXPECT_EQ(e.int64(2) + e.int64(3) + e.int64(4), 0);
}

TEST(ContestLog, AFailedWriteLeavesNeitherRowNorTotals) {
    test::TempDir dir;
    auto log = ContestLog::create(dir / "Test.sqlite", station());
    const RowId first = log.addQso(k144, qso("DL1AAA", 1, 100), BandTotals{100, 100, 1});

    // The row is fine, the totals cannot be stored (ODX beyond a Long).
    EXPECT_THROW(log.addQso(k144, qso("DL2BBB", 2, 200), BandTotals{300, 1LL << 40, 2}),
                 sql::Error);
    EXPECT_EQ(log.rowCount(k144), 1);
    EXPECT_EQ(log.totals(k144), (BandTotals{100, 100, 1}));

    // The row cannot be stored (call of 16), so the totals stay too.
    EXPECT_THROW(log.addQso(k144, qso("DL2BBBBBBBBBBBBB", 2, 200), BandTotals{300, 200, 2}),
                 sql::Error);
    EXPECT_EQ(log.rowCount(k144), 1);
    EXPECT_EQ(log.totals(k144), (BandTotals{100, 100, 1}));

    // Correction and deletion mark: the row change is undone with the totals.
    QsoRow changed = qso("DL1AAB", 1, 150);
    EXPECT_THROW(log.updateQso(k144, first, changed, BandTotals{150, 1LL << 40, 1}), sql::Error);
    EXPECT_EQ(log.row(k144, first)->call, "DL1AAA");
    EXPECT_THROW(log.setErrQso(k144, first, true, BandTotals{0, 1LL << 40, 0}), sql::Error);
    EXPECT_FALSE(log.row(k144, first)->errQso);
    EXPECT_THROW(log.updateQso(k144, first + 99, changed, BandTotals{}), sql::Error);
    EXPECT_EQ(log.totals(k144), (BandTotals{100, 100, 1}));

    // Without the MyData row no QSO is stored at all.
    log.db().exec("DELETE FROM MyData");
    EXPECT_THROW(log.addQso(k144, qso("DL3CCC", 3, 300), BandTotals{400, 300, 3}), sql::Error);
    EXPECT_EQ(log.rowCount(k144), 1);
    EXPECT_THROW(log.emptyBand(k144), sql::Error);
    EXPECT_EQ(log.rowCount(k144), 1);
}

TEST(ContestLog, CorrectionDeletionMarkAndEmptyingABand) {
    test::TempDir dir;
    auto log = ContestLog::create(dir / "Test.sqlite", station());
    const RowId a = log.addQso(k144, qso("DL1AAA", 1, 100), BandTotals{100, 100, 1});
    log.addQso(k144, qso("DL2BBB", 2, 300), BandTotals{400, 300, 2});
    log.addQso(k432, qso("DL2BBB", 1, 50), BandTotals{50, 50, 1});

    QsoRow fixed = qso("DL1AAX", 1, 120);
    fixed.notice = "corrected";
    log.updateQso(k144, a, fixed, BandTotals{420, 300, 2});
    EXPECT_EQ(*log.row(k144, a), fixed);
    EXPECT_EQ(log.totals(k144), (BandTotals{420, 300, 2}));

    log.setErrQso(k144, a, true, BandTotals{300, 300, 2});
    EXPECT_TRUE(log.row(k144, a)->errQso);
    EXPECT_EQ(log.row(k144, a)->call, "DL1AAX") << "only the mark changes";
    EXPECT_EQ(log.deletedRows(k144).size(), 1u);
    log.setErrQso(k144, a, false, BandTotals{420, 300, 2});
    EXPECT_TRUE(log.deletedRows(k144).empty());

    log.writeContestData("Other", {2, 2, 2, 2, 2, 2, 2, 2, 2, 2});
    log.emptyBand(k144);
    EXPECT_EQ(log.rowCount(k144), 0);
    EXPECT_EQ(log.rowCount(k432), 1);
    auto st = log.db().prepare("SELECT PGesamt144, ODX144, ODXNr144, Zaehl144, Zaehl432, "
                               "PGesamt432 FROM MyData");
    ASSERT_TRUE(st.step());
    EXPECT_TRUE(st.isNull(0) && st.isNull(1) && st.isNull(2));
    EXPECT_EQ(st.int64(3), 1);
    EXPECT_EQ(st.int64(4), 2);
    EXPECT_EQ(st.int64(5), 50);
    EXPECT_EQ(log.totals(k144), BandTotals{});
    EXPECT_TRUE(log.db().tableExists("144MHz"));

    log.writeStation("DL9NEW", "JO50AA");
    const auto d = log.myData();
    EXPECT_EQ(d.myCall, "DL9NEW");
    EXPECT_EQ(d.myLocator, "JO50AA");
    EXPECT_EQ(d.contName, "Other");
}

TEST(ContestLog, LookupsFollowTheirIndexes) {
    test::TempDir dir;
    auto log = ContestLog::create(dir / "Test.sqlite", station());
    // Stored out of QSONr order, with a deleted first QSO of OK1KHL.
    const RowId dead = log.addQso(k144, qso("OK1KHL", 3, 10), BandTotals{});
    log.addQso(k144, qso("DL1AAA", 1, 20), BandTotals{});
    log.addQso(k144, qso("OK1KHL", 2, 30), BandTotals{});
    log.addQso(k144, qso("9A1A", 4, 40), BandTotals{});
    log.setErrQso(k144, dead, true, BandTotals{});

    EXPECT_EQ(calls(log.rows(k144)),
              (std::vector<std::string>{"DL1AAA#1", "OK1KHL#2", "OK1KHL#3", "9A1A#4"}));
    EXPECT_EQ(calls(log.rows(k144, LogIndex::Call)),
              (std::vector<std::string>{"9A1A#4", "DL1AAA#1", "OK1KHL#3", "OK1KHL#2"}));
    EXPECT_EQ(calls(log.rows(k144, LogIndex::ErrQSO)).back(), "OK1KHL#3");

    ASSERT_TRUE(log.findByQsoNr(k144, 2));
    EXPECT_EQ(log.findByQsoNr(k144, 2)->call, "OK1KHL");
    EXPECT_FALSE(log.findByQsoNr(k144, 5));
    EXPECT_EQ(log.lastByQsoNr(k144)->qsoNr, 4);
    EXPECT_FALSE(log.lastByQsoNr(k432));

    // The first row of the call in index order is the deleted one; the first
    // live one is the later QSO.
    EXPECT_EQ(log.rowsByCall(k144, " ok1khl ").size(), 2u);
    ASSERT_TRUE(log.firstLiveByCall(k144, "ok1khl"));
    EXPECT_EQ(log.firstLiveByCall(k144, "ok1khl")->qsoNr, 2);
    EXPECT_FALSE(log.firstLiveByCall(k144, "OK1KH"));
    EXPECT_FALSE(log.firstLiveByCall(k432, "OK1KHL"));
    EXPECT_EQ(log.rowsByLocator(k144, "jn58td").size(), 4u);

    int seen = 0;
    log.forEachRow(k144, LogIndex::QSONr, [&](const QsoRow&) { return ++seen < 2; });
    EXPECT_EQ(seen, 2);
    EXPECT_THROW(log.rows(10), std::out_of_range);
}

TEST(ContestLog, ABandOfAHundredThousandRowsLoadsInOrder) {
    test::TempDir dir;
    auto log = ContestLog::create(dir / "Big.sqlite", station());
    constexpr int kRows = 100000;
    {
        sql::Transaction tx(log.db());
        auto st = log.db().prepare("INSERT INTO \"144MHz\" (Call, Locator, QRG, QSONr, QRB) "
                                   "VALUES (?1, 'JO62QM', 144, ?2, ?3)");
        for (int i = 0; i < kRows; ++i) {
            // Stored in a scrambled order of serials.
            const int nr = static_cast<int>((static_cast<long long>(i) * 7919) % kRows) + 1;
            st.bind(1, "DL" + std::to_string(nr)).bind(2, nr).bind(3, nr % 1000);
            st.run();
        }
        tx.commit();
    }
    const auto rows = log.rows(k144);
    ASSERT_EQ(rows.size(), static_cast<std::size_t>(kRows));
    for (int i = 0; i < kRows; ++i)
        ASSERT_EQ(rows[static_cast<std::size_t>(i)].qsoNr, i + 1);
    EXPECT_EQ(log.findByQsoNr(k144, 54321)->call, "DL54321");
    EXPECT_EQ(log.firstLiveByCall(k144, "DL77777")->qsoNr, 77777);
}

TEST(ContestLog, AnOlderLogGetsTheFrequencyColumnWhenItOpens) {
    test::TempDir dir;
    const auto path = dir / "Old.sqlite";
    {
        // The schema of a log written before the column existed.
        sql::Db db(path.string());
        NewQbLogBD(db);
        db.exec("INSERT INTO MyData (MyCall) VALUES ('DL1ABC')");
        db.exec("INSERT INTO \"144MHz\" (Call, Locator, QRG, DatTime, RSTgeg, QSONr, RSTerh, QRB, "
                "QSL, Notice, Mod, Dupe, Name, ModRX, AusBr, ErrQSO, OPCall) VALUES ('OK1KKW', "
                "'JO70FD', 144, '2026-05-02 10:00:00', '59', 1, '59001', 275, 0, '', 'SSB', 0, "
                "'', 'SSB', '', 0, '')");
    }
    ASSERT_FALSE(FieldExists(path, "144MHz", "FreqHz"));
    auto log = ContestLog::open(path).value();
    for (const Band& b : kBands)
        EXPECT_TRUE(FieldExists(log.db(), b.table, "FreqHz")) << b.table;
    ASSERT_EQ(log.rows(k144).size(), 1u);
    EXPECT_EQ(log.rows(k144)[0].freqHz, 0); // unknown

    // A correction keeps the frequency the QSO was logged on.
    QsoRow q = qso("DL9XX", 2, 10);
    q.freqHz = 144'300'000;
    const RowId id = log.addQso(k144, q, BandTotals{285, 275, 1});
    q.call = "DL9XY";
    q.freqHz = 0;
    log.updateQso(k144, id, q, BandTotals{285, 275, 1});
    EXPECT_EQ(log.row(k144, id)->call, "DL9XY");
    EXPECT_EQ(log.row(k144, id)->freqHz, 144'300'000);
    // Opening again changes nothing more.
    auto again = ContestLog::open(path);
    EXPECT_TRUE(again.ok());
}
