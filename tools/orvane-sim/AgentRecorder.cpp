#include "AgentRecorder.h"

#include "AgentConfig.h"
#include "CaptureDeviceRegistry.h"
#include "CaptureMovieFileOutput.h"
#include "Console.h"
#include "DisplaySession.h"
#include "FaultFile.h"
#include "OrvaneKeys.h"
#include "Paths.h"
#include "ScreenCastPortal.h"
#include "ToolFailure.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSocketNotifier>

#include <csignal>
#include <pthread.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace {

sigset_t controlSignals()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGUSR1);
    sigaddset(&set, SIGUSR2);
    sigaddset(&set, SIGTERM);
    sigaddset(&set, SIGINT);
    return set;
}

// Ends the event loop with a status once the file is finished.
class FinishWatcher final : public CaptureFileOutputDelegate
{
public:
    void captureOutputWillFinishRecording(CaptureMovieFileOutput *, const QUrl &, const QList<CaptureConnectionPtr> &,
        const std::optional<Error> &) override
    { }
    void captureOutputDidFinishRecording(CaptureMovieFileOutput *, const QUrl &url, const QList<CaptureConnectionPtr> &,
        const std::optional<Error> &error) override
    {
        if (error)
            Console::err(QStringLiteral("orvxagentd: recording to %1 failed: %2\n")
                             .arg(url.toLocalFile(), error->localizedDescription));
        QCoreApplication::exit(error ? AgentRecorder::kRecordingFailed : 0);
    }
};

bool isAutomatic(const QString &device)
{
    return device.isEmpty() || device == QLatin1String("(null)") || device == OrvaneKeys::Agent::Automatic;
}

bool offersVideo(const CaptureDevicePtr &device)
{
    return device && (device->hasMediaType(MediaType::Video) || device->hasMediaType(MediaType::Muxed));
}

bool offersSound(const CaptureDevicePtr &device)
{
    return device && (device->hasMediaType(MediaType::Sound) || device->hasMediaType(MediaType::Muxed));
}

// The client writes the job camera's "name" as the video device; a
// uniqueID is taken too.
CaptureDevicePtr cameraNamed(const QString &name)
{
    auto &registry = CaptureDeviceRegistry::instance();
    if (const CaptureDevicePtr byID = registry.deviceWithUniqueID(name); offersVideo(byID))
        return byID;
    for (const CaptureDevicePtr &device : registry.devices())
        if (device->localizedDisplayName() == name && offersVideo(device))
            return device;
    return nullptr;
}

// Children (GStreamer's plugin scanner) must not inherit the blocked
// control signals, or a SIGTERM to them would never arrive.
void unblockControlSignalsInChild()
{
    const sigset_t set = controlSignals();
    sigprocmask(SIG_UNBLOCK, &set, nullptr);
}

// A Wayland compositor shows its screen to no client but through the
// desktop portal, which may ask the user first: waits for that answer.
std::optional<Error> shareScreen(ScreenCastPortal &portal)
{
    std::optional<Error> result;
    QEventLoop loop;
    portal.requestStream([&](const std::optional<Error> &error) {
        result = error;
        loop.quit();
    });
    loop.exec();
    return result;
}

} // namespace

