// Local recordings with a stand-in capture agent (a real child that writes
// a movie file and answers signals), and the submission of local files,
// recorded by a shell script or run through the simulator.

#include "SimSandbox.h"

#include "LXDefaultsKeys.h"
#include "LXUserDefaults.h"
#include "Paths.h"

#include <QRegularExpression>
#include <QThread>

#include <csignal>

namespace {

struct Start
{
    QString mode, storedPreset, audioDevice, capture, audioValue;
    QString videoValue = QStringLiteral("Automatic");
    QString filePrefix = QStringLiteral("LocalAudio-");
};

using Operation = int32_t (OrvaneServerInterface::*)(PodcastJob *, Error *);

Operation operationNamed(const QString &name)
{
    static const QHash<QString, Operation> operations { { "video", &OrvaneServerInterface::startLocalVideoJob },
        { "audio", &OrvaneServerInterface::startLocalAudioJob },
        { "screen", &OrvaneServerInterface::startLocalScreenCapJob }, { "stop", &OrvaneServerInterface::stopLocalJob },
        { "pause", &OrvaneServerInterface::pauseLocalJob }, { "resume", &OrvaneServerInterface::resumeLocalJob } };
    return operations.value(name);
}

const QString kNoWorkflow = QStringLiteral("Unexpected internal error. Unable to obtain workflow name from job data.");
const QString kNoPaths
    = QStringLiteral("Unexpected internal error. Unable to obtain local submission filename path(s) from job data.");

} // namespace

Q_DECLARE_METATYPE(Start)

class TestLocalJobs : public QObject
{
    Q_OBJECT

    SimSandbox m_sim;
    std::shared_ptr<OrvaneServerInterface> m_interface;
    std::shared_ptr<PodcastJob> m_job;

