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
    std::vector<Scheduled> m_scheduled;

    CountdownView::Scheduler scheduler()
    {
        return [this](int msec, Event e, std::function<void()> a) { m_scheduled.push_back({ msec, e, a }); };
    }

private slots:
    void init() { m_scheduled.clear(); }

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
        QWindow keys;
        keys.show();
        QTest::keyPress(&keys, Qt::Key_Alt, altHeld ? Qt::AltModifier : Qt::NoModifier);
        QCOMPARE(QGuiApplication::keyboardModifiers().testFlag(Qt::AltModifier), altHeld);

        CountdownView view(nullptr, scheduler());
        view.setCountdownTime(seconds);
        view.contentRectForString();
        const quint32 fit = view.maxTimeValue();
        QVERIFY(fit == seconds || (seconds == 60 && fit > 1 && fit < 60));
        QSignalSpy closed(&view, &CountdownView::countdownTimerDidClose);
        view.startCountdown();
        QTest::keyRelease(&keys, Qt::Key_Alt, Qt::NoModifier);

        std::stable_sort(m_scheduled.begin(), m_scheduled.end(),
            [](const Scheduled &a, const Scheduled &b) { return a.msec < b.msec; });
        int tick = 0;
        int notes = 0;
        bool sounding = false;
        for (const Scheduled &s : m_scheduled) {
            if (s.event == Event::Tick) {
                QCOMPARE(s.msec, int(std::lround(float(tick * 0.8) * 1000)));
                QCOMPARE(closed.count(), 0);
                s.action();
                const quint32 left = seconds - tick; // seconds this tick shows
                const QList<CountdownView::Segment> shown = view.countdownDisplayValue();
                if (left == 0) {
                    QVERIFY(shown.isEmpty());
                } else {
                    QCOMPARE(quint32(shown.size()), fit);
                    // Surplus seconds count down in the first place.
                    const int active = left > fit ? 0 : int(fit - left);
                    for (int i = 0; i < shown.size(); ++i)
                        QCOMPARE(shown.at(i).active, i == active);
                    QCOMPARE(shown.first().text, QString::number(qMax(left, fit)));
                    QCOMPARE(shown.last().text, fit > 1 ? QStringLiteral("    1") : QStringLiteral("1"));
                }
                ++tick;
            } else if (s.event == Event::StartNote) {
                QCOMPARE(s.msec, int(std::lround(float((tick - 1) * 0.8) * 1000)));
                QVERIFY(!sounding);
                sounding = true;
                ++notes;
            } else {
                QVERIFY(sounding);
                sounding = false;
            }
        }
        QCOMPARE(tick, int(seconds) + 1);
        QCOMPARE(notes, altHeld ? 0 : int(qMin(seconds, 3u)));
        QCOMPARE(closed.count(), 1);
        QCOMPARE(closed.first().first().value<CountdownView *>(), &view);
    }

    // The player is released after the last note once the countdown is over.
    void notePlayerLivesUntilTheClose()
    {
        Log::Capture log;
        qputenv("PULSE_SERVER", "unix:/nonexistent/pulse");
        CountdownView view(nullptr, scheduler());
        view.setCountdownTime(3);
        view.contentRectForString();
        view.startCountdown();
        std::stable_sort(m_scheduled.begin(), m_scheduled.end(),
            [](const Scheduled &a, const Scheduled &b) { return a.msec < b.msec; });
        for (const Scheduled &s : m_scheduled) {
            s.action();
            if (s.event == Event::StartNote)
                QVERIFY(view.hasNotePlayer());
        }
        QVERIFY(!view.hasNotePlayer());
        // No sound server: silence and a single line saying so.
        QTRY_VERIFY_WITH_TIMEOUT(logHasPrefix(log, QStringLiteral("Countdown notes are silent: ")), 20000);
        QCOMPARE(log.lines().size(), 1);
    }

    void noteIsMidiPitch80()
    {
        const int rate = 44100;
        const std::vector<float> s = VKNotePlayer::renderNote(35, 80, 64, 0.5, rate);
        QVERIFY2(!s.empty(), qPrintable(VKNotePlayer::soundFontPath()));
        // Autocorrelation over a window past the attack; the first lag whose
        // correlation comes near the best is the period.
        const int from = rate / 10;
        const int n = rate / 5;
        auto corr = [&](int lag) {
            double c = 0;
            for (int i = from; i < from + n; ++i)
                c += double(s[i]) * s[i + lag];
            return c;
        };
        const int minLag = rate / 2000;
        const int maxLag = rate / 200;
        std::vector<double> r(maxLag + 2);
        double best = 0;
        for (int lag = minLag; lag <= maxLag + 1; ++lag)
            best = qMax(best, r[lag] = corr(lag));
        QVERIFY(best > 0);
        int lag = minLag + 1;
        while (lag < maxLag && !(r[lag] > 0.9 * best && r[lag] >= r[lag - 1] && r[lag] >= r[lag + 1]))
            ++lag;
        const double shift = 0.5 * (r[lag - 1] - r[lag + 1]) / (r[lag - 1] - 2 * r[lag] + r[lag + 1]);
        const double hz = rate / (lag + shift);
        QVERIFY2(std::abs(hz - 830.6) / 830.6 < 0.02, qPrintable(QString::number(hz)));
    }
};

QTEST_MAIN(TestCountdown)
#include "tst_countdown.moc"
