#pragma once

#include <QImage>
#include <QWidget>

#include <memory>

class CaptureSession;
class CaptureVideoPreviewOutput;

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
