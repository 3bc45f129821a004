#include <gtest/gtest.h>

#include "core/i18n/texts.h"
#include "core/submission/log_folders.h"
#include "submission_support.h"
#include "support/fakes.h"

namespace orv::test {
namespace {

namespace fs = std::filesystem;
using namespace logfolders;

TEST(LogFolders, FolderNameRules) {
    const std::pair<std::string, bool> cases[] = {{"Contest 2026", true},
                                                  {"Müller", true},
                                                  {"", false},
                                                  {"   ", false},
                                                  {"a?b", false},
                                                  {"a/b", false},
                                                  {"a\\b", false},
                                                  {"a:b", false},
                                                  {"a<b", false},
                                                  {"a>b", false},
                                                  {"a|b", false},
                                                  {"a\"b", false},
                                                  {"a*b", false},
                                                  {"a\x01"
                                                   "b",
                                                   false},
                                                  {"a\x1f", false},
                                                  {"\xc4\x80", false},
                                                  {"\xff", false}};
    for (const auto& [name, ok] : cases)
        EXPECT_EQ(checkFolderName(name).ok(), ok) << name;
    EXPECT_EQ(checkFolderName("a?").failure().text, 410);
}

TEST(LogFolders, MakeFolderRefusesAnExistingOneAndReportsAFailure) {
    TempDir dir;
    const auto made = makeFolder(dir.path(), "Archiv");
    ASSERT_TRUE(made.ok());
    EXPECT_TRUE(fs::is_directory(dir / "Archiv"));
    EXPECT_EQ(makeFolder(dir.path(), "Archiv").failure().text, 411);
    EXPECT_EQ(makeFolder(dir.path(), "Ar?chiv").failure().text, 410);
    writeFile(dir / "plain", "x");
    EXPECT_EQ(makeFolder(dir / "plain", "Sub").failure().text, 1172);
}

class LogFoldersTest : public ::testing::Test {
protected:
    void SetUp() override {
        logs = dir / "Logs";
        other = dir / "Stick";
        fs::create_directories(other);
        ContestLog a = makeLog(logs, {1, 1, 1, 1, 1, 1, 1, 1, 1, 1}, "Fieldday");
        addRows(a, 1, {qso(1, "OK1KKW", "JO70FD", 275)});
        makeLog(logs, {1, 1, 1, 1, 1, 1, 1, 1, 1, 1}, "Open");
    }

    CopyReport copyOut(const std::vector<std::string>& names, const fs::path& target) {
        CopyRequest req;
        for (const auto& n : names)
            req.files.push_back(logs / n);
        req.target = target;
        req.logsFolder = logs;
        req.openLog = logs / "Open.sqlite";
        return copyLogs(req, dialogs, texts, [&](const std::string& s) { progress.push_back(s); });
    }

