#include "TransfersController.h"

#include "LXPanelWindow.h"
#include "Log.h"
#include "OrvaneKeys.h"
#include "OrvaneServerInterface.h"
#include "PropertyList.h"
#include "Threads.h"
#include "TransferCell.h"
#include "TransferRowDelegate.h"
#include "TransfersModel.h"

#include "ui_Transfers.h"

#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMessageBox>
#include <QMimeDatabase>
#include <QTimer>

#include <cstdint>

#include <sys/stat.h>

using namespace OrvaneKeys;

TransfersController::TransfersController(QObject *parent)
    : QObject(parent)
    , m_model(new TransfersModel(this))
{
    m_model->setRetryablePredicate([this](const QString &uuid) { return !m_retriedUploads.contains(uuid); });
}

TransfersController::~TransfersController() = default;

QWidget *TransfersController::window()
{
    if (m_window)
        return m_window.get();
    m_window = std::make_unique<LXPanelWindow>();
    m_ui = std::make_unique<Ui::Transfers>();
    m_ui->setupUi(m_window.get());
    m_window->setObjectName(QStringLiteral("Transfers"));
    QListView *list = m_ui->transfersTableView;
    list->setModel(m_model);
    list->setItemDelegate(new TransferRowDelegate(list));
    // The rows' dark grey texts need a light list under them, whatever the
    // look of the rest of the application.
    QPalette colours = list->palette();
    colours.setColor(QPalette::Base, Qt::white);
    colours.setColor(QPalette::AlternateBase, QColor(0xf2, 0xf2, 0xf4));
    colours.setColor(QPalette::Text, TransferRowDelegate::titleColor());
    list->setPalette(colours);
    connect(m_ui->clearButton, &QPushButton::clicked, this, &TransfersController::clearTransfers);
    // Return on a failed row retries it, as its button does.
    list->installEventFilter(this);
    connect(m_model, &TransfersModel::rowsInserted, this,
        [this](const QModelIndex &, int first, int last) { addRetryButtons(first, last); });
    connect(m_model, &TransfersModel::dataChanged, this,
        [this](const QModelIndex &first, const QModelIndex &last) { addRetryButtons(first.row(), last.row()); });
    connect(m_model, &TransfersModel::modelReset, this, [this] { addRetryButtons(0, m_model->rowCount() - 1); });
    connect(m_window.get(), &LXPanelWindow::willClose, this, &TransfersController::windowAboutToClose);
    reloadTable();
    return m_window.get();
}

