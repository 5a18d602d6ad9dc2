#pragma once

#include "RecordingRoute.h"

// The local capture agent records the microphone, or the screen with it, as
// a child process steered by signals.
class LocalAgentRoute final : public RecordingRoute
{
public:
    enum class Media { Sound, Screen };
    LocalAgentRoute(RecordingRouteDelegate &delegate, Media media);

    QString kind() const override;
    bool recordsOnThisComputer() const override { return true; }
    double expectedBytesPerSecond() const override { return m_media == Media::Screen ? 400e3 : 24e3; }
    void prepare() override;
    void start() override;
    void pause() override;
    void resume() override;
    void stopAndHandOver() override;
    void discard() override;
    void discardForQuit(Done done) override;
    void finishForEnding(Done done) override;

private:
    Media m_media;
};
