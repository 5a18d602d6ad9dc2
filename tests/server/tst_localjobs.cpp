// Local recordings with the simulator's placeholder capture agent (a real
// child that writes a movie file and answers signals), and the submission of
// local files, recorded by a shell script or run through the simulator.

#include "SimSandbox.h"

#include "LXDefaultsKeys.h"
#include "LXUserDefaults.h"
#include "Log.h"
#include "OrvaneServerInterface.h"

#include <QRegularExpression>
#include <QThread>

#include <csignal>

namespace {

using Operation = int32_t (OrvaneServerInterface::*)(PodcastJob *, Error *);

Operation startFor(const QString &mode)
{
    if (mode == QLatin1String("video"))
        return &OrvaneServerInterface::startLocalVideoJob;
    if (mode == QLatin1String("screen"))
        return &OrvaneServerInterface::startLocalScreenCapJob;
    return &OrvaneServerInterface::startLocalAudioJob;
}

} // namespace

class TestLocalJobs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void startConfiguresAgentAndRecords_data();
    void startConfiguresAgentAndRecords();
    void signalsReachAgent();
    void withoutRunningAgent_data();
    void withoutRunningAgent();
    void agentThatFailsAtOnce_data();
    void agentThatFailsAtOnce();
    void spoolFolderCannotBeMade();
    void cancelDeletesOnlyLastPath();
    void localConfigFailureIsLoggedWithQuotedValue();

    void submissionCommandLine_data();
    void submissionCommandLine();
    void submissionChecks_data();
    void submissionChecks();
    void uploadIdentifierOnlyFromFirstLine_data();
    void uploadIdentifierOnlyFromFirstLine();
    void submitAndDeleteAgainstSimulator();
    void asyncLocalRecording();

private:
    std::shared_ptr<OrvaneServerInterface> makeInterface()
    {
        auto interface = OrvaneServerInterface::create(
            { { QStringLiteral("server"), SimSandbox::kServerHost }, { QStringLiteral("user"), QStringLiteral("demo") },
                { QStringLiteral("password"), QStringLiteral("lumex") } },
            std::make_shared<PodcastJob>());
        m_job = interface->job();
        return interface;
    }
    QVariantMap userConfig() const { return PropertyList::readFile(m_sim->userConfig()).toMap(); }
    QString spool() const { return m_sim->home() + QStringLiteral("/Library/Application Support/Lumex"); }

    std::unique_ptr<SimSandbox> m_sim;
    std::shared_ptr<PodcastJob> m_job;
};

void TestLocalJobs::initTestCase()
{
    m_sim = std::make_unique<SimSandbox>();
    QVERIFY(m_sim->installTools());
}

void TestLocalJobs::init()
{
    m_sim->clearFaults();
    m_sim->clearRecord();
    QFile::remove(m_sim->userConfig());
    QVERIFY(m_sim->installTools());
    m_sim->installStandInAgent();
}

void TestLocalJobs::cleanup()
{
    if (m_job && m_job->localAgentTask())
        m_job->localAgentTask()->terminate();
    m_job.reset();
    LXUserDefaults::standard().removeObject(LXDefaultsKeys::LocalRecordSpoolPath.key);
}

void TestLocalJobs::startConfiguresAgentAndRecords_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("storedPreset"); // null: none stored
    QTest::addColumn<QString>("audioDevice");
    QTest::addColumn<QString>("capture");
    QTest::addColumn<QString>("audioValue");
    QTest::addColumn<QString>("videoValue");
    QTest::addColumn<QString>("filePrefix");

    QTest::newRow("audio, no preset") << QStringLiteral("audio") << QString() << QStringLiteral("USB Mic 2")
                                      << QStringLiteral("Audio:Better") << QStringLiteral("USB Mic 2")
                                      << QStringLiteral("Automatic") << QStringLiteral("LocalAudio-");
    QTest::newRow("audio, audio preset") << QStringLiteral("audio") << QStringLiteral("Audio:Best")
                                         << QStringLiteral("Mic") << QStringLiteral("Audio:Best")
                                         << QStringLiteral("Mic") << QStringLiteral("Automatic")
                                         << QStringLiteral("LocalAudio-");
    QTest::newRow("video, audio preset stays Better")
        << QStringLiteral("video") << QStringLiteral("Audio:Best") << QStringLiteral("Mic")
        << QStringLiteral("Video:Better") << QStringLiteral("Mic") << QStringLiteral("Front Cam")
        << QStringLiteral("LocalVideo-");
    QTest::newRow("screen, part after the last colon")
        << QStringLiteral("screen") << QStringLiteral("Screen:Old:High") << QStringLiteral("Mic")
        << QStringLiteral("Screen:High") << QStringLiteral("Mic") << QStringLiteral("Automatic")
        << QStringLiteral("ScreenCapture-");
    QTest::newRow("no audio device reads (null)")
        << QStringLiteral("audio") << QString() << QString() << QStringLiteral("Audio:Better")
        << QStringLiteral("(null)") << QStringLiteral("Automatic") << QStringLiteral("LocalAudio-");
}

