// Job control through the server interface: remote jobs (the command line
// and error text of each operation, recorded by a shell script standing in
// for the tool), local recordings with a stand-in capture agent (a real
// child that writes a movie file and answers signals), the checks made
// before any tool runs, the job data file, the submission of local files,
// the asynchronous forms, and whole runs against the simulator.

#include "SimSandbox.h"
#include "capture/MovieInspection.h"

#include "LXDefaultsKeys.h"
#include "LXUserDefaults.h"
#include "Paths.h"

#include <QJsonDocument>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QThread>
#include <QTimeZone>

#include <csignal>
#include <cstdio>
#include <sys/prctl.h>
#include <sys/wait.h>

using namespace Qt::StringLiterals;

namespace {

using Operation = int32_t (OrvaneServerInterface::*)(PodcastJob *, Error *);
using I = OrvaneServerInterface;

Operation operationNamed(const QString &name)
{
    static const QHash<QString, Operation> operations { { "startVideo", &I::startRemoteVideoJob },
        { "startAudio", &I::startRemoteAudioJob }, { "pause", &I::pauseRemoteJob }, { "resume", &I::resumeRemoteJob },
        { "cancel", &I::cancelRemoteJob }, { "stop", &I::stopRemoteJob }, { "video", &I::startLocalVideoJob },
        { "audio", &I::startLocalAudioJob }, { "screen", &I::startLocalScreenCapJob },
        { "stopLocal", &I::stopLocalJob }, { "pauseLocal", &I::pauseLocalJob }, { "resumeLocal", &I::resumeLocalJob },
        { "submitAndDelete", &I::submitAndDeleteJobFiles } };
    return operations.value(name);
}

const QString kNoCamera = QStringLiteral("Unexpected internal error. Unable to obtain camera name from job data.");
const QString kNoWorkflow = QStringLiteral("Unexpected internal error. Unable to obtain workflow name from job data.");
const QString kNoPaths
    = QStringLiteral("Unexpected internal error. Unable to obtain local submission filename path(s) from job data.");

// One remote operation: its arguments after the credentials, the tool's
// reply (status, output, error output) and the error text expected of it.
struct Command
{
    QString operation;
    QStringList arguments;
    int status;
    QByteArray out = {}, err = {};
    QString text = {};
};

// An operation on a job that lacks a camera, a workflow or movie paths.
struct Check
{
    QString operation;
    bool camera, workflow, paths;
    int status;
    QString text; // null: no error at all
    bool writesJobData;
};

// A submission: its files, whether they go afterwards, the tool's reply and
// the upload identifier expected of it (null: none).
struct Submit
{
    QStringList files;
    bool deleteFiles;
    QByteArray out;
    QString uuid;
    int status = 0;
    QByteArray err = {};
};

struct Start
{
    QString mode, storedPreset, audioDevice, capture, audioValue;
    QString videoValue = QStringLiteral("Automatic");
    QString filePrefix = QStringLiteral("LocalAudio-");
};

// The client side of a local audio recording in a process of its own, for
// tests that end that process: starts the agent as the application does
// (from a worker thread) and prints "PID MOVIE" once it runs.
int runRecordingClient(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const auto interface = SimSandbox::makeInterface();
    interface->job()->setLocalAudioDeviceName(QStringLiteral("test:mic1"));
    QObject delegate;
    interface->startLocalAudioJobWithDelegate(&delegate, [&](const std::optional<Error> &error) {
        const auto task = interface->job()->localAgentTask();
        if (error || !task) {
            std::fprintf(stderr, "no agent: %s\n", qPrintable(error ? error->localizedDescription : QString()));
            QCoreApplication::exit(1);
            return;
        }
        std::printf("%d %s\n", int(task->processIdentifier()), qPrintable(interface->job()->movieFilePaths()->last()));
        std::fflush(stdout);
    });
    return app.exec();
}

} // namespace

Q_DECLARE_METATYPE(Command)
Q_DECLARE_METATYPE(Check)
Q_DECLARE_METATYPE(Start)
Q_DECLARE_METATYPE(Submit)

class TestJobs : public QObject
{
    Q_OBJECT

