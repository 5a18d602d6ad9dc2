#include "PropertyList.h"

#include <QDateTime>
#include <QFile>
#include <QSaveFile>
#include <QStringList>
#include <QTimeZone>

#include <plist/plist.h>

#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace {

// Seconds between the Unix epoch and the property-list epoch (2001-01-01 UTC).
constexpr qint64 kPlistEpochOffset = 978307200;

struct PlistDeleter
{
    void operator()(plist_t node) const { plist_free(node); }
};
using PlistPtr = std::unique_ptr<void, PlistDeleter>;

// Dictionaries in tool output repeat the same few keys thousands of times;
// sharing one QString per key saves an allocation and a free for each.
class KeyCache
{
public:
    QString key(const char *utf8)
    {
        for (const auto &[bytes, string] : m_entries) {
            if (std::strcmp(bytes.c_str(), utf8) == 0)
                return string;
        }
        QString string = QString::fromUtf8(utf8);
        if (m_entries.size() < kMaxEntries)
            m_entries.emplace_back(utf8, string);
        return string;
    }

private:
    static constexpr size_t kMaxEntries = 64;
    std::vector<std::pair<std::string, QString>> m_entries;
};

QVariant toVariant(plist_t node, KeyCache &keys)
{
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        uint8_t b = 0;
        plist_get_bool_val(node, &b);
        return QVariant(b != 0);
    }
    case PLIST_UINT: {
        // The library stores every integer as unsigned 64 bits; negative
        // numbers come back as their two's complement.
        uint64_t v = 0;
        plist_get_uint_val(node, &v);
        return QVariant(static_cast<qint64>(v));
    }
    case PLIST_REAL: {
        double v = 0;
        plist_get_real_val(node, &v);
        return QVariant(v);
    }
    case PLIST_STRING:
    case PLIST_KEY: {
        uint64_t length = 0;
        const char *s = plist_get_string_ptr(node, &length);
        return QVariant(QString::fromUtf8(s, static_cast<qsizetype>(length)));
    }
    case PLIST_DATA: {
        uint64_t length = 0;
        const char *p = plist_get_data_ptr(node, &length);
        return QVariant(QByteArray(p, static_cast<qsizetype>(length)));
    }
    case PLIST_DATE: {
        int32_t sec = 0, usec = 0;
        plist_get_date_val(node, &sec, &usec);
        const qint64 msecs = (qint64(sec) + kPlistEpochOffset) * 1000 + usec / 1000;
        return QVariant(QDateTime::fromMSecsSinceEpoch(msecs, QTimeZone::utc()));
    }
    case PLIST_UID: {
        uint64_t v = 0;
        plist_get_uid_val(node, &v);
        return QVariant(static_cast<qint64>(v));
    }
    case PLIST_ARRAY: {
        QVariantList list;
        const uint32_t n = plist_array_get_size(node);
        list.reserve(n);
        for (uint32_t i = 0; i < n; ++i)
            list.append(toVariant(plist_array_get_item(node, i), keys));
        return list;
    }
    case PLIST_DICT: {
        QVariantMap map;
        plist_dict_iter it = nullptr;
        plist_dict_new_iter(node, &it);
        for (;;) {
            char *key = nullptr;
            plist_t value = nullptr;
            plist_dict_next_item(node, it, &key, &value);
            if (!value) {
                std::free(key);
                break;
            }
            map.insert(keys.key(key), toVariant(value, keys));
            std::free(key);
        }
        std::free(it);
        return map;
    }
    case PLIST_NONE:
        break;
    }
    return QVariant();
}

