#include "DisplaySession.h"

#include <QString>
#include <QtGlobal>

bool DisplaySession::isWayland()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        || qEnvironmentVariable("XDG_SESSION_TYPE") == QLatin1String("wayland")
        || qEnvironmentVariable("QT_QPA_PLATFORM").startsWith(QLatin1String("wayland"));
}
