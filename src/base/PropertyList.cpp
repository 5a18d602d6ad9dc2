#include "PropertyList.h"

#include <QDateTime>
#include <QFile>
#include <QSaveFile>
#include <QStringList>
#include <QTimeZone>
#include <QVarLengthArray>

#include <plist/plist.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

// Seconds between the Unix epoch and the property-list epoch (2001-01-01 UTC).
constexpr qint64 kPlistEpochOffset = 978307200;

struct PlistDeleter
{
    void operator()(plist_t node) const { plist_free(node); }
};
using PlistPtr = std::unique_ptr<void, PlistDeleter>;

// Deeper nesting is refused: no real answer comes near it, and freeing a tree
// recurses once per level, on worker threads with smaller stacks too.
constexpr size_t kMaxDepth = 512;

// A value's text between its tags, as runs split by comments and CDATA.
struct Part
{
    const char *begin;
    qsizetype size;
    bool cdata;
};
using Parts = QVarLengthArray<Part, 2>;

// A run as libplist copies it: nothing after a NUL survives.
QByteArray copyOf(const Part &part)
{
    const QByteArrayView run(part.begin, part.size);
    const qsizetype nul = run.indexOf('\0');
    return nul < 0 ? run.toByteArray() : run.first(nul).toByteArray() + QByteArray(part.size - nul, '\0');
}

// Replaces the predefined entities and character references; false on any
// other reference. The last byte is never taken as the start of one.
bool unescape(QByteArrayView in, QByteArray &out)
{
    static constexpr std::pair<const char *, char> kNamed[]
        = { { "amp", '&' }, { "apos", '\'' }, { "quot", '"' }, { "lt", '<' }, { "gt", '>' } };
    qsizetype i = 0;
    for (qsizetype amp = 0; (amp = in.indexOf('&', i)) >= 0 && amp < in.size() - 1;) {
        out.append(in.sliced(i, amp - i));
        const qsizetype semi = in.indexOf(';', amp);
        if (semi <= amp + 1)
            return false;
        const QByteArrayView name = in.sliced(amp + 1, semi - amp - 1);
        const auto named = std::find_if(
            std::begin(kNamed), std::end(kNamed), [&](const auto &e) { return name.startsWith(e.first); });
        const bool hex = name.size() > 1 && (name[1] == 'x' || name[1] == 'X');
        if (named != std::end(kNamed)) {
            out.append(named->second);
        } else if (name[0] == '#' && name.size() <= 8 && name.size() >= (hex ? 3 : 2)) {
            char digits[9] = {};
            char *stop = nullptr;
            std::memcpy(digits, name.data(), size_t(name.size()));
            const unsigned long long c = std::strtoull(digits + (hex ? 2 : 1), &stop, hex ? 16 : 10);
            if (c == 0 || c > 0x10FFFF || stop != digits + name.size())
                return false;
            // Encoded as libplist encodes it, surrogates included.
            const int extra = c < 0x80 ? 0 : c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
            out.append(char(extra ? ((0xF0 << (3 - extra)) & 0xFF) | (c >> (6 * extra)) : c));
            for (int k = extra - 1; k >= 0; --k)
                out.append(char(0x80 | ((c >> (6 * k)) & 0x3F)));
        } else {
            return false;
        }
        i = semi + 1;
    }
    out.append(in.sliced(i));
    return true;
}

bool toText(const Parts &parts, QString *text)
{
    const bool plain = parts.size() == 1 && !std::memchr(parts[0].begin, 0, size_t(parts[0].size))
        && (parts[0].cdata || !std::memchr(parts[0].begin, '&', size_t(parts[0].size)));
    QByteArray bytes;
    for (qsizetype i = 0; i < parts.size() && !plain; ++i) {
        if (parts[i].cdata)
            bytes.append(copyOf(parts[i]));
        else if (!unescape(copyOf(parts[i]), bytes))
            return false;
    }
    *text = plain ? QString::fromUtf8(parts[0].begin, parts[0].size) : QString::fromUtf8(bytes);
    return true;
}