void TestLocalJobs::startConfiguresAgentAndRecords()
{
    QFETCH(QString, mode);
    QFETCH(QString, storedPreset);
    QFETCH(QString, audioDevice);
    QFETCH(QString, capture);
    QFETCH(QString, audioValue);
    QFETCH(QString, videoValue);
    QFETCH(QString, filePrefix);

    if (!storedPreset.isNull()) {
        QVERIFY(QDir().mkpath(QFileInfo(m_sim->userConfig()).absolutePath()));
        QVERIFY(PropertyList::writeFile(
            m_sim->userConfig(), QVariantMap { { QStringLiteral("RecordingCapturePreset"), storedPreset } }, true));
    }
    QDir(spool()).removeRecursively();
    auto interface = makeInterface();
    m_job->setLocalAudioDeviceName(audioDevice);
    m_job->setCamera({ { QStringLiteral("name"), QStringLiteral("Front Cam") } });

    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    Error error;
    QCOMPARE((interface.get()->*startFor(mode))(m_job.get(), &error), 0);
    const QDateTime after = QDateTime::currentDateTime().addSecs(1);
    QVERIFY2(error.domain.isEmpty(), qPrintable(error.localizedDescription));
    QVERIFY(m_job->localAgentTask());
    QVERIFY(m_job->localAgentTask()->isRunning());

    const QVariantMap config = userConfig();
    QCOMPARE(config.value(QStringLiteral("Capture")).toString(), capture);
    QCOMPARE(config.value(QStringLiteral("AudioDevice")).toString(), audioValue);
    QCOMPARE(config.value(QStringLiteral("VideoDevice")).toString(), videoValue);

    const auto paths = m_job->movieFilePaths();
    QVERIFY(paths);
    QCOMPARE(paths->size(), 1);
    const QString path = paths->first();
    QCOMPARE(QFileInfo(path).absolutePath(), spool());
    QVERIFY(QFileInfo(spool()).isDir());
    const auto match = QRegularExpression(QStringLiteral("^%1(\\d{4}-\\d{2}-\\d{2}-\\d{6})\\.mov$").arg(filePrefix))
                           .match(QFileInfo(path).fileName());
    QVERIFY2(match.hasMatch(), qPrintable(path));
    const QDateTime stamp = QDateTime::fromString(match.captured(1), QStringLiteral("yyyy-MM-dd-HHmmss"));
    QVERIFY(stamp >= before.addMSecs(-before.time().msec()) && stamp <= after);

    // The agent read the configuration the start left for it.
    QTRY_VERIFY(SimSandbox::readFile(path).contains("Capture: " + capture.toUtf8() + "\n"));
    QCOMPARE(interface->stopLocalJob(m_job.get(), &error), 0);
    QVERIFY(!m_job->localAgentTask());
    QTRY_VERIFY(SimSandbox::readFile(path).endsWith("stopped\n"));
}

