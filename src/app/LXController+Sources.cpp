#include "LXController.h"

#include "LXMainWindow.h"

void LXController::sourceClicked(Mode mode)
{
    setMode(mode);
    m_window->showRecordPage();
}

void LXController::rebuildInputDevicesList()
{
    // Until device selection is built, the device menu is the server's
    // camera list.
    m_currentCredentials.insert(QStringLiteral("cameras"), m_remoteCameras);
    if (!m_window)
        return;
    QStringList names;
    for (const QVariant &camera : m_remoteCameras)
        names << camera.toMap().value(QStringLiteral("name")).toString();
    m_window->setCameraNames(names);
    updateBoundControls();
}

void LXController::tearDownLocalCameraAndMicrophone()
{
    // Nothing is set up locally until local capture is built.
}
