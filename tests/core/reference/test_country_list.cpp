#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "core/reference/country_list.h"
#include "core/util/sqlite.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

const std::filesystem::path kRealCty = "/usr/share/hamradio-files/cty.dat";

// A header in the fixed columns of CTY.DAT: name to 26, zones and continent
// in fields of 5, latitude 9, longitude 10, offset 9, primary prefix 6.
std::string header(const std::string& name, int cq, int itu, const std::string& cont,
                   const std::string& pre) {
    char buf[128];
    std::snprintf(buf, sizeof buf, "%-26s%-5s%-5s%-5s%9s%10s%9s%6s", (name + ":").c_str(),
                  (std::to_string(cq) + ":").c_str(), (std::to_string(itu) + ":").c_str(),
                  (cont + ":").c_str(), "41.90:", "-12.43:", "-1.0:", (pre + ":").c_str());
    return buf;
}

std::string sampleCty(const std::string& eol) {
    return header("United States", 5, 8, "NA", "K") + eol + "    K,N,W,=KH6XYZ;" + eol +
           header("Hawaii", 31, 61, "OC", "KH6") + eol + "    KH6,KH7,AH6;" + eol +
           header("Canada", 5, 9, "NA", "VE") + eol +
           "    VE,VA1(5)[9],VE8(2)[4],VY0(2)[4],VO2(2){EU},CY0<44/-60>;" + eol;
}

struct Fixture {
    test::TempDir dir;
    std::filesystem::path db = dir / "QBCountry.sqlite";
};

} // namespace

TEST(CountryList, LineEndsLfAndCrLfGiveTheSameList) {
    for (const std::string eol : {"\n", "\r\n", "\xEF\xBB\xBF\r\n"}) {
        SCOPED_TRACE(eol == "\n" ? "LF" : "CR LF");
        Fixture f;
        // A byte order mark in front of the file is no part of the first column.
        const std::string bom = eol.size() > 2 ? eol.substr(0, 3) : "";
        auto r =
            importCountryText(f.db, bom + sampleCty(eol.substr(bom.size())), CountryFormat::CtyDat);
        ASSERT_TRUE(r.ok()) << r.failure().text;
        auto list = CountryList::load(f.db);
        auto e = list.lookup("KH6ABC");
        ASSERT_TRUE(e);
        EXPECT_EQ(e->Country, "Hawaii");
        EXPECT_EQ(e->CQZone, 31);
        EXPECT_EQ(e->ITUZone, 61);
        EXPECT_EQ(e->Continent, "OC");
        EXPECT_EQ(e->PrimaryPrefix, "KH6");
        // The second line of a record continues its list: "W" must be known.
        ASSERT_TRUE(list.lookup("W1AW"));
        EXPECT_EQ(list.lookup("W1AW")->Country, "United States");
    }
}

TEST(CountryList, LookupTable) {
    Fixture f;
    ASSERT_TRUE(importCountryText(f.db, sampleCty("\n"), CountryFormat::CtyDat).ok());
    const auto list = CountryList::load(f.db);
    struct Case {
        const char* call;
        const char* country; // nullptr: no country
        int cq, itu;
        const char* cont;
    };
    const Case cases[] = {
        {"K1XX", "United States", 5, 8, "NA"},   // short prefix
        {"KH6XX", "Hawaii", 31, 61, "OC"},       // longer prefix wins
        {"kh7aa", "Hawaii", 31, 61, "OC"},       // upper-cased before the lookup
        {"KH6XYZ", "Hawaii", 31, 61, "OC"}, // "=" tokens match only calls typed with "="
        {"=KH6XYZ", "United States", 5, 8, "NA"},
        {"KH6XYZA", "Hawaii", 31, 61, "OC"},
        {"VE3ABC", "Canada", 5, 9, "NA"},
        {"VA1ZZ", "Canada", 5, 9, "NA"},       // override equal to the record
        {"VE8AA", "Canada", 2, 4, "NA"},       // "(2)[4]"
        {"VY0AA", "Canada", 2, 4, "NA"},       // same override, same variant
        {"VO2AA", "Canada", 2, 9, "EU"},       // "(2){EU}"
        {"CY0<44/-60>", "Canada", 5, 9, "NA"}, // "<" alone: token kept as it stands
        {"CY0AA", nullptr, 0, 0, nullptr},
        {"9A1A", nullptr, 0, 0, nullptr}, // digit first, nothing stored
        {"", nullptr, 0, 0, nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.call);
        const auto e = list.lookup(c.call);
        if (!c.country) {
            EXPECT_FALSE(e);
            continue;
        }
        ASSERT_TRUE(e);
        EXPECT_EQ(e->Country, c.country);
        EXPECT_EQ(e->CQZone, c.cq);
        EXPECT_EQ(e->ITUZone, c.itu);
        EXPECT_EQ(e->Continent, c.cont);
    }
    // VE8 and VY0 share one variant row; VO2 has its own: 3 countries + 2.
    sql::Db db(f.db.string());
    auto st = db.prepare("SELECT COUNT(*) FROM DxDat");
    ASSERT_TRUE(st.step());
    EXPECT_EQ(st.int64(0), 5);
    auto pre = db.prepare("SELECT Pre FROM PreSuch WHERE Pre LIKE 'CY0%'");
    ASSERT_TRUE(pre.step());
    EXPECT_EQ(pre.text(0), "CY0<44/-60>");
}

