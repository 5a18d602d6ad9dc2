#include "LocalCaptureRoute.h"

#include "CaptureDevicesController.h"
#include "Format.h"
#include "LXDefaultsKeys.h"
#include "LXUserDefaults.h"
#include "OrvaneServerInterface.h"
#include "Threads.h"

#include <QFileInfo>
#include <QPointer>

LocalCaptureRoute::LocalCaptureRoute(RecordingRouteDelegate &delegate)
    : RecordingRoute(delegate)
{ }

void LocalCaptureRoute::prepare()
{
    // The capture starts only once the countdown is over.
    m_delegate.jobDidStart(std::nullopt);
}

void LocalCaptureRoute::start()
{
    markStart();
    RecordingRouteDelegate *delegate = &m_delegate;
    auto begin = [delegate](int32_t mkdirStatus) {
        if (mkdirStatus != 0) {
            delegate->updateToRecordingView(Error { kServerInterfaceErrorDomain, mkdirStatus,
                lxFormat(OrvaneServerInterface::tr(
                             "Could not make destination folder for capture movie. mkdir returned status: %d."),
                    { mkdirStatus }) });
            return;
        }
        if (CaptureDevicesController *capture = delegate->captureDevicesController())
            capture->beginRecording();
        delegate->updateToRecordingView(std::nullopt);
    };
    // A new account has no spool folder yet; the recorder cannot make one.
    const QString spool = LXUserDefaults::standard().valueForLumexKey(LXDefaultsKeys::LocalRecordSpoolPath);
    if (QFileInfo(spool).isDir())
        return begin(0);
    const QPointer<QObject> context(delegate->routeContext());
    runOnWorkerThread([spool, context, begin] {
        const int32_t status = OrvaneServerInterface::makeFolder(spool);
        deliverOnMainThread(context, [begin, status] { begin(status); });
    });
}

void LocalCaptureRoute::pause()
{
    markStop();
    if (CaptureDevicesController *capture = m_delegate.captureDevicesController())
        capture->pauseRecording();
}

void LocalCaptureRoute::resume()
{
    if (CaptureDevicesController *capture = m_delegate.captureDevicesController())
        capture->resumeRecording();
}

void LocalCaptureRoute::stopAndHandOver()
{
    // The recorder calls localJobDidStop once the movie is finished.
    if (CaptureDevicesController *capture = m_delegate.captureDevicesController())
        capture->stopRecording();
}

void LocalCaptureRoute::discard()
{
    // The recorder deletes the movie itself.
    if (CaptureDevicesController *capture = m_delegate.captureDevicesController())
        capture->cancelRecording();
}

void LocalCaptureRoute::discardForQuit(Done done)
{
    whenFinished(std::move(done), &CaptureDevicesController::cancelRecording);
}

void LocalCaptureRoute::finishForEnding(Done done)
{
    whenFinished(std::move(done), &CaptureDevicesController::stopRecording);
}

void LocalCaptureRoute::whenFinished(Done done, void (CaptureDevicesController::*finish)())
{
    CaptureDevicesController *capture = m_delegate.captureDevicesController();
    if (!capture || !capture->isRecording())
        return done(std::nullopt);
    QObject::connect(
        capture, &CaptureDevicesController::recordingFinished, m_delegate.routeContext(),
        [done = std::move(done)] { done(std::nullopt); }, Qt::SingleShotConnection);
    (capture->*finish)();
}
