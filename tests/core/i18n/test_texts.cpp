#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "core/i18n/builtin_texts.h"
#include "core/i18n/texts.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

const std::string kMarker = "# OrvantaContest Language File V1.0\n";

Texts::LoadResult load(Texts& t, const std::string& content) {
    std::istringstream in(content);
    return t.loadLanguage(in);
}

// Every row of a table, for comparing whole tables.
std::vector<std::string> rows(const Texts& t) {
    std::vector<std::string> r;
    for (int n = 0; n <= Texts::kMaxRow; ++n)
        r.push_back(t(n));
    return r;
}

} // namespace

TEST(Texts, BuiltInTableHasItsRowsAndNothingElse) {
    const Texts t;
    EXPECT_EQ(t(230), "Die Sprachdatei ist ungültig!");
    EXPECT_EQ(t(183), "Datei gespeichert unter");
    EXPECT_EQ(t(425), "Band wird von OrvantaContest nicht unterstützt!");
    // The classic rows, and the gap before the added ones, which a language
    // file of the classic table may not fill with rows of its own meaning.
    int classic = 0;
    for (int n = 0; n < Texts::kFirstAddedRow; ++n)
        classic += t(n).empty() ? 0 : 1;
    EXPECT_EQ(classic, 402);
    for (int n : {0, 187, 197, 340, 392, 422, 426, 500, -1, Texts::kMaxRow + 1})
        EXPECT_EQ(t(n), "") << n;
    // Each row once, the added ones at kFirstAddedRow and later.
    std::set<int> seen;
    for (const auto& [n, text] : builtinTexts()) {
        EXPECT_TRUE(seen.insert(n).second) << "row " << n << " given twice";
        EXPECT_TRUE(n <= 425 || (n >= Texts::kFirstAddedRow && n <= Texts::kMaxRow)) << n;
        EXPECT_EQ(t(n), text) << n;
    }
}

TEST(Texts, FirstLineMustCarryTheMarker) {
    struct Case {
        std::string first;
        bool valid;
    } cases[] = {
        {"# OrvantaContest Language File V1.0", true},
        {"orvantacontest language file", true},
        {"xx ORVANTACONTEST LANGUAGE FILE, English", true},
        {"# OrvantaContest Language File V1.0\r", true},
        {"\xEF\xBB\xBF# OrvantaContest Language File", true},
        {"# OrvantaContest Language", false},
        {"", false},
        {"1 = Falsch", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.first);
        Texts t;
        const auto before = rows(t);
        const auto r = load(t, c.first + "\n1 = Bad call\n");
        EXPECT_EQ(r.status, c.valid ? Texts::LoadStatus::Loaded : Texts::LoadStatus::Invalid);
        EXPECT_EQ(t(1), c.valid ? "Bad call" : "Ungültiges Rufzeichen");
        if (!c.valid) {
            EXPECT_EQ(rows(t), before) << "a bad file must change nothing";
        }
    }
    // The marker on a later line does not count.
    Texts t;
    EXPECT_EQ(load(t, "# Deutsch\n" + kMarker + "1 = x\n").status, Texts::LoadStatus::Invalid);
}

TEST(Texts, LinesAreReadByTheirNumberBeforeTheFirstEqualsSign) {
    struct Case {
        std::string line;
        int row; // the row the line sets; a skipped line names row 0, which stays empty
        std::string text;
    } cases[] = {
        {"12=Text", 12, "Text"},
        {"  12 =   Text", 12, "Text"},
        {"\t12\t=\tText", 12, "Text"},
        {"13 = a = b", 13, "a = b"},
        {"14=Zeile ", 14, "Zeile "},
        {"15=", 15, ""},
        {"16abc = x", 16, "x"},
        {"0 = zero", 0, "zero"},
        {"500 = last", 500, "last"},
        {"17 = two\\r\\nlines", 17, "two\r\nlines"},
        {"# 18 = comment", 0, ""},
        {"x19 = letter first", 0, ""},
        {"=20", 0, ""},
        {"21 no equals sign", 0, ""},
        {"   ", 0, ""},
        {"-22 = minus", 0, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.line);
        Texts t;
        auto expected = rows(t);
        expected[static_cast<std::size_t>(c.row)] = c.text;
        const auto r = load(t, kMarker + c.line + "\n");
        EXPECT_EQ(r.status, Texts::LoadStatus::Loaded);
        EXPECT_EQ(rows(t), expected);
    }
}

TEST(Texts, LineEndsLastLineAndLegacyCodePage) {
    Texts t;
    const auto r = load(t, "# OrvantaContest Language File\r\n1 = Eins\r\n\r\n2 = Zwei\n3 = Drei");
    EXPECT_EQ(r.rowsRead, 3);
    EXPECT_EQ(t(1), "Eins");
    EXPECT_EQ(t(2), "Zwei");
    EXPECT_EQ(t(3), "Drei") << "the last line without its line end";

    // Windows-1252: "Ungültig", "Größe".
    load(t, kMarker + "4 = Ung\xFCltig\r\n5 = Gr\xF6\xDF"
                      "e\r\n");
    EXPECT_EQ(t(4), "Ungültig");
    EXPECT_EQ(t(5), "Größe");
}

