#include "PodcastJob.h"

#include "Log.h"
#include "OrvaneKeys.h"

#include <cmath>

namespace {

// Whole seconds since 1970, rounded down, as a 64-bit integer's digits: never
// a fraction or an exponent.
QString wholeSecondsText(const QDateTime &date)
{
    const double seconds = static_cast<double>(date.toMSecsSinceEpoch()) / 1000.0;
    return QString::number(static_cast<qint64>(std::floor(seconds)));
}

} // namespace

PodcastJob::~PodcastJob()
{
    if (m_localAgentTask && m_localAgentTask->isRunning()) {
        Log::format(QStringLiteral("PodcastJob is being dealloc'd but there was still a running orvxagentd job "
                                   "(pid: %d). Sending SIGTERM."),
            { m_localAgentTask->processIdentifier() });
        m_localAgentTask->terminate();
    }
}

#define LX_JOB_ACCESSORS(Type, getter, setter, member)                                                                 \
    Type PodcastJob::getter() const                                                                                    \
    {                                                                                                                  \
        std::lock_guard locker(m_mutex);                                                                               \
        return member;                                                                                                 \
    }                                                                                                                  \
    void PodcastJob::setter(const Type &value)                                                                         \
    {                                                                                                                  \
        std::lock_guard locker(m_mutex);                                                                               \
        member = value;                                                                                                \
    }

LX_JOB_ACCESSORS(QString, user, setUser, m_user)
LX_JOB_ACCESSORS(QString, title, setTitle, m_title)
LX_JOB_ACCESSORS(QString, jobDescription, setJobDescription, m_jobDescription)
LX_JOB_ACCESSORS(QDateTime, startedAt, setStartedAt, m_startedAt)
LX_JOB_ACCESSORS(QDateTime, stoppedAt, setStoppedAt, m_stoppedAt)
LX_JOB_ACCESSORS(QString, server, setServer, m_server)
LX_JOB_ACCESSORS(QVariantMap, workflow, setWorkflow, m_workflow)
LX_JOB_ACCESSORS(QVariantMap, camera, setCamera, m_camera)
LX_JOB_ACCESSORS(QString, localAudioDeviceName, setLocalAudioDeviceName, m_localAudioDeviceName)
LX_JOB_ACCESSORS(std::optional<QStringList>, movieFilePaths, setMovieFilePaths, m_movieFilePaths)
LX_JOB_ACCESSORS(std::shared_ptr<LocalAgentTask>, localAgentTask, setLocalAgentTask, m_localAgentTask)
LX_JOB_ACCESSORS(QString, uploadUUID, setUploadUUID, m_uploadUUID)

#undef LX_JOB_ACCESSORS

QVariantMap PodcastJob::submissionDictionary() const
{
    std::lock_guard locker(m_mutex);
    QVariantMap dictionary;
    if (!m_user.isNull())
        dictionary.insert(OrvaneKeys::Metadata::Author, m_user);
    if (!m_title.isNull())
        dictionary.insert(OrvaneKeys::Metadata::Title, m_title);
    if (!m_jobDescription.isNull())
        dictionary.insert(OrvaneKeys::Metadata::Description, m_jobDescription);
    if (m_startedAt.isValid())
        dictionary.insert(OrvaneKeys::Metadata::RecordingStartedAt, wholeSecondsText(m_startedAt));
    if (m_stoppedAt.isValid())
        dictionary.insert(OrvaneKeys::Metadata::RecordingStoppedAt, wholeSecondsText(m_stoppedAt));
    return dictionary;
}
