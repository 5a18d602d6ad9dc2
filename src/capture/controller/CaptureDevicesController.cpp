#include "CaptureDevicesController.h"

#include "CaptureDeviceRegistry.h"
#include "LXDefaultsKeys.h"
#include "LXUserDefaults.h"
#include "Log.h"
#include "PodcastJob.h"
#include "QTCaptureDeviceAdditions.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace {

QString deviceText(const CaptureDevicePtr &device)
{
    return device ? device->localizedDisplayName() : QString();
}

// A URL as the system's logs showed it: its encoded form ("%20" for a space,
// as in the default spool folder).
QString urlText(const QUrl &url)
{
    return url.isEmpty() ? QString() : url.toString(QUrl::FullyEncoded);
}

// An error's user-info dictionary as "%@" shows it.
QString userInfoText(const QString &description)
{
    return lxDescription(QVariantMap { { QStringLiteral("NSLocalizedDescription"), description } });
}

} // namespace

CaptureDevicesController::CaptureDevicesController(QObject *parent, FirstRefresh first)
    : QObject(parent)
{
    if (first == FirstRefresh::Now)
        refreshDevices();
    m_deleteMovieFileWhenItFinishesRecording = false;
}

CaptureDevicesController::~CaptureDevicesController()
{
    if (m_movieFileOutput)
        m_movieFileOutput->setDelegate(nullptr);
    setCameras({});
    setMicrophones({});
}

QList<CaptureDevicePtr> CaptureDevicesController::unboundDevicesWithMediaTypes(const QStringList &mediaTypes)
{
    QList<CaptureDevicePtr> kept;
    for (const CaptureDevicePtr &device : QTCaptureDeviceAdditions::inputDevicesWithMediaTypes(mediaTypes))
        if (!QTCaptureDeviceAdditions::isBoundToOrvaneServer(*device))
            kept.append(device);
    return kept;
}

void CaptureDevicesController::refreshDevices()
{
    if (!m_watchingDevices) {
        // The registry starts GStreamer and its device monitor on first use.
        m_watchingDevices = true;
        auto &registry = CaptureDeviceRegistry::instance();
        connect(&registry, &CaptureDeviceRegistry::deviceWasConnected, this, &CaptureDevicesController::refreshDevices);
        connect(
            &registry, &CaptureDeviceRegistry::deviceWasDisconnected, this, &CaptureDevicesController::refreshDevices);
    }
    setCameras(unboundDevicesWithMediaTypes({ MediaType::Video, MediaType::Muxed }));
    setMicrophones(unboundDevicesWithMediaTypes({ MediaType::Sound, MediaType::Muxed }));
    if (m_controller)
        m_controller->rebuildInputDevicesList();
}

void CaptureDevicesController::setupRecordingForVideoDeviceUniqueID(const QString &videoID, const QString &audioID)
{
    CaptureDevicePtr camera, microphone;
    for (const CaptureDevicePtr &device : std::as_const(m_cameras)) {
        if (device->uniqueID() == videoID) {
            camera = device;
            break;
        }
    }
    for (const CaptureDevicePtr &device : std::as_const(m_microphones)) {
        if (device->uniqueID() == audioID) {
            microphone = device;
            break;
        }
    }
    setCaptureSession(std::make_shared<CaptureSession>());
    // A failure while only previewing is logged; a recording that runs or
    // waits for the session ends through the output's didFinish.
    connect(m_captureSession.get(), &CaptureSession::runtimeError, this, [](const Error &error) {
        Log::format(QStringLiteral("Capture session stopped due to error: %@"), { describeError(error) });
    });
    connect(m_captureSession.get(), &CaptureSession::inputLost, this,
        [this](const CaptureDevicePtr &device, const CaptureDevicePtr &standIn, const Error &error) {
            Log::format(QStringLiteral("Recording goes on without %@: %@"),
                { device->localizedDisplayName(), describeError(error) });
            emit recordingDeviceLost(device->localizedDisplayName(),
                device->hasMediaType(MediaType::Video) || device->hasMediaType(MediaType::Muxed),
                standIn ? standIn->localizedDisplayName() : QString());
        });
    const std::optional<Error> error = initAudioDevice(microphone, camera);
    if (!error) {
        initOutputFile();
        m_captureSession->startRunning();
        return;
    }
    // Devices opened on the way stay open; the next setup reuses them.
    setCaptureSession(nullptr);
    if (m_controller)
        m_controller->alertUserToError(*error);
}

