#include "PropertyList.h"
#include "Threads.h"

#include "TestSupport.h"

#include <QDateTime>
#include <QRandomGenerator>
#include <QTimeZone>

#include <future>
#include <numeric>

// Property lists must be exchanged with the platform's own readers and
// writers; Python's plistlib stands in for them.
class TestPropertyList : public QObject
{
    Q_OBJECT

private:
    static QDateTime utc(int y, int mo, int d, int h = 0, int mi = 0, int s = 0)
    {
        return QDateTime(QDate(y, mo, d), QTime(h, mi, s), QTimeZone::utc());
    }

    static QVariantMap sample()
    {
        const QVariantMap inner { { "n", qint64(-5) }, { "big", qint64(9007199254740993LL) }, { "flag", true },
            { "off", false } };
        return QVariantMap { { "title", QStringLiteral("Vorlesung über Ökonomie – «Teil 2» 日本") },
            { "xml", "a < b && c > d \"quoted\" 'single' ]]>" }, { "real", 3.25 }, { "date", utc(2008, 1, 1) },
            { "data", QByteArray("\x00\x01\xfe\xff binary", 11) },
            { "list", QVariantList { qint64(1), "two", QVariantList { qint64(3) }, inner } }, { "dict", inner },
            { "empty", "" } };
    }