    TempDir dir;
    fs::path logs, other;
    FakeDialogs dialogs;
    Texts texts;
    std::vector<std::string> progress;
};

TEST_F(LogFoldersTest, ListLeavesOutTheOpenLogAndOtherFiles) {
    writeFile(logs / "notes.txt", "x");
    EXPECT_EQ(listLogFiles(logs), (std::vector<std::string>{"Fieldday.sqlite", "Open.sqlite"}));
    EXPECT_EQ(listLogFiles(logs, "Open.sqlite"), std::vector<std::string>{"Fieldday.sqlite"});
    EXPECT_TRUE(listLogFiles(dir / "missing").empty());
}

TEST_F(LogFoldersTest, CopyOutMakesAWholeLogAndAsksBeforeReplacing) {
    EXPECT_EQ(copyOut({"Fieldday.sqlite", "Open.sqlite"}, other).copied.size(), 2u);
    EXPECT_EQ(progress.front(), "Kopiere Fieldday.sqlite");
    EXPECT_TRUE(isValidLog(other / "Fieldday.sqlite"));
    EXPECT_EQ(ContestLog::open(other / "Fieldday.sqlite").value().rows(1).size(), 1u);
    EXPECT_TRUE(dialogs.asked.empty());

    // No keeps the file, Yes replaces it, Cancel ends the loop.
    writeFile(other / "Open.sqlite", "old");
    dialogs.answers = {Answer::No};
    EXPECT_TRUE(copyOut({"Open.sqlite"}, other).copied.empty());
    EXPECT_EQ(readFile(other / "Open.sqlite"), "old");
    EXPECT_EQ(dialogs.asked.back(), texts(8) + "\nOpen.sqlite");
    dialogs.answers = {Answer::Yes};
    EXPECT_EQ(copyOut({"Open.sqlite"}, other).copied.size(), 1u);
    EXPECT_TRUE(isValidLog(other / "Open.sqlite"));
    writeFile(other / "Fieldday.sqlite", "old");
    dialogs.answers = {Answer::Cancel};
    const CopyReport r = copyOut({"Fieldday.sqlite", "Open.sqlite"}, other);
    EXPECT_TRUE(r.cancelled);
    EXPECT_TRUE(r.copied.empty());
    EXPECT_EQ(readFile(other / "Fieldday.sqlite"), "old");
}

TEST_F(LogFoldersTest, CopyOntoLogsItselfOrAnUnwritableFolderDoesNothing) {
    const auto before = listLogFiles(logs);
    EXPECT_TRUE(copyOut({"Fieldday.sqlite"}, logs).copied.empty());
    EXPECT_TRUE(copyOut({"Fieldday.sqlite"}, dir / "Logs" / "." / "").copied.empty());
    EXPECT_TRUE(dialogs.asked.empty());
    EXPECT_TRUE(dialogs.informed.empty());
    EXPECT_EQ(listLogFiles(logs), before);

    writeFile(dir / "afile", "x");
    EXPECT_TRUE(copyOut({"Fieldday.sqlite"}, dir / "afile").copied.empty());
    EXPECT_TRUE(copyOut({"Fieldday.sqlite"}, dir / "gone").copied.empty());
    ASSERT_EQ(dialogs.informed.size(), 2u);
    EXPECT_EQ(dialogs.informed[0], texts(1168) + "\n" + (dir / "afile").string());
    EXPECT_FALSE(fs::exists(dir / "gone"));
}

TEST_F(LogFoldersTest, CopyInTestsEachFileAndKeepsTheOpenLog) {
    writeFile(other / "Text.sqlite", "no database");
    {
        sql::Db db((other / "Foreign.sqlite").string());
        db.exec("CREATE TABLE \"144MHz\" (Call TEXT, ErrQSO INTEGER)");
    }
    makeLog(other, {1, 1, 1, 1, 1, 1, 1, 1, 1, 1}, "Good");
    makeLog(other, {1, 1, 1, 1, 1, 1, 1, 1, 1, 1}, "Open", "DL9ZZ");
    CopyRequest req;
    for (const char* n : {"Foreign.sqlite", "Good.sqlite", "Open.sqlite", "Text.sqlite"})
        req.files.push_back(other / n);
    req.target = logs;
    req.logsFolder = logs;
    req.copyIn = true;
    req.openLog = logs / "Open.sqlite";
    const CopyReport r = copyLogs(req, dialogs, texts);
    EXPECT_EQ(r.copied, std::vector<std::string>{"Good.sqlite"});
    EXPECT_EQ(dialogs.informed, (std::vector<std::string>{texts(415) + "\nForeign.sqlite",
                                                          texts(1174) + "\nOpen.sqlite",
                                                          texts(415) + "\nText.sqlite"}));
    EXPECT_EQ(ContestLog::open(logs / "Open.sqlite").value().myData().myCall, "OE1ABC");
    EXPECT_FALSE(fs::exists(logs / "Text.sqlite"));
    EXPECT_FALSE(fs::exists(logs / "Foreign.sqlite"));
}

TEST_F(LogFoldersTest, DeleteAsksForEachAndNeverTakesTheOpenLog) {
    makeLog(logs, {1, 1, 1, 1, 1, 1, 1, 1, 1, 1}, "Old");
    const std::vector<fs::path> files{logs / "Fieldday.sqlite", logs / "Old.sqlite",
                                      logs / "Open.sqlite"};
    dialogs.answers = {Answer::No, Answer::Yes};
    EXPECT_EQ(deleteLogs(files, logs / "Open.sqlite", dialogs, texts),
              std::vector<std::string>{"Old.sqlite"});
    EXPECT_EQ(dialogs.asked.size(), 2u);
    EXPECT_EQ(dialogs.asked[0], texts(55) + "\nFieldday.sqlite");
    EXPECT_EQ(listLogFiles(logs), (std::vector<std::string>{"Fieldday.sqlite", "Open.sqlite"}));
    dialogs.answers = {Answer::Cancel};
    EXPECT_TRUE(deleteLogs(files, logs / "Open.sqlite", dialogs, texts).empty());
    EXPECT_TRUE(fs::exists(logs / "Fieldday.sqlite"));
}

} // namespace
} // namespace orv::test
