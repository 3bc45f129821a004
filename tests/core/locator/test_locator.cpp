#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/locator/locator.h"

using namespace orv;

namespace {

struct Pair {
    const char* own;
    const char* other;
    float km;
    int grad;
    float gradDez;
};

} // namespace

// The worked examples of the rules and further pairs whose exact values were
// checked against a 40-digit evaluation of the same formula. Several sit on a
// rounding edge: a bearing whose float is exactly .5 (Grad goes to the even
// degree), a bearing just below .x5 (GradDez reads 7 digits and rounds up),
// and a bearing that rounds up to 360.
TEST(LocBerechnen, DistanceAndBearingOfKnownPairs) {
    const std::vector<Pair> cases = {
        {"JN78DF", "JN88EF", 155, 89, 89.2f},
        {"JN78LL", "JO62QM", 463, 347, 346.6f},
        {"JN78DF", "IO91VL", 1098, 295, 294.6f},
        // rounded up from 7.69 km
        {"JN78LL", "JN78MM", 8, 53, 52.9f},
        // float bearing exactly 266.5 / 265.5 / 290.5 / 313.5: half to even
        {"JN78DF", "IN33LO", 2163, 266, 266.5f},
        {"JN78DF", "IN54VQ", 1761, 266, 265.5f},
        {"JN78DF", "IO01RF", 2362, 290, 290.5f},
        {"JN78DF", "IO09KT", 2495, 314, 313.5f},
        // 359.551849 -> Grad 360 (not folded to 0), GradDez 359.6
        {"JN78DF", "JO74CK", 690, 360, 359.6f},
        // 247.049988f reads "247.0500" in 7 digits -> 247.1
        {"JN78DF", "IM46HG", 2477, 247, 247.1f},
        {"JN78DF", "IM66RR", 2122, 241, 240.7f},
        // the corners of the grid: 19999.85 km, bearing 359.958
        {"AA00AA", "RR99XX", 20000, 360, 360.0f},
        // neighbouring sub-squares on the south pole row: 4.63 km due north
        {"AA00AA", "AA00AB", 5, 0, 0.0f},
    };
    for (const auto& c : cases) {
        std::string own = c.own, other = c.other;
        const LocErgebnis e = LocBerechnen(own, other);
        SCOPED_TRACE(std::string(c.own) + " -> " + c.other);
        ASSERT_EQ(e.Fehler, 0);
        EXPECT_TRUE(e.ok());
        EXPECT_EQ(e.km, c.km);
        EXPECT_EQ(e.Grad, c.grad);
        EXPECT_EQ(e.GradDez, c.gradDez);
    }
}

TEST(LocBerechnen, BearingGoesFromFirstToSecondDistanceIsSymmetric) {
    std::string a = "JN78DF", b = "JN88EF";
    const LocErgebnis hin = LocBerechnen(a, b);
    const LocErgebnis zurueck = LocBerechnen(b, a);
    EXPECT_EQ(hin.km, zurueck.km);
    EXPECT_EQ(hin.Grad, 89);
    EXPECT_EQ(zurueck.Grad, 271); // 270.78 going back: the great circle bends
    EXPECT_EQ(zurueck.GradDez, 270.8f);
}

TEST(LocBerechnen, RewritesBothStringsInPlace) {
    struct Case {
        const char* own;
        const char* other;
        const char* ownAfter;
        const char* otherAfter;
        bool ok;
    };
    const std::vector<Case> cases = {
        {"jn78df ", "JN88EF", "JN78DF", "JN88EF", true},
        {"  jn78", "jo62qm\t", "JN78LL", "JO62QM", true},
        {"JN78DF", "jn88", "JN78DF", "JN88LL", true},
        // refused by the length test: folded and trimmed, not extended
        {"JN78", "jn88e", "JN78", "JN88E", false},
        {"jn78 ", "JN88EFX", "JN78", "JN88EFX", false},
        // refused by the character test, after the extension
        {"js78df ", "JN88", "JS78DF", "JN88LL", false},
        // refused by the character test after the extension
        {"JN78", "JS88", "JN78LL", "JS88LL", false},
    };
    for (const auto& c : cases) {
        std::string own = c.own, other = c.other;
        const LocErgebnis e = LocBerechnen(own, other);
        SCOPED_TRACE(std::string(c.own) + "|" + c.other);
        EXPECT_EQ(own, c.ownAfter);
        EXPECT_EQ(other, c.otherAfter);
        EXPECT_EQ(e.ok(), c.ok);
    }
}

