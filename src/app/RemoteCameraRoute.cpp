#include "RemoteCameraRoute.h"

#include "OrvaneServerInterface.h"

using D = RecordingRouteDelegate;
using S = OrvaneServerInterface;

RemoteCameraRoute::RemoteCameraRoute(RecordingRouteDelegate &delegate, Media media)
    : RecordingRoute(delegate)
    , m_media(media)
{ }

namespace {

const QString kVideo = QStringLiteral("server camera");
const QString kSound = QStringLiteral("server camera, sound");

} // namespace

std::unique_ptr<RemoteCameraRoute> RemoteCameraRoute::fromKind(const QString &kind, RecordingRouteDelegate &delegate)
{
    if (kind != kVideo && kind != kSound)
        return nullptr;
    return std::make_unique<RemoteCameraRoute>(delegate, kind == kSound ? Media::SoundOnly : Media::Video);
}

QString RemoteCameraRoute::kind() const
{
    return m_media == Media::SoundOnly ? kSound : kVideo;
}

void RemoteCameraRoute::prepare()
{
    // The server's job runs already while the countdown is shown.
    ask(m_media == Media::SoundOnly ? &S::startRemoteAudioJobWithDelegate : &S::startRemoteVideoJobWithDelegate,
        &D::jobDidStart);
}

void RemoteCameraRoute::start()
{
    m_delegate.updateToRecordingView(std::nullopt);
}

void RemoteCameraRoute::pause()
{
    ask(&S::pauseRemoteJobWithDelegate, &D::jobDidPause);
}

void RemoteCameraRoute::resume()
{
    ask(&S::resumeRemoteJobWithDelegate, &D::jobDidResume);
}

void RemoteCameraRoute::stopAndHandOver()
{
    // The server publishes what its camera recorded.
    ask(&S::stopRemoteJobWithDelegate, &D::jobDidStop);
}

void RemoteCameraRoute::discard()
{
    ask(&S::cancelRemoteJobWithDelegate, &D::jobDidStop);
}

void RemoteCameraRoute::discardForQuit(Done done)
{
    if (!m_delegate.server())
        return done(std::nullopt);
    ask(&S::cancelRemoteJobWithDelegate, std::move(done));
}
