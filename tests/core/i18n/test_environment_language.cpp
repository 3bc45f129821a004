#include <gtest/gtest.h>

#include "core/i18n/environment_language.h"
#include "support/temp_dir.h"

using namespace orv;

TEST(EnvironmentLanguage, DesktopLocaleChoosesTheLanguage) {
    const std::vector<std::string> shipped{"English.lng", "Francais.lng"};
    const std::vector<std::string> englishOnly{"English.lng"};
    struct Case {
        LocaleEnvironment env;
        std::vector<std::string> files;
        std::optional<std::string> expected;
    };
    const std::optional<std::string> none;
    const std::optional<std::string> german{"<Default>"};
    const std::optional<std::string> english{"English.lng"};
    const std::optional<std::string> french{"Francais.lng"};
    const Case cases[] = {
        {{"", "", "en_US.UTF-8", ""}, englishOnly, english},
        {{"", "", "de_DE.UTF-8", ""}, englishOnly, german},
        {{"", "", "de_AT@euro", ""}, englishOnly, german},
        {{"", "", "fr_FR.UTF-8", ""}, englishOnly, english}, // none shipped: English
        {{"", "", "fr_FR.UTF-8", ""}, shipped, french},
        {{"", "", "C.UTF-8", ""}, englishOnly, none},
        {{"", "", "POSIX", ""}, englishOnly, none},
        {{"", "", "", ""}, englishOnly, none},
        // LC_ALL before LC_MESSAGES before LANG.
        {{"de_DE.UTF-8", "en_GB.UTF-8", "fr_FR", ""}, shipped, german},
        {{"", "en_GB.UTF-8", "de_DE", ""}, shipped, english},
        // C in the first set one wins even where LANG names a language.
        {{"C", "", "de_DE.UTF-8", ""}, shipped, none},
        // LANGUAGE is a list taken before the locale, the first the program
        // speaks winning; the C locale ignores it.
        {{"", "", "en_US.UTF-8", "fr:en"}, shipped, french},
        {{"", "", "en_US.UTF-8", "it:de:en"}, shipped, german},
        {{"", "", "de_DE.UTF-8", "it"}, shipped, german},
        {{"", "", "C.UTF-8", "fr"}, shipped, none},
        {{"", "", "en_US.UTF-8", "::"}, shipped, english},
        // Files named by code or locale; case-blind.
        {{"", "", "pl_PL.UTF-8", ""},
         std::vector<std::string>{"english.LNG", "pl.lng"},
         std::string("pl.lng")},
        {{"", "", "nl_BE", ""},
         std::vector<std::string>{"nl_BE.lng", "English.lng"},
         std::string("nl_BE.lng")},
        {{"", "", "es_ES", ""},
         std::vector<std::string>{"english.LNG"},
         std::string("english.LNG")},
        // Without the English file an unknown language keeps the default.
        {{"", "", "fr_FR", ""}, std::vector<std::string>{}, none},
    };
    for (const Case& c : cases)
        EXPECT_EQ(environmentLanguage(c.env, c.files), c.expected)
            << c.env.lcAll << "|" << c.env.lcMessages << "|" << c.env.lang << "|" << c.env.language;
}

TEST(EnvironmentLanguage, ReadsTheFourVariables) {
    const auto env = localeEnvironment([](const char* name) -> std::optional<std::string> {
        if (std::string(name) == "LANG")
            return "en_US.UTF-8";
        if (std::string(name) == "LANGUAGE")
            return "fr:en";
        return std::nullopt;
    });
    EXPECT_EQ(env.lcAll, "");
    EXPECT_EQ(env.lcMessages, "");
    EXPECT_EQ(env.lang, "en_US.UTF-8");
    EXPECT_EQ(env.language, "fr:en");
}

TEST(EnvironmentLanguage, StoredOnlyWhenTheSettingsFileIsNew) {
    test::TempDir dir;
    const auto languages = dir / "Language";
    std::filesystem::create_directories(languages);
    test::writeFile(languages / "English.lng", "# OrvantaContest Language File V1.0\n");
    const LocaleEnvironment english{"", "", "en_US.UTF-8", ""};

    Settings fresh{IniFile{dir / "a.INI"}};
    EXPECT_EQ(adoptEnvironmentLanguage(fresh, languages, english), "English.lng");
    EXPECT_EQ(fresh.get(keys::Language), "English.lng");

    // A C locale stores nothing, not even the file.
    Settings plain{IniFile{dir / "b.INI"}};
    EXPECT_EQ(adoptEnvironmentLanguage(plain, languages, {"", "", "C.UTF-8", ""}), std::nullopt);
    EXPECT_FALSE(plain.file().exists());

    // A settings file that exists keeps its choice, or its lack of one.
    test::writeFile(dir / "c.INI", "[QB-OPTION]\nLanguage=<Default>\n");
    Settings stored{IniFile{dir / "c.INI"}};
    EXPECT_EQ(adoptEnvironmentLanguage(stored, languages, english), std::nullopt);
    EXPECT_EQ(stored.get(keys::Language), "<Default>");
    test::writeFile(dir / "d.INI", "");
    Settings empty{IniFile{dir / "d.INI"}};
    adoptEnvironmentLanguage(empty, languages, english);
    EXPECT_EQ(empty.get(keys::Language), "");
}
