#include "StopWatch.h"

#include <cmath>
#include <limits>

namespace {

// Seconds since 2001-01-01 UTC, the reference date the platform's clock used.
double wallClock()
{
    return static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000.0 - 978307200.0;
}

} // namespace

StopWatch::StopWatch(Clock clock)
    : m_clock(clock ? std::move(clock) : Clock(wallClock))
{ }

StopWatch::~StopWatch()
{
    reset();
}

void StopWatch::start()
{
    if (m_isRunning)
        return;
    const double now = m_clock();
    // NaN compares unequal to zero, so it takes the first branch as well.
    m_startInterval = m_elapsedInterval != 0.0 ? now - m_elapsedInterval : now;
    m_isRunning = true;
}

double StopWatch::elapsedTime()
{
    if (m_isRunning)
        m_elapsedInterval = m_clock() - m_startInterval;
    return m_elapsedInterval;
}

double StopWatch::stop()
{
    if (m_isRunning) {
        elapsedTime();
        m_isRunning = false;
    }
    return elapsedTime();
}

void StopWatch::reset()
{
    stop();
    m_startInterval = 0;
    m_elapsedInterval = 0;
    m_stringAttributes.clear();
}

QString StopWatch::formatElapsed(double seconds)
{
    quint32 count = 0;
    if (std::isnan(seconds) || seconds <= 0)
        count = 0;
    else if (seconds >= 4294967295.0)
        count = std::numeric_limits<quint32>::max();
    else
        count = static_cast<quint32>(seconds);
    const quint32 hours = count / 3600;
    const quint32 minutes = (count % 3600) / 60;
    const quint32 secs = count % 60;
    return QString::asprintf("%02u:%02u:%02u", hours, minutes, secs);
}

QString StopWatch::elapsedTimeString()
{
    elapsedTime(); // asked twice, as it always was; the first answer is dropped
    return formatElapsed(elapsedTime());
}

StopWatch::AttributedString StopWatch::elapsedTimeAttributedString()
{
    return AttributedString { elapsedTimeString(), m_stringAttributes };
}
