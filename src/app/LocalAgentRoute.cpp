#include "LocalAgentRoute.h"

#include "OrvaneServerInterface.h"

using D = RecordingRouteDelegate;
using S = OrvaneServerInterface;

LocalAgentRoute::LocalAgentRoute(RecordingRouteDelegate &delegate, Media media)
    : RecordingRoute(delegate)
    , m_media(media)
{ }

void LocalAgentRoute::prepare()
{
    // The agent starts only once the countdown is over.
    m_delegate.jobDidStart(std::nullopt);
}

void LocalAgentRoute::start()
{
    markStart();
    ask(m_media == Media::Screen ? &S::startLocalScreenCapJobWithDelegate : &S::startLocalAudioJobWithDelegate,
        &D::updateToRecordingView);
}

void LocalAgentRoute::pause()
{
    markStop();
    ask(&S::pauseLocalJobWithDelegate, &D::jobDidPause);
}

void LocalAgentRoute::resume()
{
    ask(&S::resumeLocalJobWithDelegate, &D::jobDidResume);
}

void LocalAgentRoute::stopAndHandOver()
{
    ask(&S::stopLocalJobWithDelegate, &D::localJobDidStop);
}

void LocalAgentRoute::discard()
{
    ask(&S::cancelLocalJobWithDelegate, &D::jobDidStop);
}

void LocalAgentRoute::discardForQuit(Done done)
{
    if (!m_delegate.server())
        return done(std::nullopt);
    ask(&S::cancelLocalJobWithDelegate, std::move(done));
}

QString LocalAgentRoute::kind() const
{
    return m_media == Media::Screen ? QStringLiteral("capture agent, screen") : QStringLiteral("capture agent");
}

void LocalAgentRoute::finishForEnding(Done done)
{
    // The agent finishes its movie on SIGTERM; the answer comes once it has.
    if (!m_delegate.server())
        return done(std::nullopt);
    ask(&S::stopLocalJobWithDelegate, std::move(done));
}
