// CaptureDevicesController through its whole life, on test devices, with a
// stand-in for the application controller.

#include "CaptureDeviceRegistry.h"
#include "CaptureDevicesController.h"
#include "FakeApplicationController.h"
#include "InputDeviceMenu.h"
#include "LXDefaultsKeys.h"
#include "LXUserDefaults.h"
#include "Log.h"
#include "MovieInspection.h"
#include "Paths.h"
#include "PropertyList.h"
#include "TestSupport.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QtTest>

namespace {

QStringList ids(const QList<CaptureDevicePtr> &devices)
{
    QStringList result;
    for (const CaptureDevicePtr &d : devices)
        result << d->uniqueID();
    return result;
}

} // namespace

class TestCaptureDevicesController : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void initRefreshesWithoutAControllerAndListsMuxedDevicesTwice();
    void devicesBoundToTheAgentAreLeftOut();
    void connectingAndDisconnectingRebuildsTheLists();
    void missingDeviceAlertsTheControllerAndDropsTheSession();
    void deviceOpenFailureAlertsWithGStreamersError();
    void fileNameCarriesTheTimeOfSetUp();
    void muxedDeviceForBothUsesOneInput();
    void muxedCameraWithAnotherMicrophoneAddsTheMicrophoneFirst();
    void stoppedRecordingKeepsAPausedFileAndReportsNil();
    void cancelledRecordingRemovesTheFileWithoutReporting();
    void deviceLostWhilePreviewingEndsTheRequestedRecordingWithAnError();
    void deviceLostWhileRecordingReportsTheErrorOnce();
    void missingCompressionLeavesThePlatformDefaultSilently();
    void separatorTitleAppendsASeparator();

private:
    void writeAgentConfiguration(const QVariantMap &configuration);
    std::unique_ptr<TestSandbox> m_sandbox;
    QString m_spool;
};

void TestCaptureDevicesController::initTestCase()
{
    m_sandbox = std::make_unique<TestSandbox>();
    qputenv(CaptureDeviceRegistry::kHardwareVariable, "0");
    qputenv(CaptureDeviceRegistry::kTestDevicesVariable,
        "camera:cam1:Test Camera;microphone:mic1:Test Microphone;muxed:dv1:Test Camcorder;broken:bad1");
    m_spool = m_sandbox->path() + QStringLiteral("/spool");
    QDir().mkpath(m_spool);
    LXUserDefaults::standard().setObject(m_spool, LXDefaultsKeys::LocalRecordSpoolPath.key);
}

void TestCaptureDevicesController::cleanup()
{
    QFile::remove(Paths::globalAgentConfig());
}

void TestCaptureDevicesController::writeAgentConfiguration(const QVariantMap &configuration)
{
    QDir().mkpath(QFileInfo(Paths::globalAgentConfig()).absolutePath());
    QVERIFY(PropertyList::writeFile(Paths::globalAgentConfig(), configuration, true));
}

void TestCaptureDevicesController::initRefreshesWithoutAControllerAndListsMuxedDevicesTwice()
{
    CaptureDevicesController devices;
    QCOMPARE(ids(devices.cameras()), QStringList({ "test:cam1", "test:bad1", "test:dv1" }));
    QCOMPARE(ids(devices.microphones()), QStringList({ "test:mic1", "test:dv1" }));
    QVERIFY(!devices.captureSession());
    QVERIFY(!devices.deleteMovieFileWhenItFinishesRecording());
    FakeApplicationController app;
    devices.setController(&app);
    devices.refreshDevices();
    QCOMPARE(app.rebuilds, 1);
}

