#pragma once

#include "StateStore.h"

#include <QVariantList>

// The cameras the simulated server drives, and the recording each one is
// making. The seeded rooms come from cameras.plist; a local agent bound with
// "--bind" joins them, online only while the agent runs. Recording state is
// kept per camera in recordings.plist.
class RemoteCameras final
{
public:
    explicit RemoteCameras(const StateStore &store);

    // Where "preview_url" points when no snapshot host has recorded its port.
    static constexpr quint16 kDefaultPreviewPort = 8171;

    bool contains(const QString &name) const;
    // When the camera was last asked for a new snapshot (0: never).
    double previewRequestedAt(const QString &name) const;

    // The "cameras" array of "--listcameras".
    QVariantList listing() const;

    // All take the current time in seconds since the epoch and throw
    // ToolFailure when the camera is unknown or in the wrong state.
    void requestPreview(const QString &name, double now);
    void start(const QString &name, bool audioOnly, int delaySeconds, const QString &user, double now);
    void pause(const QString &name, double now);
    void resume(const QString &name, double now);

    // Ends the recording (for stop and cancel alike) and returns its
    // session: "audio_only", "user", "started_at", "recorded_seconds".
    QVariantMap finish(const QString &name, const QString &verb, double now);

    void save() const;

private:
    enum class State { Idle, Recording, Paused };

    QVariantMap session(const QString &name) const { return m_sessions.value(name).toMap(); }
    State state(const QString &name) const;
    bool isRoom(const QString &name) const;
    bool isOnline(const QString &name) const;
    void requireKnown(const QString &name) const;
    void setState(QVariantMap &session, State state) const;
    static double elapsed(const QVariantMap &session, double now);

    const StateStore &m_store;
    QVariantList m_rooms;
    QString m_agentCamera;
    bool m_agentRunning = false;
    QVariantMap m_sessions;
    quint16 m_previewPort = kDefaultPreviewPort;
};
