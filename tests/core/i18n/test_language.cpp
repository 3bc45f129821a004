#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "core/i18n/builtin_texts.h"
#include "core/i18n/bundled_languages.h"
#include "core/i18n/language.h"
#include "core/util/text.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

const std::string kMarker = "# OrvantaContest Language File V1.0\n";

struct Fixture {
    test::TempDir dir;
    Settings settings{IniFile{dir / "OrvantaContest.INI"}};
    std::filesystem::path languages = dir / "Language";
    Texts texts;

    Fixture() { std::filesystem::create_directories(languages); }
    void lng(const std::string& name, const std::string& body) {
        test::writeFile(languages / name, kMarker + body);
    }
};

// The rows an English file sets, read into a table that starts empty.
Texts englishOnly() {
    Texts t;
    for (int n = 0; n <= Texts::kMaxRow; ++n)
        t.set(n, "");
    std::istringstream in{std::string(englishLanguageFile())};
    EXPECT_EQ(t.loadLanguage(in).status, Texts::LoadStatus::Loaded);
    return t;
}

} // namespace

TEST(Language, MenuListsLanguageFilesByName) {
    Fixture f;
    f.lng("Polski.LNG", "");
    f.lng("deutsch.lng", "");
    f.lng("English.lng", "");
    test::writeFile(f.languages / "notes.txt", "");
    test::writeFile(f.languages / ".lng", "");
    std::filesystem::create_directories(f.languages / "Old.lng");
    EXPECT_EQ(languageFiles(f.languages),
              (std::vector<std::string>{"deutsch.lng", "English.lng", "Polski.LNG"}));
    EXPECT_TRUE(languageFiles(f.dir / "none").empty());
}

TEST(Language, ChoosingLoadsOverTheCurrentTableAndDefaultRestoresAll) {
    Fixture f;
    const Texts german;
    f.lng("A.lng", "1 = A one\n2 = A two\n");
    f.lng("B.lng", "1 = B one\n");

    EXPECT_EQ(chooseLanguage(f.texts, f.settings, f.languages, "A.lng").status,
              Texts::LoadStatus::Loaded);
    EXPECT_EQ(f.settings.get(keys::Language), "A.lng");
    chooseLanguage(f.texts, f.settings, f.languages, "b.LNG"); // found case-blind
    EXPECT_EQ(f.texts(1), "B one");
    EXPECT_EQ(f.texts(2), "A two") << "rows the new file lacks keep the former language";
    EXPECT_EQ(f.settings.get(keys::Language), "b.LNG");

    EXPECT_EQ(chooseLanguage(f.texts, f.settings, f.languages, kDefaultLanguage).status,
              Texts::LoadStatus::NoFile);
    EXPECT_EQ(f.settings.get(keys::Language), "<Default>");
    for (int n = 0; n <= Texts::kMaxRow; ++n)
        ASSERT_EQ(f.texts(n), german(n)) << n;

    // A file that is gone: the built-in table, and the choice is still stored.
    chooseLanguage(f.texts, f.settings, f.languages, "A.lng");
    chooseLanguage(f.texts, f.settings, f.languages, "Gone.lng");
    EXPECT_EQ(f.texts(1), german(1));
    EXPECT_EQ(f.settings.get(keys::Language), "Gone.lng");
}

TEST(Language, InvalidFileChangesNoRowAndAsksForText230) {
    Fixture f;
    f.lng("A.lng", "1 = A one\n");
    test::writeFile(f.languages / "Bad.lng", "Language\n1 = bad\n2 = bad\n");
    chooseLanguage(f.texts, f.settings, f.languages, "A.lng");
    const auto r = chooseLanguage(f.texts, f.settings, f.languages, "Bad.lng");
    EXPECT_EQ(r.status, Texts::LoadStatus::Invalid);
    EXPECT_EQ(f.texts(1), "A one");
    EXPECT_EQ(f.texts(2), "Ungültiger Locator");
    const auto problem = languageProblem(r);
    ASSERT_TRUE(problem);
    EXPECT_EQ(problem->text, 230);

    f.lng("Long.lng", "1 = L\n2777 = x\n");
    const auto cut = chooseLanguage(f.texts, f.settings, f.languages, "Long.lng");
    EXPECT_EQ(f.texts(1), "L");
    ASSERT_TRUE(languageProblem(cut));
    EXPECT_EQ(languageProblem(cut)->detail, "2777 > 1999");
    EXPECT_FALSE(languageProblem({Texts::LoadStatus::Loaded}));
    EXPECT_FALSE(languageProblem({Texts::LoadStatus::NoFile}));
}

