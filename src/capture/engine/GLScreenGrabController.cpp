#include "GLScreenGrabController.h"

#include "DisplaySession.h"
#include "GstHandles.h"
#include "LXDefaultsKeys.h"
#include "LXUserDefaults.h"
#include "Log.h"
#include "Process.h"
#include "ScreenCastPortal.h"
#include "Threads.h"

#include <gst/app/gstappsink.h>
#include <gst/video/video.h>
#include <xcb/randr.h>
#include <xcb/xcb.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDeadlineTimer>
#include <QRect>

#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace {

struct ConnectionDeleter
{
    void operator()(xcb_connection_t *c) const { xcb_disconnect(c); }
};
struct FreeDeleter
{
    void operator()(void *p) const { std::free(p); }
};
template<typename T> using Reply = std::unique_ptr<T, FreeDeleter>;

// Bits per pixel of the server's images at a depth (0: unknown).
int bitsPerPixel(const xcb_setup_t *setup, uint8_t depth)
{
    for (xcb_format_iterator_t f = xcb_setup_pixmap_formats_iterator(setup); f.rem; xcb_format_next(&f))
        if (f.data->depth == depth)
            return f.data->bits_per_pixel;
    return 0;
}

// The primary output's area on the root window, when RandR names one that
// is lit; otherwise the whole root window is the main screen.
QRect primaryOutputArea(xcb_connection_t *c, xcb_window_t root)
{
    const xcb_query_extension_reply_t *extension = xcb_get_extension_data(c, &xcb_randr_id);
    if (!extension || !extension->present)
        return {};
    Reply<xcb_randr_get_output_primary_reply_t> primary(
        xcb_randr_get_output_primary_reply(c, xcb_randr_get_output_primary(c, root), nullptr));
    if (!primary || primary->output == XCB_NONE)
        return {};
    Reply<xcb_randr_get_output_info_reply_t> output(
        xcb_randr_get_output_info_reply(c, xcb_randr_get_output_info(c, primary->output, XCB_CURRENT_TIME), nullptr));
    if (!output || output->crtc == XCB_NONE)
        return {};
    Reply<xcb_randr_get_crtc_info_reply_t> crtc(
        xcb_randr_get_crtc_info_reply(c, xcb_randr_get_crtc_info(c, output->crtc, XCB_CURRENT_TIME), nullptr));
    if (!crtc || crtc->width == 0 || crtc->height == 0)
        return {};
    return QRect(crtc->x, crtc->y, crtc->width, crtc->height);
}

// The frame Qt sees as Format_RGB32, opaque whatever the padding byte held.
QImage imageFromSample(GstSample *sample)
{
    GstVideoInfo info;
    GstVideoFrame frame;
    if (!gst_video_info_from_caps(&info, gst_sample_get_caps(sample))
        || !gst_video_frame_map(&frame, &info, gst_sample_get_buffer(sample), GST_MAP_READ))
        return {};
    QImage image
        = QImage(static_cast<const uchar *>(GST_VIDEO_FRAME_PLANE_DATA(&frame, 0)), GST_VIDEO_FRAME_WIDTH(&frame),
            GST_VIDEO_FRAME_HEIGHT(&frame), GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 0), QImage::Format_RGB32)
              .copy();
    gst_video_frame_unmap(&frame);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<quint32 *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            line[x] |= 0xff000000u;
    }
    image.setDevicePixelRatio(1.0);
    return image;
}

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(GLScreenGrabController)
};

// A picture of the shared screen, or why there is none.
using Frame = std::pair<QImage, std::optional<Error>>;

Error noPictureError(const Error &failure)
{
    Log::format(QStringLiteral("No picture from the shared screen: %@"), { describeError(failure) });
    return Error { failure.domain, failure.code,
        Tr::tr("Lumex cannot show the screen: no picture came from the desktop's screen sharing (%1).")
            .arg(failure.localizedDescription) };
}

} // namespace

GLScreenGrabController::GLScreenGrabController(QString display)
    : m_display(std::move(display))
{ }

GLScreenGrabController::~GLScreenGrabController() = default;

