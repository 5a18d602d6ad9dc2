#include "RecordingDiskSpace.h"

#include "Log.h"
#include "Paths.h"
#include "PropertyList.h"

#include <QDir>
#include <QStorageInfo>

#include <optional>

namespace {

const QString kCutoffKey = QStringLiteral("RecordingDiskSpaceCutoffInMB");
constexpr double kCutoffMargin = 100;
constexpr double kDefaultCutoff = 1024;

QStorageInfo homeVolume()
{
    return QStorageInfo(QDir::homePath());
}

// The agent's cutoff setting in `configuration`, if it has one.
std::optional<double> cutoffIn(const QVariant &configuration)
{
    const QVariant value = configuration.toMap().value(kCutoffKey);
    if (!value.isValid())
        return std::nullopt;
    return value.toDouble();
}

} // namespace

namespace RecordingDiskSpace {

double cutoffMB()
{
    std::optional<double> cutoff = cutoffIn(PropertyList::readFile(Paths::userAgentConfig()));
    if (!cutoff)
        cutoff = cutoffIn(PropertyList::readFile(Paths::agentAdHocDefaults()));
    return cutoff.value_or(kDefaultCutoff) + kCutoffMargin;
}

bool enoughForRecording()
{
    const double available = double(homeVolume().bytesAvailable()) / 1024 / 1024;
    const double limit = cutoffMB();
    if (available > limit)
        return true;
    // Names "/" whatever volume holds the home folder; the line stays as it is.
    Log::format(QStringLiteral("Not enough space for recording: %.1f MB available on /, but cutoff is %.1f MB"),
        { available, limit });
    return false;
}

QString volumeName()
{
    const QStorageInfo volume = homeVolume();
    if (!volume.isValid())
        return QString();
    const QString label = volume.name();
    return label.isEmpty() ? volume.rootPath() : label;
}

} // namespace RecordingDiskSpace
