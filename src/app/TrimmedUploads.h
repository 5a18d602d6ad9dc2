#pragma once

#include "Error.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <utility>

// A trimmed recording is uploaded from copies in the spool folder's
// "Trimmed" folder, and its original stays beside until the upload has
// completed: a crash or a failed upload loses nothing, and the next sign-in
// offers the original again. Which originals wait for which upload is kept
// on disk, one file per upload, so a later run deletes them once it sees the
// upload completed.
namespace TrimmedUploads {

QString folder(const QString &spool);

// Blocking: the kept range of each movie, copied into the folder under its
// own name. Either every copy is made, or none is left and the error says
// why.
std::pair<QStringList, std::optional<Error>> trim(
    const QStringList &movies, const QString &spool, qint64 inNanoseconds, qint64 outNanoseconds);

void remember(const QString &spool, const QString &uploadUUID, const QStringList &originals);

// Deletes the originals of every upload that `statusOf` (an upload UUID's
// status word, or an empty string when unknown) reports completed, and
// copies a crash left behind that no upload holds.
void settle(const QString &spool, const std::function<QString(const QString &uploadUUID)> &statusOf);

} // namespace TrimmedUploads
