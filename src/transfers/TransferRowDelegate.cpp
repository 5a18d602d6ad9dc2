#include "TransferRowDelegate.h"

#include "TransfersModel.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHash>
#include <QIcon>
#include <QPainter>
#include <QPixmap>

#include <cmath>

namespace {

constexpr int kIconSize = 32;
constexpr int kLeftMargin = 6;
constexpr int kRightMargin = 8;
constexpr int kSpacing = 8;
constexpr int kLineSpacing = 2;
constexpr int kProgressHeight = 10;

// One picture per file type for the whole run; never destroyed, as pixmaps
// may not outlive the application object.
QPixmap pictureForIcon(const QString &name, const QStyle *style)
{
    static auto &pictures = *new QHash<QString, QPixmap>;
    auto it = pictures.constFind(name);
    if (it == pictures.cend()) {
        QIcon icon = QIcon::fromTheme(name, QIcon::fromTheme(QStringLiteral("video-x-generic")));
        // Desktops without an icon theme still get a file's picture.
        if (icon.isNull())
            icon = style->standardIcon(QStyle::SP_FileIcon);
        it = pictures.insert(name, icon.pixmap(kIconSize, kIconSize));
    }
    return *it;
}

QFont statusFont(QFont font)
{
    font.setPointSizeF(font.pointSizeF() * 0.85);
    return font;
}

} // namespace

TransferRowDelegate::TransferRowDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{ }

QColor TransferRowDelegate::titleColor()
{
    static const QColor grey = QColor::fromRgbF(0.2f, 0.2f, 0.2f, 1.0f);
    return grey;
}

QColor TransferRowDelegate::statusColor()
{
    static const QColor grey = QColor::fromRgbF(0.4f, 0.4f, 0.4f, 1.0f);
    return grey;
}

void TransferRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const QWidget *widget = option.widget;
    const QStyle *style = widget ? widget->style() : QApplication::style();

    // The row's background, selection and alternation as the style has them.
    QStyleOptionViewItem background = option;
    initStyleOption(&background, index);
    background.text.clear();
    background.icon = QIcon();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &background, painter, widget);

    const QRect row = option.rect;
    const QString iconName = index.data(TransfersModel::IconNameRole).toString();
    if (!iconName.isEmpty())
        painter->drawPixmap(
            row.left() + kLeftMargin, row.top() + (row.height() - kIconSize) / 2, pictureForIcon(iconName, style));

    int right = row.right() - kRightMargin;
    // A row whose Retry button shows keeps its texts clear of it.
    const auto *view = qobject_cast<const QAbstractItemView *>(widget);
    if (QWidget *cell = view ? view->indexWidget(index) : nullptr;
        cell && index.data(TransfersModel::RetryOfferedRole).toBool())
        right = row.right() - cell->sizeHint().width();
    const int left = row.left() + kLeftMargin + kIconSize + kSpacing;
    const int width = std::max(0, right - left);

    const QFont small = statusFont(option.font);
    const QFontMetrics titleMetrics(option.font);
    const QFontMetrics statusMetrics(small);
    const int height = titleMetrics.height() + kLineSpacing + kProgressHeight + kLineSpacing + statusMetrics.height();
    int y = row.top() + (row.height() - height) / 2;

    const bool highlighted = (option.state & QStyle::State_Selected) && (option.state & QStyle::State_Active);
    const QColor selected = option.palette.color(QPalette::Active, QPalette::HighlightedText);

    painter->save();
    painter->setFont(option.font);
    painter->setPen(highlighted ? selected : titleColor());
    const QString title = index.data(Qt::DisplayRole).toString();
    painter->drawText(QRect(left, y, width, titleMetrics.height()), Qt::AlignLeft | Qt::AlignVCenter,
        titleMetrics.elidedText(title, Qt::ElideRight, width));
    y += titleMetrics.height() + kLineSpacing;

    QStyleOptionProgressBar bar;
    if (widget)
        bar.initFrom(widget);
    bar.rect = QRect(left, y, width, kProgressHeight);
    bar.minimum = 0;
    bar.maximum = 1000;
    bar.progress = int(std::lround(index.data(TransfersModel::PercentDoneRole).toDouble() * 10));
    bar.textVisible = false;
    bar.state |= QStyle::State_Enabled | QStyle::State_Horizontal;
    style->drawControl(QStyle::CE_ProgressBar, &bar, painter, widget);
    y += kProgressHeight + kLineSpacing;

    painter->setFont(small);
    painter->setPen(highlighted ? selected : statusColor());
    const QString status = index.data(TransfersModel::StatusLineRole).toString();
    painter->drawText(QRect(left, y, width, statusMetrics.height()), Qt::AlignLeft | Qt::AlignVCenter,
        statusMetrics.elidedText(status, Qt::ElideRight, width));
    painter->restore();
}

QSize TransferRowDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    // No width of its own: the list gives each row its whole width.
    return { 0, kRowHeight };
}

void TransferRowDelegate::updateEditorGeometry(
    QWidget *editor, const QStyleOptionViewItem &option, const QModelIndex &) const
{
    const int width = editor->sizeHint().width();
    editor->setGeometry(option.rect.right() + 1 - width, option.rect.top(), width, option.rect.height());
}
