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

namespace {

struct Take
{
    int exitCode = -1;
    qint64 recordedMs = 0;
    QByteArray err;
};

} // namespace

class TestAgentRecorder : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void audioFromATestDeviceHasNoGapAfterPause();
    void screenRecordingUnderXvfb();
    void defaultMicrophoneOfAPulseAudioServer();
    void unknownDeviceExitsAtOnce();
    void muxedMicrophoneAndCameraByName();
    void secondStopWhileFinishingExitsAtOnce();
    void screenWithoutDisplayExitsAtOnce();

private:
    void configure(const QString &capture, const QString &audioDevice, const QString &videoDevice = QString());
    QProcessEnvironment environment(bool testDevices = true) const;
    // Records 1.5 s, pauses 1.5 s, records 1.5 s more, then SIGTERM.
    Take record(const QString &movie, const QProcessEnvironment &env);

    std::unique_ptr<SimSandbox> m_sim;
};

void TestAgentRecorder::initTestCase()
{
    m_sim = std::make_unique<SimSandbox>();
    QVERIFY(m_sim->installTools());
}

void TestAgentRecorder::configure(const QString &capture, const QString &audioDevice, const QString &videoDevice)
{
    QVariantMap config { { QStringLiteral("Capture"), capture } };
    if (!videoDevice.isNull())
        config.insert(QStringLiteral("VideoDevice"), videoDevice);
    if (!audioDevice.isNull())
        config.insert(QStringLiteral("AudioDevice"), audioDevice);
    QDir().mkpath(QFileInfo(m_sim->userConfig()).absolutePath());
    QVERIFY(PropertyList::writeFile(m_sim->userConfig(), config, true));
}

QProcessEnvironment TestAgentRecorder::environment(bool testDevices) const
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("HOME"), m_sim->home());
    env.insert(QStringLiteral("LUMEX_SYSROOT"), m_sim->sysroot());
    if (testDevices) {
        env.insert(QStringLiteral("LUMEX_CAPTURE_HARDWARE"), QStringLiteral("0"));
        env.insert(QStringLiteral("LUMEX_TEST_DEVICES"), QStringLiteral("microphone:mic1;microphone:mic2"));
    }
    return env;
}

Take TestAgentRecorder::record(const QString &movie, const QProcessEnvironment &env)
{
    Take take;
    QProcess agent;
    agent.setProcessEnvironment(env);
    agent.start(m_sim->tool(QStringLiteral("orvxagentd")), { QStringLiteral("-f"), movie });
    if (!agent.waitForStarted())
        return take;
    // Recording starts when the file appears.
    QElapsedTimer waited;
    waited.start();
    while (QFileInfo(movie).size() == 0 && waited.elapsed() < 10000 && agent.state() == QProcess::Running)
        QTest::qWait(20);
    QElapsedTimer clock;
    clock.start();
    QTest::qWait(1500);
    take.recordedMs = clock.elapsed();
    ::kill(pid_t(agent.processId()), SIGUSR1);
    QTest::qWait(1500);
    ::kill(pid_t(agent.processId()), SIGUSR2);
    clock.restart();
    QTest::qWait(1500);
    take.recordedMs += clock.elapsed();
    agent.terminate();
    agent.waitForFinished(30000);
    take.exitCode = agent.exitStatus() == QProcess::NormalExit ? agent.exitCode() : -1;
    take.err = agent.readAllStandardError();
    return take;
}

void TestAgentRecorder::audioFromATestDeviceHasNoGapAfterPause()
{
    configure(QStringLiteral("Audio:Better"), QStringLiteral("test:mic2"));
    const QString movie = m_sim->home() + QStringLiteral("/LocalAudio-test.mov");
    const Take take = record(movie, environment());
    QVERIFY2(take.exitCode == 0, take.err.constData());
    const MovieInspection inspected = inspectMovie(movie);
    QVERIFY(inspected.videoCodec.isEmpty());
    QCOMPARE(inspected.audioCodec, QStringLiteral("audio/mpeg"));
    QCOMPARE(inspected.sampleRate, 48000);
    QCOMPARE(inspected.channels, 2);
    QVERIFY2(qAbs(inspected.containerDuration - take.recordedMs / 1000.0) < 0.2,
        qPrintable(QStringLiteral("%1 vs %2 ms").arg(inspected.containerDuration).arg(take.recordedMs)));
    QVERIFY(inspected.largestAudioGap < 0.05);
    QVERIFY(!inspected.topLevelAtoms.contains(QStringLiteral("moof")));
}