TEST(LocBerechnen, RefusesWrongLengthsAndCharacters) {
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"JN78D", "JN88EF"},   // 5 characters, first four legal
        {"JN78DF", "JN88E"},   // 5 on the other side
        {"JN78DFA", "JN88EF"}, // 7
        {"JN78DF", "JN88EFAA"}, {"JN7", "JN88EF"},    {"", "JN88EF"},
        {"JN78DF", "   "},      {"JS78DF", "JN88EF"}, // S above R in position 2
        {"SN78DF", "JN88EF"},                         // ... and in position 1
        {"JN78DZ", "JN88EF"},                         // Z above X in position 6
        {"JN78ZF", "JN88EF"},                         // ... and in position 5
        {"JN78DF", "ZZ88EF"},   {"JNA8DF", "JN88EF"}, // letter where a digit belongs
        {"J178DF", "JN88EF"},                         // digit where a letter belongs
        {"JN78D F", "JN88EF"},  {"JN78DÄ", "JN88EF"},
    };
    for (const auto& [own, other] : cases) {
        std::string a = own, b = other;
        const LocErgebnis e = LocBerechnen(a, b);
        SCOPED_TRACE(std::string(own) + "|" + other);
        EXPECT_EQ(e.Fehler, -1);
        EXPECT_FALSE(e.ok());
    }
}

TEST(LocBerechnen, OneSubSquareIsOneKmBearingZero) {
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"JN78DF", "jn78df"},
        {"JN78", "JN78LL"}, // the extension makes them equal
        {"AA00AA", "AA00AA"},
        {"RR99XX", "RR99XX"},
    };
    for (const auto& [own, other] : cases) {
        std::string a = own, b = other;
        const LocErgebnis e = LocBerechnen(a, b);
        SCOPED_TRACE(std::string(own) + "|" + other);
        ASSERT_TRUE(e.ok());
        EXPECT_EQ(e.km, 1.0f);
        EXPECT_EQ(e.Grad, 0);
        EXPECT_EQ(e.GradDez, 0.0f);
    }
}

TEST(LocBerechnen, ExactlyAntipodalSubSquaresFailArithmetically) {
    std::string a = "JN78DF", b = "AE71DS"; // 48.229 N 14.292 E and 48.229 S 165.708 W
    EXPECT_THROW(LocBerechnen(a, b), LocRechenfehler);
    // The neighbour of the antipode is an ordinary, very long QSO, with a
    // bearing of 359.9999996 that the float already holds as 360.
    std::string c = "JN78DF", d = "AE71DT";
    const LocErgebnis e = LocBerechnen(c, d);
    ASSERT_TRUE(e.ok());
    EXPECT_EQ(e.km, 20000.0f);
    EXPECT_EQ(e.Grad, 360);
    EXPECT_EQ(e.GradDez, 360.0f);
}

TEST(LocOK, CharacterRangesPerPosition) {
    const std::vector<std::pair<const char*, bool>> cases = {
        {"AA00AA", true},  {"RR99XX", true},  {"JN78DF", true},   {"SA00AA", false},
        {"AS00AA", false}, {"@A00AA", false}, {"A@00AA", false},  {"AA/0AA", false},
        {"AA:0AA", false}, {"AA0/AA", false}, {"AA0:AA", false},  {"AA00YA", false},
        {"AA00AY", false}, {"AA00@A", false}, {"AA00A@", false},  {"jn78df", false},
        {"JN78df", false}, {"JN78D", false},  {"JN78DFA", false}, {"", false},
        {" JN78D", false},
    };
    for (const auto& [loc, ok] : cases)
        EXPECT_EQ(LocOK(loc), ok) << loc;
}

