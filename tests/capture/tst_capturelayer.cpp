// The capture layer on real GStreamer pipelines fed by test devices.

#include "CaptureDeviceRegistry.h"
#include "CaptureMovieFileOutput.h"
#include "CaptureSession.h"
#include "CaptureVideoPreview.h"
#include "MovieInspection.h"
#include "QTCaptureDeviceAdditions.h"
#include "TestSupport.h"

#include <QSignalSpy>
#include <QtTest>

#include <thread>

namespace {

struct FinishRecord
{
    int willFinish = 0;
    int didFinish = 0;
    QStringList order;
    QUrl url;
    std::optional<Error> error;
    bool onMainThread = true;
};

class RecordingDelegate final : public CaptureFileOutputDelegate
{
public:
    FinishRecord record;

    void captureOutputWillFinishRecording(CaptureMovieFileOutput *, const QUrl &url,
        const QList<CaptureConnectionPtr> &, const std::optional<Error> &) override
    {
        ++record.willFinish;
        record.order << QStringLiteral("will");
        record.url = url;
        record.onMainThread &= QThread::currentThread() == qApp->thread();
    }
    void captureOutputDidFinishRecording(CaptureMovieFileOutput *, const QUrl &url, const QList<CaptureConnectionPtr> &,
        const std::optional<Error> &error) override
    {
        ++record.didFinish;
        record.order << QStringLiteral("did");
        record.url = url;
        record.error = error;
        record.onMainThread &= QThread::currentThread() == qApp->thread();
    }
};

// A running session of one test camera and one test microphone with a movie
// file output.
struct Rig
{
    std::shared_ptr<CaptureSession> session = std::make_shared<CaptureSession>();
    std::shared_ptr<CaptureMovieFileOutput> output = std::make_shared<CaptureMovieFileOutput>();
    RecordingDelegate delegate;

    explicit Rig(const QStringList &deviceIDs, bool withEncoders = true)
    {
        for (const QString &id : deviceIDs) {
            CaptureDevicePtr device = CaptureDeviceRegistry::instance().deviceWithUniqueID(id);
            Error error;
            if (!device || !device->open(&error))
                qFatal("cannot open %s", qPrintable(id));
            session->addInput(std::make_shared<CaptureDeviceInput>(device), &error);
        }
        session->addOutput(output, nullptr);
        output->setDelegate(&delegate);
        if (withEncoders) {
            for (const CaptureConnectionPtr &connection : output->connections())
                output->setCompressionOptions(
                    CompressionOptions::compressionOptionsWithIdentifier(connection->mediaType() == MediaType::Video
                            ? CompressionOptions::SD480SizeMPEG4Video
                            : CompressionOptions::HighQualityAACAudio),
                    connection);
        }
        session->startRunning();
    }
    ~Rig()
    {
        session->stopRunning();
        for (const CaptureInputPtr &input : session->inputs())
            input->device()->close();
    }
};

void wait(int ms)
{
    QTest::qWait(ms);
}

} // namespace

class TestCaptureLayer : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void testDevicesComeFromTheEnvironmentWithTheirMediaTypes();
    void addingAndRemovingTestDevicesNotifies();
    void mediaTypeListsConcatenateWithoutDeduplicating();
    void openingABrokenDeviceFailsWithGStreamersError();
    void pausedRecordingHasRecordedDurationWithoutGaps();
    void manyFragmentsStillFinishAPlainMovie();
    void connectionsWithoutOptionsGetThePlatformDefault();
    void unwritableFileFinishesWithAnError();
    void sourceEndingFinishesLikeAStopWithAnError();
    void stoppingTheSessionMidRecordingStillFinishesAPlainMovie();
    void discardedRecordingIsNotRewrittenAndStaleRewritesGo();
    void sessionWithoutStreamsRefusesToRecord();
    void failedRewriteKeepsTheOriginal();
    void soundConnectionReportsTheAudioLevel();
    void previewShowsFramesWhileRecording();

