#include "LXRecordButton.h"

#include "LXGlyphs.h"

#include <QPainter>

LXRecordButton::LXRecordButton(QWidget *parent)
    : QPushButton(parent)
{
    setFixedSize(56, 56);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    describeState();
}

void LXRecordButton::setImageName(const QString &name)
{
    if (name == m_imageName)
        return;
    m_imageName = name;
    describeState();
    update();
}

bool LXRecordButton::pauses() const
{
    return m_imageName == QLatin1String("PausedOff");
}

void LXRecordButton::describeState()
{
    // A screen reader has only these words for what the picture shows;
    // setting them posts the name- and description-changed events, so the
    // change from record to pause is announced.
    setAccessibleName(pauses() ? tr("Pause") : tr("Record"));
    setAccessibleDescription(pauses() ? tr("Recording. Press to pause the recording.")
                                      : tr("Not recording. Press to start or resume the recording."));
}

void LXRecordButton::enterEvent(QEnterEvent *event)
{
    m_hovered = true;
    update();
    QPushButton::enterEvent(event);
}

void LXRecordButton::leaveEvent(QEvent *event)
{
    m_hovered = false;
    update();
    QPushButton::leaveEvent(event);
}

void LXRecordButton::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF outer = QRectF(rect()).adjusted(2, 2, -2, -2);
    QRadialGradient ring(outer.center(), outer.width() / 2);
    ring.setColorAt(0.8, QColor(70, 70, 76));
    ring.setColorAt(1.0, QColor(24, 24, 28));
    p.setPen(QPen(QColor(0, 0, 0, 200), 1));
    p.setBrush(ring);
    p.drawEllipse(outer);
    if (hasFocus()) {
        p.setBrush(Qt::NoBrush);
        p.setPen(QPen(QColor(255, 120, 100), 2));
        p.drawEllipse(QRectF(rect()).adjusted(1, 1, -1, -1));
    }

    const bool enabled = isEnabled();
    const qreal inset = outer.width() * (isDown() ? 0.2 : 0.17);
    const QRectF inner = outer.adjusted(inset, inset, -inset, -inset);
    if (pauses()) {
        LXGlyphs::draw(p, LXGlyphs::Glyph::Pause, inner, enabled ? QColor(240, 240, 244) : QColor(110, 110, 115));
        return;
    }
    QRadialGradient red(inner.center() - QPointF(inner.width() * 0.15, inner.height() * 0.2), inner.width());
    const int boost = m_hovered && enabled ? 25 : 0;
    red.setColorAt(0, enabled ? QColor(255, 110 + boost, 100 + boost) : QColor(120, 80, 80));
    red.setColorAt(1, enabled ? QColor(200, 20, 28) : QColor(80, 40, 40));
    p.setPen(Qt::NoPen);
    p.setBrush(red);
    p.drawEllipse(inner);
}