    // Python's plistlib, given `script` and `input`; exits 3 where it refuses
    // the document.
    static QByteArray python(const char *script, const QByteArray &input, int *exitCode)
    {
        return runPython(QStringLiteral("import plistlib,sys,datetime\nfrom datetime import datetime as dt\n"
                                        "d=sys.stdin.buffer.read()\n")
                + QString::fromUtf8(script),
            input, exitCode);
    }

private slots:
    // What we write, Python reads as the same value, and what Python writes
    // we read as the same value.
    void exchangesListsWithPython_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("python");
        // What Python's writer makes of the value, where that is not the value.
        QTest::addColumn<QVariant>("fromPython");
        const QStringList strings { "a < b && c > d \"quoted\" 'single' ]]>", "Grüße – «Teil 2» 日本 😀",
            "cr\r lf\n crlf\r\n tab\t", "" };
        // Python's writer turns carriage returns into line feeds; ours keeps them.
        QStringList lineFeeds = strings;
        lineFeeds.replaceInStrings("\r\n", "\n").replaceInStrings("\r", "\n");
        QTest::newRow("strings: markup, entities, line ends, non-ASCII")
            << QVariant(QVariant(strings).toList())
            << R"(['a < b && c > d "quoted" \'single\' ]]>','Grüße – «Teil 2» 日本 😀','cr\r lf\n crlf\r\n tab\t',''])"
            << QVariant(QVariant(lineFeeds).toList());
        QTest::newRow("integers from -2^63 to 2^64 - 1")
            << QVariant(QVariantList { qint64(-5), std::numeric_limits<qint64>::min(),
                   std::numeric_limits<qint64>::max(), std::numeric_limits<quint64>::max(), qint64(9007199254740993) })
            << "[-5,-9223372036854775808,9223372036854775807,18446744073709551615,9007199254740993]" << QVariant();
        QTest::newRow("reals: shortest text, extremes")
            << QVariant(QVariantList { 3.25, 0.1, -2.5e-300, 1e300, 1.0, std::numeric_limits<double>::infinity() })
            << "[3.25,0.1,-2.5e-300,1e300,1.0,float('inf')]" << QVariant();
        QTest::newRow("dates from year 1 to 9999")
            << QVariant(QVariantList { utc(1, 1, 1), utc(1869, 1, 3, 8, 16, 32), utc(1932, 12, 13, 20, 45, 52),
                   utc(2069, 1, 19, 3, 14, 8), utc(2199, 8, 20, 1, 10, 11), utc(9999, 12, 31, 23, 59, 59) })
            << "[dt(1,1,1),dt(1869,1,3,8,16,32),dt(1932,12,13,20,45,52),dt(2069,1,19,3,14,8),"
               "dt(2199,8,20,1,10,11),dt(9999,12,31,23,59,59)]"
            << QVariant();
        QByteArray bytes(256, '\0');
        std::iota(bytes.begin(), bytes.end(), char(0));
        QTest::newRow("data") << QVariant(
            QVariantList { QByteArray("\x00\x01\xfe\xff binary", 11), QByteArray(), bytes })
                              << "[b'\\x00\\x01\\xfe\\xff binary',b'',bytes(range(256))]" << QVariant();
        QTest::newRow("booleans, empty and nested containers")
            << QVariant(QVariantMap { { "t", true }, { "f", false }, { "no keys", QVariantMap() },
                   { "no items", QVariantList() },
                   { "nested", QVariantList { QVariantMap { { "b", "<&>" } }, QVariantList { QVariantList {} } } } })
            << "{'t':True,'f':False,'no keys':{},'no items':[],'nested':[{'b':'<&>'},[[]]]}" << QVariant();
    }

    void exchangesListsWithPython()
    {
        QFETCH(QVariant, value);
        QFETCH(QString, python);
        QFETCH(QVariant, fromPython);
        int exitCode = -1;
        const QByteArray written = TestPropertyList::python(
            qPrintable(
                "v=" + python + "\nr=plistlib.loads(d)\nassert r==v,r\nsys.stdout.buffer.write(plistlib.dumps(v))"),
            PropertyList::toXml(value), &exitCode);
        QCOMPARE(exitCode, 0);
        QCOMPARE(PropertyList::fromXml(written), fromPython.isValid() ? fromPython : value);
    }

    // Documents as other writers make them: where Python reads a value we
    // read the same one, and what we cannot hold we refuse, never read as
    // something else.
    void readsDocumentsAsPythonDoes_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("dates outside 1932 to 2069, a time without minutes") << QByteArray(
            "<array><date>1869-01-03T08:16:32Z</date><date>2199-08-20T01:10:11Z</date>"
            "<date>2004-03-01T12Z</date></array>") << true;
        QTest::newRow("integers: 2^64 - 1, -2^63, hex, leading zeros")
            << QByteArray("<array><integer>18446744073709551615</integer><integer>-9223372036854775808</integer>"
                          "<integer>0x7fffffffffffffff</integer><integer>007</integer></array>")
            << true;
        QTest::newRow("strings: entities, character references, CDATA, comments") << QByteArray(
            "<dict><key>k&amp;</key><string>&lt;a&gt; &quot;&apos; &#x41;&#66;&#x1F600; "
            "<![CDATA[<&>]]>x<!-- note -->y</string></dict>") << true;
        QTest::newRow("data across lines, reals, booleans") << QByteArray(
            "<array><data>\n\tAAEC\n\tAw==\n</data><real>-2.5e3</real><real>1</real><real>0.1</real>"
            "<true/><false/></array>") << true;
        QTest::newRow("nested arrays and dictionaries")
            << QByteArray("<dict><key>a</key><array><dict><key>b</key><array><array/><dict/></array></dict>"
                          "</array><key>c</key><string/><key>d</key><data/></dict>")
            << true;
        const char *refused[] = { "<integer>18446744073709551616</integer>", "<integer>-9223372036854775809</integer>",
            "<integer>12abc</integer>", "<integer/>", "<real>1.5x</real>", "<date>0000-01-01T00:00:00Z</date>",
            "<date>2019-02-29T00:00:00Z</date>", "<date>2019-01-01 00:00:00</date>", "<date>2019-01Z</date>",
            "<date/>" };
        for (const char *body : refused)
            QTest::addRow("refused: %s", body) << QByteArray(body) << false;
    }

    void readsDocumentsAsPythonDoes()
    {
        QFETCH(QByteArray, body);
        QFETCH(bool, accepted);
        const QByteArray xml
            = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + body + "</plist>";
        QString error;
        const QVariant ours = PropertyList::fromXml(xml, &error);
        QCOMPARE(ours.isValid(), accepted);
        QCOMPARE(error.isEmpty(), accepted);
        if (!accepted)
            return;
        int exitCode = -1;
        const QByteArray rewritten
            = python("sys.stdout.buffer.write(plistlib.dumps(plistlib.loads(d)))", xml, &exitCode);
        QCOMPARE(exitCode, 0);
        QCOMPARE(ours, PropertyList::fromXml(rewritten));
    }

    // Every form the element rules allow, after progress text as the tool prints it.
    void readsEveryValueForm_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QVariant>("expected");
        QTest::newRow("integers: past the signed range, hex, leading zeros are decimal")
            << "<array><integer>18446744073709551615</integer><integer> 0x10 </integer><integer>010</integer></array>"
            << QVariant(QVariantList { std::numeric_limits<quint64>::max(), qint64(16), qint64(10) });
        QTest::newRow("dates, data across lines, reals, booleans, key outside a dictionary")
            << "<array><date>2008-01-01T12:30:05Z</date><date>1800-02-03Z</date><data>\n\tAAEC\n\tAw==\n</data>"
               "<real>-2.5e3</real><true/><false></false><key>k</key></array>"
            << QVariant(QVariantList {
                   utc(2008, 1, 1, 12, 30, 5), utc(1800, 2, 3), QByteArray("\0\1\2\3", 4), -2500.0, true, false, "k" });
        QTest::newRow("references, CDATA, comments")
            << "<string>&lt;a&gt; &amp; &quot;&apos; &#x41;&#66;&#x1F600; <![CDATA[<&>]]>x<!-- note -->y</string>"
            << QVariant(QStringLiteral("<a> & \"' AB\U0001F600 <&>xy"));
        QTest::newRow("last duplicate key wins")
            << "<dict><key>a</key><integer>1</integer><key>a</key><integer>2</integer></dict>"
            << QVariant(QVariantMap { { "a", qint64(2) } });
        QVariant nested = QVariantList();
        for (int level = 1; level < 512; ++level)
            nested = QVariantList { nested };
        QTest::newRow("512 levels") << QString("<array>").repeated(512) + QString("</array>").repeated(512) << nested;
    }

    void readsEveryValueForm()
    {
        QFETCH(QString, body);
        QFETCH(QVariant, expected);
        QCOMPARE(findPropertyList("Progress: 50%\n<?xml version=\"1.0\"?><plist version=\"1.0\">" + body + "</plist>"),
            expected);
    }

    void findPropertyListThrowsWithoutAList_data()
    {
        QTest::addColumn<QString>("text");
        const QString xml = QStringLiteral("<?xml version=\"1.0\"?>");
        QTest::newRow("empty") << QString();
        QTest::newRow("no marker") << QStringLiteral("Error: server unreachable\n");
        QTest::newRow("marker but garbage") << "progress\n" + xml + " not a plist";
        QTest::newRow("truncated") << xml + "\n<plist version=\"1.0\">\n<dict><key>a</key>";
        QTest::newRow("unknown entity") << xml + "<plist><string>&nbsp;</string></plist>";
        QTest::newRow("entity declared, never expanded")
            << xml + "<!DOCTYPE plist [<!ENTITY a \"&#x41;\">]><plist><string>&a;</string></plist>";
        QTest::newRow("mismatched end tag") << xml + "<plist><array></dict></plist>";
        QTest::newRow("value without a key") << xml + "<plist><dict><string>v</string></dict></plist>";
        for (int levels : { 513, 40000 })
            QTest::addRow("%d levels", levels)
                << xml + QString("<array>").repeated(levels) + QString("</array>").repeated(levels);
    }

    // The application parses tool output on worker threads.
    void findPropertyListThrowsWithoutAList()
    {
        QFETCH(QString, text);
        auto outcome = std::make_shared<std::promise<QString>>();
        runOnWorkerThread([text, outcome] { findPropertyList(text), outcome->set_value(QString()); },
            [outcome](const QString &failure) { outcome->set_value(failure); });
        auto failure = outcome->get_future();
        QCOMPARE(failure.wait_for(std::chrono::minutes(1)), std::future_status::ready);
        QVERIFY(!failure.get().isEmpty());
    }

    // Flipped bytes, cuts and stray markup give a value or a reported
    // refusal, never a crash or a hang.
    void survivesMutatedLists()
    {
        const QByteArray xml = PropertyList::toXml(sample());
        const QByteArray strays[] = { "<array>", "</dict>", "<key>k</key>", "&amp;", "&#x41;", "<![CDATA[", "]]>",
            "<!--", "\"", "<integer>99999999999999999999999</integer>", "<date>9999-99-99T99:99:99Z</date>", "\xff\xfe",
            QByteArray(1, '\0'), "<!DOCTYPE p [<!ENTITY a \"&a;&a;\">]>", "&a;", "<plist>" };
        QRandomGenerator random(7);
        int accepted = 0;
        for (int i = 0; i < 600; ++i) {
            QByteArray mutated = xml;
            const int at = random.bounded(int(xml.size())), kind = i % 4; // flip, cut, insert, remove
            const QByteArray piece = kind == 0 ? QByteArray(1, char(random.bounded(256)))
                : kind == 2                    ? strays[random.bounded(int(std::size(strays)))]
                                               : QByteArray();
            mutated.replace(at, kind == 0 ? 1 : kind == 1 ? xml.size() : kind == 2 ? 0 : random.bounded(1, 40), piece);
            QString error;
            const bool valid = PropertyList::fromXml(mutated, &error).isValid();
            QVERIFY2(valid == error.isEmpty(), mutated.constData());
            accepted += valid;
        }
        QVERIFY(accepted > 0 && accepted < 600);
    }

    void filesReadAndWrite()
    {
        TestSandbox sandbox;
        const QString dir = sandbox.path();
        QString error;
        QVERIFY(PropertyList::writeFile(dir + "/x.plist", sample(), true, &error));
        QCOMPARE(PropertyList::readFile(dir + "/x.plist"), QVariant(sample()));
        QVERIFY(!PropertyList::readFile(dir + "/missing.plist", &error).isValid() && !error.isEmpty());
        // A folder where the file should be: unreadable even for root.
        QDir().mkpath(dir + "/dir.plist");
        QVERIFY(!PropertyList::readFile(dir + "/dir.plist").isValid());
        QVERIFY(!PropertyList::writeFile(dir + "/dir.plist", sample(), true));
        // Values with no property-list form are refused, with the reason.
        QVERIFY(PropertyList::toXml(QVariantMap { { "nil", QVariant() } }, &error).isNull() && !error.isEmpty());
        QVERIFY(PropertyList::toXml(QVariantMap { { "d", utc(10000, 1, 1) } }, &error).isNull());
        QVERIFY(error.contains(QStringLiteral("range")));
        QVariant deep = QVariantList();
        for (int level = 1; level <= 512; ++level)
            deep = QVariantList { deep };
        QVERIFY(PropertyList::toXml(deep, &error).isNull() && error.contains(QStringLiteral("512")));
        // A listing keeps the order it is given at the root.
        const QByteArray ordered
            = PropertyList::dictionaryToXml({ { "b", qint64(1) }, { "a", QVariantMap { { "z", 1 }, { "y", 2 } } } });
        QStringList keys;
        QCOMPARE(PropertyList::fromXml(ordered.constData(), ordered.size(), nullptr, &keys),
            QVariant(
                QVariantMap { { "a", QVariantMap { { "y", qint64(2) }, { "z", qint64(1) } } }, { "b", qint64(1) } }));
        QCOMPARE(keys, QStringList({ "b", "a" }));
    }
};

QTEST_GUILESS_MAIN(TestPropertyList)
#include "tst_propertylist.moc"
