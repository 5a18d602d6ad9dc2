#pragma once

#include <QStyledItemDelegate>

// Paints a row of the transfers list: the file's icon, the title and its
// author, a progress bar and the status line, in dark greys, or in the
// palette's selected text where the row is selected in the active window.
// The live part of a row (its TransferCell, with the Retry button) sits at
// the row's right end, where the texts make room for it.
class TransferRowDelegate final : public QStyledItemDelegate
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TransferRowDelegate)

public:
    static constexpr int kRowHeight = 58;

    explicit TransferRowDelegate(QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void updateEditorGeometry(
        QWidget *editor, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    static QColor titleColor();
    static QColor statusColor();
};