void TestAgentRecorder::screenRecordingUnderXvfb()
{
    XvfbServer server(QStringLiteral("800x600x24"));
    if (server.display().isEmpty())
        QSKIP("Xvfb could not be started");
    configure(QStringLiteral("Screen:Better"), QStringLiteral("Automatic"));
    QProcessEnvironment env = environment();
    env.insert(QStringLiteral("DISPLAY"), server.display());
    const QString movie = m_sim->home() + QStringLiteral("/ScreenCapture-test.mov");
    const Take take = record(movie, env);
    QVERIFY2(take.exitCode == 0, take.err.constData());
    const MovieInspection inspected = inspectMovie(movie);
    QCOMPARE(inspected.videoCodec, QStringLiteral("video/x-h264"));
    // 800x600 scaled to fit 640x480.
    QCOMPARE(QSize(inspected.width, inspected.height), QSize(640, 480));
    QCOMPARE(inspected.audioCodec, QStringLiteral("audio/mpeg"));
    QVERIFY2(qAbs(inspected.containerDuration - take.recordedMs / 1000.0) < 0.2,
        qPrintable(QStringLiteral("%1 vs %2 ms").arg(inspected.containerDuration).arg(take.recordedMs)));
    QVERIFY2(inspected.largestVideoGap < 0.15, qPrintable(QString::number(inspected.largestVideoGap)));
    QVERIFY(inspected.largestAudioGap < 0.05);
}

void TestAgentRecorder::defaultMicrophoneOfAPulseAudioServer()
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
    // then the default source.
    pulse.start(QStringLiteral("pulseaudio"),
        { QStringLiteral("-n"), QStringLiteral("--daemonize=no"), QStringLiteral("--exit-idle-time=-1"),
            QStringLiteral("--disallow-exit"), QStringLiteral("--use-pid-file=no"),
            QStringLiteral("--load=module-native-protocol-unix auth-anonymous=1 socket=") + socket,
            QStringLiteral("--load=module-null-sink sink_name=lumex_null") });
    if (!pulse.waitForStarted())
        QSKIP("pulseaudio could not be started");
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(socket) || pulse.state() != QProcess::Running, 10000);
    if (pulse.state() != QProcess::Running)
        QSKIP(qPrintable(QStringLiteral("pulseaudio exited: ") + QString::fromLocal8Bit(pulse.readAll())));

    configure(QStringLiteral("Audio:Better"), QStringLiteral("(null)"));
    QProcessEnvironment env = environment(false);
    env.insert(QStringLiteral("PULSE_SERVER"), QStringLiteral("unix:") + socket);
    const QString movie = m_sim->home() + QStringLiteral("/LocalAudio-pulse.mov");
    const Take take = record(movie, env);
    pulse.terminate();
    pulse.waitForFinished(5000);
    QVERIFY2(take.exitCode == 0, take.err.constData());
    const MovieInspection inspected = inspectMovie(movie);
    QCOMPARE(inspected.audioCodec, QStringLiteral("audio/mpeg"));
    QVERIFY2(qAbs(inspected.containerDuration - take.recordedMs / 1000.0) < 0.2,
        qPrintable(QStringLiteral("%1 vs %2 ms").arg(inspected.containerDuration).arg(take.recordedMs)));
    QVERIFY(inspected.largestAudioGap < 0.05);
}

void TestAgentRecorder::unknownDeviceExitsAtOnce()
{
    configure(QStringLiteral("Audio:Better"), QStringLiteral("test:unplugged"));
    const QString movie = m_sim->home() + QStringLiteral("/LocalAudio-none.mov");
    QProcess agent;
    agent.setProcessEnvironment(environment());
    QElapsedTimer clock;
    clock.start();
    agent.start(m_sim->tool(QStringLiteral("orvxagentd")), { QStringLiteral("-f"), movie });
    QVERIFY(agent.waitForFinished(10000));
    QVERIFY(clock.elapsed() < 5000);
    QCOMPARE(agent.exitStatus(), QProcess::NormalExit);
    QVERIFY(agent.exitCode() != 0);
    QVERIFY(agent.readAllStandardError().contains("test:unplugged"));
    QVERIFY(!QFile::exists(movie));

    // No microphone at all.
    configure(QStringLiteral("Audio:Better"), QStringLiteral("Automatic"));
    QProcessEnvironment none = environment();
    none.insert(QStringLiteral("LUMEX_TEST_DEVICES"), QString());
    agent.setProcessEnvironment(none);
    agent.start(m_sim->tool(QStringLiteral("orvxagentd")), { QStringLiteral("-f"), movie });
    QVERIFY(agent.waitForFinished(10000));
    QVERIFY(agent.exitCode() != 0);
    QVERIFY(!agent.readAllStandardError().isEmpty());
}

