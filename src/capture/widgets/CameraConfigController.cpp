#include "CameraConfigController.h"

#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

CameraConfigController::CameraConfigController(QObject *parent)
    : QObject(parent)
{ }

CameraConfigController::~CameraConfigController() = default;

QWidget *CameraConfigController::window()
{
    if (!m_window) {
        m_window = std::make_unique<QWidget>(nullptr, Qt::Window);
        m_window->setWindowTitle(tr("Camera Configuration"));
        m_window->setObjectName(QStringLiteral("CameraConfig"));
        auto *layout = new QVBoxLayout(m_window.get());
        layout->addWidget(new QLabel(tr("Camera binding and device choice will appear here."), m_window.get()));
        m_window->resize(520, 360);
        m_window->installEventFilter(this);
    }
    return m_window.get();
}

bool CameraConfigController::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_window.get() && event->type() == QEvent::Close)
        emit windowWillClose();
    return QObject::eventFilter(watched, event);
}
