#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>

#include "call_record_support.h"
#include "core/app/app_paths.h"
#include "core/reference/call_db.h"
#include "core/reference/call_image.h"
#include "core/util/file_io.h"
#include "core/util/sqlite.h"
#include "support/temp_dir.h"

using namespace orv;
using test::rec;

namespace {

const std::filesystem::path kMasterScp = "/usr/share/hamradio-files/MASTER.SCP";

struct Fixture {
    test::TempDir dir;
    AppPaths paths{dir.path()};
};

} // namespace

TEST(CallDb, NewQBDatMakesTheTableAndAnEmptyIni) {
    Fixture f;
    fileio::writeAtomic(f.paths.qbDatIniPath(), "[CONTEST1]\n144=1\n");
    {
        CallDbStore store(f.paths.callDbPath());
        ASSERT_TRUE(store.add(rec("DL1ABC", "JO31AB")).ok());
    }
    NewQBDat(f.paths);
    CallDbStore store(f.paths.callDbPath());
    EXPECT_EQ(store.count(), 0);
    EXPECT_EQ(fileio::readAll(f.paths.qbDatIniPath()), "");
    // Field order and indexes as the program knows them.
    auto cols = store.db().prepare("SELECT name FROM pragma_table_info('OrvantaContestDat')");
    std::string names;
    while (cols.step())
        names += cols.text(0) + " ";
    EXPECT_EQ(names, "Call Locator B6 B2 Bc70 Bc23 Bc13 Bc9 Bc6 Bc3 Bm12 Bm6 LastDate ");
    auto idx = store.db().prepare(
        "SELECT name FROM sqlite_master WHERE type = 'index' AND tbl_name = 'OrvantaContestDat' "
        "ORDER BY name");
    std::set<std::string> indexes;
    while (idx.step())
        indexes.insert(idx.text(0));
    EXPECT_EQ(indexes, (std::set<std::string>{"OrvantaContestDat_CallIndex",
                                              "OrvantaContestDat_LocatorIndex"}));
}

TEST(CallDb, AddChangeDeleteWithChecks) {
    Fixture f;
    CallDbStore store(f.paths.callDbPath());
    auto id = store.add(rec(" dl1abc ", "jo31ab"));
    ASSERT_TRUE(id.ok());
    auto row = store.find(*id);
    ASSERT_TRUE(row);
    EXPECT_EQ(row->Call, "DL1ABC");
    EXPECT_EQ(row->Locator, "JO31AB");
    EXPECT_FALSE(row->LastDate);

    struct Bad {
        const char* call;
        const char* loc;
        int text;
        const char* field;
    };
    const Bad bad[] = {
        {"", "JO31", 1, "Call"},
        {"DL1ABC-1", "JO31", 1, "Call"},
        {"DL1ABCDEFGHIJKLM", "", 1, "Call"}, // 16 characters
        {"DL1ABC", "JO3", 2, "Locator"},
        {"DL1ABC", "ZZ31", 2, "Locator"},
        {"DL1ABC", "JO31AZ", 2, "Locator"},
        {"DL1ABC", "JO31ABC", 2, "Locator"},
    };
    for (const auto& b : bad) {
        SCOPED_TRACE(std::string(b.call) + "/" + b.loc);
        auto r = store.add(rec(b.call, b.loc));
        ASSERT_FALSE(r.ok());
        EXPECT_EQ(r.failure().text, b.text);
        EXPECT_EQ(r.failure().field, b.field);
        CallRecord c = *row;
        c.Call = b.call;
        c.Locator = b.loc;
        EXPECT_FALSE(store.change(c).ok());
    }
    EXPECT_EQ(store.count(), 1);
    EXPECT_EQ(store.find(*id)->Locator, "JO31AB");

    CallRecord c = *row;
    c.Locator = "JO41";
    c.counters[1] = 7;
    c.LastDate = DateTime{2025, 9, 6, 14, 3, 0};
    ASSERT_TRUE(store.change(c).ok());
    row = store.find(*id);
    EXPECT_EQ(row->Locator, "JO41");
    EXPECT_EQ(row->counters[1], 7);
    ASSERT_TRUE(row->LastDate);
    EXPECT_EQ(row->LastDate->toStorage(), "2025-09-06 14:03:00");

    ASSERT_TRUE(store.remove(*id).ok());
    EXPECT_EQ(store.count(), 0);
    EXPECT_EQ(store.remove(*id).failure().text, 258);
    EXPECT_EQ(store.change(c).failure().text, 258);
}

