#include "CaptureDeviceRegistry.h"
#include "InputDeviceMenu.h"
#include "LXApplication.h"
#include "LXController.h"
#include "LXDefaultsKeys.h"
#include "LXMainWindow.h"
#include "LXNotificationCenter.h"
#include "LXPlaceholderLineEdit.h"
#include "LXUserDefaults.h"
#include "MetadataPage.h"
#include "MoviePlayer.h"
#include "RecordPage.h"
#include "ReviewPlayer.h"
#include "TransfersController.h"

#include "SimSandbox.h"
#include "app/SignIn.h"
#include "capture/MovieInspection.h"
#include "capture/XvfbServer.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QStorageInfo>

#include <csignal>

namespace {

using State = LXController::State;
using Page = LXMainWindow::Page;
const QString kSuccess = QStringLiteral("Your podcast has been successfully submitted.");
const QString kSubmitting = QStringLiteral("Your podcast is being submitted.");
const QVariantMap kRemoteCamera { { "isLocalRecording", false }, { "camera", "Studio 2" } };
const QVariantMap kLocalMicrophone { { "isLocalRecording", true }, { "microphone", "test:mic1" } };

QMessageBox *alertOn(QWidget *parent)
{
    for (QMessageBox *box : parent->findChildren<QMessageBox *>())
        if (box->isVisible())
            return box;
    return nullptr;
}

bool badged() // the window icon carries the red recording dot
{
    const QColor c = QApplication::windowIcon().pixmap(128, 128).toImage().pixelColor(104, 24);
    return c.red() > 200 && c.green() < 80;
}

// The application as a user runs it, in a process of its own that a test
// can end as a logout or a crash would: signs in, picks `tile` with the
// device choice `saved`, records, pauses, enters the title, goes back,
// records on, then says "recording SECONDS" and waits for its end.
const char *const kChildVariable = "LUMEX_FLOW_CHILD";

int runFlowChild(int argc, char **argv)
{
    QApplication app(argc, argv);
    const QJsonObject task = QJsonDocument::fromJson(qgetenv(kChildVariable)).object();
    LXUserDefaults::standard().setValue(
        task["saved"].toVariant().toMap(), LXDefaultsKeys::lastDeviceSelectionFor(task["tile"].toString()));
    LXController c;
    LXApplication::catchTerminationSignals(&c, [&c](int) { c.endWithoutAsking(); });
    QObject::connect(&c, &LXController::terminateRequested, &app, &QApplication::quit, Qt::QueuedConnection);
    c.awakeFromNib();
    signInAsDemo(c.loginPanel());
    auto click
        = [&c](const QString &name) { QTest::mouseClick(c.window()->findChild<QWidget *>(name), Qt::LeftButton); };
    if (!QTest::qWaitFor([&c] { return c.remoteCameraSnapshotRefreshTimer() != nullptr; }, 20000))
        return 2;
    click(task["tile"].toString().toLower() + "Tile");
    click("recordPauseButton");
    if (!QTest::qWaitFor([&c] { return c.recordingTime()->elapsedTime() >= 1.5; }, 20000))
        return 3;
    click("recordPauseButton");
    click("publish");
    QTest::keyClicks(c.window()->findChild<QWidget *>("title"), task["title"].toString());
    QTest::keyClicks(c.window()->findChild<QWidget *>("descriptionField"), "Taken up again");
    click("startOver"); // back to the paused recording
    click("recordPauseButton");
    if (!QTest::qWaitFor([&c] { return c.recordingTime()->elapsedTime() >= 3; }, 20000))
        return 4;
    if (task["trim"].toBool()) {
        // Trimmed and published: ends once the trimmed copy is queued.
        click("recordPauseButton");
        click("publish");
        auto *review = c.window()->findChild<ReviewPlayer *>("reviewPlayer");
        if (!QTest::qWaitFor([review] { return review->player()->duration() > 0; }, 20000))
            return 5;
        review->setMarks(1'000'000'000, 2'500'000'000);
        click("publish");
        if (!QTest::qWaitFor([&c] { return !c.job()->uploadUUID().isEmpty(); }, 60000))
            return 6;
        std::printf("submitted\n");
    } else {
        std::printf("recording %f\n", c.recordingTime()->elapsedTime());
    }
    std::fflush(stdout);
    return app.exec();
}

} // namespace

class TestRecording : public QObject
{
    Q_OBJECT

    std::unique_ptr<SimSandbox> m_sim;
    std::unique_ptr<LXController> m_c;

    template<typename T = QWidget> T *child(const char *name) const
    {
        return m_c->window()->findChild<T *>(QLatin1String(name));
    }
    void click(const char *name) { QTest::mouseClick(child(name), Qt::LeftButton); }
    QString status() const { return child<QLabel>("submittedStatus")->text(); }
    QString adHocDefaults() const { return m_sim->sysroot() + "/etc/orvane/orvxagentd.adhoc.plist-default"; }

