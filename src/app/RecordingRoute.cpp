#include "RecordingRoute.h"

#include "OrvaneServerInterface.h"
#include "PodcastJob.h"

#include <QDateTime>

void RecordingRoute::ask(Operation operation, Completion didEnd)
{
    RecordingRouteDelegate *delegate = &m_delegate;
    // The delegate is the context of the delivery: alive when it runs.
    ask(operation, [delegate, didEnd](const std::optional<Error> &error) { (delegate->*didEnd)(error); });
}

void RecordingRoute::ask(Operation operation, Done done)
{
    if (const auto server = m_delegate.server())
        (server.get()->*operation)(m_delegate.routeContext(), std::move(done));
}

void RecordingRoute::markStart()
{
    if (const auto job = m_delegate.job())
        job->setStartedAt(QDateTime::currentDateTime());
}

void RecordingRoute::markStop()
{
    // Set at every pause, never cleared: after the last one it holds the end.
    if (const auto job = m_delegate.job())
        job->setStoppedAt(QDateTime::currentDateTime());
}
