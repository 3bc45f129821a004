#include <gtest/gtest.h>

#include <string>

#include "core/util/sqlite.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

test::ToolRun tool(const test::TempDir& home, std::vector<std::string> args) {
    return test::runToolAt(home.path(), std::move(args));
}

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

} // namespace

TEST(ToolLog, NewLogAndInfo) {
    test::TempDir home;
    auto made = tool(home, {"new-log", "Mai", "--call", "dl1abc", "--locator", "jo62qm",
                            "--contest", "IARU VHF", "--weights", "1,1,2,3,4,5,6,7,8,9"});
    ASSERT_EQ(made.status, 0) << made.err;
    EXPECT_TRUE(std::filesystem::exists(home / "Logs" / "Mai.sqlite"));

    auto info = tool(home, {"info", "Mai"});
    ASSERT_EQ(info.status, 0) << info.err;
    EXPECT_TRUE(has(info.out, "MyCall\tDL1ABC\n"));
    EXPECT_TRUE(has(info.out, "MyLocator\tJO62QM\n"));
    EXPECT_TRUE(has(info.out, "ContName\tIARU VHF\n"));
    EXPECT_TRUE(has(info.out, "\n50\t1\t0\t0\t0\t0\t0\n"));
    EXPECT_TRUE(has(info.out, "\n1200\t3\t0\t0\t0\t0\t0\n"));
    EXPECT_TRUE(has(info.out, "\n47000\t9\t0\t0\t0\t0\t0\n"));

    // Stored totals show as they are in the file.
    {
        sql::Db db((home / "Logs" / "Mai.sqlite").string());
        db.exec("INSERT INTO \"432MHz\" (Call, QSONr, QRB, ErrQSO) VALUES ('OK1A', 1, 300, 0), "
                "('OK1B', 2, 200, 1)");
        db.exec("UPDATE MyData SET PGesamt432 = 300, ODX432 = 300, ODXNr432 = 1");
    }
    info = tool(home, {"info", "Mai"});
    EXPECT_TRUE(has(info.out, "\n432\t2\t2\t1\t300\t300\t1\n")) << info.out;
}

TEST(ToolLog, WeightsComeFromConEOrAConDat) {
    test::TempDir home;
    test::writeFile(home / "OrvantaContest.INI",
                    "[AConDat]\nC0=0\nC1=4\nC2=4\nC3=4\nC4=4\nC5=4\nC6=4\nC7=4\nC8=4\nC9=4\n"
                    "CName=Last\n[ConE]\n2,2,2,2,2,2,2,2,2,7,Named, with comma\n");
    ASSERT_EQ(tool(home, {"new-log", "A", "--call", "DL1ABC", "--locator", "JO62QM", "--contest",
                          "Named, with comma"})
                  .status,
              0);
    auto a = tool(home, {"info", "A"});
    EXPECT_TRUE(has(a.out, "ContName\tNamed, with comma\n"));
    EXPECT_TRUE(has(a.out, "\n47000\t7\t")) << a.out;

    ASSERT_EQ(tool(home, {"new-log", "B", "--call", "DL1ABC", "--locator", "JO62QM"}).status, 0);
    auto b = tool(home, {"info", "B"});
    EXPECT_TRUE(has(b.out, "ContName\tLast\n"));
    EXPECT_TRUE(has(b.out, "\n50\t1\t")) << "AConDat's 0 reads as 1";
    EXPECT_TRUE(has(b.out, "\n144\t4\t"));

    ASSERT_EQ(tool(home, {"new-log", "C", "--call", "DL1ABC", "--locator", "JO62QM", "--contest",
                          "Unknown"})
                  .status,
              0);
    auto c = tool(home, {"info", "C"});
    EXPECT_TRUE(has(c.out, "ContName\tUnknown\n"));
    EXPECT_TRUE(has(c.out, "\n144\t4\t")) << "no match keeps the weights in force";
}

TEST(ToolLog, RefusalsChangeNothing) {
    test::TempDir home;
    const std::vector<std::string> good{"--call", "DL1ABC",    "--locator",
                                        "JO62QM", "--contest", "X"};
    auto with = [&](std::vector<std::string> head, std::vector<std::string> tail) {
        head.insert(head.end(), tail.begin(), tail.end());
        return tool(home, head);
    };
    struct Case {
        std::vector<std::string> args;
        std::string message;
    };
    const std::vector<Case> cases{
        {{"new-log", "a*b"}, "Dateiname ungültig"},
        {{"new-log", "ok", "--call", "DL", "--locator", "JO62QM", "--contest", "X"},
         "Ungültiges Rufzeichen"},
        {{"new-log", "ok", "--call", "DL1ABC", "--locator", "JO62QZ", "--contest", "X"},
         "Ungültiger Locator"},
        {{"new-log", "ok", "--call", "DL1ABC", "--locator", "JO62QM"},
         "Ungültige Contest Bezeichnung"},
        {{"new-log", "ok", "--call", "DL1ABC", "--locator", "JO62QM", "--contest", "X", "--weights",
          "1,2,3"},
         "--weights"},
    };
    for (const auto& c : cases) {
        auto r = c.args.size() == 2 ? with(c.args, good) : tool(home, c.args);
        EXPECT_EQ(r.status, 2) << c.message;
        EXPECT_TRUE(has(r.err, c.message)) << r.err;
    }
    EXPECT_FALSE(std::filesystem::exists(home / "Logs" / "ok.sqlite"));
    EXPECT_FALSE(std::filesystem::exists(home / "Logs" / "a*b.sqlite"));

    ASSERT_EQ(with({"new-log", "Same"}, good).status, 0);
    {
        sql::Db db((home / "Logs" / "Same.sqlite").string());
        db.exec("INSERT INTO \"144MHz\" (Call) VALUES ('KEEP')");
    }
    auto again = with({"new-log", "Same"}, good);
    EXPECT_EQ(again.status, 2);
    EXPECT_TRUE(has(again.err, "Datei existiert bereits! Überschreiben?"));
    EXPECT_TRUE(has(tool(home, {"info", "Same"}).out, "\n144\t1\t1\t")) << "the QSO is kept";

    ASSERT_EQ(with({"new-log", "Same", "--overwrite"}, good).status, 0);
    EXPECT_TRUE(has(tool(home, {"info", "Same"}).out, "\n144\t1\t0\t"));

    auto missing = tool(home, {"info", "Nothing"});
    EXPECT_EQ(missing.status, 2);
    EXPECT_TRUE(has(missing.err, "Kein gültiges Log!"));
}

TEST(ToolLog, InfoRefusesAnOldLog) {
    test::TempDir home;
    std::filesystem::create_directories(home / "Logs");
    {
        sql::Db db((home / "Logs" / "Old.sqlite").string());
        db.exec("CREATE TABLE \"144MHz\" (Call TEXT(15), ErrQSO BOOLEAN)");
    }
    auto r = tool(home, {"info", "Old"});
    EXPECT_EQ(r.status, 2);
    EXPECT_TRUE(has(r.err, "Zu alte Logversion")) << r.err;
}