    SimSandbox m_sim;
    std::shared_ptr<OrvaneServerInterface> m_interface;
    std::shared_ptr<PodcastJob> m_job;

    int32_t perform(const QString &operation, Error *error)
    {
        return (m_interface.get()->*operationNamed(operation))(m_job.get(), error);
    }
    void setNames(const QString &camera, const QString &workflow)
    {
        m_job->setCamera(
            camera.isNull() ? QVariantMap { { "location", "somewhere" } } : QVariantMap { { "name", camera } });
        if (!workflow.isNull())
            m_job->setWorkflow({ { QStringLiteral("name"), workflow } });
    }
    QString spool() const { return m_sim.home() + QStringLiteral("/Library/Application Support/Lumex"); }
    void setUpSubmission(const QStringList &files, bool recorded = true)
    {
        if (recorded)
            m_sim.installRecordingTool();
        m_job->setMovieFilePaths(files);
        m_job->setWorkflow({ { QStringLiteral("name"), QStringLiteral("archive-only") } });
    }

private slots:
    void init()
    {
        QVERIFY(m_sim.reset());
        QFile::remove(m_sim.userConfig());
        m_sim.installStandInAgent();
        m_interface = SimSandbox::makeInterface();
        m_job = m_interface->job();
    }
    void cleanup()
    {
        if (m_job && m_job->localAgentTask())
            m_job->localAgentTask()->terminate();
        m_job.reset();
        LXUserDefaults::standard().removeObject(LXDefaultsKeys::LocalRecordSpoolPath.key);
        QFile::remove(Paths::kioskFile());
    }

    void commandLinesAndFailureTexts_data()
    {
        QTest::addColumn<Command>("c");
        const QString cam = QStringLiteral("Lecture Hall A");
        QTest::newRow("start video") << Command { "startVideo", { "--start", cam, "--delay", "3" }, 0, "ok\n" };
        QTest::newRow("start audio, empty error") << Command { "startAudio",
            { "--start", cam, "--audio_only", "--delay", "3" }, 9, "said no\n", "", "said no\n\n" };
        QTest::newRow("pause") << Command { "pause", { "--pause", cam }, 9, "out", "err", "out\nerr" };
        QTest::newRow("pause, empty output") << Command { "pause", { "--pause", cam }, 9, "", "bad\n", "\nbad\n" };
        QTest::newRow("resume") << Command { "resume", { "--resume", cam }, 0 };
        QTest::newRow("cancel") << Command { "cancel", { "--cancel", cam }, 9, "o", "e", "o\ne" };
    }
    void commandLinesAndFailureTexts()
    {
        m_sim.installRecordingTool();
        QFETCH(Command, c);
        const auto &[operation, arguments, status, out, err, text] = c;
        m_sim.setReply(out, err, status);
        setNames(QStringLiteral("Lecture Hall A"), QStringLiteral("archive-only"));
        Error error;
        QCOMPARE(perform(operation, &error), status);
        QCOMPARE(m_sim.recordedArguments(), SimSandbox::serverArguments() + arguments);
        QCOMPARE(m_sim.recordedStdin(), QByteArray("lumex"));
        if (status)
            QCOMPARE(error, (Error { kServerInterfaceErrorDomain, status, text }));
        else
            QVERIFY(error.domain.isEmpty());
    }

