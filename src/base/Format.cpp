#include "Format.h"

#include <QDateTime>
#include <QStringList>

#include <cstdio>
#include <vector>

namespace {

QString describeList(const QVariantList &list);
QString describeMap(const QVariantMap &map);

QString describe(const QVariant &value)
{
    if (!value.isValid() || value.isNull())
        return QStringLiteral("(null)");
    switch (value.typeId()) {
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return describeList(value.toList());
    case QMetaType::QVariantMap:
        return describeMap(value.toMap());
    case QMetaType::QDateTime:
        return value.toDateTime().toUTC().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss +0000"));
    case QMetaType::QByteArray:
        return QLatin1Char('<') + QString::fromLatin1(value.toByteArray().toHex()) + QLatin1Char('>');
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    default:
        return value.toString();
    }
}

QString describeList(const QVariantList &list)
{
    QStringList parts;
    for (const QVariant &v : list)
        parts << QStringLiteral("    ") + describe(v);
    return QStringLiteral("(\n") + parts.join(QStringLiteral(",\n")) + QStringLiteral("\n)");
}

QString describeMap(const QVariantMap &map)
{
    QString out = QStringLiteral("{\n");
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        out += QStringLiteral("    ") + it.key() + QStringLiteral(" = ") + describe(it.value()) + QStringLiteral(";\n");
    return out + QLatin1Char('}');
}

} // namespace

QString lxDescription(const QVariant &value)
{
    return describe(value);
}

QString lxFormat(const QString &format, std::initializer_list<FormatArg> args)
{
    QString out;
    out.reserve(format.size() + 16);
    auto next = args.begin();
    const qsizetype n = format.size();
    for (qsizetype i = 0; i < n; ++i) {
        const QChar c = format.at(i);
        if (c != QLatin1Char('%') || i + 1 >= n) {
            out += c;
            continue;
        }
        // Collect the conversion specification: flags, width, precision, length.
        qsizetype j = i + 1;
        QString conversion = QStringLiteral("%");
        while (j < n && QStringLiteral("-+ #0").contains(format.at(j)))
            conversion += format.at(j++);
        while (j < n && format.at(j).isDigit())
            conversion += format.at(j++);
        if (j < n && format.at(j) == QLatin1Char('.')) {
            conversion += format.at(j++);
            while (j < n && format.at(j).isDigit())
                conversion += format.at(j++);
        }
        while (j < n && QStringLiteral("hlqLzjt").contains(format.at(j)))
            ++j; // the argument's own width decides; length modifiers are dropped
        if (j >= n) {
            out += format.mid(i);
            break;
        }
        const QChar conv = format.at(j);
        i = j;
        if (conv == QLatin1Char('%')) {
            out += QLatin1Char('%');
            continue;
        }
        const QVariant arg = next != args.end() ? (next++)->value() : QVariant();
        char buf[128];
        const QByteArray s = conversion.toLatin1();
        switch (conv.toLatin1()) {
        case '@':
        case 's':
            out += describe(arg);
            break;
        case 'd':
        case 'i':
            std::snprintf(buf, sizeof buf, (s + "lld").constData(), static_cast<long long>(arg.toLongLong()));
            out += QString::fromLatin1(buf);
            break;
        case 'u':
        case 'x':
        case 'X':
        case 'o':
            std::snprintf(buf, sizeof buf, (s + "ll" + conv.toLatin1()).constData(),
                static_cast<unsigned long long>(arg.toULongLong()));
            out += QString::fromLatin1(buf);
            break;
        case 'f':
        case 'g':
        case 'e':
            std::snprintf(buf, sizeof buf, (s + conv.toLatin1()).constData(), arg.toDouble());
            out += QString::fromLatin1(buf);
            break;
        default:
            out += conversion + conv;
            break;
        }
    }
    return out;
}
