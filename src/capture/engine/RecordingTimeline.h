#pragma once

#include <QtGlobal>

#include <limits>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

// Which media of a recording reach the file and where they land on the
// file's timeline, given pauses: every moment after a pause moves back by
// the paused time, so the file has no gap. One timeline serves all streams
// of a file, so they shift alike and stay in sync. Times are nanoseconds of
// the pipeline's running time; safe to call from any thread.
class RecordingTimeline final
{
public:
    // A time that never comes: not stopped, not paused.
    static constexpr qint64 kNever = std::numeric_limits<qint64>::max();

    explicit RecordingTimeline(qint64 start)
        : m_start(start)
    { }

    // The file time of media captured at `runningTime`, or nothing when it
    // falls before the start, into a pause or at or after the end.
    std::optional<qint64> map(qint64 runningTime) const;

    // A second pause before a resume, or a resume without a pause, changes
    // nothing; times before the start count as the start.
    void pause(qint64 now);
    void resume(qint64 now);
    // Nothing from `now` on reaches the file.
    void finish(qint64 now);

    bool isPaused() const;
    // The file's length up to `now`: recorded time without its pauses.
    qint64 recorded(qint64 now) const;

private:
    mutable std::mutex m_mutex;
    const qint64 m_start;
    qint64 m_stop = kNever;
    qint64 m_pausedAt = kNever;
    std::vector<std::pair<qint64, qint64>> m_pauses;
};