TEST(Language, StartUpLoadsTheStoredChoiceOnlyWhenThereIsOne) {
    struct Case {
        const char* stored; // nullptr: no settings file at all
        std::string row1;
    } cases[] = {
        {nullptr, "Ungültiges Rufzeichen"},
        {"", "Ungültiges Rufzeichen"},
        {"<Default>", "Ungültiges Rufzeichen"},
        {"english.lng", "Invalid call"},
        {"Gone.lng", "Ungültiges Rufzeichen"},
        {"../Language/English.lng", "Ungültiges Rufzeichen"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.stored ? c.stored : "(no file)");
        Fixture f;
        f.lng("English.lng", "1 = Invalid call\n");
        if (c.stored)
            f.settings.set(keys::Language, c.stored);
        loadChosenLanguage(f.texts, f.settings, f.languages);
        EXPECT_EQ(f.texts(1), c.row1);
    }
}

TEST(Language, EnglishFileTranslatesEveryBuiltInRow) {
    const Texts en = englishOnly();
    const Texts german;
    std::set<int> builtin;
    for (const auto& [n, de] : builtinTexts()) {
        builtin.insert(n);
        const std::string& t = en(n);
        SCOPED_TRACE(std::to_string(n) + ": " + de + " / " + t);
        EXPECT_FALSE(text::trim(t).empty());
        // Accelerators, trailing blanks (text is appended there) and the
        // contest server's placeholder carry over.
        const std::string d = de;
        EXPECT_EQ(std::count(t.begin(), t.end(), '&'), std::count(d.begin(), d.end(), '&'));
        EXPECT_EQ(text::endsWith(t, " "), text::endsWith(d, " "));
        EXPECT_EQ(t.find("%HOST%") != std::string::npos, d.find("%HOST%") != std::string::npos);
        EXPECT_TRUE(text::isValidUtf8(t));
    }
    for (int n = 0; n <= Texts::kMaxRow; ++n)
        if (!builtin.count(n)) {
            EXPECT_EQ(en(n), "") << "row " << n << " is not one of the program's";
        }
    EXPECT_EQ(en(230), "The language file is invalid!");
    EXPECT_NE(en(1), german(1));
}

TEST(Language, ShippedFilesAreInstalledOnlyWhereMissing) {
    test::TempDir dir;
    installBundledLanguages(dir.path());
    EXPECT_EQ(test::readFile(dir / "English.lng"), std::string(englishLanguageFile()));
    EXPECT_TRUE(text::startsWith(englishLanguageFile(), "# OrvantaContest Language File"));

    // A file of the user's, whatever its case, stays as it is.
    test::TempDir other;
    test::writeFile(other / "ENGLISH.LNG", "mine");
    installBundledLanguages(other.path());
    EXPECT_EQ(languageFiles(other.path()), (std::vector<std::string>{"ENGLISH.LNG"}));
    EXPECT_EQ(test::readFile(other / "ENGLISH.LNG"), "mine");
}

// A file written for the classic table (rows up to 425) stays valid and keeps
// its meaning: its rows are taken, the added rows keep the built-in texts.
TEST(Language, ClassicFileLeavesTheAddedRowsAtTheirDefaults) {
    Fixture f;
    const Texts german;
    f.lng("Classic.lng", "1 = Invalid call\n425 = Band not supported!\n");
    EXPECT_EQ(chooseLanguage(f.texts, f.settings, f.languages, "Classic.lng").status,
              Texts::LoadStatus::Loaded);
    EXPECT_EQ(f.texts(1), "Invalid call");
    EXPECT_EQ(f.texts(425), "Band not supported!");
    int added = 0;
    for (const auto& [n, text] : builtinTexts())
        if (n >= Texts::kFirstAddedRow) {
            ++added;
            ASSERT_EQ(f.texts(n), text) << n;
        }
    EXPECT_GT(added, 0);
}
