#pragma once

#include <QObject>
#include <QThread>
#include <QVariantMap>

#include <optional>

// The current recording's essentials, kept in the job data folder so that a
// recording outlives a crash of Lumex or of the computer: how it is made,
// the camera, the local files, when it started and how long it has run, and
// the title, description and workflow once entered. Written whole and
// atomically, in order, on a thread of its own, so the window never waits
// for the disk; removed when the recording is handed over or thrown away.
class RecordingJournal final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RecordingJournal)

public:
    // The keys of a journal entry.
    static inline const QString kRoute = QStringLiteral("Route");
    static inline const QString kUser = QStringLiteral("User");
    static inline const QString kServer = QStringLiteral("Server");
    static inline const QString kMode = QStringLiteral("Mode");
    static inline const QString kState = QStringLiteral("State");
    static inline const QString kCamera = QStringLiteral("Camera");
    static inline const QString kMicrophone = QStringLiteral("Microphone");
    static inline const QString kFiles = QStringLiteral("Files");
    static inline const QString kStartedAt = QStringLiteral("StartedAt");
    static inline const QString kElapsed = QStringLiteral("Elapsed");
    static inline const QString kSavedAt = QStringLiteral("SavedAt");
    static inline const QString kTitle = QStringLiteral("Title");
    static inline const QString kDescription = QStringLiteral("Description");
    static inline const QString kWorkflow = QStringLiteral("Workflow");

    explicit RecordingJournal(QObject *parent = nullptr);
    // Waits for what was asked to be written: the last word of a recording
    // is kept even when the application is ending.
    ~RecordingJournal() override;

    static QString path();
    // The journal left by this or an earlier run, if any.
    static std::optional<QVariantMap> read();

    // Replaces the journal with `entry`; kept to values a property list can
    // hold.
    void save(const QVariantMap &entry);
    void discard();
    // Returns once everything asked for so far is on disk.
    void flush();

private:
    QThread m_thread;
    QObject *m_writer = nullptr;
};