TEST(LocKoordinaten, CentreOfTheSubSquare) {
    struct Case {
        const char* loc;
        double lat;
        double lon;
    };
    const std::vector<Case> cases = {
        {"JN78DF", 48 + 13.75 / 60, 14 + 17.5 / 60},
        {"AA00AA", -90 + 1.25 / 60, -180 + 2.5 / 60},
        {"RR99XX", 89 + 58.75 / 60, 179 + 57.5 / 60},
        {"JJ00AA", 1.25 / 60, 2.5 / 60},
        {"IO91VL", 51 + 28.75 / 60, -(2 - 107.5 / 60)},
    };
    for (const auto& c : cases) {
        const LocPosition p = LocKoordinaten(c.loc);
        EXPECT_DOUBLE_EQ(p.lat, c.lat) << c.loc;
        EXPECT_DOUBLE_EQ(p.lon, c.lon) << c.loc;
    }
}

// The stored constants and the spelling of the formula decide roundings at
// whole-km edges. The first points lie a few 1e-10 km below a whole km with
// the stored 0.0174532925199 and 57.2957795130786; the exact pi/180 or 180/pi
// lift them over the edge, a wrong km per degree moves them by whole km.
TEST(LocQRB, StoredConstantsAndFormulaDecideTheRoundingUp) {
    struct Case {
        double lat1, lon1, lat2, lon2;
        double km;
    };
    const std::vector<Case> cases = {
        {0, 0, 0, 90, 10003},                 // 10002.24: 111.136 km per degree of arc
        {0, 0, 90, 0, 10003},                 // the same along a meridian
        {0, 0, 0, 89.99784048395513, 10002},  // 10001.9999999994
        {0, 0, 0, 89.997840483938646, 10002}, // 10001.9999999975
        {0, 0, 0, 44.989922257526203, 5000},  // 4999.9999999997
        // The arc cosine spelled with an arc tangent loses digits near c = 1:
        // here it gives 31.00000000002 and so 32, where std::acos gives
        // 30.99999999999 and 31.
        {0, 0, 0.27893751799614885, 0, 32},
        {10, 20, 10, 20, 1},            // same point: 1 km, never 0
        {48.5, 14.5, 48.5, 14.5001, 1}, // 7 m: rounded up to 1
    };
    for (const auto& c : cases)
        EXPECT_EQ(LocQRB(c.lat1, c.lon1, c.lat2, c.lon2), c.km)
            << c.lat1 << "," << c.lon1 << " -> " << c.lat2 << "," << c.lon2;
}

TEST(LocQRB, AntipodesDivideByZero) {
    EXPECT_THROW(LocQRB(0, 0, 0, 180), LocRechenfehler);
    EXPECT_THROW(LocQRB(45, 10, -45, -170), LocRechenfehler);
    // Distinct points so close that the cosine rounds to 1 meet the same
    // division; sub-square centres are never that close.
    EXPECT_THROW(LocQRB(48.5, 14.5, 48.5, 14.5000001), LocRechenfehler);
}

TEST(LocQTF, QuadrantsAndTheStoredPi) {
    struct Case {
        double lat1, lon1, lat2, lon2;
        float grad;
    };
    const std::vector<Case> cases = {
        {0, 0, 10, 0, 0.0f},
        {10, 20, 10, 20, 0.0f}, // same point
        // float-rounding edges: the stored pi (3.14159265359, 2e-13 above pi)
        // lifts these to the upper float; the exact pi would give 174.347397
        // and 357.252014
        {0, 0, -10, 1.0000021816891891, 174.347412f},
        {0, 0, 20, -1.0009980178087772, 357.252045f},
    };
    for (const auto& c : cases)
        EXPECT_EQ(LocQTF(c.lat1, c.lon1, c.lat2, c.lon2), c.grad)
            << c.lat1 << "," << c.lon1 << " -> " << c.lat2 << "," << c.lon2;

    // The four quadrants, seen from the equator.
    EXPECT_NEAR(LocQTF(0, 0, 0, 10), 90, 1e-4);
    EXPECT_NEAR(LocQTF(0, 0, -10, 0), 180, 1e-4);
    EXPECT_NEAR(LocQTF(0, 0, 0, -10), 270, 1e-4);
    EXPECT_NEAR(LocQTF(0, 0, 10, 10), 44.56, 0.01);
    EXPECT_NEAR(LocQTF(0, 0, -10, 10), 135.44, 0.01);
    EXPECT_NEAR(LocQTF(0, 0, -10, -10), 224.56, 0.01);
    EXPECT_NEAR(LocQTF(0, 0, 10, -10), 315.44, 0.01);
}