void TestLocalJobs::signalsReachAgent()
{
    auto interface = makeInterface();
    Error error;
    QCOMPARE(interface->startLocalAudioJob(m_job.get(), &error), 0);
    const QString movie = m_job->movieFilePaths()->first();
    QTRY_VERIFY(SimSandbox::readFile(movie).startsWith("orvxagentd placeholder recording\n"));

    QCOMPARE(interface->pauseLocalJob(m_job.get(), &error), 0);
    QTRY_VERIFY(SimSandbox::readFile(movie).endsWith("paused\n"));
    QVERIFY(m_job->localAgentTask()); // kept
    QCOMPARE(interface->resumeLocalJob(m_job.get(), &error), 0);
    QTRY_VERIFY(SimSandbox::readFile(movie).endsWith("paused\nresumed\n"));
    QCOMPARE(interface->stopLocalJob(m_job.get(), &error), 0);
    QTRY_VERIFY(SimSandbox::readFile(movie).endsWith("paused\nresumed\nstopped\n"));
    QVERIFY(error.domain.isEmpty());

    // After the stop there is no agent to pause any more.
    QCOMPARE(interface->pauseLocalJob(m_job.get(), &error), -1);
    QCOMPARE(error.localizedDescription,
        QStringLiteral("Local capture agent failed to respond to pause signal with status: -1."));
}

void TestLocalJobs::withoutRunningAgent_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<bool>("agentDied"); // started, then killed from outside
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("text");

    const QString stop = QStringLiteral("Local capture agent failed to stop.");
    const QString pause = QStringLiteral("Local capture agent failed to respond to pause signal with status: -1.");
    const QString resume = QStringLiteral("Local capture agent failed to respond to resume signal with status: -1.");
    QTest::newRow("stop, never started") << QStringLiteral("stop") << false << 50 << stop;
    QTest::newRow("pause, never started") << QStringLiteral("pause") << false << -1 << pause;
    QTest::newRow("resume, never started") << QStringLiteral("resume") << false << -1 << resume;
    QTest::newRow("stop, agent died") << QStringLiteral("stop") << true << 50 << stop;
    QTest::newRow("pause, agent died") << QStringLiteral("pause") << true << -1 << pause;
}

void TestLocalJobs::withoutRunningAgent()
{
    QFETCH(QString, operation);
    QFETCH(bool, agentDied);
    QFETCH(int, status);
    QFETCH(QString, text);

    auto interface = makeInterface();
    Error error;
    if (agentDied) {
        QCOMPARE(interface->startLocalAudioJob(m_job.get(), &error), 0);
        QCOMPARE(::kill(m_job->localAgentTask()->processIdentifier(), SIGKILL), 0);
        QTRY_VERIFY(!m_job->localAgentTask()->isRunning());
    }
    Operation op = operation == QLatin1String("stop") ? &OrvaneServerInterface::stopLocalJob
        : operation == QLatin1String("pause")         ? &OrvaneServerInterface::pauseLocalJob
                                                      : &OrvaneServerInterface::resumeLocalJob;
    QCOMPARE((interface.get()->*op)(m_job.get(), &error), status);
    QCOMPARE(error.domain, kServerInterfaceErrorDomain);
    QCOMPARE(error.code, status);
    QCOMPARE(error.localizedDescription, text);
}

void TestLocalJobs::agentThatFailsAtOnce_data()
{
    QTest::addColumn<QVariantMap>("settings");
    QTest::addColumn<int>("status");
    QTest::newRow("default status") << QVariantMap { { QStringLiteral("stderr"), QStringLiteral("") } } << 3;
    QTest::newRow("given status") << QVariantMap { { QStringLiteral("status"), 7 } } << 7;
}

void TestLocalJobs::agentThatFailsAtOnce()
{
    QFETCH(QVariantMap, settings);
    QFETCH(int, status);

    QVERIFY(m_sim->installTools()); // the real agent, which honours the fault file
    m_sim->setFaults({ { QStringLiteral("orvxagentd"), settings } });
    auto interface = makeInterface();
    Error error;
    QCOMPARE(interface->startLocalScreenCapJob(m_job.get(), &error), status);
    QCOMPARE(error.code, status);
    QCOMPARE(error.localizedDescription,
        QStringLiteral("Could not start %1. It terminates with status: %2.")
            .arg(m_sim->tool(QStringLiteral("orvxagentd")))
            .arg(status));
    QVERIFY(!m_job->localAgentTask());
    QVERIFY(m_job->movieFilePaths() && m_job->movieFilePaths()->size() == 1); // the path stays
}