    // Signs in; opens the record page of `tile` (if any) with the device choice `saved`.
    void openRecordPage(const QByteArray &tile, const QVariantMap &saved = {})
    {
        LXUserDefaults::standard().setValue(saved, LXDefaultsKeys::lastDeviceSelectionFor(QString::fromLatin1(tile)));
        m_c = std::make_unique<LXController>();
        m_c->awakeFromNib();
        signInAsDemo(m_c->loginPanel());
        QTRY_VERIFY_WITH_TIMEOUT(m_c->remoteCameraSnapshotRefreshTimer(), 10000);
        if (!tile.isEmpty())
            click((tile.toLower() + "Tile").constData());
    }
    // From the record button through the countdown to a running recording.
    void record()
    {
        QVERIFY(m_c->canBeginRecording());
        click("recordPauseButton");
        QTRY_COMPARE_WITH_TIMEOUT(m_c->state(), State::Starting, 10000);
        QVERIFY(m_c->countdownView()->isVisible() && !badged() && !child("recordPauseButton")->isVisible());
        QCOMPARE(m_c->recordPauseMenuTitle(), QStringLiteral("Pause Recording"));
        QTRY_COMPARE_WITH_TIMEOUT(m_c->state(), State::Recording, 15000);
        QVERIFY(badged());
    }
    // The simulator's library entry whose metadata has this title.
    QString libraryEntry(const QString &title) const
    {
        const QDir library(m_sim->state(QStringLiteral("library")));
        for (const QString &entry : library.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            if (SimSandbox::readPlist(library.filePath(entry + "/metadata.plist")).value("Title") == title)
                return library.filePath(entry);
        return QString();
    }
    void answerStartOver(const QString &button)
    {
        click("startOver");
        QVERIFY(m_c->startOverSheet() && !m_c->canRecordOrPause()); // a sheet is attached
        for (QAbstractButton *b : m_c->startOverSheet()->buttons())
            if (b->text() == button)
                QTest::mouseClick(b, Qt::LeftButton);
        QTRY_VERIFY(!m_c->startOverSheet());
    }

private slots:
    void initTestCase()
    {
        qputenv("LUMEX_CAPTURE_HARDWARE", "0");
        qputenv("LUMEX_TEST_DEVICES",
            "camera:cam1:Test Camera;microphone:mic1:Test Microphone;microphone:mic9:Spare Microphone");
        m_sim = std::make_unique<SimSandbox>();
    }
    void init()
    {
        QVERIFY(m_sim->resetState());
        // Each row starts as a new account does: no recording folder yet.
        QVERIFY(QDir(m_sim->jobDataFolder()).removeRecursively() && !QFileInfo::exists(m_sim->jobDataFolder()));
    }
    void cleanup()
    {
        if (m_c && m_c->job()->localAgentTask()) // an agent left recording
            m_c->server()->cancelLocalJob(m_c->job().get(), nullptr);
        m_c.reset();
        // The next row starts with its devices as a new run finds them.
        for (const CaptureDevicePtr &device : CaptureDeviceRegistry::instance().devices()) {
            device->setTestSignal(CaptureDevice::TestSignal::Normal);
            device->close();
        }
        QFile::remove(adHocDefaults());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void publishesRecordingsAndFiles_data()
    {
        QTest::addColumn<QByteArray>("tile"); // none: a file chosen on disk
        QTest::addColumn<QVariantMap>("saved");
        QTest::addColumn<QString>("ending"); // "publish", "start over" or "upload fails"
        const QVariantMap localCamera { { "isLocalRecording", true }, { "camera", "test:cam1" },
            { "microphone", "test:mic1" } };
        QTest::newRow("remote camera") << QByteArray("Video") << kRemoteCamera << QString("publish");
        QTest::newRow("local camera") << QByteArray("Video") << localCamera << QString("publish");
        QTest::newRow("local microphone") << QByteArray("Audio") << kLocalMicrophone << QString("publish");
        QTest::newRow("screen and camera") << QByteArray("Screen") << localCamera << QString("publish");
        QTest::newRow("remote camera, start over") << QByteArray("Video") << kRemoteCamera << QString("start over");
        QTest::newRow("local microphone, start over")
            << QByteArray("Audio") << kLocalMicrophone << QString("start over");
        QTest::newRow("chosen file") << QByteArray() << QVariantMap() << QString("publish");
        QTest::newRow("chosen file, upload fails") << QByteArray() << QVariantMap() << QString("upload fails");
    }
    void publishesRecordingsAndFiles()
    {
        QFETCH(QByteArray, tile);
        QFETCH(QVariantMap, saved);
        QFETCH(QString, ending);
        const bool local = saved.value("isLocalRecording").toBool();
        const QString file = m_sim->path() + "/lecture.mov";
        double recorded = 0;
        // The screen, beside a camera, is read from an X server of its own.
        std::unique_ptr<XvfbServer> screen;
        if (tile == "Screen") {
            screen = std::make_unique<XvfbServer>(QStringLiteral("1280x720x24"));
            QVERIFY(!screen->display().isEmpty());
            qputenv("DISPLAY", screen->display().toLocal8Bit());
        }
        auto noDisplay = qScopeGuard([] { qunsetenv("DISPLAY"); });
        openRecordPage(tile, saved);
        if (tile.isEmpty()) {
            QVERIFY(SimSandbox::writeFile(file, QByteArray(4096, 'm')));
            m_c->openFilesFromDesktop({ file });
            QVERIFY(m_c->mode() == LXController::Mode::File && m_c->window()->currentPage() == Page::Metadata);
        } else {
            record();
            QTRY_VERIFY_WITH_TIMEOUT(m_c->recordingTime()->elapsedTime() >= 1.2, 10000);
            // A camera plugged in and a spare microphone pulled out: the menus follow, the recording
            // keeps its devices (and plays for its whole length, below).
            const QVariantMap camera = m_c->job()->camera();
            auto &registry = CaptureDeviceRegistry::instance();
            QVERIFY(registry.addTestDevice("camera:cam9:Plugged Camera") && registry.removeTestDevice("test:mic9"));
            auto plugged = [&] {
                for (const QAction *item : m_c->cameraMenu()->actions())
                    if (item->text() == "Plugged Camera")
                        return true;
                return false;
            };
            QTRY_VERIFY(plugged());
            QCOMPARE(m_c->state(), State::Recording);
            QCOMPARE(m_c->job()->camera(), camera);
            QVERIFY(
                registry.removeTestDevice("test:cam9") && registry.addTestDevice("microphone:mic9:Spare Microphone"));
            // The key pauses, the menu resumes, the button pauses again.
            LXNotificationCenter::defaultCenter().post(kRecordPauseKeyShortcutTriggered);
            QVERIFY(m_c->state() == State::Paused && !badged() && child("recordingState")->isVisible());
            QCOMPARE(child<QLabel>("recordingState")->text(), QStringLiteral("Recording Paused"));
            const bool hidden = m_c->timerTextHidden(); // the time blinks while paused
            QTRY_VERIFY_WITH_TIMEOUT(m_c->timerTextHidden() != hidden, 3000);
            child<QAction>("recordPauseMenuItem")->trigger();
            QVERIFY(m_c->state() == State::Recording && !child("publish")->isVisible() && badged());
            QTRY_VERIFY_WITH_TIMEOUT(m_c->recordingTime()->elapsedTime() >= 2.4, 10000);
            click("recordPauseButton");
            QCOMPARE(m_c->state(), State::Paused);
            recorded = m_c->recordingTime()->elapsedTime();
            QCOMPARE(child<QLabel>("recordingTimer")->text(), StopWatch::formatElapsed(recorded));
            QVERIFY(!m_c->applicationOpenFile(file)); // a recording exists
            if (ending == "start over") {
                const QString movie = m_c->job()->movieFilePaths().value_or(QStringList { "-" }).first();
                answerStartOver("Cancel");
                QCOMPARE(m_c->state(), State::Paused);
                answerStartOver("Start Over");
                QVERIFY(m_c->window()->currentPage() == Page::SourceChooser && m_c->state() == State::Idle
                    && m_c->mode() == LXController::Mode::NoSource && !m_c->countdownView());
                auto cameraState = [&] { return SimSandbox::readPlist(m_sim->state("recordings.plist"))["Studio 2"]; };
                QTRY_VERIFY_WITH_TIMEOUT(
                    local ? !QFile::exists(movie) : cameraState().toMap()["state"] == "idle", 10000);
                return;
            }
            click("publish");
            click("publish"); // "Done" without a title
            QVERIFY(child<LXPlaceholderLineEdit>("title")->isPlaceholderImageVisible());
            QCOMPARE(m_c->state(), State::Paused);
            click("startOver"); // "Back" to the paused recording, and on again
            QVERIFY(m_c->window()->currentPage() == Page::Record && child("recordPauseButton")->isVisible());
            click("publish");
        }
        if (ending == "upload fails")
            m_sim->setFault("--submit", { { "upload_error", true } });
        const QString title = QStringLiteral("Week 3, ") + QTest::currentDataTag();
        QTest::keyClicks(child("title"), title);
        QTest::keyClicks(child("descriptionField"), "Sorting, part two");
        click("publish");
        QVERIFY(m_c->window()->currentPage() == Page::Done && m_c->state() == State::Submitted
            && m_c->mode() == LXController::Mode::NoSource);
        QCOMPARE(LXUserDefaults::standard().valueForLumexKey(LXDefaultsKeys::PreviousWorkflowChosen),
            m_c->job()->workflow().value("title").toString());
        if (!local && !tile.isEmpty()) {
            QCOMPARE(status(), kSuccess); // at once, without polling
            QTRY_VERIFY_WITH_TIMEOUT(!libraryEntry(title).isEmpty(), 10000);
            return;
        }
        QCOMPARE(status(), kSubmitting);
        QTRY_COMPARE_WITH_TIMEOUT(status(),
            ending == "upload fails" ? QStringLiteral("There was an error submitting your podcast.") : kSuccess, 40000);
        QVERIFY(!m_c->transfersController()->isPolling());
        const QString entry = libraryEntry(title);
        QCOMPARE(SimSandbox::readPlist(entry + "/metadata.plist").value("Description").toString(), "Sorting, part two");
        const QStringList movies = QDir(entry).entryList({ "*.mov" });
        // The screen with a camera: both movies in one upload.
        QCOMPARE(movies.size(), tile == "Screen" ? 2 : 1);
        // Recordings are deleted once queued; chosen files are the user's.
        const QStringList recordedFiles = m_c->job()->movieFilePaths().value_or(QStringList());
        for (const QString &path : recordedFiles)
            QCOMPARE(QFile::exists(path), tile.isEmpty());
        if (tile.isEmpty())
            return;
        QList<double> durations;
        for (const QString &name : movies) {
            const MovieInspection movie = inspectMovie(entry + "/" + name);
            durations << std::max(movie.videoEnd, movie.audioEnd);
            QVERIFY2(qAbs(durations.last() - recorded) < 1.0,
                qPrintable(QString("%1: %2 vs %3").arg(name).arg(durations.last()).arg(recorded)));
            // The upload took the finished movie, not the one still being written.
            QVERIFY2(!movie.topLevelAtoms.contains("moof"), qPrintable(movie.topLevelAtoms.join(' ')));
        }
        click("newPodcastButton"); // every new recording starts at the login panel
        QVERIFY(!m_c->window()->isVisible() && m_c->loginPanel()->loginPanel()->isVisible());
    }

    void reviewTrimsWhatIsPublished_data()
    {
        QTest::addColumn<QByteArray>("tile");
        QTest::addColumn<QString>("ending");
        QTest::newRow("local camera") << QByteArray("Video") << QString("publish");
        QTest::newRow("screen and camera") << QByteArray("Screen") << QString("publish");
        QTest::newRow("chosen file") << QByteArray() << QString("publish");
        QTest::newRow("upload fails: the original is offered again") << QByteArray("Video") << QString("fails");
    }
    void reviewTrimsWhatIsPublished()
    {
        QFETCH(QByteArray, tile);
        QFETCH(QString, ending);
        constexpr qint64 kSecond = 1'000'000'000;
        std::unique_ptr<XvfbServer> screen;
        if (tile == "Screen") {
            screen = std::make_unique<XvfbServer>(QStringLiteral("1280x720x24"));
            qputenv("DISPLAY", screen->display().toLocal8Bit());
        }
        auto noDisplay = qScopeGuard([] { qunsetenv("DISPLAY"); });
        openRecordPage(
            tile, { { "isLocalRecording", true }, { "camera", "test:cam1" }, { "microphone", "test:mic1" } });
        const QString chosen = m_sim->path() + "/chosen lecture.mov";
        if (tile.isEmpty()) {
            // Ten seconds with a key frame every second, as a camera gives.
            GstElement *make = gst_parse_launch(
                ("videotestsrc num-buffers=300 ! video/x-raw,width=320,height=240,framerate=30/1 ! timeoverlay ! "
                 "x264enc key-int-max=30 ! qtmux ! filesink location=\""
                    + chosen + "\"")
                    .toUtf8(),
                nullptr);
            QVERIFY(make);
            gst_element_set_state(make, GST_STATE_PLAYING);
            GstMessage *done = gst_bus_timed_pop_filtered(
                GST_ELEMENT_BUS(make), 60 * GST_SECOND, GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
            QVERIFY(done && GST_MESSAGE_TYPE(done) == GST_MESSAGE_EOS);
            gst_message_unref(done);
            gst_element_set_state(make, GST_STATE_NULL);
            gst_object_unref(make);
            m_c->openFilesFromDesktop({ chosen });
        } else {
            record();
            QTRY_VERIFY_WITH_TIMEOUT(m_c->recordingTime()->elapsedTime() >= 9.5, 30000);
            click("recordPauseButton");
            click("publish");
        }
        QCOMPARE(m_c->window()->currentPage(), Page::Metadata);
        QCOMPARE(QApplication::focusWidget(), child("title")); // the title first, as before
        auto *review = child<ReviewPlayer>("reviewPlayer");
        MoviePlayer *player = review->player();
        // The paused recording is read as far as it is written.
        QTRY_VERIFY_WITH_TIMEOUT(player->duration() > 8 * kSecond, 20000);
        QTRY_VERIFY_WITH_TIMEOUT(!player->frame().isNull(), 10000);
        const QStringList originals = m_c->job()->movieFilePaths().value_or(QStringList());
        QStringList copies; // to tell where the published pictures come from
        for (const QString &original : originals) {
            copies << m_sim->path() + "/original-" + QFileInfo(original).fileName();
            QFile::remove(copies.last());
            QVERIFY(QFile::copy(original, copies.last()));
        }
        // The marks at 2 s and 7 s, set with the keys at the playhead.
        child("reviewPosition")->setFocus();
        player->seek(2 * kSecond);
        QTest::keyClick(child("reviewPosition"), Qt::Key_I);
        player->seek(7 * kSecond);
        QTest::keyClick(child("reviewPosition"), Qt::Key_O);
        QCOMPARE(review->marks(), (std::pair { 2 * kSecond, 7 * kSecond }));
        QCOMPARE(child<QLabel>("reviewKept")->text(), QStringLiteral("Keeps 0:05 (0:02–0:07)"));
        if (ending == "fails")
            m_sim->setFault("--submit", { { "upload_error", true } });
        const QString title = QStringLiteral("Trimmed, ") + QTest::currentDataTag();
        QTest::keyClicks(child("title"), title);
        click("publish");
        QTRY_COMPARE_WITH_TIMEOUT(status(),
            ending == "fails" ? QStringLiteral("There was an error submitting your podcast.") : kSuccess, 60000);
        if (ending == "fails") {
            // Nothing is lost: the next sign-in offers the whole recording.
            for (const QString &original : originals)
                QVERIFY(QFile::exists(original));
            m_c.reset();
            m_sim->setFault("--submit", {});
            openRecordPage({});
            QTRY_VERIFY_WITH_TIMEOUT(m_c->interruptedRecordingQuestion(), 20000);
            return;
        }
        const QString entry = libraryEntry(title);
        const QStringList movies = QDir(entry).entryList({ "*.mov" });
        QCOMPARE(movies.size(), originals.size());
        QList<double> lengths;
        for (int i = 0; i < movies.size(); ++i) {
            const QString published = entry + "/" + movies[i];
            const MovieInspection movie = inspectMovie(published);
            lengths << movie.videoEnd;
            QVERIFY2(qAbs(movie.videoEnd - 5.0) <= 1.0, qPrintable(QString::number(movie.videoEnd)));
            // The first picture shows the time just before the In mark: a cut
            // at the key frame loses nothing between the marks.
            const QString original = copies.value(originals.indexOf(QRegularExpression(
                ".*" + QRegularExpression::escape(QFileInfo(published).fileName().section('-', 0, 0)) + ".*")));
            const double first = firstPictureTimeIn(published, original);
            QVERIFY2(first >= 1.0 && first <= 3.0, qPrintable(QString::number(first)));
        }
        // A screen and its camera: the same range from both.
        if (lengths.size() == 2)
            QVERIFY2(qAbs(lengths[0] - lengths[1]) <= 1.0 / 15 + 0.001,
                qPrintable(QString("%1 vs %2").arg(lengths[0]).arg(lengths[1])));
        // Chosen files stay the user's; a recording's original goes once its
        // upload has completed.
        for (const QString &original : originals)
            QTRY_COMPARE_WITH_TIMEOUT(QFile::exists(original), tile.isEmpty(), 10000);
    }

    void aRecordingOutlivesTheApplication_data()
    {
        QTest::addColumn<QByteArray>("tile");
        QTest::addColumn<QVariantMap>("saved");
        QTest::addColumn<int>("signal");
        const QVariantMap localCamera { { "isLocalRecording", true }, { "camera", "test:cam1" },
            { "microphone", "test:mic1" } };
        QTest::newRow("SIGTERM, local camera") << QByteArray("Video") << localCamera << int(SIGTERM);
        QTest::newRow("kill -9, local microphone") << QByteArray("Audio") << kLocalMicrophone << int(SIGKILL);
        QTest::newRow("kill -9, remote camera") << QByteArray("Video") << kRemoteCamera << int(SIGKILL);
        QTest::newRow("kill -9, screen and camera") << QByteArray("Screen") << localCamera << int(SIGKILL);
    }
    void aRecordingOutlivesTheApplication()
    {
        QFETCH(QByteArray, tile);
        QFETCH(QVariantMap, saved);
        QFETCH(int, signal);
        const bool local = saved.value("isLocalRecording").toBool();
        const QString title = QStringLiteral("Outlived, ") + QTest::currentDataTag();
        QProcess lumex;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(kChildVariable,
            QJsonDocument(QJsonObject { { "tile", QString(tile) }, { "saved", QJsonValue::fromVariant(saved) },
                              { "title", title } })
                .toJson(QJsonDocument::Compact));
        std::unique_ptr<XvfbServer> screen;
        if (tile == "Screen") {
            screen = std::make_unique<XvfbServer>(QStringLiteral("1280x720x24"));
            env.insert("DISPLAY", screen->display());
        }
        lumex.setProcessEnvironment(env);
        lumex.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        lumex.start(QCoreApplication::applicationFilePath(), {});
        QTRY_VERIFY_WITH_TIMEOUT(lumex.canReadLine() || lumex.state() == QProcess::NotRunning, 60000);
        const QByteArray said = lumex.readLine();
        QVERIFY2(said.startsWith("recording "), said.constData());
        QElapsedTimer sinceSaid;
        sinceSaid.start();
        QTest::qWait(1000);
        const double recorded = said.mid(10).trimmed().toDouble() + sinceSaid.elapsed() / 1000.0;
        ::kill(pid_t(lumex.processId()), signal);
        // SIGTERM ends it in order; after kill -9 its agent goes within 2 s.
        QVERIFY(lumex.waitForFinished(signal == SIGTERM ? LXController::kEndTimeoutMs + 5000 : 5000));
        if (signal == SIGTERM)
            QCOMPARE(lumex.exitCode(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(
            QProcess::execute("pgrep", { "-f", m_sim->sysroot() + "/usr/libexec/orvane/orvxagentd" }) != 0, 2000);

        // The next sign-in as the same user offers it, with what was entered.
        openRecordPage({});
        if (!local) {
            QTRY_VERIFY_WITH_TIMEOUT(m_c->interruptedRecordingQuestion(), 10000);
            QCOMPARE(m_c->interruptedRecordingQuestion()->text(),
                QStringLiteral("“Studio 2” is still recording. Continue, publish or discard it?"));
            QTest::mouseClick(m_c->interruptedRecordingQuestion()->defaultButton(), Qt::LeftButton); // Continue
            QVERIFY(m_c->state() == State::Recording && m_c->window()->currentPage() == Page::Record);
            QVERIFY(m_c->recordingTime()->elapsedTime() >= recorded - 1);
            click("recordPauseButton");
            QCOMPARE(m_c->state(), State::Paused);
            click("publish");
        } else {
            QTRY_VERIFY_WITH_TIMEOUT(m_c->interruptedRecordingQuestion(), 20000);
            QVERIFY(m_c->interruptedRecordingQuestion()->text().startsWith("Publish the recording interrupted on "));
            QTest::mouseClick(m_c->interruptedRecordingQuestion()->defaultButton(), Qt::LeftButton);
            QCOMPARE(m_c->window()->currentPage(), Page::Metadata);
            QVERIFY(!m_c->interruptedRecordingQuestion()); // the screen's and the camera's movie: one offer
        }
        QCOMPARE(child<QLineEdit>("title")->text(), title);
        click("publish"); // Done
        if (!local) {
            QTRY_VERIFY_WITH_TIMEOUT(!libraryEntry(title).isEmpty(), 10000);
            return;
        }
        QTRY_COMPARE_WITH_TIMEOUT(status(), kSuccess, 40000);
        const QString entry = libraryEntry(title);
        QCOMPARE(SimSandbox::readPlist(entry + "/metadata.plist").value("Description").toString(), "Taken up again");
        const QStringList movies = QDir(entry).entryList({ "*.mov" });
        QCOMPARE(movies.size(), tile == "Screen" ? 2 : 1);
        for (const QString &name : movies) {
            const MovieInspection movie = inspectMovie(entry + "/" + name);
            const double duration = std::max(movie.videoEnd, movie.audioEnd);
            QVERIFY2(qAbs(duration - recorded) < 1.0, qPrintable(QString("%1 vs %2").arg(duration).arg(recorded)));
        }
        QVERIFY(!QFile::exists(m_sim->jobDataFolder() + "/current-recording.plist")); // handed over
    }

    void aTrimmedRecordingCrashedBeforeItsUploadIsOfferedAgain()
    {
        const QString title = QStringLiteral("Trimmed, then lost");
        QProcess lumex;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        const QVariantMap camera { { "isLocalRecording", true }, { "camera", "test:cam1" },
            { "microphone", "test:mic1" } };
        env.insert(kChildVariable,
            QJsonDocument(QJsonObject { { "tile", "Video" }, { "saved", QJsonValue::fromVariant(camera) },
                              { "title", title }, { "trim", true } })
                .toJson(QJsonDocument::Compact));
        lumex.setProcessEnvironment(env);
        lumex.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        lumex.start(QCoreApplication::applicationFilePath(), {});
        QTRY_VERIFY_WITH_TIMEOUT(lumex.canReadLine() || lumex.state() == QProcess::NotRunning, 90000);
        QCOMPARE(lumex.readLine().trimmed(), QByteArray("submitted"));
        ::kill(pid_t(lumex.processId()), SIGKILL);
        QVERIFY(lumex.waitForFinished(5000));
        // The simulator takes seconds to upload: the next sign-in finds the
        // upload unfinished and offers the whole recording. Only a machine
        // slower than that may find it completed, the trimmed recording
        // published and its original gone.
        openRecordPage({});
        QTRY_VERIFY_WITH_TIMEOUT(m_c->interruptedRecordingQuestion() || !libraryEntry(title).isEmpty(), 30000);
        if (!m_c->interruptedRecordingQuestion())
            return;
        QVERIFY(m_c->interruptedRecordingQuestion()->text().startsWith("Publish the recording interrupted on "));
        QTest::mouseClick(m_c->interruptedRecordingQuestion()->defaultButton(), Qt::LeftButton);
        QCOMPARE(child<QLineEdit>("title")->text(), title);
        const QString original = m_c->job()->movieFilePaths().value_or(QStringList { "-" }).first();
        QVERIFY2(inspectMovie(original).videoEnd > 2.8, qPrintable(original)); // whole, not the trimmed copy
    }

    void guardSpeaksUpAndClears_data()
    {
        QTest::addColumn<QByteArray>("tile");
        QTest::addColumn<QVariantMap>("saved");
        QTest::addColumn<QString>("device");
        QTest::addColumn<int>("cause");
        QTest::addColumn<QString>("banner");
        QTest::addColumn<QString>("text");
        const QVariantMap localCamera { { "isLocalRecording", true }, { "camera", "test:cam1" },
            { "microphone", "test:mic1" } };
        using Signal = CaptureDevice::TestSignal;
        QTest::newRow("silent microphone, own capture")
            << QByteArray("Video") << localCamera << "test:mic1" << int(Signal::Silent) << "silence"
            << "No sound from “Test Microphone” for 10 seconds";
        QTest::newRow("clipping microphone, agent")
            << QByteArray("Audio") << kLocalMicrophone << "test:mic1" << int(Signal::Clipping) << "clipping"
            << "“Test Microphone” is too loud";
        QTest::newRow("frozen camera") << QByteArray("Video") << localCamera << "test:cam1" << int(Signal::Frozen)
                                       << "frozen"
                                       << "The picture from “Test Camera” has stopped";
        QTest::newRow("agent ends by itself")
            << QByteArray("Audio") << kLocalMicrophone << QString() << int(Signal::Normal) << "agent-ended"
            << "The sound recording stopped unexpectedly; what was recorded is kept.";
    }
    void guardSpeaksUpAndClears()
    {
        QFETCH(QByteArray, tile);
        QFETCH(QVariantMap, saved);
        QFETCH(QString, device);
        QFETCH(int, cause);
        QFETCH(QString, banner);
        QFETCH(QString, text);
        openRecordPage(tile, saved);
        record();
        auto *page = m_c->window()->recordPage();
        QTRY_VERIFY_WITH_TIMEOUT(m_c->recordingTime()->elapsedTime() >= 1, 10000);
        QVERIFY(page->bannerText(banner).isEmpty());
        CaptureDevicePtr source = CaptureDeviceRegistry::instance().deviceWithUniqueID(device);
        if (source)
            source->setTestSignal(CaptureDevice::TestSignal(cause));
        else
            ::kill(m_c->job()->localAgentTask()->processIdentifier(), SIGKILL);
        QTRY_COMPARE_WITH_TIMEOUT(page->bannerText(banner), text, 20000);
        QCOMPARE(m_c->state(), State::Recording); // the guard only speaks
        if (!source)
            return;
        source->setTestSignal(CaptureDevice::TestSignal::Normal);
        QTRY_VERIFY_WITH_TIMEOUT(page->bannerText(banner).isEmpty(), 5000);
        click("recordPauseButton");
        QCOMPARE(m_c->state(), State::Paused);
    }

    void unpluggedDeviceLeavesOnePlayableMovie_data()
    {
        QTest::addColumn<QString>("device");
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("text");
        QTest::newRow("microphone") << "test:mic1"
                                    << "microphone:mic1:Test Microphone"
                                    << "“Test Microphone” was disconnected. The recording goes on with the sound of "
                                       "“Spare Microphone”.";
        QTest::newRow("camera") << "test:cam1"
                                << "camera:cam1:Test Camera"
                                << "“Test Camera” was disconnected. The recording goes on; its picture stays black "
                                   "until the recording ends.";
    }
    void unpluggedDeviceLeavesOnePlayableMovie()
    {
        QFETCH(QString, device);
        QFETCH(QString, entry);
        QFETCH(QString, text);
        openRecordPage(
            "Video", { { "isLocalRecording", true }, { "camera", "test:cam1" }, { "microphone", "test:mic1" } });
        record();
        QTRY_VERIFY_WITH_TIMEOUT(m_c->recordingTime()->elapsedTime() >= 1.5, 10000);
        auto &registry = CaptureDeviceRegistry::instance();
        QVERIFY(registry.removeTestDevice(device));
        auto *page = m_c->window()->recordPage();
        QTRY_COMPARE_WITH_TIMEOUT(page->bannerText("lost-" + text.section("”", 0, 0).mid(1)), text, 5000);
        QTRY_VERIFY_WITH_TIMEOUT(m_c->recordingTime()->elapsedTime() >= 4, 10000);
        QCOMPARE(m_c->state(), State::Recording);
        click("recordPauseButton");
        const double recorded = m_c->recordingTime()->elapsedTime();
        click("publish");
        const QString title = QStringLiteral("Unplugged ") + QTest::currentDataTag();
        QTest::keyClicks(child("title"), title);
        click("publish");
        QTRY_COMPARE_WITH_TIMEOUT(status(), kSuccess, 40000);
        QVERIFY(registry.addTestDevice(entry)); // plugged back for the rows after
        const QString library = libraryEntry(title);
        const MovieInspection movie = inspectMovie(library + "/" + QDir(library).entryList({ "*.mov" }).value(0));
        // Both streams play to the end: the stand-in's sound or the black
        // picture fills the time after the unplugging.
        QVERIFY2(qAbs(movie.videoEnd - recorded) < 1.0 && qAbs(movie.audioEnd - recorded) < 1.0,
            qPrintable(QString("%1 and %2 of %3").arg(movie.videoEnd).arg(movie.audioEnd).arg(recorded)));
        QVERIFY(movie.largestVideoGap < 0.5 && movie.largestAudioGap < 0.5);
    }

    void diskCutoffRefusesAndPausesLocalRecordings()
    {
        // A cutoff a million MB above the free space.
        const double huge = double(QStorageInfo(m_sim->home()).bytesAvailable()) / 1024 / 1024 + 1e6;
        SimSandbox::writePlist(adHocDefaults(), QVariantMap { { "RecordingDiskSpaceCutoffInMB", huge } });
        openRecordPage("Audio", kLocalMicrophone);
        // Room for under 10 minutes at the microphone's usual rate: the time left and a banner say so.
        const double free = double(QStorageInfo(m_sim->home()).bytesAvailable()) / 1024 / 1024;
        SimSandbox::writePlist(adHocDefaults(), QVariantMap { { "RecordingDiskSpaceCutoffInMB", free - 100 - 5 } });
        auto *page = m_c->window()->recordPage();
        QTRY_VERIFY_WITH_TIMEOUT(!page->bannerText("low-disk").isEmpty(), 5000);
        QVERIFY(child<QLabel>("timeLeft")->text().startsWith("About ")
            && child<QLabel>("timeLeft")->text().endsWith("minutes of recording left on this disk"));
        SimSandbox::writePlist(adHocDefaults(), QVariantMap { { "RecordingDiskSpaceCutoffInMB", huge } });
        Log::Capture log;
        click("recordPauseButton");
        QVERIFY(
            m_c->state() == State::Idle && alertOn(m_c->window())->informativeText().endsWith("to record a podcast."));
        // The volume by its label, or where it is mounted when it has none: never a blank.
        const QStorageInfo volume(m_sim->home());
        const QString name = volume.name().isEmpty() ? volume.rootPath() : volume.name();
        QVERIFY2(alertOn(m_c->window())->informativeText().contains("on the volume " + name + " to record"),
            qPrintable(alertOn(m_c->window())->informativeText()));
        const QStringList lines = log.lines().filter("Not enough space for recording: ");
        QVERIFY(!lines.isEmpty() && lines.last().endsWith(QString::asprintf("but cutoff is %.1f MB", huge + 100)));
        alertOn(m_c->window())->accept();
        QFile::remove(adHocDefaults());
        record();
        // The agent's own setting, read on the ticks of every third second.
        QVariantMap config = SimSandbox::readPlist(m_sim->userConfig());
        config.insert("RecordingDiskSpaceCutoffInMB", huge);
        SimSandbox::writePlist(m_sim->userConfig(), config);
        QTRY_COMPARE_WITH_TIMEOUT(m_c->state(), State::Paused, 5000);
        QMessageBox *alert = alertOn(m_c->window());
        QCOMPARE(alert->text(), QStringLiteral("Not enough disk space available"));
        QVERIFY(
            alert->informativeText().endsWith("to continue recording the podcast. Your recording has been paused."));
        alert->accept();
        click("recordPauseButton"); // resuming is refused as well
        QVERIFY(alertOn(m_c->window())->informativeText().endsWith("to record a podcast."));
        QCOMPARE(m_c->state(), State::Paused);
    }
};

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsSet(kChildVariable))
        return runFlowChild(argc, argv);
    QApplication app(argc, argv);
    TestRecording test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_recording.moc"
