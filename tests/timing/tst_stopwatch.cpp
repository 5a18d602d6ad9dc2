#include "StopWatch.h"

#include <QtTest>

#include <cmath>

// The recording clock on a clock the test moves by hand.
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

    void pausesAndRepeatsAreNotCounted()
    {
        StopWatch w(clock());
        QCOMPARE(w.elapsedTimeString(), QStringLiteral("00:00:00"));
        w.start();
        m_now += 2;
        w.start(); // must not move the start
        m_now += 3;
        QCOMPARE(w.stop(), 5.0);
        m_now += 10;
        QCOMPARE(w.stop(), 5.0);
        w.start();
        m_now += 3;
        QVERIFY(w.isRunning());
        QCOMPARE(w.elapsedTime(), 8.0);
        QCOMPARE(w.elapsedTimeString(), QStringLiteral("00:00:08"));
        w.reset();
        QVERIFY(!w.isRunning());
        QCOMPARE(w.elapsedTime(), 0.0);
        m_now += 4;
        w.start();
        m_now += 1;
        QCOMPARE(w.elapsedTime(), 1.0);
    }

    void formatsHoursMinutesSeconds_data()
    {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("just under an hour") << 3599.9 << "00:59:59";
        QTest::newRow("over a day") << 90061.0 << "25:01:01";
        QTest::newRow("a hundred hours") << 360000.0 << "100:00:00";
        QTest::newRow("clock set back while recording") << -30.0 << "00:00:00";
        QTest::newRow("nan") << std::nan("") << "00:00:00";
        QTest::newRow("beyond 32 bits") << 1e12 << "1193046:28:15";
    }
    void formatsHoursMinutesSeconds()
    {
        QFETCH(double, seconds);
        QFETCH(QString, text);
        StopWatch w(clock());
        w.start();
        m_now += seconds;
        QCOMPARE(w.elapsedTimeString(), text);
    }
};

QTEST_GUILESS_MAIN(TestStopWatch)
#include "tst_stopwatch.moc"