// Reads straight into the QVariant tree, without recursion. It keeps the
// rules of libplist's reader, which this client used before, so it accepts
// and refuses the same documents: tags count, not well-formedness; reading
// stops once the outermost value is complete; a DOCTYPE's internal subset is
// skipped, so its entities are never defined, let alone expanded.
class Reader
{
public:
    Reader(const char *data, qsizetype size, QStringList *rootKeys)
        : m_pos(data)
        , m_end(data + size)
        , m_rootKeys(rootKeys)
    { }

    QVariant read();

private:
    struct Frame
    {
        bool dict;
        QString key;
        QVariantList list;
        QVariantMap map;
    };

    qsizetype left() const { return m_end - m_pos; }
    void skipSpace()
    {
        while (m_pos < m_end && std::memchr(" \t\r\n", *m_pos, 4))
            ++m_pos;
    }
    void findChar(char c)
    {
        const void *hit = std::memchr(m_pos, c, size_t(left()));
        m_pos = hit ? static_cast<const char *>(hit) : m_end;
    }
    // Steps to the closing quote; false at the end of the data.
    bool skipQuote() { return ++m_pos, findChar('"'), m_pos < m_end; }
    void findAnyOf(std::string_view chars, bool quotes)
    {
        for (; m_pos < m_end && (!quotes || *m_pos != '"' || skipQuote()); ++m_pos) {
            if (chars.find(*m_pos) != std::string_view::npos)
                return;
        }
    }
    // Finds and steps over `s`; false when it is missing.
    bool skipPast(std::string_view s, bool quotes)
    {
        const auto at = [&] { return left() >= qsizetype(s.size()) && std::memcmp(m_pos, s.data(), s.size()) == 0; };
        for (; left() > qsizetype(s.size()) && !at(); ++m_pos) {
            if (quotes && *m_pos == '"' && !skipQuote())
                return false;
        }
        return at() ? (m_pos += s.size(), true) : false;
    }
    bool textParts(std::string_view tag, bool skipWs, Parts *parts);
    bool scalar(std::string_view tag, std::string_view name, bool empty, QVariant *value);
    bool skipMarkup();

    const char *m_pos;
    const char *m_end;
    QStringList *m_rootKeys;
    std::vector<Frame> m_frames;
    std::string m_open; // 'p'list, 'd'ict and 'a'rray tags not yet closed
    // Tool output repeats the same few keys thousands of times.
    std::vector<std::pair<QByteArray, QString>> m_keys;
};

bool Reader::textParts(std::string_view tag, bool skipWs, Parts *parts)
{
    if (skipWs)
        skipSpace();
    const char *p = m_pos;
    const char *q = m_pos;
    for (;;) {
        p = m_pos;
        findChar('<');
        if (left() < 2)
            return false;
        q = m_pos++;
        if (*m_pos == '/')
            break;
        if (*m_pos != '!' || ++m_pos >= m_end - 1)
            return false;
        if (m_pos[0] == '-' && m_pos[1] == '-') {
            parts->append({ p, q - p, false });
            m_pos += 2;
            if (!skipPast("-->", false))
                return false;
        } else if (*m_pos == '[' && ++m_pos < m_end - 8 && std::memcmp(m_pos, "CDATA[", 6) == 0) {
            if (q > p)
                parts->append({ p, q - p, false });
            p = m_pos += 6;
            if (!skipPast("]]>", false))
                return false;
            parts->append({ p, m_pos - 3 - p, true });
        } else {
            return false;
        }
    }
    // The end tag is compared as C strings compare: up to a NUL in the name.
    ++m_pos;
    const size_t named = std::min(tag.find('\0'), tag.size());
    if (left() <= qsizetype(tag.size()) || std::memcmp(m_pos, tag.data(), named) != 0
        || (named < tag.size() && m_pos[named] != '\0'))
        return false;
    m_pos += tag.size();
    skipSpace();
    if (m_pos >= m_end || *m_pos++ != '>')
        return false;
    if (q > p)
        parts->append({ p, q - p, false });
    return true;
}