// The screen's and the camera's movie start, pause, resume and end at one
// running time: the first call of a pair can take a while (a finish does
// work), and the second must not cut its file later for it.
CaptureDevicesController::SameInstant::SameInstant(CaptureDevicesController *controller)
    : m_outputs { controller->m_screenFileOutput, controller->m_movieFileOutput }
{
    const auto session = controller->m_captureSession;
    const std::optional<GstClockTime> now
        = session && session->isRunning() ? std::optional(session->runningTime()) : std::nullopt;
    for (const auto &output : m_outputs)
        if (output)
            output->setActionTime(now);
}

CaptureDevicesController::SameInstant::~SameInstant()
{
    for (const auto &output : m_outputs)
        if (output)
            output->setActionTime(std::nullopt);
}

void CaptureDevicesController::setupRecordingForScreenWithVideoDeviceUniqueID(
    const CaptureDevicePtr &screen, const QString &videoID, const QString &audioID)
{
    setupRecordingForVideoDeviceUniqueID(videoID, audioID);
    if (!m_captureSession)
        return;
    Error error;
    const auto input = std::make_shared<CaptureDeviceInput>(screen);
    m_captureSession->setStreamsEveryVideo(true);
    if (!screen->open(&error) || !m_captureSession->addInput(input, &error)) {
        Log::format(QStringLiteral("Error adding the screen: %@"), { error.localizedDescription });
        teardown();
        if (m_controller)
            m_controller->alertUserToError(error);
        return;
    }
    m_screenFileOutput = std::make_shared<CaptureMovieFileOutput>();
    QList<CaptureConnectionPtr> chosen = input->connections();
    for (const CaptureConnectionPtr &connection : m_movieFileOutput->connections())
        if (connection->mediaType() == MediaType::Sound)
            chosen << connection;
    m_screenFileOutput->setConnections(chosen);
    if (!m_captureSession->addOutput(m_screenFileOutput, &error)) {
        teardown();
        if (m_controller)
            m_controller->alertUserToError(error);
        return;
    }
    for (const CaptureConnectionPtr &connection : chosen)
        m_screenFileOutput->setCompressionOptions(
            CompressionOptions::compressionOptionsWithIdentifier(connection->mediaType() == MediaType::Video
                    ? CompressionOptions::ScreenH264Video
                    : CompressionOptions::HighQualityAACAudio),
            connection);
    m_screenFileOutput->setDelegate(this);
    // One microphone, encoded once, into both movies.
    m_screenFileOutput->setSharesSoundEncoding(true);
    m_movieFileOutput->setSharesSoundEncoding(true);
    if (m_controller)
        if (const auto job = m_controller->job()) {
            const QString camera = job->movieFilePaths().value_or(QStringList()).value(0);
            const QFileInfo file(camera);
            const QString screenFile = QStringLiteral("ScreenCapture-") + file.fileName().section(QLatin1Char('-'), 1);
            job->setMovieFilePaths(QStringList { file.dir().filePath(screenFile), camera });
        }
}

