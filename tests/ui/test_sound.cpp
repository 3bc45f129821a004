// Playback and recording through a real sound server: a tone file played by
// the program's player is recorded back from the null sink's monitor, and a
// recording made by the program's recorder holds the tone that was played.
#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QtTest>
#include <filesystem>

#include "core/i18n/texts.h"
#include "core/keying/audio.h"
#include "core/keying/tone_file.h"
#include "platform/qt_audio_recorder.h"
#include "platform/qt_media_player.h"
#include "sound_server.h"
#include "support/fakes.h"

using namespace orv;

class SoundTest : public QObject {
    Q_OBJECT
private:
    // "TTTTT" at 12 WPM: a lead unit, then 2.7 s from the first edge to the last.
    std::filesystem::path toneFile(const QString& folder) {
        const std::filesystem::path dir = test::soundServer->path(folder).toStdString();
        std::filesystem::create_directories(dir);
        keying::BuildToneFile(12, dir / "FKey.wav", "TTTTT", 1, 0);
        return dir / "FKey.wav";
    }

    void expectTone(const QString& recording) {
        const auto m = test::measureTone(recording, recording + ".trim.wav");
        QVERIFY2(m.has_value(), "sox could not measure the recording");
        qInfo("tone: %.3f s, %.0f Hz", m->seconds, m->frequency);
        QVERIFY2(std::abs(m->seconds - 2.7) < 0.08, qPrintable(QString::number(m->seconds)));
        QVERIFY2(std::abs(m->frequency - 1000) < 30, qPrintable(QString::number(m->frequency)));
    }

private slots:
    void initTestCase() {
        QVERIFY2(test::soundServerError.isEmpty(), qPrintable(test::soundServerError));
    }

    void playerPlaysAToneFileIntoTheSoundCard() {
        const auto file = toneFile("CW Audio"); // a path with a blank
        const QString recording = test::soundServer->path("played.wav");
        QProcess parec;
        parec.start("parec",
                    {QString("--device=%1.monitor").arg(test::SoundServer::kSink), "--rate=16000",
                     "--channels=1", "--format=s16le", "--file-format=wav", recording});
        QVERIFY(parec.waitForStarted());
        QTest::qWait(300);

        platform::QtMediaPlayer player;
        const long length = keying::playFile(player, file);
        QVERIFY2(std::abs(length - 2800) <= 20, qPrintable(QString::number(length)));
        QElapsedTimer clock;
        clock.start();
        while (!keying::playerAtEnd(player, length) && clock.elapsed() < 15000)
            QTest::qWait(50);
        QVERIFY(keying::playerAtEnd(player, length));
        QVERIFY2(clock.elapsed() >= 2600, qPrintable(QString::number(clock.elapsed())));
        keying::stopPlayer(player);
        QTest::qWait(400);
        parec.terminate();
        QVERIFY(parec.waitForFinished(5000));
        expectTone(recording);
    }

    void recorderSavesWhatTheSoundCardHears() {
        const auto file = toneFile("tones");
        const std::filesystem::path audio = test::soundServer->path("Audio").toStdString();
        std::filesystem::create_directories(audio);
        platform::QtAudioRecorder recorder;
        test::FakeDialogs dialogs;
        Texts texts;
        keying::VoiceRecording recording(recorder, dialogs, texts, audio);
        QVERIFY(recording.start("cq tone"));
        QTest::qWait(300);
        QProcess paplay;
        paplay.start("paplay", {QString::fromStdString(file.string())});
        QVERIFY(paplay.waitForFinished(15000));
        QCOMPARE(paplay.exitCode(), 0);
        QTest::qWait(300);
        const auto saved = recording.stop();
        QCOMPARE(QString::fromStdString(saved.filename().string()), QString("cq_tone.WAV"));
        expectTone(QString::fromStdString(saved.string()));
    }

    void aFileThatCannotPlayHasEndedAtOnce() {
        const QString bad = test::soundServer->path("not sound.wav");
        QFile f(bad);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("this is no wave file");
        f.close();
        platform::QtMediaPlayer player;
        for (const QString& path : {bad, test::soundServer->path("missing.wav")}) {
            const long length = keying::playFile(player, path.toStdString());
            QCOMPARE(length, 0L);
            QVERIFY(keying::playerAtEnd(player, length));
        }
        keying::stopPlayer(player); // harmless on a closed player
        keying::stopPlayer(player);
    }
};

int main(int argc, char** argv) {
    return test::runWithSoundServer<SoundTest>(argc, argv);
}

#include "test_sound.moc"
