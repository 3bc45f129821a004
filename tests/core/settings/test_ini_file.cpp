#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/settings/ini_file.h"
#include "core/util/file_io.h"
#include "support/fakes.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

struct Fixture {
    test::TempDir dir;
    test::CountingBeeper beeper;
    IniFile ini{dir / "OrvantaContest.INI", &beeper};

    void put(const std::string& content) { test::writeFile(ini.path(), content); }
    std::string content() const { return test::readFile(ini.path()); }
};

} // namespace

TEST(IniFile, LookUpIsCaseBlindAndTrimsAroundTheEqualsSign) {
    Fixture f;
    f.put("; comment\n"
          "[qb-option]\n"
          "  Language = English.lng  \n"
          "PIN=2\n"
          "[QB]\n"
          "Mode=3\n"
          "MaxBake=12abc\n"
          "OPCall=\n"
          "ZeitPlusMinus=-2\n"
          "Prop=Tropo = good\n");
    struct Case {
        const char* section;
        const char* key;
        std::string str;
        long long num;
    } cases[] = {
        {"QB-OPTION", "language", "English.lng", 0},
        {"Qb-Option", "Pin", "2", 2},
        {"qb", "MODE", "3", 3},
        {"QB", "MaxBake", "12abc", 12},
        {"QB", "OPCall", "", 0},
        {"QB", "ZeitPlusMinus", "-2", -2},
        {"QB", "Prop", "Tropo = good", 0},
        {"QB", "Missing", "", 0},
        {"NoSection", "Mode", "", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.section) + "/" + c.key);
        EXPECT_EQ(f.ini.getStr(c.section, c.key), c.str);
        EXPECT_EQ(f.ini.getInt(c.section, c.key), c.num);
    }
    EXPECT_EQ(f.beeper.beeps, 0) << "an absent key is no reason to beep";
}

TEST(IniFile, MissingFileAndEmptySectionBeepAndYieldNothing) {
    Fixture f;
    EXPECT_EQ(f.ini.getInt("QB", "MaxBake"), 0);
    EXPECT_EQ(f.ini.getStr("QB", "OPCall"), "");
    EXPECT_TRUE(f.ini.readSection("MODE").empty());
    f.ini.writeSection("MODE", {"SSB"});
    EXPECT_EQ(f.beeper.beeps, 4);
    EXPECT_FALSE(f.ini.exists()) << "writing a section does not create the file";

    f.ini.write("QB", "OPCall", "DL1ABC");
    ASSERT_TRUE(f.ini.exists());
    f.beeper.beeps = 0;
    EXPECT_EQ(f.ini.getStr("", "OPCall"), "");
    EXPECT_EQ(f.ini.getInt("", "OPCall"), 0);
    EXPECT_TRUE(f.ini.readSection("").empty());
    f.ini.write("", "OPCall", "X");
    f.ini.writeSection("", {"X"});
    f.ini.deleteSection("");
    EXPECT_EQ(f.beeper.beeps, 6);
    EXPECT_EQ(f.content(), "[QB]\nOPCall=DL1ABC\n");
}

TEST(IniFile, WriteUpperCasesNewSectionsAndKeepsEverythingElse) {
    Fixture f;
    f.put("[Qb]\r\nOPCall=DL1ABC\r\n; kept\r\nProp=TROPO\r\n\r\n[MODE]\r\nSSB\r\nCW\r\n");
    f.ini.write("qb", "opcall", "DK2XY");      // existing key: replaced in place
    f.ini.write("QB", "MaxBake", "50");        // new key: after the section's last line
    f.ini.write("qb-option", "Language", "x"); // new section: upper-cased at the end
    EXPECT_EQ(f.content(), "[Qb]\r\nopcall=DK2XY\r\n; kept\r\nProp=TROPO\r\nMaxBake=50\r\n\r\n"
                           "[MODE]\r\nSSB\r\nCW\r\n\r\n[QB-OPTION]\r\nLanguage=x\r\n");
    // Written upper-case, read back under any spelling.
    EXPECT_EQ(f.ini.getStr("Qb-Option", "LANGUAGE"), "x");
    f.ini.write("QB", "Prop", "line\r\nbreak");
    EXPECT_EQ(f.ini.getStr("QB", "Prop"), "line  break");
    EXPECT_EQ(f.ini.readSection("MODE"), (std::vector<std::string>{"SSB", "CW"}));
}

TEST(IniFile, ListSectionsReadWholeLinesAndAreReplacedInPlace) {
    Fixture f;
    f.put("[QB]\nA=1\n[opcalllist]\nDL1ABC\xC2\xB6"
          "a.wav\xC2\xB6"
          "CQ\xC2\xB6"
          "\n"
          "  x=y=z  \n\nDK2XY\n\n[AUSBR]\nTROPO\n");
    EXPECT_EQ(f.ini.readSection("OPCallList"), (std::vector<std::string>{"DL1ABC\xC2\xB6"
                                                                         "a.wav\xC2\xB6"
                                                                         "CQ\xC2\xB6",
                                                                         "x=y=z", "DK2XY"}));
    f.ini.writeSection("OPCallList", {"DF1AA", "", "x=1"});
    EXPECT_EQ(f.content(), "[QB]\nA=1\n[opcalllist]\nDF1AA\nx=1\n\n[AUSBR]\nTROPO\n");
    f.ini.writeSection("mode", {"SSB", "CW", "FM"});
    EXPECT_EQ(f.ini.readSection("MODE"), (std::vector<std::string>{"SSB", "CW", "FM"}));
    EXPECT_NE(f.content().find("\n[MODE]\nSSB\nCW\nFM\n"), std::string::npos);

    f.ini.deleteSection("OPCALLLIST");
    EXPECT_TRUE(f.ini.readSection("OPCallList").empty());
    EXPECT_EQ(f.ini.readSection("AUSBR"), (std::vector<std::string>{"TROPO"}));
    EXPECT_EQ(f.ini.getInt("QB", "A"), 1);
}