void TestCaptureDevicesController::devicesBoundToTheAgentAreLeftOut()
{
    // Bound as the agent's video input, a muxed device leaves both lists.
    writeAgentConfiguration({ { QStringLiteral("CameraName"), QStringLiteral("Room 101") },
        { QStringLiteral("RecordingVideoInput"), QStringLiteral("test:dv1") },
        { QStringLiteral("RecordingAudioInput"), QStringLiteral("test:mic1") } });
    CaptureDevicesController devices;
    QCOMPARE(ids(devices.cameras()), QStringList({ "test:cam1", "test:bad1" }));
    QVERIFY(devices.microphones().isEmpty());

    // Without a camera name the agent is not bound, whatever it lists.
    writeAgentConfiguration({ { QStringLiteral("RecordingVideoInput"), QStringLiteral("test:dv1") },
        { QStringLiteral("RecordingAudioInput"), QStringLiteral("test:mic1") } });
    devices.refreshDevices();
    QCOMPARE(ids(devices.cameras()), QStringList({ "test:cam1", "test:bad1", "test:dv1" }));
    QCOMPARE(ids(devices.microphones()), QStringList({ "test:mic1", "test:dv1" }));

    // An unreadable configuration binds nothing either.
    {
        QFile file(Paths::globalAgentConfig());
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write("not a property list");
    }
    devices.refreshDevices();
    QCOMPARE(devices.microphones().size(), 2);
}

void TestCaptureDevicesController::connectingAndDisconnectingRebuildsTheLists()
{
    CaptureDevicesController devices;
    FakeApplicationController app;
    devices.setController(&app);
    auto &registry = CaptureDeviceRegistry::instance();
    QVERIFY(registry.addTestDevice(QStringLiteral("microphone:mic2")));
    QCOMPARE(app.rebuilds, 1);
    QCOMPARE(ids(devices.microphones()), QStringList({ "test:mic1", "test:mic2", "test:dv1" }));
    QCOMPARE(devices.cameras().size(), 3);
    QVERIFY(registry.removeTestDevice(QStringLiteral("test:mic2")));
    QCOMPARE(app.rebuilds, 2);
    QCOMPARE(ids(devices.microphones()), QStringList({ "test:mic1", "test:dv1" }));
}

void TestCaptureDevicesController::missingDeviceAlertsTheControllerAndDropsTheSession()
{
    Log::Capture log;
    CaptureDevicesController devices;
    FakeApplicationController app;
    devices.setController(&app);
    devices.setupRecordingForVideoDeviceUniqueID(QStringLiteral("test:cam1"), QStringLiteral("test:unplugged"));
    QCOMPARE(app.alerts.size(), 1);
    QCOMPARE(app.alerts[0],
        (Error { QStringLiteral("com.tarn.Lumex"), 1, QStringLiteral("Cannot find the audio and video devices") }));
    QVERIFY(!devices.captureSession());
    QVERIFY(log.contains(QStringLiteral("initAudioDevice:(null) videoDevice:Test Camera -- cannot be nil")));
    QVERIFY(!app.theJob->movieFilePaths());
}

void TestCaptureDevicesController::deviceOpenFailureAlertsWithGStreamersError()
{
    Log::Capture log;
    CaptureDevicesController devices;
    FakeApplicationController app;
    devices.setController(&app);
    devices.setupRecordingForVideoDeviceUniqueID(QStringLiteral("test:bad1"), QStringLiteral("test:mic1"));
    QCOMPARE(app.alerts.size(), 1);
    QCOMPARE(app.alerts[0].domain, QStringLiteral("gst-resource-error-quark"));
    QVERIFY(!devices.captureSession());
    QVERIFY(log.contains(QStringLiteral("initVideoAndAudioDevices: Error initializing video device: ")
        + app.alerts[0].localizedDescription));
    // The microphone opened on the way stays open, as the system leaves it.
    QVERIFY(CaptureDeviceRegistry::instance().deviceWithUniqueID(QStringLiteral("test:mic1"))->isOpen());
    CaptureDeviceRegistry::instance().deviceWithUniqueID(QStringLiteral("test:mic1"))->close();
}

