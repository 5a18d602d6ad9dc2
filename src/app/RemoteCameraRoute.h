#pragma once

#include "RecordingRoute.h"

// The server's camera records, steered by the server tool.
class RemoteCameraRoute final : public RecordingRoute
{
public:
    enum class Media { Video, SoundOnly };
    RemoteCameraRoute(RecordingRouteDelegate &delegate, Media media);

    bool recordsOnThisComputer() const override { return false; }
    void prepare() override;
    void start() override;
    void pause() override;
    void resume() override;
    void stopAndHandOver() override;
    void discard() override;
    void discardForQuit(Done done) override;

private:
    Media m_media;
};
