#include "LXController.h"
#include "LXDefaultsKeys.h"
#include "LXMainWindow.h"
#include "LXNotificationCenter.h"
#include "LXPlaceholderLineEdit.h"
#include "LXUserDefaults.h"

#include "SimSandbox.h"
#include "capture/MovieInspection.h"

#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStorageInfo>

namespace {

using State = LXController::State;
using Mode = LXController::Mode;
using Page = LXMainWindow::Page;
const QString kSuccess = QStringLiteral("Your podcast has been successfully submitted.");

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

    // Signs in and opens the record page of `tile` with the device choice `saved`.
    void openRecordPage(const char *tile, const char *mode, const QVariantMap &saved)
    {
        LXUserDefaults::standard().setValue(saved, LXDefaultsKeys::lastDeviceSelectionFor(mode));
        m_c = std::make_unique<LXController>();
        m_c->awakeFromNib();
        LXUserLoginPanelController *panel = m_c->loginPanel();
        panel->hostnameField()->setText(SimSandbox::kServerHost);
        panel->usernameField()->setText(SimSandbox::kUser);
        panel->passwordField()->setText(SimSandbox::kPassword);
        QTest::mouseClick(panel->connectButton(), Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(m_c->remoteCameraSnapshotRefreshTimer(), 10000);
        if (*tile)
            click(tile);
    }
    // From the record button through the countdown to a running recording.
    void record()
    {
        QVERIFY(m_c->canBeginRecording());
        click("recordPauseButton");
        QTRY_COMPARE_WITH_TIMEOUT(m_c->state(), State::Starting, 10000);
        QVERIFY(m_c->countdownView()->isVisible());
        QVERIFY(!child("recordPauseButton")->isVisible() && !child("startOver")->isVisible());
        QCOMPARE(m_c->recordPauseMenuTitle(), QStringLiteral("Pause Recording"));
        QVERIFY(!badged());
        QTRY_COMPARE_WITH_TIMEOUT(m_c->state(), State::Recording, 15000);
        QVERIFY(badged());
        QCOMPARE(m_c->everySecondTimer()->interval(), 67); // 2.0 / frameRate
    }
    void recordFor(double seconds)
    {
        const double until = m_c->recordingTime()->elapsedTime() + seconds;
        QTRY_VERIFY_WITH_TIMEOUT(m_c->recordingTime()->elapsedTime() >= until, 10000);
    }
    // The library entry of the simulator whose metadata has this title.
    QString libraryEntry(const QString &title) const
    {
        const QDir library(m_sim->state(QStringLiteral("library")));
        for (const QString &entry : library.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            if (SimSandbox::readPlist(library.filePath(entry + "/metadata.plist")).value("Title") == title)
                return library.filePath(entry);
        return QString();
    }
    void confirmStartOver(const QString &button)
    {
        QTRY_VERIFY(m_c->startOverSheet());
        for (QAbstractButton *b : m_c->startOverSheet()->buttons())
            if (b->text() == button)
                QTest::mouseClick(b, Qt::LeftButton);
        QTRY_VERIFY(!m_c->startOverSheet());
    }

private slots:
    void initTestCase()
    {
        qputenv("LUMEX_CAPTURE_HARDWARE", "0");
        qputenv("LUMEX_TEST_DEVICES", "camera:cam1:Test Camera;microphone:mic1:Test Microphone");
        m_sim = std::make_unique<SimSandbox>();
    }
    void init() { QVERIFY(m_sim->resetState()); }
    void cleanup()
    {
        if (m_c && m_c->job() && m_c->job()->localAgentTask())
            m_c->server()->cancelLocalJob(m_c->job().get(), nullptr);
        if (m_c)
            m_c->tearDownLocalCameraAndMicrophone();
        m_c.reset();
        QFile::remove(m_sim->sysroot() + "/etc/orvane/orvxagentd.adhoc.plist-default");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void recordsPausesAndPublishes_data()
    {
        QTest::addColumn<QByteArray>("tile");
        QTest::addColumn<QVariantMap>("saved");
        QTest::newRow("remote camera") << QByteArray("videoTile")
                                       << QVariantMap { { "isLocalRecording", false }, { "camera", "Studio 2" } };
        QTest::newRow("local camera") << QByteArray("videoTile")
                                      << QVariantMap { { "isLocalRecording", true }, { "camera", "test:cam1" },
                                             { "microphone", "test:mic1" } };
        QTest::newRow("local microphone")
            << QByteArray("audioTile") << QVariantMap { { "isLocalRecording", true }, { "microphone", "test:mic1" } };
    }
    void recordsPausesAndPublishes()
    {
        QFETCH(QByteArray, tile);
        QFETCH(QVariantMap, saved);
        openRecordPage(tile.constData(), tile == "videoTile" ? "Video" : "Audio", saved);
        const bool local = m_c->localRecordingChosen();
        QCOMPARE(local, saved.value("isLocalRecording").toBool());
        record();
        recordFor(1.2);
        // The key pauses, the menu resumes, the button pauses again.
        LXNotificationCenter::defaultCenter().post(kRecordPauseKeyShortcutTriggered);
        QCOMPARE(m_c->state(), State::Paused);
        QVERIFY(!badged());
        QVERIFY(child("recordingState")->isVisible());
        QCOMPARE(child<QLabel>("recordingState")->text(), QStringLiteral("Recording Paused"));
        QCOMPARE(child<QPushButton>("startOver")->text(), QStringLiteral("Start Over"));
        QCOMPARE(m_c->everySecondTimer()->interval(), 900);
        const bool hidden = m_c->timerTextHidden(); // the time blinks while paused
        QTRY_VERIFY_WITH_TIMEOUT(m_c->timerTextHidden() != hidden, 3000);
        child<QAction>("recordPauseMenuItem")->trigger();
        QCOMPARE(m_c->state(), State::Recording);
        QVERIFY(!child("publish")->isVisible() && badged());
        recordFor(1.2);
        click("recordPauseButton");
        QCOMPARE(m_c->state(), State::Paused);
        const double recorded = m_c->recordingTime()->elapsedTime();
        QCOMPARE(child<QLabel>("recordingTimer")->text(), StopWatch::formatElapsed(recorded));
        QVERIFY(!m_c->applicationOpenFile(m_sim->path())); // a recording exists

        click("publish");
        QCOMPARE(m_c->window()->currentPage(), Page::Metadata);
        click("publish"); // "Done" without a title
        QVERIFY(child<LXPlaceholderLineEdit>("title")->isPlaceholderImageVisible());
        QCOMPARE(m_c->state(), State::Paused);
        click("startOver"); // "Back" to the paused recording, and on again
        QCOMPARE(m_c->window()->currentPage(), Page::Record);
        QVERIFY(child("recordPauseButton")->isVisible());
        click("publish");
        const QString title = QStringLiteral("Week 3 ") + QTest::currentDataTag();
        QTest::keyClicks(child("title"), title);
        QTest::keyClicks(child("descriptionField"), "Sorting, part two");
        click("publish");
        QCOMPARE(m_c->window()->currentPage(), Page::Done);
        QCOMPARE(m_c->state(), State::Submitted);
        QCOMPARE(m_c->mode(), Mode::NoSource);
        QCOMPARE(LXUserDefaults::standard().valueForLumexKey(LXDefaultsKeys::PreviousWorkflowChosen),
            m_c->job()->workflow().value("title").toString());
        if (!local) {
            QCOMPARE(status(), kSuccess); // at once, without polling
            QVERIFY(!m_c->transfersController()->isPolling());
            QTRY_VERIFY_WITH_TIMEOUT(!libraryEntry(title).isEmpty(), 10000);
            return;
        }
        QCOMPARE(status(), QStringLiteral("Your podcast is being submitted."));
        QTRY_COMPARE_WITH_TIMEOUT(status(), kSuccess, 40000);
        QVERIFY(m_c->currentJobCompletedUploading() && !m_c->transfersController()->isPolling());
        const QString entry = libraryEntry(title);
        QCOMPARE(SimSandbox::readPlist(entry + "/metadata.plist").value("Description"), "Sorting, part two");
        const QStringList movies = QDir(entry).entryList({ "*.mov" });
        QCOMPARE(movies.size(), 1);
        const MovieInspection movie = inspectMovie(entry + "/" + movies.first());
        const double duration = std::max(movie.videoEnd, movie.audioEnd);
        QVERIFY2(qAbs(duration - recorded) < 1.0, qPrintable(QString("%1 vs %2").arg(duration).arg(recorded)));
        QVERIFY(QFileInfo(m_c->job()->movieFilePaths()->first()).exists() == false); // deleted once queued

        click("newPodcastButton"); // every new recording starts at the login panel
        QVERIFY(!m_c->window()->isVisible());
        QVERIFY(m_c->loginPanel()->loginPanel()->isVisible());
    }

    void publishesChosenFiles_data()
    {
        QTest::addColumn<bool>("uploadFails");
        QTest::newRow("uploaded") << false;
        QTest::newRow("upload fails") << true;
    }
    void publishesChosenFiles()
    {
        QFETCH(bool, uploadFails);
        if (uploadFails)
            m_sim->setFault("--submit", { { "upload_error", true } });
        const QString file = m_sim->path() + "/lecture.mov";
        QVERIFY(SimSandbox::writeFile(file, QByteArray(4096, 'm')));
        openRecordPage("", "Video", {});
        m_c->openFilesFromDesktop({ file, file });
        QCOMPARE(m_c->mode(), Mode::File);
        QCOMPARE(child<QPushButton>("startOver")->text(), QStringLiteral("Back"));
        click("startOver");
        QCOMPARE(m_c->mode(), Mode::NoSource);
        QVERIFY(m_c->applicationOpenFile(file));
        QTest::keyClicks(child("title"), "Chosen");
        click("publish");
        QCOMPARE(status(), QStringLiteral("Your podcast is being submitted."));
        QTRY_COMPARE_WITH_TIMEOUT(
            status(), uploadFails ? QStringLiteral("There was an error submitting your podcast.") : kSuccess, 40000);
        QVERIFY(QFile::exists(file)); // chosen files are the user's: never deleted
        QVERIFY(QFile::exists(libraryEntry("Chosen") + "/lecture.mov"));
    }

    void startOverAsksThenDiscards_data()
    {
        QTest::addColumn<bool>("local");
        QTest::newRow("remote camera") << false;
        QTest::newRow("local microphone") << true;
    }
    void startOverAsksThenDiscards()
    {
        QFETCH(bool, local);
        openRecordPage(local ? "audioTile" : "videoTile", local ? "Audio" : "Video",
            local ? QVariantMap { { "isLocalRecording", true }, { "microphone", "test:mic1" } }
                  : QVariantMap { { "isLocalRecording", false }, { "camera", "Studio 2" } });
        record();
        click("recordPauseButton");
        const QString movie = m_c->job()->movieFilePaths().value_or(QStringList { "-" }).first();
        click("startOver");
        QVERIFY(!m_c->canRecordOrPause()); // a sheet is attached
        confirmStartOver("Cancel");
        QCOMPARE(m_c->state(), State::Paused);
        click("startOver");
        confirmStartOver("Start Over");
        QCOMPARE(m_c->window()->currentPage(), Page::SourceChooser);
        QCOMPARE(m_c->state(), State::Idle);
        QCOMPARE(m_c->mode(), Mode::NoSource);
        QVERIFY(!m_c->countdownView());
        const QString recordings = m_sim->state("recordings.plist");
        QTRY_VERIFY_WITH_TIMEOUT(local
                ? !QFile::exists(movie)
                : SimSandbox::readPlist(recordings).value("Studio 2").toMap().value("state").toString() == "idle",
            10000);
    }

    void diskCutoffRefusesAndPausesLocalRecordings()
    {
        // Free space, in MB, that no cutoff reaches but one a million MB above.
        const double huge = double(QStorageInfo(m_sim->home()).bytesAvailable()) / 1024 / 1024 + 1e6;
        SimSandbox::writePlist(m_sim->sysroot() + "/etc/orvane/orvxagentd.adhoc.plist-default",
            QVariantMap { { "RecordingDiskSpaceCutoffInMB", huge } });
        openRecordPage("audioTile", "Audio", { { "isLocalRecording", true }, { "microphone", "test:mic1" } });
        Log::Capture log;
        click("recordPauseButton");
        QVERIFY(alertOn(m_c->window())->informativeText().endsWith("to record a podcast."));
        QCOMPARE(m_c->state(), State::Idle);
        const QStringList lines = log.lines().filter("Not enough space for recording: ");
        QVERIFY(!lines.isEmpty() && lines.last().endsWith(QString::asprintf("but cutoff is %.1f MB", huge + 100)));
        alertOn(m_c->window())->accept();
        QFile::remove(m_sim->sysroot() + "/etc/orvane/orvxagentd.adhoc.plist-default");
        record();
        // The agent's own setting: read on the ticks of every third second.
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
        QTRY_VERIFY(alertOn(m_c->window()));
        QVERIFY(alertOn(m_c->window())->informativeText().endsWith("to record a podcast."));
        QCOMPARE(m_c->state(), State::Paused);
    }
};

QTEST_MAIN(TestRecording)
#include "tst_recording.moc"
