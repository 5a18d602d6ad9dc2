#pragma once

#include <QColor>
#include <QString>
#include <QVariantMap>
#include <QWidget>

#include <functional>
#include <memory>

namespace Ui {
class TransferCell;
}

// The live view of one upload in the transfers list: the file's icon, the
// title and its author, a progress bar and a status line. Values only flow
// in; a field is touched only when its content changes, so a poll that
// brings nothing new costs no relayout.
class TransferCell final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TransferCell)

public:
    explicit TransferCell(QWidget *parent = nullptr);
    ~TransferCell() override;

    // A row of the transfers list; anything that is not a dictionary is
    // ignored.
    void setObjectValue(const QVariant &row);
    // Selected rows of the active window take the palette's selected text.
    void setHighlighted(bool highlighted);

    QString titleAndAuthor() const;
    QString status() const;
    int percentShown() const;
    QString iconName() const { return m_iconName; }
    QString uploadUUID() const { return m_uploadUUID; }

    // A failed upload offers a retry unless `retryable` says no (one retried
    // already, or being retried); asked again by updateRetryButton.
    void setRetryablePredicate(std::function<bool(const QString &uploadUUID)> retryable);
    void updateRetryButton();

    // The status line of an upload record.
    static QString statusLine(const QVariantMap &row);
    // Seconds as a short human text ("about 3 minutes").
    static QString durationText(qint64 seconds);

signals:
    void retryClicked();

private:
    void setTextColors(const QColor &title, const QColor &status);

    std::unique_ptr<Ui::TransferCell> m_ui;
    QString m_iconName;
    QString m_uploadUUID;
    bool m_failed = false;
    std::function<bool(const QString &)> m_retryable;
    QColor m_titleColor;
    QColor m_statusColor;
};
