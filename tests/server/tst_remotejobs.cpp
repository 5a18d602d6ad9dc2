// Remote job control: the command line of each operation (recorded by a
// shell script standing in for the tool), the checks made before any tool
// runs, the job data file written at stop, error texts, the asynchronous
// forms, and one whole recording against the simulator.

#include "SimSandbox.h"

#include "Log.h"
#include "OrvaneServerInterface.h"

#include <QJsonDocument>
#include <QRegularExpression>
#include <QThread>

namespace {

using Operation = int32_t (OrvaneServerInterface::*)(PodcastJob *, Error *);

Operation operationNamed(const QString &name)
{
    if (name == QLatin1String("startVideo"))
        return &OrvaneServerInterface::startRemoteVideoJob;
    if (name == QLatin1String("startAudio"))
        return &OrvaneServerInterface::startRemoteAudioJob;
    if (name == QLatin1String("pause"))
        return &OrvaneServerInterface::pauseRemoteJob;
    if (name == QLatin1String("resume"))
        return &OrvaneServerInterface::resumeRemoteJob;
    if (name == QLatin1String("cancel"))
        return &OrvaneServerInterface::cancelRemoteJob;
    return &OrvaneServerInterface::stopRemoteJob;
}

const QString kMissingCamera = QStringLiteral("Unexpected internal error. Unable to obtain camera name from job data.");
const QString kMissingWorkflow
    = QStringLiteral("Unexpected internal error. Unable to obtain workflow name from job data.");

} // namespace

class TestRemoteJobs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void commandLines_data();
    void commandLines();
    void stopWritesJobDataAndSendsIt();
    void missingNamesStopBeforeAnyTool_data();
    void missingNamesStopBeforeAnyTool();
    void jobDataFolderBlockedStopsBeforeTool();
    void toolFailureText_data();
    void toolFailureText();
    void missingToolText();
    void asyncFormsUseOwnJobAndReportOnMainThread();
    void wholeRecordingAgainstSimulator();

private:
    std::shared_ptr<OrvaneServerInterface> makeInterface()
    {
        return OrvaneServerInterface::create(
            { { QStringLiteral("server"), SimSandbox::kServerHost }, { QStringLiteral("user"), QStringLiteral("demo") },
                { QStringLiteral("password"), QStringLiteral("lumex") } },
            std::make_shared<PodcastJob>());
    }
    QStringList jobDataFiles() const
    {
        return QDir(m_sim->jobDataFolder()).entryList({ QStringLiteral("submission-*.plist") }, QDir::Files);
    }

    std::unique_ptr<SimSandbox> m_sim;
};

void TestRemoteJobs::initTestCase()
{
    m_sim = std::make_unique<SimSandbox>();
    QVERIFY(m_sim->installTools());
}

void TestRemoteJobs::init()
{
    m_sim->clearFaults();
    m_sim->clearRecord();
    QVERIFY(m_sim->installTools());
}

void TestRemoteJobs::commandLines_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QStringList>("expected");

    const QString cam = QStringLiteral("Lecture Hall A");
    QTest::newRow("start video") << QStringLiteral(
        "startVideo") << QStringList { QStringLiteral("--start"), cam, QStringLiteral("--delay"), QStringLiteral("3") };
    QTest::newRow("start audio") << QStringLiteral("startAudio")
                                 << QStringList { QStringLiteral("--start"), cam, QStringLiteral("--audio_only"),
                                        QStringLiteral("--delay"), QStringLiteral("3") };
    QTest::newRow("pause") << QStringLiteral("pause") << QStringList { QStringLiteral("--pause"), cam };
    QTest::newRow("resume") << QStringLiteral("resume") << QStringList { QStringLiteral("--resume"), cam };
    QTest::newRow("cancel") << QStringLiteral("cancel") << QStringList { QStringLiteral("--cancel"), cam };
}

void TestRemoteJobs::commandLines()
{
    QFETCH(QString, operation);
    QFETCH(QStringList, expected);

    m_sim->installRecordingTool();
    auto interface = makeInterface();
    auto job = interface->job();
    job->setCamera({ { QStringLiteral("name"), QStringLiteral("Lecture Hall A") } });
    job->setWorkflow({ { QStringLiteral("name"), QStringLiteral("archive-only") } });
    Error error;
    QCOMPARE((interface.get()->*operationNamed(operation))(job.get(), &error), 0);
    QVERIFY(error.domain.isEmpty());
    QCOMPARE(m_sim->recordedArguments(),
        QStringList(
            { QStringLiteral("--server"), SimSandbox::kServerURL, QStringLiteral("--user"), QStringLiteral("demo") })
            + expected);
    QCOMPARE(m_sim->recordedStdin(), QByteArray("lumex"));
}