void TestAgentRecorder::screenWithoutDisplayExitsAtOnce()
{
    configure(QStringLiteral("Screen:Better"), QStringLiteral("test:mic1"));
    QProcessEnvironment env = environment();
    env.remove(QStringLiteral("DISPLAY"));
    QProcess agent;
    agent.setProcessEnvironment(env);
    agent.start(
        m_sim->tool(QStringLiteral("orvxagentd")), { QStringLiteral("-f"), m_sim->home() + QStringLiteral("/s.mov") });
    QVERIFY(agent.waitForFinished(10000));
    QVERIFY(agent.exitCode() != 0);
    QVERIFY(agent.readAllStandardError().contains("DISPLAY"));
}

void TestAgentRecorder::muxedMicrophoneAndCameraByName()
{
    QProcessEnvironment env = environment();
    env.insert(
        QStringLiteral("LUMEX_TEST_DEVICES"), QStringLiteral("muxed:dv1:Test Camcorder;camera:cam1:Front Camera"));

    // A camcorder chosen as the microphone gives only its sound.
    configure(QStringLiteral("Audio:Better"), QStringLiteral("test:dv1"), QStringLiteral("Automatic"));
    const QString audio = m_sim->home() + QStringLiteral("/LocalAudio-muxed.mov");
    Take take = record(audio, env);
    QVERIFY2(take.exitCode == 0, take.err.constData());
    MovieInspection inspected = inspectMovie(audio);
    QVERIFY(inspected.videoCodec.isEmpty());
    QCOMPARE(inspected.audioCodec, QStringLiteral("audio/mpeg"));

    // The client names the job's camera by its display name.
    configure(QStringLiteral("Video:Better"), QStringLiteral("test:dv1"), QStringLiteral("Front Camera"));
    const QString video = m_sim->home() + QStringLiteral("/LocalVideo-named.mov");
    take = record(video, env);
    QVERIFY2(take.exitCode == 0, take.err.constData());
    inspected = inspectMovie(video);
    QCOMPARE(inspected.videoCodec, QStringLiteral("video/x-h264"));
    QCOMPARE(inspected.audioCodec, QStringLiteral("audio/mpeg"));

    // A name that is a microphone's is no camera.
    QProcess agent;
    env.insert(QStringLiteral("LUMEX_TEST_DEVICES"), QStringLiteral("microphone:mic1:Desk Microphone"));
    agent.setProcessEnvironment(env);
    configure(QStringLiteral("Video:Better"), QStringLiteral("test:mic1"), QStringLiteral("Desk Microphone"));
    agent.start(
        m_sim->tool(QStringLiteral("orvxagentd")), { QStringLiteral("-f"), m_sim->home() + QStringLiteral("/v.mov") });
    QVERIFY(agent.waitForFinished(10000));
    QCOMPARE(agent.exitCode(), 4);
    QCOMPARE(agent.readAllStandardError(), QByteArray("orvxagentd: no camera \"Desk Microphone\".\n"));
    configure(QStringLiteral("Video:Better"), QStringLiteral("test:mic1"), QStringLiteral("Automatic"));
    agent.start(
        m_sim->tool(QStringLiteral("orvxagentd")), { QStringLiteral("-f"), m_sim->home() + QStringLiteral("/v.mov") });
    QVERIFY(agent.waitForFinished(10000));
    QCOMPARE(agent.exitCode(), 4);
    QCOMPARE(agent.readAllStandardError(), QByteArray("orvxagentd: no camera to record from.\n"));
}

void TestAgentRecorder::secondStopWhileFinishingExitsAtOnce()
{
    configure(QStringLiteral("Audio:Better"), QStringLiteral("test:mic1"));
    const QString movie = m_sim->home() + QStringLiteral("/LocalAudio-twice.mov");
    QProcess agent;
    agent.setProcessEnvironment(environment());
    agent.start(m_sim->tool(QStringLiteral("orvxagentd")), { QStringLiteral("-f"), movie });
    QVERIFY(agent.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(movie).size() > 0, 10000);
    QTest::qWait(1500);
    ::kill(pid_t(agent.processId()), SIGTERM);
    ::kill(pid_t(agent.processId()), SIGTERM);
    QVERIFY(agent.waitForFinished(20000));
    QCOMPARE(agent.exitStatus(), QProcess::NormalExit);
    QCOMPARE(agent.exitCode(), 0);
    // Whether or not the first stop got far: what is on disk plays.
    const MovieInspection inspected = inspectMovie(movie);
    QVERIFY(inspected.readable);
    QCOMPARE(inspected.audioCodec, QStringLiteral("audio/mpeg"));
}

QTEST_GUILESS_MAIN(TestAgentRecorder)
#include "tst_agentrecorder.moc"
