#include "TransfersController.h"

#include "LXPanelWindow.h"
#include "Log.h"
#include "OrvaneServerInterface.h"
#include "PropertyList.h"
#include "Threads.h"
#include "TransferCell.h"

#include "ui_Transfers.h"

#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QMessageBox>
#include <QMimeDatabase>
#include <QTimer>

#include <cstdint>

#include <sys/stat.h>

namespace {

constexpr int kRowHeight = 58;

// Keeps the row colours in step with the window's activation.
class ActivationWatcher final : public QObject
{
public:
    ActivationWatcher(QObject *parent, std::function<void()> changed)
        : QObject(parent)
        , m_changed(std::move(changed))
    { }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::ActivationChange)
            m_changed();
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> m_changed;
};

} // namespace

TransfersController::TransfersController(QObject *parent)
    : QObject(parent)
{ }

TransfersController::~TransfersController() = default;

QWidget *TransfersController::window()
{
    if (m_window)
        return m_window.get();
    m_window = std::make_unique<LXPanelWindow>();
    m_ui = std::make_unique<Ui::Transfers>();
    m_ui->setupUi(m_window.get());
    m_window->setObjectName(QStringLiteral("Transfers"));
    QTableWidget *table = m_ui->transfersTableView;
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(kRowHeight);
    // The rows' dark grey texts need a light list under them, whatever the
    // look of the rest of the application.
    QPalette list = table->palette();
    list.setColor(QPalette::Base, Qt::white);
    list.setColor(QPalette::AlternateBase, QColor(0xf2, 0xf2, 0xf4));
    list.setColor(QPalette::Text, QColor::fromRgbF(0.2f, 0.2f, 0.2f));
    table->setPalette(list);
    connect(m_ui->clearButton, &QPushButton::clicked, this, &TransfersController::clearTransfers);
    connect(
        table->selectionModel(), &QItemSelectionModel::selectionChanged, this, &TransfersController::updateRowColours);
    m_window->installEventFilter(new ActivationWatcher(this, [this] { updateRowColours(); }));
    connect(m_window.get(), &LXPanelWindow::willClose, this, &TransfersController::windowAboutToClose);
    reloadTable({});
    return m_window.get();
}

void TransfersController::startPollingSubmissions()
{
    if (!m_transfers)
        m_transfers = QVariantList();
    if (m_refreshTimer)
        return;
    refreshTransfers();
    m_refreshTimer = new QTimer(this);
    m_refreshTimer->setInterval(kRefreshMsec);
    connect(m_refreshTimer, &QTimer::timeout, this, &TransfersController::refreshTransfers);
    m_refreshTimer->start();
}

void TransfersController::stopPollingSubmissions()
{
    // An open window keeps polling for its own display until it closes.
    if (m_window && m_window->isVisible() && !m_isTransfersWindowAboutToClose)
        return;
    delete m_refreshTimer;
    m_refreshTimer = nullptr;
    m_transfers.reset();
    m_rows.clear();
}

void TransfersController::windowAboutToClose()
{
    m_isTransfersWindowAboutToClose = true;
    stopPollingSubmissions();
    m_isTransfersWindowAboutToClose = false;
    emit windowWillClose();
}

void TransfersController::refreshTransfers()
{
    QVariantList rows;
    QHash<QString, CachedRow> madeRows;
    auto statuses = OrvaneServerInterface::transferStatuses();
    if (statuses) {
        rows.reserve(statuses->size());
        madeRows.reserve(statuses->size());
        // The tool's order, deliberately unsorted. The keys only find the
        // row made from the same record at the last poll: a long queue is
        // mostly finished uploads that stay as they were.
        for (const auto &[uuid, record] : *statuses) {
            const QString metadataFile = record.toMap().value(QStringLiteral("cached_metadata_file")).toString();
            const QVariant metadata = metadataForFile(metadataFile);
            const CachedRow cached = m_rows.value(uuid);
            if (cached.row.isValid() && cached.metadata == metadata && cached.record == record) {
                rows.append(cached.row);
                madeRows.insert(uuid, cached);
                continue;
            }
            QVariantMap row = record.toMap();
            row.insert(QStringLiteral("metadata"), metadata);
            const QVariantList paths = row.value(QStringLiteral("content_paths")).toList();
            if (!paths.isEmpty())
                row.insert(QStringLiteral("fileIcon"), iconNameForFile(paths.first().toString()));
            rows.append(row);
            madeRows.insert(uuid, { record, metadata, rows.last() });
        }
    }
    m_rows = std::move(madeRows);
    QVariantList previous = m_transfers.value_or(QVariantList());
    m_transfers = std::move(rows);
    reloadTable(previous);
    if (m_controller)
        m_controller->updateSubmissionStatus();
    // Freeing a thousand records' trees costs milliseconds of their own;
    // what this poll has left over goes on a worker thread (the shared data
    // counts its references atomically).
    runOnWorkerThread([leftovers = std::make_tuple(std::move(statuses), std::move(previous))] {});
}

