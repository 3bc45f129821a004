#include <gtest/gtest.h>

#include <cctype>
#include <sstream>

#include "support/run_tool.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

std::string home(const test::TempDir& dir) {
    return (dir / "home").string();
}

test::ToolRun tool(const test::TempDir& dir, std::vector<std::string> args) {
    args.insert(args.begin(), {"--home", home(dir)});
    return test::runTool(args);
}

// The rows of the classic table in a template: its added rows stand beside them.
long classicRows(const std::string& content) {
    long n = 0;
    std::istringstream in(content);
    for (std::string line; std::getline(in, line);)
        if (!line.empty() && std::isdigit(static_cast<unsigned char>(line[0])) &&
            std::stoi(line) <= 425)
            ++n;
    return n;
}

std::string iniText(const test::TempDir& dir) {
    const auto p = dir / "home" / "OrvantaContest.INI";
    return std::filesystem::exists(p) ? test::readFile(p) : std::string();
}

} // namespace

TEST(ToolLanguage, TemplateIsWrittenInTheLanguageInUse) {
    test::TempDir dir;
    const auto tpl = dir / "home" / "Language" / "neu.lng";

    const auto german = tool(dir, {"language-template"});
    ASSERT_EQ(german.status, 0) << german.err;
    EXPECT_EQ(german.out, "Datei gespeichert unter\n" + tpl.string() + "\n");
    std::string content = test::readFile(tpl);
    EXPECT_EQ(content.rfind("# OrvantaContest Language File V1.0\n# Deutsch\n\n1 = Ungültiges "
                            "Rufzeichen\n",
                            0),
              0u);
    EXPECT_EQ(classicRows(content), 402);
    EXPECT_NE(content.find("\n425 = Band wird von OrvantaContest nicht unterstützt!\n"),
              std::string::npos);
    EXPECT_NE(content.find("\n502 = &Neues Log anlegen\n"), std::string::npos);

    const auto chosen = tool(dir, {"language", "English.lng"});
    ASSERT_EQ(chosen.status, 0) << chosen.err;
    EXPECT_EQ(chosen.out, "Language: English.lng\n");
    EXPECT_NE(iniText(dir).find("[QB-OPTION]\nLanguage=English.lng\n"), std::string::npos);

    const auto english = tool(dir, {"language-template"});
    ASSERT_EQ(english.status, 0) << english.err;
    EXPECT_EQ(english.out, "File saved as\n" + tpl.string() + "\n");
    content = test::readFile(tpl);
    EXPECT_NE(content.find("\n1 = Invalid call sign\n"), std::string::npos);
    EXPECT_NE(content.find("\n502 = &Create new log\n"), std::string::npos);
    EXPECT_EQ(classicRows(content), 402);

    const auto back = tool(dir, {"language", "<Default>"});
    ASSERT_EQ(back.status, 0) << back.err;
    EXPECT_EQ(back.out, "Sprache: <Default>\n");
    EXPECT_EQ(tool(dir, {"language-template"}).out.rfind("Datei gespeichert unter\n", 0), 0u);
}

