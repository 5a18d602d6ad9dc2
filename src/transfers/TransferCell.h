#pragma once

#include <QPersistentModelIndex>
#include <QWidget>

#include <memory>

namespace Ui {
class TransferCell;
}

// The live part of a row of the transfers list, over the row's right end:
// the Retry button of a failed upload, a real button so that it takes the
// keyboard focus and a screen reader names it. Only failed rows get one
// (and rows a test or a screenshot asks for); the delegate paints the rest,
// and the model's roles carry every row's texts to screen readers.
class TransferCell final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TransferCell)

public:
    // Follows the row at `index` for as long as it is in the model.
    explicit TransferCell(const QModelIndex &index, QWidget *parent = nullptr);
    ~TransferCell() override;

    QString titleAndAuthor() const;
    QString status() const;
    int percentShown() const;
    QString iconName() const;
    QString uploadUUID() const;
    QModelIndex index() const { return m_index; }
    bool offersRetry() const;
    // As wide as the button, shown or not, so the row's texts keep their
    // place.
    QSize sizeHint() const override;

signals:
    void retryClicked();

private:
    void updateFromModel();

    std::unique_ptr<Ui::TransferCell> m_ui;
    QPersistentModelIndex m_index;
};
