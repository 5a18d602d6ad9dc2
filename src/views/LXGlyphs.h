#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

// The application's icons, drawn as vector shapes so they stay sharp at any
// scale factor and need no image files.
namespace LXGlyphs {

enum class Glyph { Camera, Microphone, Screen, Film, Record, Pause, Lumex };

void draw(QPainter &painter, Glyph glyph, const QRectF &rect, const QColor &color);

} // namespace LXGlyphs