void TransfersController::reloadTable(const QVariantList &previous)
{
    if (!m_ui)
        return;
    const qsizetype n = m_transfers ? m_transfers->size() : 0;
    QTableWidget *table = m_ui->transfersTableView;
    const int before = table->rowCount();
    // Removed rows take their views with them; added rows get fresh ones.
    if (before != n)
        table->setRowCount(int(n));
    for (int row = before; row < n; ++row)
        table->setCellWidget(row, 0, newTransferCell());
    for (int row = 0; row < n; ++row) {
        // Most uploads of a long queue stay as they were between polls.
        if (row >= before || row >= previous.size() || previous.at(row) != m_transfers->at(row))
            cellForRow(row)->setObjectValue(m_transfers->at(row));
    }
    if (before != n)
        updateRowColours();

    QString count;
    if (n < 1)
        count = tr("No Transfers");
    else if (n == 1)
        count = tr("1 Transfer");
    else
        count = tr("%n Transfers", nullptr, int(n));
    if (m_ui->numberOfTransfersTextField->text() != count)
        m_ui->numberOfTransfersTextField->setText(count);
    m_ui->clearButton->setEnabled(n >= 1);
}

void TransfersController::updateRowColours()
{
    if (!m_ui)
        return;
    QTableWidget *table = m_ui->transfersTableView;
    const bool active = m_window->isActiveWindow();
    const QItemSelectionModel *selection = table->selectionModel();
    for (int row = 0; row < table->rowCount(); ++row) {
        if (TransferCell *cell = cellForRow(row))
            cell->setHighlighted(active && selection->isRowSelected(row, QModelIndex()));
    }
}

void TransfersController::clearTransfers()
{
    OrvaneServerInterface::clearCompletedTransferStatuses();
    reloadTable({});
}

QString TransfersController::transferStatusForUUID(const QString &uuid) const
{
    if (!m_transfers)
        return QString();
    for (const QVariant &row : *m_transfers) {
        const QVariantMap map = row.toMap();
        if (map.value(QStringLiteral("upload_uuid")).toString() == uuid)
            return map.value(QStringLiteral("status")).toString();
    }
    return QString();
}

QVariantMap TransfersController::transferForUUID(const QString &uuid) const
{
    if (!m_transfers)
        return {};
    for (const QVariant &row : *m_transfers) {
        QVariantMap map = row.toMap();
        if (map.value(QStringLiteral("upload_uuid")).toString() == uuid)
            return map;
    }
    return {};
}

TransferCell *TransfersController::newTransferCell()
{
    auto *cell = new TransferCell;
    cell->setRetryablePredicate([this](const QString &uuid) { return !m_retriedUploads.contains(uuid); });
    connect(cell, &TransferCell::retryClicked, this, [this, cell] {
        for (int row = 0; row < numberOfRows(); ++row) {
            if (cellForRow(row) == cell)
                retryTransferAtRow(row);
        }
    });
    return cell;
}

