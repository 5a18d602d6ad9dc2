#include "RecordingJournal.h"

#include "Log.h"
#include "Paths.h"
#include "PropertyList.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

// A value the property list can hold, or nothing: a camera's record may
// carry a download in progress, which is no part of the recording.
QVariant plain(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QVariantMap: {
        QVariantMap map;
        const QVariantMap in = value.toMap();
        for (auto it = in.begin(); it != in.end(); ++it)
            if (const QVariant kept = plain(it.value()); kept.isValid())
                map.insert(it.key(), kept);
        return map;
    }
    case QMetaType::QVariantList:
    case QMetaType::QStringList: {
        QVariantList list;
        for (const QVariant &item : value.toList())
            if (const QVariant kept = plain(item); kept.isValid())
                list << kept;
        return list;
    }
    case QMetaType::QString:
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::Double:
        return value;
    case QMetaType::QDateTime:
        // A server's recording has no start of ours.
        return value.toDateTime().isValid() ? value : QVariant();
    default:
        return QVariant();
    }
}

} // namespace

RecordingJournal::RecordingJournal(QObject *parent)
    : QObject(parent)
    , m_writer(new QObject)
{
    m_thread.setObjectName(QStringLiteral("RecordingJournal"));
    m_writer->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_writer, &QObject::deleteLater);
    m_thread.start();
}

RecordingJournal::~RecordingJournal()
{
    m_thread.quit();
    m_thread.wait();
}

QString RecordingJournal::path()
{
    return Paths::jobDataFolder() + QStringLiteral("/current-recording.plist");
}

std::optional<QVariantMap> RecordingJournal::read()
{
    if (!QFile::exists(path()))
        return std::nullopt;
    QString error;
    const QVariant entry = PropertyList::readFile(path(), &error);
    if (entry.typeId() != QMetaType::QVariantMap) {
        Log::format(QStringLiteral("Ignoring the recording journal %@: %@"), { path(), error });
        return std::nullopt;
    }
    return entry.toMap();
}

void RecordingJournal::save(const QVariantMap &entry)
{
    QVariantMap kept = plain(entry).toMap();
    kept.insert(kSavedAt, QDateTime::currentDateTimeUtc());
    QMetaObject::invokeMethod(m_writer, [kept] {
        const QString file = path();
        QString error;
        if (!QDir().mkpath(QFileInfo(file).path()) || !PropertyList::writeFile(file, kept, true, &error))
            Log::format(QStringLiteral("Could not write the recording journal %@: %@"), { file, error });
    });
}

void RecordingJournal::discard()
{
    QMetaObject::invokeMethod(m_writer, [] { QFile::remove(path()); });
}

void RecordingJournal::flush()
{
    QMetaObject::invokeMethod(
        m_writer, [] {}, Qt::BlockingQueuedConnection);
}
