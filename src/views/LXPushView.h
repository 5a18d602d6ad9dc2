#pragma once

#include "VKColorBox.h"

class QParallelAnimationGroup;

// The content box of the main window: shows one page at a time and pushes
// the next one in from the left or the right.
class LXPushView final : public VKColorBox
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LXPushView)

public:
    enum class Direction { None, FromRight, FromLeft };

    explicit LXPushView(QWidget *parent = nullptr);

    // Shows `page`; with a direction, slides it in while the current page
    // leaves to the other side. The page is current at once; only the
    // picture lags behind.
    void pushView(QWidget *page, Direction direction, int durationMs = kDurationMs);

    static constexpr int kDurationMs = 260;

private:
    QParallelAnimationGroup *m_animation = nullptr;
};
