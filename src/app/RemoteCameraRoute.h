#pragma once

#include "RecordingRoute.h"

// The server's camera records, steered by the server tool.
class RemoteCameraRoute final : public RecordingRoute
{
public:
    enum class Media { Video, SoundOnly };
    RemoteCameraRoute(RecordingRouteDelegate &delegate, Media media);
    // The route a journal entry of `kind` was made with; null for another.
    static std::unique_ptr<RemoteCameraRoute> fromKind(const QString &kind, RecordingRouteDelegate &delegate);

    QString kind() const override;
    bool recordsOnThisComputer() const override { return false; }
    void prepare() override;
    void start() override;
    void pause() override;
    void resume() override;
    void stopAndHandOver() override;
    void discard() override;
    void discardForQuit(Done done) override;
    // The room keeps recording; the next sign-in offers to continue.
    void finishForEnding(Done done) override { done(std::nullopt); }

private:
    Media m_media;
};
