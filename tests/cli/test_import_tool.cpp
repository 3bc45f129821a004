#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <memory>

#include "support/run_tool.h"
#include "support/temp_dir.h"
#include "support/text_output.h"

using namespace orv;

namespace {

std::string sample(const std::string& name) {
    return (test::sourceDir() / "tests/data/ham3" / name).string();
}

} // namespace

// `import-ham3 LOG FILE.ASC`: the counts on stdout, each refused line on
// stderr, unknown bands skipped, a non-empty first band refused with exit 2.
TEST(ImportTool, Ham3ImportCountsAndRefuses) {
    test::TempDir home;
    auto tool = [&](std::vector<std::string> args) { return test::runToolAt(home.path(), args); };
    for (const char* name : {"Field", "Other"})
        ASSERT_EQ(test::newLogAt(home.path(), name), 0);

    auto r = tool({"import-ham3", "Field", sample("contest.ASC")});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "QSOs gespeichert: 4\nZeilen abgewiesen: 0\nZeilen mit unbekanntem Band: 0\n");
    const auto list = tool({"list", "Field", "--band", "432"});
    EXPECT_NE(list.out.find("SP6ZDA/P"), std::string::npos) << list.out;

    // The band now holds QSOs: nothing more is stored.
    const auto before = tool({"list", "Field", "--band", "144"}).out;
    r = tool({"import-ham3", "Field", sample("contest.ASC")});
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.err, "Importieren abgebrochen! Log nicht leer. Band löschen oder neues Log "
                     "anlegen!\n");
    EXPECT_EQ(tool({"list", "Field", "--band", "144"}).out, before);

    r = tool({"import-ham3", "Other", sample("garbage.ASC")});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "QSOs gespeichert: 1\nZeilen abgewiesen: 5\nZeilen mit unbekanntem Band: 0\n");
    EXPECT_NE(r.err.find("Zeile 2: Keine HAM-III-Zeile"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("Zeile 6: !!DOPPELVERBINDUNG!! (OK1KKW)"), std::string::npos) << r.err;

    test::TempDir home2;
    ASSERT_EQ(test::newLogAt(home2.path(), "F"), 0);
    r = test::runToolAt(home2.path(), {"import-ham3", "F", sample("unknown_band_last.ASC")});
    EXPECT_EQ(r.out, "QSOs gespeichert: 1\nZeilen abgewiesen: 0\nZeilen mit unbekanntem Band: 1\n");

    r = tool({"import-ham3", "Other", (home / "missing.ASC").string()});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err.rfind("Die Datei kann nicht gelesen werden:\n", 0), 0u) << r.err;
    r = tool({"import-ham3", "Nothing", sample("contest.ASC")});
    EXPECT_EQ(r.status, 2);
}

// `print LOG --band BAND -o FILE.pdf`: every QSO of the band and the
// summary's score in the PDF's text.
TEST(ImportTool, PrintWritesThePdf) {
    test::TempDir home;
    auto tool = [&](std::vector<std::string> args) { return test::runToolAt(home.path(), args); };
    ASSERT_EQ(test::newLogAt(home.path(), "Field", "Fd"), 0);
    ASSERT_EQ(tool({"import-ham3", "Field", sample("contest.ASC")}).status, 0);
    const auto pdf = home / "Field-144.pdf";
    auto r = tool({"print", "Field", "--band", "144", "-o", pdf.string()});
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string t = test::pdfText(pdf);
    for (const char* call : {"OK1KKW", "DL0GTH"})
        EXPECT_NE(t.find(call), std::string::npos) << call;
    EXPECT_EQ(t.find("SP6ZDA"), std::string::npos);
    const auto ev = tool({"list", "Field", "--band", "144"});
    const std::string score = ev.out.substr(ev.out.find("score=") + 6);
    EXPECT_NE(t.find("Score:"), std::string::npos);
    EXPECT_NE(t.find(score.substr(0, score.find(' '))), std::string::npos);

    r = tool({"print", "Field", "--band", "144"});
    EXPECT_EQ(r.status, 2);
    r = tool({"print", "Field", "--band", "144", "-o", (home / "no" / "x.pdf").string()});
    EXPECT_EQ(r.status, 1);
}
