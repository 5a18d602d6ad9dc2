#pragma once

#include "Error.h"

#include <QImage>
#include <QPointer>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QDBusConnection;
class QObject;
class ScreenCastPortal;

// One still picture of the whole main screen, for the screen source's
// preview; the name is the system's. On X11 it reads the X server's root
// window, cropped to the RandR primary output when the server names one. In
// a Wayland session no client can read the screen: the picture is one frame
// of the desktop portal's screen cast, whose session (and the user's
// permission) is kept for this object's life.
class GLScreenGrabController final
{
public:
    using Completion = std::function<void(const QImage &image, const std::optional<Error> &error)>;

    // `display` empty: the session's screen ($DISPLAY, or the portal in a
    // Wayland session); a display given is always read as an X display.
    explicit GLScreenGrabController(QString display = QString());
    ~GLScreenGrabController();
    GLScreenGrabController(const GLScreenGrabController &) = delete;
    GLScreenGrabController &operator=(const GLScreenGrabController &) = delete;

    // The X display's picture now: a top-down 32-bit image
    // (QImage::Format_RGB32) whose size in points is its size in pixels, or a
    // null image when the screen cannot be read.
    QImage grab() const;

    // The session's picture, delivered on the main thread to `done` unless
    // `context` is gone first; never blocks the caller. A failure gives a
    // null image, and an error for the user when there is something to say
    // (the portal missing, sharing declined).
    void grab(QObject *context, Completion done);

    // The portal's bus (tests: a private session bus). Before the first grab.
    void setPortalBus(const QDBusConnection &bus);

    // Whether the screen is the desktop portal's (a Wayland session).
    bool usesPortal() const;

    // The portal's screen cast for a recording, through the same session as
    // the pictures (the user is asked once for both): its PipeWire remote
    // (owned by the session; a source reading it takes a copy) and node.
    // `done` runs on the main thread unless `context` is gone first, with the
    // stream or with the error to show.
    struct ScreenStream
    {
        int fd = -1;
        quint32 nodeId = 0;
    };
    using StreamCompletion = std::function<void(const std::optional<ScreenStream> &, const std::optional<Error> &)>;
    void requestScreenStream(QObject *context, StreamCompletion done);

    // One frame of a PipeWire stream (the portal's remote `fd`, which is not
    // taken over, and its node) as grab() gives it. Blocks until the first
    // frame comes, the stream fails or `timeoutMs` passes.
    static QImage grabPipeWireFrame(int fd, quint32 nodeId, int timeoutMs, Error *error);

private:
    ScreenCastPortal *portal();
    void grabThroughPortal(const QPointer<QObject> &context, Completion done);

    QString m_display;
    std::unique_ptr<QDBusConnection> m_portalBus;
    std::unique_ptr<ScreenCastPortal> m_portal;
};