void TestCaptureDevicesController::fileNameCarriesTheTimeOfSetUp()
{
    CaptureDevicesController devices;
    FakeApplicationController app;
    devices.setController(&app);
    app.theJob->setMovieFilePaths(
        QStringList { QStringLiteral("/earlier/one.mov"), QStringLiteral("/earlier/two.mov") });
    LXUserDefaults::standard().setObject(m_spool + QLatin1Char('/'), LXDefaultsKeys::LocalRecordSpoolPath.key);
    const QDateTime before = QDateTime::currentDateTime();
    devices.setupRecordingForVideoDeviceUniqueID(QStringLiteral("test:cam1"), QStringLiteral("test:mic1"));
    const QDateTime after = QDateTime::currentDateTime();
    LXUserDefaults::standard().setObject(m_spool, LXDefaultsKeys::LocalRecordSpoolPath.key);
    QVERIFY(devices.captureSession());
    QVERIFY(devices.captureSession()->isRunning());
    const QStringList paths = app.theJob->movieFilePaths().value_or(QStringList());
    QCOMPARE(paths.size(), 1);
    // A trailing slash in the setting is kept: plain string append.
    const QRegularExpression pattern(
        QRegularExpression::escape(m_spool) + QStringLiteral("//LocalVideo-(\\d{4}-\\d{2}-\\d{2}-\\d{6})\\.mov"));
    const QRegularExpressionMatch match = pattern.match(paths[0]);
    QVERIFY2(match.hasMatch(), qPrintable(paths[0]));
    const QString stamp = match.captured(1);
    QVERIFY(stamp == before.toString(QStringLiteral("yyyy-MM-dd-HHmmss"))
        || stamp == after.toString(QStringLiteral("yyyy-MM-dd-HHmmss")));
    // Nothing is written before recording begins.
    QTest::qWait(1200);
    QVERIFY(!QFile::exists(paths[0]));
    devices.teardown();
    QVERIFY(!devices.captureSession());
    QVERIFY(!CaptureDeviceRegistry::instance().deviceWithUniqueID(QStringLiteral("test:cam1"))->isOpen());
}

void TestCaptureDevicesController::muxedDeviceForBothUsesOneInput()
{
    CaptureDevicesController devices;
    FakeApplicationController app;
    devices.setController(&app);
    devices.setupRecordingForVideoDeviceUniqueID(QStringLiteral("test:dv1"), QStringLiteral("test:dv1"));
    QVERIFY(app.alerts.isEmpty());
    QVERIFY(devices.captureSession());
    const QList<CaptureInputPtr> inputs = devices.captureSession()->inputs();
    QCOMPARE(inputs.size(), 1);
    QCOMPARE(inputs[0]->device()->uniqueID(), QStringLiteral("test:dv1"));
    QCOMPARE(devices.captureSession()->activeConnections().size(), 2);
    devices.teardown();
}

void TestCaptureDevicesController::muxedCameraWithAnotherMicrophoneAddsTheMicrophoneFirst()
{
    CaptureDevicesController devices;
    FakeApplicationController app;
    devices.setController(&app);
    devices.setupRecordingForVideoDeviceUniqueID(QStringLiteral("test:dv1"), QStringLiteral("test:mic1"));
    QVERIFY(devices.captureSession());
    const QList<CaptureInputPtr> inputs = devices.captureSession()->inputs();
    QCOMPARE(inputs.size(), 2);
    QCOMPARE(inputs[0]->device()->uniqueID(), QStringLiteral("test:mic1"));
    QCOMPARE(inputs[1]->device()->uniqueID(), QStringLiteral("test:dv1"));
    // The camcorder's own sound is switched off; the chosen microphone is
    // the recording's sound.
    for (const CaptureConnectionPtr &connection : inputs[1]->connections())
        QCOMPARE(connection->isEnabled(), connection->mediaType() == MediaType::Video);
    const QList<CaptureConnectionPtr> active = devices.captureSession()->activeConnections();
    QCOMPARE(active.size(), 2);
    for (const CaptureConnectionPtr &connection : active)
        QCOMPARE(connection->input()->device()->uniqueID(),
            connection->mediaType() == MediaType::Video ? QStringLiteral("test:dv1") : QStringLiteral("test:mic1"));
    devices.teardown();

    // A plain camera goes in first.
    devices.setupRecordingForVideoDeviceUniqueID(QStringLiteral("test:cam1"), QStringLiteral("test:dv1"));
    const QList<CaptureInputPtr> plain = devices.captureSession()->inputs();
    QCOMPARE(plain[0]->device()->uniqueID(), QStringLiteral("test:cam1"));
    for (const CaptureConnectionPtr &connection : plain[1]->connections())
        QCOMPARE(connection->isEnabled(), connection->mediaType() == MediaType::Sound);
    devices.teardown();
}

