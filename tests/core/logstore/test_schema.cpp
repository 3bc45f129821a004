#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/logstore/bands.h"
#include "core/logstore/schema.h"
#include "core/util/sqlite.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

struct Column {
    std::string name;
    std::string type;
    bool operator==(const Column&) const = default;
};

std::vector<Column> columns(sql::Db& db, const std::string& table) {
    auto st = db.prepare("SELECT name, type FROM pragma_table_info(?1) ORDER BY cid");
    st.bind(1, table);
    std::vector<Column> out;
    while (st.step())
        out.push_back({st.text(0), st.text(1)});
    return out;
}

// Index name -> (unique, the one column it covers).
std::set<std::string> indexes(sql::Db& db, const std::string& table) {
    auto st = db.prepare("SELECT il.name, il.[unique], ii.name, "
                         "(SELECT count(*) FROM pragma_index_info(il.name)) "
                         "FROM pragma_index_list(?1) il, pragma_index_info(il.name) ii");
    st.bind(1, table);
    std::set<std::string> out;
    while (st.step()) {
        EXPECT_EQ(st.int64(1), 0) << st.text(0) << " must admit duplicates";
        EXPECT_EQ(st.int64(3), 1) << st.text(0) << " must cover one field";
        out.insert(st.text(0) + " on " + st.text(2));
    }
    return out;
}

std::vector<std::string> tablesInFileOrder(sql::Db& db) {
    auto st = db.prepare("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY rowid");
    std::vector<std::string> out;
    while (st.step())
        out.push_back(st.text(0));
    return out;
}

} // namespace

TEST(Bands, CodesTablesAndIndexesAgree) {
    const std::vector<std::pair<std::string, std::string>> expected{
        {"50", "050"},   {"144", "144"},  {"432", "432"},   {"1200", "1k2"},  {"2300", "2k4"},
        {"3400", "3K4"}, {"5700", "5k6"}, {"10000", "10G"}, {"24000", "24G"}, {"47000", "47G"},
    };
    ASSERT_EQ(kBandCount, 10);
    for (int i = 0; i < kBandCount; ++i) {
        const auto& [box, code] = expected[static_cast<std::size_t>(i)];
        EXPECT_EQ(band(i).boxText, box);
        EXPECT_EQ(band(i).table, box + "MHz");
        EXPECT_EQ(band(i).code, code);
        EXPECT_EQ(BandCodes[static_cast<std::size_t>(i)], code);
        EXPECT_EQ(std::to_string(band(i).qrg), box);
        EXPECT_EQ(BandIndex(box), i);
        EXPECT_EQ(BandIndex(" " + box + " "), i);
        EXPECT_EQ(bandIndexOfTable(box + "mhz"), i);
    }
    EXPECT_EQ(band(3).caption, "23 cm");
    EXPECT_EQ(band(9).caption, "6 mm");
    EXPECT_FALSE(BandIndex("145"));
    EXPECT_FALSE(BandIndex(""));
    EXPECT_FALSE(bandIndexOfTable("MyData"));
    EXPECT_THROW(band(10), std::out_of_range);
    EXPECT_THROW(band(-1), std::out_of_range);
    EXPECT_EQ(myDataField("PGesamt", 1), "PGesamt144");
}

TEST(Schema, BandTablesHaveTheSeventeenFieldsInOrderWithTheirIndexes) {
    test::TempDir dir;
    NewQbLogBD(dir / "log.sqlite");
    sql::Db db((dir / "log.sqlite").string(), sql::Db::Mode::ReadOnly);

    const std::vector<Column> expected{
        {"Call", "TEXT(15)"},    {"Locator", "TEXT(6)"}, {"QRG", "INTEGER"},
        {"DatTime", "DATETIME"}, {"RSTgeg", "TEXT(4)"},  {"QSONr", "INTEGER"},
        {"RSTerh", "TEXT(8)"},   {"QRB", "INTEGER"},     {"QSL", "BOOLEAN"},
        {"Notice", "TEXT(100)"}, {"Mod", "TEXT(5)"},     {"Dupe", "BOOLEAN"},
        {"Name", "TEXT(100)"},   {"ModRX", "TEXT(5)"},   {"AusBr", "TEXT(3)"},
        {"ErrQSO", "BOOLEAN"},   {"OPCall", "TEXT(15)"},
    };
    const std::vector<std::string> indexed{"Call",  "Locator", "QRG",    "DatTime", "RSTgeg",
                                           "QSONr", "RSTerh",  "QRB",    "QSL",     "Mod",
                                           "ModRX", "AusBr",   "ErrQSO", "OPCall"};
    for (const auto& b : kBands) {
        const std::string t(b.table);
        EXPECT_EQ(columns(db, t), expected) << t;
        std::set<std::string> want;
        for (const auto& f : indexed)
            want.insert(indexName(t, f) + " on " + f);
        EXPECT_EQ(indexes(db, t), want) << t;
    }
    EXPECT_EQ(indexName("144MHz", "QSONr"), "144MHz_QSONrIndex");
}