    void stopWritesJobDataAndSendsIt()
    {
        m_sim.installRecordingTool();
        setNames(QStringLiteral("Studio 2"), QStringLiteral("podcast-publishing"));
        m_job->setUser(QStringLiteral("demo"));
        m_job->setTitle(QStringLiteral("Week 3: \u00dcbung & <tags>"));
        m_job->setJobDescription(QStringLiteral("two\nlines"));
        m_job->setStartedAt(QDateTime::fromSecsSinceEpoch(1700000000, QTimeZone::utc()));
        m_job->setStoppedAt(QDateTime::fromSecsSinceEpoch(1700003600, QTimeZone::utc()));
        m_sim.setReply("o", "e", 9);
        Error error;
        QCOMPARE(m_interface->stopRemoteJob(m_job.get(), &error), 9);
        QCOMPARE(error.localizedDescription, QStringLiteral("o\ne"));
        const QStringList args = m_sim.recordedArguments().mid(4);
        QCOMPARE(args.size(), 6);
        const QString dataFile = args.at(3);
        QCOMPARE(
            args, (QStringList { "--stop", "Studio 2", "--metadata", dataFile, "--workflow", "podcast-publishing" }));
        QCOMPARE(QFileInfo(dataFile).absolutePath(), m_sim.jobDataFolder());
        QVERIFY2(QRegularExpression("^submission-[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\\.plist$")
                     .match(QFileInfo(dataFile).fileName())
                     .hasMatch(),
            qPrintable(dataFile));
        // Not deleted afterwards; a reader other than ours sees the submission dictionary.
        int exitCode = -1;
        const QByteArray json = runPython(
            QStringLiteral("import plistlib,json,sys; print(json.dumps(plistlib.load(open(sys.stdin.read(),'rb'))))"),
            dataFile.toUtf8(), &exitCode);
        QCOMPARE(exitCode, 0);
        QCOMPARE(QJsonDocument::fromJson(json).toVariant().toMap(), m_job->submissionDictionary());
    }

    void checksBeforeAnyTool_data()
    {
        QTest::addColumn<Check>("c");
        QTest::newRow("start video without camera: no error") << Check { "startVideo", 0, 1, 0, -2, {}, false };
        QTest::newRow("start audio without camera: no error") << Check { "startAudio", 0, 1, 0, -2, {}, false };
        QTest::newRow("pause without camera") << Check { "pause", 0, 1, 0, -2, kNoCamera, false };
        QTest::newRow("resume without camera") << Check { "resume", 0, 1, 0, -2, kNoCamera, false };
        QTest::newRow("cancel without camera") << Check { "cancel", 0, 1, 0, -2, kNoCamera, false };
        QTest::newRow("stop without either: camera reported") << Check { "stop", 0, 0, 0, -2, kNoCamera, true };
        QTest::newRow("stop without workflow") << Check { "stop", 1, 0, 0, -3, kNoWorkflow, true };
        QTest::newRow("submit without either: paths reported")
            << Check { "submitAndDelete", 1, 0, 0, -2, kNoPaths, true };
        QTest::newRow("submit without workflow") << Check { "submitAndDelete", 1, 0, 1, -3, kNoWorkflow, true };
    }
    void checksBeforeAnyTool()
    {
        QFETCH(Check, c);
        m_sim.installRecordingTool();
        setNames(c.camera ? QStringLiteral("Studio 2") : QString(), c.workflow ? "archive-only" : QString());
        if (c.paths)
            m_job->setMovieFilePaths(QStringList { QStringLiteral("/tmp/x.mov") });
        m_job->setTitle(QStringLiteral("t"));
        const qsizetype before = m_sim.jobDataFiles().size();
        Error error;
        QCOMPARE(perform(c.operation, &error), c.status);
        QCOMPARE(error, (c.text.isNull() ? Error {} : Error { kServerInterfaceErrorDomain, c.status, c.text }));
        QVERIFY(m_sim.recordedNothing());
        QCOMPARE(m_sim.jobDataFiles().size(), before + (c.writesJobData ? 1 : 0));
    }

    void jobDataFolderBlockedStopsBeforeTool()
    {
        m_sim.installRecordingTool();
        // A file where the job data folder belongs: nothing can be written, the
        // stop and the submission give up with -1 before any tool runs.
        const QString folder = m_sim.jobDataFolder();
        const QString aside = folder + QStringLiteral(".aside");
        if (QFileInfo::exists(folder))
            QVERIFY(QDir().rename(folder, aside));
        QVERIFY(SimSandbox::writeFile(folder, "in the way"));
        setNames(QStringLiteral("Studio 2"), QStringLiteral("archive-only"));
        m_job->setMovieFilePaths(QStringList { QStringLiteral("/tmp/x.mov") });
        Log::Capture log;
        Error stopError, submitError;
        const int32_t stopStatus = m_interface->stopRemoteJob(m_job.get(), &stopError);
        const int32_t submitStatus = m_interface->submitJobFiles(m_job.get(), &submitError);
        QFile::remove(folder);
        if (QFileInfo::exists(aside))
            QDir().rename(aside, folder);

        QCOMPARE(stopStatus, -1);
        QCOMPARE(submitStatus, -1);
        QVERIFY(!stopError.domain.isEmpty() && !submitError.domain.isEmpty());
        QVERIFY(m_sim.recordedNothing());
        QCOMPARE(
            log.lines()
                .filter(QRegularExpression("^createDirectoryAtPath:" + QRegularExpression::escape(folder) + " failed "))
                .size(),
            2);
    }

