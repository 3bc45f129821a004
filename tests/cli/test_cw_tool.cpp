#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/run_tool.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

std::uint32_t fnv(const std::string& bytes) {
    std::uint32_t h = 2166136261u;
    for (unsigned char b : bytes)
        h = (h ^ b) * 16777619u;
    return h;
}

} // namespace

TEST(ToolCwWav, WritesTheToneFileOfTheCwWindow) {
    test::TempDir home;
    struct Case {
        std::vector<std::string> args;
        std::size_t samples;
    };
    const auto out = (home / "cq.wav").string();
    const std::vector<Case> cases = {
        {{"CQ", "--wpm", "25", "-o", out}, 28u * 384},
        {{"cq", "--wpm", "25", "-o", out}, 28u * 384},  // upper-cased as the window does
        {{"C#Q", "--wpm", "25", "-o", out}, 28u * 384}, // no code, dropped
        {{"CQ", "--wpm", "25", "-o", out, "--lead", "0", "--trail", "6"}, 1u + 33u * 384},
    };
    for (const auto& c : cases) {
        std::vector<std::string> args = {"--home", home.path().string(), "cw-wav"};
        args.insert(args.end(), c.args.begin(), c.args.end());
        const auto r = test::runTool(args);
        ASSERT_EQ(r.status, 0) << r.err;
        const std::string f = test::readFile(out);
        ASSERT_EQ(f.size(), 44 + c.samples);
        EXPECT_EQ(f.substr(0, 4), "RIFF");
        if (c.samples == 28u * 384) { // the same bytes as the core renders
            EXPECT_EQ(fnv(f.substr(44)), 0x08c50ca4u);
        }
    }
}

TEST(ToolCwWav, RefusesBadSpeedsAndUnitsAndReportsUnwritableFiles) {
    test::TempDir home;
    const auto out = (home / "x.wav").string();
    struct Case {
        std::vector<std::string> args;
        int status;
        const char* message;
    };
    const std::vector<Case> cases = {
        {{"CQ", "--wpm", "0", "-o", out}, 2, "Morsegeschwindigkeit in WPM: \n0"},
        {{"CQ", "--wpm", "61", "-o", out}, 2, "Morsegeschwindigkeit in WPM: \n61"},
        {{"CQ", "--wpm", "fast", "-o", out}, 2, "Morsegeschwindigkeit"},
        {{"CQ", "--wpm", "25", "-o", out, "--lead", "-1"}, 2, "Ungültiger Wert\n--lead -1"},
        {{"CQ", "--wpm", "25", "-o", out, "--trail", "x"}, 2, "Ungültiger Wert\n--trail x"},
        {{"CQ", "--wpm", "25"}, 2, "Aufruf: orvanta-tool cw-wav"},
        {{"CQ", "--wpm", "25", "-o", (home / "no" / "x.wav").string()}, 1, "FEHLER"},
    };
    for (const auto& c : cases) {
        std::vector<std::string> args = {"--home", home.path().string(), "cw-wav"};
        args.insert(args.end(), c.args.begin(), c.args.end());
        const auto r = test::runTool(args);
        SCOPED_TRACE(r.err);
        EXPECT_EQ(r.status, c.status);
        EXPECT_NE(r.err.find(c.message), std::string::npos);
        EXPECT_FALSE(std::filesystem::exists(out));
    }
}
