#include "TrimmedUploads.h"

#include "Log.h"
#include "MovieRewriter.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

const QString kSuffix = QStringLiteral(".originals");

} // namespace

namespace TrimmedUploads {

QString folder(const QString &spool)
{
    return spool + QStringLiteral("/Trimmed");
}

std::pair<QStringList, std::optional<Error>> trim(
    const QStringList &movies, const QString &spool, qint64 inNanoseconds, qint64 outNanoseconds)
{
    const QString into = folder(spool);
    QStringList copies;
    std::optional<Error> failure;
    if (!QDir().mkpath(into))
        failure = Error { kPosixErrorDomain, EACCES, QStringLiteral("Cannot create %1").arg(into) };
    for (const QString &movie : movies) {
        if (failure)
            break;
        const QString copy = into + QLatin1Char('/') + QFileInfo(movie).fileName();
        failure = MovieRewriter::trimMovie(movie, copy, inNanoseconds, outNanoseconds);
        if (!failure)
            copies << copy;
    }
    if (failure) {
        for (const QString &copy : std::as_const(copies))
            QFile::remove(copy);
        return { {}, failure };
    }
    return { copies, std::nullopt };
}

void remember(const QString &spool, const QString &uploadUUID, const QStringList &originals)
{
    if (uploadUUID.isEmpty() || !QDir().mkpath(folder(spool)))
        return;
    QSaveFile file(folder(spool) + QLatin1Char('/') + uploadUUID + kSuffix);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(originals.join(QLatin1Char('\n')).toUtf8());
    file.commit();
}

void settle(const QString &spool, const std::function<QString(const QString &uploadUUID)> &statusOf)
{
    const QDir dir(folder(spool));
    if (!dir.exists())
        return;
    for (const QFileInfo &record : dir.entryInfoList({ QStringLiteral("*") + kSuffix }, QDir::Files)) {
        const QString uuid = record.completeBaseName();
        if (statusOf(uuid) != QLatin1String("completed"))
            continue;
        QFile file(record.filePath());
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QStringList originals = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        file.close();
        for (const QString &original : originals) {
            if (QFile::exists(original) && !QFile::remove(original))
                Log::format(QStringLiteral("Could not remove the untrimmed original %@"), { original });
        }
        QFile::remove(record.filePath());
    }
    // Copies are queued and deleted at once; one a minute old was left by
    // a crash between the trim and the hand-over, and its original stays.
    const QDateTime staleBefore = QDateTime::currentDateTime().addSecs(-60);
    for (const QFileInfo &copy : dir.entryInfoList({ QStringLiteral("*.mov") }, QDir::Files))
        if (copy.lastModified() < staleBefore)
            QFile::remove(copy.filePath());
}

} // namespace TrimmedUploads