    void asyncFormsUseOwnJobAndReportOnMainThread()
    {
        m_sim.installRecordingTool();
        QObject delegate;
        QList<std::optional<Error>> results;
        bool mainThread = true;
        const auto call = [&](std::initializer_list<void (I::*)(QObject *, I::JobCallback)> forms) {
            for (const auto form : forms) {
                const qsizetype before = results.size();
                (m_interface.get()->*form)(&delegate, [&](const std::optional<Error> &e) {
                    mainThread = mainThread && QThread::currentThread() == qApp->thread();
                    results << e;
                });
                QTRY_COMPARE(results.size(), before + 1);
            }
        };
        // No camera: a remote start reports success, a pause the missing camera.
        call({ &I::startRemoteVideoJobWithDelegate, &I::pauseRemoteJobWithDelegate,
            &I::startLocalVideoJobWithDelegate });
        const QString movie = m_job->movieFilePaths()->first();
        QTRY_VERIFY(SimSandbox::readFile(movie).startsWith("orvxagentd placeholder"));
        call({ &I::pauseLocalJobWithDelegate, &I::resumeLocalJobWithDelegate, &I::stopLocalJobWithDelegate,
            &I::resumeLocalJobWithDelegate });
        QVERIFY(!m_job->localAgentTask());
        QTRY_COMPARE(
            SimSandbox::readFile(movie).split('\n').mid(2), (QByteArrayList { "paused", "resumed", "stopped", "" }));

        // The interface's own job is used: a job set later is the one sent.
        auto job = std::make_shared<PodcastJob>();
        job->setCamera({ { QStringLiteral("name"), QStringLiteral("Seminar Room") } });
        m_interface->setJob(job);
        m_sim.setReply("busy\n", "no way\n", 3);
        call({ &I::startRemoteAudioJobWithDelegate });
        QCOMPARE(m_sim.recordedArguments().mid(4, 2), (QStringList { "--start", "Seminar Room" }));
        QVERIFY(mainThread);
        const auto failure = [](int code, const QString &text) {
            return Error { kServerInterfaceErrorDomain, code, text };
        };
        QCOMPARE(results,
            (QList<std::optional<Error>> { {}, failure(-2, kNoCamera), {}, {}, {}, {},
                failure(-1, "Local capture agent failed to respond to resume signal with status: -1."),
                failure(3, "busy\n\nno way\n") }));
    }

    void wholeRecordingAgainstSimulator()
    {
        setNames(QStringLiteral("Studio 2"), QStringLiteral("lecture-capture"));
        m_job->setTitle(QStringLiteral("Whole flow"));
        m_job->setStartedAt(QDateTime::currentDateTimeUtc());
        Error error;
        // Pausing an idle camera is refused by the tool with status 1.
        QCOMPARE(m_interface->pauseRemoteJob(m_job.get(), &error), 1);
        QCOMPARE(error.localizedDescription, SimSandbox::progressLine() + "\nCamera Studio 2 is not recording.\n");
        error = {};
        QCOMPARE(m_interface->startRemoteAudioJob(m_job.get(), &error), 0);
        QCOMPARE(m_interface->pauseRemoteJob(m_job.get(), &error), 0);
        QCOMPARE(m_interface->resumeRemoteJob(m_job.get(), &error), 0);
        m_job->setStoppedAt(QDateTime::currentDateTimeUtc());
        QCOMPARE(m_interface->stopRemoteJob(m_job.get(), &error), 0);
        QVERIFY2(error.domain.isEmpty(), qPrintable(error.localizedDescription));

        // The server received the job data as its metadata.
        const QStringList entries
            = QDir(m_sim.state(QStringLiteral("library"))).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        QCOMPARE(entries.size(), 1);
        const QString entry = m_sim.state(QStringLiteral("library/")) + entries.first();
        QCOMPARE(SimSandbox::readPlist(entry + QStringLiteral("/metadata.plist")), m_job->submissionDictionary());
        QVERIFY(SimSandbox::readFile(entry + QStringLiteral("/recording.txt")).contains("audio_only: true"));
        QCOMPARE(m_interface->cancelRemoteJob(m_job.get(), &error), 1); // nothing is left to cancel
    }

