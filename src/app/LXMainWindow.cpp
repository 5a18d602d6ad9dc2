#include "LXMainWindow.h"

#include <QLabel>
#include <QVBoxLayout>

LXMainWindow::LXMainWindow(QWidget *parent)
    : QMainWindow(parent)
{
    setWindowTitle(tr("Lumex"));
    auto *central = new QWidget(this);
    auto *layout = new QVBoxLayout(central);
    m_statusLabel = new QLabel(tr("Not connected to a server yet."), central);
    m_statusLabel->setAlignment(Qt::AlignCenter);
    QFont font = m_statusLabel->font();
    font.setPointSizeF(font.pointSizeF() * 1.4);
    m_statusLabel->setFont(font);
    layout->addWidget(m_statusLabel);
    setCentralWidget(central);
    resize(720, 480);
}
