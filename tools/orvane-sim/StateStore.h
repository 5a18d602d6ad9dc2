#pragma once

#include <QString>
#include <QVariantMap>

// The simulator's state folder: one property-list file per concern, the
// library of received recordings and the lock file.
class StateStore final
{
public:
    static inline const QString kUsers = QStringLiteral("users.plist");
    static inline const QString kWorkflows = QStringLiteral("workflows.plist");
    static inline const QString kCameras = QStringLiteral("cameras.plist");
    static inline const QString kRecordings = QStringLiteral("recordings.plist");
    static inline const QString kUploads = QStringLiteral("uploads.plist");
    static inline const QString kAgent = QStringLiteral("agent.plist");
    static inline const QString kFaults = QStringLiteral("faults.plist");
    // The snapshot host's port, written by orvxpreviewd (plain text).
    static inline const QString kPreviewPort = QStringLiteral("preview-port");
    // CLOCK_MONOTONIC nanoseconds of the agent's first recorded sample,
    // written by orvxagentd for each recording (plain text).
    static inline const QString kAgentFirstSample = QStringLiteral("agent-first-sample");
    // One line per request to the snapshot host (plain text).
    static inline const QString kPreviewRequests = QStringLiteral("preview-requests.log");
    // Who each snapshot was served to, a user name a line.
    static inline const QString kPreviewUsers = QStringLiteral("preview-users.log");

    explicit StateStore(QString folder)
        : m_folder(std::move(folder))
    { }

    QString folder() const { return m_folder; }
    QString filePath(const QString &name) const { return m_folder + QLatin1Char('/') + name; }
    QString lockFile() const { return filePath(QStringLiteral("lock")); }
    QString libraryFolder() const { return filePath(QStringLiteral("library")); }

    // Creates the folder; needed before the lock file can exist.
    void ensureFolder() const;

    // Writes every seed file that is missing, so a test may replace or
    // delete one file and keep the others. Call with the lock held.
    void ensureSeeded() const;

    // The dictionary in `name`; empty when the file is missing or broken.
    QVariantMap read(const QString &name) const;

    // Replaces `name` atomically; throws ToolFailure when it cannot.
    void write(const QString &name, const QVariantMap &contents) const;

private:
    QString m_folder;
};
