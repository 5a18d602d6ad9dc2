#include "RecordingClock.h"

#include <QTimer>

namespace {

constexpr int kFlashMsec = 900;

} // namespace

RecordingClock::RecordingClock(QObject *parent)
    : QObject(parent)
    , m_stopWatch(std::make_unique<StopWatch>())
{ }

RecordingClock::~RecordingClock() = default;

void RecordingClock::run()
{
    stopRepeating();
    m_stopWatch->start(); // continues from the time before a pause
    emit ticked();
    // Named for a second, yet ticks frameRate/2 times a second.
    repeat(qRound(2000.0 / m_stopWatch->frameRate()), &RecordingClock::ticked);
}

void RecordingClock::freeze()
{
    stopRepeating();
    m_stopWatch->stop();
    emit ticked();
    repeat(kFlashMsec, &RecordingClock::flashed);
}

void RecordingClock::reset()
{
    stopRepeating();
    m_stopWatch->reset();
}

void RecordingClock::repeat(int msec, void (RecordingClock::*signal)())
{
    m_everySecondTimer = new QTimer(this);
    m_everySecondTimer->setInterval(msec);
    connect(m_everySecondTimer, &QTimer::timeout, this, signal);
    m_everySecondTimer->start();
}

void RecordingClock::stopRepeating()
{
    // The tick that stops may be the one running now: it goes once it is done.
    if (!m_everySecondTimer)
        return;
    m_everySecondTimer->stop();
    m_everySecondTimer->deleteLater();
    m_everySecondTimer = nullptr;
}

void RecordingClock::setElapsedTime(double seconds)
{
    m_stopWatch->setElapsedTime(seconds);
    emit ticked();
}