    void startConfiguresAgentAndRecords_data()
    {
        QTest::addColumn<Start>("c");
        QTest::newRow("audio, no preset") << Start { "audio", {}, "USB Mic 2", "Audio:Better", "USB Mic 2" };
        QTest::newRow("audio, audio preset") << Start { "audio", "Audio:Best", "Mic", "Audio:Best", "Mic" };
        QTest::newRow("video, audio preset stays Better")
            << Start { "video", "Audio:Best", "Mic", "Video:Better", "Mic", "Front Cam", "LocalVideo-" };
        QTest::newRow("screen, part after the last colon")
            << Start { "screen", "Screen:Old:High", "Mic", "Screen:High", "Mic", "Automatic", "ScreenCapture-" };
        QTest::newRow("no audio device reads (null)") << Start { "audio", {}, {}, "Audio:Better", "(null)" };
    }
    void startConfiguresAgentAndRecords()
    {
        QFETCH(Start, c);
        const auto &[mode, storedPreset, audioDevice, capture, audioValue, videoValue, filePrefix] = c;
        if (!storedPreset.isNull())
            QVERIFY(
                SimSandbox::writePlist(m_sim.userConfig(), QVariantMap { { "RecordingCapturePreset", storedPreset } }));
        QDir(spool()).removeRecursively();
        m_job->setLocalAudioDeviceName(audioDevice);
        m_job->setCamera({ { QStringLiteral("name"), QStringLiteral("Front Cam") } });

        const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
        Error error;
        QCOMPARE(perform(mode, &error), 0);
        const QDateTime after = QDateTime::currentDateTime().addSecs(1);
        QVERIFY2(error.domain.isEmpty(), qPrintable(error.localizedDescription));
        QVERIFY(m_job->localAgentTask() && m_job->localAgentTask()->isRunning());
        const QVariantMap config = SimSandbox::readPlist(m_sim.userConfig());
        QCOMPARE((QStringList { config.value("Capture").toString(), config.value("AudioDevice").toString(),
                     config.value("VideoDevice").toString() }),
            (QStringList { capture, audioValue, videoValue }));

        QCOMPARE(m_job->movieFilePaths()->size(), 1);
        const QString path = m_job->movieFilePaths()->first();
        QCOMPARE(QFileInfo(path).absolutePath(), spool());
        const auto match = QRegularExpression(QStringLiteral("^%1(\\d{4}-\\d{2}-\\d{2}-\\d{6})\\.mov$").arg(filePrefix))
                               .match(QFileInfo(path).fileName());
        QVERIFY2(match.hasMatch(), qPrintable(path));
        const QDateTime stamp = QDateTime::fromString(match.captured(1), QStringLiteral("yyyy-MM-dd-HHmmss"));
        QVERIFY(stamp >= before.addMSecs(-before.time().msec()) && stamp <= after);

        // The agent read the configuration the start left for it.
        QTRY_VERIFY(SimSandbox::readFile(path).contains("Capture: " + capture.toUtf8() + "\n"));
        QCOMPARE(m_interface->stopLocalJob(m_job.get(), &error), 0);
        QVERIFY(!m_job->localAgentTask());
        QTRY_VERIFY(SimSandbox::readFile(path).endsWith("stopped\n"));
    }

