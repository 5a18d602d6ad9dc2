#include "LXPushView.h"

#include <QParallelAnimationGroup>
#include <QPointer>
#include <QPropertyAnimation>

LXPushView::LXPushView(QWidget *parent)
    : VKColorBox(parent)
{ }

void LXPushView::pushView(QWidget *page, Direction direction, int durationMs)
{
    QWidget *old = contentView();
    if (m_animation) {
        m_animation->stop();
        m_animation->deleteLater();
        m_animation = nullptr;
    }
    if (!old || old == page || direction == Direction::None || !isVisible()) {
        setContentView(page);
        return;
    }
    const int w = width();
    const int sign = direction == Direction::FromRight ? 1 : -1;
    // The old page stays visible until it has slid out.
    setContentView(page);
    old->setParent(this);
    old->setGeometry(rect());
    old->show();
    old->stackUnder(page);
    page->move(sign * w, 0);

    m_animation = new QParallelAnimationGroup(this);
    auto *in = new QPropertyAnimation(page, "pos");
    in->setStartValue(QPoint(sign * w, 0));
    in->setEndValue(QPoint(0, 0));
    auto *out = new QPropertyAnimation(old, "pos");
    out->setStartValue(QPoint(0, 0));
    out->setEndValue(QPoint(-sign * w, 0));
    for (QPropertyAnimation *a : { in, out }) {
        a->setDuration(durationMs);
        a->setEasingCurve(QEasingCurve::OutCubic);
        m_animation->addAnimation(a);
    }
    QPointer<QWidget> leaving(old);
    connect(m_animation, &QParallelAnimationGroup::finished, this, [this, leaving] {
        if (leaving && leaving != contentView())
            leaving->hide();
        if (contentView())
            contentView()->setGeometry(rect());
    });
    m_animation->start();
}
