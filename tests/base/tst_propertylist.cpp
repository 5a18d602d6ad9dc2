#include "PropertyList.h"
#include "Threads.h"

#include "TestSupport.h"

#include <QDateTime>
#include <QRandomGenerator>
#include <QTimeZone>

#include <future>

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

private slots:
    void exchangesListsWithPython()
    {
        const QByteArray xml
            = runPython(QStringLiteral("import plistlib,sys,datetime\n"
                                       "d=plistlib.loads(sys.stdin.buffer.read())\n"
                                       "i={'n':-5,'big':9007199254740993,'flag':True,'off':False}\n"
                                       "assert d=={'title':'Vorlesung über Ökonomie – «Teil 2» 日本','xml':"
                                       "'a < b && c > d \"quoted\" \\'single\\' ]]>','real':3.25,'date':"
                                       "datetime.datetime(2008,1,1),'data':b'\\x00\\x01\\xfe\\xff binary',"
                                       "'list':[1,'two',[3],i],'dict':i,'empty':''}, d\n"
                                       "d={'neg':-5,'min':-9223372036854775808,'max':9223372036854775807,"
                                       "'when':datetime.datetime(2069,1,19,3,14,7),'old':datetime.datetime(1933,1,1),"
                                       "'bytes':b'\\x00abc','nested':{'a':[{'b':'<&>'}]},'t':'Grüße'}\n"
                                       "sys.stdout.buffer.write(plistlib.dumps(d))\n"),
                PropertyList::toXml(sample()));
        const QVariantMap expected { { "neg", qint64(-5) }, { "min", std::numeric_limits<qint64>::min() },
            { "max", std::numeric_limits<qint64>::max() }, { "when", utc(2069, 1, 19, 3, 14, 7) },
            { "old", utc(1933, 1, 1) }, { "bytes", QByteArray("\0abc", 4) }, { "t", QStringLiteral("Grüße") },
            { "nested", QVariantMap { { "a", QVariantList { QVariantMap { { "b", "<&>" } } } } } } };
        QCOMPARE(PropertyList::fromXml(xml), QVariant(expected));
    }

    // Every form the element rules allow, after progress text as the tool prints it.
    void readsEveryValueForm_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QVariant>("expected");
        QTest::newRow("integers: unsigned past the signed range wraps, hex, empty")
            << "<array><integer>18446744073709551615</integer><integer> 0x10 </integer><integer/></array>"
            << QVariant(QVariantList { qint64(-1), qint64(16), qint64(0) });
        QTest::newRow("dates, data across lines, reals, booleans, key outside a dictionary")
            << "<array><date>2008-01-01T12:30:05Z</date><date/><data>\n\tAAEC\n\tAw==\n</data><real>-2.5e3</real>"
               "<true/><false></false><key>k</key></array>"
            << QVariant(QVariantList {
                   utc(2008, 1, 1, 12, 30, 5), utc(2001, 1, 1), QByteArray("\0\1\2\3", 4), -2500.0, true, false, "k" });
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
        QVERIFY(PropertyList::toXml(QVariantMap { { "d", utc(2100, 1, 1) } }, &error).isNull());
        QVERIFY(error.contains(QStringLiteral("range")));
    }
};

QTEST_GUILESS_MAIN(TestPropertyList)
#include "tst_propertylist.moc"
