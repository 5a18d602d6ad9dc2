#include "LastWindowWatcher.h"

#include <QApplication>
#include <QTimer>
#include <QWidget>

LastWindowWatcher::LastWindowWatcher(QObject *parent)
    : QObject(parent)
{
    qApp->installEventFilter(this);
}

bool LastWindowWatcher::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Hide && !m_checkPending && watched->isWidgetType()
        && QApplication::topLevelWidgets().contains(watched)) {
        m_checkPending = true;
        QTimer::singleShot(0, this, &LastWindowWatcher::check);
    }
    return QObject::eventFilter(watched, event);
}

void LastWindowWatcher::check()
{
    m_checkPending = false;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget *window : windows)
        if (window->isVisible() && window->windowType() != Qt::ToolTip && window->windowType() != Qt::Popup)
            return;
    emit lastWindowClosed();
}
