// The pause arithmetic of a recording: which capture times reach the file
// and at which file time, after a sequence of pauses, resumes and a finish.

#include "RecordingTimeline.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class TestRecordingTimeline : public QObject
{
    Q_OBJECT

private slots:
    void mapsCaptureTimesOntoTheFile_data()
    {
        // Every row starts at 100. `events`: p = pause, r = resume, f = finish,
        // each at a running time. `maps`: capture time = file time ("-" when
        // dropped). `recorded`: now = recorded duration (N: now is unknown).
        QTest::addColumn<QString>("events");
        QTest::addColumn<QString>("maps");
        QTest::addColumn<QString>("recorded");
        QTest::addColumn<bool>("paused");
        QTest::newRow("no pause") << u""_s << u"99=- 100=0 150=50"_s << u"160=60 50=0 N=0"_s << false;
        QTest::newRow("one pause") << u"p120 r150"_s << u"110=10 120=- 149=- 150=20 170=40"_s << u"170=40"_s << false;
        QTest::newRow("paused now") << u"p120"_s << u"119=19 120=- 500=-"_s << u"200=20"_s << true;
        QTest::newRow("two pauses add up")
            << u"p110 r120 p130 r160"_s << u"115=- 125=15 165=25"_s << u"170=30"_s << false;
        QTest::newRow("a pause before the start counts from the start")
            << u"p50 r130"_s << u"100=- 130=0"_s << u"140=10"_s << false;
        QTest::newRow("a resume with an earlier clock is an empty pause")
            << u"p120 r110"_s << u"120=20"_s << u"130=30"_s << false;
        QTest::newRow("a second pause changes nothing")
            << u"p110 p130 r140"_s << u"120=- 140=10"_s << u"150=20"_s << false;
        QTest::newRow("a resume without a pause changes nothing") << u"r120"_s << u"130=30"_s << u"130=30"_s << false;
        QTest::newRow("finish ends the file") << u"f150"_s << u"149=49 150=- 160=-"_s << u"200=50"_s << false;
        QTest::newRow("a later finish does not extend it") << u"f150 f180"_s << u"160=-"_s << u"200=50"_s << false;
        QTest::newRow("finish while paused") << u"p120 f150"_s << u"110=10 130=-"_s << u"200=20"_s << true;
        QTest::newRow("finish after pauses") << u"p120 r140 f170"_s << u"150=30 170=-"_s << u"300=50"_s << false;
    }
    void mapsCaptureTimesOntoTheFile()
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
};

QTEST_APPLESS_MAIN(TestRecordingTimeline)
#include "tst_recordingtimeline.moc"
