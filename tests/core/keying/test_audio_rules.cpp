#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/keying/audio.h"
#include "support/fakes.h"
#include "support/temp_dir.h"

using namespace orv;
using namespace orv::keying;

namespace {

class RecordingPlayer final : public MediaPlayer {
public:
    void open(const std::filesystem::path& f) override { calls.push_back("open " + f.string()); }
    void play(long from) override { calls.push_back("play " + std::to_string(from)); }
    void stop() override { calls.push_back("stop"); }
    void close() override { calls.push_back("close"); }
    long position() override { return pos; }
    long length() override { return len; }
    std::vector<std::string> calls;
    long pos = 0, len = 0;
};

class RecordingRecorder final : public AudioRecorder {
public:
    void record() override { calls.push_back("record"); }
    void pause() override { calls.push_back("pause"); }
    void resume() override { calls.push_back("resume"); }
    void stopAndSave(const std::filesystem::path& f) override {
        calls.push_back("save " + f.filename().string());
        test::writeFile(f, "RIFF");
    }
    std::vector<std::string> calls;
};

} // namespace

TEST(Audio, FormatMillisCutsSecondsAndMinutes) {
    const std::vector<std::pair<long, const char*>> cases = {
        {0, "00:00"},     {999, "00:00"},   {1000, "00:01"},    {59999, "00:59"},
        {60000, "01:00"}, {61999, "01:01"}, {3599999, "59:59"}, {6000000, "100:00"},
    };
    for (const auto& [ms, text] : cases)
        EXPECT_EQ(FormatMillis(ms), text) << ms;
}

TEST(Audio, EveryOpenFollowsStopAndCloseAndAnUnplayableFileHasEnded) {
    RecordingPlayer p;
    EXPECT_EQ(playFile(p, "/tmp/a b/FKey.wav"), 0);
    EXPECT_EQ(p.calls,
              (std::vector<std::string>{"stop", "close", "open /tmp/a b/FKey.wav", "play 0"}));
    EXPECT_TRUE(playerAtEnd(p, 0));
    p.len = 1500;
    p.pos = 1499;
    EXPECT_FALSE(playerAtEnd(p, p.length()));
    p.pos = 1500;
    EXPECT_TRUE(playerAtEnd(p, p.length()));
}

TEST(Audio, RecordingNamesAndTheOverwriteQuestion) {
    const std::vector<std::pair<const char*, const char*>> names = {
        {"CQ contest", "CQ_contest.WAV"},
        {"call.wav", "call.wav"},
        {" a b.Wav ", "a_b.Wav"},
        {"x.mp3", "x.mp3.WAV"},
    };
    for (const auto& [in, out] : names)
        EXPECT_EQ(*recordingName(in), out);
    EXPECT_EQ(recordingName("  ").failure().text, 47);

    test::TempDir dir;
    RecordingRecorder rec;
    test::FakeDialogs dialogs;
    Texts texts;
    VoiceRecording v(rec, dialogs, texts, dir.path());
    EXPECT_FALSE(v.start(""));
    ASSERT_EQ(dialogs.informed.size(), 1u);
    EXPECT_EQ(dialogs.informed[0], texts(47));

    ASSERT_TRUE(v.start("cq test"));
    v.togglePause();
    EXPECT_EQ(v.state(), VoiceRecording::State::Paused);
    v.togglePause();
    EXPECT_EQ(v.stop(), dir / "cq_test.WAV");
    EXPECT_EQ(rec.calls,
              (std::vector<std::string>{"record", "pause", "resume", "save cq_test.WAV"}));

    // The file exists now: "no" starts nothing and keeps it, "yes" replaces it.
    dialogs.answers = {Answer::No};
    EXPECT_FALSE(v.start("cq test"));
    EXPECT_EQ(dialogs.asked.back(), texts(46));
    EXPECT_TRUE(std::filesystem::exists(dir / "cq_test.WAV"));
    dialogs.answers = {Answer::Yes};
    EXPECT_TRUE(v.start("cq test"));
    EXPECT_FALSE(std::filesystem::exists(dir / "cq_test.WAV"));
    EXPECT_EQ(v.state(), VoiceRecording::State::Recording);
}
