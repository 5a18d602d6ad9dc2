// The capture engine on real GStreamer pipelines fed by test devices.

#include "CaptureDeviceRegistry.h"
#include "CaptureMovieFileOutput.h"
#include "CaptureSession.h"
#include "CaptureVideoPreviewWidget.h"
#include "MovieInspection.h"
#include "MovieRewriter.h"
#include "TestSupport.h"

#include <QSignalSpy>
#include <QtTest>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

// What the output tells its delegate: "will" and "did" in order, the last
// URL and error, and whether every call came on the main thread.
struct RecordingDelegate final : CaptureFileOutputDelegate
{
    QStringList order;
    QUrl url;
    std::optional<Error> error;
    bool onMainThread = true;

    int didFinish() const { return int(order.count(QStringLiteral("did"))); }
    void captureOutputWillFinishRecording(CaptureMovieFileOutput *, const QUrl &url,
        const QList<CaptureConnectionPtr> &, const std::optional<Error> &) override
    {
        note(QStringLiteral("will"), url);
    }
    void captureOutputDidFinishRecording(CaptureMovieFileOutput *, const QUrl &url, const QList<CaptureConnectionPtr> &,
        const std::optional<Error> &error) override
    {
        note(QStringLiteral("did"), url);
        this->error = error;
    }
    void note(const QString &call, const QUrl &url)
    {
        order << call;
        this->url = url;
        onMainThread &= QThread::currentThread() == qApp->thread();
    }
};

// A running session of test devices with a movie file output.
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
        for (const CaptureConnectionPtr &connection : output->connections()) {
            if (withEncoders)
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

    double recorded() const { return std::chrono::duration<double>(output->recordedDuration()).count(); }
    // Waits until the file holds `seconds` of media by the pipeline's clock.
    bool recordFor(double seconds) const
    {
        QElapsedTimer waited;
        waited.start();
        while (recorded() < seconds && waited.elapsed() < 20000)
            QTest::qWait(20);
        return recorded() >= seconds;
    }
    double runningTime() const { return double(session->runningTime()) / GST_SECOND; }
};

} // namespace

class TestCaptureLayer : public QObject
{
    Q_OBJECT

