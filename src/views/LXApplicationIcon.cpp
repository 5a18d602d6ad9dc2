#include "LXApplicationIcon.h"

#include "LXGlyphs.h"

#include <QPainter>
#include <QPixmap>

namespace {

QPixmap applicationIcon()
{
    QPixmap pixmap(128, 128);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    LXGlyphs::draw(p, LXGlyphs::Glyph::Lumex, QRectF(4, 4, 120, 120), Qt::white);
    return pixmap;
}

QPixmap recordingBadge()
{
    QPixmap pixmap(48, 48);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(Qt::white, 5));
    p.setBrush(QColor(230, 30, 40));
    p.drawEllipse(QRectF(3, 3, 42, 42));
    return pixmap;
}

} // namespace

namespace LXApplicationIcon {

QIcon icon(bool badged)
{
    QPixmap icon = applicationIcon();
    if (badged) {
        const QPixmap badge = recordingBadge();
        QPainter p(&icon);
        p.setCompositionMode(QPainter::CompositionMode_SourceOver);
        p.drawPixmap(icon.width() - badge.width(), 0, badge);
    }
    return QIcon(icon);
}

} // namespace LXApplicationIcon
