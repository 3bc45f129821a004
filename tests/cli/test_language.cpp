#include <gtest/gtest.h>

#include <algorithm>

#include "core/i18n/builtin_texts.h"
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

std::string iniText(const test::TempDir& dir) {
    const auto p = dir / "home" / "OrvantaContest.INI";
    return std::filesystem::exists(p) ? test::readFile(p) : std::string();
}

// The template holds every filled row of the built-in table, whichever
// areas have added rows.
long filledRows() {
    return static_cast<long>(std::count_if(builtinTexts().begin(), builtinTexts().end(),
                                           [](const TextRow& r) { return *r.second != '\0'; }));
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
    EXPECT_EQ(std::count(content.begin(), content.end(), '\n'), 3 + filledRows());
    EXPECT_NE(content.find("\n425 = Band wird von OrvantaContest nicht unterstützt!\n"),
              std::string::npos);

    const auto chosen = tool(dir, {"language", "English.lng"});
    ASSERT_EQ(chosen.status, 0) << chosen.err;
    EXPECT_EQ(chosen.out, "Language: English.lng\n");
    EXPECT_NE(iniText(dir).find("[QB-OPTION]\nLanguage=English.lng\n"), std::string::npos);

    const auto english = tool(dir, {"language-template"});
    ASSERT_EQ(english.status, 0) << english.err;
    EXPECT_EQ(english.out, "File saved as\n" + tpl.string() + "\n");
    content = test::readFile(tpl);
    EXPECT_NE(content.find("\n1 = Invalid call sign\n"), std::string::npos);
    EXPECT_EQ(std::count(content.begin(), content.end(), '\n'), 3 + filledRows());

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
    r = tool(dir, {"language", "Gone.lng"});
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("The language file is invalid!\nGone.lng"), std::string::npos) << r.err;
    EXPECT_EQ(iniText(dir), before);
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