std::optional<Error> CaptureDevicesController::initAudioDevice(
    const CaptureDevicePtr &audioDevice, const CaptureDevicePtr &videoDevice)
{
    Error error;
    const bool audioIsMuxed = audioDevice && audioDevice->hasMediaType(MediaType::Muxed);
    const bool videoIsMuxed = videoDevice && videoDevice->hasMediaType(MediaType::Muxed);
    if (!audioDevice || !videoDevice) {
        Log::format(QStringLiteral("initAudioDevice:%@ videoDevice:%@ -- cannot be nil"),
            { deviceText(audioDevice), deviceText(videoDevice) });
        return Error { kLumexErrorDomain, 1, tr("Cannot find the audio and video devices") };
    }

    if (audioDevice->uniqueID() == videoDevice->uniqueID()) {
        if (!videoDevice->open(&error)) {
            Log::format(QStringLiteral("initVideoAndAudioDevices: Error initializing audio/video device: %@"),
                { error.localizedDescription });
            return error;
        }
        const auto input = std::make_shared<CaptureDeviceInput>(videoDevice);
        if (!m_captureSession->addInput(input, &error)) {
            // Only logged, unlike every other failure here: the session runs
            // without the input and the user sees an empty preview.
            Log::format(QStringLiteral("initVideoAndAudioDevices: Error adding audio/video device input: %@"),
                { error.localizedDescription });
        }
        return std::nullopt;
    }

    if (!audioDevice->open(&error)) {
        Log::format(QStringLiteral("initVideoAndAudioDevices: Error initializing audio device: %@"),
            { error.localizedDescription });
        return error;
    }
    if (!videoDevice->open(&error)) {
        Log::format(QStringLiteral("initVideoAndAudioDevices: Error initializing video device: %@"),
            { error.localizedDescription });
        return error;
    }
    const auto audioInput = std::make_shared<CaptureDeviceInput>(audioDevice);
    const auto videoInput = std::make_shared<CaptureDeviceInput>(videoDevice);
    if (audioIsMuxed)
        for (const CaptureConnectionPtr &connection : audioInput->connections())
            if (connection->mediaType() != MediaType::Sound)
                connection->setEnabled(false);

    const auto addAudio = [&]() -> std::optional<Error> {
        if (m_captureSession->addInput(audioInput, &error))
            return std::nullopt;
        Log::format(QStringLiteral("initVideoAndAudioDevices: Error adding audio device input: %@"),
            { error.localizedDescription });
        return error;
    };
    const auto addVideo = [&]() -> std::optional<Error> {
        if (m_captureSession->addInput(videoInput, &error))
            return std::nullopt;
        Log::format(QStringLiteral("initVideoAndAudioDevices: Error adding video device input: %@"),
            { error.localizedDescription });
        return error;
    };
    // A muxed camera's own sound would otherwise be the session's first
    // sound stream; adding the chosen microphone first keeps it in front.
    if (videoIsMuxed) {
        for (const CaptureConnectionPtr &connection : videoInput->connections())
            if (connection->mediaType() != MediaType::Video)
                connection->setEnabled(false);
        if (auto failure = addAudio())
            return failure;
        if (auto failure = addVideo())
            return failure;
    } else {
        if (auto failure = addVideo())
            return failure;
        if (auto failure = addAudio())
            return failure;
    }
    return std::nullopt;
}

void CaptureDevicesController::initOutputFile()
{
    const QString spoolPath = LXUserDefaults::standard().valueForLumexKey(LXDefaultsKeys::LocalRecordSpoolPath);
    // The time of set-up, not of the start of recording.
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd-HHmmss"));
    const QString fileName = lxFormat(QStringLiteral("LocalVideo-%@.mov"), { stamp });
    const QString path = spoolPath + lxFormat(QStringLiteral("/%@"), { fileName });
    if (m_controller)
        if (const auto job = m_controller->job())
            job->setMovieFilePaths(QStringList { path });

    m_movieFileOutput = std::make_shared<CaptureMovieFileOutput>();
    Error error;
    if (!m_captureSession->addOutput(m_movieFileOutput, &error))
        throw InitOutputFileError(
            lxFormat(QStringLiteral("Error adding movie file output: %@"), { error.localizedDescription }));

    const QStringList videoIdentifiers
        = CompressionOptions::compressionOptionsIdentifiersForMediaType(MediaType::Video);
    const QStringList soundIdentifiers
        = CompressionOptions::compressionOptionsIdentifiersForMediaType(MediaType::Sound);
    for (const CaptureConnectionPtr &connection : m_movieFileOutput->connections()) {
        QString wanted;
        const QStringList *available = nullptr;
        if (connection->mediaType() == MediaType::Video) {
            wanted = CompressionOptions::SD480SizeMPEG4Video;
            available = &videoIdentifiers;
        } else if (connection->mediaType() == MediaType::Sound) {
            wanted = CompressionOptions::HighQualityAACAudio;
            available = &soundIdentifiers;
        } else {
            Log::format(QStringLiteral("No compression requested for %@"), { connection->mediaType() });
            continue;
        }
        // Missing on this machine: the platform default stays, silently.
        if (available->contains(wanted))
            m_movieFileOutput->setCompressionOptions(
                CompressionOptions::compressionOptionsWithIdentifier(wanted), connection);
    }
    m_movieFileOutput->setDelegate(this);
}

void CaptureDevicesController::beginRecording()
{
    QString path;
    if (m_controller)
        if (const auto job = m_controller->job())
            if (const auto paths = job->movieFilePaths(); paths && !paths->isEmpty())
                path = paths->last();
    const QUrl url = path.isNull() ? QUrl() : QUrl::fromLocalFile(path);
    Log::format(QStringLiteral("Starting capture: %@"), { urlText(url) });
    // A recording is not lost to an unplugged device: it goes on without it.
    if (m_captureSession)
        m_captureSession->setContinuesWithoutFailedDevices(true);
    const SameInstant together(this);
    if (m_screenFileOutput && m_controller && m_controller->job())
        m_screenFileOutput->recordToOutputFileURL(
            QUrl::fromLocalFile(m_controller->job()->movieFilePaths().value_or(QStringList()).value(0)));
    if (m_movieFileOutput)
        m_movieFileOutput->recordToOutputFileURL(url);
}

