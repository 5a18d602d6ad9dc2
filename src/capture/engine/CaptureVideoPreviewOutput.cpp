#include "CaptureVideoPreviewOutput.h"

#include "TeeBranch.h"

#include <gst/app/gstappsink.h>
#include <gst/video/video.h>

CaptureVideoPreviewOutput::CaptureVideoPreviewOutput() = default;

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
    Error failure;
    m_bin = Gst::parseBin("queue leaky=downstream max-size-buffers=1 ! videoconvert ! video/x-raw,format=BGRx ! "
                          "appsink name=sink max-buffers=1 drop=true sync=true async=false qos=true "
                          "max-lateness=40000000",
        true, &failure);
    if (!m_bin) {
        qWarning("No live preview: %s", qPrintable(failure.localizedDescription));
        return;
    }
    Gst::ElementRef sink(gst_bin_get_by_name(GST_BIN(m_bin.element()), "sink"), Gst::Ref::Adopt);
    GstAppSinkCallbacks callbacks = {};
    callbacks.new_sample = &CaptureVideoPreviewOutput::onNewSample;
    gst_app_sink_set_callbacks(GST_APP_SINK(sink.element()), &callbacks, this, nullptr);
    gst_bin_add(GST_BIN(session()->pipeline()), m_bin.element());
    gst_element_sync_state_with_parent(m_bin.element());
    m_branch = TeeBranch::request(tee, &failure);
    Gst::PadRef binSink(gst_element_get_static_pad(m_bin.element(), "sink"), Gst::Ref::Adopt);
    if (!m_branch || !m_branch->link(binSink.get(), &failure)) {
        qWarning("No live preview: %s", qPrintable(failure.localizedDescription));
        detach();
    }
}

void CaptureVideoPreviewOutput::sessionWillStopRunning()
{
    detach();
}

void CaptureVideoPreviewOutput::detach()
{
    // The pipeline may play on (the preview closes while recording): the
    // branch leaves the tee at once, not at an idle point.
    m_branch.reset();
    if (!m_bin)
        return;
    // Stopped, the sink calls back no more.
    gst_element_set_state(m_bin.element(), GST_STATE_NULL);
    Gst::removeFromParent(m_bin.element());
    m_bin = {};
}

GstFlowReturn CaptureVideoPreviewOutput::onNewSample(GstAppSink *sink, gpointer data)
{
    auto *self = static_cast<CaptureVideoPreviewOutput *>(data);
    GstSample *sample = gst_app_sink_pull_sample(sink);
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