TEST(CallDb, ImportCallLocatorLines) {
    Fixture f;
    CallDbStore store(f.paths.callDbPath());
    ASSERT_TRUE(store.add(rec("DL1ABC", "")).ok());
    ASSERT_TRUE(store.add(rec("OE1XYZ", "JN88EE")).ok());
    const std::string list = "\xEF\xBB\xBF# my stations\r\n"
                             "DL1ABC JO31AB\r\n"  // known call without locator: completed
                             "OE1XYZ\tJN88EE\r\n" // known pair
                             "OE1XYZ,JN78\r\n"    // known call, other locator: own row
                             "\r\n"
                             "ok1def jo70aa\r\n" // new, lower case taken up
                             "S51A\n"            // call only
                             "S51A\n";           // twice in the list: once in the database
    auto r = importCallList(store, list);
    ASSERT_TRUE(r.ok());
    EXPECT_EQ(r->added, 3);
    EXPECT_EQ(r->completed, 1);
    EXPECT_EQ(r->known, 2);
    const auto img = QBDatImage::load(f.paths.callDbPath());
    ASSERT_EQ(img.size(), 5u);
    std::vector<std::string> got;
    for (std::uint32_t n = 1; n <= img.size(); ++n)
        got.push_back(std::string(img.record(n).Call()) + " " +
                      std::string(img.record(n).Locator()));
    EXPECT_EQ(got, (std::vector<std::string>{"DL1ABC JO31AB", "OE1XYZ JN88EE", "OE1XYZ JN78",
                                             "OK1DEF JO70AA", "S51A "}));
}

TEST(CallDb, BadListChangesNothing) {
    Fixture f;
    CallDbStore store(f.paths.callDbPath());
    ASSERT_TRUE(store.add(rec("DL1ABC", "JO31AB")).ok());
    for (const std::string bad : {"G4ABC IO91\nDL2XX JO3\n", "G4ABC IO91 extra\n",
                                  "G4ABC IO91\nnot-a-call\n", "\x01\x02\x03 binary\n"}) {
        SCOPED_TRACE(bad);
        auto r = importCallList(store, bad);
        ASSERT_FALSE(r.ok());
        EXPECT_EQ(r.failure().text, 258);
        EXPECT_EQ(store.count(), 1);
    }
    auto r = importCallList(store, "G4ABC IO91\nDL2XX JO3\n");
    EXPECT_EQ(r.failure().detail, "line 2");
}

TEST(CallDb, MasterScpImportAndLoad) {
    if (!std::filesystem::exists(kMasterScp))
        GTEST_SKIP() << "hamradio-files not installed";
    // The count of distinct calls, worked out independently of the importer.
    std::ifstream in(kMasterScp);
    std::set<std::string> distinct;
    for (std::string line; std::getline(in, line);)
        if (!line.empty() && line[0] != '#')
            distinct.insert(line);
    Fixture f;
    CallDbStore store(f.paths.callDbPath());
    auto r = importCallList(store, fileio::readAll(kMasterScp));
    ASSERT_TRUE(r.ok()) << r.failure().detail;
    EXPECT_EQ(static_cast<std::size_t>(r->added), distinct.size());
    EXPECT_EQ(static_cast<std::size_t>(store.count()), distinct.size());
    // A second import adds nothing.
    auto again = importCallList(store, fileio::readAll(kMasterScp));
    EXPECT_EQ(again->added, 0);
    EXPECT_EQ(static_cast<std::size_t>(again->known), distinct.size());

    const auto img = QBDatImage::load(f.paths.callDbPath());
    ASSERT_EQ(img.size(), distinct.size());
    EXPECT_EQ(img.record(1).Call(), *distinct.begin());
    EXPECT_EQ(img.record(static_cast<std::uint32_t>(img.size())).Call(), *distinct.rbegin());
    std::size_t withDl1 = 0;
    for (const auto& c : distinct)
        withDl1 += c.find("DL1") != std::string::npos;
    EXPECT_EQ(img.search({"DL1", "", 20}).found, withDl1);
}