void CaptureDevicesController::pauseRecording()
{
    Log::format(QStringLiteral("Pausing capture"));
    const SameInstant together(this);
    for (CaptureMovieFileOutput *output : { m_screenFileOutput.get(), m_movieFileOutput.get() })
        if (output)
            output->pauseRecording();
}

void CaptureDevicesController::resumeRecording()
{
    Log::format(QStringLiteral("Resuming capture"));
    const SameInstant together(this);
    for (CaptureMovieFileOutput *output : { m_screenFileOutput.get(), m_movieFileOutput.get() })
        if (output)
            output->resumeRecording();
}

void CaptureDevicesController::stopRecording()
{
    Log::format(QStringLiteral("Stopping capture"));
    m_deleteMovieFileWhenItFinishesRecording = false;
    finishMovies(CaptureMovieFileOutput::FinishMode::Keep);
}

void CaptureDevicesController::cancelRecording()
{
    Log::format(QStringLiteral("Stopping capture and discarding movie file"));
    m_deleteMovieFileWhenItFinishesRecording = true;
    finishMovies(CaptureMovieFileOutput::FinishMode::Discard);
}

void CaptureDevicesController::finishMovies(CaptureMovieFileOutput::FinishMode mode)
{
    m_unfinishedMovies = 0;
    m_firstFinishError.reset();
    for (CaptureMovieFileOutput *output : { m_screenFileOutput.get(), m_movieFileOutput.get() })
        m_unfinishedMovies += output && output->isRecording() ? 1 : 0;
    m_finishing = m_unfinishedMovies > 0;
    const SameInstant together(this);
    for (CaptureMovieFileOutput *output : { m_screenFileOutput.get(), m_movieFileOutput.get() })
        if (output)
            output->recordToOutputFileURL(QUrl(), mode);
}

bool CaptureDevicesController::isRecording() const
{
    return m_finishing || (m_movieFileOutput && m_movieFileOutput->isRecording());
}

void CaptureDevicesController::teardown()
{
    if (m_captureSession && m_captureSession->isRunning())
        m_captureSession->stopRunning();
    if (m_captureSession) {
        m_captureSession->removeOutput(m_movieFileOutput);
        if (m_screenFileOutput)
            m_captureSession->removeOutput(m_screenFileOutput);
        for (const CaptureInputPtr &input : m_captureSession->inputs()) {
            m_captureSession->removeInput(input);
            if (input->device()->isOpen())
                input->device()->close();
        }
    }
    setCaptureSession(nullptr);
    m_screenFileOutput.reset();
}

void CaptureDevicesController::captureOutputWillFinishRecording(
    CaptureMovieFileOutput *, const QUrl &url, const QList<CaptureConnectionPtr> &, const std::optional<Error> &)
{
    Log::format(QStringLiteral("Will finish recording to: %@"), { urlText(url) });
}

void CaptureDevicesController::captureOutputDidFinishRecording(
    CaptureMovieFileOutput *, const QUrl &url, const QList<CaptureConnectionPtr> &, const std::optional<Error> &error)
{
    Log::format(QStringLiteral("Finished recording to: %@"), { urlText(url) });
    if (error)
        Log::format(QStringLiteral("Stopped due to error: %@: %@"),
            { describeError(*error), userInfoText(error->localizedDescription) });
    if (m_deleteMovieFileWhenItFinishesRecording) {
        const QString path = url.toLocalFile();
        if (::unlink(QFile::encodeName(path).constData()) == 0)
            Log::format(QStringLiteral("Successfully deleted cancelled recording at %@"), { path });
        else
            Log::format(QStringLiteral("Could not delete recording at %@ (%@)"),
                { path, userInfoText(QString::fromLocal8Bit(std::strerror(errno))) });
    }
    // The screen's and the camera's movie end together, as one recording.
    if (!m_firstFinishError)
        m_firstFinishError = error;
    if (--m_unfinishedMovies > 0)
        return;
    const std::optional<Error> failure = std::exchange(m_firstFinishError, std::nullopt);
    teardown();
    m_finishing = false;
    if (!m_deleteMovieFileWhenItFinishesRecording && m_controller)
        m_controller->localJobDidStop(failure);
    emit recordingFinished();
}
