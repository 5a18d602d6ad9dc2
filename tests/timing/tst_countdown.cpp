#include "CountdownView.h"
#include "TestSupport.h"
#include "VKNotePlayer.h"

#include <QSignalSpy>
#include <QWindow>

#include <cmath>

using Event = CountdownView::Event;

// The countdown on a scheduler the test runs by hand, and the note through
// the synthesiser without a sound device.
class TestCountdown : public QObject
{
    Q_OBJECT

    struct Scheduled
    {
        int msec;
        Event event;
        std::function<void()> action;
    };

private slots:
    // No sound server: every note player stays silent and says so once.
    void initTestCase() { qputenv("PULSE_SERVER", "unix:/nonexistent/pulse"); }

    void ticksAtTheirOffsets_data()
    {
        QTest::addColumn<quint32>("seconds");
        QTest::addColumn<bool>("altHeld");
        QTest::newRow("three") << 3u << false;
        QTest::newRow("zero closes at once") << 0u << false;
        QTest::newRow("Alt held: silent, same length") << 3u << true;
        QTest::newRow("wider than the screen") << 60u << false;
    }
    void ticksAtTheirOffsets()
    {
        QFETCH(quint32, seconds);
        QFETCH(bool, altHeld);
        Log::Capture log;
        QWindow keys;
        keys.show();
        QTest::keyPress(&keys, Qt::Key_Alt, altHeld ? Qt::AltModifier : Qt::NoModifier);
        QCOMPARE(QGuiApplication::keyboardModifiers().testFlag(Qt::AltModifier), altHeld);

        std::vector<Scheduled> scheduled;
        CountdownView view(nullptr, [&](int msec, Event e, std::function<void()> a) {
            scheduled.push_back({ msec, e, a });
        });
        view.setCountdownTime(seconds);
        view.contentRectForString();
        const quint32 fit = view.maxTimeValue();
        QVERIFY(fit == seconds || (seconds == 60 && fit > 1 && fit < 60));
        QSignalSpy closed(&view, &CountdownView::countdownTimerDidClose);
        view.startCountdown();
        QTest::keyRelease(&keys, Qt::Key_Alt, Qt::NoModifier);

        std::stable_sort(scheduled.begin(), scheduled.end(), [](auto &a, auto &b) { return a.msec < b.msec; });
        int tick = 0;
        int notes = 0;
        for (const Scheduled &s : scheduled) {
            QCOMPARE(closed.count(), 0);
            s.action();
            if (s.event == Event::Tick) {
                QCOMPARE(s.msec, int(std::lround(float(tick * 0.8) * 1000)));
                const quint32 left = seconds - tick++; // the seconds this tick shows
                const QList<CountdownView::Segment> shown = view.countdownDisplayValue();
                QCOMPARE(quint32(shown.size()), left ? fit : 0);
                // Surplus seconds count down in the first place.
                for (int i = 0; i < shown.size(); ++i)
                    QCOMPARE(shown.at(i).active, i == (left > fit ? 0 : int(fit - left)));
                if (left)
                    QCOMPARE(shown.first().text + shown.last().text,
                        QString::number(qMax(left, fit)) + (fit > 1 ? QStringLiteral("    1") : QStringLiteral("1")));
            } else if (s.event == Event::StartNote) {
                QCOMPARE(s.msec, int(std::lround(float((tick - 1) * 0.8) * 1000)));
                QVERIFY(view.hasNotePlayer());
                ++notes;
            }
        }
        QCOMPARE(tick, int(seconds) + 1);
        QCOMPARE(notes, altHeld ? 0 : int(qMin(seconds, 3u)));
        QCOMPARE(closed.count(), 1);
        QCOMPARE(closed.first().first().value<CountdownView *>(), &view);
        QVERIFY(!view.hasNotePlayer()); // released once the countdown is over
        if (notes)
            QTRY_VERIFY_WITH_TIMEOUT(logHasPrefix(log, QStringLiteral("Countdown notes are silent: ")), 20000);
        QCOMPARE(log.lines().size(), notes ? 1 : 0);
    }

    void noteIsMidiPitch80()
    {
        const int rate = 44100;
        const std::vector<float> s = VKNotePlayer::renderNote(35, 80, 64, 0.5, rate);
        QVERIFY2(!s.empty(), qPrintable(VKNotePlayer::soundFontPath()));
        // Autocorrelation past the attack; the first peak near the best one
        // is the period, refined by a parabola through its neighbours.
        std::vector<double> r(rate / 200 + 2);
        double best = 0;
        for (size_t lag = rate / 2000; lag < r.size(); ++lag) {
            for (int i = rate / 10; i < rate / 10 + rate / 5; ++i)
                r[lag] += double(s[i]) * s[i + lag];
            best = qMax(best, r[lag]);
        }
        size_t lag = rate / 2000 + 1;
        while (lag + 2 < r.size() && !(r[lag] > 0.9 * best && r[lag] >= r[lag - 1] && r[lag] >= r[lag + 1]))
            ++lag;
        const double shift = 0.5 * (r[lag - 1] - r[lag + 1]) / (r[lag - 1] - 2 * r[lag] + r[lag + 1]);
        const double hz = rate / (lag + shift);
        QVERIFY2(std::abs(hz - 830.6) / 830.6 < 0.02, qPrintable(QString::number(hz)));
    }
};

QTEST_MAIN(TestCountdown)
#include "tst_countdown.moc"
