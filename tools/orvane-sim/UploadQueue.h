#pragma once

#include "StateStore.h"

#include <QDateTime>

// The machine's upload queue. There is no daemon: an upload's progress is
// worked out from the wall clock whenever the queue is listed. A record sits
// "pending" for a moment, then "uploading" at a steady simulated rate, then
// "completed" (or "error" halfway when the submission was told to fail).
class UploadQueue final
{
public:
    static constexpr double kPendingSeconds = 1.0;
    static constexpr double kBytesPerSecond = 4.0 * 1024 * 1024;
    static constexpr double kMinimumUploadSeconds = 6.0;

    explicit UploadQueue(const StateStore &store);

    // `record` holds at least "upload_uuid", "submitted_at" (a date) and
    // "total_bytes"; everything else is passed through to the listing.
    void add(const QVariantMap &record);

    // The entries of "--list_uploads": uuid and record, each with its
    // "status", "percent_done" and "estimated_time_left" as of `now`, in
    // the order they were submitted (equal times by uuid).
    QList<std::pair<QString, QVariant>> listing(const QDateTime &now) const;

    // Removes the uploads that are completed as of `now`; returns how many.
    int clearCompleted(const QDateTime &now);

    void save() const;

private:
    static QVariantMap withProgress(QVariantMap record, const QDateTime &now);

    const StateStore &m_store;
    QVariantMap m_uploads;
};
