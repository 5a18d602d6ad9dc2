// The screen grab against a real X server.

#include "GLScreenGrabController.h"
#include "XvfbServer.h"

#include <QtTest>

#include <cstdlib>
#include <memory>

namespace {

// A mapped, override-redirect window filled with one colour.
void showPatch(xcb_connection_t *c, xcb_screen_t *screen, int16_t x, int16_t y, uint16_t w, uint16_t h, uint32_t rgb)
{
    const xcb_window_t window = xcb_generate_id(c);
    const uint32_t values[] = { rgb, 1 };
    xcb_create_window(c, XCB_COPY_FROM_PARENT, window, screen->root, x, y, w, h, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
        screen->root_visual, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    xcb_map_window(c, window);
}

} // namespace

class TestScreenGrab : public QObject
{
    Q_OBJECT

private slots:
    void grabIsTopDownWithTheScreensSize()
    {
        XvfbServer server(QStringLiteral("320x240x24"));
        if (server.display().isEmpty())
            QSKIP("Xvfb could not be started");
        xcb_connection_t *c = xcb_connect(server.display().toLocal8Bit().constData(), nullptr);
        std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t *)> owner(c, xcb_disconnect);
        xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(c)).data;
        showPatch(c, screen, 0, 0, 8, 4, 0xff0000); // top left: red
        showPatch(c, screen, 0, 236, 8, 4, 0x00ff00); // bottom left: green
        showPatch(c, screen, 312, 0, 8, 4, 0x0000ff); // top right: blue
        xcb_flush(c);
        free(xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr)); // round trip: drawn

        const QImage image = GLScreenGrabController(server.display()).grab();
        QVERIFY(!image.isNull());
        QCOMPARE(image.size(), QSize(320, 240));
        QCOMPARE(image.devicePixelRatio(), 1.0);
        QCOMPARE(image.format(), QImage::Format_RGB32);
        QCOMPARE(image.pixel(0, 0) & 0xffffff, 0xff0000u);
        QCOMPARE(image.pixel(7, 3) & 0xffffff, 0xff0000u);
        QCOMPARE(image.pixel(0, 239) & 0xffffff, 0x00ff00u);
        QCOMPARE(image.pixel(319, 0) & 0xffffff, 0x0000ffu);
        QVERIFY((image.pixel(0, 4) & 0xffffff) != 0xff0000u);
        // Every stored pixel opaque, whatever the server left in the padding
        // byte (pixel() would hide it: it adds the alpha itself).
        for (int y = 0; y < image.height(); ++y) {
            const auto *line = reinterpret_cast<const quint32 *>(image.constScanLine(y));
            for (int x = 0; x < image.width(); ++x)
                QCOMPARE(line[x] >> 24, 0xffu);
        }
    }
    void screenWithout32BitPixelsGivesANullImage()
    {
        XvfbServer server(QStringLiteral("320x240x16"));
        if (server.display().isEmpty())
            QSKIP("Xvfb could not be started");
        QVERIFY(GLScreenGrabController(server.display()).grab().isNull());
    }
    void noDisplayGivesANullImage() { QVERIFY(GLScreenGrabController(QStringLiteral(":9999")).grab().isNull()); }
};

QTEST_GUILESS_MAIN(TestScreenGrab)
#include "tst_screengrab.moc"