TEST(CallDb, LoadReadsEveryFieldAndNulls) {
    Fixture f;
    {
        CallDbStore store(f.paths.callDbPath());
        CallRecord r = rec("DL1ABC", "JO31AB");
        r.counters = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
        r.LastDate = DateTime{2024, 5, 4, 12, 30, 0};
        ASSERT_TRUE(store.add(r).ok());
        // A row as an older file may hold it: nulls in the counters and date.
        store.db().exec("INSERT INTO OrvantaContestDat (Call) VALUES ('G4ABC')");
    }
    const auto img = QBDatImage::load(f.paths.callDbPath());
    ASSERT_EQ(img.size(), 2u);
    EXPECT_EQ(img.WriteInList(1),
              "DL1ABC       JO31AB   1   2   3   4   5   6   8   8   9  10 04.05.2024");
    EXPECT_EQ(img.WriteInList(2), "G4ABC        "
                                  "      "
                                  "   0   0   0   0   0   0   0   0   0   0");
    // What F8 and F9 take from a line: never a counter for a missing locator.
    EXPECT_EQ(listLineCall(img.WriteInList(1)), "DL1ABC");
    EXPECT_EQ(listLineLocator(img.WriteInList(1)), "JO31AB");
    EXPECT_EQ(listLineCall(img.WriteInList(2)), "G4ABC");
    EXPECT_EQ(listLineLocator(img.WriteInList(2)), "");
    EXPECT_EQ(listLineLocator("dl1xyz       jn88ef ***** BEREITS GEARBEITET *****"), "JN88EF");
    EXPECT_EQ(QBDatImage::load(f.dir / "missing.sqlite").size(), 0u);
    // The compact record keeps LastDate to the second.
    EXPECT_EQ(img.record(1).lastDate(), (DateTime{2024, 5, 4, 12, 30, 0}));
    EXPECT_EQ(img.record(2).lastDate(), DateTime{});
    // A load asked to stop ends without an image.
    const std::atomic<bool> stop{true};
    EXPECT_THROW(QBDatImage::load(f.paths.callDbPath(), &stop), QBDatImage::Cancelled);
}

TEST(CallDb, ForeignDatabaseImport) {
    Fixture f;
    const auto foreignPath = f.dir / "other.sqlite";
    {
        CallDbStore other(foreignPath);
        CallRecord r = rec("DL1ABC", "JO31AB");
        r.counters[1] = 4;
        r.LastDate = DateTime{2023, 7, 1, 10, 0, 0};
        ASSERT_TRUE(other.add(r).ok());
        ASSERT_TRUE(other.add(rec("OK1DEF", "JO70AA")).ok());
        ASSERT_TRUE(other.add(rec("G4ABC", "IO91")).ok());
    }
    CallDbStore store(f.paths.callDbPath());
    ASSERT_TRUE(store.add(rec("OK1DEF", "")).ok());
    ASSERT_TRUE(store.add(rec("G4ABC", "IO91")).ok());
    auto r = importForeignCallDb(store, foreignPath);
    ASSERT_TRUE(r.ok()) << r.failure().detail;
    EXPECT_EQ(r->added, 1);
    EXPECT_EQ(r->completed, 1);
    EXPECT_EQ(r->known, 1);
    const auto img = QBDatImage::load(f.paths.callDbPath());
    ASSERT_EQ(img.size(), 3u);
    EXPECT_EQ(img.WriteInList(1),
              "DL1ABC       JO31AB   0   4   0   0   0   0   0   0   0   0 01.07.2023");
    EXPECT_EQ(img.record(3).Locator(), "JO70AA");

    // Files that are no call database change nothing.
    test::writeFile(f.dir / "text.sqlite", "DL1ABC JO31AB\n");
    {
        sql::Db empty((f.dir / "empty.sqlite").string());
        empty.exec("CREATE TABLE Other (x)");
    }
    {
        CallDbStore bad(f.dir / "bad.sqlite");
        bad.db().exec("INSERT INTO OrvantaContestDat (Call, Locator) VALUES ('DL1-X', '')");
    }
    for (const char* name : {"text.sqlite", "empty.sqlite", "bad.sqlite", "missing.sqlite"}) {
        SCOPED_TRACE(name);
        auto bad = importForeignCallDb(store, f.dir / name);
        ASSERT_FALSE(bad.ok());
        EXPECT_EQ(bad.failure().text, 258);
        EXPECT_EQ(store.count(), 3);
    }
    EXPECT_FALSE(std::filesystem::exists(f.dir / "missing.sqlite"));
    EXPECT_TRUE(isSqliteFile(fileio::readAll(foreignPath)));
    EXPECT_FALSE(isSqliteFile(fileio::readAll(f.dir / "text.sqlite")));
}

TEST(CallDb, ResetCounters) {
    Fixture f;
    CallDbStore store(f.paths.callDbPath());
    CallRecord r = rec("DL1ABC", "JO31AB");
    r.counters = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    r.LastDate = DateTime{2023, 7, 1, 10, 0, 0};
    const auto id = store.add(r);
    ASSERT_TRUE(id.ok());
    std::array<bool, kBandCount> bands{};
    bands[1] = bands[9] = true;
    ASSERT_TRUE(resetCounters(store, bands, false).ok());
    auto row = store.find(*id);
    EXPECT_EQ(row->counters, (std::array<std::int32_t, kBandCount>{1, 0, 3, 4, 5, 6, 7, 8, 9, 0}));
    EXPECT_TRUE(row->LastDate);
    ASSERT_TRUE(resetCounters(store, {}, true).ok());
    row = store.find(*id);
    EXPECT_FALSE(row->LastDate);
    EXPECT_EQ(row->counters[2], 3);
}
