#include "PropertyList.h"

#include <QDateTime>
#include <QFile>
#include <QLocale>
#include <QSaveFile>
#include <QTimeZone>

#include <clocale>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string>

namespace {

using PropertyList::kMaxDepth;

// Writes the form Apple's and Python's writers give: one value a line,
// indented by tabs, dictionaries in key order.
class Writer
{
public:
    explicit Writer(QString *error)
        : m_error(error)
    {
        m_out.append("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                     "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                     "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                     "<plist version=\"1.0\">\n");
    }

    bool value(const QVariant &value, size_t depth);
    bool dictionary(const PropertyList::Entries &entries, size_t depth);
    QByteArray finish() { return m_out.append("</plist>\n"); }

private:
    void line(size_t depth, const char *text)
    {
        for (size_t i = 0; i < depth; ++i)
            m_out.append('\t');
        m_out.append(text);
    }
    void text(size_t depth, const char *tag, const QString &text);
    bool fail(const QString &why)
    {
        if (m_error)
            *m_error = why;
        return false;
    }
    template<typename Items, typename Write>
    bool container(const char *tag, const Items &items, size_t depth, Write write);

    QByteArray m_out;
    QString *m_error;
};

void Writer::text(size_t depth, const char *tag, const QString &text)
{
    line(depth, "<");
    m_out.append(tag).append('>');
    const QByteArray utf8 = text.toUtf8();
    qsizetype from = 0;
    for (qsizetype i = 0; i < utf8.size(); ++i) {
        // A raw carriage return would reach the reader as a line feed.
        const char c = utf8[i];
        const char *entity = c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : c == '\r' ? "&#13;" : nullptr;
        if (entity) {
            m_out.append(utf8.constData() + from, i - from).append(entity);
            from = i + 1;
        }
    }
    m_out.append(utf8.constData() + from, utf8.size() - from).append("</").append(tag).append(">\n");
}

template<typename Items, typename Write>
bool Writer::container(const char *tag, const Items &items, size_t depth, Write write)
{
    // What is written must read back, so the reader's nesting limit holds here too.
    if (depth > kMaxDepth)
        return fail(QStringLiteral("the value is nested more than %1 levels deep").arg(kMaxDepth));
    if (items.isEmpty()) {
        line(depth - 1, "<");
        m_out.append(tag).append("/>\n");
        return true;
    }
    line(depth - 1, "<");
    m_out.append(tag).append(">\n");
    for (const auto &item : items) {
        if (!write(item))
            return false;
    }
    line(depth - 1, "</");
    m_out.append(tag).append(">\n");
    return true;
}

bool Writer::dictionary(const PropertyList::Entries &entries, size_t depth)
{
    return container("dict", entries, depth + 1, [&](const auto &entry) {
        text(depth + 1, "key", entry.first);
        return value(entry.second, depth + 1);
    });
}

bool Writer::value(const QVariant &value, size_t depth)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        line(depth, value.toBool() ? "<true/>\n" : "<false/>\n");
        return true;
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::Short:
    case QMetaType::Char:
    case QMetaType::SChar:
        line(depth, "<integer>");
        m_out.append(QByteArray::number(value.toLongLong())).append("</integer>\n");
        return true;
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
    case QMetaType::UShort:
    case QMetaType::UChar:
        line(depth, "<integer>");
        m_out.append(QByteArray::number(value.toULongLong())).append("</integer>\n");
        return true;
    case QMetaType::Double:
    case QMetaType::Float:
        // The shortest text that reads back as the same double ("0.1", "1e-07", "inf").
        line(depth, "<real>");
        m_out.append(QByteArray::number(value.toDouble(), 'g', QLocale::FloatingPointShortest)).append("</real>\n");
        return true;
    case QMetaType::QString:
        text(depth, "string", value.toString());
        return true;
    case QMetaType::QByteArray:
        line(depth, "<data>");
        m_out.append(value.toByteArray().toBase64()).append("</data>\n");
        return true;
    case QMetaType::QDateTime: {
        const QDateTime date = value.toDateTime();
        if (!date.isValid())
            return fail(QStringLiteral("invalid date"));
        // Whole seconds, rounded down, as the readers keep them.
        const qint64 msecs = date.toMSecsSinceEpoch();
        const QDateTime utc
            = QDateTime::fromSecsSinceEpoch(msecs / 1000 - (msecs % 1000 < 0 ? 1 : 0), QTimeZone::utc());
        const QDate day = utc.date();
        if (day.year() < 1 || day.year() > 9999) {
            return fail(QStringLiteral("date %1 is outside the range a property list can hold")
                            .arg(date.toString(Qt::ISODate)));
        }
        char text[32];
        std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02dZ", day.year(), day.month(), day.day(),
            utc.time().hour(), utc.time().minute(), utc.time().second());
        line(depth, "<date>");
        m_out.append(text).append("</date>\n");
        return true;
    }
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
        return container(
            "array", value.toList(), depth + 1, [&](const QVariant &item) { return this->value(item, depth + 1); });
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash: {
        const QVariantMap map = value.toMap();
        PropertyList::Entries entries;
        entries.reserve(map.size());
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            entries.append({ it.key(), it.value() });
        return dictionary(entries, depth);
    }
    default:
        return fail(value.isValid() ? QStringLiteral("a value of type %1 has no property-list form")
                                          .arg(QString::fromLatin1(value.typeName()))
                                    : QStringLiteral("a nil value has no property-list form"));
    }
}
} // namespace

namespace PropertyList {

QByteArray toXml(const QVariant &value, QString *error)
{
    Writer writer(error);
    return writer.value(value, 0) ? writer.finish() : QByteArray();
}

QByteArray dictionaryToXml(const Entries &entries, QString *error)
{
    Writer writer(error);
    return writer.dictionary(entries, 0) ? writer.finish() : QByteArray();
}
bool writeFile(const QString &path, const QVariant &value, bool atomic, QString *error)
{
    const QByteArray xml = toXml(value, error);
    if (xml.isNull())
        return false;
    if (atomic) {
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(xml) != xml.size() || !file.commit()) {
            if (error)
                *error = file.errorString();
            return false;
        }
        return true;
    }
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(xml) != xml.size() || !file.flush()) {
        if (error)
            *error = file.errorString();
        return false;
    }
    return true;
}

} // namespace PropertyList