TEST(LocQTF, FarPointOnTheNorthPoleDividesByZero) {
    EXPECT_THROW(LocQTF(0, 0, 90, 0), LocRechenfehler);
}

TEST(LocErgebnis, BearingRoundings) {
    struct Case {
        float in;
        int grad;
        float gradDez;
    };
    const std::vector<Case> cases = {
        {0.0f, 0, 0.0f},        {0.5f, 0, 0.5f},         {1.5f, 2, 1.5f},
        {89.5f, 90, 89.5f},     {90.5f, 90, 90.5f},      {89.49999f, 89, 89.5f},
        {89.25f, 89, 89.3f}, // exact .x5 in binary: half away from zero
        {89.35f, 89, 89.4f}, // 89.3499985 in binary, "89.35000" in 7 digits
        {89.34999f, 89, 89.3f}, {0.05f, 0, 0.1f},        {0.04999f, 0, 0.0f},
        {358.5f, 358, 358.5f},  {359.5f, 360, 359.5f},   {359.6f, 360, 359.6f},
        {359.96f, 360, 360.0f}, {123.456f, 123, 123.5f},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(GradGerundet(c.in), c.grad) << c.in;
        EXPECT_EQ(GradMitKommastelle(c.in), c.gradDez) << c.in;
    }
}

TEST(LocErgebnis, OneDecimalOfLargeValuesStaysAsItIs) {
    EXPECT_EQ(GradMitKommastelle(1e20f), 1e20f);
    EXPECT_EQ(GradMitKommastelle(-2.25f), -2.3f);
    EXPECT_EQ(GradMitKommastelle(-0.04f), 0.0f);
}

TEST(LocErgaenzen, PartialEntryBecomesTheCentreOfWhatIsTyped) {
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"JN", "JN45MM"},     {"JN7", "JN75MM"},      {"JN78", "JN78MM"}, {"JN78D", "JN78DM"},
        {" JN78 ", "JN78MM"}, {"JN78DF", "JN78DF"},   {"J", "J"},         {"", ""},
        {"jn7", "jn75MM"},    {"JN78DFX", "JN78DFX"},
    };
    for (const auto& [in, out] : cases)
        EXPECT_EQ(LocErgaenzen(in), out) << in;

    // The preview of a 4-character entry uses M/M, LocBerechnen alone L/L.
    std::string own = "JN78DF", partial = LocErgaenzen("JN88");
    const LocErgebnis preview = LocBerechnen(own, partial);
    std::string own2 = "JN78DF", plain = "JN88";
    const LocErgebnis direct = LocBerechnen(own2, plain);
    ASSERT_TRUE(preview.ok());
    ASSERT_TRUE(direct.ok());
    EXPECT_EQ(partial, "JN88MM");
    EXPECT_EQ(plain, "JN88LL");
    EXPECT_NE(preview.GradDez, direct.GradDez);
}

TEST(LocGrossfeld, FirstFourCharactersUpperCase) {
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"JN78DF", "JN78"}, {"jn78df", "JN78"}, {" jo62qm ", "JO62"},
        {"JN78", "JN78"},   {"JN7", "JN7"},     {"", ""},
    };
    for (const auto& [in, out] : cases)
        EXPECT_EQ(LocGrossfeld(in), out) << in;
}
