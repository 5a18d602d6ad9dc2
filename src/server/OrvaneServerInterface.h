#pragma once

#include "Credentials.h"
#include "Error.h"
#include "PodcastJob.h"
#include "PrivilegedLauncher.h"
#include "Threads.h"

#include <QCoreApplication>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

// One signed-in session with the server: its credentials, the current job,
// and every operation against the server's tool, the local capture agent and
// the agent's configuration.
//
// Each operation has a blocking form that returns a status (0 is success)
// and fills an optional Error, and an asynchronous form that runs the
// blocking one on a new detached thread and hands the result to a callback
// on the main thread. A callback whose delegate has been destroyed is
// dropped. The interface and its job live in shared_ptrs because a worker
// thread keeps both alive until it has finished.
class OrvaneServerInterface final : public std::enable_shared_from_this<OrvaneServerInterface>
{
    Q_DECLARE_TR_FUNCTIONS(OrvaneServerInterface)

public:
    using JobCallback = std::function<void(const std::optional<Error> &error)>;
    using ListCallback
        = std::function<void(const std::optional<QVariantList> &list, const std::optional<Error> &error)>;
    using JobOperation = int32_t (OrvaneServerInterface::*)(PodcastJob *job, Error *error);

    static constexpr const char *kServerPort = "8170";

    // Missing credentials stay null.
    static std::shared_ptr<OrvaneServerInterface> create(
        const Credentials &credentials, const std::shared_ptr<PodcastJob> &job);
    ~OrvaneServerInterface();
    OrvaneServerInterface(const OrvaneServerInterface &) = delete;
    OrvaneServerInterface &operator=(const OrvaneServerInterface &) = delete;

    // Registers the defaults the interface relies on ("LocalRecordSpoolPath").
    // Runs once per process; create() calls it.
    static void initialize();

    QString server() const;
    void setServer(const QString &server);
    QString user() const;
    void setUser(const QString &user);
    QString password() const;
    void setPassword(const QString &password);
    QString cameraName() const;
    void setCameraName(const QString &name);
    QString cameraGUID() const;
    void setCameraGUID(const QString &guid);
    std::shared_ptr<PodcastJob> job() const;
    void setJob(const std::shared_ptr<PodcastJob> &job);

    // "https://HOST:8170/orvane".
    QString serverURL() const;

    // Runs the server tool with "--server URL --user USER COMMAND ARGS…" and
    // the password on its standard input. Both places receive text.
    int32_t launchCommand(
        const QString &command, const std::optional<QStringList> &args, QString *output, QString *error);
    // "/bin/mkdir -p PATH"; its exit status, -1 if mkdir cannot be run.
    static int32_t makeFolder(const QString &path);

    // Server queries.
    std::optional<QVariantList> getWorkflowsError(Error *error);
    std::optional<QVariantList> getCamerasError(Error *error);
    void getWorkflowsForDelegate(QObject *delegate, ListCallback didEnd);
    void getCamerasForDelegate(QObject *delegate, ListCallback didEnd);
    void requestPreviewUpdateForCameraName(const QString &cameraName);
    // The blocking body of the preview request: "--status CAMERA --update_preview".
    void requestPreviewUpdateInThreadForCamera(const QString &cameraName);
    // The upload list's root dictionary as (key, record) pairs in the tool's
    // own order, which a map would lose.
    using TransferStatuses = QList<std::pair<QString, QVariant>>;
    static std::optional<TransferStatuses> transferStatuses();
    static void clearCompletedTransferStatuses();

    // Remote job control.
    int32_t startRemoteVideoJob(PodcastJob *job, Error *error);
    int32_t startRemoteAudioJob(PodcastJob *job, Error *error);
    int32_t stopRemoteJob(PodcastJob *job, Error *error);
    int32_t pauseRemoteJob(PodcastJob *job, Error *error);
    int32_t resumeRemoteJob(PodcastJob *job, Error *error);
    int32_t cancelRemoteJob(PodcastJob *job, Error *error);
    void startRemoteVideoJobWithDelegate(QObject *delegate, JobCallback didEnd);
    void startRemoteAudioJobWithDelegate(QObject *delegate, JobCallback didEnd);
    void stopRemoteJobWithDelegate(QObject *delegate, JobCallback didEnd);
    void pauseRemoteJobWithDelegate(QObject *delegate, JobCallback didEnd);
    void resumeRemoteJobWithDelegate(QObject *delegate, JobCallback didEnd);
    void cancelRemoteJobWithDelegate(QObject *delegate, JobCallback didEnd);

