#pragma once

#include "RecordingRoute.h"

class CaptureDevicesController;

// This application's own capture records a camera and a microphone.
class LocalCaptureRoute final : public RecordingRoute
{
public:
    explicit LocalCaptureRoute(RecordingRouteDelegate &delegate);

    QString kind() const override { return QStringLiteral("own capture"); }
    bool recordsOnThisComputer() const override { return true; }
    // H.264 at 640×480 and AAC, as measured on test sources.
    double expectedBytesPerSecond() const override { return 250e3; }
    void prepare() override;
    void start() override;
    void pause() override;
    void resume() override;
    void stopAndHandOver() override;
    void discard() override;
    void discardForQuit(Done done) override;
    void finishForEnding(Done done) override;

private:
    // Runs `finish` on the recorder and `done` once the movie is finished.
    void whenFinished(Done done, void (CaptureDevicesController::*finish)());
};
