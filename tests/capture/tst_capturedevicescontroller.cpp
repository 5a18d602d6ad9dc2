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
#include "WaylandSession.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

QStringList ids(const QList<CaptureDevicePtr> &devices)
{
    QStringList result;
    for (const CaptureDevicePtr &d : devices)
        result << d->uniqueID();
    return result;
}

CaptureDevicePtr device(const char *uniqueID)
{
    return CaptureDeviceRegistry::instance().deviceWithUniqueID(QString::fromLatin1(uniqueID));
}

// The controller under test, with a stand-in for the application.
struct Controlled
{
    FakeApplicationController app;
    CaptureDevicesController devices;

    Controlled() { devices.setController(&app); }
    void setUp(const char *video, const char *audio)
    {
        devices.setupRecordingForVideoDeviceUniqueID(QString::fromLatin1(video), QString::fromLatin1(audio));
    }
    QString moviePath() const { return app.theJob->movieFilePaths()->last(); }
    double runningTime() const
    {
        const auto session = devices.captureSession();
        return session ? double(session->runningTime()) / GST_SECOND : 0;
    }
};

// Everything queued to the main thread so far has run.
bool deliverQueued()
{
    bool delivered = false;
    QMetaObject::invokeMethod(
        qApp, [&delivered] { delivered = true; }, Qt::QueuedConnection);
    return QTest::qWaitFor([&delivered] { return delivered; }, 5000);
}

} // namespace

class TestCaptureDevicesController : public QObject
{
    Q_OBJECT

