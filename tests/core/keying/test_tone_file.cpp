#include <gtest/gtest.h>

#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

#include "core/keying/morse_table.h"
#include "core/keying/tone_file.h"
#include "core/util/file_io.h"
#include "support/temp_dir.h"

using namespace orv;
using namespace orv::keying;

TEST(ToneFile, ParametersFollowTheSpeed) {
    struct Case {
        int wpm, N, R, S;
    };
    // 256 and 768 WPM give quotients of .5 exactly: ties go to the even number.
    const std::vector<Case> cases = {{25, 384, 19, 1684},
                                     {12, 800, 40, 800},
                                     {7, 1371, 68, 470},
                                     {256, 38, 1, 32000},
                                     {60, 160, 8, 4000}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.wpm);
        const auto p = toneParameters(c.wpm);
        EXPECT_EQ(p.N, c.N);
        EXPECT_EQ(p.R, c.R);
        EXPECT_EQ(p.S, c.S);
    }
    EXPECT_EQ(toneParameters(768).N, 12);
}

// Golden values from an independent rendering of the same rules.
TEST(ToneFile, RendersCqAt25WpmSampleForSample) {
    const auto s = toneSamples(25, "CQ", 1, 0);
    ASSERT_EQ(s.size(), 28u * 384u); // lead 1 + C 11 + gap 3 + Q 13 units
    std::uint32_t fnv = 2166136261u;
    for (auto b : s)
        fnv = (fnv ^ b) * 16777619u;
    EXPECT_EQ(fnv, 0x08c50ca4u);
    EXPECT_EQ(std::accumulate(s.begin(), s.end(), 0L), 1376461L);
    const std::vector<std::uint8_t> dahStart(s.begin() + 384, s.begin() + 400);
    EXPECT_EQ(dahStart, (std::vector<std::uint8_t>{128, 135, 145, 145, 128, 102, 85, 93, 128, 173,
                                                   198, 182, 128, 65, 32, 55}));
    for (int i = 0; i < 384; ++i)
        ASSERT_EQ(s[static_cast<std::size_t>(i)], 128) << i;
}

TEST(ToneFile, LaysOutLeadGapsPausesAndTrail) {
    const int N = 384;
    struct Case {
        const char* text;
        int lead, trail;
        std::size_t samples;
    };
    const std::vector<Case> cases = {
        {"E E", 1, 0, 10u * N},                      // lead, dit, 3 + 4 units, dit
        {"E!E", 1, 0, 10u * N},                      // "!" is a pause of 4 like a blank in a file
        {"", 1, 0, 1u * N},     {"E", 0, 0, 1u + N}, // without a lead the text starts at sample 1
        {"E", 1, 6, 8u * N},                         // a beacon's file: 6 units of silence behind
        {"E ", 1, 0, 9u * N},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(toneSamples(25, toAnsi(c.text), c.lead, c.trail).size(), c.samples);
    }
    // À and Å give the same file.
    EXPECT_EQ(toneSamples(25, toAnsi("À"), 1, 0), toneSamples(25, toAnsi("Å"), 1, 0));
}

TEST(ToneFile, WritesTheHeaderAndReplacesAFile) {
    test::TempDir dir;
    const auto path = dir / "FKey.wav";
    test::writeFile(path, std::string(5000, 'x'));
    BuildToneFile(25, path, "E", 1, 0);
    const std::string f = test::readFile(path);
    ASSERT_EQ(f.size(), 44u + 768u);
    const std::string header = f.substr(0, 44);
    const unsigned char expected[44] = {'R',  'I',  'F', 'F', 0x24, 0x03, 0, 0, 'W', 'A', 'V', 'E',
                                        'f',  'm',  't', ' ', 16,   0,    0, 0, 1,   0,   1,   0,
                                        0x40, 0x1F, 0,   0,   0x40, 0x1F, 0, 0, 1,   0,   8,   0,
                                        'd',  'a',  't', 'a', 0x00, 0x03, 0, 0};
    EXPECT_EQ(header, std::string(reinterpret_cast<const char*>(expected), 44));

    EXPECT_THROW(BuildToneFile(25, dir / "missing" / "FKey.wav", "E", 1, 0), fileio::FileError);
}
