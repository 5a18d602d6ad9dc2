#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <stdexcept>
#include <utility>

// XML property lists in and out, as QVariant trees: dictionaries are
// QVariantMap, arrays QVariantList, strings QString, integers qint64 (quint64
// above its range, up to 2^64 - 1), reals double, booleans bool, dates
// QDateTime (UTC, whole seconds, years 1 to 9999), data QByteArray. What one
// side cannot hold is refused, never written or read as another value.
namespace PropertyList {

// Deeper nesting is refused, read or written: no real answer comes near it,
// and freeing a tree recurses once per level, on worker threads with smaller
// stacks too.
inline constexpr size_t kMaxDepth = 512;

// A dictionary's entries in the order they are to be written.
using Entries = QList<std::pair<QString, QVariant>>;

// Raised by findPropertyList when the text holds no property list.
class ParseError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// Parses an XML property list. On failure returns an invalid QVariant and
// describes the problem in `error`; a list nested more than a few hundred
// levels deep is refused the same way. With `rootKeys`, the keys of a
// dictionary at the root are appended to it in the document's order, which
// the returned map does not keep.
QVariant fromXml(const char *data, qsizetype size, QString *error = nullptr, QStringList *rootKeys = nullptr);
inline QVariant fromXml(const QByteArray &xml, QString *error = nullptr)
{
    return fromXml(xml.constData(), xml.size(), error);
}

// Serialises `value` as an XML property list (version 1.0). On failure (a
// value with no property-list form, such as an invalid QVariant or a date
// outside the years 1 to 9999) returns a null QByteArray and describes it in
// `error`.
QByteArray toXml(const QVariant &value, QString *error = nullptr);
// The same for a dictionary at the root whose keys keep the order of
// `entries` (a QVariantMap sorts them), as listings in a given order need.
QByteArray dictionaryToXml(const Entries &entries, QString *error = nullptr);

// Reads and parses a file. Returns an invalid QVariant when the file cannot be
// read or is not a property list, and says which in `error`.
QVariant readFile(const QString &path, QString *error = nullptr);

// Serialises and writes a file; with `atomic`, through a temporary file that
// replaces the old one only when complete.
bool writeFile(const QString &path, const QVariant &value, bool atomic, QString *error = nullptr);

} // namespace PropertyList

// The property list in `text` that starts at its first "<?xml" and runs to
// its end; text before the marker (progress lines, warnings) is ignored.
// Throws PropertyList::ParseError when there is no marker or what follows it
// is not a property list.
QVariant findPropertyList(const QString &text);
// The same on UTF-8 text, without decoding it first; with `rootKeys` as in
// PropertyList::fromXml.
QVariant findPropertyListInUtf8(QByteArrayView utf8, QStringList *rootKeys = nullptr);
