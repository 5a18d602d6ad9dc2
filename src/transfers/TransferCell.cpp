#include "TransferCell.h"

#include "TransfersModel.h"

#include "ui_TransferCell.h"

TransferCell::TransferCell(const QModelIndex &index, QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::TransferCell>())
    , m_index(index)
{
    m_ui->setupUi(this);
    connect(m_ui->retryButton, &QPushButton::clicked, this, &TransferCell::retryClicked);
    if (const QAbstractItemModel *model = index.model()) {
        connect(
            model, &QAbstractItemModel::dataChanged, this, [this](const QModelIndex &first, const QModelIndex &last) {
                if (m_index.isValid() && first.row() <= m_index.row() && m_index.row() <= last.row())
                    updateFromModel();
            });
        connect(model, &QAbstractItemModel::modelReset, this, &TransferCell::updateFromModel);
    }
    updateFromModel();
}

TransferCell::~TransferCell() = default;

void TransferCell::updateFromModel()
{
    const bool offered = offersRetry();
    if (m_ui->retryButton->isVisibleTo(this) != offered)
        m_ui->retryButton->setVisible(offered);
    // Without its button the cell must not keep clicks from the row under it.
    setAttribute(Qt::WA_TransparentForMouseEvents, !offered);
}

QSize TransferCell::sizeHint() const
{
    const QMargins margins = layout()->contentsMargins();
    const QSize button = m_ui->retryButton->sizeHint();
    return { button.width() + margins.left() + margins.right(), button.height() };
}

QString TransferCell::titleAndAuthor() const
{
    return m_index.data(Qt::DisplayRole).toString();
}

QString TransferCell::status() const
{
    return m_index.data(TransfersModel::StatusLineRole).toString();
}

int TransferCell::percentShown() const
{
    return int(m_index.data(TransfersModel::PercentDoneRole).toDouble());
}

QString TransferCell::iconName() const
{
    return m_index.data(TransfersModel::IconNameRole).toString();
}

QString TransferCell::uploadUUID() const
{
    return m_index.data(TransfersModel::UploadUUIDRole).toString();
}

bool TransferCell::offersRetry() const
{
    return m_index.data(TransfersModel::RetryOfferedRole).toBool();
}
