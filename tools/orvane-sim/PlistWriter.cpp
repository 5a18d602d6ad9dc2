#include "PlistWriter.h"

#include <QDateTime>
#include <QLocale>

#include <ctime>

namespace {

void appendText(QByteArray &out, const char *tag, const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    out.append('<').append(tag).append('>');
    qsizetype from = 0;
    for (qsizetype i = 0; i < utf8.size(); ++i) {
        const char c = utf8[i];
        const char *entity = c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : nullptr;
        if (!entity)
            continue;
        out.append(utf8.constData() + from, i - from).append(entity);
        from = i + 1;
    }
    out.append(utf8.constData() + from, utf8.size() - from);
    out.append("</").append(tag).append(">\n");
}

// Property-list dates are whole seconds in UTC.
QByteArray dateText(const QDateTime &date)
{
    const time_t seconds = time_t(date.toSecsSinceEpoch());
    struct tm fields = {};
    gmtime_r(&seconds, &fields);
    char text[32];
    const size_t n = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &fields);
    return QByteArray(text, qsizetype(n));
}

void appendValue(QByteArray &out, const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QVariantMap: {
        const QVariantMap map = value.toMap();
        out.append("<dict>\n");
        for (auto it = map.cbegin(); it != map.cend(); ++it) {
            appendText(out, "key", it.key());
            appendValue(out, it.value());
        }
        out.append("</dict>\n");
        break;
    }
    case QMetaType::QVariantList:
    case QMetaType::QStringList: {
        out.append("<array>\n");
        for (const QVariant &item : value.toList())
            appendValue(out, item);
        out.append("</array>\n");
        break;
    }
    case QMetaType::Bool:
        out.append(value.toBool() ? "<true/>\n" : "<false/>\n");
        break;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        out.append("<integer>").append(QByteArray::number(value.toLongLong())).append("</integer>\n");
        break;
    case QMetaType::Double:
    case QMetaType::Float:
        out.append("<real>")
            .append(QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest).toLatin1())
            .append("</real>\n");
        break;
    case QMetaType::QDateTime:
        out.append("<date>").append(dateText(value.toDateTime())).append("</date>\n");
        break;
    case QMetaType::QByteArray:
        out.append("<data>").append(value.toByteArray().toBase64()).append("</data>\n");
        break;
    default:
        appendText(out, "string", value.toString());
    }
}

} // namespace

QByteArray PlistWriter::dictionaryDocument(const Entries &entries)
{
    QByteArray out;
    out.reserve(entries.size() * 512 + 256);
    out.append("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
               "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
               "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
               "<plist version=\"1.0\">\n<dict>\n");
    for (const auto &[key, value] : entries) {
        appendText(out, "key", key);
        appendValue(out, value);
    }
    out.append("</dict>\n</plist>\n");
    return out;
}