    void spoolFolder_data()
    {
        QTest::addColumn<QString>("userSpool"); // under the sandbox
        QTest::addColumn<QString>("kioskSpool"); // null: no kiosk file
        QTest::addColumn<QString>("expected");
        QTest::addColumn<int>("status");
        QTest::newRow("the user's setting") << u"user spool"_s << QString() << u"user spool"_s << 0;
        QTest::newRow("the kiosk file forces it") << u"user spool"_s << u"kiosk spool"_s << u"kiosk spool"_s << 0;
        QTest::newRow("folder cannot be made") << u"blocker/spool"_s << QString() << u"blocker/spool"_s << 1;
    }
    void spoolFolder()
    {
        QFETCH(QString, userSpool);
        QFETCH(QString, kioskSpool);
        QFETCH(QString, expected);
        QFETCH(int, status);
        const QString key = LXDefaultsKeys::LocalRecordSpoolPath.key;
        QVERIFY(SimSandbox::writeFile(m_sim.path() + QStringLiteral("/blocker"), "a file, not a folder"));
        LXUserDefaults::standard().setObject(m_sim.path() + '/' + userSpool, key);
        if (!kioskSpool.isNull())
            QVERIFY(
                SimSandbox::writePlist(Paths::kioskFile(), QVariantMap { { key, m_sim.path() + '/' + kioskSpool } }));

        Error error;
        QCOMPARE(m_interface->startLocalAudioJob(m_job.get(), &error), status);
        const QString movie = m_job->movieFilePaths()->first();
        QVERIFY2(movie.startsWith(m_sim.path() + '/' + expected + "/LocalAudio-"), qPrintable(movie));
        if (status) {
            QCOMPARE(error,
                (Error { kServerInterfaceErrorDomain, 1, // mkdir's own status
                    "Could not make destination folder for capture movie. mkdir returned status: 1." }));
            QVERIFY(!m_job->localAgentTask());
            return;
        }
        QTRY_VERIFY(SimSandbox::readFile(movie).startsWith("orvxagentd placeholder recording\n"));
    }

    void withoutRunningAgent_data()
    {
        QTest::addColumn<QString>("operation");
        QTest::addColumn<bool>("agentDied"); // started, then killed from outside
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("text");
        const QString stop = QStringLiteral("Local capture agent failed to stop.");
        const QString pause = QStringLiteral("Local capture agent failed to respond to pause signal with status: -1.");
        const QString resume
            = QStringLiteral("Local capture agent failed to respond to resume signal with status: -1.");
        QTest::newRow("stop, never started") << u"stopLocal"_s << false << 50 << stop;
        QTest::newRow("pause, never started") << u"pauseLocal"_s << false << -1 << pause;
        QTest::newRow("resume, never started") << u"resumeLocal"_s << false << -1 << resume;
        QTest::newRow("stop, agent died") << u"stopLocal"_s << true << 50 << stop;
        QTest::newRow("pause, agent died") << u"pauseLocal"_s << true << -1 << pause;
    }
    void withoutRunningAgent()
    {
        QFETCH(QString, operation);
        QFETCH(bool, agentDied);
        QFETCH(int, status);
        QFETCH(QString, text);
        Error error;
        if (agentDied) {
            QCOMPARE(m_interface->startLocalAudioJob(m_job.get(), &error), 0);
            QCOMPARE(::kill(m_job->localAgentTask()->processIdentifier(), SIGKILL), 0);
            QTRY_VERIFY(!m_job->localAgentTask()->isRunning());
        }
        QCOMPARE(perform(operation, &error), status);
        QCOMPARE(error, (Error { kServerInterfaceErrorDomain, status, text }));
    }

    void agentThatFailsAtOnce()
    {
        const int status = 7;
        QVERIFY(m_sim.installTools()); // the real agent, which honours the fault file
        m_sim.setFault(QStringLiteral("orvxagentd"), { { "status", status } });
        Error error;
        QCOMPARE(m_interface->startLocalScreenCapJob(m_job.get(), &error), status);
        QCOMPARE(error.code, status);
        QCOMPARE(error.localizedDescription,
            QStringLiteral("Could not start %1. It terminates with status: %2.")
                .arg(m_sim.tool(QStringLiteral("orvxagentd")))
                .arg(status));
        QVERIFY(!m_job->localAgentTask());
        QCOMPARE(m_job->movieFilePaths()->size(), 1); // the path stays
    }