TEST(IniFile, DeleteSectionRemovesEveryCopyAndDeleteKeyOneKey) {
    Fixture f;
    f.put("[MODE]\nSSB\n[QB]\nA=1\nB=2\n[mode]\nFM\n");
    f.ini.deleteSection("Mode");
    EXPECT_EQ(f.content(), "[QB]\nA=1\nB=2\n");
    f.ini.deleteKey("qb", "a");
    EXPECT_EQ(f.content(), "[QB]\nB=2\n");
    f.ini.deleteSection("None");
    EXPECT_EQ(f.content(), "[QB]\nB=2\n");
}

TEST(IniFile, TheFirstOfTwoEqualSectionsAndKeysCounts) {
    Fixture f;
    f.put("[QB]\nMode=1\nmode=2\n[qb]\nMode=3\n");
    EXPECT_EQ(f.ini.getInt("QB", "Mode"), 1);
    f.ini.write("QB", "Mode", "4");
    EXPECT_EQ(f.content(), "[QB]\nMode=4\nmode=2\n[qb]\nMode=3\n");
}

TEST(IniFile, ValuesAndListSectionsAreCutAtTheBufferSize) {
    Fixture f;
    // Multi-byte characters count as one: the cut is by characters, not bytes.
    std::string longValue;
    for (int i = 0; i < 40000; ++i)
        longValue += "\xC3\xA4"; // ä
    f.ini.write("QB", "Long", longValue);
    const std::string v = f.ini.getStr("QB", "Long");
    EXPECT_EQ(v.size(), IniFile::kMaxText * 2);
    EXPECT_EQ(v.substr(0, 4), "\xC3\xA4\xC3\xA4");

    // Each entry counts with its separator: 3 * 10001 characters leave 2764.
    f.ini.create();
    f.ini.writeSection("CallList", {std::string(10000, 'A'), std::string(10000, 'B'),
                                    std::string(10000, 'C'), std::string(10000, 'D'), "E"});
    const auto list = f.ini.readSection("CallList");
    ASSERT_EQ(list.size(), 4u);
    EXPECT_EQ(list[2], std::string(10000, 'C'));
    EXPECT_EQ(list[3], std::string(IniFile::kMaxText - 3 * 10001, 'D'));
}

TEST(IniFile, Windows1252FileIsReadAndRewrittenAsUtf8) {
    Fixture f;
    // "Grüße" and "Bärbel" in Windows-1252, with CR LF as such files have.
    f.put("[QB]\r\nProp=Gr\xFC\xDF"
          "e\r\n[AUSBR]\r\nB\xE4rbel\r\n");
    EXPECT_EQ(f.ini.getStr("QB", "Prop"), "Gr\xC3\xBC\xC3\x9F"
                                          "e");
    EXPECT_EQ(f.ini.readSection("AUSBR"), (std::vector<std::string>{"B\xC3\xA4rbel"}));
    f.ini.write("QB", "OPCall", "\xC3\x84"); // Ä
    EXPECT_EQ(f.content(), "[QB]\r\nProp=Gr\xC3\xBC\xC3\x9F"
                           "e\r\nOPCall=\xC3\x84\r\n[AUSBR]\r\n"
                           "B\xC3\xA4rbel\r\n");
    // A UTF-8 byte order mark is no part of the first section name.
    f.put("\xEF\xBB\xBF[QB]\nA=5\n");
    EXPECT_EQ(f.ini.getInt("QB", "A"), 5);
}

TEST(IniFile, FileWithoutFinalLineEndStillYieldsItsLastLine) {
    Fixture f;
    f.put("[MODE]\nSSB\nCW");
    EXPECT_EQ(f.ini.readSection("MODE"), (std::vector<std::string>{"SSB", "CW"}));
    f.ini.write("QB", "A", "1");
    EXPECT_EQ(f.content(), "[MODE]\nSSB\nCW\n\n[QB]\nA=1\n");
}

// A file size limit makes the write fail part-way, as a full disk does; the
// child process keeps the limit away from the other tests.
TEST(IniFile, FailedWriteThrowsAndLeavesTheOldFile) {
    Fixture f;
    const std::string old = "[QB]\nOPCall=DL1ABC\n[MODE]\nSSB\n";
    f.put(old);
    const pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit lim{256, 256};
        setrlimit(RLIMIT_FSIZE, &lim);
        int thrown = 0;
        try {
            f.ini.write("QB", "Prop", std::string(5000, 'x'));
        } catch (const fileio::FileError&) {
            ++thrown;
        }
        try {
            f.ini.writeSection("MODE", std::vector<std::string>(100, std::string(50, 'M')));
        } catch (const fileio::FileError&) {
            ++thrown;
        }
        _exit(thrown);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 2) << "a failed write was not reported";
    EXPECT_EQ(f.content(), old);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(f.dir.path()), {}), 1)
        << "a temporary file was left behind";
}
