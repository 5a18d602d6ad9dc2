#pragma once

#include "Error.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

class CaptureDevicesController;
class OrvaneServerInterface;
class PodcastJob;

// What a recording route needs of the application: the session and the job
// of the moment, this computer's recorder, and the completions of the
// recording flow, each called on the main thread.
class RecordingRouteDelegate
{
public:
    using Completion = std::optional<Error>;
    virtual ~RecordingRouteDelegate() = default;
    // Completions are dropped once this object is gone.
    virtual QObject *routeContext() = 0;
    virtual std::shared_ptr<OrvaneServerInterface> server() const = 0;
    virtual std::shared_ptr<PodcastJob> job() = 0;
    virtual CaptureDevicesController *captureDevicesController() const = 0;
    virtual void jobDidStart(const Completion &error) = 0;
    virtual void updateToRecordingView(const Completion &error) = 0;
    virtual void jobDidPause(const Completion &error) = 0;
    virtual void jobDidResume(const Completion &error) = 0;
    virtual void jobDidStop(const Completion &error) = 0;
    // A recording made on this computer has ended; its files are ready.
    virtual void localJobDidStop(const Completion &error) = 0;
};

// One way of making a recording: the server's camera, this computer's own
// capture, or the local capture agent. The flows of the application ask the
// route; each route answers through the delegate's completions, as its way
// of recording calls for. Chosen with the device, and made afresh for it.
class RecordingRoute
{
public:
    using Done = std::function<void(const std::optional<Error> &error)>;

    explicit RecordingRoute(RecordingRouteDelegate &delegate)
        : m_delegate(delegate)
    { }
    virtual ~RecordingRoute() = default;
    RecordingRoute(const RecordingRoute &) = delete;
    RecordingRoute &operator=(const RecordingRoute &) = delete;

    // What the recording journal calls this way of recording.
    virtual QString kind() const = 0;
    // Recorded here, so this disk fills up and the files are uploaded
    // afterwards; otherwise the server keeps what its camera records.
    virtual bool recordsOnThisComputer() const = 0;
    // What this way of recording usually writes to this disk a second,
    // until the recording's own rate can be measured; 0 for nothing here.
    virtual double expectedBytesPerSecond() const { return 0; }
    // Record was asked for: ends in jobDidStart. A server camera starts
    // already, so it runs while the countdown is shown.
    virtual void prepare() = 0;
    // The countdown is over: ends in updateToRecordingView.
    virtual void start() = 0;
    virtual void pause() = 0;
    virtual void resume() = 0;
    // The recording is over and goes to the server: ends in jobDidStop (the
    // server publishes it) or localJobDidStop (its files are ready).
    virtual void stopAndHandOver() = 0;
    // The user threw the recording away: ends in jobDidStop.
    virtual void discard() = 0;
    // The application quits with the user's consent to delete the
    // recording; `done` runs once it is gone, or has failed to go.
    virtual void discardForQuit(Done done) = 0;
    // Lumex is ending without the user's word (a logout, a signal): what was
    // recorded is finished and kept, nothing is handed over or deleted; a
    // server's camera goes on recording. `done` runs once that is so.
    virtual void finishForEnding(Done done) = 0;

protected:
    using Operation = void (OrvaneServerInterface::*)(QObject *, Done);
    using Completion = void (RecordingRouteDelegate::*)(const RecordingRouteDelegate::Completion &);
    // Runs a job operation of the session with `didEnd` as its completion;
    // nothing without a session.
    void ask(Operation operation, Completion didEnd);
    void ask(Operation operation, Done done);
    // Recorded files are dated by the recording, not by the hand-over.
    void markStart();
    void markStop();

    RecordingRouteDelegate &m_delegate;
};
