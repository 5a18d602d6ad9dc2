#include "StopWatch.h"

#include <QtTest>

#include <cmath>
#include <limits>

class TestStopWatch : public QObject
{
    Q_OBJECT

    double m_now = 1000.0;
    StopWatch::Clock clock()
    {
        return [this] { return m_now; };
    }

private slots:
    void init() { m_now = 1000.0; }

    void newWatchReadsZero()
    {
        StopWatch w(clock());
        QCOMPARE(w.elapsedTime(), 0.0);
        QCOMPARE(w.elapsedTimeString(), QStringLiteral("00:00:00"));
        QCOMPARE(w.frameRate(), 30u);
        QVERIFY(!w.isRunning());
    }

    void pausesAreNotCounted()
    {
        StopWatch w(clock());
        w.start();
        m_now += 5;
        QCOMPARE(w.stop(), 5.0);
        m_now += 10;
        w.start();
        m_now += 3;
        QCOMPARE(w.elapsedTime(), 8.0);
        QCOMPARE(w.elapsedTimeString(), QStringLiteral("00:00:08"));
    }

    void repeatedStartAndStopAreHarmless()
    {
        StopWatch w(clock());
        w.start();
        m_now += 2;
        w.start(); // must not move the start
        m_now += 2;
        const double first = w.stop();
        m_now += 50;
        QCOMPARE(w.stop(), first);
        QCOMPARE(first, 4.0);
    }

    void resetClearsTimeAndAttributes()
    {
        StopWatch w(clock());
        w.setStringAttributes({ { QStringLiteral("font"), QStringLiteral("Mono") } });
        w.start();
        m_now += 7;
        w.reset();
        QVERIFY(!w.isRunning());
        QCOMPARE(w.elapsedTime(), 0.0);
        QVERIFY(w.stringAttributes().isEmpty());
        m_now += 4;
        w.start();
        m_now += 1;
        QCOMPARE(w.elapsedTime(), 1.0);
    }

    void formatsHoursMinutesSeconds_data()
    {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("just under an hour") << 3599.9 << QStringLiteral("00:59:59");
        QTest::newRow("one hour") << 3600.0 << QStringLiteral("01:00:00");
        QTest::newRow("over a day") << 90061.0 << QStringLiteral("25:01:01");
        QTest::newRow("a hundred hours") << 360000.0 << QStringLiteral("100:00:00");
        QTest::newRow("negative") << -5.0 << QStringLiteral("00:00:00");
        QTest::newRow("nan") << std::nan("") << QStringLiteral("00:00:00");
        QTest::newRow("beyond 32 bits") << 1e12 << QStringLiteral("1193046:28:15");
    }

    void formatsHoursMinutesSeconds()
    {
        QFETCH(double, seconds);
        QFETCH(QString, text);
        StopWatch w(clock());
        w.start();
        m_now += seconds;
        QCOMPARE(w.elapsedTimeString(), text);
        QCOMPARE(w.elapsedTimeAttributedString().text, text);
    }

    void clockGoingBackwardsReadsZero()
    {
        StopWatch w(clock());
        w.start();
        m_now -= 30; // the system time was set back while recording
        QCOMPARE(w.elapsedTimeString(), QStringLiteral("00:00:00"));
    }
};

QTEST_GUILESS_MAIN(TestStopWatch)
#include "tst_stopwatch.moc"
