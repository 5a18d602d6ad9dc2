#pragma once

#include <QString>
#include <QVariant>

#include <initializer_list>

// printf-style formatting for the system's fixed texts, which use "%@" for an
// object. A null QString (or an invalid QVariant) formatted with "%@" reads
// "(null)", as the texts that users and logs have always shown.
class FormatArg final
{
public:
    FormatArg(const QString &s)
        : m_value(s.isNull() ? QVariant() : QVariant(s))
    { }
    FormatArg(const char *s)
        : m_value(s ? QVariant(QString::fromUtf8(s)) : QVariant())
    { }
    FormatArg(const QVariant &v)
        : m_value(v)
    { }
    FormatArg(int v)
        : m_value(qint64(v))
    { }
    FormatArg(long v)
        : m_value(qint64(v))
    { }
    FormatArg(long long v)
        : m_value(qint64(v))
    { }
    FormatArg(unsigned v)
        : m_value(quint64(v))
    { }
    FormatArg(unsigned long v)
        : m_value(quint64(v))
    { }
    FormatArg(unsigned long long v)
        : m_value(quint64(v))
    { }
    FormatArg(double v)
        : m_value(v)
    { }

    const QVariant &value() const { return m_value; }

private:
    QVariant m_value;
};

// Formats `format` with `args` in order. Supports %@, %d, %i, %u, %x, %X,
// %f, %g, %s and %% with flags, width, precision and length modifiers.
QString lxFormat(const QString &format, std::initializer_list<FormatArg> args = {});

// The text of an object as "%@" shows it: "(null)" for a missing one.
QString lxDescription(const QVariant &value);
