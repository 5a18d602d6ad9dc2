#include "TransfersModel.h"

#include "Format.h"
#include "OrvaneKeys.h"

#include <QHash>

using namespace OrvaneKeys;

TransfersModel::TransfersModel(QObject *parent)
    : QAbstractListModel(parent)
{ }

TransfersModel::~TransfersModel() = default;

TransfersModel::Row TransfersModel::makeRow(const QString &key, const QVariant &record, const QString &iconName)
{
    const QVariantMap row = record.toMap();
    Row made;
    made.key = key;
    made.record = record;
    made.title = titleLine(row);
    made.status = statusLine(row);
    made.uploadUUID = row.value(Upload::UUID).toString();
    const QVariant icon = row.value(kFileIconKey);
    made.iconName = icon.isValid() ? icon.toString() : iconName;
    made.percentDone = row.value(Upload::PercentDone).toDouble();
    made.failed = row.value(Upload::Status).toString() == UploadStatus::Error;
    return made;
}

void TransfersModel::setTransfers(const QVariantList &rows, const QStringList &keys)
{
    const qsizetype n = std::min(rows.size(), keys.size());
    QHash<QString, qsizetype> position;
    position.reserve(n);
    for (qsizetype i = 0; i < n; ++i)
        position.insert(keys.at(i), i);

    // Uploads that are gone leave, in runs from the end.
    for (int last = int(m_rows.size()) - 1; last >= 0; --last) {
        if (position.contains(m_rows[last].key))
            continue;
        int first = last;
        while (first > 0 && !position.contains(m_rows[first - 1].key))
            --first;
        beginRemoveRows(QModelIndex(), first, last);
        m_rows.erase(m_rows.begin() + first, m_rows.begin() + last + 1);
        endRemoveRows();
        last = first;
    }

    // The tool keeps its order; should the rows that stay come in another
    // one (or a key come twice), the list starts afresh.
    bool inOrder = position.size() == n;
    for (qsizetype i = 1; inOrder && i < qsizetype(m_rows.size()); ++i)
        inOrder = position.value(m_rows[i - 1].key) < position.value(m_rows[i].key);
    if (!inOrder) {
        beginResetModel();
        m_rows.clear();
        for (qsizetype i = 0; i < n; ++i)
            m_rows.push_back(makeRow(keys.at(i), rows.at(i)));
        endResetModel();
        return;
    }

    int changedFirst = -1;
    int at = 0;
    for (qsizetype i = 0; i < n; ++i) {
        if (at < int(m_rows.size()) && m_rows[at].key == keys.at(i)) {
            // Rows made from the same record share its data: comparing
            // them costs nothing.
            Row &row = m_rows[at];
            if (row.record != rows.at(i)) {
                row = makeRow(keys.at(i), rows.at(i), row.iconName);
                if (changedFirst < 0)
                    changedFirst = at;
            } else if (changedFirst >= 0) {
                emitChanged(changedFirst, at - 1);
                changedFirst = -1;
            }
            ++at;
            continue;
        }
        if (changedFirst >= 0) {
            emitChanged(changedFirst, at - 1);
            changedFirst = -1;
        }
        // New uploads come in runs, up to the next row that stays.
        qsizetype end = i + 1;
        while (end < n && !(at < int(m_rows.size()) && m_rows[at].key == keys.at(end)))
            ++end;
        beginInsertRows(QModelIndex(), at, at + int(end - i) - 1);
        std::vector<Row> added;
        added.reserve(end - i);
        for (qsizetype j = i; j < end; ++j)
            added.push_back(makeRow(keys.at(j), rows.at(j)));
        m_rows.insert(
            m_rows.begin() + at, std::make_move_iterator(added.begin()), std::make_move_iterator(added.end()));
        endInsertRows();
        at += int(end - i);
        i = end - 1;
    }
    if (changedFirst >= 0)
        emitChanged(changedFirst, at - 1);
}

void TransfersModel::emitChanged(int first, int last, const QList<int> &roles)
{
    emit dataChanged(index(first), index(last), roles);
}

void TransfersModel::setRetryablePredicate(std::function<bool(const QString &)> retryable)
{
    m_retryable = std::move(retryable);
    retryOffersChanged();
}

void TransfersModel::retryOffersChanged()
{
    for (int row = 0; row < int(m_rows.size()); ++row) {
        if (m_rows[row].failed)
            emitChanged(row, row, { RetryOfferedRole, Qt::AccessibleDescriptionRole });
    }
}

bool TransfersModel::retryOffered(const Row &row) const
{
    return row.failed && m_retryable && m_retryable(row.uploadUUID);
}

int TransfersModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant TransfersModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= int(m_rows.size()))
        return QVariant();
    const Row &row = m_rows[index.row()];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return row.title;
    case Qt::AccessibleDescriptionRole: {
        const QString progress = tr("progress %1 %").arg(int(row.percentDone));
        QString description = row.status.isEmpty() ? progress : row.status + QStringLiteral(", ") + progress;
        if (retryOffered(row))
            description += QStringLiteral(". ") + tr("Press Return to retry the upload.");
        return description;
    }
    case Qt::ToolTipRole:
    case StatusLineRole:
        return row.status;
    case PercentDoneRole:
        return row.percentDone;
    case IconNameRole:
        return row.iconName;
    case UploadUUIDRole:
        return row.uploadUUID;
    case FailedRole:
        return row.failed;
    case RetryOfferedRole:
        return retryOffered(row);
    default:
        return QVariant();
    }
}

QString TransfersModel::titleLine(const QVariantMap &row)
{
    const QVariantMap metadata = row.value(Upload::Metadata).toMap();
    QString title = metadata.value(Metadata::Title).toString();
    if (!metadata.contains(Metadata::Title))
        title = metadata.value(Metadata::UserMetadataTitle).toString();
    // A missing title reads "(null)", as it always has; no placeholder.
    return lxFormat(tr("'%@' by %@"), { title, row.value(Upload::User).toString() });
}

QString TransfersModel::statusLine(const QVariantMap &row)
{
    const QString status = row.value(Upload::Status).toString();
    if (status == UploadStatus::Pending)
        return tr("Pending");
    if (status == UploadStatus::Error)
        return tr("Error");
    if (status == UploadStatus::Completed)
        return tr("Completed");
    if (status != UploadStatus::Uploading)
        return QString();
    const int percent = int(row.value(Upload::PercentDone).toDouble());
    const qint64 left = qint64(row.value(Upload::EstimatedTimeLeft).toDouble());
    if (left > 0)
        return lxFormat(tr("%d%% done \u2014 %@ remaining"), { percent, durationText(left) });
    return lxFormat(tr("%d%% done"), { percent });
}

QString TransfersModel::durationText(qint64 seconds)
{
    // English sources in both forms; a translation's plural rules take %n.
    auto seconds_ = [](int n) { return n == 1 ? tr("1 second") : tr("%n seconds", nullptr, n); };
    auto minutes_ = [](int n) { return n == 1 ? tr("1 minute") : tr("%n minutes", nullptr, n); };
    auto hours_ = [](int n) { return n == 1 ? tr("1 hour") : tr("%n hours", nullptr, n); };
    if (seconds < 60)
        return seconds_(int(seconds));
    const qint64 minutes = (seconds + 30) / 60;
    if (minutes < 60)
        return minutes_(int(minutes));
    if (minutes % 60 == 0)
        return hours_(int(minutes / 60));
    return QStringLiteral("%1 %2").arg(hours_(int(minutes / 60)), minutes_(int(minutes % 60)));
}
