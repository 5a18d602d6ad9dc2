// The simulator's capture agent, orvxagentd, run on its own as the client
// runs it: configured through the user's agent configuration, steered with
// signals, its movies read back.

#include "MovieInspection.h"
#include "SimSandbox.h"
#include "XvfbServer.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QtTest>

#include <csignal>
#include <vector>

namespace {

struct Take
{
    int exitCode = -1;
    bool started = false; // the file got its first media within the wait
    qint64 recordedMs = 0;
    QByteArray err;

    // The agent's clock is not ours: a margin a loaded machine holds.
    bool lasted(double seconds) const { return seconds > 1.0 && seconds < recordedMs / 1000.0 + 1.0; }
};

} // namespace

class TestAgentRecorder : public QObject
{
    Q_OBJECT

    std::unique_ptr<SimSandbox> m_sim;

    void configure(const QString &capture, const QString &audioDevice, const QString &videoDevice = QString())
    {
        QVariantMap config { { QStringLiteral("Capture"), capture } };
        if (!videoDevice.isNull())
            config.insert(QStringLiteral("VideoDevice"), videoDevice);
        if (!audioDevice.isNull())
            config.insert(QStringLiteral("AudioDevice"), audioDevice);
        QDir().mkpath(QFileInfo(m_sim->userConfig()).absolutePath());
        QVERIFY(PropertyList::writeFile(m_sim->userConfig(), config, true));
    }
    // Test devices as listed (null: the machine's own), no display.
    QProcessEnvironment environment(const QString &devices) const
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("HOME"), m_sim->home());
        env.insert(QStringLiteral("LUMEX_SYSROOT"), m_sim->sysroot());
        env.remove(QStringLiteral("DISPLAY"));
        if (!devices.isNull()) {
            env.insert(QStringLiteral("LUMEX_CAPTURE_HARDWARE"), QStringLiteral("0"));
            env.insert(QStringLiteral("LUMEX_TEST_DEVICES"), devices);
        }
        return env;
    }
    void start(QProcess &agent, const QString &movie, const QProcessEnvironment &env)
    {
        agent.setProcessEnvironment(env);
        agent.start(m_sim->tool(QStringLiteral("orvxagentd")), { QStringLiteral("-f"), movie });
    }
    // Records two seconds from when the file appears, then SIGTERM.
    Take record(const QString &movie, const QProcessEnvironment &env)
    {
        Take take;
        QProcess agent;
        start(agent, movie, env);
        if (!agent.waitForStarted())
            return take;
        QElapsedTimer clock;
        clock.start();
        while (QFileInfo(movie).size() == 0 && clock.elapsed() < 10000 && agent.state() == QProcess::Running)
            QTest::qWait(20);
        take.started = QFileInfo(movie).size() > 0;
        clock.start();
        QTest::qWait(2000);
        take.recordedMs = clock.elapsed();
        agent.terminate();
        agent.waitForFinished(30000);
        take.exitCode = agent.exitStatus() == QProcess::NormalExit ? agent.exitCode() : -1;
        take.err = agent.readAllStandardError();
        return take;
    }