void TestCaptureDevicesController::stoppedRecordingKeepsAPausedFileAndReportsNil()
{
    // A space in the folder, as in the default one: URLs are logged encoded.
    const QString spaced = m_sandbox->path() + QStringLiteral("/Application Support");
    QVERIFY(QDir().mkpath(spaced));
    LXUserDefaults::standard().setObject(spaced, LXDefaultsKeys::LocalRecordSpoolPath.key);
    Log::Capture log;
    CaptureDevicesController devices;
    FakeApplicationController app;
    devices.setController(&app);
    devices.setupRecordingForVideoDeviceUniqueID(QStringLiteral("test:cam1"), QStringLiteral("test:mic1"));
    LXUserDefaults::standard().setObject(m_spool, LXDefaultsKeys::LocalRecordSpoolPath.key);
    const QString path = app.theJob->movieFilePaths()->last();
    const QString url = QStringLiteral("file://") + QString(path).replace(QLatin1Char(' '), QStringLiteral("%20"));
    QVERIFY(url.contains(QStringLiteral("/Application%20Support/LocalVideo-")));

    QElapsedTimer recorded;
    devices.beginRecording();
    recorded.start();
    QTest::qWait(1500);
    qint64 recordedMs = recorded.elapsed();
    devices.pauseRecording();
    QTest::qWait(2000);
    devices.resumeRecording();
    recorded.restart();
    QTest::qWait(1500);
    recordedMs += recorded.elapsed();
    devices.stopRecording();
    QTRY_COMPARE_WITH_TIMEOUT(app.stops.size(), 1, 20000);
    QVERIFY(!app.stops[0]);
    QVERIFY(!devices.captureSession());
    QVERIFY(app.alerts.isEmpty());

    const QStringList expected { QStringLiteral("Starting capture: ") + url, QStringLiteral("Pausing capture"),
        QStringLiteral("Resuming capture"), QStringLiteral("Stopping capture"),
        QStringLiteral("Will finish recording to: ") + url, QStringLiteral("Finished recording to: ") + url };
    QCOMPARE(log.lines(), expected);

    const MovieInspection movie = inspectMovie(path);
    QCOMPARE(movie.videoCodec, QStringLiteral("video/x-h264"));
    QCOMPARE(QSize(movie.width, movie.height), QSize(640, 480));
    QCOMPARE(movie.audioCodec, QStringLiteral("audio/mpeg"));
    QCOMPARE(movie.sampleRate, 48000);
    QCOMPARE(movie.channels, 2);
    QVERIFY2(qAbs(movie.containerDuration - recordedMs / 1000.0) < 0.2,
        qPrintable(QStringLiteral("%1 vs %2").arg(movie.containerDuration).arg(recordedMs)));
    QVERIFY(movie.largestVideoGap < 0.1);
    QVERIFY(movie.largestAudioGap < 0.05);
    QVERIFY(qAbs(movie.videoEnd - movie.audioEnd) < 0.2);
}

void TestCaptureDevicesController::cancelledRecordingRemovesTheFileWithoutReporting()
{
    Log::Capture log;
    CaptureDevicesController devices;
    FakeApplicationController app;
    devices.setController(&app);
    devices.setupRecordingForVideoDeviceUniqueID(QStringLiteral("test:cam1"), QStringLiteral("test:mic1"));
    const QString path = app.theJob->movieFilePaths()->last();
    devices.beginRecording();
    QTest::qWait(1000);
    devices.cancelRecording();
    QVERIFY(devices.deleteMovieFileWhenItFinishesRecording());
    QTRY_VERIFY_WITH_TIMEOUT(
        log.contains(QStringLiteral("Successfully deleted cancelled recording at ") + path), 20000);
    QVERIFY(!QFile::exists(path));
    QVERIFY(!devices.captureSession());
    QTest::qWait(100);
    QVERIFY(app.stops.isEmpty());
    // The job keeps the path of the discarded file.
    QCOMPARE(app.theJob->movieFilePaths()->last(), path);
}

