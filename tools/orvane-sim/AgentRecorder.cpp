#include "AgentRecorder.h"

#include "AgentConfig.h"
#include "CaptureDeviceRegistry.h"
#include "CaptureMovieFileOutput.h"
#include "Console.h"
#include "FaultFile.h"
#include "ToolFailure.h"
#include "server/Paths.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
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
    {
    }
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
    return device.isEmpty() || device == QLatin1String("(null)") || device == QLatin1String("Automatic");
}

} // namespace

void AgentRecorder::blockControlSignals()
{
    const sigset_t set = controlSignals();
    sigprocmask(SIG_BLOCK, &set, nullptr);
}

int AgentRecorder::run(const QStringList &arguments)
{
    if (arguments.size() != 2 || arguments[0] != QLatin1String("-f") || arguments[1].isEmpty()) {
        Console::err(QStringLiteral("usage: orvxagentd -f MOVIEPATH\n"));
        return ToolFailure::kUsage;
    }
    const QString moviePath = arguments[1];

    try {
        const StateStore store(m_environment.stateFolder());
        const Fault fault = FaultFile(store).take(QStringLiteral("orvxagentd"), FaultFile::Phase::Any);
        if (!fault.isNull()) {
            fault.perform();
            const int status = fault.exitStatus().value_or(kFaultStatus);
            Console::err(QStringLiteral("orvxagentd: cannot start capture (simulated failure), exiting with status %1.\n")
                             .arg(status));
            return status;
        }
    } catch (const ToolFailure &failure) {
        Console::err(failure.message());
        return failure.status();
    }

    const QVariantMap configuration = AgentConfig(Paths::userAgentConfig()).values();
    const QString capture = configuration.value(QStringLiteral("Capture")).toString();
    const QString mode = capture.section(QLatin1Char(':'), 0, 0);
    const QString preset = capture.section(QLatin1Char(':'), -1);
    const QString audioID = configuration.value(QStringLiteral("AudioDevice")).toString();
    const QString videoID = configuration.value(QStringLiteral("VideoDevice")).toString();

    auto &registry = CaptureDeviceRegistry::instance();
    const CaptureDevicePtr microphone = isAutomatic(audioID) ? registry.defaultMicrophone() : registry.deviceWithUniqueID(audioID);
    if (!microphone || !microphone->hasMediaType(MediaType::Sound)) {
        Console::err(isAutomatic(audioID) ? QStringLiteral("orvxagentd: no microphone to record from.\n")
                                          : QStringLiteral("orvxagentd: no microphone \"%1\".\n").arg(audioID));
        return kNoSource;
    }
    CaptureDevicePtr picture;
    if (mode == QLatin1String("Screen")) {
        if (qEnvironmentVariableIsEmpty("DISPLAY")) {
            Console::err(QStringLiteral("orvxagentd: no display to record (DISPLAY is not set).\n"));
            return kNoSource;
        }
        picture = std::make_shared<CaptureDevice>(CaptureDevice::Kind::Screen, QStringLiteral("screen"),
                                                  QStringLiteral("Screen"));
    } else if (mode == QLatin1String("Video")) {
        const QList<CaptureDevicePtr> cameras = registry.devicesWithMediaType(MediaType::Video);
        picture = isAutomatic(videoID) ? cameras.value(0) : registry.deviceWithUniqueID(videoID);
        if (!picture) {
            Console::err(QStringLiteral("orvxagentd: no camera \"%1\".\n").arg(videoID));
            return kNoSource;
        }
    }

    auto session = std::make_shared<CaptureSession>();
    for (const CaptureDevicePtr &device : {microphone, picture}) {
        if (!device)
            continue;
        Error error;
        if (!device->open(&error) || !session->addInput(std::make_shared<CaptureDeviceInput>(device), &error)) {
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
            output->setCompressionOptions(CompressionOptions::compressionOptionsWithIdentifier(CompressionOptions::HighQualityAACAudio), connection);
        } else if (preset != QLatin1String("Best")) {
            // "Best" keeps the source's size; every other preset fits SD.
            output->setCompressionOptions(CompressionOptions::compressionOptionsWithIdentifier(CompressionOptions::SD480SizeMPEG4Video), connection);
        }
    }

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
