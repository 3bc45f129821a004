#include <gtest/gtest.h>

#include <set>

#include "core/stationlog/station_log.h"
#include "core/util/sqlite.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

StationQso qso(std::string call, int minute = 0) {
    StationQso q;
    q.dateTime = DateTime{2026, 5, 2, 12, minute, 0};
    q.call = std::move(call);
    q.qrgTx = "144.300";
    q.txMod = "SSB";
    return q;
}

} // namespace

// A new log has the twenty fields in order, an index on every field, and
// opening it needs nothing more.
TEST(StationLog, NewLogHasFieldsInOrderAndAnIndexOnEach) {
    test::TempDir dir;
    const auto path = dir / "Log.sqlite";
    StationLog::create(path);
    auto opened = StationLog::open(path);
    ASSERT_TRUE(opened.ok());
    StationLog log = std::move(opened).value();
    EXPECT_EQ(log.count(), 0);
    EXPECT_FALSE(log.firstNr());

    sql::Db db(path.string(), sql::Db::Mode::ReadOnly);
    const std::vector<std::string> want{"Nr",        "DateTime", "Call",       "RST_TX", "RST_RX",
                                        "Locator",   "QRG_TX",   "QRG_RX",     "TXMod",  "RXMod",
                                        "Prop",      "QSL",      "QSLManager", "Name",   "MyCall",
                                        "MyLocator", "Power",    "Antenne",    "Note",   "QSL_RX"};
    std::vector<std::string> got;
    auto cols = db.prepare("SELECT name FROM pragma_table_info('QJLog') ORDER BY cid");
    while (cols.step())
        got.push_back(cols.text(0));
    EXPECT_EQ(got, want);

    std::set<std::string> indexed;
    auto idx = db.prepare("SELECT il.name, ii.name FROM pragma_index_list('QJLog') il, "
                          "pragma_index_info(il.name) ii");
    while (idx.step()) {
        EXPECT_EQ(idx.text(0), "QJLog_" + idx.text(1) + "Index");
        indexed.insert(idx.text(1));
    }
    EXPECT_EQ(indexed, std::set<std::string>(want.begin(), want.end()));
    EXPECT_THROW(StationLog::create(path), std::runtime_error);
}

// Nr is unique: the database itself refuses a second record with a number
// that is taken, and the log is as before.
TEST(StationLog, NrIsUniqueAndNewNumbersFollowTheHighest) {
    test::TempDir dir;
    auto log = StationLog::create(dir / "L.sqlite");
    EXPECT_EQ(log.add(qso("DL1AAA")), 1);
    EXPECT_EQ(log.add(qso("DL1BBB")), 2);
    StationQso taken = qso("DL1CCC");
    taken.nr = 2;
    EXPECT_THROW(log.insert(taken), sql::Error);
    EXPECT_EQ(log.count(), 2);
    EXPECT_EQ(log.find(2)->call, "DL1BBB");

    taken.nr = 10;
    log.insert(taken);
    EXPECT_EQ(log.add(qso("DL1DDD")), 11);
    ASSERT_TRUE(log.remove(11));
    EXPECT_FALSE(log.remove(11));
    // After a deletion at the end the next number follows the highest left.
    EXPECT_EQ(log.add(qso("DL1EEE")), 11);
    EXPECT_EQ(log.numbers(), (std::vector<std::int64_t>{1, 2, 10, 11}));
}

// Every field is stored and read back as given, an update keeps the number,
// and a text longer than its field is refused by the store without change.
TEST(StationLog, RecordsRoundTripAndOverlongTextIsRefused) {
    test::TempDir dir;
    const auto path = dir / "L.sqlite";
    StationQso full;
    full.dateTime = DateTime{2025, 12, 31, 23, 59, 0};
    for (int f = 2; f < kQjFieldCount; ++f) {
        const auto size = static_cast<std::size_t>(qjLogFields()[f].Size);
        *textField(full, f) = std::string(size, static_cast<char>('A' + f));
    }
    std::int64_t nr = 0;
    {
        auto log = StationLog::create(path);
        nr = log.add(full);
    }
    // Durable when the call returned: a fresh connection sees it.
    auto log = StationLog::open(path).value();
    full.nr = nr;
    EXPECT_EQ(log.find(nr), full);

    StationQso changed = full;
    changed.call = "OE3XYZ";
    changed.note = "ü und ß";
    ASSERT_TRUE(log.update(nr, changed));
    EXPECT_EQ(log.find(nr), changed);
    EXPECT_FALSE(log.update(99, changed));

    StationQso tooLong = changed;
    tooLong.locator = "JO62QMX";
    EXPECT_THROW(log.update(nr, tooLong), sql::Error);
    EXPECT_THROW(log.add(tooLong), sql::Error);
    EXPECT_EQ(log.find(nr), changed);
    EXPECT_EQ(log.count(), 1);
}

