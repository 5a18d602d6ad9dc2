#include "PropertyList.h"

#include <QDateTime>
#include <QFile>
#include <QLocale>
#include <QSaveFile>
#include <QStringList>
#include <QTimeZone>
#include <QVarLengthArray>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using PropertyList::kMaxDepth;

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

// Integers as Python's plistlib reads them: decimal (leading zeros too) or
// "0x" hexadecimal, signed, from -2^63 to 2^64 - 1; values above the signed
// range come back as quint64.
std::optional<QVariant> integerValue(QByteArrayView text)
{
    text = text.trimmed();
    const bool negative = text.startsWith('-');
    if (negative || text.startsWith('+'))
        text = text.sliced(1);
    const bool hex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    if (hex)
        text = text.sliced(2);
    const unsigned base = hex ? 16 : 10;
    if (text.isEmpty())
        return std::nullopt;
    quint64 magnitude = 0;
    for (const char c : text) {
        const unsigned digit = c >= '0' && c <= '9' ? unsigned(c - '0')
            : c >= 'a' && c <= 'f'                  ? unsigned(c - 'a' + 10)
            : c >= 'A' && c <= 'F'                  ? unsigned(c - 'A' + 10)
                                                    : base;
        if (digit >= base || magnitude > (std::numeric_limits<quint64>::max() - digit) / base)
            return std::nullopt;
        magnitude = magnitude * base + digit;
    }
    constexpr quint64 kSignedMax = quint64(std::numeric_limits<qint64>::max());
    if (!negative)
        return magnitude <= kSignedMax ? QVariant(qint64(magnitude)) : QVariant(quint64(magnitude));
    if (magnitude > kSignedMax + 1)
        return std::nullopt;
    return QVariant(qint64(0 - magnitude));
}

std::optional<QVariant> realValue(const QByteArray &text)
{
    static const locale_t c = newlocale(LC_ALL_MASK, "C", nullptr);
    const QByteArray trimmed = text.trimmed();
    char *end = nullptr;
    const double value = strtod_l(trimmed.constData(), &end, c);
    if (trimmed.isEmpty() || end != trimmed.constData() + trimmed.size())
        return std::nullopt;
    return value;
}

// Dates as Python's plistlib reads them: year, month and day, then
// optionally hour, minute and second, in UTC; any year from 1 to 9999.
std::optional<QVariant> dateValue(QByteArrayView text)
{
    text = text.trimmed();
    int fields[6] = { 0, 1, 1, 0, 0, 0 };
    qsizetype at = 0;
    const auto digits = [&](int count, int *field) {
        for (*field = 0; count > 0; --count, ++at) {
            if (at >= text.size() || text[at] < '0' || text[at] > '9')
                return false;
            *field = *field * 10 + (text[at] - '0');
        }
        return true;
    };
    if (!digits(4, &fields[0]))
        return std::nullopt;
    int count = 1;
    for (; count < 6 && at < text.size() && text[at] == "--T::"[count - 1]; ++count) {
        ++at;
        if (!digits(2, &fields[count]))
            return std::nullopt;
    }
    const QDate date(fields[0], fields[1], fields[2]);
    const QTime time(fields[3], fields[4], fields[5]);
    if (count < 3 || at != text.size() - 1 || text[at] != 'Z' || fields[0] < 1 || !date.isValid() || !time.isValid())
        return std::nullopt;
    return QDateTime(date, time, QTimeZone::utc());
}

// Reads straight into the QVariant tree, without recursion. The markup
// follows the rules of libplist's reader, which this client used before, so
// it accepts and refuses the same documents: tags count, not
// well-formedness; reading stops once the outermost value is complete; a
// DOCTYPE's internal subset is skipped, so its entities are never defined,
// let alone expanded. Values are read as Python's plistlib reads them, over
// its whole range.
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
    // Integers, reals, dates and data take their text as it stands, comments
    // and CDATA sections joined; a text that does not hold a whole value of
    // its kind is refused rather than cut or wrapped into one.
    QByteArray raw;
    for (const Part &part : parts)
        raw.append(copyOf(part));
    std::optional<QVariant> parsed;
    if (tag == "true" || tag == "false")
        parsed = tag == "true";
    else if (tag == "integer")
        parsed = integerValue(raw);
    else if (tag == "real")
        parsed = realValue(raw);
    else if (tag == "data")
        parsed = QByteArray::fromBase64(raw);
    else if (tag == "date")
        parsed = dateValue(raw);
    if (!parsed)
        return false;
    *value = std::move(*parsed);
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