    // However the application ends, the agent it started is told to stop
    // and finishes its movie.
    void agentEndsWithItsClient_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("kill -9") << int(SIGKILL);
        QTest::newRow("a crash") << int(SIGABRT);
    }
    void agentEndsWithItsClient()
    {
        QFETCH(int, signal);
        QVERIFY(m_sim.installTools());
        // Orphans come to this process, so the agent can be waited for here.
        QCOMPARE(::prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
        const auto notSubreaper = qScopeGuard([] { ::prctl(PR_SET_CHILD_SUBREAPER, 0); });
        QProcess client;
        QProcessEnvironment env = m_sim.environment();
        env.insert(QStringLiteral("LUMEX_TEST_DEVICES"), QStringLiteral("microphone:mic1"));
        env.insert(QStringLiteral("LUMEX_CAPTURE_HARDWARE"), QStringLiteral("0"));
        client.setProcessEnvironment(env);
        client.start(QCoreApplication::applicationFilePath(), { QStringLiteral("--recording-client") });
        const auto noClient = qScopeGuard([&client] {
            client.kill();
            client.waitForFinished();
        });
        QVERIFY(client.waitForReadyRead(30000));
        const QString started = QString::fromUtf8(client.readLine().trimmed());
        const pid_t agent = started.section(QLatin1Char(' '), 0, 0).toInt();
        const QString movie = started.section(QLatin1Char(' '), 1);
        QVERIFY2(agent > 0, qPrintable(started));
        // A second of sound on disk, long after the worker thread that
        // started the agent has ended.
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(movie).size() > 20000, 20000);
        QCOMPARE(::waitpid(agent, nullptr, WNOHANG), -1); // not ours yet: still the client's

        QCOMPARE(::kill(pid_t(client.processId()), signal), 0);
        QVERIFY(client.waitForFinished(5000));
        QElapsedTimer sinceDeath;
        sinceDeath.start();
        int status = 0;
        pid_t reaped = 0;
        while (reaped == 0 && sinceDeath.elapsed() < 2000) {
            reaped = ::waitpid(agent, &status, WNOHANG);
            if (reaped == 0)
                QTest::qWait(20);
        }
        if (reaped == 0) {
            ::kill(agent, SIGKILL);
            ::waitpid(agent, nullptr, 0);
        }
        QVERIFY2(reaped == agent, "the agent still runs 2 s after its client died");
        QVERIFY2(WIFEXITED(status) && WEXITSTATUS(status) == 0, qPrintable(QString::number(status)));
        const MovieInspection recorded = inspectMovie(movie);
        QVERIFY(recorded.readable);
        QCOMPARE(recorded.audioCodec, QStringLiteral("audio/mpeg"));
        QVERIFY2(recorded.audioEnd > 0.9, qPrintable(QString::number(recorded.audioEnd)));
        // Finished, not cut off: a plain movie.
        QVERIFY(!recorded.topLevelAtoms.contains(QStringLiteral("moof")));
    }

    void cancelDeletesOnlyLastPath()
    {
        const QString chosen = m_sim.path() + QStringLiteral("/chosen.mov");
        const QString other = m_sim.path() + QStringLiteral("/other.mov");
        QVERIFY(SimSandbox::writeFile(chosen, "keep") && SimSandbox::writeFile(other, "keep too"));
        // With a running agent: stopped and its movie removed.
        Error error;
        QCOMPARE(m_interface->startLocalAudioJob(m_job.get(), &error), 0);
        const QString movie = m_job->movieFilePaths()->first();
        QTRY_VERIFY(QFileInfo::exists(movie));
        const auto agent = m_job->localAgentTask();
        m_job->setMovieFilePaths(QStringList { chosen, movie });
        QCOMPARE(m_interface->cancelLocalJob(m_job.get(), &error), 0);
        QVERIFY(!m_job->localAgentTask());
        QVERIFY(QFileInfo::exists(chosen));
        QCOMPARE(*m_job->movieFilePaths(), (QStringList { chosen, movie }));
        QTRY_VERIFY(!agent->isRunning()); // it may still write to its file on the way out
        QFile::remove(movie);
        // Without an agent: the stop fails, the last file still goes.
        m_job->setMovieFilePaths(QStringList { chosen, other });
        QCOMPARE(m_interface->cancelLocalJob(m_job.get(), &error), 50);
        QCOMPARE(error.code, 50);
        QVERIFY(QFileInfo::exists(chosen));
        QVERIFY(!QFileInfo::exists(other));
    }

    void localConfigFailureIsLoggedWithQuotedValue()
    {
        m_sim.setFault(QStringLiteral("--setconfig"), { { "status", 6 } });
        Log::Capture log;
        m_interface->setLocalAgentConfigValue(QStringLiteral("Built-in Mic"), QStringLiteral("AudioDevice"));
        QCOMPARE(log.lines(),
            QStringList { "Error 6 when attempting to set local config value AudioDevice to Built-in Mic with command: "
                          "orvx --setconfig AudioDevice=\"Built-in Mic\"" });
        // A failing configuration only logs; the recording still starts.
        log.clear();
        Error error;
        QCOMPARE(m_interface->startLocalAudioJob(m_job.get(), &error), 0);
        QCOMPARE(log.lines().size(), 3);
        // The argument itself carries no quotes.
        m_sim.installRecordingTool();
        m_interface->setLocalAgentConfigValue(QStringLiteral("Built-in Mic"), QStringLiteral("AudioDevice"));
        QCOMPARE(m_sim.recordedArguments(), (QStringList { "--setconfig", "AudioDevice=Built-in Mic" }));
        QCOMPARE(m_sim.recordedStdinKind(), QStringLiteral("/dev/null"));
    }

    void submission_data()
    {
        QTest::addColumn<Submit>("c");
        const QStringList two { "/tmp/a b.mov", "/tmp/c.mov" };
        QTest::newRow("two files; identifier on the first line")
            << Submit { two, false, "Upload UUID: 0A1B-22\nQueued 1 file(s).\n", "0A1B-22" };
        QTest::newRow("delete; last word of the first line")
            << Submit { two, true, "Note: Upload UUID: one two XYZ", "XYZ" };
        QTest::newRow("no files, no --file; identifier on the second line")
            << Submit { {}, false, "Connecting ...\nUpload UUID: 0A1B-22\n", QString() };
        QTest::newRow("failure still takes it")
            << Submit { { "/x.mov" }, false, "Upload UUID: F00D\n", "F00D", 2, "full\n" };
    }
    void submission()
    {
        QFETCH(Submit, c);
        setUpSubmission(c.files);
        m_sim.setReply(c.out, c.err, c.status);
        Error error;
        QCOMPARE(c.deleteFiles ? m_interface->submitAndDeleteJobFiles(m_job.get(), &error)
                               : m_interface->submitJobFiles(m_job.get(), &error),
            c.status);
        QStringList expected = SimSandbox::serverArguments() << QStringLiteral("--submit");
        for (const QString &f : c.files)
            expected << QStringLiteral("--file") << f;
        const QStringList args = m_sim.recordedArguments();
        const QString dataFile = args.value(expected.size() + 1);
        expected << u"--metadata"_s << dataFile << u"--workflow"_s << u"archive-only"_s;
        if (c.deleteFiles)
            expected << QStringLiteral("--delete");
        QCOMPARE(args, expected);
        QCOMPARE(QFileInfo(dataFile).absolutePath(), m_sim.jobDataFolder());
        QCOMPARE(SimSandbox::readPlist(dataFile), m_job->submissionDictionary());
        // The upload's identifier is the last word of the first line only.
        QCOMPARE(m_job->uploadUUID(), c.uuid);
        QCOMPARE(m_job->uploadUUID().isNull(), c.uuid.isNull());
        QCOMPARE(error,
            (c.status ? Error { kServerInterfaceErrorDomain, c.status, QString::fromUtf8(c.out + "\n" + c.err) }
                      : Error {}));
    }
};

int main(int argc, char **argv)
{
    if (argc == 2 && qstrcmp(argv[1], "--recording-client") == 0)
        return runRecordingClient(argc, argv);
    QCoreApplication app(argc, argv);
    TestJobs test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_jobs.moc"
