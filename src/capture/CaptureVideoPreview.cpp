#include "CaptureVideoPreview.h"

#include <gst/app/gstappsink.h>
#include <gst/video/video.h>

#include <QPainter>

CaptureVideoPreviewOutput::~CaptureVideoPreviewOutput()
{
    detach();
}

QImage CaptureVideoPreviewOutput::currentFrame() const
{
    QMutexLocker locker(&m_mutex);
    return m_frame;
}

void CaptureVideoPreviewOutput::sessionDidStartRunning()
{
    CaptureConnectionPtr video;
    for (const CaptureConnectionPtr &connection : connections())
        if (connection->mediaType() == MediaType::Video)
            video = connection;
    GstElement *tee = video ? session()->teeForConnection(video) : nullptr;
    if (!tee)
        return;
    GError *raw = nullptr;
    m_bin = Gst::ElementRef(
        gst_parse_bin_from_description("queue leaky=downstream max-size-buffers=1 ! videoconvert ! "
                                       "video/x-raw,format=BGRx ! appsink name=sink max-buffers=1 drop=true sync=true "
                                       "async=false qos=true max-lateness=40000000",
            TRUE, &raw),
        Gst::Ref::Adopt);
    Gst::ErrorPtr error(raw);
    if (!m_bin)
        return;
    Gst::ElementRef sink(gst_bin_get_by_name(GST_BIN(m_bin.element()), "sink"), Gst::Ref::Adopt);
    g_object_set(sink.get(), "emit-signals", TRUE, nullptr);
    g_signal_connect(sink.element(), "new-sample", G_CALLBACK(onNewSample), this);
    gst_bin_add(GST_BIN(session()->pipeline()), m_bin.element());
    gst_element_sync_state_with_parent(m_bin.element());
    m_tee = Gst::ElementRef(tee, Gst::Ref::Add);
    m_teePad = Gst::PadRef(gst_element_request_pad_simple(tee, "src_%u"), Gst::Ref::Adopt);
    Gst::PadRef binSink(gst_element_get_static_pad(m_bin.element(), "sink"), Gst::Ref::Adopt);
    gst_pad_link(m_teePad.get(), binSink.get());
}

void CaptureVideoPreviewOutput::sessionWillStopRunning()
{
    detach();
}

void CaptureVideoPreviewOutput::detach()
{
    if (!m_bin)
        return;
    // The pipeline may play on (the preview closes while recording). The
    // branch is unlinked at once, not at an idle point: a frame already on
    // its way finishes its push, and later ones meet an unlinked pad, which
    // the tee is set to allow.
    if (m_teePad) {
        Gst::PadRef binSink(gst_element_get_static_pad(m_bin.element(), "sink"), Gst::Ref::Adopt);
        gst_pad_unlink(m_teePad.get(), binSink.get());
        gst_element_release_request_pad(m_tee.element(), m_teePad.get());
    }
    Gst::ElementRef sink(gst_bin_get_by_name(GST_BIN(m_bin.element()), "sink"), Gst::Ref::Adopt);
    g_signal_handlers_disconnect_by_data(sink.get(), this);
    gst_element_set_state(m_bin.element(), GST_STATE_NULL);
    if (GstObject *parent = gst_object_get_parent(GST_OBJECT(m_bin.get()))) {
        gst_bin_remove(GST_BIN(parent), m_bin.element());
        gst_object_unref(parent);
    }
    m_teePad = {};
    m_tee = {};
    m_bin = {};
}

GstFlowReturn CaptureVideoPreviewOutput::onNewSample(GstElement *sink, gpointer data)
{
    auto *self = static_cast<CaptureVideoPreviewOutput *>(data);
    GstSample *sample = gst_app_sink_pull_sample(GST_APP_SINK(sink));
    if (!sample)
        return GST_FLOW_OK;
    GstVideoInfo info;
    GstVideoFrame frame;
    if (gst_video_info_from_caps(&info, gst_sample_get_caps(sample))
        && gst_video_frame_map(&frame, &info, gst_sample_get_buffer(sample), GST_MAP_READ)) {
        const QImage view(static_cast<const uchar *>(GST_VIDEO_FRAME_PLANE_DATA(&frame, 0)),
            GST_VIDEO_FRAME_WIDTH(&frame), GST_VIDEO_FRAME_HEIGHT(&frame), GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 0),
            QImage::Format_RGB32);
        QImage copy = view.copy();
        gst_video_frame_unmap(&frame);
        {
            QMutexLocker locker(&self->m_mutex);
            self->m_frame = std::move(copy);
        }
        ++self->m_framesReceived;
        if (!self->m_notifyPending.exchange(true))
            QMetaObject::invokeMethod(
                self,
                [self] {
                    self->m_notifyPending = false;
                    emit self->frameAvailable();
                },
                Qt::QueuedConnection);
    }
    gst_sample_unref(sample);
    return GST_FLOW_OK;
}

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