void TransfersController::retryTransferAtRow(int row)
{
    if (!m_transfers || row < 0 || row >= m_transfers->size())
        return;
    const QVariantMap transfer = m_transfers->at(row).toMap();
    const QString uuid = transfer.value(QStringLiteral("upload_uuid")).toString();
    if (transfer.value(QStringLiteral("status")).toString() != QLatin1String("error")
        || m_retriedUploads.contains(uuid))
        return;
    QStringList files;
    for (const QVariant &path : transfer.value(QStringLiteral("content_paths")).toList())
        files << path.toString();
    const QString metadataFile = transfer.value(QStringLiteral("cached_metadata_file")).toString();
    QStringList missing;
    if (files.isEmpty())
        missing << tr("(no file)");
    for (const QString &file : files + QStringList { metadataFile }) {
        if (!QFileInfo(file).isFile())
            missing << (file.isEmpty() ? tr("(no file)") : file);
    }
    if (!missing.isEmpty()) {
        Log::format(QStringLiteral("Cannot retry upload %@: missing %@"), { uuid, missing.join(QStringLiteral(", ")) });
        alertRetryImpossible(tr("This upload can no longer be retried."),
            lxFormat(tr("Its files were moved or deleted:\n%@"), { missing.join(QLatin1Char('\n')) }));
        return;
    }
    const std::shared_ptr<OrvaneServerInterface> server = m_controller ? m_controller->signedInServer() : nullptr;
    if (!server) {
        alertRetryImpossible(
            tr("Sign in to retry this upload."), tr("The upload is sent again under the name you sign in with."));
        return;
    }
    // The queue's own record names the workflow where the tool keeps it;
    // otherwise the one chosen now.
    const QVariant recorded = transfer.value(QStringLiteral("workflow"));
    QString workflow = recorded.typeId() == QMetaType::QVariantMap
        ? recorded.toMap().value(QStringLiteral("name")).toString()
        : recorded.toString();
    if (workflow.isEmpty() && server->job())
        workflow = server->job()->workflow().value(QStringLiteral("name")).toString();

    m_retriedUploads.insert(uuid);
    for (int r = 0; r < numberOfRows(); ++r)
        cellForRow(r)->updateRetryButton();
    const QPointer<QObject> context(this);
    runOnWorkerThread(
        [context, server, files, metadataFile, workflow, uuid] {
            QString newUUID;
            Error error;
            const int32_t status = server->resubmitFiles(files, metadataFile, workflow, &newUUID, &error);
            deliverOnMainThread(context, [context, uuid, status, newUUID, error] {
                static_cast<TransfersController *>(context.data())->retryDidEnd(uuid, status, newUUID, error);
            });
        },
        [context, uuid](const QString &failure) {
            deliverOnMainThread(context, [context, uuid, failure] {
                static_cast<TransfersController *>(context.data())
                    ->retryDidEnd(uuid, -1, QString(), Error { kServerInterfaceErrorDomain, -1, failure });
            });
        });
}

void TransfersController::retryDidEnd(
    const QString &failedUUID, int32_t status, const QString &newUUID, const Error &error)
{
    Log::format(QStringLiteral("Retried upload %@: status %d, new upload %@"), { failedUUID, status, newUUID });
    // A failed run may still have queued the files: its upload is the retry.
    if (newUUID.isEmpty()) {
        m_retriedUploads.remove(failedUUID);
        for (int r = 0; r < numberOfRows(); ++r)
            cellForRow(r)->updateRetryButton();
    } else if (m_controller) {
        m_controller->transferWasRetried(failedUUID, newUUID);
    }
    if (status != 0 && m_controller)
        m_controller->alertUserToError(error);
    if (isPolling())
        refreshTransfers();
}

void TransfersController::alertRetryImpossible(const QString &text, const QString &details)
{
    auto *alert = new QMessageBox(m_window.get());
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setWindowModality(Qt::WindowModal);
    alert->setIcon(QMessageBox::Warning);
    alert->setText(text);
    alert->setInformativeText(details);
    alert->setStandardButtons(QMessageBox::Ok);
    alert->open();
}

QVariant TransfersController::metadataForFile(const QString &path)
{
    // One stat() a row and poll; QFileInfo's dates cost a time-zone
    // conversion each, which a thousand rows notice.
    struct stat info = {};
    if (path.isEmpty() || ::stat(QFile::encodeName(path).constData(), &info) != 0 || !S_ISREG(info.st_mode)) {
        m_metadataCache.remove(path);
        return QVariant();
    }
    CachedMetadata &cached = m_metadataCache[path];
    const qint64 modified = qint64(info.st_mtim.tv_sec) * 1000000000 + info.st_mtim.tv_nsec;
    if (cached.size != qint64(info.st_size) || cached.modified != modified) {
        const QVariant metadata = PropertyList::readFile(path);
        cached
            = { modified, qint64(info.st_size), metadata.typeId() == QMetaType::QVariantMap ? metadata : QVariant() };
    }
    return cached.metadata;
}

QString TransfersController::iconNameForFile(const QString &path)
{
    // By name only: reading the file's content for every row of every poll
    // would cost more than the poll itself.
    const QString suffix = QFileInfo(path).suffix();
    auto it = m_iconNames.constFind(suffix);
    if (it != m_iconNames.cend())
        return *it;
    static const QMimeDatabase mimes;
    const QMimeType type = mimes.mimeTypeForFile(path, QMimeDatabase::MatchExtension);
    const QString name = type.iconName();
    m_iconNames.insert(suffix, name);
    return name;
}

QString TransfersController::numberOfTransfersText() const
{
    return m_ui ? m_ui->numberOfTransfersTextField->text() : QString();
}

bool TransfersController::clearButtonEnabled() const
{
    return m_ui && m_ui->clearButton->isEnabled();
}

TransferCell *TransfersController::cellForRow(int row) const
{
    return m_ui ? qobject_cast<TransferCell *>(m_ui->transfersTableView->cellWidget(row, 0)) : nullptr;
}

int TransfersController::numberOfRows() const
{
    return m_ui ? m_ui->transfersTableView->rowCount() : 0;
}