TEST(ToolLanguage, ListsTheMenuWithTheChoiceMarked) {
    test::TempDir dir;
    test::writeFile(dir / "home" / "Language" / "Polski.lng", "# OrvantaContest Language File\n");
    auto r = tool(dir, {"language"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "* <Default>\n  English.lng\n  Polski.lng\n");
    r = tool(dir, {"language", "polski.LNG"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "Sprache: Polski.lng\n") << "stored as the file is spelled";
    EXPECT_EQ(tool(dir, {"language"}).out, "  <Default>\n  English.lng\n* Polski.lng\n");
}

TEST(ToolLanguage, BadOrMissingFileIsRefusedAndChangesNothing) {
    test::TempDir dir;
    ASSERT_EQ(tool(dir, {"language", "English.lng"}).status, 0);
    const std::string before = iniText(dir);
    test::writeFile(dir / "home" / "Language" / "Bad.lng", "Sprachdatei\n1 = x\n");

    auto r = tool(dir, {"language", "Bad.lng"});
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("The language file is invalid!"), std::string::npos) << r.err;
    for (const char* gone : {"Gone.lng", "Gone", "Bad.lng.lng"}) {
        r = tool(dir, {"language", gone});
        EXPECT_EQ(r.status, 2);
        EXPECT_EQ(r.err, "No language file of that name. Languages:\n  <Default>\n  Bad.lng\n* "
                         "English.lng\n")
            << gone;
    }
    EXPECT_EQ(iniText(dir), before);
}

TEST(ToolLanguage, NameWithOrWithoutEndingChoosesTheFile) {
    test::TempDir dir;
    for (const char* name : {"English", "english", "ENGLISH.LNG", "English.lng"}) {
        const auto r = tool(dir, {"language", name});
        ASSERT_EQ(r.status, 0) << name << r.err;
        EXPECT_EQ(r.out, "Language: English.lng\n") << name;
        EXPECT_EQ(tool(dir, {"language", "<Default>"}).status, 0);
    }
}

// The first start of the tool on a new data folder takes the desktop's
// language; a folder with a settings file keeps its own.
TEST(ToolLanguage, FirstStartSpeaksTheDesktopsLanguage) {
    struct Case {
        test::EnvChanges env;
        const char* stored; // nullptr: no settings file written
        const char* says;   // the start of an unknown QRB locator's refusal
    };
    const Case cases[] = {
        {{{"LANG", "en_US.UTF-8"}}, "English.lng", "Invalid locator"},
        {{{"LANG", "de_DE.UTF-8"}}, "<Default>", "Ungültiger Locator"},
        {{{"LANG", "fr_FR.UTF-8"}}, "English.lng", "Invalid locator"},
        {{{"LANG", "C.UTF-8"}}, nullptr, "Ungültiger Locator"},
        {{{"LANG", ""}}, nullptr, "Ungültiger Locator"},
        {{{"LANG", "C"}, {"LC_ALL", "en_GB.UTF-8"}}, "English.lng", "Invalid locator"},
    };
    for (const Case& c : cases) {
        test::TempDir dir;
        const auto r = test::runTool({"--home", home(dir), "qrb", "JN78DF", "XX"}, {}, c.env);
        EXPECT_EQ(r.status, 2);
        EXPECT_EQ(r.err.rfind(c.says, 0), 0u) << c.env.front().second << ": " << r.err;
        if (c.stored)
            EXPECT_NE(iniText(dir).find(std::string("Language=") + c.stored), std::string::npos)
                << c.env.front().second;
        else
            EXPECT_EQ(iniText(dir), "") << c.env.front().second;
    }

    // A stored choice beats the desktop.
    test::TempDir dir;
    test::writeFile(dir / "home" / "OrvantaContest.INI", "[QB-OPTION]\nLanguage=<Default>\n");
    const auto r =
        test::runTool({"--home", home(dir), "qrb", "JN78DF", "XX"}, {}, {{"LANG", "en_US.UTF-8"}});
    EXPECT_EQ(r.err.rfind("Ungültiger Locator", 0), 0u) << r.err;
    EXPECT_EQ(iniText(dir), "[QB-OPTION]\nLanguage=<Default>\n");
}

TEST(ToolLanguage, CommandLineMistakesInTheLanguageInUse) {
    test::TempDir dir;
    ASSERT_EQ(tool(dir, {"language", "English"}).status, 0);
    struct Case {
        std::vector<std::string> args;
        std::string err;
    };
    const Case cases[] = {
        {{"nonsense"}, "Unknown command: nonsense (see --help)\n"},
        {{"qrb", "JN78DF", "--port"}, "--port: Missing value\n"},
        {{"qrb"}, "Usage: orvanta-tool qrb OWN OTHER\n"},
        {{"backup", "Field"}, "Missing: FOLDER (see --help)\n"},
    };
    for (const Case& c : cases) {
        const auto r = tool(dir, c.args);
        EXPECT_EQ(r.status, 2) << c.args[0];
        EXPECT_EQ(r.err, c.err) << c.args[0];
    }
}

TEST(ToolLanguage, StoredLanguageThatIsGoneOrBadLeavesAWorkingTool) {
    test::TempDir dir;
    test::writeFile(dir / "home" / "OrvantaContest.INI", "[QB-OPTION]\nLanguage=Gone.lng\n");
    auto r = tool(dir, {"language-template"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.out.rfind("Datei gespeichert unter\n", 0), 0u);

    test::writeFile(dir / "home" / "OrvantaContest.INI", "[QB-OPTION]\nLanguage=Bad.lng\n");
    test::writeFile(dir / "home" / "Language" / "Bad.lng", "no marker\n1 = x\n");
    r = tool(dir, {"language-template"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "Die Sprachdatei ist ungültig!\n");
    EXPECT_EQ(r.out.rfind("Datei gespeichert unter\n", 0), 0u);
}

TEST(ToolLanguage, FreshDataFolderGetsTheEnglishFile) {
    test::TempDir dir;
    ASSERT_EQ(tool(dir, {"language"}).status, 0);
    const auto en = test::readFile(dir / "home" / "Language" / "English.lng");
    EXPECT_EQ(en.rfind("# OrvantaContest Language File V1.0\n", 0), 0u);
    EXPECT_NE(en.find("\n230 = The language file is invalid!\n"), std::string::npos);
}