private:
    QString moviePath(const QString &name) const { return m_sandbox->path() + QLatin1Char('/') + name; }
    std::unique_ptr<TestSandbox> m_sandbox;
};

void TestCaptureLayer::initTestCase()
{
    m_sandbox = std::make_unique<TestSandbox>();
    qputenv(CaptureDeviceRegistry::kHardwareVariable, "0");
    qputenv(CaptureDeviceRegistry::kTestDevicesVariable,
        "camera:cam1:Test Camera;microphone:mic1;muxed:dv1:Test Camcorder;broken:bad1;nonsense;camera:");
}

void TestCaptureLayer::testDevicesComeFromTheEnvironmentWithTheirMediaTypes()
{
    const QList<CaptureDevicePtr> devices = CaptureDeviceRegistry::instance().devices();
    QStringList ids;
    for (const CaptureDevicePtr &d : devices)
        ids << d->uniqueID();
    // Malformed entries are skipped, the rest keep their order.
    QCOMPARE(ids, QStringList({ "test:cam1", "test:mic1", "test:dv1", "test:bad1" }));
    QCOMPARE(devices[0]->localizedDisplayName(), QStringLiteral("Test Camera"));
    QCOMPARE(devices[0]->mediaTypes(), QStringList { MediaType::Video });
    QCOMPARE(devices[1]->mediaTypes(), QStringList { MediaType::Sound });
    QCOMPARE(devices[1]->localizedDisplayName(), QStringLiteral("Test microphone mic1"));
    // A muxed device is only muxed: it is not listed under video or sound.
    QCOMPARE(devices[2]->mediaTypes(), QStringList { MediaType::Muxed });
    QVERIFY(!devices[2]->hasMediaType(MediaType::Video));
    QCOMPARE(CaptureDeviceRegistry::instance().defaultMicrophone()->uniqueID(), QStringLiteral("test:mic1"));
}

void TestCaptureLayer::addingAndRemovingTestDevicesNotifies()
{
    auto &registry = CaptureDeviceRegistry::instance();
    QSignalSpy connected(&registry, &CaptureDeviceRegistry::deviceWasConnected);
    QSignalSpy disconnected(&registry, &CaptureDeviceRegistry::deviceWasDisconnected);
    const CaptureDevicePtr added = registry.addTestDevice(QStringLiteral("camera:cam2:Plugged In"));
    QVERIFY(added);
    QCOMPARE(connected.count(), 1);
    QCOMPARE(connected[0][0].value<CaptureDevicePtr>(), added);
    QVERIFY(!registry.addTestDevice(QStringLiteral("camera:cam2")));
    QCOMPARE(registry.deviceWithUniqueID(QStringLiteral("test:cam2")), added);
    QVERIFY(registry.removeTestDevice(QStringLiteral("test:cam2")));
    QCOMPARE(disconnected.count(), 1);
    QVERIFY(!registry.deviceWithUniqueID(QStringLiteral("test:cam2")));
    QVERIFY(!registry.removeTestDevice(QStringLiteral("test:cam2")));
    QCOMPARE(disconnected.count(), 1);
}

void TestCaptureLayer::mediaTypeListsConcatenateWithoutDeduplicating()
{
    auto ids = [](const QStringList &types) {
        QStringList result;
        for (const CaptureDevicePtr &d : QTCaptureDeviceAdditions::inputDevicesWithMediaTypes(types))
            result << d->uniqueID();
        return result;
    };
    QCOMPARE(ids({ MediaType::Video, MediaType::Muxed }), QStringList({ "test:cam1", "test:bad1", "test:dv1" }));
    QCOMPARE(ids({ MediaType::Muxed, MediaType::Sound, MediaType::Muxed }),
        QStringList({ "test:dv1", "test:mic1", "test:dv1" }));
    QVERIFY(ids({}).isEmpty());
}

