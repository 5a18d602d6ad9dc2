#include "GLScreenGrabController.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace {

struct ConnectionDeleter
{
    void operator()(xcb_connection_t *c) const { xcb_disconnect(c); }
};
struct FreeDeleter
{
    void operator()(void *p) const { std::free(p); }
};
template <typename T>
using Reply = std::unique_ptr<T, FreeDeleter>;

} // namespace

void GLScreenGrabController::flipRowsInPlace(uchar *bits, int height, qsizetype bytesPerRow)
{
    if (!bits || height < 2 || bytesPerRow <= 0)
        return;
    std::vector<uchar> spare(static_cast<size_t>(bytesPerRow));
    for (int top = 0, bottom = height - 1; top < bottom; ++top, --bottom) {
        uchar *a = bits + qsizetype(top) * bytesPerRow;
        uchar *b = bits + qsizetype(bottom) * bytesPerRow;
        std::memcpy(spare.data(), a, size_t(bytesPerRow));
        std::memcpy(a, b, size_t(bytesPerRow));
        std::memcpy(b, spare.data(), size_t(bytesPerRow));
    }
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
    const int width = screen->width_in_pixels;
    const int height = screen->height_in_pixels;
    if (width <= 0 || height <= 0)
        return {};
    // Only the 24- and 32-bit depths store one pixel in 32 bits, BGRX in
    // memory, which is what Format_RGB32 is on a little-endian machine.
    if (screen->root_depth != 24 && screen->root_depth != 32)
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
        Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
            connection.get(),
            xcb_get_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, 0, int16_t(y), uint16_t(width),
                          uint16_t(rows), ~0u),
            &rawError));
        Reply<xcb_generic_error_t> error(rawError);
        if (!reply || error)
            return {};
        const uint8_t *data = xcb_get_image_data(reply.get());
        const int length = xcb_get_image_data_length(reply.get());
        const qsizetype sourceRow = qsizetype(width) * 4;
        if (length < sourceRow * rows)
            return {};
        for (int r = 0; r < rows; ++r)
            std::memcpy(image.scanLine(y + r), data + r * sourceRow, size_t(sourceRow));
    }
    // The X server gives rows top-down already; no flip is needed here.
    image.setDevicePixelRatio(1.0);
    return image;
}