void TestRemoteJobs::stopWritesJobDataAndSendsIt()
{
    m_sim->installRecordingTool();
    auto interface = makeInterface();
    auto job = interface->job();
    job->setCamera({ { QStringLiteral("name"), QStringLiteral("Studio 2") } });
    job->setWorkflow({ { QStringLiteral("name"), QStringLiteral("podcast-publishing") } });
    job->setUser(QStringLiteral("demo"));
    job->setTitle(QStringLiteral("Week 3: \u00dcbung & <tags>"));
    job->setJobDescription(QStringLiteral("two\nlines"));
    job->setStartedAt(QDateTime::fromSecsSinceEpoch(1700000000, Qt::UTC));
    job->setStoppedAt(QDateTime::fromSecsSinceEpoch(1700003600, Qt::UTC));

    Error error;
    QCOMPARE(interface->stopRemoteJob(job.get(), &error), 0);
    const QStringList args = m_sim->recordedArguments().mid(4);
    QCOMPARE(args.size(), 6);
    QCOMPARE(args.at(0), QStringLiteral("--stop"));
    QCOMPARE(args.at(1), QStringLiteral("Studio 2"));
    QCOMPARE(args.at(2), QStringLiteral("--metadata"));
    QCOMPARE(args.at(4), QStringLiteral("--workflow"));
    QCOMPARE(args.at(5), QStringLiteral("podcast-publishing"));

    const QString dataFile = args.at(3);
    QCOMPARE(QFileInfo(dataFile).absolutePath(), m_sim->jobDataFolder());
    QVERIFY2(QRegularExpression(
                 QStringLiteral("^submission-[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\\.plist$"))
                 .match(QFileInfo(dataFile).fileName())
                 .hasMatch(),
        qPrintable(dataFile));
    QVERIFY(QFileInfo::exists(dataFile)); // not deleted afterwards

    // A reader other than ours sees the submission dictionary.
    int exitCode = -1;
    const QByteArray json = runPython(
        QStringLiteral("import plistlib,json,sys; print(json.dumps(plistlib.load(open(sys.stdin.read(),'rb'))))"),
        dataFile.toUtf8(), &exitCode);
    QCOMPARE(exitCode, 0);
    QCOMPARE(QJsonDocument::fromJson(json).toVariant().toMap(), job->submissionDictionary());
}

void TestRemoteJobs::missingNamesStopBeforeAnyTool_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<bool>("hasCamera");
    QTest::addColumn<bool>("hasWorkflow");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("text"); // null: no error at all
    QTest::addColumn<bool>("writesJobData");

    QTest::newRow("start video without camera: no error")
        << QStringLiteral("startVideo") << false << true << -2 << QString() << false;
    QTest::newRow("start audio without camera: no error")
        << QStringLiteral("startAudio") << false << true << -2 << QString() << false;
    QTest::newRow("pause without camera") << QStringLiteral("pause") << false << true << -2 << kMissingCamera << false;
    QTest::newRow("resume without camera")
        << QStringLiteral("resume") << false << true << -2 << kMissingCamera << false;
    QTest::newRow("cancel without camera")
        << QStringLiteral("cancel") << false << true << -2 << kMissingCamera << false;
    QTest::newRow("stop without either: camera reported")
        << QStringLiteral("stop") << false << false << -2 << kMissingCamera << true;
    QTest::newRow("stop without camera") << QStringLiteral("stop") << false << true << -2 << kMissingCamera << true;
    QTest::newRow("stop without workflow") << QStringLiteral("stop") << true << false << -3 << kMissingWorkflow << true;
}

