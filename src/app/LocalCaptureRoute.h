#pragma once

#include "RecordingRoute.h"

// This application's own capture records a camera and a microphone.
class LocalCaptureRoute final : public RecordingRoute
{
public:
    explicit LocalCaptureRoute(RecordingRouteDelegate &delegate);

    bool recordsOnThisComputer() const override { return true; }
    void prepare() override;
    void start() override;
    void pause() override;
    void resume() override;
    void stopAndHandOver() override;
    void discard() override;
    void discardForQuit(Done done) override;
};