TEST(Texts, RowAboveTheTableStopsReadingAndKeepsTheRowsBefore) {
    Texts t;
    const auto r = load(t, kMarker + "1 = One\n2 = Two\n2000 = Beyond\n3 = Three\n");
    EXPECT_EQ(r.status, Texts::LoadStatus::Truncated);
    EXPECT_EQ(r.badRow, 2000);
    EXPECT_EQ(r.rowsRead, 2);
    EXPECT_EQ(t(1), "One");
    EXPECT_EQ(t(2), "Two");
    EXPECT_EQ(t(3),
              "RSTNr ungültig Mindestlänge SSB 5 CW 6 Zeichen (Beispiel SSB 59001, CW 599001)");

    Texts huge;
    EXPECT_EQ(load(huge, kMarker + "99999999999999999999 = x\n").status,
              Texts::LoadStatus::Truncated);
}

TEST(Texts, PartialFileKeepsOtherRowsAndDefaultsRestoreEveryRow) {
    Texts t;
    const auto german = rows(t);
    std::string all = kMarker;
    for (int n = 0; n <= Texts::kMaxRow; ++n)
        all += std::to_string(n) + " = row " + std::to_string(n) + "\n";
    load(t, all);
    EXPECT_EQ(t(0), "row 0");
    EXPECT_EQ(t(187), "row 187");
    load(t, kMarker + "1 = partial\n");
    EXPECT_EQ(t(1), "partial");
    EXPECT_EQ(t(2), "row 2") << "rows absent from a file keep what they held";
    t.loadDefaults();
    EXPECT_EQ(rows(t), german);
}

TEST(Texts, MissingFileDoesNothing) {
    test::TempDir dir;
    Texts t;
    const auto before = rows(t);
    EXPECT_EQ(t.loadLanguageFile({}).status, Texts::LoadStatus::NoFile);
    EXPECT_EQ(t.loadLanguageFile(dir / "none.lng").status, Texts::LoadStatus::NoFile);
    EXPECT_EQ(t.loadLanguageFile(dir.path()).status, Texts::LoadStatus::NoFile);
    EXPECT_EQ(rows(t), before);
    test::writeFile(dir / "x.lng", kMarker + "9 = Already worked");
    EXPECT_EQ(t.loadLanguageFile(dir / "x.lng").status, Texts::LoadStatus::Loaded);
    EXPECT_EQ(t(9), "Already worked");
}

TEST(Texts, TemplateListsEveryRowAndReadsBackUnchanged) {
    Texts t;
    t.set(0, "zero");
    t.set(499, "two\r\nlines");
    t.set(498, "lone\nbreak");
    t.set(5, "");
    const std::string tpl = t.languageTemplate();
    EXPECT_EQ(tpl.rfind("# OrvantaContest Language File V1.0\n# Deutsch\n\n0 = zero\n1 = ", 0), 0u);
    EXPECT_NE(tpl.find("\n230 = Die Sprachdatei ist ungültig!\n"), std::string::npos);
    EXPECT_NE(tpl.find("\n499 = two\\r\\nlines\n"), std::string::npos);
    EXPECT_EQ(tpl.find("\n5 = "), std::string::npos) << "empty rows are left out";
    // Every filled built-in row (the classic table and the areas' rows), less
    // the one emptied, plus the three set.
    const auto filled = std::count_if(builtinTexts().begin(), builtinTexts().end(),
                                      [](const TextRow& r) { return *r.second != '\0'; });
    EXPECT_EQ(std::count(tpl.begin(), tpl.end(), '\n'), 3 + filled - 1 + 3);

    Texts back;
    for (int n = 0; n <= Texts::kMaxRow; ++n)
        back.set(n, "");
    ASSERT_EQ(load(back, tpl).status, Texts::LoadStatus::Loaded);
    t.set(498, "lone\r\nbreak"); // a lone line feed comes back as CR LF
    EXPECT_EQ(rows(back), rows(t));
}

// A carriage return alone inside a line is a line break of the text, so
// that the template gives back what was read (an input the fuzzer found).
TEST(Texts, StrayCarriageReturnIsALineBreakAndReadsBack) {
    Texts t;
    ASSERT_EQ(
        t.loadLanguageFile(test::sourceDir() / "tests/data/fuzz/language/stray-cr.lng").status,
        Texts::LoadStatus::Loaded);
    EXPECT_EQ(t(119), "Operators in\r\n\r\nthe contest");
    EXPECT_EQ(t(120), "Ends in a return\r\n");
    EXPECT_EQ(t(121), "Mixed\r\n\r\nmarks");

    Texts back;
    ASSERT_EQ(load(back, t.languageTemplate()).status, Texts::LoadStatus::Loaded);
    EXPECT_EQ(rows(back), rows(t));
}
