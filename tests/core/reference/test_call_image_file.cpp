#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "call_record_support.h"
#include "core/app/app_paths.h"
#include "core/reference/call_image_file.h"
#include "core/reference/call_image_loader.h"
#include "core/util/sqlite.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"

using namespace orv;
using test::rec;
namespace fs = std::filesystem;
using Verdict = CallImageFile::Verdict;

namespace {

// A call database in a data folder, with calls of several shapes and a
// record whose counters do not fit the packed record.
struct Folder {
    test::TempDir dir;
    AppPaths paths;
    Folder() {
        paths.appPath = dir.path();
        CallDbStore store(db());
        for (const auto& r : {rec("DL1ABC", "JO31AB", {1, 2}, DateTime{2024, 5, 4, 12, 0, 0}),
                              rec("DL1ABC/P", "JO41CD"), rec("OE1ABC", "JN88EE"),
                              rec("ABC123", "JO31XX", {70000, -1, 65535}), rec("G4ABC", ""),
                              rec("DK2AB", "JO31AC"), rec("SP9XYZ", "KO00AA")})
            EXPECT_TRUE(store.add(r).ok());
    }
    fs::path db() const { return paths.callDbPath(); }
    fs::path image() const { return callImagePath(db()); }
    std::int64_t stamp() const {
        sql::Db d(db().string(), sql::Db::Mode::ReadOnly);
        return callDbStamp(d).value();
    }
    // What a start does: the loader's outcome, with the file written after it.
    CallImageLoader::Outcome load() const {
        CallImageLoader::Outcome out;
        CallImageLoader loader(db(), [&](CallImageLoader::Outcome o) { out = std::move(o); });
        loader.wait();
        return out;
    }
};

// The answers of an image to queries of every kind the search plans: one,
// two, three and more characters, characters outside the index's alphabet,
// locator parts alone and with a call part, and no hit.
std::vector<std::string> answers(const QBDatImage& img) {
    const std::vector<std::pair<std::string, std::string>> queries = {
        {"D", ""},     {"DL", ""},  {"ABC", ""},  {"L1AB", ""}, {"1ABC/P", ""},
        {"C/", ""},    {"A?C", ""}, {"", "JO"},   {"", "JO31"}, {"AB", "JO"},
        {"ABC", "JN"}, {"ZZZ", ""}, {"dl1", " "}, {"", "KO"},   {"XYZ", "KO0"}};
    std::vector<std::string> out;
    for (const auto& [call, loc] : queries) {
        const auto r = img.search({call, loc, 100});
        std::string line = call + "|" + loc + ": " + std::to_string(r.found);
        for (auto n : r.records)
            line += "\n" + img.WriteInList(n);
        out.push_back(line);
    }
    return out;
}

} // namespace

TEST(CallImageFile, MappedFileAnswersAsAFreshBuild) {
    Folder f;
    const auto first = f.load();
    ASSERT_TRUE(first.image);
    EXPECT_FALSE(first.fromFile);
    ASSERT_TRUE(fs::exists(f.image()));
    const auto second = f.load();
    ASSERT_TRUE(second.image);
    EXPECT_TRUE(second.fromFile);

    const auto fresh = QBDatImage::load(f.db());
    ASSERT_EQ(second.image->size(), fresh.size());
    EXPECT_EQ(answers(*second.image), answers(fresh));
    for (std::uint32_t n = 1; n <= fresh.size(); ++n) {
        EXPECT_EQ(second.image->record(n).counters, fresh.record(n).counters);
        EXPECT_EQ(second.image->WriteInList(n), fresh.WriteInList(n));
    }
}

