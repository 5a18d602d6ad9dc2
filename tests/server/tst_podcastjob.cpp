// The job's submission dictionary and the life of its capture agent task.
// (How another reader sees the dictionary is checked in tst_jobs.)

#include "Log.h"
#include "PodcastJob.h"

#include <QTimeZone>
#include <QtTest>

#include <csignal>

static QDateTime fromSeconds(double seconds)
{
    return QDateTime::fromMSecsSinceEpoch(qint64(seconds * 1000.0), QTimeZone::utc());
}

class TestPodcastJob : public QObject
{
    Q_OBJECT

private slots:
    void dictionaryHoldsOnlyPresentValues()
    {
        PodcastJob job;
        QVERIFY(job.submissionDictionary().isEmpty());
        QVERIFY(!job.movieFilePaths() && !job.localAgentTask());
        job.setUser(QStringLiteral("ann"));
        job.setTitle(QStringLiteral("")); // empty is present, only nil is left out
        job.setStartedAt(fromSeconds(1199145600.9));
        QCOMPARE(job.submissionDictionary(),
            (QVariantMap { { "Author", "ann" }, { "Title", "" }, { "Recording Started At", "1199145600" } }));
        job.setTitle(QString());
        QVERIFY(!job.submissionDictionary().contains("Title"));
    }

    void timesAreWholeSecondsRoundedDown_data()
    {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("fraction") << 1199145600.9 << "1199145600";
        QTest::newRow("far future, no exponent") << 32503680000.5 << "32503680000";
        QTest::newRow("before 1970 rounds down") << -1.5 << "-2";
        QTest::newRow("epoch") << 0.0 << "0";
    }
    void timesAreWholeSecondsRoundedDown()
    {
        QFETCH(double, seconds);
        QFETCH(QString, text);
        PodcastJob job;
        job.setStoppedAt(fromSeconds(seconds));
        QCOMPARE(job.submissionDictionary().value("Recording Stopped At"), QVariant(text));
    }

    void destroyingJobTerminatesRunningAgent()
    {
        Log::Capture log;
        auto task = LocalAgentTask::launch(QStringLiteral("/bin/sleep"), { QStringLiteral("30") });
        QVERIFY(task && task->isRunning());
        PodcastJob().setLocalAgentTask(task); // a job that ends at once
        QCOMPARE(log.lines(),
            QStringList { lxFormat("PodcastJob is being dealloc'd but there was still a running orvxagentd job "
                                   "(pid: %d). Sending SIGTERM.",
                { task->processIdentifier() }) });
        QTRY_VERIFY(!task->isRunning());
        QCOMPARE(task->terminationStatus(), SIGTERM);
    }

    void destroyingJobWithExitedAgentDoesNothing()
    {
        Log::Capture log;
        auto task
            = LocalAgentTask::launch(QStringLiteral("/bin/sh"), { QStringLiteral("-c"), QStringLiteral("exit 4") });
        QVERIFY(task);
        // An exited child that nobody has waited for is a zombie: not running.
        QTRY_VERIFY(!task->isRunning());
        QCOMPARE(task->terminationStatus(), 4);
        QCOMPARE(task->sendSignal(SIGTERM), -1);
        PodcastJob().setLocalAgentTask(task); // a job that ends at once
        QVERIFY(log.lines().isEmpty());
    }

    void taskReportsSignalsAndNeverSignalsBadIds()
    {
        auto task = LocalAgentTask::launch(QStringLiteral("/bin/sleep"), { QStringLiteral("30") });
        QCOMPARE(task->sendSignal(SIGKILL), 0);
        QTRY_VERIFY(!task->isRunning());
        QCOMPARE(task->terminationStatus(), SIGKILL);
        QVERIFY(!LocalAgentTask(0).isRunning());
        QCOMPARE(LocalAgentTask(0).terminate(), -1);
        QCOMPARE(LocalAgentTask(-1).terminate(), -1);
        int error = 0;
        QVERIFY(!LocalAgentTask::launch(QStringLiteral("/nonexistent/agent"), {}, &error));
        QCOMPARE(error, ENOENT);
    }
};

QTEST_GUILESS_MAIN(TestPodcastJob)
#include "tst_podcastjob.moc"
