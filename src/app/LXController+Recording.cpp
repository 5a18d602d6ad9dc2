#include "LXController.h"

void LXController::jobDidPause(const std::optional<Error> &error)
{
    if (error)
        alertUserToError(*error);
}

void LXController::jobDidResume(const std::optional<Error> &error)
{
    if (error)
        alertUserToError(*error);
}

void LXController::jobDidStop(const std::optional<Error> &error)
{
    if (error)
        alertUserToError(*error);
}

void LXController::localJobDidStop(const std::optional<Error> &error)
{
    if (!error) {
        if (m_server) {
            QPointer<LXController> self(this);
            m_server->submitAndDeleteJobFilesWithDelegate(this, [self](const std::optional<Error> &e) {
                if (self)
                    self->jobDidStop(e);
            });
        }
    } else {
        alertUserToError(*error);
    }
    if (m_state == State::Submitted)
        tearDownLocalCameraAndMicrophone();
}

void LXController::updateSubmissionStatus()
{
    if (m_job && m_transfersController && !m_job->uploadUUID().isNull())
        notifyIfWatchedUploadEnded(m_transfersController->transferForUUID(m_job->uploadUUID()));
}