    // Local jobs and submission.
    int32_t startLocalVideoJob(PodcastJob *job, Error *error);
    int32_t startLocalAudioJob(PodcastJob *job, Error *error);
    int32_t startLocalScreenCapJob(PodcastJob *job, Error *error);
    int32_t stopLocalJob(PodcastJob *job, Error *error);
    int32_t pauseLocalJob(PodcastJob *job, Error *error);
    int32_t resumeLocalJob(PodcastJob *job, Error *error);
    int32_t cancelLocalJob(PodcastJob *job, Error *error);
    int32_t submitJobFiles(PodcastJob *job, Error *error);
    int32_t submitAndDeleteJobFiles(PodcastJob *job, Error *error);
    void startLocalVideoJobWithDelegate(QObject *delegate, JobCallback didEnd);
    void startLocalAudioJobWithDelegate(QObject *delegate, JobCallback didEnd);
    void startLocalScreenCapJobWithDelegate(QObject *delegate, JobCallback didEnd);
    void stopLocalJobWithDelegate(QObject *delegate, JobCallback didEnd);
    void pauseLocalJobWithDelegate(QObject *delegate, JobCallback didEnd);
    void resumeLocalJobWithDelegate(QObject *delegate, JobCallback didEnd);
    void cancelLocalJobWithDelegate(QObject *delegate, JobCallback didEnd);
    void submitJobFilesWithDelegate(QObject *delegate, JobCallback didEnd);
    void submitAndDeleteJobFilesWithDelegate(QObject *delegate, JobCallback didEnd);
    // A failed upload handed to the tool again: "--submit" with its files,
    // its metadata file and `workflow` ("name"), under these credentials and
    // never deleting. The new upload's identifier goes to `uploadUUID`.
    int32_t resubmitFiles(const QStringList &files, const QString &metadataFile, const QString &workflow,
        QString *uploadUUID, Error *error);
    // The job's submission dictionary as a new "submission-UUID.plist" in the
    // job data folder; its path, or null.
    QString writeJobDataToFile(PodcastJob *job, Error *error);

    // Camera agent binding and configuration.
    int32_t bindCameraError(Error *error);
    int32_t bindCameraWithAuthorization(const std::shared_ptr<Authorization> &authorization, Error *error);
    int32_t unbindCameraWithAuthorization(const std::shared_ptr<Authorization> &authorization, Error *error);
    void bindCameraWithDelegate(QObject *delegate, JobCallback didEnd);
    void bindCameraWithAuthorization(
        const std::shared_ptr<Authorization> &authorization, QObject *delegate, JobCallback didEnd);
    void unbindCameraWithAuthorization(
        const std::shared_ptr<Authorization> &authorization, QObject *delegate, JobCallback didEnd);
    int32_t setAgentRunning(bool running, const std::shared_ptr<Authorization> &authorization, Error *error);
    void setAgentRunning(
        bool running, const std::shared_ptr<Authorization> &authorization, QObject *delegate, JobCallback didEnd);
    std::optional<QVariantMap> getCameraAgentConfigurationError(Error *error);
    std::optional<Error> setCameraAgentConfiguration(const QVariantMap &configuration);
    std::optional<QVariantMap> localCameraAgentConfiguration();
    void setGlobalAgentConfigValue(
        const QString &value, const QString &key, const std::shared_ptr<Authorization> &authorization);
    void setLocalAgentConfigValue(const QString &value, const QString &key);

    // The asynchronous pattern of job operations: `operation` runs on a new
    // detached thread with the interface's own job; its error (nullopt on
    // success) reaches `didEnd` on the main thread. The status is dropped.
    void performSelectorInBackgroundThread(JobOperation operation, QObject *delegate, JobCallback didEnd);

    // How long a just-started agent must stay alive to count as running.
    static constexpr int kAgentStartGraceMs = 300;

private:
    OrvaneServerInterface() = default;

    using ListQuery = std::optional<QVariantList> (OrvaneServerInterface::*)(Error *error);
    void runListQueryInBackground(ListQuery query, QObject *delegate, ListCallback didEnd);
    void runWithErrorInBackground(std::function<int32_t(Error *)> operation, QObject *delegate, JobCallback didEnd);

    enum class LocalMode { Video, Audio, Screen };
    int32_t startLocalJob(LocalMode mode, PodcastJob *job, Error *error);
    int32_t submit(PodcastJob *job, bool deleteAfterwards, Error *error);
    int32_t runSubmit(const QStringList &files, const QString &dataFile, const QString &workflow, bool deleteAfterwards,
        QString *uploadUUID, Error *error);
    int32_t bindOrUnbindWithAuthorization(bool bind, const std::shared_ptr<Authorization> &authorization, Error *error);
    int32_t runRemoteCommand(const QString &command, const QStringList &args, Error *error);

    mutable std::mutex m_mutex;
    QString m_server;
    QString m_user;
    QString m_password;
    QString m_cameraName;
    QString m_cameraGUID;
    std::shared_ptr<PodcastJob> m_job;
};
