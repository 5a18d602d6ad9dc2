#include "RecordingTimeline.h"

#include <algorithm>

std::optional<qint64> RecordingTimeline::map(qint64 runningTime) const
{
    std::lock_guard lock(m_mutex);
    if (runningTime < m_start || runningTime >= m_stop || runningTime >= m_pausedAt)
        return std::nullopt;
    qint64 shift = m_start;
    for (const auto &[begin, end] : m_pauses) {
        if (runningTime >= end)
            shift += end - begin;
        else if (runningTime >= begin)
            return std::nullopt;
    }
    return runningTime - shift;
}

void RecordingTimeline::pause(qint64 now)
{
    std::lock_guard lock(m_mutex);
    if (m_pausedAt == kNever)
        m_pausedAt = std::max(now, m_start);
}

void RecordingTimeline::resume(qint64 now)
{
    std::lock_guard lock(m_mutex);
    if (m_pausedAt == kNever)
        return;
    m_pauses.emplace_back(m_pausedAt, std::max(now, m_pausedAt));
    m_pausedAt = kNever;
}

void RecordingTimeline::finish(qint64 now)
{
    std::lock_guard lock(m_mutex);
    m_stop = std::min(m_stop, now);
}

bool RecordingTimeline::isPaused() const
{
    std::lock_guard lock(m_mutex);
    return m_pausedAt != kNever;
}

qint64 RecordingTimeline::recorded(qint64 now) const
{
    std::lock_guard lock(m_mutex);
    const qint64 end = std::min({ now, m_stop, m_pausedAt });
    if (end == kNever || end < m_start)
        return 0;
    qint64 paused = 0;
    for (const auto &[begin, stop] : m_pauses)
        paused += stop - begin;
    return end - m_start - std::min(paused, end - m_start);
}