void TestLocalJobs::spoolFolderCannotBeMade()
{
    const QString blocker = m_sim->path() + QStringLiteral("/blocker");
    QVERIFY(SimSandbox::writeFile(blocker, "a file, not a folder"));
    const QString spoolPath = blocker + QStringLiteral("/spool");
    LXUserDefaults::standard().setObject(spoolPath, LXDefaultsKeys::LocalRecordSpoolPath.key);

    auto interface = makeInterface();
    Error error;
    const int32_t status = interface->startLocalAudioJob(m_job.get(), &error);
    QCOMPARE(status, 1); // mkdir's own status
    QCOMPARE(error.code, 1);
    QCOMPARE(error.localizedDescription,
        QStringLiteral("Could not make destination folder for capture movie. mkdir returned status: 1."));
    QVERIFY(!m_job->localAgentTask());
    QVERIFY(m_job->movieFilePaths());
    QVERIFY(m_job->movieFilePaths()->first().startsWith(spoolPath + QStringLiteral("/LocalAudio-")));
}

void TestLocalJobs::cancelDeletesOnlyLastPath()
{
    auto interface = makeInterface();
    const QString chosen = m_sim->path() + QStringLiteral("/chosen.mov");
    const QString other = m_sim->path() + QStringLiteral("/other.mov");
    QVERIFY(SimSandbox::writeFile(chosen, "keep"));
    QVERIFY(SimSandbox::writeFile(other, "keep too"));

    // With a running agent: stopped and its movie removed.
    Error error;
    QCOMPARE(interface->startLocalAudioJob(m_job.get(), &error), 0);
    const QString movie = m_job->movieFilePaths()->first();
    QTRY_VERIFY(QFileInfo::exists(movie));
    m_job->setMovieFilePaths(QStringList { chosen, movie });
    QCOMPARE(interface->cancelLocalJob(m_job.get(), &error), 0);
    QVERIFY(!m_job->localAgentTask());
    QVERIFY(QFileInfo::exists(chosen));
    QCOMPARE(*m_job->movieFilePaths(), (QStringList { chosen, movie }));
    QTest::qWait(200); // the agent may still be finishing its file
    QFile::remove(movie);

    // Without an agent: the stop fails, the last file still goes.
    m_job->setMovieFilePaths(QStringList { chosen, other });
    QCOMPARE(interface->cancelLocalJob(m_job.get(), &error), 50);
    QCOMPARE(error.code, 50);
    QVERIFY(QFileInfo::exists(chosen));
    QVERIFY(!QFileInfo::exists(other));
}

void TestLocalJobs::localConfigFailureIsLoggedWithQuotedValue()
{
    m_sim->setFaults({ { QStringLiteral("--setconfig"), QVariantMap { { QStringLiteral("status"), 6 } } } });
    auto interface = makeInterface();
    Log::Capture log;
    interface->setLocalAgentConfigValue(QStringLiteral("Built-in Mic"), QStringLiteral("AudioDevice"));
    QCOMPARE(log.lines(),
        QStringList { QStringLiteral("Error 6 when attempting to set local config value AudioDevice to "
                                     "Built-in Mic with command: orvx --setconfig "
                                     "AudioDevice=\"Built-in Mic\"") });

    // A failing configuration only logs; the recording still starts.
    log.clear();
    m_sim->setFaults({ { QStringLiteral("--setconfig"), QVariantMap { { QStringLiteral("status"), 6 } } } });
    Error error;
    QCOMPARE(interface->startLocalAudioJob(m_job.get(), &error), 0);
    QCOMPARE(log.lines().size(), 3);

    // The argument itself carries no quotes.
    m_sim->installRecordingTool();
    interface->setLocalAgentConfigValue(QStringLiteral("Built-in Mic"), QStringLiteral("AudioDevice"));
    QCOMPARE(m_sim->recordedArguments(),
        (QStringList { QStringLiteral("--setconfig"), QStringLiteral("AudioDevice=Built-in Mic") }));
    QCOMPARE(m_sim->recordedStdinKind(), QStringLiteral("/dev/null"));
}

void TestLocalJobs::submissionCommandLine_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<bool>("deleteFiles");

    QTest::newRow("two files") << QStringList { QStringLiteral("/tmp/a b.mov"), QStringLiteral("/tmp/c.mov") } << false;
    QTest::newRow("two files, delete last")
        << QStringList { QStringLiteral("/tmp/a b.mov"), QStringLiteral("/tmp/c.mov") } << true;
    QTest::newRow("empty list runs without --file") << QStringList {} << false;
}