void TestCaptureDevicesController::missingCompressionLeavesThePlatformDefaultSilently()
{
    // Without any AAC encoder the sound keeps the platform default.
    for (const char *name : { "voaacenc", "avenc_aac" }) {
        if (GstPluginFeature *feature = gst_registry_lookup_feature(gst_registry_get(), name)) {
            gst_registry_remove_feature(gst_registry_get(), feature);
            gst_object_unref(feature);
        }
    }
    QVERIFY(CompressionOptions::compressionOptionsIdentifiersForMediaType(MediaType::Sound).isEmpty());
    QVERIFY(CompressionOptions::compressionOptionsIdentifiersForMediaType(MediaType::Video)
                .contains(CompressionOptions::SD480SizeMPEG4Video));

    Log::Capture log;
    CaptureDevicesController devices;
    FakeApplicationController app;
    devices.setController(&app);
    devices.setupRecordingForVideoDeviceUniqueID(QStringLiteral("test:cam1"), QStringLiteral("test:mic1"));
    devices.beginRecording();
    QTest::qWait(1000);
    devices.stopRecording();
    QTRY_COMPARE_WITH_TIMEOUT(app.stops.size(), 1, 20000);
    QVERIFY(!app.stops[0]);
    for (const QString &line : log.lines())
        QVERIFY2(!line.startsWith(QStringLiteral("No compression requested")), qPrintable(line));
    const MovieInspection movie = inspectMovie(app.theJob->movieFilePaths()->last());
    QCOMPARE(movie.videoCodec, QStringLiteral("video/x-h264"));
    QCOMPARE(movie.audioCodec, QStringLiteral("audio/x-raw"));
}

void TestCaptureDevicesController::separatorTitleAppendsASeparator()
{
    InputDeviceMenu menu;
    int triggered = 0;
    menu.insertItemWithTitle(
        QStringLiteral("Camera A"), [&] { ++triggered; }, QKeySequence(), 0);
    menu.insertItemWithTitle(QStringLiteral("Camera B"), nullptr, QKeySequence(), 0);
    QAction *separator = menu.insertItemWithTitle(InputDeviceMenu::kSeparatorItem, nullptr, QKeySequence(), 0);
    menu.insertItemWithTitle(QStringLiteral("Microphone"), nullptr, QKeySequence(QStringLiteral("Ctrl+M")), 99);
    const QList<QAction *> items = menu.actions();
    QCOMPARE(items.size(), 4);
    QCOMPARE(items[0]->text(), QStringLiteral("Camera B"));
    QCOMPARE(items[1]->text(), QStringLiteral("Camera A"));
    // The separator's index is ignored: it goes to the end.
    QCOMPARE(items[2], separator);
    QVERIFY(separator->isSeparator());
    QCOMPARE(items[3]->shortcut(), QKeySequence(QStringLiteral("Ctrl+M")));
    items[1]->trigger();
    QCOMPARE(triggered, 1);
}