void AgentRecorder::blockControlSignals()
{
    pthread_atfork(nullptr, nullptr, unblockControlSignalsInChild);
    const sigset_t set = controlSignals();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

int AgentRecorder::run(const QStringList &arguments)
{
    if (arguments.size() != 2 || arguments[0] != QLatin1String("-f") || arguments[1].isEmpty()) {
        Console::err(QStringLiteral("usage: orvxagentd -f MOVIEPATH\n"));
        return ToolFailure::kUsage;
    }
    const QString moviePath = arguments[1];

    const StateStore store(m_environment.stateFolder());
    try {
        const Fault fault = FaultFile(store).take(QStringLiteral("orvxagentd"), FaultFile::Phase::Any);
        if (!fault.isNull()) {
            fault.perform();
            const int status = fault.exitStatus().value_or(kFaultStatus);
            Console::err(
                QStringLiteral("orvxagentd: cannot start capture (simulated failure), exiting with status %1.\n")
                    .arg(status));
            return status;
        }
    } catch (const ToolFailure &failure) {
        Console::err(failure.message());
        return failure.status();
    }

    // GStreamer loads its registry here, perhaps starting its plugin scanner
    // through posix_spawn, which skips fork handlers: the scanner must get
    // the default mask. gst_init starts no thread, so none keeps it; a stop
    // that arrives meanwhile ends the agent before it records anything.
    {
        const sigset_t set = controlSignals();
        pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
        Gst::ensureInitialized();
        pthread_sigmask(SIG_BLOCK, &set, nullptr);
    }

    const QVariantMap configuration = AgentConfig(Paths::userAgentConfig()).values();
    const QString capture = configuration.value(OrvaneKeys::Agent::Capture).toString();
    const QString mode = capture.section(QLatin1Char(':'), 0, 0);
    const QString preset = capture.section(QLatin1Char(':'), -1);
    const QString audioID = configuration.value(OrvaneKeys::Agent::AudioDevice).toString();
    const QString videoID = configuration.value(OrvaneKeys::Agent::VideoDevice).toString();

    auto &registry = CaptureDeviceRegistry::instance();
    const CaptureDevicePtr microphone
        = isAutomatic(audioID) ? registry.defaultMicrophone() : registry.deviceWithUniqueID(audioID);
    if (!offersSound(microphone)) {
        Console::err(isAutomatic(audioID) ? QStringLiteral("orvxagentd: no microphone to record from.\n")
                                          : QStringLiteral("orvxagentd: no microphone \"%1\".\n").arg(audioID));
        return kNoSource;
    }
    CaptureDevicePtr picture;
    // Outlives the session: its PipeWire remote is the screen's source.
    ScreenCastPortal portal;
    if (mode == QLatin1String("Screen")) {
        const bool wayland = DisplaySession::isWayland();
        if (!wayland && qEnvironmentVariableIsEmpty("DISPLAY")) {
            Console::err(QStringLiteral("orvxagentd: no display to record (DISPLAY is not set).\n"));
            return kNoSource;
        }
        picture = std::make_shared<CaptureDevice>(
            CaptureDevice::Kind::Screen, QStringLiteral("screen"), QStringLiteral("Screen"));
        if (wayland) {
            if (const std::optional<Error> error = shareScreen(portal)) {
                Console::err(
                    QStringLiteral("orvxagentd: cannot record the screen: %1\n").arg(error->localizedDescription));
                return kNoSource;
            }
            picture->setPipeWireStream(portal.stream()->fd, portal.stream()->nodeId);
        }
    } else if (mode == QLatin1String("Video")) {
        if (isAutomatic(videoID)) {
            QList<CaptureDevicePtr> cameras = registry.devicesWithMediaType(MediaType::Video);
            cameras += registry.devicesWithMediaType(MediaType::Muxed);
            picture = cameras.value(0);
        } else {
            picture = cameraNamed(videoID);
        }
        if (!picture) {
            Console::err(isAutomatic(videoID) ? QStringLiteral("orvxagentd: no camera to record from.\n")
                                              : QStringLiteral("orvxagentd: no camera \"%1\".\n").arg(videoID));
            return kNoSource;
        }
    }

    auto session = std::make_shared<CaptureSession>();
    for (const CaptureDevicePtr &device : { microphone, picture }) {
        if (!device || (device == picture && picture == microphone))
            continue; // one device giving both is one input
        Error error;
        const auto input = device->open(&error) ? std::make_shared<CaptureDeviceInput>(device) : nullptr;
        // A muxed device gives only what it was chosen for, unless it was
        // chosen for both.
        if (input && device->hasMediaType(MediaType::Muxed) && picture != microphone) {
            const QString wanted = device == microphone ? MediaType::Sound : MediaType::Video;
            for (const CaptureConnectionPtr &connection : input->connections())
                connection->setEnabled(connection->mediaType() == wanted);
        }
        if (!input || !session->addInput(input, &error)) {
            Console::err(QStringLiteral("orvxagentd: cannot open %1: %2\n")
                             .arg(device->localizedDisplayName(), error.localizedDescription));
            return kNoSource;
        }
    }

    auto output = std::make_shared<CaptureMovieFileOutput>();
    FinishWatcher watcher;
    output->setDelegate(&watcher);
    session->addOutput(output, nullptr);
    for (const CaptureConnectionPtr &connection : output->connections()) {
        if (connection->mediaType() == MediaType::Sound) {
            output->setCompressionOptions(
                CompressionOptions::compressionOptionsWithIdentifier(CompressionOptions::HighQualityAACAudio),
                connection);
        } else if (preset != QLatin1String("Best")) {
            // "Best" keeps the source's size; every other preset fits SD.
            output->setCompressionOptions(
                CompressionOptions::compressionOptionsWithIdentifier(CompressionOptions::SD480SizeMPEG4Video),
                connection);
        }
    }

    // When the recording really began, for whoever measures start-up: the
    // monotonic clock is the same in every process.
    const QString firstSampleFile = store.filePath(StateStore::kAgentFirstSample);
    QFile::remove(firstSampleFile);
    QObject::connect(output.get(), &CaptureMovieFileOutput::firstSampleRecorded, [&](const QString &, qint64 ns) {
        QSaveFile file(firstSampleFile);
        if (!QFileInfo::exists(firstSampleFile) && file.open(QIODevice::WriteOnly)) {
            file.write(QByteArray::number(ns) + '\n');
            file.commit();
        }
    });

    int failed = 0;
    QObject::connect(session.get(), &CaptureSession::runtimeError, [&failed](const Error &error) {
        Console::err(QStringLiteral("orvxagentd: capture failed: %1\n").arg(error.localizedDescription));
        failed = kRecordingFailed;
        QCoreApplication::exit(kRecordingFailed);
    });
    output->recordToOutputFileURL(QUrl::fromLocalFile(moviePath));
    session->startRunning();
    if (failed)
        return failed;

    const sigset_t set = controlSignals();
    const int signalFd = signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
    if (signalFd < 0) {
        Console::err(QStringLiteral("orvxagentd: cannot watch signalFd.\n"));
        return ToolFailure::kRefused;
    }
    QSocketNotifier notifier(signalFd, QSocketNotifier::Read);
    bool finishing = false;
    QObject::connect(&notifier, &QSocketNotifier::activated, [&] {
        signalfd_siginfo info;
        while (::read(signalFd, &info, sizeof info) == sizeof info) {
            switch (info.ssi_signo) {
            case SIGUSR1:
                output->pauseRecording();
                break;
            case SIGUSR2:
                output->resumeRecording();
                break;
            default:
                if (finishing) {
                    // Asked twice: the fragmented file on disk plays as it
                    // is; only its rewrite is given up.
                    Console::err(QStringLiteral("orvxagentd: stopping without finishing %1.\n").arg(moviePath));
                    ::_exit(0);
                }
                finishing = true;
                output->recordToOutputFileURL(QUrl());
                break;
            }
        }
    });
    const int status = QCoreApplication::exec();
    session->stopRunning();
    ::close(signalFd);
    return status;
}
