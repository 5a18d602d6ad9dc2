#include "StateStore.h"

#include "PropertyList.h"
#include "SeedData.h"
#include "ToolFailure.h"

#include <QDir>
#include <QFileInfo>

void StateStore::ensureFolder() const
{
    if (!QDir().mkpath(m_folder))
        throw ToolFailure(
            ToolFailure::kRefused, QStringLiteral("Error: cannot create the state folder %1\n").arg(m_folder));
}

void StateStore::ensureSeeded() const
{
    const auto seed = [this](const QString &name, auto makeContents) {
        if (!QFileInfo::exists(filePath(name)))
            write(name, makeContents());
    };
    seed(kUsers, &SeedData::users);
    seed(kWorkflows, &SeedData::workflows);
    seed(kCameras, &SeedData::cameras);
    QDir().mkpath(libraryFolder());
}

QVariantMap StateStore::read(const QString &name) const
{
    return PropertyList::readFile(filePath(name)).toMap();
}

void StateStore::write(const QString &name, const QVariantMap &contents) const
{
    QString error;
    if (!PropertyList::writeFile(filePath(name), contents, true, &error))
        throw ToolFailure(
            ToolFailure::kRefused, QStringLiteral("Error: cannot write %1: %2\n").arg(filePath(name), error));
}
