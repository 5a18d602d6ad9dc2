#include "AgentConfig.h"

#include "PropertyList.h"
#include "ToolFailure.h"

#include <QDir>
#include <QFileInfo>

QVariantMap AgentConfig::values() const
{
    return PropertyList::readFile(m_path).toMap();
}

void AgentConfig::set(const QVariantMap &changes) const
{
    QVariantMap contents = values();
    contents.insert(changes);
    write(contents);
}

void AgentConfig::remove(const QStringList &keys) const
{
    QVariantMap contents = values();
    for (const QString &key : keys)
        contents.remove(key);
    write(contents);
}

void AgentConfig::write(const QVariantMap &contents) const
{
    const QString folder = QFileInfo(m_path).absolutePath();
    QString error;
    if (!QDir().mkpath(folder))
        error = QStringLiteral("cannot create %1").arg(folder);
    else if (PropertyList::writeFile(m_path, contents, true, &error))
        return;
    throw ToolFailure(ToolFailure::kRefused,
        QStringLiteral("Error: cannot write the agent configuration %1: %2\n").arg(m_path, error));
}
