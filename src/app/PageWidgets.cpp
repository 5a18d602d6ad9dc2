#include "PageWidgets.h"

namespace PageWidgets {

QLabel *heading(const QString &text, QWidget *parent, qreal scale)
{
    auto *label = new QLabel(text, parent);
    QFont f = label->font();
    f.setPointSizeF(f.pointSizeF() * scale);
    f.setWeight(QFont::DemiBold);
    label->setFont(f);
    label->setStyleSheet(QStringLiteral("color: #f2f2f5;"));
    return label;
}

QLabel *subtle(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setStyleSheet(QStringLiteral("color: #9a9aa3;"));
    label->setWordWrap(true);
    return label;
}

QLabel *fieldLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setStyleSheet(QStringLiteral("color: #d8d8de;"));
    return label;
}

void describe(QWidget *page, std::initializer_list<std::pair<const char *, QString>> descriptions)
{
    for (const auto &[objectName, description] : descriptions)
        if (auto *control = page->findChild<QWidget *>(QLatin1String(objectName)))
            control->setAccessibleDescription(description);
}

} // namespace PageWidgets