plist_t fromVariant(const QVariant &value, QString *error)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return plist_new_bool(value.toBool() ? 1 : 0);
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::Short:
    case QMetaType::Char:
    case QMetaType::SChar:
        return plist_new_uint(static_cast<uint64_t>(value.toLongLong()));
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
    case QMetaType::UShort:
    case QMetaType::UChar: {
        const quint64 v = value.toULongLong();
        if (v > quint64(std::numeric_limits<qint64>::max())) {
            if (error)
                *error = QStringLiteral("integer %1 is out of the range of a property list").arg(v);
            return nullptr;
        }
        return plist_new_uint(v);
    }
    case QMetaType::Double:
    case QMetaType::Float:
        return plist_new_real(value.toDouble());
    case QMetaType::QString:
        return plist_new_string(value.toString().toUtf8().constData());
    case QMetaType::QByteArray: {
        const QByteArray data = value.toByteArray();
        return plist_new_data(data.constData(), static_cast<uint64_t>(data.size()));
    }
    case QMetaType::QDateTime: {
        const QDateTime dt = value.toDateTime();
        if (!dt.isValid()) {
            if (error)
                *error = QStringLiteral("invalid date");
            return nullptr;
        }
        const qint64 msecs = dt.toMSecsSinceEpoch();
        const qint64 sec = msecs / 1000 - kPlistEpochOffset - (msecs % 1000 < 0 ? 1 : 0);
        if (sec < std::numeric_limits<int32_t>::min() || sec > std::numeric_limits<int32_t>::max()) {
            if (error)
                *error = QStringLiteral("date %1 is outside the range a property list can hold")
                             .arg(dt.toString(Qt::ISODate));
            return nullptr;
        }
        return plist_new_date(static_cast<int32_t>(sec), 0);
    }
    case QMetaType::QStringList:
    case QMetaType::QVariantList: {
        PlistPtr array(plist_new_array());
        const QVariantList list = value.toList();
        for (const QVariant &item : list) {
            plist_t child = fromVariant(item, error);
            if (!child)
                return nullptr;
            plist_array_append_item(array.get(), child);
        }
        return array.release();
    }
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash: {
        PlistPtr dict(plist_new_dict());
        const QVariantMap map = value.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it) {
            plist_t child = fromVariant(it.value(), error);
            if (!child)
                return nullptr;
            plist_dict_set_item(dict.get(), it.key().toUtf8().constData(), child);
        }
        return dict.release();
    }
    default:
        if (error) {
            *error = value.isValid() ? QStringLiteral("a value of type %1 has no property-list form")
                                           .arg(QString::fromLatin1(value.typeName()))
                                     : QStringLiteral("a nil value has no property-list form");
        }
        return nullptr;
    }
}

} // namespace

namespace PropertyList {

QVariant fromXml(const char *data, qsizetype size, QString *error)
{
    if (size <= 0 || size > qsizetype(std::numeric_limits<uint32_t>::max())) {
        if (error)
            *error = size <= 0 ? QStringLiteral("no property-list data") : QStringLiteral("property list too large");
        return QVariant();
    }
    plist_t root = nullptr;
    plist_from_xml(data, static_cast<uint32_t>(size), &root);
    PlistPtr owner(root);
    if (!root) {
        if (error)
            *error = QStringLiteral("the data is not a valid XML property list");
        return QVariant();
    }
    KeyCache keys;
    return toVariant(root, keys);
}

QByteArray toXml(const QVariant &value, QString *error)
{
    PlistPtr root(fromVariant(value, error));
    if (!root)
        return QByteArray();
    char *xml = nullptr;
    uint32_t length = 0;
    plist_to_xml(root.get(), &xml, &length);
    if (!xml) {
        if (error)
            *error = QStringLiteral("the property list could not be serialised");
        return QByteArray();
    }
    QByteArray out(xml, static_cast<qsizetype>(length));
    plist_to_xml_free(xml);
    return out;
}

QVariant readFile(const QString &path, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = file.errorString();
        return QVariant();
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        if (error)
            *error = file.errorString();
        return QVariant();
    }
    return fromXml(bytes, error);
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

QVariant findPropertyList(const QString &text)
{
    const qsizetype start = text.indexOf(QLatin1String("<?xml"));
    if (start < 0)
        throw PropertyList::ParseError("the text holds no property list (no \"<?xml\" marker)");
    const QByteArray utf8 = QStringView(text).mid(start).toUtf8();
    QString error;
    QVariant result = PropertyList::fromXml(utf8, &error);
    if (!result.isValid())
        throw PropertyList::ParseError(error.toStdString());
    return result;
}