    std::unique_ptr<TestSandbox> m_sandbox;
    QString m_spool;

private slots:
    void initTestCase()
    {
        m_sandbox = std::make_unique<TestSandbox>();
        qputenv(CaptureDeviceRegistry::kHardwareVariable, "0");
        qputenv(CaptureDeviceRegistry::kTestDevicesVariable,
            "camera:cam1:Test Camera;microphone:mic1:Test Microphone;muxed:dv1:Test "
            "Camcorder;broken:bad1;nonsense;camera:");
        m_spool = m_sandbox->path() + QStringLiteral("/spool");
        QDir().mkpath(m_spool);
        LXUserDefaults::standard().setObject(m_spool, LXDefaultsKeys::LocalRecordSpoolPath.key);
    }
    void cleanup() { QFile::remove(Paths::globalAgentConfig()); }
    void initRefreshesWithoutAControllerAndFollowsTheRegistry()
    {
        auto &registry = CaptureDeviceRegistry::instance();
        // Malformed entries are skipped, the rest keep their order.
        QCOMPARE(ids(registry.devices()), QStringList({ "test:cam1", "test:mic1", "test:dv1", "test:bad1" }));
        QCOMPARE(registry.defaultMicrophone()->uniqueID(), QStringLiteral("test:mic1"));
        // A muxed device is only muxed, and so in both lists.
        QCOMPARE(device("test:dv1")->mediaTypes(), QStringList { MediaType::Muxed });
        CaptureDevicesController devices;
        QCOMPARE(ids(devices.cameras()), QStringList({ "test:cam1", "test:bad1", "test:dv1" }));
        QCOMPARE(ids(devices.microphones()), QStringList({ "test:mic1", "test:dv1" }));
        QVERIFY(!devices.captureSession());
        QVERIFY(!devices.deleteMovieFileWhenItFinishesRecording());
        FakeApplicationController app;
        devices.setController(&app);
        const CaptureDevicePtr added = registry.addTestDevice(QStringLiteral("microphone:mic2"));
        QCOMPARE(added->localizedDisplayName(), QStringLiteral("Test microphone mic2"));
        QCOMPARE(app.rebuilds, 1);
        QVERIFY(!registry.addTestDevice(QStringLiteral("camera:mic2"))); // the ID is taken
        QCOMPARE(ids(devices.microphones()), QStringList({ "test:mic1", "test:mic2", "test:dv1" }));
        QCOMPARE(devices.cameras().size(), 3);
        QVERIFY(registry.removeTestDevice(QStringLiteral("test:mic2")));
        QVERIFY(!registry.removeTestDevice(QStringLiteral("test:mic2")));
        QCOMPARE(app.rebuilds, 2);
        QCOMPARE(ids(devices.microphones()), QStringList({ "test:mic1", "test:dv1" }));
    }
    void devicesBoundToTheAgentAreLeftOut_data()
    {
        QTest::addColumn<QByteArray>("configuration"); // written as the agent's configuration file
        QTest::addColumn<QStringList>("cameras");
        QTest::addColumn<QStringList>("microphones");
        const QByteArray bound = R"(<?xml version="1.0" encoding="UTF-8"?>
    <plist version="1.0"><dict><key>CameraName</key><string>Room 101</string>
    <key>RecordingVideoInput</key><string>test:dv1</string>
    <key>RecordingAudioInput</key><string>test:mic1</string></dict></plist>)";
        const QStringList allCameras { "test:cam1", "test:bad1", "test:dv1" };
        const QStringList allMicrophones { "test:mic1", "test:dv1" };
        // Bound as the agent's video input, a muxed device leaves both lists.
        QTest::newRow("bound") << bound << QStringList { "test:cam1", "test:bad1" } << QStringList();
        // Without a camera name the agent is not bound, whatever it lists.
        QTest::newRow("no camera name") << QByteArray(bound).replace("CameraName", "Comment") << allCameras
                                        << allMicrophones;
        QTest::newRow("unreadable") << QByteArray("not a property list") << allCameras << allMicrophones;
    }
    void devicesBoundToTheAgentAreLeftOut()
    {
        QFETCH(QByteArray, configuration);
        QVERIFY(writeBytes(Paths::globalAgentConfig(), configuration));
        CaptureDevicesController devices;
        QTEST(ids(devices.cameras()), "cameras");
        QTEST(ids(devices.microphones()), "microphones");
    }
    void setupFailureAlertsTheControllerAndDropsTheSession_data()
    {
        QTest::addColumn<QString>("video");
        QTest::addColumn<QString>("audio");
        QTest::addColumn<QString>("domain");
        QTest::addColumn<QString>("logged"); // the alert's description follows it
        QTest::newRow("missing device") << u"test:cam1"_s << u"test:unplugged"_s << u"com.tarn.Lumex"_s
                                        << u"initAudioDevice:(null) videoDevice:Test Camera -- cannot be nil"_s;
        QTest::newRow("open fails") << u"test:bad1"_s << u"test:mic1"_s << u"gst-resource-error-quark"_s
                                    << u"initVideoAndAudioDevices: Error initializing video device: "_s;
    }
    void setupFailureAlertsTheControllerAndDropsTheSession()
    {
        QFETCH(QString, video);
        QFETCH(QString, audio);
        QFETCH(QString, domain);
        QFETCH(QString, logged);
        Log::Capture log;
        Controlled c;
        c.devices.setupRecordingForVideoDeviceUniqueID(video, audio);
        QCOMPARE(c.app.alerts.size(), 1);
        QCOMPARE(c.app.alerts[0].domain, domain);
        QVERIFY(!c.devices.captureSession());
        QVERIFY(!c.app.theJob->movieFilePaths());
        if (domain == QLatin1String("com.tarn.Lumex")) {
            QCOMPARE(c.app.alerts[0], (Error { domain, 1, QStringLiteral("Cannot find the audio and video devices") }));
            QVERIFY(log.contains(logged));
        } else {
            QVERIFY(log.contains(logged + c.app.alerts[0].localizedDescription));
            // The microphone opened on the way stays open, as the system leaves it.
            QVERIFY(device("test:mic1")->isOpen());
            device("test:mic1")->close();
        }
    }
    void fileNameCarriesTheTimeOfSetUp()
    {
        Controlled c;
        c.app.theJob->setMovieFilePaths(
            QStringList { QStringLiteral("/earlier/one.mov"), QStringLiteral("/earlier/two.mov") });
        LXUserDefaults::standard().setObject(m_spool + QLatin1Char('/'), LXDefaultsKeys::LocalRecordSpoolPath.key);
        const QDateTime before = QDateTime::currentDateTime();
        c.setUp("test:cam1", "test:mic1");
        const QDateTime after = QDateTime::currentDateTime();
        LXUserDefaults::standard().setObject(m_spool, LXDefaultsKeys::LocalRecordSpoolPath.key);
        QVERIFY(c.devices.captureSession());
        QVERIFY(c.devices.captureSession()->isRunning());
        const QStringList paths = c.app.theJob->movieFilePaths().value_or(QStringList());
        QCOMPARE(paths.size(), 1);
        // A trailing slash in the setting is kept: plain string append.
        const QRegularExpression pattern(
            QRegularExpression::escape(m_spool) + QStringLiteral("//LocalVideo-(\\d{4}-\\d{2}-\\d{2}-\\d{6})\\.mov"));
        const QRegularExpressionMatch match = pattern.match(paths[0]);
        QVERIFY2(match.hasMatch(), qPrintable(paths[0]));
        const QString stamp = match.captured(1);
        QVERIFY(stamp == before.toString(QStringLiteral("yyyy-MM-dd-HHmmss"))
            || stamp == after.toString(QStringLiteral("yyyy-MM-dd-HHmmss")));
        // Nothing is written before recording begins, however long the session
        // runs.
        QTRY_VERIFY_WITH_TIMEOUT(c.runningTime() > 1.0, 20000);
        QVERIFY(!QFile::exists(paths[0]));
        c.devices.teardown();
        QVERIFY(!c.devices.captureSession());
        QVERIFY(!device("test:cam1")->isOpen());
    }
    void inputsFollowTheChosenDevices_data()
    {
        QTest::addColumn<QString>("video");
        QTest::addColumn<QString>("audio");
        QTest::addColumn<QStringList>("inputs"); // in the session's order
        QTest::addColumn<QStringList>("streams"); // media type:device of the active connections
        const auto row = [](const char *tag, const char *video, const char *audio, const QStringList &inputs,
                             const QStringList &streams) {
            QTest::newRow(tag) << QString(video) << QString(audio) << inputs << streams;
        };
        row("one muxed device for both: one input", "test:dv1", "test:dv1", { "test:dv1" },
            { "vide:test:dv1", "soun:test:dv1" });
        // The camcorder's own sound is switched off, and the chosen microphone
        // goes first so that it is the recording's sound.
        row("muxed camera, other microphone", "test:dv1", "test:mic1", { "test:mic1", "test:dv1" },
            { "soun:test:mic1", "vide:test:dv1" });
        row("camera, muxed microphone", "test:cam1", "test:dv1", { "test:cam1", "test:dv1" },
            { "vide:test:cam1", "soun:test:dv1" });
    }
    void inputsFollowTheChosenDevices()
    {
        QFETCH(QString, video);
        QFETCH(QString, audio);
        Controlled c;
        c.devices.setupRecordingForVideoDeviceUniqueID(video, audio);
        QVERIFY(c.app.alerts.isEmpty());
        QVERIFY(c.devices.captureSession());
        QStringList inputs, streams;
        for (const CaptureInputPtr &input : c.devices.captureSession()->inputs())
            inputs << input->device()->uniqueID();
        for (const CaptureConnectionPtr &connection : c.devices.captureSession()->activeConnections())
            streams << connection->mediaType() + QLatin1Char(':') + connection->input()->device()->uniqueID();
        c.devices.teardown();
        QTEST(inputs, "inputs");
        QTEST(streams, "streams");
    }
    void deviceLostWhilePreviewingEndsTheRequestedRecordingWithAnError()
    {
        auto &registry = CaptureDeviceRegistry::instance();
        Controlled c;
        for (const bool cancel : { false, true }) {
            QVERIFY(registry.addTestDevice(QStringLiteral("camera:gone:Unplugged Camera")));
            c.devices.refreshDevices();
            Log::Capture log;
            c.setUp("test:gone", "test:mic1");
            QVERIFY(c.devices.captureSession() && c.devices.captureSession()->isRunning());
            const QString path = c.moviePath();
            QVERIFY(registry.removeTestDevice(QStringLiteral("test:gone")));
            QTRY_VERIFY_WITH_TIMEOUT(!c.devices.captureSession()->isRunning(), 5000);
            const QString failure = log.lines().value(0);
            QVERIFY2(failure.startsWith(
                         QStringLiteral("Capture session stopped due to error: Error Domain=gst-resource-error-quark "
                                        "Code=3 \"The capture device Unplugged Camera was disconnected.\"")),
                qPrintable(failure));

            // The recording asked for on a dead session cannot start, and its
            // stop or cancel still ends it.
            c.devices.beginRecording();
            if (cancel)
                c.devices.cancelRecording();
            else
                c.devices.stopRecording();
            QTRY_VERIFY_WITH_TIMEOUT(!c.devices.captureSession(), 5000);
            QVERIFY(!QFile::exists(path));
            const QString url = QUrl::fromLocalFile(path).toString();
            const QString stoppedDueToError = QStringLiteral(
                "Stopped due to error: Error Domain=gst-resource-error-quark Code=3 "
                "\"The capture device Unplugged Camera was disconnected.\": {\n"
                "    NSLocalizedDescription = The capture device Unplugged Camera was disconnected.;\n}");
            QStringList expected { failure, QStringLiteral("Starting capture: ") + url,
                cancel ? QStringLiteral("Stopping capture and discarding movie file")
                       : QStringLiteral("Stopping capture"),
                QStringLiteral("Will finish recording to: ") + url, QStringLiteral("Finished recording to: ") + url,
                stoppedDueToError };
            if (cancel)
                expected << QStringLiteral("Could not delete recording at ") + path
                        + QStringLiteral(" ({\n    NSLocalizedDescription = No such file or directory;\n})");
            QCOMPARE(log.lines(), expected);
        }
        // Only the stopped one reports, once, with the session's error.
        QCOMPARE(c.app.stops.size(), 1);
        QVERIFY(c.app.stops[0]);
        QCOMPARE(c.app.stops[0]->domain, QStringLiteral("gst-resource-error-quark"));
        QVERIFY(c.app.alerts.isEmpty());
        QVERIFY(!device("test:mic1")->isOpen());
    }
    void deviceLostWhileRecordingLeavesTheRecordingRunning()
    {
        auto &registry = CaptureDeviceRegistry::instance();
        QVERIFY(registry.addTestDevice(QStringLiteral("microphone:gone:Unplugged Microphone")));
        Log::Capture log;
        Controlled c;
        c.setUp("test:cam1", "test:gone");
        QSignalSpy lost(&c.devices, &CaptureDevicesController::recordingDeviceLost);
        const QString path = c.moviePath();
        c.devices.beginRecording();
        const double began = c.runningTime();
        QTRY_VERIFY_WITH_TIMEOUT(c.runningTime() > began + 1.5, 20000);
        QVERIFY(registry.removeTestDevice(QStringLiteral("test:gone")));
        // The free default microphone takes over, in the same stream.
        QTRY_COMPARE_WITH_TIMEOUT(lost.size(), 1, 5000);
        QCOMPARE(lost[0], (QVariantList { "Unplugged Microphone", false, "Test Microphone" }));
        QVERIFY(log.contains(QStringLiteral("Recording goes on without Unplugged Microphone: Error "
                                            "Domain=gst-resource-error-quark Code=3 \"The capture device "
                                            "Unplugged Microphone was disconnected.\"")));
        const double lostAt = c.runningTime();
        QTRY_VERIFY_WITH_TIMEOUT(c.runningTime() > lostAt + 1.5, 20000);
        QVERIFY(c.app.stops.isEmpty() && c.devices.captureSession()->isRunning());
        c.devices.stopRecording();
        QTRY_COMPARE_WITH_TIMEOUT(c.app.stops.size(), 1, 20000);
        QVERIFY(!c.app.stops[0]);
        // One movie, its sound running to the end with the picture.
        const MovieInspection movie = inspectMovie(path);
        QVERIFY2(movie.videoEnd > 2.9 && qAbs(movie.audioEnd - movie.videoEnd) < 0.5,
            qPrintable(QString("%1 and %2").arg(movie.videoEnd).arg(movie.audioEnd)));
        QVERIFY(movie.largestAudioGap < 0.5);
    }
    // The screen beside the camera: two movies from one session, paused
    // twice, in step. The X screen is another test's; a test camera stands
    // in for it, and a Wayland desktop's screen cast is a PipeWire stream
    // of a headless session, as the portal would give it.
    void screenAndCameraMakeTwoMoviesInStep_data()
    {
        QTest::addColumn<bool>("cancel");
        QTest::addColumn<bool>("wayland");
        QTest::newRow("stopped: both kept, one report") << false << false;
        QTest::newRow("cancelled: both deleted") << true << false;
        QTest::newRow("Wayland: the screen cast's stream") << false << true;
    }
    void screenAndCameraMakeTwoMoviesInStep()
    {
        QFETCH(bool, cancel);
        QFETCH(bool, wayland);
        auto &registry = CaptureDeviceRegistry::instance();
        std::unique_ptr<WaylandSession> desktop;
        CaptureDevicePtr screen;
        int remote = -1;
        const auto closeRemote = qScopeGuard([&] {
            if (remote >= 0)
                ::close(remote);
        });
        if (wayland) {
            desktop = std::make_unique<WaylandSession>(QSize(640, 360));
            if (!desktop->isReady())
                QSKIP(qPrintable(desktop->skipReason()));
            const quint32 node = desktop->startScreenStream(QSize(640, 360));
            remote = desktop->pipeWireRemote();
            QVERIFY(node && remote >= 0);
            screen = std::make_shared<CaptureDevice>(CaptureDevice::Kind::Screen, "screen", "Screen");
            screen->setPipeWireStream(remote, node);
        } else {
            screen = registry.addTestDevice(QStringLiteral("camera:screen:Screen Stand-in"));
        }
        QVERIFY(screen);
        Controlled c;
        c.devices.setupRecordingForScreenWithVideoDeviceUniqueID(screen, "test:cam1", "test:mic1");
        const QStringList paths = c.app.theJob->movieFilePaths().value_or(QStringList());
        // Out of the lists when the test ends: a device removed while it
        // records leaves a black picture.
        const auto removeStandIn = qScopeGuard([&] {
            if (!wayland)
                registry.removeTestDevice(screen->uniqueID());
        });
        QCOMPARE(paths.size(), 2);
        QCOMPARE(
            QFileInfo(paths[0]).fileName().replace("ScreenCapture-", "LocalVideo-"), QFileInfo(paths[1]).fileName());
        c.devices.beginRecording();
        // One sound encoder for both movies.
        int soundEncoders = 0;
        GstIterator *elements = gst_bin_iterate_recurse(GST_BIN(c.devices.captureSession()->pipeline()));
        gst_iterator_foreach(
            elements,
            [](const GValue *element, gpointer count) {
                GstElementFactory *factory = gst_element_get_factory(GST_ELEMENT(g_value_get_object(element)));
                *static_cast<int *>(count)
                    += factory && gst_element_factory_list_is_type(factory, GST_ELEMENT_FACTORY_TYPE_AUDIO_ENCODER);
            },
            &soundEncoders);
        gst_iterator_free(elements);
        QCOMPARE(soundEncoders, 1);
        for (int pause = 0; pause < 2; ++pause) {
            const double from = c.runningTime();
            QTRY_VERIFY_WITH_TIMEOUT(c.runningTime() > from + 1.2, 20000);
            c.devices.pauseRecording();
            QTRY_VERIFY_WITH_TIMEOUT(c.runningTime() > from + 1.8, 20000);
            c.devices.resumeRecording();
        }
        const double from = c.runningTime();
        QTRY_VERIFY_WITH_TIMEOUT(c.runningTime() > from + 1.2, 20000);
        cancel ? c.devices.cancelRecording() : c.devices.stopRecording();
        QTRY_VERIFY_WITH_TIMEOUT(!c.devices.captureSession(), 20000);
        QVERIFY(deliverQueued());
        QCOMPARE(c.app.stops, cancel ? QList<std::optional<Error>>() : QList<std::optional<Error>> { std::nullopt });
        if (cancel) {
            QVERIFY(!QFile::exists(paths[0]) && !QFile::exists(paths[1]));
            return;
        }
        const MovieInspection screenMovie = inspectMovie(paths[0]);
        const MovieInspection cameraMovie = inspectMovie(paths[1]);
        for (const MovieInspection &movie : { screenMovie, cameraMovie }) {
            QCOMPARE(movie.audioCodec, QStringLiteral("audio/mpeg"));
            QVERIFY2(movie.videoEnd > 3.3 && movie.largestVideoGap < 0.1, qPrintable(QString::number(movie.videoEnd)));
        }
        QCOMPARE(screenMovie.width, 640); // within 1920x1080, as it came
        QVERIFY2(qAbs(screenMovie.audioEnd - cameraMovie.audioEnd) < 0.03, // the same sound, to a frame
            qPrintable(QString("%1 vs %2").arg(screenMovie.audioEnd).arg(cameraMovie.audioEnd)));
        // Both files are cut at the same running times; a starved machine
        // may still drop a frame or two near an end in one branch only.
        QVERIFY2(qAbs(screenMovie.videoEnd - cameraMovie.videoEnd) <= 0.1,
            qPrintable(QString("%1 vs %2").arg(screenMovie.videoEnd).arg(cameraMovie.videoEnd)));
    }
    void recordingEndsAsAsked_data()
    {
        QTest::addColumn<bool>("cancel");
        QTest::addColumn<bool>("withoutAac");
        QTest::newRow("stopped: kept and reported") << false << false;
        QTest::newRow("cancelled: deleted, not reported") << true << false;
        // Without any AAC encoder the sound keeps the platform default, silently.
        QTest::newRow("stopped without AAC") << false << true;
    }
    void recordingEndsAsAsked()
    {
        QFETCH(bool, cancel);
        QFETCH(bool, withoutAac);
        for (const char *name : { "voaacenc", "avenc_aac" }) {
            GstPluginFeature *feature = gst_registry_lookup_feature(gst_registry_get(), name);
            if (feature && withoutAac)
                gst_registry_remove_feature(gst_registry_get(), feature);
            if (feature)
                gst_object_unref(feature);
        }
        QCOMPARE(CompressionOptions::compressionOptionsIdentifiersForMediaType(MediaType::Sound).isEmpty(), withoutAac);
        // A space in the folder, as in the default one: URLs are logged encoded.
        const QString spaced = m_sandbox->path() + QStringLiteral("/Application Support");
        QVERIFY(QDir().mkpath(spaced));
        LXUserDefaults::standard().setObject(spaced, LXDefaultsKeys::LocalRecordSpoolPath.key);
        Log::Capture log;
        Controlled c;
        c.setUp("test:cam1", "test:mic1");
        LXUserDefaults::standard().setObject(m_spool, LXDefaultsKeys::LocalRecordSpoolPath.key);
        const QString path = c.moviePath();
        const QString url = QStringLiteral("file://") + QString(path).replace(QLatin1Char(' '), QStringLiteral("%20"));
        QVERIFY(url.contains(QStringLiteral("/Application%20Support/LocalVideo-")));

        c.devices.beginRecording();
        const double began = c.runningTime();
        c.devices.pauseRecording();
        c.devices.resumeRecording();
        QTRY_VERIFY_WITH_TIMEOUT(c.runningTime() > began + 1.5, 20000);
        const double recorded = c.runningTime() - began;
        cancel ? c.devices.cancelRecording() : c.devices.stopRecording();
        QCOMPARE(c.devices.deleteMovieFileWhenItFinishesRecording(), cancel);
        QTRY_VERIFY_WITH_TIMEOUT(!c.devices.captureSession(), 20000);
        QVERIFY(deliverQueued());
        QCOMPARE(c.app.stops, cancel ? QList<std::optional<Error>>() : QList<std::optional<Error>> { std::nullopt });
        QVERIFY(c.app.alerts.isEmpty());
        QStringList expected { QStringLiteral("Starting capture: ") + url, QStringLiteral("Pausing capture"),
            QStringLiteral("Resuming capture"),
            cancel ? QStringLiteral("Stopping capture and discarding movie file") : QStringLiteral("Stopping capture"),
            QStringLiteral("Will finish recording to: ") + url, QStringLiteral("Finished recording to: ") + url };
        if (cancel)
            expected << QStringLiteral("Successfully deleted cancelled recording at ") + path;
        QCOMPARE(log.lines(), expected);
        // The job keeps the path of a discarded file too.
        QCOMPARE(c.moviePath(), path);
        if (cancel) {
            QVERIFY(!QFile::exists(path));
            return;
        }
        const MovieInspection movie = inspectMovie(path);
        QCOMPARE(movie.videoCodec, QStringLiteral("video/x-h264"));
        QCOMPARE(movie.audioCodec, withoutAac ? QStringLiteral("audio/x-raw") : QStringLiteral("audio/mpeg"));
        QVERIFY2(qAbs(movie.containerDuration - recorded) < 0.3,
            qPrintable(QStringLiteral("%1 vs %2").arg(movie.containerDuration).arg(recorded)));
        QVERIFY(movie.largestVideoGap < 0.1);
    }
    void separatorTitleAppendsASeparator()
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
};

QTEST_MAIN(TestCaptureDevicesController)
#include "tst_capturedevicescontroller.moc"