TEST(Schema, MyDataHasFortyThreeFieldsAndNoIndex) {
    test::TempDir dir;
    NewQbLogBD(dir / "log.sqlite");
    sql::Db db((dir / "log.sqlite").string(), sql::Db::Mode::ReadOnly);
    const auto cols = columns(db, "MyData");
    ASSERT_EQ(cols.size(), 43u);
    EXPECT_EQ(cols[0], (Column{"MyCall", "TEXT(15)"}));
    EXPECT_EQ(cols[1], (Column{"MyLocator", "TEXT(6)"}));
    for (int i = 0; i < kBandCount; ++i) {
        const std::string box(band(i).boxText);
        const auto at = static_cast<std::size_t>(2 + 4 * i);
        EXPECT_EQ(cols[at], (Column{"ODX" + box, "INTEGER"}));
        EXPECT_EQ(cols[at + 1], (Column{"PGesamt" + box, "INTEGER"}));
        EXPECT_EQ(cols[at + 2], (Column{"ODXNr" + box, "INTEGER"}));
        EXPECT_EQ(cols[at + 3], (Column{"Zaehl" + box, "SMALLINT"}));
    }
    EXPECT_EQ(cols[42], (Column{"ContName", "TEXT(255)"}));
    EXPECT_TRUE(indexes(db, "MyData").empty());

    std::vector<std::string> order;
    for (const auto& b : kBands)
        order.emplace_back(b.table);
    order.emplace_back("MyData");
    EXPECT_EQ(tablesInFileOrder(db), order);
}

TEST(Schema, AnExistingTableIsNeverTouchedAndAPartlyBuiltFileIsCompleted) {
    test::TempDir dir;
    const auto path = dir / "partly.sqlite";
    {
        sql::Db db(path.string());
        // An odd, older 144 MHz table under another case, with a row of its own.
        db.exec("CREATE TABLE \"144mhz\" (X TEXT)");
        db.exec("INSERT INTO \"144mhz\" VALUES ('keep')");
        MakeLogTable(db, "50MHz", bandTableFields());
    }
    EXPECT_FALSE(MakeLogTable(path, "144MHZ", bandTableFields()));
    NewQbLogBD(path);

    sql::Db db(path.string(), sql::Db::Mode::ReadOnly);
    EXPECT_EQ(columns(db, "144mhz"), (std::vector<Column>{{"X", "TEXT"}}));
    EXPECT_TRUE(indexes(db, "144mhz").empty());
    auto st = db.prepare("SELECT X FROM \"144mhz\"");
    ASSERT_TRUE(st.step());
    EXPECT_EQ(st.text(0), "keep");
    for (const auto& b : kBands)
        EXPECT_TRUE(db.tableExists(b.table)) << b.table;
    EXPECT_TRUE(db.tableExists("MyData"));
    EXPECT_EQ(columns(db, "432MHz").size(), 17u);
    // The 50 MHz table made first keeps its indexes and was not made twice.
    EXPECT_EQ(indexes(db, "50MHz").size(), 14u);
}

TEST(Schema, FieldExistsIsCaseBlindAndReadsOnly) {
    test::TempDir dir;
    const auto path = dir / "log.sqlite";
    NewQbLogBD(path);
    EXPECT_TRUE(FieldExists(path, "144MHz", "ErrQSO"));
    EXPECT_TRUE(FieldExists(path, "144mhz", "opcall"));
    EXPECT_TRUE(FieldExists(path, "MyData", "Zaehl47000"));
    EXPECT_FALSE(FieldExists(path, "144MHz", "Zaehl144"));
    EXPECT_FALSE(FieldExists(path, "145MHz", "Call"));
    EXPECT_THROW(FieldExists(dir / "missing.sqlite", "144MHz", "Call"), sql::Error);
    EXPECT_FALSE(std::filesystem::exists(dir / "missing.sqlite"));
}

TEST(Schema, ConstraintsRefuseWhatTheFieldsCannotHold) {
    test::TempDir dir;
    sql::Db db((dir / "log.sqlite").string());
    NewQbLogBD(db);
    auto insert = [&](const std::string& cols, const std::string& vals) {
        db.exec("INSERT INTO \"144MHz\" (" + cols + ") VALUES (" + vals + ")");
    };
    struct Case {
        const char* what;
        std::string cols, vals;
        bool accepted;
    };
    const std::vector<Case> cases{
        {"call of 15", "Call", "'ABCDEFGHIJKLMNO'", true},
        {"call of 16", "Call", "'ABCDEFGHIJKLMNOP'", false},
        {"report received of 8", "RSTerh", "'59912345'", true},
        {"report received of 9", "RSTerh", "'599123456'", false},
        {"umlauts count as one character", "Notice", "'" + std::string(50, 'x') + "äöüäöü'", true},
        {"null text", "Call", "NULL", false},
        {"numeric text for a Long", "QRG", "'144'", true},
        {"non-numeric text for a Long", "QRB", "'12a'", false},
        {"Long overflow", "QSONr", "2147483648", false},
        {"Boolean 2", "QSL", "2", false},
        {"null Boolean", "ErrQSO", "NULL", false},
    };
    for (const auto& c : cases) {
        if (c.accepted)
            EXPECT_NO_THROW(insert(c.cols, c.vals)) << c.what;
        else
            EXPECT_THROW(insert(c.cols, c.vals), sql::Error) << c.what;
    }
    // Fields that were not given: text empty (not Null), Booleans false.
    auto st = db.prepare("SELECT typeof(Name), Name, Dupe, ErrQSO, typeof(QRB) FROM \"144MHz\" "
                         "WHERE Call = 'abcdefghijklmno'");
    ASSERT_TRUE(st.step()) << "text compares case-blind";
    EXPECT_EQ(st.text(0), "text");
    EXPECT_EQ(st.text(1), "");
    EXPECT_EQ(st.int64(2), 0);
    EXPECT_EQ(st.int64(3), 0);
    EXPECT_EQ(st.text(4), "null");
    // Zaehl is 16 bit.
    db.exec("INSERT INTO MyData (Zaehl144) VALUES (32767)");
    EXPECT_THROW(db.exec("INSERT INTO MyData (Zaehl144) VALUES (32768)"), sql::Error);
}