void TestLocalJobs::submissionCommandLine()
{
    QFETCH(QStringList, files);
    QFETCH(bool, deleteFiles);

    m_sim->installRecordingTool();
    auto interface = makeInterface();
    m_job->setMovieFilePaths(files);
    m_job->setWorkflow({ { QStringLiteral("name"), QStringLiteral("archive-only") } });
    Error error;
    const int32_t status = deleteFiles ? interface->submitAndDeleteJobFiles(m_job.get(), &error)
                                       : interface->submitJobFiles(m_job.get(), &error);
    QCOMPARE(status, 0);
    const QStringList args = m_sim->recordedArguments();
    QCOMPARE(args.mid(0, 5),
        (QStringList { QStringLiteral("--server"), SimSandbox::kServerURL, QStringLiteral("--user"),
            QStringLiteral("demo"), QStringLiteral("--submit") }));
    QStringList expected;
    for (const QString &f : files)
        expected << QStringLiteral("--file") << f;
    const int metadataAt = 5 + expected.size();
    QVERIFY(args.size() > metadataAt + 1);
    const QString dataFile = args.at(metadataAt + 1);
    expected << QStringLiteral("--metadata") << dataFile << QStringLiteral("--workflow")
             << QStringLiteral("archive-only");
    if (deleteFiles)
        expected << QStringLiteral("--delete");
    QCOMPARE(args.mid(5), expected);
    QCOMPARE(QFileInfo(dataFile).absolutePath(), m_sim->jobDataFolder());
    QCOMPARE(PropertyList::readFile(dataFile).toMap(), m_job->submissionDictionary());
}

void TestLocalJobs::submissionChecks_data()
{
    QTest::addColumn<bool>("hasPaths");
    QTest::addColumn<bool>("hasWorkflow");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("text");

    QTest::newRow("no movie paths") << false << true << -2
                                    << QStringLiteral("Unexpected internal error. Unable to obtain local submission "
                                                      "filename path(s) from job data.");
    QTest::newRow("no paths, no workflow: paths first")
        << false << false << -2
        << QStringLiteral("Unexpected internal error. Unable to obtain "
                          "local submission filename path(s) from job data.");
    QTest::newRow("no workflow") << true << false << -3
                                 << QStringLiteral(
                                        "Unexpected internal error. Unable to obtain workflow name from job data.");
}

void TestLocalJobs::submissionChecks()
{
    QFETCH(bool, hasPaths);
    QFETCH(bool, hasWorkflow);
    QFETCH(int, status);
    QFETCH(QString, text);

    m_sim->installRecordingTool();
    auto interface = makeInterface();
    if (hasPaths)
        m_job->setMovieFilePaths(QStringList { QStringLiteral("/tmp/x.mov") });
    if (hasWorkflow)
        m_job->setWorkflow({ { QStringLiteral("name"), QStringLiteral("archive-only") } });
    const int before = QDir(m_sim->jobDataFolder()).entryList(QDir::Files).size();
    Error error;
    QCOMPARE(interface->submitAndDeleteJobFiles(m_job.get(), &error), status);
    QCOMPARE(error.code, status);
    QCOMPARE(error.localizedDescription, text);
    QVERIFY(!QFileInfo::exists(m_sim->recordDir() + QStringLiteral("/args")));
    // The job data file is written first all the same.
    QCOMPARE(QDir(m_sim->jobDataFolder()).entryList(QDir::Files).size(), before + 1);
}

void TestLocalJobs::uploadIdentifierOnlyFromFirstLine_data()
{
    QTest::addColumn<QByteArray>("out");
    QTest::addColumn<QByteArray>("err");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("uuid"); // null: nothing stored

    QTest::newRow("first line") << QByteArray("Upload UUID: 0A1B-22\nQueued 1 file(s).\n") << QByteArray() << 0
                                << QStringLiteral("0A1B-22");
    QTest::newRow("last word of the first line")
        << QByteArray("Note: Upload UUID: one two XYZ") << QByteArray() << 0 << QStringLiteral("XYZ");
    QTest::newRow("second line only") << QByteArray("Connecting ...\nUpload UUID: 0A1B-22\n") << QByteArray() << 0
                                      << QString();
    QTest::newRow("failure still takes it")
        << QByteArray("Upload UUID: F00D\n") << QByteArray("disk full\n") << 2 << QStringLiteral("F00D");
}

