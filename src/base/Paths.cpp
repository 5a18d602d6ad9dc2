#include "Paths.h"

#include <QDir>

namespace Paths {

QString sysroot()
{
    QString root = qEnvironmentVariable("LUMEX_SYSROOT");
    while (root.endsWith(QLatin1Char('/')))
        root.chop(1);
    return root;
}

QString system(const QString &absolutePath)
{
    return sysroot() + absolutePath;
}

QString expandTilde(const QString &path)
{
    if (path != QLatin1String("~") && !path.startsWith(QLatin1String("~/")))
        return path;
    QString home = qEnvironmentVariable("HOME");
    if (home.isEmpty())
        home = QDir::homePath();
    return home + path.mid(1);
}

QString orvxexec()
{
    return system(QStringLiteral("/usr/libexec/orvane/orvxexec"));
}
QString orvxctlexec()
{
    return system(QStringLiteral("/usr/libexec/orvane/orvxctlexec"));
}
QString orvxagentd()
{
    return system(QStringLiteral("/usr/libexec/orvane/orvxagentd"));
}
QString mkdirTool()
{
    return QStringLiteral("/bin/mkdir");
}
QString nullDevice()
{
    return QStringLiteral("/dev/null");
}

QString agentAdHocDefaults()
{
    return system(QStringLiteral("/etc/orvane/orvxagentd.adhoc.plist-default"));
}

QString globalAgentConfig()
{
    return system(QStringLiteral("/Library/Preferences/com.tarn.orvxagentd.plist"));
}

QString userAgentConfig()
{
    return expandTilde(QStringLiteral("~/Library/Preferences/com.tarn.orvxagentd.plist"));
}

QString kioskFile()
{
    return system(QStringLiteral("/Library/Preferences/com.tarn.Lumex.kiosk.plist"));
}

QString userDefaultsFile()
{
    return expandTilde(QStringLiteral("~/Library/Preferences/com.tarn.Lumex.plist"));
}

QString applicationSupport()
{
    return expandTilde(QStringLiteral("~/Library/Application Support/Lumex"));
}

QString jobDataFolder()
{
    static const QString folder = applicationSupport();
    return folder;
}

} // namespace Paths
