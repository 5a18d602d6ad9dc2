#pragma once

#include "RecordingGuard.h"

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <functional>

class DesktopNotifier;
class LXMainWindow;
class QTimer;

// Watches a recording made on this computer for what the lecturer should
// hear about while it runs: how much longer the disk can record, and the
// conditions the guard raises (a silent or clipping microphone, a picture
// that stopped, a recorder that ended by itself). Each shows as a banner on
// the record page, read out to screen readers, and once as a desktop
// notification when the window is not active; it clears when its cause
// does. Never stops or pauses a recording.
class RecordingWatch final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RecordingWatch)

public:
    // What the watch needs to know of the recording, asked every 3 s for
    // the time left, and by the guard four times a second.
    struct Recording
    {
        RecordingGuard::Reading guarded;
        bool local = false; // recorded here: this disk fills up
        bool begun = false;
        QStringList files;
        double recordedSeconds = 0;
        // Before enough has been recorded to measure, the source's usual
        // rate.
        double expectedBytesPerSecond = 0;
    };
    using Source = std::function<Recording()>;

    // Time left under this shows a banner, before the cutoff pauses.
    static constexpr double kLowSeconds = 10 * 60;

    RecordingWatch(LXMainWindow *window, Source source, QObject *parent = nullptr);

    // Updates the time-left line now and then every 3 s.
    void start();
    void stop();
    void updateTimeLeft();

    // A condition of the guard, known by `id`, with the text to show; or its
    // end.
    void raise(const QString &id, const QString &text);
    void clear(const QString &id);
    void clearAll();
    RecordingGuard *guard() const { return m_guard; }
    // A device of the recording went away and the recording went on.
    void deviceLost(const QString &name, bool gavePicture, const QString &standIn);

    // "About 2 hours 10 minutes of recording left on this disk".
    static QString timeLeftText(double seconds);

private:
    LXMainWindow *m_window;
    Source m_source;
    QTimer *m_timer = nullptr;
    QTimer *m_guardTimer = nullptr;
    RecordingGuard *m_guard = nullptr;
    QPointer<DesktopNotifier> m_notifier;
    QStringList m_raised;
};