// Every writer of the database makes the file stale: this process through
// the store (in WAL mode, before any checkpoint), a new database, and the
// tool in a process of its own. The next start builds anew and finds the
// change, and writes a file the start after takes.
TEST(CallImageFile, AnyWriteMakesTheFileStale) {
    struct Case {
        const char* name;
        std::function<void(Folder&)> write;
        std::size_t records; // after the write
    };
    const std::vector<Case> cases = {
        {"add", [](Folder& f) { ASSERT_TRUE(CallDbStore(f.db()).add(rec("ZZ9ZZ", "")).ok()); }, 8},
        {"change",
         [](Folder& f) {
             CallDbStore store(f.db());
             auto r = store.find(1).value();
             r.Locator = "JO99XX";
             ASSERT_TRUE(store.change(r).ok());
         },
         7},
        {"remove", [](Folder& f) { ASSERT_TRUE(CallDbStore(f.db()).remove(2).ok()); }, 6},
        {"reset counters",
         [](Folder& f) {
             CallDbStore store(f.db());
             std::array<bool, kBandCount> bands{};
             bands[0] = true;
             ASSERT_TRUE(resetCounters(store, bands, false).ok());
         },
         7},
        {"NewQBDat", [](Folder& f) { NewQBDat(f.paths); }, 0},
        {"orvanta-tool calldb-import",
         [](Folder& f) {
             test::writeFile(f.dir / "list.txt", "ZZ9ZZ JO50AA\nZZ8ZZ\n");
             const auto run =
                 test::runToolAt(f.dir.path(), {"calldb-import", (f.dir / "list.txt").string()});
             ASSERT_EQ(run.status, 0) << run.err;
         },
         9},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Folder f;
        ASSERT_TRUE(f.load().image);
        const std::int64_t before = f.stamp();
        c.write(f);
        EXPECT_NE(f.stamp(), before);
        EXPECT_EQ(CallImageFile::open(f.image(), f.stamp()).verdict, Verdict::Stale);
        const auto rebuilt = f.load();
        ASSERT_TRUE(rebuilt.image);
        EXPECT_FALSE(rebuilt.fromFile);
        EXPECT_EQ(rebuilt.image->size(), c.records);
        EXPECT_EQ(answers(*rebuilt.image), answers(QBDatImage::load(f.db())));
        EXPECT_TRUE(f.load().fromFile);
    }
}

// A file that is cut short, overwritten or not an image at all is never
// searched: the start builds from the database and writes the file anew.
TEST(CallImageFile, DamagedFilesAreRebuilt) {
    struct Case {
        const char* name;
        std::function<void(std::string&)> damage;
    };
    auto putU32 = [](std::string& b, std::size_t at, std::uint32_t v) {
        std::memcpy(b.data() + at, &v, sizeof v);
    };
    const std::size_t header = 88;
    const std::vector<Case> cases = {
        {"empty", [](std::string& b) { b.clear(); }},
        {"header only", [&](std::string& b) { b.resize(header); }},
        {"one byte short", [](std::string& b) { b.pop_back(); }},
        {"one byte more", [](std::string& b) { b.push_back(0); }},
        {"bad magic", [](std::string& b) { b[0] = 'X'; }},
        {"record count changed", [](std::string& b) { b[24] ^= 1; }},
        {"header checksum changed", [&](std::string& b) { b[header - 1] ^= 0x40; }},
        {"text file", [](std::string& b) { b = "DL1ABC JO31AB\n"; }},
        // The first offset of the call index's pair lists, after the
        // records (7 x 48 bytes), one overflow record (40) and the single
        // and pair counts (64 + 4096 entries of 4 bytes).
        {"list offsets out of order",
         [&](std::string& b) { putU32(b, header + 7 * 48 + 40 + (64 + 4096 + 262144) * 4, 9); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Folder f;
        ASSERT_TRUE(f.load().image);
        const std::string good = test::readFile(f.image());
        std::string bad = good;
        c.damage(bad);
        test::writeFile(f.image(), bad);
        EXPECT_EQ(CallImageFile::open(f.image(), f.stamp()).verdict, Verdict::Damaged);
        const auto rebuilt = f.load();
        ASSERT_TRUE(rebuilt.image);
        EXPECT_FALSE(rebuilt.fromFile);
        EXPECT_EQ(rebuilt.image->size(), 7u);
        EXPECT_EQ(test::readFile(f.image()), good);
        EXPECT_TRUE(f.load().fromFile);
    }
    Folder f;
    EXPECT_EQ(CallImageFile::open(f.image(), f.stamp()).verdict, Verdict::Missing);
}

// A database of an older version has no stamp: the first load adds one and
// keeps the image from then on.
TEST(CallImageFile, ADatabaseWithoutStampGetsOne) {
    Folder f;
    {
        sql::Db d(f.db().string());
        d.exec("DROP TABLE QBDatStamp");
        for (const char* t : {"INSERT", "UPDATE", "DELETE"})
            d.exec(std::string("DROP TRIGGER QBDatStamp") + t);
    }
    EXPECT_FALSE(f.load().fromFile);
    EXPECT_TRUE(f.load().fromFile);
    ASSERT_TRUE(CallDbStore(f.db()).add(rec("ZZ9ZZ", "")).ok());
    EXPECT_EQ(CallImageFile::open(f.image(), f.stamp()).verdict, Verdict::Stale);
}