void TestCaptureLayer::openingABrokenDeviceFailsWithGStreamersError()
{
    const CaptureDevicePtr broken = CaptureDeviceRegistry::instance().deviceWithUniqueID(QStringLiteral("test:bad1"));
    Error error;
    QVERIFY(!broken->open(&error));
    QVERIFY(!broken->isOpen());
    QCOMPARE(error.domain, QStringLiteral("gst-resource-error-quark"));
    QVERIFY2(!error.localizedDescription.isEmpty(), qPrintable(error.localizedDescription));

    // A device that is not open cannot become an input.
    CaptureSession session;
    QVERIFY(!session.addInput(std::make_shared<CaptureDeviceInput>(broken), &error));
    QCOMPARE(error.domain, QStringLiteral("gst-resource-error-quark"));
}

void TestCaptureLayer::pausedRecordingHasRecordedDurationWithoutGaps()
{
    Rig rig({ QStringLiteral("test:cam1"), QStringLiteral("test:mic1") });
    QVERIFY(rig.session->isRunning());
    const QString path = moviePath(QStringLiteral("paused.mov"));
    rig.output->recordToOutputFileURL(QUrl::fromLocalFile(path));
    QVERIFY(rig.output->isRecording());
    wait(1500);
    rig.output->pauseRecording();
    QVERIFY(rig.output->isRecordingPaused());
    wait(2000);
    rig.output->resumeRecording();
    QVERIFY(!rig.output->isRecordingPaused());
    wait(1500);
    const double recorded = std::chrono::duration<double>(rig.output->recordedDuration()).count();
    QVERIFY2(qAbs(recorded - 3.0) < 0.2, qPrintable(QString::number(recorded)));
    rig.output->recordToOutputFileURL(QUrl());
    QVERIFY(!rig.output->isRecording());
    QTRY_COMPARE_WITH_TIMEOUT(rig.delegate.record.didFinish, 1, 20000);
    QCOMPARE(rig.delegate.record.willFinish, 1);
    QVERIFY(rig.delegate.record.onMainThread);
    QCOMPARE(rig.delegate.record.url, QUrl::fromLocalFile(path));
    QVERIFY(!rig.delegate.record.error);

    const MovieInspection movie = inspectMovie(path);
    QVERIFY(movie.readable);
    QCOMPARE(movie.videoCodec, QStringLiteral("video/x-h264"));
    QCOMPARE(movie.width, 640);
    QCOMPARE(movie.height, 480);
    QCOMPARE(movie.audioCodec, QStringLiteral("audio/mpeg"));
    QCOMPARE(movie.sampleRate, 48000);
    QCOMPARE(movie.channels, 2);
    QVERIFY2(qAbs(movie.containerDuration - recorded) < 0.2, qPrintable(QString::number(movie.containerDuration)));
    QVERIFY2(qAbs(movie.videoEnd - movie.audioEnd) < 0.2,
        qPrintable(QStringLiteral("%1 %2").arg(movie.videoEnd).arg(movie.audioEnd)));
    QVERIFY2(movie.largestVideoGap < 0.1, qPrintable(QString::number(movie.largestVideoGap)));
    QVERIFY2(movie.largestAudioGap < 0.05, qPrintable(QString::number(movie.largestAudioGap)));
    // A clean stop leaves a plain movie: no fragments, no padding.
    QVERIFY2(!movie.topLevelAtoms.contains(QStringLiteral("moof")), qPrintable(movie.topLevelAtoms.join(',')));
    QVERIFY(movie.topLevelAtoms.contains(QStringLiteral("moov")));
    QVERIFY2(movie.overheadBytes() < 1024 * 1024, qPrintable(QString::number(movie.overheadBytes())));
    QVERIFY(!QFile::exists(path + QStringLiteral(".remux")));
}

