#pragma once

#include "Error.h"

#include <QString>

#include <memory>

class OrvaneServerInterface;

// What TransfersController needs of the application controller: to be told
// after each poll of the upload queue, so it can follow the upload of the
// current job; and, for retrying a failed upload, the signed-in session, the
// alert routine and word of the retry.
class TransfersControllerDelegate
{
public:
    virtual ~TransfersControllerDelegate() = default;
    virtual void updateSubmissionStatus() = 0;
    // Null while no one is signed in.
    virtual std::shared_ptr<OrvaneServerInterface> signedInServer() { return nullptr; }
    virtual void alertUserToError(const Error &) { }
    // The failed upload `failedUUID` was queued again as `newUUID`.
    virtual void transferWasRetried(const QString &failedUUID, const QString &newUUID) { }
};