bool TransfersController::eventFilter(QObject *watched, QEvent *event)
{
    if (m_ui && watched == m_ui->transfersTableView && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        const QModelIndex current = m_ui->transfersTableView->currentIndex();
        if ((key == Qt::Key_Return || key == Qt::Key_Enter)
            && current.data(TransfersModel::RetryOfferedRole).toBool()) {
            retryTransferAtRow(current.row());
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
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
    m_transferKeys.clear();
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
    QStringList keys;
    QHash<QString, CachedRow> madeRows;
    auto statuses = OrvaneServerInterface::transferStatuses();
    if (statuses) {
        rows.reserve(statuses->size());
        keys.reserve(statuses->size());
        madeRows.reserve(statuses->size());
        // The tool's order, deliberately unsorted. The keys only find the
        // row made from the same record at the last poll: a long queue is
        // mostly finished uploads that stay as they were.
        for (const auto &[uuid, record] : *statuses) {
            const QString metadataFile = record.toMap().value(Upload::CachedMetadataFile).toString();
            const QVariant metadata = metadataForFile(metadataFile);
            keys.append(uuid);
            const CachedRow cached = m_rows.value(uuid);
            if (cached.row.isValid() && cached.metadata == metadata && cached.record == record) {
                rows.append(cached.row);
                madeRows.insert(uuid, cached);
                continue;
            }
            QVariantMap row = record.toMap();
            row.insert(Upload::Metadata, metadata);
            const QVariantList paths = row.value(Upload::ContentPaths).toList();
            if (!paths.isEmpty())
                row.insert(TransfersModel::kFileIconKey, iconNameForFile(paths.first().toString()));
            rows.append(row);
            madeRows.insert(uuid, { record, metadata, rows.last() });
        }
    }
    m_rows = std::move(madeRows);
    const QVariantList previous = m_transfers.value_or(QVariantList());
    m_transfers = std::move(rows);
    m_transferKeys = std::move(keys);
    reloadTable();
    if (m_controller)
        m_controller->updateSubmissionStatus();
    // Freeing a thousand records' trees costs milliseconds of their own;
    // what this poll has left over goes on a worker thread (the shared data
    // counts its references atomically).
    runOnWorkerThread([leftovers = std::make_tuple(std::move(statuses), previous)] {});
}

void TransfersController::reloadTable()
{
    if (!m_ui)
        return;
    m_model->setTransfers(m_transfers.value_or(QVariantList()), m_transferKeys);
    const int n = m_model->rowCount();
    QString count;
    if (n < 1)
        count = tr("No Transfers");
    else if (n == 1)
        count = tr("1 Transfer");
    else
        count = tr("%n Transfers", nullptr, n);
    if (m_ui->numberOfTransfersTextField->text() != count)
        m_ui->numberOfTransfersTextField->setText(count);
    m_ui->clearButton->setEnabled(n >= 1);
}

void TransfersController::addRetryButtons(int first, int last)
{
    if (!m_ui)
        return;
    for (int row = first; row <= last; ++row) {
        const QModelIndex index = m_model->index(row);
        if (index.data(TransfersModel::FailedRole).toBool() && !m_ui->transfersTableView->indexWidget(index))
            addCell(index);
    }
}

TransferCell *TransfersController::addCell(const QModelIndex &index)
{
    auto *cell = new TransferCell(index);
    connect(cell, &TransferCell::retryClicked, this, [this, cell] { retryTransferAtRow(cell->index().row()); });
    m_ui->transfersTableView->setIndexWidget(index, cell);
    return cell;
}

void TransfersController::clearTransfers()
{
    OrvaneServerInterface::clearCompletedTransferStatuses();
    // The rows themselves change at the next poll.
}

QString TransfersController::transferStatusForUUID(const QString &uuid) const
{
    if (!m_transfers)
        return QString();
    for (const QVariant &row : *m_transfers) {
        const QVariantMap map = row.toMap();
        if (map.value(Upload::UUID).toString() == uuid)
            return map.value(Upload::Status).toString();
    }
    return QString();
}

QVariantMap TransfersController::transferForUUID(const QString &uuid) const
{
    if (!m_transfers)
        return {};
    for (const QVariant &row : *m_transfers) {
        QVariantMap map = row.toMap();
        if (map.value(Upload::UUID).toString() == uuid)
            return map;
    }
    return {};
}

void TransfersController::retryTransferAtRow(int row)
{
    if (!m_transfers || row < 0 || row >= m_transfers->size())
        return;
    const QVariantMap transfer = m_transfers->at(row).toMap();
    const QString uuid = transfer.value(Upload::UUID).toString();
    if (transfer.value(Upload::Status).toString() != UploadStatus::Error || m_retriedUploads.contains(uuid))
        return;
    QStringList files;
    for (const QVariant &path : transfer.value(Upload::ContentPaths).toList())
        files << path.toString();
    const QString metadataFile = transfer.value(Upload::CachedMetadataFile).toString();
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
    const QVariant recorded = transfer.value(Upload::Workflow);
    QString workflow
        = recorded.typeId() == QMetaType::QVariantMap ? recorded.toMap().value(Name).toString() : recorded.toString();
    if (workflow.isEmpty() && server->job())
        workflow = server->job()->workflow().value(Name).toString();

    m_retriedUploads.insert(uuid);
    m_model->retryOffersChanged();
    struct Outcome
    {
        int32_t status;
        QString newUUID;
        Error error;
    };
    runInBackground(
        this,
        [server, files, metadataFile, workflow] {
            Outcome outcome;
            outcome.status = server->resubmitFiles(files, metadataFile, workflow, &outcome.newUUID, &outcome.error);
            return outcome;
        },
        [uuid](TransfersController *self, const Outcome &outcome) {
            self->retryDidEnd(uuid, outcome.status, outcome.newUUID, outcome.error);
        },
        [](const QString &failure) {
            return Outcome { -1, QString(), { kServerInterfaceErrorDomain, -1, failure } };
        });
}

void TransfersController::retryDidEnd(
    const QString &failedUUID, int32_t status, const QString &newUUID, const Error &error)
{
    Log::format(QStringLiteral("Retried upload %@: status %d, new upload %@"), { failedUUID, status, newUUID });
    // A failed run may still have queued the files: its upload is the retry.
    if (newUUID.isEmpty()) {
        m_retriedUploads.remove(failedUUID);
        m_model->retryOffersChanged();
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

TransferCell *TransfersController::cellForRow(int row)
{
    if (!m_ui || row < 0 || row >= m_model->rowCount())
        return nullptr;
    const QModelIndex index = m_model->index(row);
    if (auto *cell = qobject_cast<TransferCell *>(m_ui->transfersTableView->indexWidget(index)))
        return cell;
    return addCell(index);
}

int TransfersController::numberOfRows() const
{
    return m_ui ? m_model->rowCount() : 0;
}
