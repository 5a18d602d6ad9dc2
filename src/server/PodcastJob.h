#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <memory>
#include <mutex>
#include <optional>

#include "LocalAgentTask.h"

// The record of one recording and its submission. Worker threads of the
// server interface read and write it while the main thread does too, so every
// accessor takes the job's lock; nothing else happens in them.
//
// A null QString, a null QDateTime and an empty QVariantMap stand for an
// absent value. `movieFilePaths` tells "no list" (nullopt) from an empty list.
class PodcastJob final
{
public:
    PodcastJob() = default;
    ~PodcastJob();
    PodcastJob(const PodcastJob &) = delete;
    PodcastJob &operator=(const PodcastJob &) = delete;

    QString user() const;
    void setUser(const QString &user);
    QString title() const;
    void setTitle(const QString &title);
    QString jobDescription() const;
    void setJobDescription(const QString &description);
    QDateTime startedAt() const;
    void setStartedAt(const QDateTime &date);
    QDateTime stoppedAt() const;
    void setStoppedAt(const QDateTime &date);
    QString server() const;
    void setServer(const QString &server);
    QVariantMap workflow() const;
    void setWorkflow(const QVariantMap &workflow);
    QVariantMap camera() const;
    void setCamera(const QVariantMap &camera);
    QString localAudioDeviceName() const;
    void setLocalAudioDeviceName(const QString &name);
    std::optional<QStringList> movieFilePaths() const;
    void setMovieFilePaths(const std::optional<QStringList> &paths);
    std::shared_ptr<LocalAgentTask> localAgentTask() const;
    void setLocalAgentTask(const std::shared_ptr<LocalAgentTask> &task);
    QString uploadUUID() const;
    void setUploadUUID(const QString &uuid);

    // The metadata that travels with every submission: "Author", "Title",
    // "Description" and the recording's start and stop as whole seconds since
    // 1970 in plain decimal text. Absent values leave their key out.
    QVariantMap submissionDictionary() const;

private:
    mutable std::mutex m_mutex;
    QString m_user;
    QString m_title;
    QString m_jobDescription;
    QDateTime m_startedAt;
    QDateTime m_stoppedAt;
    QString m_server;
    QVariantMap m_workflow;
    QVariantMap m_camera;
    QString m_localAudioDeviceName;
    std::optional<QStringList> m_movieFilePaths;
    std::shared_ptr<LocalAgentTask> m_localAgentTask;
    QString m_uploadUUID;
};
