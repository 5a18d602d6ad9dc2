#include "OrvaneServerInterface.h"

#include "Format.h"
#include "LXDefaultsKeys.h"
#include "LXUserDefaults.h"
#include "LocalAgentTask.h"
#include "Log.h"
#include "OrvaneKeys.h"
#include "Paths.h"
#include "ProcessRunner.h"

std::shared_ptr<OrvaneServerInterface> OrvaneServerInterface::create(
    const Credentials &credentials, const std::shared_ptr<PodcastJob> &job)
{
    initialize();
    std::shared_ptr<OrvaneServerInterface> interface(new OrvaneServerInterface);
    interface->m_user = credentials.user;
    interface->m_password = credentials.password;
    interface->m_server = credentials.server;
    interface->m_job = job;
    return interface;
}

OrvaneServerInterface::~OrvaneServerInterface() = default;

void OrvaneServerInterface::initialize()
{
    static std::once_flag once;
    std::call_once(once, [] { LXUserDefaults::standard().registerDefaults(LXDefaultsKeys::LocalRecordSpoolPath); });
}

#define LX_INTERFACE_ACCESSORS(Type, getter, setter, member)                                                           \
    Type OrvaneServerInterface::getter() const                                                                         \
    {                                                                                                                  \
        std::lock_guard locker(m_mutex);                                                                               \
        return member;                                                                                                 \
    }                                                                                                                  \
    void OrvaneServerInterface::setter(const Type &value)                                                              \
    {                                                                                                                  \
        std::lock_guard locker(m_mutex);                                                                               \
        member = value;                                                                                                \
    }

LX_INTERFACE_ACCESSORS(QString, server, setServer, m_server)
LX_INTERFACE_ACCESSORS(QString, user, setUser, m_user)
LX_INTERFACE_ACCESSORS(QString, password, setPassword, m_password)
LX_INTERFACE_ACCESSORS(QString, cameraName, setCameraName, m_cameraName)
LX_INTERFACE_ACCESSORS(QString, cameraGUID, setCameraGUID, m_cameraGUID)
LX_INTERFACE_ACCESSORS(std::shared_ptr<PodcastJob>, job, setJob, m_job)

#undef LX_INTERFACE_ACCESSORS

QString OrvaneServerInterface::serverURL() const
{
    return QStringLiteral("https://") + lxFormat(QStringLiteral("%@:%@/orvane"), { server(), kServerPort });
}

int32_t OrvaneServerInterface::launchCommand(
    const QString &command, const std::optional<QStringList> &args, QString *output, QString *error)
{
    const QString tool = Paths::orvxexec();
    if (!isExecutableFile(tool)) {
        if (output)
            *output = lxFormat(tr("%@ tool cannot be found."), { tool });
        return 10;
    }
    QStringList arguments { QStringLiteral("--server"), serverURL(), QStringLiteral("--user"), user(), command };
    if (args)
        arguments += *args;

    QByteArray outputBytes;
    const int32_t status = runExecutable(tool, arguments, password(), &outputBytes, error);
    if (output)
        *output = outputBytes.isEmpty() ? QStringLiteral("") : QString::fromUtf8(outputBytes); // empty, not nil
    if (status != 0 && error && !error->isEmpty())
        Log::format(QStringLiteral("/usr/bin/orvx (%@) error (%d):\n%@"), { command, status, *error });
    return status;
}

int32_t OrvaneServerInterface::makeFolder(const QString &path)
{
    return runExecutable(Paths::mkdirTool(), QStringList { QStringLiteral("-p"), path }, QString(), nullptr, nullptr);
}

void OrvaneServerInterface::performSelectorInBackgroundThread(
    JobOperation operation, QObject *delegate, JobCallback didEnd)
{
    // The thread holds the interface and the job until it has finished.
    auto job = this->job();
    auto self = shared_from_this();
    runWithErrorInBackground(
        [self, job, operation](Error *error) { return (self.get()->*operation)(job.get(), error); }, delegate,
        std::move(didEnd));
}