TEST(CountryList, RefusedFileLeavesTheOldListWorking) {
    Fixture f;
    ASSERT_TRUE(importCountryText(f.db, sampleCty("\n"), CountryFormat::CtyDat).ok());
    const std::string bad[] = {
        "",
        "short",
        "This is not a country file at all, just some text;\n",
        // Columns shifted by one: the zone field no longer ends in ":".
        " " + sampleCty("\n"),
        // A zone the field cannot hold, in an override.
        header("United States", 5, 8, "NA", "K") + "\n    K,W(123456);\n",
        // A good first record and a broken second one.
        header("United States", 5, 8, "NA", "K") + "\n    K;\nBroken record here;\n",
    };
    for (const auto& b : bad) {
        SCOPED_TRACE(b.substr(0, 20));
        auto r = importCountryText(f.db, b, CountryFormat::CtyDat);
        ASSERT_FALSE(r.ok());
        EXPECT_EQ(r.failure().text, 84);
        const auto list = CountryList::load(f.db);
        ASSERT_TRUE(list.lookup("KH6XX"));
        EXPECT_EQ(list.lookup("KH6XX")->Country, "Hawaii");
        EXPECT_FALSE(std::filesystem::exists(f.dir / "QBCountry.sqlite.new"));
    }
}

TEST(CountryList, ImportReplacesTheWholeList) {
    Fixture f;
    ASSERT_TRUE(importCountryText(f.db, sampleCty("\n"), CountryFormat::CtyDat).ok());
    const std::string other = header("Germany", 14, 28, "EU", "DL") + "\n    DA,DL;\n";
    ASSERT_TRUE(importCountryText(f.db, other, CountryFormat::CtyDat).ok());
    const auto list = CountryList::load(f.db);
    EXPECT_FALSE(list.lookup("KH6XX"));
    ASSERT_TRUE(list.lookup("DL1ABC"));
    EXPECT_EQ(list.lookup("DL1ABC")->RecNr, 1);
}

TEST(CountryList, ArrlCtyLayout) {
    Fixture f;
    const std::string arrl = "Hawaii: 31: 61: OC: 21.12: 157.48: 10.0: KH6:\n"
                             "  AH6,AH7,KH6,&\n  KH7,NH6;\r\n"
                             "United States: 5: 8: NA: 37.53: 91.67: 5.0: K:\n  K,N,W(4);\n";
    auto r = importCountryText(f.db, arrl, CountryFormat::ArrlCty);
    ASSERT_TRUE(r.ok());
    const auto list = CountryList::load(f.db);
    ASSERT_TRUE(list.lookup("KH7Z"));
    EXPECT_EQ(list.lookup("KH7Z")->Country, "Hawaii");
    EXPECT_EQ(list.lookup("NH6A")->CQZone, 31);
    EXPECT_EQ(list.lookup("K1A")->Country, "United States");
    // No overrides in this layout: the token stands as written.
    EXPECT_FALSE(list.lookup("W1AW"));
    EXPECT_EQ(list.lookup("W(4)")->ITUZone, 8);
    auto bad = importCountryText(f.db, "Hawaii 31 61 OC KH6 AH6,KH6;\n", CountryFormat::ArrlCty);
    ASSERT_FALSE(bad.ok());
    EXPECT_EQ(bad.failure().text, 84);
    auto bigZone = importCountryText(
        f.db, "Hawaii: 31: 99999: OC: 21.12: 157.48: 10.0: KH6:\n KH6;\n", CountryFormat::ArrlCty);
    ASSERT_FALSE(bigZone.ok());
    EXPECT_EQ(bigZone.failure().text, 84);
    EXPECT_TRUE(CountryList::load(f.db).lookup("KH6A"));
}

TEST(CountryList, RealCtyDat) {
    if (!std::filesystem::exists(kRealCty))
        GTEST_SKIP() << "hamradio-files not installed";
    Fixture f;
    auto r = importCountryFile(f.db, kRealCty, CountryFormat::CtyDat);
    ASSERT_TRUE(r.ok());
    EXPECT_GT(r->dx.size(), 340u);
    EXPECT_GT(r->prefixes.size(), 20000u);
    const auto list = CountryList::load(f.db);
    struct Case {
        const char* call;
        const char* primary;
        int cq, itu;
    };
    const Case cases[] = {
        {"KH6XX", "KH6", 31, 61}, // Hawaii, not the K of the mainland
        {"K1XX", "K", 5, 8},      // the short prefix K
        {"DL1ABC", "DL", 14, 28},
        {"9M4SDX", "9M2", 28, 54}, // the "=9M4SDX" token needs the "=" typed
        {"=9M4SDX", "1S", 26, 50},
        {"9M4ABC", "9M2", 28, 54},
        {"VE8ABC", "VE", 1, 3}, // the override "VE8(1)[3]"
        {"1A0KM", "1A", 15, 28},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.call);
        const auto e = list.lookup(c.call);
        ASSERT_TRUE(e);
        EXPECT_EQ(e->PrimaryPrefix, c.primary);
        EXPECT_EQ(e->CQZone, c.cq);
        EXPECT_EQ(e->ITUZone, c.itu);
    }
}
