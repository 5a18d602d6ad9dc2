#include "OrvaneServerInterface.h"

#include "Format.h"
#include "LXDefaultsKeys.h"
#include "LXUserDefaults.h"
#include "Log.h"
#include "OrvaneKeys.h"
#include "Paths.h"
#include "PropertyList.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <thread>

namespace {

QString modeWord(int mode)
{
    static const char *const words[] = { "Video", "Audio", "Screen" };
    return QString::fromLatin1(words[mode]);
}

QString movieFileFormat(int mode)
{
    static const char *const formats[] = { "LocalVideo-%@.mov", "LocalAudio-%@.mov", "ScreenCapture-%@.mov" };
    return QString::fromLatin1(formats[mode]);
}

// Makes the job data folder when it is missing; logs and fails when it
// cannot be made (a file in its place, no space, no permission).
bool ensureJobDataFolder(const QString &folder, Error *error)
{
    if (QFileInfo(folder).isDir())
        return true;
    if (QDir().mkpath(folder) && QFileInfo(folder).isDir())
        return true;
    const int code = errno ? errno : EEXIST;
    const QString reason = QFileInfo::exists(folder) ? QStringLiteral("a file that is not a folder is in the way")
                                                     : QString::fromLocal8Bit(std::strerror(code));
    Log::format(QStringLiteral("createDirectoryAtPath:%@ failed %@"), { folder, reason });
    setError(error, kPosixErrorDomain, code,
        lxFormat(OrvaneServerInterface::tr("The folder for recording data could not be created at %@: %@"),
            { folder, reason }));
    return false;
}

} // namespace

QString OrvaneServerInterface::writeJobDataToFile(PodcastJob *job, Error *error)
{
    QString serialiserError;
    const QByteArray data = PropertyList::toXml(job ? job->submissionDictionary() : QVariantMap(), &serialiserError);
    if (data.isNull()) {
        if (!serialiserError.isEmpty())
            setError(error, kServerInterfaceErrorDomain, 0, serialiserError);
        else
            setError(error, kServerInterfaceErrorDomain, 1,
                QStringLiteral("NSPropertyListSerialization returnd no error, but also returned no data"));
        return QString();
    }
    const QString folder = Paths::jobDataFolder();
    if (!ensureJobDataFolder(folder, error))
        return QString();
    const QString uuid = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    const QString path = folder + lxFormat(QStringLiteral("/submission-%@.plist"), { uuid });
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly) || file.write(data) != data.size() || !file.flush()) {
        const int code = errno ? errno : EIO;
        setError(error, kPosixErrorDomain, code,
            lxFormat(tr("The recording data could not be saved to %@: %@"), { path, file.errorString() }));
        file.close();
        QFile::remove(path);
        return QString();
    }
    return path;
}

