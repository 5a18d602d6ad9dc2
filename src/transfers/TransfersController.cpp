#include "TransfersController.h"

#include "LXPanelWindow.h"

#include <QLabel>
#include <QVBoxLayout>

TransfersController::TransfersController(QObject *parent)
    : QObject(parent)
{ }

TransfersController::~TransfersController() = default;

QWidget *TransfersController::window()
{
    if (!m_window) {
        m_window = std::make_unique<LXPanelWindow>();
        m_window->setWindowTitle(tr("Transfers"));
        m_window->setObjectName(QStringLiteral("Transfers"));
        auto *layout = new QVBoxLayout(m_window.get());
        auto *empty = new QLabel(tr("No uploads in progress."), m_window.get());
        empty->setAlignment(Qt::AlignCenter);
        layout->addWidget(empty);
        m_window->resize(420, 300);
        connect(m_window.get(), &LXPanelWindow::willClose, this, &TransfersController::windowWillClose);
    }
    return m_window.get();
}

void TransfersController::startPollingSubmissions()
{
    // The upload list arrives with the transfers window itself.
}