void TestCaptureDevicesController::deviceLostWhilePreviewingEndsTheRequestedRecordingWithAnError()
{
    auto &registry = CaptureDeviceRegistry::instance();
    CaptureDevicesController devices;
    FakeApplicationController app;
    devices.setController(&app);
    for (const bool cancel : { false, true }) {
        QVERIFY(registry.addTestDevice(QStringLiteral("camera:gone:Unplugged Camera")));
        devices.refreshDevices();
        Log::Capture log;
        devices.setupRecordingForVideoDeviceUniqueID(QStringLiteral("test:gone"), QStringLiteral("test:mic1"));
        QVERIFY(devices.captureSession() && devices.captureSession()->isRunning());
        const QString path = app.theJob->movieFilePaths()->last();
        QVERIFY(registry.removeTestDevice(QStringLiteral("test:gone")));
        QTRY_VERIFY_WITH_TIMEOUT(!devices.captureSession()->isRunning(), 5000);
        const QString failure = log.lines().value(0);
        QVERIFY2(failure.startsWith(
                     QStringLiteral("Capture session stopped due to error: Error Domain=gst-resource-error-quark "
                                    "Code=3 \"The capture device Unplugged Camera was disconnected.\"")),
            qPrintable(failure));

        // The recording asked for on a dead session cannot start, and its
        // stop or cancel still ends it.
        devices.beginRecording();
        if (cancel)
            devices.cancelRecording();
        else
            devices.stopRecording();
        QTRY_VERIFY_WITH_TIMEOUT(!devices.captureSession(), 5000);
        QTest::qWait(200);
        QVERIFY(!QFile::exists(path));
        const QString url = QUrl::fromLocalFile(path).toString();
        const QString stoppedDueToError
            = QStringLiteral("Stopped due to error: Error Domain=gst-resource-error-quark Code=3 "
                             "\"The capture device Unplugged Camera was disconnected.\": {\n"
                             "    NSLocalizedDescription = The capture device Unplugged Camera was disconnected.;\n}");
        QStringList expected { failure, QStringLiteral("Starting capture: ") + url,
            cancel ? QStringLiteral("Stopping capture and discarding movie file") : QStringLiteral("Stopping capture"),
            QStringLiteral("Will finish recording to: ") + url, QStringLiteral("Finished recording to: ") + url,
            stoppedDueToError };
        if (cancel)
            expected << QStringLiteral("Could not delete recording at ") + path
                    + QStringLiteral(" ({\n    NSLocalizedDescription = No such file or directory;\n})");
        QCOMPARE(log.lines(), expected);
    }
    // Only the stopped one reports, once, with the session's error.
    QCOMPARE(app.stops.size(), 1);
    QVERIFY(app.stops[0]);
    QCOMPARE(app.stops[0]->domain, QStringLiteral("gst-resource-error-quark"));
    QVERIFY(app.alerts.isEmpty());
    QVERIFY(!CaptureDeviceRegistry::instance().deviceWithUniqueID(QStringLiteral("test:mic1"))->isOpen());
}

void TestCaptureDevicesController::deviceLostWhileRecordingReportsTheErrorOnce()
{
    auto &registry = CaptureDeviceRegistry::instance();
    QVERIFY(registry.addTestDevice(QStringLiteral("microphone:gone:Unplugged Microphone")));
    Log::Capture log;
    CaptureDevicesController devices;
    FakeApplicationController app;
    devices.setController(&app);
    devices.setupRecordingForVideoDeviceUniqueID(QStringLiteral("test:cam1"), QStringLiteral("test:gone"));
    const QString path = app.theJob->movieFilePaths()->last();
    devices.beginRecording();
    QTest::qWait(1500);
    QVERIFY(registry.removeTestDevice(QStringLiteral("test:gone")));
    QTRY_COMPARE_WITH_TIMEOUT(app.stops.size(), 1, 20000);
    QVERIFY(app.stops[0]);
    QCOMPARE(app.stops[0]->domain, QStringLiteral("gst-resource-error-quark"));
    QVERIFY(!devices.captureSession());
    QVERIFY(log.contains(QStringLiteral("Will finish recording to: ") + QUrl::fromLocalFile(path).toString()));
    // The file is closed properly up to the loss.
    const MovieInspection movie = inspectMovie(path);
    QCOMPARE(movie.videoCodec, QStringLiteral("video/x-h264"));
    QVERIFY2(movie.containerDuration > 1.0, qPrintable(QString::number(movie.containerDuration)));
    // The user's stop that follows finds nothing left to end.
    devices.stopRecording();
    QTest::qWait(300);
    QCOMPARE(app.stops.size(), 1);
}

QTEST_MAIN(TestCaptureDevicesController)
#include "tst_capturedevicescontroller.moc"
