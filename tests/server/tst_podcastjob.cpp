#include "Log.h"
#include "PodcastJob.h"
#include "PropertyList.h"

#include "TestSupport.h"

#include <QTimeZone>

#include <csignal>

namespace {

QDateTime fromSeconds(double seconds)
{
    return QDateTime::fromMSecsSinceEpoch(qint64(seconds * 1000.0), QTimeZone::utc());
}

} // namespace

class TestPodcastJob : public QObject
{
    Q_OBJECT

private slots:
    void emptyJobGivesEmptyDictionary()
    {
        PodcastJob job;
        QVERIFY(job.submissionDictionary().isEmpty());
        QVERIFY(!job.movieFilePaths().has_value());
        QVERIFY(!job.localAgentTask());
    }

    void dictionaryHoldsOnlyPresentValues()
    {
        PodcastJob job;
        job.setUser(QStringLiteral("ann"));
        job.setTitle(QStringLiteral(""));
        job.setStartedAt(fromSeconds(1199145600.9));
        const QVariantMap d = job.submissionDictionary();
        QCOMPARE(d.value("Author"), QVariant(QStringLiteral("ann")));
        QVERIFY(d.contains("Title")); // empty is present, only nil is left out
        QVERIFY(!d.contains("Description"));
        QCOMPARE(d.value("Recording Started At"), QVariant(QStringLiteral("1199145600")));
        QVERIFY(!d.contains("Recording Stopped At"));
        QCOMPARE(d.size(), 3);

        job.setTitle(QString());
        QVERIFY(!job.submissionDictionary().contains("Title"));
    }

    void timesAreWholeSecondsRoundedDown_data()
    {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("fraction") << 1199145600.9 << QStringLiteral("1199145600");
        QTest::newRow("far future, no exponent") << 32503680000.5 << QStringLiteral("32503680000");
        QTest::newRow("before 1970 rounds down") << -1.5 << QStringLiteral("-2");
        QTest::newRow("epoch") << 0.0 << QStringLiteral("0");
    }

    void timesAreWholeSecondsRoundedDown()
    {
        QFETCH(double, seconds);
        QFETCH(QString, text);
        PodcastJob job;
        job.setStoppedAt(fromSeconds(seconds));
        QCOMPARE(job.submissionDictionary().value("Recording Stopped At").toString(), text);
    }

    void dictionarySerialisesAsStrings()
    {
        PodcastJob job;
        job.setUser(QStringLiteral("ann"));
        job.setTitle(QStringLiteral("<Lecture & Lab>"));
        job.setJobDescription(QStringLiteral("Woche 3 – Grüße"));
        job.setStartedAt(fromSeconds(1199145600));
        job.setStoppedAt(fromSeconds(1199149200));
        const QByteArray xml = PropertyList::toXml(job.submissionDictionary());
        const QByteArray out
            = runPython(QStringLiteral("import plistlib,sys\n"
                                       "d=plistlib.loads(sys.stdin.buffer.read())\n"
                                       "assert all(isinstance(v,str) for v in d.values()), d\n"
                                       "print(sorted(d.keys()), d['Title'], d['Recording Stopped At'])\n"),
                xml);
        QCOMPARE(QString::fromUtf8(out).trimmed(),
            QStringLiteral("['Author', 'Description', 'Recording Started At', 'Recording Stopped At', "
                           "'Title'] <Lecture & Lab> 1199149200"));
    }

    void destroyingJobTerminatesRunningAgent()
    {
        Log::Capture log;
        auto task = LocalAgentTask::launch(QStringLiteral("/bin/sleep"), { QStringLiteral("30") });
        QVERIFY(task);
        const pid_t pid = task->processIdentifier();
        QVERIFY(task->isRunning());
        {
            PodcastJob job;
            job.setLocalAgentTask(task);
        }
        QCOMPARE(log.lines(),
            QStringList {
                lxFormat(QStringLiteral("PodcastJob is being dealloc'd but there was still a running orvxagentd job "
                                        "(pid: %d). Sending SIGTERM."),
                    { pid }) });
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
        {
            PodcastJob job;
            job.setLocalAgentTask(task);
        }
        QVERIFY(log.lines().isEmpty());
    }

    void taskReportsSignalsAndNeverSignalsBadIds()
    {
        auto task = LocalAgentTask::launch(QStringLiteral("/bin/sleep"), { QStringLiteral("30") });
        QVERIFY(task);
        QCOMPARE(task->sendSignal(SIGKILL), 0);
        QTRY_VERIFY(!task->isRunning());
        QCOMPARE(task->terminationStatus(), SIGKILL);

        LocalAgentTask none(0);
        QVERIFY(!none.isRunning());
        QCOMPARE(none.terminate(), -1);
        LocalAgentTask negative(-1);
        QCOMPARE(negative.terminate(), -1);

        int error = 0;
        QVERIFY(!LocalAgentTask::launch(QStringLiteral("/nonexistent/agent"), {}, &error));
        QCOMPARE(error, ENOENT);
    }
};

QTEST_GUILESS_MAIN(TestPodcastJob)
#include "tst_podcastjob.moc"