    QString moviePath(const QString &name) const { return m_sandbox->path() + QLatin1Char('/') + name; }
    std::unique_ptr<TestSandbox> m_sandbox;

private slots:
    void initTestCase()
    {
        m_sandbox = std::make_unique<TestSandbox>();
        qputenv(CaptureDeviceRegistry::kHardwareVariable, "0");
        qputenv(CaptureDeviceRegistry::kTestDevicesVariable, "camera:cam1;microphone:mic1;muxed:dv1;broken:bad1");
    }
    void pausedRecordingHasRecordedDurationWithoutGaps()
    {
        Rig rig({ QStringLiteral("test:cam1"), QStringLiteral("test:mic1") });
        QVERIFY(rig.session->isRunning());
        const QString path = moviePath(QStringLiteral("paused.mov"));
        rig.output->recordToOutputFileURL(QUrl::fromLocalFile(path));
        QVERIFY(rig.output->isRecording());
        const double started = rig.runningTime();
        QVERIFY(rig.recordFor(1.5));
        rig.output->pauseRecording();
        const double pausedAt = rig.runningTime();
        QVERIFY(rig.output->isRecordingPaused());
        QTRY_VERIFY_WITH_TIMEOUT(rig.runningTime() > pausedAt + 2.0, 20000);
        rig.output->resumeRecording();
        const double resumedAt = rig.runningTime();
        QVERIFY(!rig.output->isRecordingPaused());
        QTRY_VERIFY_WITH_TIMEOUT(rig.runningTime() > resumedAt + 1.5, 20000);
        const double recorded = rig.recorded();
        const double expected = rig.runningTime() - started - (resumedAt - pausedAt);
        QVERIFY2(qAbs(recorded - expected) < 0.05, qPrintable(QStringLiteral("%1 vs %2").arg(recorded).arg(expected)));
        rig.output->recordToOutputFileURL(QUrl());
        QVERIFY(!rig.output->isRecording());
        QTRY_COMPARE_WITH_TIMEOUT(rig.delegate.didFinish(), 1, 20000);
        QCOMPARE(rig.delegate.order, QStringList({ "will", "did" }));
        QVERIFY(rig.delegate.onMainThread);
        QCOMPARE(rig.delegate.url, QUrl::fromLocalFile(path));
        QVERIFY(!rig.delegate.error);

        const MovieInspection movie = inspectMovie(path);
        QVERIFY(movie.readable);
        QCOMPARE(movie.videoCodec, QStringLiteral("video/x-h264"));
        QCOMPARE(QSize(movie.width, movie.height), QSize(640, 480));
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
        QVERIFY2(movie.overheadBytes < 1024 * 1024, qPrintable(QString::number(movie.overheadBytes)));
        QVERIFY(!QFile::exists(path + QStringLiteral(".remux")));
    }
    void everyEndingFinishesTheFile_data()
    {
        QTest::addColumn<QStringList>("devices");
        QTest::addColumn<QString>("ending");
        QTest::addColumn<QString>("audioCodec"); // empty: no sound track checked
        QTest::addColumn<bool>("failed");
        QTest::addColumn<bool>("fragmented");
        const QStringList pair { QStringLiteral("test:cam1"), QStringLiteral("test:mic1") };
        const QStringList camcorder { QStringLiteral("test:dv1") };
        // Many small fragments still give one plain movie.
        QTest::newRow("stop") << camcorder << u"stop"_s << u"audio/mpeg"_s << false << false;
        // Without options: H.264 and PCM; the next file follows at once.
        QTest::newRow("next file, platform default") << pair << u"next"_s << u"audio/x-raw"_s << false << false;
        // The file drains on its own; a URL given while the session is down
        // waits for it to run again.
        QTest::newRow("session stops") << pair << u"session"_s << u"audio/mpeg"_s << false << false;
        // How a device that goes away may end: its source sends end-of-stream.
        QTest::newRow("source ends") << camcorder << u"eos"_s << u""_s << true << false;
        // A file about to be deleted is closed, not rewritten.
        QTest::newRow("discard") << pair << u"discard"_s << u"audio/mpeg"_s << false << true;
    }
    void everyEndingFinishesTheFile()
    {
        QFETCH(QStringList, devices);
        QFETCH(QString, ending);
        QFETCH(QString, audioCodec);
        QFETCH(bool, failed);
        QFETCH(bool, fragmented);
        const QString folder = moviePath(ending);
        QVERIFY(QDir().mkpath(folder));
        // Left by a crashed rewrite an hour ago, and one another process may be
        // writing right now.
        const QString stale = folder + QStringLiteral("/LocalVideo-old.mov.remux");
        const QString fresh = folder + QStringLiteral("/LocalAudio-agent.mov.remux");
        for (const QString &leftover : { stale, fresh }) {
            QFile f(leftover);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write("half a movie");
            f.flush();
            QVERIFY(f.setFileTime(QDateTime::currentDateTime().addSecs(leftover == stale ? -3600 : 0),
                QFileDevice::FileModificationTime));
        }

        Rig rig(devices, ending != QLatin1String("next"));
        QSignalSpy failures(rig.session.get(), &CaptureSession::runtimeError);
        if (ending == QLatin1String("stop"))
            rig.output->setFragmentDuration(std::chrono::milliseconds(20));
        const QString path = folder + QStringLiteral("/movie.mov");
        rig.output->recordToOutputFileURL(QUrl::fromLocalFile(path));
        QVERIFY(!QFile::exists(stale));
        QVERIFY(QFile::exists(fresh));
        QVERIFY(rig.recordFor(1.5));
        const double recorded = rig.recorded();
        const QString next = folder + QStringLiteral("/next.mov");
        if (ending == QLatin1String("stop"))
            rig.output->recordToOutputFileURL(QUrl());
        else if (ending == QLatin1String("next"))
            rig.output->recordToOutputFileURL(QUrl::fromLocalFile(next));
        else if (ending == QLatin1String("session"))
            rig.session->stopRunning();
        else if (ending == QLatin1String("eos"))
            gst_element_send_event(rig.session->inputs()[0]->device()->source(), gst_event_new_eos());
        else
            rig.output->recordToOutputFileURL(QUrl(), CaptureMovieFileOutput::FinishMode::Discard);
        QTRY_COMPARE_WITH_TIMEOUT(rig.delegate.didFinish(), 1, 20000);
        QCOMPARE(rig.delegate.order, QStringList({ "will", "did" }));
        QCOMPARE(rig.delegate.url, QUrl::fromLocalFile(path));
        QCOMPARE(bool(rig.delegate.error), failed);
        QCOMPARE(rig.output->isRecording(), ending == QLatin1String("next"));
        QTRY_COMPARE_WITH_TIMEOUT(failures.count(), failed ? 1 : 0, 5000);
        QCOMPARE(rig.session->isRunning(), ending != QLatin1String("session") && !failed);

        const MovieInspection movie = inspectMovie(path);
        QVERIFY(movie.readable);
        QCOMPARE(movie.videoCodec, QStringLiteral("video/x-h264"));
        if (!audioCodec.isEmpty())
            QCOMPARE(movie.audioCodec, audioCodec);
        QCOMPARE(movie.topLevelAtoms.contains(QStringLiteral("moof")), fragmented);
        QVERIFY(movie.largestVideoGap < 0.1);
        QVERIFY(!QFile::exists(path + QStringLiteral(".remux")));
        // Up to the end, by the pipeline's clock.
        const double duration = movie.containerDuration;
        QVERIFY2(fragmented || (failed ? duration > recorded - 0.3 : qAbs(duration - recorded) < 0.3),
            qPrintable(QStringLiteral("%1 vs %2").arg(duration).arg(recorded)));

        if (ending == QLatin1String("next")) {
            rig.output->recordToOutputFileURL(QUrl());
            QTRY_COMPARE_WITH_TIMEOUT(rig.delegate.didFinish(), 2, 20000);
            QVERIFY(inspectMovie(next).readable);
        } else if (ending == QLatin1String("session")) {
            rig.output->recordToOutputFileURL(QUrl::fromLocalFile(next));
            QVERIFY(!rig.output->isRecording());
            rig.session->startRunning();
            QVERIFY(rig.output->isRecording());
            QVERIFY(rig.recordFor(0.5));
            rig.output->recordToOutputFileURL(QUrl());
            QTRY_COMPARE_WITH_TIMEOUT(rig.delegate.didFinish(), 2, 20000);
            QVERIFY(!rig.delegate.error);
            QVERIFY(inspectMovie(next).readable);
        }
    }
    void unwritableFileFinishesWithAnError()
    {
        Rig rig({ QStringLiteral("test:cam1"), QStringLiteral("test:mic1") });
        const QString path = moviePath(QStringLiteral("no/such/folder/movie.mov"));
        rig.output->recordToOutputFileURL(QUrl::fromLocalFile(path));
        QTRY_COMPARE_WITH_TIMEOUT(rig.delegate.didFinish(), 1, 10000);
        QVERIFY(rig.delegate.error);
        QCOMPARE(rig.delegate.error->domain, QStringLiteral("gst-resource-error-quark"));
        QVERIFY(!rig.output->isRecording());
        // The session itself plays on.
        QVERIFY(rig.session->isRunning());
    }
    void sessionWithoutStreamsRefusesToRecord()
    {
        Rig rig({});
        QVERIFY(rig.output->connections().isEmpty());
        rig.output->recordToOutputFileURL(QUrl::fromLocalFile(moviePath(QStringLiteral("nothing.mov"))));
        QTRY_COMPARE_WITH_TIMEOUT(rig.delegate.didFinish(), 1, 5000);
        QCOMPARE(rig.delegate.order, QStringList({ "will", "did" }));
        QVERIFY(rig.delegate.error);
        QVERIFY(!rig.output->isRecording());
        QVERIFY(!QFile::exists(moviePath(QStringLiteral("nothing.mov"))));
    }
    void failedRewriteKeepsTheOriginal()
    {
        const QString path = moviePath(QStringLiteral("not-a-movie.mov"));
        {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(QByteArray(4096, 'x'));
        }
        QVERIFY(MovieRewriter::rewriteAsPlainMovie(path));
        QCOMPARE(QFileInfo(path).size(), 4096);
        QVERIFY(!QFile::exists(path + QStringLiteral(".remux")));
        // Gone before the rewrite: nothing appears in its place.
        QVERIFY(QFile::remove(path));
        QVERIFY(MovieRewriter::rewriteAsPlainMovie(path));
        QVERIFY(!QFile::exists(path));
        QVERIFY(!QFile::exists(path + QStringLiteral(".remux")));
    }
    void trimKeepsTheMarkedRangeWithoutReencoding_data()
    {
        QTest::addColumn<double>("in");
        QTest::addColumn<double>("out"); // 0: to the end
        QTest::addColumn<double>("shortest");
        QTest::addColumn<double>("longest");
        // A key frame at least every second: the copy starts up to a second
        // before the In mark, never after it.
        QTest::newRow("2 s to 4.5 s") << 2.0 << 4.5 << 2.4 << 3.6;
        QTest::newRow("from the start") << 0.0 << 3.0 << 2.9 << 3.2;
        QTest::newRow("to the end") << 3.0 << 0.0 << 2.0 << 4.2;
    }
    void trimKeepsTheMarkedRangeWithoutReencoding()
    {
        QFETCH(double, in);
        QFETCH(double, out);
        QFETCH(double, shortest);
        QFETCH(double, longest);
        static QString original;
        if (original.isEmpty()) {
            original = moviePath(QStringLiteral("to-trim.mov"));
            Rig rig({ QStringLiteral("test:cam1"), QStringLiteral("test:mic1") });
            rig.output->recordToOutputFileURL(QUrl::fromLocalFile(original));
            QVERIFY(rig.recordFor(6.0));
            rig.output->recordToOutputFileURL(QUrl());
            QTRY_COMPARE_WITH_TIMEOUT(rig.delegate.didFinish(), 1, 20000);
        }
        const QString trimmed = moviePath(QStringLiteral("trimmed-%1.mov").arg(QTest::currentDataTag()));
        const auto ns = [](double seconds) { return qint64(seconds * 1e9); };
        const std::optional<Error> error = MovieRewriter::trimMovie(original, trimmed, ns(in), ns(out));
        QVERIFY2(!error, qPrintable(error ? error->localizedDescription : QString()));
        QVERIFY(!QFile::exists(trimmed + QLatin1String(MovieRewriter::kTemporarySuffix)));
        const MovieInspection movie = inspectMovie(trimmed);
        QVERIFY2(movie.videoEnd >= shortest && movie.videoEnd <= longest && qAbs(movie.audioEnd - movie.videoEnd) < 0.2,
            qPrintable(QStringLiteral("%1 and %2").arg(movie.videoEnd).arg(movie.audioEnd)));
        QVERIFY(movie.largestVideoGap < 0.1 && movie.largestAudioGap < 0.1);
        // The same stored pictures, every one of them decoding: the first
        // one is the key frame at or before the mark.
        QCOMPARE(size_t(movie.videoFrames), storedPictures(trimmed).size());
        const double first = firstPictureTimeIn(trimmed, original);
        QVERIFY2(first >= in - 1.0 && first <= in + 0.01, qPrintable(QString::number(first)));
    }
    // A chosen file may start one track long after the other (a camera whose
    // sound begins late): the copy must not wait for it for ever.
    void trimCopesWithATrackThatStartsLate()
    {
        gst_init(nullptr, nullptr);
        const QString late = moviePath(QStringLiteral("late-sound.mov"));
        const QByteArray aac = gst_element_factory_find("voaacenc") ? "voaacenc" : "avenc_aac";
        Gst::ElementRef pipeline(
            gst_parse_launch(
                ("videotestsrc num-buffers=450 ! video/x-raw,width=320,height=240,framerate=30/1 ! "
                 "x264enc speed-preset=ultrafast key-int-max=30 ! queue ! qtmux name=mux ! filesink "
                 "location=\""
                    + QFile::encodeName(late)
                    + "\" audiotestsrc timestamp-offset=8000000000 num-buffers=300 samplesperbuffer=1024 ! "
                      "audio/x-raw,rate=48000 ! "
                    + aac + " ! queue ! mux.")
                    .constData(),
                nullptr),
            Gst::Ref::Adopt);
        QVERIFY(pipeline);
        gst_element_set_state(pipeline.element(), GST_STATE_PLAYING);
        Gst::BusRef bus(gst_element_get_bus(pipeline.element()), Gst::Ref::Adopt);
        Gst::MessagePtr done(gst_bus_timed_pop_filtered(
            bus.get(), 60 * GST_SECOND, GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR)));
        gst_element_set_state(pipeline.element(), GST_STATE_NULL);
        QVERIFY(done && GST_MESSAGE_TYPE(done.get()) == GST_MESSAGE_EOS);
        const QString trimmed = moviePath(QStringLiteral("late-sound-trimmed.mov"));
        const std::optional<Error> error = MovieRewriter::trimMovie(late, trimmed, 1'000'000'000, 14'000'000'000);
        QVERIFY2(!error, qPrintable(error ? error->localizedDescription : QString()));
        const MovieInspection movie = inspectMovie(trimmed);
        QVERIFY2(movie.videoEnd >= 12.9 && movie.videoEnd <= 13.1, qPrintable(QString::number(movie.videoEnd)));
        QCOMPARE(size_t(movie.videoFrames), storedPictures(trimmed).size());
        // All of the sound up to the Out mark, from 8 s on: the movie's edit
        // places it 7 s into the copy.
        QVERIFY2(movie.audioEnd >= 5.9 && movie.audioEnd <= 6.1, qPrintable(QString::number(movie.audioEnd)));
    }
    void trimRefusesWhatItCannotCut()
    {
        const QString text = moviePath(QStringLiteral("notes.mov"));
        QFile file(text);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("These are not pictures.");
        file.close();
        QVERIFY(!MovieRewriter::canTrim(text));
        const QString trimmed = moviePath(QStringLiteral("notes-trimmed.mov"));
        QVERIFY(MovieRewriter::trimMovie(text, trimmed, 0, 1'000'000'000));
        QVERIFY(MovieRewriter::trimMovie(moviePath(QStringLiteral("missing.mov")), trimmed, 0, 1'000'000'000));
        QVERIFY(!QFile::exists(trimmed));
        QVERIFY(!QFile::exists(trimmed + QLatin1String(MovieRewriter::kTemporarySuffix)));
    }
    void soundConnectionReportsTheAudioLevel()
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
    void previewShowsFramesWhileRecording()
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
        QVERIFY(rig.recordFor(2.0));
        widget.setCaptureSession(nullptr);
        QVERIFY(widget.currentFrame().isNull());
        const double recorded = rig.recorded();
        rig.output->recordToOutputFileURL(QUrl());
        QTRY_COMPARE_WITH_TIMEOUT(rig.delegate.didFinish(), 1, 20000);
        const MovieInspection movie = inspectMovie(path);
        QVERIFY2(movie.videoFrames >= int(recorded * 30) - 5,
            qPrintable(QStringLiteral("%1 in %2 s").arg(movie.videoFrames).arg(recorded)));
        QVERIFY(movie.largestVideoGap < 0.1);
    }
};

QTEST_MAIN(TestCaptureLayer)
#include "tst_capturelayer.moc"
