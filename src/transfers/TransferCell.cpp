#include "TransferCell.h"

#include "Format.h"

#include "ui_TransferCell.h"

#include <QHash>
#include <QIcon>
#include <QPixmap>
#include <QStyle>

#include <cmath>

namespace {

const QString kStatus = QStringLiteral("status");
const QString kPercentDone = QStringLiteral("percent_done");
const QString kTimeLeft = QStringLiteral("estimated_time_left");

void setTextIfChanged(QLabel *label, const QString &text)
{
    if (label->text() != text)
        label->setText(text);
}

} // namespace

TransferCell::TransferCell(QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::TransferCell>())
{
    m_ui->setupUi(this);
    // Long titles are cut at the row's edge instead of widening the table.
    m_ui->titleAndAuthorField->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_ui->statusField->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    QFont small = m_ui->statusField->font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    m_ui->statusField->setFont(small);
    setHighlighted(false);
    connect(m_ui->retryButton, &QPushButton::clicked, this, &TransferCell::retryClicked);
}

TransferCell::~TransferCell() = default;

void TransferCell::setObjectValue(const QVariant &value)
{
    if (value.typeId() != QMetaType::QVariantMap)
        return;
    const QVariantMap row = value.toMap();
    const QVariantMap metadata = row.value(QStringLiteral("metadata")).toMap();
    QString title = metadata.value(QStringLiteral("Title")).toString();
    if (!metadata.contains(QStringLiteral("Title")))
        title = metadata.value(QStringLiteral("UserMetadata_Title")).toString();
    // A missing title reads "(null)", as it always has; no placeholder.
    const QString user = row.value(QStringLiteral("user")).toString();
    setTextIfChanged(m_ui->titleAndAuthorField, lxFormat(tr("'%@' by %@"), { title, user }));

    const int permille = int(std::lround(row.value(kPercentDone).toDouble() * 10));
    if (m_ui->progressIndicator->value() != permille)
        m_ui->progressIndicator->setValue(permille);
    setTextIfChanged(m_ui->statusField, statusLine(row));
    m_uploadUUID = row.value(QStringLiteral("upload_uuid")).toString();
    m_failed = row.value(kStatus).toString() == QLatin1String("error");
    updateRetryButton();

    const QVariant icon = row.value(QStringLiteral("fileIcon"));
    if (icon.isValid() && icon.toString() != m_iconName) {
        m_iconName = icon.toString();
        // One picture per file type for the whole run; never destroyed, as
        // pixmaps may not outlive the application object.
        static auto &pictures = *new QHash<QString, QPixmap>;
        auto it = pictures.constFind(m_iconName);
        if (it == pictures.cend()) {
            QIcon icon = QIcon::fromTheme(m_iconName, QIcon::fromTheme(QStringLiteral("video-x-generic")));
            // Desktops without an icon theme still get a file's picture.
            if (icon.isNull())
                icon = style()->standardIcon(QStyle::SP_FileIcon);
            it = pictures.insert(m_iconName, icon.pixmap(32, 32));
        }
        m_ui->iconView->setPixmap(*it);
    }
}

void TransferCell::setRetryablePredicate(std::function<bool(const QString &)> retryable)
{
    m_retryable = std::move(retryable);
    updateRetryButton();
}

void TransferCell::updateRetryButton()
{
    const bool offered = m_failed && m_retryable && m_retryable(m_uploadUUID);
    if (m_ui->retryButton->isVisibleTo(this) != offered)
        m_ui->retryButton->setVisible(offered);
}

QString TransferCell::titleAndAuthor() const
{
    return m_ui->titleAndAuthorField->text();
}

QString TransferCell::status() const
{
    return m_ui->statusField->text();
}

int TransferCell::percentShown() const
{
    return m_ui->progressIndicator->value() / 10;
}

QString TransferCell::statusLine(const QVariantMap &row)
{
    const QString status = row.value(kStatus).toString();
    if (status == QLatin1String("pending"))
        return tr("Pending");
    if (status == QLatin1String("error"))
        return tr("Error");
    if (status == QLatin1String("completed"))
        return tr("Completed");
    if (status != QLatin1String("uploading"))
        return QString();
    const int percent = int(row.value(kPercentDone).toDouble());
    const qint64 left = qint64(row.value(kTimeLeft).toDouble());
    if (left > 0)
        return lxFormat(tr("%d%% done \u2014 %@ remaining"), { percent, durationText(left) });
    return lxFormat(tr("%d%% done"), { percent });
}

QString TransferCell::durationText(qint64 seconds)
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

void TransferCell::setHighlighted(bool highlighted)
{
    static const QColor title = QColor::fromRgbF(0.2f, 0.2f, 0.2f, 1.0f);
    static const QColor status = QColor::fromRgbF(0.4f, 0.4f, 0.4f, 1.0f);
    if (highlighted) {
        const QColor selected = palette().color(QPalette::Active, QPalette::HighlightedText);
        setTextColors(selected, selected);
    } else {
        setTextColors(title, status);
    }
}

void TransferCell::setTextColors(const QColor &title, const QColor &status)
{
    auto apply = [](QLabel *label, QColor &current, const QColor &wanted) {
        if (current == wanted)
            return;
        current = wanted;
        QPalette p = label->palette();
        // A label in the list's viewport draws with Text, elsewhere with WindowText.
        p.setColor(QPalette::WindowText, wanted);
        p.setColor(QPalette::Text, wanted);
        label->setPalette(p);
    };
    apply(m_ui->titleAndAuthorField, m_titleColor, title);
    apply(m_ui->statusField, m_statusColor, status);
}