void TestCaptureLayer::manyFragmentsStillFinishAPlainMovie()
{
    Rig rig({ QStringLiteral("test:dv1") });
    rig.output->setFragmentDuration(std::chrono::milliseconds(20));
    const QString path = moviePath(QStringLiteral("fragments.mov"));
    rig.output->recordToOutputFileURL(QUrl::fromLocalFile(path));
    wait(2500);
    rig.output->recordToOutputFileURL(QUrl());
    QTRY_COMPARE_WITH_TIMEOUT(rig.delegate.record.didFinish, 1, 20000);
    const MovieInspection movie = inspectMovie(path);
    QVERIFY(movie.readable);
    QCOMPARE(movie.videoCodec, QStringLiteral("video/x-h264"));
    QVERIFY(!movie.topLevelAtoms.contains(QStringLiteral("moof")));
    QVERIFY2(qAbs(movie.containerDuration - 2.5) < 0.3, qPrintable(QString::number(movie.containerDuration)));
    QVERIFY(movie.largestVideoGap < 0.1);
}

void TestCaptureLayer::connectionsWithoutOptionsGetThePlatformDefault()
{
    Rig rig({ QStringLiteral("test:cam1"), QStringLiteral("test:mic1") }, false);
    const QString path = moviePath(QStringLiteral("default.mov"));
    rig.output->recordToOutputFileURL(QUrl::fromLocalFile(path));
    wait(1000);
    // Starting the next file finishes the current one.
    const QString second = moviePath(QStringLiteral("default-2.mov"));
    rig.output->recordToOutputFileURL(QUrl::fromLocalFile(second));
    QTRY_COMPARE_WITH_TIMEOUT(rig.delegate.record.didFinish, 1, 20000);
    QCOMPARE(rig.delegate.record.url, QUrl::fromLocalFile(path));
    QVERIFY(rig.output->isRecording());
    rig.output->recordToOutputFileURL(QUrl());
    QTRY_COMPARE_WITH_TIMEOUT(rig.delegate.record.didFinish, 2, 20000);
    const MovieInspection movie = inspectMovie(path);
    QCOMPARE(movie.videoCodec, QStringLiteral("video/x-h264"));
    QCOMPARE(movie.audioCodec, QStringLiteral("audio/x-raw"));
    QVERIFY(inspectMovie(second).readable);
}

void TestCaptureLayer::unwritableFileFinishesWithAnError()
{
    Rig rig({ QStringLiteral("test:cam1"), QStringLiteral("test:mic1") });
    const QString path = moviePath(QStringLiteral("no/such/folder/movie.mov"));
    rig.output->recordToOutputFileURL(QUrl::fromLocalFile(path));
    QTRY_COMPARE_WITH_TIMEOUT(rig.delegate.record.didFinish, 1, 10000);
    QVERIFY(rig.delegate.record.error);
    QCOMPARE(rig.delegate.record.error->domain, QStringLiteral("gst-resource-error-quark"));
    QVERIFY(!rig.output->isRecording());
    // The session itself plays on.
    QVERIFY(rig.session->isRunning());
}

void TestCaptureLayer::soundConnectionReportsTheAudioLevel()
{
    Rig rig({ QStringLiteral("test:mic1") });
    const CaptureConnectionPtr sound = rig.session->activeConnections().value(0);
    QVERIFY(sound);
    QCOMPARE(sound->mediaType(), MediaType::Sound);
    // A sine of amplitude 0.3 has an RMS of about -13.5 dB of full scale.
    QTRY_VERIFY_WITH_TIMEOUT(sound->averagePowerLevel() > -16 && sound->averagePowerLevel() < -11, 5000);
    rig.session->stopRunning();
    QCOMPARE(sound->averagePowerLevel(), -700.0f);
}

