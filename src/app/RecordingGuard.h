#pragma once

#include "CaptureSession.h"

#include <QMap>
#include <QObject>

#include <deque>
#include <memory>

class LocalAgentTask;

// Listens to a recording made on this computer while it runs and says when
// it goes wrong, while there is still time to fix it: a microphone that
// hears nothing or clips, a camera whose picture stopped, a recording agent
// that ended by itself. It only reports (raised, cleared); it never stops or
// pauses a recording. A condition is raised only while recording; it clears
// as soon as its cause has, paused or not.
class RecordingGuard final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RecordingGuard)

public:
    // What is being recorded at the moment of a check.
    struct Reading
    {
        bool begun = false; // recording or paused
        bool recording = false; // running, not paused
        CaptureConnectionPtr sound;
        CaptureConnectionPtr picture;
        std::shared_ptr<LocalAgentTask> agent;
        bool agentRecordsScreen = false;
    };

    static constexpr float kSilenceDecibels = -50.0f;
    static constexpr qint64 kSilenceMs = 10000;
    static constexpr qint64 kClippingWindowMs = 2000;
    static constexpr double kClippedShare = 0.01;
    static constexpr qint64 kFrozenMs = 3000;
    // How often the timer checks: a condition shows at most this late.
    static constexpr int kCheckIntervalMs = 250;

    // The conditions' ids, as raised and cleared.
    static const QString kSilence;
    static const QString kClipping;
    static const QString kFrozen;
    static const QString kAgentEnded;

    explicit RecordingGuard(QObject *parent = nullptr);

    // One check of `reading` at `nowMs` (StreamHealth::nowMs()). A reading
    // of no recording forgets everything, as reset() does.
    void check(const Reading &reading, qint64 nowMs);
    // Forgets what it measured and clears every condition: the recording
    // is over.
    void reset();
    QStringList raisedConditions() const { return m_raised.keys(); }

signals:
    void raised(const QString &id, const QString &text);
    void cleared(const QString &id);

private:
    void set(const QString &id, bool on, const QString &text);
    bool clipping(const StreamHealth &health, qint64 nowMs);
    static QString nameOf(const CaptureConnectionPtr &connection);

    struct Count
    {
        qint64 atMs;
        quint64 samples;
        quint64 clipped;
    };
    std::deque<Count> m_counts;
    // When the recording last started or resumed, the sound last rose above
    // silence; -1 for not yet.
    qint64 m_runningSinceMs = -1;
    qint64 m_soundSinceMs = -1;
    QMap<QString, QString> m_raised;
};