bool Reader::scalar(std::string_view tag, std::string_view name, bool empty, QVariant *value)
{
    Parts parts;
    const bool isText = tag == "string" || tag == "key";
    if (!empty && !textParts(name, !isText, &parts))
        return false;
    if (isText) {
        QString text;
        const bool ok = toText(parts, &text);
        *value = text;
        return ok;
    }
    // Integers, reals, dates and data take their text as it stands.
    QByteArray raw;
    for (const Part &part : parts)
        raw.append(copyOf(part));
    const qsizetype first = parts.isEmpty() ? 0 : parts[0].size;
    if (tag == "true" || tag == "false") {
        *value = tag == "true";
    } else if (tag == "integer") {
        // Unsigned values above the signed range wrap, as libplist stores them.
        const bool sign = raw.startsWith('-') || raw.startsWith('+');
        const quint64 v = parts.isEmpty() ? 0 : std::strtoull(raw.constData() + sign, nullptr, 0);
        *value = qint64(raw.startsWith('-') ? 0 - v : v);
    } else if (tag == "real") {
        static const locale_t c = newlocale(LC_ALL_MASK, "C", nullptr);
        *value = parts.isEmpty() ? 0.0 : strtod_l(raw.constData(), nullptr, c);
    } else if (tag == "data") {
        *value = QByteArray::fromBase64(raw.left(first));
    } else if (tag == "date") {
        qint64 sec = empty ? 0 : -kPlistEpochOffset;
        if (!parts.isEmpty() && raw.size() >= 11 && raw.size() < 32) {
            struct tm fields = {};
            strptime(raw.left(first).constData(), "%Y-%m-%dT%H:%M:%SZ", &fields);
            sec = timegm(&fields) - kPlistEpochOffset;
        }
        // libplist hands dates out as 32-bit seconds.
        sec = qint32(sec) == sec ? sec : std::numeric_limits<qint32>::min();
        *value = QDateTime::fromSecsSinceEpoch(sec + kPlistEpochOffset, QTimeZone::utc());
    } else {
        return false;
    }
    return true;
}

// Skips a processing instruction, a comment or a DOCTYPE; false when it is
// malformed.
bool Reader::skipMarkup()
{
    if (*m_pos == '?')
        return skipPast("?>", true);
    if (left() > 3 && std::memcmp(m_pos, "!--", 3) == 0) {
        m_pos += 3;
        return skipPast("-->", false);
    }
    if (left() <= 8 || std::memcmp(m_pos, "!DOCTYPE", 8) != 0)
        return false;
    for (m_pos += 8; m_pos < m_end; skipSpace()) {
        findAnyOf(" \t\r\n[>", true);
        if (m_pos >= m_end)
            return false;
        if (*m_pos == '[')
            return skipPast("]>", true);
        if (*m_pos == '>') {
            ++m_pos;
            return true;
        }
    }
    return true;
}

