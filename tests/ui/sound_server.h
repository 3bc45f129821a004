#pragma once

// A sound server for the tests, as a desktop has one: a private PulseAudio
// with a null sink whose monitor, remapped as a microphone, is the default input, so that what the
// program plays can be recorded back and measured with sox.
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <optional>

#include "platform/qt_media_player.h"

namespace orv::test {

class SoundServer {
public:
    static constexpr const char* kSink = "orvanta_null";

    // Starts the server and points this process at it (PULSE_SERVER); call
    // before the first use of Qt Multimedia. Empty error when it runs.
    QString start() {
        if (QStandardPaths::findExecutable("pulseaudio").isEmpty())
            return "pulseaudio is not installed (scripts/setup.sh installs it)";
        const QString dir = dir_.path();
        const QString socket = dir + "/native";
        QFile script(dir + "/default.pa");
        if (!script.open(QIODevice::WriteOnly))
            return "cannot write " + script.fileName();
        script.write(
            QString("load-module module-null-sink sink_name=%1 rate=16000\n"
                    "load-module module-native-protocol-unix auth-anonymous=1 socket=%2\n"
                    "load-module module-remap-source master=%1.monitor source_name=%1_input\n"
                    "set-default-sink %1\nset-default-source %1_input\n")
                .arg(kSink, socket)
                .toUtf8());
        script.close();
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const char* k : {"XDG_RUNTIME_DIR", "PULSE_RUNTIME_PATH", "PULSE_STATE_PATH", "HOME"})
            env.insert(k, dir);
        server_.setProcessEnvironment(env);
        server_.setProcessChannelMode(QProcess::MergedChannels);
        // As root the server warns but runs in user mode; -n skips the
        // system's default script, so only our null sink exists.
        server_.start("pulseaudio", {"--system=false", "-n", "--exit-idle-time=-1",
                                     "--daemonize=no", "-F", script.fileName()});
        if (!server_.waitForStarted(5000))
            return "pulseaudio did not start";
        for (int i = 0; i < 100 && !QFile::exists(socket); ++i)
            QThread::msleep(50);
        if (!QFile::exists(socket))
            return "pulseaudio did not open its socket: " + server_.readAll();
        qputenv("PULSE_SERVER", ("unix:" + socket).toUtf8());
        return {};
    }

    QString path(const QString& name) const { return dir_.path() + "/" + name; }

private:
    QTemporaryDir dir_;
    QProcess server_;
};

// What sox says of the tone in a file once the silence around it is cut.
struct ToneMeasure {
    double seconds = 0;
    double frequency = 0;
};

inline std::optional<ToneMeasure> measureTone(const QString& file, const QString& trimmed) {
    QProcess trim;
    trim.start("sox", {file, trimmed, "silence", "1", "0.005", "3%", "reverse", "silence", "1",
                       "0.005", "3%", "reverse"});
    if (!trim.waitForFinished(20000) || trim.exitCode() != 0)
        return std::nullopt;
    QProcess stat;
    stat.start("sox", {trimmed, "-n", "stat"});
    if (!stat.waitForFinished(20000))
        return std::nullopt;
    const QString out = stat.readAllStandardError();
    const auto len = QRegularExpression(R"(Length \(seconds\):\s+([0-9.]+))").match(out);
    const auto freq = QRegularExpression(R"(Rough\s+frequency:\s+(-?[0-9]+))").match(out);
    if (!len.hasMatch() || !freq.hasMatch())
        return std::nullopt;
    return ToneMeasure{len.captured(1).toDouble(), freq.captured(1).toDouble()};
}

// The test program's one server, and why it did not start (empty when it
// runs).
inline SoundServer* soundServer = nullptr;
inline QString soundServerError;

// The main() of a test program with a sound server: the server starts before
// Qt Multimedia first looks for one, then the Qt Test class T runs.
template <class T> int runWithSoundServer(int argc, char** argv) {
    SoundServer s;
    soundServer = &s;
    soundServerError = s.start();
    platform::chooseMediaBackend();
    QApplication app(argc, argv);
    T t;
    return QTest::qExec(&t, argc, argv);
}

} // namespace orv::test
