#pragma once

#include "CaptureSession.h"

#include <QImage>
#include <QMutex>
#include <QWidget>

#include <atomic>

// A session output that keeps the newest video frame as an image. The
// appsink holds one frame at most and drops older ones, and the branch
// starts with a leaky queue, so a slow main thread never stalls the
// pipeline: it only sees fewer frames.
class CaptureVideoPreviewOutput final : public CaptureOutput
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CaptureVideoPreviewOutput)

public:
    CaptureVideoPreviewOutput() = default;
    ~CaptureVideoPreviewOutput() override;

    QImage currentFrame() const;
    qint64 framesReceived() const { return m_framesReceived.load(); }

signals:
    // Queued to the main thread; at most one waits at a time.
    void frameAvailable();

protected:
    void sessionDidStartRunning() override;
    void sessionWillStopRunning() override;

private:
    static GstFlowReturn onNewSample(GstElement *sink, gpointer self);
    void detach();

    mutable QMutex m_mutex;
    QImage m_frame;
    std::atomic<bool> m_notifyPending { false };
    std::atomic<qint64> m_framesReceived { 0 };
    Gst::ElementRef m_bin;
    Gst::ElementRef m_tee;
    Gst::PadRef m_teePad;
};

// The live preview: draws the session's video scaled to fit, in proportion,
// on black. Attach with setCaptureSession(); a null session clears it.
class CaptureVideoPreviewWidget final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CaptureVideoPreviewWidget)

public:
    explicit CaptureVideoPreviewWidget(QWidget *parent = nullptr);
    ~CaptureVideoPreviewWidget() override;

    void setCaptureSession(const std::shared_ptr<CaptureSession> &session);
    std::shared_ptr<CaptureSession> captureSession() const { return m_session; }
    QImage currentFrame() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    std::shared_ptr<CaptureSession> m_session;
    std::shared_ptr<CaptureVideoPreviewOutput> m_output;
};
