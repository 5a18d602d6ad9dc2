#pragma once

#include <QLabel>
#include <QString>

// The few ways a label looks on the dark pages of the main window, and the
// naming every control gets: an object name for tests and an accessible name
// for screen readers.
namespace PageWidgets {

QLabel *heading(const QString &text, QWidget *parent, qreal scale = 1.5);
QLabel *subtle(const QString &text, QWidget *parent);
QLabel *fieldLabel(const QString &text, QWidget *parent);

template<typename W> W *named(W *widget, const char *objectName, const QString &accessibleName)
{
    widget->setObjectName(QLatin1String(objectName));
    widget->setAccessibleName(accessibleName);
    return widget;
}

// Gives each named child of `page` its description, read by screen readers
// after the name.
void describe(QWidget *page, std::initializer_list<std::pair<const char *, QString>> descriptions);

} // namespace PageWidgets