bool GLScreenGrabController::usesPortal() const
{
    return m_display.isEmpty() && DisplaySession::isWayland();
}

void GLScreenGrabController::setPortalBus(const QDBusConnection &bus)
{
    m_portalBus = std::make_unique<QDBusConnection>(bus);
}

void GLScreenGrabController::grab(QObject *context, Completion done)
{
    if (usesPortal()) {
        grabThroughPortal(QPointer<QObject>(context), std::move(done));
        return;
    }
    const QString display = m_display;
    runInBackground(
        context, [display] { return GLScreenGrabController(display).grab(); },
        [done = std::move(done)](const QImage &image) { done(image, std::nullopt); },
        [](const QString &) { return QImage(); });
}

ScreenCastPortal *GLScreenGrabController::portal()
{
    if (!m_portal) {
        m_portal = std::make_unique<ScreenCastPortal>(m_portalBus ? *m_portalBus : QDBusConnection::sessionBus());
        m_portal->setRestoreToken(LXUserDefaults::standard().valueForLumexKey(LXDefaultsKeys::ScreenCastRestoreToken));
        QObject::connect(m_portal.get(), &ScreenCastPortal::restoreTokenChanged, [](const QString &token) {
            LXUserDefaults &defaults = LXUserDefaults::standard();
            defaults.setValue(token, LXDefaultsKeys::ScreenCastRestoreToken);
            defaults.synchronize();
        });
    }
    return m_portal.get();
}

void GLScreenGrabController::requestScreenStream(QObject *context, StreamCompletion done)
{
    ScreenCastPortal *portal = this->portal();
    portal->requestStream(
        [portal, context = QPointer<QObject>(context), done = std::move(done)](const std::optional<Error> &error) {
            if (!context)
                return;
            if (error || !portal->stream())
                return done(std::nullopt, error);
            done(ScreenStream { portal->stream()->fd, portal->stream()->nodeId }, std::nullopt);
        });
}

void GLScreenGrabController::grabThroughPortal(const QPointer<QObject> &context, Completion done)
{
    requestScreenStream(context,
        [context, done = std::move(done)](
            const std::optional<ScreenStream> &stream, const std::optional<Error> &error) {
            if (!stream)
                return done(QImage(), error);
            // The worker reads through a copy of the descriptor, so the portal
            // may close the session meanwhile.
            const int fd = ::fcntl(stream->fd, F_DUPFD_CLOEXEC, 3);
            const quint32 nodeId = stream->nodeId;
            runInBackground(
                context.data(),
                [fd, nodeId] {
                    const FileDescriptor copy(fd);
                    Error failure;
                    const QImage image = grabPipeWireFrame(copy.get(), nodeId, 10000, &failure);
                    return image.isNull() ? Frame { image, noPictureError(failure) } : Frame { image, std::nullopt };
                },
                [done](const Frame &frame) { done(frame.first, frame.second); },
                [](const QString &failure) {
                    return Frame { QImage(), noPictureError(Error { kLumexErrorDomain, -1, failure }) };
                });
        });
}

