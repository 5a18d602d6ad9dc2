#include "OrvaneServerInterface.h"

#include "Format.h"
#include "OrvaneKeys.h"

namespace {

QString cameraNameOf(const PodcastJob *job)
{
    return job ? job->camera().value(OrvaneKeys::Name).toString() : QString();
}

QString workflowNameOf(const PodcastJob *job)
{
    return job ? job->workflow().value(OrvaneKeys::Name).toString() : QString();
}

void setMissingCameraError(Error *error)
{
    setError(error, kServerInterfaceErrorDomain, -2,
        QStringLiteral("Unexpected internal error. Unable to obtain camera name from job data."));
}

void setMissingWorkflowError(Error *error)
{
    setError(error, kServerInterfaceErrorDomain, -3,
        QStringLiteral("Unexpected internal error. Unable to obtain workflow name from job data."));
}

} // namespace

int32_t OrvaneServerInterface::runRemoteCommand(const QString &command, const QStringList &args, Error *error)
{
    QString output, errorText;
    const int32_t status = launchCommand(command, args, &output, &errorText);
    if (status != 0)
        setError(error, kServerInterfaceErrorDomain, status, output + lxFormat(QStringLiteral("\n%@"), { errorText }));
    return status;
}

int32_t OrvaneServerInterface::startRemoteVideoJob(PodcastJob *job, Error *error)
{
    const QString camera = cameraNameOf(job);
    if (camera.isNull())
        return -2; // no error on purpose: callers of the asynchronous form rely on hearing success here
    return runRemoteCommand(
        QStringLiteral("--start"), { camera, QStringLiteral("--delay"), QStringLiteral("3") }, error);
}

int32_t OrvaneServerInterface::startRemoteAudioJob(PodcastJob *job, Error *error)
{
    const QString camera = cameraNameOf(job);
    if (camera.isNull())
        return -2; // as for video: reported to the delegate as success
    return runRemoteCommand(QStringLiteral("--start"),
        { camera, QStringLiteral("--audio_only"), QStringLiteral("--delay"), QStringLiteral("3") }, error);
}

int32_t OrvaneServerInterface::pauseRemoteJob(PodcastJob *job, Error *error)
{
    const QString camera = cameraNameOf(job);
    if (camera.isNull()) {
        setMissingCameraError(error);
        return -2;
    }
    return runRemoteCommand(QStringLiteral("--pause"), { camera }, error);
}

int32_t OrvaneServerInterface::resumeRemoteJob(PodcastJob *job, Error *error)
{
    const QString camera = cameraNameOf(job);
    if (camera.isNull()) {
        setMissingCameraError(error);
        return -2;
    }
    return runRemoteCommand(QStringLiteral("--resume"), { camera }, error);
}

int32_t OrvaneServerInterface::cancelRemoteJob(PodcastJob *job, Error *error)
{
    const QString camera = cameraNameOf(job);
    if (camera.isNull()) {
        setMissingCameraError(error);
        return -2;
    }
    return runRemoteCommand(QStringLiteral("--cancel"), { camera }, error);
}

int32_t OrvaneServerInterface::stopRemoteJob(PodcastJob *job, Error *error)
{
    const QString camera = cameraNameOf(job);
    const QString workflow = workflowNameOf(job);
    // The metadata is written first, whatever else is missing.
    const QString dataFile = writeJobDataToFile(job, error);
    if (!dataFile.isNull() && !camera.isNull() && !workflow.isNull()) {
        return runRemoteCommand(QStringLiteral("--stop"),
            { camera, QStringLiteral("--metadata"), dataFile, QStringLiteral("--workflow"), workflow }, error);
    }
    if (dataFile.isNull())
        return -1;
    if (camera.isNull()) {
        setMissingCameraError(error);
        return -2;
    }
    setMissingWorkflowError(error);
    return -3;
}
