#pragma once

#include "RecordingRoute.h"

// Movie files already on this computer: nothing is recorded, the files are
// handed over as they are. Files the user chose stay where they are; a
// recording that an interruption left in the spool folder is Lumex's own and
// leaves it once queued, or every later sign-in would offer it again.
class ChosenFilesRoute final : public RecordingRoute
{
public:
    enum class Files { UsersOwn, InterruptedRecording };
    ChosenFilesRoute(RecordingRouteDelegate &delegate, Files files);

    QString kind() const override { return QStringLiteral("chosen files"); }
    bool isUsersOwn() const { return m_files == Files::UsersOwn; }
    bool recordsOnThisComputer() const override { return true; }
    void prepare() override { }
    void start() override { }
    void pause() override { }
    void resume() override { }
    void stopAndHandOver() override;
    void discard() override { }
    void discardForQuit(Done done) override { done(std::nullopt); }
    void finishForEnding(Done done) override { done(std::nullopt); }

private:
    Files m_files;
};
