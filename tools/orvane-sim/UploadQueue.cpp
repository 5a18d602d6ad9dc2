#include "UploadQueue.h"

#include "OrvaneKeys.h"

#include <algorithm>
#include <cmath>

using namespace OrvaneKeys;

namespace {

// The simulator's own mark of an upload that is to fail; never listed.
const QString kFails = QStringLiteral("simulated_failure");

// Where a failing upload gives up.
constexpr double kFailingFraction = 0.5;

} // namespace

UploadQueue::UploadQueue(const StateStore &store)
    : m_store(store)
    , m_uploads(store.read(StateStore::kUploads))
{ }

void UploadQueue::add(const QVariantMap &record)
{
    m_uploads.insert(record.value(Upload::UUID).toString(), record);
}

QList<std::pair<QString, QVariant>> UploadQueue::listing(const QDateTime &now) const
{
    QList<std::pair<QDateTime, QString>> order;
    order.reserve(m_uploads.size());
    for (auto it = m_uploads.cbegin(); it != m_uploads.cend(); ++it)
        order.append({ it.value().toMap().value(Upload::SubmittedAt).toDateTime(), it.key() });
    // The map's own order already breaks ties by uuid.
    std::stable_sort(order.begin(), order.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    QList<std::pair<QString, QVariant>> result;
    result.reserve(order.size());
    for (const auto &[submitted, uuid] : std::as_const(order))
        result.append({ uuid, withProgress(m_uploads.value(uuid).toMap(), now) });
    return result;
}

int UploadQueue::clearCompleted(const QDateTime &now)
{
    int cleared = 0;
    for (auto it = m_uploads.begin(); it != m_uploads.end();) {
        if (withProgress(it.value().toMap(), now).value(Upload::Status).toString() == UploadStatus::Completed) {
            it = m_uploads.erase(it);
            ++cleared;
        } else {
            ++it;
        }
    }
    return cleared;
}

void UploadQueue::save() const
{
    m_store.write(StateStore::kUploads, m_uploads);
}

QVariantMap UploadQueue::withProgress(QVariantMap record, const QDateTime &now)
{
    const bool fails = record.take(kFails).toBool();
    const double bytes = record.value(Upload::TotalBytes).toDouble();
    const double duration = qMax(kMinimumUploadSeconds, bytes / kBytesPerSecond);
    const QDateTime submitted = record.value(Upload::SubmittedAt).toDateTime();
    const double age = submitted.isValid() ? submitted.msecsTo(now) / 1000.0 : 0.0;
    const double fraction = qBound(0.0, (age - kPendingSeconds) / duration, 1.0);

    QString status;
    double percent = 0;
    double left = duration;
    if (age < kPendingSeconds) {
        status = UploadStatus::Pending;
    } else if (fails && fraction >= kFailingFraction) {
        status = UploadStatus::Error;
        percent = kFailingFraction * 100;
        left = 0;
    } else if (fraction >= 1.0) {
        status = UploadStatus::Completed;
        percent = 100;
        left = 0;
    } else {
        status = UploadStatus::Uploading;
        percent = std::floor(fraction * 1000) / 10;
        left = duration * (1.0 - fraction);
    }
    record.insert(Upload::Status, status);
    record.insert(Upload::PercentDone, percent);
    record.insert(Upload::EstimatedTimeLeft, qint64(std::ceil(left)));
    return record;
}