QImage GLScreenGrabController::grabPipeWireFrame(int fd, quint32 nodeId, int timeoutMs, Error *error)
{
    Gst::ensureInitialized();
    const QByteArray description = "pipewiresrc always-copy=true fd=" + QByteArray::number(fd)
        + " path=" + QByteArray::number(nodeId)
        + " ! videoconvert ! video/x-raw,format=BGRx ! appsink name=sink max-buffers=1 sync=false";
    GError *rawError = nullptr;
    Gst::ElementRef pipeline(gst_parse_launch(description.constData(), &rawError), Gst::Ref::Adopt);
    const Gst::ErrorPtr parseError(rawError);
    if (!pipeline || parseError) {
        if (error)
            *error = parseError ? Gst::toError(parseError.get())
                                : Gst::coreError(GST_CORE_ERROR_FAILED, QStringLiteral("Cannot read the screen cast"));
        return {};
    }
    Gst::ElementRef sink(gst_bin_get_by_name(GST_BIN(pipeline.get()), "sink"), Gst::Ref::Adopt);
    Gst::BusRef bus(gst_element_get_bus(pipeline.element()), Gst::Ref::Adopt);
    gst_element_set_state(pipeline.element(), GST_STATE_PLAYING);
    QImage image;
    const QDeadlineTimer deadline(timeoutMs);
    while (image.isNull()) {
        if (GstSample *sample = gst_app_sink_try_pull_sample(GST_APP_SINK(sink.element()), 100 * GST_MSECOND)) {
            image = imageFromSample(sample);
            gst_sample_unref(sample);
            if (!image.isNull())
                break;
        }
        const Gst::MessagePtr message(gst_bus_pop_filtered(bus.get(), GST_MESSAGE_ERROR));
        std::optional<Error> failure = Gst::errorFromMessage(message.get());
        if (!failure && deadline.hasExpired())
            failure = Gst::resourceError(GST_RESOURCE_ERROR_READ, QStringLiteral("No frame from the screen cast"));
        if (failure) {
            if (error)
                *error = *failure;
            break;
        }
    }
    gst_element_set_state(pipeline.element(), GST_STATE_NULL);
    return image;
}

QImage GLScreenGrabController::grab() const
{
    const QByteArray display = m_display.isEmpty() ? qgetenv("DISPLAY") : m_display.toLocal8Bit();
    if (display.isEmpty())
        return {};
    int screenNumber = 0;
    std::unique_ptr<xcb_connection_t, ConnectionDeleter> connection(xcb_connect(display.constData(), &screenNumber));
    if (!connection || xcb_connection_has_error(connection.get()))
        return {};
    xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
    for (int i = 0; i < screenNumber && it.rem; ++i)
        xcb_screen_next(&it);
    if (!it.rem)
        return {};
    const xcb_screen_t *screen = it.data;
    const xcb_setup_t *setup = xcb_get_setup(connection.get());
    // Format_RGB32 is 0xffRRGGBB in a native 32-bit word: the server must
    // give 32-bit pixels of depth 24 or 32, least significant byte first
    // (as this machine stores them).
    if ((screen->root_depth != 24 && screen->root_depth != 32) || bitsPerPixel(setup, screen->root_depth) != 32
        || setup->image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST || Q_BYTE_ORDER != Q_LITTLE_ENDIAN)
        return {};
    QRect area(0, 0, screen->width_in_pixels, screen->height_in_pixels);
    const QRect primary = primaryOutputArea(connection.get(), screen->root).intersected(area);
    if (!primary.isEmpty())
        area = primary;
    const int width = area.width();
    const int height = area.height();
    if (width <= 0 || height <= 0)
        return {};

    QImage image(width, height, QImage::Format_RGB32);
    if (image.isNull())
        return {};
    // Requests are bounded in size; a tall screen comes in bands.
    const uint32_t maxBytes = xcb_get_maximum_request_length(connection.get()) * 4;
    const int bandRows = std::max(1, int(std::min<qint64>(height, (maxBytes / 2) / (qint64(width) * 4))));
    for (int y = 0; y < height; y += bandRows) {
        const int rows = std::min(bandRows, height - y);
        xcb_generic_error_t *rawError = nullptr;
        Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(connection.get(),
            xcb_get_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, int16_t(area.x()),
                int16_t(area.y() + y), uint16_t(width), uint16_t(rows), ~0u),
            &rawError));
        Reply<xcb_generic_error_t> error(rawError);
        if (!reply || error)
            return {};
        const uint8_t *data = xcb_get_image_data(reply.get());
        const int length = xcb_get_image_data_length(reply.get());
        const qsizetype sourceRow = qsizetype(width) * 4;
        if (length < sourceRow * rows)
            return {};
        for (int r = 0; r < rows; ++r) {
            auto *line = reinterpret_cast<quint32 *>(image.scanLine(y + r));
            std::memcpy(line, data + r * sourceRow, size_t(sourceRow));
            // The padding byte is whatever the server left there; the image
            // promises opaque pixels.
            for (int x = 0; x < width; ++x)
                line[x] |= 0xff000000u;
        }
    }
    image.setDevicePixelRatio(1.0);
    return image;
}
