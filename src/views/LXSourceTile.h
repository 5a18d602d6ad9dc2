#pragma once

#include "LXGlyphs.h"

#include <QAbstractButton>

class QVariantAnimation;

// One of the four source tiles of the main window: a glyph and a title that
// light up under the pointer and sink slightly while pressed. It takes
// keyboard focus, shown by a ring, and Space or Return choose it.
class LXSourceTile final : public QAbstractButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LXSourceTile)

public:
    LXSourceTile(LXGlyphs::Glyph glyph, const QString &title, QWidget *parent = nullptr);

    LXGlyphs::Glyph glyph() const { return m_glyph; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void animate(QVariantAnimation *animation, qreal &value, qreal target, int ms);

    LXGlyphs::Glyph m_glyph;
    qreal m_hover = 0; // 0 → 1 while the pointer is over the tile
    qreal m_press = 0; // 0 → 1 while pressed
    QVariantAnimation *m_hoverAnimation;
    QVariantAnimation *m_pressAnimation;
};