private slots:
    void initTestCase()
    {
        m_sim = std::make_unique<SimSandbox>();
        QVERIFY(m_sim->installTools());
    }
    void recordsTheConfiguredSources_data()
    {
        QTest::addColumn<QString>("devices");
        QTest::addColumn<QString>("capture");
        QTest::addColumn<QString>("audio");
        QTest::addColumn<QString>("video");
        QTest::addColumn<QString>("videoCodec"); // empty: no picture
        QTest::addColumn<QSize>("size");
        const auto row = [](const char *tag, const char *devices, const char *capture, const char *audio,
                             const char *video, const char *codec, QSize size) {
            QTest::newRow(tag) << QString(devices) << QString(capture) << QString(audio) << QString(video)
                               << QString(codec) << size;
        };
        const char *mics = "microphone:mic1;microphone:mic2";
        const char *camcorder = "muxed:dv1:Test Camcorder;camera:cam1:Front Camera";
        row("microphone by uniqueID", mics, "Audio:Better", "test:mic2", nullptr, "", {});
        // A camcorder chosen as the microphone gives only its sound.
        row("muxed microphone", camcorder, "Audio:Better", "test:dv1", "Automatic", "", {});
        // The client names the job's camera by its display name.
        row("camera by name", camcorder, "Video:Better", "test:dv1", "Front Camera", "video/x-h264", { 640, 480 });
        // An 800x600 screen of Xvfb, scaled to fit 640x480.
        row("screen", mics, "Screen:Better", "Automatic", nullptr, "video/x-h264", { 640, 480 });
    }
    void recordsTheConfiguredSources()
    {
        QFETCH(QString, devices);
        QFETCH(QString, capture);
        QFETCH(QString, videoCodec);
        QFETCH(QSize, size);
        QProcessEnvironment env = environment(devices);
        std::unique_ptr<XvfbServer> server;
        if (capture.startsWith(QLatin1String("Screen"))) {
            server = std::make_unique<XvfbServer>(QStringLiteral("800x600x24"));
            if (server->display().isEmpty())
                QSKIP("Xvfb could not be started");
            env.insert(QStringLiteral("DISPLAY"), server->display());
        }
        QFETCH(QString, audio);
        QFETCH(QString, video);
        configure(capture, audio, video);
        const QString movie = m_sim->home() + QLatin1Char('/') + QTest::currentDataTag() + QStringLiteral(".mov");
        const Take take = record(movie, env);
        QVERIFY2(take.exitCode == 0, take.err.constData());
        const MovieInspection inspected = inspectMovie(movie);
        QCOMPARE(inspected.videoCodec, videoCodec);
        QCOMPARE(QSize(inspected.width, inspected.height), size.isValid() ? size : QSize(0, 0));
        QCOMPARE(inspected.audioCodec, QStringLiteral("audio/mpeg"));
        QCOMPARE(inspected.sampleRate, 48000);
        QCOMPARE(inspected.channels, 2);
        QVERIFY2(take.lasted(inspected.containerDuration), qPrintable(QString::number(inspected.containerDuration)));
        QVERIFY2(inspected.largestVideoGap < 0.15, qPrintable(QString::number(inspected.largestVideoGap)));
        QVERIFY(inspected.largestAudioGap < 0.05);
        QVERIFY(!inspected.topLevelAtoms.contains(QStringLiteral("moof")));
    }
    void missingSourceExitsAtOnce_data()
    {
        QTest::addColumn<QString>("devices");
        QTest::addColumn<QString>("capture");
        QTest::addColumn<QString>("audio");
        QTest::addColumn<QString>("video");
        QTest::addColumn<QByteArray>("message");
        const auto row = [](const char *tag, const char *devices, const char *capture, const char *audio,
                             const char *video, const char *message) {
            QTest::newRow(tag) << QString(devices) << QString(capture) << QString(audio) << QString(video)
                               << QByteArray("orvxagentd: ") + message + ".\n";
        };
        const char *mics = "microphone:mic1;microphone:mic2";
        const char *desk = "microphone:mic1:Desk Microphone";
        row("unknown microphone", mics, "Audio:Better", "test:unplugged", nullptr, "no microphone \"test:unplugged\"");
        row("no microphone", "", "Audio:Better", "Automatic", nullptr, "no microphone to record from");
        row("screen without display", mics, "Screen:Better", "test:mic1", nullptr,
            "no display to record (DISPLAY is not set)");
        // A name that is a microphone's is no camera.
        row("microphone named as camera", desk, "Video:Better", "test:mic1", "Desk Microphone",
            "no camera \"Desk Microphone\"");
        row("no camera", desk, "Video:Better", "test:mic1", "Automatic", "no camera to record from");
    }
    void missingSourceExitsAtOnce()
    {
        QFETCH(QString, devices);
        QFETCH(QString, capture);
        QFETCH(QString, audio);
        QFETCH(QString, video);
        configure(capture, audio, video);
        const QString movie = m_sim->home() + QStringLiteral("/none.mov");
        QProcess agent;
        start(agent, movie, environment(devices));
        QVERIFY(agent.waitForFinished(10000));
        QCOMPARE(agent.exitStatus(), QProcess::NormalExit);
        QCOMPARE(agent.exitCode(), 4);
        QTEST(agent.readAllStandardError(), "message");
        QVERIFY(!QFile::exists(movie));
    }
    void defaultMicrophoneOfAPulseAudioServer()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("pulseaudio")).isEmpty())
            QSKIP("pulseaudio is not installed");
        const QString runtime = m_sim->path() + QStringLiteral("/pulse");
        QDir().mkpath(runtime);
        const QString socket = runtime + QStringLiteral("/native");
        QProcess pulse;
        QProcessEnvironment pulseEnv = QProcessEnvironment::systemEnvironment();
        pulseEnv.insert(QStringLiteral("HOME"), runtime);
        pulseEnv.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime);
        pulse.setProcessEnvironment(pulseEnv);
        pulse.setProcessChannelMode(QProcess::MergedChannels);
        // A server of our own with nothing but a null sink, whose monitor is
        // then the default source. The sink comes before the socket, so a
        // client that finds the socket finds the source too.
        pulse.start(QStringLiteral("pulseaudio"),
            { QStringLiteral("-n"), QStringLiteral("--daemonize=no"), QStringLiteral("--exit-idle-time=-1"),
                QStringLiteral("--disallow-exit"), QStringLiteral("--use-pid-file=no"),
                QStringLiteral("--load=module-null-sink sink_name=lumex_null"),
                QStringLiteral("--load=module-native-protocol-unix auth-anonymous=1 socket=") + socket });
        if (!pulse.waitForStarted())
            QSKIP("pulseaudio could not be started");
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(socket) || pulse.state() != QProcess::Running, 10000);
        if (pulse.state() != QProcess::Running)
            QSKIP(qPrintable(QStringLiteral("pulseaudio exited: ") + QString::fromLocal8Bit(pulse.readAll())));

        configure(QStringLiteral("Audio:Better"), QStringLiteral("(null)"));
        QProcessEnvironment env = environment(QString());
        env.insert(QStringLiteral("PULSE_SERVER"), QStringLiteral("unix:") + socket);
        const QString movie = m_sim->home() + QStringLiteral("/LocalAudio-pulse.mov");
        const Take take = record(movie, env);
        pulse.terminate();
        pulse.waitForFinished(5000);
        // On two fully loaded cores our own null sink sometimes never starts
        // its clock; that says nothing about the agent.
        if (!take.started)
            QSKIP("the test's sound server delivered no audio within 10 s (a starved null sink)");
        QVERIFY2(take.exitCode == 0, take.err.constData());
        const MovieInspection inspected = inspectMovie(movie);
        QCOMPARE(inspected.audioCodec, QStringLiteral("audio/mpeg"));
        QVERIFY2(take.lasted(inspected.containerDuration), qPrintable(QString::number(inspected.containerDuration)));
        QVERIFY(inspected.largestAudioGap < 0.05);
    }
    void abruptEndLeavesAPlayableFile_data()
    {
        QTest::addColumn<bool>("killed"); // else stopped twice in a row
        QTest::newRow("second stop while finishing") << false;
        QTest::newRow("killed") << true;
    }
    void abruptEndLeavesAPlayableFile()
    {
        QFETCH(bool, killed);
        configure(QStringLiteral("Video:Better"), QStringLiteral("test:mic1"), QStringLiteral("Automatic"));
        const QString movie = m_sim->home() + QStringLiteral("/LocalVideo-%1.mov").arg(killed);
        QProcess agent;
        start(agent, movie, environment(QStringLiteral("camera:cam1;microphone:mic1")));
        QVERIFY(agent.waitForStarted());
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(movie).size() > 0, 10000);
        QTest::qWait(5000);
        for (const int signal : killed ? std::vector { SIGKILL } : std::vector { SIGTERM, SIGTERM })
            ::kill(pid_t(agent.processId()), signal);
        QVERIFY(agent.waitForFinished(20000));
        QCOMPARE(agent.exitStatus(), killed ? QProcess::CrashExit : QProcess::NormalExit);
        if (!killed)
            QCOMPARE(agent.exitCode(), 0);
        // Whether or not a stop got far, fragments up to the end play, whatever
        // the recording's length.
        const MovieInspection inspected = inspectMovie(movie);
        QVERIFY(inspected.readable);
        QCOMPARE(inspected.videoCodec, QStringLiteral("video/x-h264"));
        QCOMPARE(inspected.audioCodec, QStringLiteral("audio/mpeg"));
        QVERIFY2(inspected.videoEnd >= 4.0, qPrintable(QString::number(inspected.videoEnd)));
        QVERIFY2(inspected.audioEnd >= 4.0, qPrintable(QString::number(inspected.audioEnd)));
        QVERIFY(inspected.largestVideoGap < 0.1);
    }
};

QTEST_GUILESS_MAIN(TestAgentRecorder)
#include "tst_agentrecorder.moc"