    int32_t perform(const QString &operation, Error *error)
    {
        return (m_interface.get()->*operationNamed(operation))(m_job.get(), error);
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
        QTest::newRow("the user's setting") << "user spool" << QString() << "user spool" << 0;
        QTest::newRow("the kiosk file forces it") << "user spool"
                                                  << "kiosk spool"
                                                  << "kiosk spool" << 0;
        QTest::newRow("folder cannot be made") << "blocker/spool" << QString() << "blocker/spool" << 1;
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

    void signalsReachAgent()
    {
        Error error;
        QCOMPARE(m_interface->startLocalAudioJob(m_job.get(), &error), 0);
        const QString movie = m_job->movieFilePaths()->first();
        QTRY_VERIFY(SimSandbox::readFile(movie).startsWith("orvxagentd placeholder recording\n"));
        QCOMPARE(m_interface->pauseLocalJob(m_job.get(), &error), 0);
        QTRY_VERIFY(SimSandbox::readFile(movie).endsWith("paused\n"));
        QVERIFY(m_job->localAgentTask()); // kept
        QCOMPARE(m_interface->resumeLocalJob(m_job.get(), &error), 0);
        QTRY_VERIFY(SimSandbox::readFile(movie).endsWith("paused\nresumed\n"));
        QCOMPARE(m_interface->stopLocalJob(m_job.get(), &error), 0);
        QTRY_VERIFY(SimSandbox::readFile(movie).endsWith("paused\nresumed\nstopped\n"));
        QVERIFY(error.domain.isEmpty());
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
        QTest::newRow("stop, never started") << "stop" << false << 50 << stop;
        QTest::newRow("pause, never started") << "pause" << false << -1 << pause;
        QTest::newRow("resume, never started") << "resume" << false << -1 << resume;
        QTest::newRow("stop, agent died") << "stop" << true << 50 << stop;
        QTest::newRow("pause, agent died") << "pause" << true << -1 << pause;
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

    void agentThatFailsAtOnce_data()
    {
        QTest::addColumn<QVariantMap>("settings");
        QTest::addColumn<int>("status");
        QTest::newRow("default status") << QVariantMap { { "stderr", "" } } << 3;
        QTest::newRow("given status") << QVariantMap { { "status", 7 } } << 7;
    }
    void agentThatFailsAtOnce()
    {
        QFETCH(QVariantMap, settings);
        QFETCH(int, status);
        QVERIFY(m_sim.installTools()); // the real agent, which honours the fault file
        m_sim.setFault(QStringLiteral("orvxagentd"), settings);
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

    void submissionCommandLine_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<bool>("deleteFiles");
        QTest::newRow("two files") << QStringList { "/tmp/a b.mov", "/tmp/c.mov" } << false;
        QTest::newRow("two files, delete last") << QStringList { "/tmp/a b.mov", "/tmp/c.mov" } << true;
        QTest::newRow("empty list runs without --file") << QStringList {} << false;
    }
    void submissionCommandLine()
    {
        QFETCH(QStringList, files);
        QFETCH(bool, deleteFiles);
        setUpSubmission(files);
        Error error;
        QCOMPARE(deleteFiles ? m_interface->submitAndDeleteJobFiles(m_job.get(), &error)
                             : m_interface->submitJobFiles(m_job.get(), &error),
            0);
        QStringList expected = SimSandbox::serverArguments() << QStringLiteral("--submit");
        for (const QString &f : files)
            expected << QStringLiteral("--file") << f;
        const QStringList args = m_sim.recordedArguments();
        const QString dataFile = args.value(expected.size() + 1);
        expected << "--metadata" << dataFile << "--workflow"
                 << "archive-only";
        if (deleteFiles)
            expected << QStringLiteral("--delete");
        QCOMPARE(args, expected);
        QCOMPARE(QFileInfo(dataFile).absolutePath(), m_sim.jobDataFolder());
        QCOMPARE(SimSandbox::readPlist(dataFile), m_job->submissionDictionary());
    }

    void submissionChecks_data()
    {
        QTest::addColumn<bool>("hasPaths");
        QTest::addColumn<bool>("hasWorkflow");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("text");
        QTest::newRow("no movie paths") << false << true << -2 << kNoPaths;
        QTest::newRow("no paths, no workflow: paths first") << false << false << -2 << kNoPaths;
        QTest::newRow("no workflow") << true << false << -3 << kNoWorkflow;
    }
    void submissionChecks()
    {
        QFETCH(bool, hasPaths);
        QFETCH(bool, hasWorkflow);
        QFETCH(int, status);
        QFETCH(QString, text);
        m_sim.installRecordingTool();
        if (hasPaths)
            m_job->setMovieFilePaths(QStringList { QStringLiteral("/tmp/x.mov") });
        if (hasWorkflow)
            m_job->setWorkflow({ { QStringLiteral("name"), QStringLiteral("archive-only") } });
        const qsizetype before = m_sim.jobDataFiles().size();
        Error error;
        QCOMPARE(m_interface->submitAndDeleteJobFiles(m_job.get(), &error), status);
        QCOMPARE(error, (Error { kServerInterfaceErrorDomain, status, text }));
        QVERIFY(m_sim.recordedNothing());
        QCOMPARE(m_sim.jobDataFiles().size(), before + 1); // the job data file is written first all the same
    }

    void uploadIdentifierOnlyFromFirstLine_data()
    {
        QTest::addColumn<QByteArray>("out");
        QTest::addColumn<QByteArray>("err");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("uuid"); // null: nothing stored
        QTest::newRow("first line") << QByteArray("Upload UUID: 0A1B-22\nQueued 1 file(s).\n") << QByteArray() << 0
                                    << "0A1B-22";
        QTest::newRow("last word of the first line")
            << QByteArray("Note: Upload UUID: one two XYZ") << QByteArray() << 0 << "XYZ";
        QTest::newRow("second line only")
            << QByteArray("Connecting ...\nUpload UUID: 0A1B-22\n") << QByteArray() << 0 << QString();
        QTest::newRow("failure still takes it")
            << QByteArray("Upload UUID: F00D\n") << QByteArray("disk full\n") << 2 << "F00D";
    }
    void uploadIdentifierOnlyFromFirstLine()
    {
        QFETCH(QByteArray, out);
        QFETCH(QByteArray, err);
        QFETCH(int, status);
        QFETCH(QString, uuid);
        setUpSubmission(QStringList { QStringLiteral("/tmp/x.mov") });
        m_sim.setReply(out, err, status);
        Error error;
        QCOMPARE(m_interface->submitJobFiles(m_job.get(), &error), status);
        QCOMPARE(m_job->uploadUUID(), uuid);
        QCOMPARE(m_job->uploadUUID().isNull(), uuid.isNull());
        if (status != 0)
            QCOMPARE(error, (Error { kServerInterfaceErrorDomain, status, QString::fromUtf8(out + "\n" + err) }));
    }

    void submitAndDeleteAgainstSimulator()
    {
        const QStringList takes { m_sim.path() + QStringLiteral("/take 1.mov"), m_sim.path() + "/take 2.mov" };
        QVERIFY(SimSandbox::writeFile(takes[0], "first take") && SimSandbox::writeFile(takes[1], "second take"));
        setUpSubmission(takes, false);
        m_job->setTitle(QStringLiteral("Two takes"));
        Error error;
        QCOMPARE(m_interface->submitAndDeleteJobFiles(m_job.get(), &error), 0);
        QVERIFY2(error.domain.isEmpty(), qPrintable(error.localizedDescription));
        QVERIFY(!QFileInfo::exists(takes[0]) && !QFileInfo::exists(takes[1]));
        const QString uuid = m_job->uploadUUID();
        QCOMPARE(uuid.size(), 36);
        const QVariantMap record
            = OrvaneServerInterface::transferStatuses().value_or(QVariantMap()).value(uuid).toMap();
        QCOMPARE(record.value("upload_uuid").toString(), uuid);
        QCOMPARE(record.value("user").toString(), QStringLiteral("demo"));
        QVERIFY(!record.value("status").toString().isEmpty());
        QCOMPARE(record.value("content_paths").toList().size(), 2);
        QCOMPARE(SimSandbox::readPlist(record.value("cached_metadata_file").toString()).value("Title").toString(),
            QStringLiteral("Two takes"));
        Log::Capture log;
        OrvaneServerInterface::clearCompletedTransferStatuses();
        QVERIFY(log.lines().isEmpty());
    }

    void asyncLocalRecording()
    {
        QObject delegate;
        int calls = 0;
        bool mainThread = true;
        std::optional<Error> last;
        auto callback = [&](const std::optional<Error> &e) {
            ++calls;
            mainThread = mainThread && QThread::currentThread() == qApp->thread();
            last = e;
        };
        m_interface->startLocalVideoJobWithDelegate(&delegate, callback);
        QTRY_COMPARE(calls, 1);
        QVERIFY(!last && m_job->localAgentTask());
        m_interface->pauseLocalJobWithDelegate(&delegate, callback);
        QTRY_COMPARE(calls, 2);
        QVERIFY(!last);
        m_interface->stopLocalJobWithDelegate(&delegate, callback);
        QTRY_COMPARE(calls, 3);
        QVERIFY(!last && !m_job->localAgentTask());
        m_interface->resumeLocalJobWithDelegate(&delegate, callback);
        QTRY_COMPARE(calls, 4);
        QCOMPARE(last->code, -1);
        QVERIFY(mainThread);
    }
};

QTEST_GUILESS_MAIN(TestLocalJobs)
#include "tst_localjobs.moc"
