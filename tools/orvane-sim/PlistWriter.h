#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariant>

#include <utility>

// XML property-list text written straight from QVariants, for listings that
// must keep their entries' order (a QVariantMap sorts its keys) and that are
// large enough for the detour through libplist's tree to show. Output is
// unindented; maps, lists, strings, booleans, integers, reals, dates and
// data are written, anything else as its string form.
namespace PlistWriter {

using Entries = QList<std::pair<QString, QVariant>>;

// A whole document whose root is a dictionary of `entries`, in that order.
QByteArray dictionaryDocument(const Entries &entries);

} // namespace PlistWriter
