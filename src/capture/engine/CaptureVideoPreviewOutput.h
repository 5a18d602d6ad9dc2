#pragma once

#include "CaptureSession.h"

#include <gst/app/gstappsink.h>

#include <QImage>
#include <QMutex>

#include <atomic>
#include <memory>

class TeeBranch;

// A session output that keeps the newest video frame as an image, for a
// live preview. The appsink holds one frame at most and drops older ones,
// and the branch starts with a leaky queue, so a slow main thread never
// stalls the pipeline: it only sees fewer frames.
class CaptureVideoPreviewOutput final : public CaptureOutput
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CaptureVideoPreviewOutput)

public:
    CaptureVideoPreviewOutput();
    ~CaptureVideoPreviewOutput() override;

    // Any thread.
    QImage currentFrame() const;
    qint64 framesReceived() const { return m_framesReceived.load(); }

signals:
    // A new frame is current. Queued to the main thread; at most one waits
    // at a time.
    void frameAvailable();

protected:
    void sessionDidStartRunning() override;
    void sessionWillStopRunning() override;

private:
    static GstFlowReturn onNewSample(GstAppSink *sink, gpointer self);
    void detach();

    mutable QMutex m_mutex;
    QImage m_frame;
    std::atomic<bool> m_notifyPending { false };
    std::atomic<qint64> m_framesReceived { 0 };
    Gst::ElementRef m_bin;
    std::unique_ptr<TeeBranch> m_branch;
};
