#include "LXPanelWindow.h"

#include <QCloseEvent>

LXPanelWindow::LXPanelWindow(QWidget *parent)
    : QWidget(parent, Qt::Window)
{ }

void LXPanelWindow::closeEvent(QCloseEvent *event)
{
    emit willClose();
    QWidget::closeEvent(event);
}
