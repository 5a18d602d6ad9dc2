#include "PropertyList.h"

#include "TestSupport.h"

#include <QDateTime>
#include <QTimeZone>

// Property lists must be exchanged with the platform's own readers and
// writers; Python's plistlib stands in for them.
class TestPropertyList : public QObject
{
    Q_OBJECT

private:
    static QVariantMap sample()
    {
        QVariantMap inner {
            { QStringLiteral("n"), qint64(-5) },
            { QStringLiteral("big"), qint64(9007199254740993LL) },
            { QStringLiteral("flag"), true },
            { QStringLiteral("off"), false },
        };
        return QVariantMap {
            { QStringLiteral("title"), QStringLiteral("Vorlesung über Ökonomie – «Teil 2» 日本") },
            { QStringLiteral("xml"), QStringLiteral("a < b && c > d \"quoted\" 'single' ]]>") },
            { QStringLiteral("real"), 3.25 },
            { QStringLiteral("date"), QDateTime(QDate(2008, 1, 1), QTime(0, 0), QTimeZone::utc()) },
            { QStringLiteral("data"), QByteArray("\x00\x01\xfe\xff binary", 11) },
            { QStringLiteral("list"),
                QVariantList { qint64(1), QStringLiteral("two"), QVariantList { qint64(3) }, inner } },
            { QStringLiteral("dict"), inner },
            { QStringLiteral("empty"), QStringLiteral("") },
        };
    }

private slots:
    void roundTripsThroughOurOwnReader()
    {
        QString error;
        const QByteArray xml = PropertyList::toXml(sample(), &error);
        QVERIFY2(!xml.isNull(), qPrintable(error));
        QCOMPARE(PropertyList::fromXml(xml), QVariant(sample()));
    }

    void pythonReadsWhatWeWrite()
    {
        const QByteArray xml = PropertyList::toXml(sample());
        const QByteArray out
            = runPython(QStringLiteral("import plistlib,sys,datetime\n"
                                       "d=plistlib.loads(sys.stdin.buffer.read())\n"
                                       "assert d['list'][3]['n']==-5, d['list'][3]\n"
                                       "assert d['dict']['big']==9007199254740993\n"
                                       "assert d['dict']['flag'] is True and d['dict']['off'] is False\n"
                                       "assert d['title']=='Vorlesung über Ökonomie – «Teil 2» 日本'\n"
                                       "assert d['xml']=='a < b && c > d \"quoted\" \\'single\\' ]]>'\n"
                                       "assert d['real']==3.25\n"
                                       "assert d['date']==datetime.datetime(2008,1,1), d['date']\n"
                                       "assert d['data']==b'\\x00\\x01\\xfe\\xff binary'\n"
                                       "assert d['list'][2]==[3] and d['empty']==''\n"
                                       "print('ok')\n"),
                xml);
        QCOMPARE(out.trimmed(), QByteArray("ok"));
    }

    void weReadWhatPythonWrites()
    {
        const QByteArray xml
            = runPython(QStringLiteral("import plistlib,sys,datetime\n"
                                       "d={'neg':-5,'min':-9223372036854775808,'max':9223372036854775807,"
                                       "'when':datetime.datetime(2069,1,19,3,14,7),'old':datetime.datetime(1933,1,1),"
                                       "'bytes':b'\\x00abc','nested':{'a':[{'b':'<&>'}]},'t':'Grüße'}\n"
                                       "sys.stdout.buffer.write(plistlib.dumps(d))\n"));
        QString error;
        const QVariantMap d = PropertyList::fromXml(xml, &error).toMap();
        QVERIFY2(!d.isEmpty(), qPrintable(error));
        QCOMPARE(d.value("neg").toLongLong(), -5);
        QCOMPARE(d.value("min").toLongLong(), std::numeric_limits<qint64>::min());
        QCOMPARE(d.value("max").toLongLong(), std::numeric_limits<qint64>::max());
        QCOMPARE(d.value("when").toDateTime(), QDateTime(QDate(2069, 1, 19), QTime(3, 14, 7), QTimeZone::utc()));
        QCOMPARE(d.value("old").toDateTime(), QDateTime(QDate(1933, 1, 1), QTime(0, 0), QTimeZone::utc()));
        QCOMPARE(d.value("bytes").toByteArray(),
            QByteArray("\x00"
                       "abc",
                4));
        QCOMPARE(d.value("nested").toMap().value("a").toList().value(0).toMap().value("b").toString(),
            QStringLiteral("<&>"));
        QCOMPARE(d.value("t").toString(), QStringLiteral("Grüße"));
    }

    void refusesValuesWithNoPropertyListForm()
    {
        QString error;
        QVERIFY(PropertyList::toXml(QVariantMap { { QStringLiteral("nil"), QVariant() } }, &error).isNull());
        QVERIFY(!error.isEmpty());
        error.clear();
        const QDateTime tooLate(QDate(2100, 1, 1), QTime(0, 0), QTimeZone::utc());
        QVERIFY(PropertyList::toXml(QVariantMap { { QStringLiteral("d"), tooLate } }, &error).isNull());
        QVERIFY(error.contains(QStringLiteral("range")));
    }

    void findPropertyListSkipsLeadingText()
    {
        const QString xml = QString::fromUtf8(PropertyList::toXml(QVariantMap { { QStringLiteral("workflows"),
            QVariantList { QVariantMap { { QStringLiteral("name"), QStringLiteral("w") } } } } }));
        const QString text = QStringLiteral("Connecting to server...\nProgress: 50%\n") + xml;
        const QVariantMap root = findPropertyList(text).toMap();
        QCOMPARE(root.value("workflows").toList().size(), 1);
    }

    void findPropertyListThrowsWithoutAList_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("no marker") << QStringLiteral("Error: server unreachable\n");
        QTest::newRow("marker but garbage") << QStringLiteral("progress\n<?xml version=\"1.0\"?> not a plist");
        QTest::newRow("truncated") << QStringLiteral(
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict><key>a</key>");
    }

    void findPropertyListThrowsWithoutAList()
    {
        QFETCH(QString, text);
        QVERIFY_THROWS_EXCEPTION(PropertyList::ParseError, findPropertyList(text));
    }

    void filesReadAndWrite()
    {
        TestSandbox sandbox;
        const QString path = sandbox.path() + QStringLiteral("/x.plist");
        QString error;
        QVERIFY(PropertyList::writeFile(path, sample(), true, &error));
        QCOMPARE(PropertyList::readFile(path), QVariant(sample()));

        QVERIFY(!PropertyList::readFile(sandbox.path() + QStringLiteral("/missing.plist"), &error).isValid());
        QVERIFY(!error.isEmpty());
        // A folder where the file should be: unreadable even for root.
        QDir().mkpath(sandbox.path() + QStringLiteral("/dir.plist"));
        QVERIFY(!PropertyList::readFile(sandbox.path() + QStringLiteral("/dir.plist")).isValid());
        QVERIFY(!PropertyList::writeFile(sandbox.path() + QStringLiteral("/dir.plist"), sample(), true));
    }
};

QTEST_GUILESS_MAIN(TestPropertyList)
#include "tst_propertylist.moc"
