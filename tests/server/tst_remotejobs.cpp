// Remote job control: the command line and error text of each operation
// (recorded by a shell script standing in for the tool), the checks made
// before any tool runs, the job data file written at stop, the asynchronous
// forms, and one whole recording against the simulator.

#include "SimSandbox.h"

#include <QJsonDocument>
#include <QRegularExpression>
#include <QThread>

namespace {

using Operation = int32_t (OrvaneServerInterface::*)(PodcastJob *, Error *);

Operation operationNamed(const QString &name)
{
    static const QHash<QString, Operation> operations { { "startVideo", &OrvaneServerInterface::startRemoteVideoJob },
        { "startAudio", &OrvaneServerInterface::startRemoteAudioJob },
        { "pause", &OrvaneServerInterface::pauseRemoteJob }, { "resume", &OrvaneServerInterface::resumeRemoteJob },
        { "cancel", &OrvaneServerInterface::cancelRemoteJob }, { "stop", &OrvaneServerInterface::stopRemoteJob } };
    return operations.value(name);
}

const QString kMissingCamera = QStringLiteral("Unexpected internal error. Unable to obtain camera name from job data.");
const QString kMissingWorkflow
    = QStringLiteral("Unexpected internal error. Unable to obtain workflow name from job data.");

} // namespace

class TestRemoteJobs : public QObject
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

private slots:
    void init()
    {
        QVERIFY(m_sim.reset());
        m_sim.installRecordingTool();
        m_interface = SimSandbox::makeInterface();
        m_job = m_interface->job();
    }

    void commandLinesAndFailureTexts_data()
    {
        QTest::addColumn<QString>("operation");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("out");
        QTest::addColumn<QByteArray>("err");
        QTest::addColumn<QString>("text");

        const QString cam = QStringLiteral("Lecture Hall A");
        QTest::newRow("start video") << "startVideo" << QStringList { "--start", cam, "--delay", "3" } << 0
                                     << QByteArray("ok\n") << QByteArray() << QString();
        QTest::newRow("start audio, empty error")
            << "startAudio" << QStringList { "--start", cam, "--audio_only", "--delay", "3" } << 9
            << QByteArray("said no\n") << QByteArray() << "said no\n\n";
        QTest::newRow("pause") << "pause" << QStringList { "--pause", cam } << 9 << QByteArray("out")
                               << QByteArray("err") << "out\nerr";
        QTest::newRow("pause, empty output")
            << "pause" << QStringList { "--pause", cam } << 9 << QByteArray() << QByteArray("bad\n") << "\nbad\n";
        QTest::newRow("resume") << "resume" << QStringList { "--resume", cam } << 0 << QByteArray() << QByteArray()
                                << QString();
        QTest::newRow("cancel") << "cancel" << QStringList { "--cancel", cam } << 9 << QByteArray("o")
                                << QByteArray("e") << "o\ne";
    }
    void commandLinesAndFailureTexts()
    {
        QFETCH(QString, operation);
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        QFETCH(QByteArray, out);
        QFETCH(QByteArray, err);
        QFETCH(QString, text);
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
        setNames(QStringLiteral("Studio 2"), QStringLiteral("podcast-publishing"));
        m_job->setUser(QStringLiteral("demo"));
        m_job->setTitle(QStringLiteral("Week 3: \u00dcbung & <tags>"));
        m_job->setJobDescription(QStringLiteral("two\nlines"));
        m_job->setStartedAt(QDateTime::fromSecsSinceEpoch(1700000000, Qt::UTC));
        m_job->setStoppedAt(QDateTime::fromSecsSinceEpoch(1700003600, Qt::UTC));
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

    void missingNamesStopBeforeAnyTool_data()
    {
        QTest::addColumn<QString>("operation");
        QTest::addColumn<bool>("hasCamera");
        QTest::addColumn<bool>("hasWorkflow");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("text"); // null: no error at all
        QTest::addColumn<bool>("writesJobData");

        QTest::newRow("start video without camera: no error")
            << "startVideo" << false << true << -2 << QString() << false;
        QTest::newRow("start audio without camera: no error")
            << "startAudio" << false << true << -2 << QString() << false;
        QTest::newRow("pause without camera") << "pause" << false << true << -2 << kMissingCamera << false;
        QTest::newRow("resume without camera") << "resume" << false << true << -2 << kMissingCamera << false;
        QTest::newRow("cancel without camera") << "cancel" << false << true << -2 << kMissingCamera << false;
        QTest::newRow("stop without either: camera reported")
            << "stop" << false << false << -2 << kMissingCamera << true;
        QTest::newRow("stop without camera") << "stop" << false << true << -2 << kMissingCamera << true;
        QTest::newRow("stop without workflow") << "stop" << true << false << -3 << kMissingWorkflow << true;
    }
    void missingNamesStopBeforeAnyTool()
    {
        QFETCH(QString, operation);
        QFETCH(bool, hasCamera);
        QFETCH(bool, hasWorkflow);
        QFETCH(int, status);
        QFETCH(QString, text);
        QFETCH(bool, writesJobData);
        setNames(hasCamera ? QStringLiteral("Studio 2") : QString(), hasWorkflow ? "archive-only" : QString());
        m_job->setTitle(QStringLiteral("t"));
        const qsizetype before = m_sim.jobDataFiles().size();
        Error error;
        QCOMPARE(perform(operation, &error), status);
        if (text.isNull())
            QVERIFY(error.domain.isEmpty());
        else
            QCOMPARE(error, (Error { kServerInterfaceErrorDomain, status, text }));
        QVERIFY(m_sim.recordedNothing());
        QCOMPARE(m_sim.jobDataFiles().size(), before + (writesJobData ? 1 : 0));
    }

    void jobDataFolderBlockedStopsBeforeTool()
    {
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
        Outcome start, pause, failed;
        m_interface->startRemoteVideoJobWithDelegate(&delegate, recorder(start));
        m_interface->pauseRemoteJobWithDelegate(&delegate, recorder(pause));
        QTRY_VERIFY(start.called && pause.called);
        QVERIFY(start.mainThread && pause.mainThread);
        QVERIFY(!start.error);
        QCOMPARE(pause.error, (Error { kServerInterfaceErrorDomain, -2, kMissingCamera }));

        // The interface's own job is used: a job set later is the one sent.
        auto job = std::make_shared<PodcastJob>();
        job->setCamera({ { QStringLiteral("name"), QStringLiteral("Seminar Room") } });
        m_interface->setJob(job);
        m_sim.setReply("busy\n", "no way\n", 3);
        m_interface->startRemoteAudioJobWithDelegate(&delegate, recorder(failed));
        QTRY_VERIFY(failed.called);
        QVERIFY(failed.mainThread);
        QCOMPARE(failed.error, (Error { kServerInterfaceErrorDomain, 3, "busy\n\nno way\n" }));
        QCOMPARE(m_sim.recordedArguments().mid(4, 2), (QStringList { "--start", "Seminar Room" }));
    }

    void wholeRecordingAgainstSimulator()
    {
        QVERIFY(m_sim.installTools());
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
};

QTEST_GUILESS_MAIN(TestRemoteJobs)
#include "tst_remotejobs.moc"
