#pragma once

#include "StopWatch.h"

#include <QObject>

#include <memory>

class QTimer;

// The recording's running time as the record page shows it: while running it
// ticks 2/frameRate times a second (15 a second at the stop-watch's default
// 30, for a display that never lags a second behind); while paused the time
// stands and the display flashes every 0.9 s. Main thread only.
class RecordingClock final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RecordingClock)

public:
    explicit RecordingClock(QObject *parent = nullptr);
    ~RecordingClock() override;

    StopWatch *stopWatch() const { return m_stopWatch.get(); }
    // Starts or continues the time, ticks once at once and then steadily.
    void run();
    // Stops the time, ticks once for the time it stands at, then flashes.
    void freeze();
    // Back to zero, with nothing ticking or flashing.
    void reset();
    // Where a recording taken up again stands; ticks once to show it.
    void setElapsedTime(double seconds);

signals:
    void ticked();
    void flashed();

private:
    void repeat(int msec, void (RecordingClock::*signal)());
    void stopRepeating();

    std::unique_ptr<StopWatch> m_stopWatch;
    // The one timer of the display, ticking or flashing.
    QTimer *m_everySecondTimer = nullptr;
};