void TestCaptureLayer::previewShowsFramesWhileRecording()
{
    Rig rig({ QStringLiteral("test:cam1"), QStringLiteral("test:mic1") });
    CaptureVideoPreviewWidget widget;
    widget.resize(320, 240);
    widget.show();
    widget.setCaptureSession(rig.session);
    QTRY_VERIFY_WITH_TIMEOUT(!widget.currentFrame().isNull(), 5000);
    QCOMPARE(widget.currentFrame().size(), QSize(640, 480));
    const QString path = moviePath(QStringLiteral("with-preview.mov"));
    rig.output->recordToOutputFileURL(QUrl::fromLocalFile(path));
    // A main thread that does not look at frames for a while stalls
    // nothing: the recording goes on at full rate.
    std::this_thread::sleep_for(std::chrono::milliseconds(1500));
    wait(500);
    widget.setCaptureSession(nullptr);
    QVERIFY(widget.currentFrame().isNull());
    rig.output->recordToOutputFileURL(QUrl());
    QTRY_COMPARE_WITH_TIMEOUT(rig.delegate.record.didFinish, 1, 20000);
    const MovieInspection movie = inspectMovie(path);
    QVERIFY2(movie.videoFrames >= 55, qPrintable(QString::number(movie.videoFrames)));
    QVERIFY(movie.largestVideoGap < 0.1);
}

