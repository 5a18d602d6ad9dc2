#include "CaptureVideoPreviewWidget.h"

#include "CaptureVideoPreviewOutput.h"

#include <QPainter>

CaptureVideoPreviewWidget::CaptureVideoPreviewWidget(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

CaptureVideoPreviewWidget::~CaptureVideoPreviewWidget()
{
    setCaptureSession(nullptr);
}

void CaptureVideoPreviewWidget::setCaptureSession(const std::shared_ptr<CaptureSession> &session)
{
    if (m_session && m_output)
        m_session->removeOutput(m_output);
    m_output.reset();
    m_session = session;
    if (m_session) {
        m_output = std::make_shared<CaptureVideoPreviewOutput>();
        connect(m_output.get(), &CaptureVideoPreviewOutput::frameAvailable, this, qOverload<>(&QWidget::update));
        m_session->addOutput(m_output, nullptr);
    }
    update();
}

QImage CaptureVideoPreviewWidget::currentFrame() const
{
    return m_output ? m_output->currentFrame() : QImage();
}

void CaptureVideoPreviewWidget::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    const QImage frame = currentFrame();
    if (frame.isNull())
        return;
    const QSize fitted = frame.size().scaled(size(), Qt::KeepAspectRatio);
    const QRect target(QPoint((width() - fitted.width()) / 2, (height() - fitted.height()) / 2), fitted);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, frame);
}
