#include "SimEnvironment.h"

#include "Paths.h"

#include <QFileInfo>

namespace {

QString executablePath()
{
    return QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath();
}

QString rootOf(const QString &executable)
{
    const QString folder = QFileInfo(executable).absolutePath();
    const QLatin1String installed("/usr/libexec/orvane");
    if (folder.endsWith(installed))
        return folder.chopped(installed.size());
    // Run from somewhere else (a developer's build folder): keep the state
    // next to the binary rather than in the machine's /var.
    return folder;
}

} // namespace

SimEnvironment SimEnvironment::detect()
{
    const bool marked = qEnvironmentVariable(Paths::kPrivilegedRunVariable) == QLatin1String("1");
    const bool underPkexec = !qEnvironmentVariable("PKEXEC_UID").isEmpty();
    return SimEnvironment(rootOf(executablePath()), marked || underPkexec);
}

void SimEnvironment::adoptSysroot() const
{
    if (qEnvironmentVariableIsEmpty("LUMEX_SYSROOT") && !m_root.isEmpty())
        qputenv("LUMEX_SYSROOT", m_root.toUtf8());
}