void TestRemoteJobs::missingNamesStopBeforeAnyTool()
{
    QFETCH(QString, operation);
    QFETCH(bool, hasCamera);
    QFETCH(bool, hasWorkflow);
    QFETCH(int, status);
    QFETCH(QString, text);
    QFETCH(bool, writesJobData);

    m_sim->installRecordingTool();
    auto interface = makeInterface();
    auto job = interface->job();
    if (hasCamera)
        job->setCamera({ { QStringLiteral("name"), QStringLiteral("Studio 2") } });
    else
        job->setCamera({ { QStringLiteral("location"), QStringLiteral("somewhere") } });
    if (hasWorkflow)
        job->setWorkflow({ { QStringLiteral("name"), QStringLiteral("archive-only") } });
    job->setTitle(QStringLiteral("t"));

    const QStringList before = jobDataFiles();
    Error error;
    QCOMPARE((interface.get()->*operationNamed(operation))(job.get(), &error), status);
    if (text.isNull()) {
        QVERIFY(error.domain.isEmpty());
    } else {
        QCOMPARE(error.domain, kServerInterfaceErrorDomain);
        QCOMPARE(error.code, status);
        QCOMPARE(error.localizedDescription, text);
    }
    QVERIFY(!QFileInfo::exists(m_sim->recordDir() + QStringLiteral("/args"))); // no tool ran
    QCOMPARE(jobDataFiles().size(), before.size() + (writesJobData ? 1 : 0));
}

void TestRemoteJobs::jobDataFolderBlockedStopsBeforeTool()
{
    // A file where the job data folder belongs: nothing can be written, the
    // stop and the submission give up with -1 before any tool runs.
    const QString folder = m_sim->jobDataFolder();
    const QString aside = folder + QStringLiteral(".aside");
    if (QFileInfo::exists(folder))
        QVERIFY(QDir().rename(folder, aside));
    QVERIFY(SimSandbox::writeFile(folder, "in the way"));

    m_sim->installRecordingTool();
    auto interface = makeInterface();
    auto job = interface->job();
    job->setCamera({ { QStringLiteral("name"), QStringLiteral("Studio 2") } });
    job->setWorkflow({ { QStringLiteral("name"), QStringLiteral("archive-only") } });
    job->setMovieFilePaths(QStringList { QStringLiteral("/tmp/x.mov") });
    Log::Capture log;
    Error stopError, submitError;
    const int32_t stopStatus = interface->stopRemoteJob(job.get(), &stopError);
    const int32_t submitStatus = interface->submitJobFiles(job.get(), &submitError);

    QFile::remove(folder);
    if (QFileInfo::exists(aside))
        QDir().rename(aside, folder);

    QCOMPARE(stopStatus, -1);
    QCOMPARE(submitStatus, -1);
    QVERIFY(!stopError.domain.isEmpty());
    QVERIFY(!submitError.domain.isEmpty());
    QVERIFY(!QFileInfo::exists(m_sim->recordDir() + QStringLiteral("/args")));
    int logged = 0;
    for (const QString &line : log.lines())
        logged += line.startsWith(QStringLiteral("createDirectoryAtPath:%1 failed ").arg(folder)) ? 1 : 0;
    QCOMPARE(logged, 2);
}

void TestRemoteJobs::toolFailureText_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QByteArray>("out");
    QTest::addColumn<QByteArray>("err");
    QTest::addColumn<QString>("text");

    QTest::newRow("pause: output and error")
        << QStringLiteral("pause") << QByteArray("out") << QByteArray("err") << QStringLiteral("out\nerr");
    QTest::newRow("pause: empty output") << QStringLiteral("pause") << QByteArray() << QByteArray("bad\n")
                                         << QStringLiteral("\nbad\n");
    QTest::newRow("start: empty error") << QStringLiteral("startVideo") << QByteArray("said no\n") << QByteArray()
                                        << QStringLiteral("said no\n\n");
    QTest::newRow("stop") << QStringLiteral("stop") << QByteArray("o") << QByteArray("e") << QStringLiteral("o\ne");
    QTest::newRow("cancel") << QStringLiteral("cancel") << QByteArray("o") << QByteArray("e") << QStringLiteral("o\ne");
}

void TestRemoteJobs::toolFailureText()
{
    QFETCH(QString, operation);
    QFETCH(QByteArray, out);
    QFETCH(QByteArray, err);
    QFETCH(QString, text);

    m_sim->installRecordingTool();
    m_sim->setReply(out, err, 9);
    auto interface = makeInterface();
    auto job = interface->job();
    job->setCamera({ { QStringLiteral("name"), QStringLiteral("Studio 2") } });
    job->setWorkflow({ { QStringLiteral("name"), QStringLiteral("archive-only") } });
    Error error;
    QCOMPARE((interface.get()->*operationNamed(operation))(job.get(), &error), 9);
    QCOMPARE(error.domain, kServerInterfaceErrorDomain);
    QCOMPARE(error.code, 9);
    QCOMPARE(error.localizedDescription, text);
}

