#pragma once

#include <QAbstractListModel>
#include <QStringList>
#include <QVariantList>

#include <functional>
#include <vector>

// The uploads of the transfers window, one row each in the tool's order.
// Each row's texts are made once, when its record changes; a poll that
// brings the same records again changes nothing, and rows that come and go
// are inserted and removed rather than the whole list reset, so the view
// keeps its selection and the live parts of the rows that stay.
//
// Screen readers get a row's title line as its name and "status, progress
// N %" as its description.
class TransfersModel final : public QAbstractListModel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TransfersModel)

public:
    enum Role {
        StatusLineRole = Qt::UserRole + 1,
        PercentDoneRole, // double, 0 to 100
        IconNameRole,
        UploadUUIDRole,
        FailedRole, // "status" is "error"
        RetryOfferedRole, // failed, and not retried yet
    };

    // The key a row adds to its upload record: the icon name of its first
    // content path.
    static inline const QString kFileIconKey = QStringLiteral("fileIcon");

    explicit TransfersModel(QObject *parent = nullptr);
    ~TransfersModel() override;

    // The rows of a poll; `keys` names each row's upload, the same from
    // one poll to the next.
    void setTransfers(const QVariantList &rows, const QStringList &keys);
    // Whether a failed upload may be retried; asked again by
    // retryOffersChanged.
    void setRetryablePredicate(std::function<bool(const QString &uploadUUID)> retryable);
    void retryOffersChanged();

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    // "'%@' by %@" with the row's title and "user".
    static QString titleLine(const QVariantMap &row);
    // The status line of an upload record.
    static QString statusLine(const QVariantMap &row);
    // Seconds as a short human text ("about 3 minutes").
    static QString durationText(qint64 seconds);

private:
    struct Row
    {
        QString key;
        QVariant record;
        QString title;
        QString status;
        QString uploadUUID;
        QString iconName;
        double percentDone = 0;
        bool failed = false;
    };
    // `iconName` stays when a row brings no icon of its own.
    static Row makeRow(const QString &key, const QVariant &record, const QString &iconName = QString());
    void emitChanged(int first, int last, const QList<int> &roles = {});
    bool retryOffered(const Row &row) const;

    std::vector<Row> m_rows;
    std::function<bool(const QString &)> m_retryable;
};