void TestCaptureLayer::sourceEndingFinishesLikeAStopWithAnError()
{
    Rig rig({ QStringLiteral("test:dv1") });
    QSignalSpy failures(rig.session.get(), &CaptureSession::runtimeError);
    const QString path = moviePath(QStringLiteral("source-ended.mov"));
    rig.output->recordToOutputFileURL(QUrl::fromLocalFile(path));
    wait(1500);
    // How a device that goes away may end: its source sends end-of-stream.
    const CaptureDevicePtr camcorder = CaptureDeviceRegistry::instance().deviceWithUniqueID(QStringLiteral("test:dv1"));
    gst_element_send_event(camcorder->source(), gst_event_new_eos());
    QTRY_COMPARE_WITH_TIMEOUT(rig.delegate.record.didFinish, 1, 20000);
    QCOMPARE(rig.delegate.record.order, QStringList({ "will", "did" }));
    QVERIFY(rig.delegate.record.error);
    QVERIFY(!rig.output->isRecording());
    QVERIFY(rig.output->outputFileURL().isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(failures.count(), 1, 5000);
    QVERIFY(!rig.session->isRunning());
    const MovieInspection movie = inspectMovie(path);
    QVERIFY(movie.readable);
    QVERIFY(!movie.topLevelAtoms.contains(QStringLiteral("moof")));
    QVERIFY2(movie.containerDuration > 1.2, qPrintable(QString::number(movie.containerDuration)));
}

void TestCaptureLayer::stoppingTheSessionMidRecordingStillFinishesAPlainMovie()
{
    Rig rig({ QStringLiteral("test:cam1"), QStringLiteral("test:mic1") });
    const QString path = moviePath(QStringLiteral("session-stopped.mov"));
    rig.output->recordToOutputFileURL(QUrl::fromLocalFile(path));
    wait(1500);
    const double recorded = std::chrono::duration<double>(rig.output->recordedDuration()).count();
    // The file drains on its own once the session has stopped.
    rig.session->stopRunning();
    QVERIFY(!rig.output->isRecording());
    QCOMPARE(rig.delegate.record.didFinish, 0);
    QTRY_COMPARE_WITH_TIMEOUT(rig.delegate.record.didFinish, 1, 20000);
    QCOMPARE(rig.delegate.record.order, QStringList({ "will", "did" }));
    QVERIFY(!rig.delegate.record.error);
    const MovieInspection movie = inspectMovie(path);
    QCOMPARE(movie.videoCodec, QStringLiteral("video/x-h264"));
    QCOMPARE(movie.audioCodec, QStringLiteral("audio/mpeg"));
    QVERIFY(!movie.topLevelAtoms.contains(QStringLiteral("moof")));
    QVERIFY2(qAbs(movie.containerDuration - recorded) < 0.3,
        qPrintable(QStringLiteral("%1 vs %2").arg(movie.containerDuration).arg(recorded)));

    // A URL given while the session is down waits for it to run again.
    const QString next = moviePath(QStringLiteral("after-restart.mov"));
    rig.output->recordToOutputFileURL(QUrl::fromLocalFile(next));
    QVERIFY(!rig.output->isRecording());
    rig.session->startRunning();
    QVERIFY(rig.output->isRecording());
    wait(500);
    rig.output->recordToOutputFileURL(QUrl());
    QTRY_COMPARE_WITH_TIMEOUT(rig.delegate.record.didFinish, 2, 20000);
    QVERIFY(!rig.delegate.record.error);
    QVERIFY(inspectMovie(next).readable);
}

void TestCaptureLayer::discardedRecordingIsNotRewrittenAndStaleRewritesGo()
{
    const QString folder = moviePath(QStringLiteral("stale"));
    QVERIFY(QDir().mkpath(folder));
    const auto touch = [](const QString &file, const QDateTime &modified) {
        QFile f(file);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("half a movie");
        f.flush();
        QVERIFY(f.setFileTime(modified, QFileDevice::FileModificationTime));
    };
    const QString stale = folder + QStringLiteral("/LocalVideo-old.mov.remux");
    const QString fresh = folder + QStringLiteral("/LocalAudio-agent.mov.remux");
    touch(stale, QDateTime::currentDateTime().addSecs(-3600));
    // Another process may be writing this one right now.
    touch(fresh, QDateTime::currentDateTime());

    Rig rig({ QStringLiteral("test:cam1"), QStringLiteral("test:mic1") });
    const QString path = folder + QStringLiteral("/discarded.mov");
    rig.output->recordToOutputFileURL(QUrl::fromLocalFile(path));
    QVERIFY(!QFile::exists(stale));
    QVERIFY(QFile::exists(fresh));
    wait(1000);
    rig.output->recordToOutputFileURL(QUrl(), CaptureMovieFileOutput::FinishMode::Discard);
    QTRY_COMPARE_WITH_TIMEOUT(rig.delegate.record.didFinish, 1, 20000);
    QVERIFY(!rig.delegate.record.error);
    // Closed, but left fragmented: it is about to be deleted.
    const MovieInspection movie = inspectMovie(path);
    QVERIFY(movie.readable);
    QVERIFY2(movie.topLevelAtoms.contains(QStringLiteral("moof")), qPrintable(movie.topLevelAtoms.join(',')));
    QVERIFY(!QFile::exists(path + QStringLiteral(".remux")));
}

void TestCaptureLayer::sessionWithoutStreamsRefusesToRecord()
{
    Rig rig({});
    QVERIFY(rig.output->connections().isEmpty());
    rig.output->recordToOutputFileURL(QUrl::fromLocalFile(moviePath(QStringLiteral("nothing.mov"))));
    QTRY_COMPARE_WITH_TIMEOUT(rig.delegate.record.didFinish, 1, 5000);
    QCOMPARE(rig.delegate.record.order, QStringList({ "will", "did" }));
    QVERIFY(rig.delegate.record.error);
    QVERIFY(!rig.output->isRecording());
    QVERIFY(!QFile::exists(moviePath(QStringLiteral("nothing.mov"))));
}

void TestCaptureLayer::failedRewriteKeepsTheOriginal()
{
    const QString path = moviePath(QStringLiteral("not-a-movie.mov"));
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(4096, 'x'));
    }
    QVERIFY(CaptureMovieFileOutput::remuxToPlainMovie(path));
    QCOMPARE(QFileInfo(path).size(), 4096);
    QVERIFY(!QFile::exists(path + QStringLiteral(".remux")));
    // Gone before the rewrite: nothing appears in its place.
    QVERIFY(QFile::remove(path));
    QVERIFY(CaptureMovieFileOutput::remuxToPlainMovie(path));
    QVERIFY(!QFile::exists(path));
    QVERIFY(!QFile::exists(path + QStringLiteral(".remux")));
}

QTEST_MAIN(TestCaptureLayer)
#include "tst_capturelayer.moc"
