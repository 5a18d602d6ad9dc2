// A recording survives the recording application being killed.

#include "MovieInspection.h"
#include "TestSupport.h"

#include <QProcess>
#include <QtTest>

#include <csignal>

class TestCaptureCrash : public QObject
{
    Q_OBJECT

private slots:
    void killedApplicationLeavesAPlayableFile();
};

void TestCaptureCrash::killedApplicationLeavesAPlayableFile()
{
    TestSandbox sandbox;
    QProcess app;
    app.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    app.start(QCoreApplication::applicationDirPath() + QStringLiteral("/capture_record_helper"), { sandbox.path() });
    QVERIFY(app.waitForStarted());
    QVERIFY(app.waitForReadyRead(20000));
    const QString path = QString::fromLocal8Bit(app.readLine()).trimmed();
    QVERIFY(path.startsWith(sandbox.path()));
    QTest::qWait(5000);
    ::kill(pid_t(app.processId()), SIGKILL);
    QVERIFY(app.waitForFinished(5000));
    QCOMPARE(app.exitStatus(), QProcess::CrashExit);

    const MovieInspection movie = inspectMovie(path);
    QCOMPARE(movie.videoCodec, QStringLiteral("video/x-h264"));
    QCOMPARE(movie.audioCodec, QStringLiteral("audio/mpeg"));
    QVERIFY2(movie.videoEnd >= 4.0, qPrintable(QString::number(movie.videoEnd)));
    QVERIFY2(movie.audioEnd >= 4.0, qPrintable(QString::number(movie.audioEnd)));
    QVERIFY(movie.largestVideoGap < 0.1);
}

QTEST_GUILESS_MAIN(TestCaptureCrash)
#include "tst_capturecrash.moc"