QVariant Reader::read()
{
    bool hasRoot = false;
    bool hasContent = false;
    std::optional<QString> key;
    while (m_pos < m_end) {
        skipSpace();
        if (m_pos >= m_end)
            break;
        if (*m_pos != '<' || ++m_pos >= m_end)
            return QVariant();
        if (*m_pos == '?' || *m_pos == '!') {
            if (!skipMarkup())
                return QVariant();
            continue;
        }

        const char *p = m_pos;
        findAnyOf(" \r\n\t<>", false);
        qsizetype nameSize = m_pos - p;
        if (m_pos < m_end && *m_pos != '>')
            findAnyOf("<>", true);
        if (m_pos >= m_end || *m_pos != '>')
            return QVariant();
        const bool empty = m_pos[-1] == '/';
        if (empty)
            nameSize = std::min<qsizetype>(nameSize, m_pos - p - 1);
        ++m_pos;
        // Names compare as C strings: a NUL ends them.
        const std::string_view name(p, size_t(nameSize));
        const std::string_view tag = name.substr(0, name.find('\0'));

        if (tag == "plist") {
            if (m_open.empty() && hasRoot)
                break;
            if (empty)
                return QVariant();
            m_open.push_back('p');
            hasContent = false;
            continue;
        }
        if (tag == "/plist") {
            if (!hasContent || m_open.empty() || m_open.back() != 'p')
                return QVariant();
            m_open.pop_back();
            continue;
        }
        hasContent = true;
        const bool inDict = !m_frames.empty() && m_frames.back().dict;
        if (tag == "key" && !key && inDict) {
            Parts parts;
            if (!empty && !textParts(name, false, &parts))
                return QVariant();
            const QByteArrayView bytes = parts.size() == 1 && !parts[0].cdata
                ? QByteArrayView(parts[0].begin, parts[0].size)
                : QByteArrayView();
            const auto cached = std::find_if(m_keys.begin(), m_keys.end(),
                [&](const auto &entry) { return !bytes.isNull() && entry.first == bytes; });
            if (cached != m_keys.end()) {
                key = cached->second;
                continue;
            }
            QString text;
            if (!toText(parts, &text))
                return QVariant();
            key = text.left(text.indexOf(QChar(0))); // libplist keeps keys as C strings
            if (!bytes.isNull() && m_keys.size() < 64)
                m_keys.emplace_back(bytes.toByteArray(), *key);
            continue;
        }

        if ((tag == "dict" || tag == "array") && (!empty || !hasRoot)) {
            if ((inDict && !key) || m_frames.size() >= kMaxDepth)
                return QVariant();
            m_frames.push_back({ tag == "dict", key.value_or(QString()), {}, {} });
            if (!empty)
                m_open.push_back(tag[0]);
            hasRoot = true;
            key.reset();
            continue;
        }

        QVariant value;
        if (tag == "dict") {
            value = QVariantMap();
        } else if (tag == "array") {
            value = QVariantList();
        } else if (!tag.empty() && tag[0] == '/') {
            if (m_open.empty() || m_open.back() == 'p' || tag.substr(1) != (m_open.back() == 'd' ? "dict" : "array"))
                return QVariant();
            m_open.pop_back();
            Frame frame = std::move(m_frames.back());
            m_frames.pop_back();
            key = frame.key;
            value = frame.dict ? QVariant(frame.map) : QVariant(frame.list);
        } else if (!scalar(tag, name, empty, &value)) {
            return QVariant();
        }

        // Whatever follows a complete outermost value is not read.
        if (m_frames.empty())
            return value;
        Frame &parent = m_frames.back();
        if (parent.dict && !key)
            return QVariant();
        // A repeated key keeps its first place and takes the later value.
        if (parent.dict && m_rootKeys && m_frames.size() == 1 && !parent.map.contains(*key))
            m_rootKeys->append(*key);
        if (parent.dict)
            parent.map.insert(*key, value);
        else
            parent.list.append(value);
        key.reset();
    }
    if (!m_open.empty() || m_frames.empty())
        return QVariant();
    // Only an empty outermost container can be left open here.
    return m_frames.front().dict ? QVariant(m_frames.front().map) : QVariant(m_frames.front().list);
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

QVariant fromXml(const char *data, qsizetype size, QString *error, QStringList *rootKeys)
{
    if (size <= 0 || size > qsizetype(std::numeric_limits<uint32_t>::max())) {
        if (error)
            *error = size <= 0 ? QStringLiteral("no property-list data") : QStringLiteral("property list too large");
        return QVariant();
    }
    QVariant result = Reader(data, size, rootKeys).read();
    if (!result.isValid() && error)
        *error = QStringLiteral("the data is not a valid XML property list");
    return result;
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
    return findPropertyListInUtf8(start < 0 ? QByteArray() : QStringView(text).mid(start).toUtf8());
}

QVariant findPropertyListInUtf8(QByteArrayView utf8, QStringList *rootKeys)
{
    const qsizetype start = utf8.indexOf("<?xml");
    if (start < 0)
        throw PropertyList::ParseError("the text holds no property list (no \"<?xml\" marker)");
    QString error;
    QVariant result = PropertyList::fromXml(utf8.data() + start, utf8.size() - start, &error, rootKeys);
    if (!result.isValid())
        throw PropertyList::ParseError(error.toStdString());
    return result;
}
