// Parsing a large workflow list the way the client receives it (progress text
// followed by an XML property list) through findPropertyList.
#include "PropertyList.h"

#include <QElapsedTimer>
#include <QUuid>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

QString makeToolOutput(int entries)
{
    QVariantList workflows;
    workflows.reserve(entries);
    for (int i = 0; i < entries; ++i) {
        workflows.append(QVariantMap {
            { QStringLiteral("name"), QStringLiteral("workflow-%1").arg(i) },
            { QStringLiteral("title"),
                QStringLiteral("Lecture capture, room %1\n$$$$\nPublishes to the course page").arg(i) },
            { QStringLiteral("description"),
                QStringLiteral("Encodes the recording for the web, adds captions and publishes it to the course "
                               "page of the lecture series number %1, then tells the lecturer by e-mail.")
                    .arg(i) },
            { QStringLiteral("uuid"), QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() },
        });
    }
    const QByteArray xml = PropertyList::toXml(QVariantMap { { QStringLiteral("workflows"), workflows } });
    return QStringLiteral("Connecting to https://media.example.edu:8170/orvane ...\nAuthenticated.\n"
                          "Fetching workflows: 100%\n")
        + QString::fromUtf8(xml);
}

template<typename F> double medianMs(int runs, F &&f)
{
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer t;
        t.start();
        f();
        times.push_back(t.nsecsElapsed() / 1e6);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

int main()
{
    const int entries = 10000;
    const QString text = makeToolOutput(entries);
    const QByteArray fromMarker = text.mid(text.indexOf(QLatin1String("<?xml"))).toUtf8();
    std::printf("workflow list: %d entries, %.1f MB of tool output\n", entries, text.toUtf8().size() / 1e6);

    const int runs = 9;
    qsizetype count = 0;
    std::vector<QVariant> results;
    results.reserve(runs);
    // The caller waits for the parse; releasing the tree happens whenever it
    // drops the list, so it is measured apart.
    const double ours = medianMs(runs, [&] { results.push_back(findPropertyList(text)); });
    count = results.back().toMap().value(QStringLiteral("workflows")).toList().size();
    const double release = medianMs(runs, [&] { results.pop_back(); });
    if (count != entries) {
        std::fprintf(stderr, "parsed %lld entries, expected %d\n", static_cast<long long>(count), entries);
        return 1;
    }
    std::printf("findPropertyList (to QVariant):  %8.1f ms (median of %d)\n", ours, runs);
    std::printf("  releasing the QVariant tree:   %8.1f ms (median of %d)\n", release, runs);
    std::printf("throughput: %.0f MB/s\n", fromMarker.size() / 1e3 / ours);
    return 0;
}