int32_t OrvaneServerInterface::startLocalJob(LocalMode mode, PodcastJob *job, Error *error)
{
    const int m = static_cast<int>(mode);
    const QString word = modeWord(m);
    QString preset = QStringLiteral("Better");
    if (const auto configuration = localCameraAgentConfiguration()) {
        const QString stored = configuration->value(OrvaneKeys::Agent::RecordingCapturePreset).toString();
        if (stored.startsWith(word))
            preset = stored.mid(stored.lastIndexOf(QLatin1Char(':')) + 1);
    }
    const QString audioDevice = job ? job->localAudioDeviceName() : QString();
    const QString videoDevice = mode == LocalMode::Video && job ? job->camera().value(OrvaneKeys::Name).toString()
                                                                : OrvaneKeys::Agent::Automatic;
    setLocalAgentConfigValue(word + QLatin1Char(':') + preset, OrvaneKeys::Agent::Capture);
    setLocalAgentConfigValue(audioDevice, OrvaneKeys::Agent::AudioDevice);
    setLocalAgentConfigValue(videoDevice, OrvaneKeys::Agent::VideoDevice);

    const QString spool = LXUserDefaults::standard().valueForLumexKey(LXDefaultsKeys::LocalRecordSpoolPath);
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd-HHmmss"));
    const QString moviePath = spool + lxFormat(QStringLiteral("/%@"), { lxFormat(movieFileFormat(m), { stamp }) });
    // Stored before anything can fail, so a failed start still names its file.
    if (job)
        job->setMovieFilePaths(QStringList { moviePath });

    const int32_t mkdirStatus = makeFolder(spool);
    if (mkdirStatus != 0) {
        setError(error, kServerInterfaceErrorDomain, mkdirStatus,
            lxFormat(tr("Could not make destination folder for capture movie. mkdir returned status: %d."),
                { mkdirStatus }));
        return mkdirStatus;
    }

    const QString agent = Paths::orvxagentd();
    int spawnError = 0;
    auto task = LocalAgentTask::launch(agent, { QStringLiteral("-f"), moviePath }, &spawnError);
    if (task) {
        // An agent that fails does so at once; one still alive after the
        // grace period is taken as running.
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(kAgentStartGraceMs);
        while (task->isRunning() && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        if (task->isRunning()) {
            if (job)
                job->setLocalAgentTask(task);
            return 0;
        }
    }
    const int32_t status = task ? task->terminationStatus() : -1;
    setError(error, kServerInterfaceErrorDomain, status,
        lxFormat(tr("Could not start %@. It terminates with status: %d."), { agent, status }));
    return status;
}

int32_t OrvaneServerInterface::startLocalVideoJob(PodcastJob *job, Error *error)
{
    return startLocalJob(LocalMode::Video, job, error);
}

int32_t OrvaneServerInterface::startLocalAudioJob(PodcastJob *job, Error *error)
{
    return startLocalJob(LocalMode::Audio, job, error);
}

int32_t OrvaneServerInterface::startLocalScreenCapJob(PodcastJob *job, Error *error)
{
    return startLocalJob(LocalMode::Screen, job, error);
}

int32_t OrvaneServerInterface::stopLocalJob(PodcastJob *job, Error *error)
{
    // A job with no running agent (local video has none) counts as a failed
    // signal; nothing is signalled.
    const auto task = job ? job->localAgentTask() : nullptr;
    if (!task || task->terminate() != 0) {
        setError(error, kServerInterfaceErrorDomain, 50, tr("Local capture agent failed to stop."));
        return 50;
    }
    job->setLocalAgentTask(nullptr);
    return 0;
}

int32_t OrvaneServerInterface::pauseLocalJob(PodcastJob *job, Error *error)
{
    const auto task = job ? job->localAgentTask() : nullptr;
    const int result = task ? task->sendSignal(SIGUSR1) : -1;
    if (result != 0) {
        setError(error, kServerInterfaceErrorDomain, result,
            lxFormat(tr("Local capture agent failed to respond to pause signal with status: %d."), { result }));
    }
    return result;
}

int32_t OrvaneServerInterface::resumeLocalJob(PodcastJob *job, Error *error)
{
    const auto task = job ? job->localAgentTask() : nullptr;
    const int result = task ? task->sendSignal(SIGUSR2) : -1;
    if (result != 0) {
        setError(error, kServerInterfaceErrorDomain, result,
            lxFormat(tr("Local capture agent failed to respond to resume signal with status: %d."), { result }));
    }
    return result;
}

int32_t OrvaneServerInterface::cancelLocalJob(PodcastJob *job, Error *error)
{
    const int32_t status = stopLocalJob(job, error);
    const auto paths = job ? job->movieFilePaths() : std::nullopt;
    if (paths && !paths->isEmpty())
        QFile::remove(paths->last()); // only the last one: the others were chosen by the user
    return status;
}

int32_t OrvaneServerInterface::submitJobFiles(PodcastJob *job, Error *error)
{
    return submit(job, false, error);
}

int32_t OrvaneServerInterface::submitAndDeleteJobFiles(PodcastJob *job, Error *error)
{
    return submit(job, true, error);
}

int32_t OrvaneServerInterface::submit(PodcastJob *job, bool deleteAfterwards, Error *error)
{
    const auto paths = job ? job->movieFilePaths() : std::nullopt;
    const QString workflow = job ? job->workflow().value(OrvaneKeys::Name).toString() : QString();
    const QString dataFile = writeJobDataToFile(job, error);
    if (dataFile.isNull())
        return -1;
    if (!paths) {
        setError(error, kServerInterfaceErrorDomain, -2,
            QStringLiteral("Unexpected internal error. Unable to obtain local submission filename path(s) "
                           "from job data."));
        return -2;
    }
    if (workflow.isNull()) {
        setError(error, kServerInterfaceErrorDomain, -3,
            QStringLiteral("Unexpected internal error. Unable to obtain workflow name from job data."));
        return -3;
    }

    QString uploadUUID;
    const int32_t status = runSubmit(*paths, dataFile, workflow, deleteAfterwards, &uploadUUID, error);
    if (!uploadUUID.isNull() && job)
        job->setUploadUUID(uploadUUID);
    return status;
}

int32_t OrvaneServerInterface::resubmitFiles(
    const QStringList &files, const QString &metadataFile, const QString &workflow, QString *uploadUUID, Error *error)
{
    // The files are the only copies left of a failed upload: never deleted.
    return runSubmit(files, metadataFile, workflow, false, uploadUUID, error);
}

int32_t OrvaneServerInterface::runSubmit(const QStringList &files, const QString &dataFile, const QString &workflow,
    bool deleteAfterwards, QString *uploadUUID, Error *error)
{
    QStringList args;
    for (const QString &path : files)
        args << QStringLiteral("--file") << path;
    args << QStringLiteral("--metadata") << dataFile << QStringLiteral("--workflow") << workflow;
    if (deleteAfterwards)
        args << QStringLiteral("--delete");

    QString output, errorText;
    const int32_t status = launchCommand(QStringLiteral("--submit"), args, &output, &errorText);
    if (status != 0)
        setError(error, kServerInterfaceErrorDomain, status, output + lxFormat(QStringLiteral("\n%@"), { errorText }));
    // The upload's identifier is read even from a failed run: the files may
    // have been queued all the same.
    const QString firstLine = output.section(QLatin1Char('\n'), 0, 0);
    if (firstLine.contains(QLatin1String("Upload UUID: ")) && uploadUUID)
        *uploadUUID = firstLine.split(QLatin1Char(' ')).last();
    return status;
}
