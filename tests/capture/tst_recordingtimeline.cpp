// The pause arithmetic of a recording: which capture times reach the file
// and at which file time, after a sequence of pauses, resumes and a finish.

#include "RecordingTimeline.h"

#include <QtTest>

class TestRecordingTimeline : public QObject
{
    Q_OBJECT

private slots:
    void mapsCaptureTimesOntoTheFile_data();
    void mapsCaptureTimesOntoTheFile();
};

void TestRecordingTimeline::mapsCaptureTimesOntoTheFile_data()
{
    // Every row starts at 100. `events`: p = pause, r = resume, f = finish,
    // each at a running time. `maps`: capture time = file time ("-" when
    // dropped). `recorded`: now = recorded duration (N: now is unknown).
    QTest::addColumn<QString>("events");
    QTest::addColumn<QString>("maps");
    QTest::addColumn<QString>("recorded");
    QTest::addColumn<bool>("paused");
    QTest::newRow("no pause") << ""
                              << "99=- 100=0 150=50"
                              << "160=60 50=0 N=0" << false;
    QTest::newRow("one pause") << "p120 r150"
                               << "110=10 120=- 149=- 150=20 170=40"
                               << "170=40" << false;
    QTest::newRow("paused now") << "p120"
                                << "119=19 120=- 500=-"
                                << "200=20" << true;
    QTest::newRow("two pauses add up") << "p110 r120 p130 r160"
                                       << "115=- 125=15 165=25"
                                       << "170=30" << false;
    QTest::newRow("a pause before the start counts from the start") << "p50 r130"
                                                                    << "100=- 130=0"
                                                                    << "140=10" << false;
    QTest::newRow("a resume with an earlier clock is an empty pause") << "p120 r110"
                                                                      << "120=20"
                                                                      << "130=30" << false;
    QTest::newRow("a second pause changes nothing") << "p110 p130 r140"
                                                    << "120=- 140=10"
                                                    << "150=20" << false;
    QTest::newRow("a resume without a pause changes nothing") << "r120"
                                                              << "130=30"
                                                              << "130=30" << false;
    QTest::newRow("finish ends the file") << "f150"
                                          << "149=49 150=- 160=-"
                                          << "200=50" << false;
    QTest::newRow("a later finish does not extend it") << "f150 f180"
                                                       << "160=-"
                                                       << "200=50" << false;
    QTest::newRow("finish while paused") << "p120 f150"
                                         << "110=10 130=-"
                                         << "200=20" << true;
    QTest::newRow("finish after pauses") << "p120 r140 f170"
                                         << "150=30 170=-"
                                         << "300=50" << false;
}

void TestRecordingTimeline::mapsCaptureTimesOntoTheFile()
{
    QFETCH(QString, events);
    QFETCH(QString, maps);
    QFETCH(QString, recorded);
    QFETCH(bool, paused);
    RecordingTimeline timeline(100);
    for (const QString &event : events.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const qint64 at = event.mid(1).toLongLong();
        if (event[0] == QLatin1Char('p'))
            timeline.pause(at);
        else if (event[0] == QLatin1Char('r'))
            timeline.resume(at);
        else
            timeline.finish(at);
    }
    for (const QString &pair : maps.split(QLatin1Char(' '))) {
        const qint64 capture = pair.section(QLatin1Char('='), 0, 0).toLongLong();
        const QString file = pair.section(QLatin1Char('='), 1);
        const std::optional<qint64> mapped = timeline.map(capture);
        QVERIFY2(file == QLatin1String("-") ? !mapped : mapped == file.toLongLong(), qPrintable(pair));
    }
    for (const QString &pair : recorded.split(QLatin1Char(' '))) {
        const QString now = pair.section(QLatin1Char('='), 0, 0);
        const qint64 at = now == QLatin1String("N") ? RecordingTimeline::kNever : now.toLongLong();
        QCOMPARE(timeline.recorded(at), pair.section(QLatin1Char('='), 1).toLongLong());
    }
    QCOMPARE(timeline.isPaused(), paused);
}

QTEST_APPLESS_MAIN(TestRecordingTimeline)
#include "tst_recordingtimeline.moc"
