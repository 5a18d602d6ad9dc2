#pragma once

// What TransfersController needs of the application controller: to be told
// after each poll of the upload queue, so it can follow the upload of the
// current job.
class TransfersControllerDelegate
{
public:
    virtual ~TransfersControllerDelegate() = default;
    virtual void updateSubmissionStatus() = 0;
};
