#include "RecordingGuard.h"

#include "LocalAgentTask.h"

#include <algorithm>

const QString RecordingGuard::kSilence = QStringLiteral("silence");
const QString RecordingGuard::kClipping = QStringLiteral("clipping");
const QString RecordingGuard::kFrozen = QStringLiteral("frozen");
const QString RecordingGuard::kAgentEnded = QStringLiteral("agent-ended");

RecordingGuard::RecordingGuard(QObject *parent)
    : QObject(parent)
{ }

void RecordingGuard::check(const Reading &reading, qint64 nowMs)
{
    if (!reading.begun) {
        reset();
        return;
    }
    // Each stretch of recording is judged on its own: a pause is no silence.
    if (!reading.recording)
        m_runningSinceMs = -1;
    else if (m_runningSinceMs < 0)
        m_runningSinceMs = nowMs;
    const bool judging = m_runningSinceMs >= 0;

    if (reading.sound) {
        const bool heard = reading.sound->averagePowerLevel() >= kSilenceDecibels;
        if (heard)
            m_soundSinceMs = nowMs;
        const qint64 quietSince = std::max(m_soundSinceMs, m_runningSinceMs);
        if (heard || (judging && nowMs - quietSince >= kSilenceMs))
            set(kSilence, !heard, tr("No sound from “%1” for 10 seconds").arg(nameOf(reading.sound)));
        const bool loud = clipping(*reading.sound->health(), nowMs);
        if (!loud || judging)
            set(kClipping, loud, tr("“%1” is too loud").arg(nameOf(reading.sound)));
    } else {
        set(kSilence, false, {});
        set(kClipping, false, {});
        m_counts.clear();
    }

    if (reading.picture) {
        const qint64 changed = reading.picture->health()->lastChangedFrameMs.load();
        const bool moving = changed >= 0 && nowMs - changed < kFrozenMs;
        const qint64 stillSince = std::max(changed, m_runningSinceMs);
        if (moving || (judging && nowMs - stillSince >= kFrozenMs))
            set(kFrozen, !moving, tr("The picture from “%1” has stopped").arg(nameOf(reading.picture)));
    } else {
        set(kFrozen, false, {});
    }

    // What the agent wrote stays in its file; only the user can tell whether
    // to record on with another start.
    const bool agentEnded = reading.agent && !reading.agent->wasTerminated() && !reading.agent->isRunning();
    set(kAgentEnded, agentEnded,
        reading.agentRecordsScreen ? tr("The screen recording stopped unexpectedly; what was recorded is kept.")
                                   : tr("The sound recording stopped unexpectedly; what was recorded is kept."));
}

void RecordingGuard::reset()
{
    m_counts.clear();
    m_runningSinceMs = -1;
    m_soundSinceMs = -1;
    for (const QString &id : m_raised.keys())
        set(id, false, {});
}

void RecordingGuard::set(const QString &id, bool on, const QString &text)
{
    if (!on) {
        if (m_raised.remove(id))
            emit cleared(id);
        return;
    }
    if (m_raised.value(id) == text)
        return;
    m_raised.insert(id, text);
    emit raised(id, text);
}

bool RecordingGuard::clipping(const StreamHealth &health, qint64 nowMs)
{
    const Count now { nowMs, health.samples.load(), health.clippedSamples.load() };
    // Another stream (a session started anew) counts from zero again.
    if (!m_counts.empty() && now.samples < m_counts.back().samples)
        m_counts.clear();
    m_counts.push_back(now);
    // Keep the newest count that is a whole window old, and those after it.
    while (m_counts.size() > 1 && m_counts[1].atMs <= nowMs - kClippingWindowMs)
        m_counts.pop_front();
    const Count &from = m_counts.front();
    const quint64 samples = now.samples - from.samples;
    return samples > 0 && double(now.clipped - from.clipped) > kClippedShare * double(samples);
}

QString RecordingGuard::nameOf(const CaptureConnectionPtr &connection)
{
    return connection->input() ? connection->input()->device()->localizedDisplayName() : QString();
}