void TestLocalJobs::uploadIdentifierOnlyFromFirstLine()
{
    QFETCH(QByteArray, out);
    QFETCH(QByteArray, err);
    QFETCH(int, status);
    QFETCH(QString, uuid);

    m_sim->installRecordingTool();
    m_sim->setReply(out, err, status);
    auto interface = makeInterface();
    m_job->setMovieFilePaths(QStringList { QStringLiteral("/tmp/x.mov") });
    m_job->setWorkflow({ { QStringLiteral("name"), QStringLiteral("archive-only") } });
    Error error;
    QCOMPARE(interface->submitJobFiles(m_job.get(), &error), status);
    QCOMPARE(m_job->uploadUUID(), uuid);
    QCOMPARE(m_job->uploadUUID().isNull(), uuid.isNull());
    if (status != 0) {
        QCOMPARE(error.code, status);
        QCOMPARE(error.localizedDescription, QString::fromUtf8(out + "\n" + err));
    }
}

void TestLocalJobs::submitAndDeleteAgainstSimulator()
{
    auto interface = makeInterface();
    const QString a = m_sim->path() + QStringLiteral("/take 1.mov");
    const QString b = m_sim->path() + QStringLiteral("/take 2.mov");
    QVERIFY(SimSandbox::writeFile(a, "first take"));
    QVERIFY(SimSandbox::writeFile(b, "second take"));
    m_job->setMovieFilePaths(QStringList { a, b });
    m_job->setWorkflow({ { QStringLiteral("name"), QStringLiteral("lecture-capture") } });
    m_job->setTitle(QStringLiteral("Two takes"));
    Error error;
    QCOMPARE(interface->submitAndDeleteJobFiles(m_job.get(), &error), 0);
    QVERIFY2(error.domain.isEmpty(), qPrintable(error.localizedDescription));
    QVERIFY(!QFileInfo::exists(a));
    QVERIFY(!QFileInfo::exists(b));
    const QString uuid = m_job->uploadUUID();
    QCOMPARE(uuid.size(), 36);
    const auto uploads = OrvaneServerInterface::transferStatuses();
    QVERIFY(uploads);
    bool found = false;
    for (const QVariant &u : *uploads) {
        const QVariantMap record = u.toMap();
        if (record.value(QStringLiteral("upload_uuid")).toString() == uuid) {
            found = true;
            QCOMPARE(record.value(QStringLiteral("content_paths")).toList().size(), 2);
            QCOMPARE(PropertyList::readFile(record.value(QStringLiteral("cached_metadata_file")).toString())
                         .toMap()
                         .value(QStringLiteral("Title"))
                         .toString(),
                QStringLiteral("Two takes"));
        }
    }
    QVERIFY(found);
}

void TestLocalJobs::asyncLocalRecording()
{
    auto interface = makeInterface();
    QObject delegate;
    int calls = 0;
    bool mainThread = true;
    std::optional<Error> last;
    auto callback = [&](const std::optional<Error> &e) {
        ++calls;
        mainThread = mainThread && QThread::currentThread() == qApp->thread();
        last = e;
    };
    interface->startLocalVideoJobWithDelegate(&delegate, callback);
    QTRY_COMPARE(calls, 1);
    QVERIFY(!last);
    QVERIFY(m_job->localAgentTask());
    interface->pauseLocalJobWithDelegate(&delegate, callback);
    QTRY_COMPARE(calls, 2);
    QVERIFY(!last);
    interface->stopLocalJobWithDelegate(&delegate, callback);
    QTRY_COMPARE(calls, 3);
    QVERIFY(!last);
    QVERIFY(!m_job->localAgentTask());
    interface->resumeLocalJobWithDelegate(&delegate, callback);
    QTRY_COMPARE(calls, 4);
    QVERIFY(last);
    QCOMPARE(last->code, -1);
    QVERIFY(mainThread);
}

QTEST_GUILESS_MAIN(TestLocalJobs)
#include "tst_localjobs.moc"