void TestRemoteJobs::missingToolText()
{
    m_sim->removeTool(QStringLiteral("orvxexec"));
    auto interface = makeInterface();
    auto job = interface->job();
    job->setCamera({ { QStringLiteral("name"), QStringLiteral("Studio 2") } });
    Error error;
    QCOMPARE(interface->resumeRemoteJob(job.get(), &error), 10);
    QCOMPARE(error.code, 10);
    QCOMPARE(error.localizedDescription,
        m_sim->tool(QStringLiteral("orvxexec")) + QStringLiteral(" tool cannot be found.\n(null)"));
}

void TestRemoteJobs::asyncFormsUseOwnJobAndReportOnMainThread()
{
    m_sim->installRecordingTool();
    auto interface = makeInterface();
    QObject delegate;

    struct Outcome
    {
        bool called = false;
        bool mainThread = false;
        std::optional<Error> error;
    };
    auto recorder = [](Outcome &o) {
        return [&o](const std::optional<Error> &e) {
            o.called = true;
            o.mainThread = QThread::currentThread() == qApp->thread();
            o.error = e;
        };
    };

    // No camera: start reports success, pause reports the missing camera.
    Outcome start, pause;
    interface->startRemoteVideoJobWithDelegate(&delegate, recorder(start));
    interface->pauseRemoteJobWithDelegate(&delegate, recorder(pause));
    QTRY_VERIFY(start.called && pause.called);
    QVERIFY(start.mainThread && pause.mainThread);
    QVERIFY(!start.error);
    QVERIFY(pause.error);
    QCOMPARE(pause.error->code, -2);
    QCOMPARE(pause.error->localizedDescription, kMissingCamera);

    // The interface's own job is used: a job set later is the one sent.
    auto job = std::make_shared<PodcastJob>();
    job->setCamera({ { QStringLiteral("name"), QStringLiteral("Seminar Room") } });
    interface->setJob(job);
    m_sim->setReply("busy\n", "no way\n", 3);
    Outcome failed;
    interface->startRemoteAudioJobWithDelegate(&delegate, recorder(failed));
    QTRY_VERIFY(failed.called);
    QVERIFY(failed.mainThread);
    QVERIFY(failed.error);
    QCOMPARE(failed.error->code, 3);
    QCOMPARE(failed.error->localizedDescription, QStringLiteral("busy\n\nno way\n"));
    QCOMPARE(m_sim->recordedArguments().mid(4, 2),
        (QStringList { QStringLiteral("--start"), QStringLiteral("Seminar Room") }));
}

void TestRemoteJobs::wholeRecordingAgainstSimulator()
{
    auto interface = makeInterface();
    auto job = interface->job();
    job->setCamera({ { QStringLiteral("name"), QStringLiteral("Studio 2") } });
    job->setWorkflow({ { QStringLiteral("name"), QStringLiteral("lecture-capture") } });
    job->setTitle(QStringLiteral("Whole flow"));
    job->setStartedAt(QDateTime::currentDateTimeUtc());

    Error error;
    // Pausing an idle camera is refused by the tool with status 1.
    QCOMPARE(interface->pauseRemoteJob(job.get(), &error), 1);
    QCOMPARE(error.code, 1);
    QCOMPARE(error.localizedDescription,
        QStringLiteral("Connecting to %1 ...\n\nCamera Studio 2 is not recording.\n").arg(SimSandbox::kServerURL));

    error = {};
    QCOMPARE(interface->startRemoteAudioJob(job.get(), &error), 0);
    QCOMPARE(interface->pauseRemoteJob(job.get(), &error), 0);
    QCOMPARE(interface->resumeRemoteJob(job.get(), &error), 0);
    job->setStoppedAt(QDateTime::currentDateTimeUtc());
    QCOMPARE(interface->stopRemoteJob(job.get(), &error), 0);
    QVERIFY2(error.domain.isEmpty(), qPrintable(error.localizedDescription));

    // The server received the job data as its metadata.
    const QStringList entries
        = QDir(m_sim->state(QStringLiteral("library"))).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QCOMPARE(entries.size(), 1);
    const QString entry = m_sim->state(QStringLiteral("library/")) + entries.first();
    QCOMPARE(PropertyList::readFile(entry + QStringLiteral("/metadata.plist")).toMap(), job->submissionDictionary());
    QVERIFY(SimSandbox::readFile(entry + QStringLiteral("/recording.txt")).contains("audio_only: true"));

    // Nothing is left to cancel.
    QCOMPARE(interface->cancelRemoteJob(job.get(), &error), 1);
}

QTEST_GUILESS_MAIN(TestRemoteJobs)
#include "tst_remotejobs.moc"
