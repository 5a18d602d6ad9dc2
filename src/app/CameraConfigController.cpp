#include "CameraConfigController.h"

#include "LXPanelWindow.h"

#include <QLabel>
#include <QVBoxLayout>

CameraConfigController::CameraConfigController(QObject *parent)
    : QObject(parent)
{ }

CameraConfigController::~CameraConfigController() = default;

QWidget *CameraConfigController::window()
{
    if (!m_window) {
        m_window = std::make_unique<LXPanelWindow>();
        m_window->setWindowTitle(tr("Camera Configuration"));
        m_window->setObjectName(QStringLiteral("CameraConfig"));
        auto *layout = new QVBoxLayout(m_window.get());
        layout->addWidget(new QLabel(tr("Camera binding and device choice will appear here."), m_window.get()));
        m_window->resize(520, 360);
        connect(m_window.get(), &LXPanelWindow::willClose, this, &CameraConfigController::windowWillClose);
    }
    return m_window.get();
}