TEST(StationLog, RangeDeleteTakesAllOrNothing) {
    struct Case {
        std::int64_t from, to;
        bool ok;
        std::vector<std::int64_t> left;
    };
    const std::vector<Case> cases{
        {3, 3, true, {1, 2, 4, 5, 7}},
        {2, 5, true, {1, 7}},
        {1, 7, true, {}},
        {5, 3, false, {1, 2, 3, 4, 5, 7}},
        {0, 3, false, {1, 2, 3, 4, 5, 7}},
        {5, 8, false, {1, 2, 3, 4, 5, 7}},
        {6, 6, true, {1, 2, 3, 4, 5, 7}}, // a gap inside the log deletes nothing
    };
    for (const auto& c : cases) {
        test::TempDir dir;
        auto log = StationLog::create(dir / "L.sqlite");
        for (std::int64_t nr : {1, 2, 3, 4, 5, 7}) {
            StationQso q = qso("DL" + std::to_string(nr) + "AA");
            q.nr = nr;
            log.insert(q);
        }
        const auto r = log.removeRange(c.from, c.to);
        EXPECT_EQ(r.ok(), c.ok) << c.from << ".." << c.to;
        if (!r.ok()) {
            EXPECT_EQ(r.failure().text, 391);
        }
        EXPECT_EQ(log.numbers(), c.left) << c.from << ".." << c.to;
    }
    test::TempDir dir;
    auto empty = StationLog::create(dir / "E.sqlite");
    EXPECT_EQ(empty.removeRange(1, 1).failure().text, 391);
}

// A file in QjLog that is no station log is refused with IText(415) and
// left exactly as it was.
TEST(StationLog, OpenRefusesFilesThatAreNoStationLog) {
    test::TempDir dir;
    test::writeFile(dir / "text.sqlite", "just some text, no database at all");
    {
        sql::Db other((dir / "other.sqlite").string());
        other.exec("CREATE TABLE QJLog (Nr INTEGER, Call TEXT)");
    }
    {
        sql::Db contest((dir / "contest.sqlite").string());
        contest.exec("CREATE TABLE \"144MHz\" (Call TEXT)");
    }
    for (const char* name : {"text.sqlite", "other.sqlite", "contest.sqlite", "missing.sqlite"}) {
        const auto path = dir / name;
        const std::string before =
            std::filesystem::exists(path) ? test::readFile(path) : std::string{};
        const auto r = StationLog::open(path);
        ASSERT_FALSE(r.ok()) << name;
        EXPECT_EQ(r.failure().text, 415) << name;
        if (!before.empty()) {
            EXPECT_EQ(test::readFile(path), before) << name;
        }
        EXPECT_FALSE(std::filesystem::exists(dir / (std::string(name) + "-wal"))) << name;
    }
}

TEST(StationLog, PagesAndRangesWalkInNrOrder) {
    test::TempDir dir;
    auto log = StationLog::create(dir / "L.sqlite");
    for (int i = 0; i < 10; ++i)
        log.add(qso("DL" + std::to_string(i) + "XX", i));
    log.remove(4);
    const auto p = log.page(3, 3);
    ASSERT_EQ(p.size(), 3u);
    EXPECT_EQ(p[0].nr, 3);
    EXPECT_EQ(p[1].nr, 5);
    EXPECT_EQ(p[2].nr, 6);
    std::vector<std::int64_t> seen;
    log.forEach(2, 6, [&](const StationQso& q) {
        seen.push_back(q.nr);
        return q.nr < 5;
    });
    EXPECT_EQ(seen, (std::vector<std::int64_t>{2, 3, 5}));
}
