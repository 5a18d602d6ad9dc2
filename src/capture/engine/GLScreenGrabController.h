#pragma once

#include <QImage>
#include <QString>

// One still picture of the whole main screen, for the screen source's
// preview. Reads the X server's root window, cropped to the RandR primary
// output when the server names one; the name is the system's.
class GLScreenGrabController final
{
public:
    // `display` empty: $DISPLAY.
    explicit GLScreenGrabController(QString display = QString())
        : m_display(std::move(display))
    { }

    // A top-down 32-bit image (QImage::Format_RGB32) whose size in points is
    // its size in pixels, or a null image when the screen cannot be read.
    QImage grab() const;

private:
    QString m_display;
};