void OrvaneServerInterface::runWithErrorInBackground(
    std::function<int32_t(Error *)> operation, QObject *delegate, JobCallback didEnd)
{
    auto self = shared_from_this();
    runInBackground(
        delegate,
        [self, operation]() -> std::optional<Error> {
            Error error; // set when it has a domain
            operation(&error); // the status never reaches the delegate
            return error.domain.isEmpty() ? std::nullopt : std::optional<Error>(error);
        },
        std::move(didEnd),
        [](const QString &failure) {
            return std::optional<Error>(Error { kServerInterfaceErrorDomain, -1, failure });
        });
}

#define LX_ASYNC_JOB_OPERATION(name, operation)                                                                        \
    void OrvaneServerInterface::name(QObject *delegate, JobCallback didEnd)                                            \
    {                                                                                                                  \
        performSelectorInBackgroundThread(&OrvaneServerInterface::operation, delegate, std::move(didEnd));             \
    }

LX_ASYNC_JOB_OPERATION(startRemoteVideoJobWithDelegate, startRemoteVideoJob)
LX_ASYNC_JOB_OPERATION(startRemoteAudioJobWithDelegate, startRemoteAudioJob)
LX_ASYNC_JOB_OPERATION(stopRemoteJobWithDelegate, stopRemoteJob)
LX_ASYNC_JOB_OPERATION(pauseRemoteJobWithDelegate, pauseRemoteJob)
LX_ASYNC_JOB_OPERATION(resumeRemoteJobWithDelegate, resumeRemoteJob)
LX_ASYNC_JOB_OPERATION(cancelRemoteJobWithDelegate, cancelRemoteJob)
LX_ASYNC_JOB_OPERATION(startLocalVideoJobWithDelegate, startLocalVideoJob)
LX_ASYNC_JOB_OPERATION(startLocalAudioJobWithDelegate, startLocalAudioJob)
LX_ASYNC_JOB_OPERATION(startLocalScreenCapJobWithDelegate, startLocalScreenCapJob)
LX_ASYNC_JOB_OPERATION(pauseLocalJobWithDelegate, pauseLocalJob)
LX_ASYNC_JOB_OPERATION(resumeLocalJobWithDelegate, resumeLocalJob)
LX_ASYNC_JOB_OPERATION(cancelLocalJobWithDelegate, cancelLocalJob)
LX_ASYNC_JOB_OPERATION(submitJobFilesWithDelegate, submitJobFiles)
LX_ASYNC_JOB_OPERATION(submitAndDeleteJobFilesWithDelegate, submitAndDeleteJobFiles)

#undef LX_ASYNC_JOB_OPERATION

namespace {
// The agent rewrites its fragmented movie into a plain one when it stops,
// which takes a while for hours of recording.
constexpr std::chrono::milliseconds kAgentFinishLimit = std::chrono::minutes(10);
} // namespace

void OrvaneServerInterface::stopLocalJobWithDelegate(QObject *delegate, JobCallback didEnd)
{
    // The stop itself only signals the agent, which then finishes the movie
    // on its own. The completion is what hands the movie to the upload, so
    // it waits here, off the main thread, until the agent has written the
    // file and exited: an upload must never copy a movie still being written.
    auto job = this->job();
    auto self = shared_from_this();
    runWithErrorInBackground(
        [self, job](Error *error) {
            const auto task = job ? job->localAgentTask() : nullptr;
            const int32_t status = self->stopLocalJob(job.get(), error);
            if (status == 0 && task && !task->waitUntilExit(kAgentFinishLimit))
                Log::format(QStringLiteral("orvxagentd (pid: %d) is still finishing its movie after %d seconds; "
                                           "submitting it as it is."),
                    { int(task->processIdentifier()), int(kAgentFinishLimit.count() / 1000) });
            return status;
        },
        delegate, std::move(didEnd));
}
