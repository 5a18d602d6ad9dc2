#pragma once

#include "TransfersControllerDelegate.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QVariantList>

#include <memory>
#include <optional>

class LXPanelWindow;
class QModelIndex;
class QTimer;
class QWidget;
class TransferCell;
class TransfersModel;

namespace Ui {
class Transfers;
}

// The transfers window and the polling of the machine's upload queue. Polls
// every 2.0 s while the window is shown or while the application controller
// follows a submission; each poll runs the tool synchronously on the main
// thread, so everything after it is kept cheap: metadata files are read
// again only when they change, icons come from the file name, and the list's
// model makes a row's texts again only when its record changed. The list
// paints its rows; a failed upload's row gets a live Retry button.
class TransfersController final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TransfersController)

public:
    static constexpr int kRefreshMsec = 2000;

    explicit TransfersController(QObject *parent = nullptr);
    ~TransfersController() override;

    TransfersControllerDelegate *controller() const { return m_controller; }
    void setController(TransfersControllerDelegate *controller) { m_controller = controller; }
    QWidget *window();

    // Called when the window is shown and when a submission starts.
    void startPollingSubmissions();
    // Ignored while the window is on screen and not closing.
    void stopPollingSubmissions();
    bool isPolling() const { return m_refreshTimer != nullptr; }
    void refreshTransfers();
    // The "status" of the first row of the last poll with this
    // "upload_uuid"; null when there is none. Never asks the tool.
    QString transferStatusForUUID(const QString &uuid) const;
    // The first row of the last poll with this "upload_uuid"; empty when
    // there is none.
    QVariantMap transferForUUID(const QString &uuid) const;
    // Hands the files of the failed upload in `row` to the tool again, under
    // the signed-in user; files that are gone are named in an alert instead.
    void retryTransferAtRow(int row);
    // The rows of the last poll; nullopt while not polling.
    std::optional<QVariantList> transfers() const { return m_transfers; }
    void clearTransfers();

    // The window's parts, for the application's tests and screenshots.
    QString numberOfTransfersText() const;
    bool clearButtonEnabled() const;
    // The live part of a row, made on first request where the row has none.
    TransferCell *cellForRow(int row);
    int numberOfRows() const;
    TransfersModel *model() const { return m_model; }

signals:
    void windowWillClose();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct CachedMetadata
    {
        qint64 modified = -1; // nanoseconds since the epoch
        qint64 size = -1;
        QVariant metadata;
    };
    // A row as made from one upload record and its metadata.
    struct CachedRow
    {
        QVariant record;
        QVariant metadata;
        QVariant row;
    };

    void windowAboutToClose();
    void reloadTable();
    // Failed rows among `first` to `last` get their Retry button.
    void addRetryButtons(int first, int last);
    TransferCell *addCell(const QModelIndex &index);
    QVariant metadataForFile(const QString &path);
    void retryDidEnd(const QString &failedUUID, int32_t status, const QString &newUUID, const Error &error);
    void alertRetryImpossible(const QString &text, const QString &details);
    QString iconNameForFile(const QString &path);

    TransfersControllerDelegate *m_controller = nullptr;
    std::unique_ptr<LXPanelWindow> m_window;
    std::unique_ptr<Ui::Transfers> m_ui;
    QTimer *m_refreshTimer = nullptr;
    std::optional<QVariantList> m_transfers;
    QStringList m_transferKeys; // the upload key of each row of m_transfers
    TransfersModel *m_model = nullptr;
    bool m_isTransfersWindowAboutToClose = false;
    QHash<QString, CachedMetadata> m_metadataCache;
    QHash<QString, CachedRow> m_rows; // by upload key, from the last poll
    QHash<QString, QString> m_iconNames;
    // Failed uploads queued again, or being queued: no second retry.
    QSet<QString> m_retriedUploads;
};
